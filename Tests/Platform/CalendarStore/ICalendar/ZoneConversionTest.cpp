// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <CivilDate.h>
#include <EmbeddedZone.h>
#include <SystemZone.h>
#include <ZoneRegistry.h>

#include <QTest>
#include <QTimeZone>

#include <random>

using namespace ICalendar;

namespace
{

UtcSeconds utc(const char *text)
{
    return QDateTime::fromString(QString::fromLatin1(text) + u'Z', Qt::ISODate).toSecsSinceEpoch();
}

// The seconds of wall-clock time are written just as those of universal time.
CivilSeconds civil(const char *text)
{
    return utc(text);
}

QByteArray observance(const char *kind, const QByteArray &properties)
{
    return QByteArray("BEGIN:") + kind + "\r\n" + properties + "END:" + kind + "\r\n";
}

ZonePtr zoneOf(const QByteArray &observances)
{
    return readEmbeddedZone("BEGIN:VTIMEZONE\r\nTZID:Any\r\n" + observances + "END:VTIMEZONE\r\n");
}

// East of Greenwich, at an instant.
qint64 offset(const Zone &zone, const char *instant)
{
    return zone.toCivil(utc(instant)) - utc(instant);
}

} // namespace

class ZoneConversionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void everyChangeIsThatOfTheSystem_data();
    void everyChangeIsThatOfTheSystem();
    void timesInGapsAndFoldsAreReadAsTheStandardSays_data();
    void timesInGapsAndFoldsAreReadAsTheStandardSays();
    void anyInstantHasTheOffsetOfTheSystem_data();
    void anyInstantHasTheOffsetOfTheSystem();
    void embeddedZoneHasItsDatedChanges();
    void embeddedZoneTakesDatesWithoutAStart();
    void embeddedZoneWithoutOffsetFromKeepsItsOffset();
    void embeddedZoneLeavesOutPartsThatCannotBeUsed();
    void embeddedZoneWithoutUsablePartIsNone_data();
    void embeddedZoneWithoutUsablePartIsNone();
    void embeddedZoneMayHaveSecondsInItsOffsets();
    void localZoneFollowsTheEnvironment_data();
    void localZoneFollowsTheEnvironment();
    void localZoneWithoutSettingIsThatOfTheSystem();

private:
    static void addZones();

    ZoneRegistry m_zones;
    QByteArray m_previousZone;
};

void ZoneConversionTest::init()
{
    m_previousZone = qgetenv("TZ");
}

void ZoneConversionTest::cleanup()
{
    qputenv("TZ", m_previousZone);
}

// Half hours, a skipped day, clocks that are set back in summer, changes given up, southern summers.
void ZoneConversionTest::addZones()
{
    QTest::addColumn<QString>("name");

    for (const char *name :
        { "Europe/Berlin", "Europe/Dublin", "America/New_York", "America/Sao_Paulo", "Australia/Lord_Howe",
            "Pacific/Apia", "Africa/Casablanca", "Asia/Tehran", "Asia/Kathmandu", "Antarctica/Troll", "UTC" })
        QTest::newRow(name) << QString::fromLatin1(name);
}

void ZoneConversionTest::everyChangeIsThatOfTheSystem_data()
{
    addZones();
}

void ZoneConversionTest::everyChangeIsThatOfTheSystem()
{
    QFETCH(QString, name);
    const QTimeZone system(name.toLatin1());
    const ZonePtr zone = m_zones.systemZone(name);
    QVERIFY(system.isValid());
    QVERIFY(zone);

    const auto changes = system.transitions(
        QDateTime(QDate(1970, 1, 1), QTime(0, 0), Qt::UTC), QDateTime(QDate(2040, 12, 31), QTime(23, 59, 59), Qt::UTC));

    QVERIFY(!changes.isEmpty() || name == QStringLiteral("UTC"));
    for (const QTimeZone::OffsetData &change : changes) {
        const UtcSeconds at = change.atUtc.toSecsSinceEpoch();
        const int before = system.offsetFromUtc(change.atUtc.addSecs(-1));
        const QByteArray text = change.atUtc.toString(Qt::ISODate).toLatin1();
        QVERIFY2(zone->toCivil(at - 1) == at - 1 + before, text.constData());
        QVERIFY2(zone->toCivil(at) == at + change.offsetFromUtc, text.constData());
    }
}

