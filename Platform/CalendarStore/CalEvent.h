// SPDX-License-Identifier: MIT
#pragma once

#include "CalAttendee.h"
#include "CalCalendarItem.h"
#include "CalRecurrenceRule.h"

#include <QDateTime>

// One occurrence of an event (RFC 5545, VEVENT).
class CalEvent final : public CalCalendarItem
{
    Q_GADGET
    Q_PROPERTY(QDateTime startDate READ startDate WRITE setStartDate)
    Q_PROPERTY(QDateTime endDate READ endDate WRITE setEndDate)
    Q_PROPERTY(bool isAllDay READ isAllDay WRITE setIsAllDay)
    Q_PROPERTY(std::optional<QString> location READ location WRITE setLocation)
    Q_PROPERTY(std::optional<CalRecurrenceRule> recurrenceRule READ recurrenceRule WRITE setRecurrenceRule)
    Q_PROPERTY(std::optional<QList<CalAttendee>> attendees READ attendees)
    Q_PROPERTY(bool isCancelled READ isCancelled)

public:
    CalEvent() = default;
    CalEvent(const CalEvent &) = default;

    CalItemKind kind() const override { return CalItemKind::Event; }

    // In local time. An all-day event starts at 00:00:00 of its first day.
    const QDateTime &startDate() const { return m_startDate; }
    void setStartDate(const QDateTime &instant);

    // In local time, never before the start. An all-day event ends with the last second
    // (23:59:59) of its last day.
    const QDateTime &endDate() const { return m_endDate; }
    void setEndDate(const QDateTime &instant);

    bool isAllDay() const { return m_isAllDay; }
    void setIsAllDay(bool isAllDay);

    const std::optional<QString> &location() const { return m_location; }
    void setLocation(const std::optional<QString> &location);

    // Absent for an event that happens once; an override of one occurrence has its series' rule.
    const std::optional<CalRecurrenceRule> &recurrenceRule() const { return m_recurrenceRule; }
    void setRecurrenceRule(const std::optional<CalRecurrenceRule> &rule);

    // Absent when nobody is asked; the store never gives an empty list.
    const std::optional<QList<CalAttendee>> &attendees() const { return m_attendees; }
    void setAttendees(const std::optional<QList<CalAttendee>> &attendees) { m_attendees = attendees; }

    bool isCancelled() const { return m_isCancelled; } // RFC 5545, STATUS:CANCELLED
    void setIsCancelled(bool isCancelled) { m_isCancelled = isCancelled; }

    // The record with the values with which it was read; null for an item that is not stored.
    const std::shared_ptr<const CalEvent> &asRead() const { return m_asRead; }
    // For back ends: what the record holds at this moment is what the store holds.
    void markAsRead();
    // For the store: a save that could not be finished goes back to what was read before it.
    void setAsRead(const std::shared_ptr<const CalEvent> &asRead) { m_asRead = asRead; }

    QVariant valueForKey(const QString &key) const override;

private:
    QDateTime m_startDate;
    QDateTime m_endDate;
    bool m_isAllDay = false;
    std::optional<QString> m_location;
    std::optional<CalRecurrenceRule> m_recurrenceRule;
    std::optional<QList<CalAttendee>> m_attendees;
    bool m_isCancelled = false;
    std::shared_ptr<const CalEvent> m_asRead;
};
