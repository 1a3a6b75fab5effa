// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <CivilDate.h>
#include <RecurrenceExpander.h>
#include <RuleWalker.h>
#include <ZoneRegistry.h>

#include <QDate>
#include <QTest>

#include <algorithm>
#include <array>
#include <optional>
#include <random>
#include <vector>

using namespace ICalendar;

namespace
{

constexpr int yearsCompared = 5;

const QDate &epoch()
{
    static const QDate date(1970, 1, 1);
    return date;
}

// Whether a value is in the list, or its negative counterpart, which counts from the end.
bool holds(const std::vector<int> &list, int fromStart, int length)
{
    return std::ranges::find(list, fromStart) != list.end()
        || std::ranges::find(list, fromStart - length - 1) != list.end();
}

bool allows(const std::vector<int> &list, int value)
{
    return list.empty() || std::ranges::find(list, value) != list.end();
}

QByteArray part(const char *name, const std::vector<int> &list)
{
    QByteArrayList numbers;
    for (const int number : list)
        numbers.append(QByteArray::number(number));
    return list.empty() ? QByteArray() : QByteArray(";") + name + "=" + numbers.join(',');
}

// A rule that decides for each day on its own whether it belongs, straight from the words of RFC 5545,
// section 3.3.10. It shares neither the reading of rules nor the arithmetic of days with the walker.
struct PlainRule {
    enum Frequency { Daily, Weekly, Monthly, Yearly };
    struct Weekday {
        int position = 0;
        int day = Qt::Monday; // to Qt::Sunday
    };

    Frequency frequency = Daily;
    int interval = 1;
    std::vector<int> months;
    std::vector<int> weekNumbers; // with weeks from Monday on only
    std::vector<int> yearDays;
    std::vector<int> monthDays;
    std::vector<Weekday> weekdays;
    std::vector<int> hours;
    std::vector<int> minutes;
    std::vector<int> positions;
    int weekStart = Qt::Monday;
    std::optional<int> count;
    std::optional<CivilSeconds> until;
    // The start of the series.
    QDate startDay;
    int startTime = 0; // seconds after midnight
    bool isDate = false;

