// SPDX-License-Identifier: MIT
#include "ServiceTestStore.h"

#include <CalDavServer.h>
#include <TestRegistry.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

const QDate day(2026, 3, 11); // a Wednesday
constexpr int patience = 30 * 1000; // milliseconds

QByteArray standup(const QByteArray &title)
{
    return "BEGIN:VEVENT\r\nUID:standup\r\nDTSTAMP:20260101T000000Z\r\nDTSTART;TZID=Europe/Berlin:20260309T090000\r\n"
           "DTEND;TZID=Europe/Berlin:20260309T100000\r\nRRULE:FREQ=DAILY;COUNT=5\r\nSUMMARY:"
        + title + "\r\nEND:VEVENT\r\n";
}

QByteArray meeting(const QByteArray &title)
{
    return "BEGIN:VEVENT\r\nUID:meeting\r\nDTSTAMP:20260101T000000Z\r\nDTSTART:20260311T120000Z\r\n"
           "DTEND:20260311T130000Z\r\nSUMMARY:"
        + title + "\r\nEND:VEVENT\r\n";
}

} // namespace

// A calendar on a server, which another machine has changed since this machine's service looked there last: here, its
// own copy is still the old one.
class ServiceConflictTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_server.addCollection(u"work"_s);
        QVERIFY2(m_server.start(), qPrintable(m_server.failure()));
        m_here = std::make_unique<ServiceTestStore>();
        QVERIFY2(m_there.start(), qPrintable(m_there.failure()));
        m_neighbourThere = std::make_unique<CalendarServiceNeighbour>(m_there);
        for (CalendarServiceNeighbour *const each : { &m_here->neighbour(), m_neighbourThere.get() }) {
            each->addCalDav(u"work"_s, CalItemKind::Event, u"Work"_s, m_server.url(u"work"_s), CalDavServer::user());
            each->authenticate(u"work"_s, CalDavServer::user(), CalDavServer::password());
            each->awaitConnection(u"work"_s);
        }
    }
    void cleanupTestCase() { m_here.reset(); }

    void init()
    {
        m_neighbourThere->put(u"work"_s, meeting("Meeting"));
        m_neighbourThere->put(u"work"_s, standup("Standup"));
        m_here->neighbour().refresh(u"work"_s);
        QVERIFY(m_here->open());
        QTRY_VERIFY_WITH_TIMEOUT(m_here->eventOn(day, u"Meeting"_s), patience);
        QTRY_VERIFY_WITH_TIMEOUT(m_here->eventOn(day, u"Standup"_s), patience);
    }
    void cleanup()
    {
        m_here->close();
        m_neighbourThere->refresh(u"work"_s);
        for (const QString &uid : { u"meeting"_s, u"standup"_s }) {
            if (!m_neighbourThere->text(u"work"_s, uid).isEmpty())
                m_neighbourThere->remove(u"work"_s, uid);
        }
        m_here->neighbour().refresh(u"work"_s);
        QTRY_VERIFY_WITH_TIMEOUT(m_here->neighbour().list(u"work"_s).isEmpty(), patience);
    }

    void anEventChangedThereIsNotOverwritten()
    {
        const CalEventPtr event = m_here->eventOn(day, u"Meeting"_s);
        changeThere(meeting("Theirs"), "SUMMARY:Theirs");

        event->setTitle(u"Ours"_s);
        QVERIFY(!save(event, CalSpanAllEvents));

        expectTheirs(u"Meeting"_s);
    }

    void anEventChangedThereIsNotRemoved()
    {
        const CalEventPtr event = m_here->eventOn(day, u"Meeting"_s);
        changeThere(meeting("Theirs"), "SUMMARY:Theirs");

        m_error = {};
        QVERIFY(!m_here->store().removeEvent_span_error(event, CalSpanAllEvents, &m_error));

        expectTheirs(u"Meeting"_s);
        QVERIFY(!m_here->store().undoableRemovalTitle());
    }

    void anEventRemovedThereDoesNotComeBack()
    {
        const CalEventPtr event = m_here->eventOn(day, u"Meeting"_s);
        m_neighbourThere->remove(u"work"_s, u"meeting"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!m_server.contents(u"work"_s).contains("UID:meeting"), patience);

        event->setTitle(u"Ours"_s);
        QVERIFY(!save(event, CalSpanAllEvents));

        QVERIFY2(!m_server.contents(u"work"_s).contains("UID:meeting"), m_server.contents(u"work"_s).constData());
        QTRY_COMPARE_WITH_TIMEOUT(m_here->eventsOn(day).size(), 1, patience);
    }

    void aSeriesChangedThereIsNotOverwritten_data()
    {
        QTest::addColumn<CalSpan>("span");

        QTest::newRow("one occurrence") << CalSpanThisEvent;
        QTest::newRow("all occurrences") << CalSpanAllEvents;
    }
    void aSeriesChangedThereIsNotOverwritten()
    {
        QFETCH(const CalSpan, span);
        const CalEventPtr event = m_here->eventOn(day, u"Standup"_s);
        changeThere(standup("Theirs"), "SUMMARY:Theirs");

        event->setTitle(u"Ours"_s);
        QVERIFY(!save(event, span));

        expectTheirs(u"Standup"_s);
    }

    void theFirstStepOfTheSheetIsRefusedAndLeavesNoTrace()
    {
        const CalEventPtr event = m_here->eventOn(day, u"Standup"_s);
        changeThere(standup("Theirs"), "SUMMARY:Theirs");

        event->setTitle(u"DUMBY Ours"_s);
        QVERIFY(!save(event, CalSpanThisEvent));
        event->setTitle(u"Ours"_s);
        QVERIFY(!save(event, CalSpanAllEvents));

        expectTheirs(u"Standup"_s);
        QVERIFY(!m_server.contents(u"work"_s).contains("DUMBY"));
    }

    void aFreshRecordCanBeSavedAfterwards()
    {
        const CalEventPtr event = m_here->eventOn(day, u"Meeting"_s);
        changeThere(meeting("Theirs"), "SUMMARY:Theirs");
        event->setTitle(u"Ours"_s);
        QVERIFY(!save(event, CalSpanAllEvents));
        QTRY_VERIFY_WITH_TIMEOUT(m_here->eventOn(day, u"Theirs"_s), patience);

        const CalEventPtr fresh = m_here->eventOn(day, u"Theirs"_s);
        fresh->setTitle(u"Ours"_s);
        QVERIFY2(save(fresh, CalSpanAllEvents), qPrintable(m_error.message()));

        QTRY_VERIFY_WITH_TIMEOUT(m_server.contents(u"work"_s).contains("SUMMARY:Ours"), patience);
    }

    // Several saves in a row are no conflict with each other.
    void ownSavesFollowEachOther()
    {
        const CalEventPtr event = m_here->eventOn(day, u"Standup"_s);
        for (const QString &title : { u"One"_s, u"Two"_s, u"Three"_s }) {
            event->setTitle(title);
            QVERIFY2(save(event, CalSpanThisEvent), qPrintable(m_error.message()));
        }
        const CalEventPtr other = m_here->eventOn(day.addDays(1), u"Standup"_s);
        other->setStartDate(other->startDate().addSecs(3600));
        other->setEndDate(other->endDate().addSecs(3600));
        QVERIFY2(save(other, CalSpanAllEvents), qPrintable(m_error.message()));

        QTRY_VERIFY_WITH_TIMEOUT(m_server.contents(u"work"_s).contains("SUMMARY:Three"), patience);
    }

