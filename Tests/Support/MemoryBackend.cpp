// SPDX-License-Identifier: MIT
#include "MemoryBackend.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

template <typename Record> std::shared_ptr<Record> independentCopy(const Record &item)
{
    auto copy = std::make_shared<Record>(item);
    CalAlarmList alarms;
    for (const CalAlarmPtr &alarm : item.alarms())
        alarms.append(std::make_shared<CalAlarm>(*alarm));
    copy->setAlarms(alarms);
    return copy;
}

// As a back end hands it out: without the uid that only the store can give.
template <typename Record> std::shared_ptr<Record> handedOut(const Record &item)
{
    auto copy = independentCopy(item);
    copy->setUid({});
    copy->markAsRead();
    return copy;
}

template <typename Record>
std::shared_ptr<Record> stored(const Record &item, const CalCalendarPtr &calendar, int version)
{
    auto copy = independentCopy(item);
    copy->setCalendar(calendar);
    CalItemOrigin origin = copy->origin();
    origin.version = QByteArray::number(version);
    copy->setOrigin(origin);
    return copy;
}

bool isInRange(const CalEvent &event, const QDateTime &start, const QDateTime &end)
{
    if (event.startDate() > end)
        return false;
    return event.endDate() > start || (event.endDate() == event.startDate() && event.startDate() >= start);
}

bool isAskedFor(const CalTask &task, CalendarStoreBackend::TaskState state, const QDateTime &since)
{
    switch (state) {
    case CalendarStoreBackend::TaskState::Any:
        return true;
    case CalendarStoreBackend::TaskState::Uncompleted:
        return !task.isCompleted();
    case CalendarStoreBackend::TaskState::CompletedSince:
        return task.isCompleted() && task.completedDate() && *task.completedDate() >= since;
    }
    return false;
}

bool isIn(const CalCalendarItem &item, const CalCalendarList &calendars)
{
    return std::ranges::any_of(
        calendars, [&item](const CalCalendarPtr &calendar) { return calendar->uid() == item.calendar()->uid(); });
}

} // namespace

void MemoryBackend::addCalendar(const CalCalendarPtr &calendar)
{
    m_calendars.append(calendar);
}

void MemoryBackend::removeCalendar(const QString &uid)
{
    const auto isOfCalendar = [&uid](const CalCalendarItemPtr &item) { return item->calendar()->uid() == uid; };
    m_events.removeIf(isOfCalendar);
    m_tasks.removeIf(isOfCalendar);
    m_calendars.removeIf([&uid](const CalCalendarPtr &calendar) { return calendar->uid() == uid; });
}

void MemoryBackend::addEvent(const QString &calendarUid, const CalEventPtr &event)
{
    const CalCalendarPtr calendar = calendarWithUid(calendarUid);
    Q_ASSERT(calendar);
    m_events.append(stored(*event, calendar, ++m_lastVersion));
}

void MemoryBackend::addTask(const QString &calendarUid, const CalTaskPtr &task)
{
    const CalCalendarPtr calendar = calendarWithUid(calendarUid);
    Q_ASSERT(calendar);
    m_tasks.append(stored(*task, calendar, ++m_lastVersion));
}

void MemoryBackend::removeItem(const QString &plainUid)
{
    const auto isNamed = [&plainUid](const CalCalendarItemPtr &item) { return item->origin().plainUid == plainUid; };
    m_events.removeIf(isNamed);
    m_tasks.removeIf(isNamed);
}

void MemoryBackend::removeAllItems()
{
    m_events.clear();
    m_tasks.clear();
}

void MemoryBackend::refuseSaves(StoreError::Code code, const QString &reason)
{
    m_refusal = StoreError { code, {}, {}, reason };
}

void MemoryBackend::finishLoading()
{
    m_isComplete = true;
    QMetaObject::invokeMethod(this, &MemoryBackend::loaded, Qt::QueuedConnection);
}

void MemoryBackend::postChange(const CalBackendChange &change)
{
    QMetaObject::invokeMethod(
        this, [this, change] { Q_EMIT changed(change); }, Qt::QueuedConnection);
}

void MemoryBackend::postEventsChange()
{
    postChange({ .events = true, .calendarUids = {} });
}

void MemoryBackend::postTasksChange()
{
    postChange({ .tasks = true, .calendarUids = {} });
}

void MemoryBackend::postCalendarsChange()
{
    postChange({ .calendars = true, .calendarUids = {} });
}

CalTaskPtr MemoryBackend::storedTask(const QString &plainUid) const
{
    const auto found = std::ranges::find_if(
        m_tasks, [&plainUid](const CalTaskPtr &task) { return task->origin().plainUid == plainUid; });
    return found == m_tasks.end() ? nullptr : *found;
}

bool MemoryBackend::holdsUid(const QString &calendarUid, const QString &plainUid) const
{
    const auto isIt = [&](const CalCalendarItemPtr &item) {
        return item->origin().plainUid == plainUid && item->calendar()->uid() == calendarUid;
    };
    return std::ranges::any_of(m_events, isIt) || std::ranges::any_of(m_tasks, isIt);
}

CalEventList MemoryBackend::events(const QDateTime &start, const QDateTime &end, const CalCalendarList &calendars) const
{
    ++m_eventQueries;
    CalEventList found;
    for (const CalEventPtr &event : m_events) {
        if (isIn(*event, calendars) && isInRange(*event, start, end))
            found.append(handedOut(*event));
    }
    return found;
}

CalTaskList MemoryBackend::tasks(TaskState state, const QDateTime &since, const CalCalendarList &calendars) const
{
    ++m_taskQueries;
    CalTaskList found;
    for (const CalTaskPtr &task : m_tasks) {
        if (isIn(*task, calendars) && isAskedFor(*task, state, since))
            found.append(handedOut(*task));
    }
    return found;
}

Result<void, StoreError> MemoryBackend::saveTask(CalTask &task)
{
    ++m_saves;
    const QString title = task.title().value_or(QString());
    if (m_refusal)
        return StoreError { m_refusal->code, title, task.calendar()->title(), m_refusal->reason };

    const auto place = std::ranges::find_if(m_tasks,
        [&task](const CalTaskPtr &candidate) { return candidate->origin().plainUid == task.origin().plainUid; });
    if (place == m_tasks.end())
        return StoreError { StoreError::Code::NotFound, title, task.calendar()->title(), u"It is gone."_s };
    if ((*place)->origin().version != task.origin().version)
        return StoreError { StoreError::Code::Conflict, title, task.calendar()->title(), u"It was changed."_s };

    if (!task.isCompleted())
        task.setCompletedDate(std::nullopt);
    else if (!task.completedDate())
        task.setCompletedDate(m_completionInstant);
    *place = stored(task, calendarWithUid(task.calendar()->uid()), ++m_lastVersion);
    task.setOrigin((*place)->origin());
    task.markAsRead();
    postChange(
        { .author = CalBackendChange::Author::Ourselves, .tasks = true, .calendarUids = { task.calendar()->uid() } });
    return {};
}

CalCalendarPtr MemoryBackend::calendarWithUid(const QString &uid) const
{
    const auto found
        = std::ranges::find_if(m_calendars, [&uid](const CalCalendarPtr &calendar) { return calendar->uid() == uid; });
    return found == m_calendars.end() ? nullptr : *found;
}
