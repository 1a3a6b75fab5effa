// SPDX-License-Identifier: MIT
#include "VTMainWindowController.h"

#include "VTMainMenu.h"
#include "VTMainWindow.h"
#include "VTMnemonics.h"
#include "VTSilenceWords.h"

#include <CalCalendarItem.h>
#include <CalCalendarStore.h>
#include <DesktopAlerts.h>
#include <KLVAccordionScrollArea.h>
#include <KLVAccordionView.h>
#include <KLVDateBar.h>
#include <KLVDateNavigator.h>
#include <KLVDrawings.h>
#include <KLVKeyBindings.h>
#include <KLVNotice.h>
#include <KLVRevealStrip.h>
#include <KLVTheme.h>
#include <QDateTime+VTHelper.h>

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QScrollBar>

using namespace Qt::StringLiterals;

namespace
{

constexpr qint64 secondsPerDay = 86400;

// Alternate rows of the events list.
const QColor alternateColor = QColor::fromRgbF(237 / 255.0F, 243 / 255.0F, 254 / 255.0F);

} // namespace

void VTMainWindowController::setWindow(VTMainWindow *window)
{
    m_window = window;
    KLVKeyBindings::setNextResponder(window, this);
    connectControls();
}

VTMainWindow *VTMainWindowController::window() const
{
    return m_window;
}

void VTMainWindowController::connectControls()
{
    connect(dateNavigator(), &KLVDateNavigator::triggered, this, [this] { setDateFromDateNavigator(); });
    connectMenu();
    connectItemCommands();
    connectDrawer();
    connectSplitView();
    connect(m_window->revealStrip(), &KLVRevealStrip::clicked, this, [this] { toogleDateBar(); });
    connect(&m_services.store, &CalCalendarStore::silenceDidChange, this, &VTMainWindowController::updateNotice);
    connect(&m_services.store, &CalCalendarStore::savedChangeWasOverwritten, this,
        &VTMainWindowController::tellOfOverwrittenChange);
    updateNotice();
}

void VTMainWindowController::updateNotice()
{
    if (!m_window)
        return;
    // What the person does not look at cannot be out of date to them.
    const QStringList unselected = m_unselectedCalendarsUID.value_or(QStringList());
    QStringList titles;
    for (const CalCalendarPtr &calendar : m_services.store.silentCalendars()) {
        if (!VTIsUnselected(m_services.store, calendar->uid(), unselected))
            titles.append(calendar->title());
    }
    m_window->notice()->say(
        titles.isEmpty() && m_services.store.hasUnreachedService() ? VTUnreachedWords() : VTSilenceWords(titles));
}

void VTMainWindowController::tellOfOverwrittenChange(const StoreError &error)
{
    // Both steps of an event's save can be overwritten at once; the person made one change.
    const QString message = error.message();
    if (m_overwritingBeingTold == message)
        return;
    m_overwritingBeingTold = message;
    m_services.alerts.runModal(message);
    m_overwritingBeingTold.clear();
}

void VTMainWindowController::connectMenu()
{
    const VTMainMenu &menu = *m_window->menu();
    for (QAction *action : menu.goActions())
        connect(action, &QAction::triggered, this, [this, action] { setDateRelativeToSenderTag(action); });
    connect(menu.command("jumpToDate"), &QAction::triggered, this, [this] { jumpToDate(); });
    for (QAction *item : { SortMethodDueDateMenuItem(), SortMethodPriorityMenuItem(), SortMethodTitleMenuItem() })
        connect(item, &QAction::triggered, this, [this, item] { updateTaskSortMethodFromTaskSettingsMenu(item); });
    bindCheckMark(menu.command("showAllCompletedTasks"), u"showAllCompletedTasks"_s,
        &VTMainWindowController::setShowAllCompletedTasks);
    bindCheckMark(menu.command("hideTasksDueAfterThisWeek"), u"hideTasksDueAfterThisWeek"_s,
        &VTMainWindowController::setHideTasksDueAfterThisWeek);
    connect(menu.command("toogleDateBar"), &QAction::triggered, this, [this] { toogleDateBar(); });
    bindTitle(menu.command("toogleDateBar"), u"showHideDateBarMenuTitle"_s);
    connect(menu.command("toogleCalendarDrawer"), &QAction::triggered, this, [this] { toogleCalendarDrawer(); });
    bindTitle(menu.command("toogleCalendarDrawer"), u"showHideCalendarDrawerMenuTitle"_s);
}

void VTMainWindowController::bindTitle(QAction *action, const QString &key)
{
    m_bindings.push_back(
        std::make_unique<KeyValueBinding>(*this, key, [action = QPointer(action)](const QVariant &title) {
            if (action)
                VTSetTextOfAction(*action, title.toString());
        }));
}

void VTMainWindowController::bindCheckMark(
    QAction *action, const QString &key, void (VTMainWindowController::*setter)(bool))
{
    m_bindings.push_back(
        std::make_unique<KeyValueBinding>(*this, key, [action = QPointer(action)](const QVariant &value) {
            if (action)
                action->setChecked(value.toBool());
        }));
    connect(action, &QAction::triggered, this, setter);
}

void VTMainWindowController::setUpLists()
{
    if (!m_window)
        return;

    eventsAccordion()->setAlternativeBackgroundColor(alternateColor);
    for (KLVAccordionView *list : { eventsAccordion(), tasksAccordion() })
        list->setDelegate(this);
    eventsAccordion()->bind_toObject_withKeyPath_options(u"representedObjects"_s, this, u"events"_s);
    tasksAccordion()->bind_toObject_withKeyPath_options(u"representedObjects"_s, this, u"tasks"_s);
    for (KLVAccordionView *list : { eventsAccordion(), tasksAccordion() })
        list->bind_toObject_withKeyPath_options(u"selectedObjects"_s, this, u"selectedCalItems"_s);
}