void ZoneConversionTest::timesInGapsAndFoldsAreReadAsTheStandardSays_data()
{
    addZones();
}

// "If the local time described does not occur (when changing from standard to daylight time), the DATE-TIME value is
// interpreted using the UTC offset before the gap in local times", and one that occurs twice "refers to the first
// occurrence" (RFC 5545, section 3.3.5).
void ZoneConversionTest::timesInGapsAndFoldsAreReadAsTheStandardSays()
{
    QFETCH(QString, name);
    const QTimeZone system(name.toLatin1());
    const ZonePtr zone = m_zones.systemZone(name);
    QVERIFY(zone);

    const auto changes = system.transitions(
        QDateTime(QDate(1970, 1, 1), QTime(0, 0), Qt::UTC), QDateTime(QDate(2040, 12, 31), QTime(23, 59, 59), Qt::UTC));

    for (const QTimeZone::OffsetData &change : changes) {
        const UtcSeconds at = change.atUtc.toSecsSinceEpoch();
        const int before = system.offsetFromUtc(change.atUtc.addSecs(-1));
        const int after = change.offsetFromUtc;
        const CivilSeconds first = at + std::min(before, after);
        const CivilSeconds end = at + std::max(before, after);
        const QByteArray text = change.atUtc.toString(Qt::ISODate).toLatin1();
        QVERIFY2(zone->toUtc(first - 1) == first - 1 - before, text.constData());
        QVERIFY2(zone->toUtc(end) == end - after, text.constData());
        if (before == after)
            continue;
        // In a gap the times do not exist, in a fold they occur twice: the offset before the change holds for both.
        for (const CivilSeconds time : { first, (first + end) / 2, end - 1 })
            QVERIFY2(zone->toUtc(time) == time - before, text.constData());
    }
}

void ZoneConversionTest::anyInstantHasTheOffsetOfTheSystem_data()
{
    addZones();
}

void ZoneConversionTest::anyInstantHasTheOffsetOfTheSystem()
{
    QFETCH(QString, name);
    const QTimeZone system(name.toLatin1());
    const ZonePtr zone = m_zones.systemZone(name);
    QVERIFY(zone);
    std::mt19937_64 random(1970);
    const UtcSeconds span = utc("2041-01-01T00:00:00");

    for (int i = 0; i < 500; ++i) {
        const auto instant = static_cast<UtcSeconds>(random() % static_cast<quint64>(span));
        const QDateTime time = QDateTime::fromSecsSinceEpoch(instant, Qt::UTC);
        QVERIFY2(zone->toCivil(instant) - instant == system.offsetFromUtc(time),
            time.toString(Qt::ISODate).toLatin1().constData());
        // An instant comes back from its wall-clock time, or the earlier one of the same time does.
        const UtcSeconds back = zone->toUtc(zone->toCivil(instant));
        QCOMPARE(zone->toCivil(back), zone->toCivil(instant));
        QVERIFY(back <= instant);
    }
}

