// SPDX-License-Identifier: MIT
#pragma once

#include <X11KeyboardLayouts.h>

#include <QByteArray>

// The least a program can be that has keys grabbed: another client of the
// server, with one grab for one state of the locks, and no event loop.
class BareGrabClient final
{
public:
    explicit BareGrabClient(const QByteArray &display);

    // False when the server refuses.
    [[nodiscard]] bool grab(int virtualKey, quint16 stateBits);
    void ungrab(int virtualKey, quint16 stateBits);

    // Waits until a key event of that kind arrives.
    void waitForPress();
    void waitForRelease();
    // How many presses have arrived since it was last asked, by a held key too.
    int takePresses();

private:
    void waitFor(int eventType);

    XcbConnectionPtr m_connection;
    quint32 m_root;
};
