// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <SystemZone.h>
#include <ValueTexts.h>
#include <ZoneDefinition.h>

#include <QTest>

using namespace Qt::StringLiterals;
using ICalendar::ZoneDefinition;

namespace
{

ICalendar::UtcSeconds utc(int year, int month, int day)
{
    return QDateTime(QDate(year, month, day), QTime(0, 0), Qt::UTC).toSecsSinceEpoch();
}

} // namespace

// Zones as files carry them, and the values beside them.
class ZoneDefinitionTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDefinitionTellsTheTimeOfTheSystem_data();
    void aDefinitionTellsTheTimeOfTheSystem();
    void aZoneWithoutClockChangesHasOneObservance();
    void aZoneThatRulesCannotSayHasNone();
    void aDefinitionIsNotRightBeforeItsRule();
    void valuesAreWrittenAsTheStandardWantsThem();
};

void ZoneDefinitionTest::aDefinitionTellsTheTimeOfTheSystem_data()
{
    QTest::addColumn<QByteArray>("name");

    for (const char *const name : { "Europe/Berlin", "Europe/London", "Europe/Dublin", "America/New_York",
             "America/Los_Angeles", "Australia/Sydney", "Australia/Lord_Howe", "Pacific/Auckland", "Asia/Kathmandu" })
        QTest::newRow(name) << QByteArray(name);
}

void ZoneDefinitionTest::aDefinitionTellsTheTimeOfTheSystem()
{
    QFETCH(const QByteArray, name);
    const auto definition = ZoneDefinition::ofSystemZone(name);
    QVERIFY(definition);
    QCOMPARE(definition->tzid, name);
    QVERIFY(definition->lines.contains("TZID:" + name));
    const ICalendar::ZonePtr system
        = ICalendar::readZoneFile(ICalendar::zoneFolder() + u'/' + QString::fromLatin1(name));

    // Every half hour of two years, and each day of many.
    for (ICalendar::UtcSeconds instant = utc(2026, 1, 1); instant < utc(2028, 1, 1); instant += 1800)
        QVERIFY2(definition->isRightAt(instant, *system), ICalendar::utcText(instant).constData());
    for (ICalendar::UtcSeconds instant = utc(2009, 1, 1); instant < utc(2080, 1, 1); instant += 86400)
        QVERIFY2(definition->isRightAt(instant, *system), ICalendar::utcText(instant).constData());
}

void ZoneDefinitionTest::aZoneWithoutClockChangesHasOneObservance()
{
    const auto definition = ZoneDefinition::ofSystemZone("Asia/Tokyo");

    QVERIFY(definition);
    QCOMPARE(definition->lines,
        (QByteArrayList { "BEGIN:VTIMEZONE", "TZID:Asia/Tokyo", "BEGIN:STANDARD", "DTSTART:19700101T000000",
            "TZOFFSETFROM:+0900", "TZOFFSETTO:+0900", "END:STANDARD", "END:VTIMEZONE" }));
}

void ZoneDefinitionTest::aZoneThatRulesCannotSayHasNone()
{
    QVERIFY(!ZoneDefinition::ofSystemZone("No/Such"));
    QVERIFY(!ZoneDefinition::ofSystemZone("../../../etc/passwd"));
}

void ZoneDefinitionTest::aDefinitionIsNotRightBeforeItsRule()
{
    const auto definition = ZoneDefinition::ofSystemZone("America/New_York");
    const ICalendar::ZonePtr system = ICalendar::readZoneFile(ICalendar::zoneFolder() + u"/America/New_York"_s);

    QVERIFY(definition);
    QVERIFY(!definition->isRightAt(utc(2006, 3, 20), *system));
    QVERIFY(definition->isRightAt(utc(2026, 3, 20), *system));
}

void ZoneDefinitionTest::valuesAreWrittenAsTheStandardWantsThem()
{
    QCOMPARE(ICalendar::utcText(utc(2026, 3, 11) + 9 * 3600 + 61), QByteArray("20260311T090101Z"));
    QCOMPARE(ICalendar::dateText(utc(2024, 2, 29) + 5), QByteArray("20240229"));
    QCOMPARE(ICalendar::dateText(utc(1, 1, 1)), QByteArray("00010101"));
    QCOMPARE(ICalendar::dateText(utc(20000, 1, 1)), QByteArray("99991231"));
    QCOMPARE(ICalendar::durationText(0), QByteArray("PT0S"));
    QCOMPARE(ICalendar::durationText(-900), QByteArray("-PT15M"));
    QCOMPARE(ICalendar::durationText(86400), QByteArray("PT24H"));
    QCOMPARE(ICalendar::durationText(3601), QByteArray("PT1H0M1S"));
    QCOMPARE(ICalendar::dayDurationText(-2), QByteArray("-P2D"));
    QCOMPARE(ICalendar::utcOffsetText(-19800), QByteArray("-0530"));
    QCOMPARE(ICalendar::utcOffsetText(3208), QByteArray("+005328"));
}

VANTLE_TEST(ZoneDefinitionTest)
#include "ZoneDefinitionTest.moc"
