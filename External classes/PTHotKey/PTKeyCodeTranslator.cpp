// SPDX-License-Identifier: MIT
#include "PTKeyCodeTranslator.h"

#include <KeyboardLayouts.h>

using namespace Qt::StringLiterals;

PTKeyCodeTranslatorPtr PTKeyCodeTranslator::currentTranslator()
{
    static PTKeyCodeTranslatorPtr translator;
    const KeyboardLayoutPtr layout = KeyboardLayouts::current().currentLayout();
    if (!translator || translator->keyboardLayout() != layout)
        translator = initWithKeyboardLayout(layout);
    return translator;
}

PTKeyCodeTranslatorPtr PTKeyCodeTranslator::initWithKeyboardLayout(KeyboardLayoutPtr keyboardLayout)
{
    return PTKeyCodeTranslatorPtr(new PTKeyCodeTranslator(std::move(keyboardLayout)));
}

PTKeyCodeTranslator::PTKeyCodeTranslator(KeyboardLayoutPtr keyboardLayout)
    : m_keyboardLayout(std::move(keyboardLayout))
    , uchrData(m_keyboardLayout.get())
{
}

QString PTKeyCodeTranslator::translateKeyCode(qint16 keyCode)
{
    const QString text = uchrData->translate(keyCode, KeyboardLayouts::current().keyboardType(), deadKeyState);
    return text.isEmpty() ? QString(QChar(QChar::ReplacementCharacter)) : text.first(1);
}

QString PTKeyCodeTranslator::description() const
{
    return u"PTKeyCodeTranslator layout=%1 (%2)"_s.arg(QString(), u"uchr"_s);
}
