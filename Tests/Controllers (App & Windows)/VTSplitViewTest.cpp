// SPDX-License-Identifier: MIT
#include "MainWindowFixture.h"

#include <KLVAccordionView.h>
#include <KLVSplitView.h>
#include <TestRegistry.h>
#include <VTMainMenu.h>
#include <WindowState.h>

#include <QAccessible>
#include <QAction>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr int least = 48;

struct SplitFixture : MainWindowFixture {
    SplitFixture()
    {
        addEvent("event");
        addTask("task");
        wakeWithWindow();
        window->resize(window->width(), 600);
    }

    KLVSplitView *view() const { return window->splitView(); }
    QWidget *divider() const { return view()->handle(1); }
    int space() const { return view()->height() - view()->handleWidth(); }
    QAction *command(const char *name) const { return window->menu()->command(name); }
    bool isEventsListShown() const { return window->eventsAccordion()->isVisible(); }
    bool isTasksListShown() const { return window->tasksAccordion()->isVisible(); }

    // By the hand: press, some way, to a height of the upper pane, release.
    void drag(int position) const
    {
        const QPoint grip(50, 4);
        QTest::mousePress(divider(), Qt::LeftButton, {}, grip);
        for (const int step : { (view()->positionOfDivider() + position) / 2, position })
            QTest::mouseMove(divider(), divider()->mapFrom(view(), QPoint(50, step + grip.y())));
        QTest::mouseRelease(divider(), Qt::LeftButton, {}, divider()->mapFrom(view(), QPoint(50, position + grip.y())));
    }
};

} // namespace

class VTSplitViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leastPositionOfTheDividerIs48();
    void greatestPositionLeaves48_data();
    void greatestPositionLeaves48();
    void unexpectedDividerIsLoggedAndItsValueKept();
    void everyPaneMayCollapse();

    void dividerFollowsTheHand();
    void dividerStopsAtItsLimits();
    void dividerBeyondHalfOfALimitCollapsesThePane();
    void collapsedPaneComesBackWithTheDivider();
    void paneSqueezedByTheWindowCollapses();
    void upperPaneGoesBeforeTheLower();
    void windowsSizeIsGivenBackUnchanged();

    void keysMoveTheDivider();
    void menuShowsOneListOrBoth();
    void collapsedListIsOutOfReach();
    void keyboardLeavesACollapsingList();
    void assistiveTechnologyFindsNoNamelessPart();
    void dividerAndCollapsedPaneAreRemembered_data();
    void dividerAndCollapsedPaneAreRemembered();
};

void VTSplitViewTest::leastPositionOfTheDividerIs48()
{
    const SplitFixture fixture;

    for (const double proposed : { 0.0, 20.0, 500.0 })
        QCOMPARE(fixture.controller->splitView_constrainMinCoordinate_ofSubviewAt(fixture.view(), proposed, 0), 48.0);
}

void VTSplitViewTest::greatestPositionLeaves48_data()
{
    QTest::addColumn<double>("proposed");
    QTest::addColumn<double>("expected");

    QTest::newRow("usual") << 500.0 << 452.0;
    QTest::newRow("just above") << 48.5 << 0.5;
    QTest::newRow("as high as that") << 48.0 << 48.0;
    QTest::newRow("lower") << 20.0 << 48.0;
}

void VTSplitViewTest::greatestPositionLeaves48()
{
    QFETCH(const double, proposed);
    QFETCH(const double, expected);
    const SplitFixture fixture;

    QCOMPARE(fixture.controller->splitView_constrainMaxCoordinate_ofSubviewAt(fixture.view(), proposed, 0), expected);
}

void VTSplitViewTest::unexpectedDividerIsLoggedAndItsValueKept()
{
    const SplitFixture fixture;

    QTest::ignoreMessage(QtWarningMsg, "Min - dividerIndex == 1");
    QCOMPARE(fixture.controller->splitView_constrainMinCoordinate_ofSubviewAt(fixture.view(), 7.0, 1), 7.0);
    QTest::ignoreMessage(QtWarningMsg, "Max - dividerIndex == 1");
    QCOMPARE(fixture.controller->splitView_constrainMaxCoordinate_ofSubviewAt(fixture.view(), 700.0, 2), 700.0);
}

void VTSplitViewTest::everyPaneMayCollapse()
{
    const SplitFixture fixture;

    for (int i = 0; i < 2; ++i)
        QVERIFY(fixture.controller->splitView_canCollapseSubview(fixture.view(), fixture.view()->widget(i)));
}

