// SPDX-License-Identifier: MIT
#pragma once

#include <Clock.h>

#include <list>

// A clock that stands still until it is told to go on.
class ManualClock final : public Clock
{
public:
    explicit ManualClock(const QDateTime &now);

    QDateTime now() const override { return m_now; }
    std::unique_ptr<RepeatingTimer> repeat(std::chrono::milliseconds interval, std::function<void()> action) override;

    // Goes forward and fires every timer that falls due, in order, each at its own instant.
    void advance(std::chrono::milliseconds duration);
    // Sets the time as a person does: forward or back, and no timer notices.
    void setNow(const QDateTime &now) { m_now = now; }
    int runningTimers() const { return static_cast<int>(m_timers.size()); }

private:
    class Timer;
    QDateTime m_now;
    qint64 m_elapsed = 0; // milliseconds
    std::list<Timer *> m_timers;
};
