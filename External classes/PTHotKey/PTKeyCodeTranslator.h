// SPDX-License-Identifier: MIT
#pragma once

#include <KeyboardLayout.h>

#include <QString>

#include <memory>

class PTKeyCodeTranslator;
using PTKeyCodeTranslatorPtr = std::shared_ptr<PTKeyCodeTranslator>;

// Says what a key prints in one keyboard layout.
//
// Remembers a dead key: the key that is translated after it comes out with the
// accent. Main thread only.
class PTKeyCodeTranslator final
{
public:
    // For the layout in use; the same one until the person switches to another.
    static PTKeyCodeTranslatorPtr currentTranslator();
    static PTKeyCodeTranslatorPtr initWithKeyboardLayout(KeyboardLayoutPtr keyboardLayout);

    // Exactly one UTF-16 unit: the first one of what the key prints with no
    // modifier held, or U+FFFD for a key that prints nothing.
    QString translateKeyCode(qint16 keyCode);
    const KeyboardLayoutPtr &keyboardLayout() const { return m_keyboardLayout; }
    // Names no layout, on purpose.
    QString description() const;

private:
    explicit PTKeyCodeTranslator(KeyboardLayoutPtr keyboardLayout);

    KeyboardLayoutPtr m_keyboardLayout;
    const KeyboardLayout *uchrData; // what the layout prints; lives as long as the layout
    [[maybe_unused]] quint32 keyTranslateState = 0; // part of the translator's form, used by nobody
    quint32 deadKeyState = 0;
};
