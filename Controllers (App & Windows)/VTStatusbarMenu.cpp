// SPDX-License-Identifier: MIT
#include "VTStatusbarMenu.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

VTStatusbarMenu::VTStatusbarMenu(QWidget *parent)
    : QMenu(parent)
{
    setObjectName(u"statusbarMenu"_s);
    setAccessibleName(u"Vantle"_s);
    setDefaultAction(addCommand("showVantle", QCoreApplication::translate("Vantle", "Show Vantle")));
    addSeparator();
    addCommand("newEvent", QCoreApplication::translate("Vantle", "New Event"));
    addCommand("newTask", QCoreApplication::translate("Vantle", "New To Do"));
    addCommand("goToToday", QCoreApplication::translate("Vantle", "Today"));
    addSeparator();
    addCommand("showPreferences", QCoreApplication::translate("Vantle", "Preferences…"));
    addSeparator();
    addCommand("quit", QCoreApplication::translate("Vantle", "Quit Vantle"));
}

QAction *VTStatusbarMenu::command(const char *name) const
{
    auto *const action = findChild<QAction *>(QLatin1String(name), Qt::FindDirectChildrenOnly);
    Q_ASSERT(action);
    return action;
}

QAction *VTStatusbarMenu::addCommand(const char *name, const QString &text)
{
    QAction *action = addAction(text);
    action->setObjectName(QLatin1String(name));
    return action;
}
