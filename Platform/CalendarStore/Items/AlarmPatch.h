// SPDX-License-Identifier: MIT
#pragma once

#include <CalTypes.h>

namespace ICalendar
{
class TextPatcher;
}

namespace Items
{

// Brings the VALARMs of an event or to-do in line with the alarms of a record. An
// alarm that was read keeps all that a record does not expose; one that the record
// has no longer goes, one that it has newly comes last.
void patchAlarms(
    ICalendar::TextPatcher &patcher, int component, const CalCalendarItem &record, const CalCalendarItem &read);

bool hasOtherAlarms(const CalCalendarItem &record, const CalCalendarItem &read);

// After the patched text was stored: names for each alarm its place there, as if it had just been read.
void renumberAlarms(const CalCalendarItem &record);

} // namespace Items
