// SPDX-License-Identifier: MIT
#include "FolderScanner.h"

#include "ProblemLog.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

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

QList<FoundCollection> scanRoot(const QString &root, ProblemLog &log)
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

QHash<QString, FileState> scanCollection(const QString &folder, ProblemLog &log)
{
    QHash<QString, FileState> files;
    const auto names = namesIn(folder);
    if (!names) {
        log.note(folder, 0, qt_error_string(errno));
        return files;
    }
    for (const QString &name : *names) {
        if (!isItemFileName(name))
            continue;
        const QString path = folder + u'/' + name;
        if (const auto state = stateOfRegularFile(path))
            files.insert(name, state.value());
        else
            log.note(path, 0, state.error().reason);
    }
    return files;
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
