// SPDX-License-Identifier: MIT
#include "TestRegistry.h"
#include "TwoBackends.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class CalCalendarStoreSavingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void notificationsTellWhatChangedAndByWhom_data();
    void notificationsTellWhatChangedAndByWhom();
    void burstOfChangesIsOneNotification();
    void notificationNamesARenamedCalendar();
    void ownSaveIsAnnouncedAfterTheCall();

    void saveReachesTheCalendarsBackend();
    void saveIntoARenamedCalendarReachesItsBackend();
    void savedRecordCountsAsReadAnew();
    void readOnlyCalendarRefusesASave();
    void refusalNamesTheItemAsItIsStored();
    void calendarForEventsRefusesATask();
    void taskWithoutCalendarIsRefused();
    void vanishedCalendarIsAClearError();
    void moveIntoAnotherBackendIsRefused();
    void moveOutOfAReadOnlyCalendarIsRefused();
    void movedTaskHasTheUidOfItsNewCalendar();
    void newItemIsCreatedInItsCalendar();
    void newEventIsRefusedByACalendarForTasks();
    void eventIsSavedWithItsSpan();
    void bothStepsOfTheEventSheetSucceed();
    void seriesIsChangedAsAWhole();
    void backendsRefusalIsPassedOn();
    void refusedSaveKeepsTheRecordsValues();
    void errorMayBeNull();

    void storeIsCompleteWhenAllBackendsAre();
    void loadedIsAnnouncedOnce();
};

void CalCalendarStoreSavingTest::notificationsTellWhatChangedAndByWhom_data()
{
    QTest::addColumn<CalBackendChange>("change");
    QTest::addColumn<QList<int>>("names");

    using Author = CalBackendChange::Author;
    const QSet<QString> home { u"Home"_s };
    QTest::newRow("others' calendars") << CalBackendChange { Author::Others, true, false, false, home }
                                       << QList<int> { CalCalendarsChangedExternallyNotification };
    QTest::newRow("others' events") << CalBackendChange { Author::Others, false, true, false, home }
                                    << QList<int> { CalEventsChangedExternallyNotification };
    QTest::newRow("others' tasks") << CalBackendChange { Author::Others, false, false, true, home }
                                   << QList<int> { CalTasksChangedExternallyNotification };
    QTest::newRow("our calendars") << CalBackendChange { Author::Ourselves, true, false, false, home }
                                   << QList<int> { CalCalendarsChangedNotification };
    QTest::newRow("our events") << CalBackendChange { Author::Ourselves, false, true, false, home }
                                << QList<int> { CalEventsChangedNotification };
    QTest::newRow("our tasks") << CalBackendChange { Author::Ourselves, false, false, true, home }
                               << QList<int> { CalTasksChangedNotification };
    QTest::newRow("everything") << CalBackendChange { Author::Others, true, true, true, home }
                                << QList<int> { CalCalendarsChangedExternallyNotification,
                                       CalEventsChangedExternallyNotification, CalTasksChangedExternallyNotification };
    QTest::newRow("nothing") << CalBackendChange { Author::Others, false, false, false, home } << QList<int>();
}

void CalCalendarStoreSavingTest::notificationsTellWhatChangedAndByWhom()
{
    QFETCH(const CalBackendChange, change);
    QFETCH(QList<int>, names);
    const TwoBackends stores;
    stores.second->addCalendar(makeCalendar(u"Home"_s));
    QSignalSpy spy(stores.store.get(), &CalCalendarStore::notificationPosted);

    stores.second->postChange(change);
    // A later change shows that nothing else came before it.
    QTRY_COMPARE(spy.count(), names.size());
    stores.second->postChange({ CalBackendChange::Author::Others, false, true, false, { u"Last"_s } });
    names.append(CalEventsChangedExternallyNotification);
    QTRY_VERIFY(
        !spy.isEmpty() && spy.last().first().value<CalNotification>().calendarUids == QSet<QString> { u"Last"_s });

    QList<int> posted;
    for (const QList<QVariant> &arguments : spy)
        posted.append(arguments.first().value<CalNotification>().name);
    QCOMPARE(posted, names);
    QCOMPARE(spy.first().first().value<CalNotification>().calendarUids,
        (QSet<QString> { names.size() > 1 ? u"Home"_s : u"Last"_s }));
}

