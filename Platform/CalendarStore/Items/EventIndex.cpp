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
constexpr qint64 mostDaysOfAnEntry = 16;

qint64 dayOf(UtcSeconds instant)
{
    return instant / secondsPerDay - (instant % secondsPerDay < 0 ? 1 : 0);
}

struct DayRange {
    qint64 first = 0;
    qint64 last = 0;
};

// The days under which an event stands; nothing for one that is looked through every time.
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
            for (qint64 day = days->first; day <= days->last; ++day)
                m_days[day].push_back(ref);
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
        const auto days = daysOf(group);
        touchesOthers = touchesOthers || !days;
        for (qint64 day = days ? days->first : 0; days && day <= days->last; ++day)
            touched.insert(day);
    }
    const auto isOfFile = [&](const GroupRef &ref) { return ref.set == &set; };
    if (touchesOthers)
        std::erase_if(m_others, [&](const Bounded &each) { return isOfFile(each.ref); });
    for (const qint64 day : std::as_const(touched)) {
        const auto place = m_days.find(day);
        if (place != m_days.end() && std::erase_if(*place, isOfFile) > 0 && place->empty())
            m_days.erase(place);
    }
}

std::vector<GroupRef> EventIndex::candidates(UtcSeconds from, UtcSeconds to) const
{
    std::vector<GroupRef> found;
    const auto take = [&](const std::vector<GroupRef> &place) {
        std::ranges::copy_if(
            place, std::back_inserter(found), [&](const GroupRef &ref) { return mayTouch(ref.get(), from, to); });
    };
    for (const Bounded &each : m_others) {
        if (each.earliest <= to && each.latest >= from)
            found.push_back(each.ref);
    }
    const qint64 first = dayOf(from);
    const qint64 last = dayOf(to);
    // A range of more days than there are entries is quicker asked the other way round.
    if (last - first > m_days.size()) {
        for (const auto &place : m_days)
            take(place);
    } else {
        for (qint64 day = first; day <= last; ++day) {
            if (const auto place = m_days.constFind(day); place != m_days.cend())
                take(*place);
        }
    }
    std::ranges::sort(found);
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
}

} // namespace Items
