// SPDX-License-Identifier: MIT
#pragma once

#include "HotKeyBackend.h"
#include "X11ModifierMap.h"

#include <QByteArray>
#include <QDeadlineTimer>
#include <QHash>

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

struct xcb_connection_t;
class QSocketNotifier;

// Hot keys by passive grabs on an X server's root window.
//
// Has a connection of its own, which sees grabbed keys and nothing else; Qt's
// would wake up at every modifier press of the session. Grabs are by physical
// key, so another layout changes nothing; a configuration that moves modifiers
// to other bits is followed. When the server goes, every hot key is gone with it.
class X11HotKeys final : public HotKeyBackend
{
    Q_OBJECT

public:
    // An empty display is the session's. Without a server, or with one that lacks
    // the keyboard extension, it is not available and refuses everything.
    explicit X11HotKeys(const QByteArray &display = {});
    ~X11HotKeys() override;

    bool isAvailable() const override { return m_connection != nullptr; }
    Result<void> grab(quint32 id, int virtualKey, quint32 modifiers, const HotKeyLabel &label) override;
    void release(quint32 id) override;
    HotKeyStatus status(quint32 id) const override;

private:
    struct Disconnect {
        void operator()(xcb_connection_t *connection) const;
    };
    struct Keys {
        quint8 keycode;
        quint16 stateBits;
        bool operator==(const Keys &other) const = default;
    };
    struct Grab {
        quint32 id;
        int virtualKey;
        quint32 modifiers;
        HotKeyLabel label;
        std::optional<Keys> keys; // nothing while another program holds them, or the keyboard lacks them
    };
    // A key that is down, and the hot key that its press belongs to.
    struct HeldKey {
        std::optional<quint32> id; // nothing when it was down before it was grabbed
        QDeadlineTimer firstRepeat; // by when a key that was down before would have repeated
    };

    bool prepareKeyboard();
    std::chrono::milliseconds longestRepeatDelay() const;
    bool isDown(quint8 keycode) const;

    Result<Keys> findKeys(int virtualKey, quint32 modifiers) const;
    Result<void> grabKeys(const Keys &keys);
    void ungrabKeys(const Keys &keys);
    const Grab *grabOf(const Keys &keys) const;

    void takeEventsLater();
    void takeEvents();
    void keyWentDown(const Keys &keys);
    void keyWentUp(quint8 keycode);
    void followKeyboard();
    void becomeUnavailable();
    void announceLater(quint32 id);

    std::unique_ptr<xcb_connection_t, Disconnect> m_connection; // null when not available
    std::unique_ptr<QSocketNotifier> m_notifier;
    quint32 m_root = 0;
    quint8 m_firstKeyboardEvent = 0; // the extension's number for its events
    X11ModifierMap m_modifierMap;
    std::vector<Grab> m_grabs;
    QHash<quint8, HeldKey> m_heldKeys; // by keycode
};