void CalCalendarStoreSavingTest::burstOfChangesIsOneNotification()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.second->addCalendar(makeCalendar(u"Work"_s));
    QSignalSpy spy(stores.store.get(), &CalCalendarStore::notificationPosted);

    for (int change = 0; change < 1000; ++change) {
        stores.first->postChange({ CalBackendChange::Author::Others, false, false, true, { u"Home"_s } });
        stores.second->postChange({ CalBackendChange::Author::Others, false, false, true, { u"Work"_s } });
    }
    QTRY_VERIFY(!spy.isEmpty());

    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.first().first().value<CalNotification>().calendarUids, (QSet<QString> { u"Home"_s, u"Work"_s }));
}

void CalCalendarStoreSavingTest::notificationNamesARenamedCalendar()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.second->addCalendar(makeCalendar(u"Home"_s));
    QSignalSpy spy(stores.store.get(), &CalCalendarStore::notificationPosted);

    stores.second->postChange({ CalBackendChange::Author::Others, false, false, true, { u"Home"_s } });
    QTRY_COMPARE(spy.count(), 1);

    QCOMPARE(spy.first().first().value<CalNotification>().calendarUids, QSet<QString> { u"Home~2"_s });
}

void CalCalendarStoreSavingTest::ownSaveIsAnnouncedAfterTheCall()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addTask(u"Home"_s, makeTask(u"a"_s, u"At home"_s));
    QSignalSpy spy(stores.store.get(), &CalCalendarStore::notificationPosted);

    QVERIFY(stores.store->saveTask_error(stores.tasks().first(), nullptr));
    QCOMPARE(spy.count(), 0);

    QTRY_COMPARE(spy.count(), 1);
    QCOMPARE(spy.first().first().value<CalNotification>().name, CalTasksChangedNotification);
}

void CalCalendarStoreSavingTest::saveReachesTheCalendarsBackend()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.second->addCalendar(makeCalendar(u"Work"_s));
    stores.second->addTask(u"Work"_s, makeTask(u"a"_s, u"At work"_s));
    const CalTaskPtr task = stores.tasks().first();
    task->setIsCompleted(true);

    QVERIFY(stores.store->saveTask_error(task, nullptr));

    QVERIFY(stores.second->storedTask(u"a"_s)->isCompleted());
    QCOMPARE(stores.first->saves(), 0);
}

void CalCalendarStoreSavingTest::saveIntoARenamedCalendarReachesItsBackend()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.second->addCalendar(makeCalendar(u"Home"_s));
    stores.second->addTask(u"Home"_s, makeTask(u"a"_s, u"In the second"_s));
    const CalTaskPtr task = stores.tasks().first();
    const QString uid = task->uid();
    task->setIsCompleted(true);

    QVERIFY(stores.store->saveTask_error(task, nullptr));

    QVERIFY(stores.second->storedTask(u"a"_s)->isCompleted());
    QCOMPARE(stores.second->storedTask(u"a"_s)->calendar()->uid(), u"Home"_s);
    QCOMPARE(task->calendar()->uid(), u"Home~2"_s);
    QCOMPARE(task->uid(), uid);
}

void CalCalendarStoreSavingTest::savedRecordCountsAsReadAnew()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addTask(u"Home"_s, makeTask(u"a"_s, u"At home"_s));
    const CalTaskPtr task = stores.tasks().first();
    task->setIsCompleted(true);
    QVERIFY(stores.store->saveTask_error(task, nullptr));

    task->setIsCompleted(false);

    QVERIFY(task->asRead()->isCompleted());
    QVERIFY(stores.store->saveTask_error(task, nullptr));
    QVERIFY(!stores.first->storedTask(u"a"_s)->isCompleted());
}

