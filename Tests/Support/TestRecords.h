// SPDX-License-Identifier: MIT
#pragma once

#include <CalEvent.h>
#include <CalTask.h>

#include <QColor>

// Records for tests, made in one line. They count as stored and read: uid and
// UID property are both the given one. What a test needs besides, it sets.

CalCalendarPtr makeCalendar(const QString &uid, const QColor &color = Qt::blue);
CalCalendarPtr makeReadOnlyCalendar(const QString &uid, const QColor &color = Qt::blue);

CalEventPtr makeEvent(const QString &uid, const QString &title, const QDateTime &start, const QDateTime &end);
// From the first to the last day, both included.
CalEventPtr makeAllDayEvent(const QString &uid, const QString &title, QDate first, QDate last);
// One occurrence of a series.
CalEventPtr makeOccurrence(const QString &uid, const QString &title, const QDateTime &start, const QDateTime &end);

CalTaskPtr makeTask(const QString &uid, const QString &title);
CalTaskPtr makeTaskDue(const QString &uid, const QString &title, const QDateTime &due);
CalTaskPtr makeCompletedTask(const QString &uid, const QString &title, const QDateTime &completed);

CalAlarmPtr makeAlarm(double relativeTrigger);
// With a value of its own for everything that an alarm holds.
CalAlarmPtr makeFullAlarm();

// An instant in local time, from "2026-03-11T09:00".
QDateTime localInstant(const char *text);
