// SPDX-License-Identifier: MIT
#pragma once

#include "FileReading.h"

#include <ItemSet.h>

#include <QString>

#include <memory>

namespace FolderStore
{

// What is known of one file, in the state in which it was read: its items under its name, and what tells of the
// file itself.
class FileSnapshot final : public Items::ItemSet
{
public:
    FileSnapshot(const QString &fileName, const FileContent &content, ICalendar::ZoneRegistry &zones);

    const FileState &state() const { return m_state; }
    // Where the file lies if its name is a link; empty otherwise.
    const QString &linkTarget() const { return m_linkTarget; }

    // Whether the file looks as if somebody were still writing it.
    bool looksUnfinished() const { return m_looksUnfinished; }

private:
    FileState m_state;
    QString m_linkTarget;
    bool m_looksUnfinished;
};

using FileSnapshotPtr = std::shared_ptr<const FileSnapshot>;

} // namespace FolderStore
