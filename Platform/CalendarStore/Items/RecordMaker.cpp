// SPDX-License-Identifier: MIT
#include "RecordMaker.h"

#include "ItemIndex.h"

#include <CalEvent.h>
#include <CalTask.h>

using namespace Qt::StringLiterals;

namespace Items
{

using ICalendar::CivilTime;
using ICalendar::Item;

namespace
{

// A property that holds nothing counts as one that is not there.
std::optional<QString> unlessEmpty(const QString &text)
{
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

std::optional<QUrl> urlOf(const QString &text)
{
    return text.isEmpty() ? std::nullopt : std::optional(QUrl(text.trimmed(), QUrl::TolerantMode));
}

std::optional<QList<CalAttendee>> attendeesOf(const Item &item)
{
    if (item.attendees->isEmpty())
        return std::nullopt;
    QList<CalAttendee> attendees;
    for (const ICalendar::Attendee &each : *item.attendees)
        attendees << CalAttendee { each.commonName, QUrl(each.address), each.status };
    return attendees;
}

} // namespace

RecordMaker::RecordMaker(const ItemIndex &index, CalCalendarPtr calendar, ICalendar::ZonePtr local)
    : m_index(index)
    , m_calendar(std::move(calendar))
    , m_local(std::move(local))
{
}

CalEventPtr RecordMaker::event(
    const GroupRef &ref, const Item &item, const ItemTimes &times, const QString &recurrenceId) const
{
    auto record = std::make_shared<CalEvent>();
    fill(*record, ref, item, recurrenceId);
    const bool isAllDay = times.start.isDate();
    record->setIsAllDay(isAllDay);
    record->setStartDate(localTime(times.start.toUtc(*m_local)));
    if (isAllDay && times.end.isDate()) {
        // Through the calendar, for the last day may be an hour shorter or longer.
        const QDate lastDay = QDateTime::fromSecsSinceEpoch(times.end.civil - 1, Qt::UTC).date();
        record->setEndDate(QDateTime(lastDay, QTime(23, 59, 59)));
    } else {
        record->setEndDate(std::max(record->startDate(), localTime(times.end.toUtc(*m_local))));
    }
    record->setLocation(unlessEmpty(item.location));
    record->setAttendees(attendeesOf(item));
    record->setIsCancelled(item.isCancelled);
    if (ref.get().needsExpansion)
        record->setRecurrenceRule(CalRecurrenceRule { ref.set->item(ref.get().master).repetition->rules.join('\n') });
    record->markAsRead();
    return record;
}

CalTaskPtr RecordMaker::task(const GroupRef &ref) const
{
    const Item &item = ref.set->representative(ref.get());
    auto record = std::make_shared<CalTask>();
    fill(*record, ref, item, recurrenceIdText(item.repetition->recurrenceId));
    const Item::ToDo &toDo = *item.toDo;
    if (toDo.due) {
        record->setDueDate(localTime(toDo.due->toUtc(*m_local)));
        record->setIsDueDateOnly(toDo.due->isDate());
    }
    if (toDo.completed)
        record->setCompletedDate(localTime(*toDo.completed));
    record->setIsCompleted(toDo.isCompleted);
    record->setPriority(toDo.priority);
    record->markAsRead();
    return record;
}

void RecordMaker::fill(
    CalCalendarItem &record, const GroupRef &ref, const Item &item, const QString &recurrenceId) const
{
    record.setCalendar(m_calendar);
    record.setTitle(unlessEmpty(item.summary));
    record.setNotes(unlessEmpty(*item.description));
    record.setUrl(urlOf(*item.url));
    CalAlarmList alarms;
    for (int index = 0; index < item.alarms->size(); ++index)
        alarms << alarm(item.alarms->at(index), index);
    record.setAlarms(alarms);
    // Of sets that share no UID only items of one and the same set need to be told apart.
    const bool isAlone = ref.get().ordinal == 0 && !m_index.hasSharedUids();
    const QString distinction = isAlone ? QString() : m_index.distinctionOf(ref);
    record.setOrigin({ item.uid, recurrenceId, ref.set->name(), distinction, ref.set->version() });
}

CalAlarmPtr RecordMaker::alarm(const ICalendar::Alarm &alarm, int index) const
{
    auto record = std::make_shared<CalAlarm>();
    record->setSound(alarm.sound);
    // After the sound, which would make a message alarm another kind than the stored one.
    record->setAction(alarm.action.isEmpty() ? CalAlarmActionDisplay : alarm.action);
    record->setEmailAddress(alarm.emailAddress);
    record->setUrl(urlOf(alarm.url.value_or(QString())));
    record->setRelativeTrigger(static_cast<double>(alarm.relativeTrigger));
    record->setRelatedToEnd(alarm.relatedToEnd);
    if (alarm.absoluteTrigger)
        record->setAbsoluteTrigger(localTime(*alarm.absoluteTrigger));
    record->setStoredIndex(index);
    return record;
}

QDateTime RecordMaker::localTime(ICalendar::UtcSeconds instant) const
{
    return m_index.localTimes().at(instant, m_local);
}

QString recurrenceIdText(const CivilTime &instant)
{
    const bool isAnchored
        = instant.form == CivilTime::Form::Utc || (instant.form == CivilTime::Form::Zoned && instant.zone);
    const qint64 seconds = isAnchored && instant.zone ? instant.zone->toUtc(instant.civil) : instant.civil;
    const QDateTime time = QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC);
    if (instant.isDate())
        return time.toString(u"yyyyMMdd"_s);
    return time.toString(isAnchored ? u"yyyyMMdd'T'HHmmss'Z'"_s : u"yyyyMMdd'T'HHmmss"_s);
}

QString recurrenceIdText(const std::optional<CivilTime> &instant)
{
    return instant ? recurrenceIdText(*instant) : QString();
}

} // namespace Items
