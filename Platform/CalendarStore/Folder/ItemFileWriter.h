// SPDX-License-Identifier: MIT
#pragma once

#include "FileCalls.h"

#include <Result.h>

#include <QByteArray>
#include <QByteArrayView>
#include <QDateTime>
#include <QString>

#include <optional>

#include <sys/types.h>

namespace FolderStore
{

// Why a file was not replaced, created or removed. It is then what it was, or what somebody else made of it.
struct WritingFault {
    enum class Kind {
        Vanished, // the file is not there any more
        Changed, // somebody else changed the file
        Taken, // a file of that name is there
        NotAllowed, // the file, its folder or the disk cannot be written
        Failed, // the disk is full, an input/output error, and the like
    };

    Kind kind = Kind::Failed;
    QString reason; // the system's words
};

// Replaces, creates and removes files so that, whatever happens on the way, each is
// wholly what it was or wholly what it shall be, and what somebody else wrote
// meanwhile is never lost. Only names right within the file's folder are touched,
// and a link is never followed.
class ItemFileWriter final
{
public:
    explicit ItemFileWriter(FileCalls &calls);

    // The new bytes go to a temporary file beside the old one and reach the disk; then the two change
    // places in one step. What came out is compared with `expected`, the content on which the new one is
    // built: if it differs, the two change back. A success says that the new content is on the disk and still
    // stood under the name after that. Owner and permissions stay.
    Result<void, WritingFault> replace(const QString &path, const QByteArray &expected, const QByteArray &replacement);

    // Gives the file its name when all of it is on the disk; a file that has the name is left alone.
    // Whoever may look into the folder may read it, unless a mode is given.
    Result<void, WritingFault> create(
        const QString &path, const QByteArray &content, std::optional<mode_t> mode = std::nullopt);

    // Takes the name away, looks whether what had it is `expected`, and gives it back if not.
    // Answers with the mode that the file had.
    Result<mode_t, WritingFault> remove(const QString &path, const QByteArray &expected);

    // Removes what killed writers left behind more than a day before `now`. Only files of our own making.
    static void removeLeftovers(const QString &folder, const QDateTime &now);

    // No program takes a file so named for an item.
    static constexpr QByteArrayView temporaryPrefix = ".vantle-";
    static constexpr QByteArrayView temporaryEnding = ".tmp";

private:
    class Replacement;
    class Creation;
    class Removal;

    FileCalls &m_calls;
};

} // namespace FolderStore
