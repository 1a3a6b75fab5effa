// SPDX-License-Identifier: MIT
#include "TestRegistry.h"
#include "TwoBackends.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

struct HomeAndWork : TwoBackends {
    HomeAndWork()
    {
        first->addCalendar(makeCalendar(u"Home"_s));
        second->addCalendar(makeCalendar(u"Work"_s));
        first->addTask(u"Home"_s, makeTask(u"milk"_s, u"Buy milk"_s));
        second->addEvent(u"Work"_s,
            makeEvent(u"lunch"_s, u"Lunch"_s, localInstant("2026-03-11T12:00"), localInstant("2026-03-11T13:00")));
    }
};

} // namespace

// Removal through the merged store, and its taking back.
class CalCalendarStoreRemovalTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void removalReachesTheBackendThatHoldsTheItem();
    void removedOccurrenceLeavesTheOthers();
    void removalOfAllTakesEveryOccurrence();
    void ownRemovalIsAnnouncedAfterTheCall();
    void unsavedItemIsRefused();
    void readOnlyCalendarRefusesARemoval();
    void unsavedMoveDoesNotMisleadARemoval();
    void refusedRemovalNamesItemAndCalendar();
    void refusedRemovalLeavesTheEarlierOneToTakeBack();

    void removalCanBeTakenBack();
    void takingBackIsPossibleOnce();
    void onlyTheLastRemovalIsKept();
    void itemWithoutTitleCanBeTakenBack();
    void refusedTakingBackCanBeTriedAgain();
    void itemThatIsBackRefusesItsRestoration();
};

void CalCalendarStoreRemovalTest::removalReachesTheBackendThatHoldsTheItem()
{
    const HomeAndWork stores;

    QVERIFY(stores.store->removeEvent_span_error(stores.events().first(), CalSpanThisEvent, nullptr));
    QVERIFY(stores.store->removeTask_error(stores.tasks().first(), nullptr));

    QVERIFY(stores.events().isEmpty());
    QVERIFY(stores.tasks().isEmpty());
    QCOMPARE(stores.first->writes(), QStringList { u"remove task: Buy milk"_s });
    QCOMPARE(stores.second->writes(), QStringList { u"remove this: Lunch"_s });
}

void CalCalendarStoreRemovalTest::removedOccurrenceLeavesTheOthers()
{
    const HomeAndWork stores;
    for (const char *start : { "2026-03-11T08:00", "2026-03-11T09:00", "2026-03-11T10:00" })
        stores.first->addEvent(
            u"Home"_s, makeOccurrence(u"pill"_s, u"Pill"_s, localInstant(start), localInstant(start).addSecs(60)));

    QVERIFY(stores.store->removeEvent_span_error(stores.events().at(1), CalSpanThisEvent, nullptr));

    QCOMPARE(titles(stores.events()), (QStringList { u"Pill"_s, u"Pill"_s, u"Lunch"_s }));
    QCOMPARE(stores.events().at(1)->startDate(), localInstant("2026-03-11T10:00"));
}

void CalCalendarStoreRemovalTest::removalOfAllTakesEveryOccurrence()
{
    const HomeAndWork stores;
    for (const char *start : { "2026-03-11T08:00", "2026-03-11T09:00" })
        stores.first->addEvent(
            u"Home"_s, makeOccurrence(u"pill"_s, u"Pill"_s, localInstant(start), localInstant(start).addSecs(60)));

    QVERIFY(stores.store->removeEvent_span_error(stores.events().first(), CalSpanAllEvents, nullptr));

    QCOMPARE(titles(stores.events()), QStringList { u"Lunch"_s });
}

void CalCalendarStoreRemovalTest::ownRemovalIsAnnouncedAfterTheCall()
{
    const HomeAndWork stores;
    QSignalSpy posted(stores.store.get(), &CalCalendarStore::notificationPosted);
    QSignalSpy undoable(stores.store.get(), &CalCalendarStore::undoableRemovalDidChange);

    QVERIFY(stores.store->removeTask_error(stores.tasks().first(), nullptr));
    QCOMPARE(posted.count(), 0);
    QCOMPARE(undoable.count(), 1);

    QTRY_COMPARE(posted.count(), 1);
    QCOMPARE(posted.first().first().value<CalNotification>().name, CalTasksChangedNotification);
}

void CalCalendarStoreRemovalTest::unsavedItemIsRefused()
{
    const HomeAndWork stores;
    const auto task = std::make_shared<CalTask>();
    task->setTitle(u"New to do"_s);
    task->setCalendar(stores.store->calendars().first());

    StoreError error;
    QVERIFY(!stores.store->removeTask_error(task, &error));

    QCOMPARE(error.code, StoreError::Code::NotFound);
    QCOMPARE(stores.first->removals(), 0);
}

void CalCalendarStoreRemovalTest::readOnlyCalendarRefusesARemoval()
{
    const HomeAndWork stores;
    stores.first->addCalendar(makeReadOnlyCalendar(u"shared"_s));
    stores.first->addTask(u"shared"_s, makeTask(u"a"_s, u"Read me"_s));
    const CalTaskPtr task = stores.tasks().last();

    StoreError error;
    QVERIFY(!stores.store->removeTask_error(task, &error));

    QCOMPARE(error.code, StoreError::Code::ReadOnly);
    QCOMPARE(
        error.message(), u"“Read me” in the calendar “shared” was not deleted.\nThe calendar cannot be changed."_s);
    QCOMPARE(stores.first->removals(), 0);
}

