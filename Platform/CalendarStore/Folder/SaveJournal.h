// SPDX-License-Identifier: MIT
#pragma once

#include "FileDescriptor.h"
#include "ItemFileWriter.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace FolderStore
{

// A save in two steps that has begun: what a file was, and what the first step makes of it.
struct JournaledSave {
    QString path; // of the item's file, absolute
    std::optional<QByteArray> before; // absent for a file that the first step creates
    QByteArray after;
    QByteArray titlePrefix; // what the first step puts before the title, as the file holds it
};

// Remembers a save in two steps until the second one is done, so that after a
// crash in between the next start can take the first one back.
//
// One file for each such save, in the state home. It is on the disk before the
// first step begins. Whoever is in the middle of a save holds a lock, which goes with
// the process: a save whose process lives is never taken for a left-over.
class SaveJournal final
{
public:
    explicit SaveJournal(FileCalls &calls, QString folder = defaultFolder());
    ~SaveJournal(); // a save that has begun counts as ended

    SaveJournal(const SaveJournal &) = delete;
    SaveJournal &operator=(const SaveJournal &) = delete;

    // At most one save is begun at a time; another one ends it. After a fault nothing is remembered.
    Result<void, WritingFault> begin(const JournaledSave &save);
    const std::optional<JournaledSave> &current() const { return m_current; }
    void end();
    // Leaves the save to the next start: it could not be taken back. Answers with the name of what is kept of it.
    QString abandon();
    // What was left to the next start is dealt with.
    void forget(const QString &name);

    // Hands out the saves below a folder of calendars whose processes ended in between; the answer tells whether the
    // save is dealt with and can be forgotten. Does nothing while another process is in the middle of a save: a later
    // start will.
    void forEachLeftOver(
        const QString &root, const QDateTime &now, const std::function<bool(const JournaledSave &save)> &deal);

    // $XDG_STATE_HOME/vantle/saves
    static QString defaultFolder();

private:
    enum class Lock { Shared, Exclusive };

    std::unique_ptr<FileDescriptor> locked(Lock kind) const;
    QString pathOf(const QString &name) const;

    FileCalls &m_calls;
    QString m_folder;
    std::optional<JournaledSave> m_current;
    QString m_name; // of the file of the current one
    std::unique_ptr<FileDescriptor> m_lock; // while a save is begun
};

} // namespace FolderStore
