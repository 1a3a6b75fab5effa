// SPDX-License-Identifier: MIT
#pragma once

#include "CivilTime.h"

#include <vector>

namespace ICalendar
{

// A change of the offset from UTC.
struct ZoneTransition {
    UtcSeconds at = 0;
    int offset = 0; // seconds east of Greenwich, from then on
};

// A zone as a table of all its changes, so that a conversion is one binary search.
//
// The table reaches to the end of 2099. A later year is looked up as the year of
// 2072 to 2099 that has the same calendar: those 28 hold every kind of year, and
// rules for clock changes go by month and weekday.
class TransitionZone final : public Zone
{
public:
    static constexpr int lastTableYear = 2099;

    // Takes the changes in any order; those after the table's last year are left out.
    TransitionZone(int offsetBeforeAll, std::vector<ZoneTransition> transitions);

    UtcSeconds toUtc(CivilSeconds civil) const override;
    CivilSeconds toCivil(UtcSeconds utc) const override;

private:
    int m_offsetBeforeAll;
    std::vector<UtcSeconds> m_changes; // ascending
    // The wall-clock time from which the new offset holds without doubt, for each change. A time in a
    // gap and the first pass of one that occurs twice are before it.
    std::vector<CivilSeconds> m_civilChanges;
    std::vector<int> m_offsets;
};

} // namespace ICalendar
