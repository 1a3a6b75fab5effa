// SPDX-License-Identifier: MIT
#include "ValueTexts.h"

#include "CivilDate.h"

#include <QStringBuilder>

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace ICalendar
{

namespace
{

constexpr CivilSeconds firstSecond = dayNumber(1, 1, 1) * secondsPerDay;
constexpr CivilSeconds lastSecond = dayNumber(10'000, 1, 1) * secondsPerDay - 1;

QByteArray padded(qint64 number, int width)
{
    return QByteArray::number(number).rightJustified(width, '0');
}

QByteArray timeText(int secondOfDay)
{
    return padded(secondOfDay / secondsPerHour, 2) + padded(secondOfDay / secondsPerMinute % 60, 2)
        + padded(secondOfDay % secondsPerMinute, 2);
}

} // namespace

QByteArray dateText(CivilSeconds civil)
{
    const YearMonthDay date = yearMonthDay(dayOf(std::clamp(civil, firstSecond, lastSecond)));
    return padded(date.year, 4) + padded(date.month, 2) + padded(date.day, 2);
}

QByteArray dateTimeText(CivilSeconds civil)
{
    return dateText(civil) + 'T' + timeText(timeOfDay(std::clamp(civil, firstSecond, lastSecond)));
}

QByteArray utcText(UtcSeconds instant)
{
    return dateTimeText(instant) + 'Z';
}

QByteArray durationText(qint64 seconds)
{
    const QByteArray sign = seconds < 0 ? "-" : "";
    const qint64 length = std::abs(seconds);
    QByteArray text = sign + "PT";
    if (length >= secondsPerHour)
        text += QByteArray::number(length / secondsPerHour) + 'H';
    // RFC 5545 lets no unit be skipped between two others.
    const qint64 minutes = length / secondsPerMinute % 60;
    const qint64 rest = length % secondsPerMinute;
    if (minutes > 0 || (length >= secondsPerHour && rest > 0))
        text += QByteArray::number(minutes) + 'M';
    if (rest > 0 || length == 0)
        text += QByteArray::number(rest) + 'S';
    return text;
}

QByteArray dayDurationText(qint64 days)
{
    return (days < 0 ? "-P" : "P") + QByteArray::number(std::abs(days)) + 'D';
}

QByteArray lengthText(qint64 seconds)
{
    const bool isDays = seconds != 0 && seconds % secondsPerDay == 0;
    return isDays ? dayDurationText(seconds / secondsPerDay) : durationText(seconds);
}

QByteArray utcOffsetText(int seconds)
{
    const int distance = std::abs(seconds);
    const QByteArray text = timeText(distance);
    return (seconds < 0 ? "-" : "+") + (distance % secondsPerMinute == 0 ? text.first(4) : text);
}

QByteArray nextSequenceText(int sequence)
{
    return QByteArray::number(sequence < std::numeric_limits<int>::max() ? sequence + 1 : sequence);
}

} // namespace ICalendar
