// SPDX-License-Identifier: MIT
#include "ManualClock.h"
#include "TestRegistry.h"

#include <Clock.h>

#include <QElapsedTimer>
#include <QTest>

using namespace std::chrono_literals;

class ClockTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void systemClockTellsLocalTime();
    void systemClockRepeats();
    void firstCallComesAfterOneInterval();
    void destroyedTimerFiresNoMore();
    void timerMayEndItselfInItsAction();
    void manualTimerFiresWhenItsInstantComes();
    void manualTimerMayEndItselfInItsAction();
    void settingTheTimeFiresNothing();
};

void ClockTest::systemClockTellsLocalTime()
{
    const QDateTime before = QDateTime::currentDateTime();
    const QDateTime now = SystemClock().now();
    const QDateTime after = QDateTime::currentDateTime();

    QCOMPARE(now.timeSpec(), Qt::LocalTime);
    QVERIFY(before <= now && now <= after);
}

void ClockTest::systemClockRepeats()
{
    SystemClock clock;
    int calls = 0;

    const auto timer = clock.repeat(1ms, [&] { ++calls; });

    QCOMPARE(calls, 0);
    QTRY_VERIFY(calls >= 3);
}

void ClockTest::firstCallComesAfterOneInterval()
{
    SystemClock clock;
    QElapsedTimer elapsed;
    elapsed.start();
    qint64 firstCall = -1;

    const auto timer = clock.repeat(100ms, [&] { firstCall = firstCall < 0 ? elapsed.elapsed() : firstCall; });
    QTRY_VERIFY(firstCall >= 0);

    // Coarse timers may be early by a twentieth.
    QVERIFY(firstCall >= 90);
}

void ClockTest::destroyedTimerFiresNoMore()
{
    SystemClock clock;
    int calls = 0;
    int othersCalls = 0;
    auto timer = clock.repeat(1ms, [&] { ++calls; });
    const auto other = clock.repeat(1ms, [&] { ++othersCalls; });

    timer.reset();

    QTRY_VERIFY(othersCalls >= 3);
    QCOMPARE(calls, 0);
}

void ClockTest::timerMayEndItselfInItsAction()
{
    SystemClock clock;
    int calls = 0;
    int othersCalls = 0;
    std::unique_ptr<RepeatingTimer> timer;
    timer = clock.repeat(1ms, [&] {
        timer.reset();
        ++calls;
    });
    const auto other = clock.repeat(1ms, [&] { ++othersCalls; });

    QTRY_VERIFY(othersCalls >= 3);

    QCOMPARE(calls, 1);
}

void ClockTest::manualTimerFiresWhenItsInstantComes()
{
    const QDateTime start(QDate(2026, 3, 11), QTime(9, 0));
    ManualClock clock(start);
    QList<QDateTime> instants;
    const auto timer = clock.repeat(10s, [&] { instants.append(clock.now()); });

    clock.advance(25s);

    QCOMPARE(instants, (QList<QDateTime> { start.addSecs(10), start.addSecs(20) }));
    QCOMPARE(clock.now(), start.addSecs(25));
}

void ClockTest::manualTimerMayEndItselfInItsAction()
{
    ManualClock clock(QDateTime(QDate(2026, 3, 11), QTime(9, 0)));
    int calls = 0;
    std::unique_ptr<RepeatingTimer> timer;
    timer = clock.repeat(10s, [&] {
        timer.reset();
        ++calls;
    });

    clock.advance(60s);

    QCOMPARE(calls, 1);
    QCOMPARE(clock.runningTimers(), 0);
}

void ClockTest::settingTheTimeFiresNothing()
{
    const QDateTime start(QDate(2026, 3, 11), QTime(9, 0));
    ManualClock clock(start);
    int calls = 0;
    const auto timer = clock.repeat(10s, [&] { ++calls; });

    clock.setNow(start.addDays(1));
    QCOMPARE(calls, 0);
    clock.advance(10s);

    QCOMPARE(calls, 1);
    QCOMPARE(clock.now(), start.addDays(1).addSecs(10));
}

VANTLE_TEST(ClockTest)
#include "ClockTest.moc"
