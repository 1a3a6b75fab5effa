// SPDX-License-Identifier: MIT
#pragma once

#include "CivilDate.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

#include <optional>
#include <utility>

namespace ICalendar
{

// The value of an RRULE whose parts can be changed one by one; all others stay as they were written.
class RuleText
{
public:
    explicit RuleText(const QByteArray &value);

    // Upper case; nothing when there is no such part.
    std::optional<QByteArray> part(const QByteArray &name) const;
    // In its place; at the end when it was not there.
    void setPart(const QByteArray &name, const QByteArray &value);
    void removePart(const QByteArray &name);
    QByteArray value() const;

private:
    QList<std::pair<QByteArray, QByteArray>> m_parts; // as written
};

// Where the days of a series go when one of them is moved.
//
// Mostly so many days further. A series that goes by the place in the month (the
// 15th, the second Tuesday) gets another place, so that the days between differ
// from month to month.
class DayMap
{
public:
    // The nth of a weekday in the month, from its end when negative.
    struct Place {
        int position = 0;
        int weekday = 0; // 0 Sunday to 6 Saturday

        static Place of(DayNumber day, bool fromEnd);
        bool operator==(const Place &) const = default;
    };

    static DayMap byDays(qint64 days);
    // A day at the one place goes `months` further to the other place; all others go `days` further.
    static DayMap byDayOfMonth(qint64 days, int months, int from, int to);
    static DayMap byPlace(qint64 days, int months, const Place &from, const Place &to);

    DayNumber moved(DayNumber day) const;
    // Whether all days go equally far.
    bool isUniform() const { return m_kind == Kind::Days; }

private:
    enum class Kind { Days, DayOfMonth, Place };

    Kind m_kind = Kind::Days;
    qint64 m_days = 0;
    int m_months = 0;
    int m_fromDay = 0;
    int m_toDay = 0;
    Place m_from;
    Place m_to;
};

// One occurrence of a series before and after.
struct OccurrenceMove {
    CivilSeconds from = 0;
    CivilSeconds to = 0;
    bool wasDate = false;
    bool becomesDate = false;
};

struct MovedRule {
    QByteArray value; // UNTIL is as it was
    DayMap days;
};

// The rule by which a series repeats after one of its occurrences has been moved and all others with it: its
// weekdays, days of the month, months and times of day move along. `start` is where the series starts. Nothing when
// no rule says what is meant.
std::optional<MovedRule> movedRule(const QByteArray &value, CivilSeconds start, const OccurrenceMove &move);

} // namespace ICalendar
