// SPDX-License-Identifier: MIT
#include "ItemSaver.h"

#include "AlarmPatch.h"
#include "FolderSynchronizer.h"
#include "ItemExtract.h"
#include "ItemPatch.h"
#include "SeriesPatch.h"

#include <CalEvent.h>
#include <CalTask.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace FolderStore
{

namespace
{

using Code = StoreError::Code;

bool canBeStored(const CalEvent &event)
{
    return event.startDate().isValid() && event.endDate().isValid();
}

bool canBeStored(const CalTask & /*task*/)
{
    return true;
}

// What a save makes of some values of a to-do.
void takeStoredValues(CalTask &task, const ICalendar::Item &item)
{
    task.setCompletedDate(
        item.completed ? std::optional(QDateTime::fromSecsSinceEpoch(*item.completed)) : std::nullopt);
    task.setIsDueDateOnly(item.due && item.due->isDate());
}

void takeStoredValues(CalEvent & /*event*/, const ICalendar::Item & /*item*/) { }

// The record as if it had been read from that file. The group that it comes from is there: it was just written.
template <typename Record>
void countAsRead(Record &record, const ItemFiles &files, const Collection &collection, const FileSnapshot &file)
{
    if (const auto origin = files.originIn(collection, file, record))
        record.setOrigin(*origin);
    if (const auto group = ItemFiles::groupIn(file, record))
        takeStoredValues(record, file.representative(file.groups().at(static_cast<size_t>(*group))));
    renumberAlarms(record);
    record.markAsRead();
}

template <typename Record> QByteArray textOfNew(const Record &record, const QString &uid, ItemFiles &files)
{
    FileContent content;
    content.bytes = newItemText(record, uid, files.now());
    const FileSnapshot empty(uid + u".ics"_s, content, files.synchronizer().zones());
    return patchedText(content.bytes, empty.item(0), record, files.now());
}

QString noStart()
{
    return QCoreApplication::translate("Vantle", "An event needs a start and an end.");
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
        return patchedText(stored.text, stored.item(), task, m_files.now());
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
        return ItemFiles::refusal(event, Code::Invalid, noStart());
    // Also when it has a place already: what is written as new has not been changed yet.
    CalEvent fresh(event);
    fresh.setOrigin({});
    return textOfNew(fresh, uid, m_files);
}

Result<QByteArray, StoreError> ItemSaver::changedText(
    const StoredItem &stored, const CalEvent &event, CalSpan span) const
{
    if (!canBeStored(event))
        return ItemFiles::refusal(event, Code::Invalid, noStart());
    if (stored.groupInFile().needsExpansion && event.asRead())
        return patchedSeriesText(stored, event, span, m_files.now(), m_files.synchronizer().zones());
    return patchedText(stored.text, stored.item(), event, m_files.now());
}

Result<void, StoreError> ItemSaver::moveChanged(
    CalEvent &event, const StoredItem &stored, const QByteArray &text, Collection &target)
{
    return move(event, stored, text, target);
}

void ItemSaver::countAsReadAnew(CalEvent &event, const Collection &collection, const FileSnapshot &file) const
{
    countAsRead(event, m_files, collection, file);
}

// Of characters that are safe in every file system and for every program, and taken by nobody.
QString ItemSaver::newIdentifier()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
}

template <typename Record> Result<void, StoreError> ItemSaver::create(Record &record)
{
    const auto collection = m_files.writableCollection(record, record.calendar());
    if (!collection)
        return collection.error();
    if (!canBeStored(record))
        return ItemFiles::refusal(record, Code::Invalid, noStart());

    const QString uid = newIdentifier();
    const QString fileName = uid + u".ics"_s;
    const auto created = m_files.create(*collection.value(), fileName, textOfNew(record, uid, m_files), record);
    if (!created)
        return created.error();

    CalItemOrigin origin;
    origin.plainUid = uid;
    origin.resource = fileName;
    record.setOrigin(origin);
    countAsRead(record, m_files, *collection.value(), *created.value());
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
    if (!isMove && record.asRead() && !differsFromRead(record))
        return {};
    const auto stored = m_files.find(*from.value(), record);
    if (!stored)
        return stored.error();

    QByteArray changed = stored.value().text;
    if (!record.asRead() || differsFromRead(record)) {
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
    countAsRead(record, m_files, *into.value(), *written.value());
    return {};
}

// The item is whole in the new calendar before it leaves the old one.
template <typename Record>
Result<void, StoreError> ItemSaver::move(
    Record &record, const StoredItem &stored, const QByteArray &text, Collection &target)
{
    if (target.holdsUid(record.origin().plainUid)) {
        return ItemFiles::refusal(record, Code::Conflict,
            QCoreApplication::translate("Vantle", "The calendar already holds an item with the same identifier."));
    }
    // The changes may have put lines in, so the places are those of the new text.
    FileContent content;
    content.bytes = text;
    const FileSnapshot changed(stored.file->fileName(), content, m_files.synchronizer().zones());
    const auto group = ItemFiles::groupIn(changed, record);
    const QByteArray moved = group ? textOfGroupAlone(changed, *group, text) : text;
    QString fileName = stored.file->fileName();
    if (QFileInfo::exists(target.pathOf(fileName)))
        fileName = newIdentifier() + u".ics"_s;
    const auto created = m_files.create(target, fileName, moved, record);
    if (!created)
        return created.error();

    const auto left = m_files.takeOut(stored, record);
    if (!left) {
        // Both are whole. The new one goes, unless somebody has made something of it already.
        const StoredItem copy { &target, target.pathOf(fileName), created.value(), 0, moved };
        if (const auto removed = m_files.remove(copy, record); !removed)
            return removed.error();
        return left.error();
    }
    countAsRead(record, m_files, target, *created.value());
    return {};
}

} // namespace FolderStore
