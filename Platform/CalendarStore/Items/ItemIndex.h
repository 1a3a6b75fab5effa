// SPDX-License-Identifier: MIT
#pragma once

#include "EventIndex.h"
#include "ExpansionCache.h"
#include "LocalTimeCache.h"
#include "TaskIndex.h"

#include <QHash>
#include <QList>
#include <QString>

#include <vector>

namespace Items
{

// What the item sets of one calendar hold: events by time, to-dos by state, and who has which UID. The calendar owns
// the sets and takes each out before it goes. Answers from memory.
class ItemIndex final
{
public:
    void add(const ItemSet &set);
    void remove(const ItemSet &set);

    // Whether any UID stands in several sets.
    bool hasSharedUids() const { return !m_shared.isEmpty(); }
    bool holdsUid(const QString &uid) const { return m_sets.contains(uid); }
    std::vector<GroupRef> eventCandidates(ICalendar::UtcSeconds from, ICalendar::UtcSeconds to) const
    {
        return m_events.candidates(from, to);
    }
    const TaskIndex &tasks() const { return m_tasks; }
    ExpansionCache &expansions() const { return m_expansions; }
    LocalTimeCache &localTimes() const { return m_localTimes; }

    // Tells a group apart from others of the same UID in this calendar; empty for the first of
    // them, sets taken by name.
    QString distinctionOf(const GroupRef &ref) const;

private:
    // By UID. Hardly any stands in several sets, so a list for each would cost more than all else here.
    QHash<QString, const ItemSet *> m_sets; // the one that it stands in, or the first
    QHash<QString, QList<const ItemSet *>> m_shared; // all of several, in the order of their names
    EventIndex m_events;
    TaskIndex m_tasks;
    mutable ExpansionCache m_expansions; // derived from the sets
    mutable LocalTimeCache m_localTimes; // derived from the zone
};

} // namespace Items
