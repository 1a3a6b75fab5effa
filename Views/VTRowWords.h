// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>
#include <QUrl>

// The words of rows: times, days and links, for the person's locale.
namespace VTRowWords
{

QString time(const QTime &time, const QLocale &locale);
// A day on a badge, where a time would stand: "19 Nov".
QString shortDay(const QDate &day, const QLocale &locale);
// "today", "tomorrow" and "yesterday"; within a week the weekday and the date; else the date, with
// its year when it is another one than today's.
QString day(const QDate &day, const QDate &today, const QLocale &locale);
QString dayAndTime(const QDateTime &instant, const QDate &today, const QLocale &locale);

// "due yesterday, 18:00"; without the time for a due date that has none.
QString due(const QDateTime &dueDate, bool isDateOnly, const QDate &today, const QLocale &locale);
// A day without a time is overdue from the next day on.
bool isOverdue(const QDateTime &dueDate, bool isDateOnly, const QDateTime &now);

// What a link shows: the address without what everybody skips. On one line, and nothing in it can
// turn the order of its signs around.
QString link(const QUrl &url);

// An event's badge for one of its bounds: the time, or the day when it is not the shown one.
QString startBadge(const QDateTime &start, const QDateTime &shownDate, const QLocale &locale);
QString endBadge(const QDateTime &start, const QDateTime &end, const QDateTime &shownDate, const QLocale &locale);

} // namespace VTRowWords
