// SPDX-License-Identifier: MIT
#include "VTMainWindowController.h"

#include <Beeper.h>
#include <CalCalendarItem+VTHelper.h>
#include <CalTask+VTHelpers.h>
#include <KLVAccordionView.h>
#include <KLVDatePicker.h>
#include <VTCalEventController.h>
#include <VTCalTaskController.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

template <typename Item> CalCalendarItemList itemsWithUid(const QList<std::shared_ptr<Item>> &items, const QString &uid)
{
    CalCalendarItemList found;
    for (const auto &item : items) {
        if (item->uid() == uid)
            found.append(item);
    }
    return found;
}

// By the store's notion of equality; -1 when there is none.
template <typename Item> qsizetype positionOf(const CalCalendarItemPtr &item, const QList<std::shared_ptr<Item>> &items)
{
    const auto found = std::ranges::find_if(items, [&](const auto &candidate) { return candidate->isEqual(*item); });
    return found == items.end() ? -1 : found - items.begin();
}

} // namespace

void VTMainWindowController::setSelectedCalItemUID(const std::optional<QString> &uid)
{
    willChangeValueForKey(u"selectedCalItem"_s);
    willChangeValueForKey(u"selectedCalItems"_s);
    m_selectedCalItemUID = uid;
    didChangeValueForKey(u"selectedCalItem"_s);
    didChangeValueForKey(u"selectedCalItems"_s);
}

std::optional<CalCalendarItemList> VTMainWindowController::selectedCalItems() const
{
    if (!m_selectedCalItemUID)
        return std::nullopt;
    CalCalendarItemList items = itemsWithUid(m_events, *m_selectedCalItemUID);
    if (items.isEmpty())
        items = itemsWithUid(m_tasks, *m_selectedCalItemUID);
    return items.isEmpty() ? std::nullopt : std::optional(items);
}

CalCalendarItemPtr VTMainWindowController::selectedCalItem() const
{
    const auto items = selectedCalItems();
    return items ? items->last() : nullptr;
}

void VTMainWindowController::validateSelection()
{
    disarmFirstSelection();
    const CalCalendarItemPtr selected = selectedCalItem();
    if (!selected || (positionOf(selected, m_events) < 0 && positionOf(selected, m_tasks) < 0))
        setSelectedCalItemUID(std::nullopt);
}

void VTMainWindowController::moveUp(QObject * /*sender*/)
{
    moveSelectionUp();
}

void VTMainWindowController::moveDown(QObject * /*sender*/)
{
    moveSelectionDown();
}

void VTMainWindowController::moveSelectionUp(QObject * /*sender*/)
{
    validateSelection();
    const CalCalendarItemPtr selected = selectedCalItem();
    if (!selected) {
        if (!m_tasks.isEmpty())
            setSelectedCalItemUID(lastTaskUID());
        else if (!m_events.isEmpty())
            setSelectedCalItemUID(lastEventUID());
        else
            m_services.beeper.beep();
        return;
    }

    const qsizetype task = positionOf(selected, m_tasks);
    const qsizetype event = positionOf(selected, m_events);
    if (task > 0) {
        setSelectedCalItemUID(m_tasks.at(task - 1)->uid());
    } else if (task == 0 && !m_events.isEmpty()) {
        setSelectedCalItemUID(lastEventUID());
        moveFirstResponder(tasksAccordion(), eventsAccordion());
    } else if (event > 0) {
        setSelectedCalItemUID(m_events.at(event - 1)->uid());
    } else {
        m_services.beeper.beep();
    }
}

void VTMainWindowController::moveSelectionDown(QObject * /*sender*/)
{
    validateSelection();
    const CalCalendarItemPtr selected = selectedCalItem();
    if (!selected) {
        if (!m_events.isEmpty())
            setSelectedCalItemUID(firstEventUID());
        else if (!m_tasks.isEmpty())
            setSelectedCalItemUID(firstTaskUID());
        else
            m_services.beeper.beep();
        return;
    }

    if (!m_events.isEmpty() && selected == m_events.last()) {
        // There is no first to-do to go to: the command is given up, without a beep.
        if (m_tasks.isEmpty())
            return;
        setSelectedCalItemUID(firstTaskUID());
        moveFirstResponder(eventsAccordion(), tasksAccordion());
    } else if (const qsizetype event = positionOf(selected, m_events); event >= 0) {
        setSelectedCalItemUID(m_events.at(event + 1)->uid());
    } else if (selected == m_tasks.last()) {
        m_services.beeper.beep();
    } else {
        setSelectedCalItemUID(m_tasks.at(positionOf(selected, m_tasks) + 1)->uid());
    }
}

void VTMainWindowController::insertNewline(QObject *sender)
{
    disarmFirstSelection();
    // A date was typed and has been gone to: Return has done its work.
    if (sender && sender == textDatePicker() && textDatePicker()->returnTookOverAnEdit()) {
        makeFirstResponder(listOfSelection());
        return;
    }
    const auto items = selectedCalItems();
    if (!items)
        return;
    // The row of a to-do saves it when it sees the change.
    for (const auto &item : *items) {
        if (const auto task = std::dynamic_pointer_cast<CalTask>(item))
            VTToogleCompletedStatus(*task);
    }
}

void VTMainWindowController::moveFirstResponder(KLVAccordionView *from, KLVAccordionView *to)
{
    if (from && from->isFirstResponder())
        makeFirstResponder(to);
}

void VTMainWindowController::makeFirstResponder(KLVAccordionView *view)
{
    if (view)
        view->setFocus(Qt::OtherFocusReason);
}

KLVAccordionViewItemPtr VTMainWindowController::accordionView_itemForRepresentedObject(
    KLVAccordionView * /*view*/, const KeyValueObjectPtr &object)
{
    const VTRowEnvironment environment { m_services.store, m_services.workspace, m_services.clock,
        [this] { return m_dateProperty; } };
    std::shared_ptr<VTCalCalendarItemController> row;
    if (std::dynamic_pointer_cast<CalEvent>(object))
        row = std::make_shared<VTCalEventController>(environment);
    else if (std::dynamic_pointer_cast<CalTask>(object))
        row = std::make_shared<VTCalTaskController>(environment);
    if (row)
        row->setDelegate(this);
    return row;
}

bool VTMainWindowController::accordionView_mouseDown_forRepresentedObject(
    KLVAccordionView * /*view*/, const KLVMouseEvent &event, const KeyValueObjectPtr &object)
{
    disarmFirstSelection();
    const auto item = std::dynamic_pointer_cast<CalCalendarItem>(object);
    if (!item)
        return false;

    setSelectedCalItemUID(item->uid());
    if (positionOf(item, m_events) >= 0)
        makeFirstResponder(eventsAccordion());
    else if (positionOf(item, m_tasks) >= 0)
        makeFirstResponder(tasksAccordion());

    if (event.button == Qt::RightButton) {
        if (QMenu *const menu = calItemContextMenu())
            menu->popup(event.globalPosition);
    } else if (event.modifiers.testFlag(Qt::ControlModifier)) {
        // Control takes the place of the Command key for clicks.
        showInICal(item);
    } else if (event.clickCount >= 2) {
        editSelectedItem();
    }
    return true;
}

void VTMainWindowController::showInICal(const CalCalendarItemPtr &item) const
{
    if (m_services.calendarApplication)
        ::showInICal(*item, *m_services.calendarApplication);
}
