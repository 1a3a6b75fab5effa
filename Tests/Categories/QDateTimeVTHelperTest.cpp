// SPDX-License-Identifier: MIT
#include "ScopedTimeZone.h"
#include "TestRegistry.h"

#include <QDateTime+VTHelper.h>

#include <QTest>

using namespace Qt::StringLiterals;

class QDateTimeVTHelperTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void boundsOfADay_data();
    void boundsOfADay();
    void boundsAreLocalTimes();
    void firstSecondIsItsOwnFirstSecond();
    void lastFractionOfTheDayIsAfterItsLastSecond();
    void instantOfAnotherZoneIsTakenLocally();
    void daysFollowEachOtherWithoutGap_data();
    void daysFollowEachOtherWithoutGap();
    void invalidInstantHasNoDay();
    void yearChangesAtLocalMidnight_data();
    void yearChangesAtLocalMidnight();
};

void QDateTimeVTHelperTest::boundsOfADay_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QString>("instant");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("last");
    QTest::addColumn<double>("hours");

    // Instants are in UTC, so that no row depends on what is tested.
    const auto row = [](const char *name, const char *zone, const char *instant, const char *first, const char *last,
                         double hours) {
        QTest::newRow(name) << QByteArray(zone) << QString::fromLatin1(instant) << QString::fromLatin1(first)
                            << QString::fromLatin1(last) << hours;
    };
    row("usual day", "Europe/Berlin", "2026-03-11T08:00:00Z", "2026-03-10T23:00:00Z", "2026-03-11T22:59:59Z", 24);
    row("day in UTC", "UTC", "2026-03-11T08:00:00Z", "2026-03-11T00:00:00Z", "2026-03-11T23:59:59Z", 24);
    row("midnight is the new day", "Europe/Berlin", "2026-03-10T23:00:00Z", "2026-03-10T23:00:00Z",
        "2026-03-11T22:59:59Z", 24);
    row("last second is the old day", "Europe/Berlin", "2026-03-10T22:59:59Z", "2026-03-09T23:00:00Z",
        "2026-03-10T22:59:59Z", 24);
    row("day of 23 hours", "Europe/Berlin", "2026-03-29T10:00:00Z", "2026-03-28T23:00:00Z", "2026-03-29T21:59:59Z", 23);
    row("day of 25 hours", "Europe/Berlin", "2026-10-25T10:00:00Z", "2026-10-24T22:00:00Z", "2026-10-25T22:59:59Z", 25);
    row("last day of a leap year", "Europe/Berlin", "2024-12-31T12:00:00Z", "2024-12-30T23:00:00Z",
        "2024-12-31T22:59:59Z", 24);
    row("last day of a common year", "Europe/Berlin", "2026-12-31T12:00:00Z", "2026-12-30T23:00:00Z",
        "2026-12-31T22:59:59Z", 24);
    row("leap day", "Europe/Berlin", "2024-02-29T12:00:00Z", "2024-02-28T23:00:00Z", "2024-02-29T22:59:59Z", 24);
    row("day of 23 hours in the south", "America/New_York", "2026-03-08T12:00:00Z", "2026-03-08T05:00:00Z",
        "2026-03-09T03:59:59Z", 23);
    row("half an hour of summer", "Australia/Lord_Howe", "2026-04-05T00:00:00Z", "2026-04-04T13:00:00Z",
        "2026-04-05T13:29:59Z", 24.5);
    row("midnight left out", "America/Santiago", "2026-09-06T15:00:00Z", "2026-09-06T04:00:00Z", "2026-09-07T02:59:59Z",
        23);
    row("day before midnight is left out", "America/Santiago", "2026-09-05T15:00:00Z", "2026-09-05T04:00:00Z",
        "2026-09-06T03:59:59Z", 24);
    row("hour before midnight comes twice", "America/Santiago", "2026-04-04T15:00:00Z", "2026-04-04T03:00:00Z",
        "2026-04-05T03:59:59Z", 25);
    row("second pass of the hour before midnight", "America/Santiago", "2026-04-05T03:30:00Z", "2026-04-04T03:00:00Z",
        "2026-04-05T03:59:59Z", 25);
    row("hour after midnight comes twice", "America/Havana", "2026-11-01T12:00:00Z", "2026-11-01T04:00:00Z",
        "2026-11-02T04:59:59Z", 25);
    row("day before midnight comes twice", "America/Havana", "2026-10-31T12:00:00Z", "2026-10-31T04:00:00Z",
        "2026-11-01T03:59:59Z", 24);
    row("midnight left out in Havana", "America/Havana", "2026-03-08T12:00:00Z", "2026-03-08T05:00:00Z",
        "2026-03-09T03:59:59Z", 23);
    row("day before a day that was left out", "Pacific/Apia", "2011-12-30T00:00:00Z", "2011-12-29T10:00:00Z",
        "2011-12-30T09:59:59Z", 24);
    row("far east", "Pacific/Kiritimati", "2026-03-11T12:00:00Z", "2026-03-11T10:00:00Z", "2026-03-12T09:59:59Z", 24);
    row("quarter of an hour", "Asia/Kathmandu", "2026-03-11T12:00:00Z", "2026-03-10T18:15:00Z", "2026-03-11T18:14:59Z",
        24);
}

