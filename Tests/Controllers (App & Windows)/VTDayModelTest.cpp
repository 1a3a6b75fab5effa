// SPDX-License-Identifier: MIT
#include "MainWindowFixture.h"

#include <TestRegistry.h>

#include <QSignalSpy>
#include <QTest>

#include <ctime>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

class KeyRecorder final : public KeyValueObserver
{
public:
    void observeValueForKeyPath_ofObject_change_context(const QString &keyPath, KeyValueObject * /*object*/,
        const KeyValueChange & /*change*/, void * /*context*/) override
    {
        keys.append(keyPath);
    }

    QStringList keys;
};

void setZone(const char *name)
{
    qputenv("TZ", name);
    ::tzset();
}

} // namespace

class VTDayModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void startUpShowsTodayWithMondayAsFirstDay();
    void startUpSelectsTheFirstEvent();
    void startUpSelectsTheFirstTaskWithoutEvents();
    void startUpSelectsNothingOnAnEmptyDay();
    void menusReadTheirFirstTitlesAtStartUp();

    void noCalendarUnselectedShowsAll();
    void allCalendarsUnselectedShowsNothing();
    void hiddenCalendarsItemsAreLeftOut();

    void everySettingButTheSortMethodFetchesAgain_data();
    void everySettingButTheSortMethodFetchesAgain();
    void sortMethodOnlySortsAgain();
    void tasksWithoutPriorityComeLast();
    void completionBeforeTheWeekIsHiddenUnlessAllAreShown();
    void taskDueAtTheWeeksEndIsHidden();
    void sundayBelongsToTheWeekOfTheMondayBefore();
    void weekOfTheShownDayCountsAndNotTheCurrentOne();

    void timerRunsExactlyWhileTodayIsShown();
    void everyTickFetchesAgain();
    void runningTimerIsNotStartedAnew();
    void instantsOfTodayAreToday_data();
    void instantsOfTodayAreToday();
    void midnightIsFollowedWithinTenSeconds();
    void otherDayDoesNotMoveAtMidnight();
    void clockSetForwardIsFollowed();
    void clockSetBackIsFollowed();
    void newTimeZoneIsFollowed();
    void wakingAfterMidnightIsFollowed();
    void shortAndLongDaysOfClockChangesAreFollowed_data();
    void shortAndLongDaysOfClockChangesAreFollowed();

    void storeNotificationKeepsTheSelection();
    void selectionOfADeletedItemResolvesToNothing();
    void deletedItemThatComesBackIsSelectedAgain();
    void selectionIsLookedUpByBothListsAfterAStoreChange();
    void eachOfTheSixNotificationsFetches_data();
    void eachOfTheSixNotificationsFetches();

    void firstSelectionWaitsForALoadingStore();
    void firstSelectionEndsWithTheFirstAction();
    void firstSelectionEndsWhenTheStoreIsLoaded();

    void firstAndLastUidsAreThoseOfTheLists();
    void valuesAreReadByName();
};

void VTDayModelTest::cleanup()
{
    setZone("Europe/Berlin");
}

void VTDayModelTest::startUpShowsTodayWithMondayAsFirstDay()
{
    MainWindowFixture fixture;

    const VTMainWindowController &controller = fixture.wake();

    QCOMPARE(controller.date(), fixture.clock.now());
    QCOMPARE(controller.weekStartDay(), 2);
    QVERIFY(controller.hasDateRefresher());
}

void VTDayModelTest::startUpSelectsTheFirstEvent()
{
    MainWindowFixture fixture;
    fixture.addEvent("later", "2026-11-20T12:00");
    fixture.addEvent("first", "2026-11-20T08:00");
    fixture.addTask("task");

    const VTMainWindowController &controller = fixture.wake();

    QCOMPARE(controller.selectedCalItemUID().value_or(QString()), u"first"_s);
}

void VTDayModelTest::startUpSelectsTheFirstTaskWithoutEvents()
{
    MainWindowFixture fixture;
    fixture.addTask("b");
    fixture.addTask("a");

    const VTMainWindowController &controller = fixture.wake();

    QCOMPARE(controller.selectedCalItemUID().value_or(QString()), u"a"_s);
}

void VTDayModelTest::startUpSelectsNothingOnAnEmptyDay()
{
    MainWindowFixture fixture;

    QVERIFY(!fixture.wake().selectedCalItemUID());
}

