// SPDX-License-Identifier: MIT
#pragma once

#include "ItemSaver.h"
#include "SaveJournal.h"

#include <CalItemOrigin.h>

#include <optional>

namespace FolderStore
{

// Saves events of which the same record is saved twice: the event sheet writes one
// occurrence with a prefixed title first, then all of them with the real one.
//
// The second save is made on the file as it was before the first, with what was
// changed since the record was read: so the two together are one change of all. The first step is
// in the journal until the second is done; if that fails, the first is taken back.
class TwoStepSaver final
{
public:
    TwoStepSaver(ItemFiles &files, ItemSaver &saver, FileCalls &calls);

    Result<void, StoreError> save(CalEvent &event, CalSpan span);

    // As CalendarStoreBackend has it: null for a first step. `event` is to be there as long as the answer.
    ItemSaver::Sent send(CalEvent &event, CalSpan span);

    // Takes back first steps below a folder of calendars whose process ended before the second.
    void mendLeftOvers(const QString &root);

private:
    // What the last save of one occurrence did.
    struct FirstStep {
        JournaledSave save;
        CalItemOrigin originBefore;
        QString calendar; // uid
        bool isJournaled = false;
    };

    bool isContinued(const CalEvent &event) const;
    Result<void, StoreError> begin(CalEvent &event);
    Result<void, StoreError> beginNew(CalEvent &event);
    // Remembers the step and carries it out by `write`.
    template <typename Write> Result<void, StoreError> take(CalEvent &event, const FirstStep &step, Write write);
    Result<void, StoreError> proceed(CalEvent &event, CalSpan span);
    Result<void, StoreError> stepBeforeSending(CalEvent &event);
    ItemSaver::Sent sendBoth(CalEvent &event, CalSpan span);
    Result<QByteArray, StoreError> textOfBoth(const StoredItem &stored, const CalEvent &event, CalSpan span) const;
    void takeBack(CalEvent &event);
    void forget();

    ItemFiles &m_files;
    ItemSaver &m_saver;
    FileCalls &m_calls;
    SaveJournal m_journal;
    std::optional<FirstStep> m_first;
};

} // namespace FolderStore
