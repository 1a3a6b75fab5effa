// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "TestRegistry.h"

#include <ScopedTimeZone.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr auto berlinZone
    = "BEGIN:VTIMEZONE\r\nTZID:Europe/Berlin\r\nBEGIN:DAYLIGHT\r\nDTSTART:19700329T020000\r\nTZOFFSETFROM:+0100\r\n"
      "TZOFFSETTO:+0200\r\nRRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU\r\nEND:DAYLIGHT\r\nBEGIN:STANDARD\r\n"
      "DTSTART:19701025T030000\r\nTZOFFSETFROM:+0200\r\nTZOFFSETTO:+0100\r\n"
      "RRULE:FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n";

QDateTime local(const char *text)
{
    return QDateTime::fromString(QString::fromLatin1(text), Qt::ISODate);
}

// The lines of one text that are not in another, without line ends.
QByteArrayList linesOnlyIn(const QByteArray &content, const QByteArray &other)
{
    const QList<QByteArray> others = other.split('\n');
    QByteArrayList lines;
    for (const QByteArray &line : content.split('\n')) {
        if (!others.contains(line))
            lines << line.trimmed();
    }
    return lines;
}

// Those that every change writes.
QByteArrayList withoutStamps(QByteArrayList lines)
{
    lines.removeIf([](const QByteArray &line) {
        return line.startsWith("DTSTAMP:") || line.startsWith("LAST-MODIFIED:") || line.startsWith("SEQUENCE:");
    });
    return lines;
}

} // namespace

Q_DECLARE_METATYPE(CalSpan)

// What a save of an event that happens once does to its file.
class EventSavingTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewTitleChangesItsLineAndTheStamps();
    void movedStartAndEndKeepTheirForm_data();
    void movedStartAndEndKeepTheirForm();
    void aTimeThatComesTwiceIsTheOneThatWasMeant_data();
    void aTimeThatComesTwiceIsTheOneThatWasMeant();
    void aLengthStaysALength_data();
    void aLengthStaysALength();
    void aLengthOfDaysIsOneByTheCalendar_data();
    void aLengthOfDaysIsOneByTheCalendar();
    void anEndIsAddedWhereThereWasNone();
    void anEventBecomesAllDay_data();
    void anEventBecomesAllDay();
    void anAllDayEventGetsATimeInTheZoneOfTheProcess();
    void theFilesOwnZoneIsTheOneThatIsMeant();
    void aZoneThatCannotBeDefinedIsWrittenInUtc();
    void anEndBeforeTheStartIsWrittenAsItIs_data();
    void anEndBeforeTheStartIsWrittenAsItIs();
    void everyPropertyOfARecordIsWritten();
    void aRuleIsWritten_data();
    void aRuleIsWritten();
    void whatIsClearedGoes();
    void parametersThatDescribeTheOldTextGoWithIt();
    void anUnchangedEventWritesNothing();
    void bothStepsOfTheEventSheetWriteTheEvent();
    void aFileChangedMeanwhileIsKept();
};

void EventSavingTest::aNewTitleChangesItsLineAndTheStamps()
{
    const CalendarFolder folder;
    const QByteArray text = calendarText(berlinZone
        + eventText("e", "Lunch", "20260311T110000Z",
            "DTEND:20260311T120000Z\r\nSEQUENCE:2\r\nX-KEEP;A=\"b;c\":d\r\nATTENDEE;CN=Ann:mailto:ann@example.org\r\n"
            "BEGIN:VALARM\r\nACTION:DISPLAY\r\nTRIGGER:-PT5M\r\nEND:VALARM\r\n"));
    folder.write(u"c/e.ics"_s, text);
    const auto store = folder.openWithoutWatching();
    const CalEventPtr event = eventsOn(*store, QDate(2026, 3, 11)).constFirst();

    event->setTitle(u"Dinner"_s);
    QVERIFY(store->saveEvent(*event, CalSpanThisEvent).isOk());

    const QByteArray saved = folder.read(u"c/e.ics"_s);
    QCOMPARE(linesOnlyIn(text, saved), (QByteArrayList { "DTSTAMP:20260101T000000Z", "SUMMARY:Lunch", "SEQUENCE:2" }));
    QCOMPARE(linesOnlyIn(saved, text),
        (QByteArrayList {
            "DTSTAMP:20260311T110000Z", "SUMMARY:Dinner", "SEQUENCE:3", "LAST-MODIFIED:20260311T110000Z" }));
    QCOMPARE(eventsOn(*store, QDate(2026, 3, 11)).constFirst()->title(), u"Dinner"_s);
}

