// SPDX-License-Identifier: MIT
#include <CalDavServer.h>
#include <CalendarServiceNeighbour.h>
#include <CalendarServiceSession.h>
#include <TestRegistry.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

const QByteArray meeting
    = "BEGIN:VEVENT\r\nUID:meeting\r\nDTSTART:20260311T090000Z\r\nSUMMARY:Meeting\r\nEND:VEVENT\r\n";

// One of a person's machines, whose calendar "work" is on the server.
struct Machine {
    CalendarServiceSession session;
    std::unique_ptr<CalendarServiceNeighbour> neighbour;

    void setUp(const CalDavServer &server)
    {
        QVERIFY2(session.start(), qPrintable(session.failure()));
        neighbour = std::make_unique<CalendarServiceNeighbour>(session);
        neighbour->addCalDav(u"work"_s, CalItemKind::Event, u"Work"_s, server.url(u"work"_s), CalDavServer::user());
    }
    void logIn() const
    {
        neighbour->authenticate(u"work"_s, CalDavServer::user(), CalDavServer::password());
        neighbour->awaitConnection(u"work"_s);
    }
};

} // namespace

// Two machines of a person meet at a server: the ground of the tests with two stores.
class CalDavServerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatOneMachineWritesReachesTheOther()
    {
        CalDavServer server;
        server.addCollection(u"work"_s);
        QVERIFY2(server.start(), qPrintable(server.failure()));
        Machine desk;
        desk.setUp(server);
        desk.logIn();
        Machine laptop;
        laptop.setUp(server);
        laptop.logIn();

        desk.neighbour->put(u"work"_s, meeting);

        QTRY_VERIFY(server.contents(u"work"_s).contains("SUMMARY:Meeting"));
        laptop.neighbour->refresh(u"work"_s);
        QTRY_COMPARE(laptop.neighbour->list(u"work"_s), QStringList { u"meeting Meeting"_s });
    }

    void stoppedServerComesBackWithWhatItHeld()
    {
        CalDavServer server;
        server.addCollection(u"work"_s);
        QVERIFY2(server.start(), qPrintable(server.failure()));
        Machine desk;
        desk.setUp(server);
        desk.logIn();
        desk.neighbour->put(u"work"_s, meeting);
        const QString url = server.url(u"work"_s);

        server.stop();
        QVERIFY2(server.start(), qPrintable(server.failure()));

        QCOMPARE(server.url(u"work"_s), url);
        QVERIFY(server.contents(u"work"_s).contains("SUMMARY:Meeting"));
    }
};

VANTLE_TEST(CalDavServerTest)

#include "CalDavServerTest.moc"
