// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <CivilDate.h>
#include <ICalendarReader.h>
#include <RecurrenceExpander.h>
#include <TextPatcher.h>
#include <ZoneRegistry.h>

#include <QTest>

#include <algorithm>
#include <ctime>
#include <random>

using namespace ICalendar;

namespace
{

const QByteArray sound
    = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VTIMEZONE\r\nTZID:Europe/Berlin\r\nBEGIN:DAYLIGHT\r\n"
      "DTSTART:19810329T020000\r\nRRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU\r\nTZOFFSETFROM:+0100\r\n"
      "TZOFFSETTO:+0200\r\nEND:DAYLIGHT\r\nBEGIN:STANDARD\r\nDTSTART:19961027T030000\r\n"
      "RRULE:FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU\r\nTZOFFSETFROM:+0200\r\nTZOFFSETTO:+0100\r\nEND:STANDARD\r\n"
      "END:VTIMEZONE\r\nBEGIN:VEVENT\r\nUID:a\r\nSUMMARY:Wöchentlich\\, lang\r\n und gefaltet\r\n"
      "DTSTART;TZID=Europe/Berlin:20240101T090000\r\nDURATION:P1DT1H30M\r\n"
      "RRULE:FREQ=WEEKLY;INTERVAL=2;BYDAY=MO,WE;BYSETPOS=1,-1;COUNT=20;WKST=SU\r\n"
      "RRULE:FREQ=MINUTELY;BYHOUR=9;BYMINUTE=1,2,3;BYSECOND=0;UNTIL=20251231T000000Z\r\n"
      "RRULE:FREQ=YEARLY;BYWEEKNO=1,-1;BYYEARDAY=1,-1;BYMONTHDAY=-31\r\n"
      "EXDATE;TZID=Europe/Berlin:20240103T090000,20240115T090000\r\n"
      "RDATE;VALUE=PERIOD:20240201T100000Z/PT2H\r\nATTENDEE;CN=\"A: B\";PARTSTAT=DECLINED:mailto:a@b\r\n"
      "BEGIN:VALARM\r\nACTION:AUDIO\r\nTRIGGER;RELATED=END:-PT15M\r\nATTACH:Basso\r\nEND:VALARM\r\nEND:VEVENT\r\n"
      "BEGIN:VEVENT\r\nUID:a\r\nRECURRENCE-ID;TZID=Europe/Berlin:20240117T090000\r\nSEQUENCE:1\r\n"
      "DTSTART;VALUE=DATE:20240118\r\nEND:VEVENT\r\nBEGIN:VTODO\r\nUID:b\r\nDUE:20240601T100000\r\n"
      "COMPLETED:20240514T070000Z\r\nPRIORITY:1\r\nEND:VTODO\r\nEND:VCALENDAR\r\n";

// Damage of the kinds that disks, transfers and careless programs do.
QByteArray damaged(const QByteArray &text, std::mt19937 &random)
{
    QByteArray result = text;
    const auto below = [&](qsizetype limit) { return static_cast<qsizetype>(random() % static_cast<quint32>(limit)); };
    for (qsizetype times = 1 + below(4); times > 0 && !result.isEmpty(); --times) {
        const qsizetype at = below(result.size());
        const qsizetype length = std::min(below(60) + 1, result.size() - at);
        switch (random() % 6) {
        case 0:
            result[at] = static_cast<char>(random());
            break;
        case 1:
            result.remove(at, length);
            break;
        case 2:
            result.insert(at, result.mid(below(result.size()), length));
            break;
        case 3:
            result.truncate(at);
            break;
        case 4:
            result.insert(at, QByteArray(1, "0123456789;:,=\r\n \t\"\\-PT\0"[random() % 23]));
            break;
        default:
            result.replace(at, length, QByteArray(length, '9'));
            break;
        }
    }
    return result;
}

// Everything that the program does with a file.
void use(const QByteArray &text, ZoneRegistry &zones)
{
    const ZonePtr local = ZoneRegistry::localZone();
    const Document document = readDocument(text, zones);
    QList<const Item *> overrides;
    for (const Item &item : document.items) {
        if (item.repetition->recurrenceId)
            overrides.append(&item);
    }
    const UtcSeconds day = dayNumber(2024, 1, 17) * secondsPerDay;
    for (const Item &item : document.items) {
        const Expansion expansion = expandSeries(item, overrides, day, day + secondsPerDay - 1, *local);
        for (const Occurrence &occurrence : expansion.occurrences)
            QVERIFY(occurrence.start.toUtc(*local) <= occurrence.end.toUtc(*local));
        static_cast<void>(lastEnd(item, overrides, *local));
    }
}

int countOfFiles(int usual)
{
    constexpr int longer = 50;
    return qEnvironmentVariableIsSet("VANTLE_LONG_TESTS") ? usual * longer : usual;
}

// Of the processor, which other programs on the machine do not lengthen.
qint64 milliseconds(std::clock_t from, std::clock_t to)
{
    return static_cast<qint64>(to - from) * 1'000 / CLOCKS_PER_SEC;
}

} // namespace

class DamagedFilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void randomDamageIsSurvivedInBoundedTime();
    void randomDamageIsNotSpreadBySaving();
    void hostileRulesAreBounded_data();
    void hostileRulesAreBounded();
    void thousandsOfAddedDatesAndOverridesAreBounded();
};

void DamagedFilesTest::randomDamageIsSurvivedInBoundedTime()
{
    std::mt19937 random(20240514);
    ZoneRegistry zones;
    qint64 longest = 0;

    for (int i = 0; i < countOfFiles(3'000); ++i) {
        const QByteArray text = damaged(sound, random);
        const std::clock_t begin = std::clock();
        use(text, zones);
        longest = std::max(longest, milliseconds(begin, std::clock()));
    }

    QVERIFY2(longest < 2'000, qPrintable(QStringLiteral("%1 ms").arg(longest)));
}

void DamagedFilesTest::randomDamageIsNotSpreadBySaving()
{
    std::mt19937 random(4711);

    for (int i = 0; i < countOfFiles(2'000); ++i) {
        const QByteArray text = damaged(sound, random);
        TextPatcher patcher(text);
        QCOMPARE(patcher.patchedText(), text);
        const int component = static_cast<int>(random() % 10);
        if (!patcher.hasComponent(component))
            continue;

        patcher.setProperty(component, "X-MARK", "1");

        QByteArray patched = patcher.patchedText();
        const qsizetype mark = patched.indexOf("X-MARK:1");
        QVERIFY(mark >= 0);
        patched.remove(mark, 8);
        // But for the new line and its line end every byte stands where it stood.
        const qsizetype added = patched.size() - text.size();
        QVERIFY(added == 1 || added == 2);
        const qsizetype lineEnd = mark == 0 || text.startsWith(patched.first(mark)) ? mark : mark - added;
        patched.remove(lineEnd, added);
        QCOMPARE(patched, text);
        QCOMPARE(TextPatcher(patcher.patchedText()).property(component, "X-MARK"), QByteArray("1"));
    }
}

void DamagedFilesTest::hostileRulesAreBounded_data()
{
    QTest::addColumn<QByteArray>("rule");

    for (const char *rule : { "FREQ=SECONDLY", "FREQ=SECONDLY;COUNT=1000000000",
             "FREQ=SECONDLY;BYMONTH=2;BYMONTHDAY=30", "FREQ=SECONDLY;BYMONTH=2;BYMONTHDAY=30;COUNT=2",
             "FREQ=MINUTELY;BYDAY=MO;BYMONTHDAY=31;COUNT=1000000000", "FREQ=DAILY;INTERVAL=0",
             "FREQ=DAILY;INTERVAL=999999999999999999999", "FREQ=DAILY;COUNT=99999999999999999999",
             "FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=30;COUNT=2", "FREQ=YEARLY;INTERVAL=1000000000", "FREQ=MONTHLY;BYDAY=9MO",
             "FREQ=YEARLY;BYYEARDAY=366;INTERVAL=1;BYWEEKNO=20;COUNT=3", "FREQ=WEEKLY;BYDAY=", "FREQ=", "", ";;;===;",
             "FREQ=DAILY;UNTIL=99991231T235959Z", "FREQ=DAILY;UNTIL=00010101" })
        QTest::newRow(rule) << QByteArray(rule);
    QByteArray all = "BYHOUR=0";
    for (int i = 1; i < 24; ++i)
        all += "," + QByteArray::number(i);
    all += ";BYMINUTE=0";
    for (int i = 1; i < 60; ++i)
        all += "," + QByteArray::number(i);
    all += ";BYSECOND=0";
    for (int i = 1; i < 60; ++i)
        all += "," + QByteArray::number(i);
    QTest::newRow("every second as a daily rule") << "FREQ=DAILY;" + all;
    QTest::newRow("every second as a yearly rule")
        << "FREQ=YEARLY;BYMONTH=1,2,3,4,5,6,7,8,9,10,11,12;BYDAY=SU,MO,TU,WE,TH,FR,SA;BYSETPOS=-1;" + all;
    QTest::newRow("ten thousand rules that count to no end")
        << "FREQ=DAILY" + QByteArray("\nRRULE:FREQ=SECONDLY;COUNT=1000000000").repeated(10'000);
    QTest::newRow("ten thousand rules that make as much as they may")
        << "FREQ=DAILY" + QByteArray("\nRRULE:FREQ=SECONDLY;INTERVAL=30").repeated(10'000);
    QTest::newRow("ten thousand rules that take long to count")
        << "FREQ=DAILY" + QByteArray("\nRRULE:FREQ=SECONDLY;COUNT=200000").repeated(10'000);
    QTest::newRow("a list of a million") << "FREQ=DAILY;BYHOUR=" + QByteArray("1,").repeated(1'000'000);
}

void DamagedFilesTest::hostileRulesAreBounded()
{
    QFETCH(QByteArray, rule);
    const ZonePtr local = ZoneRegistry::localZone();
    ZoneRegistry zones;
    const Document document = readDocument(
        "BEGIN:VEVENT\nDTSTART;TZID=Europe/Berlin:00010103T090000\nDURATION:PT1S\nRRULE:" + rule + "\nEND:VEVENT\n",
        zones);
    QCOMPARE(document.items.size(), 1);

    qint64 longest = 0;
    for (const int year : { 1, 1600, 2024, 9999 }) {
        const UtcSeconds day = dayNumber(year, 1, 3) * secondsPerDay;
        const std::clock_t begin = std::clock();
        const Expansion expansion = expandSeries(document.items[0], {}, day, day + secondsPerDay - 1, *local);
        longest = std::max(longest, milliseconds(begin, std::clock()));
        QVERIFY(expansion.occurrences.size() <= 10'001);
        if (year == 1)
            QVERIFY(!expansion.occurrences.isEmpty()); // the first instance
    }
    const std::clock_t begin = std::clock();
    static_cast<void>(lastEnd(document.items[0], {}, *local));
    longest = std::max(longest, milliseconds(begin, std::clock()));

    qInfo("at most %lld ms of the processor for a day", static_cast<long long>(longest));
    QVERIFY2(longest < 1'000, qPrintable(QStringLiteral("%1 ms").arg(longest)));
}

void DamagedFilesTest::thousandsOfAddedDatesAndOverridesAreBounded()
{
    QByteArray text = "BEGIN:VCALENDAR\nBEGIN:VEVENT\nUID:a\nDTSTART:20200101T090000Z\nRRULE:FREQ=DAILY\n";
    for (int i = 0; i < 5'000; ++i)
        text += "RDATE:" + QDate(2020, 1, 1).addDays(i).toString(Qt::ISODate).remove(u'-').toLatin1() + "T150000Z\n";
    text += "END:VEVENT\n";
    for (int i = 0; i < 10'000; ++i) {
        const QByteArray day = QDate(2020, 1, 1).addDays(i).toString(Qt::ISODate).remove(u'-').toLatin1();
        text += "BEGIN:VEVENT\nUID:a\nRECURRENCE-ID:" + day + "T090000Z\nDTSTART:" + day + "T110000Z\nEND:VEVENT\n";
    }
    text += "END:VCALENDAR\n";
    ZoneRegistry zones;
    const Document document = readDocument(text, zones);
    QList<const Item *> overrides;
    for (qsizetype i = 1; i < document.items.size(); ++i)
        overrides.append(&document.items[i]);
    const ZonePtr local = ZoneRegistry::localZone();
    const UtcSeconds day = dayNumber(2024, 1, 17) * secondsPerDay;

    const Expansion expansion = expandSeries(document.items[0], overrides, day, day + secondsPerDay - 1, *local);

    QCOMPARE(overrides.size(), 10'000);
    QCOMPARE(expansion.occurrences.size(), 2);
    QVERIFY(expansion.occurrences[0].overriddenBy >= 0);
    QCOMPARE(expansion.occurrences[0].start.civil, day + 11 * secondsPerHour);
    QCOMPARE(expansion.occurrences[1].start.civil, day + 15 * secondsPerHour);
}

VANTLE_TEST(DamagedFilesTest)
#include "DamagedFilesTest.moc"
