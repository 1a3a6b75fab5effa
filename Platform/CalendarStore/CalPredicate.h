// SPDX-License-Identifier: MIT
#pragma once

#include "CalTypes.h"

#include <QDateTime>

// A question to the store. Made by the functions of CalCalendarStore.
struct CalPredicate {
    enum class Subject { EventsInRange, AllTasks, TasksCompletedSince, UncompletedTasks };

    Subject subject = Subject::EventsInRange;
    CalCalendarList calendars; // only items of these; an empty list matches nothing
    QDateTime start; // the range's first instant, or the instant since when
    QDateTime end; // the range's last instant
};