void EventSavingTest::movedStartAndEndKeepTheirForm_data()
{
    QTest::addColumn<QByteArray>("times");
    QTest::addColumn<QByteArrayList>("moved"); // one hour later

    QTest::newRow("UTC") << QByteArray("DTSTART:20260311T080000Z\r\nDTEND:20260311T090000Z\r\n")
                         << QByteArrayList { "DTSTART:20260311T090000Z", "DTEND:20260311T100000Z" };
    QTest::newRow("floating") << QByteArray("DTSTART:20260311T090000\r\nDTEND:20260311T100000\r\n")
                              << QByteArrayList { "DTSTART:20260311T100000", "DTEND:20260311T110000" };
    QTest::newRow("in a zone") << QByteArray(
        "DTSTART;TZID=America/New_York:20260311T040000\r\nDTEND;TZID=America/New_York:20260311T050000\r\n")
                               << QByteArrayList { "DTSTART;TZID=America/New_York:20260311T050000",
                                      "DTEND;TZID=America/New_York:20260311T060000" };
    QTest::newRow("in two zones") << QByteArray(
        "DTSTART;TZID=America/New_York:20260311T040000\r\nDTEND;TZID=Asia/Tokyo:20260311T180000\r\n")
                                  << QByteArrayList { "DTSTART;TZID=America/New_York:20260311T050000",
                                         "DTEND;TZID=Asia/Tokyo:20260311T190000" };
    QTest::newRow("in a zone that nobody knows")
        << QByteArray("DTSTART;TZID=\"Head: quarters\":20260311T090000\r\nDTEND:20260311T090000Z\r\n")
        << QByteArrayList { "DTSTART;TZID=\"Head: quarters\":20260311T100000", "DTEND:20260311T100000Z" };
    QTest::newRow("with more parameters")
        << QByteArray("DTSTART;X-A=\"1;2\";VALUE=DATE-TIME:20260311T080000Z\r\nDTEND;X-B=c:20260311T090000Z\r\n")
        << QByteArrayList { "DTSTART;X-A=\"1;2\":20260311T090000Z", "DTEND;X-B=c:20260311T100000Z" };
}

void EventSavingTest::movedStartAndEndKeepTheirForm()
{
    QFETCH(const QByteArray, times);
    QFETCH(const QByteArrayList, moved);
    const CalendarFolder folder;
    const QByteArray text = calendarText("BEGIN:VEVENT\r\nUID:e\r\n" + times + "SUMMARY:E\r\nEND:VEVENT\r\n");
    folder.write(u"c/e.ics"_s, text);
    const auto store = folder.openWithoutWatching();
    const CalEventPtr event = eventsOn(*store, QDate(2026, 3, 11)).constFirst();

    event->setStartDate(event->startDate().addSecs(3600));
    event->setEndDate(event->endDate().addSecs(3600));
    QVERIFY(store->saveEvent(*event, CalSpanThisEvent).isOk());

    QCOMPARE(withoutStamps(linesOnlyIn(folder.read(u"c/e.ics"_s), text)), moved);
    const CalEventPtr again = eventsOn(*folder.openWithoutWatching(), QDate(2026, 3, 11)).constFirst();
    QCOMPARE(again->startDate(), event->startDate());
    QCOMPARE(again->endDate(), event->endDate());
}

