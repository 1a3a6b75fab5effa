// SPDX-License-Identifier: MIT
#pragma once

#include "ItemFiles.h"

class CalEvent;
class CalTask;

namespace FolderStore
{

// Writes what was changed in a record into its file, makes files of new items, and
// moves items from one calendar to another.
class ItemSaver final
{
public:
    explicit ItemSaver(ItemFiles &files);

    Result<void, StoreError> save(CalTask &task);
    Result<void, StoreError> save(CalEvent &event, CalSpan span);

    // What a save consists of, for saves that take more than one step.
    Result<QByteArray, StoreError> newText(const CalEvent &event, const QString &uid) const;
    Result<QByteArray, StoreError> changedText(const StoredItem &stored, const CalEvent &event, CalSpan span) const;
    // `text` is the new text of the stored item's file, of which the item goes into another calendar.
    Result<void, StoreError> moveChanged(
        CalEvent &event, const StoredItem &stored, const QByteArray &text, Collection &target);
    static void countAsReadAnew(CalEvent &event, const Collection &collection, const FileSnapshot &file);

private:
    template <typename Record> Result<void, StoreError> create(Record &record);
    // `text` makes the new text of the stored item; `target` is where it belongs from now on.
    template <typename Record, typename Text>
    Result<void, StoreError> change(Record &record, const CalCalendarPtr &target, Text text);
    template <typename Record>
    Result<void, StoreError> move(Record &record, const StoredItem &stored, const QByteArray &text, Collection &target);

    ItemFiles &m_files;
};

} // namespace FolderStore
