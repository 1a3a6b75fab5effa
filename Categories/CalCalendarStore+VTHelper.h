// SPDX-License-Identifier: MIT
#pragma once

#include <CalTypes.h>

#include <QStringList>

class CalCalendarStore;

// The calendar for new items: the store's first one, null when the store has none.
CalCalendarPtr defaultCalendar(const CalCalendarStore &store);

// The calendars of those identifiers, in their order. Identifiers should come from calendarsUID() of
// the same store: one that the store does not know is left out.
CalCalendarList calendarsForUIDs(const CalCalendarStore &store, const QStringList &uids);

QStringList UIDsForCalendars(const CalCalendarStore &store, const CalCalendarList &calendars);

// The identifiers of all calendars, in the store's order.
QStringList calendarsUID(const CalCalendarStore &store);
