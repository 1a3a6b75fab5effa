// SPDX-License-Identifier: MIT
#include "CalCalendarItem.h"

#include <QMetaProperty>

using namespace Qt::StringLiterals;

void CalCalendarItem::setCalendar(const CalCalendarPtr &calendar)
{
    assign(u"calendar"_s, m_calendar, calendar);
}

void CalCalendarItem::setTitle(const std::optional<QString> &title)
{
    assign(u"title"_s, m_title, title);
}

void CalCalendarItem::setNotes(const std::optional<QString> &notes)
{
    assign(u"notes"_s, m_notes, notes);
}

void CalCalendarItem::setUrl(const std::optional<QUrl> &url)
{
    assign(u"url"_s, m_url, url);
}

void CalCalendarItem::setAlarms(const CalAlarmList &alarms)
{
    assign(u"alarms"_s, m_alarms, alarms);
}

void CalCalendarItem::addAlarm(const CalAlarmPtr &alarm)
{
    addAlarms({ alarm });
}

void CalCalendarItem::addAlarms(const CalAlarmList &alarms)
{
    setAlarms(m_alarms + alarms);
}

void CalCalendarItem::removeAlarm(const CalAlarmPtr &alarm)
{
    removeAlarms({ alarm });
}

void CalCalendarItem::removeAlarms(const CalAlarmList &alarms)
{
    CalAlarmList remaining = m_alarms;
    remaining.removeIf([&](const CalAlarmPtr &alarm) { return alarms.contains(alarm); });
    setAlarms(remaining);
}

QVariant CalCalendarItem::valueForKey(const QString &key) const
{
    const int index = staticMetaObject.indexOfProperty(key.toLatin1().constData());
    return index < 0 ? QVariant() : staticMetaObject.property(index).readOnGadget(this);
}

bool CalCalendarItem::isEqual(const KeyValueObject &other) const
{
    const auto *item = dynamic_cast<const CalCalendarItem *>(&other);
    return item && (item == this || (!uid().isEmpty() && item->uid() == uid()));
}

void CalCalendarItem::takeOwnAlarms()
{
    for (CalAlarmPtr &alarm : m_alarms)
        alarm = std::make_shared<CalAlarm>(*alarm);
}
