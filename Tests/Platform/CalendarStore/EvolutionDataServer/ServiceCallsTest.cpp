// SPDX-License-Identifier: MIT
#include "ServiceTestStore.h"

#include <TestRegistry.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

// Listens to the whole bus.
class BusMonitor final
{
public:
    explicit BusMonitor(const QString &address)
        : m_address(address)
    {
        m_process.start(u"dbus-monitor"_s, { u"--address"_s, address, u"--profile"_s });
    }
    ~BusMonitor()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    BusMonitor(const BusMonitor &) = delete;
    BusMonitor &operator=(const BusMonitor &) = delete;

    // What was called of the calendar service so far: interface and method. Whatever went over the bus before is among
    // it.
    std::optional<QByteArrayList> calledMembers()
    {
        const QByteArray mark = "mark" + QByteArray::number(++m_marks);
        const bool isSeen = QTest::qWaitFor(
            [&] {
                QDBusConnection bus = QDBusConnection::connectToBus(m_address, u"calls"_s);
                bus.send(QDBusMessage::createSignal(u"/test"_s, u"org.vantle.Test"_s, QString::fromLatin1(mark)));
                m_heard += m_process.readAllStandardOutput();
                return m_heard.contains(mark);
            },
            ServiceTestStore::patience);
        if (!isSeen)
            return std::nullopt;
        QByteArrayList members;
        for (const QByteArray &line : m_heard.split('\n')) {
            // The heartbeat goes by the clock.
            if (line.startsWith("mc\t") && line.contains("org.gnome.evolution.dataserver") && !line.endsWith("\tPing"))
                members << line.split('\t').last(2).join('.');
        }
        return members;
    }
    std::optional<qsizetype> callsToService()
    {
        const auto members = calledMembers();
        return members ? std::optional(members->size()) : std::nullopt;
    }
    // Of the two views of each source that was opened, one goes when nothing comes any more of what was before.
    bool isPastOldNews()
    {
        const auto members = calledMembers();
        if (!members)
            return false;
        const auto started = members->count("org.gnome.evolution.dataserver.CalendarView.Start");
        return started > 0 && started == 2 * members->count("org.gnome.evolution.dataserver.CalendarView.Dispose");
    }
    // The same once what was on its way has been asked for.
    std::optional<qsizetype> callsAtRest()
    {
        std::optional<qsizetype> calls;
        for (int quiet = 0; quiet < 10;) {
            const std::optional<qsizetype> current = callsToService();
            quiet = current && current == calls ? quiet + 1 : 0;
            calls = current;
        }
        return calls;
    }

private:
    QString m_address;
    QProcess m_process;
    QByteArray m_heard;
    int m_marks = 0;
};

} // namespace

// What goes over the bus, and when.
class ServiceCallsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_machine = std::make_unique<ServiceTestStore>();
        m_machine->addCalendar(u"calls"_s);
        m_machine->neighbour().put(u"calls"_s,
            "BEGIN:VEVENT\r\nUID:daily\r\nDTSTART;TZID=Europe/Berlin:20260301T090000\r\nDURATION:PT1H\r\n"
            "RRULE:FREQ=DAILY\r\nSUMMARY:Daily\r\nEND:VEVENT\r\n");
        m_monitor = std::make_unique<BusMonitor>(m_machine->session().busAddress());
        QVERIFY(m_monitor->callsToService());
        QVERIFY(m_machine->open());
        QTRY_VERIFY(m_machine->eventOn(QDate(2026, 3, 11), u"Daily"_s));
    }
    void cleanupTestCase()
    {
        m_monitor.reset();
        m_machine.reset();
    }

    void daysAreShownWithoutACall()
    {
        QTRY_VERIFY_WITH_TIMEOUT(m_monitor->isPastOldNews(), ServiceTestStore::patience);
        const auto before = m_monitor->callsAtRest();
        QVERIFY(before);

        for (QDate day(2026, 3, 1); day < QDate(2026, 6, 1); day = day.addDays(1)) {
            QCOMPARE(m_machine->eventsOn(day).size(), 1);
            QVERIFY(m_machine->store()
                        .tasksWithPredicate(
                            CalCalendarStore::taskPredicateWithUncompletedTasks(m_machine->store().calendars()))
                        .isEmpty());
        }

        QCOMPARE(m_monitor->callsToService(), before);
    }

    void aSaveIsSeenOnTheBus()
    {
        const auto before = m_monitor->callsToService();
        QVERIFY(before);
        const CalEventPtr event = m_machine->eventOn(QDate(2026, 3, 12), u"Daily"_s);
        event->setTitle(u"Every day"_s);

        StoreError error;
        QVERIFY2(m_machine->store().saveEvent_span_error(event, CalSpanAllEvents, &error), qPrintable(error.message()));

        QVERIFY(m_monitor->callsToService() > before);
    }

private:
    std::unique_ptr<ServiceTestStore> m_machine;
    std::unique_ptr<BusMonitor> m_monitor;
};

VANTLE_TEST(ServiceCallsTest)

#include "ServiceCallsTest.moc"
