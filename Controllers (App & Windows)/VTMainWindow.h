// SPDX-License-Identifier: MIT
#pragma once

#include "VTDrawerFrame.h"

#include <QMainWindow>

class KLVAccordionScrollArea;
class KLVAccordionView;
class KLVCalendarsDrawer;
class KLVDateBar;
class KLVNotice;
class KLVRevealStrip;
class KLVSplitView;
class QMenu;
class VTMainMenu;
struct WindowState;

// The one main window: the date bar, under it the events above the to-dos, and
// beside all of them the calendars drawer.
//
// Holds the controls and knows how they are arranged; what they do is connected
// by VTMainWindowController. Every control has an object name and a name for
// assistive technology.
class VTMainWindow final : public QMainWindow
{
    Q_OBJECT

public:
    explicit VTMainWindow(QWidget *parent = nullptr);

    KLVDateBar *dateBar() const { return m_dateBar; }
    KLVSplitView *splitView() const { return m_splitView; }
    KLVAccordionView *eventsAccordion() const { return m_eventsAccordion; }
    KLVAccordionView *tasksAccordion() const { return m_tasksAccordion; }

    KLVAccordionScrollArea *eventsScrollArea() const { return m_eventsScrollArea; }

    KLVNotice *notice() const { return m_notice; }
    // In the date bar's place while it is hidden.
    KLVRevealStrip *revealStrip() const { return m_revealStrip; }
    KLVCalendarsDrawer *calendarsDrawer() const { return m_calendarsDrawer; }
    VTMainMenu *menu() const { return m_menu; }
    // What can be done with the selected item.
    QMenu *itemMenu() const { return m_itemMenu; }

    bool isDateBarVisible() const;
    void setDateBarVisible(bool isVisible);
    bool isDrawerVisible() const;
    // The window grows for the drawer where the screen has room, else the lists shrink.
    void setDrawerVisible(bool isVisible);

    void showBothLists();
    void showEventsOnly();
    void showTasksOnly();
    // Puts the keyboard onto the divider.
    void moveDividerByKeys();

    // How the person left the window, to be found again at the next start. The frame is that of the window
    // without its drawer.
    WindowState windowState() const;
    // A frame that no screen shows any more is not restored.
    void restoreWindowState(const WindowState &state);

    // At the menu button, or at the window's corner while the date bar is hidden.
    void popUpMenu();

    void showShortcuts();

Q_SIGNALS:
    // The person, or the window manager, gives the window another size.
    void willResize(const QSize &size);
    // By its key: there is no place that it was asked for at.
    void contextMenuRequested();

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void buildLists();
    KLVAccordionScrollArea *addList(KLVAccordionView *list, const QString &name);
    void layOut();
    void buildMenu();
    void buildItemMenus();
    void popUpUnder(QMenu *menu, const QWidget &button);
    void collapseDidChange();
    void takeMinimumSize();
    VTDrawerGrowth growthForDrawer() const;
    void restoreFrame(const QRect &frame);
    void restoreDivider(const WindowState &state);

    KLVDateBar *m_dateBar;
    KLVSplitView *m_splitView;
    KLVAccordionView *m_eventsAccordion;
    KLVAccordionView *m_tasksAccordion;
    KLVAccordionScrollArea *m_eventsScrollArea = nullptr;
    KLVNotice *m_notice;
    KLVRevealStrip *m_revealStrip;
    KLVCalendarsDrawer *m_calendarsDrawer;
    VTMainMenu *m_menu;
    QMenu *m_itemMenu;
    QMenu *m_newMenu;
    VTDrawerGrowth m_drawerGrowth; // of the drawer that is open
    int m_leftWithDrawer = 0; // where the window stood when the drawer had opened
};
