// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <memory>

// One keyboard layout: what its keys print. Never changes; two layouts are the
// same when they are the same object.
class KeyboardLayout
{
public:
    KeyboardLayout() = default;
    virtual ~KeyboardLayout() = default;
    KeyboardLayout(const KeyboardLayout &) = delete;
    KeyboardLayout &operator=(const KeyboardLayout &) = delete;

    // As the desktop calls it: "German", "English (Dvorak)".
    virtual QString name() const = 0;

    // What the key prints with no modifier held, at most four UTF-16 units; empty
    // when it prints nothing. A dead key prints its accent and leaves a state
    // behind, from which the next key is composed; 0 is the state of no dead key.
    // keyboardType is what KeyboardLayouts told.
    virtual QString translate(qint64 virtualKey, quint32 keyboardType, quint32 &deadKeyState) const = 0;
};

using KeyboardLayoutPtr = std::shared_ptr<const KeyboardLayout>;
