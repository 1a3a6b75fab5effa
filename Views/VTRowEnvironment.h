// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>

#include <functional>

class CalCalendarStore;
class Clock;
class Workspace;

// What rows need beside their item. All of it outlives every row.
struct VTRowEnvironment {
    CalCalendarStore &store; // the to-do row saves its to-do there
    Workspace &workspace; // opens links and attendees' addresses
    Clock &clock; // what "yesterday" and "overdue" are measured by
    // The day on screen, asked at the moment a row is made; an event that begins or ends on another
    // day shows that day on its badge. Empty when there is none.
    std::function<QDateTime()> shownDate;
};
