// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "ScopedTimeZone.h"
#include "TestRegistry.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

const QDate day(2026, 3, 11);

} // namespace

// What records a folder's files become.
class FolderReadingTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anEventsValuesAreRead();
    void anAllDayEventEndsWithTheLastSecondOfItsLastDay();
    void anAllDayEventLastsOneDayAtLeast();
    void bothBoundsBelongToTheRange_data();
    void bothBoundsBelongToTheRange();
    void aSeriesGivesOneRecordForEachOccurrence();
    void anOverrideStandsBesideItsSeries();
    void anOverrideWithoutItsSeriesIsShown();
    void aTasksValuesAreRead();
    void tasksAreFoundByState();
    void aTaskThatChangesItsStateIsFoundByTheNewOne();
    void absentAndEmptyPropertiesReadAsNothing();
    void severalItemsOfOneFileAreShown();
    void theSameUidTwiceIsShownTwice();
    void anItemWithoutUidHasAStableOne();
    void recordsAreFreshWithEveryQuery();
    void namesThatAreNoItemsAreIgnored();
    void aChangeOfZoneIsFollowedWithoutReading();
    void longEventsAreFoundOnEachOfTheirDays();
    void aLinkedItemFileIsRead();
};

void FolderReadingTest::anEventsValuesAreRead()
{
    const CalendarFolder folder;
    folder.write(u"Home/a.ics"_s,
        calendarText(eventText("uid-a", "Lunch\\, late", "20260311T120000Z",
            "DTEND:20260311T130000Z\r\nLOCATION:Café\r\nDESCRIPTION:one\\ntwo\r\nURL:https://example.org/\r\n"
            "STATUS:CANCELLED\r\nATTENDEE;CN=Anna;PARTSTAT=ACCEPTED:mailto:anna@example.org\r\n"
            "BEGIN:VALARM\r\nACTION:DISPLAY\r\nTRIGGER:-PT15M\r\nEND:VALARM\r\n")));

    const auto store = folder.openWithoutWatching();
    const CalEventList events = eventsOn(*store, day);

    QCOMPARE(events.size(), 1);
    const CalEvent &event = *events.constFirst();
    QCOMPARE(event.title(), u"Lunch, late"_s);
    QCOMPARE(event.startDate(), QDateTime(day, QTime(13, 0)));
    QCOMPARE(event.endDate(), QDateTime(day, QTime(14, 0)));
    QVERIFY(!event.isAllDay());
    QCOMPARE(event.location(), u"Café"_s);
    QCOMPARE(event.notes(), u"one\ntwo"_s);
    QCOMPARE(event.url(), QUrl(u"https://example.org/"_s));
    QVERIFY(event.isCancelled());
    QVERIFY(!event.recurrenceRule());
    QCOMPARE(event.attendees()->size(), 1);
    QCOMPARE(event.attendees()->constFirst().commonName, u"Anna"_s);
    QCOMPARE(event.attendees()->constFirst().status, CalAttendeeStatusAccepted);
    QCOMPARE(event.alarms().size(), 1);
    QCOMPARE(event.alarms().constFirst()->relativeTrigger(), -900.0);
    QCOMPARE(event.calendar()->uid(), u"Home"_s);
    QCOMPARE(event.origin().plainUid, u"uid-a"_s);
    QCOMPARE(event.origin().resource, u"a.ics"_s);
    QVERIFY(event.origin().recurrenceId.isEmpty());
    QVERIFY(event.uid().isEmpty());
    QVERIFY(event.asRead());
}

void FolderReadingTest::anAllDayEventEndsWithTheLastSecondOfItsLastDay()
{
    const CalendarFolder folder;
    // Over the day on which the clocks go forward.
    folder.write(u"c/a.ics"_s, calendarText(eventText("a", "A", "20260328", "DTEND;VALUE=DATE:20260330\r\n")));
    const auto store = folder.openWithoutWatching();

    const CalEventList events = eventsOn(*store, QDate(2026, 3, 29));

    QCOMPARE(events.size(), 1);
    QVERIFY(events.constFirst()->isAllDay());
    QCOMPARE(events.constFirst()->startDate(), QDateTime(QDate(2026, 3, 28), QTime(0, 0)));
    QCOMPARE(events.constFirst()->endDate(), QDateTime(QDate(2026, 3, 29), QTime(23, 59, 59)));
    QVERIFY(eventsOn(*store, QDate(2026, 3, 27)).isEmpty());
    QVERIFY(eventsOn(*store, QDate(2026, 3, 30)).isEmpty());
}

