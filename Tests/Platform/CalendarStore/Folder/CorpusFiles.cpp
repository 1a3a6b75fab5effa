// SPDX-License-Identifier: MIT
#include "CorpusFiles.h"

#include <QDirIterator>
#include <QFile>

using namespace Qt::StringLiterals;

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList calendarFilesBelow(const QString &folder)
{
    QStringList paths;
    QDirIterator each(folder, { u"*.ics"_s }, QDir::Files, QDirIterator::Subdirectories);
    while (each.hasNext())
        paths << each.next();
    paths.sort();
    return paths;
}
