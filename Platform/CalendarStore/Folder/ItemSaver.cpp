// SPDX-License-Identifier: MIT
#include "ItemSaver.h"

#include "FolderSynchronizer.h"

#include <CalEvent.h>
#include <CalTask.h>
#include <ItemExtract.h>
#include <ItemPatch.h>
#include <RecordPlace.h>
#include <Refusal.h>
#include <SeriesPatch.h>

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace FolderStore
{

namespace
{

bool canBeStored(const CalEvent &event)
{
    return event.startDate().isValid() && event.endDate().isValid();
}

bool canBeStored(const CalTask & /*task*/)
{
    return true;
}

} // namespace

ItemSaver::ItemSaver(ItemFiles &files)
    : m_files(files)
{
}

Result<void, StoreError> ItemSaver::save(CalTask &task)
{
    if (!task.origin().isStored())
        return create(task);
    return change(task, task.calendar(), [this, &task](const StoredItem &stored) -> Result<QByteArray, StoreError> {
        return Items::patchedText(stored.text, stored.item(), task, m_files.now());
    });
}

Result<void, StoreError> ItemSaver::save(CalEvent &event, CalSpan span)
{
    if (!event.origin().isStored())
        return create(event);
    // One occurrence of a series cannot leave the others' calendar.
    const bool isOneOfSeries = span == CalSpanThisEvent && event.asRead() && event.asRead()->recurrenceRule();
    const CalCalendarPtr &target = isOneOfSeries ? event.asRead()->calendar() : event.calendar();
    return change(event, target, [&](const StoredItem &stored) { return changedText(stored, event, span); });
}

Result<QByteArray, StoreError> ItemSaver::newText(const CalEvent &event, const QString &uid) const
{
    if (!canBeStored(event))
        return Items::withoutTimes(event);
    // Also when it has a place already: what is written as new has not been changed yet.
    CalEvent fresh(event);
    fresh.setOrigin({});
    return Items::textOfNew(fresh, uid, m_files.now(), m_files.synchronizer().zones());
}

Result<QByteArray, StoreError> ItemSaver::changedText(
    const StoredItem &stored, const CalEvent &event, CalSpan span) const
{
    if (!canBeStored(event))
        return Items::withoutTimes(event);
    if (stored.groupInSet().needsExpansion && event.asRead())
        return Items::patchedSeriesText(stored, event, span, m_files.now(), m_files.synchronizer().zones());
    return Items::patchedText(stored.text, stored.item(), event, m_files.now());
}

Result<void, StoreError> ItemSaver::moveChanged(
    CalEvent &event, const StoredItem &stored, const QByteArray &text, Collection &target)
{
    return move(event, stored, text, target);
}

void ItemSaver::countAsReadAnew(CalEvent &event, const Collection &collection, const FileSnapshot &file)
{
    Items::countAsRead(event, collection.items(), file);
}

template <typename Record> Result<void, StoreError> ItemSaver::create(Record &record)
{
    const auto collection = m_files.writableCollection(record, record.calendar());
    if (!collection)
        return collection.error();
    if (!canBeStored(record))
        return Items::withoutTimes(record);

    const QString uid = Items::newIdentifier();
    const QString fileName = uid + u".ics"_s;
    const QByteArray text = Items::textOfNew(record, uid, m_files.now(), m_files.synchronizer().zones());
    const auto created = m_files.create(*collection.value(), fileName, text, record);
    if (!created)
        return created.error();

    CalItemOrigin origin;
    origin.plainUid = uid;
    origin.resource = fileName;
    record.setOrigin(origin);
    Items::countAsRead(record, collection.value()->items(), *created.value());
    return {};
}

template <typename Record, typename Text>
Result<void, StoreError> ItemSaver::change(Record &record, const CalCalendarPtr &target, Text text)
{
    const auto into = m_files.writableCollection(record, target);
    if (!into)
        return into.error();
    const auto from = m_files.writableCollection(record, record.asRead() ? record.asRead()->calendar() : target);
    if (!from)
        return from.error();
    const bool isMove = into.value() != from.value();
    if (!isMove && record.asRead() && !Items::differsFromRead(record))
        return {};
    const auto stored = m_files.find(*from.value(), record);
    if (!stored)
        return stored.error();

    QByteArray changed = stored.value().text;
    if (!record.asRead() || Items::differsFromRead(record)) {
        const Result<QByteArray, StoreError> patched = text(stored.value());
        if (!patched)
            return patched.error();
        changed = patched.value();
    }
    if (isMove)
        return move(record, stored.value(), changed, *into.value());
    const auto written = m_files.replace(stored.value(), changed, record);
    if (!written)
        return written.error();
    Items::countAsRead(record, into.value()->items(), *written.value());
    return {};
}

// The item is whole in the new calendar before it leaves the old one.
template <typename Record>
Result<void, StoreError> ItemSaver::move(
    Record &record, const StoredItem &stored, const QByteArray &text, Collection &target)
{
    if (target.items().holdsUid(record.origin().plainUid))
        return Items::identifierTaken(record);
    // The changes may have put lines in, so the places are those of the new text.
    const Items::ItemSet changed(stored.set->name(), text, m_files.synchronizer().zones());
    const auto group = Items::groupIn(changed, record);
    const QByteArray moved = group ? Items::textOfGroupAlone(changed, *group, text) : text;
    QString fileName = stored.set->name();
    if (QFileInfo::exists(target.pathOf(fileName)))
        fileName = Items::newIdentifier() + u".ics"_s;
    const auto created = m_files.create(target, fileName, moved, record);
    if (!created)
        return created.error();

    const auto left = m_files.takeOut(stored, record);
    if (!left) {
        // Both are whole. The new one goes, unless somebody has made something of it already.
        const StoredItem copy { { created.value(), 0, moved }, &target, target.pathOf(fileName) };
        if (const auto removed = m_files.remove(copy, record); !removed)
            return removed.error();
        return left.error();
    }
    Items::countAsRead(record, target.items(), *created.value());
    return {};
}

} // namespace FolderStore