void FolderReadingTest::anAllDayEventLastsOneDayAtLeast()
{
    const CalendarFolder folder;
    folder.write(u"c/none.ics"_s, calendarText(eventText("a", "no end", "20260311", {})));
    folder.write(
        u"c/same.ics"_s, calendarText(eventText("b", "same day", "20260311", "DTEND;VALUE=DATE:20260311\r\n")));
    folder.write(
        u"c/before.ics"_s, calendarText(eventText("c", "day before", "20260311", "DTEND;VALUE=DATE:20260310\r\n")));
    const auto store = folder.openWithoutWatching();

    const CalEventList events = eventsOn(*store, day);

    QCOMPARE(events.size(), 3);
    for (const CalEventPtr &event : events)
        QCOMPARE(event->endDate(), QDateTime(day, QTime(23, 59, 59)));
}

void FolderReadingTest::bothBoundsBelongToTheRange_data()
{
    QTest::addColumn<QByteArray>("start");
    QTest::addColumn<QByteArray>("end");
    QTest::addColumn<bool>("isIn");

    const auto row = [](const char *name, const char *start, const char *end, bool isIn) {
        QTest::newRow(name) << QByteArray(start) << QByteArray(end) << isIn;
    };
    row("ends as the day begins", "20260310T230000", "20260311T000000", false);
    row("ends a second later", "20260310T230000", "20260311T000001", true);
    row("no length as the day begins", "20260311T000000", "20260311T000000", true);
    row("no length in the last second", "20260311T235959", "20260311T235959", true);
    row("no length a second before", "20260310T235959", "20260310T235959", false);
    row("begins in the last second", "20260311T235959", "20260312T010000", true);
    row("begins with the next day", "20260312T000000", "20260312T010000", false);
    row("ends before it begins", "20260311T120000", "20260311T110000", true);
    row("around the whole day", "20260101T000000", "20261231T000000", true);
}

void FolderReadingTest::bothBoundsBelongToTheRange()
{
    QFETCH(const QByteArray, start);
    QFETCH(const QByteArray, end);
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(eventText("a", "A", start, "DTEND:" + end + "\r\n")));
    const auto store = folder.openWithoutWatching();

    QTEST(!eventsOn(*store, day).isEmpty(), "isIn");
}

void FolderReadingTest::aSeriesGivesOneRecordForEachOccurrence()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s,
        calendarText(eventText("a", "Daily", "20260301T090000", "DURATION:PT1H\r\nRRULE:FREQ=DAILY;COUNT=20\r\n")));
    const auto store = folder.openWithoutWatching();

    const CalEventList week
        = store->events(QDateTime(day, QTime(0, 0)), QDateTime(day.addDays(6), QTime(23, 59, 59)), store->calendars());

    QCOMPARE(week.size(), 7);
    QSet<QString> instants;
    for (const CalEventPtr &event : week) {
        QCOMPARE(event->recurrenceRule()->text, QByteArray("FREQ=DAILY;COUNT=20"));
        instants.insert(event->origin().recurrenceId);
    }
    QCOMPARE(instants.size(), 7);
    QVERIFY(instants.contains(u"20260311T090000"_s));
    QVERIFY(eventsOn(*store, QDate(2026, 3, 21)).isEmpty());
}

