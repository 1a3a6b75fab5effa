// SPDX-License-Identifier: MIT
#include "MemoryBackend.h"
#include "TestRecords.h"
#include "TestRegistry.h"

#include <CalCalendarStore.h>

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

// A store over two back ends, "first" the better one.
struct Stores {
    Stores()
    {
        auto ownFirst = std::make_unique<MemoryBackend>();
        auto ownSecond = std::make_unique<MemoryBackend>();
        first = ownFirst.get();
        second = ownSecond.get();
        std::vector<std::unique_ptr<CalendarStoreBackend>> backends;
        backends.push_back(std::move(ownFirst));
        backends.push_back(std::move(ownSecond));
        store = std::make_unique<CalCalendarStore>(std::move(backends));
    }

    CalEventList events(const char *start = "2026-03-11T00:00:00", const char *end = "2026-03-11T23:59:59") const
    {
        return store->eventsWithPredicate(CalCalendarStore::eventPredicateWithStartDate_endDate_calendars(
            localInstant(start), localInstant(end), store->calendars()));
    }
    CalTaskList tasks() const
    {
        return store->tasksWithPredicate(CalCalendarStore::taskPredicateWithCalendars(store->calendars()));
    }

    MemoryBackend *first;
    MemoryBackend *second;
    std::unique_ptr<CalCalendarStore> store;
};

template <typename List> QStringList uids(const List &records)
{
    QStringList all;
    for (const auto &record : records)
        all.append(record->uid());
    return all;
}

template <typename List> QStringList titles(const List &records)
{
    QStringList all;
    for (const auto &record : records)
        all.append(record->title().value_or(u"(none)"_s));
    return all;
}

CalEventPtr morningEvent(const QString &uid, const QString &title)
{
    return makeEvent(uid, title, localInstant("2026-03-11T09:00"), localInstant("2026-03-11T10:00"));
}

CalTaskPtr withOrigin(const CalTaskPtr &task, const std::function<void(CalItemOrigin &)> &change)
{
    CalItemOrigin origin = task->origin();
    change(origin);
    task->setOrigin(origin);
    return task;
}

} // namespace

class CalCalendarStoreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void storeWithoutBackendsIsEmpty();
    void editableCalendarsComeBeforeReadOnlyOnes();
    void declaredDefaultComesFirstFromAnyBackend();
    void declaredDefaultOfTheBetterBackendWins();
    void calendarIsFoundByUid();
    void laterCalendarOfTheSameUidGetsASuffix();
    void suffixAvoidsAnExistingCalendar();
    void suffixFollowsTheBackendsAndNotTheOrder();
    void itemsOfARenamedCalendarAreInIt();

    void uidIsTheItemsUid();
    void occurrenceHasAUidOfItsOwn();
    void sameUidInALaterCalendarNamesTheCalendar();
    void sameUidInOneCalendarIsToldApart();
    void uidIsStableAcrossQueries();
    void uidDoesNotDependOnTheCalendarsAskedFor();
    void itemWithoutUidIsKnownByItsResource();
    void differentItemsNeverShareAUid();

    void eventsAreSortedByStartThenTitleThenUid();
    void eventsOfAllBackendsAreMerged();
    void absentTitleSortsFirst();
    void onlyCalendarsAskedForAreAnswered();
    void emptyListOfCalendarsMatchesNothing();
    void unknownCalendarHoldsNothing();
    void eventPredicateAsksForNoTasks();
    void tasksComeInTheOrderOfCalendarsThenByUid();
    void completedTasksSinceAnInstantIncludeIt();
    void uncompletedTasksAreAskedFor();
    void everyQueryGivesFreshRecords();
    void eachBackendIsAskedOnce();

    void notificationsTellWhatChangedAndByWhom_data();
    void notificationsTellWhatChangedAndByWhom();
    void burstOfChangesIsOneNotification();
    void notificationNamesARenamedCalendar();
    void ownSaveIsAnnouncedAfterTheCall();

    void saveReachesTheCalendarsBackend();
    void saveIntoARenamedCalendarReachesItsBackend();
    void savedRecordCountsAsReadAnew();
    void readOnlyCalendarRefusesASave();
    void calendarForEventsRefusesATask();
    void taskWithoutCalendarIsRefused();
    void vanishedCalendarIsAClearError();
    void moveIntoAnotherBackendIsRefused();
    void backendsRefusalIsPassedOn();
    void refusedSaveKeepsTheRecordsValues();
    void errorMayBeNull();

    void storeIsCompleteWhenAllBackendsAre();
    void loadedIsAnnouncedOnce();
};

