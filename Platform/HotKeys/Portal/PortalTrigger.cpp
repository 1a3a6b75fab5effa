// SPDX-License-Identifier: MIT
#include "PortalTrigger.h"

#include <KeyboardLayouts.h>
#include <ModifierFlags.h>
#include <VirtualKeyCodes.h>
#include <XkbKeyboardLayout.h>

#include <QStringList>

#include <xkbcommon/xkbcommon.h>

#include <array>

using namespace Qt::StringLiterals;

namespace
{

// What the key does on a US keyboard, keypad keys with Num Lock on.
xkb_keysym_t usualKeysym(int virtualKey)
{
    const XkbContextPtr context = makeXkbContext();
    constexpr xkb_rule_names names { "evdev", "pc105", "us", "", "" };
    const XkbKeymapPtr keymap(xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS));
    const std::optional<int> keycode = x11KeycodeForVirtualKey(virtualKey);
    if (!keymap || !keycode)
        return XKB_KEY_NoSymbol;
    const xkb_keysym_t *keysyms = nullptr;
    const xkb_level_index_t level = isKeypadVirtualKey(virtualKey) ? 1 : 0;
    for (const xkb_level_index_t candidate : { level, xkb_level_index_t(0) }) {
        if (xkb_keymap_key_get_syms_by_level(keymap.get(), static_cast<xkb_keycode_t>(*keycode), 0, candidate, &keysyms)
            == 1)
            return *keysyms;
    }
    return XKB_KEY_NoSymbol;
}

// The printed text of a letter or sign key is the layout's affair; Space, Return, F1 and the keypad are not.
xkb_keysym_t keysymInLayout(int virtualKey)
{
    constexpr char32_t firstVisible = 0x21;
    const xkb_keysym_t usual = usualKeysym(virtualKey);
    if (xkb_keysym_to_utf32(usual) < firstVisible || isKeypadVirtualKey(virtualKey))
        return usual;

    KeyboardLayouts &layouts = KeyboardLayouts::current();
    quint32 noDeadKey = 0;
    const QList<uint> printed
        = layouts.currentLayout()->translate(virtualKey, layouts.keyboardType(), noDeadKey).toUcs4();
    return printed.size() == 1 ? xkb_utf32_to_keysym(printed.first()) : usual;
}

QString keysymName(xkb_keysym_t keysym)
{
    std::array<char, 64> name {};
    if (keysym == XKB_KEY_NoSymbol || xkb_keysym_get_name(keysym, name.data(), name.size()) <= 0)
        return {};
    return QString::fromLatin1(name.data());
}

} // namespace

QString portalTrigger(int virtualKey, quint32 carbonModifiers)
{
    const QString key = keysymName(keysymInLayout(virtualKey));
    if (key.isEmpty())
        return {};
    QStringList parts;
    if (carbonModifiers & CarbonModifier::control)
        parts << u"CTRL"_s;
    if (carbonModifiers & CarbonModifier::option)
        parts << u"ALT"_s;
    if (carbonModifiers & CarbonModifier::shift)
        parts << u"SHIFT"_s;
    if (carbonModifiers & CarbonModifier::command)
        parts << u"LOGO"_s;
    parts << key;
    return parts.join(u'+');
}
