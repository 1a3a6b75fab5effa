// SPDX-License-Identifier: MIT
#pragma once

#include "KeyboardLayout.h"

#include <QObject>

// Shapes of keyboards, in the numbers of the platform that the key codes come from.
namespace KeyboardType
{

constexpr quint32 ansi = 40;
constexpr quint32 iso = 41;
constexpr quint32 jis = 42;

} // namespace KeyboardType

// Knows which layout the person types with.
class KeyboardLayouts : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // Never null. The same object until the person switches to another layout,
    // also when no event loop has run since.
    virtual KeyboardLayoutPtr currentLayout() = 0;
    virtual quint32 keyboardType() = 0;

    // The one of this desktop, made on first use and gone with the application
    // object, unless another one was put in its place.
    static KeyboardLayouts &current();
    // Passing null puts the desktop's back. The caller keeps ownership.
    static void setCurrent(KeyboardLayouts *layouts);

Q_SIGNALS:
    // currentLayout() is another object than before.
    void layoutDidChange();
};

class ScopedKeyboardLayouts final
{
public:
    explicit ScopedKeyboardLayouts(KeyboardLayouts &layouts) { KeyboardLayouts::setCurrent(&layouts); }
    ~ScopedKeyboardLayouts() { KeyboardLayouts::setCurrent(nullptr); }
    ScopedKeyboardLayouts(const ScopedKeyboardLayouts &) = delete;
    ScopedKeyboardLayouts &operator=(const ScopedKeyboardLayouts &) = delete;
};
