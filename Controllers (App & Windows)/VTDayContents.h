// SPDX-License-Identifier: MIT
#pragma once

#include <CalTypes.h>

#include <QCollator>
#include <QDateTime>
#include <QStringList>

#include <optional>

class CalCalendarStore;

// What a day shows, as values: the rules by which events and to-dos belong to a
// day, and the order of the to-dos. Knows no window, so that a command-line
// program gives the same answer as the window does.

// In weekday numbering from 1 for Sunday to 7 for Saturday.
constexpr int VTMonday = 2;

// Which day, and what of it is wanted.
struct VTDayQuestion {
    QDateTime date; // any instant of the day
    int weekStartDay = VTMonday;
    std::optional<QStringList> unselectedCalendarsUID; // hidden calendars; absent hides none
    bool showAllCompletedTasks = false;
    bool hideTasksDueAfterThisWeek = false;
};

// Days are counted as exactly 86400 seconds, with no allowance for a clock
// change inside the week: then the bounds lie an hour off midnight, by intent.
struct VTWeekBounds {
    QDateTime start;
    QDateTime end; // the week's last second
};
VTWeekBounds VTWeekBoundsOfDay(const QDateTime &date, int weekStartDay);

// The identifiers that unselect a calendar: its own one first, then those of its sources where a service keeps events
// and to-dos apart. An identifier that is another calendar's own means that calendar alone.
QStringList VTIdentifiersOfCalendar(const CalCalendarStore &store, const QString &calendarUid);
bool VTIsUnselected(
    const CalCalendarStore &store, const QString &calendarUid, const QStringList &unselectedCalendarsUID);

// All calendars of the store but the unselected ones, in the store's order.
CalCalendarList VTSelectedCalendars(
    const CalCalendarStore &store, const std::optional<QStringList> &unselectedCalendarsUID);

// In the store's own order.
CalEventList VTEventsOfDay(const CalCalendarStore &store, const VTDayQuestion &question);

// Unsorted: the completed ones before the others, unless all completed ones are wanted.
CalTaskList VTTasksOfDay(const CalCalendarStore &store, const VTDayQuestion &question);

// The values that are kept in the settings; every other number sorts by title.
enum VTTaskSortMethod { VTSortByDueDate = 0, VTSortByPriority = 1, VTSortByTitle = 2 };

// Titles compare as the collator says, without regard to case; a to-do without a
// title comes before those with one. To-dos that compare equal keep their order.
CalTaskList VTSortedTasks(CalTaskList tasks, int sortMethod, QCollator collator = QCollator());
