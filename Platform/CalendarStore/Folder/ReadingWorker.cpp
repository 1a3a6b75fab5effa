// SPDX-License-Identifier: MIT
#include "ReadingWorker.h"

#include "Limits.h"

#include <ZoneRegistry.h>

#include <QElapsedTimer>

#include <iterator>

using namespace Qt::StringLiterals;

namespace FolderStore
{

namespace
{

// So few that the answers to the first ones do not wait for the last.
constexpr qsizetype filesPerPart = 100;

} // namespace

ReadingAnswer carryOut(const ReadingOrder &order, ICalendar::ZoneRegistry &zones)
{
    const auto content = readRegularFile(order.path, Limits::itemFileBytes);
    if (!content)
        return { order, nullptr, content.error() };
    if (!order.knownHash.isEmpty() && Items::ItemSet::versionOf(content.value().bytes) == order.knownHash
        && content.value().linkTarget == order.knownLinkTarget)
        return { order, nullptr, std::nullopt };
    return { order, std::make_shared<const FileSnapshot>(order.fileName, content.value(), zones), std::nullopt };
}

ReadingWorker::ReadingWorker(QObject *parent)
    : QObject(parent)
    , m_inside(new QObject) // NOLINT(cppcoreguidelines-owning-memory): deleted when its thread ends
    , m_zones(std::make_unique<ICalendar::ZoneRegistry>())
{
    m_nextTurn.setSingleShot(true);
    m_nextTurn.setInterval(0);
    connect(&m_nextTurn, &QTimer::timeout, this, &ReadingWorker::handOver);
    m_thread.setObjectName(u"vantle-reading"_s);
    m_inside->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, m_inside, &QObject::deleteLater);
    m_thread.start(QThread::LowPriority);
}

ReadingWorker::~ReadingWorker()
{
    m_isEnding = true;
    m_thread.quit();
    m_thread.wait();
}

void ReadingWorker::read(const QList<ReadingOrder> &orders)
{
    for (qsizetype at = 0; at < orders.size(); at += filesPerPart) {
        const QList<ReadingOrder> part = orders.mid(at, filesPerPart);
        QMetaObject::invokeMethod(
            m_inside,
            [this, part] {
                std::vector<std::function<void()>> announcements;
                for (const ReadingOrder &order : part) {
                    if (m_isEnding)
                        return;
                    announcements.emplace_back([this, answer = carryOut(order, *m_zones)] { Q_EMIT haveRead(answer); });
                }
                hand(std::move(announcements));
            },
            Qt::QueuedConnection);
    }
}

void ReadingWorker::lookThrough(
    const QString &collection, const QString &folder, const QHash<QString, FileSnapshotPtr> &known)
{
    QMetaObject::invokeMethod(
        m_inside,
        [this, collection, folder, known] {
            if (m_isEnding)
                return;
            hand({ [this, collection, differences = differencesIn(folder, known)] {
                Q_EMIT haveLookedThrough(collection, differences);
            } });
        },
        Qt::QueuedConnection);
}

void ReadingWorker::hand(std::vector<std::function<void()>> announcements)
{
    QMetaObject::invokeMethod(
        this,
        [this, made = std::move(announcements)]() mutable {
            std::ranges::move(made, std::back_inserter(m_announcements));
            m_nextTurn.start();
        },
        Qt::QueuedConnection);
}

void ReadingWorker::handOver()
{
    QElapsedTimer turn;
    turn.start();
    while (!m_announcements.empty() && turn.elapsed() < longestTurn.count()) {
        const std::function<void()> announce = std::move(m_announcements.front());
        m_announcements.pop_front();
        announce();
    }
    if (!m_announcements.empty())
        m_nextTurn.start();
}

} // namespace FolderStore
