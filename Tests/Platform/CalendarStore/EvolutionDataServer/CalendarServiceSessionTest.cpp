// SPDX-License-Identifier: MIT
#include <CalendarServiceNeighbour.h>
#include <CalendarServiceSession.h>
#include <TestRegistry.h>

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

const QByteArray series = "BEGIN:VEVENT\r\nUID:series\r\nDTSTART;TZID=Europe/Berlin:20260311T090000\r\n"
                          "RRULE:FREQ=DAILY;COUNT=5\r\nSUMMARY:Every day\r\nEND:VEVENT\r\n";
const QByteArray override = "BEGIN:VEVENT\r\nUID:series\r\nRECURRENCE-ID;TZID=Europe/Berlin:20260312T090000\r\n"
                            "DTSTART;TZID=Europe/Berlin:20260312T110000\r\nSUMMARY:One day\r\nEND:VEVENT\r\n";

} // namespace

// What the other tests of the service stand on.
class CalendarServiceSessionTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<CalendarServiceSession> m_session;

private Q_SLOTS:
    void init()
    {
        m_session = std::make_unique<CalendarServiceSession>();
        QVERIFY2(m_session->start(), qPrintable(m_session->failure()));
    }
    void cleanup() { m_session.reset(); }

    void serviceRunsInItsOwnHome()
    {
        QVERIFY(!m_session->processId(CalendarServiceSession::Part::Factory));
        CalendarServiceNeighbour neighbour(*m_session);

        neighbour.addCalendar(u"work"_s, CalItemKind::Event, u"Work"_s);
        neighbour.put(u"work"_s, series);

        QVERIFY(m_session->processId(CalendarServiceSession::Part::Factory));
        QVERIFY(neighbour.request({ u"sources"_s }).text.contains("work events Work\n"));
        QVERIFY(QFile::exists(m_session->path(u"config/evolution/sources/work.source"_s)));
    }

    void whatIsPutReplacesWhatWasThere()
    {
        CalendarServiceNeighbour neighbour(*m_session);
        neighbour.addCalendar(u"work"_s, CalItemKind::Event, u"Work"_s);

        neighbour.put(u"work"_s, series + override);
        QCOMPARE(neighbour.list(u"work"_s), QStringList({ u"series Every day"_s, u"series One day"_s }));
        neighbour.put(u"work"_s, series);
        QCOMPARE(neighbour.list(u"work"_s), QStringList({ u"series Every day"_s }));
        QVERIFY(!neighbour.text(u"work"_s, u"series"_s).contains("EXDATE"));
        neighbour.remove(u"work"_s, u"series"_s);
        QCOMPARE(neighbour.list(u"work"_s), QStringList());
    }

    void readOnlyCalendarIsReportedAsSuch()
    {
        CalendarServiceNeighbour neighbour(*m_session);
        QFile file(m_session->path(u"shared.ics"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//test//test//EN\r\nEND:VCALENDAR\r\n");
        file.close();

        neighbour.addReadOnlyCalendar(u"shared"_s, CalItemKind::Event, u"Shared"_s, file.fileName());
        QCOMPARE(neighbour.request({ u"is-read-only"_s, u"shared"_s }).text, "1");
        neighbour.put(u"shared"_s, series);
        QCOMPARE(neighbour.list(u"shared"_s).size(), 1);
    }

    void killedFactoryComesBackWhenItIsNeeded()
    {
        CalendarServiceNeighbour neighbour(*m_session);
        neighbour.addCalendar(u"work"_s, CalItemKind::Event, u"Work"_s);
        neighbour.put(u"work"_s, series);

        QVERIFY(m_session->kill(CalendarServiceSession::Part::Factory));
        QVERIFY(!m_session->processId(CalendarServiceSession::Part::Factory));
        QVERIFY(m_session->activate(CalendarServiceSession::Part::Factory));
        QTRY_VERIFY(neighbour.request({ u"list"_s, u"work"_s }).isOk);
    }

    void stoppedFactoryEndsWithTheSession()
    {
        QVERIFY(m_session->activate(CalendarServiceSession::Part::Factory));
        QVERIFY(m_session->stop(CalendarServiceSession::Part::Factory));
        const qint64 factory = *m_session->processId(CalendarServiceSession::Part::Factory);

        m_session.reset();

        // What nobody has waited for yet has a number, but nothing else.
        QFile environment(u"/proc/%1/environ"_s.arg(factory));
        QVERIFY(!environment.open(QIODevice::ReadOnly) || environment.readAll().isEmpty());
    }

    void sessionsKnowNothingOfEachOther()
    {
        CalendarServiceSession other;
        QVERIFY2(other.start(), qPrintable(other.failure()));
        CalendarServiceNeighbour here(*m_session);
        CalendarServiceNeighbour there(other);

        here.addCalendar(u"work"_s, CalItemKind::Event, u"Work"_s);

        QVERIFY(!there.request({ u"sources"_s }).text.contains("work"));
        QVERIFY(m_session->processId(CalendarServiceSession::Part::Registry)
            != other.processId(CalendarServiceSession::Part::Registry));
    }
};

VANTLE_TEST(CalendarServiceSessionTest)

#include "CalendarServiceSessionTest.moc"
