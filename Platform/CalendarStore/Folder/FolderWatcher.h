// SPDX-License-Identifier: MIT
#pragma once

#include "WatchCalls.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QString>
#include <QTimer>

#include <chrono>
#include <memory>

class QSocketNotifier;

namespace FolderStore
{

// Tells which names changed in the folders that it watches, whoever changed them
// and in whichever way: written in place, renamed over, removed, made.
//
// Reports come some time after a change, those of a burst together; but a burst
// without end is reported again and again. Where a folder cannot be watched, its
// changes are looked for every few seconds instead: then everything is reported as lost.
class FolderWatcher final : public QObject
{
    Q_OBJECT

public:
    // The calls are the system's, and the interval the usual one, but for tests.
    explicit FolderWatcher(std::unique_ptr<WatchCalls> calls = std::make_unique<WatchCalls>(),
        std::chrono::milliseconds interval = lookingInterval);
    ~FolderWatcher() override;

    // Watches the folder that the path leads to, links followed. Watching a path again finds the
    // folder that is there by then. False when there is none.
    bool watch(const QString &folder);
    void unwatch(const QString &folder);

    static constexpr std::chrono::milliseconds settlingTime { 100 };
    static constexpr std::chrono::milliseconds longestDelay { 300 };
    static constexpr std::chrono::milliseconds lookingInterval { 5000 };

Q_SIGNALS:
    // By the path that was given to watch().
    void namesChanged(const QHash<QString, QSet<QString>> &namesByFolder);
    // The folder itself was moved, removed or unmounted.
    void folderWent(const QString &folder);
    // Changes may have gone unseen: everything must be looked through.
    void changesLost();

private:
    void readEvents();
    void handleEvent(int descriptor, quint32 mask, const QString &name);
    void schedule();
    void report();
    void lookFromNowOn();

    std::unique_ptr<WatchCalls> m_calls;
    int m_inotify = -1;
    QSocketNotifier *m_notifier = nullptr;
    QHash<int, QSet<QString>> m_pathsByDescriptor; // several paths may lead to one folder
    QHash<QString, int> m_descriptorsByPath;
    QHash<QString, QSet<QString>> m_changed;
    QSet<QString> m_gone;
    bool m_isLossy = false;
    QTimer m_settled;
    QTimer m_overdue;
    QTimer m_looking;
};

} // namespace FolderStore
