// SPDX-License-Identifier: MIT
#include "TestRegistry.h"
#include "TwoBackends.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

CalEventPtr morningEvent(const QString &uid, const QString &title)
{
    return makeEvent(uid, title, localInstant("2026-03-11T09:00"), localInstant("2026-03-11T10:00"));
}

} // namespace

class CalCalendarStoreQueriesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
    void calendarsOtherNameIsItsBackEnds();
};

void CalCalendarStoreQueriesTest::eventsAreSortedByStartThenTitleThenUid()
{
    const TwoBackends stores;
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

void CalCalendarStoreQueriesTest::eventsOfAllBackendsAreMerged()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.second->addCalendar(makeCalendar(u"Work"_s));
    stores.first->addEvent(u"Home"_s, morningEvent(u"a"_s, u"Second"_s));
    stores.second->addEvent(u"Work"_s, morningEvent(u"b"_s, u"First"_s));

    const CalEventList events = stores.events();

    QCOMPARE(titles(events), (QStringList { u"First"_s, u"Second"_s }));
    QCOMPARE(events.first()->calendar()->uid(), u"Work"_s);
}

void CalCalendarStoreQueriesTest::absentTitleSortsFirst()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addEvent(u"Home"_s, morningEvent(u"a"_s, u"Title"_s));
    const CalEventPtr untitled = morningEvent(u"b"_s, {});
    untitled->setTitle(std::nullopt);
    stores.first->addEvent(u"Home"_s, untitled);

    QCOMPARE(titles(stores.events()), (QStringList { u"(none)"_s, u"Title"_s }));
}

void CalCalendarStoreQueriesTest::onlyCalendarsAskedForAreAnswered()
{
    const TwoBackends stores;
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

void CalCalendarStoreQueriesTest::emptyListOfCalendarsMatchesNothing()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addTask(u"Home"_s, makeTask(u"a"_s, u"At home"_s));

    QVERIFY(stores.store->tasksWithPredicate(CalCalendarStore::taskPredicateWithCalendars({})).isEmpty());
}

void CalCalendarStoreQueriesTest::unknownCalendarHoldsNothing()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addTask(u"Home"_s, makeTask(u"a"_s, u"At home"_s));

    const auto predicate = CalCalendarStore::taskPredicateWithCalendars({ makeCalendar(u"Gone"_s), nullptr });

    QVERIFY(stores.store->tasksWithPredicate(predicate).isEmpty());
}

void CalCalendarStoreQueriesTest::eventPredicateAsksForNoTasks()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addTask(u"Home"_s, makeTask(u"a"_s, u"At home"_s));
    stores.first->addEvent(u"Home"_s, morningEvent(u"b"_s, u"Call"_s));

    const CalCalendarList calendars = stores.store->calendars();
    const auto events = CalCalendarStore::eventPredicateWithStartDate_endDate_calendars(
        localInstant("2026-03-11T00:00"), localInstant("2026-03-12T00:00"), calendars);

    QVERIFY(stores.store->tasksWithPredicate(events).isEmpty());
    QVERIFY(stores.store->eventsWithPredicate(CalCalendarStore::taskPredicateWithCalendars(calendars)).isEmpty());
}

void CalCalendarStoreQueriesTest::tasksComeInTheOrderOfCalendarsThenByUid()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeReadOnlyCalendar(u"shared"_s));
    stores.first->addCalendar(makeCalendar(u"Work"_s));
    stores.second->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addTask(u"shared"_s, makeTask(u"a"_s, {}));
    stores.first->addTask(u"Work"_s, makeTask(u"z"_s, {}));
    stores.first->addTask(u"Work"_s, makeTask(u"c"_s, {}));
    stores.second->addTask(u"Home"_s, makeTask(u"b"_s, {}));

    QCOMPARE(uids(stores.tasks()), (QStringList { u"c"_s, u"z"_s, u"b"_s, u"a"_s }));
}

void CalCalendarStoreQueriesTest::completedTasksSinceAnInstantIncludeIt()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addTask(u"Home"_s, makeCompletedTask(u"before"_s, {}, localInstant("2026-03-08T23:59:59")));
    stores.first->addTask(u"Home"_s, makeCompletedTask(u"at"_s, {}, localInstant("2026-03-09T00:00:00")));
    stores.first->addTask(u"Home"_s, makeTask(u"open"_s, {}));

    const auto predicate = CalCalendarStore::taskPredicateWithTasksCompletedSince_calendars(
        localInstant("2026-03-09T00:00:00"), stores.store->calendars());

    QCOMPARE(uids(stores.store->tasksWithPredicate(predicate)), QStringList(u"at"_s));
}

void CalCalendarStoreQueriesTest::uncompletedTasksAreAskedFor()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addTask(u"Home"_s, makeCompletedTask(u"done"_s, {}, localInstant("2026-03-09T00:00:00")));
    stores.first->addTask(u"Home"_s, makeTask(u"open"_s, {}));

    const auto predicate = CalCalendarStore::taskPredicateWithUncompletedTasks(stores.store->calendars());

    QCOMPARE(uids(stores.store->tasksWithPredicate(predicate)), QStringList(u"open"_s));
}

void CalCalendarStoreQueriesTest::everyQueryGivesFreshRecords()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addTask(u"Home"_s, makeTask(u"a"_s, u"At home"_s));

    const CalTaskPtr once = stores.tasks().first();
    once->setTitle(u"Changed"_s);
    const CalTaskPtr again = stores.tasks().first();

    QVERIFY(once != again);
    QVERIFY(once->isEqual(*again));
    QCOMPARE(again->title(), u"At home"_s);
}

void CalCalendarStoreQueriesTest::eachBackendIsAskedOnce()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addCalendar(makeCalendar(u"Work"_s));

    stores.tasks();
    stores.events();

    QCOMPARE(stores.first->taskQueries(), 1);
    QCOMPARE(stores.first->eventQueries(), 1);
    QCOMPARE(stores.second->taskQueries(), 0);
}

void CalCalendarStoreQueriesTest::calendarsOtherNameIsItsBackEnds()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.second->addCalendar(makeCalendar(u"Home"_s));
    stores.second->setDesktopSource(u"Home"_s, CalItemKind::Task, u"task-list"_s);
    const CalCalendarList calendars = stores.store->calendars();

    QCOMPARE(stores.store->desktopSourceUid(calendars.at(0)->uid(), CalItemKind::Task), QString());
    QCOMPARE(stores.store->desktopSourceUid(calendars.at(1)->uid(), CalItemKind::Task), u"task-list"_s);
    QCOMPARE(stores.store->desktopSourceUid(calendars.at(1)->uid(), CalItemKind::Event), QString());
    QCOMPARE(stores.store->desktopSourceUid(u"Nowhere"_s, CalItemKind::Task), QString());
}

VANTLE_TEST(CalCalendarStoreQueriesTest)
#include "CalCalendarStoreQueriesTest.moc"
