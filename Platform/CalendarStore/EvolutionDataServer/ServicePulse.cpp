// SPDX-License-Identifier: MIT
#include "ServicePulse.h"

#include <QPointer>

namespace Service
{

namespace
{

struct Question {
    QPointer<ServicePulse> asker;
    QString name;
};

} // namespace

ServicePulse::ServicePulse(std::function<QSet<QString>()> names, QObject *parent)
    : QObject(parent)
    , m_names(std::move(names))
    , m_cancellable(g_cancellable_new())
{
    m_timer.setTimerType(Qt::VeryCoarseTimer);
    connect(&m_timer, &QTimer::timeout, this, &ServicePulse::ask);
    m_timer.start(interval);
}

ServicePulse::~ServicePulse()
{
    g_cancellable_cancel(m_cancellable.get());
}

void ServicePulse::ask()
{
    const QSet<QString> names = m_names();
    if (names.isEmpty())
        return;
    if (!m_bus) {
        // The library of the sources has connected long ago: this is the same connection, and waits for nothing.
        m_bus.reset(g_bus_get_sync(G_BUS_TYPE_SESSION, m_cancellable.get(), nullptr));
        if (!m_bus)
            return;
    }
    for (const QString &name : names) {
        if (m_asked.contains(name))
            continue;
        m_asked.insert(name);
        g_dbus_connection_call(
            m_bus.get(), name.toUtf8().constData(), "/", "org.freedesktop.DBus.Peer", "Ping", nullptr, nullptr,
            G_DBUS_CALL_FLAGS_NO_AUTO_START, static_cast<int>(std::chrono::milliseconds(patience).count()),
            m_cancellable.get(),
            [](GObject *bus, GAsyncResult *result, gpointer data) {
                const std::unique_ptr<Question> question(static_cast<Question *>(data));
                Failure failure;
                GVariant *const answer = g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, failure);
                if (answer)
                    g_variant_unref(answer);
                if (!question->asker)
                    return;
                question->asker->m_asked.remove(question->name);
                if (answer)
                    Q_EMIT question->asker->answered(question->name);
                // One that is gone is told by its end.
                else if (failure.is(G_IO_ERROR, G_IO_ERROR_TIMED_OUT)
                    || failure.is(G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY))
                    Q_EMIT question->asker->unanswered(question->name);
            },
            new Question { this, name });
    }
}

} // namespace Service
