// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>

// The bounds of the day that holds an instant, by the system's time zone: normally 00:00:00 and
// 23:59:59. A day is as long as its zone makes it; where a clock change leaves out midnight, the day
// begins with its first instant, and where an hour comes twice, both belong to the day. The fraction
// of a second after the last second lies outside. Invalid for an invalid instant.
QDateTime firstSecondOfDay(const QDateTime &instant);
QDateTime lastSecondOfDay(const QDateTime &instant);

// Whether an instant is in the same year as another one that counts as now, by local time.
bool isInCurrentYear(const QDateTime &instant, const QDateTime &now);
