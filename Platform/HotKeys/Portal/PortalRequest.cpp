// SPDX-License-Identifier: MIT
#include "PortalRequest.h"

#include "PortalTypes.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

using namespace Qt::StringLiterals;

namespace
{

// Answers are signals of an object whose path the asker chooses.
QString requestPath(const QDBusConnection &bus, const QString &token)
{
    QString sender = bus.baseService().mid(1);
    sender.replace(u'.', u'_');
    return Portal::path() + "/request/"_L1 + sender + u'/' + token;
}

QString newToken()
{
    static quint64 count = 0;
    return u"vantle"_s + QString::number(++count);
}

} // namespace

PortalRequest::PortalRequest(const QDBusConnection &bus, const QString &method, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
    , m_method(method)
    , m_token(newToken())
{
}

PortalRequest::~PortalRequest()
{
    if (m_state != State::Waiting)
        return;
    auto call = QDBusMessage::createMethodCall(
        Portal::service(), requestPath(m_bus, m_token), Portal::requestInterface(), u"Close"_s);
    call.setAutoStartService(false);
    m_bus.asyncCall(call);
}

void PortalRequest::send(const QVariantList &arguments, QVariantMap options)
{
    // Listening comes first: the answer may be quicker than the reply to the call.
    const bool isListening = m_bus.connect(Portal::service(), requestPath(m_bus, m_token), Portal::requestInterface(),
        u"Response"_s, this, SLOT(takeResponse(QDBusMessage)));
    if (!isListening) {
        m_state = State::Done;
        QMetaObject::invokeMethod(
            this, [this] { Q_EMIT failed(m_bus.lastError()); }, Qt::QueuedConnection);
        return;
    }

    m_state = State::Waiting;
    options.insert(u"handle_token"_s, m_token);
    QDBusMessage call = QDBusMessage::createMethodCall(
        Portal::service(), Portal::path(), Portal::globalShortcutsInterface(), m_method);
    call.setArguments(arguments + QVariantList { options });
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        if (!watcher->isError() || m_state != State::Waiting)
            return;
        m_state = State::Done;
        Q_EMIT failed(watcher->error());
    });
}

void PortalRequest::takeResponse(const QDBusMessage &message)
{
    if (m_state != State::Waiting)
        return;
    m_state = State::Done;
    const QVariantList arguments = message.arguments();
    if (arguments.size() < 2) {
        Q_EMIT failed(QDBusError(QDBusError::InvalidArgs, u"The portal's answer has another form."_s));
        return;
    }
    Q_EMIT answered(arguments.at(0).toUInt(), qdbus_cast<QVariantMap>(arguments.at(1)));
}
