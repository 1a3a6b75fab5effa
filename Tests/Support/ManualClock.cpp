// SPDX-License-Identifier: MIT
#include "ManualClock.h"

#include <algorithm>

class ManualClock::Timer final : public RepeatingTimer
{
public:
    Timer(ManualClock &clock, std::chrono::milliseconds interval, std::function<void()> action)
        : due(clock.m_elapsed + interval.count())
        , m_clock(clock)
        , m_interval(interval.count())
        , m_action(std::move(action))
    {
        m_clock.m_timers.push_back(this);
    }
    ~Timer() override { m_clock.m_timers.remove(this); }

    void fire()
    {
        due += m_interval;
        const auto lasting = m_action; // the action may let its own timer go
        lasting();
    }

    qint64 due; // milliseconds on the clock's own scale

private:
    ManualClock &m_clock;
    qint64 m_interval;
    std::function<void()> m_action;
};

ManualClock::ManualClock(const QDateTime &now)
    : m_now(now)
{
}

std::unique_ptr<RepeatingTimer> ManualClock::repeat(std::chrono::milliseconds interval, std::function<void()> action)
{
    return std::make_unique<Timer>(*this, interval, std::move(action));
}

void ManualClock::advance(std::chrono::milliseconds duration)
{
    const qint64 end = m_elapsed + duration.count();
    for (;;) {
        const auto next = std::ranges::min_element(m_timers, {}, &Timer::due);
        if (next == m_timers.end() || (*next)->due > end)
            break;
        m_now = m_now.addMSecs((*next)->due - m_elapsed);
        m_elapsed = (*next)->due;
        (*next)->fire();
    }
    m_now = m_now.addMSecs(end - m_elapsed);
    m_elapsed = end;
}
