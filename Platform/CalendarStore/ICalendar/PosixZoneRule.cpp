// SPDX-License-Identifier: MIT
#include "PosixZoneRule.h"

#include "CivilDate.h"

#include <algorithm>

namespace ICalendar
{

// Takes the parts of the text one after the other; a part that is not there leaves the text as it is.
class PosixZoneRule::Parser
{
public:
    explicit Parser(const QByteArray &text)
        : m_text(text)
    {
    }

    bool isAtEnd() const { return m_at == m_text.size(); }
    bool take(char c)
    {
        if (isAtEnd() || m_text[m_at] != c)
            return false;
        ++m_at;
        return true;
    }
    bool takeName()
    {
        if (take('<')) {
            const qsizetype close = m_text.indexOf('>', m_at);
            if (close < 0)
                return false;
            m_at = close + 1;
            return true;
        }
        const qsizetype begin = m_at;
        while (!isAtEnd() && isLetter(m_text[m_at]))
            ++m_at;
        return m_at - begin >= 3;
    }
    std::optional<int> takeNumber()
    {
        constexpr int limit = 100'000;
        const qsizetype begin = m_at;
        int value = 0;
        for (; !isAtEnd() && m_text[m_at] >= '0' && m_text[m_at] <= '9'; ++m_at)
            value = std::min(value * 10 + (m_text[m_at] - '0'), limit);
        if (m_at == begin)
            return std::nullopt;
        return value;
    }
    // Hours, with minutes and seconds when they are there, in seconds.
    std::optional<int> takeTime()
    {
        const bool isNegative = take('-');
        if (!isNegative)
            take('+');
        const auto hours = takeNumber();
        if (!hours || *hours > 167)
            return std::nullopt;
        int seconds = *hours * static_cast<int>(secondsPerHour);
        if (take(':'))
            seconds += takeNumber().value_or(0) * static_cast<int>(secondsPerMinute);
        if (take(':'))
            seconds += takeNumber().value_or(0);
        return isNegative ? -seconds : seconds;
    }
    std::optional<ChangeDay> takeChangeDay()
    {
        ChangeDay change;
        if (take('M')) {
            change.form = ChangeDay::Form::MonthWeekDay;
            const int month = takeNumber().value_or(0);
            const int week = take('.') ? takeNumber().value_or(0) : 0;
            const int day = take('.') ? takeNumber().value_or(daysPerWeek) : daysPerWeek;
            if (month < 1 || month > 12 || week < 1 || week > 5 || day >= daysPerWeek)
                return std::nullopt;
            change.month = month;
            change.week = week;
            change.day = day;
        } else {
            change.form = take('J') ? ChangeDay::Form::JulianWithoutLeapDay : ChangeDay::Form::ZeroBased;
            const auto day = takeNumber();
            if (!day || *day > 365)
                return std::nullopt;
            change.day = *day;
        }
        if (take('/')) {
            const auto time = takeTime();
            if (!time)
                return std::nullopt;
            change.time = *time;
        }
        return change;
    }

private:
    static bool isLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

    const QByteArray &m_text;
    qsizetype m_at = 0;
};

std::optional<PosixZoneRule> PosixZoneRule::parsed(const QByteArray &text)
{
    Parser parser(text);
    PosixZoneRule rule;
    if (!parser.takeName())
        return std::nullopt;
    const auto west = parser.takeTime();
    if (!west)
        return std::nullopt;
    rule.m_standardOffset = -*west;
    if (parser.isAtEnd())
        return rule;

    if (!parser.takeName())
        return std::nullopt;
    rule.m_hasDaylight = true;
    rule.m_daylightOffset = rule.m_standardOffset + static_cast<int>(secondsPerHour);
    if (!parser.isAtEnd() && !parser.take(',')) {
        const auto daylightWest = parser.takeTime();
        if (!daylightWest)
            return std::nullopt;
        rule.m_daylightOffset = -*daylightWest;
        parser.take(',');
    }
    if (parser.isAtEnd()) {
        // What the system's own library assumes where the text gives no days.
        rule.m_daylightBegin = { ChangeDay::Form::MonthWeekDay, 3, 2, 0 };
        rule.m_daylightEnd = { ChangeDay::Form::MonthWeekDay, 11, 1, 0 };
        return rule;
    }
    const auto begin = parser.takeChangeDay();
    if (!begin || !parser.take(','))
        return std::nullopt;
    const auto end = parser.takeChangeDay();
    if (!end || !parser.isAtEnd())
        return std::nullopt;
    rule.m_daylightBegin = *begin;
    rule.m_daylightEnd = *end;
    return rule;
}

std::vector<ZoneTransition> PosixZoneRule::transitions(int year) const
{
    if (!m_hasDaylight)
        return {};
    return {
        { civil(m_daylightBegin, year) - m_standardOffset, m_daylightOffset },
        { civil(m_daylightEnd, year) - m_daylightOffset, m_standardOffset },
    };
}

CivilSeconds PosixZoneRule::civil(const ChangeDay &change, int year)
{
    DayNumber day = dayNumber(year, 1, 1);
    switch (change.form) {
    case ChangeDay::Form::ZeroBased:
        day += change.day;
        break;
    case ChangeDay::Form::JulianWithoutLeapDay:
        day += change.day - 1 + (isLeapYear(year) && change.day >= 60 ? 1 : 0);
        break;
    case ChangeDay::Form::MonthWeekDay: {
        const DayNumber first = dayNumber(year, change.month, 1);
        day = first + (change.day - weekday(first) + daysPerWeek) % daysPerWeek + (change.week - 1) * daysPerWeek;
        if (day >= first + daysInMonth(year, change.month))
            day -= daysPerWeek;
        break;
    }
    }
    return day * secondsPerDay + change.time;
}

} // namespace ICalendar
