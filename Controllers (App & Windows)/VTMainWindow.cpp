// SPDX-License-Identifier: MIT
#include "VTMainWindow.h"

#include "VTKeyboardMap.h"
#include "VTMainMenu.h"
#include "VTMnemonics.h"
#include "VTShortcutsWindow.h"

#include <KLVAccordionScrollArea.h>
#include <KLVAccordionView.h>
#include <KLVBarButton.h>
#include <KLVCalendarsDrawer.h>
#include <KLVDateBar.h>
#include <KLVDateNavigator.h>
#include <KLVKeyBindings.h>
#include <KLVMetrics.h>
#include <KLVNotice.h>
#include <KLVRevealStrip.h>
#include <KLVSplitView.h>
#include <StickyWindow.h>
#include <WindowState.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QScreen>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

// All in points.
constexpr QSizeF firstSize(340, 600);
constexpr QSizeF smallestSize(280, 240);
// What must be on a screen of a remembered frame for it to be found and dragged.
constexpr QSize smallestVisiblePart(120, 60);

QSize pixels(const QSizeF &points)
{
    const KLVMetrics metrics(QApplication::font());
    return { qRound(metrics.length(points.width())), qRound(metrics.length(points.height())) };
}

} // namespace

VTMainWindow::VTMainWindow(QWidget *parent)
    : QMainWindow(parent)
    , m_dateBar(new KLVDateBar(this))
    , m_splitView(new KLVSplitView(this))
    , m_eventsAccordion(new KLVAccordionView(this))
    , m_tasksAccordion(new KLVAccordionView(this))
    , m_notice(new KLVNotice(this))
    , m_revealStrip(new KLVRevealStrip(this))
    , m_calendarsDrawer(new KLVCalendarsDrawer(this))
    , m_menu(new VTMainMenu(this))
    , m_itemMenu(new QMenu(this))
    , m_newMenu(new QMenu(this))
{
    setObjectName(u"mainWindow"_s);
    setWindowTitle(u"Vantle"_s);
    m_calendarsDrawer->setObjectName(u"calendarsDrawer"_s);
    m_calendarsDrawer->hide();
    takeMinimumSize();
    resize(pixels(firstSize));

    buildLists();
    layOut();
    buildMenu();
    buildItemMenus();
    // Lists, divider, drawer, date bar, and round again.
    setTabOrder(m_eventsAccordion, m_tasksAccordion);
    setTabOrder(m_tasksAccordion, m_splitView->handle(1));
    m_dateBar->dateNavigator()->setTabOrderBetween(m_splitView->handle(1), m_dateBar->newButton());
    setTabOrder(m_dateBar->newButton(), m_dateBar->menuButton());
    setTabOrder(m_dateBar->menuButton(), m_revealStrip);
    m_calendarsDrawer->setTabOrderAfter(m_splitView->handle(1));
}

void VTMainWindow::layOut()
{
    m_dateBar->setObjectName(u"dateBar"_s);
    m_notice->setObjectName(u"notice"_s);
    m_revealStrip->setObjectName(u"revealStrip"_s);
    m_revealStrip->setAccessibleName(QCoreApplication::translate("Vantle", "Show Date Bar"));
    m_revealStrip->setToolTip(QCoreApplication::translate("Vantle", "Show Date Bar"));
    m_revealStrip->hide();

    auto *content = new QWidget(this);
    content->setObjectName(u"content"_s);
    auto *day = new QVBoxLayout;
    for (QWidget *part :
        { static_cast<QWidget *>(m_dateBar), static_cast<QWidget *>(m_revealStrip), static_cast<QWidget *>(m_notice) })
        day->addWidget(part);
    day->addWidget(m_splitView, 1);
    auto *layout = new QHBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(day, 1);
    layout->addWidget(m_calendarsDrawer);
    setCentralWidget(content);
}

void VTMainWindow::buildLists()
{
    m_splitView->setObjectName(u"splitView"_s);
    m_eventsAccordion->setAccessibleName(QCoreApplication::translate("Vantle", "Events"));
    m_eventsScrollArea = addList(m_eventsAccordion, u"eventsAccordion"_s);
    m_tasksAccordion->setAccessibleName(QCoreApplication::translate("Vantle", "To dos"));
    addList(m_tasksAccordion, u"tasksAccordion"_s);
    // Two thirds for the events.
    m_splitView->setSizes({ 2 * height(), height() });
    m_splitView->handle(1)->setObjectName(u"divider"_s);
    m_splitView->setOpenPosition(height() / 2);
    m_splitView->setAccessibleName(QCoreApplication::translate("Vantle", "Events and to dos"));
    connect(m_splitView, &KLVSplitView::collapseDidChange, this, &VTMainWindow::collapseDidChange);
}

KLVAccordionScrollArea *VTMainWindow::addList(KLVAccordionView *list, const QString &name)
{
    auto *area = new KLVAccordionScrollArea(list, m_splitView);
    list->setObjectName(name);
    area->setObjectName(name + u"ScrollArea"_s);
    area->setAccessibleName(list->accessibleName());
    // The split view's delegate says how low a pane may be.
    area->setMinimumHeight(1);
    m_splitView->addWidget(area);
    return area;
}

