// SPDX-License-Identifier: MIT
#include "ContractTest.h"

using namespace Qt::StringLiterals;

namespace
{

const QDate dayBefore = contractDay.addDays(-1);
const QDate dayAfter = contractDay.addDays(1);

// The lines of an event that follow its title.
QByteArray timed(const char *start, const char *end)
{
    return QByteArray("DTSTART:") + start + "\r\nDTEND:" + end + "\r\n";
}

QByteArray eventWith(const QByteArray &lines)
{
    return "BEGIN:VEVENT\r\nUID:a\r\nDTSTAMP:20260101T000000Z\r\nSUMMARY:A\r\n" + lines + "END:VEVENT\r\n";
}

} // namespace

// Which events belong to a range, and when they are.
class QueriesContract final : public ContractTest
{
    Q_OBJECT

public:
    using ContractTest::ContractTest;

private Q_SLOTS:
    void rangesHaveBothTheirBounds_data();
    void rangesHaveBothTheirBounds();
    void allDayEventsLieOnTheirDays_data();
    void allDayEventsLieOnTheirDays();
    void occurrencesOfSeries_data();
    void occurrencesOfSeries();
    void zonesAreConverted_data();
    void zonesAreConverted();
    void anAllDayEventEndsWithTheLastSecondOfItsLastDay();
    void aRangeOfManyDaysHoldsEachOccurrence();
    void anEmptyCalendarHoldsNothing();
};

void QueriesContract::rangesHaveBothTheirBounds_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<bool>("isIn");

    // The range is 09:00:00 to 10:00:00.
    QTest::newRow("within") << timed("20260311T091500", "20260311T093000") << true;
    QTest::newRow("just the range") << timed("20260311T090000", "20260311T100000") << true;
    QTest::newRow("around") << timed("20260311T080000", "20260311T110000") << true;
    QTest::newRow("over its start") << timed("20260311T083000", "20260311T090001") << true;
    QTest::newRow("over its end") << timed("20260311T095959", "20260311T120000") << true;
    QTest::newRow("ends as it starts") << timed("20260311T080000", "20260311T090000") << false;
    QTest::newRow("starts as it ends") << timed("20260311T100000", "20260311T110000") << true;
    QTest::newRow("starts a second later") << timed("20260311T100001", "20260311T110000") << false;
    QTest::newRow("before") << timed("20260311T070000", "20260311T080000") << false;
    QTest::newRow("behind") << timed("20260311T120000", "20260311T130000") << false;
    QTest::newRow("no length at its start") << timed("20260311T090000", "20260311T090000") << true;
    QTest::newRow("no length within") << timed("20260311T093000", "20260311T093000") << true;
    QTest::newRow("no length at its end") << timed("20260311T100000", "20260311T100000") << true;
    QTest::newRow("no length a second before") << timed("20260311T085959", "20260311T085959") << false;
    QTest::newRow("no length a second later") << timed("20260311T100001", "20260311T100001") << false;
    QTest::newRow("no end at its start") << QByteArray("DTSTART:20260311T090000\r\n") << true;
    QTest::newRow("ends before it starts") << timed("20260311T093000", "20260311T080000") << true;
    QTest::newRow("of several days") << timed("20260309T120000", "20260314T120000") << true;
    QTest::newRow("of several days, over by now") << timed("20260309T120000", "20260311T090000") << false;
}

void QueriesContract::rangesHaveBothTheirBounds()
{
    QFETCH(const QByteArray, lines);
    QFETCH(const bool, isIn);
    fixture().put(u"Home"_s, u"a"_s, eventWith(lines));

    const CalEventList events = fixture().eventsBetween(at("09:00:00"), at("10:00:00"));

    QCOMPARE(events.size(), isIn ? 1 : 0);
}

