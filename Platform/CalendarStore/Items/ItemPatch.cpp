// SPDX-License-Identifier: MIT
#include "ItemPatch.h"

#include "AlarmPatch.h"
#include "ComponentPatch.h"

#include <CalEvent.h>
#include <CalTask.h>

#include <CivilDate.h>
#include <ICalendarItem.h>
#include <LineEdits.h>
#include <TextPatcher.h>
#include <ValueTexts.h>
#include <ZoneRegistry.h>

#include <algorithm>

namespace Items
{

using ICalendar::CivilTime;
using ICalendar::Item;

namespace
{

std::optional<QByteArray> utcTextOf(const std::optional<QDateTime> &instant)
{
    return instant ? std::optional(ICalendar::utcText(instant->toSecsSinceEpoch())) : std::nullopt;
}

// A new item has no SEQUENCE: it has not been changed yet.
void stampUnlessNew(ComponentPatch &patch, const Item &item, const CalCalendarItem &record, const QDateTime &now)
{
    if (record.origin().isStored())
        patch.stamp(now, item.sequence);
}

// Start, end and length of an event that happens once.
class EventTimes final
{
public:
    EventTimes(ComponentPatch &patch, const Item &item, const CalEvent &event)
        : m_patch(patch)
        , m_item(item)
        , m_event(event)
    {
    }

    void write()
    {
        if (m_event.isAllDay())
            writeDays();
        else
            writeInstants();
    }

private:
    bool wasAllDay() const { return m_item.start && m_item.start->isDate(); }
    ICalendar::UtcSeconds instantOf(const CivilTime &time) const { return time.toUtc(*m_local); }

    void writeDays()
    {
        const QDate first = m_event.startDate().date();
        const QDate afterLast = m_event.endDate().date().addDays(1);
        const qint64 days = first.daysTo(afterLast);
        if (!isDay(m_item.start, first))
            m_patch.setDate("DTSTART", first);
        if (keepsLength(days)) {
            if (!wasAllDay() || m_item.durationDays != days)
                m_patch.setValue("DURATION", ICalendar::dayDurationText(days));
        } else if (!wasAllDay() || !isDay(m_item.end, afterLast)) {
            m_patch.setDate("DTEND", afterLast);
        }
    }

    void writeInstants()
    {
        const ICalendar::UtcSeconds start = m_event.startDate().toSecsSinceEpoch();
        const ICalendar::UtcSeconds end = m_event.endDate().toSecsSinceEpoch();
        const bool hasTimes = m_item.start && !wasAllDay();
        if (!hasTimes || instantOf(*m_item.start) != start)
            writeStart(start);
        const qint64 wanted = lengthBetween(start, end);
        if (keepsLength(wanted)) {
            if (!hasTimes || endByLength(start) != end)
                m_patch.setValue("DURATION", ICalendar::durationText(wanted));
        } else if (!hasTimes || !m_item.end || instantOf(*m_item.end) != end) {
            writeEnd(end);
        }
    }

    // Whether a length goes on saying when the event ends. It cannot say that it ends before it starts
    // (RFC 5545, section 3.8.2.5): then there is an end in its place.
    bool keepsLength(qint64 length)
    {
        if (m_item.hasDuration && length < 0)
            m_patch.setValue("DURATION", std::nullopt);
        return m_item.hasDuration && length >= 0;
    }

    // A length goes by the clock on the wall where the start does.
    qint64 lengthBetween(ICalendar::UtcSeconds start, ICalendar::UtcSeconds end) const
    {
        const bool isByClock = m_item.start && m_item.start->form == CivilTime::Form::Floating;
        return isByClock ? m_local->toCivil(end) - m_local->toCivil(start) : end - start;
    }

