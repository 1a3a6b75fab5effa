// SPDX-License-Identifier: MIT
#include "EmbeddedZone.h"

#include "ContentLines.h"
#include "PropertyLine.h"
#include "RuleWalker.h"
#include "TransitionZone.h"

#include <QList>

#include <optional>
#include <vector>

namespace ICalendar
{

namespace
{

// Far more than two changes a year for a hundred years; damage alone asks for more.
constexpr std::size_t mostTransitions = 20'000;

// A STANDARD or DAYLIGHT part: the changes to one offset.
struct Observance {
    std::optional<CivilSeconds> start; // in the offset before the change
    std::optional<int> offsetFrom;
    std::optional<int> offsetTo;
    QList<QByteArray> rules;
    QList<DateTimeValue> dates;

    void take(const PropertyLine &property);
    bool isUsable() const { return offsetTo && (start || !dates.isEmpty()); }
    // A missing offset before the change is as good as none.
    int before() const { return offsetFrom.value_or(*offsetTo); }
    UtcSeconds instant(const DateTimeValue &value) const { return value.isUtc ? value.civil : value.civil - before(); }
    void appendTransitions(std::vector<ZoneTransition> &transitions) const;
    void appendTransitions(std::vector<ZoneTransition> &transitions, const RecurrenceRule &rule) const;
};

void Observance::take(const PropertyLine &property)
{
    const QByteArray &name = property.name();
    if (name == "DTSTART") {
        const auto value = parsedDateTime(property.value());
        if (value && !start)
            start = value->civil;
    } else if (name == "TZOFFSETFROM" && !offsetFrom) {
        offsetFrom = parsedUtcOffset(property.value());
    } else if (name == "TZOFFSETTO" && !offsetTo) {
        offsetTo = parsedUtcOffset(property.value());
    } else if (name == "RRULE") {
        rules.append(property.value().toByteArray());
    } else if (name == "RDATE") {
        for (const QByteArray &one : property.value().toByteArray().split(',')) {
            if (const auto value = parsedDateTime(one.split('/').constFirst()))
                dates.append(*value);
        }
    }
}

void Observance::appendTransitions(std::vector<ZoneTransition> &transitions) const
{
    if (start)
        transitions.push_back({ *start - before(), *offsetTo });
    for (const DateTimeValue &date : dates)
        transitions.push_back({ instant(date), *offsetTo });
    for (const QByteArray &text : rules) {
        const auto rule = RecurrenceRule::parsed(text);
        if (start && rule && rule->interval > 0)
            appendTransitions(transitions, *rule);
    }
}

void Observance::appendTransitions(std::vector<ZoneTransition> &transitions, const RecurrenceRule &rule) const
{
    constexpr CivilSeconds end = dayNumber(TransitionZone::lastTableYear + 1, 1, 1) * secondsPerDay;
    RuleWalker(rule, *start, false).walk(*start, end, [&](CivilSeconds civil) {
        const UtcSeconds at = civil - before();
        if (rule.until
            && (rule.until->isUtc        ? at > rule.until->civil
                    : rule.until->isDate ? dayOf(civil) > dayOf(rule.until->civil)
                                         : civil > rule.until->civil))
            return false;
        transitions.push_back({ at, *offsetTo });
        return transitions.size() < mostTransitions;
    });
}

} // namespace

ZonePtr readEmbeddedZone(const QByteArray &vtimezone)
{
    const ContentLines lines(vtimezone);
    std::vector<Observance> observances(lines.components().size());
    for (const ContentLine &line : lines.lines()) {
        if (line.component < 0)
            continue;
        const auto index = static_cast<std::size_t>(line.component);
        const QByteArray &name = lines.components()[index].name;
        if (name == "STANDARD" || name == "DAYLIGHT")
            observances[index].take(PropertyLine(lines.unfolded(line)));
    }

    std::vector<ZoneTransition> transitions;
    std::optional<UtcSeconds> firstChange;
    int offsetBeforeAll = 0;
    for (const Observance &observance : observances) {
        if (!observance.isUsable())
            continue;
        const std::size_t sizeBefore = transitions.size();
        observance.appendTransitions(transitions);
        for (std::size_t i = sizeBefore; i < transitions.size(); ++i) {
            if (!firstChange || transitions[i].at < *firstChange) {
                firstChange = transitions[i].at;
                offsetBeforeAll = observance.before();
            }
        }
    }
    if (!firstChange)
        return nullptr;
    return std::make_shared<TransitionZone>(offsetBeforeAll, std::move(transitions));
}

} // namespace ICalendar
