// SPDX-License-Identifier: MIT
#pragma once

#include <KeyboardLayouts.h>

#include <QHash>

// A layout whose keys print what a test says. A key of the accents leaves the
// accent's own code behind as dead-key state; the next key then prints its
// text and the accent.
class PlainKeyboardLayout final : public KeyboardLayout
{
public:
    PlainKeyboardLayout(QString name, QHash<qint64, QString> texts, QHash<qint64, QString> accents = {});

    QString name() const override { return m_name; }
    QString translate(qint64 virtualKey, quint32 keyboardType, quint32 &deadKeyState) const override;

    mutable quint32 lastKeyboardType = 0;

private:
    QString m_name;
    QHash<qint64, QString> m_texts;
    QHash<qint64, QString> m_accents;
};

// Switches when a test says so.
class SwitchableKeyboardLayouts final : public KeyboardLayouts
{
    Q_OBJECT

public:
    explicit SwitchableKeyboardLayouts(KeyboardLayoutPtr layout);

    void switchTo(KeyboardLayoutPtr layout); // and tells
    void setKeyboardType(quint32 type) { m_keyboardType = type; }

    KeyboardLayoutPtr currentLayout() override { return m_layout; }
    quint32 keyboardType() override { return m_keyboardType; }

private:
    KeyboardLayoutPtr m_layout;
    quint32 m_keyboardType = KeyboardType::iso;
};
