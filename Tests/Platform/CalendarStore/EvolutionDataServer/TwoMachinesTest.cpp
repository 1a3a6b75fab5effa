// SPDX-License-Identifier: MIT
#include <AnsweringProgram.h>
#include <CalDavServer.h>
#include <CalendarServiceNeighbour.h>
#include <CalendarServiceSession.h>
#include <TestRegistry.h>

#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patienceInMilliseconds = 30000;
// Between two questions whether something has arrived: each has the accounts look at the server.
constexpr int pauseInMilliseconds = 200;

// Monday to Friday at nine.
const QByteArray series = "BEGIN:VEVENT\r\nUID:series\r\nDTSTART;TZID=Europe/Berlin:20260309T090000\r\n"
                          "DTEND;TZID=Europe/Berlin:20260309T100000\r\nRRULE:FREQ=DAILY;COUNT=5\r\n"
                          "SUMMARY:Standup\r\nX-OTHER-PROGRAM:stays\r\nEND:VEVENT\r\n";

// One of a person's machines, with Vantle's store on it, and a calendar that lies on the server.
class Machine final
{
public:
    bool setUp(const CalDavServer &server)
    {
        if (!m_session.start()) {
            qWarning("%s", qUtf8Printable(m_session.failure()));
            return false;
        }
        m_neighbour = std::make_unique<CalendarServiceNeighbour>(m_session);
        addSource(server, u"work"_s, CalItemKind::Event);
        addSource(server, u"work-tasks"_s, CalItemKind::Task);
        m_vantle = std::make_unique<AnsweringProgram>(QStringLiteral(VANTLE_MACHINE), m_session.environment());
        return true;
    }

    CalendarServiceNeighbour &neighbour() const { return *m_neighbour; }
    QString uidOfWork() const
    {
        for (const QString &calendar : lines({ u"calendars"_s })) {
            if (calendar.endsWith(u" Work"_s))
                return calendar.section(u' ', 0, 0);
        }
        return {};
    }
    QStringList day(const QString &date) const { return lines({ u"day"_s, date }); }
    // The same, with what the server holds by now on its way.
    QStringList dayAfterRefresh(const QString &date) const
    {
        m_vantle->demand({ u"refresh"_s });
        return day(date);
    }
    AnsweringProgram::Answer request(const QStringList &fields) const { return m_vantle->request(fields); }
    // Each of the requests, which may not be refused.
    void demand(const QList<QStringList> &requests) const
    {
        for (const QStringList &fields : requests)
            m_vantle->demand(fields);
    }

private:
    void addSource(const CalDavServer &server, const QString &source, CalItemKind kind) const
    {
        m_neighbour->addCalDav(source, kind, u"Work"_s, server.url(u"work"_s), CalDavServer::user());
        m_neighbour->authenticate(source, CalDavServer::user(), CalDavServer::password());
        m_neighbour->awaitConnection(source);
    }
    QStringList lines(const QStringList &fields) const
    {
        return QString::fromUtf8(m_vantle->demand(fields)).split(u'\n', Qt::SkipEmptyParts);
    }

    CalendarServiceSession m_session;
    std::unique_ptr<CalendarServiceNeighbour> m_neighbour;
    std::unique_ptr<AnsweringProgram> m_vantle;
};

// What a machine shows of a day in the end: what is expected, or what it still showed after a long time.
QStringList shownInTheEnd(const Machine &machine, const QString &date, const QStringList &expected)
{
    QStringList shown;
    const QDeadlineTimer deadline(patienceInMilliseconds);
    while ((shown = machine.dayAfterRefresh(date)) != expected && !deadline.hasExpired())
        QTest::qWait(pauseInMilliseconds);
    return shown;
}

} // namespace

#define SHOWS_IN_THE_END(machine, date, ...)                                                                           \
    do {                                                                                                               \
        const QStringList expected { __VA_ARGS__ };                                                                    \
        QCOMPARE(shownInTheEnd(machine, date, expected), expected);                                                    \
    } while (false)

// A person has two machines and one account on a real CalDAV server. Vantle's
// store is on both, each over a calendar service of its own.
class TwoMachinesTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<CalDavServer> m_server;
    std::unique_ptr<Machine> m_desk;
    std::unique_ptr<Machine> m_laptop;

    const QString m_wednesday = u"2026-03-11"_s;
    const QString m_thursday = u"2026-03-12"_s;
    const QString m_standup = u"09:00-10:00 Standup"_s;

