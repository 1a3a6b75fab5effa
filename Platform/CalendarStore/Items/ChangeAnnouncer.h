// SPDX-License-Identifier: MIT
#pragma once

#include <CalendarStoreBackend.h>

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <chrono>

namespace Items
{

// Gathers changes and announces them from the event loop: the first at once,
// those that follow closely together, so that a storm of changes makes a few
// announcements a second.
class ChangeAnnouncer final : public QObject
{
    Q_OBJECT

public:
    explicit ChangeAnnouncer(QObject *parent = nullptr);

    void add(const CalBackendChange &change);

    // While much is on its way: the next one waits as if one had just been announced, so that it tells of all that
    // comes until then, or until announceSoon().
    void gather() { m_sinceLast.start(); }
    void announceSoon();

    static constexpr std::chrono::milliseconds shortestInterval { 250 };

Q_SIGNALS:
    void changed(const CalBackendChange &change);

private:
    void announce();

    CalBackendChange m_ours;
    CalBackendChange m_others;
    QElapsedTimer m_sinceLast;
    QTimer m_timer;
};

} // namespace Items
