// SPDX-License-Identifier: MIT
#include "Deadline.h"

namespace Service
{

Deadline::Deadline(std::chrono::milliseconds limit)
    : m_cancellable(g_cancellable_new())
    , m_watch([this, limit] {
        std::unique_lock lock(m_mutex);
        if (m_changed.wait_for(lock, limit, [this] { return m_isDone; }))
            return;
        m_hasPassed = true;
        g_cancellable_cancel(m_cancellable.get());
    })
{
}

Deadline::~Deadline()
{
    {
        const std::scoped_lock lock(m_mutex);
        m_isDone = true;
    }
    m_changed.notify_one();
    m_watch.join();
}

} // namespace Service
