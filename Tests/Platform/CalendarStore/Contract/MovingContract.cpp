// SPDX-License-Identifier: MIT
#include "ContractTest.h"

#include <CalendarFolder.h>

#include <QDir>
#include <QFile>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{

const QByteArray series = "RRULE:FREQ=DAILY;COUNT=4\r\nEXDATE:20260312T080000Z\r\n";
const QByteArray exception = "RECURRENCE-ID:20260313T080000Z\r\nDURATION:PT2H\r\n";

} // namespace

// Items go from one back end into another, and back: beside the one under contract, "Elsewhere" is kept in a folder.
class MovingContract final : public ContractTest
{
    Q_OBJECT

public:
    using ContractTest::ContractTest;

private Q_SLOTS:
    void aTaskGoesElsewhereWithAllThatIsUnknown();
    void aTaskComesFromElsewhere();
    void anEventGoesElsewhereWithItsChanges();
    void aSeriesGoesElsewhereAsAWhole();
    void aSeriesComesFromElsewhereAsAWhole();
    void bothStepsOfTheEventSheetMoveTheEvent();
    void oneOccurrenceDoesNotLeaveItsSeries();
    void aMovedItemCanBeChangedAndRemovedAndRestored();
    void aSeriesThatWentElsewhereIsRemovedAndRestored();
    void aSeriesThatCameIsRemovedAndRestored();
    void anOccurrenceOfAMovedSeriesIsRemovedAndRestored();
    void aRemovalIsTakenBackAfterAnotherItemHasMoved();
    void aRemovalIsNotTakenBackOverAnItemThatCame();
    void whatWasChangedElsewhereMeanwhileStays();
    void anIdentifierThatIsTakenRefuses();
    void nothingLeavesACalendarThatCannotBeChanged();
    void whatCannotBeStoredStaysWhereItWas();

private:
    // A line that only other programs know.
    QByteArray unknown() const { return fixture().keepsOddLines() ? "X-KEEP;A=\"b;c\":\\q, d\r\n" : "X-KEEP:c d\r\n"; }
    // Beside the fixture's own; `components` is what it holds from the start.
    void addElsewhere(const QByteArray &components = {});
    CalCalendarPtr elsewhere() const { return fixture().calendar(u"Elsewhere"_s); }
    // The one text that "Elsewhere" holds.
    QByteArray textElsewhere() const;

    std::unique_ptr<CalendarFolder> m_folder;
};

void MovingContract::addElsewhere(const QByteArray &components)
{
    m_folder = std::make_unique<CalendarFolder>();
    QDir().mkpath(m_folder->path(u"Elsewhere"_s));
    if (!components.isEmpty())
        m_folder->write(u"Elsewhere/item.ics"_s, calendarText(components));
    // Also for the user that a fixture becomes whose disk is broken.
    ::chmod(QFile::encodeName(m_folder->path(u".."_s)).constData(), 0755);
    store().addBackend(m_folder->openWithoutWatching());
}

QByteArray MovingContract::textElsewhere() const
{
    const QStringList names = QDir(m_folder->path(u"Elsewhere"_s)).entryList(QDir::Files | QDir::Hidden);
    return names.size() == 1 ? m_folder->read(u"Elsewhere/"_s + names.first()) : "not one item";
}

void MovingContract::aTaskGoesElsewhereWithAllThatIsUnknown()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A", unknown()));
    addElsewhere();
    const CalTaskPtr task = fixture().task(u"A"_s);

    task->setCalendar(elsewhere());
    QVERIFY2(save(task), qPrintable(refusal().message()));

    QCOMPARE(titlesOf(fixture().tasks()), QStringList { u"A"_s });
    QCOMPARE(fixture().task(u"A"_s)->calendar()->uid(), u"Elsewhere"_s);
    QCOMPARE(fixture().task(u"A"_s)->uid(), task->uid());
    QVERIFY2(textElsewhere().contains(unknown()), textElsewhere().constData());
}

void MovingContract::aTaskComesFromElsewhere()
{
    addElsewhere(taskText("a", "A", unknown()));
    const CalTaskPtr task = fixture().task(u"A"_s);

    task->setTitle(u"B"_s);
    task->setCalendar(fixture().calendar(u"Work"_s));
    QVERIFY2(save(task), qPrintable(refusal().message()));

    QCOMPARE(titlesOf(fixture().tasks()), QStringList { u"B"_s });
    QCOMPARE(fixture().task(u"B"_s)->calendar()->uid(), u"Work"_s);
    QCOMPARE(textElsewhere(), QByteArray("not one item"));
}

