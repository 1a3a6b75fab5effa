// SPDX-License-Identifier: MIT
#include "MainWindowFixture.h"

#include <TestRegistry.h>

#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

// Which events and tasks the settings leave of a day, and in which order.
class VTDayFiltersTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
};

void VTDayFiltersTest::noCalendarUnselectedShowsAll()
{
    MainWindowFixture fixture;
    fixture.addEvent("home", "2026-11-20T08:00", "Home");
    fixture.addEvent("work", "2026-11-20T09:00", "Work");

    VTMainWindowController &controller = fixture.wake();
    controller.setUnselectedCalendarsUID(std::nullopt);

    QCOMPARE(uidsOf(controller.events()), (QStringList { u"home"_s, u"work"_s }));
}

void VTDayFiltersTest::allCalendarsUnselectedShowsNothing()
{
    MainWindowFixture fixture;
    fixture.addEvent("event");
    fixture.addTask("task");
    VTMainWindowController &controller = fixture.wake();

    controller.setUnselectedCalendarsUID(QStringList { u"Home"_s, u"Work"_s });

    QVERIFY(controller.events().isEmpty());
    QVERIFY(controller.tasks().isEmpty());
}

void VTDayFiltersTest::hiddenCalendarsItemsAreLeftOut()
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

void VTDayFiltersTest::everySettingButTheSortMethodFetchesAgain_data()
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

void VTDayFiltersTest::everySettingButTheSortMethodFetchesAgain()
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

void VTDayFiltersTest::sortMethodOnlySortsAgain()
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

void VTDayFiltersTest::tasksWithoutPriorityComeLast()
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

void VTDayFiltersTest::completionBeforeTheWeekIsHiddenUnlessAllAreShown()
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

void VTDayFiltersTest::taskDueAtTheWeeksEndIsHidden()
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

void VTDayFiltersTest::sundayBelongsToTheWeekOfTheMondayBefore()
{
    MainWindowFixture fixture;
    fixture.backend().addTask(u"Home"_s, makeCompletedTask(u"monday"_s, u"monday"_s, localInstant("2026-11-16T00:00")));
    VTMainWindowController &controller = fixture.wake();

    controller.setDate(localInstant("2026-11-22T12:00"));

    QCOMPARE(uidsOf(controller.tasks()), QStringList { u"monday"_s });
}

void VTDayFiltersTest::weekOfTheShownDayCountsAndNotTheCurrentOne()
{
    MainWindowFixture fixture;
    fixture.backend().addTask(
        u"Home"_s, makeCompletedTask(u"this week"_s, u"this week"_s, localInstant("2026-11-17T12:00")));
    VTMainWindowController &controller = fixture.wake();
    QCOMPARE(controller.tasks().size(), 1);

    controller.setDate(localInstant("2026-11-25T12:00"));

    QVERIFY(controller.tasks().isEmpty());
}

VANTLE_TEST(VTDayFiltersTest)
#include "VTDayFiltersTest.moc"