void VTMainWindow::buildMenu()
{
    connect(m_menu->command("quit"), &QAction::triggered, qApp, &QCoreApplication::quit, Qt::QueuedConnection);

    connect(m_menu->command("closeWindow"), &QAction::triggered, this, &QWidget::close);
    connect(m_menu->command("showShortcuts"), &QAction::triggered, this, &VTMainWindow::showShortcuts);
    m_menu->command("showBothLists")->setChecked(true);

    auto *openMenu = new QAction(this);
    openMenu->setObjectName(u"openMenu"_s);
    openMenu->setShortcuts(VTKeyboardEntryOfCommand("openMenu"_L1)->shortcuts());
    connect(openMenu, &QAction::triggered, this, &VTMainWindow::popUpMenu);
    m_dateBar->menuButton()->setMenu(m_menu);
    connect(m_dateBar->menuButton(), &KLVBarButton::clicked, this, &VTMainWindow::popUpMenu);

    // Shortcuts work from anywhere in the window, with the menu closed.
    addActions(m_menu->commands());
    addAction(openMenu);
}

void VTMainWindow::buildItemMenus()
{
    m_itemMenu->setObjectName(u"calItemContextMenu"_s);
    m_itemMenu->setAccessibleName(QCoreApplication::translate("Vantle", "Selected item"));
    for (const char *name : { "editItem", "deleteItem", "showInCalendar" })
        m_itemMenu->addAction(m_menu->command(name));
    m_itemMenu->addSeparator();
    for (const char *name : { "newEvent", "newTask" })
        m_itemMenu->addAction(m_menu->command(name));
    m_itemMenu->addSeparator();
    m_itemMenu->addAction(m_menu->command("undo"));

    VTGiveMnemonics(*m_itemMenu);

    VTGiveMnemonics(*m_newMenu);
    m_newMenu->setObjectName(u"newMenu"_s);
    m_newMenu->setAccessibleName(m_dateBar->newButton()->accessibleName());
    for (const char *name : { "newEvent", "newTask" })
        m_newMenu->addAction(m_menu->command(name));
    connect(m_dateBar->newButton(), &KLVBarButton::clicked, this,
        [this] { popUpUnder(m_newMenu, *m_dateBar->newButton()); });
}

void VTMainWindow::takeMinimumSize()
{
    const int drawerWidth = isDrawerVisible() ? KLVCalendarsDrawer::statedWidth() : 0;
    setMinimumSize(pixels(smallestSize) + QSize(drawerWidth, 0));
}

bool VTMainWindow::isDateBarVisible() const
{
    return !m_dateBar->isHidden();
}

void VTMainWindow::setDateBarVisible(bool isVisible)
{
    m_dateBar->setVisible(isVisible);
    m_revealStrip->setVisible(!isVisible);
}

void VTMainWindow::showBothLists()
{
    m_splitView->openSubviews();
    collapseDidChange();
}

void VTMainWindow::showEventsOnly()
{
    m_splitView->collapseSubview(1);
    collapseDidChange();
}

void VTMainWindow::showTasksOnly()
{
    m_splitView->collapseSubview(0);
    collapseDidChange();
}

void VTMainWindow::moveDividerByKeys()
{
    m_splitView->handle(1)->setFocus(Qt::ShortcutFocusReason);
}

// A list of which nothing is to be seen is out of reach of keyboard and assistive technology as well.
void VTMainWindow::collapseDidChange()
{
    const bool hasEvents = !m_splitView->isSubviewCollapsed(0);
    const bool hasTasks = !m_splitView->isSubviewCollapsed(1);
    QWidget *focused = focusWidget();
    m_eventsAccordion->setVisible(hasEvents);
    m_tasksAccordion->setVisible(hasTasks);
    if (focused == m_eventsAccordion && !hasEvents)
        m_tasksAccordion->setFocus(Qt::OtherFocusReason);
    if (focused == m_tasksAccordion && !hasTasks)
        m_eventsAccordion->setFocus(Qt::OtherFocusReason);

    m_menu->command("showBothLists")->setChecked(hasEvents && hasTasks);
    m_menu->command("showEventsOnly")->setChecked(!hasTasks);
    m_menu->command("showTasksOnly")->setChecked(!hasEvents);
}

void VTMainWindow::showShortcuts()
{
    auto *window = findChild<VTShortcutsWindow *>();
    if (!window)
        window = new VTShortcutsWindow(this);
    window->show();
    window->raise();
    window->activateWindow();
}

bool VTMainWindow::isDrawerVisible() const
{
    return !m_calendarsDrawer->isHidden();
}

