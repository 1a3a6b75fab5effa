// SPDX-License-Identifier: MIT
#include "LocalTimeCache.h"

namespace Items
{

namespace
{

// Those of some months; beyond that it begins anew.
constexpr qsizetype mostTimes = 10'000;

} // namespace

QDateTime LocalTimeCache::at(ICalendar::UtcSeconds instant, const ICalendar::ZonePtr &local)
{
    if (m_local != local || m_times.size() >= mostTimes) {
        m_times.clear();
        m_local = local;
    }
    const auto known = m_times.constFind(instant);
    return known != m_times.cend() ? *known : *m_times.insert(instant, QDateTime::fromSecsSinceEpoch(instant));
}

} // namespace Items
