// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// What became of a wish for a global hot key, for the person who made it.
struct HotKeyStatus {
    enum class Kind {
        Unset, // nobody wished for it
        Active,
        Refused, // another program has the keys, or the person said no
        WaitingForDesktop, // asked for; the answer is still to come
        NotOffered, // this desktop has no hot keys for programs
    };

    static HotKeyStatus active(const QString &trigger = {});
    static HotKeyStatus refused(const QString &reason);
    static HotKeyStatus waitingForDesktop();
    // desktopAction: see HotKeyLabel.
    static HotKeyStatus notOffered(const QString &desktopAction);

    // One or two sentences for the preferences window; empty when unset.
    QString text() const;

    bool operator==(const HotKeyStatus &other) const = default;

    Kind kind = Kind::Unset;
    // Active: the keys in the desktop's words, when it chose them. They may be others than those asked for.
    QString trigger;
    // Refused: why.
    QString reason;
    // NotOffered: the command that does the same when it is bound to keys in the
    // desktop's own settings. Empty when there is none.
    QString command;
};
