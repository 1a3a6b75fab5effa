// SPDX-License-Identifier: MIT
#include "ReadingWorker.h"

#include "Limits.h"

#include <ZoneRegistry.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace FolderStore
{

namespace
{

// So few that taking in their answers holds nobody up.
constexpr qsizetype filesPerAnswer = 100;

} // namespace

ReadingAnswer carryOut(const ReadingOrder &order, ICalendar::ZoneRegistry &zones)
{
    const auto content = readRegularFile(order.path, Limits::itemFileBytes);
    if (!content)
        return { order, nullptr, content.error() };
    if (!order.knownHash.isEmpty() && hashOf(content.value().bytes) == order.knownHash)
        return { order, nullptr, std::nullopt };
    return { order, std::make_shared<const FileSnapshot>(order.fileName, content.value(), zones), std::nullopt };
}

ReadingWorker::ReadingWorker(QObject *parent)
    : QObject(parent)
    , m_inside(new QObject) // NOLINT(cppcoreguidelines-owning-memory): deleted when its thread ends
    , m_zones(std::make_unique<ICalendar::ZoneRegistry>())
{
    qRegisterMetaType<QList<ReadingAnswer>>();
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
    for (qsizetype at = 0; at < orders.size(); at += filesPerAnswer) {
        const QList<ReadingOrder> part = orders.mid(at, filesPerAnswer);
        QMetaObject::invokeMethod(
            m_inside,
            [this, part] {
                QList<ReadingAnswer> answers;
                for (const ReadingOrder &order : part) {
                    if (m_isEnding)
                        return;
                    answers << carryOut(order, *m_zones);
                }
                Q_EMIT haveRead(answers);
            },
            Qt::QueuedConnection);
    }
}

} // namespace FolderStore
