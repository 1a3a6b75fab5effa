// SPDX-License-Identifier: MIT
#include "RuleWalker.h"

#include <algorithm>
#include <bit>

namespace ICalendar
{

namespace
{

constexpr int lastYear = 9999;
constexpr int monthsPerYear = 12;

// Days looked at and instances made. A rule that needs more within one walk is no rule that a calendar means.
constexpr qint64 mostWork = 300'000;

qint64 ceilDivided(qint64 dividend, qint64 divisor)
{
    return -floorDivided(-dividend, divisor);
}

bool contains(const std::vector<int> &sorted, int value)
{
    return std::ranges::binary_search(sorted, value);
}

bool allows(const std::vector<int> &sorted, int value)
{
    return sorted.empty() || contains(sorted, value);
}

int weekYear(DayNumber day, int weekStart)
{
    const int year = yearMonthDay(day).year;
    if (day < firstWeekBegin(year, weekStart))
        return year - 1;
    return day < firstWeekBegin(year + 1, weekStart) ? year : year + 1;
}

} // namespace

DayNumber firstWeekBegin(int year, int weekStart)
{
    const DayNumber fourth = dayNumber(year, 1, 4);
    return fourth - (weekday(fourth) - weekStart + daysPerWeek) % daysPerWeek;
}

RuleWalker::RuleWalker(const RecurrenceRule &rule, CivilSeconds start, bool isDate)
    : m_rule(rule)
    , m_start(start)
    , m_isDate(isDate)
{
    fillInFromStart(start);
    for (const int month : m_rule.months)
        m_months |= 1U << month;
    for (const RecurrenceRule::Weekday &day : m_rule.weekdays) {
        m_weekdays |= 1U << day.day;
        m_weekdaysHavePositions = m_weekdaysHavePositions || day.position != 0;
    }
    // Numbers before weekdays have a meaning within months and years alone, and not beside week numbers.
    if (m_rule.frequency < Frequency::Monthly || !m_rule.weekNumbers.empty())
        m_weekdaysHavePositions = false;
    if (!isBelowDaily())
        makeTimesOfDay();
    m_firstPeriod = periodAt(start);
}

// "Information, not contained in the rule, necessary to determine the various recurrence instance start time
// and dates are derived from DTSTART" (RFC 5545, section 3.3.10).
void RuleWalker::fillInFromStart(CivilSeconds start)
{
    const YearMonthDay date = yearMonthDay(dayOf(start));
    const RecurrenceRule::Weekday sameWeekday { 0, weekday(dayOf(start)) };
    const bool saysWhichDay = !m_rule.weekdays.empty() || !m_rule.monthDays.empty() || !m_rule.yearDays.empty();
    if (!m_rule.weekNumbers.empty() && !saysWhichDay) {
        m_rule.weekdays = { sameWeekday };
    } else if (m_rule.frequency == Frequency::Weekly && !saysWhichDay) {
        m_rule.weekdays = { sameWeekday };
    } else if (m_rule.frequency >= Frequency::Monthly && !saysWhichDay) {
        if (m_rule.frequency == Frequency::Yearly && m_rule.months.empty())
            m_rule.months = { date.month };
        m_rule.monthDays = { date.day };
    }

    if (m_isDate) {
        // A day has no time (BYSECOND, BYMINUTE and BYHOUR "MUST be ignored").
        m_rule.hours = m_rule.minutes = m_rule.seconds = {};
    }
    const int time = timeOfDay(start);
    if (m_rule.hours.empty() && m_rule.frequency > Frequency::Hourly)
        m_rule.hours = { static_cast<int>(time / secondsPerHour) };
    if (m_rule.minutes.empty() && m_rule.frequency > Frequency::Minutely)
        m_rule.minutes = { static_cast<int>(time % secondsPerHour / secondsPerMinute) };
    if (m_rule.seconds.empty() && m_rule.frequency > Frequency::Secondly)
        m_rule.seconds = { static_cast<int>(time % secondsPerMinute) };
}

void RuleWalker::makeTimesOfDay()
{
    for (const int hour : m_rule.hours) {
        for (const int minute : m_rule.minutes) {
            for (const int second : m_rule.seconds)
                m_timesOfDay.push_back(static_cast<int>(hour * secondsPerHour + minute * secondsPerMinute + second));
        }
    }
}

qint64 RuleWalker::periodAt(CivilSeconds civil) const
{
    const DayNumber day = dayOf(civil);
    switch (m_rule.frequency) {
    case Frequency::Secondly:
        return civil;
    case Frequency::Minutely:
        return floorDivided(civil, secondsPerMinute);
    case Frequency::Hourly:
        return floorDivided(civil, secondsPerHour);
    case Frequency::Daily:
        return day;
    case Frequency::Weekly:
        return floorDivided(day + 4 - m_rule.weekStart, daysPerWeek);
    case Frequency::Monthly: {
        const YearMonthDay date = yearMonthDay(day);
        return static_cast<qint64>(date.year) * monthsPerYear + date.month - 1;
    }
    case Frequency::Yearly:
        break;
    }
    return m_rule.weekNumbers.empty() ? yearMonthDay(day).year : weekYear(day, m_rule.weekStart);
}

CivilSeconds RuleWalker::periodBegin(qint64 period) const
{
    constexpr CivilSeconds beyond = dayNumber(lastYear + 1, 1, 1) * secondsPerDay;
    switch (m_rule.frequency) {
    case Frequency::Secondly:
        return period;
    case Frequency::Minutely:
        return period * secondsPerMinute;
    case Frequency::Hourly:
        return period * secondsPerHour;
    case Frequency::Daily:
        return period * secondsPerDay;
    case Frequency::Weekly:
        return (period * daysPerWeek - 4 + m_rule.weekStart) * secondsPerDay;
    case Frequency::Monthly: {
        const qint64 year = floorDivided(period, monthsPerYear);
        if (year > lastYear)
            return beyond;
        const int month = static_cast<int>(period - year * monthsPerYear) + 1;
        return dayNumber(static_cast<int>(year), month, 1) * secondsPerDay;
    }
    case Frequency::Yearly:
        break;
    }
    if (period > lastYear)
        return beyond;
    const int year = static_cast<int>(period);
    return (m_rule.weekNumbers.empty() ? dayNumber(year, 1, 1) : firstWeekBegin(year, m_rule.weekStart))
        * secondsPerDay;
}

qint64 RuleWalker::instancesPerPeriod() const
{
    const bool limitsDays = !m_rule.months.empty() || !m_rule.monthDays.empty() || !m_rule.yearDays.empty()
        || !m_rule.weekNumbers.empty() || !m_rule.positions.empty();
    if (limitsDays || m_rule.frequency >= Frequency::Monthly)
        return 0;
    if (m_rule.frequency == Frequency::Weekly)
        return std::popcount(m_weekdays) * static_cast<qint64>(m_timesOfDay.size());
    if (!m_rule.weekdays.empty())
        return 0;
    if (m_rule.frequency == Frequency::Daily)
        return static_cast<qint64>(m_timesOfDay.size());
    const bool limitsTimes = !m_rule.hours.empty() || (m_rule.frequency < Frequency::Hourly && !m_rule.minutes.empty())
        || (m_rule.frequency < Frequency::Minutely && !m_rule.seconds.empty());
    if (limitsTimes || m_isDate)
        return 0;
    const auto minutes = m_rule.frequency == Frequency::Hourly ? static_cast<qint64>(m_rule.minutes.size()) : 1;
    const auto seconds = m_rule.frequency >= Frequency::Minutely ? static_cast<qint64>(m_rule.seconds.size()) : 1;
    return minutes * seconds;
}

RuleWalker::Outcome RuleWalker::walk(
    CivilSeconds from, CivilSeconds last, const std::function<bool(CivilSeconds)> &take)
{
    constexpr CivilSeconds lastSecond = dayNumber(lastYear + 1, 1, 1) * secondsPerDay - 1;
    last = std::min(last, lastSecond);
    m_work = 0;
    const qint64 interval = m_rule.interval;
    const qint64 wanted
        = from <= m_start ? 0 : std::max<qint64>(0, floorDivided(periodAt(from) - m_firstPeriod, interval));
    const qint64 perPeriod = m_rule.count ? instancesPerPeriod() : 0;
    qint64 step = m_rule.count ? 0 : wanted;
    qint64 number = 1; // of the instance made last; the start is the first
    for (;;) {
        const qint64 period = m_firstPeriod + step * interval;
        if (periodBegin(period) > last)
            return Outcome::Finished;
        m_candidates.clear();
        const qint64 nextPeriod = expand(period);
        if (++m_work > mostWork)
            return Outcome::TooMuchWork;
        for (const CivilSeconds candidate : m_candidates) {
            if (candidate <= m_start)
                continue;
            if (candidate > last || (m_rule.count && ++number > *m_rule.count) || !take(candidate))
                return Outcome::Finished;
        }
        if (step == 0 && perPeriod > 0 && wanted > 1) {
            number += (wanted - 1) * perPeriod;
            step = wanted;
            continue;
        }
        step = std::max(step + 1, ceilDivided(nextPeriod - m_firstPeriod, interval));
    }
}

qint64 RuleWalker::expand(qint64 period)
{
    qint64 next = period + 1;
    switch (m_rule.frequency) {
    case Frequency::Secondly:
    case Frequency::Minutely:
    case Frequency::Hourly:
        next = expandBelowDaily(period);
        break;
    case Frequency::Daily:
        ++m_work;
        if (dayMatches(period))
            addDay(period);
        break;
    case Frequency::Weekly: {
        const DayNumber first = period * daysPerWeek - 4 + m_rule.weekStart;
        m_work += daysPerWeek;
        for (DayNumber day = first; day < first + daysPerWeek; ++day) {
            if (dayMatches(day))
                addDay(day);
        }
        break;
    }
    case Frequency::Monthly: {
        const auto year = static_cast<int>(floorDivided(period, monthsPerYear));
        expandMonth(year, static_cast<int>(period - static_cast<qint64>(year) * monthsPerYear) + 1);
        break;
    }
    case Frequency::Yearly:
        if (m_rule.weekNumbers.empty())
            expandYear(static_cast<int>(period));
        else
            expandWeekYear(static_cast<int>(period));
        break;
    }
    applyPositions();
    return next;
}

void RuleWalker::expandYear(int year)
{
    for (int month = 1; month <= monthsPerYear; ++month)
        expandMonth(year, month);
}

void RuleWalker::expandWeekYear(int year)
{
    const DayNumber first = firstWeekBegin(year, m_rule.weekStart);
    const auto weeks = static_cast<int>((firstWeekBegin(year + 1, m_rule.weekStart) - first) / daysPerWeek);
    for (int week = 1; week <= weeks; ++week) {
        if (!contains(m_rule.weekNumbers, week) && !contains(m_rule.weekNumbers, week - weeks - 1))
            continue;
        m_work += daysPerWeek;
        for (DayNumber day = first + (week - 1) * daysPerWeek; day < first + week * daysPerWeek; ++day) {
            const YearMonthDay date = yearMonthDay(day);
            if (monthMatches(date.month) && (allowedDays(date.year, date.month) >> date.day & 1U) != 0
                && dayMatchesInMonth(day, date))
                addDay(day);
        }
    }
}

void RuleWalker::expandMonth(int year, int month)
{
    ++m_work;
    if (!monthMatches(month))
        return;
    const DayNumber beforeFirst = dayNumber(year, month, 1) - 1;
    for (quint32 days = allowedDays(year, month); days != 0; days &= days - 1) {
        const int day = std::countr_zero(days);
        ++m_work;
        if (dayMatchesInMonth(beforeFirst + day, { year, month, day }))
            addDay(beforeFirst + day);
    }
}

qint64 RuleWalker::expandBelowDaily(qint64 period)
{
    const CivilSeconds begin = periodBegin(period);
    const DayNumber day = dayOf(begin);
    const int time = timeOfDay(begin);
    ++m_work;
    if (!dayMatches(day))
        return periodAt((day + 1) * secondsPerDay);
    if (m_isDate) {
        m_candidates.push_back(day * secondsPerDay);
        return periodAt((day + 1) * secondsPerDay);
    }
    const CivilSeconds hourBegin = begin - time % secondsPerHour;
    if (!allows(m_rule.hours, static_cast<int>(time / secondsPerHour)))
        return periodAt(hourBegin + secondsPerHour);
    if (m_rule.frequency == Frequency::Hourly) {
        for (const int minute : m_rule.minutes) {
            for (const int second : m_rule.seconds)
                m_candidates.push_back(hourBegin + minute * secondsPerMinute + second);
        }
        m_work += static_cast<qint64>(m_candidates.size());
        return period + 1;
    }
    const CivilSeconds minuteBegin = begin - time % secondsPerMinute;
    if (!allows(m_rule.minutes, static_cast<int>(time % secondsPerHour / secondsPerMinute)))
        return periodAt(minuteBegin + secondsPerMinute);
    if (m_rule.frequency == Frequency::Minutely) {
        for (const int second : m_rule.seconds)
            m_candidates.push_back(minuteBegin + second);
        m_work += static_cast<qint64>(m_candidates.size());
        return period + 1;
    }
    if (allows(m_rule.seconds, static_cast<int>(time % secondsPerMinute)))
        m_candidates.push_back(begin);
    return period + 1;
}

void RuleWalker::applyPositions()
{
    if (m_rule.positions.empty() || m_candidates.empty())
        return;
    const auto size = static_cast<qint64>(m_candidates.size());
    std::vector<qint64> indexes;
    for (const int position : m_rule.positions) {
        const qint64 index = position > 0 ? position - 1 : size + position;
        if (index >= 0 && index < size)
            indexes.push_back(index);
    }
    std::ranges::sort(indexes);
    indexes.erase(std::unique(indexes.begin(), indexes.end()), indexes.end());
    std::vector<CivilSeconds> chosen;
    chosen.reserve(indexes.size());
    for (const qint64 index : indexes)
        chosen.push_back(m_candidates[static_cast<std::size_t>(index)]);
    m_candidates = std::move(chosen);
}

quint32 RuleWalker::allowedDays(int year, int month) const
{
    const int days = daysInMonth(year, month);
    const auto all = static_cast<quint32>((quint64 { 1 } << (days + 1)) - 2);
    if (m_rule.monthDays.empty())
        return all;
    quint32 allowed = 0;
    for (const int day : m_rule.monthDays) {
        const int fromStart = day > 0 ? day : days + 1 + day;
        if (fromStart >= 1)
            allowed |= 1U << fromStart;
    }
    return allowed & all;
}

bool RuleWalker::dayMatches(DayNumber day) const
{
    // The usual rules for days and weeks get by with the weekday.
    if (m_weekdays != 0 && (m_weekdays >> weekday(day) & 1U) == 0)
        return false;
    if (m_months == 0 && m_rule.monthDays.empty() && m_rule.yearDays.empty() && m_rule.weekNumbers.empty())
        return true;
    const YearMonthDay date = yearMonthDay(day);
    if (!monthMatches(date.month) || (allowedDays(date.year, date.month) >> date.day & 1U) == 0)
        return false;
    if (!m_rule.weekNumbers.empty()) {
        const int year = weekYear(day, m_rule.weekStart);
        const DayNumber first = firstWeekBegin(year, m_rule.weekStart);
        const auto weeks = static_cast<int>((firstWeekBegin(year + 1, m_rule.weekStart) - first) / daysPerWeek);
        const auto week = static_cast<int>((day - first) / daysPerWeek) + 1;
        if (!contains(m_rule.weekNumbers, week) && !contains(m_rule.weekNumbers, week - weeks - 1))
            return false;
    }
    return dayMatchesInMonth(day, date);
}

// The month and the day of the month are known to match.
bool RuleWalker::dayMatchesInMonth(DayNumber day, const YearMonthDay &date) const
{
    if (!m_rule.yearDays.empty()) {
        const auto dayOfYear = static_cast<int>(day - dayNumber(date.year, 1, 1)) + 1;
        if (!contains(m_rule.yearDays, dayOfYear) && !contains(m_rule.yearDays, dayOfYear - daysInYear(date.year) - 1))
            return false;
    }
    return weekdayMatches(day, date);
}

bool RuleWalker::weekdayMatches(DayNumber day, const YearMonthDay &date) const
{
    if (m_weekdays == 0)
        return true;
    const int ownWeekday = weekday(day);
    if ((m_weekdays >> ownWeekday & 1U) == 0)
        return false;
    if (!m_weekdaysHavePositions)
        return true;
    const bool countsInMonth = m_rule.frequency == Frequency::Monthly || !m_rule.months.empty();
    const int index = countsInMonth ? date.day - 1 : static_cast<int>(day - dayNumber(date.year, 1, 1));
    const int length = countsInMonth ? daysInMonth(date.year, date.month) : daysInYear(date.year);
    return std::ranges::any_of(m_rule.weekdays, [&](const RecurrenceRule::Weekday &wanted) {
        if (wanted.day != ownWeekday)
            return false;
        return wanted.position == 0 || wanted.position == index / daysPerWeek + 1
            || wanted.position == -((length - 1 - index) / daysPerWeek + 1);
    });
}

void RuleWalker::addDay(DayNumber day)
{
    if (m_work > mostWork)
        return;
    for (const int time : m_timesOfDay)
        m_candidates.push_back(day * secondsPerDay + time);
    m_work += static_cast<qint64>(m_timesOfDay.size());
}

} // namespace ICalendar
