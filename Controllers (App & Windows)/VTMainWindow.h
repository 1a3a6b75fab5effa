// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QMainWindow>

class KLVAccordionScrollArea;
class KLVAccordionView;
class KLVDateBar;
class KLVSplitView;
class QAction;
class QMenu;
struct WindowState;

// The one main window: the date bar, and under it the events above the to-dos.
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

    QMenu *menu() const { return m_menu; }
    // Today, previous and next day, previous and next week: each with its number of days as property "tag".
    QList<QAction *> goActions() const { return m_goActions; }
    QAction *toogleDateBarAction() const { return m_toogleDateBarAction; }
    QAction *quitAction() const { return m_quitAction; }

    bool isDateBarVisible() const;
    void setDateBarVisible(bool isVisible);

    // How the person left the window, to be found again at the next start.
    WindowState windowState() const;
    // A frame that no screen shows any more is not restored.
    void restoreWindowState(const WindowState &state);

    // At the menu button, or at the window's corner while the date bar is hidden.
    void popUpMenu();

protected:
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void buildLists();
    KLVAccordionScrollArea *addList(KLVAccordionView *list, const QString &name);
    void buildMenu();
    QAction *addGoAction(const QString &text, const QKeySequence &shortcut, int tag, const QString &objectName);
    void restoreFrame(const QRect &frame);
    void restoreDivider(const WindowState &state);

    KLVDateBar *m_dateBar;
    KLVSplitView *m_splitView;
    KLVAccordionView *m_eventsAccordion;
    KLVAccordionView *m_tasksAccordion;
    KLVAccordionScrollArea *m_eventsScrollArea = nullptr;
    QMenu *m_menu;
    QList<QAction *> m_goActions;
    QAction *m_toogleDateBarAction = nullptr;
    QAction *m_quitAction = nullptr;
};
