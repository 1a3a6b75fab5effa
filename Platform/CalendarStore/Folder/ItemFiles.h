// SPDX-License-Identifier: MIT
#pragma once

#include "Collection.h"
#include "ItemFileWriter.h"
#include "RecentEdits.h"

#include <CalCalendarItem.h>
#include <Clock.h>
#include <StoreError.h>
#include <StoredText.h>

#include <QSet>
#include <QString>

#include <optional>

namespace FolderStore
{

class FolderSynchronizer;

// An item as it stands in its file at this moment, which is the state that a record was read in.
struct StoredItem : Items::StoredText {
    Collection *collection = nullptr;
    QString path;
};

// What a removal made of a file.
struct RemovedItem {
    QString fileName;
    QByteArray before;
    std::optional<QByteArray> after; // absent when the whole file is gone
    mode_t mode = 0; // of a file that is gone
};

// What saving and removing have in common: finding the stored item of a record,
// writing files, taking in what was written, and saying in the person's words why
// something was refused.
class ItemFiles final
{
public:
    ItemFiles(FolderSynchronizer &synchronizer, const Clock &clock, FileCalls &calls);

    // The calendar, if items can be written into it.
    Result<Collection *, StoreError> writableCollection(
        const CalCalendarItem &record, const CalCalendarPtr &calendar) const;
    // Refused when the file is not as it was read, or cannot be changed. `collection` is the one the record was read
    // from.
    Result<StoredItem, StoreError> find(Collection &collection, const CalCalendarItem &record);
    // The file alone, whatever is in it.
    Result<StoredItem, StoreError> findFile(
        Collection &collection, const CalCalendarItem &record, const QString &fileName, const QByteArray &hash);

    // Each takes in what it wrote; after a refusal the file is read again, as it is by then.
    Result<FileSnapshotPtr, StoreError> replace(
        const StoredItem &stored, const QByteArray &replacement, const CalCalendarItem &record);
    Result<FileSnapshotPtr, StoreError> create(Collection &collection, const QString &fileName,
        const QByteArray &content, const CalCalendarItem &record, std::optional<mode_t> mode = std::nullopt);
    // The whole file.
    Result<RemovedItem, StoreError> remove(const StoredItem &stored, const CalCalendarItem &record);
    // The item with all that belongs to it: the file, or its part of a file that holds more.
    Result<RemovedItem, StoreError> takeOut(const StoredItem &stored, const CalCalendarItem &record);

    // What another program, which has just written that file, has overwritten of what was saved there.
    QList<StoreError> overwrittenIn(const QString &path);
    // Saves to that file were taken back.
    void forgetEdits(const QString &path) { m_recentEdits.forget(path); }

    QDateTime now() const { return m_clock.now(); }
    FolderSynchronizer &synchronizer() { return m_synchronizer; }

    static StoreError refusal(const CalCalendarItem &record, const WritingFault &fault);

private:
    // Done once in a run for each calendar that is written to.
    void clearLeftovers(const Collection &collection);
    FileSnapshotPtr takeIn(Collection &collection, const QString &fileName, const QByteArray &content);

    FolderSynchronizer &m_synchronizer;
    const Clock &m_clock;
    ItemFileWriter m_writer;
    RecentEdits m_recentEdits;
    QSet<QString> m_openedFolders;
};

} // namespace FolderStore
