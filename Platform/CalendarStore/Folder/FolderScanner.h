// SPDX-License-Identifier: MIT
#pragma once

#include "FileSnapshot.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

namespace Items
{
class ProblemLog;
}

namespace FolderStore
{

// A place below the root that is a calendar.
struct FoundCollection {
    enum class Kind { Folder, SingleFile };

    Kind kind = Kind::Folder;
    QString name; // below the root
    QString path;
    QString realPath; // links resolved
    bool isWritable = false;
};

// The calendars below a root, by name. What cannot be one is noted.
QList<FoundCollection> scanRoot(const QString &root, Items::ProblemLog &log);

// How the item files of a folder differ from what is known of them.
struct FolderDifferences {
    struct Fault {
        QString path;
        QString reason; // the system's words, for the log
    };

    QStringList names; // of files that are new, gone, or perhaps not as they were; sorted
    QList<Fault> faults; // what lies there and cannot be read
    bool isClosed = false; // the folder may not be looked into, so that nothing of it can be shown
};

// Opens no file. May be called on any thread.
FolderDifferences differencesIn(const QString &folder, const QHash<QString, FileSnapshotPtr> &known);

// Whether more entries than that lie in the folder, of whichever kind.
bool holdsMoreThan(const QString &folder, int entries);

// Whether a name can be that of an item: not hidden, not temporary, ending in .ics.
bool isItemFileName(const QString &name);

// Whether the root is missing, or holds nothing that is not hidden.
bool rootHoldsNothing(const QString &root);

} // namespace FolderStore
