// SPDX-License-Identifier: MIT
#pragma once

#include <ICalendarItem.h>

namespace Fuzzing
{

// Whether two readings of an item tell the same, but for the title and the number of the
// change, which a change of the title alters.
bool isSameButForTitle(const ICalendar::Item &left, const ICalendar::Item &right);

bool isSame(const ICalendar::Item &left, const ICalendar::Item &right);

} // namespace Fuzzing