    // When the event ends that begins then, by the length as it is: a day of it is one by the calendar, which a clock
    // change may make longer or shorter.
    ICalendar::UtcSeconds endByLength(ICalendar::UtcSeconds start) const
    {
        const CivilTime &form = *m_item.start;
        const qint64 days = m_item.durationDays * ICalendar::secondsPerDay;
        if (form.form == CivilTime::Form::Utc)
            return start + days + m_item.durationSeconds;
        if (form.form == CivilTime::Form::Floating)
            return m_local->toUtc(m_local->toCivil(start) + days + m_item.durationSeconds);
        return CivilTime { form.zone->toCivil(start) + days, form.form, form.zone }.toUtc(*m_local)
            + m_item.durationSeconds;
    }

    void writeStart(ICalendar::UtcSeconds start)
    {
        if (m_item.start)
            m_patch.setInstant("DTSTART", start, m_item.start, "DTSTART");
        else
            m_patch.setInstant("DTSTART", start, m_item.repetition->recurrenceId, "RECURRENCE-ID");
    }

    void writeEnd(ICalendar::UtcSeconds end)
    {
        // An end that is not after the start counts as the start, in the form of that.
        if (m_patch.has("DTEND") && m_item.end != m_item.start)
            m_patch.setInstant("DTEND", end, m_item.end, "DTEND");
        else
            m_patch.setInstant("DTEND", end, m_item.start, "DTSTART");
    }

    bool isDay(const std::optional<CivilTime> &time, QDate day) const
    {
        return time && time->isDate()
            && ICalendar::dayOf(time->civil) == ICalendar::dayNumber(day.year(), day.month(), day.day());
    }

