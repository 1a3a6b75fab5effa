// SPDX-License-Identifier: MIT
#pragma once

#include "CivilTime.h"

#include <QByteArray>

namespace ICalendar
{

// The values of properties as files hold them: the other way of Values.h. What lies
// outside the years 0000 to 9999 is written as their first or last second.

// RFC 5545, section 3.3.4: "20260311".
QByteArray dateText(CivilSeconds civil);
// Section 3.3.5, without a zone: "20260311T090000".
QByteArray dateTimeText(CivilSeconds civil);
// Section 3.3.5, form 2: "20260311T080000Z".
QByteArray utcText(UtcSeconds instant);
// Section 3.3.6: exact, in hours, minutes and seconds. "-PT15M", "PT24H", "PT0S".
QByteArray durationText(qint64 seconds);
// Days by the calendar: "P1D".
QByteArray dayDurationText(qint64 days);
// In days where nothing is left beside them, exact otherwise.
QByteArray lengthText(qint64 seconds);
// Section 3.3.14: "+0100", with seconds only when there are some.
QByteArray utcOffsetText(int seconds);

// Section 3.8.7.4, of an item whose sequence number was this. The greatest one stays.
QByteArray nextSequenceText(int sequence);

} // namespace ICalendar
