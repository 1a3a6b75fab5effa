// SPDX-License-Identifier: MIT
#pragma once

#include "ChangeAnnouncer.h"
#include "Collection.h"
#include "FolderCalendarStore.h"
#include "FolderWatcher.h"
#include "ProblemLog.h"
#include "ReadingWorker.h"

#include <ZoneRegistry.h>

#include <QElapsedTimer>
#include <QObject>
#include <QSet>

#include <memory>
#include <optional>
#include <vector>

namespace FolderStore
{

// Keeps what is known of the collections equal to what lies in the folder: reads
// all of it at first, then whatever the watcher reports. Small work is done at
// once, the rest goes to the worker. Says what has changed, never what has not:
// a file whose bytes are as before is silent.
class FolderSynchronizer final : public QObject
{
    Q_OBJECT

public:
    explicit FolderSynchronizer(FolderCalendarStore::Options options, QObject *parent = nullptr);
    ~FolderSynchronizer() override;

    void open();

    // In the order in which they are shown.
    const std::vector<std::unique_ptr<Collection>> &collections() const { return m_collections; }
    Collection *collection(const QString &uid) const;
    bool isComplete() const { return m_firstReading.isEmpty(); }

    ProblemLog &log() { return m_log; }
    ICalendar::ZoneRegistry &zones() { return m_zones; }

    // Takes in what this process itself has written.
    void takeOwn(Collection &collection, const FileSnapshotPtr &snapshot);
    // A file turned out to be another one than was known.
    void readAgain(Collection &collection, const QString &fileName);

Q_SIGNALS:
    void changed(const CalBackendChange &change);
    void loaded();

private:
    // How much may be read before the rest goes to the worker; absent for all of it.
    using Budget = std::optional<std::chrono::milliseconds>;

    void watchRoot();
    void watchPlace(const FoundCollection &place);
    void unwatchPlace(const FoundCollection &place);
    void lookThroughEverything();
    void lookThroughRoot();
    void lookThroughFiles(Collection &collection);
    void updateDescription(Collection &collection);
    void updatePlace(Collection &collection, const FoundCollection &found);
    void remove(const QString &uid);
    void sortCollections();

    void namesChanged(const QHash<QString, QSet<QString>> &namesByFolder);
    void namesChangedIn(Collection &collection, const QSet<QString> &names);

    void order(const Collection &collection, const QString &fileName);
    void carryOutOrders(Budget budget);
    void take(const ReadingAnswer &answer);
    void takeSnapshot(Collection &collection, const FileSnapshotPtr &snapshot, CalBackendChange::Author author);
    bool isAwaited(const Collection &collection, const FileSnapshotPtr &snapshot);
    void dropFile(Collection &collection, const QString &fileName);
    void noteProblems(const QString &path, const FileSnapshot &snapshot);
    void announce(const Collection &collection, bool calendars, const FileSnapshot *before, const FileSnapshot *after,
        CalBackendChange::Author author = CalBackendChange::Author::Others);

    FolderCalendarStore::Options m_options;
    ProblemLog m_log;
    ICalendar::ZoneRegistry m_zones;
    std::vector<std::unique_ptr<Collection>> m_collections;
    ChangeAnnouncer m_announcer;
    std::unique_ptr<FolderWatcher> m_watcher;
    std::unique_ptr<ReadingWorker> m_worker;
    QString m_watchedAncestor; // while the root is not there
    QList<ReadingOrder> m_orders; // not yet carried out
    quint64 m_lastTicket = 0;
    QHash<QString, quint64> m_latestTickets; // by path
    QSet<quint64> m_firstReading; // tickets of the first reading that are still out
    QHash<QString, int> m_waits; // by path: how often an unfinished file was left to settle
    bool m_isOpening = false;
};

} // namespace FolderStore
