// SPDX-License-Identifier: MIT
#pragma once

#include "FileSnapshot.h"

#include <QList>
#include <QObject>
#include <QThread>

#include <atomic>
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
};

struct ReadingAnswer {
    ReadingOrder order;
    FileSnapshotPtr snapshot; // null when there was nothing to read, or nothing new
    std::optional<FileFault> fault;
};

// Reads one file to what is kept of it.
ReadingAnswer carryOut(const ReadingOrder &order, ICalendar::ZoneRegistry &zones);

// Reads files on a thread of its own. Values go in, and come back as signals to
// the thread of this object; nothing is shared.
class ReadingWorker final : public QObject
{
    Q_OBJECT

public:
    explicit ReadingWorker(QObject *parent = nullptr);
    // Waits for the file that is being read; the others are left.
    ~ReadingWorker() override;

    void read(const QList<ReadingOrder> &orders);

Q_SIGNALS:
    void haveRead(const QList<FolderStore::ReadingAnswer> &answers);

private:
    QThread m_thread;
    QObject *m_inside; // lives on the thread
    std::atomic<bool> m_isEnding = false;
    std::unique_ptr<ICalendar::ZoneRegistry> m_zones; // used on the thread alone
};

} // namespace FolderStore

Q_DECLARE_METATYPE(FolderStore::ReadingAnswer)
