// SPDX-License-Identifier: MIT
#include "DesktopEntries.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{

constexpr qint64 largestFile = 4 * 1024 * 1024; // bytes

// The values of one group of a file of groups; of two equal keys the first counts.
QHash<QString, QString> groupOf(const QString &path, const QString &group)
{
    QFile file(path);
    QHash<QString, QString> values;
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly) || file.size() > largestFile)
        return values;
    bool isInGroup = false;
    for (const QString &line : QString::fromUtf8(file.readAll()).split(u'\n')) {
        const QString trimmed = line.trimmed();
        if (trimmed.startsWith(u'['))
            isInGroup = trimmed == QString(u'[' + group + u']');
        else if (const qsizetype equals = trimmed.indexOf(u'='); isInGroup && equals > 0 && !trimmed.startsWith(u'#')) {
            const QString key = trimmed.left(equals).trimmed();
            if (!values.contains(key))
                values.insert(key, trimmed.mid(equals + 1).trimmed());
        }
    }
    return values;
}

QStringList listOf(const QString &value)
{
    return value.split(u';', Qt::SkipEmptyParts);
}

// A string value's own escapes.
QString unescaped(const QString &value)
{
    QString result;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value.at(i) != u'\\' || i + 1 == value.size()) {
            result += value.at(i);
            continue;
        }
        const QChar next = value.at(++i);
        result += next == u's' ? QChar(u' ') : next == u'n' ? QChar(u'\n') : next == u't' ? QChar(u'\t') : next;
    }
    return result;
}

// An Exec line's arguments; in quotes a backslash takes the next sign as it is.
QStringList argumentsOf(const QString &line)
{
    QStringList arguments;
    QString argument;
    bool hasArgument = false;
    bool isQuoted = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar character = line.at(i);
        if (isQuoted && character == u'\\' && i + 1 < line.size()) {
            argument += line.at(++i);
        } else if (character == u'"') {
            isQuoted = !isQuoted;
            hasArgument = true;
        } else if (character.isSpace() && !isQuoted) {
            if (hasArgument)
                arguments << argument;
            argument.clear();
            hasArgument = false;
        } else {
            argument += character;
            hasArgument = true;
        }
    }
    if (hasArgument)
        arguments << argument;
    return arguments;
}

bool isProgramThere(const QString &program)
{
    return !QStandardPaths::findExecutable(program).isEmpty();
}

} // namespace

QStringList DesktopEntry::command(const QString &address) const
{
    QStringList result;
    for (const QString &argument : arguments) {
        // Codes stand alone; files and addresses are the ones that have a value here.
        if (argument.size() == 2 && argument.at(0) == u'%' && argument != u"%%"_s) {
            const bool takesAddress = u"uUfF"_s.contains(argument.at(1));
            if (takesAddress && !address.isEmpty())
                result << address;
        } else {
            result << QString(argument).replace(u"%%"_s, u"%"_s);
        }
    }
    return result;
}

DesktopEntries::Folders DesktopEntries::Folders::ofPerson()
{
    return { QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation),
        QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation),
        qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':', Qt::SkipEmptyParts) };
}

DesktopEntries::DesktopEntries(Folders folders)
    : m_folders(std::move(folders))
{
}

std::optional<DesktopEntry> DesktopEntries::handler(const QString &type) const
{
    for (const QString &id : chosenIds(type)) {
        if (auto found = entry(id))
            return found;
    }
    return std::nullopt;
}

QStringList DesktopEntries::chosenIds(const QString &type) const
{
    QStringList names;
    for (const QString &desktop : m_folders.desktops)
        names << desktop.toLower() + u"-mimeapps.list"_s;
    names << u"mimeapps.list"_s;

    QStringList chosen;
    QStringList added;
    QStringList removed;
    for (const QString &folder : m_folders.configurations + m_folders.applications) {
        for (const QString &name : names) {
            const QString path = folder + u'/' + name;
            chosen += listOf(groupOf(path, u"Default Applications"_s).value(type));
            added += listOf(groupOf(path, u"Added Associations"_s).value(type));
            removed += listOf(groupOf(path, u"Removed Associations"_s).value(type));
        }
    }
    for (const QString &folder : m_folders.applications) {
        for (const QString &id : listOf(groupOf(folder + u"/mimeinfo.cache"_s, u"MIME Cache"_s).value(type))) {
            if (!removed.contains(id))
                added << id;
        }
    }
    return chosen + added;
}

std::optional<DesktopEntry> DesktopEntries::entry(const QString &id) const
{
    // An id is a file name; one with a path in it would lead elsewhere.
    if (id.contains(u'/'))
        return std::nullopt;
    for (const QString &folder : m_folders.applications) {
        const QString path = folder + u'/' + id;
        if (!QFileInfo::exists(path))
            continue;
        // The first one found covers the others, also when it hides the program.
        const QHash<QString, QString> values = groupOf(path, u"Desktop Entry"_s);
        const QStringList arguments = argumentsOf(unescaped(values.value(u"Exec"_s)));
        const QString needed = unescaped(values.value(u"TryExec"_s));
        if (values.value(u"Hidden"_s) == u"true"_s || arguments.isEmpty() || !isProgramThere(arguments.first())
            || (!needed.isEmpty() && !isProgramThere(needed)))
            return std::nullopt;
        return DesktopEntry { id, arguments };
    }
    return std::nullopt;
}