void ZoneConversionTest::embeddedZoneHasItsDatedChanges()
{
    const ZonePtr zone = zoneOf(observance("STANDARD",
                                    "DTSTART:20200101T000000\r\nRDATE:20211001T020000\r\n"
                                    "RDATE:20221002T020000,20231001T020000\r\nTZOFFSETFROM:+0200\r\n"
                                    "TZOFFSETTO:+0100\r\n")
        + observance("DAYLIGHT",
            "DTSTART:20210401T020000\r\nRDATE:20220401T020000\r\nRDATE;VALUE=PERIOD:20230402T020000/PT1H\r\n"
            "TZOFFSETFROM:+0100\r\nTZOFFSETTO:+0200\r\n"));

    QVERIFY(zone);
    QCOMPARE(offset(*zone, "2019-12-31T21:59:59"), 7200);
    QCOMPARE(offset(*zone, "2019-12-31T22:00:00"), 3600);
    QCOMPARE(offset(*zone, "2021-04-01T00:59:59"), 3600);
    QCOMPARE(offset(*zone, "2021-04-01T01:00:00"), 7200);
    QCOMPARE(offset(*zone, "2021-09-30T23:59:59"), 7200);
    QCOMPARE(offset(*zone, "2021-10-01T00:00:00"), 3600);
    QCOMPARE(offset(*zone, "2022-04-01T01:00:00"), 7200);
    QCOMPARE(offset(*zone, "2022-10-02T00:00:00"), 3600);
    QCOMPARE(offset(*zone, "2023-04-02T01:00:00"), 7200);
    QCOMPARE(offset(*zone, "2023-10-01T00:00:00"), 3600);
    // No more dates: the last offset stays.
    QCOMPARE(offset(*zone, "2050-07-01T00:00:00"), 3600);
    // In the gap, and in the hour that occurs twice.
    QCOMPARE(zone->toUtc(civil("2021-04-01T02:30:00")), utc("2021-04-01T01:30:00"));
    QCOMPARE(zone->toUtc(civil("2021-10-01T01:30:00")), utc("2021-09-30T23:30:00"));
}

void ZoneConversionTest::embeddedZoneTakesDatesWithoutAStart()
{
    const ZonePtr zone = zoneOf(
        observance("STANDARD", "RDATE:20200101T000000,20210101T000000\r\nTZOFFSETFROM:+0300\r\nTZOFFSETTO:+0400\r\n"));

    QVERIFY(zone);
    QCOMPARE(offset(*zone, "2019-12-31T20:59:59"), 10800);
    QCOMPARE(offset(*zone, "2019-12-31T21:00:00"), 14400);
}

void ZoneConversionTest::embeddedZoneWithoutOffsetFromKeepsItsOffset()
{
    const ZonePtr zone = zoneOf(observance("STANDARD", "DTSTART:19700101T000000\r\nTZOFFSETTO:-0330\r\n"));

    QVERIFY(zone);
    QCOMPARE(offset(*zone, "1960-01-01T00:00:00"), -12600);
    QCOMPARE(offset(*zone, "2024-01-01T00:00:00"), -12600);
}

void ZoneConversionTest::embeddedZoneLeavesOutPartsThatCannotBeUsed()
{
    const QByteArray sound
        = observance("STANDARD", "DTSTART:19700101T000000\r\nTZOFFSETFROM:+0500\r\nTZOFFSETTO:+0500\r\n");

    for (const QByteArray &damaged : { observance("DAYLIGHT", "DTSTART:20200101T000000\r\nTZOFFSETFROM:+0500\r\n"),
             observance("DAYLIGHT", "DTSTART:20200101T000000\r\nTZOFFSETFROM:+0500\r\nTZOFFSETTO:six\r\n"),
             observance("DAYLIGHT", "TZOFFSETFROM:+0500\r\nTZOFFSETTO:+0600\r\n"), observance("DAYLIGHT", "") }) {
        const ZonePtr zone = zoneOf(damaged + sound);
        QVERIFY2(zone, damaged.constData());
        QCOMPARE(offset(*zone, "2024-06-01T00:00:00"), 18000);
    }
}

