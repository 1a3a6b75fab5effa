// SPDX-License-Identifier: MIT
#include "VTMainMenu.h"

#include "VTKeyboardMap.h"
#include "VTMnemonics.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr int daysPerWeek = 7;

} // namespace

VTMainMenu::VTMainMenu(QWidget *parent)
    : QMenu(parent)
{
    setObjectName(u"mainMenu"_s);
    setAccessibleName(QCoreApplication::translate("Vantle", "Menu"));
    buildProgramMenu();
    buildFileMenu();
    buildEditMenu();
    buildViewMenu();
    buildGoMenu();
    buildTaskMenu();
    buildHelpMenu();
    VTGiveMnemonics(*this);

    // Assistive technology uses a command and leaves the menu open in which it stands.
    connect(this, &QMenu::triggered, this, &VTMainMenu::closeAll);
}

void VTMainMenu::closeAll()
{
    for (QMenu *group : findChildren<QMenu *>())
        group->close();
    close();
}

void VTMainMenu::buildProgramMenu()
{
    QMenu *menu = addGroup(u"Vantle"_s, "programMenu");
    addCommand(menu, "showAbout", QCoreApplication::translate("Vantle", "About Vantle"));
    menu->addSeparator();
    addCommand(menu, "showPreferences");
    addCommand(menu, "checkForUpdates", QCoreApplication::translate("Vantle", "Check for Updates…"));
    addCommand(menu, "launchICal", QCoreApplication::translate("Vantle", "Open Calendar Application"));
    menu->addSeparator();
    addCommand(menu, "quit");
}

void VTMainMenu::buildFileMenu()
{
    QMenu *menu = addGroup(QCoreApplication::translate("Vantle", "File"), "fileMenu");
    addCommand(menu, "newEvent");
    addCommand(menu, "newTask");
    menu->addSeparator();
    addCommand(menu, "closeWindow");
}

void VTMainMenu::buildEditMenu()
{
    QMenu *menu = addGroup(QCoreApplication::translate("Vantle", "Edit"), "editMenu");
    addCommand(menu, "undo");
    menu->addSeparator();
    addCommand(menu, "editItem");
    addCommand(menu, "deleteItem");
    menu->addSeparator();
    addCommand(menu, "showInCalendar", QCoreApplication::translate("Vantle", "Show in Calendar Application"));
}

void VTMainMenu::buildHelpMenu()
{
    QMenu *menu = addGroup(QCoreApplication::translate("Vantle", "Help"), "helpMenu");
    addCommand(menu, "showShortcuts");
    addCommand(menu, "showFeedbackWindow", QCoreApplication::translate("Vantle", "Send Feedback…"));
}

void VTMainMenu::buildGoMenu()
{
    QMenu *menu = addGroup(QCoreApplication::translate("Vantle", "Go"), "goMenu");
    addGoAction(menu, "goToToday", 0);
    addGoAction(menu, "goToPreviousDay", -1);
    addGoAction(menu, "goToNextDay", 1);
    addGoAction(menu, "goToPreviousWeek", -daysPerWeek);
    addGoAction(menu, "goToNextWeek", daysPerWeek);
    menu->addSeparator();
    addCommand(menu, "jumpToDate");
}

void VTMainMenu::buildTaskMenu()
{
    QMenu *menu = addGroup(QCoreApplication::translate("Vantle", "To Dos"), "taskSettingsMenu");
    addCheckableCommand(menu, "SortMethodDueDateMenuItem", QCoreApplication::translate("Vantle", "Sort by Due Date"));
    addCheckableCommand(menu, "SortMethodPriorityMenuItem", QCoreApplication::translate("Vantle", "Sort by Priority"));
    addCheckableCommand(menu, "SortMethodTitleMenuItem", QCoreApplication::translate("Vantle", "Sort by Title"));
    menu->addSeparator();
    addCheckableCommand(menu, "showAllCompletedTasks", QCoreApplication::translate("Vantle", "Show All Completed"));
    addCheckableCommand(
        menu, "hideTasksDueAfterThisWeek", QCoreApplication::translate("Vantle", "Hide Due After This Week"));
}

void VTMainMenu::buildViewMenu()
{
    QMenu *menu = addGroup(QCoreApplication::translate("Vantle", "View"), "viewMenu");
    addCommand(menu, "toogleDateBar");
    addCommand(menu, "toogleCalendarDrawer");
    menu->addSeparator();
    addCheckableCommand(menu, "showBothLists");
    addCheckableCommand(menu, "showEventsOnly");
    addCheckableCommand(menu, "showTasksOnly");
    addCommand(menu, "moveDivider");
}

QAction *VTMainMenu::command(const char *name) const
{
    const auto found = std::ranges::find(m_commands, QLatin1String(name), &QAction::objectName);
    Q_ASSERT(found != m_commands.end());
    return *found;
}

QMenu *VTMainMenu::addGroup(const QString &title, const char *objectName)
{
    QMenu *menu = addMenu(title);
    menu->setObjectName(QLatin1String(objectName));
    menu->setAccessibleName(title);
    VTGiveMnemonics(*menu);
    return menu;
}

QAction *VTMainMenu::addCommand(QMenu *menu, const char *name)
{
    const VTKeyboardEntry *entry = VTKeyboardEntryOfCommand(QLatin1String(name));
    return addCommand(menu, name, entry ? entry->translatedText() : QString());
}

QAction *VTMainMenu::addCommand(QMenu *menu, const char *name, const QString &text)
{
    QAction *action = menu->addAction(text);
    action->setObjectName(QLatin1String(name));
    if (const VTKeyboardEntry *entry = VTKeyboardEntryOfCommand(QLatin1String(name)))
        action->setShortcuts(entry->shortcuts());
    m_commands.append(action);
    return action;
}

void VTMainMenu::addCheckableCommand(QMenu *menu, const char *name)
{
    addCommand(menu, name)->setCheckable(true);
}

void VTMainMenu::addCheckableCommand(QMenu *menu, const char *name, const QString &text)
{
    addCommand(menu, name, text)->setCheckable(true);
}

void VTMainMenu::addGoAction(QMenu *menu, const char *name, int tag)
{
    QAction *action = addCommand(menu, name);
    action->setProperty("tag", tag);
    m_goActions.append(action);
}
