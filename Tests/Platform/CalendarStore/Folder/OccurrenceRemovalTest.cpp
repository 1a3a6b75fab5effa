// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "SheetSave.h"
#include "TestRegistry.h"

#include <CalEvent.h>

#include <QDir>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

const QDate day(2026, 3, 11);
const QString fileName = u"home/series.ics"_s;

QByteArray seriesText(const QByteArray &rule, const QByteArray &more = {})
{
    return calendarText(
        eventText("series", "Lunch", "20260309T110000Z", "DURATION:PT1H\r\n" + rule + "\r\nX-KEEP:a\\,b\r\n") + more);
}

CalEventPtr eventOn(const CalCalendarStore &store, QDate date)
{
    const CalEventList events
        = store.eventsWithPredicate(CalCalendarStore::eventPredicateWithStartDate_endDate_calendars(
            date.startOfDay(), date.endOfDay(), store.calendars()));
    return events.isEmpty() ? nullptr : events.constFirst();
}

} // namespace

// One occurrence of a series is removed, and comes back.
class OccurrenceRemovalTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void removalAddsOneLineAndTheStamps();
    void removalIsTakenBackToTheByte_data();
    void removalIsTakenBackToTheByte();
    void removalIsNotTakenBackOverAnotherChange();
    void removalOfOneThatIsNotThereAnyMoreIsRefused();
    void otherItemsOfTheFileStayWhenTheLastOccurrenceGoes();
};

void OccurrenceRemovalTest::removalAddsOneLineAndTheStamps()
{
    const CalendarFolder folder;
    const QByteArray text = seriesText("RRULE:FREQ=DAILY");
    folder.write(fileName, text);
    const auto store = storeOver(folder);

    StoreError error;
    QVERIFY2(
        store->removeEvent_span_error(eventOn(*store, day), CalSpanThisEvent, &error), qPrintable(error.message()));

    QByteArrayList lines = folder.read(fileName).split('\n');
    const QByteArrayList before = text.split('\n');
    lines.removeIf([&](const QByteArray &line) { return before.contains(line); });
    std::ranges::sort(lines);
    QCOMPARE(lines.size(), 4);
    QVERIFY(lines[0].startsWith("DTSTAMP:"));
    QCOMPARE(lines[1], QByteArray("EXDATE:20260311T110000Z\r"));
    QVERIFY(lines[2].startsWith("LAST-MODIFIED:"));
    QCOMPARE(lines[3], QByteArray("SEQUENCE:1\r"));
}

void OccurrenceRemovalTest::removalIsTakenBackToTheByte_data()
{
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("one of many") << seriesText("RRULE:FREQ=DAILY");
    QTest::newRow("the last one") << seriesText("RRULE:FREQ=DAILY;COUNT=3\r\nEXDATE:20260309T110000Z,20260310T110000Z");
    QTest::newRow("an override") << seriesText("RRULE:FREQ=DAILY",
        eventText("series", "Late lunch", "20260311T130000Z", "RECURRENCE-ID:20260311T110000Z\r\n"));
    QTest::newRow("bare line feeds") << seriesText("RRULE:FREQ=DAILY").replace("\r\n", "\n");
}

void OccurrenceRemovalTest::removalIsTakenBackToTheByte()
{
    QFETCH(const QByteArray, text);
    const CalendarFolder folder;
    folder.write(fileName, text);
    const auto store = storeOver(folder);

    StoreError error;
    QVERIFY2(
        store->removeEvent_span_error(eventOn(*store, day), CalSpanThisEvent, &error), qPrintable(error.message()));
    QVERIFY(!eventOn(*store, day));
    QVERIFY(folder.read(fileName) != text);
    QVERIFY2(store->undoRemoval_error(&error), qPrintable(error.message()));

    QCOMPARE(folder.read(fileName), text);
    QVERIFY(eventOn(*store, day));
}

void OccurrenceRemovalTest::removalIsNotTakenBackOverAnotherChange()
{
    const CalendarFolder folder;
    folder.write(fileName, seriesText("RRULE:FREQ=DAILY"));
    const auto store = storeOver(folder);
    StoreError error;
    QVERIFY2(
        store->removeEvent_span_error(eventOn(*store, day), CalSpanThisEvent, &error), qPrintable(error.message()));
    const QByteArray theirs = folder.read(fileName).replace("SUMMARY:Lunch", "SUMMARY:Theirs");
    folder.writeByRenaming(fileName, theirs);

    QVERIFY(!store->undoRemoval_error(&error));

    QCOMPARE(error.code, StoreError::Code::Conflict);
    QCOMPARE(error.item, u"Lunch"_s);
    QCOMPARE(folder.read(fileName), theirs);
}

void OccurrenceRemovalTest::removalOfOneThatIsNotThereAnyMoreIsRefused()
{
    const CalendarFolder folder;
    folder.write(fileName, seriesText("RRULE:FREQ=DAILY"));
    const auto store = storeOver(folder);
    const CalEventPtr event = eventOn(*store, day);
    const QByteArray theirs = seriesText("RRULE:FREQ=DAILY;COUNT=2");
    folder.writeByRenaming(fileName, theirs);

    StoreError error;
    QVERIFY(!store->removeEvent_span_error(event, CalSpanThisEvent, &error));

    QCOMPARE(error.code, StoreError::Code::Conflict);
    QCOMPARE(folder.read(fileName), theirs);
}

void OccurrenceRemovalTest::otherItemsOfTheFileStayWhenTheLastOccurrenceGoes()
{
    const CalendarFolder folder;
    folder.write(fileName, seriesText("RDATE:20260311T110000Z\r\nEXDATE:20260309T110000Z", taskText("task", "Shop")));
    const auto store = storeOver(folder);

    StoreError error;
    QVERIFY2(
        store->removeEvent_span_error(eventOn(*store, day), CalSpanThisEvent, &error), qPrintable(error.message()));

    QCOMPARE(folder.read(fileName), calendarText(taskText("task", "Shop")));
}

VANTLE_TEST(OccurrenceRemovalTest)
#include "OccurrenceRemovalTest.moc"
