// SPDX-License-Identifier: MIT
#pragma once

#include "CivilTime.h"

#include <QByteArrayView>
#include <QString>

#include <optional>

namespace ICalendar
{

// The values of properties (RFC 5545, section 3.3). All are read leniently, and
// nothing is what cannot be understood.

// A date or date-time by the calendar and the clock, before its zone is known.
struct DateTimeValue {
    CivilSeconds civil = 0;
    bool isDate = false;
    bool isUtc = false;
};
// Besides the standard's own form: dashes, colons and blanks, lower case, missing
// seconds, an offset instead of Z, 24:00:00 as the next day's midnight and a leap second as the one before it.
std::optional<DateTimeValue> parsedDateTime(QByteArrayView text);

// A length of time: days by the calendar, then seconds (section 3.3.6).
struct DurationValue {
    qint64 days = 0;
    qint64 seconds = 0;
};
std::optional<DurationValue> parsedDuration(QByteArrayView text);

// Seconds east of Greenwich, from "+0100" or "-053028".
std::optional<int> parsedUtcOffset(QByteArrayView text);

std::optional<qint64> parsedInteger(QByteArrayView text);

// Bytes that are not UTF-8 are taken for Latin-1, or shown as replacement characters among UTF-8.
QString decoded(QByteArrayView bytes);
// Without the escapes of section 3.3.11.
QString parsedText(QByteArrayView text);

} // namespace ICalendar