void QueriesContract::allDayEventsLieOnTheirDays_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<bool>("isIn");

    const auto days = [](const char *first, const char *behind) -> QByteArray {
        return QByteArray("DTSTART;VALUE=DATE:") + first + "\r\nDTEND;VALUE=DATE:" + behind + "\r\n";
    };
    QTest::newRow("of the day") << days("20260311", "20260312") << true;
    QTest::newRow("of the day before") << days("20260310", "20260311") << false;
    QTest::newRow("of the day after") << days("20260312", "20260313") << false;
    QTest::newRow("first of three days") << days("20260311", "20260314") << true;
    QTest::newRow("second of three days") << days("20260310", "20260313") << true;
    QTest::newRow("last of three days") << days("20260309", "20260312") << true;
    QTest::newRow("three days, over by now") << days("20260308", "20260311") << false;
    QTest::newRow("without an end") << QByteArray("DTSTART;VALUE=DATE:20260311\r\n") << true;
    QTest::newRow("the day before, without an end") << QByteArray("DTSTART;VALUE=DATE:20260310\r\n") << false;
    QTest::newRow("ends as it starts") << days("20260311", "20260311") << true;
    QTest::newRow("ends before it starts") << days("20260311", "20260309") << true;
    QTest::newRow("with a length") << QByteArray("DTSTART;VALUE=DATE:20260310\r\nDURATION:P2D\r\n") << true;
    QTest::newRow("of a year") << days("20260101", "20270101") << true;
}

void QueriesContract::allDayEventsLieOnTheirDays()
{
    QFETCH(const QByteArray, lines);
    QFETCH(const bool, isIn);
    fixture().put(u"Home"_s, u"a"_s, eventWith(lines));

    const CalEventList events = fixture().eventsOn(contractDay);

    QCOMPARE(events.size(), isIn ? 1 : 0);
    QVERIFY(events.isEmpty() || events.first()->isAllDay());
}

void QueriesContract::occurrencesOfSeries_data()
{
    QTest::addColumn<QByteArray>("components");
    QTest::addColumn<QStringList>("expected");

    const auto series = [](const QByteArray &lines, const char *start = "20260302T090000") {
        return eventText("a", "A", start, "DURATION:PT1H\r\n" + lines);
    };
    const auto exception = [](const char *named, const char *start, const char *title = "Moved") {
        return eventText("a", title, start, QByteArray("DURATION:PT1H\r\nRECURRENCE-ID:") + named + "\r\n");
    };
    const QByteArray daily = series("RRULE:FREQ=DAILY\r\n");
    const QStringList usual { u"09:00-10:00 A"_s };

    QTest::newRow("every day") << daily << usual;
    QTest::newRow("every week, on this day") << series("RRULE:FREQ=WEEKLY;BYDAY=WE\r\n") << usual;
    QTest::newRow("every week, on another day") << series("RRULE:FREQ=WEEKLY;BYDAY=TH\r\n") << QStringList();
    QTest::newRow("every other week") << series("RRULE:FREQ=WEEKLY;INTERVAL=2;BYDAY=WE\r\n") << QStringList();
    QTest::newRow("counted, the last") << series("RRULE:FREQ=DAILY;COUNT=10\r\n") << usual;
    QTest::newRow("counted, over by now") << series("RRULE:FREQ=DAILY;COUNT=9\r\n") << QStringList();
    QTest::newRow("until this moment") << series("RRULE:FREQ=DAILY;UNTIL=20260311T080000Z\r\n") << usual;
    QTest::newRow("until the moment before") << series("RRULE:FREQ=DAILY;UNTIL=20260311T075959Z\r\n") << QStringList();
    QTest::newRow("excluded") << series("RRULE:FREQ=DAILY\r\nEXDATE:20260311T090000\r\n") << QStringList();
    QTest::newRow("added") << series("RDATE:20260311T150000\r\n") << QStringList { u"15:00-16:00 A"_s };
    QTest::newRow("added to a rule") << series("RRULE:FREQ=DAILY\r\nRDATE:20260311T150000\r\n")
                                     << QStringList { u"09:00-10:00 A"_s, u"15:00-16:00 A"_s };
    QTest::newRow("moved within the day")
        << daily + exception("20260311T090000", "20260311T130000") << QStringList { u"13:00-14:00 Moved"_s };
    QTest::newRow("moved away") << daily + exception("20260311T090000", "20260314T130000") << QStringList();
    QTest::newRow("moved here") << daily + exception("20260305T090000", "20260311T130000")
                                << QStringList { u"09:00-10:00 A"_s, u"13:00-14:00 Moved"_s };
    QTest::newRow("renamed") << daily + exception("20260311T090000", "20260311T090000", "Other name")
                             << QStringList { u"09:00-10:00 Other name"_s };
    QTest::newRow("an exception of another day") << daily + exception("20260310T090000", "20260310T130000") << usual;
    QTest::newRow("over midnight") << series("RRULE:FREQ=WEEKLY\r\n", "20260303T233000")
                                   << QStringList { u"23:30-00:30 A"_s };
    QTest::newRow("several times a day") << series("RRULE:FREQ=DAILY;BYHOUR=9,17\r\n")
                                         << QStringList { u"09:00-10:00 A"_s, u"17:00-18:00 A"_s };
    QTest::newRow("all day") << eventText("a", "A", "20260302", "RRULE:FREQ=DAILY\r\n")
                             << QStringList { u"00:00-23:59 A"_s };
    QTest::newRow("all day, excluded") << eventText(
        "a", "A", "20260302", "RRULE:FREQ=DAILY\r\nEXDATE;VALUE=DATE:20260311\r\n")
                                       << QStringList();
}

