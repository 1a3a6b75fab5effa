// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

// By what the person asked for a window: the desktop gives the keyboard to the
// window of whoever can show it, and may refuse others. All of it may be absent.
struct ActivationToken {
    quint32 userTime = 0; // of the press on the X server; 0 for unknown
    QByteArray startupId; // of the launcher, as an X desktop has it; it also ends the launcher's busy sign
    QByteArray waylandToken;

    static ActivationToken fromUserTime(quint32 userTime) { return { userTime, {}, {} }; }
    // What a launcher left in this process's surroundings. To be asked before the application object is
    // made, which takes it away.
    static ActivationToken fromEnvironment();
    // A startup identifier ends with the time of the press: "..._TIME12345".
    static quint32 userTimeOf(const QByteArray &startupId);

    bool operator==(const ActivationToken &other) const = default;
};
