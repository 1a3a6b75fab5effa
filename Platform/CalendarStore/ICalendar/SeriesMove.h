// SPDX-License-Identifier: MIT
#pragma once

#include "SeriesText.h"

#include <QByteArray>

#include <optional>

namespace ICalendar
{

// When an event takes place, as a person sees it.
struct EventTimes {
    bool isAllDay = false;
    // Instants; of an all-day event the first second of its first day, and of the day after its last, by the
    // calendar (in the manner of CivilTime's form Date). The end may be before the start.
    qint64 start = 0;
    qint64 end = 0;

    bool operator==(const EventTimes &) const = default;
};

// What was changed about the times of one occurrence, to be done to the whole series.
struct TimesChange {
    SeriesText::Place place; // which occurrence
    int override = -1; // the item that the times were read from; -1 for the series' own
    EventTimes read;
    EventTimes changed;
    TimeForm timedForm; // for a series of days that gets times of day
};

// The series with its times moved as far as the occurrence was, and made as long. The first occurrence stays the
// first: rules, limits, added and excluded dates and the names of overrides move along. An override with times of
// its own keeps them, unless it is the one that was changed. Nothing when the rule of the series cannot be moved so.
// Notes no change in the components.
std::optional<QByteArray> seriesWithTimesMoved(const SeriesText &series, const TimesChange &change);

// One item by itself (an override, an event that happens once) at other times.
QByteArray itemWithTimes(
    const SeriesText &series, int item, const EventTimes &read, const EventTimes &changed, const TimeForm &timedForm);

} // namespace ICalendar