void EventSavingTest::aTimeThatComesTwiceIsTheOneThatWasMeant_data()
{
    QTest::addColumn<QByteArray>("start");
    QTest::addColumn<QByteArray>("end");
    QTest::addColumn<QByteArrayList>("written");

    // In Berlin the clock is set back at 01:00 UTC, from 03:00 to 02:00.
    QTest::newRow("the first") << QByteArray("2026-10-24T23:30:00Z") << QByteArray("2026-10-25T00:30:00Z")
                               << QByteArrayList { "DTSTART;TZID=Europe/Berlin:20261025T013000",
                                      "DTEND;TZID=Europe/Berlin;X-A=1:20261025T023000" };
    QTest::newRow("the second") << QByteArray("2026-10-25T00:30:00Z") << QByteArray("2026-10-25T01:30:00Z")
                                << QByteArrayList { "DTSTART;TZID=Europe/Berlin:20261025T023000",
                                       "DTEND;X-A=1:20261025T013000Z" };
    QTest::newRow("the start, too") << QByteArray("2026-10-25T01:15:00Z") << QByteArray("2026-10-25T02:15:00Z")
                                    << QByteArrayList { "DTSTART:20261025T011500Z",
                                           "DTEND;TZID=Europe/Berlin;X-A=1:20261025T031500" };
}

void EventSavingTest::aTimeThatComesTwiceIsTheOneThatWasMeant()
{
    QFETCH(const QByteArray, start);
    QFETCH(const QByteArray, end);
    QFETCH(const QByteArrayList, written);
    const CalendarFolder folder;
    const QByteArray text = calendarText("BEGIN:VEVENT\r\nUID:e\r\nDTSTART;TZID=Europe/Berlin:20261024T090000\r\n"
                                         "DTEND;TZID=Europe/Berlin;X-A=1:20261024T100000\r\nEND:VEVENT\r\n");
    folder.write(u"c/e.ics"_s, text);
    const auto store = folder.openWithoutWatching();
    const CalEventPtr event = eventsOn(*store, QDate(2026, 10, 24)).constFirst();

    event->setStartDate(local(start.constData()).toLocalTime());
    event->setEndDate(local(end.constData()).toLocalTime());
    QVERIFY(store->saveEvent(*event, CalSpanThisEvent).isOk());

    QCOMPARE(withoutStamps(linesOnlyIn(folder.read(u"c/e.ics"_s), text)), written);
    const CalEventPtr again = eventsOn(*folder.openWithoutWatching(), QDate(2026, 10, 25)).constFirst();
    QCOMPARE(again->startDate(), event->startDate());
    QCOMPARE(again->endDate(), event->endDate());
}

void EventSavingTest::aLengthStaysALength_data()
{
    QTest::addColumn<QByteArray>("start");
    QTest::addColumn<int>("startShift");
    QTest::addColumn<int>("endShift");
    QTest::addColumn<QByteArrayList>("written");

    QTest::newRow("moved") << QByteArray("20260311T080000Z") << 3600 << 3600
                           << QByteArrayList { "DTSTART:20260311T090000Z" };
    QTest::newRow("longer") << QByteArray("20260311T080000Z") << 0 << 5405 << QByteArrayList { "DURATION:PT2H30M5S" };
    QTest::newRow("more than a day") << QByteArray("20260311T080000Z") << 0 << 25 * 3600 - 3600
                                     << QByteArrayList { "DURATION:PT25H" };
    QTest::newRow("over a clock change, by the clock")
        << QByteArray("20260311T090000") << 0 << 31 * 86'400 << QByteArrayList { "DURATION:PT746H" };
    QTest::newRow("begun later") << QByteArray("20260311T080000Z") << 1800 << 0
                                 << QByteArrayList { "DTSTART:20260311T083000Z", "DURATION:PT30M" };
}

void EventSavingTest::aLengthStaysALength()
{
    QFETCH(const QByteArray, start);
    QFETCH(const int, startShift);
    QFETCH(const int, endShift);
    QFETCH(const QByteArrayList, written);
    const CalendarFolder folder;
    const QByteArray text = calendarText(eventText("e", "E", start, "DURATION:PT1H\r\n"));
    folder.write(u"c/e.ics"_s, text);
    const auto store = folder.openWithoutWatching();
    const CalEventPtr event = eventsOn(*store, QDate(2026, 3, 11)).constFirst();

    event->setStartDate(event->startDate().addSecs(startShift));
    const QDateTime end = event->endDate().addSecs(endShift);
    event->setEndDate(end);
    QVERIFY(store->saveEvent(*event, CalSpanThisEvent).isOk());

    QCOMPARE(withoutStamps(linesOnlyIn(folder.read(u"c/e.ics"_s), text)), written);
    QCOMPARE(eventsOn(*store, QDate(2026, 3, 11)).constFirst()->endDate(), end);
}

