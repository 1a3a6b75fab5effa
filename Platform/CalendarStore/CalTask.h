// SPDX-License-Identifier: MIT
#pragma once

#include "CalCalendarItem.h"

#include <QDateTime>

// One to-do (RFC 5545, VTODO).
class CalTask final : public CalCalendarItem
{
    Q_GADGET
    Q_PROPERTY(std::optional<QDateTime> dueDate READ dueDate WRITE setDueDate)
    Q_PROPERTY(std::optional<QDateTime> completedDate READ completedDate WRITE setCompletedDate)
    Q_PROPERTY(bool isCompleted READ isCompleted WRITE setIsCompleted)
    Q_PROPERTY(int priority READ priority WRITE setPriority)

public:
    CalTask() = default;
    CalTask(const CalTask &) = default;

    CalItemKind kind() const override { return CalItemKind::Task; }

    // In local time; a due date without a time of day is 00:00:00 of its day.
    const std::optional<QDateTime> &dueDate() const { return m_dueDate; }
    void setDueDate(const std::optional<QDateTime> &instant);
    // Whether the due date was stored as a day without a time.
    bool isDueDateOnly() const { return m_isDueDateOnly; }
    void setIsDueDateOnly(bool isDateOnly) { m_isDueDateOnly = isDateOnly; }

    const std::optional<QDateTime> &completedDate() const { return m_completedDate; }
    void setCompletedDate(const std::optional<QDateTime> &instant);

    // Sets the flag alone: a save brings completion date, status and percentage in line with
    // it (RFC 5545, sections 3.8.1.8, 3.8.1.11 and 3.8.2.1) and keeps a completion date that is there.
    bool isCompleted() const { return m_isCompleted; }
    void setIsCompleted(bool isCompleted);

    // RFC 5545, PRIORITY: 0 none, 1 highest to 9 lowest.
    int priority() const { return m_priority; }
    void setPriority(int priority);

    // As for CalEvent.
    const std::shared_ptr<const CalTask> &asRead() const { return m_asRead; }
    void markAsRead();
    // For the store: a save that could not be finished goes back to what was read before it.
    void setAsRead(const std::shared_ptr<const CalTask> &asRead) { m_asRead = asRead; }

    QVariant valueForKey(const QString &key) const override;

private:
    std::optional<QDateTime> m_dueDate;
    bool m_isDueDateOnly = false;
    std::optional<QDateTime> m_completedDate;
    bool m_isCompleted = false;
    int m_priority = 0;
    std::shared_ptr<const CalTask> m_asRead;
};
