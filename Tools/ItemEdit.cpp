// SPDX-License-Identifier: MIT
#include "ItemEdit.h"

#include "FolderOfCalendars.h"
#include "ItemFinder.h"

#include <CalCalendarStore.h>

using namespace Qt::StringLiterals;

namespace
{

using Action = EditOptions::Action;

std::optional<QString> unlessEmpty(const QString &text)
{
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

// Fields of events and to-dos alike; false for another one.
bool setCommonField(CalCalendarItem &item, const QString &field, const QString &value)
{
    if (field == u"title")
        item.setTitle(unlessEmpty(value));
    else if (field == u"notes")
        item.setNotes(unlessEmpty(value));
    else if (field == u"url")
        item.setUrl(value.isEmpty() ? std::nullopt : std::optional(QUrl(value, QUrl::TolerantMode)));
    else
        return false;
    return true;
}

// The whole event moves: it stays as long as it was, days by the calendar.
void moveStart(CalEvent &event, const EditOptions::Moment &start)
{
    const QDateTime before = event.startDate();
    if (event.isAllDay()) {
        const QDate first = start.instant.date();
        event.setEndDate(event.endDate().addDays(before.date().daysTo(first)));
        event.setStartDate(first.startOfDay());
        return;
    }
    event.setStartDate(start.instant);
    event.setEndDate(event.endDate().addSecs(before.secsTo(start.instant)));
}

bool setField(CalEvent &event, const QString &field, const QString &value)
{
    if (setCommonField(event, field, value))
        return true;
    if (field == u"location")
        event.setLocation(unlessEmpty(value));
    else if (field == u"start")
        moveStart(event, *EditOptions::momentOf(value));
    else if (field == u"end")
        event.setEndDate(EditOptions::momentOf(value)->instant);
    else if (field == u"allday")
        event.setIsAllDay(value == u"1");
    else
        return false;
    return true;
}

bool setField(CalTask &task, const QString &field, const QString &value)
{
    if (setCommonField(task, field, value))
        return true;
    if (field == u"due") {
        const auto due = EditOptions::momentOf(value);
        task.setDueDate(due ? std::optional(due->instant) : std::nullopt);
        task.setIsDueDateOnly(due && due->isDay);
    } else if (field == u"priority") {
        task.setPriority(value.toInt());
    } else {
        return false;
    }
    return true;
}

template <typename Record> Result<void> set(CalCalendarStore &store, Record &record, const EditOptions &options)
{
    if (options.field == u"calendar") {
        const CalCalendarPtr calendar = store.calendarWithUID(options.value);
        if (!calendar)
            return Error { u"There is no calendar “%1”."_s.arg(options.value) };
        record.setCalendar(calendar);
        return {};
    }
    if (!setField(record, options.field, options.value))
        return Error { u"“%1” has no field %2."_s.arg(record.title().value_or(QString()), options.field) };
    return {};
}

Result<void> outcome(bool isDone, const StoreError &error)
{
    return isDone ? Result<void>() : Result<void>(Error { error.message() });
}

Result<void> editTask(CalCalendarStore &store, const CalTaskPtr &task, const EditOptions &options)
{
    StoreError error;
    if (options.action == Action::Delete)
        return outcome(store.removeTask_error(task, &error), error);
    if (options.action != Action::Set)
        task->setIsCompleted(options.action == Action::Tick);
    else if (auto result = set(store, *task, options); !result)
        return result;
    return outcome(store.saveTask_error(task, &error), error);
}

Result<void> editEvent(CalCalendarStore &store, const CalEventPtr &event, const EditOptions &options)
{
    const CalSpan span = options.span.value_or(options.occurrence ? CalSpanThisEvent : CalSpanAllEvents);
    if (event->recurrenceRule() && span == CalSpanThisEvent && !options.occurrence) {
        return Error { u"“%1” repeats: name one with --occurrence, or all with --span all."_s.arg(
            event->title().value_or(QString())) };
    }
    StoreError error;
    if (options.action == Action::Delete)
        return outcome(store.removeEvent_span_error(event, span, &error), error);
    if (auto result = set(store, *event, options); !result)
        return result;
    return outcome(store.saveEvent_span_error(event, span, &error), error);
}

} // namespace

Result<void> edit(const FolderOfCalendars &folder, const EditOptions &options, const QDateTime &now)
{
    const CalTaskPtr task = options.occurrence ? nullptr : taskNamed(folder, options.uid);
    if (task)
        return editTask(*folder.store, task, options);
    const bool isOfTask = options.action == Action::Tick || options.action == Action::Untick;
    const CalEventPtr event = isOfTask ? nullptr : eventNamed(folder, options.uid, options.occurrence, now);
    if (event)
        return editEvent(*folder.store, event, options);
    return Error { u"There is no such item: “%1”."_s.arg(options.uid) };
}
