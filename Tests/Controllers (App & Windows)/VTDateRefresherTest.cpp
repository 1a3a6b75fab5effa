// SPDX-License-Identifier: MIT
#include "MainWindowFixture.h"

#include <ScopedTimeZone.h>
#include <TestRegistry.h>

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// How the shown day keeps up with the clock: the timer, midnight, clock and zone changes, sleep.
class VTDateRefresherTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void timerRunsExactlyWhileTodayIsShown();
    void everyTickFetchesAgain();
    void runningTimerIsNotStartedAnew();
    void instantsOfTodayAreToday_data();
    void instantsOfTodayAreToday();
    void midnightIsFollowedWithinTenSeconds();
    void otherDayDoesNotMoveAtMidnight();
    void clockSetForwardIsFollowed();
    void clockSetBackIsFollowed();
    void newTimeZoneIsFollowed();
    void wakingAfterMidnightIsFollowed();
    void shortAndLongDaysOfClockChangesAreFollowed_data();
    void shortAndLongDaysOfClockChangesAreFollowed();
};

void VTDateRefresherTest::timerRunsExactlyWhileTodayIsShown()
{
    MainWindowFixture fixture;
    VTMainWindowController &controller = fixture.wake();

    controller.setDate(fixture.clock.now().addDays(1));
    QVERIFY(!controller.hasDateRefresher());
    QCOMPARE(fixture.clock.runningTimers(), 0);

    controller.setDateToNow();
    QVERIFY(controller.hasDateRefresher());
    QCOMPARE(fixture.clock.runningTimers(), 1);
}

void VTDateRefresherTest::everyTickFetchesAgain()
{
    MainWindowFixture fixture;
    const VTMainWindowController &controller = fixture.wake();
    const int before = fixture.backend().eventQueries();

    fixture.clock.advance(9999ms);
    QCOMPARE(fixture.backend().eventQueries(), before);

    fixture.clock.advance(1ms);
    QCOMPARE(fixture.backend().eventQueries(), before + 1);
    QCOMPARE(controller.date(), fixture.clock.now());
}

void VTDateRefresherTest::runningTimerIsNotStartedAnew()
{
    MainWindowFixture fixture;
    VTMainWindowController &controller = fixture.wake();
    fixture.clock.advance(9s);
    controller.setDateToNow();
    const int before = fixture.backend().eventQueries();

    fixture.clock.advance(1s);

    QCOMPARE(fixture.backend().eventQueries(), before + 1);
}

