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
    // A sound makes a message alarm a sound alarm.
    for (const CalAlarmPtr &alarm : copy->alarms()) {
        if (alarm->sound() && alarm->action() == CalAlarmActionDisplay)
            alarm->setAction(CalAlarmActionSound);
    }
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

bool isSameItem(const CalCalendarItem &left, const CalCalendarItem &right)
{
    return left.origin().plainUid == right.origin().plainUid
        && left.origin().recurrenceId == right.origin().recurrenceId;
}

// Where an item is held; the list's end when it is not.
template <typename Record, typename List> auto placeOf(const Record &item, List &held)
{
    return std::ranges::find_if(held, [&item](const auto &candidate) { return isSameItem(*candidate, item); });
}

StoreError refused(const CalCalendarItem &item, StoreError::Code code, const QString &reason)
{
    return { code, item.title().value_or(QString()), item.calendar()->title(), reason };
}

} // namespace

void MemoryBackend::addCalendar(const CalCalendarPtr &calendar)
{
    m_calendars.append(calendar);
}

void MemoryBackend::replaceCalendar(const CalCalendarPtr &calendar)
{
    for (CalCalendarPtr &held : m_calendars) {
        if (held->uid() == calendar->uid())
            held = calendar;
    }
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

void MemoryBackend::removeItem(const QString &calendarUid, const QString &plainUid)
{
    const auto isNamed = [&](const CalCalendarItemPtr &item) {
        return item->origin().plainUid == plainUid && item->calendar()->uid() == calendarUid;
    };
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
    m_refusesOnce = false;
}

void MemoryBackend::refuseNextSave(StoreError::Code code, const QString &reason)
{
    refuseSaves(code, reason);
    m_refusesOnce = true;
}

void MemoryBackend::finishLoading()
{
    m_isComplete = true;
    QMetaObject::invokeMethod(this, &MemoryBackend::loaded, Qt::QueuedConnection);
}

void MemoryBackend::setSilentCalendars(const QStringList &uids)
{
    m_silentCalendars = uids;
    QMetaObject::invokeMethod(this, &MemoryBackend::silenceDidChange, Qt::QueuedConnection);
}

void MemoryBackend::setUnreached(bool isUnreached)
{
    m_isUnreached = isUnreached;
    QMetaObject::invokeMethod(this, &MemoryBackend::silenceDidChange, Qt::QueuedConnection);
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

CalEventPtr MemoryBackend::storedEvent(const QString &plainUid) const
{
    const auto found = std::ranges::find_if(
        m_events, [&plainUid](const CalEventPtr &event) { return event->origin().plainUid == plainUid; });
    return found == m_events.end() ? nullptr : *found;
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

Result<void, StoreError> MemoryBackend::saveEvent(CalEvent &event, CalSpan span)
{
    ++m_saves;
    const bool isOfAll = span == CalSpanAllEvents;
    m_writes << u"%1: %2"_s.arg(isOfAll ? u"all"_s : u"this"_s, event.title().value_or(QString()));
    if (const auto refusal = reasonToRefuse(event, m_events))
        return *refusal;

    const bool isFirstStep = event.recurrenceRule() && !isOfAll;
    if (!event.origin().isStored())
        create(event, m_events);
    if (isOfAll && event.recurrenceRule() && event.asRead())
        saveAllOfSeries(event);
    // On a series only the span of all moves it to another calendar.
    const auto place = placeOf(event, m_events);
    const CalCalendarPtr from = (*place)->calendar();
    const CalCalendarPtr calendar = isFirstStep ? from : event.calendar();
    *place = stored(event, calendarWithUid(calendar->uid()), ++m_lastVersion);
    event.setOrigin((*place)->origin());
    if (!isFirstStep)
        event.markAsRead();
    announceOwn(event, { from->uid(), calendar->uid() });
    return {};
}

Result<void, StoreError> MemoryBackend::saveTask(CalTask &task)
{
    ++m_saves;
    m_writes << u"task: "_s + task.title().value_or(QString());
    if (const auto refusal = reasonToRefuse(task, m_tasks))
        return *refusal;

    if (!task.isCompleted())
        task.setCompletedDate(std::nullopt);
    else if (!task.completedDate())
        task.setCompletedDate(m_completionInstant);
    if (!task.origin().isStored())
        create(task, m_tasks);
    const auto place = placeOf(task, m_tasks);
    const CalCalendarPtr from = (*place)->calendar();
    *place = stored(task, calendarWithUid(task.calendar()->uid()), ++m_lastVersion);
    task.setOrigin((*place)->origin());
    task.markAsRead();
    announceOwn(task, { from->uid(), task.calendar()->uid() });
    return {};
}

// What was taken out, to be put back as it was.
class MemoryBackend::Removal final : public CalRemoval
{
public:
    Removal(MemoryBackend &backend, CalEventList events, CalTaskList tasks)
        : m_backend(backend)
        , m_events(std::move(events))
        , m_tasks(std::move(tasks))
    {
    }

    Result<void, StoreError> takeBack() override
    {
        const CalCalendarItem &item = m_events.isEmpty() ? static_cast<const CalCalendarItem &>(*m_tasks.first())
                                                         : static_cast<const CalCalendarItem &>(*m_events.first());
        if (const auto refusal = m_backend.takeRefusal(item))
            return *refusal;
        if (!m_backend.calendarWithUid(item.calendar()->uid()))
            return refused(item, StoreError::Code::NotFound, u"The calendar is gone."_s);
        const auto isBack = [this](const auto &each) { return placeIn(*each); };
        if (std::ranges::any_of(m_events, isBack) || std::ranges::any_of(m_tasks, isBack))
            return refused(item, StoreError::Code::Conflict, u"It is there again."_s);
        m_backend.m_events += m_events;
        m_backend.m_tasks += m_tasks;
        m_backend.announceOwn(item, { item.calendar()->uid() });
        return {};
    }

private:
    bool placeIn(const CalEvent &event) const { return placeOf(event, m_backend.m_events) != m_backend.m_events.end(); }
    bool placeIn(const CalTask &task) const { return placeOf(task, m_backend.m_tasks) != m_backend.m_tasks.end(); }

    MemoryBackend &m_backend;
    CalEventList m_events;
    CalTaskList m_tasks;
};

Result<std::unique_ptr<CalRemoval>, StoreError> MemoryBackend::removeEvent(const CalEvent &event, CalSpan span)
{
    ++m_removals;
    const bool isOfAll = span == CalSpanAllEvents;
    m_writes << u"remove %1: %2"_s.arg(isOfAll ? u"all"_s : u"this"_s, event.title().value_or(QString()));
    if (const auto refusal = reasonToRefuse(event, m_events))
        return *refusal;

    CalEventList removed;
    for (const CalEventPtr &each : std::as_const(m_events)) {
        const bool isMeant = isOfAll ? each->origin().plainUid == event.origin().plainUid : isSameItem(*each, event);
        if (isMeant)
            removed.append(each);
    }
    m_events.removeIf([&removed](const CalEventPtr &each) { return removed.contains(each); });
    announceOwn(event, { removed.first()->calendar()->uid() });
    return std::unique_ptr<CalRemoval>(std::make_unique<Removal>(*this, removed, CalTaskList()));
}

Result<std::unique_ptr<CalRemoval>, StoreError> MemoryBackend::removeTask(const CalTask &task)
{
    ++m_removals;
    m_writes << u"remove task: "_s + task.title().value_or(QString());
    if (const auto refusal = reasonToRefuse(task, m_tasks))
        return *refusal;

    const auto place = placeOf(task, m_tasks);
    const CalTaskList removed { *place };
    m_tasks.erase(place);
    announceOwn(task, { removed.first()->calendar()->uid() });
    return std::unique_ptr<CalRemoval>(std::make_unique<Removal>(*this, CalEventList(), removed));
}

// Nothing when the item is new, or stored in the version that was read.
template <typename Record>
std::optional<StoreError> MemoryBackend::reasonToRefuse(const Record &item, const QList<std::shared_ptr<Record>> &held)
{
    if (const auto refusal = takeRefusal(item))
        return refusal;
    if (!item.origin().isStored())
        return std::nullopt;
    const auto place = placeOf(item, held);
    if (place == held.end())
        return refused(item, StoreError::Code::NotFound, u"It is gone."_s);
    if ((*place)->origin().version != item.origin().version)
        return refused(item, StoreError::Code::Conflict, u"It was changed."_s);
    return std::nullopt;
}

std::optional<StoreError> MemoryBackend::takeRefusal(const CalCalendarItem &item)
{
    if (!m_refusal)
        return std::nullopt;
    const StoreError refusal = refused(item, m_refusal->code, m_refusal->reason);
    if (m_refusesOnce)
        m_refusal.reset();
    return refusal;
}

template <typename Record> void MemoryBackend::create(Record &item, QList<std::shared_ptr<Record>> &held)
{
    CalItemOrigin origin;
    origin.plainUid = u"new-%1"_s.arg(++m_lastVersion);
    origin.resource = origin.plainUid + u".ics"_s;
    item.setOrigin(origin);
    held.append(stored(item, calendarWithUid(item.calendar()->uid()), m_lastVersion));
}

// What differs from what was read goes to all occurrences, their times by the difference.
void MemoryBackend::saveAllOfSeries(const CalEvent &event)
{
    const CalEvent &read = *event.asRead();
    const qint64 startShift = read.startDate().secsTo(event.startDate());
    const qint64 endShift = read.endDate().secsTo(event.endDate());
    for (CalEventPtr &each : m_events) {
        if (each->origin().plainUid != event.origin().plainUid || isSameItem(*each, event))
            continue;
        const auto other = independentCopy(*each);
        other->setStartDate(each->startDate().addSecs(startShift));
        other->setEndDate(each->endDate().addSecs(endShift));
        if (event.title() != read.title())
            other->setTitle(event.title());
        if (event.notes() != read.notes())
            other->setNotes(event.notes());
        if (event.url() != read.url())
            other->setUrl(event.url());
        if (event.location() != read.location())
            other->setLocation(event.location());
        if (event.isAllDay() != read.isAllDay())
            other->setIsAllDay(event.isAllDay());
        each = stored(*other, calendarWithUid(event.calendar()->uid()), ++m_lastVersion);
    }
}

void MemoryBackend::announceOwn(const CalCalendarItem &item, const QSet<QString> &calendarUids)
{
    const bool isEvent = item.kind() == CalItemKind::Event;
    postChange({ .author = CalBackendChange::Author::Ourselves,
        .events = isEvent,
        .tasks = !isEvent,
        .calendarUids = calendarUids });
}

CalCalendarPtr MemoryBackend::calendarWithUid(const QString &uid) const
{
    const auto found
        = std::ranges::find_if(m_calendars, [&uid](const CalCalendarPtr &calendar) { return calendar->uid() == uid; });
    return found == m_calendars.end() ? nullptr : *found;
}