void QueriesContract::occurrencesOfSeries()
{
    QFETCH(const QByteArray, components);
    QFETCH(const QStringList, expected);
    fixture().put(u"Home"_s, u"a"_s, components);

    QCOMPARE(shown(fixture().eventsOn(contractDay)), expected);
}

void QueriesContract::zonesAreConverted_data()
{
    QTest::addColumn<QByteArray>("start");
    QTest::addColumn<QDate>("day");
    QTest::addColumn<QStringList>("expected");

    const QDate springForward(2026, 3, 29);
    const QDate fallBack(2026, 10, 25);
    const QStringList nine { u"09:00-10:00 A"_s };
    QTest::newRow("floating") << QByteArray("DTSTART:20260311T090000") << contractDay << nine;
    QTest::newRow("of here") << QByteArray("DTSTART;TZID=Europe/Berlin:20260311T090000") << contractDay << nine;
    QTest::newRow("universal") << QByteArray("DTSTART:20260311T080000Z") << contractDay << nine;
    QTest::newRow("of the west") << QByteArray("DTSTART;TZID=America/New_York:20260311T040000") << contractDay << nine;
    QTest::newRow("of the east, a day later there") << QByteArray("DTSTART;TZID=Pacific/Auckland:20260312T000000")
                                                    << contractDay << QStringList { u"12:00-13:00 A"_s };
    QTest::newRow("unknown counts as here")
        << QByteArray("DTSTART;TZID=Moon/Base:20260311T090000") << contractDay << nine;
    QTest::newRow("summer time") << QByteArray("DTSTART:20260329T070000Z") << springForward << nine;
    QTest::newRow("winter time") << QByteArray("DTSTART:20261025T080000Z") << fallBack << nine;
}

void QueriesContract::zonesAreConverted()
{
    QFETCH(const QByteArray, start);
    QFETCH(const QDate, day);
    QFETCH(const QStringList, expected);
    if (start.contains("Moon") && !fixture().keepsUnknownZones())
        QEXPECT_FAIL("", "This back end is given a time of an unknown zone as one of UTC", Continue);
    fixture().put(u"Home"_s, u"a"_s, eventWith(start + "\r\nDURATION:PT1H\r\n"));

    QCOMPARE(shown(fixture().eventsOn(day)), expected);
}

void QueriesContract::anAllDayEventEndsWithTheLastSecondOfItsLastDay()
{
    fixture().put(u"Home"_s, u"a"_s, eventWith("DTSTART;VALUE=DATE:20260310\r\nDTEND;VALUE=DATE:20260312\r\n"));

    const CalEventPtr found = fixture().eventOn(contractDay, u"A"_s);

    QVERIFY(found && found->isAllDay());
    QCOMPARE(found->startDate(), at("00:00:00", dayBefore));
    QCOMPARE(found->endDate(), at("23:59:59"));
}

void QueriesContract::aRangeOfManyDaysHoldsEachOccurrence()
{
    fixture().put(u"Home"_s, u"a"_s, eventText("a", "A", "20260311T090000", "RRULE:FREQ=DAILY\r\n"));

    const CalEventList events = fixture().eventsBetween(at("00:00:00", dayBefore), at("23:59:59", dayAfter));

    QCOMPARE(events.size(), 2);
    QCOMPARE(events.first()->startDate(), at("09:00:00"));
    QCOMPARE(events.last()->startDate(), at("09:00:00", dayAfter));
}

void QueriesContract::anEmptyCalendarHoldsNothing()
{
    QVERIFY(fixture().eventsOn(contractDay).isEmpty());
    QVERIFY(fixture().tasks().isEmpty());
}

VANTLE_CONTRACT(QueriesContract, "Queries")
#include "QueriesContract.moc"
