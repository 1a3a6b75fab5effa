// SPDX-License-Identifier: MIT
#pragma once

#include "CivilTime.h"

#include <QByteArray>

namespace ICalendar
{

class PropertyLine;

// How a property writes its times: as days, in UTC, in a zone, or wherever one is.
struct TimeForm {
    CivilTime::Form form = CivilTime::Form::Utc;
    ZonePtr zone; // set for Zoned alone
    QByteArray parameters; // ";VALUE=DATE", ";TZID=…" or empty

    // That of a property whose value was read as `time`.
    static TimeForm of(const PropertyLine &property, const CivilTime &time);
    static TimeForm date();
    static TimeForm utc();

    bool isDate() const { return form == CivilTime::Form::Date; }
    CivilTime time(CivilSeconds civil) const { return { civil, form, zone }; }
    // An instant by the clock of this form; the first second of its day for a form of days.
    CivilSeconds civilAt(UtcSeconds instant, const Zone &local) const;
    // A time in another form; its wall-clock time is kept where both mean the same clock.
    CivilSeconds civilOf(const CivilTime &time, const Zone &local) const;
    // This form where it can name the instant, and else UTC: of a time that comes twice when the clock is set back, a
    // zone's clock names the first alone (RFC 5545, section 3.3.5).
    TimeForm naming(UtcSeconds instant) const;
    // The value of a property.
    QByteArray text(CivilSeconds civil) const;
};

} // namespace ICalendar