    ComponentPatch &m_patch;
    const Item &m_item;
    const CalEvent &m_event;
    ICalendar::ZonePtr m_local = ICalendar::ZoneRegistry::localZone();
};

bool hasOtherTimes(const CalEvent &event, const CalEvent &read)
{
    return event.startDate() != read.startDate() || event.endDate() != read.endDate()
        || event.isAllDay() != read.isAllDay();
}

// A day without a time stays one until it is given a time. Where the clock skips midnight, it begins later.
bool isDueOnDay(const CalTask &task)
{
    if (!task.isDueDateOnly())
        return false;
    const QDateTime due = *task.dueDate();
    return due.time() == QTime(0, 0) || due == due.date().startOfDay();
}

void patchDueDate(ComponentPatch &patch, const Item &item, const CalTask &task)
{
    // A length counts from the start, and gives way to a date (RFC 5545, section 3.6.2).
    patch.setValue("DURATION", std::nullopt);
    if (!task.dueDate())
        patch.setValue("DUE", std::nullopt);
    else if (isDueOnDay(task))
        patch.setDate("DUE", task.dueDate()->date());
    else
        patch.setInstant("DUE", task.dueDate()->toSecsSinceEpoch(), patch.has("DUE") ? item.toDo->due : item.start,
            patch.has("DUE") ? "DUE" : "DTSTART");
}

bool hasOtherDueDate(const CalTask &task, const CalTask &read)
{
    return task.dueDate() != read.dueDate() || (task.dueDate() && isDueOnDay(task) != isDueOnDay(read));
}

void complete(ComponentPatch &patch, const QDateTime &instant)
{
    // A completion date that is there tells when it was done, and stays.
    if (!patch.has("COMPLETED"))
        patch.setValue("COMPLETED", utcTextOf(instant));
    patch.setValue("PERCENT-COMPLETE", "100");
    patch.setValue("STATUS", "COMPLETED");
}

void open(ComponentPatch &patch)
{
    patch.setValue("COMPLETED", std::nullopt);
    patch.setValue("PERCENT-COMPLETE", std::nullopt);
    patch.setValue("STATUS", "NEEDS-ACTION");
}

void patchCompletion(ComponentPatch &patch, const CalTask &task, const CalTask &read, const QDateTime &now)
{
    if (task.completedDate() != read.completedDate())
        patch.setValue("COMPLETED", utcTextOf(task.completedDate()));
    if (task.isCompleted() == read.isCompleted())
        return;
    if (task.isCompleted())
        complete(patch, task.completedDate().value_or(now));
    else
        open(patch);
}

template <typename Record> std::shared_ptr<const Record> stateRead(const Record &record)
{
    return record.asRead() ? record.asRead() : std::make_shared<const Record>();
}

bool hasOtherTexts(const CalCalendarItem &record, const CalCalendarItem &read)
{
    return record.title() != read.title() || record.notes() != read.notes() || record.url() != read.url()
        || hasOtherAlarms(record, read);
}

} // namespace

QByteArray patchedText(const QByteArray &text, const Item &item, const CalTask &task, const QDateTime &now)
{
    const auto read = stateRead(task);
    ICalendar::TextPatcher patcher(text);
    ComponentPatch patch(patcher, item.component);
    patch.takeTexts(task, *read);
    if (hasOtherDueDate(task, *read))
        patchDueDate(patch, item, task);
    if (task.priority() != read->priority())
        patch.setValue(
            "PRIORITY", task.priority() != 0 ? std::optional(QByteArray::number(task.priority())) : std::nullopt);
    patchCompletion(patch, task, *read, now);
    stampUnlessNew(patch, item, task, now);
    patchAlarms(patcher, item.component, task, *read);
    return patcher.patchedText();
}

QByteArray patchedText(const QByteArray &text, const Item &item, const CalEvent &event, const QDateTime &now)
{
    const auto read = stateRead(event);
    const bool hasRule = event.recurrenceRule() != read->recurrenceRule();
    ICalendar::TextPatcher patcher(hasRule ? textWithRule(text, item.component, event.recurrenceRule()) : text);
    ComponentPatch patch(patcher, item.component);
    if (hasOtherTimes(event, *read))
        EventTimes(patch, item, event).write();
    patch.takeTexts(event, *read);
    if (event.location() != read->location())
        patch.setText("LOCATION", event.location());
    stampUnlessNew(patch, item, event, now);
    patchAlarms(patcher, item.component, event, *read);
    return patcher.patchedText();
}

QByteArray textWithRule(const QByteArray &text, int component, const std::optional<CalRecurrenceRule> &rule)
{
    const ICalendar::ContentLines lines(text);
    ICalendar::LineEdits edits(lines);
    for (const std::size_t line : ICalendar::linesNamed(lines, component, "RRULE"))
        edits.removeLine(line);
    const std::vector<std::size_t> starts = ICalendar::linesNamed(lines, component, "DTSTART");
    const int first = lines.components()[static_cast<std::size_t>(component)].firstLine;
    const std::size_t after = starts.empty() ? static_cast<std::size_t>(first) : starts.back();
    for (const QByteArray &value : rule ? rule->text.split('\n') : QByteArrayList())
        edits.insertLineAfter(after, "RRULE:" + value.trimmed());
    return edits.text();
}

bool differsFromRead(const CalTask &task)
{
    const CalTask &read = *task.asRead();
    return hasOtherTexts(task, read) || hasOtherDueDate(task, read) || task.priority() != read.priority()
        || task.completedDate() != read.completedDate() || task.isCompleted() != read.isCompleted();
}

bool differsFromRead(const CalEvent &event)
{
    const CalEvent &read = *event.asRead();
    return hasOtherTexts(event, read) || hasOtherTimes(event, read) || event.location() != read.location()
        || hasOtherRule(event);
}

bool hasOtherRule(const CalEvent &event)
{
    return event.recurrenceRule() != event.asRead()->recurrenceRule();
}

QByteArray newItemText(const CalCalendarItem &item, const QString &uid, const QDateTime &now)
{
    const QByteArray component = item.kind() == CalItemKind::Event ? "VEVENT" : "VTODO";
    const QByteArray instant = ICalendar::utcText(now.toSecsSinceEpoch());
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Vantle//Vantle//EN\r\nBEGIN:" + component
        + "\r\nUID:" + uid.toUtf8() + "\r\nDTSTAMP:" + instant + "\r\nCREATED:" + instant + "\r\nEND:" + component
        + "\r\nEND:VCALENDAR\r\n";
}

} // namespace Items
