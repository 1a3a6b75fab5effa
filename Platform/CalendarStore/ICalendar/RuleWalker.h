// SPDX-License-Identifier: MIT
#pragma once

#include "CivilDate.h"
#include "RecurrenceRule.h"

#include <functional>
#include <vector>

namespace ICalendar
{

// Follows a recurrence rule in wall-clock time, period by period: a period is
// one year, month, week, day, hour, minute or second, whatever the rule's
// frequency is. What a period holds does not depend on the ones before it, so the
// walk begins right where it is wanted; only a COUNT can make it begin at the start.
class RuleWalker
{
public:
    // The rule's interval must not be 0. `start` is where the series starts, and gives what the rule leaves out.
    RuleWalker(const RecurrenceRule &rule, CivilSeconds start, bool isDate);

    enum class Outcome { Finished, TooMuchWork };

    // Calls `take` with the instances after the start, ascending, up to `last`, until it answers false.
    // Those before `from` are left out or not, whichever is quicker. Heeds COUNT, the start being the
    // first instance, but not UNTIL.
    Outcome walk(CivilSeconds from, CivilSeconds last, const std::function<bool(CivilSeconds)> &take);
    // What the last walk cost: days looked at and instances made.
    qint64 work() const { return m_work; }

private:
    using Frequency = RecurrenceRule::Frequency;

    bool isBelowDaily() const { return m_rule.frequency < Frequency::Daily; }
    void fillInFromStart(CivilSeconds start);
    void makeTimesOfDay();
    // The period that holds a time. Periods are numbered.
    qint64 periodAt(CivilSeconds civil) const;
    CivilSeconds periodBegin(qint64 period) const;
    // How many instances each period has, or 0 when that differs.
    qint64 instancesPerPeriod() const;

    // These fill m_candidates. The result is the next period that can hold anything.
    qint64 expand(qint64 period);
    void expandYear(int year);
    void expandWeekYear(int year);
    void expandMonth(int year, int month);
    qint64 expandBelowDaily(qint64 period);
    void applyPositions();

    bool monthMatches(int month) const { return m_months == 0 || (m_months >> month & 1U) != 0; }
    // The days of a month that BYMONTHDAY allows, one bit each.
    quint32 allowedDays(int year, int month) const;
    bool dayMatches(DayNumber day) const;
    bool dayMatchesInMonth(DayNumber day, const YearMonthDay &date) const;
    bool weekdayMatches(DayNumber day, const YearMonthDay &date) const;
    void addDay(DayNumber day);

    RecurrenceRule m_rule;
    CivilSeconds m_start;
    bool m_isDate;
    qint64 m_firstPeriod = 0;
    std::vector<int> m_timesOfDay; // for frequencies of a day and more
    quint32 m_months = 0; // a bit each, from 1 up; 0 for every month
    quint32 m_weekdays = 0; // a bit each, whatever their position
    bool m_weekdaysHavePositions = false;
    std::vector<CivilSeconds> m_candidates;
    qint64 m_work = 0;
};

// The first day of the first week of a year (RFC 5545, BYWEEKNO: the first with at least four days in it).
DayNumber firstWeekBegin(int year, int weekStart);

} // namespace ICalendar
