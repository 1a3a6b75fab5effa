// SPDX-License-Identifier: MIT
#pragma once

#include "CivilTime.h"

namespace ICalendar
{

constexpr qint64 secondsPerMinute = 60;
constexpr qint64 secondsPerHour = 3600;
constexpr qint64 secondsPerDay = 86400;
constexpr int daysPerWeek = 7;

// Days since 1970-01-01 in the Gregorian calendar, continued before its introduction.
using DayNumber = qint64;

struct YearMonthDay {
    int year = 1970;
    int month = 1; // 1 to 12
    int day = 1; // 1 to 31
};

constexpr qint64 floorDivided(qint64 dividend, qint64 divisor)
{
    return dividend / divisor - (dividend % divisor < 0 ? 1 : 0);
}

constexpr DayNumber dayOf(CivilSeconds civil)
{
    return floorDivided(civil, secondsPerDay);
}

// Seconds since midnight.
constexpr int timeOfDay(CivilSeconds civil)
{
    return static_cast<int>(civil - dayOf(civil) * secondsPerDay);
}

constexpr bool isLeapYear(int year)
{
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

constexpr int daysInYear(int year)
{
    return isLeapYear(year) ? 366 : 365;
}

constexpr int daysInMonth(int year, int month)
{
    constexpr int days[] = { 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31 };
    return month == 2 && isLeapYear(year) ? 29 : days[month - 1];
}

// Both ways count years from 1 March, so that the leap day comes last, in eras of 400 years.
constexpr DayNumber dayNumber(int year, int month, int day)
{
    const qint64 shifted = month <= 2 ? year - 1 : year;
    const qint64 era = floorDivided(shifted, 400);
    const qint64 yearOfEra = shifted - era * 400;
    const qint64 dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
    return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719468;
}

constexpr YearMonthDay yearMonthDay(DayNumber number)
{
    const qint64 shifted = number + 719468;
    const qint64 era = floorDivided(shifted, 146097);
    const qint64 dayOfEra = shifted - era * 146097;
    const qint64 yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const qint64 dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const qint64 month = (5 * dayOfYear + 2) / 153;
    YearMonthDay result;
    result.day = static_cast<int>(dayOfYear - (153 * month + 2) / 5 + 1);
    result.month = static_cast<int>(month < 10 ? month + 3 : month - 9);
    result.year = static_cast<int>(yearOfEra + era * 400 + (result.month <= 2 ? 1 : 0));
    return result;
}

// 0 Sunday to 6 Saturday.
constexpr int weekday(DayNumber number)
{
    return static_cast<int>(((number + 4) % daysPerWeek + daysPerWeek) % daysPerWeek);
}

} // namespace ICalendar
