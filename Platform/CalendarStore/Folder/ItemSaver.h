// SPDX-License-Identifier: MIT
#pragma once

#include "ItemFiles.h"

#include <CalDeparture.h>

#include <functional>
#include <memory>

class CalEvent;
class CalTask;

namespace FolderStore
{

// Writes what was changed in a record into its file, makes files of new items, and
// moves items from one calendar to another, also of another back end.
class ItemSaver final
{
public:
    explicit ItemSaver(ItemFiles &files);

    Result<void, StoreError> save(CalTask &task);
    Result<void, StoreError> save(CalEvent &event, CalSpan span);
    // As CalendarStoreBackend has it.
    using Sent = Result<std::unique_ptr<CalDeparture>, StoreError>;
    Sent send(const CalTask &task);
    Sent send(const CalEvent &event, CalSpan span);
    Result<void, StoreError> takeIn(CalTask &task, const QByteArray &text);
    Result<void, StoreError> takeIn(CalEvent &event, const QByteArray &text);

    // What a save consists of, for saves that take more than one step.
    Result<QByteArray, StoreError> newText(const CalEvent &event, const QString &uid) const;
    Result<QByteArray, StoreError> changedText(const StoredItem &stored, const CalEvent &event, CalSpan span) const;
    // `text` is the new text of the stored item's file, of which the item goes into another calendar.
    Result<void, StoreError> moveChanged(
        CalEvent &event, const StoredItem &stored, const QByteArray &text, Collection &target);
    Sent sendChanged(const CalCalendarItem &record, const StoredItem &stored, const QByteArray &text,
        const std::function<void(bool hasLeft)> &settled = {});
    static void countAsReadAnew(CalEvent &event, const Collection &collection, const FileSnapshot &file);

private:
    template <typename Record> Result<void, StoreError> create(Record &record);
    // `text` makes the new text of the stored item; `target` is where it belongs from now on.
    template <typename Record, typename Text>
    Result<void, StoreError> change(Record &record, const CalCalendarPtr &target, Text text);
    template <typename Record, typename Text> Sent sendRecord(const Record &record, Text text);
    template <typename Record> Result<void, StoreError> takeInRecord(Record &record, const QByteArray &text);
    // What `text` makes of the stored item's text, if the record holds a change at all.
    template <typename Record, typename Text>
    static Result<QByteArray, StoreError> textAfter(const Record &record, const StoredItem &stored, const Text &text);
    template <typename Record>
    Result<void, StoreError> move(Record &record, const StoredItem &stored, const QByteArray &text, Collection &target);

    ItemFiles &m_files;
};

} // namespace FolderStore
