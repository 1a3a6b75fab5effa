// SPDX-License-Identifier: MIT
#pragma once

#include "KeyboardLayout.h"

#include <memory>
#include <vector>

struct xkb_context;
struct xkb_keymap;
struct xkb_compose_table;

// Hands a library's object back to it.
struct XkbRelease {
    void operator()(xkb_context *context) const;
    void operator()(xkb_keymap *keymap) const;
    void operator()(xkb_compose_table *table) const;
};

using XkbContextPtr = std::unique_ptr<xkb_context, XkbRelease>;
using XkbKeymapPtr = std::unique_ptr<xkb_keymap, XkbRelease>;
using XkbComposeTablePtr = std::unique_ptr<xkb_compose_table, XkbRelease>;

XkbContextPtr makeXkbContext();

// A layout as XKB describes it: one group of a compiled keymap.
//
// Without a keymap (no keyboard configuration is installed) its keys print nothing.
class XkbKeyboardLayout final : public KeyboardLayout
{
public:
    XkbKeyboardLayout(XkbKeymapPtr keymap, quint32 group);
    ~XkbKeyboardLayout() override;

    QString name() const override;
    QString translate(qint64 virtualKey, quint32 keyboardType, quint32 &deadKeyState) const override;

    quint32 keyboardType() const;
    // Whether every key of both prints the same under the same name.
    bool printsLike(const XkbKeyboardLayout &other) const;

private:
    using KeySequence = std::vector<quint32>; // keysyms

    quint32 keysym(qint64 virtualKey) const;
    quint32 rememberSequence(const KeySequence &sequence) const;

    XkbKeymapPtr m_keymap;
    quint32 m_group;
    // Dead keys that wait for their letter. A dead-key state is a place in this
    // list, counted from 1: a number can be kept by anyone, an object of the
    // library cannot.
    mutable std::vector<KeySequence> m_pendingSequences;
};
