// SPDX-License-Identifier: MIT
#pragma once

#include <CivilTime.h>

#include <QByteArray>

namespace ICalendar
{
class TextPatcher;
}

namespace Items
{

// A time as a property holds it.
struct TimeValue {
    QByteArray value;
    QByteArray parameters; // ";TZID=…", or empty
};

// An instant in the zone of the process, so that it stays at its place on the clock
// when the event is made to repeat. The text gets the zone's VTIMEZONE, unless it has
// one of that name: then that is the one meant. In UTC where the zone has no name, or
// where no VTIMEZONE of ours would say the right time at that instant.
TimeValue localTimeValue(ICalendar::TextPatcher &patcher, int component, ICalendar::UtcSeconds instant);

} // namespace Items
