// SPDX-License-Identifier: MIT
#include "FileWriting.h"

#include "Limits.h"

#include <QFile>
#include <QRandomGenerator>

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace FolderStore
{

namespace
{

constexpr mode_t permissionBits = 07777;
constexpr mode_t anyWriteBit = S_IWUSR | S_IWGRP | S_IWOTH;

} // namespace

FileWriting::FileWriting(FileCalls &calls, const QString &path)
    : m_calls(calls)
    , m_name(QFile::encodeName(path.mid(path.lastIndexOf(u'/') + 1)))
    , m_folder(::open(
          QFile::encodeName(path.left(path.lastIndexOf(u'/') + 1)).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
{
}

FileWriting::Outcome FileWriting::writeTemporary(
    const QByteArray &content, const struct stat &likeThis, bool keepsOwner)
{
    takeNewTemporaryName();
    const int file = m_calls.create(folder(), temporary());
    if (file < 0) {
        const int reason = errno;
        forgetTemporary();
        return faultOf(reason);
    }
    Outcome outcome = fill(file, content, likeThis, keepsOwner);
    // A close that fails may be the only notice of a write that failed.
    if (m_calls.close(file) != 0 && outcome)
        return faultOf(errno);
    return outcome;
}

FileWriting::Outcome FileWriting::fill(
    int file, const QByteArray &content, const struct stat &likeThis, bool keepsOwner)
{
    for (qsizetype written = 0; written < content.size();) {
        const ssize_t count
            = m_calls.write(file, content.constData() + written, static_cast<size_t>(content.size() - written));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return faultOf(count == 0 ? EIO : errno);
        written += count;
    }
    struct stat fresh = {};
    if (::fstat(file, &fresh) != 0)
        return faultOf(errno);
    const bool isOthers = fresh.st_uid != likeThis.st_uid || fresh.st_gid != likeThis.st_gid;
    if (keepsOwner && isOthers && m_calls.changeOwner(file, likeThis.st_uid, likeThis.st_gid) != 0)
        return faultOf(errno);
    if (m_calls.changeMode(file, likeThis.st_mode & permissionBits) != 0 || m_calls.flush(file) != 0)
        return faultOf(errno);
    return {};
}

void FileWriting::takeNewTemporaryName()
{
    m_temporary = ItemFileWriter::temporaryPrefix.toByteArray()
        + QByteArray::number(QRandomGenerator::system()->generate64(), 16)
        + ItemFileWriter::temporaryEnding.toByteArray();
}

void FileWriting::removeTemporary()
{
    if (hasTemporary())
        m_calls.unlink(folder(), temporary());
    forgetTemporary();
}

std::optional<QByteArray> FileWriting::contentOf(const char *fileName) const
{
    const FileDescriptor file(::openat(folder(), fileName, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status = {};
    if (!file.isOpen() || ::fstat(file.number(), &status) != 0)
        return std::nullopt;
    if (!S_ISREG(status.st_mode) || status.st_size > Limits::itemFileBytes) {
        errno = EINVAL;
        return std::nullopt;
    }
    return readAll(file.number(), Limits::itemFileBytes + 1);
}

// Whether the file may be changed, and is what it is taken for.
FileWriting::Outcome FileWriting::examine(struct stat &status, const QByteArray &expected) const
{
    if (::fstatat(folder(), name(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return faultOf(errno);
    if (!S_ISREG(status.st_mode))
        return faultOf(ELOOP);
    // Replacing or removing a file asks for no permission on the file itself; we do.
    if ((status.st_mode & anyWriteBit) == 0)
        return faultOf(EACCES);
    if (::faccessat(folder(), name(), W_OK, AT_EACCESS) != 0)
        return faultOf(errno);
    const auto found = content();
    if (!found)
        return faultOf(errno);
    return *found == expected ? Outcome() : Outcome(changed());
}

int FileWriting::renameIfFree(const char *from, const char *to)
{
    if (m_calls.renameIfFree(folder(), from, to) == 0)
        return 0;
    const bool isUnsupported = errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP;
    if (!isUnsupported)
        return -1;
    // A hard link is refused where the name is taken, too.
    if (m_calls.link(folder(), from, to) != 0)
        return -1;
    m_calls.unlink(folder(), from);
    return 0;
}

void FileWriting::giveNameBack()
{
    const bool isBack = renameIfFree(temporary(), name()) == 0;
    if (!isBack && errno == EEXIST)
        removeTemporary();
    // A second name is better than none.
    else if (!isBack)
        m_calls.link(folder(), temporary(), name());
    forgetTemporary();
}

WritingFault FileWriting::faultOf(int reason)
{
    using Kind = WritingFault::Kind;
    switch (reason) {
    case ENOENT:
    case ENOTDIR:
    case ESTALE:
        return { Kind::Vanished, qt_error_string(reason) };
    case EEXIST:
        return { Kind::Taken, qt_error_string(reason) };
    case EACCES:
    case EPERM:
    case EROFS:
    case ELOOP:
        return { Kind::NotAllowed, qt_error_string(reason) };
    default:
        return { Kind::Failed, qt_error_string(reason) };
    }
}

} // namespace FolderStore