void FolderReadingTest::anOverrideStandsBesideItsSeries()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s,
        calendarText(eventText("a", "Moved", "20260311T150000", "RECURRENCE-ID:20260311T090000\r\nDURATION:PT1H\r\n")
            + eventText("a", "Daily", "20260301T090000", "DURATION:PT1H\r\nRRULE:FREQ=DAILY\r\n")));
    const auto store = folder.openWithoutWatching();

    const CalEventList events = eventsOn(*store, day);

    QCOMPARE(sortedTitles(events), QStringList { u"Moved"_s });
    QCOMPARE(events.constFirst()->startDate(), QDateTime(day, QTime(15, 0)));
    QCOMPARE(events.constFirst()->origin().recurrenceId, u"20260311T090000"_s);
    QVERIFY(events.constFirst()->recurrenceRule());
    QCOMPARE(sortedTitles(eventsOn(*store, day.addDays(1))), QStringList { u"Daily"_s });
}

void FolderReadingTest::anOverrideWithoutItsSeriesIsShown()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s,
        calendarText(
            eventText("a", "Alone", "20260311T150000Z", "RECURRENCE-ID:20260311T080000Z\r\nDURATION:PT1H\r\n")));
    const auto store = folder.openWithoutWatching();

    const CalEventList events = eventsOn(*store, day);

    QCOMPARE(sortedTitles(events), QStringList { u"Alone"_s });
    QCOMPARE(events.constFirst()->origin().recurrenceId, u"20260311T080000Z"_s);
}

void FolderReadingTest::aTasksValuesAreRead()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s,
        calendarText(taskText("a", "Timed", "DUE:20260311T120000Z\r\nPRIORITY:5\r\n")
            + taskText("b", "Day", "DUE;VALUE=DATE:20260312\r\n")
            + taskText("c", "Done", "STATUS:COMPLETED\r\nCOMPLETED:20260310T100000Z\r\n")));
    const auto store = folder.openWithoutWatching();

    const CalTaskPtr timed = taskNamed(*store, u"Timed"_s);
    QCOMPARE(timed->dueDate(), QDateTime(day, QTime(13, 0)));
    QVERIFY(!timed->isDueDateOnly());
    QCOMPARE(timed->priority(), 5);
    QVERIFY(!timed->isCompleted());
    const CalTaskPtr dayTask = taskNamed(*store, u"Day"_s);
    QCOMPARE(dayTask->dueDate(), QDateTime(QDate(2026, 3, 12), QTime(0, 0)));
    QVERIFY(dayTask->isDueDateOnly());
    const CalTaskPtr done = taskNamed(*store, u"Done"_s);
    QVERIFY(done->isCompleted());
    QCOMPARE(done->completedDate(), QDateTime(QDate(2026, 3, 10), QTime(11, 0)));
}

void FolderReadingTest::tasksAreFoundByState()
{
    using State = CalendarStoreBackend::TaskState;
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s,
        calendarText(taskText("a", "Open") + taskText("b", "Done", "COMPLETED:20260309T000000Z\r\n")
            + taskText("c", "Done before", "COMPLETED:20260308T235959Z\r\n")));
    const auto store = folder.openWithoutWatching();
    const QDateTime since = QDateTime::fromString(u"2026-03-09T00:00:00Z"_s, Qt::ISODate);

    QCOMPARE(sortedTitles(store->tasks(State::Uncompleted, {}, store->calendars())), QStringList { u"Open"_s });
    QCOMPARE(sortedTitles(store->tasks(State::CompletedSince, since, store->calendars())), QStringList { u"Done"_s });
    QCOMPARE(store->tasks(State::Any, {}, store->calendars()).size(), 3);
    QVERIFY(store->tasks(State::Any, {}, {}).isEmpty());
}

void FolderReadingTest::aTaskThatChangesItsStateIsFoundByTheNewOne()
{
    using State = CalendarStoreBackend::TaskState;
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "A") + taskText("b", "B", "STATUS:COMPLETED\r\n")));
    const auto store = folder.openWithoutWatching();
    const auto found = [&](State state) {
        return sortedTitles(store->tasks(state, folder.clock().now().addDays(-1), store->calendars()));
    };
    const CalTaskPtr task = taskNamed(*store, u"A"_s);

    task->setIsCompleted(true);
    QVERIFY(store->saveTask(*task).isOk());
    QCOMPARE(found(State::CompletedSince), QStringList { u"A"_s });
    QVERIFY(found(State::Uncompleted).isEmpty());
    QCOMPARE(found(State::Any), QStringList({ u"A"_s, u"B"_s }));

    task->setIsCompleted(false);
    QVERIFY(store->saveTask(*task).isOk());
    QVERIFY(found(State::CompletedSince).isEmpty());
    QCOMPARE(found(State::Uncompleted), QStringList { u"A"_s });
    QCOMPARE(found(State::Any), QStringList({ u"A"_s, u"B"_s }));
}

