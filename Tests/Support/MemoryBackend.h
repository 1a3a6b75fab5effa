// SPDX-License-Identifier: MIT
#pragma once

#include <CalendarStoreBackend.h>

#include <map>
#include <optional>
#include <utility>

// Calendars that exist in memory alone: tests put items in, take them out and
// tell it what to refuse. Hands out fresh records like any back end.
//
// Changes made here are silent until postChange(); a save or removal announces itself.
// Occurrences of a series are single records that share a plain UID: a span of all
// events changes and removes every one of them.
class MemoryBackend final : public CalendarStoreBackend
{
    Q_OBJECT

public:
    using CalendarStoreBackend::CalendarStoreBackend;

    // Arranging.
    void addCalendar(const CalCalendarPtr &calendar);
    void replaceCalendar(const CalCalendarPtr &calendar); // the one of the same uid, which keeps its items
    void removeCalendar(const QString &uid); // with all its items
    void setHasDeclaredDefault(bool hasDeclaredDefault) { m_hasDeclaredDefault = hasDeclaredDefault; }
    // Items are copied. Their calendar must have been added before.
    void addEvent(const QString &calendarUid, const CalEventPtr &event);
    void addTask(const QString &calendarUid, const CalTaskPtr &task);
    void removeItem(const QString &plainUid); // from every calendar
    void removeItem(const QString &calendarUid, const QString &plainUid);
    void removeAllItems();
    // Also removals and their taking back.
    void refuseSaves(StoreError::Code code, const QString &reason);
    void refuseNextSave(StoreError::Code code, const QString &reason);
    void allowSaves() { m_refusal.reset(); }
    // What a save gives a completed to-do that has no completion date.
    void setCompletionInstant(const QDateTime &instant) { m_completionInstant = instant; }
    // Like a folder that is still being read, until finishLoading(), which announces itself.
    void startLoading() { m_isComplete = false; }
    void finishLoading();
    // These announce themselves.
    void setSilentCalendars(const QStringList &uids);
    void setUnreached(bool isUnreached);

    // Under which name other programs know a calendar of this back end.
    void setDesktopSource(const QString &calendarUid, CalItemKind kind, const QString &source)
    {
        m_desktopSources[{ calendarUid, kind }] = source;
    }

    // Announces from the event loop, as another program's change unless told otherwise.
    void postChange(const CalBackendChange &change);
    void postEventsChange();
    void postTasksChange();
    void postCalendarsChange();

    // Asserting.
    // Null when there is none; the first of a series.
    CalEventPtr storedEvent(const QString &plainUid) const;
    CalTaskPtr storedTask(const QString &plainUid) const;
    int storedEvents() const { return static_cast<int>(m_events.size()); }
    int storedTasks() const { return static_cast<int>(m_tasks.size()); }
    int eventQueries() const { return m_eventQueries; }
    int taskQueries() const { return m_taskQueries; }
    int saves() const { return m_saves; } // also the refused ones
    int removals() const { return m_removals; }
    int refreshes() const { return m_refreshes; }
    // What was to be saved and removed, in order, also what was refused: "this: DUMBY Lunch",
    // "all: Lunch", "task: Buy milk", "remove this: Lunch", "remove task: Buy milk".
    const QStringList &writes() const { return m_writes; }

    CalCalendarList calendars() const override { return m_calendars; }
    bool hasDeclaredDefault() const override { return m_hasDeclaredDefault; }
    bool isComplete() const override { return m_isComplete; }
    QStringList silentCalendars() const override { return m_silentCalendars; }
    bool isUnreached() const override { return m_isUnreached; }
    void refresh() override { ++m_refreshes; }
    QString desktopSourceUid(const QString &calendarUid, CalItemKind kind) const override
    {
        const auto found = m_desktopSources.find({ calendarUid, kind });
        return found == m_desktopSources.end() ? QString() : found->second;
    }
    bool holdsUid(const QString &calendarUid, const QString &plainUid) const override;
    CalEventList events(const QDateTime &start, const QDateTime &end, const CalCalendarList &calendars) const override;
    CalTaskList tasks(TaskState state, const QDateTime &since, const CalCalendarList &calendars) const override;
    Result<void, StoreError> saveEvent(CalEvent &event, CalSpan span) override;
    Result<void, StoreError> saveTask(CalTask &task) override;
    Result<std::unique_ptr<CalRemoval>, StoreError> removeEvent(const CalEvent &event, CalSpan span) override;
    Result<std::unique_ptr<CalRemoval>, StoreError> removeTask(const CalTask &task) override;

private:
    class Removal;

    template <typename Record>
    std::optional<StoreError> reasonToRefuse(const Record &item, const QList<std::shared_ptr<Record>> &held);
    template <typename Record> void create(Record &item, QList<std::shared_ptr<Record>> &held);
    std::optional<StoreError> takeRefusal(const CalCalendarItem &item);
    void saveAllOfSeries(const CalEvent &event);
    void announceOwn(const CalCalendarItem &item, const QSet<QString> &calendarUids);
    CalCalendarPtr calendarWithUid(const QString &uid) const;

    CalCalendarList m_calendars;
    CalEventList m_events;
    CalTaskList m_tasks;
    bool m_hasDeclaredDefault = false;
    bool m_isComplete = true;
    QStringList m_silentCalendars;
    bool m_isUnreached = false;
    std::map<std::pair<QString, CalItemKind>, QString> m_desktopSources;
    std::optional<StoreError> m_refusal;
    bool m_refusesOnce = false;
    QDateTime m_completionInstant = QDateTime(QDate(2026, 3, 11), QTime(12, 0));
    int m_lastVersion = 0;
    mutable int m_eventQueries = 0;
    mutable int m_taskQueries = 0;
    int m_saves = 0;
    int m_removals = 0;
    int m_refreshes = 0;
    QStringList m_writes;
};
