// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QMenu>

// The menu behind the date bar's button, with everything that the program can do,
// in the groups of a menu bar. Every entry has a letter of its own.
//
// Each action has its command's name as object name and its keys from the
// keyboard map; what it does is connected by the window's controller.
class VTMainMenu final : public QMenu
{
    Q_OBJECT

public:
    explicit VTMainMenu(QWidget *parent = nullptr);

    // Must exist.
    QAction *command(const char *name) const;
    // Of the menu and of its submenus.
    QList<QAction *> commands() const { return m_commands; }
    // Today, previous and next day, previous and next week: each with its number of days as property "tag".
    QList<QAction *> goActions() const { return m_goActions; }

private:
    void closeAll();
    QMenu *addGroup(const QString &title, const char *objectName);
    // The keyboard map knows the text.
    QAction *addCommand(QMenu *menu, const char *name);
    QAction *addCommand(QMenu *menu, const char *name, const QString &text);
    void addCheckableCommand(QMenu *menu, const char *name);
    void addCheckableCommand(QMenu *menu, const char *name, const QString &text);
    void addGoAction(QMenu *menu, const char *name, int tag);
    void buildProgramMenu();
    void buildFileMenu();
    void buildEditMenu();
    void buildViewMenu();
    void buildGoMenu();
    void buildTaskMenu();
    void buildHelpMenu();

    QList<QAction *> m_commands;
    QList<QAction *> m_goActions;
};
