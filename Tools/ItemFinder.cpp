// SPDX-License-Identifier: MIT
#include "ItemFinder.h"

#include "FolderOfCalendars.h"

#include <CalCalendarStore.h>
#include <CalendarStoreBackend.h>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace
{

// How far from where an event probably is it is looked for, in years: most are near.
constexpr std::array searchedYears { 1, 10, 100, 3000 };

// Those alone that hold such an item: looking far through all others takes its time.
CalCalendarList calendarsWith(const FolderOfCalendars &folder, const QString &uid)
{
    CalCalendarList calendars = folder.store->calendars();
    calendars.removeIf([&](const CalCalendarPtr &calendar) { return !folder.backend->holdsUid(calendar->uid(), uid); });
    return calendars;
}

CalEventList eventsNamed(
    const FolderOfCalendars &folder, const QString &uid, const QDateTime &from, const QDateTime &to)
{
    CalEventList events = folder.store->eventsWithPredicate(
        CalCalendarStore::eventPredicateWithStartDate_endDate_calendars(from, to, calendarsWith(folder, uid)));
    events.removeIf([&uid](const CalEventPtr &event) { return event->origin().plainUid != uid; });
    return events;
}

// The forms in which a back end can name the occurrence.
QStringList recurrenceIds(const EditOptions::Moment &occurrence)
{
    return { occurrence.instant.toString(u"yyyyMMdd"_s), occurrence.instant.toString(u"yyyyMMdd'T'HHmmss"_s),
        occurrence.instant.toUTC().toString(u"yyyyMMdd'T'HHmmss'Z'"_s) };
}

CalEventPtr occurrenceNamed(const FolderOfCalendars &folder, const QString &uid, const EditOptions::Moment &occurrence)
{
    QStringList ids = recurrenceIds(occurrence);
    if (!occurrence.isDay)
        ids.removeFirst();
    for (const int years : searchedYears) {
        const CalEventList events
            = eventsNamed(folder, uid, occurrence.instant.addYears(-years), occurrence.instant.addYears(years));
        const auto found = std::ranges::find_if(
            events, [&ids](const CalEventPtr &event) { return ids.contains(event->origin().recurrenceId); });
        if (found != events.end())
            return *found;
    }
    return nullptr;
}

} // namespace

CalTaskPtr taskNamed(const FolderOfCalendars &folder, const QString &uid)
{
    const CalTaskList tasks
        = folder.store->tasksWithPredicate(CalCalendarStore::taskPredicateWithCalendars(calendarsWith(folder, uid)));
    const auto found
        = std::ranges::find_if(tasks, [&uid](const CalTaskPtr &task) { return task->origin().plainUid == uid; });
    return found == tasks.end() ? nullptr : *found;
}

CalEventPtr eventNamed(const FolderOfCalendars &folder, const QString &uid,
    const std::optional<EditOptions::Moment> &occurrence, const QDateTime &now)
{
    if (occurrence)
        return occurrenceNamed(folder, uid, *occurrence);
    for (const int years : searchedYears) {
        const CalEventList near = eventsNamed(folder, uid, now.addYears(-years), now.addYears(years));
        if (near.isEmpty())
            continue;
        if (!near.constFirst()->recurrenceRule())
            return near.constFirst();
        // A series may have begun long before.
        const CalEventList all
            = eventsNamed(folder, uid, now.addYears(-searchedYears.back()), near.constFirst()->startDate());
        return all.isEmpty() ? near.constFirst() : all.constFirst();
    }
    return nullptr;
}
