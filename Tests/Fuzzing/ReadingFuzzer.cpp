// SPDX-License-Identifier: MIT
#include "Fuzzing.h"

#include <CivilDate.h>
#include <FileSnapshot.h>
#include <ICalendarReader.h>
#include <RecurrenceExpander.h>
#include <TextPatcher.h>
#include <ZoneRegistry.h>

#include <array>

using namespace ICalendar;
using Fuzzing::require;

namespace
{

// What the folder store asks of a file: which items it holds, and what happens on a day.
void expand(const FolderStore::FileSnapshot &file, const Items::ItemGroup &group, DayNumber day)
{
    if (group.master < 0)
        return;
    QList<const Item *> overrides;
    for (const int index : *group.overrides)
        overrides.append(&file.item(index));
    const ZonePtr local = ZoneRegistry::localZone();
    const UtcSeconds from = day * secondsPerDay;

    const Expansion expansion
        = expandSeries(file.item(group.master), overrides, from, from + secondsPerDay - 1, *local);

    UtcSeconds previous = from - 400'000'000'000; // before anything that a file can hold
    for (const Occurrence &occurrence : expansion.occurrences) {
        const UtcSeconds start = occurrence.start.toUtc(*local);
        require(start <= occurrence.end.toUtc(*local), "no occurrence ends before it starts");
        require(previous <= start, "occurrences come by their start");
        require(occurrence.overriddenBy < overrides.size(), "an override is one of those given");
        previous = start;
    }
}

} // namespace

// Any bytes can be read as a calendar file, in bounded time, and come out of the patcher as they went in.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Fuzzing::silenceLog();
    const Fuzzing::Input input(data, size);
    FolderStore::FileContent content;
    content.bytes = input.text();

    ZoneRegistry zones;
    const FolderStore::FileSnapshot file(QStringLiteral("a.ics"), content, zones);
    for (const Item &item : file.document().items) {
        require(!item.start || !item.end || item.end->isDate() == item.start->isDate(), "start and end are alike");
        require(item.durationDays >= 0 && item.durationSeconds >= 0, "nothing has a negative length");
    }
    for (const Items::ItemGroup &group : file.groups()) {
        require(!file.uidOf(group).isEmpty(), "every item has a name");
        for (const int year : std::array { 1, 1997, 2026, 9999 })
            expand(file, group, dayNumber(year, 3, 30));
    }
    require(TextPatcher(input.text()).patchedText() == input.text(), "an unchanged text stays as it is");
    return 0;
}
