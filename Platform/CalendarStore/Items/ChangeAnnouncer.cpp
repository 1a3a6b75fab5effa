// SPDX-License-Identifier: MIT
#include "ChangeAnnouncer.h"

#include <algorithm>
#include <utility>

namespace Items
{

namespace
{

bool isSomething(const CalBackendChange &change)
{
    return change.calendars || change.events || change.tasks;
}

void merge(CalBackendChange &into, const CalBackendChange &change)
{
    into.calendars = into.calendars || change.calendars;
    into.events = into.events || change.events;
    into.tasks = into.tasks || change.tasks;
    into.calendarUids += change.calendarUids;
}

} // namespace

ChangeAnnouncer::ChangeAnnouncer(QObject *parent)
    : QObject(parent)
{
    m_ours.author = CalBackendChange::Author::Ourselves;
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &ChangeAnnouncer::announce);
}

void ChangeAnnouncer::add(const CalBackendChange &change)
{
    if (!isSomething(change))
        return;
    const bool isOurs = change.author == CalBackendChange::Author::Ourselves;
    merge(isOurs ? m_ours : m_others, change);

    // What the person did is shown at once; what comes in may wait its turn.
    const qint64 passed = m_sinceLast.isValid() ? m_sinceLast.elapsed() : shortestInterval.count();
    const auto wait = isOurs ? 0 : std::max<qint64>(0, shortestInterval.count() - passed);
    if (!m_timer.isActive() || isOurs)
        m_timer.start(static_cast<int>(wait));
}

void ChangeAnnouncer::announceSoon()
{
    if (m_timer.isActive())
        m_timer.start(0);
}

void ChangeAnnouncer::announce()
{
    m_sinceLast.start();
    const CalBackendChange ours
        = std::exchange(m_ours, { CalBackendChange::Author::Ourselves, false, false, false, {} });
    const CalBackendChange others = std::exchange(m_others, {});
    if (isSomething(ours))
        Q_EMIT changed(ours);
    if (isSomething(others))
        Q_EMIT changed(others);
}

} // namespace Items
