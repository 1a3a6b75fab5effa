// SPDX-License-Identifier: MIT
#include "ContractTest.h"

using namespace Qt::StringLiterals;

namespace
{

const QByteArray fullLines = "DURATION:PT1H\r\nDESCRIPTION:Notes\r\nLOCATION:Room 1\r\nURL:https://example.org/a\r\n"
                             "ATTENDEE;CN=Ann:mailto:ann@example.org\r\n"
                             "BEGIN:VALARM\r\nACTION:DISPLAY\r\nTRIGGER:-PT15M\r\nDESCRIPTION:x\r\nEND:VALARM\r\n";

// What an event says of itself, one value in a line, so that a change of one can be told from a change of all.
QStringList told(const CalEvent &event)
{
    QStringList alarms;
    for (const CalAlarmPtr &alarm : event.alarms())
        alarms << u"%1 %2"_s.arg(alarm->action()).arg(alarm->relativeTrigger());
    return { u"title "_s + event.title().value_or(u"-"_s), u"notes "_s + event.notes().value_or(u"-"_s),
        u"location "_s + event.location().value_or(u"-"_s),
        u"url "_s + (event.url() ? event.url()->toString() : u"-"_s),
        u"start "_s + event.startDate().toString(Qt::ISODate), u"end "_s + event.endDate().toString(Qt::ISODate),
        u"all day "_s + QString::number(event.isAllDay()), u"alarms "_s + alarms.join(u", "_s),
        u"guests "_s + QString::number(event.attendees() ? event.attendees()->size() : 0) };
}

QStringList told(const CalTask &task)
{
    const auto instant
        = [](const std::optional<QDateTime> &time) { return time ? time->toString(Qt::ISODate) : u"-"_s; };
    return { u"title "_s + task.title().value_or(u"-"_s), u"notes "_s + task.notes().value_or(u"-"_s),
        u"url "_s + (task.url() ? task.url()->toString() : u"-"_s), u"due "_s + instant(task.dueDate()),
        u"day only "_s + QString::number(task.isDueDateOnly()), u"done "_s + QString::number(task.isCompleted()),
        u"when "_s + instant(task.completedDate()), u"priority "_s + QString::number(task.priority()),
        u"alarms "_s + QString::number(task.alarms().size()) };
}

CalAlarmPtr newAlarm(double trigger)
{
    auto alarm = std::make_shared<CalAlarm>();
    alarm->setRelativeTrigger(trigger);
    return alarm;
}

using EditEvent = std::function<void(CalEvent &)>;
using EditTask = std::function<void(CalTask &)>;

} // namespace

Q_DECLARE_METATYPE(EditEvent)
Q_DECLARE_METATYPE(EditTask)

// What a save stores, and that it stores nothing else.
class SavingContract final : public ContractTest
{
    Q_OBJECT

public:
    using ContractTest::ContractTest;

private Q_SLOTS:
    void anEventTakesAChange_data();
    void anEventTakesAChange();
    void aTaskTakesAChange_data();
    void aTaskTakesAChange();
    void aCompletionDateThatIsThereStays();
    void aTickGivesACompletionDate();
    void aSaveWithoutAChangeIsNoChange();
    void aSaveBeforeASaveIsTheNewGround();
    void anUnsavedEditReachesNobody();
    void aNewEventIsStored();
    void aNewAllDayEventIsStored();
    void aNewTaskIsStored();
    void twoNewItemsOfOneTitleAreTwo();
    void aNewItemCanBeSavedAgain();

    void aMovedEventIsInTheOtherCalendarAlone();
    void aMovedTaskIsInTheOtherCalendarAlone();
    void aMoveTakesChangesAlong();
    void aMoveTakesAllOccurrencesAlong();
    void aMovedItemCanBeMovedBack();
};

