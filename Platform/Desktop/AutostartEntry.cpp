// SPDX-License-Identifier: MIT
#include "AutostartEntry.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QSaveFile>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{

constexpr qint64 largestFile = 64 * 1024; // bytes; a file beyond that is not ours

// An argument of an Exec line: in quotes, with a backslash before what means something inside of them,
// every backslash doubled once more because the line is a string value, and percent signs that are no field codes.
QString quotedArgument(const QString &argument)
{
    QString quoted;
    for (const QChar character : argument) {
        if (character == u'\\')
            quoted += u"\\\\\\\\"_s;
        else if (character == u'"' || character == u'`' || character == u'$')
            quoted += u"\\\\"_s + character;
        else if (character == u'%')
            quoted += u"%%"_s;
        else
            quoted += character;
    }
    return u'"' + quoted + u'"';
}

// Of the group that describes the program; the last of two lines wins, as it does in desktops.
QByteArray valueOf(const QByteArray &content, const QByteArray &key)
{
    QByteArray value;
    bool isInGroup = false;
    for (const QByteArray &line : content.split('\n')) {
        const QByteArray trimmed = line.trimmed();
        if (trimmed.startsWith('['))
            isInGroup = trimmed == "[Desktop Entry]";
        else if (const qsizetype equals = trimmed.indexOf('=');
                 isInGroup && equals > 0 && trimmed.left(equals).trimmed() == key)
            value = trimmed.mid(equals + 1).trimmed();
    }
    return value;
}

} // namespace

AutostartEntry::AutostartEntry(QString path, QString program)
    : m_path(std::move(path))
    , m_program(std::move(program))
{
}

AutostartEntry AutostartEntry::ofThisProgram()
{
    const QString program = QCoreApplication::applicationFilePath();
    const QString name = QFileInfo(program).fileName();
    // By its name where that finds it, so that the entry survives a move of the installation.
    const QFileInfo found(QStandardPaths::findExecutable(name));
    const bool isOnPath = found.canonicalFilePath() == QFileInfo(program).canonicalFilePath();
    return { QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/autostart/"_s
            + QGuiApplication::desktopFileName() + u".desktop"_s,
        isOnPath ? name : program };
}

bool AutostartEntry::isEnabled() const
{
    QFile file(m_path);
    // A FIFO or a device under that name would block or never end.
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly) || file.size() > largestFile)
        return false;
    const QByteArray content = file.readAll();
    return !valueOf(content, "Exec").isEmpty() && valueOf(content, "Hidden") != "true"
        && valueOf(content, "X-GNOME-Autostart-enabled") != "false";
}

Result<void> AutostartEntry::setEnabled(bool isEnabled) const
{
    if (!isEnabled) {
        QFile file(m_path);
        if (file.exists() && !file.remove())
            return Error { file.errorString() };
        return {};
    }

    const QString folder = QFileInfo(m_path).path();
    if (!QDir().mkpath(folder))
        return Error { QCoreApplication::translate("Vantle", "The folder “%1” cannot be made.").arg(folder) };
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly))
        return Error { file.errorString() };
    file.write(content());
    if (!file.commit())
        return Error { file.errorString() };
    return {};
}

QByteArray AutostartEntry::content() const
{
    const bool isName = !m_program.contains(u'/');
    const QString lines = u"[Desktop Entry]\n"
                          u"Type=Application\n"
                          u"Name=Vantle\n"
                          u"Icon=org.vantle.Vantle\n"
                          u"Exec=%1\n"
                          u"Terminal=false\n"_s;
    return lines.arg(isName ? m_program : quotedArgument(m_program)).toUtf8();
}