void CalCalendarStoreTest::storeWithoutBackendsIsEmpty()
{
    CalCalendarStore store({});

    QVERIFY(store.calendars().isEmpty());
    QVERIFY(store.isComplete());
    QVERIFY(store.tasksWithPredicate(CalCalendarStore::taskPredicateWithCalendars({})).isEmpty());
}

void CalCalendarStoreTest::editableCalendarsComeBeforeReadOnlyOnes()
{
    const Stores stores;
    stores.first->addCalendar(makeReadOnlyCalendar(u"holidays"_s));
    stores.first->addCalendar(makeCalendar(u"zoo"_s));
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.second->addCalendar(makeReadOnlyCalendar(u"birthdays"_s));
    stores.second->addCalendar(makeCalendar(u"Alpha"_s));

    QCOMPARE(uids(stores.store->calendars()),
        (QStringList { u"zoo"_s, u"Home"_s, u"Alpha"_s, u"holidays"_s, u"birthdays"_s }));
}

void CalCalendarStoreTest::declaredDefaultComesFirstFromAnyBackend()
{
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.second->addCalendar(makeCalendar(u"Chosen"_s));
    stores.second->addCalendar(makeCalendar(u"Other"_s));

    stores.second->setHasDeclaredDefault(true);

    QCOMPARE(uids(stores.store->calendars()), (QStringList { u"Chosen"_s, u"Home"_s, u"Other"_s }));
}

void CalCalendarStoreTest::declaredDefaultOfTheBetterBackendWins()
{
    const Stores stores;
    stores.first->addCalendar(makeReadOnlyCalendar(u"Chosen"_s));
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.second->addCalendar(makeCalendar(u"AlsoChosen"_s));

    stores.first->setHasDeclaredDefault(true);
    stores.second->setHasDeclaredDefault(true);

    QCOMPARE(uids(stores.store->calendars()), (QStringList { u"Chosen"_s, u"Home"_s, u"AlsoChosen"_s }));
}

void CalCalendarStoreTest::calendarIsFoundByUid()
{
    const Stores stores;
    stores.second->addCalendar(makeCalendar(u"Home"_s, Qt::red));

    QCOMPARE(stores.store->calendarWithUID(u"Home"_s)->color(), QColor(Qt::red));
    QVERIFY(!stores.store->calendarWithUID(u"home"_s));
}

void CalCalendarStoreTest::laterCalendarOfTheSameUidGetsASuffix()
{
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s, Qt::red));
    stores.second->addCalendar(makeReadOnlyCalendar(u"Home"_s, Qt::blue));

    QCOMPARE(uids(stores.store->calendars()), (QStringList { u"Home"_s, u"Home~2"_s }));
    const CalCalendarPtr renamed = stores.store->calendarWithUID(u"Home~2"_s);
    QCOMPARE(renamed->color(), QColor(Qt::blue));
    QCOMPARE(renamed->title(), u"Home"_s);
    QVERIFY(!renamed->isEditable());
}

void CalCalendarStoreTest::suffixAvoidsAnExistingCalendar()
{
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.second->addCalendar(makeCalendar(u"Home"_s));
    stores.second->addCalendar(makeCalendar(u"Home~2"_s));

    QCOMPARE(uids(stores.store->calendars()), (QStringList { u"Home"_s, u"Home~3"_s, u"Home~2"_s }));
}

void CalCalendarStoreTest::suffixFollowsTheBackendsAndNotTheOrder()
{
    const Stores stores;
    stores.first->addCalendar(makeReadOnlyCalendar(u"Home"_s));
    stores.second->addCalendar(makeCalendar(u"Home"_s));

    QCOMPARE(uids(stores.store->calendars()), (QStringList { u"Home~2"_s, u"Home"_s }));
}

void CalCalendarStoreTest::itemsOfARenamedCalendarAreInIt()
{
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.second->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addTask(u"Home"_s, makeTask(u"one"_s, u"One"_s));
    stores.second->addTask(u"Home"_s, makeTask(u"two"_s, u"Two"_s));

    const CalTaskList all = stores.tasks();
    const CalTaskList ofRenamed = stores.store->tasksWithPredicate(
        CalCalendarStore::taskPredicateWithCalendars({ stores.store->calendarWithUID(u"Home~2"_s) }));

    QCOMPARE(uids(all), (QStringList { u"one"_s, u"two"_s }));
    QCOMPARE(uids(ofRenamed), QStringList(u"two"_s));
    QCOMPARE(ofRenamed.first()->calendar()->uid(), u"Home~2"_s);
}

