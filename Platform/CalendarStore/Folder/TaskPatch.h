// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDateTime>

class CalTask;

namespace ICalendar
{
struct Item;
}

namespace FolderStore
{

// The text of a file after the changes that were made to a record of one of its
// to-dos since it was read: only the lines of what was changed, and those that tell
// of a change (DTSTAMP, LAST-MODIFIED, SEQUENCE), differ.
QByteArray patchedTaskText(
    const QByteArray &text, const ICalendar::Item &item, const CalTask &task, const QDateTime &now);

// Whether the record holds a change that a to-do's file can take.
bool differsFromRead(const CalTask &task);

} // namespace FolderStore
