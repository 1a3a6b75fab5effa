// SPDX-License-Identifier: MIT
#include "FolderScanner.h"

#include <ProblemLog.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
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

struct CloseFolder {
    void operator()(DIR *folder) const { ::closedir(folder); }
};

bool isHidden(const QString &name)
{
    return name.startsWith(u'.') || name.endsWith(u".tmp"_s);
}

// The names in a folder, sorted; nothing when it cannot be listed, errno tells why.
std::optional<QStringList> namesIn(const QString &folder)
{
    const std::unique_ptr<DIR, CloseFolder> listing(::opendir(QFile::encodeName(folder).constData()));
    if (!listing)
        return std::nullopt;
    QStringList names;
    while (const dirent *entry = ::readdir(listing.get())) { // NOLINT(concurrency-mt-unsafe): own stream
        const QByteArray encoded(entry->d_name);
        const QString name = QFile::decodeName(encoded);
        // A name that is not text in this system's encoding cannot be asked for again.
        if (!isHidden(name) && QFile::encodeName(name) == encoded)
            names << name;
    }
    names.sort();
    return names;
}

bool isWritable(const QString &path)
{
    return ::faccessat(AT_FDCWD, QFile::encodeName(path).constData(), W_OK | X_OK, AT_EACCESS) == 0;
}

} // namespace

QList<FoundCollection> scanRoot(const QString &root, Items::ProblemLog &log)
{
    QList<FoundCollection> found;
    const auto names = namesIn(root);
    if (!names) {
        if (errno != ENOENT)
            log.note(root, 0, qt_error_string(errno));
        return found;
    }
    for (const QString &name : *names) {
        FoundCollection collection { FoundCollection::Kind::Folder, name, root + u'/' + name, {}, false };
        struct stat status = {};
        if (::stat(QFile::encodeName(collection.path).constData(), &status) != 0) {
            log.note(collection.path, 0, qt_error_string(errno));
            continue;
        }
        if (S_ISDIR(status.st_mode)) {
            if (isItemFileName(name)) {
                log.note(collection.path, 0, u"is a folder"_s);
                continue;
            }
            collection.isWritable = isWritable(collection.path);
        } else if (isItemFileName(name)) {
            if (!S_ISREG(status.st_mode)) {
                log.note(collection.path, 0, u"is not a regular file"_s);
                continue;
            }
            collection.kind = FoundCollection::Kind::SingleFile;
        } else {
            continue;
        }
        collection.realPath = QFileInfo(collection.path).canonicalFilePath();
        found << collection;
    }
    return found;
}

FolderDifferences differencesIn(const QString &folder, const QHash<QString, FileSnapshotPtr> &known)
{
    FolderDifferences differences;
    const auto names = namesIn(folder);
    if (!names) {
        // Any other reason (too many open files, say) tells nothing of what is known.
        differences.isClosed = errno == EACCES || errno == ENOENT || errno == ENOTDIR;
        differences.faults << FolderDifferences::Fault { folder, qt_error_string(errno) };
        return differences;
    }
    QSet<QString> unchanged;
    for (const QString &name : *names) {
        if (!isItemFileName(name))
            continue;
        const QString path = folder + u'/' + name;
        const FileSnapshotPtr before = known.value(name);
        const auto state = stateOfRegularFile(path);
        if (!state)
            differences.faults << FolderDifferences::Fault { path, state.error().reason };
        else if (before && before->state() == state.value())
            unchanged.insert(name);
        else if (!before)
            differences.names << name;
    }
    for (auto each = known.keyBegin(); each != known.keyEnd(); ++each) {
        if (!unchanged.contains(*each))
            differences.names << *each;
    }
    differences.names.sort();
    return differences;
}

bool holdsMoreThan(const QString &folder, int entries)
{
    const std::unique_ptr<DIR, CloseFolder> listing(::opendir(QFile::encodeName(folder).constData()));
    int count = -2; // the folder itself and its parent
    while (listing && count <= entries && ::readdir(listing.get())) // NOLINT(concurrency-mt-unsafe): own stream
        ++count;
    return count > entries;
}

bool isItemFileName(const QString &name)
{
    return !isHidden(name) && name.endsWith(u".ics"_s, Qt::CaseInsensitive);
}

bool rootHoldsNothing(const QString &root)
{
    struct stat status = {};
    if (::lstat(QFile::encodeName(root).constData(), &status) != 0)
        return errno == ENOENT;
    const auto names = namesIn(root);
    return names && names->isEmpty();
}

} // namespace FolderStore