void CalCalendarStoreSavingTest::readOnlyCalendarRefusesASave()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeReadOnlyCalendar(u"shared"_s));
    stores.first->addTask(u"shared"_s, makeTask(u"a"_s, u"Read me"_s));
    const CalTaskPtr task = stores.tasks().first();
    task->setIsCompleted(true);

    StoreError error;
    QVERIFY(!stores.store->saveTask_error(task, &error));

    QCOMPARE(error.code, StoreError::Code::ReadOnly);
    QCOMPARE(error.message(), u"“Read me” in the calendar “shared” was not saved.\nThe calendar cannot be changed."_s);
    QCOMPARE(stores.first->saves(), 0);
}

void CalCalendarStoreSavingTest::refusalNamesTheItemAsItIsStored()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeReadOnlyCalendar(u"shared"_s));
    stores.first->addTask(u"shared"_s, makeTask(u"a"_s, u"Read me"_s));
    const CalTaskPtr task = stores.tasks().first();
    task->setTitle(u"Change me"_s);

    StoreError error;
    QVERIFY(!stores.store->saveTask_error(task, &error));
    QCOMPARE(error.item, u"Read me"_s);
    QVERIFY(!stores.store->removeTask_error(task, &error));
    QCOMPARE(error.item, u"Read me"_s);
}

void CalCalendarStoreSavingTest::calendarForEventsRefusesATask()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addCalendar(std::make_shared<CalCalendar>(
        CalCalendar::Values { .uid = u"meetings"_s, .title = u"Meetings"_s, .color = {}, .holdsTasks = false }));
    stores.first->addTask(u"Home"_s, makeTask(u"a"_s, u"Move me"_s));
    const CalTaskPtr task = stores.tasks().first();
    task->setCalendar(stores.store->calendarWithUID(u"meetings"_s));

    StoreError error;
    QVERIFY(!stores.store->saveTask_error(task, &error));

    QCOMPARE(error.code, StoreError::Code::Invalid);
    QCOMPARE(error.calendar, u"Meetings"_s);
}

void CalCalendarStoreSavingTest::taskWithoutCalendarIsRefused()
{
    const TwoBackends stores;
    const auto task = std::make_shared<CalTask>();

    StoreError error;
    QVERIFY(!stores.store->saveTask_error(task, &error));

    QCOMPARE(error.code, StoreError::Code::Invalid);
    QVERIFY(!error.reason.isEmpty());
}

void CalCalendarStoreSavingTest::vanishedCalendarIsAClearError()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addTask(u"Home"_s, makeTask(u"a"_s, u"At home"_s));
    const CalTaskPtr task = stores.tasks().first();
    stores.first->removeCalendar(u"Home"_s);

    StoreError error;
    QVERIFY(!stores.store->saveTask_error(task, &error));

    QCOMPARE(error.code, StoreError::Code::NotFound);
    QCOMPARE(error.calendar, u"Home"_s);
}

void CalCalendarStoreSavingTest::moveIntoAnotherBackendIsRefused()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.second->addCalendar(makeCalendar(u"Work"_s));
    stores.first->addTask(u"Home"_s, makeTask(u"a"_s, u"At home"_s));
    const CalTaskPtr task = stores.tasks().first();
    task->setCalendar(stores.store->calendarWithUID(u"Work"_s));

    StoreError error;
    QVERIFY(!stores.store->saveTask_error(task, &error));

    QCOMPARE(error.code, StoreError::Code::Invalid);
    QCOMPARE(stores.second->saves(), 0);
}

void CalCalendarStoreSavingTest::moveOutOfAReadOnlyCalendarIsRefused()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addCalendar(makeReadOnlyCalendar(u"shared"_s));
    stores.first->addTask(u"shared"_s, makeTask(u"a"_s, u"Read me"_s));
    const CalTaskPtr task = stores.tasks().first();
    task->setCalendar(stores.store->calendarWithUID(u"Home"_s));

    StoreError error;
    QVERIFY(!stores.store->saveTask_error(task, &error));

    QCOMPARE(error.code, StoreError::Code::ReadOnly);
    QCOMPARE(stores.first->saves(), 0);
}

