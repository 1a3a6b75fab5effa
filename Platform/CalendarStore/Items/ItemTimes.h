// SPDX-License-Identifier: MIT
#pragma once

#include <ICalendarItem.h>

#include <optional>

namespace Items
{

struct ItemTimes {
    ICalendar::CivilTime start;
    ICalendar::CivilTime end; // half-open
};

// When an item by itself takes place, mended where the text says too little: an
// override without a start keeps the place of its occurrence, a day without an end
// lasts that day. Nothing for an item that is at no time at all.
std::optional<ItemTimes> timesOfItem(const ICalendar::Item &item);

// Whether something from `start` to `end` (half-open) takes place in the range from
// `from` to `to`, both of which belong to it. What ends exactly as the range begins
// does not; what has no length does wherever it touches.
bool overlaps(
    ICalendar::UtcSeconds start, ICalendar::UtcSeconds end, ICalendar::UtcSeconds from, ICalendar::UtcSeconds to);

} // namespace Items
