// SPDX-License-Identifier: MIT
#pragma once

#include "ItemSet.h"

#include <QHash>

#include <vector>

namespace Items
{

// One group of a set; whoever owns the set keeps it alive.
struct GroupRef {
    const ItemSet *set = nullptr;
    int group = 0;

    const ItemGroup &get() const { return set->groups()[static_cast<size_t>(group)]; }
    auto operator<=>(const GroupRef &) const = default;
};
size_t qHash(const GroupRef &ref, size_t seed = 0);

// The events of a calendar by time, so that a day's question looks at the events of
// that day and of the few before alone. Events that happen once stand under the first
// day that they may touch, each in one place, for there are thousands; series and
// events of many days, few as they are, are looked through.
class EventIndex final
{
public:
    void add(const ItemSet &set);
    void remove(const ItemSet &set);

    // Whatever may take place in the range, each once. The caller decides by the exact times.
    std::vector<GroupRef> candidates(ICalendar::UtcSeconds from, ICalendar::UtcSeconds to) const;

private:
    // A GroupRef, with something in its gap.
    struct Entry {
        const ItemSet *set = nullptr;
        int group = 0;
        int furtherDays = 0; // after its first, that the event may touch
    };
    // The bounds stand here once more: reaching for each group would cost more than all the rest.
    struct Bounded {
        ICalendar::UtcSeconds earliest = 0;
        ICalendar::UtcSeconds latest = 0;
        GroupRef ref;
    };

    QHash<qint64, std::vector<Entry>> m_days; // by first day, counted since 1970, in UTC
    std::vector<Bounded> m_others; // series, and events of many days
};

} // namespace Items
