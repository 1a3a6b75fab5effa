// SPDX-License-Identifier: MIT
#include "FolderWatcher.h"

#include <ProblemLog.h>

#include <QFile>
#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include <sys/inotify.h>
#include <unistd.h>

namespace FolderStore
{

namespace
{

constexpr quint32 watchedEvents = IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_CREATE | IN_ATTRIB
    | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
constexpr quint32 endingEvents = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED;

} // namespace

FolderWatcher::FolderWatcher(std::unique_ptr<WatchCalls> calls, std::chrono::milliseconds interval)
    : m_calls(std::move(calls))
    , m_inotify(m_calls->start())
{
    m_settled.setSingleShot(true);
    m_settled.setInterval(settlingTime);
    m_overdue.setSingleShot(true);
    m_overdue.setInterval(longestDelay);
    m_looking.setInterval(interval);
    connect(&m_settled, &QTimer::timeout, this, &FolderWatcher::report);
    connect(&m_overdue, &QTimer::timeout, this, &FolderWatcher::report);
    connect(&m_looking, &QTimer::timeout, this, &FolderWatcher::changesLost);
    if (m_inotify < 0) {
        lookFromNowOn();
        return;
    }
    m_notifier = new QSocketNotifier(m_inotify, QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &FolderWatcher::readEvents);
}

FolderWatcher::~FolderWatcher()
{
    delete m_notifier; // before its file is closed
    if (m_inotify >= 0)
        ::close(m_inotify);
}

bool FolderWatcher::watch(const QString &folder)
{
    if (m_inotify < 0)
        return true; // looked at again and again
    const int descriptor = m_calls->watch(m_inotify, QFile::encodeName(folder).constData(), watchedEvents);
    if (descriptor < 0) {
        const int reason = errno;
        unwatch(folder);
        if (reason == ENOENT || reason == ENOTDIR || reason == ELOOP || reason == EACCES)
            return false;
        lookFromNowOn();
        return true;
    }
    if (m_descriptorsByPath.value(folder, descriptor) != descriptor)
        unwatch(folder);
    m_descriptorsByPath.insert(folder, descriptor);
    m_pathsByDescriptor[descriptor].insert(folder);
    return true;
}

void FolderWatcher::unwatch(const QString &folder)
{
    const auto known = m_descriptorsByPath.constFind(folder);
    if (known == m_descriptorsByPath.cend())
        return;
    const int descriptor = *known;
    m_descriptorsByPath.erase(known);
    const auto paths = m_pathsByDescriptor.find(descriptor);
    if (paths == m_pathsByDescriptor.end())
        return;
    paths->remove(folder);
    if (paths->isEmpty()) {
        m_pathsByDescriptor.erase(paths);
        ::inotify_rm_watch(m_inotify, descriptor);
    }
}

void FolderWatcher::readEvents()
{
    // Some hundreds of events at a time. While there are more, the next turn of the event loop comes
    // here again: whoever writes without end must not hold up everything else.
    alignas(inotify_event) std::array<char, 16384> buffer {};
    const ssize_t length = ::read(m_inotify, buffer.data(), buffer.size());
    for (ssize_t at = 0; at < length;) {
        inotify_event event {};
        std::memcpy(&event, buffer.data() + at, sizeof(event));
        const char *name = buffer.data() + at + sizeof(event);
        handleEvent(event.wd, event.mask, event.len > 0 ? QFile::decodeName(name) : QString());
        at += static_cast<ssize_t>(sizeof(event) + event.len);
    }
}

void FolderWatcher::handleEvent(int descriptor, quint32 mask, const QString &name)
{
    if (mask & IN_Q_OVERFLOW) {
        m_isLossy = true;
        schedule();
        return;
    }
    const QSet<QString> paths = m_pathsByDescriptor.value(descriptor);
    for (const QString &path : paths) {
        if (mask & endingEvents) {
            m_gone.insert(path);
            m_descriptorsByPath.remove(path);
        } else {
            // A change of the folder itself (its permissions) has no name.
            m_changed[path].insert(name);
        }
    }
    if (mask & endingEvents) {
        m_pathsByDescriptor.remove(descriptor);
        if (!(mask & IN_IGNORED) && !paths.isEmpty())
            ::inotify_rm_watch(m_inotify, descriptor);
    }
    if (!paths.isEmpty())
        schedule();
}

void FolderWatcher::schedule()
{
    m_settled.start();
    if (!m_overdue.isActive())
        m_overdue.start();
}

void FolderWatcher::report()
{
    m_settled.stop();
    m_overdue.stop();
    const auto changed = std::exchange(m_changed, {});
    const auto gone = std::exchange(m_gone, {});
    const bool isLossy = std::exchange(m_isLossy, false);
    for (const QString &folder : gone)
        Q_EMIT folderWent(folder);
    if (isLossy)
        Q_EMIT changesLost();
    else if (!changed.isEmpty())
        Q_EMIT namesChanged(changed);
}

void FolderWatcher::lookFromNowOn()
{
    if (m_looking.isActive())
        return;
    qCWarning(Items::storeLog) << "Folders cannot all be watched; changes are looked for every few seconds.";
    m_looking.start();
}

} // namespace FolderStore