void EventSavingTest::aLengthOfDaysIsOneByTheCalendar_data()
{
    QTest::addColumn<QByteArray>("start");
    QTest::addColumn<QByteArray>("newStart");
    QTest::addColumn<QByteArray>("newEnd");
    QTest::addColumn<QByteArrayList>("written");

    // The clock is set forward on 29 March and back on 25 October.
    QTest::newRow("onto a day of 23 hours") << QByteArray("20260311T120000") << QByteArray("2026-03-28T12:00:00")
                                            << QByteArray("2026-03-29T12:00:00") << QByteArrayList {};
    QTest::newRow("as many hours as the day of 25 had")
        << QByteArray("20261024T120000") << QByteArray("2026-11-10T12:00:00") << QByteArray("2026-11-11T13:00:00")
        << QByteArrayList { "DURATION:PT25H" };
}

void EventSavingTest::aLengthOfDaysIsOneByTheCalendar()
{
    QFETCH(const QByteArray, start);
    QFETCH(const QByteArray, newStart);
    QFETCH(const QByteArray, newEnd);
    QFETCH(const QByteArrayList, written);
    const CalendarFolder folder;
    const QByteArray text = calendarText(
        "BEGIN:VEVENT\r\nUID:e\r\nDTSTART;TZID=Europe/Berlin:" + start + "\r\nDURATION:P1D\r\nEND:VEVENT\r\n");
    folder.write(u"c/e.ics"_s, text);
    const auto store = folder.openWithoutWatching();
    const CalEventPtr event
        = eventsOn(*store, QDate::fromString(QString::fromLatin1(start.first(8)), u"yyyyMMdd"_s)).constFirst();

    event->setStartDate(local(newStart.constData()));
    event->setEndDate(local(newEnd.constData()));
    QVERIFY(store->saveEvent(*event, CalSpanThisEvent).isOk());

    QByteArrayList changed = withoutStamps(linesOnlyIn(folder.read(u"c/e.ics"_s), text));
    changed.removeIf([](const QByteArray &line) { return line.startsWith("DTSTART"); });
    QCOMPARE(changed, written);
    const CalEventPtr again = eventsOn(*folder.openWithoutWatching(), event->startDate().date()).constFirst();
    QCOMPARE(again->startDate(), event->startDate());
    QCOMPARE(again->endDate(), event->endDate());
}

void EventSavingTest::anEndIsAddedWhereThereWasNone()
{
    const CalendarFolder folder;
    const QByteArray text
        = calendarText("BEGIN:VEVENT\r\nUID:e\r\nDTSTART;TZID=America/New_York:20260311T040000\r\nEND:VEVENT\r\n");
    folder.write(u"c/e.ics"_s, text);
    const auto store = folder.openWithoutWatching();
    const CalEventPtr event = eventsOn(*store, QDate(2026, 3, 11)).constFirst();

    event->setEndDate(event->startDate().addSecs(1800));
    QVERIFY(store->saveEvent(*event, CalSpanThisEvent).isOk());

    QVERIFY(folder.read(u"c/e.ics"_s).contains("DTEND;TZID=America/New_York:20260311T043000\r\n"));
}

void EventSavingTest::anEventBecomesAllDay_data()
{
    QTest::addColumn<QByteArray>("times");
    QTest::addColumn<QByteArrayList>("written");

    QTest::newRow("with an end") << QByteArray(
        "DTSTART;TZID=Europe/Berlin:20260311T090000\r\nDTEND;TZID=Europe/Berlin:20260311T100000\r\n")
                                 << QByteArrayList { "DTSTART;VALUE=DATE:20260311", "DTEND;VALUE=DATE:20260313" };
    QTest::newRow("with a length") << QByteArray("DTSTART:20260311T080000Z\r\nDURATION:PT1H\r\n")
                                   << QByteArrayList { "DTSTART;VALUE=DATE:20260311", "DURATION:P2D" };
    QTest::newRow("with neither") << QByteArray("DTSTART:20260311T080000Z\r\n")
                                  << QByteArrayList { "DTSTART;VALUE=DATE:20260311", "DTEND;VALUE=DATE:20260313" };
}

