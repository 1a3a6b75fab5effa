// SPDX-License-Identifier: MIT
#include "VTMainMenu.h"
#include "VTMainWindow.h"
#include "VTMainWindowController.h"
#include "VTMnemonics.h"
#include "VTSheetForm.h"

#include <Beeper.h>
#include <CalCalendarStore+VTHelper.h>
#include <CalCalendarStore.h>
#include <CalendarApplication.h>
#include <DesktopAlerts.h>
#include <KLVAccordionView.h>
#include <KLVView.h>
#include <Presence.h>

#include <QAction>
#include <QFontMetrics>
#include <QScrollArea>

using namespace Qt::StringLiterals;

// The commands that change items, and where they are offered.

namespace
{

constexpr int longestTitleInMenu = 240; // pixels
// More of it is not to be seen in any font, and would be measured at every refetch.
constexpr qsizetype longestMeasuredTitle = 500; // characters

QString menuTitle(const QString &title, const QWidget &window)
{
    return VTSheetForm::withoutMnemonic(
        QFontMetrics(window.font())
            .elidedText(VTSheetForm::oneLine(title.left(longestMeasuredTitle)), Qt::ElideRight, longestTitleInMenu));
}

} // namespace

void VTMainWindowController::delete_(QObject * /*sender*/)
{
    disarmFirstSelection();
    const CalCalendarItemPtr item = selectedCalItem();
    StoreError error;
    bool isRemoved = true;
    if (const auto task = std::dynamic_pointer_cast<CalTask>(item))
        isRemoved = m_services.store.removeTask_error(task, &error);
    else if (const auto event = std::dynamic_pointer_cast<CalEvent>(item))
        isRemoved = m_services.store.removeEvent_span_error(event, CalSpanThisEvent, &error);
    if (!isRemoved)
        m_services.alerts.runModal(error.message());
}

void VTMainWindowController::undo(QObject * /*sender*/)
{
    if (!m_services.store.undoableRemovalTitle())
        return;
    StoreError error;
    if (!m_services.store.undoRemoval_error(&error))
        m_services.alerts.runModal(error.message());
}

bool VTMainWindowController::isEditing() const
{
    return m_eventEditController->isOpen() || m_taskEditController->isOpen();
}

void VTMainWindowController::editSelectedItem(QObject * /*sender*/)
{
    disarmFirstSelection();
    const CalCalendarItemPtr item = selectedCalItem();
    if (!item || !m_window)
        return;
    // What is being typed in an open sheet is not thrown away.
    if (isEditing()) {
        m_services.beeper.beep();
        return;
    }
    if (const auto event = std::dynamic_pointer_cast<CalEvent>(item))
        m_eventEditController->showEventEditSheetWithEvent_attachToWindow(event, m_window);
    else if (const auto task = std::dynamic_pointer_cast<CalTask>(item))
        m_taskEditController->showTaskEditSheetWithTask_attachToWindow(task, m_window);
}

void VTMainWindowController::showSelectedCalItemInICal(QObject * /*sender*/)
{
    if (!m_window)
        return;
    for (const KLVAccordionView *list : { eventsAccordion(), tasksAccordion() }) {
        if (const auto item = std::dynamic_pointer_cast<CalCalendarItem>(list->selectedObjects().value(0))) {
            showInICal(item);
            return;
        }
    }
}

void VTMainWindowController::showEventEditSheetWithNewEvent(QObject * /*sender*/)
{
    showWindowAndMakeActiveApp();
    if (!m_window || isEditing()) {
        m_services.beeper.beep();
        return;
    }
    const auto event = std::make_shared<CalEvent>();
    event->setTitle(QCoreApplication::translate("Vantle", "New event"));
    event->setCalendar(defaultCalendar(m_services.store));
    m_eventEditController->showEventEditSheetWithEvent_attachToWindow(event, m_window);
}

void VTMainWindowController::showTaskEditSheetWithNewTask(QObject * /*sender*/)
{
    showWindowAndMakeActiveApp();
    if (!m_window || isEditing()) {
        m_services.beeper.beep();
        return;
    }
    const auto task = std::make_shared<CalTask>();
    task->setTitle(QCoreApplication::translate("Vantle", "New to do"));
    task->setCalendar(defaultCalendar(m_services.store));
    m_taskEditController->showTaskEditSheetWithTask_attachToWindow(task, m_window);
}

