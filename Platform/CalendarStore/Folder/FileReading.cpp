// SPDX-License-Identifier: MIT
#include "FileReading.h"

#include "FileDescriptor.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace FolderStore
{

namespace
{

constexpr qint64 nanosecondsPerSecond = 1'000'000'000;

FileFault faultOfErrno()
{
    const bool isMissing = errno == ENOENT || errno == ENOTDIR;
    return { isMissing ? FileFault::Kind::Missing : FileFault::Kind::Unreadable, qt_error_string(errno) };
}

FileFault notRegular(mode_t mode)
{
    return { FileFault::Kind::NotRegular, S_ISDIR(mode) ? u"is a folder"_s : u"is not a regular file"_s };
}

} // namespace

FileState FileState::of(const struct stat &status)
{
    return { status.st_dev, status.st_ino, status.st_size,
        status.st_mtim.tv_sec * nanosecondsPerSecond + status.st_mtim.tv_nsec };
}

Result<FileState, FileFault> stateOfRegularFile(const QString &path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return faultOfErrno();
    if (!S_ISREG(status.st_mode))
        return notRegular(status.st_mode);
    return FileState::of(status);
}

Result<FileContent, FileFault> readRegularFile(const QString &path, qint64 limit)
{
    // Opening a device can set it in motion, so its kind is asked first; and it is
    // asked again of the open file, for the name may mean another one by then.
    struct stat status = {};
    if (::lstat(QFile::encodeName(path).constData(), &status) != 0)
        return faultOfErrno();
    const bool isLink = S_ISLNK(status.st_mode);
    if (isLink && ::stat(QFile::encodeName(path).constData(), &status) != 0)
        return faultOfErrno();
    if (!S_ISREG(status.st_mode))
        return notRegular(status.st_mode);
    const FileDescriptor file(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file.isOpen() || ::fstat(file.number(), &status) != 0)
        return faultOfErrno();
    if (!S_ISREG(status.st_mode))
        return notRegular(status.st_mode);
    if (status.st_size > limit)
        return FileFault { FileFault::Kind::TooLarge,
            u"is larger (%1 bytes) than the limit of %2 bytes"_s.arg(qint64(status.st_size)).arg(limit) };

    FileContent content;
    content.state = FileState::of(status);
    if (isLink)
        content.linkTarget = QFileInfo(path).canonicalFilePath();
    std::optional<QByteArray> bytes = readAll(file.number(), limit);
    if (!bytes)
        return faultOfErrno();
    content.bytes = *std::move(bytes);
    content.isSettled = ::fstat(file.number(), &status) == 0 && FileState::of(status) == content.state
        && content.bytes.size() == content.state.size;
    return content;
}

} // namespace FolderStore
