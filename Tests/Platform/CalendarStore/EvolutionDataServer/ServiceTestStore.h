// SPDX-License-Identifier: MIT
#pragma once

#include <CalCalendarStore.h>
#include <CalendarServiceNeighbour.h>
#include <CalendarServiceSession.h>
#include <Clock.h>
#include <ServiceCalendarStore.h>

#include <QTest>

// The store over the real service of this process's machine, and another program beside it. The service and its
// calendars last as long as the process: each test works in calendars of its own, by names of its own.
class ServiceTestStore final
{
public:
    ServiceTestStore()
        : m_session(CalendarServiceSession::ofThisProcess())
        , m_neighbour(m_session)
    {
    }

    CalendarServiceSession &session() { return m_session; }
    CalendarServiceNeighbour &neighbour() { return m_neighbour; }
    CalCalendarStore &store() { return *m_store; }

    // Both kinds, named alike: "home" and "home-to-dos".
    void addCalendar(const QString &uid)
    {
        m_neighbour.addCalendar(uid, CalItemKind::Event, uid);
        m_neighbour.addCalendar(uid + QStringLiteral("-to-dos"), CalItemKind::Task, uid);
    }

    // Others are taken in behind the service.
    [[nodiscard]] bool open(std::unique_ptr<CalendarStoreBackend> other = nullptr)
    {
        std::vector<std::unique_ptr<CalendarStoreBackend>> backends;
        backends.push_back(std::make_unique<ServiceCalendarStore>(m_clock));
        if (other)
            backends.push_back(std::move(other));
        m_store = std::make_unique<CalCalendarStore>(std::move(backends));
        return QTest::qWaitFor([this] { return m_store->isComplete(); }, patience);
    }
    void close() { m_store.reset(); }

    CalEventList eventsOn(QDate day) const
    {
        return m_store->eventsWithPredicate(CalCalendarStore::eventPredicateWithStartDate_endDate_calendars(
            day.startOfDay(), day.addDays(1).startOfDay().addSecs(-1), m_store->calendars()));
    }
    // Null when there is none of that title.
    CalEventPtr eventOn(QDate day, const QString &title) const
    {
        for (const CalEventPtr &event : eventsOn(day)) {
            if (event->title() == title)
                return event;
        }
        return nullptr;
    }

    static constexpr int patience = 30 * 1000; // milliseconds, for a service that starts on a busy machine

private:
    CalendarServiceSession &m_session;
    CalendarServiceNeighbour m_neighbour;
    SystemClock m_clock;
    std::unique_ptr<CalCalendarStore> m_store;
};
