// SPDX-License-Identifier: MIT
#include "CalEvent.h"

#include <QMetaProperty>

using namespace Qt::StringLiterals;

void CalEvent::setStartDate(const QDateTime &instant)
{
    assign(u"startDate"_s, m_startDate, instant);
}

void CalEvent::setEndDate(const QDateTime &instant)
{
    assign(u"endDate"_s, m_endDate, instant);
}

void CalEvent::setIsAllDay(bool isAllDay)
{
    assign(u"isAllDay"_s, m_isAllDay, isAllDay);
}

void CalEvent::setLocation(const std::optional<QString> &location)
{
    assign(u"location"_s, m_location, location);
}

void CalEvent::setRecurrenceRule(const std::optional<CalRecurrenceRule> &rule)
{
    assign(u"recurrenceRule"_s, m_recurrenceRule, rule);
}

void CalEvent::markAsRead()
{
    m_asRead.reset(); // the copy holds values, not a chain of earlier copies
    const auto copy = std::make_shared<CalEvent>(*this);
    copy->takeOwnAlarms();
    m_asRead = copy;
}

QVariant CalEvent::valueForKey(const QString &key) const
{
    const int index = staticMetaObject.indexOfProperty(key.toLatin1().constData());
    return index < 0 ? QVariant() : staticMetaObject.property(index).readOnGadget(this);
}
