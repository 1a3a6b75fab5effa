// SPDX-License-Identifier: MIT
#include "ServiceFixture.h"

#include <CalendarServiceNeighbour.h>
#include <CalendarServiceSession.h>
#include <CalendarStoreBackend.h>
#include <Clock.h>
#include <ServiceCalendarStore.h>

#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patience = 20 * 1000; // milliseconds, for a service that starts on a busy machine
constexpr int timeToSettle = 500; // milliseconds
const QByteArray emptyCalendar = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//test//test//EN\r\nEND:VCALENDAR\r\n";

QString sourceOf(const QString &calendar, CalItemKind kind)
{
    return kind == CalItemKind::Event ? calendar : calendar + u"-to-dos"_s;
}

// The service with the calendars of the contract.
class Machine final
{
public:
    static Machine &instance()
    {
        static Machine machine;
        return machine;
    }

    CalendarServiceSession &session() { return m_session; }
    CalendarServiceNeighbour &neighbour() { return m_neighbour; }

    // As a fresh fixture has it.
    void tidyUp()
    {
        const QByteArrayList sources = m_neighbour.request({ u"sources"_s }).text.split('\n');
        const auto isThere = [&](const QString &source) {
            return std::ranges::any_of(
                sources, [&](const QByteArray &line) { return line.startsWith(QByteArray(source.toUtf8() + ' ')); });
        };
        for (const QString &calendar : { u"Home"_s, u"Work"_s }) {
            if (!isThere(sourceOf(calendar, CalItemKind::Event)))
                add(calendar);
        }
        if (isThere(u"Club"_s))
            remove(u"Club"_s);
        for (const QString &calendar : { u"Home"_s, u"Work"_s }) {
            empty(sourceOf(calendar, CalItemKind::Event));
            empty(sourceOf(calendar, CalItemKind::Task));
        }
        // The service reads a file again that was written just now: another one is quicker than to wait for that.
        for (const CalItemKind kind : { CalItemKind::Event, CalItemKind::Task }) {
            if (m_neighbour.list(sourceOf(u"Shared"_s, kind)).isEmpty())
                continue;
            m_neighbour.removeSource(sourceOf(u"Shared"_s, kind));
            addReadOnly(kind);
        }
    }

    QStringList storedUids()
    {
        QStringList uids;
        for (const QString &calendar : { u"Home"_s, u"Work"_s, u"Shared"_s }) {
            for (const CalItemKind kind : { CalItemKind::Event, CalItemKind::Task }) {
                for (const QString &line : m_neighbour.list(sourceOf(calendar, kind)))
                    uids << line.section(u' ', 0, 0);
            }
        }
        return uids;
    }

    void add(const QString &calendar)
    {
        for (const CalItemKind kind : { CalItemKind::Event, CalItemKind::Task })
            m_neighbour.addCalendar(sourceOf(calendar, kind), kind, calendar);
    }

    void remove(const QString &calendar)
    {
        for (const CalItemKind kind : { CalItemKind::Event, CalItemKind::Task })
            m_neighbour.removeSource(sourceOf(calendar, kind));
    }

private:
    Machine()
        : m_session(CalendarServiceSession::ofThisProcess())
        , m_neighbour(m_session)
    {
        // The contract knows of none but its own.
        for (const QString &source : { u"system-calendar"_s, u"system-task-list"_s, u"birthdays"_s })
            m_neighbour.setEnabled(source, false);
        addReadOnly(CalItemKind::Event);
        addReadOnly(CalItemKind::Task);
    }

    void addReadOnly(CalItemKind kind)
    {
        const QString source = sourceOf(u"Shared"_s, kind);
        QFile file(m_session.path(u"shared-%1.ics"_s.arg(++m_files)));
        if (!file.open(QIODevice::WriteOnly) || file.write(emptyCalendar) < 0)
            qFatal("The file of a calendar cannot be written");
        file.close();
        m_neighbour.addReadOnlyCalendar(source, kind, u"Shared"_s, file.fileName());
    }

