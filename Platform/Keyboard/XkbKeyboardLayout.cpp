// SPDX-License-Identifier: MIT
#include "XkbKeyboardLayout.h"

#include "KeyboardLayouts.h"
#include "VirtualKeyCodes.h"

#include <xkbcommon/xkbcommon-compose.h>
#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace
{

constexpr qsizetype mostUnits = 4; // UTF-16 units that one key may print

struct ComposeStateRelease {
    void operator()(xkb_compose_state *state) const { xkb_compose_state_unref(state); }
};
using ComposeStatePtr = std::unique_ptr<xkb_compose_state, ComposeStateRelease>;

// Reading the table takes milliseconds, and most layouts have no dead key. Its
// locale is fixed, because under "C" no accent would ever meet its letter.
xkb_compose_table *composeTable()
{
    static const XkbContextPtr context = makeXkbContext();
    static const XkbComposeTablePtr table(
        xkb_compose_table_new_from_locale(context.get(), "en_US.UTF-8", XKB_COMPOSE_COMPILE_NO_FLAGS));
    return table.get();
}

bool isDead(quint32 keysym)
{
    return keysym >= XKB_KEY_dead_grave && keysym <= XKB_KEY_dead_longsolidusoverlay;
}

// Empty for keys that print nothing and for control characters.
QString printedText(quint32 keysym)
{
    const char32_t character = xkb_keysym_to_utf32(keysym);
    constexpr char32_t firstPrintable = 0x20;
    constexpr char32_t deleteCharacter = 0x7f;
    if (character < firstPrintable || character == deleteCharacter)
        return {};
    return QString::fromUcs4(&character, 1);
}

struct Composition {
    xkb_compose_status status = XKB_COMPOSE_NOTHING;
    QString text;
};

Composition compose(const std::vector<quint32> &keysyms)
{
    xkb_compose_table *table = composeTable();
    if (!table)
        return {};

    const ComposeStatePtr state(xkb_compose_state_new(table, XKB_COMPOSE_STATE_NO_FLAGS));
    for (const quint32 keysym : keysyms)
        xkb_compose_state_feed(state.get(), keysym);
    Composition result { .status = xkb_compose_state_get_status(state.get()), .text = {} };
    if (result.status == XKB_COMPOSE_COMPOSED) {
        std::array<char, 64> text {};
        xkb_compose_state_get_utf8(state.get(), text.data(), text.size());
        result.text = QString::fromUtf8(text.data()).left(mostUnits);
    }
    return result;
}

// A dead key prints nothing by itself; pressed twice it prints its accent.
QString accent(quint32 deadKeysym)
{
    return compose({ deadKeysym, deadKeysym }).text;
}

} // namespace

void XkbRelease::operator()(xkb_context *context) const
{
    xkb_context_unref(context);
}

void XkbRelease::operator()(xkb_keymap *keymap) const
{
    xkb_keymap_unref(keymap);
}

void XkbRelease::operator()(xkb_compose_table *table) const
{
    xkb_compose_table_unref(table);
}

XkbContextPtr makeXkbContext()
{
    return XkbContextPtr(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
}

XkbKeyboardLayout::XkbKeyboardLayout(XkbKeymapPtr keymap, quint32 group)
    : m_keymap(std::move(keymap))
    , m_group(group)
{
}

XkbKeyboardLayout::~XkbKeyboardLayout() = default;

QString XkbKeyboardLayout::name() const
{
    return m_keymap ? QString::fromUtf8(xkb_keymap_layout_get_name(m_keymap.get(), m_group)) : QString();
}

// The shape of the keyboard is part of the keymap already.
QString XkbKeyboardLayout::translate(qint64 virtualKey, quint32 /*keyboardType*/, quint32 &deadKeyState) const
{
    const quint32 ownKeysym = keysym(virtualKey);
    KeySequence sequence;
    if (deadKeyState > 0 && deadKeyState <= m_pendingSequences.size())
        sequence = m_pendingSequences.at(deadKeyState - 1);
    sequence.push_back(ownKeysym);

    if (sequence.size() > 1 || isDead(ownKeysym)) {
        const Composition composition = compose(sequence);
        deadKeyState = composition.status == XKB_COMPOSE_COMPOSING ? rememberSequence(sequence) : 0;
        if (composition.status == XKB_COMPOSE_COMPOSED)
            return composition.text;
    }
    return isDead(ownKeysym) ? accent(ownKeysym) : printedText(ownKeysym);
}

quint32 XkbKeyboardLayout::keyboardType() const
{
    constexpr int yen = 93; // only Japanese keyboards have this key
    return keysym(yen) == XKB_KEY_NoSymbol ? KeyboardType::iso : KeyboardType::jis;
}

bool XkbKeyboardLayout::printsLike(const XkbKeyboardLayout &other) const
{
    const std::vector<int> keys = allVirtualKeys();
    return name() == other.name()
        && std::ranges::all_of(keys, [&](int key) { return keysym(key) == other.keysym(key); });
}

quint32 XkbKeyboardLayout::keysym(qint64 virtualKey) const
{
    const std::optional<int> keycode = x11KeycodeForVirtualKey(virtualKey);
    if (!keycode || !m_keymap)
        return XKB_KEY_NoSymbol;

    // The first level of a keypad key moves the cursor, the second one prints a figure.
    const xkb_level_index_t levels
        = xkb_keymap_num_levels_for_key(m_keymap.get(), static_cast<quint32>(*keycode), m_group);
    const xkb_level_index_t level = isKeypadVirtualKey(virtualKey) && levels > 1 ? 1 : 0;
    const xkb_keysym_t *keysyms = nullptr;
    const int count
        = xkb_keymap_key_get_syms_by_level(m_keymap.get(), static_cast<quint32>(*keycode), m_group, level, &keysyms);
    return count > 0 ? *keysyms : XKB_KEY_NoSymbol;
}

quint32 XkbKeyboardLayout::rememberSequence(const KeySequence &sequence) const
{
    const auto found = std::ranges::find(m_pendingSequences, sequence);
    const auto place = found - m_pendingSequences.begin();
    if (found == m_pendingSequences.end())
        m_pendingSequences.push_back(sequence);
    return static_cast<quint32>(place + 1);
}
