// SPDX-License-Identifier: MIT
#include "PortalHotKeys.h"

#include "PortalTrigger.h"

#include <ModifierFlags.h>
#include <VirtualKeyCodes.h>

#include <QCoreApplication>
#include <QDBusConnectionInterface>

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

constexpr std::chrono::milliseconds firstRetryAfter = 500ms; // twice as long each time
constexpr int mostRetries = 8; // about two minutes; later only a service that comes back is a reason

HotKeyStatus declined()
{
    return HotKeyStatus::refused(
        QCoreApplication::translate("Vantle", "It was declined when the desktop asked. Change it to be asked again."));
}

HotKeyStatus notBound()
{
    return HotKeyStatus::refused(QCoreApplication::translate("Vantle", "The desktop did not set it up."));
}

HotKeyStatus withoutKeys()
{
    return HotKeyStatus::refused(
        QCoreApplication::translate("Vantle", "The desktop gave it no keys. Choose them in the desktop’s settings."));
}

HotKeyStatus granted(const PortalShortcut &shortcut)
{
    const auto trigger = shortcut.properties.constFind(u"trigger_description"_s);
    if (trigger == shortcut.properties.constEnd())
        return HotKeyStatus::active();
    return trigger->toString().isEmpty() ? withoutKeys() : HotKeyStatus::active(trigger->toString());
}

} // namespace

PortalHotKeys::PortalHotKeys(const QDBusConnection &bus)
    : m_bus(bus)
    , m_portalWatcher(Portal::service(), m_bus, QDBusServiceWatcher::WatchForOwnerChange)
    , m_backEndWatcher(Portal::backEndServices(), m_bus, QDBusServiceWatcher::WatchForOwnerChange)
{
    m_retryTimer.setSingleShot(true);
    connect(&m_retryTimer, &QTimer::timeout, this, &PortalHotKeys::bindLater);
    connect(&m_portalWatcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
        [this](const QString & /*service*/, const QString & /*oldOwner*/, const QString &newOwner) {
            portalChangedOwner(newOwner);
        });
    connect(&m_backEndWatcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
        [this](const QString & /*service*/, const QString & /*oldOwner*/, const QString &newOwner) {
            backEndChangedOwner(newOwner);
        });
}

// The session's own going does not close it for the desktop.
PortalHotKeys::~PortalHotKeys()
{
    if (!m_session)
        return;
    m_session->disconnect(this);
    m_session->close();
}

// Asks the bus only, never the portal, which may be slow to start or hang: what
// it lacks, it tells when something is bound.
bool PortalHotKeys::isAvailable() const
{
    if (!m_isOffered || !m_bus.isConnected())
        return false;
    const QDBusConnectionInterface *bus = m_bus.interface();
    return bus->isServiceRegistered(Portal::service())
        || bus->activatableServiceNames().value().contains(Portal::service());
}

Result<void> PortalHotKeys::grab(quint32 id, int virtualKey, quint32 modifiers, const HotKeyLabel &label)
{
    if (!evdevCodeForVirtualKey(virtualKey))
        return HotKeyRefusal::keyIsMissing();
    if (!(modifiers & CarbonModifier::all))
        return HotKeyRefusal::modifierIsMissing();
    const QString trigger = portalTrigger(virtualKey, modifiers);
    if (!trigger.isEmpty() && std::ranges::find(m_wishes, trigger, &Wish::trigger) != m_wishes.end())
        return HotKeyRefusal::keysAreTakenByUs();

    const HotKeyStatus status
        = m_isOffered ? HotKeyStatus::waitingForDesktop() : HotKeyStatus::notOffered(label.desktopAction);
    m_wishes.push_back({ id, trigger, label, status });
    if (m_isOffered)
        bindLater();
    return {};
}

void PortalHotKeys::release(quint32 id)
{
    if (std::erase_if(m_wishes, [id](const Wish &wish) { return wish.id == id; }))
        bindLater();
}

HotKeyStatus PortalHotKeys::status(quint32 id) const
{
    const auto wish = std::ranges::find(m_wishes, id, &Wish::id);
    return wish == m_wishes.end() ? HotKeyStatus() : wish->status;
}

// Changes of one turn of the event loop make one session.
void PortalHotKeys::bindLater()
{
    if (m_isBindingDue)
        return;
    m_isBindingDue = true;
    QMetaObject::invokeMethod(this, &PortalHotKeys::bindAnew, Qt::QueuedConnection);
}

void PortalHotKeys::bindAnew()
{
    if (m_session) { // its end leads back here
        closeSession();
        return;
    }
    m_isBindingDue = false;
    m_retryTimer.stop();
    if (!m_wishes.empty())
        openSession();
}

