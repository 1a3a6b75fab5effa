// SPDX-License-Identifier: MIT
#include "StatusIconHosts.h"

#include "TrayOwnerWatcher.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

namespace
{

const QString watcherService = u"org.kde.StatusNotifierWatcher"_s;
const QString watcherPath = u"/StatusNotifierWatcher"_s;
const QString watcherInterface = u"org.kde.StatusNotifierWatcher"_s;

} // namespace

StatusIconHosts::StatusIconHosts(const QDBusConnection &bus, const QByteArray &xDisplay, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
{
    if (!xDisplay.isEmpty()) {
        m_tray = std::make_unique<TrayOwnerWatcher>(xDisplay);
        connect(m_tray.get(), &TrayOwnerWatcher::hasOwnerDidChange, this, &StatusIconHosts::announce);
    }
    if (m_bus.isConnected()) {
        auto *watcher = new QDBusServiceWatcher(watcherService, m_bus,
            QDBusServiceWatcher::WatchForRegistration | QDBusServiceWatcher::WatchForUnregistration, this);
        connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, &StatusIconHosts::askWatcher);
        connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, &StatusIconHosts::watcherIsGone);
        for (const QString &signal : { u"StatusNotifierHostRegistered"_s, u"StatusNotifierHostUnregistered"_s })
            m_bus.connect(watcherService, watcherPath, watcherInterface, signal, this, SLOT(askWatcher()));
        askWatcher();
    }
    m_announced = hasHost();
}

StatusIconHosts::~StatusIconHosts() = default;

bool StatusIconHosts::hasTray() const
{
    return m_tray && m_tray->hasOwner();
}

void StatusIconHosts::askWatcher()
{
    QDBusMessage question
        = QDBusMessage::createMethodCall(watcherService, watcherPath, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    question << watcherInterface << u"IsStatusNotifierHostRegistered"_s;
    // A watcher that nobody runs is not to be started by the question.
    question.setAutoStartService(false);
    auto *answer = new QDBusPendingCallWatcher(m_bus.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        setHasNotifierHost(!reply.isError() && reply.value().variant().toBool());
    });
}

void StatusIconHosts::watcherIsGone()
{
    setHasNotifierHost(false);
}

void StatusIconHosts::setHasNotifierHost(bool hasHost)
{
    m_hasNotifierHost = hasHost;
    announce();
}

void StatusIconHosts::announce()
{
    if (hasHost() == m_announced)
        return;
    m_announced = hasHost();
    Q_EMIT hasHostDidChange();
}