void VTDateRefresherTest::instantsOfTodayAreToday_data()
{
    QTest::addColumn<QDateTime>("instant");
    QTest::addColumn<bool>("isToday");

    QTest::newRow("first second") << localInstant("2026-11-20T00:00") << true;
    QTest::newRow("the second before") << localInstant("2026-11-20T00:00").addSecs(-1) << false;
    QTest::newRow("last second") << localInstant("2026-11-20T23:59").addSecs(59) << true;
    QTest::newRow("last fraction") << localInstant("2026-11-20T23:59").addMSecs(59'900) << true;
    QTest::newRow("the second after") << localInstant("2026-11-21T00:00") << false;
}

void VTDateRefresherTest::instantsOfTodayAreToday()
{
    QFETCH(const QDateTime, instant);
    QFETCH(const bool, isToday);
    MainWindowFixture fixture;
    VTMainWindowController &controller = fixture.wake();

    controller.setDate(instant);

    QCOMPARE(controller.hasDateRefresher(), isToday);
}

void VTDateRefresherTest::midnightIsFollowedWithinTenSeconds()
{
    MainWindowFixture fixture;
    fixture.addEvent("tomorrow", "2026-11-21T09:00");
    // A tick falls into the last fraction of a second of the day.
    fixture.clock.setNow(localInstant("2026-11-20T23:59").addMSecs(39'500));
    const VTMainWindowController &controller = fixture.wake();
    fixture.clock.advance(20s);
    QVERIFY(controller.events().isEmpty());
    QVERIFY(controller.hasDateRefresher());

    fixture.clock.advance(10s);

    QCOMPARE(controller.date().date(), QDate(2026, 11, 21));
    QCOMPARE(uidsOf(controller.events()), QStringList { u"tomorrow"_s });
    QVERIFY(controller.hasDateRefresher());
}

void VTDateRefresherTest::otherDayDoesNotMoveAtMidnight()
{
    MainWindowFixture fixture;
    VTMainWindowController &controller = fixture.wake();
    const QDateTime shown = localInstant("2026-11-18T10:00");
    controller.setDate(shown);

    fixture.clock.advance(24h);

    QCOMPARE(controller.date(), shown);
}

void VTDateRefresherTest::clockSetForwardIsFollowed()
{
    MainWindowFixture fixture;
    const VTMainWindowController &controller = fixture.wake();

    fixture.clock.setNow(localInstant("2027-02-03T04:05"));
    fixture.clock.advance(10s);

    QCOMPARE(controller.date().date(), QDate(2027, 2, 3));
    QVERIFY(controller.hasDateRefresher());
}

void VTDateRefresherTest::clockSetBackIsFollowed()
{
    MainWindowFixture fixture;
    fixture.addEvent("last year", "2025-01-02T09:00");
    const VTMainWindowController &controller = fixture.wake();

    fixture.clock.setNow(localInstant("2025-01-02T03:04"));
    fixture.clock.advance(10s);

    QCOMPARE(uidsOf(controller.events()), QStringList { u"last year"_s });
    QVERIFY(controller.hasDateRefresher());
}

void VTDateRefresherTest::newTimeZoneIsFollowed()
{
    MainWindowFixture fixture;
    fixture.clock.setNow(localInstant("2026-11-20T22:00"));
    fixture.backend().addTask(
        u"Home"_s, makeCompletedTask(u"early"_s, u"early"_s, localInstant("2026-11-15T18:00").toUTC()));
    const VTMainWindowController &controller = fixture.wake();
    QVERIFY(controller.tasks().isEmpty());
    const qint64 instant = fixture.clock.now().toMSecsSinceEpoch();

    // Eight hours on: the day after in Tokyo, where the week began on Sunday evening by Berlin's clock.
    const ScopedTimeZone tokyo("Asia/Tokyo");
    fixture.clock.setNow(QDateTime::fromMSecsSinceEpoch(instant));
    fixture.clock.advance(10s);

    QCOMPARE(controller.date().toLocalTime().date(), QDate(2026, 11, 21));
    QCOMPARE(uidsOf(controller.tasks()), QStringList { u"early"_s });
    QVERIFY(controller.hasDateRefresher());
}

void VTDateRefresherTest::wakingAfterMidnightIsFollowed()
{
    MainWindowFixture fixture;
    const VTMainWindowController &controller = fixture.wake();
    fixture.clock.advance(5s);

    // The machine slept: the timer's own time stood still.
    fixture.clock.setNow(localInstant("2026-11-21T07:30"));
    fixture.clock.advance(5s);

    QCOMPARE(controller.date().date(), QDate(2026, 11, 21));
}

void VTDateRefresherTest::shortAndLongDaysOfClockChangesAreFollowed_data()
{
    QTest::addColumn<QDateTime>("evening");
    QTest::addColumn<QDate>("nextDay");

    QTest::newRow("into summer time") << localInstant("2026-03-29T23:59") << QDate(2026, 3, 30);
    QTest::newRow("into winter time") << localInstant("2026-10-25T23:59") << QDate(2026, 10, 26);
}

void VTDateRefresherTest::shortAndLongDaysOfClockChangesAreFollowed()
{
    QFETCH(const QDateTime, evening);
    QFETCH(const QDate, nextDay);
    MainWindowFixture fixture;
    fixture.clock.setNow(evening);
    const VTMainWindowController &controller = fixture.wake();

    fixture.clock.advance(70s);

    QCOMPARE(controller.date().date(), nextDay);
    QVERIFY(controller.hasDateRefresher());
}

VANTLE_TEST(VTDateRefresherTest)
#include "VTDateRefresherTest.moc"
