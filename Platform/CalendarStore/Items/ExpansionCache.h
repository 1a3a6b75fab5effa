// SPDX-License-Identifier: MIT
#pragma once

#include "EventIndex.h"

#include <CivilTime.h>
#include <RecurrenceExpander.h>

#include <QByteArray>
#include <QHash>

namespace Items
{

// Remembers the occurrences of series around the days that were asked for, so
// that walking through the days, and asking for the same day every few seconds,
// expands nothing anew.
class ExpansionCache final
{
public:
    // All occurrences that overlap the range, and possibly others. `zoneName` stands for `local`: another one
    // than before drops what is remembered. Valid until the next call.
    const ICalendar::Expansion &expansion(const GroupRef &ref, ICalendar::UtcSeconds from, ICalendar::UtcSeconds to,
        const ICalendar::Zone &local, const QByteArray &zoneName);
    void forget(const ItemSet &set);

private:
    struct Window {
        ICalendar::UtcSeconds from = 0;
        ICalendar::UtcSeconds to = 0;
        ICalendar::Expansion expansion;
    };

    QByteArray m_zoneName;
    QHash<GroupRef, Window> m_windows;
};

} // namespace Items
