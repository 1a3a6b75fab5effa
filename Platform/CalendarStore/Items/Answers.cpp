// SPDX-License-Identifier: MIT
#include "Answers.h"

#include "ItemTimes.h"
#include "RecordMaker.h"

#include <ZoneRegistry.h>

#include <QTimeZone>

namespace Items
{

namespace
{

using ICalendar::Item;

bool includes(const EventQuestion &question, const ItemTimes &times)
{
    return overlaps(times.start.toUtc(*question.local), times.end.toUtc(*question.local), question.from, question.to);
}

void addOccurrences(CalEventList &events, const RecordMaker &maker, const GroupRef &ref, const EventQuestion &question,
    const ICalendar::Expansion &expansion)
{
    for (const ICalendar::Occurrence &occurrence : expansion.occurrences) {
        const ItemTimes times { occurrence.start, occurrence.end };
        if (!includes(question, times))
            continue;
        const int override = occurrence.overriddenBy;
        const Item &values = ref.set->item(override >= 0 ? ref.get().overrides->at(override) : ref.get().master);
        events << maker.event(ref, values, times, recurrenceIdText(occurrence.recurrenceId));
    }
}

} // namespace

EventQuestion::EventQuestion(const QDateTime &start, const QDateTime &end)
    : from(start.toSecsSinceEpoch())
    , to(end.toSecsSinceEpoch())
    , local(ICalendar::ZoneRegistry::localZone())
    , zoneName(QTimeZone::systemTimeZoneId())
{
}

CalEventList eventsOf(const ItemIndex &index, const CalCalendarPtr &calendar, const EventQuestion &question,
    const std::function<void(const GroupRef &series)> &repeatsTooOften)
{
    CalEventList events;
    const RecordMaker maker(index, calendar, question.local);
    for (const GroupRef &ref : index.eventCandidates(question.from, question.to)) {
        if (ref.get().needsExpansion) {
            const ICalendar::Expansion &expansion
                = index.expansions().expansion(ref, question.from, question.to, *question.local, question.zoneName);
            if (expansion.repeatsTooOften)
                repeatsTooOften(ref);
            addOccurrences(events, maker, ref, question, expansion);
            continue;
        }
        const Item &item = ref.set->representative(ref.get());
        const auto times = timesOfItem(item);
        if (times && includes(question, *times)) {
            events << maker.event(ref, item, *times, recurrenceIdText(item.repetition->recurrenceId));
        }
    }
    return events;
}

CalTaskList tasksOf(const ItemIndex &index, const CalCalendarPtr &calendar, CalendarStoreBackend::TaskState state,
    const QDateTime &since)
{
    const ICalendar::ZonePtr local = ICalendar::ZoneRegistry::localZone();
    const RecordMaker maker(index, calendar, local);
    CalTaskList tasks;
    for (const GroupRef &ref : index.tasks().inState(state, since.isValid() ? since.toSecsSinceEpoch() : 0))
        tasks << maker.task(ref);
    return tasks;
}

} // namespace Items
