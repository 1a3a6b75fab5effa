// SPDX-License-Identifier: MIT
#include "ContractTest.h"

using namespace Qt::StringLiterals;
using Code = StoreError::Code;

namespace
{

enum class Kind { Event, Task };

} // namespace

// When a save or removal is refused, what it says, and that nothing has changed then.
class RefusalsContract final : public ContractTest
{
    Q_OBJECT

public:
    using ContractTest::ContractTest;

private Q_SLOTS:
    void theOtherProgramsChangeStays_data() { addKinds(); }
    void theOtherProgramsChangeStays();
    void theOlderOfTwoRecordsIsRefused_data() { addKinds(); }
    void theOlderOfTwoRecordsIsRefused();
    void whatWasTakenAwayDoesNotComeBack_data() { addKinds(); }
    void whatWasTakenAwayDoesNotComeBack();
    void aChangedItemIsNotRemoved_data() { addKinds(); }
    void aChangedItemIsNotRemoved();
    void whatIsGoneCannotBeRemoved_data() { addKinds(); }
    void whatIsGoneCannotBeRemoved();
    void aChangedItemIsNotMoved_data() { addKinds(); }
    void aChangedItemIsNotMoved();
    void aFreshRecordCanBeSavedAfterAConflict_data() { addKinds(); }
    void aFreshRecordCanBeSavedAfterAConflict();

    void aCalendarThatCannotBeChangedRefusesAll_data() { addKinds(); }
    void aCalendarThatCannotBeChangedRefusesAll();
    void nothingIsMovedOutOfACalendarThatCannotBeChanged();
    void aNewItemNeedsACalendar();
    void aCalendarThatIsGoneTakesNothing();
    void whatWasNeverSavedCannotBeRemoved();
    void aBrokenDiskRefusesASave_data() { addKinds(); }
    void aBrokenDiskRefusesASave();
    void aBrokenDiskRefusesANewItem_data() { addKinds(); }
    void aBrokenDiskRefusesANewItem();
    void aBrokenDiskRefusesARemoval_data() { addKinds(); }
    void aBrokenDiskRefusesARemoval();
    void aBrokenDiskRefusesAMove_data() { addKinds(); }
    void aBrokenDiskRefusesAMove();
    void aRefusalNeedsNobodyToHearIt();
    void theRecordKeepsItsEdits();

private:
    static void addKinds()
    {
        QTest::addColumn<Kind>("kind");

        QTest::newRow("event") << Kind::Event;
        QTest::newRow("task") << Kind::Task;
    }
    static QByteArray text(Kind kind, const QByteArray &title)
    {
        return kind == Kind::Event ? eventText("a", title, "20260311T090000") : taskText("a", title);
    }
    CalCalendarItemPtr item(Kind kind)
    {
        if (kind == Kind::Event)
            return fixture().eventsOn(contractDay).value(0);
        return fixture().tasks().value(0);
    }
    QStringList titles() { return titlesOf(fixture().eventsOn(contractDay)) + titlesOf(fixture().tasks()); }
    bool saveItem(const CalCalendarItemPtr &item)
    {
        if (const auto event = std::dynamic_pointer_cast<CalEvent>(item))
            return save(event);
        return save(std::dynamic_pointer_cast<CalTask>(item));
    }
    bool removeItem(const CalCalendarItemPtr &item)
    {
        if (const auto event = std::dynamic_pointer_cast<CalEvent>(item))
            return remove(event);
        return remove(std::dynamic_pointer_cast<CalTask>(item));
    }
    CalCalendarItemPtr newItem(Kind kind, const QString &calendarUid)
    {
        CalCalendarItemPtr item;
        if (kind == Kind::Event) {
            const auto event = std::make_shared<CalEvent>();
            event->setStartDate(at("09:00:00"));
            event->setEndDate(at("10:00:00"));
            item = event;
        } else {
            item = std::make_shared<CalTask>();
        }
        item->setTitle(u"New"_s);
        item->setCalendar(fixture().calendar(calendarUid));
        return item;
    }
};

void RefusalsContract::theOtherProgramsChangeStays()
{
    QFETCH(const Kind, kind);
    fixture().put(u"Home"_s, u"a"_s, text(kind, "A"));
    const CalCalendarItemPtr record = item(kind);
    putAndWait(u"Home"_s, u"a"_s, text(kind, "Theirs"));

    record->setTitle(u"Ours"_s);

    QVERIFY(!saveItem(record));
    QVERIFY(isRefusedAs(Code::Conflict, u"A"_s, u"Home"_s) || isRefusedAs(Code::Conflict, u"Ours"_s, u"Home"_s));
    QCOMPARE(titles(), QStringList { u"Theirs"_s });
}

