// SPDX-License-Identifier: MIT
#include "ItemSaver.h"

#include "FolderSynchronizer.h"
#include "ItemDeparture.h"

#include <CalEvent.h>
#include <CalTask.h>
#include <ItemExtract.h>
#include <ItemPatch.h>
#include <ItemTransfer.h>
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

// The new text of the stored item.
auto textOf(const CalTask &task, const ItemFiles &files)
{
    return [&](const StoredItem &stored) -> Result<QByteArray, StoreError> {
        return Items::patchedText(stored.text, stored.item(), task, files.now());
    };
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
    return change(task, task.calendar(), textOf(task, m_files));
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

ItemSaver::Sent ItemSaver::send(const CalTask &task)
{
    return sendRecord(task, textOf(task, m_files));
}

ItemSaver::Sent ItemSaver::send(const CalEvent &event, CalSpan span)
{
    return sendRecord(event, [&](const StoredItem &stored) { return changedText(stored, event, span); });
}

Result<void, StoreError> ItemSaver::takeIn(CalTask &task, const QByteArray &text)
{
    return takeInRecord(task, text);
}

Result<void, StoreError> ItemSaver::takeIn(CalEvent &event, const QByteArray &text)
{
    return takeInRecord(event, text);
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

ItemSaver::Sent ItemSaver::sendChanged(const CalCalendarItem &record, const StoredItem &stored, const QByteArray &text,
    const std::function<void(bool hasLeft)> &settled)
{
    const Items::ItemSet changed(stored.set->name(), text, m_files.synchronizer().zones());
    const auto alone = Items::textToSend(changed, record, text);
    if (!alone)
        return Items::damaged(record);
    return std::unique_ptr<CalDeparture>(std::make_unique<ItemDeparture>(m_files, record, stored, *alone, settled));
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

    const Result<QByteArray, StoreError> changed = textAfter(record, stored.value(), text);
    if (!changed)
        return changed.error();
    if (isMove)
        return move(record, stored.value(), changed.value(), *into.value());
    const auto written = m_files.replace(stored.value(), changed.value(), record);
    if (!written)
        return written.error();
    Items::countAsRead(record, into.value()->items(), *written.value());
    return {};
}

template <typename Record, typename Text>
Result<QByteArray, StoreError> ItemSaver::textAfter(const Record &record, const StoredItem &stored, const Text &text)
{
    const bool isChanged = !record.asRead() || Items::differsFromRead(record);
    return isChanged ? text(stored) : Result<QByteArray, StoreError>(stored.text);
}

template <typename Record, typename Text> ItemSaver::Sent ItemSaver::sendRecord(const Record &record, Text text)
{
    const auto from = m_files.writableCollection(record, record.asRead()->calendar());
    if (!from)
        return from.error();
    const auto stored = m_files.find(*from.value(), record);
    if (!stored)
        return stored.error();
    const Result<QByteArray, StoreError> changed = textAfter(record, stored.value(), text);
    return changed ? sendChanged(record, stored.value(), changed.value()) : Sent(changed.error());
}

template <typename Record> Result<void, StoreError> ItemSaver::takeInRecord(Record &record, const QByteArray &text)
{
    const auto collection = m_files.writableCollection(record, record.calendar());
    if (!collection)
        return collection.error();
    const QString fileName = Items::newIdentifier() + u".ics"_s;
    const auto origin = Items::originOfSent(fileName, record, text, m_files.synchronizer().zones());
    if (!origin)
        return Items::damaged(record);
    if (collection.value()->items().holdsUid(origin->plainUid))
        return Items::identifierTaken(record);
    const auto created = m_files.create(*collection.value(), fileName, text, record);
    if (!created)
        return created.error();
    record.setOrigin(*origin);
    Items::countAsRead(record, collection.value()->items(), *created.value());
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
        if (!m_files.remove(copy, record))
            return ItemTransfer::isInBoth(left.error(), stored.collection->record()->title());
        return left.error();
    }
    Items::countAsRead(record, target.items(), *created.value());
    return {};
}

} // namespace FolderStore
