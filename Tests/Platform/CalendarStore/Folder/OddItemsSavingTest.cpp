// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "TestRegistry.h"

#include <CalEvent.h>

#include <QTest>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace
{

const QDate day(2026, 3, 11);
const QString fileName = u"c/odd.ics"_s;

QByteArray namelessSeries(const QByteArray &title)
{
    return "BEGIN:VEVENT\r\nDTSTART:20260309T110000Z\r\nDURATION:PT1H\r\nRRULE:FREQ=DAILY\r\nSUMMARY:" + title
        + "\r\nEND:VEVENT\r\n";
}

CalEventPtr eventNamed(const FolderCalendarStore &store, const QString &title, QDate date = day)
{
    const CalEventList events = eventsOn(store, date);
    const auto found = std::ranges::find_if(events, [&](const CalEventPtr &each) { return each->title() == title; });
    return found == events.end() ? nullptr : *found;
}

} // namespace

Q_DECLARE_METATYPE(CalSpan)

// What a save does where the file is not as it should be: it concerns the item alone, or nothing at all.
class OddItemsSavingTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anExceptionOfASeriesWithoutUidIsOneOfThatSeries_data();
    void anExceptionOfASeriesWithoutUidIsOneOfThatSeries();
    void nothingIsWrittenForASeriesWithoutUidThatIsAsBefore();
    void noExceptionIsMadeOfTheSecondOfTwoSeriesWithOneUid();
    void nothingIsWrittenWhereAComponentIsNotClosed_data();
    void nothingIsWrittenWhereAComponentIsNotClosed();
    void anOccurrenceIsExcludedInTheFormOfTheStartThatCounts();
    void theGreatestSequenceStays();
    void anEndThatIsNotUnderstoodGetsTheInstant_data();
    void anEndThatIsNotUnderstoodGetsTheInstant();
    void aParameterThatIsNotUnderstoodStays();
    void anExceptionBehindAByteOrderMarkIsOne();
    void anOccurrenceStaysAsLongWhereItsEndComesTwice_data();
    void anOccurrenceStaysAsLongWhereItsEndComesTwice();
};

void OddItemsSavingTest::anExceptionOfASeriesWithoutUidIsOneOfThatSeries_data()
{
    QTest::addColumn<QString>("changed");
    QTest::addColumn<QString>("other");

    QTest::newRow("the first") << u"First"_s << u"Second"_s;
    QTest::newRow("the second") << u"Second"_s << u"First"_s;
    QTest::newRow("the third") << u"Third"_s << u"First"_s;
}

void OddItemsSavingTest::anExceptionOfASeriesWithoutUidIsOneOfThatSeries()
{
    QFETCH(const QString, changed);
    QFETCH(const QString, other);
    const CalendarFolder folder;
    folder.write(fileName, calendarText(namelessSeries("First") + namelessSeries("Second") + namelessSeries("Third")));
    const auto store = folder.openWithoutWatching();
    const CalEventPtr event = eventNamed(*store, changed);
    const QString uidOfOther = eventNamed(*store, other)->uid();
    const QString uid = event->uid();

    event->setTitle(u"Changed"_s);
    const auto saved = store->saveEvent(*event, CalSpanThisEvent);
    QVERIFY2(saved.isOk(), qPrintable(saved ? QString() : saved.error().message()));

    QVERIFY(!eventNamed(*store, changed));
    QCOMPARE(eventNamed(*store, u"Changed"_s)->uid(), uid);
    QCOMPARE(eventNamed(*store, other)->uid(), uidOfOther);
    QCOMPARE(eventsOn(*store, day).size(), 3);
    QVERIFY(eventNamed(*store, changed, day.addDays(1)));
    QVERIFY(eventNamed(*store, other, day.addDays(1)));
}

void OddItemsSavingTest::nothingIsWrittenForASeriesWithoutUidThatIsAsBefore()
{
    const CalendarFolder folder;
    const QByteArray text = calendarText(namelessSeries("First"));
    folder.write(fileName, text);
    const auto store = folder.openWithoutWatching();
    const CalEventPtr event = eventNamed(*store, u"First"_s);

    QVERIFY(store->saveEvent(*event, CalSpanThisEvent).isOk());

    QCOMPARE(folder.read(fileName), text);
}

