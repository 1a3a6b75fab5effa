// SPDX-License-Identifier: MIT
#pragma once

#include "TransitionZone.h"

#include <QByteArray>

#include <optional>
#include <vector>

namespace ICalendar
{

// A yearly rule for clock changes in the form of the variable TZ (POSIX, chapter
// 8.3, with the extensions of RFC 8536): "CET-1CEST,M3.5.0,M10.5.0/3".
class PosixZoneRule
{
public:
    static std::optional<PosixZoneRule> parsed(const QByteArray &text);

    int standardOffset() const { return m_standardOffset; }
    // The two changes of that year; none for a zone without daylight saving time.
    std::vector<ZoneTransition> transitions(int year) const;

private:
    struct ChangeDay {
        enum class Form { MonthWeekDay, JulianWithoutLeapDay, ZeroBased };

        Form form = Form::ZeroBased;
        int month = 1;
        int week = 1; // 5 is the last
        int day = 0; // of the week or of the year
        int time = 7200; // seconds after midnight, -167 to 167 hours
    };
    class Parser;

    static CivilSeconds civil(const ChangeDay &change, int year);

    int m_standardOffset = 0;
    int m_daylightOffset = 0;
    bool m_hasDaylight = false;
    ChangeDay m_daylightBegin;
    ChangeDay m_daylightEnd;
};

} // namespace ICalendar
