// SPDX-License-Identifier: MIT
#include "TaskIndex.h"

namespace Items
{

using ICalendar::Item;
using ICalendar::UtcSeconds;

namespace
{

template <typename Visit> void visitTasks(const ItemSet &set, Visit visit)
{
    for (int index = 0; index < static_cast<int>(set.groups().size()); ++index) {
        const GroupRef ref { &set, index };
        if (ref.get().kind == Item::Kind::Task)
            visit(ref, *set.representative(ref.get()).toDo);
    }
}

} // namespace

void TaskIndex::add(const ItemSet &set)
{
    visitTasks(set, [this](const GroupRef &ref, const Item::ToDo &task) {
        if (!task.isCompleted)
            m_open.insert(ref);
        else if (task.completed)
            m_completed.emplace(*task.completed, ref);
        else
            m_completedSometime.insert(ref);
    });
}

void TaskIndex::remove(const ItemSet &set)
{
    visitTasks(set, [this](const GroupRef &ref, const Item::ToDo &task) {
        m_open.erase(ref);
        m_completedSometime.erase(ref);
        if (task.completed)
            m_completed.erase({ *task.completed, ref });
    });
}

std::vector<GroupRef> TaskIndex::inState(CalendarStoreBackend::TaskState state, UtcSeconds since) const
{
    using State = CalendarStoreBackend::TaskState;

    std::vector<GroupRef> found;
    const auto take = [&](auto from) {
        for (; from != m_completed.end(); ++from)
            found.push_back(from->second);
    };
    if (state == State::CompletedSince) {
        take(m_completed.lower_bound({ since, GroupRef() }));
        return found;
    }
    found.assign(m_open.begin(), m_open.end());
    if (state == State::Any) {
        take(m_completed.begin());
        found.insert(found.end(), m_completedSometime.begin(), m_completedSometime.end());
    }
    return found;
}

} // namespace Items
