// SPDX-License-Identifier: MIT
#include "ItemIndex.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace Items
{

void ItemIndex::add(const ItemSet &set)
{
    m_events.add(set);
    m_tasks.add(set);
    for (const QString &uid : set.uids()) {
        const ItemSet *&first = m_sets[uid];
        if (!first) {
            first = &set;
            continue;
        }
        QList<const ItemSet *> &all = m_shared[uid];
        if (all.isEmpty())
            all << first;
        all.insert(std::ranges::lower_bound(all, set.name(), {}, &ItemSet::name), &set);
        first = all.constFirst();
    }
}

void ItemIndex::remove(const ItemSet &set)
{
    m_events.remove(set);
    m_tasks.remove(set);
    m_expansions.forget(set);
    for (const QString &uid : set.uids()) {
        const auto all = m_shared.find(uid);
        if (all == m_shared.end()) {
            m_sets.remove(uid);
            continue;
        }
        all->removeOne(&set);
        m_sets[uid] = all->constFirst();
        if (all->size() == 1)
            m_shared.erase(all);
    }
}

QString ItemIndex::distinctionOf(const GroupRef &ref) const
{
    const int ordinal = ref.get().ordinal;
    const ItemSet *const first = m_sets.value(ref.set->uidOf(ref.get()));
    if (ordinal == 0 && (!first || first->name() == ref.set->name()))
        return {};
    return ordinal == 0 ? ref.set->name() : u"%1#%2"_s.arg(ref.set->name()).arg(ordinal + 1);
}

} // namespace Items
