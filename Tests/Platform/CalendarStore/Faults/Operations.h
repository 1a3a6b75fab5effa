// SPDX-License-Identifier: MIT
#pragma once

#include <CalCalendarStore.h>

#include <QByteArray>
#include <QDate>

#include <functional>
#include <optional>

class CalendarFolder;

// What the tests of disturbed writing do to a folder of calendars, over and over.
//
// Every operation works on items of its own. A number goes into the title and
// many times into the notes, so that a file that is half of one save and half of
// another can be told from a whole one.
namespace Operations
{

// Nothing when it went well.
using Operation = std::function<std::optional<StoreError>(CalCalendarStore &store, int number)>;

// task, event, occurrence, series, create, move, remove: in the order of names(). Nothing for any other name.
std::optional<Operation> named(const QString &name);
const QStringList &names();

// Puts the items into the folder on which the operations work.
void prepare(const CalendarFolder &folder);

// Looks at the folder after `done` operations were acknowledged and perhaps one more was begun: every item
// is whole, in the state before or after a save, and no name is there that does not belong. Says what is
// wrong; empty when all is well. Opens the folder with a store first, as the next start does.
QString faultIn(const CalendarFolder &folder, const QString &operation, int done);

} // namespace Operations