void VTMainWindowController::refresh(const std::function<void()> &steps)
{
    const QList<KLVAccordionView *> lists
        = m_window ? QList<KLVAccordionView *> { eventsAccordion(), tasksAccordion() } : QList<KLVAccordionView *>();
    for (KLVAccordionView *list : lists)
        list->beginRefetch();
    steps();
    for (KLVAccordionView *list : lists)
        list->endRefetch();
}

void VTMainWindowController::scrollEventsToTop()
{
    if (m_window)
        m_window->eventsScrollArea()->verticalScrollBar()->setValue(0);
}

KLVDateNavigator *VTMainWindowController::dateNavigator() const
{
    return m_window ? m_window->dateBar()->dateNavigator() : nullptr;
}

QLabel *VTMainWindowController::dateLabel() const
{
    return m_window ? m_window->dateBar()->dateLabel() : nullptr;
}

KLVAccordionView *VTMainWindowController::eventsAccordion() const
{
    return m_window ? m_window->eventsAccordion() : nullptr;
}

KLVAccordionView *VTMainWindowController::tasksAccordion() const
{
    return m_window ? m_window->tasksAccordion() : nullptr;
}

void VTMainWindowController::setDateRelativeToSenderTag(QObject *sender)
{
    disarmFirstSelection();
    const int tag = sender->property("tag").toInt();
    if (tag == 0)
        setDateToNow();
    else
        setDate(date().addSecs(tag * secondsPerDay));
}

void VTMainWindowController::setDateFromDateNavigator(QObject * /*sender*/)
{
    KLVDateNavigator *navigator = dateNavigator();
    navigator->setTag(navigator->tagForSegment(navigator->selectedSegment()));
    setDateRelativeToSenderTag(navigator);
}

void VTMainWindowController::toogleDateBar(QObject * /*sender*/)
{
    willChangeValueForKey(u"showHideDateBarMenuTitle"_s);
    m_window->setDateBarVisible(!m_window->isDateBarVisible());
    didChangeValueForKey(u"showHideDateBarMenuTitle"_s);
}

QString VTMainWindowController::showHideDateBarMenuTitle() const
{
    return m_window && m_window->isDateBarVisible() ? QCoreApplication::translate("Vantle", "Hide Date Bar")
                                                    : QCoreApplication::translate("Vantle", "Show Date Bar");
}

QAction *VTMainWindowController::SortMethodDueDateMenuItem() const
{
    return m_window ? m_window->menu()->command("SortMethodDueDateMenuItem") : nullptr;
}

QAction *VTMainWindowController::SortMethodPriorityMenuItem() const
{
    return m_window ? m_window->menu()->command("SortMethodPriorityMenuItem") : nullptr;
}

QAction *VTMainWindowController::SortMethodTitleMenuItem() const
{
    return m_window ? m_window->menu()->command("SortMethodTitleMenuItem") : nullptr;
}

void VTMainWindowController::updateTaskSortMethodFromTaskSettingsMenu(QObject *sender)
{
    qint32 method = m_taskSortMethod;
    if (sender == SortMethodTitleMenuItem())
        method = VTSortByTitle;
    else if (sender == SortMethodPriorityMenuItem())
        method = VTSortByPriority;
    else if (sender == SortMethodDueDateMenuItem())
        method = VTSortByDueDate;
    if (method != m_taskSortMethod)
        setTaskSortMethod(method);
    // A click has taken the mark from the item that had it.
    markSortMethod();
}

void VTMainWindowController::markSortMethod() const
{
    SortMethodDueDateMenuItem()->setChecked(m_taskSortMethod == VTSortByDueDate);
    SortMethodPriorityMenuItem()->setChecked(m_taskSortMethod == VTSortByPriority);
    SortMethodTitleMenuItem()->setChecked(m_taskSortMethod == VTSortByTitle);
}

const VTDateFormatter &VTMainWindowController::dateLabelFormatter() const
{
    return isInCurrentYear(date(), m_services.clock.now()) ? m_headerFromatterWithoutYear : m_headerFromatterWithYear;
}

void VTMainWindowController::updateControls()
{
    if (!m_window)
        return;
    reloadCalendars();
    updateNotice();
    updateDatePicker();
    dateLabel()->setText(dateLabelFormatter().stringFromDate(date()));
    dateNavigator()->setLabel_forSegment(
        m_navigatorFormatter.stringFromDate(m_services.clock.now()), KLVDateNavigator::middleSegment);
    markSortMethod();
    updateItemCommands();
}

void VTMainWindowController::accordionView_drawPlaceHolderBackgroundInFrame(KLVAccordionView *view, const QRectF &frame)
{
    const QString text = view == eventsAccordion() ? QCoreApplication::translate("Vantle", "No events scheduled")
                                                   : QCoreApplication::translate("Vantle", "No to dos");
    KLVDrawings::drawPlaceholder(
        *view->graphicsContext(), KLVTheme(view->palette()), text, frame, QApplication::font());
}

void VTMainWindowController::accordionView_drawSelectedBackgroundForItem_frame(
    KLVAccordionView *view, const KeyValueObjectPtr & /*object*/, const QRectF &frame)
{
    const auto item = std::dynamic_pointer_cast<CalCalendarItem>(view->selectedObjects().value(0));
    if (!item || !item->calendar())
        return;
    KLVDrawings::drawSelectedBackground(*view->graphicsContext(), frame, item->calendar()->color());
}
