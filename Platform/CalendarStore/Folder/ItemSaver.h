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
