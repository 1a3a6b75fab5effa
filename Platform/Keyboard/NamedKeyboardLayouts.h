// SPDX-License-Identifier: MIT
#pragma once

#include "KeyboardLayouts.h"

#include <QByteArray>

// What a layout is called by the keyboard configuration. An empty part leaves
// the choice to it.
struct KeyboardNames {
    QByteArray model;
    QByteArray layout; // "de", or several: "us,ru"
    QByteArray variant;

    // From the session's XKB_DEFAULT_… variables, else from the system's
    // configuration file (XKBLAYOUT="de" and so on).
    static KeyboardNames ofThisSystem(const QString &configurationFile = QStringLiteral("/etc/default/keyboard"));
};

// One layout by its name, for desktops that do not tell which one is in use.
// An unknown name gives the US layout. Never changes.
class NamedKeyboardLayouts final : public KeyboardLayouts
{
    Q_OBJECT

public:
    // group counts the layouts of the names, from 0.
    explicit NamedKeyboardLayouts(const KeyboardNames &names, quint32 group = 0, QObject *parent = nullptr);

    KeyboardLayoutPtr currentLayout() override { return m_layout; }
    quint32 keyboardType() override { return m_keyboardType; }

private:
    KeyboardLayoutPtr m_layout;
    quint32 m_keyboardType;
};
