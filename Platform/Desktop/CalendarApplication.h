// SPDX-License-Identifier: MIT
#pragma once

#include <QDate>
#include <QString>

// The desktop's full calendar program, as far as Vantle talks to it.
class CalendarApplication
{
public:
    enum class ElementKind { Event, Todo };

    struct Element {
        QString calendarUid;
        ElementKind kind = ElementKind::Event;
        QString plainUid; // the UID property
        QString recurrenceId = {}; // of an occurrence of a series, as its RECURRENCE-ID reads; empty for others
        QDate day = {}; // where the element is to be found; may be null

        bool operator==(const Element &) const = default;
    };

    CalendarApplication() = default;
    virtual ~CalendarApplication() = default;
    CalendarApplication(const CalendarApplication &) = delete;
    CalendarApplication &operator=(const CalendarApplication &) = delete;

    // Whether the desktop has such a program at present.
    virtual bool isInstalled() const = 0;
    // Whether the program lists a calendar with this uid.
    virtual bool hasCalendar(const QString &calendarUid) const = 0;
    // Whether it can show the element, which belongs to a calendar that it lists.
    virtual bool hasElement(const Element &element) const = 0;

    // Brings the program to the front, starting it where it does not run.
    virtual void activate() = 0;
    // After activate(). Both return at once; what fails is not told.
    virtual void showElement(const Element &element) = 0;
};
