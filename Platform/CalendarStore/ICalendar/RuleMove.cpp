// SPDX-License-Identifier: MIT
#include "RuleMove.h"

#include "RuleWalker.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace ICalendar
{

namespace
{

using Frequency = RecurrenceRule::Frequency;

constexpr int monthsPerYear = 12;
constexpr int hoursPerDay = 24;
constexpr int longestMonth = 31;
constexpr int longestYear = 366;

int monthsBetween(DayNumber from, DayNumber to)
{
    const YearMonthDay first = yearMonthDay(from);
    const YearMonthDay second = yearMonthDay(to);
    return (second.year - first.year) * monthsPerYear + second.month - first.month;
}

// The first day of the month that many months after the one of `day`.
YearMonthDay monthAfter(DayNumber day, int months)
{
    const YearMonthDay date = yearMonthDay(day);
    const qint64 count = qint64 { date.year } * monthsPerYear + date.month - 1 + months;
    const auto year = static_cast<int>(floorDivided(count, monthsPerYear));
    return { year, static_cast<int>(count - qint64 { year } * monthsPerYear) + 1, 1 };
}

// So many days further; a place before the first of something is one counted from the end of what is before it, and
// the other way round. Nothing beyond `most`, for the lengths of months and years differ.
std::optional<int> movedNumber(int number, qint64 days, int most)
{
    const qint64 moved = number + days;
    if (number > 0 && moved <= 0)
        return moved - 1 < -most ? std::nullopt : std::optional(static_cast<int>(moved - 1));
    if (number < 0 && moved >= 0)
        return moved + 1 > most ? std::nullopt : std::optional(static_cast<int>(moved + 1));
    return std::abs(moved) > most ? std::nullopt : std::optional(static_cast<int>(moved));
}

QByteArray listText(const std::vector<int> &numbers)
{
    QByteArrayList texts;
    for (const int number : numbers)
        texts.append(QByteArray::number(number));
    return texts.join(',');
}

QByteArray weekdayName(int day)
{
    static constexpr std::array names { "SU", "MO", "TU", "WE", "TH", "FR", "SA" };
    return names.at(static_cast<std::size_t>(day));
}

QByteArray weekdayText(const RecurrenceRule::Weekday &weekday)
{
    return (weekday.position == 0 ? QByteArray() : QByteArray::number(weekday.position)) + weekdayName(weekday.day);
}

// One rule while its parts change.
class Mover
{
public:
    Mover(const QByteArray &value, const RecurrenceRule &rule, CivilSeconds start, const OccurrenceMove &move)
        : m_original(value)
        , m_text(value)
        , m_rule(rule)
        , m_start(start)
        , m_move(move)
        , m_from(dayOf(move.from))
        , m_to(dayOf(move.to))
        , m_days(m_to - m_from)
        , m_months(monthsBetween(m_from, m_to))
    {
    }

    std::optional<MovedRule> run();

private:
    using Days = std::optional<DayMap>;

    Days moveDays();
    Days moveInWeek();
    Days moveInMonth();
    Days moveInYear();
    Days moveDayOfMonth(int day);
    Days movePlace(int position, const QByteArray &partOfPosition);
    bool moveMonthDays();
    bool moveMonths();
    bool turnWeekdays();
    bool moveTimes();
    bool isRight(const QByteArray &value, const DayMap &days) const;

    const QByteArray &m_original;
    RuleText m_text;
    const RecurrenceRule &m_rule;
    CivilSeconds m_start;
    const OccurrenceMove &m_move;
    DayNumber m_from;
    DayNumber m_to;
    qint64 m_days;
    int m_months;
    // Whether the parts were changed in a way that may mean other days than those that are meant.
    bool m_needsProof = false;
};

std::optional<MovedRule> Mover::run()
{
    const Days days = moveDays();
    if (!days || !moveTimes())
        return std::nullopt;
    const QByteArray value = m_text.value();
    if (!isRight(value, *days))
        return std::nullopt;
    return MovedRule { value, *days };
}

Mover::Days Mover::moveDays()
{
    if (m_days == 0)
        return DayMap::byDays(0);
    if (m_rule.frequency == Frequency::Yearly)
        return moveInYear();
    if (m_rule.frequency == Frequency::Monthly)
        return moveInMonth();
    return moveInWeek();
}

// Rules whose days follow each other without regard to months, unless they name some.
Mover::Days Mover::moveInWeek()
{
    const bool goesByWeek = m_rule.frequency == Frequency::Weekly
        && ((m_rule.interval > 1 && m_rule.weekdays.size() > 1) || !m_rule.positions.empty());
    if (goesByWeek) {
        // Days of one week must stay in one week.
        const auto turned = (m_rule.weekStart + m_days % daysPerWeek + daysPerWeek) % daysPerWeek;
        m_text.setPart("WKST", weekdayName(static_cast<int>(turned)));
    }
    m_needsProof = !m_rule.monthDays.empty() || !m_rule.months.empty() || !m_rule.yearDays.empty();
    if (!turnWeekdays() || !moveMonthDays() || (m_months != 0 && !moveMonths()))
        return std::nullopt;
    return DayMap::byDays(m_days);
}

Mover::Days Mover::moveInMonth()
{
    const bool hasPositions
        = std::ranges::any_of(m_rule.weekdays, [](const auto &weekday) { return weekday.position != 0; });
    if (m_rule.weekdays.empty() && m_rule.positions.empty()) {
        if (m_rule.monthDays.empty())
            return moveDayOfMonth(yearMonthDay(dayOf(m_start)).day);
        if (m_rule.monthDays.size() == 1 && m_rule.monthDays.front() > 0)
            return moveDayOfMonth(m_rule.monthDays.front());
    }
    if (m_rule.weekdays.size() == 1 && m_rule.monthDays.empty()) {
        if (hasPositions && m_rule.positions.empty())
            return movePlace(m_rule.weekdays.front().position, "BYDAY");
        if (!hasPositions && m_rule.positions.size() == 1)
            return movePlace(m_rule.positions.front(), "BYSETPOS");
    }
    m_needsProof = hasPositions || !m_rule.positions.empty() || m_rule.interval > 1 || !m_rule.months.empty();
    if (!turnWeekdays() || !moveMonthDays() || (m_months != 0 && !moveMonths()))
        return std::nullopt;
    return DayMap::byDays(m_days);
}

Mover::Days Mover::moveInYear()
{
    const bool goesByMonth = !m_rule.months.empty() || !m_rule.monthDays.empty();
    if (!m_rule.weekNumbers.empty() || !m_rule.yearDays.empty() || (!m_rule.weekdays.empty() && !goesByMonth)) {
        m_needsProof = true;
        std::vector<int> numbers;
        for (const int number : m_rule.yearDays) {
            const auto moved = movedNumber(number, m_days, longestYear);
            if (!moved)
                return std::nullopt;
            numbers.push_back(*moved);
        }
        if (!numbers.empty())
            m_text.setPart("BYYEARDAY", listText(numbers));
        return turnWeekdays() ? Days(DayMap::byDays(m_days)) : std::nullopt;
    }
    if (m_rule.weekdays.empty() && m_rule.monthDays.empty() && m_rule.positions.empty())
        return moveDayOfMonth(yearMonthDay(dayOf(m_start)).day);
    return moveInMonth();
}

// The series goes by that day of the month: it gets the one of the moved occurrence.
Mover::Days Mover::moveDayOfMonth(int day)
{
    const int to = yearMonthDay(m_to).day;
    if (yearMonthDay(m_from).day != day) {
        m_needsProof = true;
        return moveMonthDays() ? Days(DayMap::byDays(m_days)) : std::nullopt;
    }
    if (!m_rule.monthDays.empty())
        m_text.setPart("BYMONTHDAY", QByteArray::number(to));
    if (m_months != 0 && !moveMonths())
        return std::nullopt;
    return DayMap::byDayOfMonth(m_days, m_months, day, to);
}

// The series goes by the nth of a weekday in the month: it gets the place of the moved occurrence.
Mover::Days Mover::movePlace(int position, const QByteArray &partOfPosition)
{
    const DayMap::Place from { position, m_rule.weekdays.front().day };
    if (DayMap::Place::of(m_from, position < 0) != from) {
        m_needsProof = true;
        return turnWeekdays() ? Days(DayMap::byDays(m_days)) : std::nullopt;
    }
    constexpr int weeksOfEveryMonth = 4;
    DayMap::Place to = DayMap::Place::of(m_to, position < 0);
    // A fifth one is the last; every month has that.
    if (std::abs(to.position) > weeksOfEveryMonth)
        to = DayMap::Place::of(m_to, position > 0);
    if (partOfPosition == "BYSETPOS") {
        m_text.setPart("BYSETPOS", QByteArray::number(to.position));
        m_text.setPart("BYDAY", weekdayName(to.weekday));
    } else {
        m_text.setPart("BYDAY", weekdayText({ to.position, to.weekday }));
    }
    if (m_months != 0 && !moveMonths())
        return std::nullopt;
    return DayMap::byPlace(m_days, m_months, from, to);
}

bool Mover::moveMonthDays()
{
    std::vector<int> numbers;
    for (const int number : m_rule.monthDays) {
        const auto moved = movedNumber(number, m_days, longestMonth);
        if (!moved)
            return false;
        numbers.push_back(*moved);
    }
    if (!numbers.empty())
        m_text.setPart("BYMONTHDAY", listText(numbers));
    return true;
}

bool Mover::moveMonths()
{
    std::vector<int> numbers;
    for (const int month : m_rule.months)
        numbers.push_back(((month - 1 + m_months) % monthsPerYear + monthsPerYear) % monthsPerYear + 1);
    std::ranges::sort(numbers);
    if (!numbers.empty())
        m_text.setPart("BYMONTH", listText(numbers));
    return true;
}

bool Mover::turnWeekdays()
{
    QByteArrayList texts;
    for (RecurrenceRule::Weekday weekday : m_rule.weekdays) {
        const qint64 turned = weekday.day + m_days % daysPerWeek + daysPerWeek;
        weekday.day = static_cast<int>(turned % daysPerWeek);
        if (weekday.position != 0 && m_days % daysPerWeek == 0) {
            const qint64 position = weekday.position + m_days / daysPerWeek;
            if (position == 0 || (position > 0) != (weekday.position > 0))
                return false;
            weekday.position = static_cast<int>(position);
        }
        texts.append(weekdayText(weekday));
    }
    if (!texts.isEmpty())
        m_text.setPart("BYDAY", texts.join(','));
    return true;
}

// BYHOUR, BYMINUTE and BYSECOND. Occurrences may move to another day only all together.
bool Mover::moveTimes()
{
    if (m_rule.hours.empty() && m_rule.minutes.empty() && m_rule.seconds.empty())
        return !m_move.becomesDate || m_rule.frequency >= Frequency::Daily;
    const bool isSeveralTimes = m_rule.hours.size() > 1 || m_rule.minutes.size() > 1 || m_rule.seconds.size() > 1;
    if (m_move.becomesDate) {
        for (const char *const name : { "BYHOUR", "BYMINUTE", "BYSECOND" })
            m_text.removePart(name);
        return !isSeveralTimes && m_rule.frequency >= Frequency::Daily;
    }
    const int shift = timeOfDay(m_move.to) - timeOfDay(m_move.from);
    if (shift == 0 || m_move.wasDate)
        return true;

    // Each part has the values of its own only when what is below it moves none of them differently.
    const int minute = m_rule.minutes.empty() ? timeOfDay(m_start) / 60 % 60 : m_rule.minutes.front();
    const int second = m_rule.seconds.empty() ? timeOfDay(m_start) % 60 : m_rule.seconds.front();
    const auto movedTime = [&](int hour, int ofMinute, int ofSecond) {
        return hour * static_cast<int>(secondsPerHour) + ofMinute * static_cast<int>(secondsPerMinute) + ofSecond
            + shift;
    };
    if ((m_rule.minutes.size() > 1 && shift % secondsPerHour != 0)
        || (m_rule.seconds.size() > 1 && shift % secondsPerMinute != 0))
        return false;
    std::vector<int> hours;
    for (const int hour : m_rule.hours) {
        const auto moved = static_cast<int>(floorDivided(movedTime(hour, minute, second), secondsPerHour));
        if (moved < 0 || moved >= hoursPerDay)
            return false;
        hours.push_back(moved);
    }
    const int time
        = ((movedTime(0, minute, second) % static_cast<int>(secondsPerDay)) + static_cast<int>(secondsPerDay))
        % static_cast<int>(secondsPerDay);
    if (!hours.empty())
        m_text.setPart("BYHOUR", listText(hours));
    if (m_rule.minutes.size() == 1)
        m_text.setPart("BYMINUTE", QByteArray::number(time / 60 % 60));
    if (m_rule.seconds.size() == 1)
        m_text.setPart("BYSECOND", QByteArray::number(time % 60));
    return true;
}

// The first instances after the start, without regard to how many there may be.
std::vector<DayNumber> daysAfter(const QByteArray &value, CivilSeconds start, bool isDate, DayNumber from, DayNumber to)
{
    constexpr std::size_t enough = 60;
    std::vector<DayNumber> days;
    auto rule = RecurrenceRule::parsed(value);
    if (!rule || rule->interval == 0)
        return days;
    rule->count.reset();
    rule->until.reset();
    RuleWalker(*rule, start, isDate).walk(from * secondsPerDay, (to + 1) * secondsPerDay - 1, [&](CivilSeconds civil) {
        if (dayOf(civil) >= from && dayOf(civil) <= to)
            days.push_back(dayOf(civil));
        return days.size() < enough;
    });
    return days;
}

// What was moved must be where it was moved to; where parts may mean other days than those that are meant, all must be.
bool Mover::isRight(const QByteArray &value, const DayMap &days) const
{
    if (m_days == 0)
        return true;
    const DayNumber first = days.moved(dayOf(m_start));
    const CivilSeconds start = first * secondsPerDay + (m_move.becomesDate ? 0 : timeOfDay(m_start));
    const bool wasMade
        = m_from == dayOf(m_start) || !daysAfter(m_original, m_start, m_move.wasDate, m_from, m_from).empty();
    if (wasMade && m_to != first && daysAfter(value, start, m_move.becomesDate, m_to, m_to).empty())
        return false;
    if (!m_needsProof)
        return true;

    constexpr int yearsToLookAt = 12;
    const DayNumber begin = dayOf(m_start);
    const DayNumber end = begin + DayNumber { yearsToLookAt } * longestYear;
    std::vector<DayNumber> expected = daysAfter(m_original, m_start, m_move.wasDate, begin, end);
    for (DayNumber &day : expected)
        day = days.moved(day);
    std::ranges::sort(expected);
    const std::vector<DayNumber> found = daysAfter(value, start, m_move.becomesDate, first, end);
    const std::ptrdiff_t compared = std::min(std::ssize(expected), std::ssize(found));
    return std::equal(expected.begin(), expected.begin() + compared, found.begin());
}

} // namespace

RuleText::RuleText(const QByteArray &value)
{
    for (const QByteArray &part : value.split(';')) {
        const qsizetype equals = part.indexOf('=');
        m_parts.append({ part.first(std::max<qsizetype>(equals, 0)), part.sliced(equals + 1) });
    }
}

std::optional<QByteArray> RuleText::part(const QByteArray &name) const
{
    for (const auto &[written, value] : m_parts) {
        if (written.trimmed().toUpper() == name)
            return value.trimmed().toUpper();
    }
    return std::nullopt;
}

void RuleText::setPart(const QByteArray &name, const QByteArray &value)
{
    for (auto &[written, present] : m_parts) {
        if (written.trimmed().toUpper() == name) {
            present = value;
            return;
        }
    }
    m_parts.append({ name, value });
}

void RuleText::removePart(const QByteArray &name)
{
    m_parts.removeIf([&](const auto &part) { return part.first.trimmed().toUpper() == name; });
}

QByteArray RuleText::value() const
{
    QByteArrayList texts;
    for (const auto &[name, value] : m_parts)
        texts.append(name.isEmpty() ? value : name + '=' + value);
    return texts.join(';');
}

DayMap::Place DayMap::Place::of(DayNumber day, bool fromEnd)
{
    const YearMonthDay date = yearMonthDay(day);
    const int position = fromEnd ? -((daysInMonth(date.year, date.month) - date.day) / daysPerWeek + 1)
                                 : (date.day - 1) / daysPerWeek + 1;
    return { position, ICalendar::weekday(day) };
}

DayMap DayMap::byDays(qint64 days)
{
    DayMap map;
    map.m_days = days;
    return map;
}

DayMap DayMap::byDayOfMonth(qint64 days, int months, int from, int to)
{
    DayMap map = byDays(days);
    map.m_kind = Kind::DayOfMonth;
    map.m_months = months;
    map.m_fromDay = from;
    map.m_toDay = to;
    return map;
}

DayMap DayMap::byPlace(qint64 days, int months, const Place &from, const Place &to)
{
    DayMap map = byDays(days);
    map.m_kind = Kind::Place;
    map.m_months = months;
    map.m_from = from;
    map.m_to = to;
    return map;
}

DayNumber DayMap::moved(DayNumber day) const
{
    if (m_kind == Kind::DayOfMonth && yearMonthDay(day).day == m_fromDay) {
        const YearMonthDay month = monthAfter(day, m_months);
        if (m_toDay <= daysInMonth(month.year, month.month))
            return dayNumber(month.year, month.month, m_toDay);
    }
    if (m_kind == Kind::Place && Place::of(day, m_from.position < 0) == m_from) {
        const YearMonthDay month = monthAfter(day, m_months);
        const DayNumber first = dayNumber(month.year, month.month, 1);
        const DayNumber last = first + daysInMonth(month.year, month.month) - 1;
        const DayNumber place = m_to.position > 0 ? first + (m_to.weekday - weekday(first) + daysPerWeek) % daysPerWeek
                + qint64 { m_to.position - 1 } * daysPerWeek
                                                  : last - (weekday(last) - m_to.weekday + daysPerWeek) % daysPerWeek
                + qint64 { m_to.position + 1 } * daysPerWeek;
        if (place >= first && place <= last)
            return place;
    }
    return day + m_days;
}

std::optional<MovedRule> movedRule(const QByteArray &value, CivilSeconds start, const OccurrenceMove &move)
{
    const auto rule = RecurrenceRule::parsed(value);
    // What is not understood makes no occurrence but the first, and goes on doing so.
    if (!rule || rule->interval == 0)
        return MovedRule { value, DayMap::byDays(dayOf(move.to) - dayOf(move.from)) };
    return Mover(value, *rule, start, move).run();
}

} // namespace ICalendar
