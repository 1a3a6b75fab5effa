// SPDX-License-Identifier: MIT
#include "ContractTest.h"

using namespace Qt::StringLiterals;

namespace
{

const char *const fullEvent
    = "URL:https://example.org/a?b=c\r\nLOCATION:Room 1\\, left\r\nDESCRIPTION:First\\nsecond\r\n"
      "STATUS:CANCELLED\r\nATTENDEE;CN=Ann;PARTSTAT=ACCEPTED:mailto:ann@example.org\r\n"
      "ATTENDEE:mailto:bob@example.org\r\nDURATION:PT1H\r\n"
      "BEGIN:VALARM\r\nACTION:DISPLAY\r\nTRIGGER:-PT15M\r\nDESCRIPTION:x\r\nEND:VALARM\r\n"
      "BEGIN:VALARM\r\nACTION:EMAIL\r\nTRIGGER;VALUE=DATE-TIME:20260311T070000Z\r\n"
      "ATTENDEE:mailto:me@example.org\r\nSUMMARY:x\r\nDESCRIPTION:x\r\nEND:VALARM\r\n"
      "BEGIN:VALARM\r\nACTION:AUDIO\r\nTRIGGER;RELATED=END:PT0S\r\nATTACH:Basso\r\nEND:VALARM\r\n";

} // namespace

// What a record tells of its item, and of which calendar and in which order records come.
class RecordsContract final : public ContractTest
{
    Q_OBJECT

public:
    using ContractTest::ContractTest;

private Q_SLOTS:
    void anEventTellsAllThatIsStored();
    void anAlarmTellsAllThatIsStored();
    void whatIsNotStoredIsAbsent();
    void aTaskTellsAllThatIsStored();
    void dueDates_data();
    void dueDates();
    void statesOfTasks_data();
    void statesOfTasks();
    void completedSinceIncludesTheInstant();
    void aRecordIsFreshWithEachQuery();
    void alarmsOfTwoRecordsAreIndependent();
    void aRecordKnowsItsCalendar();

    void calendarsThatCannotBeChangedComeLast();
    void aCalendarIsFoundByItsUid();
    void aCalendarHoldsBothKinds();
    void onlyTheCalendarsAskedForAnswer();
    void aCalendarThatIsGoneHoldsNothing();
    void eachKindHasItsOwnQuestion();
    void eventsComeByStartThenTitleThenUid();
    void allDayComesBeforeTimedOfTheSameStart();
    void tasksComeInTheOrderOfCalendarsThenByUid();

    void aUidIsThatOfTheItem();
    void occurrencesHaveUidsOfTheirOwn();
    void theUidOfAnOccurrenceIsTheSameInEveryRange();
    void theUidOfAnOccurrenceOutlivesItsMove();
    void anItemInTwoCalendarsIsTwoItems();
};

void RecordsContract::anEventTellsAllThatIsStored()
{
    fixture().put(u"Home"_s, u"a"_s, eventText("a", "Title\\, with a comma", "20260311T090000", fullEvent));

    const CalEventPtr event = fixture().eventsOn(contractDay).value(0);

    QVERIFY(event);
    QCOMPARE(event->title(), u"Title, with a comma"_s);
    QCOMPARE(event->notes(), u"First\nsecond"_s);
    QCOMPARE(event->location(), u"Room 1, left"_s);
    QCOMPARE(event->url(), QUrl(u"https://example.org/a?b=c"_s));
    QVERIFY(event->isCancelled() && !event->isAllDay() && !event->recurrenceRule());
    QVERIFY(event->attendees());
    QCOMPARE(event->attendees()->size(), 2);
    QCOMPARE(event->attendees()->first().commonName, u"Ann"_s);
    QCOMPARE(event->attendees()->first().status, CalAttendeeStatusAccepted);
    QCOMPARE(event->attendees()->last().address, QUrl(u"mailto:bob@example.org"_s));
}

