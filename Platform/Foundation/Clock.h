// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>

#include <chrono>
#include <functional>
#include <memory>

// A timer that fires again and again until it is destroyed.
class RepeatingTimer
{
public:
    RepeatingTimer() = default;
    virtual ~RepeatingTimer() = default;
    RepeatingTimer(const RepeatingTimer &) = delete;
    RepeatingTimer &operator=(const RepeatingTimer &) = delete;
};

// The only place that knows what time it is. Everybody who asks for the
// current instant or wants to be called later is given a clock.
class Clock
{
public:
    Clock() = default;
    virtual ~Clock() = default;
    Clock(const Clock &) = delete;
    Clock &operator=(const Clock &) = delete;

    // In local time, with millisecond resolution.
    virtual QDateTime now() const = 0;
    // Calls `action` every `interval`, the first time one interval from now.
    // The caller owns the timer and ends it by letting it go, also from within `action`.
    virtual std::unique_ptr<RepeatingTimer> repeat(std::chrono::milliseconds interval, std::function<void()> action)
        = 0;
};

class SystemClock final : public Clock
{
public:
    QDateTime now() const override;
    std::unique_ptr<RepeatingTimer> repeat(std::chrono::milliseconds interval, std::function<void()> action) override;
};
