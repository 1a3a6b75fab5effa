// SPDX-License-Identifier: MIT
#include "MockPortalBackEnd.h"

#include <algorithm>

using namespace Qt::StringLiterals;

QString MockPortalBackEnd::service()
{
    return u"org.freedesktop.impl.portal.desktop.mock"_s;
}

MockPortalBackEnd::MockPortalBackEnd(const QDBusConnection &bus)
    : m_bus(bus)
{
    registerPortalTypes();
    m_bus.registerObject(Portal::path(), this,
        QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals | QDBusConnection::ExportAllProperties);
    m_bus.registerService(service());
}

MockPortalBackEnd::~MockPortalBackEnd()
{
    m_bus.unregisterService(service());
    m_bus.unregisterObject(Portal::path());
}

void MockPortalBackEnd::answerHeldBinding()
{
    const QDBusMessage call = *std::exchange(m_heldBinding, std::nullopt);
    const QString handle = call.arguments().at(1).value<QDBusObjectPath>().path();
    QVariantMap results { { u"shortcuts"_s, QVariant::fromValue(grantedOf(*sessionWithHandle(handle))) } };
    m_bus.send(call.createReply(QVariantList { m_bindingAnswer, results }));
}

void MockPortalBackEnd::activate(const QString &shortcut)
{
    Q_EMIT Activated(lastHandle(), shortcut, 0, {});
}

void MockPortalBackEnd::deactivate(const QString &shortcut)
{
    Q_EMIT Deactivated(lastHandle(), shortcut, 0, {});
}

void MockPortalBackEnd::changeTrigger(const QString &shortcut, const QString &trigger)
{
    m_granted.insert(shortcut, trigger);
    Q_EMIT ShortcutsChanged(lastHandle(), grantedOf(m_sessions.last()));
}

void MockPortalBackEnd::endSession()
{
    m_sessions.last().isOpen = false;
    QMetaObject::invokeMethod(m_bus.objectRegisteredAt(m_sessions.last().handle), "Closed");
}

int MockPortalBackEnd::openSessions() const
{
    return static_cast<int>(std::ranges::count(m_sessions, true, &Session::isOpen));
}

QString MockPortalBackEnd::wishedTrigger(const QString &shortcut) const
{
    return wishedProperty(shortcut, u"preferred_trigger"_s);
}

QString MockPortalBackEnd::wishedDescription(const QString &shortcut) const
{
    return wishedProperty(shortcut, u"description"_s);
}

QString MockPortalBackEnd::shortcutWithTrigger(const QString &trigger) const
{
    if (m_sessions.isEmpty())
        return {};
    for (const PortalShortcut &shortcut : m_sessions.last().shortcuts) {
        if (shortcut.properties.value(u"preferred_trigger"_s) == trigger)
            return shortcut.id;
    }
    return {};
}

void MockPortalBackEnd::closeSession(const QString &handle)
{
    if (Session *session = sessionWithHandle(handle))
        session->isOpen = false;
}

uint MockPortalBackEnd::CreateSession(const QDBusObjectPath & /*handle*/, const QDBusObjectPath &session_handle,
    const QString & /*app_id*/, const QVariantMap & /*options*/, QVariantMap & /*results*/)
{
    if (m_sessionAnswer) {
        ++m_refusedSessions;
        return m_sessionAnswer;
    }
    m_sessions.append({ session_handle.path(), {} });
    auto *session = new MockPortalSession(*this, session_handle.path());
    session->setParent(this);
    m_bus.registerObject(session_handle.path(), session,
        QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals | QDBusConnection::ExportAllProperties);
    return 0;
}

uint MockPortalBackEnd::BindShortcuts(const QDBusObjectPath & /*handle*/, const QDBusObjectPath &session_handle,
    const PortalShortcutList &shortcuts, const QString & /*parent_window*/, const QVariantMap & /*options*/,
    QVariantMap &results)
{
    Session *session = sessionWithHandle(session_handle.path());
    if (!session)
        return 2;
    session->shortcuts = shortcuts;
    if (m_isHolding) {
        setDelayedReply(true);
        m_heldBinding = message();
        return 0;
    }
    if (m_bindingAnswer == 0)
        results.insert(u"shortcuts"_s, QVariant::fromValue(grantedOf(*session)));
    return m_bindingAnswer;
}

uint MockPortalBackEnd::ListShortcuts(
    const QDBusObjectPath & /*handle*/, const QDBusObjectPath &session_handle, QVariantMap &results)
{
    const Session *session = sessionWithHandle(session_handle.path());
    if (!session)
        return 2;
    results.insert(u"shortcuts"_s, QVariant::fromValue(grantedOf(*session)));
    return 0;
}

MockPortalBackEnd::Session *MockPortalBackEnd::sessionWithHandle(const QString &handle)
{
    // The latest: handles come again.
    const auto found = std::find_if(m_sessions.rbegin(), m_sessions.rend(),
        [&handle](const Session &session) { return session.handle == handle && session.isOpen; });
    return found == m_sessions.rend() ? nullptr : &*found;
}

PortalShortcutList MockPortalBackEnd::grantedOf(const Session &session) const
{
    PortalShortcutList granted;
    for (const PortalShortcut &wish : session.shortcuts) {
        if (m_refused.contains(wish.id))
            continue;
        const QString trigger = m_granted.value(wish.id, wish.properties.value(u"preferred_trigger"_s).toString());
        granted.append({ wish.id,
            { { u"description"_s, wish.properties.value(u"description"_s) }, { u"trigger_description"_s, trigger } } });
    }
    return granted;
}

QString MockPortalBackEnd::wishedProperty(const QString &shortcut, const QString &property) const
{
    if (m_sessions.isEmpty())
        return {};
    const PortalShortcutList &wishes = m_sessions.last().shortcuts;
    const auto wish = std::ranges::find(wishes, shortcut, &PortalShortcut::id);
    return wish == wishes.end() ? QString() : wish->properties.value(property).toString();
}

MockPortalSession::MockPortalSession(MockPortalBackEnd &backEnd, const QString &handle)
    : m_backEnd(backEnd)
    , m_handle(handle)
{
}

void MockPortalSession::Close()
{
    m_backEnd.closeSession(m_handle);
    deleteLater();
}
