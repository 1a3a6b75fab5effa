// SPDX-License-Identifier: MIT
#include "FirstFrame.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGenericPlugin>
#include <QTimer>

#include <cstdio>

FirstFrame::FirstFrame(std::chrono::nanoseconds startedAt)
    : m_startedAt(startedAt)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool FirstFrame::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint && !m_hasPainted) {
        m_hasPainted = true;
        // All widgets of the frame are painted, and the frame is handed to the
        // server, before the event loop turns again.
        QTimer::singleShot(0, this, &FirstFrame::report);
    }
    return QObject::eventFilter(watched, event);
}

void FirstFrame::report()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    const std::chrono::duration<double, std::milli> taken = now - m_startedAt;
    std::printf("%.3f\n", taken.count());
    std::fflush(stdout);
    QCoreApplication::quit();
}

class FirstFramePlugin final : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "FirstFrame.json")

public:
    QObject *create(const QString &, const QString &) override
    {
        const qint64 startedAt = qEnvironmentVariable("VANTLE_STARTED_AT").toLongLong();
        return new FirstFrame(std::chrono::nanoseconds(startedAt)); // Qt owns it
    }
};

#include "FirstFrame.moc"
