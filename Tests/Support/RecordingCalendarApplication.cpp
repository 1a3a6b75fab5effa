// SPDX-License-Identifier: MIT
#include "RecordingCalendarApplication.h"

using namespace Qt::StringLiterals;

namespace
{

QString elementName(const QString &calendarUid, CalendarApplication::ElementKind kind, const QString &plainUid)
{
    const QString kindName = kind == CalendarApplication::ElementKind::Event ? u"event"_s : u"todo"_s;
    return u"%1 %2/%3"_s.arg(kindName, calendarUid, plainUid);
}

} // namespace

void RecordingCalendarApplication::addElement(const QString &calendarUid, ElementKind kind, const QString &plainUid)
{
    addCalendar(calendarUid);
    m_elements.insert(elementName(calendarUid, kind, plainUid));
}

bool RecordingCalendarApplication::hasElement(const Element &element) const
{
    return m_elements.contains(elementName(element.calendarUid, element.kind, element.plainUid));
}

void RecordingCalendarApplication::activate()
{
    m_commands.append(u"activate"_s);
}

void RecordingCalendarApplication::showElement(const Element &element)
{
    m_commands.append(u"show "_s + elementName(element.calendarUid, element.kind, element.plainUid));
    m_shown = element;
}
