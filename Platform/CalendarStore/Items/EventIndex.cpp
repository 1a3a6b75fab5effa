// SPDX-License-Identifier: MIT
#include "EventIndex.h"

#include <QSet>

#include <algorithm>
#include <limits>

namespace Items
{

using ICalendar::UtcSeconds;

namespace
{

constexpr qint64 secondsPerDay = 86400;
// An event of an hour may touch four, for the zone in which it is meant may become another.
constexpr qint64 mostDaysOfAnEntry = 7;

qint64 dayOf(UtcSeconds instant)
{
    return instant / secondsPerDay - (instant % secondsPerDay < 0 ? 1 : 0);
}

struct DayRange {
    qint64 first = 0;
    qint64 last = 0;
};

// The days that an event may touch; nothing for one that is looked through every time.
std::optional<DayRange> daysOf(const ItemGroup &group)
{
    if (group.needsExpansion || !group.latest)
        return std::nullopt;
    const DayRange days { dayOf(*group.earliest), dayOf(*group.latest) };
    return days.last - days.first < mostDaysOfAnEntry ? std::optional(days) : std::nullopt;
}

bool mayTouch(const ItemGroup &group, UtcSeconds from, UtcSeconds to)
{
    return group.earliest && *group.earliest <= to && (!group.latest || *group.latest >= from);
}

} // namespace

size_t qHash(const GroupRef &ref, size_t seed)
{
    return qHashMulti(seed, ref.set, ref.group);
}

void EventIndex::add(const ItemSet &set)
{
    for (int index = 0; index < static_cast<int>(set.groups().size()); ++index) {
        const GroupRef ref { &set, index };
        if (!ref.get().earliest)
            continue;
        if (const auto days = daysOf(ref.get())) {
            m_days[days->first].push_back({ &set, index, static_cast<int>(days->last - days->first) });
        } else {
            m_others.push_back(
                { *ref.get().earliest, ref.get().latest.value_or(std::numeric_limits<UtcSeconds>::max()), ref });
        }
    }
}

void EventIndex::remove(const ItemSet &set)
{
    // Each place is searched once, also when many events of the set stand there.
    QSet<qint64> touched;
    bool touchesOthers = false;
    for (const ItemGroup &group : set.groups()) {
        if (!group.earliest)
            continue;
        if (const auto days = daysOf(group))
            touched.insert(days->first);
        else
            touchesOthers = true;
    }
    if (touchesOthers)
        std::erase_if(m_others, [&](const Bounded &each) { return each.ref.set == &set; });
    for (const qint64 day : std::as_const(touched)) {
        const auto place = m_days.find(day);
        if (place == m_days.end())
            continue;
        std::erase_if(*place, [&](const Entry &each) { return each.set == &set; });
        if (place->empty())
            m_days.erase(place);
    }
}

std::vector<GroupRef> EventIndex::candidates(UtcSeconds from, UtcSeconds to) const
{
    std::vector<GroupRef> found;
    const qint64 first = dayOf(from);
    const qint64 last = dayOf(to);
    const auto take = [&](qint64 day, const std::vector<Entry> &place) {
        for (const Entry &each : place) {
            const GroupRef ref { each.set, each.group };
            // Most are told by the day, without reaching for the group.
            if (day + each.furtherDays >= first && mayTouch(ref.get(), from, to))
                found.push_back(ref);
        }
    };
    for (const Bounded &each : m_others) {
        if (each.earliest <= to && each.latest >= from)
            found.push_back(each.ref);
    }
    // A range of more days than there are places is quicker asked the other way round.
    const qint64 firstPlace = first - (mostDaysOfAnEntry - 1);
    if (last - firstPlace > m_days.size()) {
        for (auto place = m_days.cbegin(); place != m_days.cend(); ++place)
            take(place.key(), place.value());
    } else {
        for (qint64 day = firstPlace; day <= last; ++day) {
            if (const auto place = m_days.constFind(day); place != m_days.cend())
                take(day, *place);
        }
    }
    std::ranges::sort(found);
    return found;
}

} // namespace Items