void VTDayModelTest::menusReadTheirFirstTitlesAtStartUp()
{
    MainWindowFixture fixture;
    KeyRecorder recorder;
    VTMainWindowController controller(fixture.services());
    controller.addObserver_forKeyPath_options_context(&recorder, u"showHideDateBarMenuTitle"_s);
    controller.addObserver_forKeyPath_options_context(&recorder, u"showHideCalendarDrawerMenuTitle"_s);

    controller.awakeFromNib();

    QCOMPARE(recorder.keys, (QStringList { u"showHideDateBarMenuTitle"_s, u"showHideCalendarDrawerMenuTitle"_s }));
    QCOMPARE(controller.showHideCalendarDrawerMenuTitle(), u"Show Calendars Drawer"_s);
}

void VTDayModelTest::noCalendarUnselectedShowsAll()
{
    MainWindowFixture fixture;
    fixture.addEvent("home", "2026-11-20T08:00", "Home");
    fixture.addEvent("work", "2026-11-20T09:00", "Work");

    VTMainWindowController &controller = fixture.wake();
    controller.setUnselectedCalendarsUID(std::nullopt);

    QCOMPARE(uidsOf(controller.events()), (QStringList { u"home"_s, u"work"_s }));
}

void VTDayModelTest::allCalendarsUnselectedShowsNothing()
{
    MainWindowFixture fixture;
    fixture.addEvent("event");
    fixture.addTask("task");
    VTMainWindowController &controller = fixture.wake();

    controller.setUnselectedCalendarsUID(QStringList { u"Home"_s, u"Work"_s });

    QVERIFY(controller.events().isEmpty());
    QVERIFY(controller.tasks().isEmpty());
}

void VTDayModelTest::hiddenCalendarsItemsAreLeftOut()
{
    MainWindowFixture fixture;
    fixture.addEvent("home", "2026-11-20T08:00", "Home");
    fixture.addEvent("work", "2026-11-20T09:00", "Work");
    fixture.addTask("work task", "Work");
    VTMainWindowController &controller = fixture.wake();

    controller.setUnselectedCalendarsUID(QStringList { u"Work"_s });

    QCOMPARE(uidsOf(controller.events()), QStringList { u"home"_s });
    QVERIFY(controller.tasks().isEmpty());
}

void VTDayModelTest::everySettingButTheSortMethodFetchesAgain_data()
{
    using Change = std::function<void(VTMainWindowController &)>;
    QTest::addColumn<Change>("change");

    QTest::newRow("weekStartDay") << Change([](auto &controller) { controller.setWeekStartDay(1); });
    QTest::newRow("showAllCompletedTasks")
        << Change([](auto &controller) { controller.setShowAllCompletedTasks(true); });
    QTest::newRow("hideTasksDueAfterThisWeek")
        << Change([](auto &controller) { controller.setHideTasksDueAfterThisWeek(true); });
    QTest::newRow("unselectedCalendarsUID")
        << Change([](auto &controller) { controller.setUnselectedCalendarsUID(QStringList()); });
    QTest::newRow("date") << Change([](auto &controller) { controller.setDate(controller.date()); });
}

void VTDayModelTest::everySettingButTheSortMethodFetchesAgain()
{
    QFETCH(const std::function<void(VTMainWindowController &)>, change);
    MainWindowFixture fixture;
    fixture.addEvent("event");
    VTMainWindowController &controller = fixture.wake();
    const int before = fixture.backend().eventQueries();
    const CalEventPtr record = controller.events().first();

    change(controller);

    QVERIFY(fixture.backend().eventQueries() > before);
    QVERIFY(controller.events().first() != record);
    QCOMPARE(controller.selectedCalItemUID().value_or(QString()), u"event"_s);
}

void VTDayModelTest::sortMethodOnlySortsAgain()
{
    MainWindowFixture fixture;
    fixture.backend().addTask(u"Home"_s, makeTaskDue(u"due"_s, u"z"_s, localInstant("2026-11-21T09:00")));
    fixture.backend().addTask(u"Home"_s, makeTask(u"open"_s, u"A"_s));
    VTMainWindowController &controller = fixture.wake();
    const int events = fixture.backend().eventQueries();
    const int tasks = fixture.backend().taskQueries();

    controller.setTaskSortMethod(2);

    QCOMPARE(uidsOf(controller.tasks()), (QStringList { u"open"_s, u"due"_s }));
    QCOMPARE(fixture.backend().eventQueries(), events);
    QCOMPARE(fixture.backend().taskQueries(), tasks);
}

