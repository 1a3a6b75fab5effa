// SPDX-License-Identifier: MIT
#include "PortalSession.h"

#include "PortalRequest.h"

#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

PortalSession::Failure failureOf(const QDBusError &error)
{
    switch (error.type()) {
    case QDBusError::ServiceUnknown:
    case QDBusError::UnknownInterface:
    case QDBusError::UnknownMethod:
    case QDBusError::UnknownObject:
    case QDBusError::NotSupported:
        return PortalSession::Failure::NotOffered;
    default:
        return PortalSession::Failure::NotOpened;
    }
}

// Some desktops send the path as a text.
QString objectPath(const QVariant &value)
{
    const auto path = value.value<QDBusObjectPath>().path();
    return path.isEmpty() ? value.toString() : path;
}

PortalShortcutList listedShortcuts(const QVariantMap &results)
{
    return qdbus_cast<PortalShortcutList>(results.value(u"shortcuts"_s));
}

} // namespace

PortalSession::PortalSession(const QDBusConnection &bus, const PortalShortcutList &shortcuts, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
    , m_shortcuts(shortcuts)
{
    registerPortalTypes();
}

void PortalSession::open()
{
    PortalRequest *creation = request(u"CreateSession"_s, Failure::NotOpened);
    connect(creation, &PortalRequest::answered, this, [this](quint32 code, const QVariantMap &results) {
        if (code == PortalResponse::success)
            bind(results);
    });
    // The same in every run: desktops keep what the person chose under this name.
    creation->send({}, { { u"session_handle_token"_s, u"vantle"_s } });
}

void PortalSession::verify()
{
    PortalRequest *question = request(u"ListShortcuts"_s, Failure::Ended);
    connect(question, &PortalRequest::answered, this, [this](quint32 code, const QVariantMap &results) {
        if (code != PortalResponse::success)
            return;
        if (knowsAll(results))
            takeShortcuts(results);
        else
            fail(Failure::Ended);
    });
    question->send({ QVariant::fromValue(QDBusObjectPath(m_handle)) });
}

void PortalSession::close()
{
    m_isOver = true;
    qDeleteAll(findChildren<PortalRequest *>());
    if (m_handle.isEmpty()) {
        QMetaObject::invokeMethod(this, &PortalSession::gone, Qt::QueuedConnection);
        return;
    }
    auto call = QDBusMessage::createMethodCall(Portal::service(), m_handle, Portal::sessionInterface(), u"Close"_s);
    call.setAutoStartService(false);
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, &PortalSession::gone);
}

void PortalSession::takeActivated(const QDBusMessage &message)
{
    if (concernsUs(message))
        Q_EMIT activated(message.arguments().value(1).toString(),
            qdbus_cast<QVariantMap>(message.arguments().value(3)).value(u"activation_token"_s).toByteArray());
}

void PortalSession::takeDeactivated(const QDBusMessage &message)
{
    if (concernsUs(message))
        Q_EMIT deactivated(message.arguments().value(1).toString());
}

void PortalSession::takeShortcutsChanged(const QDBusMessage &message)
{
    if (concernsUs(message))
        Q_EMIT shortcutsChanged(qdbus_cast<PortalShortcutList>(message.arguments().value(1)));
}

void PortalSession::takeClosed()
{
    m_handle.clear();
    fail(Failure::Ended);
}

// Slots with the signals' own types are refused by QtDBus; those that take the message are not.
bool PortalSession::listen()
{
    const auto hears = [this](const QString &signal, const char *slot) {
        return m_bus.connect(Portal::service(), Portal::path(), Portal::globalShortcutsInterface(), signal, this, slot);
    };
    return hears(u"Activated"_s, SLOT(takeActivated(QDBusMessage)))
        && hears(u"Deactivated"_s, SLOT(takeDeactivated(QDBusMessage)))
        && hears(u"ShortcutsChanged"_s, SLOT(takeShortcutsChanged(QDBusMessage)))
        && m_bus.connect(
            Portal::service(), m_handle, Portal::sessionInterface(), u"Closed"_s, this, SLOT(takeClosed()));
}

void PortalSession::bind(const QVariantMap &created)
{
    m_handle = objectPath(created.value(u"session_handle"_s));
    if (m_handle.isEmpty() || !listen()) {
        fail(Failure::NotOpened);
        return;
    }
    PortalRequest *binding = request(u"BindShortcuts"_s, Failure::NotBound);
    connect(binding, &PortalRequest::answered, this, [this](quint32 code, const QVariantMap &results) {
        if (code == PortalResponse::success)
            takeShortcuts(results);
    });
    const QString noParentWindow = u""_s;
    binding->send({ QVariant::fromValue(QDBusObjectPath(m_handle)), QVariant::fromValue(m_shortcuts), noParentWindow });
}

void PortalSession::takeShortcuts(const QVariantMap &results)
{
    // A desktop that does not tell has agreed to everything.
    m_granted = results.contains(u"shortcuts"_s) ? listedShortcuts(results) : m_shortcuts;
    m_isBound = true;
    Q_EMIT bound(m_granted);
}

// A back end that was started anew has an empty list, or none for this session.
bool PortalSession::knowsAll(const QVariantMap &results) const
{
    const PortalShortcutList known = listedShortcuts(results);
    return std::ranges::all_of(m_granted, [&known](const PortalShortcut &shortcut) {
        return std::ranges::find(known, shortcut.id, &PortalShortcut::id) != known.end();
    });
}

void PortalSession::fail(Failure failure)
{
    if (m_isOver)
        return;
    m_isOver = true;
    m_isBound = false;
    Q_EMIT failed(failure);
}

// failure: what a refusing answer means.
PortalRequest *PortalSession::request(const QString &method, Failure failure)
{
    auto *question = new PortalRequest(m_bus, method, this);
    connect(question, &PortalRequest::failed, this, [this, question, failure](const QDBusError &error) {
        question->deleteLater();
        fail(failure == Failure::NotOpened ? failureOf(error) : failure);
    });
    connect(question, &PortalRequest::answered, this, [this, question, failure](quint32 code) {
        question->deleteLater();
        if (code == PortalResponse::cancelled && failure == Failure::NotBound)
            fail(Failure::Declined);
        else if (code != PortalResponse::success)
            fail(failure);
    });
    return question;
}

bool PortalSession::concernsUs(const QDBusMessage &message) const
{
    return !m_isOver && m_isBound && objectPath(message.arguments().value(0)) == m_handle;
}
