// SPDX-License-Identifier: MIT
#pragma once

#include <CalRecurrenceRule.h>

#include <QByteArray>
#include <QDateTime>

#include <optional>

class CalCalendarItem;
class CalEvent;
class CalTask;

namespace ICalendar
{
struct Item;
}

namespace Items
{

// A text after the changes that were made to a record of one of its items since it
// was read: only the lines of what was changed, and those that tell of
// a change (DTSTAMP, LAST-MODIFIED, SEQUENCE), differ. `item` is how the text's
// component was read. A record that was never read has everything changed.
QByteArray patchedText(const QByteArray &text, const ICalendar::Item &item, const CalTask &task, const QDateTime &now);
// For an event that happens once, or one component of a series by itself.
QByteArray patchedText(
    const QByteArray &text, const ICalendar::Item &item, const CalEvent &event, const QDateTime &now);

// The component with these rules alone (RFC 5545, section 3.8.5.3), one line for each.
QByteArray textWithRule(const QByteArray &text, int component, const std::optional<CalRecurrenceRule> &rule);

// Whether the record holds a change that a text can take. A calendar is not kept in the text.
bool differsFromRead(const CalTask &task);
bool differsFromRead(const CalEvent &event);
bool hasOtherRule(const CalEvent &event);

// The text for a new item, to be patched: with its UID and without anything else of it.
QByteArray newItemText(const CalCalendarItem &item, const QString &uid, const QDateTime &now);

} // namespace Items