void ZoneConversionTest::embeddedZoneWithoutUsablePartIsNone_data()
{
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("nothing at all") << QByteArray();
    QTest::newRow("no part") << QByteArray("BEGIN:VTIMEZONE\r\nTZID:Any\r\nEND:VTIMEZONE\r\n");
    QTest::newRow("no offset") << QByteArray("BEGIN:VTIMEZONE\r\nTZID:Any\r\n"
                                             "BEGIN:STANDARD\r\nDTSTART:19700101T000000\r\nEND:STANDARD\r\n"
                                             "END:VTIMEZONE\r\n");
    QTest::newRow("no time") << QByteArray("BEGIN:VTIMEZONE\r\nTZID:Any\r\n"
                                           "BEGIN:STANDARD\r\nTZOFFSETTO:+0100\r\nEND:STANDARD\r\n"
                                           "END:VTIMEZONE\r\n");
}

void ZoneConversionTest::embeddedZoneWithoutUsablePartIsNone()
{
    QFETCH(QByteArray, text);

    QVERIFY(!readEmbeddedZone(text));
}

void ZoneConversionTest::embeddedZoneMayHaveSecondsInItsOffsets()
{
    const ZonePtr zone
        = zoneOf(observance("STANDARD", "DTSTART:18930401T000000\r\nTZOFFSETFROM:+005328\r\nTZOFFSETTO:+0100\r\n"));

    QVERIFY(zone);
    QCOMPARE(offset(*zone, "1893-03-31T23:06:31"), 53 * 60 + 28);
    QCOMPARE(offset(*zone, "1893-03-31T23:06:32"), 3600);
    // The six minutes and 32 seconds that nobody had.
    QCOMPARE(zone->toUtc(civil("1893-04-01T00:01:00")), utc("1893-03-31T23:07:32"));
}

void ZoneConversionTest::localZoneFollowsTheEnvironment_data()
{
    QTest::addColumn<QByteArray>("setting");
    QTest::addColumn<int>("winter");
    QTest::addColumn<int>("summer");

    QTest::newRow("a name") << QByteArray("Europe/Berlin") << 3600 << 7200;
    QTest::newRow("another name") << QByteArray("America/New_York") << -18000 << -14400;
    QTest::newRow("a name behind a colon") << QByteArray(":Asia/Tokyo") << 32400 << 32400;
    QTest::newRow("a file") << QByteArray("/usr/share/zoneinfo/Asia/Kathmandu") << 20700 << 20700;
    QTest::newRow("a rule") << QByteArray("ABC-5:30DEF,M3.5.0,M10.5.0/3") << 19800 << 23400;
    QTest::newRow("a rule without summer time") << QByteArray("<-0330>3:30") << -12600 << -12600;
    QTest::newRow("something unknown means UTC") << QByteArray("Nowhere/Land") << 0 << 0;
    QTest::newRow("empty means UTC") << QByteArray("") << 0 << 0;
}

void ZoneConversionTest::localZoneFollowsTheEnvironment()
{
    QFETCH(QByteArray, setting);
    qputenv("TZ", "Pacific/Auckland");
    QCOMPARE(offset(*ZoneRegistry::localZone(), "2024-01-15T00:00:00"), 46800);

    qputenv("TZ", setting);
    const ZonePtr zone = ZoneRegistry::localZone();

    QTEST(static_cast<int>(offset(*zone, "2024-01-15T00:00:00")), "winter");
    QTEST(static_cast<int>(offset(*zone, "2024-07-15T00:00:00")), "summer");
}

void ZoneConversionTest::localZoneWithoutSettingIsThatOfTheSystem()
{
    qputenv("TZ", "Pacific/Auckland");
    const ZonePtr before = ZoneRegistry::localZone();

    qunsetenv("TZ");
    const ZonePtr zone = ZoneRegistry::localZone();

    const ZonePtr system = readZoneFile(QStringLiteral("/etc/localtime"));
    QVERIFY(zone != before);
    for (const char *instant : { "1990-01-01T00:00:00", "2024-01-15T00:00:00", "2024-07-15T00:00:00" })
        QCOMPARE(offset(*zone, instant), system ? offset(*system, instant) : 0);
}

VANTLE_TEST(ZoneConversionTest)
#include "ZoneConversionTest.moc"
