// SPDX-License-Identifier: MIT
#pragma once

#include <QKeySequence>
#include <QList>
#include <QString>

#include <span>

// Every key of the main window, in one place: the menu takes its shortcuts from
// here, the window of shortcuts shows them, and docs/keyboard.md is held against it.

enum class VTKeyGroup { Days, Items, View, Program };

struct VTKeyboardEntry {
    VTKeyGroup group;
    const char *command; // object name of the action that the keys trigger; empty where a control itself knows them
    const char *keys; // QKeySequence's portable text, several with "; " between; the first stands in the menu
    const char *text; // what they do; translated by text()

    QString translatedText() const;
    QList<QKeySequence> shortcuts() const;
};

// In the order in which a person reads them, group by group.
std::span<const VTKeyboardEntry> VTKeyboardMap();
// Null for a command without keys.
const VTKeyboardEntry *VTKeyboardEntryOfCommand(QLatin1String command);

QString VTKeyGroupName(VTKeyGroup group);
