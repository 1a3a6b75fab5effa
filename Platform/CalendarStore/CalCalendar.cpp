// SPDX-License-Identifier: MIT
#include "CalCalendar.h"

#include <QMetaProperty>

CalCalendar::CalCalendar(Values values)
    : m_values(std::move(values))
{
}

bool CalCalendar::holds(CalItemKind kind) const
{
    return kind == CalItemKind::Event ? m_values.holdsEvents : m_values.holdsTasks;
}

QVariant CalCalendar::valueForKey(const QString &key) const
{
    const int index = staticMetaObject.indexOfProperty(key.toLatin1().constData());
    return index < 0 ? QVariant() : staticMetaObject.property(index).readOnGadget(this);
}

bool CalCalendar::isEqual(const KeyValueObject &other) const
{
    const auto *calendar = dynamic_cast<const CalCalendar *>(&other);
    return calendar && calendar->uid() == uid();
}
