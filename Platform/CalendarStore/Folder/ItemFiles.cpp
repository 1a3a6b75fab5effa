// SPDX-License-Identifier: MIT
#include "ItemFiles.h"

#include "FolderSynchronizer.h"
#include "ItemExtract.h"
#include "Limits.h"
#include "RecordMaker.h"

#include <CalEvent.h>
#include <CalTask.h>

#include <QCoreApplication>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace FolderStore
{

namespace
{

using Code = StoreError::Code;

QString changedElsewhere()
{
    return QCoreApplication::translate("Vantle", "Another program has changed it meanwhile. That version was kept.");
}

QString goneElsewhere()
{
    return QCoreApplication::translate("Vantle", "Another program has removed or renamed it meanwhile.");
}

// As it is stored: the title that the record has by now may be one that was not saved.
CalCalendarItemPtr asRead(const CalCalendarItem &record)
{
    std::shared_ptr<const CalCalendarItem> read;
    if (const auto *const event = dynamic_cast<const CalEvent *>(&record))
        read = event->asRead();
    else if (const auto *const task = dynamic_cast<const CalTask *>(&record))
        read = task->asRead();
    return std::const_pointer_cast<CalCalendarItem>(read);
}

// How many groups of the same UID the file has before the record's own.
int ordinalOf(const CalItemOrigin &origin)
{
    const QString numbered = origin.resource + u'#';
    return origin.distinction.startsWith(numbered) ? origin.distinction.mid(numbered.size()).toInt() - 1 : 0;
}

ICalendar::Item::Kind kindOf(const CalCalendarItem &record)
{
    return record.kind() == CalItemKind::Event ? ICalendar::Item::Kind::Event : ICalendar::Item::Kind::Task;
}

} // namespace

ItemFiles::ItemFiles(FolderSynchronizer &synchronizer, const Clock &clock, FileCalls &calls)
    : m_synchronizer(synchronizer)
    , m_clock(clock)
    , m_writer(calls)
{
}

Result<Collection *, StoreError> ItemFiles::writableCollection(
    const CalCalendarItem &record, const CalCalendarPtr &calendar) const
{
    Collection *const collection = calendar ? m_synchronizer.collection(calendar->uid()) : nullptr;
    if (!collection) {
        return refusal(
            record, Code::NotFound, QCoreApplication::translate("Vantle", "The calendar is not there any more."));
    }
    if (!collection->record()->isEditable()) {
        return refusal(
            record, Code::ReadOnly, QCoreApplication::translate("Vantle", "The calendar cannot be changed."));
    }
    return collection;
}

Result<StoredItem, StoreError> ItemFiles::find(Collection &collection, const CalCalendarItem &record)
{
    Result<StoredItem, StoreError> found
        = findFile(collection, record, record.origin().resource, record.origin().version);
    if (!found)
        return found;
    const auto group = groupIn(*found.value().file, record);
    const ICalendar::Document &document = found.value().file->document();
    if (!group || document.isCut || document.isConverted) {
        return refusal(record, Code::Unreadable,
            QCoreApplication::translate("Vantle", "Its file is damaged and was left as it is."));
    }
    found.value().group = *group;
    return found;
}

Result<StoredItem, StoreError> ItemFiles::findFile(
    Collection &collection, const CalCalendarItem &record, const QString &fileName, const QByteArray &hash)
{
    const QString path = collection.pathOf(fileName);
    if (QFileInfo(path).isSymLink()) {
        return refusal(record, Code::ReadOnly,
            QCoreApplication::translate("Vantle", "It is kept in a linked file, which is not written to."));
    }
    const auto content = readRegularFile(path, Limits::itemFileBytes);
    if (content && hashOf(content.value().bytes) == hash) {
        // Read afresh from the same bytes: what is known may already be a later state, or an earlier one.
        const auto file = std::make_shared<const FileSnapshot>(fileName, content.value(), m_synchronizer.zones());
        return StoredItem { &collection, path, file, 0, content.value().bytes };
    }
    // What was in the way is shown as it is by now.
    m_synchronizer.readAgain(collection, fileName);
    if (content)
        return refusal(record, Code::Conflict, changedElsewhere());
    if (content.error().kind == FileFault::Kind::Missing)
        return refusal(record, Code::NotFound, goneElsewhere());
    return refusal(record, Code::Io, content.error().reason);
}

Result<FileSnapshotPtr, StoreError> ItemFiles::replace(
    const StoredItem &stored, const QByteArray &replacement, const CalCalendarItem &record)
{
    clearLeftovers(*stored.collection);
    if (const auto written = m_writer.replace(stored.path, stored.text, replacement); !written) {
        m_synchronizer.readAgain(*stored.collection, stored.file->fileName());
        return refusal(record, written.error());
    }
    return takeIn(*stored.collection, stored.file->fileName(), replacement);
}

Result<FileSnapshotPtr, StoreError> ItemFiles::create(Collection &collection, const QString &fileName,
    const QByteArray &content, const CalCalendarItem &record, std::optional<mode_t> mode)
{
    clearLeftovers(collection);
    if (const auto written = m_writer.create(collection.pathOf(fileName), content, mode); !written) {
        m_synchronizer.readAgain(collection, fileName);
        return refusal(record, written.error());
    }
    return takeIn(collection, fileName, content);
}

Result<RemovedItem, StoreError> ItemFiles::remove(const StoredItem &stored, const CalCalendarItem &record)
{
    clearLeftovers(*stored.collection);
    const auto removed = m_writer.remove(stored.path, stored.text);
    if (!removed) {
        m_synchronizer.readAgain(*stored.collection, stored.file->fileName());
        return refusal(record, removed.error());
    }
    m_synchronizer.dropOwn(*stored.collection, stored.file->fileName());
    return RemovedItem { stored.file->fileName(), stored.text, std::nullopt, removed.value() };
}

Result<RemovedItem, StoreError> ItemFiles::takeOut(const StoredItem &stored, const CalCalendarItem &record)
{
    if (holdsNothingElse(*stored.file, stored.group, stored.text))
        return remove(stored, record);
    const QByteArray remaining = textWithoutGroup(*stored.file, stored.group, stored.text);
    const auto written = replace(stored, remaining, record);
    if (!written)
        return written.error();
    return RemovedItem { stored.file->fileName(), stored.text, remaining, 0 };
}

std::optional<CalItemOrigin> ItemFiles::originIn(
    const Collection &collection, const FileSnapshot &file, const CalCalendarItem &record) const
{
    const auto group = groupIn(file, record);
    if (!group)
        return std::nullopt;
    CalItemOrigin origin = record.origin();
    origin.resource = file.fileName();
    origin.distinction = collection.distinctionOf({ &file, *group });
    origin.version = file.hash();
    return origin;
}

std::optional<int> ItemFiles::groupIn(const FileSnapshot &file, const CalCalendarItem &record)
{
    const CalItemOrigin &origin = record.origin();
    for (int index = 0; index < static_cast<int>(file.groups().size()); ++index) {
        const ItemGroup &group = file.groups().at(static_cast<size_t>(index));
        const ICalendar::Item &item = file.representative(group);
        if (group.kind != kindOf(record) || item.uid != origin.plainUid || group.ordinal != ordinalOf(origin))
            continue;
        // A series is one group, whichever of its occurrences the record is.
        const QString recurrenceId = item.recurrenceId ? recurrenceIdText(*item.recurrenceId) : QString();
        if (group.needsExpansion || recurrenceId == origin.recurrenceId)
            return index;
    }
    return std::nullopt;
}

StoreError ItemFiles::refusal(const CalCalendarItem &record, StoreError::Code code, const QString &reason)
{
    const CalCalendarItemPtr read = asRead(record);
    StoreError error;
    error.code = code;
    error.item = (read ? read->title() : record.title()).value_or(QString());
    error.calendar = record.calendar() ? record.calendar()->title() : QString();
    error.reason = reason;
    return error;
}

StoreError ItemFiles::refusal(const CalCalendarItem &record, const WritingFault &fault)
{
    switch (fault.kind) {
    case WritingFault::Kind::Vanished:
        return refusal(record, Code::NotFound, goneElsewhere());
    case WritingFault::Kind::Changed:
        return refusal(record, Code::Conflict, changedElsewhere());
    case WritingFault::Kind::Taken:
        return refusal(
            record, Code::Conflict, QCoreApplication::translate("Vantle", "Another file has taken its place."));
    case WritingFault::Kind::NotAllowed:
        return refusal(record, Code::ReadOnly, fault.reason);
    case WritingFault::Kind::Failed:
        break;
    }
    return refusal(record, Code::Io, fault.reason);
}

void ItemFiles::clearLeftovers(const Collection &collection)
{
    if (m_openedFolders.contains(collection.uid()))
        return;
    m_openedFolders.insert(collection.uid());
    ItemFileWriter::removeLeftovers(collection.place().path, now());
}

FileSnapshotPtr ItemFiles::takeIn(Collection &collection, const QString &fileName, const QByteArray &content)
{
    FileContent after;
    after.bytes = content;
    if (const auto state = stateOfRegularFile(collection.pathOf(fileName)))
        after.state = state.value();
    auto snapshot = std::make_shared<const FileSnapshot>(fileName, after, m_synchronizer.zones());
    m_synchronizer.takeOwn(collection, snapshot);
    return snapshot;
}

} // namespace FolderStore