    void empty(const QString &source)
    {
        QStringList uids;
        for (const QString &line : m_neighbour.list(source))
            uids << line.section(u' ', 0, 0);
        uids.removeDuplicates();
        for (const QString &uid : uids)
            m_neighbour.remove(source, uid);
    }

    CalendarServiceSession &m_session;
    CalendarServiceNeighbour m_neighbour;
    int m_files = 0;
};

} // namespace

ServiceFixture::ServiceFixture()
{
    Machine::instance().tidyUp();
}

ServiceFixture::~ServiceFixture()
{
    m_store.reset();
    if (m_isStopped && !Machine::instance().session().resume(CalendarServiceSession::Part::Factory))
        qFatal("The service cannot be resumed");
}

CalCalendarStore &ServiceFixture::store()
{
    static SystemClock clock;
    if (!m_store) {
        std::vector<std::unique_ptr<CalendarStoreBackend>> backends;
        backends.push_back(std::make_unique<ServiceCalendarStore>(clock));
        m_store = std::make_unique<CalCalendarStore>(std::move(backends));
        // Until they have come and nothing more is going to be told of that.
        QSet<QString> told;
        const auto connection = QObject::connect(
            m_store.get(), &CalCalendarStore::notificationPosted, m_store.get(), [&told](const CalNotification &each) {
                if (each.name == CalCalendarsChangedExternallyNotification)
                    told.unite(each.calendarUids);
            });
        const QSet<QString> expected { u"Home"_s, u"Work"_s, readOnlyUid() };
        const auto areThere = [&] {
            QSet<QString> shown;
            for (const CalCalendarPtr &calendar : m_store->calendars())
                shown.insert(calendar->uid());
            return m_store->isComplete() && shown == expected && told.contains(expected);
        };
        if (!QTest::qWaitFor(areThere, patience))
            qFatal("The calendars of the service do not come");
        QObject::disconnect(connection);
        // What is told a moment later is still of the start.
        QSignalSpy notifications(m_store.get(), &CalCalendarStore::notificationPosted);
        while (notifications.wait(timeToSettle)) { }
        // The service may still tell of what the case before has taken away.
        const QStringList stored = Machine::instance().storedUids();
        [[maybe_unused]] const bool isRight = QTest::qWaitFor([&] { return showsNothingBut(stored); });
    }
    return *m_store;
}

void ServiceFixture::put(const QString &calendarUid, const QString & /*plainUid*/, const QByteArray &components)
{
    const CalItemKind kind = components.contains("BEGIN:VTODO") ? CalItemKind::Task : CalItemKind::Event;
    Machine::instance().neighbour().put(sourceOf(calendarUid, kind), components);
}

bool ServiceFixture::showsNothingBut(const QStringList &uids)
{
    const auto isThere = [&](const auto &record) { return uids.contains(record->origin().plainUid); };
    return std::ranges::all_of(tasks(), isThere)
        && std::ranges::all_of(
            eventsBetween(contractDay.addYears(-1).startOfDay(), contractDay.addYears(1).startOfDay()), isThere);
}

void ServiceFixture::takeAway(const QString &calendarUid, const QString &plainUid)
{
    CalendarServiceNeighbour &neighbour = Machine::instance().neighbour();
    for (const CalItemKind kind : { CalItemKind::Event, CalItemKind::Task }) {
        const QString source = sourceOf(calendarUid, kind);
        if (!neighbour.text(source, plainUid).isEmpty())
            neighbour.remove(source, plainUid);
    }
}

void ServiceFixture::addCalendar(const QString &uid)
{
    Machine::instance().add(uid);
}

void ServiceFixture::takeCalendarAway(const QString &uid)
{
    Machine::instance().remove(uid);
}

void ServiceFixture::breakTheDisk()
{
    (void)store();
    m_isStopped = Machine::instance().session().stop(CalendarServiceSession::Part::Factory);
    if (!m_isStopped)
        qFatal("The service cannot be stopped");
}