void SavingContract::anEventTakesAChange_data()
{
    QTest::addColumn<EditEvent>("edit");
    QTest::addColumn<QStringList>("expected"); // the lines that differ afterwards

    const auto row = [](const char *name, const EditEvent &edit, const QStringList &expected) {
        QTest::newRow(name) << edit << expected;
    };
    row("title", [](CalEvent &event) { event.setTitle(u"B"_s); }, { u"title B"_s });
    row("title with all that is escaped", [](CalEvent &event) { event.setTitle(u"a\\b;c,d:e\"f\nÜ日"_s); },
        { u"title a\\b;c,d:e\"f\nÜ日"_s });
    row("title of a thousand characters", [](CalEvent &event) { event.setTitle(u"ü"_s.repeated(1000)); },
        { u"title "_s + u"ü"_s.repeated(1000) });
    row("title cleared", [](CalEvent &event) { event.setTitle(std::nullopt); }, { u"title -"_s });
    row("notes", [](CalEvent &event) { event.setNotes(u"Other\n\nnotes"_s); }, { u"notes Other\n\nnotes"_s });
    row("notes cleared", [](CalEvent &event) { event.setNotes(std::nullopt); }, { u"notes -"_s });
    row("location", [](CalEvent &event) { event.setLocation(u"Here, there"_s); }, { u"location Here, there"_s });
    row("location cleared", [](CalEvent &event) { event.setLocation(std::nullopt); }, { u"location -"_s });
    row("url", [](CalEvent &event) { event.setUrl(QUrl(u"https://example.org/b;c,d"_s)); },
        { u"url https://example.org/b;c,d"_s });
    row("url cleared", [](CalEvent &event) { event.setUrl(std::nullopt); }, { u"url -"_s });
    row("later end", [](CalEvent &event) { event.setEndDate(at("11:30:00")); }, { u"end 2026-03-11T11:30:00"_s });
    row("no length", [](CalEvent &event) { event.setEndDate(at("09:00:00")); }, { u"end 2026-03-11T09:00:00"_s });
    row("another time",
        [](CalEvent &event) {
            event.setStartDate(at("15:00:00"));
            event.setEndDate(at("16:00:00"));
        },
        { u"start 2026-03-11T15:00:00"_s, u"end 2026-03-11T16:00:00"_s });
    row("all day",
        [](CalEvent &event) {
            event.setIsAllDay(true);
            event.setStartDate(at("00:00:00"));
            event.setEndDate(at("23:59:59"));
        },
        { u"start 2026-03-11T00:00:00"_s, u"end 2026-03-11T23:59:59"_s, u"all day 1"_s });
    row("all days of a week",
        [](CalEvent &event) {
            event.setIsAllDay(true);
            event.setStartDate(at("00:00:00", QDate(2026, 3, 9)));
            event.setEndDate(at("23:59:59", QDate(2026, 3, 15)));
        },
        { u"start 2026-03-09T00:00:00"_s, u"end 2026-03-15T23:59:59"_s, u"all day 1"_s });
    row("one alarm more", [](CalEvent &event) { event.addAlarm(newAlarm(-3600)); },
        { u"alarms DISPLAY -900, DISPLAY -3600"_s });
    row("no alarm", [](CalEvent &event) { event.setAlarms({}); }, { u"alarms "_s });
    row("another trigger", [](CalEvent &event) { event.alarms().first()->setRelativeTrigger(-60); },
        { u"alarms DISPLAY -60"_s });
    row("alarm behind the start", [](CalEvent &event) { event.alarms().first()->setRelativeTrigger(600); },
        { u"alarms DISPLAY 600"_s });
    row("alarm with a sound", [](CalEvent &event) { event.alarms().first()->setSound(u"Basso"_s); },
        { u"alarms AUDIO -900"_s });
    row("several at once",
        [](CalEvent &event) {
            event.setTitle(u"B"_s);
            event.setLocation(std::nullopt);
            event.setEndDate(at("12:00:00"));
        },
        { u"title B"_s, u"location -"_s, u"end 2026-03-11T12:00:00"_s });
}

void SavingContract::anEventTakesAChange()
{
    QFETCH(const EditEvent, edit);
    QFETCH(const QStringList, expected);
    fixture().put(u"Home"_s, u"a"_s, eventText("a", "A", "20260311T090000", fullLines));
    const CalEventPtr event = fixture().eventOn(contractDay, u"A"_s);
    const QStringList before = told(*event);

    edit(*event);
    QVERIFY2(save(event), qPrintable(refusal().message()));

    const CalEventPtr stored = fixture().eventsOn(contractDay).value(0);
    QVERIFY(stored && stored != event);
    QStringList different = told(*stored);
    different.removeIf([&before](const QString &line) { return before.contains(line); });
    QCOMPARE(different, expected);
}

