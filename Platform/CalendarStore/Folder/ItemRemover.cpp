// SPDX-License-Identifier: MIT
#include "ItemRemover.h"

#include "FolderSynchronizer.h"

#include <CalEvent.h>
#include <CalTask.h>
#include <Refusal.h>
#include <SeriesPatch.h>

namespace FolderStore
{

namespace
{

// Puts the file back as it was, to the byte.
class FileRestoration final : public CalRemoval
{
public:
    FileRestoration(ItemFiles &files, CalCalendarItemPtr record, RemovedItem removed, bool isHeldTwice)
        : m_files(files)
        , m_record(std::move(record))
        , m_removed(std::move(removed))
        , m_isHeldTwice(isHeldTwice)
    {
    }

    Result<void, StoreError> takeBack() override
    {
        const auto collection = m_files.writableCollection(*m_record, m_record->calendar());
        if (!collection)
            return collection.error();
        return m_removed.after ? putBackIntoFile(*collection.value()) : putBackFile(*collection.value());
    }

private:
    Result<void, StoreError> putBackFile(Collection &collection)
    {
        if (!m_isHeldTwice && collection.items().holdsUid(m_record->origin().plainUid))
            return Items::thereAgain(*m_record);
        const auto created
            = m_files.create(collection, m_removed.fileName, m_removed.before, *m_record, m_removed.mode);
        return created ? Result<void, StoreError>() : Result<void, StoreError>(created.error());
    }

    Result<void, StoreError> putBackIntoFile(Collection &collection)
    {
        const auto stored
            = m_files.findFile(collection, *m_record, m_removed.fileName, Items::ItemSet::versionOf(*m_removed.after));
        if (!stored)
            return stored.error();
        const auto written = m_files.replace(stored.value(), m_removed.before, *m_record);
        return written ? Result<void, StoreError>() : Result<void, StoreError>(written.error());
    }

    ItemFiles &m_files;
    CalCalendarItemPtr m_record;
    RemovedItem m_removed;
    bool m_isHeldTwice; // whether the calendar has another item of that UID, which stayed
};

// To name the item in a message, and to tell which one it was.
template <typename Record> CalCalendarItemPtr recordAsRead(const Record &record)
{
    const auto copy = std::make_shared<Record>(record);
    copy->setCalendar(record.asRead()->calendar());
    return copy;
}

std::unique_ptr<CalRemoval> restoration(
    ItemFiles &files, const Collection &collection, const CalCalendarItemPtr &record, const RemovedItem &removed)
{
    return std::make_unique<FileRestoration>(
        files, record, removed, collection.items().holdsUid(record->origin().plainUid));
}

} // namespace

ItemRemover::ItemRemover(ItemFiles &files)
    : m_files(files)
{
}

ItemRemover::Outcome ItemRemover::remove(const CalTask &task)
{
    return remove(recordAsRead(task));
}

ItemRemover::Outcome ItemRemover::remove(const CalEvent &event, CalSpan span)
{
    return remove(recordAsRead(event), event.origin().recurrenceId.isEmpty() ? CalSpanAllEvents : span);
}

ItemRemover::Outcome ItemRemover::remove(const CalCalendarItemPtr &record, CalSpan span)
{
    const auto collection = m_files.writableCollection(*record, record->calendar());
    if (!collection)
        return collection.error();
    const auto stored = m_files.find(*collection.value(), *record);
    if (!stored)
        return stored.error();
    const bool isOneOfSeries = span == CalSpanThisEvent && stored.value().groupInSet().needsExpansion;
    const auto removed
        = isOneOfSeries ? takeOutOccurrence(stored.value(), *record) : m_files.takeOut(stored.value(), *record);
    if (!removed)
        return removed.error();
    return restoration(m_files, *collection.value(), record, removed.value());
}

// The last occurrence that is left takes the whole series with it.
Result<RemovedItem, StoreError> ItemRemover::takeOutOccurrence(const StoredItem &stored, const CalCalendarItem &record)
{
    const auto without = Items::seriesTextWithoutOccurrence(
        stored, static_cast<const CalEvent &>(record), m_files.now(), m_files.synchronizer().zones());
    if (!without)
        return without.error();
    if (without.value().isEmpty())
        return m_files.takeOut(stored, record);
    const auto written = m_files.replace(stored, without.value(), record);
    if (!written)
        return written.error();
    return RemovedItem { stored.set->name(), stored.text, without.value(), 0 };
}

} // namespace FolderStore
