// SPDX-License-Identifier: MIT
#pragma once

#include "CalendarStoreBackend.h"

#include <QString>

#include <chrono>
#include <memory>
#include <optional>

class Clock;

namespace FolderStore
{
class FileCalls;
}

// Calendars in a folder: the "vdir" layout that khal, todoman and vdirsyncer share.
//
// Each folder below the root is a calendar of one-item .ics files; `color`,
// `displayname` and `order` describe it. A single .ics file in the root is a
// calendar that cannot be changed. Linked folders are followed. The folder is
// watched, and what other programs change is taken in as it happens.
class FolderCalendarStore final : public CalendarStoreBackend
{
    Q_OBJECT

public:
    struct Options {
        QString root; // $XDG_DATA_HOME/calendars, normally
        // Whether to make "Home" and "Work" in a root that is missing or holds nothing.
        bool createsDefaultCalendars = false;
        // How long the opening call may read; the rest is read by a worker and announced. Nothing: read all at once.
        std::optional<std::chrono::milliseconds> readingBudget;
        bool watchesForChanges = true;
    };

    FolderCalendarStore(Options options, Clock &clock, QObject *parent = nullptr);
    // Writes by these calls of the system, which outlive the store.
    FolderCalendarStore(Options options, Clock &clock, FolderStore::FileCalls &calls, QObject *parent = nullptr);
    ~FolderCalendarStore() override;

    // Makes "Home" and "Work" in a root that is missing or holds nothing: for when it turns out later that
    // nothing else has calendars. They are announced.
    void createDefaultCalendars();

    CalCalendarList calendars() const override;
    bool hasDeclaredDefault() const override;
    bool isComplete() const override;
    bool holdsUid(const QString &calendarUid, const QString &plainUid) const override;
    CalEventList events(const QDateTime &start, const QDateTime &end, const CalCalendarList &calendars) const override;
    CalTaskList tasks(TaskState state, const QDateTime &since, const CalCalendarList &calendars) const override;
    Result<void, StoreError> saveEvent(CalEvent &event, CalSpan span) override;
    Result<void, StoreError> saveTask(CalTask &task) override;
    Result<std::unique_ptr<CalRemoval>, StoreError> removeEvent(const CalEvent &event, CalSpan span) override;
    Result<std::unique_ptr<CalRemoval>, StoreError> removeTask(const CalTask &task) override;
    Result<std::unique_ptr<CalDeparture>, StoreError> sendEvent(CalEvent &event, CalSpan span) override;
    Result<std::unique_ptr<CalDeparture>, StoreError> sendTask(CalTask &task) override;
    Result<void, StoreError> takeInEvent(CalEvent &event, const QByteArray &text) override;
    Result<void, StoreError> takeInTask(CalTask &task, const QByteArray &text) override;

private:
    void open();

    class Private;
    std::unique_ptr<Private> d;
};
