// SPDX-License-Identifier: MIT
#pragma once

#include "CollectionDescription.h"
#include "FileSnapshot.h"
#include "FolderScanner.h"

#include <CalTypes.h>
#include <ItemIndex.h>

#include <QHash>
#include <QString>

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

    const Items::ItemIndex &items() const { return m_items; }

private:
    CalCalendarPtr makeRecord() const;

    FoundCollection m_place;
    CollectionDescription m_description;
    QHash<QString, FileSnapshotPtr> m_files;
    Items::ItemIndex m_items; // of the files
    mutable CalCalendarPtr m_record; // null until it is asked for
};

} // namespace FolderStore