void RecordsContract::anAlarmTellsAllThatIsStored()
{
    fixture().put(u"Home"_s, u"a"_s, eventText("a", "A", "20260311T090000", fullEvent));

    const CalAlarmList alarms = fixture().eventsOn(contractDay).value(0)->alarms();

    QCOMPARE(alarms.size(), 3);
    QCOMPARE(alarms.at(0)->action(), CalAlarmActionDisplay);
    QCOMPARE(alarms.at(0)->relativeTrigger(), -900);
    QVERIFY(!alarms.at(0)->absoluteTrigger() && !alarms.at(0)->isRelatedToEnd());
    QCOMPARE(alarms.at(1)->action(), CalAlarmActionEmail);
    QCOMPARE(alarms.at(1)->absoluteTrigger(), at("08:00:00"));
    QCOMPARE(alarms.at(1)->emailAddress(), u"me@example.org"_s);
    QCOMPARE(alarms.at(2)->action(), CalAlarmActionSound);
    QCOMPARE(alarms.at(2)->sound(), u"Basso"_s);
    QVERIFY(alarms.at(2)->isRelatedToEnd());
}

void RecordsContract::whatIsNotStoredIsAbsent()
{
    fixture().put(u"Home"_s, u"a"_s,
        "BEGIN:VEVENT\r\nUID:a\r\nDTSTAMP:20260101T000000Z\r\nDTSTART:20260311T090000\r\nLOCATION:\r\nEND:VEVENT\r\n");

    const CalEventPtr event = fixture().eventsOn(contractDay).value(0);

    QVERIFY(event);
    QVERIFY(!event->title() && !event->notes() && !event->url() && !event->location());
    QVERIFY(!event->attendees() && !event->recurrenceRule());
    QVERIFY(event->alarms().isEmpty() && !event->isCancelled());
}

void RecordsContract::aTaskTellsAllThatIsStored()
{
    fixture().put(u"Home"_s, u"a"_s,
        taskText("a", "A",
            "DESCRIPTION:Notes\r\nURL:https://example.org/\r\nPRIORITY:3\r\nDUE:20260311T170000\r\n"
            "BEGIN:VALARM\r\nACTION:DISPLAY\r\nTRIGGER:-PT5M\r\nDESCRIPTION:x\r\nEND:VALARM\r\n"));

    const CalTaskPtr task = fixture().task(u"A"_s);

    QVERIFY(task);
    QCOMPARE(task->notes(), u"Notes"_s);
    QCOMPARE(task->url(), QUrl(u"https://example.org/"_s));
    QCOMPARE(task->priority(), 3);
    QCOMPARE(task->dueDate(), at("17:00:00"));
    QCOMPARE(task->alarms().size(), 1);
    QVERIFY(!task->isCompleted() && !task->completedDate() && !task->isDueDateOnly());
}

void RecordsContract::dueDates_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<std::optional<QDateTime>>("due");
    QTest::addColumn<bool>("isDay");

    QTest::newRow("none") << QByteArray() << std::optional<QDateTime>() << false;
    QTest::newRow("a day") << QByteArray("DUE;VALUE=DATE:20260311\r\n") << std::optional(at("00:00:00")) << true;
    QTest::newRow("a time") << QByteArray("DUE:20260311T170000\r\n") << std::optional(at("17:00:00")) << false;
    QTest::newRow("a universal time") << QByteArray("DUE:20260311T160000Z\r\n") << std::optional(at("17:00:00"))
                                      << false;
    QTest::newRow("a time elsewhere") << QByteArray("DUE;TZID=America/New_York:20260311T120000\r\n")
                                      << std::optional(at("17:00:00")) << false;
    QTest::newRow("a start and a length")
        << QByteArray("DTSTART:20260311T160000\r\nDURATION:PT1H\r\n") << std::optional(at("17:00:00")) << false;
}

void RecordsContract::dueDates()
{
    QFETCH(const QByteArray, lines);
    QFETCH(const std::optional<QDateTime>, due);
    QFETCH(const bool, isDay);
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A", lines));

    const CalTaskPtr task = fixture().task(u"A"_s);

    QCOMPARE(task->dueDate(), due);
    QCOMPARE(task->isDueDateOnly(), isDay);
}