void VTDayModelTest::tasksWithoutPriorityComeLast()
{
    MainWindowFixture fixture;
    const auto add = [&fixture](const QString &title, int priority) {
        const CalTaskPtr task = makeTask(title, title);
        task->setPriority(priority);
        fixture.backend().addTask(u"Home"_s, task);
    };
    add(u"none b"_s, 0);
    add(u"None A"_s, 0);
    add(u"low"_s, 9);
    add(u"high z"_s, 1);
    add(u"High a"_s, 1);
    VTMainWindowController &controller = fixture.wake();

    controller.setTaskSortMethod(1);

    QCOMPARE(
        uidsOf(controller.tasks()), (QStringList { u"High a"_s, u"high z"_s, u"low"_s, u"None A"_s, u"none b"_s }));
}

void VTDayModelTest::completionBeforeTheWeekIsHiddenUnlessAllAreShown()
{
    MainWindowFixture fixture;
    const QDateTime weekStart = localInstant("2026-11-16T00:00");
    fixture.backend().addTask(u"Home"_s, makeCompletedTask(u"before"_s, u"before"_s, weekStart.addSecs(-1)));
    fixture.backend().addTask(u"Home"_s, makeCompletedTask(u"at start"_s, u"at start"_s, weekStart));
    VTMainWindowController &controller = fixture.wake();
    QCOMPARE(uidsOf(controller.tasks()), QStringList { u"at start"_s });

    controller.setShowAllCompletedTasks(true);

    QCOMPARE(uidsOf(controller.tasks()), (QStringList { u"at start"_s, u"before"_s }));
}

void VTDayModelTest::taskDueAtTheWeeksEndIsHidden()
{
    MainWindowFixture fixture;
    const QDateTime weekEnd = localInstant("2026-11-22T23:59").addSecs(59);
    fixture.backend().addTask(u"Home"_s, makeTaskDue(u"at end"_s, u"at end"_s, weekEnd));
    fixture.backend().addTask(u"Home"_s, makeTaskDue(u"just before"_s, u"just before"_s, weekEnd.addSecs(-1)));
    fixture.addTask("whenever");
    VTMainWindowController &controller = fixture.wake();

    controller.setHideTasksDueAfterThisWeek(true);

    QCOMPARE(uidsOf(controller.tasks()), (QStringList { u"just before"_s, u"whenever"_s }));
}

void VTDayModelTest::sundayBelongsToTheWeekOfTheMondayBefore()
{
    MainWindowFixture fixture;
    fixture.backend().addTask(u"Home"_s, makeCompletedTask(u"monday"_s, u"monday"_s, localInstant("2026-11-16T00:00")));
    VTMainWindowController &controller = fixture.wake();

    controller.setDate(localInstant("2026-11-22T12:00"));

    QCOMPARE(uidsOf(controller.tasks()), QStringList { u"monday"_s });
}

void VTDayModelTest::weekOfTheShownDayCountsAndNotTheCurrentOne()
{
    MainWindowFixture fixture;
    fixture.backend().addTask(
        u"Home"_s, makeCompletedTask(u"this week"_s, u"this week"_s, localInstant("2026-11-17T12:00")));
    VTMainWindowController &controller = fixture.wake();
    QCOMPARE(controller.tasks().size(), 1);

    controller.setDate(localInstant("2026-11-25T12:00"));

    QVERIFY(controller.tasks().isEmpty());
}

void VTDayModelTest::timerRunsExactlyWhileTodayIsShown()
{
    MainWindowFixture fixture;
    VTMainWindowController &controller = fixture.wake();

    controller.setDate(fixture.clock.now().addDays(1));
    QVERIFY(!controller.hasDateRefresher());
    QCOMPARE(fixture.clock.runningTimers(), 0);

    controller.setDateToNow();
    QVERIFY(controller.hasDateRefresher());
    QCOMPARE(fixture.clock.runningTimers(), 1);
}

void VTDayModelTest::everyTickFetchesAgain()
{
    MainWindowFixture fixture;
    const VTMainWindowController &controller = fixture.wake();
    const int before = fixture.backend().eventQueries();

    fixture.clock.advance(9999ms);
    QCOMPARE(fixture.backend().eventQueries(), before);

    fixture.clock.advance(1ms);
    QCOMPARE(fixture.backend().eventQueries(), before + 1);
    QCOMPARE(controller.date(), fixture.clock.now());
}

