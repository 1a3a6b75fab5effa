// SPDX-License-Identifier: MIT
#include "TestRecords.h"

using namespace Qt::StringLiterals;

namespace
{

template <typename Record> std::shared_ptr<Record> makeItem(const QString &uid, const QString &title)
{
    auto item = std::make_shared<Record>();
    item->setUid(uid);
    CalItemOrigin origin;
    origin.plainUid = uid;
    origin.resource = uid + u".ics"_s;
    item->setOrigin(origin);
    item->setTitle(title);
    return item;
}

CalCalendarPtr makeCalendar(const QString &uid, const QColor &color, bool isEditable)
{
    return std::make_shared<CalCalendar>(
        CalCalendar::Values { .uid = uid, .title = uid, .color = color, .isEditable = isEditable });
}

} // namespace

CalCalendarPtr makeCalendar(const QString &uid, const QColor &color)
{
    return makeCalendar(uid, color, true);
}

CalCalendarPtr makeReadOnlyCalendar(const QString &uid, const QColor &color)
{
    return makeCalendar(uid, color, false);
}

CalAlarmPtr makeFullAlarm()
{
    auto alarm = std::make_shared<CalAlarm>();
    alarm->setAction(CalAlarmActionEmail);
    alarm->setSound(u"Basso"_s);
    alarm->setEmailAddress(u"me@example.org"_s);
    alarm->setUrl(QUrl(u"file:///tmp/a"_s));
    alarm->setAbsoluteTrigger(localInstant("2026-03-11T08:00"));
    alarm->setRelatedToEnd(true);
    alarm->setStoredIndex(3);
    return alarm;
}

CalEventPtr makeEvent(const QString &uid, const QString &title, const QDateTime &start, const QDateTime &end)
{
    auto event = makeItem<CalEvent>(uid, title);
    event->setStartDate(start);
    event->setEndDate(end);
    event->markAsRead();
    return event;
}

CalEventPtr makeAllDayEvent(const QString &uid, const QString &title, QDate first, QDate last)
{
    auto event = makeEvent(uid, title, first.startOfDay(), last.addDays(1).startOfDay().addSecs(-1));
    event->setIsAllDay(true);
    event->markAsRead();
    return event;
}

CalEventPtr makeOccurrence(const QString &uid, const QString &title, const QDateTime &start, const QDateTime &end)
{
    auto event = makeEvent(uid, title, start, end);
    CalItemOrigin origin = event->origin();
    origin.recurrenceId = start.toUTC().toString(Qt::ISODate);
    event->setOrigin(origin);
    event->setRecurrenceRule(CalRecurrenceRule { "FREQ=DAILY" });
    event->markAsRead();
    return event;
}

CalTaskPtr makeTask(const QString &uid, const QString &title)
{
    auto task = makeItem<CalTask>(uid, title);
    task->markAsRead();
    return task;
}

CalTaskPtr makeTaskDue(const QString &uid, const QString &title, const QDateTime &due)
{
    auto task = makeTask(uid, title);
    task->setDueDate(due);
    task->markAsRead();
    return task;
}

CalTaskPtr makeCompletedTask(const QString &uid, const QString &title, const QDateTime &completed)
{
    auto task = makeTask(uid, title);
    task->setIsCompleted(true);
    task->setCompletedDate(completed);
    task->markAsRead();
    return task;
}

CalAlarmPtr makeAlarm(double relativeTrigger)
{
    auto alarm = std::make_shared<CalAlarm>();
    alarm->setRelativeTrigger(relativeTrigger);
    return alarm;
}

QDateTime localInstant(const char *text)
{
    return QDateTime::fromString(QString::fromLatin1(text), Qt::ISODate);
}