void SavingContract::aTaskTakesAChange_data()
{
    QTest::addColumn<EditTask>("edit");
    QTest::addColumn<QStringList>("expected");

    const auto row = [](const char *name, const EditTask &edit, const QStringList &expected) {
        QTest::newRow(name) << edit << expected;
    };
    row("title", [](CalTask &task) { task.setTitle(u"B, C"_s); }, { u"title B, C"_s });
    row("notes", [](CalTask &task) { task.setNotes(u"Other"_s); }, { u"notes Other"_s });
    row("notes cleared", [](CalTask &task) { task.setNotes(std::nullopt); }, { u"notes -"_s });
    row("url cleared", [](CalTask &task) { task.setUrl(std::nullopt); }, { u"url -"_s });
    row("priority", [](CalTask &task) { task.setPriority(9); }, { u"priority 9"_s });
    row("no priority", [](CalTask &task) { task.setPriority(0); }, { u"priority 0"_s });
    row("due at another time", [](CalTask &task) { task.setDueDate(at("18:30:00", QDate(2026, 3, 12))); },
        { u"due 2026-03-12T18:30:00"_s });
    row("due on a day",
        [](CalTask &task) {
            task.setDueDate(at("00:00:00", QDate(2026, 3, 12)));
            task.setIsDueDateOnly(true);
        },
        { u"due 2026-03-12T00:00:00"_s, u"day only 1"_s });
    row("not due", [](CalTask &task) { task.setDueDate(std::nullopt); }, { u"due -"_s });
    row("one alarm more", [](CalTask &task) { task.addAlarm(newAlarm(0)); }, { u"alarms 2"_s });
    row("no alarm", [](CalTask &task) { task.setAlarms({}); }, { u"alarms 0"_s });
    row("done at a time",
        [](CalTask &task) {
            task.setIsCompleted(true);
            task.setCompletedDate(at("08:00:00"));
        },
        { u"done 1"_s, u"when 2026-03-11T08:00:00"_s });
}

void SavingContract::aTaskTakesAChange()
{
    QFETCH(const EditTask, edit);
    QFETCH(const QStringList, expected);
    fixture().put(u"Home"_s, u"a"_s,
        taskText("a", "A",
            "DUE:20260311T170000\r\nPRIORITY:5\r\nDESCRIPTION:Notes\r\nURL:https://example.org/a\r\n"
            "BEGIN:VALARM\r\nACTION:DISPLAY\r\nTRIGGER:-PT15M\r\nDESCRIPTION:x\r\nEND:VALARM\r\n"));
    const CalTaskPtr task = fixture().task(u"A"_s);
    const QStringList before = told(*task);

    edit(*task);
    QVERIFY2(save(task), qPrintable(refusal().message()));

    const CalTaskPtr stored = fixture().tasks().value(0);
    QVERIFY(stored && stored != task);
    QStringList different = told(*stored);
    different.removeIf([&before](const QString &line) { return before.contains(line); });
    QCOMPARE(different, expected);
}

void SavingContract::aCompletionDateThatIsThereStays()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A", "STATUS:COMPLETED\r\nCOMPLETED:20260301T080000Z\r\n"));
    const CalTaskPtr task = fixture().task(u"A"_s);

    task->setTitle(u"B"_s);
    QVERIFY(save(task));

    QCOMPARE(fixture().task(u"B"_s)->completedDate(), at("09:00:00", QDate(2026, 3, 1)));
}

void SavingContract::aTickGivesACompletionDate()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A"));
    const CalTaskPtr task = fixture().task(u"A"_s);

    task->setIsCompleted(true);
    QVERIFY(save(task));
    QVERIFY(task->completedDate());
    QCOMPARE(fixture().task(u"A"_s)->completedDate(), task->completedDate());
    QVERIFY(fixture().task(u"A"_s)->isCompleted());

    task->setIsCompleted(false);
    QVERIFY(save(task));
    QVERIFY(!fixture().task(u"A"_s)->completedDate());
    QVERIFY(!fixture().task(u"A"_s)->isCompleted());
}

