// SPDX-License-Identifier: MIT
#include "ItemFiles.h"

#include "FolderSynchronizer.h"
#include "Limits.h"

#include <ItemExtract.h>
#include <RecordPlace.h>
#include <Refusal.h>

#include <QCoreApplication>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace FolderStore
{

namespace
{

using Code = StoreError::Code;

} // namespace

ItemFiles::ItemFiles(FolderSynchronizer &synchronizer, const Clock &clock, FileCalls &calls)
    : m_synchronizer(synchronizer)
    , m_clock(clock)
    , m_writer(calls)
    , m_recentEdits(synchronizer.zones())
{
}

Result<Collection *, StoreError> ItemFiles::writableCollection(
    const CalCalendarItem &record, const CalCalendarPtr &calendar) const
{
    Collection *const collection = calendar ? m_synchronizer.collection(calendar->uid()) : nullptr;
    if (!collection)
        return Items::calendarGone(record);
    if (!collection->record()->isEditable())
        return Items::calendarUnchangeable(record);
    return collection;
}

Result<StoredItem, StoreError> ItemFiles::find(Collection &collection, const CalCalendarItem &record)
{
    Result<StoredItem, StoreError> found
        = findFile(collection, record, record.origin().resource, record.origin().version);
    if (!found)
        return found;
    const auto group = Items::groupIn(*found.value().set, record);
    const ICalendar::Document &document = found.value().set->document();
    if (!group || !document.canBeChanged()) {
        return Items::damaged(record);
    }
    found.value().group = *group;
    return found;
}

Result<StoredItem, StoreError> ItemFiles::findFile(
    Collection &collection, const CalCalendarItem &record, const QString &fileName, const QByteArray &hash)
{
    const QString path = collection.pathOf(fileName);
    if (QFileInfo(path).isSymLink()) {
        return Items::refusal(record, Code::ReadOnly,
            QCoreApplication::translate("Vantle", "It is kept in a linked file, which is not written to."));
    }
    const auto content = readRegularFile(path, Limits::itemFileBytes);
    if (content && Items::ItemSet::versionOf(content.value().bytes) == hash) {
        // Read afresh from the same bytes: what is known may already be a later state, or an earlier one.
        const auto file = std::make_shared<const FileSnapshot>(fileName, content.value(), m_synchronizer.zones());
        return StoredItem { { file, 0, content.value().bytes }, &collection, path };
    }
    // What was in the way is shown as it is by now.
    m_synchronizer.readAgain(collection, fileName);
    if (content)
        return Items::changedElsewhere(record);
    if (content.error().kind == FileFault::Kind::Missing)
        return Items::goneElsewhere(record);
    return Items::refusal(record, Code::Io, content.error().reason);
}

Result<FileSnapshotPtr, StoreError> ItemFiles::replace(
    const StoredItem &stored, const QByteArray &replacement, const CalCalendarItem &record)
{
    clearLeftovers(*stored.collection);
    if (const auto written = m_writer.replace(stored.path, stored.text, replacement); !written) {
        m_synchronizer.readAgain(*stored.collection, stored.set->name());
        return refusal(record, written.error());
    }
    m_recentEdits.add(stored.path, stored.text, replacement, Items::overwrittenElsewhere(record), now());
    return takeIn(*stored.collection, stored.set->name(), replacement);
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
        m_synchronizer.readAgain(*stored.collection, stored.set->name());
        return refusal(record, removed.error());
    }
    m_synchronizer.dropOwn(*stored.collection, stored.set->name());
    return RemovedItem { stored.set->name(), stored.text, std::nullopt, removed.value() };
}

Result<RemovedItem, StoreError> ItemFiles::takeOut(const StoredItem &stored, const CalCalendarItem &record)
{
    if (Items::holdsNothingElse(*stored.set, stored.group, stored.text))
        return remove(stored, record);
    const QByteArray remaining = Items::textWithoutGroup(*stored.set, stored.group, stored.text);
    const auto written = replace(stored, remaining, record);
    if (!written)
        return written.error();
    return RemovedItem { stored.set->name(), stored.text, remaining, 0 };
}

QList<StoreError> ItemFiles::overwrittenIn(const QString &path)
{
    const auto content = readRegularFile(path, Limits::itemFileBytes);
    return content ? m_recentEdits.overwrittenBy(path, content.value().bytes, now()) : QList<StoreError>();
}

StoreError ItemFiles::refusal(const CalCalendarItem &record, const WritingFault &fault)
{
    switch (fault.kind) {
    case WritingFault::Kind::Vanished:
        return Items::goneElsewhere(record);
    case WritingFault::Kind::Changed:
        return Items::changedElsewhere(record);
    case WritingFault::Kind::Taken:
        return Items::refusal(
            record, Code::Conflict, QCoreApplication::translate("Vantle", "Another file has taken its place."));
    case WritingFault::Kind::NotAllowed:
        return Items::refusal(record, Code::ReadOnly, fault.reason);
    case WritingFault::Kind::Failed:
        break;
    }
    return Items::refusal(record, Code::Io, fault.reason);
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
