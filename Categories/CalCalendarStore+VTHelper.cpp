// SPDX-License-Identifier: MIT
#include "CalCalendarStore+VTHelper.h"

#include <CalCalendarStore.h>

CalCalendarPtr defaultCalendar(const CalCalendarStore &store)
{
    const CalCalendarList calendars = store.calendars();
    return calendars.isEmpty() ? nullptr : calendars.first();
}

CalCalendarList calendarsForUIDs(const CalCalendarStore &store, const QStringList &uids)
{
    CalCalendarList calendars;
    calendars.reserve(uids.size());
    for (const QString &uid : uids) {
        if (const CalCalendarPtr calendar = store.calendarWithUID(uid))
            calendars.append(calendar);
    }
    return calendars;
}

QStringList UIDsForCalendars(const CalCalendarStore & /*store*/, const CalCalendarList &calendars)
{
    QStringList uids;
    uids.reserve(calendars.size());
    for (const CalCalendarPtr &calendar : calendars)
        uids.append(calendar->uid());
    return uids;
}

QStringList calendarsUID(const CalCalendarStore &store)
{
    return UIDsForCalendars(store, store.calendars());
}
