// SPDX-License-Identifier: MIT
#pragma once

#include "ItemFiles.h"

#include <CalRemoval.h>

#include <memory>

class CalEvent;
class CalTask;

namespace FolderStore
{

// Removes items from their files, and puts them back.
class ItemRemover final
{
public:
    using Outcome = Result<std::unique_ptr<CalRemoval>, StoreError>;

    explicit ItemRemover(ItemFiles &files);

    Outcome remove(const CalTask &task);
    Outcome remove(const CalEvent &event, CalSpan span);

private:
    Outcome remove(const CalCalendarItemPtr &record, CalSpan span = CalSpanAllEvents);

    // `record` is an event.
    Result<RemovedItem, StoreError> takeOutOccurrence(const StoredItem &stored, const CalCalendarItem &record);

    ItemFiles &m_files;
};

} // namespace FolderStore
