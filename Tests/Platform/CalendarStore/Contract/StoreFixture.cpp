// SPDX-License-Identifier: MIT
#include "StoreFixture.h"

#include "FolderFixture.h"
#include "MemoryFixture.h"
#ifdef VANTLE_WITH_SERVICE
#include "ServiceFixture.h"
#endif

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

template <typename List> auto named(const List &records, const QString &title)
{
    const auto found
        = std::ranges::find(records, std::optional(title), [](const auto &record) { return record->title(); });
    return found == records.end() ? nullptr : *found;
}

template <typename List> QStringList titlesOfRecords(const List &records)
{
    QStringList titles;
    for (const auto &record : records)
        titles << record->title().value_or(u"(none)"_s);
    return titles;
}

} // namespace

CalEventList StoreFixture::eventsBetween(const QDateTime &start, const QDateTime &end)
{
    return store().eventsWithPredicate(
        CalCalendarStore::eventPredicateWithStartDate_endDate_calendars(start, end, store().calendars()));
}

CalEventList StoreFixture::eventsOn(QDate day)
{
    return eventsBetween(day.startOfDay(), day.addDays(1).startOfDay().addSecs(-1));
}

CalTaskList StoreFixture::tasks()
{
    return store().tasksWithPredicate(CalCalendarStore::taskPredicateWithCalendars(store().calendars()));
}

CalEventPtr StoreFixture::eventOn(QDate day, const QString &title)
{
    return named(eventsOn(day), title);
}

CalTaskPtr StoreFixture::task(const QString &title)
{
    return named(tasks(), title);
}

const std::vector<NamedFixture> &storeFixtures()
{
    static const std::vector<NamedFixture> fixtures {
        { "Folder", [] { return std::make_unique<FolderFixture>(); } },
        { "Memory", [] { return std::make_unique<MemoryFixture>(); }, false },
#ifdef VANTLE_WITH_SERVICE
        { "Service", [] { return std::make_unique<ServiceFixture>(); } },
#endif
    };
    return fixtures;
}

QStringList shown(const CalEventList &events)
{
    QStringList lines;
    for (const CalEventPtr &event : events) {
        lines << u"%1-%2 %3"_s.arg(event->startDate().toString(u"HH:mm"_s), event->endDate().toString(u"HH:mm"_s),
            event->title().value_or(u"(none)"_s));
    }
    return lines;
}

QStringList titlesOf(const CalEventList &events)
{
    return titlesOfRecords(events);
}

QStringList titlesOf(const CalTaskList &tasks)
{
    return titlesOfRecords(tasks);
}

QDateTime at(const char *time, QDate day)
{
    return { day, QTime::fromString(QString::fromLatin1(time)) };
}