void FolderReadingTest::absentAndEmptyPropertiesReadAsNothing()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s,
        calendarText(
            "BEGIN:VEVENT\r\nUID:a\r\nDTSTART:20260311T090000\r\nSUMMARY:\r\nLOCATION:\r\nURL:\r\nEND:VEVENT\r\n"));
    const auto store = folder.openWithoutWatching();

    const CalEventList events = eventsOn(*store, day);

    QCOMPARE(events.size(), 1);
    QVERIFY(!events.constFirst()->title());
    QVERIFY(!events.constFirst()->location());
    QVERIFY(!events.constFirst()->url());
    QVERIFY(!events.constFirst()->notes());
    QVERIFY(!events.constFirst()->attendees());
}

void FolderReadingTest::severalItemsOfOneFileAreShown()
{
    const CalendarFolder folder;
    folder.write(u"c/big.ics"_s,
        calendarText(
            eventText("a", "A", "20260311T090000") + eventText("b", "B", "20260311T100000") + taskText("c", "C")));
    const auto store = folder.openWithoutWatching();

    QCOMPARE(sortedTitles(eventsOn(*store, day)), QStringList({ u"A"_s, u"B"_s }));
    QCOMPARE(sortedTitles(allTasks(*store)), QStringList { u"C"_s });
    QVERIFY(store->holdsUid(u"c"_s, u"b"_s));
    QVERIFY(store->holdsUid(u"c"_s, u"c"_s));
    QVERIFY(!store->holdsUid(u"c"_s, u"z"_s));
    QVERIFY(!store->holdsUid(u"other"_s, u"a"_s));
}

void FolderReadingTest::theSameUidTwiceIsShownTwice()
{
    const CalendarFolder folder;
    folder.write(u"c/1.ics"_s, calendarText(eventText("a", "First", "20260311T090000")));
    folder.write(u"c/2.ics"_s,
        calendarText(eventText("a", "Second", "20260311T090000") + eventText("a", "Third", "20260311T090000")));
    const auto store = folder.openWithoutWatching();

    const CalEventList events = eventsOn(*store, day);

    QCOMPARE(sortedTitles(events), QStringList({ u"First"_s, u"Second"_s, u"Third"_s }));
    QSet<QString> distinctions;
    for (const CalEventPtr &event : events) {
        distinctions.insert(event->origin().distinction);
        QCOMPARE(event->origin().distinction.isEmpty(), event->title() == u"First"_s);
    }
    QCOMPARE(distinctions.size(), 3);
}

void FolderReadingTest::anItemWithoutUidHasAStableOne()
{
    const CalendarFolder folder;
    const QByteArray event = "BEGIN:VEVENT\r\nDTSTART:20260311T090000\r\nSUMMARY:A\r\nEND:VEVENT\r\n";
    folder.write(u"c/nameless.ics"_s, calendarText(event + event));

    QSet<QString> first;
    for (const CalEventPtr &each : eventsOn(*folder.openWithoutWatching(), day))
        first.insert(each->origin().plainUid);
    QSet<QString> second;
    for (const CalEventPtr &each : eventsOn(*folder.openWithoutWatching(), day))
        second.insert(each->origin().plainUid);

    QCOMPARE(first.size(), 2);
    QVERIFY(!first.contains(QString()));
    QCOMPARE(second, first);
}

void FolderReadingTest::recordsAreFreshWithEveryQuery()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "A")));
    const auto store = folder.openWithoutWatching();

    taskNamed(*store, u"A"_s)->setTitle(u"Edited"_s);

    QVERIFY(taskNamed(*store, u"A"_s));
}

