// SPDX-License-Identifier: MIT
#pragma once

#include "FileCalls.h"
#include "FileDescriptor.h"
#include "ItemFileWriter.h"

#include <QByteArray>
#include <QString>

#include <optional>

#include <sys/stat.h>

namespace FolderStore
{

// What replacing, creating and removing a file have in common: the open folder, the
// name in it, and the temporary file beside it. Everything goes by names within the
// open folder, so that nothing is ever written elsewhere.
class FileWriting
{
public:
    using Outcome = Result<void, WritingFault>;

    FileWriting(FileCalls &calls, const QString &path);

protected:
    bool isFolderOpen() const { return m_folder.isOpen(); }
    int folder() const { return m_folder.number(); }
    const char *name() const { return m_name.constData(); }
    FileCalls &calls() { return m_calls; }

    // `likeThis`: the owner and mode that the file shall have; its mode alone when `keepsOwner` is false.
    Outcome writeTemporary(const QByteArray &content, const struct stat &likeThis, bool keepsOwner);
    bool hasTemporary() const { return !m_temporary.isEmpty(); }
    const char *temporary() const { return m_temporary.constData(); }
    void takeNewTemporaryName();
    // What stands under the temporary name is left to whoever it belongs to by now.
    void forgetTemporary() { m_temporary.clear(); }
    void removeTemporary();

    // The bytes of a regular file; nothing for whatever else stands under the name. errno tells why.
    std::optional<QByteArray> contentOf(const char *fileName) const;
    std::optional<QByteArray> content() const { return contentOf(name()); }
    std::optional<QByteArray> temporaryContent() const { return contentOf(temporary()); }
    Outcome examine(struct stat &status, const QByteArray &expected) const;

    // In one step where the file system can; -1 and EEXIST when the new name is taken.
    int renameIfFree(const char *from, const char *to);

    // Gives the file under the temporary name the name that was taken from it. Where somebody else has
    // given that away meanwhile, what has it is the newer version of the two, and ours goes.
    void giveNameBack();

    static WritingFault faultOf(int reason);
    static WritingFault changed() { return { WritingFault::Kind::Changed, {} }; }

private:
    Outcome fill(int file, const QByteArray &content, const struct stat &likeThis, bool keepsOwner);

    FileCalls &m_calls;
    QByteArray m_name;
    FileDescriptor m_folder;
    QByteArray m_temporary; // empty while there is none to remove
};

} // namespace FolderStore