void CalCalendarStoreSavingTest::movedTaskHasTheUidOfItsNewCalendar()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addCalendar(makeCalendar(u"Work"_s));
    stores.first->addTask(u"Home"_s, makeTask(u"a"_s, u"At home"_s));
    stores.first->addEvent(u"Home"_s,
        makeEvent(u"a"_s, u"Same UID"_s, localInstant("2026-03-11T09:00"), localInstant("2026-03-11T10:00")));
    const CalTaskPtr task = stores.tasks().first();
    task->setCalendar(stores.store->calendarWithUID(u"Work"_s));

    QVERIFY(stores.store->saveTask_error(task, nullptr));

    QCOMPARE(stores.first->storedTask(u"a"_s)->calendar()->uid(), u"Work"_s);
    QCOMPARE(task->uid(), stores.tasks().first()->uid());
    QVERIFY(task->uid() != u"a"_s);
}

void CalCalendarStoreSavingTest::newItemIsCreatedInItsCalendar()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.second->addCalendar(makeCalendar(u"Work"_s));
    const auto task = std::make_shared<CalTask>();
    task->setTitle(u"New to do"_s);
    task->setCalendar(stores.store->calendarWithUID(u"Work"_s));

    QVERIFY(stores.store->saveTask_error(task, nullptr));

    QCOMPARE(titles(stores.tasks()), QStringList { u"New to do"_s });
    QCOMPARE(stores.tasks().first()->calendar()->uid(), u"Work"_s);
    QVERIFY(!task->uid().isEmpty());
    QCOMPARE(task->uid(), stores.tasks().first()->uid());
}

void CalCalendarStoreSavingTest::newEventIsRefusedByACalendarForTasks()
{
    const TwoBackends stores;
    stores.first->addCalendar(std::make_shared<CalCalendar>(
        CalCalendar::Values { .uid = u"todos"_s, .title = u"To-dos"_s, .color = {}, .holdsEvents = false }));
    const auto event = std::make_shared<CalEvent>();
    event->setTitle(u"New event"_s);
    event->setCalendar(stores.store->calendars().first());

    StoreError error;
    QVERIFY(!stores.store->saveEvent_span_error(event, CalSpanThisEvent, &error));

    QCOMPARE(
        error.message(), u"“New event” in the calendar “To-dos” was not saved.\nThe calendar cannot hold events."_s);
    QCOMPARE(stores.first->saves(), 0);
}

void CalCalendarStoreSavingTest::eventIsSavedWithItsSpan()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addCalendar(makeCalendar(u"Work"_s));
    for (const char *start : { "2026-03-11T08:00", "2026-03-11T09:00" })
        stores.first->addEvent(
            u"Home"_s, makeOccurrence(u"pill"_s, u"Pill"_s, localInstant(start), localInstant(start).addSecs(60)));
    const CalEventPtr second = stores.events().at(1);
    second->setTitle(u"Other"_s);
    second->setCalendar(stores.store->calendarWithUID(u"Work"_s));

    QVERIFY(stores.store->saveEvent_span_error(second, CalSpanThisEvent, nullptr));

    // A series changes its calendar as a whole only.
    QCOMPARE(titles(stores.events()), (QStringList { u"Pill"_s, u"Other"_s }));
    QCOMPARE(stores.events().at(1)->calendar()->uid(), u"Home"_s);
    QCOMPARE(second->uid(), stores.events().at(1)->uid());
}

void CalCalendarStoreSavingTest::bothStepsOfTheEventSheetSucceed()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    const auto event = std::make_shared<CalEvent>();
    event->setCalendar(stores.store->calendars().first());
    event->setStartDate(localInstant("2026-03-11T12:00"));
    event->setEndDate(localInstant("2026-03-11T13:00"));

    event->setTitle(u"DUMBY Lunch"_s);
    QVERIFY(stores.store->saveEvent_span_error(event, CalSpanThisEvent, nullptr));
    event->setTitle(u"Lunch"_s);
    QVERIFY(stores.store->saveEvent_span_error(event, CalSpanAllEvents, nullptr));

    QCOMPARE(titles(stores.events()), QStringList { u"Lunch"_s });
    QCOMPARE(stores.first->writes(), (QStringList { u"this: DUMBY Lunch"_s, u"all: Lunch"_s }));
}