void EventSavingTest::anEventBecomesAllDay()
{
    QFETCH(const QByteArray, times);
    QFETCH(const QByteArrayList, written);
    const CalendarFolder folder;
    const QByteArray text = calendarText("BEGIN:VEVENT\r\nUID:e\r\n" + times + "END:VEVENT\r\n");
    folder.write(u"c/e.ics"_s, text);
    const auto store = folder.openWithoutWatching();
    const CalEventPtr event = eventsOn(*store, QDate(2026, 3, 11)).constFirst();

    event->setIsAllDay(true);
    event->setEndDate(local("2026-03-12T17:30:00"));
    QVERIFY(store->saveEvent(*event, CalSpanThisEvent).isOk());

    QCOMPARE(withoutStamps(linesOnlyIn(folder.read(u"c/e.ics"_s), text)), written);
    const CalEventPtr again = eventsOn(*store, QDate(2026, 3, 12)).constFirst();
    QVERIFY(again->isAllDay());
    QCOMPARE(again->endDate(), local("2026-03-12T23:59:59"));
}

void EventSavingTest::anAllDayEventGetsATimeInTheZoneOfTheProcess()
{
    const CalendarFolder folder;
    folder.write(u"c/e.ics"_s, calendarText(eventText("e", "E", "20260311", "DTEND;VALUE=DATE:20260312\r\n")));
    const auto store = folder.openWithoutWatching();
    const CalEventPtr event = eventsOn(*store, QDate(2026, 3, 11)).constFirst();

    event->setIsAllDay(false);
    event->setStartDate(local("2026-03-11T09:00:00"));
    event->setEndDate(local("2026-03-11T10:30:00"));
    QVERIFY(store->saveEvent(*event, CalSpanThisEvent).isOk());

    const QByteArray saved = folder.read(u"c/e.ics"_s);
    QVERIFY(saved.contains("DTSTART;TZID=Europe/Berlin:20260311T090000\r\n"));
    QVERIFY(saved.contains("DTEND;TZID=Europe/Berlin:20260311T103000\r\n"));
    QCOMPARE(saved.count("BEGIN:VTIMEZONE"), 1);
    QVERIFY(saved.contains(berlinZone));
    QVERIFY(saved.indexOf("END:VTIMEZONE") < saved.indexOf("BEGIN:VEVENT"));
    // Read elsewhere, it is the same instant.
    const ScopedTimeZone tokyo("Asia/Tokyo");
    const CalEventPtr again = eventsOn(*folder.openWithoutWatching(), QDate(2026, 3, 11)).constFirst();
    QCOMPARE(again->startDate(), QDateTime(QDate(2026, 3, 11), QTime(8, 0), Qt::UTC));
}

void EventSavingTest::theFilesOwnZoneIsTheOneThatIsMeant()
{
    // A zone of the same name that is two hours ahead, always.
    const QByteArray odd = "BEGIN:VTIMEZONE\r\nTZID:Europe/Berlin\r\nBEGIN:STANDARD\r\nDTSTART:19700101T000000\r\n"
                           "TZOFFSETFROM:+0200\r\nTZOFFSETTO:+0200\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n";
    const CalendarFolder folder;
    folder.write(u"c/e.ics"_s, calendarText(odd + eventText("e", "E", "20260311", {})));
    const auto store = folder.openWithoutWatching();
    const CalEventPtr event = eventsOn(*store, QDate(2026, 3, 11)).constFirst();

    event->setIsAllDay(false);
    event->setStartDate(local("2026-03-11T09:00:00"));
    event->setEndDate(local("2026-03-11T10:00:00"));
    QVERIFY(store->saveEvent(*event, CalSpanThisEvent).isOk());

    const QByteArray saved = folder.read(u"c/e.ics"_s);
    QCOMPARE(saved.count("BEGIN:VTIMEZONE"), 1);
    QVERIFY(saved.contains("DTSTART;TZID=Europe/Berlin:20260311T100000\r\n"));
    QCOMPARE(eventsOn(*store, QDate(2026, 3, 11)).constFirst()->startDate(), local("2026-03-11T09:00:00"));
}

