// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <memory>

namespace ICalendar
{

// Seconds since 1970-01-01T00:00:00 on the wall clock of some zone, with no
// regard to its offset. 64 bits hold the years 1 to 9999 with room to spare.
using CivilSeconds = qint64;
// Seconds since 1970-01-01T00:00:00Z.
using UtcSeconds = qint64;

// A time zone: turns wall-clock time into instants and back.
//
// A wall-clock time in a gap means the offset in force before the gap, one that
// occurs twice means the first of the two (RFC 5545, section 3.3.5).
class Zone
{
public:
    Zone() = default;
    virtual ~Zone() = default;
    Zone(const Zone &) = delete;
    Zone &operator=(const Zone &) = delete;

    virtual UtcSeconds toUtc(CivilSeconds civil) const = 0;
    virtual CivilSeconds toCivil(UtcSeconds utc) const = 0;
};
using ZonePtr = std::shared_ptr<const Zone>;

// A date or date-time as RFC 5545, sections 3.3.4 and 3.3.5, writes it.
struct CivilTime {
    enum class Form {
        Date, // a day; `civil` is its first second
        Floating, // wall-clock time wherever one is
        Utc,
        Zoned, // wall-clock time in `zone`
    };

    CivilSeconds civil = 0;
    Form form = Form::Floating;
    ZonePtr zone; // set for Zoned alone

    bool isDate() const { return form == Form::Date; }
    // `local` stands in for days and floating times.
    UtcSeconds toUtc(const Zone &local) const;

    bool operator==(const CivilTime &) const = default;
};

} // namespace ICalendar