private Q_SLOTS:
    void init()
    {
        m_server = std::make_unique<CalDavServer>();
        m_server->addCollection(u"work"_s);
        QVERIFY2(m_server->start(), qPrintable(m_server->failure()));
        m_desk = std::make_unique<Machine>();
        QVERIFY(m_desk->setUp(*m_server));
        m_laptop = std::make_unique<Machine>();
        QVERIFY(m_laptop->setUp(*m_server));
        QTRY_VERIFY_WITH_TIMEOUT(!m_desk->uidOfWork().isEmpty(), patienceInMilliseconds);
        QTRY_VERIFY_WITH_TIMEOUT(!m_laptop->uidOfWork().isEmpty(), patienceInMilliseconds);
    }

    void cleanup()
    {
        m_laptop.reset();
        m_desk.reset();
        m_server.reset();
    }

    void newEventAndItsEditArrive()
    {
        m_desk->demand({ { u"add"_s, m_desk->uidOfWork(), m_wednesday, u"Meeting"_s } });
        SHOWS_IN_THE_END(*m_laptop, m_wednesday, u"09:00-10:00 Meeting"_s);

        m_laptop->demand({ { u"hold"_s, m_wednesday, u"Meeting"_s }, { u"set"_s, u"title"_s, u"Long meeting"_s },
            { u"set"_s, u"later"_s, u"30"_s }, { u"save"_s, u"all"_s } });

        SHOWS_IN_THE_END(*m_desk, m_wednesday, u"09:30-10:30 Long meeting"_s);
    }

    void newOverrideArrivesAndLeavesTheSeriesAlone()
    {
        m_desk->neighbour().put(u"work"_s, series);
        SHOWS_IN_THE_END(*m_laptop, m_wednesday, m_standup);

        m_laptop->demand(
            { { u"hold"_s, m_wednesday, u"Standup"_s }, { u"set"_s, u"later"_s, u"120"_s }, { u"save"_s, u"this"_s } });

        SHOWS_IN_THE_END(*m_desk, m_wednesday, u"11:00-12:00 Standup"_s);
        SHOWS_IN_THE_END(*m_desk, m_thursday, m_standup);
        SHOWS_IN_THE_END(*m_laptop, m_wednesday, u"11:00-12:00 Standup"_s);
        QVERIFY(m_server->contents(u"work"_s).contains("X-OTHER-PROGRAM:stays"));
    }

    void deletedOccurrenceIsGoneEverywhereAndComesBack()
    {
        m_desk->neighbour().put(u"work"_s, series);
        SHOWS_IN_THE_END(*m_laptop, m_wednesday, m_standup);

        m_laptop->demand({ { u"hold"_s, m_wednesday, u"Standup"_s }, { u"remove"_s, u"this"_s } });
        SHOWS_IN_THE_END(*m_desk, m_wednesday, );
        SHOWS_IN_THE_END(*m_desk, m_thursday, m_standup);

        m_laptop->demand({ { u"undo"_s } });
        SHOWS_IN_THE_END(*m_desk, m_wednesday, m_standup);
        QVERIFY(m_server->contents(u"work"_s).contains("X-OTHER-PROGRAM:stays"));
    }

    // The server's calendar is then again what it was when the desk looked at it first.
    void deletionOfTheOnlyEventArrives()
    {
        m_desk->demand({ { u"add"_s, m_desk->uidOfWork(), m_wednesday, u"Meeting"_s } });
        SHOWS_IN_THE_END(*m_laptop, m_wednesday, u"09:00-10:00 Meeting"_s);

        m_laptop->demand({ { u"hold"_s, m_wednesday, u"Meeting"_s }, { u"remove"_s, u"all"_s } });

        SHOWS_IN_THE_END(*m_desk, m_wednesday, );
    }

    void deletedSeriesIsGoneEverywhereAndComesBack()
    {
        m_desk->neighbour().put(u"work"_s, series);
        SHOWS_IN_THE_END(*m_desk, m_wednesday, m_standup);
        SHOWS_IN_THE_END(*m_laptop, m_wednesday, m_standup);

        m_laptop->demand({ { u"hold"_s, m_wednesday, u"Standup"_s }, { u"remove"_s, u"all"_s } });
        QTRY_COMPARE_WITH_TIMEOUT(m_server->contents(u"work"_s), QByteArray(), patienceInMilliseconds);
        SHOWS_IN_THE_END(*m_desk, m_wednesday, );
        SHOWS_IN_THE_END(*m_desk, m_thursday, );

        m_laptop->demand({ { u"undo"_s } });
        SHOWS_IN_THE_END(*m_desk, m_wednesday, m_standup);
        SHOWS_IN_THE_END(*m_desk, m_thursday, m_standup);
    }

    // The laptop has not heard of the desk's change when it saves its own.
    void conflictIsToldAndTheOtherVersionStays()
    {
        m_desk->demand({ { u"add"_s, m_desk->uidOfWork(), m_wednesday, u"Meeting"_s } });
        SHOWS_IN_THE_END(*m_laptop, m_wednesday, u"09:00-10:00 Meeting"_s);
        m_desk->demand({ { u"hold"_s, m_wednesday, u"Meeting"_s }, { u"set"_s, u"title"_s, u"From the desk"_s } });
        m_laptop->demand({ { u"hold"_s, m_wednesday, u"Meeting"_s }, { u"set"_s, u"title"_s, u"From the laptop"_s } });

        m_desk->demand({ { u"save"_s, u"all"_s } });
        QTRY_VERIFY_WITH_TIMEOUT(m_server->contents(u"work"_s).contains("From the desk"), patienceInMilliseconds);
        const AnsweringProgram::Answer answer = m_laptop->request({ u"save"_s, u"all"_s });

        QVERIFY(!answer.isOk);
        QVERIFY2(answer.text.contains("Meeting"), answer.text.constData());
        SHOWS_IN_THE_END(*m_laptop, m_wednesday, u"09:00-10:00 From the desk"_s);
        SHOWS_IN_THE_END(*m_desk, m_wednesday, u"09:00-10:00 From the desk"_s);
        QVERIFY(!m_server->contents(u"work"_s).contains("From the laptop"));
    }
};

VANTLE_TEST(TwoMachinesTest)

#include "TwoMachinesTest.moc"