void EventSavingTest::aZoneThatCannotBeDefinedIsWrittenInUtc()
{
    const ScopedTimeZone nameless("EST5EDT,M3.2.0,M11.1.0");
    const CalendarFolder folder;
    folder.write(u"c/e.ics"_s, calendarText(eventText("e", "E", "20260311", {})));
    const auto store = folder.openWithoutWatching();
    const CalEventPtr event = eventsOn(*store, QDate(2026, 3, 11)).constFirst();

    event->setIsAllDay(false);
    event->setStartDate(QDateTime(QDate(2026, 3, 11), QTime(13, 0), Qt::UTC).toLocalTime());
    event->setEndDate(QDateTime(QDate(2026, 3, 11), QTime(14, 0), Qt::UTC).toLocalTime());
    QVERIFY(store->saveEvent(*event, CalSpanThisEvent).isOk());

    QVERIFY(folder.read(u"c/e.ics"_s).contains("DTSTART:20260311T130000Z\r\n"));
    QVERIFY(folder.read(u"c/e.ics"_s).contains("DTEND:20260311T140000Z\r\n"));
}

void EventSavingTest::anEndBeforeTheStartIsWrittenAsItIs_data()
{
    QTest::addColumn<QByteArray>("times");
    QTest::addColumn<bool>("isAllDay");
    QTest::addColumn<QByteArray>("written");

    const QByteArray timed = "DTSTART:20260311T080000Z\r\n";
    const QByteArray day = "DTSTART;VALUE=DATE:20260311\r\n";
    QTest::newRow("an end") << timed + "DTEND:20260311T090000Z\r\n" << false << QByteArray("DTEND:20260310T080000Z");
    QTest::newRow("a length") << timed + "DURATION:PT1H\r\n" << false << QByteArray("DTEND:20260310T080000Z");
    QTest::newRow("an end of days") << day + "DTEND;VALUE=DATE:20260312\r\n"
                                    << true << QByteArray("DTEND;VALUE=DATE:20260310");
    QTest::newRow("a length of days") << day + "DURATION:P1D\r\n" << true << QByteArray("DTEND;VALUE=DATE:20260310");
}

// It is shown as an event of no length, or of one day.
void EventSavingTest::anEndBeforeTheStartIsWrittenAsItIs()
{
    QFETCH(const QByteArray, times);
    QFETCH(const bool, isAllDay);
    QFETCH(const QByteArray, written);
    const CalendarFolder folder;
    folder.write(u"c/e.ics"_s, calendarText("BEGIN:VEVENT\r\nUID:e\r\n" + times + "END:VEVENT\r\n"));
    const auto store = folder.openWithoutWatching();
    const CalEventPtr event = eventsOn(*store, QDate(2026, 3, 11)).constFirst();

    event->setEndDate(isAllDay ? QDateTime(QDate(2026, 3, 9), QTime(23, 59, 59)) : event->startDate().addDays(-1));
    QVERIFY(store->saveEvent(*event, CalSpanThisEvent).isOk());

    const QByteArray text = folder.read(u"c/e.ics"_s);
    QVERIFY2(text.split('\n').contains(written + '\r') && !text.contains("DURATION"), text.constData());
    const CalEventPtr shown = eventsOn(*folder.openWithoutWatching(), QDate(2026, 3, 11)).constFirst();
    QCOMPARE(shown->startDate(), event->startDate());
    QCOMPARE(shown->endDate(), isAllDay ? event->startDate().addSecs(86399) : event->startDate());
}

void EventSavingTest::everyPropertyOfARecordIsWritten()
{
    const CalendarFolder folder;
    folder.write(u"c/e.ics"_s, calendarText(eventText("e", "E", "20260311T080000Z")));
    const auto store = folder.openWithoutWatching();
    const CalEventPtr event = eventsOn(*store, QDate(2026, 3, 11)).constFirst();

    event->setTitle(u"A; b, c\\d"_s);
    event->setNotes(u"one\ntwo\r\nthree"_s);
    event->setLocation(u"Room 1, left"_s);
    event->setUrl(QUrl(u"https://example.org/a,b;c?q=ä"_s));
    QVERIFY(store->saveEvent(*event, CalSpanThisEvent).isOk());

    const QByteArray saved = folder.read(u"c/e.ics"_s);
    QVERIFY(saved.contains("SUMMARY:A\\; b\\, c\\\\d\r\n"));
    QVERIFY(saved.contains("DESCRIPTION:one\\ntwo\\nthree\r\n"));
    QVERIFY(saved.contains("LOCATION:Room 1\\, left\r\n"));
    QVERIFY(saved.contains("URL:https://example.org/a,b;c?q=%C3%A4\r\n"));
    const CalEventPtr again = eventsOn(*folder.openWithoutWatching(), QDate(2026, 3, 11)).constFirst();
    QCOMPARE(again->title(), event->title());
    QCOMPARE(again->notes(), u"one\ntwo\nthree"_s);
    QCOMPARE(again->location(), event->location());
    QCOMPARE(again->url(), event->url());
}