void SavingContract::aSaveWithoutAChangeIsNoChange()
{
    fixture().put(u"Home"_s, u"a"_s, eventText("a", "A", "20260311T090000", fullLines));
    const CalEventPtr other = fixture().eventOn(contractDay, u"A"_s);
    const CalEventPtr event = fixture().eventOn(contractDay, u"A"_s);
    const QStringList before = told(*event);

    QVERIFY(save(event));

    QCOMPARE(told(*fixture().eventOn(contractDay, u"A"_s)), before);
    other->setTitle(u"B"_s);
    QVERIFY(save(event));
}

void SavingContract::aSaveBeforeASaveIsTheNewGround()
{
    fixture().put(u"Home"_s, u"a"_s, eventText("a", "A", "20260311T090000"));
    const CalEventPtr event = fixture().eventOn(contractDay, u"A"_s);

    for (int number = 1; number <= 3; ++number) {
        event->setTitle(u"A%1"_s.arg(number));
        QVERIFY2(save(event), qPrintable(refusal().message()));
        QCOMPARE(titlesOf(fixture().eventsOn(contractDay)), QStringList { u"A%1"_s.arg(number) });
    }
}

void SavingContract::anUnsavedEditReachesNobody()
{
    fixture().put(u"Home"_s, u"a"_s, eventText("a", "A", "20260311T090000"));
    const CalEventPtr event = fixture().eventOn(contractDay, u"A"_s);

    event->setTitle(u"B"_s);
    event->setStartDate(at("23:00:00", QDate(2026, 5, 5)));

    QCOMPARE(shown(fixture().eventsOn(contractDay)), QStringList { u"09:00-10:00 A"_s });
}

void SavingContract::aNewEventIsStored()
{
    const auto event = std::make_shared<CalEvent>();
    event->setCalendar(fixture().calendar(u"Work"_s));
    event->setTitle(u"New"_s);
    event->setNotes(u"Notes"_s);
    event->setStartDate(at("09:00:00"));
    event->setEndDate(at("10:00:00"));
    event->addAlarm(newAlarm(-300));

    QVERIFY2(save(event), qPrintable(refusal().message()));

    const CalEventPtr stored = fixture().eventOn(contractDay, u"New"_s);
    QVERIFY(stored);
    QCOMPARE(told(*stored), told(*event));
    QCOMPARE(stored->calendar()->uid(), u"Work"_s);
    QVERIFY(!event->uid().isEmpty());
    QCOMPARE(event->uid(), stored->uid());
}

void SavingContract::aNewAllDayEventIsStored()
{
    const auto event = std::make_shared<CalEvent>();
    event->setCalendar(fixture().calendar(u"Home"_s));
    event->setTitle(u"New"_s);
    event->setIsAllDay(true);
    event->setStartDate(at("00:00:00"));
    event->setEndDate(at("23:59:59", QDate(2026, 3, 12)));

    QVERIFY2(save(event), qPrintable(refusal().message()));

    const CalEventPtr stored = fixture().eventOn(QDate(2026, 3, 12), u"New"_s);
    QVERIFY(stored && stored->isAllDay());
    QCOMPARE(told(*stored), told(*event));
    QVERIFY(fixture().eventsOn(QDate(2026, 3, 13)).isEmpty());
}

void SavingContract::aNewTaskIsStored()
{
    const auto task = std::make_shared<CalTask>();
    task->setCalendar(fixture().calendar(u"Home"_s));
    task->setTitle(u"New"_s);
    task->setPriority(1);
    task->setDueDate(at("17:00:00"));

    QVERIFY2(save(task), qPrintable(refusal().message()));

    const CalTaskPtr stored = fixture().task(u"New"_s);
    QVERIFY(stored);
    QCOMPARE(told(*stored), told(*task));
    QCOMPARE(task->uid(), stored->uid());
}

void SavingContract::twoNewItemsOfOneTitleAreTwo()
{
    for (int number = 0; number < 2; ++number) {
        const auto task = std::make_shared<CalTask>();
        task->setCalendar(fixture().calendar(u"Home"_s));
        task->setTitle(u"Same"_s);
        QVERIFY(save(task));
    }

    QCOMPARE(titlesOf(fixture().tasks()), (QStringList { u"Same"_s, u"Same"_s }));
    QVERIFY(fixture().tasks().first()->uid() != fixture().tasks().last()->uid());
}