void CalCalendarStoreRemovalTest::unsavedMoveDoesNotMisleadARemoval()
{
    const HomeAndWork stores;
    stores.first->addCalendar(makeReadOnlyCalendar(u"shared"_s));
    const CalTaskPtr task = stores.tasks().first();
    task->setCalendar(stores.store->calendarWithUID(u"shared"_s));

    QVERIFY(stores.store->removeTask_error(task, nullptr));

    QVERIFY(stores.tasks().isEmpty());
}

void CalCalendarStoreRemovalTest::refusedRemovalNamesItemAndCalendar()
{
    const HomeAndWork stores;
    stores.second->refuseSaves(StoreError::Code::Io, u"The disk is full."_s);

    StoreError error;
    QVERIFY(!stores.store->removeEvent_span_error(stores.events().first(), CalSpanThisEvent, &error));

    QCOMPARE(error.message(), u"“Lunch” in the calendar “Work” was not deleted.\nThe disk is full."_s);
    QVERIFY(!stores.store->undoableRemovalTitle());
    QCOMPARE(stores.events().size(), 1);
}

void CalCalendarStoreRemovalTest::refusedRemovalLeavesTheEarlierOneToTakeBack()
{
    const HomeAndWork stores;
    QVERIFY(stores.store->removeTask_error(stores.tasks().first(), nullptr));
    stores.second->refuseSaves(StoreError::Code::Io, u"The disk is full."_s);

    QVERIFY(!stores.store->removeEvent_span_error(stores.events().first(), CalSpanThisEvent, nullptr));

    QCOMPARE(stores.store->undoableRemovalTitle(), u"Buy milk"_s);
}

void CalCalendarStoreRemovalTest::removalCanBeTakenBack()
{
    const HomeAndWork stores;
    const QStringList before = uids(stores.events());
    QVERIFY(stores.store->removeEvent_span_error(stores.events().first(), CalSpanThisEvent, nullptr));
    QCOMPARE(stores.store->undoableRemovalTitle(), u"Lunch"_s);

    QVERIFY(stores.store->undoRemoval_error(nullptr));

    QCOMPARE(uids(stores.events()), before);
    QCOMPARE(titles(stores.events()), QStringList { u"Lunch"_s });
}

void CalCalendarStoreRemovalTest::takingBackIsPossibleOnce()
{
    const HomeAndWork stores;
    QSignalSpy undoable(stores.store.get(), &CalCalendarStore::undoableRemovalDidChange);
    QVERIFY(!stores.store->undoRemoval_error(nullptr));
    QVERIFY(stores.store->removeTask_error(stores.tasks().first(), nullptr));
    QVERIFY(stores.store->undoRemoval_error(nullptr));
    QCOMPARE(undoable.count(), 2);

    QVERIFY(!stores.store->undoableRemovalTitle());
    QVERIFY(!stores.store->undoRemoval_error(nullptr));

    QCOMPARE(undoable.count(), 2);
    QCOMPARE(stores.tasks().size(), 1);
}

void CalCalendarStoreRemovalTest::onlyTheLastRemovalIsKept()
{
    const HomeAndWork stores;
    QVERIFY(stores.store->removeTask_error(stores.tasks().first(), nullptr));
    QVERIFY(stores.store->removeEvent_span_error(stores.events().first(), CalSpanThisEvent, nullptr));

    QCOMPARE(stores.store->undoableRemovalTitle(), u"Lunch"_s);
    QVERIFY(stores.store->undoRemoval_error(nullptr));

    QCOMPARE(stores.events().size(), 1);
    QVERIFY(stores.tasks().isEmpty());
}

void CalCalendarStoreRemovalTest::itemWithoutTitleCanBeTakenBack()
{
    const HomeAndWork stores;
    const CalTaskPtr task = stores.tasks().first();
    task->setTitle(std::nullopt);
    QVERIFY(stores.store->saveTask_error(task, nullptr));

    QVERIFY(stores.store->removeTask_error(task, nullptr));

    QCOMPARE(stores.store->undoableRemovalTitle(), QString());
    QVERIFY(stores.store->undoRemoval_error(nullptr));
}

void CalCalendarStoreRemovalTest::refusedTakingBackCanBeTriedAgain()
{
    const HomeAndWork stores;
    QVERIFY(stores.store->removeTask_error(stores.tasks().first(), nullptr));
    stores.first->refuseNextSave(StoreError::Code::Io, u"The disk is full."_s);

    StoreError error;
    QVERIFY(!stores.store->undoRemoval_error(&error));
    QCOMPARE(error.message(), u"“Buy milk” in the calendar “Home” was not restored.\nThe disk is full."_s);
    QCOMPARE(stores.store->undoableRemovalTitle(), u"Buy milk"_s);

    QVERIFY(stores.store->undoRemoval_error(nullptr));
    QCOMPARE(stores.tasks().size(), 1);
}

void CalCalendarStoreRemovalTest::itemThatIsBackRefusesItsRestoration()
{
    const HomeAndWork stores;
    QVERIFY(stores.store->removeTask_error(stores.tasks().first(), nullptr));
    stores.first->addTask(u"Home"_s, makeTask(u"milk"_s, u"Theirs"_s));

    StoreError error;
    QVERIFY(!stores.store->undoRemoval_error(&error));

    QCOMPARE(error.code, StoreError::Code::Conflict);
    QCOMPARE(titles(stores.tasks()), QStringList { u"Theirs"_s });
}

VANTLE_TEST(CalCalendarStoreRemovalTest)
#include "CalCalendarStoreRemovalTest.moc"