void VTMainWindowController::showWindowAndMakeActiveApp(QObject * /*sender*/)
{
    disarmFirstSelection();
    if (!m_window)
        return;
    if (m_services.presence) {
        m_services.presence->bringToFront(*m_window);
        return;
    }
    m_window->setWindowState(m_window->QWidget::windowState() & ~Qt::WindowMinimized);
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

QMenu *VTMainWindowController::calItemContextMenu() const
{
    return m_window ? m_window->itemMenu() : nullptr;
}

void VTMainWindowController::connectItemCommands()
{
    const VTMainMenu &menu = *m_window->menu();
    connect(menu.command("newEvent"), &QAction::triggered, this, [this] { showEventEditSheetWithNewEvent(); });
    connect(menu.command("newTask"), &QAction::triggered, this, [this] { showTaskEditSheetWithNewTask(); });
    connect(menu.command("editItem"), &QAction::triggered, this, [this] { editSelectedItem(); });
    connect(menu.command("deleteItem"), &QAction::triggered, this, [this] { delete_(); });
    connect(menu.command("undo"), &QAction::triggered, this, [this] { undo(); });
    connect(menu.command("showInCalendar"), &QAction::triggered, this, [this] { showSelectedCalItemInICal(); });
    connect(m_window, &VTMainWindow::contextMenuRequested, this, &VTMainWindowController::popUpContextMenuAtSelection);
    connect(&m_services.store, &CalCalendarStore::undoableRemovalDidChange, this,
        &VTMainWindowController::updateItemCommands);
    for (const QMenu *opened : { static_cast<QMenu *>(m_window->menu()), m_window->itemMenu() })
        connect(opened, &QMenu::aboutToShow, this, &VTMainWindowController::offerCalendarApplication);
    offerCalendarApplication();
    m_bindings.push_back(std::make_unique<KeyValueBinding>(
        *this, u"selectedCalItem"_s, [this](const QVariant & /*item*/) { updateItemCommands(); }));
}

// Programs come and go while Vantle runs.
void VTMainWindowController::offerCalendarApplication()
{
    const bool isInstalled = m_services.calendarApplication && m_services.calendarApplication->isInstalled();
    for (const char *name : { "showInCalendar", "launchICal" })
        m_window->menu()->command(name)->setVisible(isInstalled);
}

void VTMainWindowController::updateItemCommands()
{
    if (!m_window)
        return;
    const VTMainMenu &menu = *m_window->menu();
    const CalCalendarItemPtr item = selectedCalItem();
    for (const char *name : { "editItem", "deleteItem", "showInCalendar" })
        menu.command(name)->setEnabled(item != nullptr);
    const auto event = std::dynamic_pointer_cast<CalEvent>(item);
    VTSetTextOfAction(*menu.command("deleteItem"),
        event && event->recurrenceRule() ? QCoreApplication::translate("Vantle", "Delete This Occurrence")
                                         : QCoreApplication::translate("Vantle", "Delete"));
    const std::optional<QString> removed = m_services.store.undoableRemovalTitle();
    menu.command("undo")->setEnabled(removed.has_value());
    VTSetTextOfAction(*menu.command("undo"),
        removed ? QCoreApplication::translate("Vantle", "Undo Delete of “%1”").arg(menuTitle(*removed, *m_window))
                : QCoreApplication::translate("Vantle", "Undo Delete"));
}

void VTMainWindowController::popUpContextMenuAtSelection()
{
    const CalCalendarItemPtr item = selectedCalItem();
    KLVAccordionView *const list = listOfSelection();
    if (!item || !list)
        return;
    const auto row = list->getAccordionViewItemForRepObj(item);
    // In the row, as far as it is in sight.
    const QRect frame = row ? row->view()->frame().toAlignedRect() : list->rect();
    const QRect seen = frame & list->visibleRegion().boundingRect();
    calItemContextMenu()->popup(list->mapToGlobal(seen.isEmpty() ? frame.topLeft() : seen.center()));
}
