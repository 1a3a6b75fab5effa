// SPDX-License-Identifier: MIT
#include "VTMainWindowController.h"

#include "VTMainWindow.h"

#include <CalCalendarItem.h>
#include <KLVAccordionScrollArea.h>
#include <KLVAccordionView.h>
#include <KLVDateBar.h>
#include <KLVDateNavigator.h>
#include <KLVDrawings.h>
#include <KLVKeyBindings.h>
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
    const auto goActions = m_window->goActions();
    for (QAction *action : goActions)
        connect(action, &QAction::triggered, this, [this, action] { setDateRelativeToSenderTag(action); });
    connect(m_window->toogleDateBarAction(), &QAction::triggered, this, [this] { toogleDateBar(); });
    m_dateBarTitleBinding = std::make_unique<KeyValueBinding>(*this, u"showHideDateBarMenuTitle"_s,
        [this](const QVariant &title) { m_window->toogleDateBarAction()->setText(title.toString()); });
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

QString VTMainWindowController::showHideCalendarDrawerMenuTitle() const
{
    return m_showCalendarDrawer ? QCoreApplication::translate("Vantle", "Hide Calendars Drawer")
                                : QCoreApplication::translate("Vantle", "Show Calendars Drawer");
}

const VTDateFormatter &VTMainWindowController::dateLabelFormatter() const
{
    return isInCurrentYear(date(), m_services.clock.now()) ? m_headerFromatterWithoutYear : m_headerFromatterWithYear;
}

void VTMainWindowController::updateControls()
{
    if (!m_window)
        return;
    dateLabel()->setText(dateLabelFormatter().stringFromDate(date()));
    dateNavigator()->setLabel_forSegment(
        m_navigatorFormatter.stringFromDate(m_services.clock.now()), KLVDateNavigator::middleSegment);
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
