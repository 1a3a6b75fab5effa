// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// The desktop's full calendar program, as far as Vantle talks to it.
class CalendarApplication
{
public:
    enum class ElementKind { Event, Todo };

    CalendarApplication() = default;
    virtual ~CalendarApplication() = default;
    CalendarApplication(const CalendarApplication &) = delete;
    CalendarApplication &operator=(const CalendarApplication &) = delete;

    // Whether the program lists a calendar with this uid.
    virtual bool hasCalendar(const QString &calendarUid) const = 0;
    // Whether that calendar has an event or to-do with this UID property.
    virtual bool hasElement(const QString &calendarUid, ElementKind kind, const QString &plainUid) const = 0;
    virtual void activate() = 0;
    virtual void showElement(const QString &calendarUid, ElementKind kind, const QString &plainUid) = 0;
};
