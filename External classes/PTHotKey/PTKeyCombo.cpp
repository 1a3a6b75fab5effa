// SPDX-License-Identifier: MIT
#include "PTKeyCombo.h"

#include "PTKeyCodeTranslator.h"
#include "PTKeyCodesTable.h"

#include <KeyboardLayouts.h>
#include <ModifierFlags.h>

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace
{

constexpr qint64 noKeyCode = -1;
constexpr quint64 noModifiers = ~quint64(0);

// As a signed 32-bit number, whatever the property list holds; 0 when it is missing.
qint32 integerValue(const QVariantMap &plist, const QString &key)
{
    return static_cast<qint32>(plist.value(key).toLongLong());
}

} // namespace

PTKeyComboPtr PTKeyCombo::clearKeyCombo()
{
    return keyComboWithKeyCode_modifiers(noKeyCode, noModifiers);
}

PTKeyComboPtr PTKeyCombo::keyComboWithKeyCode_modifiers(qint64 keyCode, quint64 modifiers)
{
    return initWithKeyCode_modifiers(keyCode, modifiers);
}

PTKeyComboPtr PTKeyCombo::initWithKeyCode_modifiers(qint64 keyCode, quint64 modifiers)
{
    return PTKeyComboPtr(new PTKeyCombo(keyCode, modifiers));
}

PTKeyComboPtr PTKeyCombo::initWithPlistRepresentation(const std::optional<QVariantMap> &plist)
{
    qint32 keyCode = -1;
    qint32 modifiers = -1;
    if (plist && !plist->isEmpty()) {
        keyCode = std::max(integerValue(*plist, u"keyCode"_s), -1);
        modifiers = integerValue(*plist, u"modifiers"_s);
        if (modifiers < 1)
            modifiers = -1;
    }
    // By way of the signed number of the same width, so that -1 becomes all ones.
    return initWithKeyCode_modifiers(keyCode, static_cast<quint64>(qint64(modifiers)));
}

PTKeyCombo::PTKeyCombo(qint64 keyCode, quint64 modifiers)
    : mKeyCode(keyCode)
    , mModifiers(modifiers)
{
}

QVariantMap PTKeyCombo::plistRepresentation() const
{
    return { { u"keyCode"_s, mKeyCode }, { u"modifiers"_s, static_cast<qint64>(mModifiers) } };
}

bool PTKeyCombo::isEqual(const PTKeyCombo &other) const
{
    return mKeyCode == other.mKeyCode && mModifiers == other.mModifiers;
}

bool PTKeyCombo::isValidHotKeyCombo() const
{
    return mKeyCode >= 0 && mModifiers != 0;
}

bool PTKeyCombo::isClearCombo() const
{
    return mKeyCode == noKeyCode && mModifiers == noModifiers;
}

QString PTKeyCombo::keyCodeString() const
{
    return isClearCombo() ? QString() : _stringForKeyCode(static_cast<qint16>(mKeyCode));
}

quint64 PTKeyCombo::modifierMask() const
{
    return isClearCombo() ? 0 : SRCarbonToCocoaFlags(mModifiers);
}

QString PTKeyCombo::description() const
{
    if (!isValidHotKeyCombo())
        return QCoreApplication::translate("Vantle", "(None)");
    return _stringForModifiers(mModifiers) + keyCodeString();
}

QString PTKeyCombo::nameForKeyCode(qint64 keyCode)
{
    const auto translator = PTKeyCodeTranslator::initWithKeyboardLayout(KeyboardLayouts::current().currentLayout());
    return stringForKeyCode(static_cast<qint16>(keyCode), *translator);
}

QString PTKeyCombo::_stringForModifiers(quint64 modifiers)
{
    return modifierGlyphs(modifiers);
}

const QVariantMap &PTKeyCombo::_keyCodesDictionary()
{
    static PTKeyCodesTable table(u":/PTKeyCodes.plist"_s);
    return table.dictionary();
}

QString PTKeyCombo::_stringForKeyCode(qint16 keyCode)
{
    return stringForKeyCode(keyCode, *PTKeyCodeTranslator::currentTranslator());
}

QString PTKeyCombo::_stringForKeyCode_legacyKeyCodeMap(qint16 keyCode, const QVariantMap &table)
{
    const QVariant name = table.value(QString::number(keyCode));
    if (name.isValid())
        return name.toString();
    constexpr int hexadecimal = 16;
    return QString::number(static_cast<quint32>(qint32(keyCode)), hexadecimal).toUpper();
}

QString PTKeyCombo::_stringForKeyCode_newKeyCodeMap(qint16 keyCode, const QVariantMap &table)
{
    return stringForKeyCode_newKeyCodeMap(keyCode, table, *PTKeyCodeTranslator::currentTranslator());
}

QString PTKeyCombo::stringForKeyCode(qint16 keyCode, PTKeyCodeTranslator &translator)
{
    const QVariantMap &table = _keyCodesDictionary();
    return table.value(u"version"_s).toInt() > 0 ? stringForKeyCode_newKeyCodeMap(keyCode, table, translator)
                                                 : _stringForKeyCode_legacyKeyCodeMap(keyCode, table);
}

QString PTKeyCombo::stringForKeyCode_newKeyCodeMap(
    qint16 keyCode, const QVariantMap &table, PTKeyCodeTranslator &translator)
{
    const QString number = QString::number(keyCode);
    const QVariant name = table.value(u"unmappedKeys"_s).toMap().value(number);
    if (name.isValid())
        return name.toString();

    QString character = translator.translateKeyCode(keyCode).toUpper();
    if (!table.value(u"padKeys"_s).toList().contains(number))
        return character;
    return table.value(u"padKeyString"_s).toString() + u' ' + character;
}
