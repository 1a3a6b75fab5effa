// SPDX-License-Identifier: MIT
#include "NotificationMerger.h"

#include <algorithm>
#include <utility>

NotificationMerger::NotificationMerger(QObject *parent)
    : QObject(parent)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &NotificationMerger::post);
}

void NotificationMerger::add(CalNotificationName name, const QSet<QString> &calendarUids)
{
    m_pending[name].unite(calendarUids);
    if (m_timer.isActive())
        return; // restarting would put off the announcement for as long as the burst lasts

    const qint64 remaining = m_sinceLastPost.isValid() ? interval.count() - m_sinceLastPost.elapsed() : 0;
    m_timer.start(static_cast<int>(std::max<qint64>(0, remaining)));
}

void NotificationMerger::post()
{
    m_sinceLastPost.start();
    const auto pending = std::exchange(m_pending, {}); // receivers may cause new changes
    for (auto entry = pending.cbegin(); entry != pending.cend(); ++entry)
        Q_EMIT notificationPosted({ entry.key(), entry.value() });
}
