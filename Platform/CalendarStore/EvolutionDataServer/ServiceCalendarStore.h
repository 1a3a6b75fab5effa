// SPDX-License-Identifier: MIT
#pragma once

#include <CalendarStoreBackend.h>

#include <QString>

#include <memory>

class Clock;

// The calendars and to-do lists of the desktop's calendar service (Evolution Data
// Server): those kept on this computer and those of its online accounts.
//
// Everything is asked for without waiting; a question is answered from what has
// come so far. Only a save waits for the service, and not for longer than its
// deadline. A service that ends or hangs leaves what it said last, and is reached
// again by itself when it is back.
//
// A source of events and one of to-dos that belong together are one calendar, with
// the uid of the source of events.
class ServiceCalendarStore final : public CalendarStoreBackend
{
    Q_OBJECT

public:
    // Starts to ask for the service. The clock outlives the store.
    explicit ServiceCalendarStore(Clock &clock, QObject *parent = nullptr);
    ~ServiceCalendarStore() override;

    CalCalendarList calendars() const override;
    bool hasDeclaredDefault() const override;
    bool isComplete() const override;
    QStringList silentCalendars() const override;
    bool isUnreached() const override;
    void refresh() override;
    QString desktopSourceUid(const QString &calendarUid, CalItemKind kind) const override;
    bool holdsUid(const QString &calendarUid, const QString &plainUid) const override;
    CalEventList events(const QDateTime &start, const QDateTime &end, const CalCalendarList &calendars) const override;
    CalTaskList tasks(TaskState state, const QDateTime &since, const CalCalendarList &calendars) const override;
    Result<void, StoreError> saveEvent(CalEvent &event, CalSpan span) override;
    Result<void, StoreError> saveTask(CalTask &task) override;
    Result<std::unique_ptr<CalRemoval>, StoreError> removeEvent(const CalEvent &event, CalSpan span) override;
    Result<std::unique_ptr<CalRemoval>, StoreError> removeTask(const CalTask &task) override;
    Result<std::unique_ptr<CalDeparture>, StoreError> sendEvent(CalEvent &event, CalSpan span) override;
    Result<std::unique_ptr<CalDeparture>, StoreError> sendTask(CalTask &task) override;
    Result<void, StoreError> takeInEvent(CalEvent &event, const QByteArray &text) override;
    Result<void, StoreError> takeInTask(CalTask &task, const QByteArray &text) override;

private:
    class Private;
    std::unique_ptr<Private> d;
};
