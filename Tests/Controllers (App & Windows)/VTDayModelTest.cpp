// SPDX-License-Identifier: MIT
#include "MainWindowFixture.h"

#include <KLVAccordionView.h>
#include <TestRegistry.h>

#include <QTest>

using namespace Qt::StringLiterals;

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

} // namespace

// What is shown and selected at start-up, while the store loads and after it changed.
class VTDayModelTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startUpShowsTodayWithMondayAsFirstDay();
    void startUpSelectsTheFirstEvent();
    void startUpSelectsTheFirstTaskWithoutEvents();
    void startUpSelectsNothingOnAnEmptyDay();
    void menusReadTheirFirstTitlesAtStartUp();

    void storeNotificationKeepsTheSelection();
    void selectionOfADeletedItemResolvesToNothing();
    void deletedItemThatComesBackIsSelectedAgain();
    void rowIsSelectedAgainWhenItsDayIsShownAgain();
    void selectionIsLookedUpByBothListsAfterAStoreChange();
    void eachOfTheSixNotificationsFetches_data();
    void eachOfTheSixNotificationsFetches();

    void firstSelectionWaitsForALoadingStore();
    void firstSelectionEndsWithTheFirstAction();
    void firstSelectionEndsWhenTheStoreIsLoaded();

    void firstAndLastUidsAreThoseOfTheLists();
    void valuesAreReadByName();
};

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

void VTDayModelTest::rowIsSelectedAgainWhenItsDayIsShownAgain()
{
    MainWindowFixture fixture;
    fixture.addEvent("one");
    VTMainWindowController &controller = fixture.wakeWithWindow();
    QCOMPARE(controller.eventsAccordion()->selectedObjects().size(), 1);

    controller.setDate(localInstant("2026-11-21T10:00"));
    QVERIFY(controller.eventsAccordion()->selectedObjects().isEmpty());
    controller.calStoreDidChange();
    controller.setDate(localInstant("2026-11-20T10:00"));

    // Delete would delete it, so it is to be seen.
    QCOMPARE(controller.selectedCalItem()->uid(), u"one"_s);
    QVERIFY(controller.eventsAccordion()->accordionViewItems().first()->isSelected());
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
