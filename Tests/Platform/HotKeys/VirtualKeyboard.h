// SPDX-License-Identifier: MIT
#pragma once

#include <X11KeyboardLayouts.h>

#include <QByteArray>
#include <QStringList>

#include <vector>

// A person's hands on the keyboard of an X server: real key events by the
// server's own test extension. Keys are virtual key codes.
class VirtualKeyboard final
{
public:
    explicit VirtualKeyboard(const QByteArray &display);

    bool isWorking() const;

    // The server has taken the event when these return.
    void press(int virtualKey) { send(virtualKey, Direction::Down); }
    void release(int virtualKey) { send(virtualKey, Direction::Up); }
    // Carbon modifiers first, then the key; up in the other order.
    void pressCombination(int virtualKey, quint32 modifiers);
    void releaseCombination(int virtualKey, quint32 modifiers);
    void typeCombination(int virtualKey, quint32 modifiers);

    // Without waiting for the server.
    void pressAtOnce(int virtualKey);

    void setCapsLock(bool isOn) { setLock(capsLock, isOn); }
    void setNumLock(bool isOn) { setLock(numLock, isOn); }
    // As the server has them: a bit per modifier.
    quint16 lockedModifiers() const;
    // Chooses another layout of several, as a desktop's layout indicator does.
    void lockGroup(quint8 group);

private:
    enum class Direction { Down, Up };
    struct Lock {
        int evdevKey;
        quint16 stateBit;
    };
    static constexpr Lock capsLock { 58, 0x02 };
    static constexpr Lock numLock { 69, 0x10 }; // where the usual configuration has it

    static std::vector<int> modifierKeys(quint32 modifiers);
    void send(int virtualKey, Direction direction);
    void waitForServer();
    void sendKeycode(int keycode, Direction direction);
    void setLock(const Lock &lock, bool isOn);

    XcbConnectionPtr m_connection;
};