void VTMainWindow::setDrawerVisible(bool isVisible)
{
    if (isVisible == isDrawerVisible())
        return;
    const bool hadFocus = m_calendarsDrawer->isAncestorOf(focusWidget());
    const bool isFree = !isMaximized() && !isFullScreen();
    if (isVisible) {
        m_drawerGrowth = isFree ? growthForDrawer() : VTDrawerGrowth();
        m_calendarsDrawer->show();
        if (m_drawerGrowth != VTDrawerGrowth())
            setGeometry(VTFrameWithDrawer(geometry(), m_drawerGrowth));
        takeMinimumSize();
        m_leftWithDrawer = x();
        return;
    }

    m_calendarsDrawer->hide();
    takeMinimumSize();
    // A window that the person has moved stays there.
    if (x() != m_leftWithDrawer)
        m_drawerGrowth.shift = 0;
    if (isFree && m_drawerGrowth != VTDrawerGrowth())
        setGeometry(VTFrameWithoutDrawer(geometry(), m_drawerGrowth));
    m_drawerGrowth = {};
    if (hadFocus)
        m_eventsAccordion->setFocus(Qt::OtherFocusReason);
}

VTDrawerGrowth VTMainWindow::growthForDrawer() const
{
    const QScreen *screen = QGuiApplication::screenAt(geometry().center());
    if (!screen)
        screen = this->screen();
    const QRect outer = isVisible() ? frameGeometry() : geometry();
    const QMargins decoration(geometry().left() - outer.left(), geometry().top() - outer.top(),
        outer.right() - geometry().right(), outer.bottom() - geometry().bottom());
    return VTGrowthForDrawer(
        geometry(), decoration, screen->availableGeometry(), KLVCalendarsDrawer::statedWidth(), layoutDirection());
}

WindowState VTMainWindow::windowState() const
{
    WindowState state;
    VTDrawerGrowth growth = m_drawerGrowth;
    if (x() != m_leftWithDrawer)
        growth.shift = 0;
    state.frame = VTFrameWithoutDrawer(normalGeometry(), growth);
    if (m_splitView->isSubviewCollapsed(0))
        state.collapsedPane = WindowState::Pane::Upper;
    if (m_splitView->isSubviewCollapsed(1))
        state.collapsedPane = WindowState::Pane::Lower;
    state.dividerPosition = state.collapsedPane ? m_splitView->openPosition() : m_splitView->positionOfDivider();
    state.isDateBarVisible = isDateBarVisible();
    return state;
}

void VTMainWindow::restoreWindowState(const WindowState &state)
{
    setDateBarVisible(state.isDateBarVisible);
    if (state.frame)
        restoreFrame(*state.frame);
    restoreDivider(state);
}

void VTMainWindow::restoreFrame(const QRect &frame)
{
    const QSize size = frame.size().expandedTo(minimumSize());
    const auto screens = QGuiApplication::screens();
    for (const QScreen *screen : screens) {
        const QRect available = screen->availableGeometry();
        const QRect visible = available & frame;
        // The upper edge is where a window is dragged.
        if (visible.width() >= smallestVisiblePart.width() && visible.height() >= smallestVisiblePart.height()
            && frame.top() >= available.top()) {
            setGeometry(QRect(frame.topLeft(), size.boundedTo(available.size())));
            return;
        }
    }
    // Its screen is gone: the size is still the person's wish.
    if (const QScreen *screen = QGuiApplication::primaryScreen())
        resize(size.boundedTo(screen->availableSize()));
}

void VTMainWindow::restoreDivider(const WindowState &state)
{
    // The split view has no height yet; what it will have tells the position's share of it.
    const QWidget *top = isDateBarVisible() ? static_cast<QWidget *>(m_dateBar) : m_revealStrip;
    const int space = height() - top->sizeHint().height() - m_splitView->handleWidth();
    const int position = qBound(0, state.dividerPosition.value_or(m_splitView->openPosition()), space);
    m_splitView->setOpenPosition(position);
    if (state.collapsedPane)
        m_splitView->setSizes(
            *state.collapsedPane == WindowState::Pane::Upper ? QList { 0, space } : QList { space, 0 });
    else if (state.dividerPosition)
        m_splitView->setSizes({ position, space - position });
}

void VTMainWindow::popUpMenu()
{
    const QWidget *button = m_dateBar->menuButton();
    if (!button->isVisible()) {
        m_menu->popup(mapToGlobal(QPoint(0, 0)));
        return;
    }
    popUpUnder(m_menu, *button);
}

void VTMainWindow::popUpUnder(QMenu *menu, const QWidget &button)
{
    // Its edge on the button's outer one.
    const int x = isLeftToRight() ? button.width() - menu->sizeHint().width() : 0;
    menu->popup(button.mapToGlobal(QPoint(x, button.height() + 2)));
}

void VTMainWindow::contextMenuEvent(QContextMenuEvent *event)
{
    // With the mouse the list itself has answered by now.
    if (event->reason() == QContextMenuEvent::Keyboard)
        Q_EMIT contextMenuRequested();
}

void VTMainWindow::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    showOnAllDesktops(*this);
}

void VTMainWindow::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    // The panes have their new heights already. Before the window is shown there is nothing to be squeezed.
    if (isVisible())
        Q_EMIT willResize(event->size());
}

// Keys that no control wanted, wherever the focus is.
void VTMainWindow::keyPressEvent(QKeyEvent *event)
{
    if (!KLVKeyBindings::interpretKeyEvent(*event, this))
        QMainWindow::keyPressEvent(event);
}
