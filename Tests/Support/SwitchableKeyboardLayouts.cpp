// SPDX-License-Identifier: MIT
#include "SwitchableKeyboardLayouts.h"

PlainKeyboardLayout::PlainKeyboardLayout(QString name, QHash<qint64, QString> texts, QHash<qint64, QString> accents)
    : m_name(std::move(name))
    , m_texts(std::move(texts))
    , m_accents(std::move(accents))
{
}

QString PlainKeyboardLayout::translate(qint64 virtualKey, quint32 keyboardType, quint32 &deadKeyState) const
{
    lastKeyboardType = keyboardType;
    if (m_accents.contains(virtualKey)) {
        deadKeyState = static_cast<quint32>(virtualKey);
        return m_accents.value(virtualKey);
    }
    const QString accent = m_accents.value(std::exchange(deadKeyState, 0));
    return accent + m_texts.value(virtualKey);
}

SwitchableKeyboardLayouts::SwitchableKeyboardLayouts(KeyboardLayoutPtr layout)
    : m_layout(std::move(layout))
{
}

void SwitchableKeyboardLayouts::switchTo(KeyboardLayoutPtr layout)
{
    m_layout = std::move(layout);
    Q_EMIT layoutDidChange();
}
