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
        QStringList &names = m_setsByUid[uid];
        names.insert(std::ranges::lower_bound(names, set.name()), set.name());
        m_sharedUids += names.size() == 2 ? 1 : 0;
    }
}

void ItemIndex::remove(const ItemSet &set)
{
    m_events.remove(set);
    m_tasks.remove(set);
    m_expansions.forget(set);
    for (const QString &uid : set.uids()) {
        const auto names = m_setsByUid.find(uid);
        names->removeOne(set.name());
        m_sharedUids -= names->size() == 1 ? 1 : 0;
        if (names->isEmpty())
            m_setsByUid.erase(names);
    }
}

QString ItemIndex::distinctionOf(const GroupRef &ref) const
{
    const int ordinal = ref.get().ordinal;
    const auto names = m_setsByUid.constFind(ref.set->uidOf(ref.get()));
    if (ordinal == 0 && (names == m_setsByUid.cend() || names->first() == ref.set->name()))
        return {};
    return ordinal == 0 ? ref.set->name() : u"%1#%2"_s.arg(ref.set->name()).arg(ordinal + 1);
}

} // namespace Items
