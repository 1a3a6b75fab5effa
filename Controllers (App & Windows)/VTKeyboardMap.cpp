// SPDX-License-Identifier: MIT
#include "VTKeyboardMap.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace
{

constexpr std::array entries {
    VTKeyboardEntry { VTKeyGroup::Days, "goToToday", "Ctrl+T", QT_TRANSLATE_NOOP("Vantle", "Today") },
    VTKeyboardEntry { VTKeyGroup::Days, "goToPreviousDay", "Ctrl+Left", QT_TRANSLATE_NOOP("Vantle", "Previous Day") },
    VTKeyboardEntry { VTKeyGroup::Days, "goToNextDay", "Ctrl+Right", QT_TRANSLATE_NOOP("Vantle", "Next Day") },
    VTKeyboardEntry {
        VTKeyGroup::Days, "goToPreviousWeek", "Ctrl+Shift+Left", QT_TRANSLATE_NOOP("Vantle", "Previous Week") },
    VTKeyboardEntry { VTKeyGroup::Days, "goToNextWeek", "Ctrl+Shift+Right", QT_TRANSLATE_NOOP("Vantle", "Next Week") },
    VTKeyboardEntry { VTKeyGroup::Days, "jumpToDate", "Ctrl+G", QT_TRANSLATE_NOOP("Vantle", "Go to Date") },

    VTKeyboardEntry { VTKeyGroup::Items, "newEvent", "Ctrl+N", QT_TRANSLATE_NOOP("Vantle", "New Event") },
    VTKeyboardEntry { VTKeyGroup::Items, "newTask", "Ctrl+Shift+N", QT_TRANSLATE_NOOP("Vantle", "New To Do") },
    VTKeyboardEntry { VTKeyGroup::Items, "editItem", "Ctrl+E", QT_TRANSLATE_NOOP("Vantle", "Edit") },
    VTKeyboardEntry { VTKeyGroup::Items, "deleteItem", "Del", QT_TRANSLATE_NOOP("Vantle", "Delete") },
    VTKeyboardEntry { VTKeyGroup::Items, "undo", "Ctrl+Z", QT_TRANSLATE_NOOP("Vantle", "Undo Delete") },
    VTKeyboardEntry { VTKeyGroup::Items, "", "Up", QT_TRANSLATE_NOOP("Vantle", "Select Row Above") },
    VTKeyboardEntry { VTKeyGroup::Items, "", "Down", QT_TRANSLATE_NOOP("Vantle", "Select Row Below") },
    VTKeyboardEntry { VTKeyGroup::Items, "", "Return", QT_TRANSLATE_NOOP("Vantle", "Tick Selected To Do") },
    VTKeyboardEntry { VTKeyGroup::Items, "", "Tab", QT_TRANSLATE_NOOP("Vantle", "Next Control") },
    VTKeyboardEntry { VTKeyGroup::Items, "", "Space", QT_TRANSLATE_NOOP("Vantle", "Use Control") },

    VTKeyboardEntry {
        VTKeyGroup::View, "toogleDateBar", "Ctrl+Shift+D", QT_TRANSLATE_NOOP("Vantle", "Show or Hide Date Bar") },
    VTKeyboardEntry { VTKeyGroup::View, "toogleCalendarDrawer", "Ctrl+Shift+C; F9",
        QT_TRANSLATE_NOOP("Vantle", "Show or Hide Calendars") },

    VTKeyboardEntry {
        VTKeyGroup::View, "showBothLists", "Ctrl+1", QT_TRANSLATE_NOOP("Vantle", "Show Events and To Dos") },
    VTKeyboardEntry { VTKeyGroup::View, "showEventsOnly", "Ctrl+2", QT_TRANSLATE_NOOP("Vantle", "Show Events Only") },
    VTKeyboardEntry { VTKeyGroup::View, "showTasksOnly", "Ctrl+3", QT_TRANSLATE_NOOP("Vantle", "Show To Dos Only") },
    VTKeyboardEntry { VTKeyGroup::View, "moveDivider", "F8", QT_TRANSLATE_NOOP("Vantle", "Move Divider") },

    VTKeyboardEntry { VTKeyGroup::Program, "openMenu", "F10; Alt+M", QT_TRANSLATE_NOOP("Vantle", "Open Menu") },
    VTKeyboardEntry {
        VTKeyGroup::Program, "showShortcuts", "F1; Ctrl+?", QT_TRANSLATE_NOOP("Vantle", "Keyboard Shortcuts") },
    VTKeyboardEntry { VTKeyGroup::Program, "showPreferences", "Ctrl+,", QT_TRANSLATE_NOOP("Vantle", "Preferences") },
    VTKeyboardEntry { VTKeyGroup::Program, "closeWindow", "Ctrl+W", QT_TRANSLATE_NOOP("Vantle", "Close Window") },
    VTKeyboardEntry { VTKeyGroup::Program, "quit", "Ctrl+Q", QT_TRANSLATE_NOOP("Vantle", "Quit") },
};

} // namespace

QString VTKeyboardEntry::translatedText() const
{
    return QCoreApplication::translate("Vantle", text);
}

QList<QKeySequence> VTKeyboardEntry::shortcuts() const
{
    return QKeySequence::listFromString(QLatin1String(keys), QKeySequence::PortableText);
}

std::span<const VTKeyboardEntry> VTKeyboardMap()
{
    return entries;
}

const VTKeyboardEntry *VTKeyboardEntryOfCommand(QLatin1String command)
{
    const auto *const found = std::ranges::find_if(entries,
        [&](const VTKeyboardEntry &entry) { return !command.isEmpty() && command == QLatin1String(entry.command); });
    return found == entries.end() ? nullptr : found;
}

QString VTKeyGroupName(VTKeyGroup group)
{
    switch (group) {
    case VTKeyGroup::Days:
        return QCoreApplication::translate("Vantle", "Days");
    case VTKeyGroup::Items:
        return QCoreApplication::translate("Vantle", "Events and To Dos");
    case VTKeyGroup::View:
        return QCoreApplication::translate("Vantle", "View");
    case VTKeyGroup::Program:
        return QCoreApplication::translate("Vantle", "Program");
    }
    return {};
}