void SavingContract::aNewItemCanBeSavedAgain()
{
    const auto task = std::make_shared<CalTask>();
    task->setCalendar(fixture().calendar(u"Home"_s));
    task->setTitle(u"New"_s);
    QVERIFY(save(task));

    task->setTitle(u"Newer"_s);
    QVERIFY2(save(task), qPrintable(refusal().message()));

    QCOMPARE(titlesOf(fixture().tasks()), QStringList { u"Newer"_s });
}

void SavingContract::aMovedEventIsInTheOtherCalendarAlone()
{
    fixture().put(u"Home"_s, u"a"_s, eventText("a", "A", "20260311T090000", fullLines));
    const CalEventPtr event = fixture().eventOn(contractDay, u"A"_s);
    const QStringList before = told(*event);

    event->setCalendar(fixture().calendar(u"Work"_s));
    QVERIFY2(save(event), qPrintable(refusal().message()));

    QCOMPARE(titlesOf(fixture().eventsOn(contractDay)), QStringList { u"A"_s });
    const CalEventPtr stored = fixture().eventOn(contractDay, u"A"_s);
    QCOMPARE(stored->calendar()->uid(), u"Work"_s);
    QCOMPARE(told(*stored), before);
    QCOMPARE(stored->uid(), event->uid());
}

void SavingContract::aMovedTaskIsInTheOtherCalendarAlone()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A", "PRIORITY:3\r\n"));
    const CalTaskPtr task = fixture().task(u"A"_s);

    task->setCalendar(fixture().calendar(u"Work"_s));
    QVERIFY2(save(task), qPrintable(refusal().message()));

    QCOMPARE(titlesOf(fixture().tasks()), QStringList { u"A"_s });
    QCOMPARE(fixture().task(u"A"_s)->calendar()->uid(), u"Work"_s);
    QCOMPARE(fixture().task(u"A"_s)->priority(), 3);
}

void SavingContract::aMoveTakesChangesAlong()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A"));
    const CalTaskPtr task = fixture().task(u"A"_s);

    task->setCalendar(fixture().calendar(u"Work"_s));
    task->setTitle(u"B"_s);
    task->setIsCompleted(true);
    QVERIFY2(save(task), qPrintable(refusal().message()));

    QCOMPARE(titlesOf(fixture().tasks()), QStringList { u"B"_s });
    QVERIFY(fixture().task(u"B"_s)->isCompleted());
    QCOMPARE(fixture().task(u"B"_s)->calendar()->uid(), u"Work"_s);
}

void SavingContract::aMoveTakesAllOccurrencesAlong()
{
    fixture().put(u"Home"_s, u"a"_s,
        eventText("a", "A", "20260302T090000", "DURATION:PT1H\r\nRRULE:FREQ=DAILY\r\n")
            + eventText("a", "Other", "20260312T150000", "RECURRENCE-ID:20260312T090000\r\nDURATION:PT1H\r\n"));
    const CalEventPtr event = fixture().eventOn(contractDay, u"A"_s);

    event->setCalendar(fixture().calendar(u"Work"_s));
    QVERIFY2(save(event, CalSpanAllEvents), qPrintable(refusal().message()));

    for (const QDate &day : { contractDay, contractDay.addDays(1), contractDay.addDays(30) }) {
        const CalEventList events = fixture().eventsOn(day);
        QCOMPARE(events.size(), 1);
        QCOMPARE(events.first()->calendar()->uid(), u"Work"_s);
    }
    QCOMPARE(shown(fixture().eventsOn(contractDay.addDays(1))), QStringList { u"15:00-16:00 Other"_s });
}

void SavingContract::aMovedItemCanBeMovedBack()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A"));
    const CalTaskPtr task = fixture().task(u"A"_s);

    for (const QString &uid : { u"Work"_s, u"Home"_s, u"Work"_s }) {
        task->setCalendar(fixture().calendar(uid));
        QVERIFY2(save(task), qPrintable(refusal().message()));
        QCOMPARE(fixture().tasks().size(), 1);
        QCOMPARE(fixture().task(u"A"_s)->calendar()->uid(), uid);
    }
}

VANTLE_CONTRACT(SavingContract, "Saving")
#include "SavingContract.moc"