void CalCalendarStoreTest::uidIsTheItemsUid()
{
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addEvent(u"Home"_s, morningEvent(u"20260311T090000Z-1#a@example.org"_s, u"Call"_s));

    QCOMPARE(uids(stores.events()), QStringList(u"20260311T090000Z-1#a@example.org"_s));
}

void CalCalendarStoreTest::occurrenceHasAUidOfItsOwn()
{
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addEvent(u"Home"_s,
        makeOccurrence(u"series"_s, u"Walk"_s, localInstant("2026-03-11T07:00"), localInstant("2026-03-11T08:00")));
    stores.first->addEvent(u"Home"_s,
        makeOccurrence(u"series"_s, u"Walk"_s, localInstant("2026-03-11T18:00"), localInstant("2026-03-11T19:00")));

    const QStringList found = uids(stores.events());

    QCOMPARE(found.size(), 2);
    QVERIFY(found.at(0) != found.at(1));
    QVERIFY(!found.contains(u"series"_s));
    QVERIFY(found.at(0).startsWith(u"series"_s));
}

void CalCalendarStoreTest::sameUidInALaterCalendarNamesTheCalendar()
{
    const Stores stores;
    stores.first->addCalendar(makeReadOnlyCalendar(u"shared"_s));
    stores.second->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addTask(u"shared"_s, makeTask(u"uid"_s, u"In the shared one"_s));
    stores.second->addTask(u"Home"_s, makeTask(u"uid"_s, u"At home"_s));

    const CalTaskList tasks = stores.tasks();

    // The editable calendar is the earlier one in the store's order.
    QCOMPARE(titles(tasks), (QStringList { u"At home"_s, u"In the shared one"_s }));
    QCOMPARE(tasks.at(0)->uid(), u"uid"_s);
    QVERIFY(tasks.at(1)->uid() != u"uid"_s);
    QVERIFY(tasks.at(1)->uid().contains(u"shared"_s));
    QCOMPARE(tasks.at(1)->origin().plainUid, u"uid"_s);
}

void CalCalendarStoreTest::sameUidInOneCalendarIsToldApart()
{
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addTask(u"Home"_s, makeTask(u"uid"_s, u"One"_s));
    stores.first->addTask(u"Home"_s,
        withOrigin(makeTask(u"uid"_s, u"Two"_s), [](CalItemOrigin &origin) { origin.distinction = u"2"_s; }));

    const QStringList found = uids(stores.tasks());

    QCOMPARE(found.first(), u"uid"_s);
    QCOMPARE(QSet<QString>(found.cbegin(), found.cend()).size(), 2);
}

void CalCalendarStoreTest::uidIsStableAcrossQueries()
{
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.second->addCalendar(makeCalendar(u"Home"_s));
    const auto start = localInstant("2026-03-11T07:00");
    stores.first->addEvent(u"Home"_s, makeOccurrence(u"series"_s, u"Walk"_s, start, start));
    stores.second->addEvent(u"Home"_s, makeOccurrence(u"series"_s, u"Walk"_s, start, start));

    const QStringList once = uids(stores.events());
    const QStringList again = uids(stores.events("2026-03-10T00:00:00", "2026-03-12T23:59:59"));

    QCOMPARE(again, once);
}

void CalCalendarStoreTest::uidDoesNotDependOnTheCalendarsAskedFor()
{
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addCalendar(makeCalendar(u"Work"_s));
    stores.first->addTask(u"Home"_s, makeTask(u"uid"_s, u"At home"_s));
    stores.first->addTask(u"Work"_s, makeTask(u"uid"_s, u"At work"_s));

    const CalTaskList all = stores.tasks();
    const CalTaskList ofWork = stores.store->tasksWithPredicate(
        CalCalendarStore::taskPredicateWithCalendars({ stores.store->calendarWithUID(u"Work"_s) }));

    QCOMPARE(ofWork.first()->uid(), all.at(1)->uid());
}

