// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

CalendarFolder::CalendarFolder()
    : m_clock(std::make_unique<ManualClock>(QDateTime(QDate(2026, 3, 11), QTime(12, 0))))
{
}

QString CalendarFolder::root() const
{
    return m_folder.filePath(u"calendars"_s);
}

QString CalendarFolder::path(const QString &name) const
{
    return root() + u'/' + name;
}

void CalendarFolder::write(const QString &name, const QByteArray &bytes) const
{
    QDir().mkpath(QFileInfo(path(name)).path());
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
        qFatal("The file of a test cannot be written: %ls", qUtf16Printable(file.errorString()));
}

void CalendarFolder::writeByRenaming(const QString &name, const QByteArray &bytes) const
{
    const QString temporary = name + u".tmp"_s;
    write(temporary, bytes);
    if (::rename(QFile::encodeName(path(temporary)).constData(), QFile::encodeName(path(name)).constData()) != 0)
        qFatal("The file of a test cannot be renamed");
}

QByteArray CalendarFolder::read(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool CalendarFolder::remove(const QString &name) const
{
    return QFile::remove(path(name));
}

std::unique_ptr<FolderCalendarStore> CalendarFolder::open() const
{
    return open({});
}

std::unique_ptr<FolderCalendarStore> CalendarFolder::openWithoutWatching() const
{
    FolderCalendarStore::Options options;
    options.watchesForChanges = false;
    return open(options);
}

std::unique_ptr<FolderCalendarStore> CalendarFolder::open(FolderCalendarStore::Options options) const
{
    options.root = root();
    return std::make_unique<FolderCalendarStore>(options, clock());
}

QByteArray calendarText(const QByteArray &components)
{
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//test//test//EN\r\n" + components + "END:VCALENDAR\r\n";
}

QByteArray eventText(const QByteArray &uid, const QByteArray &summary, const QByteArray &start, const QByteArray &lines)
{
    return "BEGIN:VEVENT\r\nUID:" + uid + "\r\nDTSTAMP:20260101T000000Z\r\nDTSTART"
        + (start.size() == 8 ? ";VALUE=DATE:" : ":") + start + "\r\nSUMMARY:" + summary + "\r\n" + lines
        + "END:VEVENT\r\n";
}

QByteArray taskText(const QByteArray &uid, const QByteArray &summary, const QByteArray &lines)
{
    return "BEGIN:VTODO\r\nUID:" + uid + "\r\nDTSTAMP:20260101T000000Z\r\nSUMMARY:" + summary + "\r\n" + lines
        + "END:VTODO\r\n";
}

CalEventList eventsOn(const FolderCalendarStore &store, QDate day)
{
    return store.events(QDateTime(day, QTime(0, 0)), QDateTime(day, QTime(23, 59, 59)), store.calendars());
}

CalTaskList allTasks(const FolderCalendarStore &store)
{
    return store.tasks(CalendarStoreBackend::TaskState::Any, {}, store.calendars());
}

QStringList sortedTitles(const CalEventList &events)
{
    QStringList titles;
    for (const CalEventPtr &event : events)
        titles << event->title().value_or(u"(none)"_s);
    titles.sort();
    return titles;
}

QStringList sortedTitles(const CalTaskList &tasks)
{
    QStringList titles;
    for (const CalTaskPtr &task : tasks)
        titles << task->title().value_or(u"(none)"_s);
    titles.sort();
    return titles;
}

CalTaskPtr taskNamed(const FolderCalendarStore &store, const QString &title)
{
    const CalTaskList tasks = allTasks(store);
    const auto found = std::ranges::find(tasks, std::optional(title), [](const auto &task) { return task->title(); });
    return found == tasks.end() ? nullptr : *found;
}