    QByteArray text() const;
    CivilSeconds start() const { return epoch().daysTo(startDay) * 86400 + startTime; }
    // The start and all that follow it, ascending, those of `end` and later excepted.
    std::vector<CivilSeconds> instances(const QDate &end) const;

private:
    QDate weekBegin(const QDate &day) const { return day.addDays(-((day.dayOfWeek() - weekStart + 7) % 7)); }
    // Counted from the one that holds the start.
    int period(const QDate &day) const;
    bool belongs(const QDate &day) const;
    bool weekNumberMatches(const QDate &day) const;
    bool weekdayMatches(const QDate &day) const;
    std::vector<int> times() const;
    std::vector<CivilSeconds> chosenByPosition(const std::vector<CivilSeconds> &set) const;
};

QByteArray PlainRule::text() const
{
    static const char *const frequencies[] = { "DAILY", "WEEKLY", "MONTHLY", "YEARLY" };
    static const char *const names[] = { "", "MO", "TU", "WE", "TH", "FR", "SA", "SU" };
    QByteArray result = QByteArray("FREQ=") + frequencies[frequency];
    if (interval != 1)
        result += ";INTERVAL=" + QByteArray::number(interval);
    result += part("BYMONTH", months) + part("BYWEEKNO", weekNumbers) + part("BYYEARDAY", yearDays);
    result += part("BYMONTHDAY", monthDays) + part("BYHOUR", hours) + part("BYMINUTE", minutes);
    QByteArrayList days;
    for (const Weekday &weekday : weekdays)
        days.append((weekday.position != 0 ? QByteArray::number(weekday.position) : QByteArray()) + names[weekday.day]);
    if (!days.isEmpty())
        result += ";BYDAY=" + days.join(',');
    result += part("BYSETPOS", positions);
    if (weekStart != Qt::Monday)
        result += QByteArray(";WKST=") + names[weekStart];
    if (count)
        result += ";COUNT=" + QByteArray::number(*count);
    if (until) {
        const QDateTime last = QDateTime::fromSecsSinceEpoch(*until, Qt::UTC);
        result += ";UNTIL=" + last.toString(isDate ? u"yyyyMMdd" : u"yyyyMMdd'T'HHmmss'Z'").toLatin1();
    }
    return result;
}

int PlainRule::period(const QDate &day) const
{
    switch (frequency) {
    case Daily:
        return static_cast<int>(startDay.daysTo(day));
    case Weekly:
        return static_cast<int>(weekBegin(startDay).daysTo(weekBegin(day)) / 7);
    case Monthly:
        return (day.year() - startDay.year()) * 12 + day.month() - startDay.month();
    case Yearly:
        break;
    }
    return day.year() - startDay.year();
}

bool PlainRule::weekNumberMatches(const QDate &day) const
{
    int year = 0;
    const int week = day.weekNumber(&year);
    return holds(weekNumbers, week, QDate(year, 12, 28).weekNumber());
}

bool PlainRule::weekdayMatches(const QDate &day) const
{
    const bool isPositionInMonth = frequency == Monthly || !months.empty();
    int fromStart = 0;
    int fromEnd = 0;
    const auto isInSpan = [&](const QDate &other) {
        return other.year() == day.year() && (!isPositionInMonth || other.month() == day.month());
    };
    for (QDate other = day; isInSpan(other); other = other.addDays(-7))
        ++fromStart;
    for (QDate other = day; isInSpan(other); other = other.addDays(7))
        --fromEnd;
    return std::ranges::any_of(weekdays, [&](const Weekday &weekday) {
        return weekday.day == day.dayOfWeek()
            && (weekday.position == 0 || weekday.position == fromStart || weekday.position == fromEnd);
    });
}

bool PlainRule::belongs(const QDate &day) const
{
    if (period(day) % interval != 0 || !allows(months, day.month()))
        return false;
    if (!weekNumbers.empty() && !weekNumberMatches(day))
        return false;
    if (!yearDays.empty() && !holds(yearDays, day.dayOfYear(), day.daysInYear()))
        return false;
    if (!monthDays.empty() && !holds(monthDays, day.day(), day.daysInMonth()))
        return false;
    if (!weekdays.empty() && !weekdayMatches(day))
        return false;
    if (!yearDays.empty() || !monthDays.empty() || !weekdays.empty())
        return true;
    // What the rule does not say is as in the start.
    if (frequency == Weekly || !weekNumbers.empty())
        return day.dayOfWeek() == startDay.dayOfWeek();
    if (frequency == Monthly)
        return day.day() == startDay.day();
    if (frequency == Yearly)
        return day.day() == startDay.day() && (!months.empty() || day.month() == startDay.month());
    return true;
}

std::vector<int> PlainRule::times() const
{
    if (isDate)
        return { 0 };
    std::vector<int> result;
    for (int second = 0; second < 86400; ++second) {
        const bool isHour = hours.empty() ? second / 3600 == startTime / 3600 : allows(hours, second / 3600);
        const bool isMinute
            = minutes.empty() ? second / 60 % 60 == startTime / 60 % 60 : allows(minutes, second / 60 % 60);
        if (isHour && isMinute && second % 60 == startTime % 60)
            result.push_back(second);
    }
    return result;
}

std::vector<CivilSeconds> PlainRule::chosenByPosition(const std::vector<CivilSeconds> &set) const
{
    std::vector<CivilSeconds> result;
    for (std::size_t i = 0; i < set.size(); ++i) {
        if (positions.empty() || holds(positions, static_cast<int>(i) + 1, static_cast<int>(set.size())))
            result.push_back(set[i]);
    }
    return result;
}

std::vector<CivilSeconds> PlainRule::instances(const QDate &end) const
{
    const std::vector<int> timesOfDay = times();
    std::vector<CivilSeconds> result { start() };
    std::vector<CivilSeconds> set;
    const auto closeSet = [&] {
        for (const CivilSeconds instance : chosenByPosition(set)) {
            const bool isWithinCount = !count || result.size() < static_cast<std::size_t>(*count);
            if (instance > start() && isWithinCount && (!until || instance <= *until))
                result.push_back(instance);
        }
        set.clear();
    };
    // From the beginning of the start's period, since positions count within the whole of it, to the end of the
    // last period that is looked at.
    const QDate first = frequency == Yearly ? QDate(startDay.year(), 1, 1)
        : frequency == Monthly              ? QDate(startDay.year(), startDay.month(), 1)
        : frequency == Weekly               ? weekBegin(startDay)
                                            : startDay;
    for (QDate day = first; day < end.addYears(1); day = day.addDays(1)) {
        if (day != first && period(day) != period(day.addDays(-1)))
            closeSet();
        if (!belongs(day))
            continue;
        for (const int time : timesOfDay)
            set.push_back(epoch().daysTo(day) * 86400 + time);
    }
    std::erase_if(result, [&](CivilSeconds instance) { return instance >= epoch().daysTo(end) * 86400; });
    return result;
}

class RandomPlainRules
{
public:
    PlainRule next()
    {
        PlainRule rule;
        rule.frequency = static_cast<PlainRule::Frequency>(below(4));
        rule.startDay = QDate(2019, 1, 1).addDays(below(1'500));
        rule.startTime = below(1'440) * 60;
        if (oneIn(2))
            rule.interval = 1 + below(5);
        if (oneIn(3))
            rule.weekStart = Qt::Monday + below(7);
        if (rule.frequency == PlainRule::Yearly && oneIn(4)) {
            chooseDaysOfYear(rule);
        } else {
            if (oneIn(3))
                rule.months = list(1, 12, 3);
            if (rule.frequency != PlainRule::Weekly && oneIn(3))
                rule.monthDays = signedList(31, 4);
        }
        if (oneIn(2))
            chooseWeekdays(rule);
        if (oneIn(4))
            rule.hours = list(0, 23, 2);
        if (oneIn(6))
            rule.minutes = list(0, 59, 2);
        if (oneIn(4) && rule.weekNumbers.empty())
            rule.positions = signedList(6, 2);
        if (oneIn(8)) {
            rule.isDate = true;
            rule.startTime = 0;
        }
        chooseEnd(rule);
        return rule;
    }
    int below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }

private:
    bool oneIn(int many) { return below(many) == 0; }

    // The year to which the days at its ends belong is not told by the standard when weeks are numbered; nor are
    // weeks numbered here but from Monday on.
    void chooseDaysOfYear(PlainRule &rule)
    {
        if (oneIn(2)) {
            rule.yearDays = signedList(366, 6);
            return;
        }
        rule.weekNumbers = signedList(53, 3);
        rule.interval = 1;
        rule.weekStart = Qt::Monday;
    }

    void chooseWeekdays(PlainRule &rule)
    {
        const bool mayHavePositions
            = (rule.frequency == PlainRule::Monthly || rule.frequency == PlainRule::Yearly) && rule.weekNumbers.empty();
        const int offset = below(7);
        for (int i = below(4); i >= 0; --i) {
            PlainRule::Weekday weekday { 0, Qt::Monday + (offset + i) % 7 };
            const int most = rule.frequency == PlainRule::Yearly && rule.months.empty() ? 53 : 5;
            if (mayHavePositions && oneIn(2))
                weekday.position = (oneIn(3) ? -1 : 1) * (1 + below(most));
            rule.weekdays.push_back(weekday);
        }
    }

    void chooseEnd(PlainRule &rule)
    {
        const int kind = below(4);
        if (kind == 0)
            rule.count = 1 + below(200);
        else if (kind == 1)
            rule.until = rule.start() + CivilSeconds { 86400 } * below(1'500);
    }

    std::vector<int> list(int least, int most, int length)
    {
        std::vector<int> result;
        for (int left = 1 + below(length); left > 0; --left)
            result.push_back(least + below(most - least + 1));
        std::ranges::sort(result);
        result.erase(std::unique(result.begin(), result.end()), result.end());
        return result;
    }

    std::vector<int> signedList(int most, int length)
    {
        std::vector<int> result = list(1, most, length);
        for (int &number : result) {
            if (oneIn(3))
                number = -number;
        }
        return result;
    }

    std::mt19937 m_random { 5545 };
};

Item seriesOf(const PlainRule &rule)
{
    Item item;
    item.start = CivilTime { rule.start(), rule.isDate ? CivilTime::Form::Date : CivilTime::Form::Utc, nullptr };
    item.end = item.start;
    item.repetition.edit().rules = { rule.text() };
    return item;
}

std::vector<CivilSeconds> expanded(const Item &item, CivilSeconds from, CivilSeconds to)
{
    const ZonePtr local = ZoneRegistry::localZone();
    const bool isDate = item.start->isDate();
    const Expansion expansion
        = expandSeries(item, {}, isDate ? local->toUtc(from) : from, isDate ? local->toUtc(to) : to, *local);
    std::vector<CivilSeconds> result;
    for (const Occurrence &occurrence : expansion.occurrences)
        result.push_back(occurrence.start.civil);
    return result;
}

// A rule for times within days, decided for each second on its own.
struct PlainTimeRule {
    int step = 3600; // seconds of a period
    int interval = 1;
    std::vector<int> hours;
    std::vector<int> minutes;
    std::vector<int> seconds;
    std::vector<int> weekdays; // 1 Monday to 7 Sunday

    QByteArray text() const;
    bool belongs(CivilSeconds second, CivilSeconds start) const;
};

QByteArray PlainTimeRule::text() const
{
    static const char *const names[] = { "", "MO", "TU", "WE", "TH", "FR", "SA", "SU" };
    QByteArray result = QByteArray("FREQ=") + (step == 1 ? "SECONDLY" : step == 60 ? "MINUTELY" : "HOURLY");
    result += ";INTERVAL=" + QByteArray::number(interval);
    result += part("BYHOUR", hours) + part("BYMINUTE", minutes) + part("BYSECOND", seconds);
    QByteArrayList days;
    for (const int weekday : weekdays)
        days.append(names[weekday]);
    return days.isEmpty() ? result : result + ";BYDAY=" + days.join(',');
}

bool PlainTimeRule::belongs(CivilSeconds second, CivilSeconds start) const
{
    if ((second / step - start / step) % interval != 0)
        return false;
    const auto hour = static_cast<int>(second / 3600 % 24);
    const auto minute = static_cast<int>(second / 60 % 60);
    if (!allows(hours, hour) || !allows(minutes, minute) || !allows(seconds, static_cast<int>(second % 60)))
        return false;
    if (minutes.empty() && step > 60 && minute != start / 60 % 60)
        return false;
    if (seconds.empty() && step > 1 && second % 60 != start % 60)
        return false;
    return allows(weekdays, epoch().addDays(second / 86400).dayOfWeek());
}

QByteArray difference(
    const PlainRule &rule, const std::vector<CivilSeconds> &found, const std::vector<CivilSeconds> &expected)
{
    std::size_t same = 0;
    while (same < found.size() && same < expected.size() && found[same] == expected[same])
        ++same;
    const auto shown = [&](const std::vector<CivilSeconds> &list) {
        if (same >= list.size())
            return QByteArray("nothing");
        return QDateTime::fromSecsSinceEpoch(list[same], Qt::UTC).toString(Qt::ISODate).toLatin1();
    };
    return "from " + rule.startDay.toString(Qt::ISODate).toLatin1() + " " + rule.text() + ": found " + shown(found)
        + ", expected " + shown(expected);
}

int countOfRules(int usual)
{
    constexpr int longer = 50;
    return qEnvironmentVariableIsSet("VANTLE_LONG_TESTS") ? usual * longer : usual;
}

} // namespace

// Compares the expander with a second way to follow rules, which is slow and too plain to be wrong in the same places.
class RuleByDefinitionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wholeSeriesIsWhatTheDefinitionSays();
    void daysAreSlicesOfTheWhole();
    void timesWithinDaysAreWhatTheDefinitionSays();
};

void RuleByDefinitionTest::wholeSeriesIsWhatTheDefinitionSays()
{
    RandomPlainRules rules;
    int withSeveral = 0;

    for (int i = 0; i < countOfRules(500); ++i) {
        const PlainRule rule = rules.next();
        const QDate end = rule.startDay.addYears(yearsCompared);
        const std::vector<CivilSeconds> expected = rule.instances(end);

        const std::vector<CivilSeconds> found
            = expanded(seriesOf(rule), rule.start(), epoch().daysTo(end) * secondsPerDay - 1);

        QVERIFY2(found == expected, difference(rule, found, expected).constData());
        withSeveral += expected.size() > 2 ? 1 : 0;
    }

    QVERIFY2(withSeveral > countOfRules(500) / 2, qPrintable(QString::number(withSeveral)));
}

void RuleByDefinitionTest::daysAreSlicesOfTheWhole()
{
    RandomPlainRules rules;
    int notEmpty = 0;

    for (int i = 0; i < countOfRules(200); ++i) {
        const PlainRule rule = rules.next();
        const std::vector<CivilSeconds> whole = rule.instances(rule.startDay.addYears(yearsCompared));
        const Item series = seriesOf(rule);
        for (int k = 0; k < 20; ++k) {
            // Every other day is one on which something takes place.
            const auto someInstance = static_cast<std::size_t>(rules.below(static_cast<int>(whole.size())));
            const DayNumber day = k % 2 == 0 ? dayOf(whole[someInstance]) : dayOf(rule.start()) + rules.below(1'700);
            const CivilSeconds from = day * secondsPerDay;
            const CivilSeconds to = from + (k % 3 == 0 ? 7 : 1) * secondsPerDay - 1;
            std::vector<CivilSeconds> expected = whole;
            std::erase_if(expected, [&](CivilSeconds instance) { return instance < from || instance > to; });

            const std::vector<CivilSeconds> found = expanded(series, from, to);

            QVERIFY2(found == expected, difference(rule, found, expected).constData());
            notEmpty += expected.empty() ? 0 : 1;
        }
    }

    QVERIFY2(notEmpty >= countOfRules(200) * 10, qPrintable(QString::number(notEmpty)));
}

void RuleByDefinitionTest::timesWithinDaysAreWhatTheDefinitionSays()
{
    std::mt19937 random(24);
    const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    const auto mayList = [&](std::vector<int> &list, int limit) {
        for (int left = below(2) * (1 + below(3)); left > 0; --left)
            list.push_back(below(limit));
        std::ranges::sort(list);
        list.erase(std::unique(list.begin(), list.end()), list.end());
    };

    for (int i = 0; i < countOfRules(40); ++i) {
        PlainTimeRule plain;
        plain.step = std::array { 1, 60, 3600 }[static_cast<std::size_t>(i) % 3];
        plain.interval = plain.step == 1 ? 5 + below(4'000) : 1 + below(100);
        mayList(plain.hours, 24);
        mayList(plain.minutes, 60);
        mayList(plain.seconds, 60);
        if (below(3) == 0)
            plain.weekdays = { 1 + below(3), 4 + below(4) };
        const CivilSeconds start = dayNumber(2024, 2, 28) * secondsPerDay + below(86'400);
        const CivilSeconds end = start + 3 * secondsPerDay;
        // Once from the start, and once from the middle.
        for (const CivilSeconds from : { start + 1, start + 1 + below(200'000) }) {
            std::vector<CivilSeconds> expected;
            for (CivilSeconds second = from; second <= end; ++second) {
                if (plain.belongs(second, start))
                    expected.push_back(second);
            }

            std::vector<CivilSeconds> found;
            const auto rule = RecurrenceRule::parsed(plain.text());
            QVERIFY(rule);
            const auto outcome = RuleWalker(*rule, start, false).walk(from, end, [&](CivilSeconds civil) {
                if (civil >= from)
                    found.push_back(civil);
                return true;
            });

            QVERIFY2(outcome == RuleWalker::Outcome::Finished && found == expected, plain.text().constData());
        }
    }
}

VANTLE_TEST(RuleByDefinitionTest)
#include "RuleByDefinitionTest.moc"
