// SPDX-License-Identifier: MIT
#pragma once

#include <Portal/PortalTypes.h>

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QHash>
#include <QObject>
#include <QSet>

#include <optional>

// What a desktop puts behind the portal: it answers as a test says instead of
// asking a person, and presses keys when the test says so.
class MockPortalBackEnd final : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.impl.portal.GlobalShortcuts")
    Q_PROPERTY(uint version READ version CONSTANT)

public:
    struct Session {
        QString handle;
        PortalShortcutList shortcuts; // as they were wished for
        bool isOpen = true;
    };

    static QString service();

    explicit MockPortalBackEnd(const QDBusConnection &bus);
    ~MockPortalBackEnd() override;

    // Arranging. All hold for what is asked later.
    void answerSessions(uint code) { m_sessionAnswer = code; }
    void answerBindings(uint code) { m_bindingAnswer = code; }
    void refuse(const QString &shortcut) { m_refused.insert(shortcut); }
    void grantOther(const QString &shortcut, const QString &trigger) { m_granted.insert(shortcut, trigger); }
    // The person thinks about the next binding until answerHeldBinding().
    void holdBindings() { m_isHolding = true; }
    void answerHeldBinding();

    // Acting, in the session that was opened last.
    void activate(const QString &shortcut);
    void deactivate(const QString &shortcut);
    void changeTrigger(const QString &shortcut, const QString &trigger);
    void endSession();

    // Asserting.
    const QList<Session> &sessions() const { return m_sessions; } // all that were ever opened
    int openSessions() const;
    int refusedSessions() const { return m_refusedSessions; }
    bool isHoldingBinding() const { return m_heldBinding.has_value(); }
    // Of the last session; null when it was not wished for.
    QString wishedTrigger(const QString &shortcut) const;
    QString wishedDescription(const QString &shortcut) const;
    QString shortcutWithTrigger(const QString &trigger) const;

    uint version() const { return 1; }
    void closeSession(const QString &handle);

public Q_SLOTS:
    uint CreateSession(const QDBusObjectPath &handle, const QDBusObjectPath &session_handle, const QString &app_id,
        const QVariantMap &options, QVariantMap &results);
    uint BindShortcuts(const QDBusObjectPath &handle, const QDBusObjectPath &session_handle,
        const QList<PortalShortcut> &shortcuts, const QString &parent_window, const QVariantMap &options,
        QVariantMap &results);
    uint ListShortcuts(const QDBusObjectPath &handle, const QDBusObjectPath &session_handle, QVariantMap &results);

Q_SIGNALS:
    void Activated(const QDBusObjectPath &session_handle, const QString &shortcut_id, qulonglong timestamp,
        const QVariantMap &options);
    void Deactivated(const QDBusObjectPath &session_handle, const QString &shortcut_id, qulonglong timestamp,
        const QVariantMap &options);
    void ShortcutsChanged(const QDBusObjectPath &session_handle, const QList<PortalShortcut> &shortcuts);

private:
    Session *sessionWithHandle(const QString &handle);
    PortalShortcutList grantedOf(const Session &session) const;
    QString wishedProperty(const QString &shortcut, const QString &property) const;
    QDBusObjectPath lastHandle() const { return QDBusObjectPath(m_sessions.last().handle); }

    QDBusConnection m_bus;
    QList<Session> m_sessions;
    uint m_sessionAnswer = 0;
    uint m_bindingAnswer = 0;
    QSet<QString> m_refused;
    QHash<QString, QString> m_granted;
    int m_refusedSessions = 0;
    bool m_isHolding = false;
    std::optional<QDBusMessage> m_heldBinding;
};

// The other end of a session: the portal closes it there.
class MockPortalSession final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.impl.portal.Session")
    Q_PROPERTY(uint version READ version CONSTANT)

public:
    MockPortalSession(MockPortalBackEnd &backEnd, const QString &handle);

    uint version() const { return 1; }

public Q_SLOTS:
    void Close();

Q_SIGNALS:
    void Closed();

private:
    MockPortalBackEnd &m_backEnd;
    QString m_handle;
};
