// SPDX-License-Identifier: MIT
#include "ServiceTestStore.h"

#include <CalDavServer.h>
#include <TestRegistry.h>

#include <QElapsedTimer>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

const QDate day(2026, 3, 11);
constexpr int patience = 30 * 1000; // milliseconds
constexpr int longestSave = 3 * 10 * 1000; // three times the deadline of a save

const QByteArray meeting = "BEGIN:VEVENT\r\nUID:meeting\r\nDTSTAMP:20260101T000000Z\r\nDTSTART:20260311T120000Z\r\n"
                           "DTEND:20260311T130000Z\r\nSUMMARY:Meeting\r\nLOCATION:Room\r\nEND:VEVENT\r\n";

} // namespace

// A save is given up because its answer does not come in time, and is done nevertheless a moment later.
class ServiceLateAnswerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        for (const QString &name : { u"late"_s, u"new"_s })
            m_server.addCollection(name);
        QVERIFY2(m_server.start(), qPrintable(m_server.failure()));
        m_machine = std::make_unique<ServiceTestStore>();
        CalendarServiceNeighbour &neighbour = m_machine->neighbour();
        // One for each case: a look at the server that the first one has asked for may still be under way.
        for (const QString &name : { u"late"_s, u"new"_s }) {
            neighbour.addCalDav(name, CalItemKind::Event, name, m_server.url(name), CalDavServer::user());
            neighbour.authenticate(name, CalDavServer::user(), CalDavServer::password());
            neighbour.awaitConnection(name);
        }
        neighbour.put(u"late"_s, meeting);
        QVERIFY(m_machine->open());
        QTRY_VERIFY_WITH_TIMEOUT(m_machine->eventOn(day, u"Meeting"_s), patience);
    }
    void cleanupTestCase()
    {
        m_server.resume();
        m_machine.reset();
    }

    void aChangeThatComesLateIsNoConflictOfTheNextSave()
    {
        const CalEventPtr event = m_machine->eventOn(day, u"Meeting"_s);
        event->setTitle(u"Long meeting"_s);
        saveInVain(event);

        m_server.resume();
        QTRY_VERIFY_WITH_TIMEOUT(m_machine->eventOn(day, u"Long meeting"_s), patience);
        event->setTitle(u"Short meeting"_s);
        StoreError error;
        QVERIFY2(m_machine->store().saveEvent_span_error(event, CalSpanAllEvents, &error), qPrintable(error.message()));

        QCOMPARE(m_machine->eventsOn(day).size(), 1);
        QCOMPARE(m_machine->eventsOn(day).first()->title(), u"Short meeting"_s);
        QCOMPARE(m_machine->eventsOn(day).first()->location(), u"Room"_s);
        QTRY_VERIFY_WITH_TIMEOUT(m_server.contents(u"late"_s).contains("SUMMARY:Short meeting"), patience);
    }

    void aNewItemThatComesLateIsNotMadeTwice()
    {
        const auto event = std::make_shared<CalEvent>();
        event->setCalendar(m_machine->store().calendarWithUID(u"new"_s));
        event->setTitle(u"New"_s);
        event->setStartDate(QDateTime(day, QTime(9, 0)));
        event->setEndDate(QDateTime(day, QTime(10, 0)));
        saveInVain(event);

        m_server.resume();
        QTRY_VERIFY_WITH_TIMEOUT(m_machine->eventOn(day, u"New"_s), patience);
        event->setTitle(u"Newer"_s);
        StoreError error;
        QVERIFY2(m_machine->store().saveEvent_span_error(event, CalSpanAllEvents, &error), qPrintable(error.message()));

        QVERIFY(!m_machine->eventOn(day, u"New"_s));
        QVERIFY(m_machine->eventOn(day, u"Newer"_s));
        QTRY_COMPARE_WITH_TIMEOUT(m_server.contents(u"new"_s).count("SUMMARY:New"), 1, patience);
    }

private:
    void saveInVain(const CalEventPtr &event)
    {
        m_server.pause();
        QElapsedTimer timer;
        timer.start();
        StoreError error;
        QVERIFY(!m_machine->store().saveEvent_span_error(event, CalSpanAllEvents, &error));
        QVERIFY2(timer.elapsed() < longestSave, qPrintable(QString::number(timer.elapsed())));
        QVERIFY2(error.message().contains(u"It may still make the change later."_s), qPrintable(error.message()));
    }

    CalDavServer m_server;
    std::unique_ptr<ServiceTestStore> m_machine;
};

VANTLE_TEST(ServiceLateAnswerTest)

#include "ServiceLateAnswerTest.moc"
