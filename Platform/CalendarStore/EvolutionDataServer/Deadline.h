// SPDX-License-Identifier: MIT
#pragma once

#include "GLibTypes.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace Service
{

// How long a call that waits for its answer may take. The call is given cancellable(), which is cancelled when the
// time is over: a thread of its own watches the clock, for the one that calls waits inside the library.
class Deadline final
{
public:
    explicit Deadline(std::chrono::milliseconds limit);
    ~Deadline();
    Deadline(const Deadline &) = delete;
    Deadline &operator=(const Deadline &) = delete;

    GCancellable *cancellable() const { return m_cancellable.get(); }
    bool hasPassed() const { return m_hasPassed; }

private:
    Owned<GCancellable> m_cancellable;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_isDone = false;
    std::atomic<bool> m_hasPassed = false;
    std::thread m_watch;
};

} // namespace Service