void RefusalsContract::theOlderOfTwoRecordsIsRefused()
{
    QFETCH(const Kind, kind);
    fixture().put(u"Home"_s, u"a"_s, text(kind, "A"));
    const CalCalendarItemPtr older = item(kind);
    const CalCalendarItemPtr newer = item(kind);

    newer->setTitle(u"First"_s);
    QVERIFY(saveItem(newer));
    older->setTitle(u"Second"_s);

    QVERIFY(!saveItem(older));
    QCOMPARE(refusal().code, Code::Conflict);
    QCOMPARE(titles(), QStringList { u"First"_s });
}

void RefusalsContract::whatWasTakenAwayDoesNotComeBack()
{
    QFETCH(const Kind, kind);
    fixture().put(u"Home"_s, u"a"_s, text(kind, "A"));
    const CalCalendarItemPtr record = item(kind);
    takeAwayAndWait(u"Home"_s, u"a"_s);

    record->setTitle(u"Ours"_s);

    QVERIFY(!saveItem(record));
    QCOMPARE(refusal().code, Code::NotFound);
    QVERIFY(!refusal().item.isEmpty() && !refusal().reason.isEmpty());
    QCOMPARE(titles(), QStringList());
}

void RefusalsContract::aChangedItemIsNotRemoved()
{
    QFETCH(const Kind, kind);
    fixture().put(u"Home"_s, u"a"_s, text(kind, "A"));
    const CalCalendarItemPtr record = item(kind);
    putAndWait(u"Home"_s, u"a"_s, text(kind, "Theirs"));

    QVERIFY(!removeItem(record));

    QVERIFY(isRefusedAs(Code::Conflict, u"A"_s, u"Home"_s));
    QCOMPARE(titles(), QStringList { u"Theirs"_s });
    QVERIFY(!store().undoableRemovalTitle());
}

void RefusalsContract::whatIsGoneCannotBeRemoved()
{
    QFETCH(const Kind, kind);
    fixture().put(u"Home"_s, u"a"_s, text(kind, "A"));
    const CalCalendarItemPtr record = item(kind);
    takeAwayAndWait(u"Home"_s, u"a"_s);

    QVERIFY(!removeItem(record));

    QVERIFY(isRefusedAs(Code::NotFound, u"A"_s, u"Home"_s));
}

void RefusalsContract::aChangedItemIsNotMoved()
{
    QFETCH(const Kind, kind);
    fixture().put(u"Home"_s, u"a"_s, text(kind, "A"));
    const CalCalendarItemPtr record = item(kind);
    putAndWait(u"Home"_s, u"a"_s, text(kind, "Theirs"));

    record->setCalendar(fixture().calendar(u"Work"_s));

    QVERIFY(!saveItem(record));
    QCOMPARE(refusal().code, Code::Conflict);
    QCOMPARE(titles(), QStringList { u"Theirs"_s });
    QCOMPARE(item(kind)->calendar()->uid(), u"Home"_s);
}

void RefusalsContract::aFreshRecordCanBeSavedAfterAConflict()
{
    QFETCH(const Kind, kind);
    fixture().put(u"Home"_s, u"a"_s, text(kind, "A"));
    const CalCalendarItemPtr record = item(kind);
    putAndWait(u"Home"_s, u"a"_s, text(kind, "Theirs"));
    record->setTitle(u"Ours"_s);
    QVERIFY(!saveItem(record));

    const CalCalendarItemPtr fresh = item(kind);
    fresh->setTitle(u"Ours"_s);

    QVERIFY2(saveItem(fresh), qPrintable(refusal().message()));
    QCOMPARE(titles(), QStringList { u"Ours"_s });
}

void RefusalsContract::aCalendarThatCannotBeChangedRefusesAll()
{
    QFETCH(const Kind, kind);
    fixture().put(fixture().readOnlyUid(), u"a"_s, text(kind, "A"));
    const CalCalendarItemPtr record = item(kind);
    QVERIFY(record);

    record->setTitle(u"Ours"_s);
    QVERIFY(!saveItem(record));
    QCOMPARE(refusal().code, Code::ReadOnly);
    QVERIFY(!removeItem(item(kind)));
    QCOMPARE(refusal().code, Code::ReadOnly);
    QVERIFY(!saveItem(newItem(kind, fixture().readOnlyUid())));
    QCOMPARE(refusal().code, Code::ReadOnly);
    QVERIFY(!refusal().message().isEmpty());

    QCOMPARE(titles(), QStringList { u"A"_s });
}