void FolderReadingTest::namesThatAreNoItemsAreIgnored()
{
    const CalendarFolder folder;
    const QByteArray text = calendarText(taskText("x", "Hidden"));
    for (const QString &name : { u"c/.a.ics"_s, u"c/a.ics.tmp"_s, u"c/a.txt"_s, u"c/a"_s, u"c/deeper/a.ics"_s })
        folder.write(name, text);
    folder.write(u"c/good.ics"_s, calendarText(taskText("a", "Good")));

    QCOMPARE(sortedTitles(allTasks(*folder.openWithoutWatching())), QStringList { u"Good"_s });
}

void FolderReadingTest::aChangeOfZoneIsFollowedWithoutReading()
{
    const CalendarFolder folder;
    folder.write(u"c/floating.ics"_s, calendarText(eventText("a", "Floating", "20260311T233000")));
    folder.write(u"c/utc.ics"_s, calendarText(eventText("b", "Utc", "20260311T233000Z")));
    folder.write(u"c/day.ics"_s, calendarText(eventText("c", "Day", "20260311", {})));
    folder.write(u"c/series.ics"_s,
        calendarText(eventText("d", "Series", "20260301T233000Z", "DURATION:PT1M\r\nRRULE:FREQ=DAILY\r\n")));
    const auto store = folder.openWithoutWatching();
    QCOMPARE(sortedTitles(eventsOn(*store, day)), QStringList({ u"Day"_s, u"Floating"_s, u"Series"_s }));
    QVERIFY(folder.remove(u"c/utc.ics"_s)); // nothing is read again

    for (const char *zone : { "Pacific/Kiritimati", "Pacific/Pago_Pago", "Asia/Kathmandu" }) {
        const ScopedTimeZone elsewhere(zone);
        const CalEventList events = eventsOn(*store, day);

        QVERIFY(sortedTitles(events).contains(u"Day"_s));
        QVERIFY(sortedTitles(events).contains(u"Floating"_s));
        QCOMPARE(sortedTitles(events).count(u"Series"_s), 1);
        const auto utc = QDateTime::fromString(u"2026-03-11T23:30:00Z"_s, Qt::ISODate).toLocalTime();
        QVERIFY(sortedTitles(eventsOn(*store, utc.date())).contains(u"Utc"_s));
        for (const CalEventPtr &event : events) {
            if (event->title() == u"Floating"_s)
                QCOMPARE(event->startDate().time(), QTime(23, 30));
        }
    }
}

void FolderReadingTest::longEventsAreFoundOnEachOfTheirDays()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(eventText("a", "Weeks", "20260101", "DTEND;VALUE=DATE:20260401\r\n")));
    folder.write(u"c/b.ics"_s, calendarText(eventText("b", "Days", "20260305", "DTEND;VALUE=DATE:20260315\r\n")));
    const auto store = folder.openWithoutWatching();

    QCOMPARE(sortedTitles(eventsOn(*store, day)), QStringList({ u"Days"_s, u"Weeks"_s }));
    QCOMPARE(eventsOn(*store, QDate(2026, 3, 14)).size(), 2);
    QCOMPARE(eventsOn(*store, QDate(2026, 3, 15)).size(), 1);
    QCOMPARE(eventsOn(*store, QDate(2026, 3, 31)).size(), 1);
    QCOMPARE(eventsOn(*store, QDate(2026, 4, 1)).size(), 0);
    const CalEventList decades = store->events(
        QDateTime(QDate(1900, 1, 1), QTime()), QDateTime(QDate(2100, 1, 1), QTime()), store->calendars());
    QCOMPARE(decades.size(), 2);
}

void FolderReadingTest::aLinkedItemFileIsRead()
{
    const CalendarFolder elsewhere;
    elsewhere.write(u"a.ics"_s, calendarText(taskText("a", "Linked")));
    const CalendarFolder folder;
    folder.write(u"c/b.ics"_s, calendarText(taskText("b", "Own")));
    QVERIFY(QFile::link(elsewhere.path(u"a.ics"_s), folder.path(u"c/a.ics"_s)));

    QCOMPARE(sortedTitles(allTasks(*folder.openWithoutWatching())), QStringList({ u"Linked"_s, u"Own"_s }));
}

VANTLE_TEST(FolderReadingTest)
#include "FolderReadingTest.moc"
