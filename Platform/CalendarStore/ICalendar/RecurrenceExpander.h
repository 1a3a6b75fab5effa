// SPDX-License-Identifier: MIT
#pragma once

#include "ICalendarItem.h"

#include <QList>

namespace ICalendar
{

// When one occurrence of a series takes place.
struct Occurrence {
    // The instant that names it: the start that the series gives it, before any override moved it.
    CivilTime recurrenceId;
    CivilTime start;
    CivilTime end; // half-open
    // Index into the overrides given to the expander; -1 for the series' own values.
    int overriddenBy = -1;
};

struct Expansion {
    QList<Occurrence> occurrences; // by start
    // A rule asks for more steps than any calendar needs, or makes more occurrences than anybody could look at:
    // none of its occurrences is there but the first of the series, if it lies in the range. The same holds for
    // the rest of the rules, if there are so many that all of them together ask for too much.
    bool repeatsTooOften = false;
};

// The occurrences of a series that overlap a range.
//
// `master` is the series, `overrides` its detached occurrences (items of the
// same UID with a RECURRENCE-ID). The range is [from, to] in instants, bounds as
// in CalCalendarStore; `local` is the zone in which days and floating times are
// meant. Work is bounded in steps and in time. An override whose instant the rule
// does not make is an occurrence all the same.
Expansion expandSeries(
    const Item &master, const QList<const Item *> &overrides, UtcSeconds from, UtcSeconds to, const Zone &local);

// An instant by which the last occurrence has ended, overrides included (for a rule with UNTIL perhaps somewhat
// later than it does), or nothing for a series without end or one whose end would take too many steps to find. For
// skipping series that lie wholly before a range.
std::optional<UtcSeconds> lastEnd(const Item &master, const QList<const Item *> &overrides, const Zone &local);

} // namespace ICalendar