void RecordsContract::statesOfTasks_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<bool>("isCompleted");

    QTest::newRow("nothing said") << QByteArray() << false;
    QTest::newRow("to be done") << QByteArray("STATUS:NEEDS-ACTION\r\n") << false;
    QTest::newRow("begun") << QByteArray("STATUS:IN-PROCESS\r\nPERCENT-COMPLETE:40\r\n") << false;
    QTest::newRow("called off") << QByteArray("STATUS:CANCELLED\r\n") << false;
    QTest::newRow("a percentage alone") << QByteArray("PERCENT-COMPLETE:100\r\n") << false;
    QTest::newRow("a status alone") << QByteArray("STATUS:COMPLETED\r\n") << true;
    QTest::newRow("a date alone") << QByteArray("COMPLETED:20260310T120000Z\r\n") << true;
    QTest::newRow("all three") << QByteArray(
        "STATUS:COMPLETED\r\nPERCENT-COMPLETE:100\r\nCOMPLETED:20260310T120000Z\r\n")
                               << true;
}

void RecordsContract::statesOfTasks()
{
    QFETCH(const QByteArray, lines);
    QFETCH(const bool, isCompleted);
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A", lines));

    const CalTaskList open
        = store().tasksWithPredicate(CalCalendarStore::taskPredicateWithUncompletedTasks(store().calendars()));

    QCOMPARE(fixture().task(u"A"_s)->isCompleted(), isCompleted);
    QCOMPARE(open.size(), isCompleted ? 0 : 1);
}

void RecordsContract::completedSinceIncludesTheInstant()
{
    fixture().put(u"Home"_s, u"before"_s, taskText("before", "Before", "COMPLETED:20260308T225959Z\r\n"));
    fixture().put(u"Home"_s, u"at"_s, taskText("at", "At", "COMPLETED:20260308T230000Z\r\n"));
    fixture().put(u"Home"_s, u"undated"_s, taskText("undated", "Undated", "STATUS:COMPLETED\r\n"));
    fixture().put(u"Home"_s, u"open"_s, taskText("open", "Open"));

    const CalTaskList done
        = store().tasksWithPredicate(CalCalendarStore::taskPredicateWithTasksCompletedSince_calendars(
            at("00:00:00", QDate(2026, 3, 9)), store().calendars()));

    QCOMPARE(titlesOf(done), QStringList { u"At"_s });
}

void RecordsContract::aRecordIsFreshWithEachQuery()
{
    fixture().put(u"Home"_s, u"a"_s, eventText("a", "A", "20260311T090000"));

    const CalEventPtr once = fixture().eventOn(contractDay, u"A"_s);
    once->setTitle(u"Edited"_s);
    const CalEventPtr again = fixture().eventOn(contractDay, u"A"_s);

    QVERIFY(again && once != again);
    QVERIFY(once->isEqual(*again));
}

void RecordsContract::alarmsOfTwoRecordsAreIndependent()
{
    fixture().put(u"Home"_s, u"a"_s, eventText("a", "A", "20260311T090000", fullEvent));

    fixture().eventOn(contractDay, u"A"_s)->alarms().first()->setRelativeTrigger(-60);

    QCOMPARE(fixture().eventOn(contractDay, u"A"_s)->alarms().first()->relativeTrigger(), -900);
}

void RecordsContract::aRecordKnowsItsCalendar()
{
    fixture().put(u"Work"_s, u"a"_s, eventText("a", "A", "20260311T090000"));
    fixture().put(u"Home"_s, u"b"_s, taskText("b", "B"));

    QCOMPARE(fixture().eventOn(contractDay, u"A"_s)->calendar()->uid(), u"Work"_s);
    QCOMPARE(fixture().task(u"B"_s)->calendar()->uid(), u"Home"_s);
}

