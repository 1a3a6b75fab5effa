// SPDX-License-Identifier: MIT
#include "DefaultCalendars.h"

#include <ProblemLog.h>

#include <QCoreApplication>
#include <QDir>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace FolderStore
{

namespace
{

void writeLine(const QString &path, const QString &text, Items::ProblemLog &log)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8() + '\n') < 0 || !file.commit())
        log.note(path, 0, file.errorString());
}

void makeCalendar(const QDir &root, const QString &name, const QString &title, const QString &color, int order,
    Items::ProblemLog &log)
{
    const QString folder = root.filePath(name);
    if (!QDir().mkpath(folder)) {
        log.note(folder, 0, u"cannot be made"_s);
        return;
    }
    writeLine(folder + u"/displayname"_s, title, log);
    writeLine(folder + u"/color"_s, color, log);
    writeLine(folder + u"/order"_s, QString::number(order), log);
}

} // namespace

void makeDefaultCalendars(const QString &root, Items::ProblemLog &log)
{
    const QDir folder(root);
    makeCalendar(folder, u"Home"_s, QCoreApplication::translate("Vantle", "Home"), u"#2F7DE1"_s, 1, log);
    makeCalendar(folder, u"Work"_s, QCoreApplication::translate("Vantle", "Work"), u"#D9433B"_s, 2, log);
}

} // namespace FolderStore
