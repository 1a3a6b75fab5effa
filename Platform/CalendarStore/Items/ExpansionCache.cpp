// SPDX-License-Identifier: MIT
#include "ExpansionCache.h"

#include <algorithm>

namespace Items
{

using ICalendar::Expansion;
using ICalendar::Item;
using ICalendar::UtcSeconds;

namespace
{

constexpr qint64 daysAround = 16;
constexpr qint64 secondsPerDay = 86400;

Expansion expand(const GroupRef &ref, UtcSeconds from, UtcSeconds to, const ICalendar::Zone &local)
{
    QList<const Item *> overrides;
    for (const int index : *ref.get().overrides)
        overrides << &ref.set->item(index);
    return ICalendar::expandSeries(ref.set->item(ref.get().master), overrides, from, to, local);
}

// Such a series fills a window of weeks with thousands of occurrences.
bool repeatsWithinTheDay(const Item &master)
{
    return std::ranges::any_of(master.repetition->rules, [](const QByteArray &rule) {
        return rule.contains("HOURLY") || rule.contains("MINUTELY") || rule.contains("SECONDLY")
            || rule.contains("BYHOUR") || rule.contains("BYMINUTE") || rule.contains("BYSECOND");
    });
}

} // namespace

const Expansion &ExpansionCache::expansion(
    const GroupRef &ref, UtcSeconds from, UtcSeconds to, const ICalendar::Zone &local, const QByteArray &zoneName)
{
    if (m_zoneName != zoneName) {
        m_windows.clear();
        m_zoneName = zoneName;
    }
    const auto known = m_windows.find(ref);
    if (known != m_windows.end() && known->from <= from && known->to >= to)
        return known->expansion;

    const bool isExact = repeatsWithinTheDay(ref.set->item(ref.get().master));
    const qint64 around = isExact ? 0 : daysAround * secondsPerDay;
    Window window { from - around, to + around, {} };
    window.expansion = expand(ref, window.from, window.to, local);
    if (window.expansion.repeatsTooOften && !isExact)
        window = { from, to, expand(ref, from, to, local) };
    return m_windows.insert(ref, window)->expansion;
}

void ExpansionCache::forget(const ItemSet &set)
{
    for (int index = 0; index < static_cast<int>(set.groups().size()); ++index)
        m_windows.remove({ &set, index });
}

} // namespace Items