void RecordsContract::calendarsThatCannotBeChangedComeLast()
{
    QStringList uids;
    for (const CalCalendarPtr &calendar : store().calendars())
        uids << calendar->uid();

    QCOMPARE(uids, (QStringList { u"Home"_s, u"Work"_s, fixture().readOnlyUid() }));
    QVERIFY(store().calendars().first()->isEditable());
    QVERIFY(!store().calendars().last()->isEditable());
}

void RecordsContract::aCalendarIsFoundByItsUid()
{
    QVERIFY(store().calendarWithUID(u"Work"_s));
    QCOMPARE(store().calendarWithUID(u"Work"_s)->uid(), u"Work"_s);
    QVERIFY(!store().calendarWithUID(u"Elsewhere"_s));
    QVERIFY(!store().calendarWithUID({}));
}

void RecordsContract::aCalendarHoldsBothKinds()
{
    fixture().put(u"Home"_s, u"a"_s, eventText("a", "A", "20260311T090000"));
    fixture().put(u"Home"_s, u"b"_s, taskText("b", "B"));

    QVERIFY(fixture().calendar(u"Home"_s)->holds(CalItemKind::Event));
    QVERIFY(fixture().calendar(u"Home"_s)->holds(CalItemKind::Task));
    QCOMPARE(titlesOf(fixture().eventsOn(contractDay)), QStringList { u"A"_s });
    QCOMPARE(titlesOf(fixture().tasks()), QStringList { u"B"_s });
}

void RecordsContract::onlyTheCalendarsAskedForAnswer()
{
    fixture().put(u"Home"_s, u"a"_s, eventText("a", "At home", "20260311T090000"));
    fixture().put(u"Work"_s, u"b"_s, eventText("b", "At work", "20260311T090000"));
    const auto eventsOf = [this](const CalCalendarList &calendars) {
        return titlesOf(store().eventsWithPredicate(CalCalendarStore::eventPredicateWithStartDate_endDate_calendars(
            at("00:00:00"), at("23:59:59"), calendars)));
    };

    QCOMPARE(eventsOf({ fixture().calendar(u"Work"_s) }), QStringList { u"At work"_s });
    QCOMPARE(eventsOf({}), QStringList());
}

void RecordsContract::aCalendarThatIsGoneHoldsNothing()
{
    fixture().put(u"Work"_s, u"a"_s, taskText("a", "A"));
    const CalCalendarPtr calendar = fixture().calendar(u"Work"_s);
    QVERIFY(calendar);

    fixture().takeCalendarAway(u"Work"_s);

    QTRY_VERIFY(!fixture().calendar(u"Work"_s));
    QVERIFY(store().tasksWithPredicate(CalCalendarStore::taskPredicateWithCalendars({ calendar })).isEmpty());
}

void RecordsContract::eachKindHasItsOwnQuestion()
{
    fixture().put(u"Home"_s, u"a"_s, eventText("a", "A", "20260311T090000"));
    fixture().put(u"Home"_s, u"b"_s, taskText("b", "B", "DUE:20260311T090000\r\n"));
    const CalCalendarList calendars = store().calendars();

    QVERIFY(store().eventsWithPredicate(CalCalendarStore::taskPredicateWithCalendars(calendars)).isEmpty());
    QVERIFY(store()
                .tasksWithPredicate(CalCalendarStore::eventPredicateWithStartDate_endDate_calendars(
                    at("00:00:00"), at("23:59:59"), calendars))
                .isEmpty());
}

void RecordsContract::eventsComeByStartThenTitleThenUid()
{
    fixture().put(u"Home"_s, u"4"_s, eventText("4", "Same", "20260311T090000"));
    fixture().put(u"Work"_s, u"3"_s, eventText("3", "Same", "20260311T090000"));
    fixture().put(u"Home"_s, u"2"_s, eventText("2", "Earlier title", "20260311T090000"));
    fixture().put(u"Home"_s, u"1"_s, eventText("1", "Zero hour", "20260311T000000"));

    QStringList uids;
    for (const CalEventPtr &event : fixture().eventsOn(contractDay))
        uids << event->uid();

    QCOMPARE(uids, (QStringList { u"1"_s, u"2"_s, u"3"_s, u"4"_s }));
}