void MovingContract::anEventGoesElsewhereWithItsChanges()
{
    fixture().put(u"Home"_s, u"e"_s, eventText("e", "E", "20260311T080000Z", "DURATION:PT1H\r\n" + unknown()));
    addElsewhere();
    const CalEventPtr event = fixture().eventOn(contractDay, u"E"_s);

    event->setLocation(u"There"_s);
    event->setStartDate(at("10:00"));
    event->setEndDate(at("11:00"));
    event->setCalendar(elsewhere());
    QVERIFY2(save(event), qPrintable(refusal().message()));

    QCOMPARE(shown(fixture().eventsOn(contractDay)), QStringList { u"10:00-11:00 E"_s });
    const CalEventPtr moved = fixture().eventOn(contractDay, u"E"_s);
    QCOMPARE(moved->calendar()->uid(), u"Elsewhere"_s);
    QCOMPARE(moved->location(), u"There"_s);
    QVERIFY(textElsewhere().contains(unknown()));
}

void MovingContract::aSeriesGoesElsewhereAsAWhole()
{
    fixture().put(u"Home"_s, u"s"_s,
        eventText("s", "S", "20260310T080000Z", "DURATION:PT1H\r\n" + series)
            + eventText("s", "Other", "20260313T100000Z", exception + unknown()));
    addElsewhere();
    const CalEventPtr event = fixture().eventOn(contractDay, u"S"_s);

    event->setCalendar(elsewhere());
    QVERIFY2(save(event, CalSpanAllEvents), qPrintable(refusal().message()));

    for (const auto &[offset, titles] : { std::pair(-1, QStringList { u"S"_s }), std::pair(0, QStringList { u"S"_s }),
             std::pair(1, QStringList()), std::pair(2, QStringList { u"Other"_s }) })
        QCOMPARE(titlesOf(fixture().eventsOn(contractDay.addDays(offset))), titles);
    QCOMPARE(fixture().eventOn(contractDay, u"S"_s)->calendar()->uid(), u"Elsewhere"_s);
    QVERIFY(textElsewhere().contains(unknown()));
}

void MovingContract::aSeriesComesFromElsewhereAsAWhole()
{
    addElsewhere(eventText("s", "S", "20260310T080000Z", "DURATION:PT1H\r\n" + series)
        + eventText("s", "Other", "20260313T100000Z", exception));
    const CalEventPtr event = fixture().eventOn(contractDay, u"S"_s);

    event->setCalendar(fixture().calendar(u"Home"_s));
    QVERIFY2(save(event, CalSpanAllEvents), qPrintable(refusal().message()));

    QCOMPARE(titlesOf(fixture().eventsOn(contractDay.addDays(1))), QStringList());
    QCOMPARE(titlesOf(fixture().eventsOn(contractDay.addDays(2))), QStringList { u"Other"_s });
    QCOMPARE(fixture().eventOn(contractDay.addDays(2), u"Other"_s)->calendar()->uid(), u"Home"_s);
    QCOMPARE(textElsewhere(), QByteArray("not one item"));
}

void MovingContract::bothStepsOfTheEventSheetMoveTheEvent()
{
    fixture().put(u"Home"_s, u"e"_s, eventText("e", "E", "20260311T080000Z"));
    addElsewhere();
    const CalEventPtr event = fixture().eventOn(contractDay, u"E"_s);
    event->setNotes(u"notes"_s);
    event->setCalendar(elsewhere());

    event->setTitle(u"DUMBY E"_s);
    QVERIFY2(save(event, CalSpanThisEvent), qPrintable(refusal().message()));
    event->setTitle(u"E"_s);
    QVERIFY2(save(event, CalSpanAllEvents), qPrintable(refusal().message()));

    QCOMPARE(titlesOf(fixture().eventsOn(contractDay)), QStringList { u"E"_s });
    QCOMPARE(fixture().eventOn(contractDay, u"E"_s)->calendar()->uid(), u"Elsewhere"_s);
    QVERIFY(!textElsewhere().contains("DUMBY"));
}

void MovingContract::oneOccurrenceDoesNotLeaveItsSeries()
{
    fixture().put(u"Home"_s, u"s"_s, eventText("s", "S", "20260310T080000Z", "DURATION:PT1H\r\n" + series));
    addElsewhere();
    const CalEventPtr event = fixture().eventOn(contractDay, u"S"_s);

    event->setTitle(u"Own"_s);
    event->setCalendar(elsewhere());
    QVERIFY2(save(event, CalSpanThisEvent), qPrintable(refusal().message()));

    QCOMPARE(fixture().eventOn(contractDay, u"Own"_s)->calendar()->uid(), u"Home"_s);
    QCOMPARE(textElsewhere(), QByteArray("not one item"));
}