void CalCalendarStoreTest::itemWithoutUidIsKnownByItsResource()
{
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    const auto nameless = [](const QString &resource) {
        return withOrigin(makeTask({}, u"Nameless"_s), [&](CalItemOrigin &origin) { origin.resource = resource; });
    };
    stores.first->addTask(u"Home"_s, nameless(u"a.ics"_s));
    stores.first->addTask(u"Home"_s, nameless(u"b.ics"_s));

    const QStringList found = uids(stores.tasks());

    QVERIFY(!found.contains(QString()));
    QVERIFY(found.at(0) != found.at(1));
}

void CalCalendarStoreTest::differentItemsNeverShareAUid()
{
    // Whatever stands in one part must not look like another part.
    const QStringList parts { {}, u"a"_s, u"a\x1fra"_s, u"\x1f"_s, u"\x1b"_s, u"\x1bs"_s, u"\x1b\x1b"_s, u"a\x1f"_s,
        u"\x1fra"_s, u"ra"_s };
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    int items = 0;
    for (const QString &plainUid : parts) {
        for (const QString &recurrence : parts) {
            for (const QString &distinction : parts) {
                stores.first->addTask(u"Home"_s, withOrigin(makeTask(plainUid, {}), [&](CalItemOrigin &origin) {
                    origin.recurrenceId = recurrence;
                    origin.distinction = distinction;
                }));
                ++items;
            }
        }
    }

    const QStringList found = uids(stores.tasks());

    QCOMPARE(found.size(), items);
    QCOMPARE(QSet<QString>(found.cbegin(), found.cend()).size(), items);
}

void CalCalendarStoreTest::eventsAreSortedByStartThenTitleThenUid()
{
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    const auto add = [&](const CalEventPtr &event) { stores.first->addEvent(u"Home"_s, event); };
    add(morningEvent(u"6"_s, u"Same"_s));
    add(morningEvent(u"5"_s, u"Same"_s));
    add(morningEvent(u"4"_s, u"Earlier title"_s));
    add(makeEvent(u"3"_s, u"At midnight"_s, localInstant("2026-03-11T00:00"), localInstant("2026-03-11T01:00")));
    add(makeAllDayEvent(u"2"_s, u"Whole day"_s, QDate(2026, 3, 11), QDate(2026, 3, 11)));
    add(makeEvent(u"1"_s, u"Since yesterday"_s, localInstant("2026-03-10T22:00"), localInstant("2026-03-11T01:00")));

    QCOMPARE(uids(stores.events()), (QStringList { u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s, u"6"_s }));
}

void CalCalendarStoreTest::eventsOfAllBackendsAreMerged()
{
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.second->addCalendar(makeCalendar(u"Work"_s));
    stores.first->addEvent(u"Home"_s, morningEvent(u"a"_s, u"Second"_s));
    stores.second->addEvent(u"Work"_s, morningEvent(u"b"_s, u"First"_s));

    const CalEventList events = stores.events();

    QCOMPARE(titles(events), (QStringList { u"First"_s, u"Second"_s }));
    QCOMPARE(events.first()->calendar()->uid(), u"Work"_s);
}

void CalCalendarStoreTest::absentTitleSortsFirst()
{
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addEvent(u"Home"_s, morningEvent(u"a"_s, u"Title"_s));
    const CalEventPtr untitled = morningEvent(u"b"_s, {});
    untitled->setTitle(std::nullopt);
    stores.first->addEvent(u"Home"_s, untitled);

    QCOMPARE(titles(stores.events()), (QStringList { u"(none)"_s, u"Title"_s }));
}

void CalCalendarStoreTest::onlyCalendarsAskedForAreAnswered()
{
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addCalendar(makeCalendar(u"Work"_s));
    stores.first->addEvent(u"Home"_s, morningEvent(u"a"_s, u"At home"_s));
    stores.first->addEvent(u"Work"_s, morningEvent(u"b"_s, u"At work"_s));

    // A record of the calendar from any earlier question serves.
    const CalEventList events
        = stores.store->eventsWithPredicate(CalCalendarStore::eventPredicateWithStartDate_endDate_calendars(
            localInstant("2026-03-11T00:00"), localInstant("2026-03-11T23:59:59"), { makeCalendar(u"Work"_s) }));

    QCOMPARE(titles(events), QStringList(u"At work"_s));
}

void CalCalendarStoreTest::emptyListOfCalendarsMatchesNothing()
{
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addTask(u"Home"_s, makeTask(u"a"_s, u"At home"_s));

    QVERIFY(stores.store->tasksWithPredicate(CalCalendarStore::taskPredicateWithCalendars({})).isEmpty());
}

