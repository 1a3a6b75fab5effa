// SPDX-License-Identifier: MIT
#include "ItemTimes.h"

namespace Items
{

using ICalendar::CivilTime;
using ICalendar::Item;
using ICalendar::UtcSeconds;

std::optional<ItemTimes> timesOfItem(const Item &item)
{
    constexpr qint64 secondsPerDay = 86400;

    if (item.start && item.end)
        return ItemTimes { *item.start, *item.end };
    const std::optional<CivilTime> start = item.start ? item.start : item.repetition->recurrenceId;
    if (!start)
        return std::nullopt;
    ItemTimes times { *start, item.end.value_or(*start) };
    if (!item.end) {
        times.end.civil += item.durationDays * secondsPerDay + item.durationSeconds;
        if (start->isDate() && times.end.civil <= times.start.civil)
            times.end.civil = times.start.civil + secondsPerDay;
    }
    return times;
}

bool overlaps(UtcSeconds start, UtcSeconds end, UtcSeconds from, UtcSeconds to)
{
    if (end <= start)
        return start >= from && start <= to;
    return start <= to && end > from;
}

} // namespace Items