void EventSavingTest::aRuleIsWritten_data()
{
    QTest::addColumn<QByteArray>("rules");
    QTest::addColumn<int>("days"); // by which the event is moved besides
    QTest::addColumn<CalSpan>("span");
    QTest::addColumn<QByteArray>("rule"); // empty for none
    QTest::addColumn<QByteArray>("written");

    const QByteArray weekly = "RRULE:FREQ=WEEKLY;BYDAY=WE\r\n";
    QTest::newRow("an event begins to repeat")
        << QByteArray() << 0 << CalSpanAllEvents << QByteArray("FREQ=DAILY") << QByteArray("RRULE:FREQ=DAILY\r\n");
    QTest::newRow("a series repeats otherwise")
        << weekly << 0 << CalSpanAllEvents << QByteArray("FREQ=DAILY\nFREQ=YEARLY")
        << QByteArray("RRULE:FREQ=DAILY\r\nRRULE:FREQ=YEARLY\r\n");
    QTest::newRow("a series repeats otherwise from another day on")
        << weekly << 1 << CalSpanAllEvents << QByteArray("FREQ=WEEKLY;BYDAY=TH")
        << QByteArray("RRULE:FREQ=WEEKLY;BYDAY=TH\r\n");
    QTest::newRow("a series ends") << weekly << 0 << CalSpanAllEvents << QByteArray() << QByteArray();
    QTest::newRow("one occurrence has none of its own")
        << weekly << 0 << CalSpanThisEvent << QByteArray("FREQ=DAILY") << weekly;
}

void EventSavingTest::aRuleIsWritten()
{
    QFETCH(const QByteArray, rules);
    QFETCH(const int, days);
    QFETCH(const CalSpan, span);
    QFETCH(const QByteArray, rule);
    QFETCH(const QByteArray, written);
    const CalendarFolder folder;
    const QByteArray text
        = calendarText(eventText("e", "E", "20260311T080000Z", "DURATION:PT1H\r\nSEQUENCE:4\r\n" + rules));
    folder.write(u"c/e.ics"_s, text);
    const auto store = folder.openWithoutWatching();
    const CalEventPtr event = eventsOn(*store, QDate(2026, 3, 11)).constFirst();

    event->setRecurrenceRule(rule.isEmpty() ? std::nullopt : std::optional(CalRecurrenceRule { rule }));
    event->setStartDate(event->startDate().addDays(days));
    event->setEndDate(event->endDate().addDays(days));
    QVERIFY(store->saveEvent(*event, span).isOk());

    const QByteArray saved = folder.read(u"c/e.ics"_s);
    QByteArray found;
    for (const QByteArray &line : saved.split('\n')) {
        if (line.startsWith("RRULE"))
            found += line + '\n';
    }
    QCOMPARE(found, written);
    QVERIFY2(saved.contains(span == CalSpanAllEvents ? "SEQUENCE:5\r\n" : "SEQUENCE:4\r\n"), saved.constData());
    const CalEventPtr again = eventsOn(*folder.openWithoutWatching(), QDate(2026, 3, 11).addDays(days)).constFirst();
    QCOMPARE(again->recurrenceRule().value_or(CalRecurrenceRule()).text,
        span == CalSpanAllEvents ? rule : "FREQ=WEEKLY;BYDAY=WE");
}