void CalCalendarStoreTest::unknownCalendarHoldsNothing()
{
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addTask(u"Home"_s, makeTask(u"a"_s, u"At home"_s));

    const auto predicate = CalCalendarStore::taskPredicateWithCalendars({ makeCalendar(u"Gone"_s), nullptr });

    QVERIFY(stores.store->tasksWithPredicate(predicate).isEmpty());
}

void CalCalendarStoreTest::eventPredicateAsksForNoTasks()
{
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addTask(u"Home"_s, makeTask(u"a"_s, u"At home"_s));
    stores.first->addEvent(u"Home"_s, morningEvent(u"b"_s, u"Call"_s));

    const CalCalendarList calendars = stores.store->calendars();
    const auto events = CalCalendarStore::eventPredicateWithStartDate_endDate_calendars(
        localInstant("2026-03-11T00:00"), localInstant("2026-03-12T00:00"), calendars);

    QVERIFY(stores.store->tasksWithPredicate(events).isEmpty());
    QVERIFY(stores.store->eventsWithPredicate(CalCalendarStore::taskPredicateWithCalendars(calendars)).isEmpty());
}

void CalCalendarStoreTest::tasksComeInTheOrderOfCalendarsThenByUid()
{
    const Stores stores;
    stores.first->addCalendar(makeReadOnlyCalendar(u"shared"_s));
    stores.first->addCalendar(makeCalendar(u"Work"_s));
    stores.second->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addTask(u"shared"_s, makeTask(u"a"_s, {}));
    stores.first->addTask(u"Work"_s, makeTask(u"z"_s, {}));
    stores.first->addTask(u"Work"_s, makeTask(u"c"_s, {}));
    stores.second->addTask(u"Home"_s, makeTask(u"b"_s, {}));

    QCOMPARE(uids(stores.tasks()), (QStringList { u"c"_s, u"z"_s, u"b"_s, u"a"_s }));
}

void CalCalendarStoreTest::completedTasksSinceAnInstantIncludeIt()
{
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addTask(u"Home"_s, makeCompletedTask(u"before"_s, {}, localInstant("2026-03-08T23:59:59")));
    stores.first->addTask(u"Home"_s, makeCompletedTask(u"at"_s, {}, localInstant("2026-03-09T00:00:00")));
    stores.first->addTask(u"Home"_s, makeTask(u"open"_s, {}));

    const auto predicate = CalCalendarStore::taskPredicateWithTasksCompletedSince_calendars(
        localInstant("2026-03-09T00:00:00"), stores.store->calendars());

    QCOMPARE(uids(stores.store->tasksWithPredicate(predicate)), QStringList(u"at"_s));
}

void CalCalendarStoreTest::uncompletedTasksAreAskedFor()
{
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addTask(u"Home"_s, makeCompletedTask(u"done"_s, {}, localInstant("2026-03-09T00:00:00")));
    stores.first->addTask(u"Home"_s, makeTask(u"open"_s, {}));

    const auto predicate = CalCalendarStore::taskPredicateWithUncompletedTasks(stores.store->calendars());

    QCOMPARE(uids(stores.store->tasksWithPredicate(predicate)), QStringList(u"open"_s));
}

void CalCalendarStoreTest::everyQueryGivesFreshRecords()
{
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addTask(u"Home"_s, makeTask(u"a"_s, u"At home"_s));

    const CalTaskPtr once = stores.tasks().first();
    once->setTitle(u"Changed"_s);
    const CalTaskPtr again = stores.tasks().first();

    QVERIFY(once != again);
    QVERIFY(once->isEqual(*again));
    QCOMPARE(again->title(), u"At home"_s);
}

void CalCalendarStoreTest::eachBackendIsAskedOnce()
{
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addCalendar(makeCalendar(u"Work"_s));

    stores.tasks();
    stores.events();

    QCOMPARE(stores.first->taskQueries(), 1);
    QCOMPARE(stores.first->eventQueries(), 1);
    QCOMPARE(stores.second->taskQueries(), 0);
}

void CalCalendarStoreTest::notificationsTellWhatChangedAndByWhom_data()
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

