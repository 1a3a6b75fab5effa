// SPDX-License-Identifier: MIT
#include "TestRegistry.h"
#include "TwoBackends.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

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

    void silentCalendarsOfAllBackendsAreTold();
    void serviceThatWasNeverReachedIsTold();
    void aBackendFoundLaterIsTheBest();
    void whatABackendFoundLaterHoldsIsTold();
    void theStoreIsCompleteAgainWithABackendFoundLater();
    void everyBackendIsRefreshed();
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
    const TwoBackends stores;
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
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.second->addCalendar(makeCalendar(u"Chosen"_s));
    stores.second->addCalendar(makeCalendar(u"Other"_s));

    stores.second->setHasDeclaredDefault(true);

    QCOMPARE(uids(stores.store->calendars()), (QStringList { u"Chosen"_s, u"Home"_s, u"Other"_s }));
}

void CalCalendarStoreTest::declaredDefaultOfTheBetterBackendWins()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeReadOnlyCalendar(u"Chosen"_s));
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.second->addCalendar(makeCalendar(u"AlsoChosen"_s));

    stores.first->setHasDeclaredDefault(true);
    stores.second->setHasDeclaredDefault(true);

    QCOMPARE(uids(stores.store->calendars()), (QStringList { u"Chosen"_s, u"Home"_s, u"AlsoChosen"_s }));
}

void CalCalendarStoreTest::calendarIsFoundByUid()
{
    const TwoBackends stores;
    stores.second->addCalendar(makeCalendar(u"Home"_s, Qt::red));

    QCOMPARE(stores.store->calendarWithUID(u"Home"_s)->color(), QColor(Qt::red));
    QVERIFY(!stores.store->calendarWithUID(u"home"_s));
}

void CalCalendarStoreTest::laterCalendarOfTheSameUidGetsASuffix()
{
    const TwoBackends stores;
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
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.second->addCalendar(makeCalendar(u"Home"_s));
    stores.second->addCalendar(makeCalendar(u"Home~2"_s));

    QCOMPARE(uids(stores.store->calendars()), (QStringList { u"Home"_s, u"Home~3"_s, u"Home~2"_s }));
}

void CalCalendarStoreTest::suffixFollowsTheBackendsAndNotTheOrder()
{
    const TwoBackends stores;
    stores.first->addCalendar(makeReadOnlyCalendar(u"Home"_s));
    stores.second->addCalendar(makeCalendar(u"Home"_s));

    QCOMPARE(uids(stores.store->calendars()), (QStringList { u"Home~2"_s, u"Home"_s }));
}

void CalCalendarStoreTest::itemsOfARenamedCalendarAreInIt()
{
    const TwoBackends stores;
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
    const TwoBackends stores;
    stores.first->addCalendar(makeCalendar(u"Home"_s));
    stores.first->addEvent(u"Home"_s, morningEvent(u"20260311T090000Z-1#a@example.org"_s, u"Call"_s));

    QCOMPARE(uids(stores.events()), QStringList(u"20260311T090000Z-1#a@example.org"_s));
}

void CalCalendarStoreTest::occurrenceHasAUidOfItsOwn()
{
    const TwoBackends stores;
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
    const TwoBackends stores;
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
    const TwoBackends stores;
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
    const TwoBackends stores;
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
    const TwoBackends stores;
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
    const TwoBackends stores;
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
    const TwoBackends stores;
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

void CalCalendarStoreTest::silentCalendarsOfAllBackendsAreTold()
{
    const TwoBackends backends;
    backends.first->addCalendar(makeCalendar(u"Club"_s));
    backends.second->addCalendar(makeCalendar(u"Personal"_s));
    backends.second->addCalendar(makeCalendar(u"Club"_s));
    QSignalSpy changes(backends.store.get(), &CalCalendarStore::silenceDidChange);
    QCOMPARE(backends.store->silentCalendars(), CalCalendarList());

    backends.second->setSilentCalendars({ u"Club"_s, u"Personal"_s });
    QTRY_COMPARE(changes.size(), 1);
    // In the store's order, by the names that the store gives them: the first "Club" answers.
    const CalCalendarList calendars = backends.store->calendars();
    QCOMPARE(backends.store->silentCalendars(), calendars.mid(1));
    QCOMPARE(uids(backends.store->silentCalendars()), uids(calendars).mid(1));

    backends.second->setSilentCalendars({});
    QTRY_COMPARE(changes.size(), 2);
    QCOMPARE(backends.store->silentCalendars(), CalCalendarList());
}

void CalCalendarStoreTest::serviceThatWasNeverReachedIsTold()
{
    const TwoBackends backends;
    QSignalSpy changes(backends.store.get(), &CalCalendarStore::silenceDidChange);
    QVERIFY(!backends.store->hasUnreachedService());

    backends.second->setUnreached(true);

    QTRY_COMPARE(changes.size(), 1);
    QVERIFY(backends.store->hasUnreachedService());
}

void CalCalendarStoreTest::aBackendFoundLaterIsTheBest()
{
    const TwoBackends backends;
    backends.first->addCalendar(makeCalendar(u"Home"_s));
    backends.second->addCalendar(makeReadOnlyCalendar(u"Club"_s));
    auto found = std::make_unique<MemoryBackend>();
    found->addCalendar(makeCalendar(u"Personal"_s));
    found->addCalendar(makeReadOnlyCalendar(u"Birthdays"_s));
    found->addCalendar(makeCalendar(u"Home"_s));
    found->setHasDeclaredDefault(true);

    backends.store->addBackend(std::move(found));

    QStringList order;
    for (const CalCalendarPtr &calendar : backends.store->calendars())
        order << calendar->uid();
    QCOMPARE(order, (QStringList { u"Personal"_s, u"Home"_s, u"Home~2"_s, u"Birthdays"_s, u"Club"_s }));
}

void CalCalendarStoreTest::whatABackendFoundLaterHoldsIsTold()
{
    const TwoBackends backends;
    const QSignalSpy posted(backends.store.get(), &CalCalendarStore::notificationPosted);
    auto found = std::make_unique<MemoryBackend>();
    MemoryBackend *const service = found.get();
    found->addCalendar(makeCalendar(u"Personal"_s));

    backends.store->addBackend(std::move(found));
    QVERIFY(posted.isEmpty());
    QTRY_COMPARE(posted.size(), 3);

    service->postEventsChange();
    QTRY_COMPARE(posted.size(), 4);
}

void CalCalendarStoreTest::theStoreIsCompleteAgainWithABackendFoundLater()
{
    const TwoBackends backends;
    const QSignalSpy loaded(backends.store.get(), &CalCalendarStore::loaded);
    auto found = std::make_unique<MemoryBackend>();
    MemoryBackend *const service = found.get();
    service->startLoading();

    backends.store->addBackend(std::move(found));
    QVERIFY(!backends.store->isComplete());

    service->finishLoading();
    QTRY_COMPARE(loaded.size(), 1);
    QVERIFY(backends.store->isComplete());
}

void CalCalendarStoreTest::everyBackendIsRefreshed()
{
    const TwoBackends backends;

    backends.store->refresh();

    QCOMPARE(backends.first->refreshes(), 1);
    QCOMPARE(backends.second->refreshes(), 1);
}

VANTLE_TEST(CalCalendarStoreTest)
#include "CalCalendarStoreTest.moc"
