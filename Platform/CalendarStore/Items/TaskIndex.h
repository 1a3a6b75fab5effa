// SPDX-License-Identifier: MIT
#pragma once

#include "EventIndex.h"

#include <CalendarStoreBackend.h>

#include <set>
#include <utility>
#include <vector>

namespace Items
{

// The to-dos of a calendar by state, so that a question looks at those that it is
// about alone, however many were done in the years before.
class TaskIndex final
{
public:
    void add(const ItemSet &set);
    void remove(const ItemSet &set);

    // `since` counts for CompletedSince, and then those without a date of completion are not among them.
    std::vector<GroupRef> inState(CalendarStoreBackend::TaskState state, ICalendar::UtcSeconds since) const;

private:
    std::set<GroupRef> m_open;
    std::set<std::pair<ICalendar::UtcSeconds, GroupRef>> m_completed; // by when they were
    std::set<GroupRef> m_completedSometime;
};

} // namespace Items
