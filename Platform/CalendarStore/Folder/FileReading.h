// SPDX-License-Identifier: MIT
#pragma once

#include <Result.h>

#include <QByteArray>
#include <QString>

struct stat;

namespace FolderStore
{

// Tells whether a file may have changed without reading it.
struct FileState {
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = 0;
    qint64 modifiedNanoseconds = 0;

    static FileState of(const struct stat &status);
    bool operator==(const FileState &) const = default;
};

struct FileContent {
    FileState state;
    QByteArray bytes;
    // Where a link leads to in the end; empty for a file that is none.
    QString linkTarget;
    // Whether the file stayed the same while it was read.
    bool isSettled = true;
};

struct FileFault {
    enum class Kind { Missing, NotRegular, TooLarge, Unreadable };

    Kind kind = Kind::Unreadable;
    QString reason; // the system's words, for the log
};

// Reads a file if it is a regular one (links are followed) of at most `limit`
// bytes. Never waits for a writer: pipes, sockets and devices are not opened.
Result<FileContent, FileFault> readRegularFile(const QString &path, qint64 limit);

// The state of a file or of what a link leads to; a fault when there is no regular file.
Result<FileState, FileFault> stateOfRegularFile(const QString &path);

} // namespace FolderStore
