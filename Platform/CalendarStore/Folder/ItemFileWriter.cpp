// SPDX-License-Identifier: MIT
#include "ItemFileWriter.h"

#include "FileWriting.h"

#include <QFile>

#include <cerrno>
#include <csignal>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace FolderStore
{

namespace
{

constexpr qint64 secondsPerDay = 86400;
constexpr mode_t readAndWriteBits = 0666;

} // namespace

// One file on its way from the old content to the new one.
class ItemFileWriter::Replacement final : private FileWriting
{
public:
    Replacement(FileCalls &calls, const QString &path, const QByteArray &expected, const QByteArray &replacement)
        : FileWriting(calls, path)
        , m_expected(expected)
        , m_replacement(replacement)
    {
    }

    Outcome run()
    {
        if (!isFolderOpen())
            return faultOf(errno);
        struct stat old = {};
        Outcome outcome = examine(old, m_expected);
        if (outcome)
            outcome = writeTemporary(m_replacement, old, true);
        if (outcome)
            outcome = putInPlace();
        // The old file, once the new one is safe: should that fail, it is a left-over to be cleared away.
        removeTemporary();
        return outcome;
    }

private:
    Outcome putInPlace()
    {
        if (!exchange()) {
            const bool isUnsupported = errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP;
            return isUnsupported ? putInPlaceByRenaming() : Outcome(faultOf(errno));
        }
        // Under the temporary name stands what was there at the moment of the exchange.
        if (temporaryContent() != m_expected) {
            takeBack();
            return changed();
        }
        if (calls().flush(folder()) != 0) {
            const int reason = errno;
            takeBack();
            return faultOf(reason);
        }
        return lookAgain();
    }

    // The flush takes long enough for a program that looked at the old file before the exchange to rename over ours
    // after it, or to write into the old file, which it had open. What is not there any more was not saved.
    Outcome lookAgain()
    {
        const auto old = temporaryContent();
        const auto present = old ? content() : std::nullopt;
        if (old == m_expected && present == m_replacement)
            return {};
        const int reason = errno;
        const bool isOverwritten = old == m_expected && (present || reason == ENOENT);
        if (!isOverwritten) {
            takeBack();
            calls().flush(folder());
        }
        return old && (present || old != m_expected) ? Outcome(changed()) : Outcome(faultOf(reason));
    }

    // Where the file system cannot exchange: a change between the two calls would be lost.
    Outcome putInPlaceByRenaming()
    {
        const auto found = content();
        if (!found)
            return faultOf(errno);
        if (*found != m_expected)
            return changed();
        if (calls().rename(folder(), temporary(), name()) != 0)
            return faultOf(errno);
        forgetTemporary();
        return calls().flush(folder()) == 0 ? Outcome() : Outcome(faultOf(errno));
    }

    bool exchange() { return calls().exchange(folder(), temporary(), name()) == 0; }

    // Gives the name back to the file that it had before the exchange, or to a still newer one.
    void takeBack()
    {
        if (!exchange()) {
            // Ours stands and cannot be taken away: the other one must not be removed with the temporary name.
            forgetTemporary();
            return;
        }
        if (temporaryContent() != m_replacement)
            exchange();
    }

    const QByteArray &m_expected;
    const QByteArray &m_replacement;
};

// A file that gets its name when all of it is there.
class ItemFileWriter::Creation final : private FileWriting
{
public:
    Creation(FileCalls &calls, const QString &path)
        : FileWriting(calls, path)
    {
    }

    Outcome run(const QByteArray &content, std::optional<mode_t> mode)
    {
        struct stat likeThis = {};
        if (!isFolderOpen() || ::fstat(folder(), &likeThis) != 0)
            return faultOf(errno);
        likeThis.st_mode = mode.value_or(likeThis.st_mode & readAndWriteBits);
        Outcome outcome = writeTemporary(content, likeThis, false);
        if (outcome && renameIfFree(temporary(), name()) != 0)
            outcome = faultOf(errno);
        else if (outcome)
            outcome = makeLasting(content);
        removeTemporary();
        return outcome;
    }

private:
    Outcome makeLasting(const QByteArray &content)
    {
        forgetTemporary();
        if (calls().flush(folder()) == 0)
            return {};
        const int reason = errno;
        // A failed creation leaves nothing behind, unless somebody has made something of it already.
        takeNewTemporaryName();
        if (renameIfFree(name(), temporary()) != 0)
            forgetTemporary();
        else if (temporaryContent() != content)
            giveNameBack();
        return faultOf(reason);
    }
};

// A file that loses its name, and is gone once it is known to be the right one.
class ItemFileWriter::Removal final : private FileWriting
{
public:
    Removal(FileCalls &calls, const QString &path, const QByteArray &expected)
        : FileWriting(calls, path)
        , m_expected(expected)
    {
    }

    Result<mode_t, WritingFault> run()
    {
        if (!isFolderOpen())
            return faultOf(errno);
        struct stat old = {};
        if (const Outcome outcome = examine(old, m_expected); !outcome)
            return outcome.error();
        takeNewTemporaryName();
        if (renameIfFree(name(), temporary()) != 0)
            return faultOf(errno);
        if (temporaryContent() != m_expected) {
            giveNameBack();
            return changed();
        }
        if (calls().flush(folder()) != 0) {
            const int reason = errno;
            giveNameBack();
            return faultOf(reason);
        }
        // Whoever had it open may have written into it after all.
        if (temporaryContent() != m_expected) {
            giveNameBack();
            calls().flush(folder());
            return changed();
        }
        removeTemporary();
        return old.st_mode;
    }

private:
    const QByteArray &m_expected;
};

ItemFileWriter::ItemFileWriter(FileCalls &calls)
    : m_calls(calls)
{
    // A file that may not grow any further is an error of the call, not the end of the process.
    std::signal(SIGXFSZ, SIG_IGN);
}

Result<void, WritingFault> ItemFileWriter::replace(
    const QString &path, const QByteArray &expected, const QByteArray &replacement)
{
    return Replacement(m_calls, path, expected, replacement).run();
}

Result<void, WritingFault> ItemFileWriter::create(
    const QString &path, const QByteArray &content, std::optional<mode_t> mode)
{
    return Creation(m_calls, path).run(content, mode);
}

Result<mode_t, WritingFault> ItemFileWriter::remove(const QString &path, const QByteArray &expected)
{
    return Removal(m_calls, path, expected).run();
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
