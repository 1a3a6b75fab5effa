// SPDX-License-Identifier: MIT
#include "VTMainWindowController.h"

#include "VTMainMenu.h"
#include "VTMainWindow.h"

#include <QAction>

namespace
{

constexpr double smallestPane = 48.0; // points

} // namespace

void VTMainWindowController::connectSplitView()
{
    m_window->splitView()->setDelegate(this);
    connect(m_window, &VTMainWindow::willResize, this,
        [this](const QSize &size) { windowWillResize_toSize(m_window, size); });
    const VTMainMenu &menu = *m_window->menu();
    connect(menu.command("showBothLists"), &QAction::triggered, m_window, &VTMainWindow::showBothLists);
    connect(menu.command("showEventsOnly"), &QAction::triggered, m_window, &VTMainWindow::showEventsOnly);
    connect(menu.command("showTasksOnly"), &QAction::triggered, m_window, &VTMainWindow::showTasksOnly);
    connect(menu.command("moveDivider"), &QAction::triggered, m_window, &VTMainWindow::moveDividerByKeys);
}

double VTMainWindowController::splitView_constrainMinCoordinate_ofSubviewAt(
    KLVSplitView * /*view*/, double proposedMin, int dividerIndex)
{
    if (dividerIndex == 0)
        return smallestPane;
    qWarning("Min - dividerIndex == 1");
    return proposedMin;
}

double VTMainWindowController::splitView_constrainMaxCoordinate_ofSubviewAt(
    KLVSplitView * /*view*/, double proposedMax, int dividerIndex)
{
    if (dividerIndex == 0)
        return proposedMax > smallestPane ? proposedMax - smallestPane : smallestPane;
    qWarning("Max - dividerIndex == 1");
    return proposedMax;
}

bool VTMainWindowController::splitView_canCollapseSubview(KLVSplitView * /*view*/, QWidget * /*subview*/)
{
    return true;
}

QSize VTMainWindowController::windowWillResize_toSize(VTMainWindow *window, const QSize &size)
{
    KLVSplitView *view = window->splitView();
    const QList<int> heights = view->sizes();
    if (heights.at(0) < smallestPane)
        view->setPosition_ofDividerAt(0.0, 0);
    else if (heights.at(1) < smallestPane)
        view->setPosition_ofDividerAt(view->height(), 0);
    return size;
}