void VTSplitViewTest::dividerFollowsTheHand()
{
    const SplitFixture fixture;

    for (const int position : { 100, 300, 201 }) {
        fixture.drag(position);
        QCOMPARE(fixture.view()->positionOfDivider(), position);
    }
}

void VTSplitViewTest::dividerStopsAtItsLimits()
{
    const SplitFixture fixture;

    fixture.drag(30);
    QCOMPARE(fixture.view()->positionOfDivider(), least);

    fixture.drag(fixture.space() - 30);
    QCOMPARE(fixture.view()->positionOfDivider(), fixture.space() - least);
}

void VTSplitViewTest::dividerBeyondHalfOfALimitCollapsesThePane()
{
    const SplitFixture fixture;

    fixture.drag(10);
    QVERIFY(fixture.view()->isSubviewCollapsed(0));
    QCOMPARE(fixture.view()->sizes(), (QList<int> { 0, fixture.space() }));

    fixture.drag(200);
    fixture.drag(fixture.space() - 10);
    QVERIFY(fixture.view()->isSubviewCollapsed(1));
    QCOMPARE(fixture.view()->sizes(), (QList<int> { fixture.space(), 0 }));
}

void VTSplitViewTest::collapsedPaneComesBackWithTheDivider()
{
    const SplitFixture fixture;
    fixture.drag(0);
    QVERIFY(!fixture.isEventsListShown());

    fixture.drag(150);

    QVERIFY(fixture.isEventsListShown());
    QCOMPARE(fixture.view()->positionOfDivider(), 150);
}

void VTSplitViewTest::paneSqueezedByTheWindowCollapses()
{
    const SplitFixture fixture;
    fixture.drag(fixture.space() - 60);

    fixture.window->resize(fixture.window->width(), 300);
    QTRY_VERIFY(fixture.view()->isSubviewCollapsed(1));
    QVERIFY(!fixture.isTasksListShown());

    // Only a person brings it back.
    fixture.window->resize(fixture.window->width(), 700);
    QTRY_COMPARE(fixture.window->height(), 700);
    QCOMPARE(fixture.view()->sizes(), (QList<int> { fixture.space(), 0 }));
}

void VTSplitViewTest::upperPaneGoesBeforeTheLower()
{
    const SplitFixture fixture;
    fixture.view()->setPosition_ofDividerAt(40, 0);

    fixture.controller->windowWillResize_toSize(fixture.window.get(), QSize(340, 500));
    QCOMPARE(fixture.view()->positionOfDivider(), 0);

    fixture.view()->setPosition_ofDividerAt(fixture.space() - 40, 0);
    fixture.controller->windowWillResize_toSize(fixture.window.get(), QSize(340, 500));
    QCOMPARE(fixture.view()->positionOfDivider(), fixture.space());

    fixture.view()->setPosition_ofDividerAt(least, 0);
    fixture.controller->windowWillResize_toSize(fixture.window.get(), QSize(340, 500));
    QCOMPARE(fixture.view()->positionOfDivider(), least);
}

void VTSplitViewTest::windowsSizeIsGivenBackUnchanged()
{
    const SplitFixture fixture;

    for (const QSize size : { QSize(1, 1), QSize(340, 600), QSize(5000, 20) })
        QCOMPARE(fixture.controller->windowWillResize_toSize(fixture.window.get(), size), size);
}

void VTSplitViewTest::keysMoveTheDivider()
{
    const SplitFixture fixture;
    QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));
    fixture.drag(200);

    QTest::keyClick(fixture.window->windowHandle(), Qt::Key_F8);
    QVERIFY(fixture.divider()->hasFocus());
    QTest::keyClick(fixture.divider(), Qt::Key_Down);
    QCOMPARE(fixture.view()->positionOfDivider(), 208);
    QTest::keyClick(fixture.divider(), Qt::Key_PageUp);
    QCOMPARE(fixture.view()->positionOfDivider(), 160);
    for (int i = 0; i < 30; ++i)
        QTest::keyClick(fixture.divider(), Qt::Key_Up);
    QCOMPARE(fixture.view()->positionOfDivider(), least);

    QTest::keyClick(fixture.divider(), Qt::Key_Home);
    QCOMPARE(fixture.view()->positionOfDivider(), 0);
    QTest::keyClick(fixture.divider(), Qt::Key_Down);
    QCOMPARE(fixture.view()->positionOfDivider(), least);
    QTest::keyClick(fixture.divider(), Qt::Key_End);
    QCOMPARE(fixture.view()->positionOfDivider(), fixture.space());
    QTest::keyClick(fixture.divider(), Qt::Key_Up);
    QCOMPARE(fixture.view()->positionOfDivider(), fixture.space() - least);
}

