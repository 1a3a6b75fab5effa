// SPDX-License-Identifier: MIT
#pragma once

#include "ItemIndex.h"

#include <CalTypes.h>

#include <CivilTime.h>

#include <QByteArray>
#include <QDateTime>

#include <functional>

namespace Items
{

// A question for events: a range, bounds as in CalCalendarStore, in the zone in which the process stands at that
// moment.
struct EventQuestion {
    EventQuestion(const QDateTime &start, const QDateTime &end);

    ICalendar::UtcSeconds from;
    ICalendar::UtcSeconds to;
    ICalendar::ZonePtr local;
    QByteArray zoneName;
};

// The records that answer a question to one calendar, marked as read. `calendar` stands in each of them.
// `repeatsTooOften` hears of a series of which only the first occurrence can be shown.
CalEventList eventsOf(const ItemIndex &index, const CalCalendarPtr &calendar, const EventQuestion &question,
    const std::function<void(const GroupRef &series)> &repeatsTooOften);
// `since` counts only for CompletedSince.
CalTaskList tasksOf(const ItemIndex &index, const CalCalendarPtr &calendar, CalendarStoreBackend::TaskState state,
    const QDateTime &since);

} // namespace Items
