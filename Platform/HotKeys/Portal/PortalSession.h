// SPDX-License-Identifier: MIT
#pragma once

#include "PortalTypes.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QObject>

class PortalRequest;

// One session of the portal, in which one set of shortcuts is bound together.
// A session cannot change its set: who wants another one closes it and makes a
// new one after gone().
class PortalSession final : public QObject
{
    Q_OBJECT

public:
    enum class Failure {
        NotOffered, // there is no such portal here
        NotOpened, // no session; nothing was asked of the person
        Declined, // by the person
        NotBound, // asked, and ended in some other way
        Ended, // it was bound; the desktop let go of it
    };
    Q_ENUM(Failure)

    PortalSession(const QDBusConnection &bus, const PortalShortcutList &shortcuts, QObject *parent = nullptr);

    void open();
    bool isBound() const { return m_isBound; }
    // Asks the desktop whether it still knows the shortcuts: answers with bound() or failed(Ended).
    void verify();
    // Nothing but gone() is heard after this, once.
    void close();

Q_SIGNALS:
    // What the desktop granted, which may be less than was asked for.
    void bound(const PortalShortcutList &granted);
    void shortcutsChanged(const PortalShortcutList &changed);
    // Only gone() can follow.
    void failed(PortalSession::Failure failure);
    // The token lets a window of ours have the keyboard; empty where the desktop gives none.
    void activated(const QString &shortcut, const QByteArray &activationToken);
    void deactivated(const QString &shortcut);
    void gone();

private Q_SLOTS:
    void takeActivated(const QDBusMessage &message);
    void takeDeactivated(const QDBusMessage &message);
    void takeShortcutsChanged(const QDBusMessage &message);
    void takeClosed();

private:
    bool listen();
    void bind(const QVariantMap &created);
    void takeShortcuts(const QVariantMap &results);
    bool knowsAll(const QVariantMap &results) const;
    void fail(Failure failure);
    PortalRequest *request(const QString &method, Failure failure);
    bool concernsUs(const QDBusMessage &message) const;

    QDBusConnection m_bus;
    PortalShortcutList m_shortcuts;
    PortalShortcutList m_granted;
    QString m_handle; // object path; empty until the session is open
    bool m_isBound = false;
    bool m_isOver = false;
};
