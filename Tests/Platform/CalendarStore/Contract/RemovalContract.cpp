// SPDX-License-Identifier: MIT
#include "ContractTest.h"

using namespace Qt::StringLiterals;

namespace
{

const QByteArray daily = eventText("s", "Series", "20260302T090000", "DURATION:PT1H\r\nRRULE:FREQ=DAILY\r\n");

} // namespace

// Removing an item and taking that back.
class RemovalContract final : public ContractTest
{
    Q_OBJECT

public:
    using ContractTest::ContractTest;

private Q_SLOTS:
    void aRemovedEventIsGone();
    void aRemovedTaskIsGone();
    void neighboursOfARemovedItemStay();
    void theTitleOfTheRemovedItemIsKnown();
    void anItemWithoutATitleCanComeBack();
    void aRemovedEventComesBack();
    void aRemovedTaskComesBack();
    void aRemovedSeriesComesBack();
    void whatCameBackCanBeChanged();
    void onlyTheLastRemovalIsTakenBack();
    void aRemovalIsTakenBackOnce();
    void aFailedRemovalKeepsTheEarlierOne();
    void aTakenPlaceRefusesTheReturn();
    void aCalendarThatIsGoneRefusesTheReturn();
    void aBrokenDiskRefusesTheReturn();
    void eachChangeOfWhatCanComeBackIsTold();
    void anEditedRecordIsRemovedAsItIsStored();
};

void RemovalContract::aRemovedEventIsGone()
{
    fixture().put(u"Home"_s, u"a"_s, eventText("a", "A", "20260311T090000"));

    QVERIFY2(remove(fixture().eventOn(contractDay, u"A"_s)), qPrintable(refusal().message()));

    QVERIFY(fixture().eventsOn(contractDay).isEmpty());
}

void RemovalContract::aRemovedTaskIsGone()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A"));

    QVERIFY2(remove(fixture().task(u"A"_s)), qPrintable(refusal().message()));

    QVERIFY(fixture().tasks().isEmpty());
}

void RemovalContract::neighboursOfARemovedItemStay()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A"));
    fixture().put(u"Home"_s, u"b"_s, taskText("b", "B"));
    fixture().put(u"Work"_s, u"a"_s, taskText("a", "A at work"));

    QVERIFY2(remove(fixture().task(u"A"_s)), qPrintable(refusal().message()));

    QCOMPARE(titlesOf(fixture().tasks()), (QStringList { u"B"_s, u"A at work"_s }));
}

void RemovalContract::theTitleOfTheRemovedItemIsKnown()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A"));
    QVERIFY(!store().undoableRemovalTitle());

    QVERIFY(remove(fixture().task(u"A"_s)));

    QCOMPARE(store().undoableRemovalTitle(), u"A"_s);
}

void RemovalContract::anItemWithoutATitleCanComeBack()
{
    fixture().put(u"Home"_s, u"a"_s, "BEGIN:VTODO\r\nUID:a\r\nDTSTAMP:20260101T000000Z\r\nEND:VTODO\r\n");

    QVERIFY(remove(fixture().tasks().value(0)));
    QCOMPARE(store().undoableRemovalTitle(), QString());
    QVERIFY2(undo(), qPrintable(refusal().message()));

    QCOMPARE(titlesOf(fixture().tasks()), QStringList { u"(none)"_s });
}

void RemovalContract::aRemovedEventComesBack()
{
    fixture().put(u"Work"_s, u"a"_s,
        eventText("a", "A", "20260311T090000",
            "DURATION:PT1H\r\nLOCATION:Here\r\nBEGIN:VALARM\r\nACTION:DISPLAY\r\nTRIGGER:-PT15M\r\n"
            "DESCRIPTION:x\r\nEND:VALARM\r\n"));
    QVERIFY(remove(fixture().eventOn(contractDay, u"A"_s)));

    QVERIFY2(undo(), qPrintable(refusal().message()));

    const CalEventPtr event = fixture().eventOn(contractDay, u"A"_s);
    QVERIFY(event);
    QCOMPARE(shown({ event }), QStringList { u"09:00-10:00 A"_s });
    QCOMPARE(event->uid(), u"a"_s);
    QCOMPARE(event->location(), u"Here"_s);
    QCOMPARE(event->alarms().size(), 1);
    QCOMPARE(event->calendar()->uid(), u"Work"_s);
}

void RemovalContract::aRemovedTaskComesBack()
{
    fixture().put(u"Work"_s, u"a"_s, taskText("a", "A", "PRIORITY:1\r\nDUE;VALUE=DATE:20260311\r\n"));
    QVERIFY(remove(fixture().task(u"A"_s)));

    QVERIFY2(undo(), qPrintable(refusal().message()));

    const CalTaskPtr task = fixture().task(u"A"_s);
    QVERIFY(task && task->isDueDateOnly());
    QCOMPARE(task->priority(), 1);
    QCOMPARE(task->calendar()->uid(), u"Work"_s);
}