void OddItemsSavingTest::noExceptionIsMadeOfTheSecondOfTwoSeriesWithOneUid()
{
    const CalendarFolder folder;
    const QByteArray rule = "DURATION:PT1H\r\nRRULE:FREQ=DAILY\r\n";
    const QByteArray text = calendarText(
        eventText("same", "First", "20260309T110000Z", rule) + eventText("same", "Second", "20260309T110000Z", rule));
    folder.write(fileName, text);
    const auto store = folder.openWithoutWatching();
    const CalEventPtr event = eventNamed(*store, u"Second"_s);

    event->setTitle(u"Changed"_s);
    const auto saved = store->saveEvent(*event, CalSpanThisEvent);

    QVERIFY(!saved);
    QCOMPARE(saved.error().code, StoreError::Code::Unreadable);
    QCOMPARE(folder.read(fileName), text);
}

void OddItemsSavingTest::nothingIsWrittenWhereAComponentIsNotClosed_data()
{
    QTest::addColumn<QByteArray>("components");

    const QByteArray open = eventText("a", "Open", "20260311T110000Z").replace("END:VEVENT\r\n", "");
    QTest::newRow("the last of the calendar") << open;
    QTest::newRow("one before another") << open + eventText("b", "Other", "20260311T110000Z");
    QTest::newRow("one behind another") << eventText("b", "Other", "20260311T110000Z") + open;
    QTest::newRow("its alarm") << eventText(
        "a", "Open", "20260311T110000Z", "BEGIN:VALARM\r\nACTION:DISPLAY\r\nTRIGGER:-PT5M\r\n");
    QTest::newRow("one within an alarm") << QByteArray(
        "BEGIN:VALARM\r\n" + eventText("a", "Open", "20260311T110000Z") + "END:VALARM\r\n");
    QTest::newRow("a calendar in it") << eventText(
        "a", "Open", "20260311T110000Z", "BEGIN:VCALENDAR\r\n" + eventText("c", "Inner", "20260311T110000Z"));
}

void OddItemsSavingTest::nothingIsWrittenWhereAComponentIsNotClosed()
{
    QFETCH(const QByteArray, components);
    const CalendarFolder folder;
    const QByteArray text = calendarText(components);
    folder.write(fileName, text);
    const auto store = folder.openWithoutWatching();

    const CalEventPtr event = eventNamed(*store, u"Open"_s);
    event->setTitle(u"Changed"_s);
    const auto saved = store->saveEvent(*event, CalSpanThisEvent);
    const auto removed = store->removeEvent(*event, CalSpanAllEvents);

    QVERIFY(!saved);
    QCOMPARE(saved.error().code, StoreError::Code::Unreadable);
    QVERIFY(!removed);
    QCOMPARE(folder.read(fileName), text);
}

void OddItemsSavingTest::anOccurrenceIsExcludedInTheFormOfTheStartThatCounts()
{
    const CalendarFolder folder;
    folder.write(fileName,
        calendarText("BEGIN:VEVENT\r\nUID:e\r\nSUMMARY:Lunch\r\nDTSTART:19Y:Test\r\n"
                     "DTSTART;TZID=America/Los_Angeles:20260309T130000\r\nRRULE:FREQ=DAILY\r\nEND:VEVENT\r\n"));
    const auto store = folder.openWithoutWatching();

    QVERIFY(store->removeEvent(*eventNamed(*store, u"Lunch"_s), CalSpanThisEvent).isOk());

    QVERIFY(folder.read(fileName).contains("\r\nEXDATE;TZID=America/Los_Angeles:20260311T130000\r\n"));
    QVERIFY(!eventNamed(*store, u"Lunch"_s));
    QVERIFY(eventNamed(*store, u"Lunch"_s, day.addDays(1)));
}