private:
    // Without this machine's service hearing of it.
    void changeThere(const QByteArray &components, const QByteArray &mark)
    {
        m_neighbourThere->put(u"work"_s, components);
        QTRY_VERIFY_WITH_TIMEOUT(m_server.contents(u"work"_s).contains(mark), patience);
    }
    bool save(const CalEventPtr &event, CalSpan span)
    {
        m_error = {};
        return m_here->store().saveEvent_span_error(event, span, &m_error);
    }
    // The save was refused, says so of the item, and the other version stands everywhere.
    void expectTheirs(const QString &title)
    {
        QVERIFY2(m_error.code == StoreError::Code::Conflict, qPrintable(m_error.message()));
        QCOMPARE(m_error.item, title);
        QVERIFY(m_server.contents(u"work"_s).contains("SUMMARY:Theirs"));
        QVERIFY(!m_server.contents(u"work"_s).contains("SUMMARY:Ours"));
        // It is shown without anybody asking for it.
        QTRY_VERIFY_WITH_TIMEOUT(m_here->eventOn(day, u"Theirs"_s), patience);
    }

    CalDavServer m_server;
    CalendarServiceSession m_there;
    std::unique_ptr<CalendarServiceNeighbour> m_neighbourThere;
    std::unique_ptr<ServiceTestStore> m_here;
    StoreError m_error;
};

VANTLE_TEST(ServiceConflictTest)

#include "ServiceConflictTest.moc"
