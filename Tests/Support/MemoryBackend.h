// SPDX-License-Identifier: MIT
#pragma once

#include <CalendarStoreBackend.h>

#include <optional>

// Calendars that exist in memory alone: tests put items in, take them out and
// tell it what to refuse. Hands out fresh records like any back end.
//
// Changes made here are silent until postChange(); a save announces itself.
class MemoryBackend final : public CalendarStoreBackend
{
    Q_OBJECT

public:
    using CalendarStoreBackend::CalendarStoreBackend;

    // Arranging.
    void addCalendar(const CalCalendarPtr &calendar);
    void removeCalendar(const QString &uid); // with all its items
    void setHasDeclaredDefault(bool hasDeclaredDefault) { m_hasDeclaredDefault = hasDeclaredDefault; }
    // Items are copied. Their calendar must have been added before.
    void addEvent(const QString &calendarUid, const CalEventPtr &event);
    void addTask(const QString &calendarUid, const CalTaskPtr &task);
    void removeItem(const QString &plainUid);
    void removeAllItems();
    void refuseSaves(StoreError::Code code, const QString &reason);
    void allowSaves() { m_refusal.reset(); }
    // What a save gives a completed to-do that has no completion date.
    void setCompletionInstant(const QDateTime &instant) { m_completionInstant = instant; }
    // Like a folder that is still being read, until finishLoading(), which announces itself.
    void startLoading() { m_isComplete = false; }
    void finishLoading();

    // Announces from the event loop, as another program's change unless told otherwise.
    void postChange(const CalBackendChange &change);
    void postEventsChange();
    void postTasksChange();
    void postCalendarsChange();

    // Asserting.
    CalTaskPtr storedTask(const QString &plainUid) const; // null when there is none
    int eventQueries() const { return m_eventQueries; }
    int taskQueries() const { return m_taskQueries; }
    int saves() const { return m_saves; } // also the refused ones

    CalCalendarList calendars() const override { return m_calendars; }
    bool hasDeclaredDefault() const override { return m_hasDeclaredDefault; }
    bool isComplete() const override { return m_isComplete; }
    bool holdsUid(const QString &calendarUid, const QString &plainUid) const override;
    CalEventList events(const QDateTime &start, const QDateTime &end, const CalCalendarList &calendars) const override;
    CalTaskList tasks(TaskState state, const QDateTime &since, const CalCalendarList &calendars) const override;
    Result<void, StoreError> saveTask(CalTask &task) override;

private:
    CalCalendarPtr calendarWithUid(const QString &uid) const;

    CalCalendarList m_calendars;
    CalEventList m_events;
    CalTaskList m_tasks;
    bool m_hasDeclaredDefault = false;
    bool m_isComplete = true;
    std::optional<StoreError> m_refusal;
    QDateTime m_completionInstant = QDateTime(QDate(2026, 3, 11), QTime(12, 0));
    int m_lastVersion = 0;
    mutable int m_eventQueries = 0;
    mutable int m_taskQueries = 0;
    int m_saves = 0;
};
