// SPDX-License-Identifier: MIT
#include "X11ModifierMap.h"

#include "Xcb.h"

#include <ModifierFlags.h>

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <initializer_list>

namespace
{

constexpr int firstChosenModifier = 3; // Mod1; those before it are fixed

quint16 bitOf(int modifier)
{
    return static_cast<quint16>(1U << static_cast<unsigned>(modifier));
}

bool holdsKey(const X11KeyTables &tables, int modifier, quint32 keysym)
{
    const QList<quint8> &keycodes = tables.keycodesOfModifier.at(static_cast<std::size_t>(modifier));
    return std::ranges::any_of(
        keycodes, [&](quint8 keycode) { return tables.keysyms.value(keycode).contains(keysym); });
}

// The first modifier that holds one of the keys, the keys tried in their order; 0 when none does.
quint16 modifierWithKey(const X11KeyTables &tables, std::initializer_list<quint32> keysyms)
{
    for (const quint32 keysym : keysyms) {
        for (int modifier = firstChosenModifier; modifier < X11KeyTables::modifierCount; ++modifier) {
            if (holdsKey(tables, modifier, keysym))
                return bitOf(modifier);
        }
    }
    return 0;
}

} // namespace

X11KeyTables X11KeyTables::read(xcb_connection_t *connection)
{
    const xcb_setup_t *setup = xcb_get_setup(connection);
    const auto keycodeCount = static_cast<quint8>(setup->max_keycode - setup->min_keycode + 1);
    const auto mappingRequest = xcb_get_keyboard_mapping(connection, setup->min_keycode, keycodeCount);
    const auto modifierRequest = xcb_get_modifier_mapping(connection);
    const XcbMemory<xcb_get_keyboard_mapping_reply_t> mapping(
        xcb_get_keyboard_mapping_reply(connection, mappingRequest, nullptr));
    const XcbMemory<xcb_get_modifier_mapping_reply_t> modifiers(
        xcb_get_modifier_mapping_reply(connection, modifierRequest, nullptr));
    if (!mapping || !modifiers)
        return {};

    X11KeyTables tables;
    const xcb_keysym_t *keysyms = xcb_get_keyboard_mapping_keysyms(mapping.get());
    const xcb_keycode_t *keycodes = xcb_get_modifier_mapping_keycodes(modifiers.get());
    for (QList<quint8> &keycodesOfModifier : tables.keycodesOfModifier) {
        for (int i = 0; i < modifiers->keycodes_per_modifier; ++i) {
            const quint8 keycode = *keycodes++;
            if (keycode < setup->min_keycode) // unused place
                continue;
            keycodesOfModifier.append(keycode);
            const xcb_keysym_t *first = keysyms + (keycode - setup->min_keycode) * mapping->keysyms_per_keycode;
            tables.keysyms.insert(keycode, QList<quint32>(first, first + mapping->keysyms_per_keycode));
        }
    }
    return tables;
}

X11ModifierMap::X11ModifierMap(const X11KeyTables &tables)
    : m_option(modifierWithKey(tables, { XKB_KEY_Alt_L, XKB_KEY_Alt_R, XKB_KEY_Meta_L, XKB_KEY_Meta_R }))
    , m_command(modifierWithKey(tables, { XKB_KEY_Super_L, XKB_KEY_Super_R, XKB_KEY_Hyper_L, XKB_KEY_Hyper_R }))
    , m_locks(XCB_MOD_MASK_LOCK)
{
    for (const quint32 keysym : { XKB_KEY_Num_Lock, XKB_KEY_Scroll_Lock, XKB_KEY_ISO_Level5_Lock })
        m_locks |= modifierWithKey(tables, { keysym });
}

std::optional<quint16> X11ModifierMap::stateBits(quint32 carbonModifiers) const
{
    const struct {
        quint64 carbon;
        quint16 bits;
    } places[] = {
        { CarbonModifier::command, m_command },
        { CarbonModifier::option, m_option },
        { CarbonModifier::control, XCB_MOD_MASK_CONTROL },
        { CarbonModifier::shift, XCB_MOD_MASK_SHIFT },
    };
    quint16 found = 0;
    for (const auto &[carbon, bits] : places) {
        if (!(carbonModifiers & carbon))
            continue;
        if (!bits)
            return std::nullopt;
        found |= bits;
    }
    // A key without any modifier is one that people type with.
    return found ? std::optional(found) : std::nullopt;
}

quint16 X11ModifierMap::withoutLocks(quint16 state) const
{
    return state & static_cast<quint16>(XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | m_option | m_command);
}

std::vector<quint16> X11ModifierMap::lockStates(quint16 stateBits) const
{
    std::vector<quint16> states { 0 };
    for (int modifier = 0; modifier < X11KeyTables::modifierCount; ++modifier) {
        const auto lock = static_cast<quint16>(bitOf(modifier) & m_locks & ~stateBits);
        if (!lock)
            continue;
        const std::size_t count = states.size();
        for (std::size_t i = 0; i < count; ++i)
            states.push_back(states[i] | lock);
    }
    return states;
}
