// SPDX-License-Identifier: MIT
#include "QDateTime+VTHelper.h"

namespace
{

// The first instant at which the local date is that date or, where the zone left it out, a later one.
//
// Found by halving, from instants alone: when a clock change makes midnight come twice or not at
// all, going from a date and a time to an instant has no one answer, and Qt's is not always the first.
QDateTime startOfDate(QDate date)
{
    if (!date.isValid())
        return {};

    // Where no clock change is near, there is one answer.
    constexpr qint64 near = 3 * 3600; // seconds; more than any clock is changed by
    const qint64 midnight = QDateTime(date, QTime(0, 0)).toSecsSinceEpoch();
    const QDateTime earlier = QDateTime::fromSecsSinceEpoch(midnight - near);
    const QDateTime later = QDateTime::fromSecsSinceEpoch(midnight + near);
    if (earlier.offsetFromUtc() == later.offsetFromUtc() && earlier.date() < date && later.date() == date)
        return QDateTime::fromSecsSinceEpoch(midnight);

    constexpr qint64 farthestFromUtc = 26 * 3600; // seconds; the date line's zones and then a clock change
    const qint64 midnightInUtc = date.startOfDay(Qt::UTC).toSecsSinceEpoch();
    qint64 before = midnightInUtc - farthestFromUtc;
    qint64 after = midnightInUtc + farthestFromUtc;
    while (after - before > 1) {
        const qint64 middle = before + (after - before) / 2;
        if (QDateTime::fromSecsSinceEpoch(middle).date() < date)
            before = middle;
        else
            after = middle;
    }
    return QDateTime::fromSecsSinceEpoch(after);
}

} // namespace

QDateTime firstSecondOfDay(const QDateTime &instant)
{
    return startOfDate(instant.toLocalTime().date());
}

QDateTime lastSecondOfDay(const QDateTime &instant)
{
    // Reckoned from the next day, so that it is right for days of any length.
    return startOfDate(instant.toLocalTime().date().addDays(1)).addSecs(-1);
}

bool isInCurrentYear(const QDateTime &instant, const QDateTime &now)
{
    return instant.toLocalTime().date().year() == now.toLocalTime().date().year();
}
