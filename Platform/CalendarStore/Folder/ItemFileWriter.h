// SPDX-License-Identifier: MIT
#pragma once

#include "FileCalls.h"

#include <Result.h>

#include <QByteArray>
#include <QDateTime>
#include <QString>

namespace FolderStore
{

// Why a file was not replaced. The file is then what it was, or what somebody else made of it.
struct WritingFault {
    enum class Kind {
        Vanished, // the file is not there any more
        Changed, // somebody else changed the file
        NotAllowed, // the file, its folder or the disk cannot be written
        Failed, // the disk is full, an input/output error, and the like
    };

    Kind kind = Kind::Failed;
    QString reason; // the system's words
};

// Replaces the content of existing files so that, whatever happens on the way,
// each is wholly the old one or wholly the new one, and what somebody else wrote
// meanwhile is never lost.
//
// The new bytes go to a temporary file beside the old one and reach the disk;
// then the two change places in one step. What came out is compared with what
// was expected: if it differs, the two change back. Owner and permissions stay.
class ItemFileWriter final
{
public:
    explicit ItemFileWriter(FileCalls &calls);

    // `expected` is the content on which the new one is built. A link is never followed.
    Result<void, WritingFault> replace(const QString &path, const QByteArray &expected, const QByteArray &replacement);

    // Removes what killed writers left behind more than a day before `now`. Only files of our own making.
    static void removeLeftovers(const QString &folder, const QDateTime &now);

private:
    class Replacement;

    FileCalls &m_calls;
};

} // namespace FolderStore