void EventSavingTest::whatIsClearedGoes()
{
    const CalendarFolder folder;
    folder.write(u"c/e.ics"_s,
        calendarText(eventText("e", "E", "20260311T080000Z",
            "LOCATION:There\r\nDESCRIPTION:long\r\n  and folded\r\nURL:https://example.org/\r\n")));
    const auto store = folder.openWithoutWatching();
    const CalEventPtr event = eventsOn(*store, QDate(2026, 3, 11)).constFirst();

    event->setTitle(std::nullopt);
    event->setNotes(std::nullopt);
    event->setLocation(std::nullopt);
    event->setUrl(std::nullopt);
    QVERIFY(store->saveEvent(*event, CalSpanThisEvent).isOk());

    const QByteArray saved = folder.read(u"c/e.ics"_s);
    for (const char *const name : { "SUMMARY", "LOCATION", "DESCRIPTION", "folded", "URL" })
        QVERIFY2(!saved.contains(name), name);
}

void EventSavingTest::parametersThatDescribeTheOldTextGoWithIt()
{
    const CalendarFolder folder;
    folder.write(u"c/e.ics"_s,
        calendarText("BEGIN:VEVENT\r\nUID:e\r\nDTSTART:20260311T080000Z\r\n"
                     "SUMMARY;LANGUAGE=de;ALTREP=\"cid:part1@example.org\";X-P=1:Alt\r\nEND:VEVENT\r\n"));
    const auto store = folder.openWithoutWatching();
    const CalEventPtr event = eventsOn(*store, QDate(2026, 3, 11)).constFirst();

    event->setTitle(u"Neu"_s);
    QVERIFY(store->saveEvent(*event, CalSpanThisEvent).isOk());

    QVERIFY(folder.read(u"c/e.ics"_s).contains("SUMMARY;LANGUAGE=de;X-P=1:Neu\r\n"));
}

void EventSavingTest::anUnchangedEventWritesNothing()
{
    const CalendarFolder folder;
    const QByteArray text = calendarText(eventText("e", "E", "20260311T080000Z"));
    folder.write(u"c/e.ics"_s, text);
    const auto store = folder.openWithoutWatching();

    QVERIFY(store->saveEvent(*eventsOn(*store, QDate(2026, 3, 11)).constFirst(), CalSpanAllEvents).isOk());

    QCOMPARE(folder.read(u"c/e.ics"_s), text);
}

void EventSavingTest::bothStepsOfTheEventSheetWriteTheEvent()
{
    const CalendarFolder folder;
    folder.write(u"c/e.ics"_s, calendarText(eventText("e", "Lunch", "20260311T080000Z")));
    const auto store = folder.openWithoutWatching();
    const CalEventPtr event = eventsOn(*store, QDate(2026, 3, 11)).constFirst();
    event->setLocation(u"There"_s);

    event->setTitle(u"DUMBY Lunch"_s);
    QVERIFY(store->saveEvent(*event, CalSpanThisEvent).isOk());
    event->setTitle(u"Lunch"_s);
    QVERIFY(store->saveEvent(*event, CalSpanAllEvents).isOk());

    const QByteArray saved = folder.read(u"c/e.ics"_s);
    QVERIFY(!saved.contains("DUMBY"));
    QVERIFY(saved.contains("SUMMARY:Lunch\r\n"));
    QVERIFY(saved.contains("LOCATION:There\r\n"));
}

void EventSavingTest::aFileChangedMeanwhileIsKept()
{
    const CalendarFolder folder;
    folder.write(u"Home/e.ics"_s, calendarText(eventText("e", "Lunch", "20260311T080000Z")));
    const auto store = folder.openWithoutWatching();
    const CalEventPtr event = eventsOn(*store, QDate(2026, 3, 11)).constFirst();
    const QByteArray theirs = calendarText(eventText("e", "Theirs", "20260311T080000Z"));
    folder.write(u"Home/e.ics"_s, theirs);

    event->setTitle(u"Ours"_s);
    const auto outcome = store->saveEvent(*event, CalSpanThisEvent);

    QVERIFY(!outcome);
    QCOMPARE(outcome.error().code, StoreError::Code::Conflict);
    QCOMPARE(outcome.error().item, u"Lunch"_s);
    QCOMPARE(outcome.error().calendar, u"Home"_s);
    QCOMPARE(folder.read(u"Home/e.ics"_s), theirs);
    QCOMPARE(eventsOn(*store, QDate(2026, 3, 11)).constFirst()->title(), u"Theirs"_s);
}

VANTLE_TEST(EventSavingTest)
#include "EventSavingTest.moc"