void CalCalendarStoreTest::notificationsTellWhatChangedAndByWhom()
{
    QFETCH(const CalBackendChange, change);
    QFETCH(QList<int>, names);
    const Stores stores;
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

void CalCalendarStoreTest::burstOfChangesIsOneNotification()
{
    const Stores stores;
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

void CalCalendarStoreTest::notificationNamesARenamedCalendar()
{
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.second->addCalendar(makeCalendar(u"Home"_s));
    QSignalSpy spy(stores.store.get(), &CalCalendarStore::notificationPosted);

    stores.second->postChange({ CalBackendChange::Author::Others, false, false, true, { u"Home"_s } });
    QTRY_COMPARE(spy.count(), 1);

    QCOMPARE(spy.first().first().value<CalNotification>().calendarUids, QSet<QString> { u"Home~2"_s });
}

void CalCalendarStoreTest::ownSaveIsAnnouncedAfterTheCall()
{
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addTask(u"Home"_s, makeTask(u"a"_s, u"At home"_s));
    QSignalSpy spy(stores.store.get(), &CalCalendarStore::notificationPosted);

    QVERIFY(stores.store->saveTask_error(stores.tasks().first(), nullptr));
    QCOMPARE(spy.count(), 0);

    QTRY_COMPARE(spy.count(), 1);
    QCOMPARE(spy.first().first().value<CalNotification>().name, CalTasksChangedNotification);
}

void CalCalendarStoreTest::saveReachesTheCalendarsBackend()
{
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.second->addCalendar(makeCalendar(u"Work"_s));
    stores.second->addTask(u"Work"_s, makeTask(u"a"_s, u"At work"_s));
    const CalTaskPtr task = stores.tasks().first();
    task->setIsCompleted(true);

    QVERIFY(stores.store->saveTask_error(task, nullptr));

    QVERIFY(stores.second->storedTask(u"a"_s)->isCompleted());
    QCOMPARE(stores.first->saves(), 0);
}

void CalCalendarStoreTest::saveIntoARenamedCalendarReachesItsBackend()
{
    const Stores stores;
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

void CalCalendarStoreTest::savedRecordCountsAsReadAnew()
{
    const Stores stores;
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

void CalCalendarStoreTest::readOnlyCalendarRefusesASave()
{
    const Stores stores;
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

void CalCalendarStoreTest::calendarForEventsRefusesATask()
{
    const Stores stores;
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

void CalCalendarStoreTest::taskWithoutCalendarIsRefused()
{
    const Stores stores;
    const auto task = std::make_shared<CalTask>();

    StoreError error;
    QVERIFY(!stores.store->saveTask_error(task, &error));

    QCOMPARE(error.code, StoreError::Code::Invalid);
    QVERIFY(!error.reason.isEmpty());
}

void CalCalendarStoreTest::vanishedCalendarIsAClearError()
{
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addTask(u"Home"_s, makeTask(u"a"_s, u"At home"_s));
    const CalTaskPtr task = stores.tasks().first();
    stores.first->removeCalendar(u"Home"_s);

    StoreError error;
    QVERIFY(!stores.store->saveTask_error(task, &error));

    QCOMPARE(error.code, StoreError::Code::NotFound);
    QCOMPARE(error.calendar, u"Home"_s);
}

void CalCalendarStoreTest::moveIntoAnotherBackendIsRefused()
{
    const Stores stores;
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

void CalCalendarStoreTest::backendsRefusalIsPassedOn()
{
    const Stores stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addTask(u"Home"_s, makeTask(u"a"_s, u"At home"_s));
    stores.first->refuseSaves(StoreError::Code::Io, u"The disk is full."_s);

    StoreError error;
    QVERIFY(!stores.store->saveTask_error(stores.tasks().first(), &error));

    QCOMPARE(error.code, StoreError::Code::Io);
    QCOMPARE(error.message(), u"“At home” in the calendar “Home” was not saved.\nThe disk is full."_s);
}

void CalCalendarStoreTest::refusedSaveKeepsTheRecordsValues()
{
    const Stores stores;
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

void CalCalendarStoreTest::errorMayBeNull()
{
    const Stores stores;

    QVERIFY(!stores.store->saveTask_error(std::make_shared<CalTask>(), nullptr));
}

void CalCalendarStoreTest::storeIsCompleteWhenAllBackendsAre()
{
    const Stores stores;
    stores.first->startLoading();
    stores.second->startLoading();
    QVERIFY(!stores.store->isComplete());

    stores.second->finishLoading();
    QVERIFY(!stores.store->isComplete());
    stores.first->finishLoading();

    QVERIFY(stores.store->isComplete());
}

void CalCalendarStoreTest::loadedIsAnnouncedOnce()
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

VANTLE_TEST(CalCalendarStoreTest)
#include "CalCalendarStoreTest.moc"
