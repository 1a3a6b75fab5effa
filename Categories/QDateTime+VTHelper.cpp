// SPDX-License-Identifier: MIT
#include "QDateTime+VTHelper.h"

namespace
{

QDateTime localInstant(qint64 milliseconds)
{
    return QDateTime::fromMSecsSinceEpoch(milliseconds);
}

// The first instant at which the local date is that date or a later one, given a late guess.
// When midnight comes twice, Qt may answer with the second one.
QDateTime firstInstantOfDate(QDate date, const QDateTime &guess)
{
    constexpr qint64 longestFold = 3 * 3600; // seconds; no zone ever went back further within a day
    qint64 earlier = guess.toSecsSinceEpoch() - longestFold;
    qint64 later = guess.toSecsSinceEpoch();
    while (later - earlier > 1) {
        const qint64 middle = earlier + (later - earlier) / 2;
        if (QDateTime::fromSecsSinceEpoch(middle).date() < date)
            earlier = middle;
        else
            later = middle;
    }
    return QDateTime::fromSecsSinceEpoch(later);
}

QDateTime startOfDate(QDate date)
{
    // A zone that moved over the date line left out a whole day.
    QDateTime start = date.startOfDay();
    if (!start.isValid())
        start = date.addDays(1).startOfDay();
    if (!start.isValid())
        return {};

    const bool isLate = localInstant(start.toMSecsSinceEpoch() - 1).date() >= date;
    return isLate ? firstInstantOfDate(date, start) : start;
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
