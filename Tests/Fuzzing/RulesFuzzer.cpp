// SPDX-License-Identifier: MIT
#include "Fuzzing.h"

#include <CivilDate.h>
#include <RecurrenceExpander.h>
#include <RecurrenceRule.h>
#include <RuleWalker.h>
#include <ZoneRegistry.h>

#include <algorithm>
#include <vector>

using namespace ICalendar;
using Fuzzing::require;

namespace
{

// A series whose rules are the lines of the input.
Item seriesOf(Fuzzing::Input &input)
{
    static const ZonePtr berlin = ZoneRegistry().systemZone(QStringLiteral("Europe/Berlin"));
    Item series;
    series.uid = QStringLiteral("a");
    series.repetition.edit().rules = input.text().split('\n');
    CivilTime start;
    const int years[] = { 1, 1600, 1996, 2023, 2026, 9999 };
    start.civil = dayNumber(years[input.choice(6)], 1 + input.choice(12), 29 - input.choice(2)) * secondsPerDay;
    switch (input.choice(4)) {
    case 0:
        start.form = CivilTime::Form::Date;
        break;
    case 1:
        start.form = CivilTime::Form::Zoned;
        start.zone = berlin;
        start.civil += 9000; // in the gap and the fold of the clock changes
        break;
    case 2:
        start.form = CivilTime::Form::Utc;
        start.civil += secondsPerDay - 1;
        break;
    default:
        start.civil += 9 * secondsPerHour;
        break;
    }
    series.start = start;
    series.end = start;
    series.end->civil += start.isDate() ? secondsPerDay : secondsPerHour;
    series.durationDays = start.isDate() ? 1 : 0;
    series.durationSeconds = start.isDate() ? 0 : secondsPerHour;
    return series;
}

void walk(const QByteArray &text, const CivilTime &start)
{
    const auto rule = RecurrenceRule::parsed(text);
    if (!rule || rule->interval == 0)
        return;
    RuleWalker walker(*rule, start.civil, start.isDate());
    CivilSeconds previous = start.civil;
    int taken = 0;
    (void)walker.walk(start.civil, start.civil + 400 * secondsPerDay, [&](CivilSeconds instance) {
        require(instance > previous, "instances ascend from behind the start");
        previous = instance;
        return ++taken < 1000;
    });
}

std::vector<CivilSeconds> startsIn(const Expansion &expansion, UtcSeconds from, UtcSeconds to, const Zone &local)
{
    std::vector<CivilSeconds> starts;
    for (const Occurrence &occurrence : expansion.occurrences) {
        if (occurrence.end.toUtc(local) > from && occurrence.start.toUtc(local) <= to)
            starts.push_back(occurrence.start.civil);
    }
    return starts;
}

} // namespace

// Any rules can be followed, in bounded work, and what a day holds does not depend on the range of the question.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Fuzzing::silenceLog();
    Fuzzing::Input input(data, size);
    const Item series = seriesOf(input);
    const ZonePtr local = ZoneRegistry::localZone();
    for (const QByteArray &rule : series.repetition->rules)
        walk(rule, *series.start);

    const UtcSeconds from = (dayOf(series.start->civil) + input.choice(256) * 3) * secondsPerDay;
    const UtcSeconds to = from + secondsPerDay - 1;
    const Expansion day = expandSeries(series, {}, from, to, *local);
    const Expansion around = expandSeries(series, {}, from - 9 * secondsPerDay, to + 9 * secondsPerDay, *local);
    if (!day.repeatsTooOften && !around.repeatsTooOften)
        require(
            startsIn(day, from, to, *local) == startsIn(around, from, to, *local), "a day is the same in any range");
    const auto last = lastEnd(series, {}, *local);
    for (const Occurrence &occurrence : around.occurrences)
        require(!last || around.repeatsTooOften || occurrence.end.toUtc(*local) <= *last, "nothing is after the end");
    return 0;
}
