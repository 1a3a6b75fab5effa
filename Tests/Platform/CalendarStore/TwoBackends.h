// SPDX-License-Identifier: MIT
#pragma once

#include "MemoryBackend.h"
#include "TestRecords.h"

#include <CalCalendarStore.h>

#include <memory>

// A store over two back ends, "first" the better one.
struct TwoBackends {
    TwoBackends()
    {
        auto ownFirst = std::make_unique<MemoryBackend>();
        auto ownSecond = std::make_unique<MemoryBackend>();
        first = ownFirst.get();
        second = ownSecond.get();
        std::vector<std::unique_ptr<CalendarStoreBackend>> backends;
        backends.push_back(std::move(ownFirst));
        backends.push_back(std::move(ownSecond));
        store = std::make_unique<CalCalendarStore>(std::move(backends));
    }

    CalEventList events(const char *start = "2026-03-11T00:00:00", const char *end = "2026-03-11T23:59:59") const
    {
        return store->eventsWithPredicate(CalCalendarStore::eventPredicateWithStartDate_endDate_calendars(
            localInstant(start), localInstant(end), store->calendars()));
    }
    CalTaskList tasks() const
    {
        return store->tasksWithPredicate(CalCalendarStore::taskPredicateWithCalendars(store->calendars()));
    }

    MemoryBackend *first;
    MemoryBackend *second;
    std::unique_ptr<CalCalendarStore> store;
};

template <typename List> QStringList uids(const List &records)
{
    QStringList all;
    for (const auto &record : records)
        all.append(record->uid());
    return all;
}

template <typename List> QStringList titles(const List &records)
{
    QStringList all;
    for (const auto &record : records)
        all.append(record->title().value_or(QStringLiteral("(none)")));
    return all;
}
