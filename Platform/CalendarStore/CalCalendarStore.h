// SPDX-License-Identifier: MIT
#pragma once

#include "CalCalendar.h"
#include "CalEvent.h"
#include "CalNotification.h"
#include "CalPredicate.h"
#include "CalTask.h"
#include "StoreError.h"

#include <QObject>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

class CalendarStoreBackend;

// The calendar store of the desktop, as one: what all back ends hold, merged.
//
// Every call is answered at once, from what is known: a query never waits for a
// disk or a service. Answers are fresh records, so what is done to them reaches
// nobody else before it is saved. What is not known yet (a large folder is still
// being read, a service starts) is announced by a notification when it is.
//
// Calendars come in a stable order: the user's default calendar first, then
// those whose items can be changed, then the others, each group in its back
// end's own order.
//
// An item's uid is its UID property; for an occurrence of a series its UID and
// its recurrence instant; for an item whose UID an earlier calendar also has, the
// UID and the calendar. Main thread only.
class CalCalendarStore : public QObject
{
    Q_OBJECT

public:
    // Takes the back ends, the best first: its calendars come first within each group.
    explicit CalCalendarStore(std::vector<std::unique_ptr<CalendarStoreBackend>> backends, QObject *parent = nullptr);
    ~CalCalendarStore() override;

    // A back end that is found after the start, and better than those before. What it holds is told by
    // notifications; the store is complete again when the back end is.
    void addBackend(std::unique_ptr<CalendarStoreBackend> backend);

    // Has accounts on servers look for what other machines changed. Returns at once.
    void refresh();

    CalCalendarList calendars() const;
    // Null when the store has no such calendar.
    CalCalendarPtr calendarWithUID(const QString &uid) const;

    // By which name other programs of the desktop know the calendar as a source of this kind of item; empty where
    // they do not know it.
    QString desktopSourceUid(const QString &calendarUid, CalItemKind kind) const;

    // Whether all that the back ends hold has been read.
    bool isComplete() const;

    // Calendars whose service does not answer at this moment, in the order of calendars(). What they hold is
    // still shown as it was last known, so the person is to be told.
    CalCalendarList silentCalendars() const;
    // Whether a service was asked in vain which calendars it has, so that they are not there.
    bool hasUnreachedService() const;

    // Both bounds belong to the range. An event that ends exactly at the start is not in it; one
    // without length is when it lies at the start or the end or between.
    static CalPredicate eventPredicateWithStartDate_endDate_calendars(
        const QDateTime &start, const QDateTime &end, const CalCalendarList &calendars);
    static CalPredicate taskPredicateWithCalendars(const CalCalendarList &calendars);
    // Completed at that instant or later.
    static CalPredicate taskPredicateWithTasksCompletedSince_calendars(
        const QDateTime &since, const CalCalendarList &calendars);
    static CalPredicate taskPredicateWithUncompletedTasks(const CalCalendarList &calendars);

    // One record for each occurrence, sorted by start (all-day first), then title, then uid.
    CalEventList eventsWithPredicate(const CalPredicate &predicate) const;
    // One record for each to-do, in the order of the calendars, then by uid.
    CalTaskList tasksWithPredicate(const CalPredicate &predicate) const;

    // Writes what was changed since the record was read. A record that the store does not hold yet is
    // created in its calendar; one whose calendar was changed is moved. Returns false, fills `error` and
    // leaves the stored item as it was when that is not possible; the record keeps its values either way.
    // After a success the record counts as read anew. `error` may be null.
    bool saveTask_error(const CalTaskPtr &task, StoreError *error);
    // For an event of a series: the shown occurrence alone, or all of them. On an event that happens
    // once both spans do the same. The event sheet saves with the first span and then with the second:
    // a series is then as after one edit of all, and is moved to another calendar by the second only.
    bool saveEvent_span_error(const CalEventPtr &event, CalSpan span, StoreError *error);

    // Removes the stored item and keeps it, so that the removal can be taken back. Returns false and
    // fills `error` when that is not possible; nothing has been removed then. `error` may be null.
    bool removeEvent_span_error(const CalEventPtr &event, CalSpan span, StoreError *error);
    bool removeTask_error(const CalTaskPtr &task, StoreError *error);

    // The title of the item (empty for one without) that was removed last and can be put back;
    // nothing when there is none. Lasts until it is put back or another item is removed.
    std::optional<QString> undoableRemovalTitle() const;
    // Puts that item back exactly as it was. A refusal says why; the removal can be taken back
    // later then. `error` may be null. Fails without a reason when there is nothing to put back.
    bool undoRemoval_error(StoreError *error);

Q_SIGNALS:
    // Never sent from within a call of this class: always from the event loop, bursts merged.
    void notificationPosted(const CalNotification &notification);
    // isComplete() has become true.
    void loaded();
    // undoableRemovalTitle() answers otherwise. Sent from within the call that made it so.
    void undoableRemovalDidChange();
    // silentCalendars() or hasUnreachedService() answers otherwise.
    void silenceDidChange();
    // A change that was saved is not there any more: another program that did not know of it has written over it.
    // Once for each such save.
    void savedChangeWasOverwritten(const StoreError &error);

private:
    void listenTo(CalendarStoreBackend &backend);

    class Private;
    std::unique_ptr<Private> d;
};