void VTSplitViewTest::menuShowsOneListOrBoth()
{
    const SplitFixture fixture;
    fixture.drag(222);
    QVERIFY(fixture.command("showBothLists")->isChecked());

    fixture.command("showEventsOnly")->trigger();
    QVERIFY(fixture.isEventsListShown() && !fixture.isTasksListShown());
    QVERIFY(fixture.command("showEventsOnly")->isChecked() && !fixture.command("showBothLists")->isChecked());

    fixture.command("showTasksOnly")->trigger();
    QVERIFY(!fixture.isEventsListShown() && fixture.isTasksListShown());
    QVERIFY(fixture.command("showTasksOnly")->isChecked() && !fixture.command("showEventsOnly")->isChecked());
    fixture.command("showTasksOnly")->trigger();
    QVERIFY(fixture.command("showTasksOnly")->isChecked());

    fixture.command("showBothLists")->trigger();
    QVERIFY(fixture.isEventsListShown() && fixture.isTasksListShown());
    QCOMPARE(fixture.view()->positionOfDivider(), 222);
}

void VTSplitViewTest::collapsedListIsOutOfReach()
{
    const SplitFixture fixture;
    QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));
    fixture.command("showEventsOnly")->trigger();
    fixture.window->eventsAccordion()->setFocus();

    QTest::keyClick(fixture.window->focusWidget(), Qt::Key_Tab);
    QCOMPARE(fixture.window->focusWidget(), fixture.divider());
    QVERIFY(QAccessible::queryAccessibleInterface(fixture.window->tasksAccordion())->state().invisible);

    // The selection still goes on to the to-do, and back.
    fixture.window->eventsAccordion()->setFocus();
    QTest::keyClick(fixture.window->eventsAccordion(), Qt::Key_Down);
    QCOMPARE(fixture.controller->selectedCalItemUID().value_or(QString()), u"task"_s);
    QTest::keyClick(fixture.window->focusWidget(), Qt::Key_Up);
    QCOMPARE(fixture.controller->selectedCalItemUID().value_or(QString()), u"event"_s);
    QVERIFY(fixture.window->eventsAccordion()->hasFocus());
}

void VTSplitViewTest::keyboardLeavesACollapsingList()
{
    const SplitFixture fixture;
    QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));
    fixture.window->eventsAccordion()->setFocus();

    fixture.command("showTasksOnly")->trigger();
    QVERIFY(fixture.window->tasksAccordion()->hasFocus());

    fixture.command("showEventsOnly")->trigger();
    QVERIFY(fixture.window->eventsAccordion()->hasFocus());
}

void VTSplitViewTest::assistiveTechnologyFindsNoNamelessPart()
{
    const SplitFixture fixture;

    QAccessibleInterface *const view = QAccessible::queryAccessibleInterface(fixture.view());
    QCOMPARE(view->text(QAccessible::Name), u"Events and to dos"_s);
    QVERIFY(view->childCount() >= 3);
    for (int i = 0; i < view->childCount(); ++i)
        QVERIFY2(
            !view->child(i)->text(QAccessible::Name).isEmpty(), qPrintable(view->child(i)->object()->objectName()));
}

void VTSplitViewTest::dividerAndCollapsedPaneAreRemembered_data()
{
    QTest::addColumn<std::optional<WindowState::Pane>>("collapsed");

    QTest::newRow("both panes") << std::optional<WindowState::Pane>();
    QTest::newRow("upper collapsed") << std::optional(WindowState::Pane::Upper);
    QTest::newRow("lower collapsed") << std::optional(WindowState::Pane::Lower);
}

void VTSplitViewTest::dividerAndCollapsedPaneAreRemembered()
{
    QFETCH(const std::optional<WindowState::Pane>, collapsed);
    WindowState left;
    {
        const SplitFixture fixture;
        fixture.drag(170);
        if (collapsed)
            fixture.view()->collapseSubview(*collapsed == WindowState::Pane::Upper ? 0 : 1);
        left = fixture.window->windowState();
    }
    QCOMPARE(left.dividerPosition.value_or(-1), 170);
    QVERIFY(left.collapsedPane == collapsed);

    VTMainWindow window;
    window.restoreWindowState(left);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    QVERIFY(window.windowState() == left);
    QCOMPARE(window.eventsAccordion()->isVisible(), collapsed != WindowState::Pane::Upper);
    QCOMPARE(window.tasksAccordion()->isVisible(), collapsed != WindowState::Pane::Lower);
    window.showBothLists();
    QCOMPARE(window.splitView()->positionOfDivider(), 170);
}

VANTLE_TEST(VTSplitViewTest)
#include "VTSplitViewTest.moc"
