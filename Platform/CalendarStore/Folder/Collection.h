// SPDX-License-Identifier: MIT
#pragma once

#include "CollectionDescription.h"
#include "EventIndex.h"
#include "ExpansionCache.h"
#include "FileSnapshot.h"
#include "FolderScanner.h"
#include "TaskIndex.h"

#include <CalTypes.h>

#include <QHash>
#include <QString>
#include <QStringList>

#include <vector>

namespace FolderStore
{

// One calendar of the folder store: where it lies, how it looks, and what of its
// files is known. Answers from memory and touches no file.
class Collection final
{
public:
    explicit Collection(FoundCollection place);

    const FoundCollection &place() const { return m_place; }
    void setPlace(const FoundCollection &place);
    const QString &uid() const { return m_place.name; }
    QString pathOf(const QString &fileName) const;

    const CollectionDescription &description() const { return m_description; }
    void setDescription(const CollectionDescription &description);

    // What to show of it. Another record after every change of what it shows.
    const CalCalendarPtr &record() const;

    FileSnapshotPtr file(const QString &fileName) const { return m_files.value(fileName); }
    const QHash<QString, FileSnapshotPtr> &files() const { return m_files; }
    void setFile(const FileSnapshotPtr &snapshot);
    void removeFile(const QString &fileName);

    // Whether any UID stands in several files.
    bool hasSharedUids() const { return m_sharedUids > 0; }
    bool holdsUid(const QString &uid) const { return m_filesByUid.contains(uid); }
    std::vector<GroupRef> eventCandidates(ICalendar::UtcSeconds from, ICalendar::UtcSeconds to) const
    {
        return m_events.candidates(from, to);
    }
    const TaskIndex &tasks() const { return m_tasks; }
    ExpansionCache &expansions() const { return m_expansions; }

    // Tells a group apart from others of the same UID in this calendar; empty for the first of
    // them, files taken by name.
    QString distinctionOf(const GroupRef &ref) const;

private:
    CalCalendarPtr makeRecord() const;

    FoundCollection m_place;
    CollectionDescription m_description;
    QHash<QString, FileSnapshotPtr> m_files;
    QHash<QString, QStringList> m_filesByUid; // names of files in order, each once
    int m_sharedUids = 0; // how many of them stand in several files
    EventIndex m_events;
    TaskIndex m_tasks;
    mutable CalCalendarPtr m_record; // null until it is asked for
    mutable ExpansionCache m_expansions; // derived from the files
};

} // namespace FolderStore