void PortalHotKeys::openSession()
{
    setStatusOfAll([](const Wish &) { return HotKeyStatus::waitingForDesktop(); });
    m_session = std::make_unique<PortalSession>(m_bus, wishedShortcuts());
    connect(m_session.get(), &PortalSession::bound, this, &PortalHotKeys::takeGranted);
    connect(m_session.get(), &PortalSession::shortcutsChanged, this, &PortalHotKeys::takeChanged);
    connect(m_session.get(), &PortalSession::failed, this, &PortalHotKeys::takeFailure);
    connect(m_session.get(), &PortalSession::gone, this, &PortalHotKeys::sessionIsGone);
    connect(m_session.get(), &PortalSession::activated, this, [this](const QString &shortcut, const QByteArray &token) {
        const Wish *wish = wishNamed(shortcut);
        if (!wish)
            return;
        setLatestPress({ .time = 0, .waylandToken = token });
        Q_EMIT pressed(wish->id);
    });
    connect(m_session.get(), &PortalSession::deactivated, this, [this](const QString &shortcut) {
        if (const Wish *wish = wishNamed(shortcut))
            Q_EMIT released(wish->id);
    });
    m_session->open();
}

void PortalHotKeys::closeSession()
{
    if (m_isClosing)
        return;
    m_isClosing = true;
    m_session->close();
}

void PortalHotKeys::sessionIsGone()
{
    dropSession();
    if (m_isBindingDue)
        bindAnew();
}

// Also called by the session's own signals, so it outlives this call.
void PortalHotKeys::dropSession()
{
    m_isClosing = false;
    if (!m_session)
        return;
    m_session->disconnect(this);
    m_session.release()->deleteLater();
}

void PortalHotKeys::takeGranted(const PortalShortcutList &grantedShortcuts)
{
    m_retries = 0;
    setStatusOfAll([&grantedShortcuts](const Wish &wish) {
        const auto shortcut = std::ranges::find(grantedShortcuts, shortcutName(wish), &PortalShortcut::id);
        return shortcut == grantedShortcuts.end() ? declined() : granted(*shortcut);
    });
}

void PortalHotKeys::takeChanged(const PortalShortcutList &changedShortcuts)
{
    for (const PortalShortcut &shortcut : changedShortcuts) {
        if (Wish *wish = wishNamed(shortcut.id))
            setStatus(*wish, granted(shortcut));
    }
}

void PortalHotKeys::takeFailure(PortalSession::Failure failure)
{
    m_mayAskAgain = failure != PortalSession::Failure::Declined;
    switch (failure) {
    case PortalSession::Failure::NotOffered:
        m_isOffered = false;
        setStatusOfAll([](const Wish &wish) { return HotKeyStatus::notOffered(wish.label.desktopAction); });
        break;
    case PortalSession::Failure::Declined:
        setStatusOfAll([](const Wish &) { return declined(); });
        break;
    case PortalSession::Failure::NotBound:
        setStatusOfAll([](const Wish &) { return notBound(); });
        break;
    case PortalSession::Failure::NotOpened:
    case PortalSession::Failure::Ended:
        setStatusOfAll([](const Wish &) { return HotKeyStatus::waitingForDesktop(); });
        retryLater();
        break;
    }
    closeSession();
}

void PortalHotKeys::retryLater()
{
    if (m_retries == mostRetries)
        return;
    m_retryTimer.start(firstRetryAfter * (1 << m_retries));
    ++m_retries;
}

// A portal that died took its sessions along. One that appears while a session
// is being opened was started by that very call.
void PortalHotKeys::portalChangedOwner(const QString &newOwner)
{
    m_isOffered = true;
    if (newOwner.isEmpty()) {
        dropSession();
        setStatusOfAll([](const Wish &) { return HotKeyStatus::waitingForDesktop(); });
        if (!m_wishes.empty())
            retryLater();
    } else if (!m_session) {
        m_retries = 0;
        bindLater();
    }
}

// The portal tells nothing of its back end's death, and keeps a session that
// nobody serves any more. Any desktop service may be that back end.
void PortalHotKeys::backEndChangedOwner(const QString &newOwner)
{
    if (m_session && m_session->isBound()) {
        m_session->verify();
    } else if (!newOwner.isEmpty() && m_mayAskAgain && (!m_session || m_isClosing)) {
        m_retries = 0;
        bindLater();
    }
}

PortalShortcutList PortalHotKeys::wishedShortcuts() const
{
    PortalShortcutList shortcuts;
    for (const Wish &wish : m_wishes) {
        QVariantMap properties { { u"description"_s, wish.label.name } };
        if (!wish.trigger.isEmpty())
            properties.insert(u"preferred_trigger"_s, wish.trigger);
        shortcuts.append({ shortcutName(wish), properties });
    }
    return shortcuts;
}

QString PortalHotKeys::shortcutName(const Wish &wish)
{
    return wish.label.identifier.isEmpty() ? QString::number(wish.id) : wish.label.identifier;
}

PortalHotKeys::Wish *PortalHotKeys::wishNamed(const QString &shortcut)
{
    const auto wish = std::ranges::find(m_wishes, shortcut, &PortalHotKeys::shortcutName);
    return wish == m_wishes.end() ? nullptr : &*wish;
}

void PortalHotKeys::setStatus(Wish &wish, const HotKeyStatus &status)
{
    if (wish.status == status)
        return;
    wish.status = status;
    QMetaObject::invokeMethod(
        this, [this, id = wish.id] { Q_EMIT statusChanged(id); }, Qt::QueuedConnection);
}

template <typename StatusOf> void PortalHotKeys::setStatusOfAll(StatusOf statusOf)
{
    for (Wish &wish : m_wishes)
        setStatus(wish, statusOf(wish));
}
