// SPDX-License-Identifier: MIT
#include "Refusal.h"

#include <CalEvent.h>
#include <CalTask.h>

#include <QCoreApplication>

namespace Items
{

namespace
{

using Code = StoreError::Code;

std::shared_ptr<const CalCalendarItem> asRead(const CalCalendarItem &record)
{
    if (const auto *const event = dynamic_cast<const CalEvent *>(&record))
        return event->asRead();
    if (const auto *const task = dynamic_cast<const CalTask *>(&record))
        return task->asRead();
    return nullptr;
}

} // namespace

StoreError refusal(const CalCalendarItem &record, StoreError::Code code, const QString &reason)
{
    const auto read = asRead(record);
    StoreError error;
    error.code = code;
    error.item = (read ? read->title() : record.title()).value_or(QString());
    error.calendar = record.calendar() ? record.calendar()->title() : QString();
    error.reason = reason;
    return error;
}

StoreError changedElsewhere(const CalCalendarItem &record)
{
    return refusal(record, Code::Conflict,
        QCoreApplication::translate("Vantle", "Another program has changed it meanwhile. That version was kept."));
}

StoreError overwrittenElsewhere(const CalCalendarItem &record)
{
    return refusal(record, Code::Conflict,
        QCoreApplication::translate(
            "Vantle", "Another program has overwritten the change a moment later. Its version was kept."));
}

StoreError goneElsewhere(const CalCalendarItem &record)
{
    return refusal(record, Code::NotFound,
        QCoreApplication::translate("Vantle", "Another program has removed or renamed it meanwhile."));
}

StoreError calendarGone(const CalCalendarItem &record)
{
    return refusal(
        record, Code::NotFound, QCoreApplication::translate("Vantle", "The calendar is not there any more."));
}

StoreError calendarUnchangeable(const CalCalendarItem &record)
{
    return refusal(record, Code::ReadOnly, QCoreApplication::translate("Vantle", "The calendar cannot be changed."));
}

StoreError withoutTimes(const CalCalendarItem &record)
{
    return refusal(record, Code::Invalid, QCoreApplication::translate("Vantle", "An event needs a start and an end."));
}

StoreError identifierTaken(const CalCalendarItem &record)
{
    return refusal(record, Code::Conflict,
        QCoreApplication::translate("Vantle", "The calendar already holds an item with the same identifier."));
}

StoreError damaged(const CalCalendarItem &record)
{
    return refusal(
        record, Code::Unreadable, QCoreApplication::translate("Vantle", "Its file is damaged and was left as it is."));
}

StoreError thereAgain(const CalCalendarItem &record)
{
    return refusal(record, Code::Conflict, QCoreApplication::translate("Vantle", "It is there again already."));
}

} // namespace Items
