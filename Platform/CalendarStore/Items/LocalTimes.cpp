// SPDX-License-Identifier: MIT
#include "LocalTimes.h"

#include <EmbeddedZone.h>
#include <TextPatcher.h>
#include <ValueTexts.h>
#include <ZoneDefinition.h>
#include <ZoneRegistry.h>

namespace Items
{

namespace
{

using ICalendar::Component;
using ICalendar::ContentLines;
using ICalendar::TextPatcher;

// The text's own zone of that name; -1 when it has none.
int zoneNamed(const TextPatcher &patcher, int calendar, const QByteArray &tzid)
{
    for (const int zone : patcher.componentsWithin(calendar, "VTIMEZONE")) {
        if (patcher.property(zone, "TZID").value_or(QByteArray()).trimmed() == tzid)
            return zone;
    }
    return -1;
}

QByteArray textOf(const ContentLines &lines, int component)
{
    const Component &place = lines.components()[static_cast<std::size_t>(component)];
    const qsizetype begin = lines.lines()[static_cast<std::size_t>(place.firstLine)].begin;
    return lines.text().sliced(begin, lines.lines()[static_cast<std::size_t>(place.lastLine)].end - begin);
}

// The first component of the calendar that is no zone: zones come before what uses them.
int firstItem(const TextPatcher &patcher, int calendar)
{
    const std::vector<Component> &all = patcher.lines().components();
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (all[i].parent == calendar && all[i].name != "VTIMEZONE")
            return static_cast<int>(i);
    }
    return -1;
}

TimeValue zonedValue(const ICalendar::Zone &zone, const QByteArray &tzid, ICalendar::UtcSeconds instant)
{
    return { ICalendar::dateTimeText(zone.toCivil(instant)), ";TZID=" + tzid };
}

} // namespace

TimeValue localTimeValue(TextPatcher &patcher, int component, ICalendar::UtcSeconds instant)
{
    TimeValue inUtc { ICalendar::utcText(instant), {} };
    const QByteArray name = ICalendar::ZoneRegistry::localZoneName();
    const int calendar = patcher.componentAround(component, "VCALENDAR");
    if (calendar < 0 || name.isEmpty() || name == "UTC" || name == "Etc/UTC")
        return inUtc;

    const ICalendar::ZonePtr local = ICalendar::ZoneRegistry::localZone();
    if (const int known = zoneNamed(patcher, calendar, name); known >= 0) {
        const ICalendar::ZonePtr zone = ICalendar::readEmbeddedZone(textOf(patcher.lines(), known));
        return zone ? zonedValue(*zone, name, instant) : inUtc;
    }
    const auto definition = ICalendar::ZoneDefinition::ofSystemZone(name);
    if (!definition || !definition->isRightAt(instant, *local))
        return inUtc;
    patcher.insertComponentBefore(firstItem(patcher, calendar), definition->lines);
    return zonedValue(*definition->zone, name, instant);
}

} // namespace Items
