// SPDX-License-Identifier: MIT
#include "ItemFileWriter.h"

#include "FileDescriptor.h"
#include "Limits.h"

#include <QFile>
#include <QRandomGenerator>

#include <array>
#include <cerrno>
#include <memory>
#include <optional>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace FolderStore
{

namespace
{

constexpr QByteArrayView temporaryPrefix = ".vantle-";
constexpr QByteArrayView temporaryEnding = ".tmp"; // no program takes such a file for an item
constexpr qint64 secondsPerDay = 86400;
constexpr mode_t permissionBits = 07777;
constexpr mode_t anyWriteBit = S_IWUSR | S_IWGRP | S_IWOTH;

WritingFault faultOf(int reason)
{
    using Kind = WritingFault::Kind;
    switch (reason) {
    case ENOENT:
    case ENOTDIR:
    case ESTALE:
        return { Kind::Vanished, qt_error_string(reason) };
    case EACCES:
    case EPERM:
    case EROFS:
    case ELOOP:
        return { Kind::NotAllowed, qt_error_string(reason) };
    default:
        return { Kind::Failed, qt_error_string(reason) };
    }
}

QByteArray newTemporaryName()
{
    return temporaryPrefix.toByteArray() + QByteArray::number(QRandomGenerator::system()->generate64(), 16)
        + temporaryEnding.toByteArray();
}

// The bytes of a regular file; nothing for whatever else stands under the name. errno tells why.
std::optional<QByteArray> contentOf(int folder, const QByteArray &name)
{
    const FileDescriptor file(
        ::openat(folder, name.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status = {};
    if (!file.isOpen() || ::fstat(file.number(), &status) != 0)
        return std::nullopt;
    if (!S_ISREG(status.st_mode) || status.st_size > Limits::itemFileBytes) {
        errno = EINVAL;
        return std::nullopt;
    }
    return readAll(file.number(), Limits::itemFileBytes + 1);
}

} // namespace

// One file on its way from the old content to the new one.
class ItemFileWriter::Replacement final
{
public:
    using Outcome = Result<void, WritingFault>;

    Replacement(FileCalls &calls, const QString &path, const QByteArray &expected, const QByteArray &replacement)
        : m_calls(calls)
        , m_expected(expected)
        , m_replacement(replacement)
        , m_name(QFile::encodeName(path.mid(path.lastIndexOf(u'/') + 1)))
        , m_folder(::open(
              QFile::encodeName(path.left(path.lastIndexOf(u'/') + 1)).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
    }

    Outcome run()
    {
        if (!m_folder.isOpen())
            return faultOf(errno);
        for (const auto step : { &Replacement::examine, &Replacement::writeTemporary, &Replacement::putInPlace }) {
            if (Outcome outcome = (this->*step)(); !outcome) {
                if (!m_temporary.isEmpty())
                    m_calls.unlink(m_folder.number(), m_temporary.constData());
                return outcome;
            }
        }
        return {};
    }

private:
    Outcome examine()
    {
        const int folder = m_folder.number();
        if (::fstatat(folder, m_name.constData(), &m_old, AT_SYMLINK_NOFOLLOW) != 0)
            return faultOf(errno);
        if (!S_ISREG(m_old.st_mode))
            return faultOf(ELOOP);
        // Replacing a file asks for no permission on the file itself; we do.
        if ((m_old.st_mode & anyWriteBit) == 0)
            return faultOf(EACCES);
        if (::faccessat(folder, m_name.constData(), W_OK, AT_EACCESS) != 0)
            return faultOf(errno);
        const auto content = contentOf(folder, m_name);
        if (!content)
            return faultOf(errno);
        return *content == m_expected ? Outcome() : Outcome(WritingFault { WritingFault::Kind::Changed, {} });
    }

    Outcome writeTemporary()
    {
        const QByteArray name = newTemporaryName();
        const int file = m_calls.create(m_folder.number(), name.constData());
        if (file < 0)
            return faultOf(errno);
        m_temporary = name;
        Outcome outcome = fill(file);
        // A close that fails may be the only notice of a write that failed.
        if (m_calls.close(file) != 0 && outcome)
            return faultOf(errno);
        return outcome;
    }

    Outcome fill(int file)
    {
        for (qsizetype written = 0; written < m_replacement.size();) {
            const ssize_t count = m_calls.write(
                file, m_replacement.constData() + written, static_cast<size_t>(m_replacement.size() - written));
            if (count < 0 && errno == EINTR)
                continue;
            if (count <= 0)
                return faultOf(count == 0 ? EIO : errno);
            written += count;
        }
        struct stat fresh = {};
        if (::fstat(file, &fresh) != 0)
            return faultOf(errno);
        const bool isOthers = fresh.st_uid != m_old.st_uid || fresh.st_gid != m_old.st_gid;
        if (isOthers && m_calls.changeOwner(file, m_old.st_uid, m_old.st_gid) != 0)
            return faultOf(errno);
        if (m_calls.changeMode(file, m_old.st_mode & permissionBits) != 0 || m_calls.flush(file) != 0)
            return faultOf(errno);
        return {};
    }

    Outcome putInPlace()
    {
        if (!exchange()) {
            const bool isUnsupported = errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP;
            return isUnsupported ? putInPlaceByRenaming() : Outcome(faultOf(errno));
        }
        // Under the temporary name stands what was there at the moment of the exchange.
        if (contentOf(m_folder.number(), m_temporary) != m_expected) {
            takeBack();
            return WritingFault { WritingFault::Kind::Changed, {} };
        }
        if (m_calls.flush(m_folder.number()) != 0) {
            const int reason = errno;
            takeBack();
            return faultOf(reason);
        }
        // The new file is safe by now. Should this fail, the old one is a left-over to be cleared away.
        m_calls.unlink(m_folder.number(), m_temporary.constData());
        return {};
    }

    // Where the file system cannot exchange: a change between the two calls would be lost.
    Outcome putInPlaceByRenaming()
    {
        const auto content = contentOf(m_folder.number(), m_name);
        if (!content)
            return faultOf(errno);
        if (*content != m_expected)
            return WritingFault { WritingFault::Kind::Changed, {} };
        if (m_calls.rename(m_folder.number(), m_temporary.constData(), m_name.constData()) != 0)
            return faultOf(errno);
        m_temporary.clear();
        return m_calls.flush(m_folder.number()) == 0 ? Outcome() : Outcome(faultOf(errno));
    }

    bool exchange() { return m_calls.exchange(m_folder.number(), m_temporary.constData(), m_name.constData()) == 0; }

    // Gives the name back to the file that it had before the exchange, or to a still newer one.
    void takeBack()
    {
        if (!exchange()) {
            // Ours stands and cannot be taken away: the other one must not be removed with the temporary name.
            m_temporary.clear();
            return;
        }
        if (contentOf(m_folder.number(), m_temporary) != m_replacement)
            exchange();
    }

    FileCalls &m_calls;
    const QByteArray &m_expected;
    const QByteArray &m_replacement;
    QByteArray m_name;
    FileDescriptor m_folder;
    struct stat m_old = {};
    QByteArray m_temporary; // empty while there is none to remove
};

ItemFileWriter::ItemFileWriter(FileCalls &calls)
    : m_calls(calls)
{
}

Result<void, WritingFault> ItemFileWriter::replace(
    const QString &path, const QByteArray &expected, const QByteArray &replacement)
{
    return Replacement(m_calls, path, expected, replacement).run();
}

void ItemFileWriter::removeLeftovers(const QString &folder, const QDateTime &now)
{
    struct CloseFolder {
        void operator()(DIR *listing) const { ::closedir(listing); }
    };
    const std::unique_ptr<DIR, CloseFolder> listing(::opendir(QFile::encodeName(folder).constData()));
    if (!listing)
        return;
    const int number = ::dirfd(listing.get());
    while (const dirent *entry = ::readdir(listing.get())) { // NOLINT(concurrency-mt-unsafe): own stream
        const QByteArrayView name(entry->d_name);
        struct stat status = {};
        if (!name.startsWith(temporaryPrefix) || !name.endsWith(temporaryEnding)
            || ::fstatat(number, entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISREG(status.st_mode))
            continue;
        if (status.st_mtim.tv_sec + secondsPerDay < now.toSecsSinceEpoch())
            ::unlinkat(number, entry->d_name, 0);
    }
}

} // namespace FolderStore