void CalCalendarStoreSavingTest::seriesIsChangedAsAWhole()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    for (const char *start : { "2026-03-11T08:00", "2026-03-11T09:00" })
        stores.first->addEvent(
            u"Home"_s, makeOccurrence(u"pill"_s, u"Pill"_s, localInstant(start), localInstant(start).addSecs(60)));
    const CalEventPtr second = stores.events().at(1);
    second->setStartDate(second->startDate().addSecs(600));
    second->setEndDate(second->endDate().addSecs(600));

    second->setTitle(u"DUMBY Tablet"_s);
    QVERIFY(stores.store->saveEvent_span_error(second, CalSpanThisEvent, nullptr));
    second->setTitle(u"Tablet"_s);
    QVERIFY(stores.store->saveEvent_span_error(second, CalSpanAllEvents, nullptr));

    QCOMPARE(titles(stores.events()), (QStringList { u"Tablet"_s, u"Tablet"_s }));
    QCOMPARE(stores.events().at(0)->startDate(), localInstant("2026-03-11T08:10"));
    QCOMPARE(stores.events().at(1)->startDate(), localInstant("2026-03-11T09:10"));
}

void CalCalendarStoreSavingTest::backendsRefusalIsPassedOn()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addTask(u"Home"_s, makeTask(u"a"_s, u"At home"_s));
    stores.first->refuseSaves(StoreError::Code::Io, u"The disk is full."_s);

    StoreError error;
    QVERIFY(!stores.store->saveTask_error(stores.tasks().first(), &error));

    QCOMPARE(error.code, StoreError::Code::Io);
    QCOMPARE(error.message(), u"“At home” in the calendar “Home” was not saved.\nThe disk is full."_s);
}

void CalCalendarStoreSavingTest::refusedSaveKeepsTheRecordsValues()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.second->addCalendar(makeCalendar(u"Home"_s));
    stores.second->addTask(u"Home"_s, makeTask(u"a"_s, u"In the second"_s));
    stores.second->refuseSaves(StoreError::Code::Io, u"The disk is full."_s);
    const CalTaskPtr task = stores.tasks().first();
    task->setIsCompleted(true);

    QVERIFY(!stores.store->saveTask_error(task, nullptr));

    QVERIFY(task->isCompleted());
    QVERIFY(!task->asRead()->isCompleted());
    QCOMPARE(task->calendar()->uid(), u"Home~2"_s);
    QVERIFY(!stores.tasks().first()->isCompleted());
}

void CalCalendarStoreSavingTest::errorMayBeNull()
{
    const TwoBackends stores;

    QVERIFY(!stores.store->saveTask_error(std::make_shared<CalTask>(), nullptr));
}

void CalCalendarStoreSavingTest::storeIsCompleteWhenAllBackendsAre()
{
    const TwoBackends stores;
    stores.first->startLoading();
    stores.second->startLoading();
    QVERIFY(!stores.store->isComplete());

    stores.second->finishLoading();
    QVERIFY(!stores.store->isComplete());
    stores.first->finishLoading();

    QVERIFY(stores.store->isComplete());
}

void CalCalendarStoreSavingTest::loadedIsAnnouncedOnce()
{
    auto backend = std::make_unique<MemoryBackend>();
    auto other = std::make_unique<MemoryBackend>();
    MemoryBackend *const first = backend.get();
    MemoryBackend *const second = other.get();
    first->startLoading();
    second->startLoading();
    std::vector<std::unique_ptr<CalendarStoreBackend>> backends;
    backends.push_back(std::move(backend));
    backends.push_back(std::move(other));
    const CalCalendarStore store(std::move(backends));
    QSignalSpy spy(&store, &CalCalendarStore::loaded);

    first->finishLoading();
    QCoreApplication::processEvents();
    QCOMPARE(spy.count(), 0);
    second->finishLoading();
    second->finishLoading();
    QCOMPARE(spy.count(), 0);
    QCoreApplication::processEvents();

    QCOMPARE(spy.count(), 1);
}

VANTLE_TEST(CalCalendarStoreSavingTest)
#include "CalCalendarStoreSavingTest.moc"
