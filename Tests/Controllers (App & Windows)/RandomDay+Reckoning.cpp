// SPDX-License-Identifier: MIT
#include "RandomDay.h"

#include <KLVAccordionView.h>

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

// What is reckoned, and whether the window agrees.

namespace
{

QStringList uidsOfObjects(const KLVRepresentedObjects &objects)
{
    QStringList uids;
    for (const KeyValueObjectPtr &object : objects)
        uids.append(std::dynamic_pointer_cast<CalCalendarItem>(object)->uid());
    return uids;
}

} // namespace

// --- What is asked of the window ---

QString RandomDay::problem() const
{
    if (!m_trouble.isEmpty())
        return m_trouble;
    const auto differs = [](const QString &what, const auto &found, const auto &reckoned) {
        return u"%1: %2 instead of %3"_s.arg(what, QDebug::toString(found), QDebug::toString(reckoned));
    };

    QStringList events;
    for (const Item &item : m_events)
        events.append(item.uid + u' ' + item.title);
    QStringList shownEvents;
    for (const CalEventPtr &event : m_controller.events())
        shownEvents.append(event->uid() + u' ' + event->title().value_or(QString()));
    if (shownEvents != events)
        return differs(u"events"_s, shownEvents, events);

    QStringList tasks;
    for (const Item &item : m_tasks)
        tasks.append(item.uid + u' ' + item.title + (item.isDone ? u" done"_s : QString()));
    QStringList shownTasks;
    for (const CalTaskPtr &task : m_controller.tasks())
        shownTasks.append(
            task->uid() + u' ' + task->title().value_or(QString()) + (task->isCompleted() ? u" done"_s : QString()));
    if (shownTasks != tasks)
        return differs(u"to-dos"_s, shownTasks, tasks);

    if (m_controller.selectedCalItemUID() != m_selected)
        return differs(
            u"selection"_s, m_controller.selectedCalItemUID().value_or(u"none"_s), m_selected.value_or(u"none"_s));
    const int place = selectedPlace();
    const CalCalendarItemPtr item = m_controller.selectedCalItem();
    if ((place < 0) != (item == nullptr) || (item && item->uid() != column().at(place)))
        return differs(u"selected item"_s, item ? item->uid() : u"none"_s, place);

    const bool isEvent = place >= 0 && place < m_events.size();
    const QStringList selected = place < 0 ? QStringList() : QStringList(*m_selected);
    for (const auto &[list, uids, hasSelection] :
        { std::tuple(m_controller.eventsAccordion(), uidsOf(m_controller.events()), isEvent),
            std::tuple(m_controller.tasksAccordion(), uidsOf(m_controller.tasks()), place >= 0 && !isEvent) }) {
        if (uidsOfObjects(list->representedObjects()) != uids)
            return differs(u"rows"_s, uidsOfObjects(list->representedObjects()), uids);
        if (uidsOfObjects(list->selectedObjects()) != selected)
            return differs(u"selected objects"_s, uidsOfObjects(list->selectedObjects()), selected);
        QStringList selectedRows;
        for (const KLVAccordionViewItemPtr &row : list->accordionViewItems()) {
            if (row->isSelected())
                selectedRows += uidsOfObjects({ row->representedObject() });
        }
        if (selectedRows != (hasSelection ? selected : QStringList()))
            return differs(u"selected rows"_s, selectedRows, selected);
    }

    const MemoryBackend &backend = m_fixture.backend();
    if (backend.storedEvents() + backend.storedTasks() != m_stored.size())
        return differs(u"stored items"_s, backend.storedEvents() + backend.storedTasks(), m_stored.size());
    const CalCalendarStore &store = m_fixture.calendars.store();
    CalCalendarItemList all;
    for (const CalEventPtr &event :
        store.eventsWithPredicate(CalCalendarStore::eventPredicateWithStartDate_endDate_calendars(
            mondayOf(today).addDays(-60).startOfDay(), mondayOf(today).addDays(60).startOfDay(), store.calendars())))
        all.append(event);
    for (const CalTaskPtr &task :
        store.tasksWithPredicate(CalCalendarStore::taskPredicateWithCalendars(store.calendars())))
        all.append(task);
    for (const CalCalendarItemPtr &each : all) {
        const auto reckoned = m_stored.constFind(each->uid());
        if (reckoned == m_stored.constEnd())
            return differs(u"stored item"_s, each->uid(), u"nothing"_s);
        const auto task = std::dynamic_pointer_cast<CalTask>(each);
        if (each->title() != reckoned->title || each->calendar()->uid() != reckoned->calendar
            || (task ? task->isCompleted() : false) != reckoned->isDone)
            return differs(u"stored item"_s, each->title().value_or(QString()) + each->calendar()->uid(),
                reckoned->title + reckoned->calendar);
    }

    const std::optional<QString> undoable = store.undoableRemovalTitle();
    if (undoable.has_value() == m_removed.isEmpty() || (undoable && *undoable != m_removed.first().title))
        return differs(u"what can be taken back"_s, undoable.value_or(u"nothing"_s), m_removed.size());
    if (m_fixture.alerts.messages.size() != m_alerts)
        return differs(u"alerts"_s, m_fixture.alerts.messages.size(), m_alerts);
    if (m_fixture.beeper.beeps != m_beeps)
        return differs(u"beeps"_s, m_fixture.beeper.beeps, m_beeps);
    return {};
}

// --- What the lists come to show ---

void RandomDay::notify()
{
    // Instead of the store's own, which would come with the clock on the wall.
    QCoreApplication::removePostedEvents(&m_fixture.backend(), QEvent::MetaCall);
    tell(u"refetch"_s);
    Q_EMIT m_fixture.calendars.store().notificationPosted({ CalEventsChangedExternallyNotification, {} });
    refetch();
}

void RandomDay::refetch()
{
    m_events.clear();
    m_tasks.clear();
    const bool showsDone = QDateTime(mondayOf(m_day), QTime(0, 0)) <= m_fixture.clock.now();
    for (const Item &item : std::as_const(m_stored)) {
        if (item.calendar == work && !m_showsWork)
            continue;
        if (item.isEvent && item.start.date() == m_day)
            m_events.append(item);
        else if (!item.isEvent && (!item.isDone || showsDone))
            m_tasks.append(item);
    }
    std::ranges::sort(m_events, [](const Item &left, const Item &right) {
        return std::tie(left.start, left.title, left.uid) < std::tie(right.start, right.title, right.uid);
    });
    sortShownTasks();
}

// None has a due date or a priority, so each order is that of the titles.
void RandomDay::sortShownTasks()
{
    std::ranges::sort(m_tasks, {}, &Item::title);
}