void OddItemsSavingTest::theGreatestSequenceStays()
{
    const QByteArray greatest = QByteArray::number(std::numeric_limits<int>::max());
    const CalendarFolder folder;
    folder.write(fileName,
        calendarText(eventText("e", "Lunch", "20260311T110000Z", "DURATION:PT1H\r\nSEQUENCE:" + greatest + "\r\n")));
    const auto store = folder.openWithoutWatching();

    const CalEventPtr event = eventNamed(*store, u"Lunch"_s);
    event->setTitle(u"Dinner"_s);
    QVERIFY(store->saveEvent(*event, CalSpanThisEvent).isOk());

    QVERIFY(folder.read(fileName).contains(QByteArray("\r\nSEQUENCE:" + greatest + "\r\n")));
}

void OddItemsSavingTest::anEndThatIsNotUnderstoodGetsTheInstant_data()
{
    QTest::addColumn<QByteArray>("end");
    QTest::addColumn<QByteArray>("written");

    // The start is at 09:00 in Berlin.
    QTest::newRow("before the start, elsewhere") << QByteArray("DTEND;TZID=Asia/Tokyo:20260311T090000")
                                                 << QByteArray("DTEND;TZID=Europe/Berlin:20260311T150000");
    QTest::newRow("a day, elsewhere") << QByteArray("DTEND;TZID=Asia/Tokyo;VALUE=DATE:20260312")
                                      << QByteArray("DTEND;TZID=Europe/Berlin:20260311T150000");
    QTest::newRow("nothing that is a time, elsewhere")
        << QByteArray("DTEND;TZID=Asia/Tokyo:20263311T0900") << QByteArray("DTEND;TZID=Europe/Berlin:20260311T150000");
    QTest::newRow("as it should be") << QByteArray("DTEND;TZID=Asia/Tokyo:20260311T180000")
                                     << QByteArray("DTEND;TZID=Asia/Tokyo:20260311T230000");
}

void OddItemsSavingTest::anEndThatIsNotUnderstoodGetsTheInstant()
{
    QFETCH(const QByteArray, end);
    QFETCH(const QByteArray, written);
    const CalendarFolder folder;
    folder.write(fileName,
        calendarText("BEGIN:VEVENT\r\nUID:e\r\nSUMMARY:Lunch\r\nDTSTART;TZID=Europe/Berlin:20260311T090000\r\n" + end
            + "\r\nEND:VEVENT\r\n"));
    const auto store = folder.openWithoutWatching();
    const CalEventPtr event = eventNamed(*store, u"Lunch"_s);
    const QDateTime wanted(day, QTime(15, 0));

    event->setEndDate(wanted);
    QVERIFY(store->saveEvent(*event, CalSpanThisEvent).isOk());

    QVERIFY2(folder.read(fileName).contains(QByteArray("\r\n" + written + "\r\n")), folder.read(fileName).constData());
    QCOMPARE(eventNamed(*store, u"Lunch"_s)->endDate(), wanted);
}

void OddItemsSavingTest::aParameterThatIsNotUnderstoodStays()
{
    const CalendarFolder folder;
    folder.write(fileName,
        calendarText(eventText("e", "Lunch", "20260311T110000Z",
            "DURATION:PT1H\r\nLOCATION;x-mood;language=de-DE; x-kept = a :Room\r\n")));
    const auto store = folder.openWithoutWatching();
    const CalEventPtr event = eventNamed(*store, u"Lunch"_s);

    event->setLocation(u"Hall"_s);
    QVERIFY(store->saveEvent(*event, CalSpanThisEvent).isOk());

    QVERIFY2(folder.read(fileName).contains("\r\nLOCATION;x-mood;language=de-DE; x-kept = a :Hall\r\n"),
        folder.read(fileName).constData());
}

