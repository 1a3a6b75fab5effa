// SPDX-License-Identifier: MIT
#pragma once

#include "HotKeyEvents.h"

#include <HotKeyBackend.h>

#include <QHash>
#include <QList>
#include <QObject>

#include <map>
#include <memory>

// The registry of global hot keys: takes them to the desktop under ids that are
// never used twice in a run, and sends the action of the one that was pressed.
//
// Owns the registered hot keys. Main thread only.
class PTHotKeyCenter final : public QObject
{
    Q_OBJECT

public:
    // The one center of the process, which speaks to the desktop at hand. Made on
    // first use; it goes with the application object.
    static PTHotKeyCenter &sharedCenter();

    explicit PTHotKeyCenter(std::unique_ptr<HotKeyBackend> backend, QObject *parent = nullptr);
    ~PTHotKeyCenter() override;

    // False when the desktop refuses. A combo that is not valid registers nothing
    // and is no failure. A hot key that is registered is unregistered first.
    [[nodiscard]] bool registerHotKey(const PTHotKeyPtr &hotKey);
    // Ignores whatever is not registered.
    void unregisterHotKey(const PTHotKeyPtr &hotKey);

    QList<PTHotKeyPtr> allHotKeys() const;
    // Null for a null identifier, and for one that is not registered.
    PTHotKeyPtr hotKeyWithIdentifier(const QString &identifier) const;
    PTHotKeyPtr _hotKeyForCarbonHotKey(EventHotKeyRef ref) const;
    PTHotKeyPtr _hotKeyForCarbonHotKeyID(const EventHotKeyID &hotKeyID) const;

    // What became of the wish for this combo under this identifier, also when it
    // was refused. A combo that is not valid has none.
    HotKeyStatus status(const QString &identifier, const PTKeyCombo &keyCombo) const;

    void _updateEventHandler();
    OSStatus sendCarbonEvent(const CarbonEvent &event);
    void sendEvent(const ApplicationEvent &event);
    void _hotKeyDown(const PTHotKeyPtr &hotKey);
    void _hotKeyUp(const PTHotKeyPtr &hotKey);

Q_SIGNALS:
    // A hot key was pressed, and its action comes next.
    void willInvoke(const HotKeyPress &press);
    // Of the hot key with this identifier: by the desktop, or because it was registered or refused.
    void statusChanged(const QString &identifier);

private:
    struct Refusal {
        PTKeyComboPtr keyCombo;
        QString reason;
    };

    bool isRegistered(const PTHotKeyPtr &hotKey) const;

    std::unique_ptr<HotKeyBackend> m_backend;
    std::map<quint32, PTHotKeyPtr> mHotKeys;
    QHash<QString, Refusal> m_refusals; // the latest of each identifier
    bool mEventHandlerInstalled = false;
    quint32 mHotKeyCount = 0;
};
