// SPDX-License-Identifier: MIT
#pragma once

#include <CalendarStoreBackend.h>

// A back end that keeps nothing: it counts what it is asked to save, and can be told to refuse.
class RecordingTaskBackend final : public CalendarStoreBackend
{
    Q_OBJECT

public:
    using CalendarStoreBackend::CalendarStoreBackend;

    CalCalendarList calendars() const override { return calendarList; }
    bool hasDeclaredDefault() const override { return false; }
    bool isComplete() const override { return true; }
    bool holdsUid(const QString & /*calendarUid*/, const QString & /*plainUid*/) const override { return true; }
    CalEventList events(
        const QDateTime & /*start*/, const QDateTime & /*end*/, const CalCalendarList & /*calendars*/) const override
    {
        return {};
    }
    CalTaskList tasks(
        TaskState /*state*/, const QDateTime & /*since*/, const CalCalendarList & /*calendars*/) const override
    {
        return {};
    }
    Result<void, StoreError> saveTask(CalTask &task) override
    {
        saved.append({ task.uid(), task.isCompleted() });
        if (refuses)
            return StoreError { StoreError::Code::ReadOnly, task.uid(), {}, {} };
        return {};
    }
    Result<void, StoreError> saveEvent(CalEvent & /*event*/, CalSpan /*span*/) override { return notExpected(); }
    Result<std::unique_ptr<CalRemoval>, StoreError> removeEvent(const CalEvent & /*event*/, CalSpan /*span*/) override
    {
        return notExpected();
    }
    Result<std::unique_ptr<CalRemoval>, StoreError> removeTask(const CalTask & /*task*/) override
    {
        return notExpected();
    }

    struct Save {
        QString uid;
        bool isCompleted;

        bool operator==(const Save &) const = default;
    };
    CalCalendarList calendarList;
    QList<Save> saved;
    bool refuses = false;

private:
    static StoreError notExpected()
    {
        return { StoreError::Code::Invalid, {}, {}, QStringLiteral("Only to-dos are saved.") };
    }
};
