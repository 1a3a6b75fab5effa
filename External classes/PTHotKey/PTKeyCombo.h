// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVariantMap>

#include <memory>
#include <optional>

class PTKeyCombo;
class PTKeyCodeTranslator;
using PTKeyComboPtr = std::shared_ptr<const PTKeyCombo>;

// Which key, with which modifiers held, triggers a hot key. Never changes, so
// that a copy is the same object.
//
// Modifiers are kept in the Carbon encoding. The clear combo (key code -1, all
// 64 modifier bits set) stands for a hot key without a key. Main thread only.
class PTKeyCombo final : public std::enable_shared_from_this<PTKeyCombo>
{
public:
    static PTKeyComboPtr clearKeyCombo();
    static PTKeyComboPtr keyComboWithKeyCode_modifiers(qint64 keyCode, quint64 modifiers);
    // Both are stored as they are.
    static PTKeyComboPtr initWithKeyCode_modifiers(qint64 keyCode, quint64 modifiers);
    // The clear combo from nothing or an empty dictionary. A stored modifiers value
    // below 1 sets all modifier bits, also beside a key code.
    static PTKeyComboPtr initWithPlistRepresentation(const std::optional<QVariantMap> &plist);

    QVariantMap plistRepresentation() const;
    PTKeyComboPtr copy() const { return shared_from_this(); }
    bool isEqual(const PTKeyCombo &other) const;

    qint64 keyCode() const { return mKeyCode; }
    quint64 modifiers() const { return mModifiers; }
    bool isValidHotKeyCombo() const;
    bool isClearCombo() const;

    // The key's name in the layout in use; empty for the clear combo.
    QString keyCodeString() const;
    // In the Cocoa encoding.
    quint64 modifierMask() const;
    // "⌘⌥K", or "(None)" in the person's language for a combo that is not valid.
    QString description() const;

    // A key's name for a place where several stand beside each other: a dead key
    // that was named before it lends it no accent.
    static QString nameForKeyCode(qint64 keyCode);

    static QString _stringForModifiers(quint64 modifiers);
    // Empty while the table cannot be read.
    static const QVariantMap &_keyCodesDictionary();
    static QString _stringForKeyCode(qint16 keyCode);
    static QString _stringForKeyCode_legacyKeyCodeMap(qint16 keyCode, const QVariantMap &table);
    static QString _stringForKeyCode_newKeyCodeMap(qint16 keyCode, const QVariantMap &table);

private:
    PTKeyCombo(qint64 keyCode, quint64 modifiers);

    static QString stringForKeyCode(qint16 keyCode, PTKeyCodeTranslator &translator);
    static QString stringForKeyCode_newKeyCodeMap(
        qint16 keyCode, const QVariantMap &table, PTKeyCodeTranslator &translator);

    qint64 mKeyCode;
    quint64 mModifiers;
};
