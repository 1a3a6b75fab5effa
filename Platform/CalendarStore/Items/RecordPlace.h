// SPDX-License-Identifier: MIT
#pragma once

#include "ItemIndex.h"

#include <CalCalendarItem.h>

#include <QByteArray>
#include <QDateTime>

#include <optional>

class CalEvent;
class CalTask;

namespace Items
{

// The group of the set that a record was read from. Nothing when the set does not hold it.
std::optional<int> groupIn(const ItemSet &set, const CalCalendarItem &record);
// Where a record comes from that is kept in that set. Nothing when the set does not hold it.
std::optional<CalItemOrigin> originIn(const ItemIndex &index, const ItemSet &set, const CalCalendarItem &record);

// The text that `set` was read from, in which every component of the group has the UID by which it is known.
QByteArray textWithUids(const ItemSet &set, int index, const QByteArray &text);

// The record's item by itself, to go into another back end: of the text that `set` was read from, in which every
// component of it then has the UID by which it is known. Nothing when the set does not hold it.
std::optional<QByteArray> textToSend(const ItemSet &set, const CalCalendarItem &record, const QByteArray &text);
// Where the record is to be found in such a text, once that is kept under this name; nothing when it is not in it.
std::optional<CalItemOrigin> originOfSent(
    const QString &name, const CalCalendarItem &record, const QByteArray &text, ICalendar::ZoneRegistry &zones);

// What was saved counts as if it had been read from that set just now.
void countAsRead(CalTask &task, const ItemIndex &index, const ItemSet &set);
void countAsRead(CalEvent &event, const ItemIndex &index, const ItemSet &set);

// The whole text for a new item, and a UID for it: of characters that are safe everywhere, and taken by nobody.
QByteArray textOfNew(const CalTask &task, const QString &uid, const QDateTime &now, ICalendar::ZoneRegistry &zones);
QByteArray textOfNew(const CalEvent &event, const QString &uid, const QDateTime &now, ICalendar::ZoneRegistry &zones);
QString newIdentifier();

} // namespace Items