void VTDayModelTest::runningTimerIsNotStartedAnew()
{
    MainWindowFixture fixture;
    VTMainWindowController &controller = fixture.wake();
    fixture.clock.advance(9s);
    controller.setDateToNow();
    const int before = fixture.backend().eventQueries();

    fixture.clock.advance(1s);

    QCOMPARE(fixture.backend().eventQueries(), before + 1);
}

void VTDayModelTest::instantsOfTodayAreToday_data()
{
    QTest::addColumn<QDateTime>("instant");
    QTest::addColumn<bool>("isToday");

    QTest::newRow("first second") << localInstant("2026-11-20T00:00") << true;
    QTest::newRow("the second before") << localInstant("2026-11-20T00:00").addSecs(-1) << false;
    QTest::newRow("last second") << localInstant("2026-11-20T23:59").addSecs(59) << true;
    QTest::newRow("last fraction") << localInstant("2026-11-20T23:59").addMSecs(59'900) << true;
    QTest::newRow("the second after") << localInstant("2026-11-21T00:00") << false;
}

void VTDayModelTest::instantsOfTodayAreToday()
{
    QFETCH(const QDateTime, instant);
    QFETCH(const bool, isToday);
    MainWindowFixture fixture;
    VTMainWindowController &controller = fixture.wake();

    controller.setDate(instant);

    QCOMPARE(controller.hasDateRefresher(), isToday);
}

void VTDayModelTest::midnightIsFollowedWithinTenSeconds()
{
    MainWindowFixture fixture;
    fixture.addEvent("tomorrow", "2026-11-21T09:00");
    // A tick falls into the last fraction of a second of the day.
    fixture.clock.setNow(localInstant("2026-11-20T23:59").addMSecs(39'500));
    const VTMainWindowController &controller = fixture.wake();
    fixture.clock.advance(20s);
    QVERIFY(controller.events().isEmpty());
    QVERIFY(controller.hasDateRefresher());

    fixture.clock.advance(10s);

    QCOMPARE(controller.date().date(), QDate(2026, 11, 21));
    QCOMPARE(uidsOf(controller.events()), QStringList { u"tomorrow"_s });
    QVERIFY(controller.hasDateRefresher());
}

void VTDayModelTest::otherDayDoesNotMoveAtMidnight()
{
    MainWindowFixture fixture;
    VTMainWindowController &controller = fixture.wake();
    const QDateTime shown = localInstant("2026-11-18T10:00");
    controller.setDate(shown);

    fixture.clock.advance(24h);

    QCOMPARE(controller.date(), shown);
}

void VTDayModelTest::clockSetForwardIsFollowed()
{
    MainWindowFixture fixture;
    const VTMainWindowController &controller = fixture.wake();

    fixture.clock.setNow(localInstant("2027-02-03T04:05"));
    fixture.clock.advance(10s);

    QCOMPARE(controller.date().date(), QDate(2027, 2, 3));
    QVERIFY(controller.hasDateRefresher());
}

void VTDayModelTest::clockSetBackIsFollowed()
{
    MainWindowFixture fixture;
    fixture.addEvent("last year", "2025-01-02T09:00");
    const VTMainWindowController &controller = fixture.wake();

    fixture.clock.setNow(localInstant("2025-01-02T03:04"));
    fixture.clock.advance(10s);

    QCOMPARE(uidsOf(controller.events()), QStringList { u"last year"_s });
    QVERIFY(controller.hasDateRefresher());
}

void VTDayModelTest::newTimeZoneIsFollowed()
{
    MainWindowFixture fixture;
    fixture.clock.setNow(localInstant("2026-11-20T22:00"));
    fixture.backend().addTask(u"Home"_s, makeCompletedTask(u"early"_s, u"early"_s, localInstant("2026-11-15T18:00").toUTC()));
    const VTMainWindowController &controller = fixture.wake();
    QVERIFY(controller.tasks().isEmpty());
    const qint64 instant = fixture.clock.now().toMSecsSinceEpoch();

    // Eight hours on: the day after in Tokyo, where the week began on Sunday evening by Berlin's clock.
    setZone("Asia/Tokyo");
    fixture.clock.setNow(QDateTime::fromMSecsSinceEpoch(instant));
    fixture.clock.advance(10s);

    QCOMPARE(controller.date().toLocalTime().date(), QDate(2026, 11, 21));
    QCOMPARE(uidsOf(controller.tasks()), QStringList { u"early"_s });
    QVERIFY(controller.hasDateRefresher());
}

void VTDayModelTest::wakingAfterMidnightIsFollowed()
{
    MainWindowFixture fixture;
    const VTMainWindowController &controller = fixture.wake();
    fixture.clock.advance(5s);

    // The machine slept: the timer's own time stood still.
    fixture.clock.setNow(localInstant("2026-11-21T07:30"));
    fixture.clock.advance(5s);

    QCOMPARE(controller.date().date(), QDate(2026, 11, 21));
}

void VTDayModelTest::shortAndLongDaysOfClockChangesAreFollowed_data()
{
    QTest::addColumn<QDateTime>("evening");
    QTest::addColumn<QDate>("nextDay");

    QTest::newRow("into summer time") << localInstant("2026-03-29T23:59") << QDate(2026, 3, 30);
    QTest::newRow("into winter time") << localInstant("2026-10-25T23:59") << QDate(2026, 10, 26);
}

void VTDayModelTest::shortAndLongDaysOfClockChangesAreFollowed()
{
    QFETCH(const QDateTime, evening);
    QFETCH(const QDate, nextDay);
    MainWindowFixture fixture;
    fixture.clock.setNow(evening);
    const VTMainWindowController &controller = fixture.wake();

    fixture.clock.advance(70s);

    QCOMPARE(controller.date().date(), nextDay);
    QVERIFY(controller.hasDateRefresher());
}

void VTDayModelTest::storeNotificationKeepsTheSelection()
{
    MainWindowFixture fixture;
    fixture.addEvent("one", "2026-11-20T08:00");
    fixture.addEvent("two", "2026-11-20T09:00");
    VTMainWindowController &controller = fixture.wake();
    controller.setSelectedCalItemUID(u"two"_s);

    fixture.addEvent("zero", "2026-11-20T07:00");
    fixture.backend().postEventsChange();

    QTRY_COMPARE(controller.events().size(), 3);
    QCOMPARE(controller.selectedCalItem(), controller.events().at(2));
}

void VTDayModelTest::selectionOfADeletedItemResolvesToNothing()
{
    MainWindowFixture fixture;
    fixture.addEvent("one");
    const VTMainWindowController &controller = fixture.wake();

    fixture.backend().removeItem(u"one"_s);
    fixture.backend().postEventsChange();

    QTRY_VERIFY(controller.events().isEmpty());
    QCOMPARE(controller.selectedCalItemUID().value_or(QString()), u"one"_s);
    QVERIFY(!controller.selectedCalItems());
    QVERIFY(!controller.selectedCalItem());
}

void VTDayModelTest::deletedItemThatComesBackIsSelectedAgain()
{
    MainWindowFixture fixture;
    fixture.addEvent("one");
    VTMainWindowController &controller = fixture.wake();
    controller.setDate(localInstant("2026-11-21T10:00"));
    QVERIFY(!controller.selectedCalItem());

    controller.setDateToNow();

    QCOMPARE(controller.selectedCalItem(), controller.events().first());
}

void VTDayModelTest::selectionIsLookedUpByBothListsAfterAStoreChange()
{
    MainWindowFixture fixture;
    fixture.addEvent("one");
    VTMainWindowController &controller = fixture.wake();
    KeyRecorder recorder;
    for (const auto &key : { u"events"_s, u"tasks"_s, u"selectedCalItems"_s })
        controller.addObserver_forKeyPath_options_context(&recorder, key);

    controller.calStoreDidChange();

    QCOMPARE(recorder.keys,
        (QStringList { u"selectedCalItems"_s, u"events"_s, u"tasks"_s, u"tasks"_s, u"selectedCalItems"_s }));
}

void VTDayModelTest::eachOfTheSixNotificationsFetches_data()
{
    QTest::addColumn<CalNotificationName>("name");

    QTest::newRow("calendars") << CalCalendarsChangedNotification;
    QTest::newRow("events") << CalEventsChangedNotification;
    QTest::newRow("tasks") << CalTasksChangedNotification;
    QTest::newRow("calendars, others") << CalCalendarsChangedExternallyNotification;
    QTest::newRow("events, others") << CalEventsChangedExternallyNotification;
    QTest::newRow("tasks, others") << CalTasksChangedExternallyNotification;
}

void VTDayModelTest::eachOfTheSixNotificationsFetches()
{
    QFETCH(const CalNotificationName, name);
    MainWindowFixture fixture;
    fixture.wake();
    const int before = fixture.backend().eventQueries();

    Q_EMIT fixture.calendars.store().notificationPosted({ name, {} });

    QCOMPARE(fixture.backend().eventQueries(), before + 1);
}

void VTDayModelTest::firstSelectionWaitsForALoadingStore()
{
    MainWindowFixture fixture;
    fixture.startLoading();
    fixture.addTask("task");
    const VTMainWindowController &controller = fixture.wake();
    QCOMPARE(controller.selectedCalItemUID().value_or(QString()), u"task"_s);

    fixture.addEvent("late", "2026-11-20T12:00");
    fixture.backend().postEventsChange();
    QTRY_COMPARE(controller.selectedCalItemUID().value_or(QString()), u"late"_s);

    fixture.addEvent("early", "2026-11-20T08:00");
    fixture.backend().postEventsChange();
    QTRY_COMPARE(controller.selectedCalItemUID().value_or(QString()), u"early"_s);
}

void VTDayModelTest::firstSelectionEndsWithTheFirstAction()
{
    MainWindowFixture fixture;
    fixture.startLoading();
    fixture.addEvent("one", "2026-11-20T08:00");
    fixture.addEvent("two", "2026-11-20T09:00");
    VTMainWindowController &controller = fixture.wake();
    controller.moveSelectionDown();

    fixture.addEvent("zero", "2026-11-20T07:00");
    fixture.backend().finishLoading();

    QTRY_COMPARE(controller.events().size(), 3);
    QCOMPARE(controller.selectedCalItemUID().value_or(QString()), u"two"_s);
}

void VTDayModelTest::firstSelectionEndsWhenTheStoreIsLoaded()
{
    MainWindowFixture fixture;
    fixture.startLoading();
    const VTMainWindowController &controller = fixture.wake();
    fixture.addEvent("one", "2026-11-20T08:00");
    fixture.backend().finishLoading();
    QTRY_COMPARE(controller.selectedCalItemUID().value_or(QString()), u"one"_s);

    fixture.addEvent("zero", "2026-11-20T07:00");
    fixture.backend().postEventsChange();

    QTRY_COMPARE(controller.events().size(), 2);
    QCOMPARE(controller.selectedCalItemUID().value_or(QString()), u"one"_s);
}

void VTDayModelTest::firstAndLastUidsAreThoseOfTheLists()
{
    MainWindowFixture fixture;
    VTMainWindowController &controller = fixture.wake();
    QVERIFY(!controller.lastEventUID());
    QVERIFY(!controller.lastTaskUID());

    fixture.addEvent("a", "2026-11-20T08:00");
    fixture.addEvent("b", "2026-11-20T09:00");
    fixture.addTask("c");
    fixture.addTask("d");
    controller.calStoreDidChange();

    QCOMPARE(controller.firstEventUID(), u"a"_s);
    QCOMPARE(controller.lastEventUID().value_or(QString()), u"b"_s);
    QCOMPARE(controller.firstTaskUID(), u"c"_s);
    QCOMPARE(controller.lastTaskUID().value_or(QString()), u"d"_s);
}

void VTDayModelTest::valuesAreReadByName()
{
    MainWindowFixture fixture;
    fixture.addEvent("a");
    VTMainWindowController &controller = fixture.wake();

    QCOMPARE(controller.valueForKey(u"date"_s).toDateTime(), controller.date());
    QCOMPARE(controller.valueForKey(u"events"_s).value<CalEventList>(), controller.events());
    QCOMPARE(controller.valueForKey(u"selectedCalItems"_s).value<CalCalendarItemList>().size(), 1);
    QCOMPARE(controller.valueForKey(u"selectedCalItemUID"_s).toString(), u"a"_s);
    QVERIFY(!controller.valueForKey(u"no such key"_s).isValid());

    controller.setSelectedCalItemUID(std::nullopt);
    QVERIFY(!controller.valueForKey(u"selectedCalItems"_s).isValid());
    QVERIFY(!controller.valueForKey(u"selectedCalItemUID"_s).isValid());
}

VANTLE_TEST(VTDayModelTest)
#include "VTDayModelTest.moc"