// The mark belongs to the file, not to the series that follows it and that the exception is made of.
void OddItemsSavingTest::anExceptionBehindAByteOrderMarkIsOne()
{
    const QByteArray mark = "\xEF\xBB\xBF";
    const CalendarFolder folder;
    folder.write(fileName, mark + eventText("e", "Lunch", "20260309T110000Z", "DURATION:PT1H\r\nRRULE:FREQ=DAILY\r\n"));
    const auto store = folder.openWithoutWatching();
    const CalEventPtr event = eventNamed(*store, u"Lunch"_s);
    QVERIFY(event);

    event->setTitle(u"Dinner"_s);
    const auto saved = store->saveEvent(*event, CalSpanThisEvent);
    QVERIFY2(saved.isOk(), qPrintable(saved ? QString() : saved.error().message()));

    QVERIFY(eventNamed(*store, u"Dinner"_s));
    QVERIFY(eventNamed(*store, u"Lunch"_s, day.addDays(1)));
    QVERIFY(folder.read(fileName).startsWith(QByteArray(mark + "BEGIN:VEVENT\r\n")));
    QCOMPARE(folder.read(fileName).count(mark), 1);
}

void OddItemsSavingTest::anOccurrenceStaysAsLongWhereItsEndComesTwice_data()
{
    QTest::addColumn<QByteArray>("start");
    QTest::addColumn<QByteArray>("end");
    QTest::addColumn<CalSpan>("span");
    QTest::addColumn<qint64>("shift"); // seconds
    QTest::addColumn<QByteArray>("written");

    // In Berlin the clock is set back on 25 October at 01:00 UTC, from 03:00 to 02:00.
    const QByteArray weekBefore = "20261018T023000";
    const QByteArray hourLater = "20261018T033000";
    QTest::newRow("another title alone") << weekBefore << hourLater << CalSpanThisEvent << qint64 { 0 }
                                         << QByteArray("DTEND:20261025T013000Z");
    QTest::newRow("a little earlier, alone")
        << weekBefore << hourLater << CalSpanThisEvent << qint64 { -900 } << QByteArray("DTEND:20261025T011500Z");
    QTest::newRow("begun an hour later, alone")
        << weekBefore << hourLater << CalSpanThisEvent << qint64 { 3600 } << QByteArray("DTSTART:20261025T013000Z");
    QTest::newRow("the first of all an hour later")
        << QByteArray("20261025T013000") << QByteArray("20261025T023000") << CalSpanAllEvents << qint64 { 3600 }
        << QByteArray("DTEND:20261025T013000Z");
}

void OddItemsSavingTest::anOccurrenceStaysAsLongWhereItsEndComesTwice()
{
    QFETCH(const QByteArray, start);
    QFETCH(const QByteArray, end);
    QFETCH(const CalSpan, span);
    QFETCH(const qint64, shift);
    QFETCH(const QByteArray, written);
    const QDate longDay(2026, 10, 25);
    const CalendarFolder folder;
    folder.write(fileName,
        calendarText("BEGIN:VEVENT\r\nUID:night\r\nDTSTART;TZID=Europe/Berlin:" + start
            + "\r\nDTEND;TZID=Europe/Berlin:" + end + "\r\nRRULE:FREQ=WEEKLY\r\nSUMMARY:Night\r\nEND:VEVENT\r\n"));
    const auto store = folder.openWithoutWatching();
    const CalEventPtr event = eventNamed(*store, u"Night"_s, longDay);

    event->setTitle(u"Watch"_s);
    event->setStartDate(event->startDate().addSecs(shift));
    event->setEndDate(event->endDate().addSecs(shift));
    QVERIFY(store->saveEvent(*event, span).isOk());

    const QByteArray saved = folder.read(fileName);
    QVERIFY2(saved.contains(QByteArray(written + "\r\n")), saved.constData());
    const auto again = folder.openWithoutWatching();
    const CalEventPtr changed = eventNamed(*again, u"Watch"_s, longDay);
    QCOMPARE(changed->startDate(), event->startDate());
    QCOMPARE(changed->endDate(), event->endDate());
    const CalEventPtr next = eventNamed(*again, span == CalSpanAllEvents ? u"Watch"_s : u"Night"_s, longDay.addDays(7));
    QCOMPARE(next->startDate().time(), QTime(2, 30));
    QCOMPARE(next->endDate().time(), QTime(3, 30));
}

VANTLE_TEST(OddItemsSavingTest)
#include "OddItemsSavingTest.moc"
