// SPDX-License-Identifier: MIT
#include "VTDayContents.h"

#include <CalCalendarStore+VTHelper.h>
#include <CalCalendarStore.h>
#include <CalTask+VTHelpers.h>
#include <QDateTime+VTHelper.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace
{

constexpr int daysPerWeek = 7;
constexpr qint32 secondsPerDay = 86400;
constexpr qint64 secondsToWeekEnd = 604799;

int weekday(const QDateTime &date)
{
    return date.toLocalTime().date().dayOfWeek() % daysPerWeek + 1;
}

using Order = std::weak_ordering;

// False before true, so what lacks the value comes after all that has it.
Order compareFlags(bool left, bool right)
{
    return static_cast<int>(left) <=> static_cast<int>(right);
}

// What a to-do is sorted by, taken once from each: telling the instant of a local time asks the system.
struct SortKey {
    explicit SortKey(CalTaskPtr toDo)
        : task(std::move(toDo))
        , isWithoutDueDate(VTDueDateIsNotSet(*task))
        , due(task->dueDate() ? task->dueDate()->toMSecsSinceEpoch() : 0)
    {
    }

    CalTaskPtr task;
    bool isWithoutDueDate;
    qint64 due; // milliseconds since 1970
};

Order compareDueDates(const SortKey &left, const SortKey &right)
{
    const Order absence = compareFlags(left.isWithoutDueDate, right.isWithoutDueDate);
    return absence != 0 ? absence : left.due <=> right.due;
}

Order comparePriorities(const CalTask &left, const CalTask &right)
{
    const Order absence = compareFlags(VTPriorityIsNone(left), VTPriorityIsNone(right));
    return absence != 0 ? absence : left.priority() <=> right.priority();
}

Order compareTitles(const CalTask &left, const CalTask &right, const QCollator &collator)
{
    const Order presence = compareFlags(left.title().has_value(), right.title().has_value());
    if (presence != 0 || !left.title())
        return presence;
    return collator.compare(*left.title(), *right.title()) <=> 0;
}

} // namespace

VTWeekBounds VTWeekBoundsOfDay(const QDateTime &date, int weekStartDay)
{
    int daysIntoWeek = weekday(date) - weekStartDay;
    if (daysIntoWeek < 0)
        daysIntoWeek += daysPerWeek;

    const qint64 start = firstSecondOfDay(date).toSecsSinceEpoch() - daysIntoWeek * secondsPerDay;
    return { QDateTime::fromSecsSinceEpoch(start), QDateTime::fromSecsSinceEpoch(start + secondsToWeekEnd) };
}

QStringList VTIdentifiersOfCalendar(const CalCalendarStore &store, const QString &calendarUid)
{
    QStringList identifiers { calendarUid };
    for (const CalItemKind kind : { CalItemKind::Event, CalItemKind::Task }) {
        const QString source = store.desktopSourceUid(calendarUid, kind);
        if (!source.isEmpty() && !identifiers.contains(source) && !store.calendarWithUID(source))
            identifiers.append(source);
    }
    return identifiers;
}

bool VTIsUnselected(
    const CalCalendarStore &store, const QString &calendarUid, const QStringList &unselectedCalendarsUID)
{
    if (unselectedCalendarsUID.isEmpty())
        return false;
    return std::ranges::any_of(VTIdentifiersOfCalendar(store, calendarUid),
        [&](const QString &identifier) { return unselectedCalendarsUID.contains(identifier); });
}

CalCalendarList VTSelectedCalendars(
    const CalCalendarStore &store, const std::optional<QStringList> &unselectedCalendarsUID)
{
    QStringList selected = calendarsUID(store);
    if (unselectedCalendarsUID)
        selected.removeIf([&](const QString &uid) { return VTIsUnselected(store, uid, *unselectedCalendarsUID); });
    return calendarsForUIDs(store, selected);
}

CalEventList VTEventsOfDay(const CalCalendarStore &store, const VTDayQuestion &question)
{
    return store.eventsWithPredicate(
        CalCalendarStore::eventPredicateWithStartDate_endDate_calendars(firstSecondOfDay(question.date),
            lastSecondOfDay(question.date), VTSelectedCalendars(store, question.unselectedCalendarsUID)));
}

CalTaskList VTTasksOfDay(const CalCalendarStore &store, const VTDayQuestion &question)
{
    const CalCalendarList calendars = VTSelectedCalendars(store, question.unselectedCalendarsUID);
    const VTWeekBounds week = VTWeekBoundsOfDay(question.date, question.weekStartDay);

    CalTaskList tasks;
    if (question.showAllCompletedTasks) {
        tasks = store.tasksWithPredicate(CalCalendarStore::taskPredicateWithCalendars(calendars));
    } else {
        tasks = store.tasksWithPredicate(
            CalCalendarStore::taskPredicateWithTasksCompletedSince_calendars(week.start, calendars));
        tasks += store.tasksWithPredicate(CalCalendarStore::taskPredicateWithUncompletedTasks(calendars));
    }
    if (question.hideTasksDueAfterThisWeek)
        tasks.removeIf([&](const CalTaskPtr &task) { return task->dueDate() && *task->dueDate() >= week.end; });
    return tasks;
}

CalTaskList VTSortedTasks(CalTaskList tasks, int sortMethod, QCollator collator)
{
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::vector<SortKey> keys;
    keys.reserve(static_cast<std::size_t>(tasks.size()));
    for (const CalTaskPtr &task : tasks)
        keys.emplace_back(task);
    std::ranges::stable_sort(keys, [&](const SortKey &left, const SortKey &right) {
        Order order = Order::equivalent;
        if (sortMethod == VTSortByDueDate)
            order = compareDueDates(left, right);
        else if (sortMethod == VTSortByPriority)
            order = comparePriorities(*left.task, *right.task);
        return (order != 0 ? order : compareTitles(*left.task, *right.task, collator)) < 0;
    });
    std::ranges::transform(keys, tasks.begin(), &SortKey::task);
    return tasks;
}
