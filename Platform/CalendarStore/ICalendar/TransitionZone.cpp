// SPDX-License-Identifier: MIT
#include "TransitionZone.h"

#include "CivilDate.h"

#include <algorithm>
#include <array>
#include <limits>

namespace ICalendar
{

namespace
{

constexpr CivilSeconds startOfYear(int year)
{
    return dayNumber(year, 1, 1) * secondsPerDay;
}

constexpr CivilSeconds tableEnd = startOfYear(TransitionZone::lastTableYear + 1);

// The first seconds of years that stand in for others: by their first weekday, ordinary years before leap years.
constexpr auto standIns = [] {
    std::array<CivilSeconds, std::size_t { 2 } * daysPerWeek> starts {};
    for (int year = TransitionZone::lastTableYear - 27; year <= TransitionZone::lastTableYear; ++year) {
        const int kind = weekday(dayNumber(year, 1, 1)) + (isLeapYear(year) ? daysPerWeek : 0);
        starts[static_cast<std::size_t>(kind)] = startOfYear(year);
    }
    return starts;
}();

// How far a time beyond the table lies after the same moment of the year that stands in for its own.
qint64 shiftIntoTable(qint64 seconds)
{
    const int year = yearMonthDay(dayOf(seconds)).year;
    const int kind = weekday(dayNumber(year, 1, 1)) + (isLeapYear(year) ? daysPerWeek : 0);
    return startOfYear(year) - standIns[static_cast<std::size_t>(kind)];
}

} // namespace

TransitionZone::TransitionZone(int offsetBeforeAll, std::vector<ZoneTransition> transitions)
    : m_offsetBeforeAll(offsetBeforeAll)
{
    std::ranges::stable_sort(transitions, {}, &ZoneTransition::at);
    int offset = offsetBeforeAll;
    CivilSeconds previous = std::numeric_limits<CivilSeconds>::min();
    for (const ZoneTransition &transition : transitions) {
        if (transition.at >= tableEnd)
            break;
        if (transition.offset == offset)
            continue;
        // Changes that follow each other within hours, as damaged data has them, must not undo the order.
        previous = std::max(previous, transition.at + std::max(offset, transition.offset));
        m_changes.push_back(transition.at);
        m_civilChanges.push_back(previous);
        m_offsets.push_back(transition.offset);
        offset = transition.offset;
    }
    m_changes.shrink_to_fit();
    m_civilChanges.shrink_to_fit();
    m_offsets.shrink_to_fit();
}

UtcSeconds TransitionZone::toUtc(CivilSeconds civil) const
{
    if (civil >= tableEnd) {
        const qint64 shift = shiftIntoTable(civil);
        return toUtc(civil - shift) + shift;
    }
    const auto next = std::ranges::upper_bound(m_civilChanges, civil);
    const auto changes = next - m_civilChanges.begin();
    return civil - (changes == 0 ? m_offsetBeforeAll : m_offsets[static_cast<std::size_t>(changes - 1)]);
}

CivilSeconds TransitionZone::toCivil(UtcSeconds utc) const
{
    if (utc >= tableEnd) {
        const qint64 shift = shiftIntoTable(utc);
        return toCivil(utc - shift) + shift;
    }
    const auto next = std::ranges::upper_bound(m_changes, utc);
    const auto changes = next - m_changes.begin();
    return utc + (changes == 0 ? m_offsetBeforeAll : m_offsets[static_cast<std::size_t>(changes - 1)]);
}

} // namespace ICalendar
