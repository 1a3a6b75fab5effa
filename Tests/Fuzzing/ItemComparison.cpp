// SPDX-License-Identifier: MIT
#include "ItemComparison.h"

#include <algorithm>
#include <tuple>

namespace Fuzzing
{

namespace
{

using namespace ICalendar;

bool isSameAlarm(const Alarm &left, const Alarm &right)
{
    const auto values = [](const Alarm &alarm) {
        return std::tie(alarm.action, alarm.sound, alarm.emailAddress, alarm.url, alarm.relativeTrigger,
            alarm.relatedToEnd, alarm.absoluteTrigger);
    };
    return values(left) == values(right);
}

bool isSameAttendee(const Attendee &left, const Attendee &right)
{
    return left.commonName == right.commonName && left.address == right.address && left.status == right.status;
}

bool isSameAddedDate(const AddedDate &left, const AddedDate &right)
{
    return left.start == right.start && left.end == right.end;
}

auto plainValues(const Item &item)
{
    return std::tie(item.kind, item.component, item.uid, item.repetition->recurrenceId, *item.description, *item.url,
        item.location, item.isCancelled, item.start, item.end, item.durationDays, item.durationSeconds,
        item.hasDuration, item.repetition->rules, item.repetition->excluded, item.toDo->due, item.toDo->completed,
        item.toDo->isCompleted, item.toDo->priority);
}

} // namespace

bool isSameButForTitle(const Item &left, const Item &right)
{
    return plainValues(left) == plainValues(right) && std::ranges::equal(*left.alarms, *right.alarms, isSameAlarm)
        && std::ranges::equal(*left.attendees, *right.attendees, isSameAttendee)
        && std::ranges::equal(left.repetition->added, right.repetition->added, isSameAddedDate);
}

bool isSame(const Item &left, const Item &right)
{
    return left.summary == right.summary && left.sequence == right.sequence && isSameButForTitle(left, right);
}

} // namespace Fuzzing
