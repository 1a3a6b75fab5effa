// SPDX-License-Identifier: MIT
#include "RecentEdits.h"

#include <ContentLines.h>
#include <ItemSet.h>
#include <PropertyLine.h>
#include <RecordMaker.h>

#include <algorithm>

namespace FolderStore
{

namespace
{

// Between the last look of another program and its renaming lie milliseconds; a slow one may take seconds.
constexpr qint64 secondsRemembered = 60;

bool tellsOfAChange(const QByteArray &name)
{
    return name == "DTSTAMP" || name == "LAST-MODIFIED" || name == "SEQUENCE" || name == "CREATED";
}

} // namespace

RecentEdits::RecentEdits(ICalendar::ZoneRegistry &zones)
    : m_zones(zones)
{
}

void RecentEdits::add(const QString &path, const QByteArray &before, const QByteArray &after, const StoreError &error,
    const QDateTime &now)
{
    forgetOld(now);
    const Text present = textOf(path, after);
    QList<Edit> &edits = m_edits[path];
    // What this one undoes of earlier ones is nothing to look for any more.
    for (Edit &edit : edits) {
        for (auto change = edit.changes.begin(); change != edit.changes.end(); ++change) {
            const Lines lines = present.value(change.key()).lines;
            change->added.intersect(lines);
            change->removed.subtract(lines);
        }
    }
    Edit edit = editBetween(textOf(path, before), present);
    edit.error = error;
    edit.when = now;
    edits.append(edit);
}

QList<StoreError> RecentEdits::overwrittenBy(const QString &path, const QByteArray &text, const QDateTime &now)
{
    forgetOld(now);
    const auto known = m_edits.find(path);
    if (known == m_edits.end())
        return {};
    const Text present = textOf(path, text);
    QList<StoreError> overwritten;
    // The last first: an edit whose lines later ones have replaced goes with them.
    QSet<ItemName> lostItems;
    for (auto edit = known->end(); edit != known->begin();) {
        --edit;
        bool isLost = false;
        for (auto change = edit->changes.cbegin(); change != edit->changes.cend(); ++change) {
            if (isLostIn(present, change.key(), *change, lostItems.contains(change.key()))) {
                lostItems.insert(change.key());
                isLost = true;
            }
        }
        if (!isLost)
            continue;
        overwritten.prepend(edit->error);
        edit = known->erase(edit);
    }
    return overwritten;
}

RecentEdits::Text RecentEdits::textOf(const QString &path, const QByteArray &text) const
{
    const Items::ItemSet set(path.sliced(path.lastIndexOf(u'/') + 1), text, m_zones);
    const ICalendar::ContentLines lines(text);
    Text found;
    for (const ICalendar::Item &item : set.document().items) {
        ItemLines &own = found[{ item.uid, Items::recurrenceIdText(item.repetition->recurrenceId) }];
        own.sequence = std::max(own.sequence, item.sequence);
        if (set.document().isConverted)
            continue; // the places of components mean nothing
        const auto &component = lines.components()[static_cast<std::size_t>(item.component)];
        for (int index = component.firstLine; index <= component.lastLine; ++index) {
            const QByteArray line = lines.unfolded(lines.lines()[static_cast<std::size_t>(index)]).trimmed();
            if (!tellsOfAChange(ICalendar::propertyName(line)))
                own.lines.insert(line);
        }
    }
    return found;
}

RecentEdits::Edit RecentEdits::editBetween(const Text &before, const Text &after)
{
    Edit edit;
    for (auto item = after.cbegin(); item != after.cend(); ++item) {
        const ItemLines old = before.value(item.key());
        Change change { item->lines, old.lines, item->sequence, !before.contains(item.key()) };
        change.added.subtract(old.lines);
        change.removed.subtract(item->lines);
        if (!change.added.isEmpty() || !change.removed.isEmpty())
            edit.changes.insert(item.key(), change);
    }
    return edit;
}

bool RecentEdits::isLostIn(const Text &text, const ItemName &name, const Change &change, bool isLaterLost)
{
    if (change.added.isEmpty() && change.removed.isEmpty())
        return false;
    const auto item = text.constFind(name);
    if (item == text.cend()) {
        // Somebody has removed the item, which is a change of its own; but a new exception of a series that is
        // still there was not known.
        return change.isOfNewItem
            && std::ranges::any_of(text.keys(), [&](const ItemName &each) { return each.uid == name.uid; });
    }
    const bool hasOld = !change.removed.isEmpty() && item->lines.contains(change.removed);
    if (change.added.isEmpty())
        return hasOld || (isLaterLost && item->sequence < change.sequence);
    return !item->lines.intersects(change.added) && (hasOld || item->sequence < change.sequence);
}

void RecentEdits::forgetOld(const QDateTime &now)
{
    for (QList<Edit> &edits : m_edits)
        edits.removeIf([&](const Edit &edit) { return edit.when.secsTo(now) > secondsRemembered; });
    m_edits.removeIf([](const QHash<QString, QList<Edit>>::iterator &edits) { return edits->isEmpty(); });
}

} // namespace FolderStore
