// SPDX-License-Identifier: MIT
#pragma once

#include "CivilTime.h"

#include <QByteArray>
#include <QByteArrayList>

#include <optional>

namespace ICalendar
{

// A zone of the system as a file can carry it: by its name, with a VTIMEZONE that
// says what the name means (RFC 5545, section 3.6.5, wants one for every TZID).
struct ZoneDefinition {
    QByteArray tzid;
    QByteArrayList lines; // from BEGIN:VTIMEZONE to END:VTIMEZONE, without line ends
    ZonePtr zone; // what the lines mean

    // The zone of the system by that name, by the rule for its clock changes that holds today and
    // henceforth. Nothing for a zone whose rule cannot be said in yearly rules by month and weekday.
    static std::optional<ZoneDefinition> ofSystemZone(const QByteArray &name);

    // Whether the definition tells the same time as the system's zone at an instant: an
    // earlier one can lie before the last change of the rule.
    bool isRightAt(UtcSeconds instant, const Zone &systemZone) const
    {
        return zone->toCivil(instant) == systemZone.toCivil(instant);
    }
};

} // namespace ICalendar
