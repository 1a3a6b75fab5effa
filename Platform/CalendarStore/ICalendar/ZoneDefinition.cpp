// SPDX-License-Identifier: MIT
#include "ZoneDefinition.h"

#include "CivilDate.h"
#include "EmbeddedZone.h"
#include "PosixZoneRule.h"
#include "SystemZone.h"
#include "ValueTexts.h"

#include <QFile>

#include <algorithm>
#include <array>

namespace ICalendar
{

namespace
{

constexpr int firstYear = 1970;
// With every kind of year in them.
constexpr int lastYear = firstYear + 67;

// One of the two changes of each year, by the clock before it.
struct YearlyChange {
    std::vector<CivilSeconds> onsets;
    int offsetBefore = 0;
    int offsetAfter = 0;
};

bool isNth(DayNumber day, int nth)
{
    const YearMonthDay date = yearMonthDay(day);
    if (nth < 0)
        return date.day > daysInMonth(date.year, date.month) - daysPerWeek;
    return (date.day - 1) / daysPerWeek + 1 == nth;
}

// The rule that makes exactly these onsets; empty when there is none by month and weekday.
QByteArray ruleOf(const YearlyChange &change)
{
    static constexpr std::array<const char *, daysPerWeek> weekdayNames { "SU", "MO", "TU", "WE", "TH", "FR", "SA" };

    const DayNumber first = dayOf(change.onsets.front());
    const int month = yearMonthDay(first).month;
    const bool isRegular = std::ranges::all_of(change.onsets, [&](CivilSeconds onset) {
        return yearMonthDay(dayOf(onset)).month == month && weekday(dayOf(onset)) == weekday(first)
            && timeOfDay(onset) == timeOfDay(change.onsets.front());
    });
    for (const int nth : { 1, 2, 3, 4, -1 }) {
        const auto isNthToo = [nth](CivilSeconds onset) { return isNth(dayOf(onset), nth); };
        if (isRegular && std::ranges::all_of(change.onsets, isNthToo)) {
            return "FREQ=YEARLY;BYMONTH=" + QByteArray::number(month) + ";BYDAY=" + QByteArray::number(nth)
                + weekdayNames.at(static_cast<size_t>(weekday(first)));
        }
    }
    return {};
}

QByteArrayList observance(CivilSeconds onset, int offsetBefore, int offsetAfter, const QByteArray &rule)
{
    const QByteArray name = offsetAfter > offsetBefore ? "DAYLIGHT" : "STANDARD";
    QByteArrayList lines { "BEGIN:" + name, "DTSTART:" + dateTimeText(onset),
        "TZOFFSETFROM:" + utcOffsetText(offsetBefore), "TZOFFSETTO:" + utcOffsetText(offsetAfter) };
    if (!rule.isEmpty())
        lines << "RRULE:" + rule;
    return lines << "END:" + name;
}

// The two observances of a zone with daylight saving time; nothing when rules cannot say them.
std::optional<QByteArrayList> observances(const PosixZoneRule &rule)
{
    std::array<YearlyChange, 2> changes;
    for (int year = firstYear; year <= lastYear; ++year) {
        const std::vector<ZoneTransition> ofYear = rule.transitions(year);
        if (ofYear.size() != changes.size())
            return std::nullopt;
        for (std::size_t i = 0; i < changes.size(); ++i) {
            const int before = ofYear[1 - i].offset;
            changes.at(i).onsets.push_back(ofYear[i].at + before);
            changes.at(i).offsetBefore = before;
            changes.at(i).offsetAfter = ofYear[i].offset;
        }
    }
    QByteArrayList lines;
    for (const YearlyChange &change : changes) {
        const QByteArray text = ruleOf(change);
        if (text.isEmpty())
            return std::nullopt;
        lines << observance(change.onsets.front(), change.offsetBefore, change.offsetAfter, text);
    }
    return lines;
}

} // namespace

std::optional<ZoneDefinition> ZoneDefinition::ofSystemZone(const QByteArray &name)
{
    const auto rule = PosixZoneRule::parsed(yearlyRuleOfZoneFile(zoneFolder() + u'/' + QFile::decodeName(name)));
    if (!rule)
        return std::nullopt;
    const int standard = rule->standardOffset();
    constexpr CivilSeconds epoch = 0;
    const auto changes = rule->transitions(firstYear).empty() ? std::optional(observance(epoch, standard, standard, {}))
                                                              : observances(*rule);
    if (!changes)
        return std::nullopt;

    ZoneDefinition definition;
    definition.tzid = name;
    definition.lines = QByteArrayList { "BEGIN:VTIMEZONE", "TZID:" + name } + *changes;
    definition.lines << "END:VTIMEZONE";
    definition.zone = readEmbeddedZone(definition.lines.join("\r\n") + "\r\n");
    return definition.zone ? std::optional(definition) : std::nullopt;
}

} // namespace ICalendar