void MovingContract::aMovedItemCanBeChangedAndRemovedAndRestored()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A"));
    addElsewhere();
    const CalTaskPtr task = fixture().task(u"A"_s);
    task->setCalendar(elsewhere());
    QVERIFY(save(task));

    task->setTitle(u"B"_s);
    QVERIFY2(save(task), qPrintable(refusal().message()));
    QVERIFY2(remove(task), qPrintable(refusal().message()));
    QVERIFY(fixture().tasks().isEmpty());
    QVERIFY2(undo(), qPrintable(refusal().message()));

    QCOMPARE(fixture().task(u"B"_s)->calendar()->uid(), u"Elsewhere"_s);
}

void MovingContract::aSeriesThatWentElsewhereIsRemovedAndRestored()
{
    fixture().put(u"Home"_s, u"s"_s,
        eventText("s", "S", "20260310T080000Z", "DURATION:PT1H\r\n" + series)
            + eventText("s", "Other", "20260313T100000Z", exception + unknown()));
    addElsewhere();
    const CalEventPtr event = fixture().eventOn(contractDay, u"S"_s);
    event->setCalendar(elsewhere());
    QVERIFY2(save(event), qPrintable(refusal().message()));
    const QByteArray before = textElsewhere();

    QVERIFY2(remove(event), qPrintable(refusal().message()));
    QVERIFY(fixture().eventsOn(contractDay).isEmpty());
    QVERIFY2(undo(), qPrintable(refusal().message()));

    QCOMPARE(textElsewhere(), before);
    QCOMPARE(titlesOf(fixture().eventsOn(contractDay)), QStringList { u"S"_s });
    QCOMPARE(titlesOf(fixture().eventsOn(contractDay.addDays(2))), QStringList { u"Other"_s });
    QCOMPARE(fixture().eventOn(contractDay, u"S"_s)->calendar()->uid(), u"Elsewhere"_s);
}

void MovingContract::aSeriesThatCameIsRemovedAndRestored()
{
    addElsewhere(eventText("s", "S", "20260310T080000Z", "DURATION:PT1H\r\n" + series + unknown())
        + eventText("s", "Other", "20260313T100000Z", exception));
    const CalEventPtr event = fixture().eventOn(contractDay, u"S"_s);
    event->setCalendar(fixture().calendar(u"Home"_s));
    QVERIFY2(save(event), qPrintable(refusal().message()));

    QVERIFY2(remove(event), qPrintable(refusal().message()));
    QVERIFY(fixture().eventsOn(contractDay).isEmpty());
    QVERIFY(fixture().eventsOn(contractDay.addDays(2)).isEmpty());
    QVERIFY2(undo(), qPrintable(refusal().message()));

    QCOMPARE(titlesOf(fixture().eventsOn(contractDay)), QStringList { u"S"_s });
    QCOMPARE(titlesOf(fixture().eventsOn(contractDay.addDays(1))), QStringList());
    QCOMPARE(titlesOf(fixture().eventsOn(contractDay.addDays(2))), QStringList { u"Other"_s });
    QCOMPARE(fixture().eventOn(contractDay, u"S"_s)->calendar()->uid(), u"Home"_s);
    // With all that other programs know of it.
    const CalEventPtr restored = fixture().eventOn(contractDay, u"S"_s);
    restored->setCalendar(elsewhere());
    QVERIFY2(save(restored), qPrintable(refusal().message()));
    QVERIFY2(textElsewhere().contains(unknown()), textElsewhere().constData());
}

void MovingContract::anOccurrenceOfAMovedSeriesIsRemovedAndRestored()
{
    addElsewhere(eventText("s", "S", "20260310T080000Z", "DURATION:PT1H\r\n" + series));
    const CalEventPtr event = fixture().eventOn(contractDay, u"S"_s);
    event->setCalendar(fixture().calendar(u"Work"_s));
    QVERIFY2(save(event), qPrintable(refusal().message()));

    QVERIFY2(remove(fixture().eventOn(contractDay, u"S"_s), CalSpanThisEvent), qPrintable(refusal().message()));
    QVERIFY(fixture().eventsOn(contractDay).isEmpty());
    QCOMPARE(fixture().eventsOn(contractDay.addDays(-1)).size(), 1);
    QVERIFY2(undo(), qPrintable(refusal().message()));

    QCOMPARE(titlesOf(fixture().eventsOn(contractDay)), QStringList { u"S"_s });
    QCOMPARE(fixture().eventOn(contractDay, u"S"_s)->calendar()->uid(), u"Work"_s);
    QCOMPARE(textElsewhere(), QByteArray("not one item"));
}

