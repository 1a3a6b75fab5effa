// SPDX-License-Identifier: MIT
#pragma once

#include <CalCalendarStore.h>
#include <FolderCalendarStore.h>
#include <ManualClock.h>

#include <QStringList>
#include <QTemporaryDir>

#include <memory>

// A folder of calendars on disk, for tests of the store that stands on it.
class CalendarFolder final
{
public:
    CalendarFolder();

    // "calendars" in a throw-away folder; not made before the first file is.
    QString root() const;
    // A path below the root.
    QString path(const QString &name) const;
    // Makes the folders on the way. The write is a usual one, in place.
    void write(const QString &name, const QByteArray &bytes) const;
    // As vdirsyncer does it: a temporary file is renamed over the name.
    void writeByRenaming(const QString &name, const QByteArray &bytes) const;
    QByteArray read(const QString &name) const;
    bool remove(const QString &name) const;

    // A store over the root that reads all at once.
    std::unique_ptr<FolderCalendarStore> open() const;
    std::unique_ptr<FolderCalendarStore> openWithoutWatching() const;
    std::unique_ptr<FolderCalendarStore> open(FolderCalendarStore::Options options) const;

    ManualClock &clock() const { return *m_clock; }

private:
    QTemporaryDir m_folder;
    std::unique_ptr<ManualClock> m_clock;
};

// Texts of files.
QByteArray calendarText(const QByteArray &components);
// `lines` are further content lines, each with its line end.
QByteArray eventText(const QByteArray &uid, const QByteArray &summary, const QByteArray &start,
    const QByteArray &lines = "DURATION:PT1H\r\n");
QByteArray taskText(const QByteArray &uid, const QByteArray &summary, const QByteArray &lines = {});

// What queries answer, in short.
CalEventList eventsOn(const FolderCalendarStore &store, QDate day);
CalTaskList allTasks(const FolderCalendarStore &store);
QStringList sortedTitles(const CalEventList &events);
QStringList sortedTitles(const CalTaskList &tasks);
CalTaskPtr taskNamed(const FolderCalendarStore &store, const QString &title);
