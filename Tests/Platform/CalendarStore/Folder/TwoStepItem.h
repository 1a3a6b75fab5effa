// SPDX-License-Identifier: MIT
#pragma once

#include "CalendarFolder.h"
#include "HookedCalls.h"
#include "SheetSave.h"

#include <CalEvent.h>

// The one item that the tests of the sheet's two saves edit, and what lies on disk of it.
namespace TwoStep
{

enum class Kind { Series, Once, New };

const QString fileName = QStringLiteral("home/item.ics");
const QDate day(2026, 3, 11);

// The file before the edit. The series has an exception of each sort, so that a save that mixes
// them up is noticed.
QByteArray textOf(Kind kind);
void fill(const CalendarFolder &folder, Kind kind);
std::unique_ptr<CalCalendarStore> storeWith(const CalendarFolder &folder, HookedCalls &calls);

CalEventList eventsOf(const CalCalendarStore &store, QDate from = day, QDate to = day);
// Of ten days on either side.
QStringList titles(const CalCalendarStore &store);
// The event of the day as a sheet holds it, edited: another title, an hour later.
CalEventPtr edited(const CalCalendarStore &store, Kind kind);

QStringList namesIn(const QString &folder);
QStringList itemsOf(const CalendarFolder &folder);
// The one item, whatever its name; empty when there is none.
QByteArray contentOf(const CalendarFolder &folder);
// The saves that are noted as under way.
QStringList journal();

// What the same edit makes of the file in one save.
QByteArray savedAtOnce(Kind kind);
// A new event has a name of its own each time.
QByteArray withoutUid(const QByteArray &text);

} // namespace TwoStep
