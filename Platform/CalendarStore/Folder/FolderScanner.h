// SPDX-License-Identifier: MIT
#pragma once

#include "FileReading.h"

#include <QHash>
#include <QList>
#include <QString>

namespace FolderStore
{

class ProblemLog;

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
QList<FoundCollection> scanRoot(const QString &root, ProblemLog &log);

// The item files of a collection and their states, by name. What cannot be read is noted.
QHash<QString, FileState> scanCollection(const QString &folder, ProblemLog &log);

// Whether a name can be that of an item: not hidden, not temporary, ending in .ics.
bool isItemFileName(const QString &name);

// Whether the root is missing, or holds nothing that is not hidden.
bool rootHoldsNothing(const QString &root);

} // namespace FolderStore