void QDateTimeVTHelperTest::boundsOfADay()
{
    QFETCH(const QByteArray, zone);
    QFETCH(const QString, instant);
    QFETCH(const QString, first);
    QFETCH(const QString, last);
    QFETCH(const double, hours);
    const ScopedTimeZone local(zone);
    const QDateTime within = QDateTime::fromString(instant, Qt::ISODate).toLocalTime();

    const QDateTime firstSecond = firstSecondOfDay(within);
    const QDateTime lastSecond = lastSecondOfDay(within);

    QCOMPARE(firstSecond.toUTC().toString(Qt::ISODate), first);
    QCOMPARE(lastSecond.toUTC().toString(Qt::ISODate), last);
    QCOMPARE(static_cast<double>(firstSecond.secsTo(lastSecond) + 1), hours * 3600);
}

void QDateTimeVTHelperTest::boundsAreLocalTimes()
{
    const QDateTime within(QDate(2026, 10, 25), QTime(14, 30, 15, 250));

    QCOMPARE(firstSecondOfDay(within), QDateTime(QDate(2026, 10, 25), QTime(0, 0)));
    QCOMPARE(firstSecondOfDay(within).timeSpec(), Qt::LocalTime);
    QCOMPARE(lastSecondOfDay(within), QDateTime(QDate(2026, 10, 25), QTime(23, 59, 59)));
    QCOMPARE(lastSecondOfDay(within).timeSpec(), Qt::LocalTime);
}

void QDateTimeVTHelperTest::firstSecondIsItsOwnFirstSecond()
{
    const QDateTime midnight(QDate(2026, 3, 11), QTime(0, 0));

    QCOMPARE(firstSecondOfDay(midnight), midnight);
    QCOMPARE(lastSecondOfDay(lastSecondOfDay(midnight)), lastSecondOfDay(midnight));
}

void QDateTimeVTHelperTest::lastFractionOfTheDayIsAfterItsLastSecond()
{
    const QDateTime instant(QDate(2026, 3, 11), QTime(23, 59, 59, 500));

    QVERIFY(instant > lastSecondOfDay(instant));
    QCOMPARE(lastSecondOfDay(instant).time().msec(), 0);
}

void QDateTimeVTHelperTest::instantOfAnotherZoneIsTakenLocally()
{
    const QDateTime lateInUtc(QDate(2026, 3, 11), QTime(23, 30), Qt::UTC); // 00:30 of the 12th in Berlin

    QCOMPARE(firstSecondOfDay(lateInUtc), QDateTime(QDate(2026, 3, 12), QTime(0, 0)));
}

void QDateTimeVTHelperTest::daysFollowEachOtherWithoutGap_data()
{
    QTest::addColumn<QByteArray>("zone");

    for (const char *zone : { "Europe/Berlin", "America/New_York", "America/Santiago", "America/Havana", "Africa/Cairo",
             "Asia/Beirut", "Asia/Tehran", "Australia/Lord_Howe", "Asia/Kathmandu", "UTC", "Pacific/Kiritimati",
             "America/Asuncion", "Asia/Gaza", "America/Nuuk" })
        QTest::newRow(zone) << QByteArray(zone);
}

// Every instant belongs to the day between its bounds, over all clock changes of three years.
void QDateTimeVTHelperTest::daysFollowEachOtherWithoutGap()
{
    QFETCH(const QByteArray, zone);
    const ScopedTimeZone local(zone);

    QDateTime first = firstSecondOfDay(QDateTime(QDate(2023, 12, 31), QTime(12, 0)));
    for (int day = 0; day < 3 * 366; ++day) {
        const QDateTime last = lastSecondOfDay(first);
        const QDateTime next = firstSecondOfDay(last.addSecs(1));

        QCOMPARE(next.toSecsSinceEpoch(), last.toSecsSinceEpoch() + 1);
        QCOMPARE(next.date(), first.date().addDays(1));
        QCOMPARE(last.date(), first.date());
        QCOMPARE(firstSecondOfDay(last), first);
        first = next;
    }
}

void QDateTimeVTHelperTest::invalidInstantHasNoDay()
{
    QVERIFY(!firstSecondOfDay(QDateTime()).isValid());
    QVERIFY(!lastSecondOfDay(QDateTime()).isValid());
}

void QDateTimeVTHelperTest::yearChangesAtLocalMidnight_data()
{
    QTest::addColumn<QByteArray>("zone");

    QTest::newRow("ahead of UTC") << QByteArray("Asia/Tokyo");
    QTest::newRow("behind UTC") << QByteArray("America/Los_Angeles");
    QTest::newRow("UTC") << QByteArray("UTC");
}

void QDateTimeVTHelperTest::yearChangesAtLocalMidnight()
{
    QFETCH(const QByteArray, zone);
    const ScopedTimeZone local(zone);
    const QDateTime evening(QDate(2026, 12, 31), QTime(23, 30));

    QVERIFY(isInCurrentYear(evening, QDateTime(QDate(2026, 12, 31), QTime(23, 59, 59))));
    QVERIFY(isInCurrentYear(evening, QDateTime(QDate(2026, 1, 1), QTime(0, 0))));
    QVERIFY(!isInCurrentYear(evening, QDateTime(QDate(2027, 1, 1), QTime(0, 0))));
    QVERIFY(!isInCurrentYear(evening, QDateTime(QDate(2025, 12, 31), QTime(23, 59, 59))));
    QVERIFY(isInCurrentYear(evening.toUTC(), evening));
}

VANTLE_TEST(QDateTimeVTHelperTest)
#include "QDateTimeVTHelperTest.moc"
