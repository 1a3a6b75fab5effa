// SPDX-License-Identifier: MIT
#include "Clock.h"

#include <QTimer>

namespace
{

class EventLoopTimer final : public RepeatingTimer
{
public:
    EventLoopTimer(std::chrono::milliseconds interval, std::function<void()> action)
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [action = std::move(action)] {
            // The action may let its own timer go; a copy outlives that.
            const auto lasting = action;
            lasting();
        });
        m_timer.start(interval);
    }

private:
    QTimer m_timer;
};

} // namespace

QDateTime SystemClock::now() const
{
    return QDateTime::currentDateTime();
}

std::unique_ptr<RepeatingTimer> SystemClock::repeat(std::chrono::milliseconds interval, std::function<void()> action)
{
    return std::make_unique<EventLoopTimer>(interval, std::move(action));
}
