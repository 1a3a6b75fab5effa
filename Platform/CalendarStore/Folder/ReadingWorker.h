// SPDX-License-Identifier: MIT
#pragma once

#include "FileSnapshot.h"
#include "FolderScanner.h"

#include <QList>
#include <QObject>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <optional>

namespace FolderStore
{

// One file to read. The ticket comes back with the answer, so that an answer
// that was overtaken by a later order can be told.
struct ReadingOrder {
    quint64 ticket = 0;
    QString collection; // its uid
    QString fileName;
    QString path;
    QByteArray knownHash; // of the bytes that are known already; empty when none are
    QString knownLinkTarget;
};

struct ReadingAnswer {
    ReadingOrder order;
    FileSnapshotPtr snapshot; // null when there was nothing to read, or nothing new
    std::optional<FileFault> fault;
};

// Reads one file to what is kept of it.
ReadingAnswer carryOut(const ReadingOrder &order, ICalendar::ZoneRegistry &zones);

// Reads files and looks through folders on a thread of its own. Values go in, and
// come back as signals to the thread of this object; nothing is shared.
//
// However fast the answers come in, they are handed over for a few milliseconds in
// a turn of the event loop, so that whatever else happens in the window has its turn.
class ReadingWorker final : public QObject
{
    Q_OBJECT

public:
    explicit ReadingWorker(QObject *parent = nullptr);
    // Waits for the file that is being read; the others are left.
    ~ReadingWorker() override;

    void read(const QList<ReadingOrder> &orders);
    // `known` is compared with what lies in the folder of the calendar with that uid.
    void lookThrough(const QString &collection, const QString &folder, const QHash<QString, FileSnapshotPtr> &known);

    static constexpr std::chrono::milliseconds longestTurn { 5 };

Q_SIGNALS:
    void haveRead(const FolderStore::ReadingAnswer &answer);
    void haveLookedThrough(const QString &collection, const FolderStore::FolderDifferences &differences);

private:
    // Called on the thread.
    void hand(std::vector<std::function<void()>> announcements);
    // Called where this object lives.
    void handOver();

    QThread m_thread;
    QObject *m_inside; // lives on the thread
    std::atomic<bool> m_isEnding = false;
    std::unique_ptr<ICalendar::ZoneRegistry> m_zones; // used on the thread alone
    std::deque<std::function<void()>> m_announcements; // not yet made; never touched on the thread
    QTimer m_nextTurn;
};

} // namespace FolderStore
