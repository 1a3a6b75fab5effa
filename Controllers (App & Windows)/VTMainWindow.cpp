// SPDX-License-Identifier: MIT
#include "VTMainWindow.h"

#include <KLVAccordionScrollArea.h>
#include <KLVAccordionView.h>
#include <KLVBarButton.h>
#include <KLVDateBar.h>
#include <KLVDateNavigator.h>
#include <KLVKeyBindings.h>
#include <KLVMetrics.h>
#include <KLVSplitView.h>
#include <StickyWindow.h>
#include <WindowState.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QScreen>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

// All in points.
constexpr QSizeF firstSize(340, 600);
constexpr QSizeF smallestSize(280, 240);
constexpr double smallestPane = 48;
// What must be on a screen of a remembered frame for it to be found and dragged.
constexpr QSize smallestVisiblePart(120, 60);
constexpr int daysPerWeek = 7;

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
    , m_menu(new QMenu(this))
{
    setObjectName(u"mainWindow"_s);
    setWindowTitle(u"Vantle"_s);
    setMinimumSize(pixels(smallestSize));
    resize(pixels(firstSize));

    buildLists();
    auto *content = new QWidget(this);
    content->setObjectName(u"content"_s);
    auto *layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_dateBar);
    layout->addWidget(m_splitView, 1);
    setCentralWidget(content);
    m_dateBar->setObjectName(u"dateBar"_s);

    buildMenu();
    // From the top of the window to its bottom and round again, beginning with the lists.
    setTabOrder(m_eventsAccordion, m_tasksAccordion);
    m_dateBar->dateNavigator()->setTabOrderBetween(m_tasksAccordion, m_dateBar->menuButton());
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
}

KLVAccordionScrollArea *VTMainWindow::addList(KLVAccordionView *list, const QString &name)
{
    auto *area = new KLVAccordionScrollArea(list, m_splitView);
    list->setObjectName(name);
    area->setObjectName(name + u"ScrollArea"_s);
    area->setMinimumHeight(qRound(KLVMetrics(QApplication::font()).length(smallestPane)));
    m_splitView->addWidget(area);
    return area;
}

void VTMainWindow::buildMenu()
{
    m_menu->setObjectName(u"mainMenu"_s);
    m_menu->setAccessibleName(QCoreApplication::translate("Vantle", "Menu"));
    addGoAction(QCoreApplication::translate("Vantle", "Today"), Qt::CTRL | Qt::Key_T, 0, u"goToToday"_s);
    addGoAction(
        QCoreApplication::translate("Vantle", "Previous Day"), Qt::CTRL | Qt::Key_Left, -1, u"goToPreviousDay"_s);
    addGoAction(QCoreApplication::translate("Vantle", "Next Day"), Qt::CTRL | Qt::Key_Right, 1, u"goToNextDay"_s);
    addGoAction(QCoreApplication::translate("Vantle", "Previous Week"), Qt::CTRL | Qt::SHIFT | Qt::Key_Left,
        -daysPerWeek, u"goToPreviousWeek"_s);
    addGoAction(QCoreApplication::translate("Vantle", "Next Week"), Qt::CTRL | Qt::SHIFT | Qt::Key_Right, daysPerWeek,
        u"goToNextWeek"_s);
    m_menu->addSeparator();
    m_toogleDateBarAction = m_menu->addAction(QString());
    m_toogleDateBarAction->setObjectName(u"toogleDateBar"_s);
    m_toogleDateBarAction->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_D);
    m_menu->addSeparator();
    m_quitAction = m_menu->addAction(QCoreApplication::translate("Vantle", "Quit"));
    m_quitAction->setObjectName(u"quit"_s);
    m_quitAction->setShortcut(Qt::CTRL | Qt::Key_Q);
    connect(m_quitAction, &QAction::triggered, qApp, &QCoreApplication::quit, Qt::QueuedConnection);

    auto *openMenu = new QAction(this);
    openMenu->setObjectName(u"openMenu"_s);
    openMenu->setShortcuts({ QKeySequence(Qt::Key_F10), QKeySequence(Qt::ALT | Qt::Key_M) });
    connect(openMenu, &QAction::triggered, this, &VTMainWindow::popUpMenu);
    connect(m_dateBar->menuButton(), &KLVBarButton::clicked, this, &VTMainWindow::popUpMenu);

    // Shortcuts work from anywhere in the window, with the menu closed.
    addActions(m_menu->actions());
    addAction(openMenu);
}

QAction *VTMainWindow::addGoAction(
    const QString &text, const QKeySequence &shortcut, int tag, const QString &objectName)
{
    QAction *action = m_menu->addAction(text);
    action->setObjectName(objectName);
    action->setShortcut(shortcut);
    action->setProperty("tag", tag);
    m_goActions.append(action);
    return action;
}

bool VTMainWindow::isDateBarVisible() const
{
    return !m_dateBar->isHidden();
}

void VTMainWindow::setDateBarVisible(bool isVisible)
{
    m_dateBar->setVisible(isVisible);
}

WindowState VTMainWindow::windowState() const
{
    WindowState state;
    state.frame = normalGeometry();
    state.dividerPosition = m_splitView->sizes().value(0);
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
    if (!state.dividerPosition)
        return;
    const int barHeight = isDateBarVisible() ? m_dateBar->sizeHint().height() : 0;
    const int space = height() - barHeight - m_splitView->handleWidth();
    const int position = qBound(0, *state.dividerPosition, space);
    m_splitView->setSizes({ position, space - position });
}

void VTMainWindow::popUpMenu()
{
    const QWidget *button = m_dateBar->menuButton();
    if (!button->isVisible()) {
        m_menu->popup(mapToGlobal(QPoint(0, 0)));
        return;
    }
    // Under the button, its edge on the button's outer one.
    const QSize size = m_menu->sizeHint();
    const int x = isLeftToRight() ? button->width() - size.width() : 0;
    m_menu->popup(button->mapToGlobal(QPoint(x, button->height() + 2)));
}

void VTMainWindow::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    showOnAllDesktops(*this);
}

// Keys that no control wanted, wherever the focus is.
void VTMainWindow::keyPressEvent(QKeyEvent *event)
{
    if (!KLVKeyBindings::interpretKeyEvent(*event, this))
        QMainWindow::keyPressEvent(event);
}
