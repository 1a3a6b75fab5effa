// SPDX-License-Identifier: MIT
#pragma once

#include <CalCalendarItem.h>

#include <QString>
#include <QVariant>

class CalendarApplication;

// Brings the calendar program to the front and has it show the item. Does nothing when the program
// does not list the item's calendar, or not the item in it.
void showInICal(const CalCalendarItem &item, CalendarApplication &application);

// The item's value by name, where the helper operations without arguments are names too
// ("VTPriorityIsNone", "VTDueDateIsNotSet", …). Invalid for a name that the item does not have.
QVariant valueForKey(const CalCalendarItem &item, const QString &key);

// Makes independent copies of the alarms, in order, the only alarms of a copied item.
void copyAlarmsInto(CalCalendarItem &copy, const CalAlarmList &alarms);
