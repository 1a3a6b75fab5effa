// SPDX-License-Identifier: MIT
#pragma once

#include "CalCalendar.h"
#include "CalDeparture.h"
#include "CalEvent.h"
#include "CalRemoval.h"
#include "CalTask.h"
#include "StoreError.h"

#include <Result.h>

#include <QObject>
#include <QSet>
#include <QStringList>

#include <memory>

// What changed in a back end, and by whose hand.
struct CalBackendChange {
    enum class Author { Ourselves, Others };

    Author author = Author::Others;
    bool calendars = false; // the list of calendars or what describes them
    bool events = false;
    bool tasks = false;
    QSet<QString> calendarUids;
};
Q_DECLARE_METATYPE(CalBackendChange)

// One source of calendars behind CalCalendarStore.
//
// Answers every question at once from memory. Records that it hands out carry
// their origin and are marked as read; their uid is left empty, for the store
// gives it (only the store knows all calendars). Calendars are named by the uid
// that the back end itself gave them. Main thread only.
class CalendarStoreBackend : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    enum class TaskState { Any, Uncompleted, CompletedSince };

    // In the back end's own order. The default calendar, if it has one, is the first.
    virtual CalCalendarList calendars() const = 0;
    // Whether the first calendar is one that the user declared as the default.
    virtual bool hasDeclaredDefault() const = 0;
    virtual bool isComplete() const = 0;
    // The uids of those calendars whose service does not answer at this moment. What they hold is shown as it was last
    // known.
    virtual QStringList silentCalendars() const { return {}; }
    // Whether a service of this back end was asked in vain which calendars it has, ever since the start.
    virtual bool isUnreached() const { return false; }

    // Has accounts look at what their servers hold by now. Returns at once; what is new is told by changed().
    virtual void refresh() { }

    // By which name other programs of the desktop know the calendar as a source of this kind of item; empty where
    // they do not know it.
    virtual QString desktopSourceUid(const QString & /*calendarUid*/, CalItemKind /*kind*/) const { return {}; }

    // Whether a calendar holds an item with this UID property, of either kind.
    virtual bool holdsUid(const QString &calendarUid, const QString &plainUid) const = 0;

    // Occurrences in a range, in any order; bounds as in CalCalendarStore. Unknown calendars hold nothing.
    virtual CalEventList events(
        const QDateTime &start, const QDateTime &end, const CalCalendarList &calendars) const = 0;
    // `since` counts only for CompletedSince.
    virtual CalTaskList tasks(TaskState state, const QDateTime &since, const CalCalendarList &calendars) const = 0;

    // Writes what was changed since the record was read. A record whose origin is not stored is a
    // new item and is created in its calendar(); one whose calendar() is another than it was read from
    // is moved. On success the record's origin is that of the stored item, and the record counts as
    // read anew, but for the first step of a series' two-step save: its record keeps the values as
    // read until the second step, with CalSpanAllEvents, has succeeded.
    virtual Result<void, StoreError> saveEvent(CalEvent &event, CalSpan span) = 0;
    virtual Result<void, StoreError> saveTask(CalTask &task) = 0;

    // Removes the stored item, from the calendar in which it was read. A refusal leaves it as it is.
    virtual Result<std::unique_ptr<CalRemoval>, StoreError> removeEvent(const CalEvent &event, CalSpan span) = 0;
    virtual Result<std::unique_ptr<CalRemoval>, StoreError> removeTask(const CalTask &task) = 0;

    // Between back ends an item goes as text: the one that holds it sends it, the one whose calendar the record
    // names takes it in, and only then it leaves the first. A back end that does neither keeps what is written here,
    // which refuses.

    // A record of this back end whose calendar() is another back end's is saved with that span. Nothing is written;
    // but the first step of a save in two is done here, in the calendar from which the record was read, and answered
    // with null: the item moves with the second. Refused as a save would be, which takes a first step back.
    virtual Result<std::unique_ptr<CalDeparture>, StoreError> sendEvent(CalEvent &event, CalSpan span);
    virtual Result<std::unique_ptr<CalDeparture>, StoreError> sendTask(CalTask &task);
    // Stores such a text, to the byte where the back end keeps texts, as a new item in calendar(), under the UID that
    // it has. Refused when the calendar holds that UID. On success the record counts as read from here.
    virtual Result<void, StoreError> takeInEvent(CalEvent &event, const QByteArray &text);
    virtual Result<void, StoreError> takeInTask(CalTask &task, const QByteArray &text);

Q_SIGNALS:
    // Sent from the event loop, never from within a call; bursts merged.
    void changed(const CalBackendChange &change);
    void loaded();
    // silentCalendars() or isUnreached() answers otherwise.
    void silenceDidChange();
    // What a save has acknowledged was overwritten a moment later, by somebody who did not know of it: it is not there.
    // Sent from the event loop, once for each such save.
    void overwritten(const StoreError &error);
};