void RefusalsContract::nothingIsMovedOutOfACalendarThatCannotBeChanged()
{
    fixture().put(fixture().readOnlyUid(), u"a"_s, taskText("a", "A"));
    const CalTaskPtr task = fixture().task(u"A"_s);

    task->setCalendar(fixture().calendar(u"Home"_s));

    QVERIFY(!save(task));
    QCOMPARE(refusal().code, Code::ReadOnly);
    QCOMPARE(fixture().tasks().size(), 1);
}

void RefusalsContract::aNewItemNeedsACalendar()
{
    const auto task = std::make_shared<CalTask>();
    task->setTitle(u"New"_s);

    QVERIFY(!save(task));

    QCOMPARE(refusal().code, Code::Invalid);
    QCOMPARE(refusal().item, u"New"_s);
    QVERIFY(fixture().tasks().isEmpty());
}

void RefusalsContract::aCalendarThatIsGoneTakesNothing()
{
    const CalCalendarItemPtr record = newItem(Kind::Task, u"Work"_s);
    fixture().takeCalendarAway(u"Work"_s);
    QTRY_VERIFY(!fixture().calendar(u"Work"_s));

    QVERIFY(!saveItem(record));

    QVERIFY(isRefusedAs(Code::NotFound, u"New"_s, u"Work"_s));
    QVERIFY(!fixture().calendar(u"Work"_s));
}

void RefusalsContract::whatWasNeverSavedCannotBeRemoved()
{
    QVERIFY(!removeItem(newItem(Kind::Event, u"Home"_s)));

    QCOMPARE(refusal().code, Code::NotFound);
    QVERIFY(!store().undoableRemovalTitle());
}

void RefusalsContract::aBrokenDiskRefusesASave()
{
    QFETCH(const Kind, kind);
    fixture().put(u"Home"_s, u"a"_s, text(kind, "A"));
    const CalCalendarItemPtr record = item(kind);
    fixture().breakTheDisk();

    record->setTitle(u"Ours"_s);

    QVERIFY(!saveItem(record));
    QVERIFY(!refusal().item.isEmpty() && refusal().calendar == u"Home"_s && !refusal().reason.isEmpty());
    QCOMPARE(titles(), QStringList { u"A"_s });
}

void RefusalsContract::aBrokenDiskRefusesANewItem()
{
    QFETCH(const Kind, kind);
    const CalCalendarItemPtr record = newItem(kind, u"Home"_s);
    fixture().breakTheDisk();

    QVERIFY(!saveItem(record));

    QVERIFY(refusal().item == u"New"_s && refusal().calendar == u"Home"_s && !refusal().reason.isEmpty());
    QCOMPARE(titles(), QStringList());
}

void RefusalsContract::aBrokenDiskRefusesARemoval()
{
    QFETCH(const Kind, kind);
    fixture().put(u"Home"_s, u"a"_s, text(kind, "A"));
    const CalCalendarItemPtr record = item(kind);
    fixture().breakTheDisk();

    QVERIFY(!removeItem(record));

    QVERIFY(refusal().item == u"A"_s && refusal().calendar == u"Home"_s && !refusal().reason.isEmpty());
    QCOMPARE(titles(), QStringList { u"A"_s });
    QVERIFY(!store().undoableRemovalTitle());
}

void RefusalsContract::aBrokenDiskRefusesAMove()
{
    QFETCH(const Kind, kind);
    fixture().put(u"Home"_s, u"a"_s, text(kind, "A"));
    const CalCalendarItemPtr record = item(kind);
    record->setCalendar(fixture().calendar(u"Work"_s));
    fixture().breakTheDisk();

    QVERIFY(!saveItem(record));

    QVERIFY(!refusal().reason.isEmpty());
    QCOMPARE(titles(), QStringList { u"A"_s });
    QCOMPARE(item(kind)->calendar()->uid(), u"Home"_s);
}

void RefusalsContract::aRefusalNeedsNobodyToHearIt()
{
    const auto task = std::make_shared<CalTask>();

    QVERIFY(!store().saveTask_error(task, nullptr));
    QVERIFY(!store().removeTask_error(task, nullptr));
    QVERIFY(!store().undoRemoval_error(nullptr));
}

void RefusalsContract::theRecordKeepsItsEdits()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A"));
    const CalTaskPtr task = fixture().task(u"A"_s);
    fixture().breakTheDisk();

    task->setTitle(u"Ours"_s);
    task->setIsCompleted(true);
    QVERIFY(!save(task));

    QCOMPARE(task->title(), u"Ours"_s);
    QVERIFY(task->isCompleted());
    QVERIFY(!fixture().task(u"A"_s)->isCompleted());
}

VANTLE_CONTRACT(RefusalsContract, "Refusals")
#include "RefusalsContract.moc"