void MovingContract::aRemovalIsTakenBackAfterAnotherItemHasMoved()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A", unknown()));
    addElsewhere(taskText("b", "B"));
    QVERIFY2(remove(fixture().task(u"A"_s)), qPrintable(refusal().message()));
    const CalTaskPtr other = fixture().task(u"B"_s);
    other->setCalendar(fixture().calendar(u"Home"_s));
    QVERIFY2(save(other), qPrintable(refusal().message()));

    QCOMPARE(store().undoableRemovalTitle(), u"A"_s);
    QVERIFY2(undo(), qPrintable(refusal().message()));

    QVERIFY(!store().undoableRemovalTitle());
    QCOMPARE(fixture().task(u"A"_s)->calendar()->uid(), u"Home"_s);
    QCOMPARE(fixture().task(u"B"_s)->calendar()->uid(), u"Home"_s);
}

void MovingContract::aRemovalIsNotTakenBackOverAnItemThatCame()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A"));
    addElsewhere(taskText("a", "Another"));
    QVERIFY2(remove(fixture().task(u"A"_s)), qPrintable(refusal().message()));
    const CalTaskPtr other = fixture().task(u"Another"_s);
    other->setCalendar(fixture().calendar(u"Home"_s));
    QVERIFY2(save(other), qPrintable(refusal().message()));

    QVERIFY(!undo());

    QVERIFY(isRefusedAs(StoreError::Code::Conflict, u"A"_s, u"Home"_s));
    QCOMPARE(titlesOf(fixture().tasks()), QStringList { u"Another"_s });
    QCOMPARE(fixture().task(u"Another"_s)->calendar()->uid(), u"Home"_s);
}

void MovingContract::whatWasChangedElsewhereMeanwhileStays()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A"));
    addElsewhere();
    const CalTaskPtr task = fixture().task(u"A"_s);
    putAndWait(u"Home"_s, u"a"_s, taskText("a", "Theirs"));

    task->setCalendar(elsewhere());
    QVERIFY(!save(task));

    QVERIFY(isRefusedAs(StoreError::Code::Conflict, u"A"_s, u"Elsewhere"_s));
    QCOMPARE(fixture().task(u"Theirs"_s)->calendar()->uid(), u"Home"_s);
    QCOMPARE(textElsewhere(), QByteArray("not one item"));
}

void MovingContract::anIdentifierThatIsTakenRefuses()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A"));
    addElsewhere(taskText("a", "Another"));
    const CalTaskPtr task = fixture().task(u"A"_s);

    task->setCalendar(elsewhere());
    QVERIFY(!save(task));

    QVERIFY(isRefusedAs(StoreError::Code::Conflict, u"A"_s, u"Elsewhere"_s));
    QStringList left = titlesOf(fixture().tasks());
    left.sort();
    QCOMPARE(left, (QStringList { u"A"_s, u"Another"_s }));
}

void MovingContract::nothingLeavesACalendarThatCannotBeChanged()
{
    fixture().put(fixture().readOnlyUid(), u"a"_s, taskText("a", "A"));
    addElsewhere();
    const CalTaskPtr task = fixture().task(u"A"_s);

    task->setCalendar(elsewhere());
    QVERIFY(!save(task));

    QVERIFY(isRefusedAs(StoreError::Code::ReadOnly, u"A"_s, u"Elsewhere"_s));
    QCOMPARE(titlesOf(fixture().tasks()), QStringList { u"A"_s });
}

void MovingContract::whatCannotBeStoredStaysWhereItWas()
{
    addElsewhere(taskText("a", "A"));
    const CalTaskPtr task = fixture().task(u"A"_s);
    fixture().breakTheDisk();

    task->setCalendar(fixture().calendar(u"Home"_s));
    QVERIFY(!save(task));

    QVERIFY(!refusal().reason.isEmpty());
    QCOMPARE(fixture().task(u"A"_s)->calendar()->uid(), u"Elsewhere"_s);
    QCOMPARE(titlesOf(fixture().tasks()), QStringList { u"A"_s });
}

VANTLE_CONTRACT_OF_TEXTS(MovingContract, "Moving")
#include "MovingContract.moc"
