// SPDX-License-Identifier: MIT
#include "ItemSet.h"

#include "ItemTimes.h"

#include <ICalendarReader.h>
#include <RecurrenceExpander.h>
#include <ZoneRegistry.h>

#include <QCryptographicHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace Items
{

using ICalendar::Item;
using ICalendar::UtcSeconds;

namespace
{

// More than any two zones, of today or of the past, lie apart.
constexpr qint64 zoneMargin = 32 * 60 * 60;

UtcSeconds roughInstant(const ICalendar::CivilTime &time, const ICalendar::Zone &local)
{
    return time.toUtc(local);
}

void widen(std::optional<UtcSeconds> &earliest, UtcSeconds instant)
{
    earliest = earliest ? std::min(*earliest, instant) : instant;
}

} // namespace

ItemSet::ItemSet(QString name, const QByteArray &text, ICalendar::ZoneRegistry &zones)
    : ItemSet(std::move(name), text, zones, versionOf(text))
{
}

ItemSet::ItemSet(QString name, const QByteArray &text, ICalendar::ZoneRegistry &zones, QByteArray version)
    : m_name(std::move(name))
    , m_version(std::move(version))
    , m_document(ICalendar::readDocument(text, zones))
{
    nameTheNameless();
    makeGroups();
}

QByteArray ItemSet::versionOf(const QByteArray &text)
{
    return QCryptographicHash::hash(text, QCryptographicHash::Sha1);
}

const QString &ItemSet::uidOf(const ItemGroup &group) const
{
    return representative(group).uid;
}

const Item &ItemSet::representative(const ItemGroup &group) const
{
    return item(group.master >= 0 ? group.master : group.overrides->first());
}

QStringList ItemSet::uids() const
{
    QStringList uids;
    for (const ItemGroup &group : m_groups) {
        if (group.ordinal == 0)
            uids << uidOf(group);
    }
    return uids;
}

void ItemSet::nameTheNameless()
{
    int nameless = 0;
    for (Item &each : m_document.items) {
        // One text for both, where the set is named after its items.
        if (each.uid == m_name)
            each.uid = m_name;
        if (!each.uid.isEmpty()) {
            // One that was given such a name for good keeps it, and the others keep theirs.
            if (!each.repetition->recurrenceId && each.uid.startsWith(m_name))
                ++nameless;
            continue;
        }
        // An override belongs to the series that has no UID either.
        if (each.repetition->recurrenceId) {
            each.uid = m_name;
            continue;
        }
        ++nameless;
        each.uid = nameless == 1 ? m_name : u"%1#%2"_s.arg(m_name).arg(nameless);
    }
}

void ItemSet::makeGroups()
{
    Grouping grouping;
    // Series first: an override may stand before its series in the text.
    for (const bool overrides : { false, true }) {
        for (int index = 0; index < m_document.items.size(); ++index) {
            if (item(index).repetition->recurrenceId.has_value() != overrides)
                continue;
            if (item(index).kind == Item::Kind::Task)
                addTask(index, grouping);
            else
                addEvent(index, grouping);
        }
    }
    for (ItemGroup &group : m_groups)
        boundTimes(group);
    m_groups.shrink_to_fit();
}

void ItemSet::addTask(int index, Grouping &grouping)
{
    ItemGroup group;
    group.kind = Item::Kind::Task;
    group.master = index;
    group.ordinal = grouping.groups[item(index).uid]++;
    m_groups.push_back(std::move(group));
}

void ItemSet::addEvent(int index, Grouping &grouping)
{
    const Item &event = item(index);
    if (event.repetition->recurrenceId) {
        if (const auto series = grouping.series.constFind(event.uid); series != grouping.series.cend()) {
            ItemGroup &group = m_groups[static_cast<size_t>(*series)];
            group.overrides.edit() << index;
            group.needsExpansion = true;
            return;
        }
    }
    ItemGroup group;
    group.needsExpansion = event.repeats() && !event.repetition->recurrenceId;
    // An override without its series takes part by itself, like an event that happens once.
    if (event.repetition->recurrenceId)
        group.overrides.edit() << index;
    else
        group.master = index;
    group.ordinal = grouping.groups[event.uid]++;
    if (!event.repetition->recurrenceId && !grouping.series.contains(event.uid))
        grouping.series.insert(event.uid, static_cast<int>(m_groups.size()));
    m_groups.push_back(std::move(group));
}

void ItemSet::boundTimes(ItemGroup &group) const
{
    if (group.kind != Item::Kind::Event)
        return;
    const ICalendar::ZonePtr local = ICalendar::ZoneRegistry::localZone();
    std::optional<UtcSeconds> earliest;
    if (!group.needsExpansion) {
        const auto times = timesOfItem(representative(group));
        if (!times)
            return;
        group.earliest = roughInstant(times->start, *local) - zoneMargin;
        group.latest = std::max(roughInstant(times->end, *local), *group.earliest + zoneMargin) + zoneMargin;
        return;
    }

    QList<const Item *> overrides;
    for (const int index : *group.overrides) {
        overrides << &item(index);
        if (const auto times = timesOfItem(item(index)))
            widen(earliest, roughInstant(times->start, *local));
    }
    const Item &master = item(group.master);
    if (const auto times = timesOfItem(master))
        widen(earliest, roughInstant(times->start, *local));
    for (const ICalendar::AddedDate &added : master.repetition->added)
        widen(earliest, roughInstant(added.start, *local));
    if (!earliest)
        return;
    group.earliest = *earliest - zoneMargin;
    if (const auto end = ICalendar::lastEnd(master, overrides, *local))
        group.latest = std::max(*end, *earliest) + zoneMargin;
}

} // namespace Items
