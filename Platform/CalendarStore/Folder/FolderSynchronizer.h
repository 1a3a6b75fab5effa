// SPDX-License-Identifier: MIT
#pragma once

#include "Collection.h"
#include "FolderCalendarStore.h"
#include "FolderWatcher.h"
#include "ReadingWorker.h"

#include <ChangeAnnouncer.h>
#include <ProblemLog.h>
#include <ZoneRegistry.h>

#include <QObject>
#include <QSet>
#include <QTimer>

#include <deque>
#include <memory>
#include <optional>
#include <vector>

namespace FolderStore
{

// Keeps what is known of the collections equal to what lies in the folder: reads
// all of it at first, then whatever the watcher reports. Small work is done at
// once, the rest goes to the worker; of either no more than some milliseconds in a
// turn of the event loop, however much changes. Says what has changed, never what
// has not: a file whose bytes are as before is silent.
class FolderSynchronizer final : public QObject
{
    Q_OBJECT

public:
    // `watching` is the system's, but for tests.
    explicit FolderSynchronizer(
        FolderCalendarStore::Options options, std::unique_ptr<FolderWatcher> watching = nullptr);
    ~FolderSynchronizer() override;

    void open();
    // "Home" and "Work", where the root is missing or holds nothing.
    void createDefaultCalendars();

    // In the order in which they are shown.
    const std::vector<std::unique_ptr<Collection>> &collections() const { return m_collections; }
    Collection *collection(const QString &uid) const;
    const QString &root() const { return m_options.root; }
    bool isComplete() const { return m_firstReading.isEmpty(); }

    Items::ProblemLog &log() { return m_log; }
    ICalendar::ZoneRegistry &zones() { return m_zones; }

    // Takes in what this process itself has written.
    void takeOwn(Collection &collection, const FileSnapshotPtr &snapshot);
    void dropOwn(Collection &collection, const QString &fileName);
    // A file turned out to be another one than was known.
    void readAgain(Collection &collection, const QString &fileName);

Q_SIGNALS:
    void changed(const CalBackendChange &change);
    void loaded();
    // Another program has written a file that was known, and what it wrote is known by now.
    void writtenByOthers(const QString &path);

private:
    struct FileKey {
        QString collection; // its uid
        QString fileName;

        bool operator==(const FileKey &) const = default;
        friend size_t qHash(const FileKey &key, size_t seed = 0)
        {
            return qHashMulti(seed, key.collection, key.fileName);
        }
    };
    // How much may be read before the rest goes to the worker; absent for all of it.
    using Budget = std::optional<std::chrono::milliseconds>;

    void watchRoot();
    void watchPlace(const FoundCollection &place);
    void unwatchPlace(const FoundCollection &place);
    void lookThroughEverything();
    void lookThroughRoot();
    void lookThroughFiles(Collection &collection);
    void takeDifferences(Collection &collection, const FolderDifferences &differences);
    void updateDescription(Collection &collection);
    void updatePlace(Collection &collection, const FoundCollection &found);
    void remove(const QString &uid);
    void sortCollections();

    void namesChanged(const QHash<QString, QSet<QString>> &namesByFolder);
    void namesChangedIn(Collection &collection, const QSet<QString> &names);
    void targetsChanged(const QHash<QString, QSet<QString>> &namesByFolder);
    void followLink(const Collection &collection, const FileSnapshot &snapshot);
    void suspect(const Collection &collection, const QString &fileName);
    void lookIntoSuspects();

    void order(const Collection &collection, const QString &fileName);
    void carryOutOrders(Budget budget);
    ReadingWorker &worker();
    void take(const ReadingAnswer &answer);
    void takeSnapshot(Collection &collection, const FileSnapshotPtr &snapshot, CalBackendChange::Author author);
    bool isAwaited(const Collection &collection, const FileSnapshotPtr &snapshot);
    void dropFile(Collection &collection, const QString &fileName,
        CalBackendChange::Author author = CalBackendChange::Author::Others);
    void noteProblems(const QString &path, const FileSnapshot &snapshot);
    void announce(const Collection &collection, bool calendars, const FileSnapshot *before, const FileSnapshot *after,
        CalBackendChange::Author author = CalBackendChange::Author::Others);

    FolderCalendarStore::Options m_options;
    Items::ProblemLog m_log;
    ICalendar::ZoneRegistry m_zones;
    std::vector<std::unique_ptr<Collection>> m_collections;
    Items::ChangeAnnouncer m_announcer;
    std::unique_ptr<FolderWatcher> m_watcher;
    std::unique_ptr<ReadingWorker> m_worker;
    QString m_watchedAncestor; // while the root is not there
    // Linked item files by what they lead to. One that is a link no more is only read once too often.
    QHash<QString, QHash<QString, QSet<FileKey>>> m_links; // by folder and name
    std::deque<FileKey> m_suspects; // files that may have changed, not yet looked into
    QTimer m_nextTurn; // runs while there are suspects
    QHash<QString, bool> m_lookingThrough; // by uid: whether to look once more after the look that is under way
    QList<ReadingOrder> m_orders; // not yet carried out
    quint64 m_lastTicket = 0;
    QHash<QString, quint64> m_latestTickets; // by path
    QSet<quint64> m_firstReading; // tickets of the first reading that are still out
    QHash<QString, int> m_waits; // by path: how often an unfinished file was left to settle
    bool m_isOpening = false;
};

} // namespace FolderStore
