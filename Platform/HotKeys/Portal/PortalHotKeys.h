// SPDX-License-Identifier: MIT
#pragma once

#include "HotKeyBackend.h"
#include "PortalSession.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QTimer>

#include <memory>
#include <vector>

// Hot keys by the desktop portal, where no program may take keys by itself: the
// desktop asks the person, may grant other keys than those wished for, and answers later.
//
// All hot keys of a moment are bound together, since each binding may be a
// question to the person; every change makes a new session. When the portal or
// the desktop's part of it dies, they are bound again as soon as it is back.
class PortalHotKeys final : public HotKeyBackend
{
    Q_OBJECT

public:
    explicit PortalHotKeys(const QDBusConnection &bus);
    ~PortalHotKeys() override;

    bool isAvailable() const override;
    Result<void> grab(quint32 id, int virtualKey, quint32 modifiers, const HotKeyLabel &label) override;
    void release(quint32 id) override;
    HotKeyStatus status(quint32 id) const override;

private:
    struct Wish {
        quint32 id;
        QString trigger;
        HotKeyLabel label;
        HotKeyStatus status;
    };

    void bindLater();
    void bindAnew();
    void openSession();
    void closeSession();
    void sessionIsGone();
    void dropSession();
    void takeGranted(const PortalShortcutList &grantedShortcuts);
    void takeChanged(const PortalShortcutList &changedShortcuts);
    void takeFailure(PortalSession::Failure failure);
    void retryLater();
    void portalChangedOwner(const QString &newOwner);
    void backEndChangedOwner(const QString &newOwner);

    PortalShortcutList wishedShortcuts() const;
    static QString shortcutName(const Wish &wish);
    Wish *wishNamed(const QString &shortcut);
    void setStatus(Wish &wish, const HotKeyStatus &status);
    template <typename StatusOf> void setStatusOfAll(StatusOf statusOf);

    QDBusConnection m_bus;
    QDBusServiceWatcher m_portalWatcher;
    QDBusServiceWatcher m_backEndWatcher;
    QTimer m_retryTimer;
    int m_retries = 0;
    bool m_isOffered = true; // until the portal turns out to lack the interface
    bool m_isBindingDue = false;
    bool m_isClosing = false;
    bool m_mayAskAgain = false; // the last session ended without the person having said no
    std::vector<Wish> m_wishes;
    std::unique_ptr<PortalSession> m_session;
};
