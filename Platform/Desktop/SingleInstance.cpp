// SPDX-License-Identifier: MIT
#include "SingleInstance.h"

#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusMessage>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

constexpr std::chrono::milliseconds answerLimit = 5s;
constexpr int mostAttempts = 3; // one that is just ending gives the name away

const QString applicationInterface = u"org.freedesktop.Application"_s;
const QString startupIdKey = u"desktop-startup-id"_s;
const QString waylandTokenKey = u"activation-token"_s;

ActivationToken tokenOf(const QVariantMap &platformData)
{
    const QByteArray startupId = platformData.value(startupIdKey).toString().toUtf8();
    return { ActivationToken::userTimeOf(startupId), startupId,
        platformData.value(waylandTokenKey).toString().toUtf8() };
}

QVariantMap platformDataOf(const ActivationToken &token)
{
    QVariantMap data;
    if (!token.startupId.isEmpty())
        data.insert(startupIdKey, QString::fromUtf8(token.startupId));
    if (!token.waylandToken.isEmpty())
        data.insert(waylandTokenKey, QString::fromUtf8(token.waylandToken));
    return data;
}

} // namespace

SingleInstance::SingleInstance(const QDBusConnection &bus, QObject *parent)
    : LauncherRequests(parent)
    , m_bus(bus)
    , m_isStarting(qEnvironmentVariableIsSet("DBUS_STARTER_ADDRESS"))
{
    new FreedesktopApplicationAdaptor(this);
}

SingleInstance::~SingleInstance()
{
    if (!m_isOwner)
        return;
    m_bus.unregisterObject(objectPath());
    m_bus.unregisterService(serviceName());
}

QString SingleInstance::serviceName()
{
    return u"org.vantle.Vantle"_s;
}

QString SingleInstance::objectPath()
{
    return u"/org/vantle/Vantle"_s;
}

SingleInstance::Start SingleInstance::begin(const ActivationToken &token)
{
    if (!m_bus.isConnected())
        return Start::Alone;
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        if (claim())
            return Start::First;
        QDBusMessage call
            = QDBusMessage::createMethodCall(serviceName(), objectPath(), applicationInterface, u"Activate"_s);
        call << platformDataOf(token);
        call.setAutoStartService(false);
        const QDBusMessage answer = m_bus.call(call, QDBus::Block, static_cast<int>(answerLimit.count()));
        if (answer.type() == QDBusMessage::ReplyMessage)
            return Start::Further;
        if (QDBusError(answer).type() == QDBusError::NoReply && m_bus.interface()->isServiceRegistered(serviceName()))
            return Start::Unanswered;
    }
    return Start::Unanswered;
}

bool SingleInstance::claim()
{
    // Whoever sees the name can call at once.
    m_bus.registerObject(objectPath(), this, QDBusConnection::ExportAdaptors);
    const auto reply = m_bus.interface()->registerService(serviceName());
    m_isOwner = reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered;
    if (!m_isOwner)
        m_bus.unregisterObject(objectPath());
    return m_isOwner;
}

void SingleInstance::tellLater(std::function<void()> tell)
{
    QMetaObject::invokeMethod(
        this,
        [this, tell = std::move(tell)] {
            tell();
            m_isStarting = false;
        },
        Qt::QueuedConnection);
}

FreedesktopApplicationAdaptor::FreedesktopApplicationAdaptor(SingleInstance *instance)
    : QDBusAbstractAdaptor(instance)
    , m_instance(*instance)
{
}

void FreedesktopApplicationAdaptor::Activate(const QVariantMap &platformData)
{
    m_instance.tellLater([this, token = tokenOf(platformData)] { Q_EMIT m_instance.activationRequested(token); });
}

void FreedesktopApplicationAdaptor::Open(const QStringList &uris, const QVariantMap &platformData)
{
    m_instance.tellLater([this, uris, token = tokenOf(platformData)] { Q_EMIT m_instance.openRequested(uris, token); });
}

void FreedesktopApplicationAdaptor::ActivateAction(
    const QString &name, const QVariantList & /*parameters*/, const QVariantMap &platformData)
{
    m_instance.tellLater(
        [this, name, token = tokenOf(platformData)] { Q_EMIT m_instance.actionRequested(name, token); });
}