void RemovalContract::aRemovedSeriesComesBack()
{
    fixture().put(u"Home"_s, u"s"_s, daily);
    QVERIFY(remove(fixture().eventOn(contractDay, u"Series"_s), CalSpanAllEvents));
    QVERIFY(fixture().eventsOn(contractDay.addDays(7)).isEmpty());

    QVERIFY2(undo(), qPrintable(refusal().message()));

    QCOMPARE(shown(fixture().eventsOn(contractDay)), QStringList { u"09:00-10:00 Series"_s });
    QCOMPARE(fixture().eventsOn(contractDay.addDays(7)).size(), 1);
}

void RemovalContract::whatCameBackCanBeChanged()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A"));
    QVERIFY(remove(fixture().task(u"A"_s)));
    QVERIFY(undo());

    const CalTaskPtr task = fixture().task(u"A"_s);
    task->setTitle(u"B"_s);

    QVERIFY2(save(task), qPrintable(refusal().message()));
    QCOMPARE(titlesOf(fixture().tasks()), QStringList { u"B"_s });
}

void RemovalContract::onlyTheLastRemovalIsTakenBack()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A"));
    fixture().put(u"Home"_s, u"b"_s, eventText("b", "B", "20260311T090000"));
    QVERIFY(remove(fixture().task(u"A"_s)));
    QVERIFY(remove(fixture().eventOn(contractDay, u"B"_s)));
    QCOMPARE(store().undoableRemovalTitle(), u"B"_s);

    QVERIFY2(undo(), qPrintable(refusal().message()));

    QCOMPARE(titlesOf(fixture().eventsOn(contractDay)), QStringList { u"B"_s });
    QVERIFY(fixture().tasks().isEmpty());
    QVERIFY(!store().undoableRemovalTitle());
}

void RemovalContract::aRemovalIsTakenBackOnce()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A"));
    QVERIFY(remove(fixture().task(u"A"_s)));
    QVERIFY(undo());

    QVERIFY(!undo());

    QCOMPARE(titlesOf(fixture().tasks()), QStringList { u"A"_s });
}

void RemovalContract::aFailedRemovalKeepsTheEarlierOne()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A"));
    fixture().put(fixture().readOnlyUid(), u"b"_s, taskText("b", "B"));
    QVERIFY(remove(fixture().task(u"A"_s)));

    QVERIFY(!remove(fixture().task(u"B"_s)));

    QCOMPARE(store().undoableRemovalTitle(), u"A"_s);
    QVERIFY2(undo(), qPrintable(refusal().message()));
    QCOMPARE(titlesOf(fixture().tasks()), (QStringList { u"A"_s, u"B"_s }));
}

void RemovalContract::aTakenPlaceRefusesTheReturn()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A"));
    QVERIFY(remove(fixture().task(u"A"_s)));
    putAndWait(u"Home"_s, u"a"_s, taskText("a", "Theirs"));

    QVERIFY(!undo());

    QCOMPARE(refusal().action, StoreError::Action::Restore);
    QVERIFY(isRefusedAs(StoreError::Code::Conflict, u"A"_s, u"Home"_s));
    QCOMPARE(titlesOf(fixture().tasks()), QStringList { u"Theirs"_s });
}

void RemovalContract::aCalendarThatIsGoneRefusesTheReturn()
{
    fixture().put(u"Work"_s, u"a"_s, taskText("a", "A"));
    QVERIFY(remove(fixture().task(u"A"_s)));
    fixture().takeCalendarAway(u"Work"_s);
    QTRY_VERIFY(!fixture().calendar(u"Work"_s));

    QVERIFY(!undo());

    QCOMPARE(refusal().item, u"A"_s);
    QVERIFY(!refusal().reason.isEmpty());
    QVERIFY(fixture().tasks().isEmpty());
}

void RemovalContract::aBrokenDiskRefusesTheReturn()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A"));
    QVERIFY(remove(fixture().task(u"A"_s)));
    fixture().breakTheDisk();

    QVERIFY(!undo());

    QVERIFY(!refusal().reason.isEmpty());
    QVERIFY(fixture().tasks().isEmpty());
    QCOMPARE(store().undoableRemovalTitle(), u"A"_s);
}

void RemovalContract::eachChangeOfWhatCanComeBackIsTold()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A"));
    fixture().put(u"Home"_s, u"b"_s, taskText("b", "B"));
    const QSignalSpy told(&store(), &CalCalendarStore::undoableRemovalDidChange);

    QVERIFY(remove(fixture().task(u"A"_s)));
    QCOMPARE(told.size(), 1);
    QVERIFY(remove(fixture().task(u"B"_s)));
    QCOMPARE(told.size(), 2);
    QVERIFY(undo());
    QCOMPARE(told.size(), 3);
}

void RemovalContract::anEditedRecordIsRemovedAsItIsStored()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A"));
    const CalTaskPtr task = fixture().task(u"A"_s);
    task->setTitle(u"Edited"_s);
    task->setCalendar(fixture().calendar(u"Work"_s));

    QVERIFY2(remove(task), qPrintable(refusal().message()));
    QCOMPARE(store().undoableRemovalTitle(), u"A"_s);
    QVERIFY(fixture().tasks().isEmpty());
    QVERIFY(undo());

    QCOMPARE(titlesOf(fixture().tasks()), QStringList { u"A"_s });
}

VANTLE_CONTRACT(RemovalContract, "Removal")
#include "RemovalContract.moc"