void RecordsContract::allDayComesBeforeTimedOfTheSameStart()
{
    fixture().put(u"Home"_s, u"a"_s, eventText("a", "A timed one", "20260311T000000"));
    fixture().put(u"Home"_s, u"b"_s, eventText("b", "Z whole day", "20260311"));

    QCOMPARE(titlesOf(fixture().eventsOn(contractDay)), (QStringList { u"Z whole day"_s, u"A timed one"_s }));
}

void RecordsContract::tasksComeInTheOrderOfCalendarsThenByUid()
{
    fixture().put(fixture().readOnlyUid(), u"a"_s, taskText("a", "Last"));
    fixture().put(u"Work"_s, u"b"_s, taskText("b", "Third"));
    fixture().put(u"Home"_s, u"d"_s, taskText("d", "Second"));
    fixture().put(u"Home"_s, u"c"_s, taskText("c", "First"));

    QCOMPARE(titlesOf(fixture().tasks()), (QStringList { u"First"_s, u"Second"_s, u"Third"_s, u"Last"_s }));
}

void RecordsContract::aUidIsThatOfTheItem()
{
    fixture().put(u"Home"_s, u"x-1@host"_s, eventText("x-1@host", "A", "20260311T090000"));
    fixture().put(u"Home"_s, u"y-2"_s, taskText("y-2", "B"));

    QCOMPARE(fixture().eventOn(contractDay, u"A"_s)->uid(), u"x-1@host"_s);
    QCOMPARE(fixture().task(u"B"_s)->uid(), u"y-2"_s);
}

void RecordsContract::occurrencesHaveUidsOfTheirOwn()
{
    fixture().put(u"Home"_s, u"a"_s, eventText("a", "A", "20260302T090000", "RRULE:FREQ=DAILY;BYHOUR=9,17\r\n"));

    const CalEventList events = fixture().eventsOn(contractDay);

    QCOMPARE(events.size(), 2);
    QVERIFY(events.first()->uid() != events.last()->uid());
    QVERIFY(!events.first()->isEqual(*events.last()));
}

void RecordsContract::theUidOfAnOccurrenceIsTheSameInEveryRange()
{
    fixture().put(
        u"Home"_s, u"a"_s, eventText("a", "A", "20260302T090000", "DURATION:PT1H\r\nRRULE:FREQ=WEEKLY;BYDAY=WE\r\n"));

    const QString ofDay = fixture().eventsOn(contractDay).value(0)->uid();
    const QString ofHour = fixture().eventsBetween(at("09:30:00"), at("09:31:00")).value(0)->uid();

    QVERIFY(!ofDay.isEmpty());
    QCOMPARE(ofHour, ofDay);
}

void RecordsContract::theUidOfAnOccurrenceOutlivesItsMove()
{
    const QByteArray series = eventText("a", "A", "20260302T090000", "DURATION:PT1H\r\nRRULE:FREQ=DAILY\r\n");
    fixture().put(u"Home"_s, u"a"_s, series);
    const QString uid = fixture().eventsOn(contractDay).value(0)->uid();

    putAndWait(u"Home"_s, u"a"_s,
        series + eventText("a", "Moved", "20260311T150000", "RECURRENCE-ID:20260311T090000\r\nDURATION:PT1H\r\n"));

    QCOMPARE(fixture().eventsOn(contractDay).value(0)->title(), u"Moved"_s);
    QCOMPARE(fixture().eventsOn(contractDay).value(0)->uid(), uid);
}

void RecordsContract::anItemInTwoCalendarsIsTwoItems()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "At home"));
    fixture().put(u"Work"_s, u"a"_s, taskText("a", "At work"));

    const CalTaskList tasks = fixture().tasks();

    QCOMPARE(titlesOf(tasks), (QStringList { u"At home"_s, u"At work"_s }));
    QCOMPARE(tasks.first()->uid(), u"a"_s);
    QVERIFY(!tasks.first()->isEqual(*tasks.last()));
}

VANTLE_CONTRACT(RecordsContract, "Records")
#include "RecordsContract.moc"
