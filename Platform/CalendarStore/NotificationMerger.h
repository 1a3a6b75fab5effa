// SPDX-License-Identifier: MIT
#pragma once

#include "CalNotification.h"

#include <QElapsedTimer>
#include <QMap>
#include <QObject>
#include <QSet>
#include <QTimer>

#include <chrono>

// Turns bursts of changes into few notifications.
//
// The first change is announced with the next turn of the event loop; what
// comes sooner than an interval after that is collected and announced at the
// interval's end, however long the burst goes on. Nothing is lost.
class NotificationMerger final : public QObject
{
    Q_OBJECT

public:
    // So that whoever fetches everything anew at each does it a few times a second at most.
    static constexpr std::chrono::milliseconds interval { 250 };

    explicit NotificationMerger(QObject *parent = nullptr);

    void add(CalNotificationName name, const QSet<QString> &calendarUids);

Q_SIGNALS:
    // Each name once at most, in the order of their declaration; always from the event loop.
    void notificationPosted(const CalNotification &notification);

private:
    void post();

    QMap<CalNotificationName, QSet<QString>> m_pending;
    QTimer m_timer;
    QElapsedTimer m_sinceLastPost; // invalid before the first
};
