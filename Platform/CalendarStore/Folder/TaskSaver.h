// SPDX-License-Identifier: MIT
#pragma once

#include "ItemFileWriter.h"

#include <StoreError.h>

#include <QSet>
#include <QString>

class CalTask;
class Clock;

namespace FolderStore
{

class Collection;
class FolderSynchronizer;

// Writes what was changed in a to-do's record into its file, or says in the
// person's words why not.
class TaskSaver final
{
public:
    TaskSaver(FolderSynchronizer &synchronizer, const Clock &clock);

    Result<void, StoreError> save(CalTask &task);

private:
    StoreError refusal(const CalTask &task, StoreError::Code code, const QString &reason) const;
    Result<void, StoreError> saveInto(Collection &collection, CalTask &task);
    StoreError refusal(const CalTask &task, const WritingFault &fault) const;

    FolderSynchronizer &m_synchronizer;
    const Clock &m_clock;
    FileCalls m_calls;
    ItemFileWriter m_writer;
    QSet<QString> m_openedFolders; // for writing, in this run
};

} // namespace FolderStore
