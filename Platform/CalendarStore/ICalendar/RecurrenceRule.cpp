// SPDX-License-Identifier: MIT
#include "RecurrenceRule.h"

#include <QList>

#include <algorithm>
#include <array>

namespace ICalendar
{

namespace
{

constexpr qint64 longestInterval = 1'000'000'000;
// A rule that names every value of every part once is shorter.
constexpr qsizetype longestText = 20'000;

std::optional<RecurrenceRule::Frequency> parsedFrequency(const QByteArray &text)
{
    static const std::array<QByteArray, 7> names { "SECONDLY", "MINUTELY", "HOURLY", "DAILY", "WEEKLY", "MONTHLY",
        "YEARLY" };
    const auto *const found = std::ranges::find(names, text);
    if (found == names.end())
        return std::nullopt;
    return static_cast<RecurrenceRule::Frequency>(found - names.begin());
}

std::optional<int> parsedWeekday(QByteArrayView text)
{
    static const std::array<QByteArray, 7> names { "SU", "MO", "TU", "WE", "TH", "FR", "SA" };
    const auto *const found = std::ranges::find(names, text);
    if (found == names.end())
        return std::nullopt;
    return static_cast<int>(found - names.begin());
}

template <typename Take> void forEachElement(QByteArrayView list, const Take &take)
{
    while (!list.isEmpty()) {
        const qsizetype comma = list.indexOf(',');
        take((comma < 0 ? list : list.first(comma)).trimmed());
        list = comma < 0 ? QByteArrayView() : list.sliced(comma + 1);
    }
}

enum class Sign { PositiveOnly, Either };

std::vector<int> parsedNumbers(QByteArrayView list, int least, int most, Sign sign = Sign::PositiveOnly)
{
    // A bit for each value, so that endless repetition costs nothing.
    std::vector<bool> positive(static_cast<std::size_t>(most) + 1);
    std::vector<bool> negative(static_cast<std::size_t>(most) + 1);
    forEachElement(list, [&](QByteArrayView element) {
        const auto number = parsedInteger(element);
        if (!number || std::abs(*number) > most || std::abs(*number) < least)
            return;
        if (*number >= 0)
            positive[static_cast<std::size_t>(*number)] = true;
        else if (sign == Sign::Either)
            negative[static_cast<std::size_t>(-*number)] = true;
    });
    std::vector<int> result;
    for (int i = most; i > 0; --i) {
        if (negative[static_cast<std::size_t>(i)])
            result.push_back(-i);
    }
    for (int i = least; i <= most; ++i) {
        if (positive[static_cast<std::size_t>(i)])
            result.push_back(i);
    }
    return result;
}

std::vector<RecurrenceRule::Weekday> parsedWeekdays(QByteArrayView list)
{
    std::vector<RecurrenceRule::Weekday> result;
    forEachElement(list, [&](QByteArrayView element) {
        if (element.size() < 2)
            return;
        const auto day = parsedWeekday(element.last(2));
        const QByteArrayView number = element.chopped(2);
        const auto position = number.isEmpty() ? 0 : parsedInteger(number);
        constexpr int weeksInYear = 53;
        if (!day || !position || std::abs(*position) > weeksInYear)
            return;
        const RecurrenceRule::Weekday weekday { static_cast<int>(*position), *day };
        if (std::ranges::find(result, weekday) == result.end())
            result.push_back(weekday);
    });
    return result;
}

} // namespace

std::optional<RecurrenceRule> RecurrenceRule::parsed(const QByteArray &text)
{
    if (text.size() > longestText)
        return std::nullopt;
    RecurrenceRule rule;
    std::optional<Frequency> frequency;
    bool isGregorian = true;
    for (const QByteArray &part : text.toUpper().split(';')) {
        const qsizetype equals = part.indexOf('=');
        if (equals < 0)
            continue;
        const QByteArray name = part.first(equals).trimmed();
        const QByteArray value = part.sliced(equals + 1).trimmed();
        if (name == "FREQ")
            frequency = parsedFrequency(value);
        else if (name == "INTERVAL")
            rule.interval = std::clamp<qint64>(parsedInteger(value).value_or(1), 0, longestInterval);
        else if (name == "COUNT" && parsedInteger(value))
            rule.count = std::max<qint64>(*parsedInteger(value), 1);
        else if (name == "UNTIL")
            rule.until = parsedDateTime(value);
        else if (name == "WKST")
            rule.weekStart = parsedWeekday(value).value_or(1);
        else if (name == "BYSECOND")
            rule.seconds = parsedNumbers(value, 0, 59);
        else if (name == "BYMINUTE")
            rule.minutes = parsedNumbers(value, 0, 59);
        else if (name == "BYHOUR")
            rule.hours = parsedNumbers(value, 0, 23);
        else if (name == "BYDAY")
            rule.weekdays = parsedWeekdays(value);
        else if (name == "BYMONTHDAY")
            rule.monthDays = parsedNumbers(value, 1, 31, Sign::Either);
        else if (name == "BYYEARDAY")
            rule.yearDays = parsedNumbers(value, 1, 366, Sign::Either);
        else if (name == "BYWEEKNO")
            rule.weekNumbers = parsedNumbers(value, 1, 53, Sign::Either);
        else if (name == "BYMONTH")
            rule.months = parsedNumbers(value, 1, 12);
        else if (name == "BYSETPOS")
            rule.positions = parsedNumbers(value, 1, 366, Sign::Either);
        else if (name == "RSCALE")
            isGregorian = value == "GREGORIAN";
    }
    if (!frequency || !isGregorian)
        return std::nullopt;
    rule.frequency = *frequency;
    return rule;
}

} // namespace ICalendar
