// SPDX-License-Identifier: MIT
#include "MainWindowFixture.h"

#include <KLVAccordionScrollArea.h>
#include <KLVAccordionView.h>
#include <KLVBarButton.h>
#include <KLVDateBar.h>
#include <KLVDateNavigator.h>
#include <KLVSplitView.h>
#include <TestRegistry.h>
#include <VTMainMenu.h>
#include <WindowState.h>

#include <QAbstractButton>
#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QScreen>
#include <QScrollBar>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

// Counts the paint events of a widget.
class PaintCounter final : public QObject
{
public:
    explicit PaintCounter(QWidget *watched) { watched->installEventFilter(this); }

    int paints = 0;
    QRegion painted;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            ++paints;
            painted += static_cast<QPaintEvent *>(event)->region();
        }
        return QObject::eventFilter(watched, event);
    }
};

// More than both lists can show at once.
struct LongDay : MainWindowFixture {
    LongDay()
    {
        for (int i = 0; i < 20; ++i) {
            addEvent(qPrintable(u"event %1"_s.arg(i, 2, 10, QChar(u'0'))), "2026-11-20T12:00");
            addTask(qPrintable(u"task %1"_s.arg(i, 2, 10, QChar(u'0'))));
        }
    }
};

} // namespace

class VTMainWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstTimeSizeAndTitle();
    void everyControlHasANameForAssistiveTechnology();
    void dateLabelOmitsTheCurrentYear();
    void dateLabelNamesAnotherYear();
    void dateLabelFollowsTheYearsChange();
    void navigatorShowsTodayAndNotTheShownDay();
    void navigatorWalksByFixedDays_data();
    void navigatorWalksByFixedDays();
    void navigatorCopiesTheSegmentsTag();
    void daysAreSecondsAcrossAClockChange();
    void middleSegmentGoesToThisInstant();
    void shortcutsWorkFromAnywhere_data();
    void shortcutsWorkFromAnywhere();
    void menuOpensByMouseAndKeyboard_data();
    void menuOpensByMouseAndKeyboard();
    void menuItemsWork();
    void arrowsMoveTheSelectionFromAnywhere();
    void returnTicksTheSelectedTask();
    void tabWalksThroughTheWindow();
    void clickOnARowSelectsIt();
    void emptyListsSaySo();
    void eventsListAloneHasAlternateRows();
    void keyboardIsInTheListOfTheFirstItem();
    void selectedRowHasARingOfItsCalendarsColor();

    void refetchKeepsSelectionScrollingAndFocus();
    void refetchRepaintsNothing();
    void storeChangeRepaintsTheChangedRowAlone();
    void anotherDayBeginsAtTheTop();

    void dateBarIsToggledAndRemembered();
    void windowIsFoundAsItWasLeft();
    void frameOutsideOfAllScreensIsNotRestored();
    void frameSmallerThanTheSmallestIsEnlarged();
    void dividerStaysInsideTheWindow();
};

void VTMainWindowTest::firstTimeSizeAndTitle()
{
    const VTMainWindow window;

    QCOMPARE(window.windowTitle(), u"Vantle"_s);
    const double unit = window.width() / 340.0;
    QVERIFY(unit >= 1);
    QCOMPARE(window.height(), qRound(600 * unit));
    QCOMPARE(window.minimumSize(), QSize(qRound(280 * unit), qRound(240 * unit)));
}

void VTMainWindowTest::everyControlHasANameForAssistiveTechnology()
{
    const VTMainWindow window;

    const auto buttons = window.findChildren<QAbstractButton *>();
    QVERIFY(buttons.size() >= 6);
    for (const QAbstractButton *button : buttons)
        QVERIFY2(!button->accessibleName().isEmpty(), qPrintable(button->objectName()));
    for (const KLVAccordionView *list : { window.eventsAccordion(), window.tasksAccordion() })
        QVERIFY(!list->accessibleName().isEmpty());
}

void VTMainWindowTest::dateLabelOmitsTheCurrentYear()
{
    MainWindowFixture fixture;
    const VTMainWindowController &controller = fixture.wakeWithWindow();

    QCOMPARE(controller.dateLabel()->text(), u"Friday, 20 November"_s);
}

void VTMainWindowTest::dateLabelNamesAnotherYear()
{
    MainWindowFixture fixture;
    VTMainWindowController &controller = fixture.wakeWithWindow();

    controller.setDate(localInstant("2027-01-01T12:00"));

    QCOMPARE(controller.dateLabel()->text(), u"Friday, 1 January 2027"_s);
}

void VTMainWindowTest::dateLabelFollowsTheYearsChange()
{
    MainWindowFixture fixture;
    fixture.clock.setNow(localInstant("2026-12-31T23:59").addSecs(55));
    const VTMainWindowController &controller = fixture.wakeWithWindow();
    QCOMPARE(controller.dateLabel()->text(), u"Thursday, 31 December"_s);

    fixture.clock.advance(10s);

    QCOMPARE(controller.dateLabel()->text(), u"Friday, 1 January"_s);
}

void VTMainWindowTest::navigatorShowsTodayAndNotTheShownDay()
{
    MainWindowFixture fixture;
    VTMainWindowController &controller = fixture.wakeWithWindow();

    controller.setDate(localInstant("2026-11-25T12:00"));

    QCOMPARE(controller.dateNavigator()->labelForSegment(2), u"Fri 20 Nov"_s);
}

void VTMainWindowTest::navigatorWalksByFixedDays_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QDateTime>("expected");

    QTest::newRow("previous week") << u"previousWeekButton"_s << localInstant("2026-11-13T10:00");
    QTest::newRow("previous day") << u"previousDayButton"_s << localInstant("2026-11-19T10:00");
    QTest::newRow("next day") << u"nextDayButton"_s << localInstant("2026-11-21T10:00");
    QTest::newRow("next week") << u"nextWeekButton"_s << localInstant("2026-11-27T10:00");
}

void VTMainWindowTest::navigatorWalksByFixedDays()
{
    QFETCH(const QString, button);
    QFETCH(const QDateTime, expected);
    MainWindowFixture fixture;
    const VTMainWindowController &controller = fixture.wakeWithWindow();

    QTest::mouseClick(fixture.window->findChild<QWidget *>(button), Qt::LeftButton);

    QCOMPARE(controller.date(), expected);
}

void VTMainWindowTest::navigatorCopiesTheSegmentsTag()
{
    MainWindowFixture fixture;
    const VTMainWindowController &controller = fixture.wakeWithWindow();

    QTest::mouseClick(fixture.window->findChild<QWidget *>(u"nextWeekButton"_s), Qt::LeftButton);

    QCOMPARE(controller.dateNavigator()->tag(), 7);
}

void VTMainWindowTest::daysAreSecondsAcrossAClockChange()
{
    MainWindowFixture fixture;
    fixture.clock.setNow(localInstant("2026-10-24T23:30"));
    const VTMainWindowController &controller = fixture.wakeWithWindow();

    // The next day has 25 hours: one step of 86400 seconds does not reach half past eleven again.
    QTest::mouseClick(fixture.window->findChild<QWidget *>(u"nextDayButton"_s), Qt::LeftButton);

    QCOMPARE(controller.date().toLocalTime(), localInstant("2026-10-25T22:30"));
}

void VTMainWindowTest::middleSegmentGoesToThisInstant()
{
    MainWindowFixture fixture;
    VTMainWindowController &controller = fixture.wakeWithWindow();
    controller.setDate(localInstant("2020-01-01T00:00"));

    QTest::mouseClick(fixture.window->findChild<QWidget *>(u"todayButton"_s), Qt::LeftButton);

    QCOMPARE(controller.date(), fixture.clock.now());
    QVERIFY(controller.hasDateRefresher());
}

void VTMainWindowTest::shortcutsWorkFromAnywhere_data()
{
    QTest::addColumn<QKeyCombination>("keys");
    QTest::addColumn<QDateTime>("expected");

    QTest::newRow("today") << (Qt::CTRL | Qt::Key_T) << localInstant("2026-11-20T10:00");
    QTest::newRow("previous day") << (Qt::CTRL | Qt::Key_Left) << localInstant("2026-11-10T12:00");
    QTest::newRow("next day") << (Qt::CTRL | Qt::Key_Right) << localInstant("2026-11-12T12:00");
    QTest::newRow("previous week") << (Qt::CTRL | Qt::SHIFT | Qt::Key_Left) << localInstant("2026-11-04T12:00");
    QTest::newRow("next week") << (Qt::CTRL | Qt::SHIFT | Qt::Key_Right) << localInstant("2026-11-18T12:00");
}

void VTMainWindowTest::shortcutsWorkFromAnywhere()
{
    QFETCH(const QKeyCombination, keys);
    QFETCH(const QDateTime, expected);
    MainWindowFixture fixture;
    VTMainWindowController &controller = fixture.wakeWithWindow();
    QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));
    const QList<QWidget *> places { controller.eventsAccordion(), controller.tasksAccordion(),
        fixture.window->findChild<QWidget *>(u"todayButton"_s), fixture.window->findChild<QWidget *>(u"menuButton"_s) };

    for (QWidget *place : places) {
        controller.setDate(localInstant("2026-11-11T12:00"));
        place->setFocus();
        QTest::keyClick(fixture.window->windowHandle(), keys.key(), keys.keyboardModifiers());
        QCOMPARE(controller.date(), expected);
    }
}

void VTMainWindowTest::menuOpensByMouseAndKeyboard_data()
{
    QTest::addColumn<std::function<void(VTMainWindow &)>>("open");
    using Way = std::function<void(VTMainWindow &)>;

    QTest::newRow("button") << Way(
        [](VTMainWindow &window) { QTest::mouseClick(window.dateBar()->menuButton(), Qt::LeftButton); });
    QTest::newRow("F10") << Way([](VTMainWindow &window) { QTest::keyClick(window.windowHandle(), Qt::Key_F10); });
    QTest::newRow("Alt+M") << Way(
        [](VTMainWindow &window) { QTest::keyClick(window.windowHandle(), Qt::Key_M, Qt::AltModifier); });
    QTest::newRow("F10 without the date bar") << Way([](VTMainWindow &window) {
        window.setDateBarVisible(false);
        QTest::keyClick(window.windowHandle(), Qt::Key_F10);
    });
}

void VTMainWindowTest::menuOpensByMouseAndKeyboard()
{
    QFETCH(const std::function<void(VTMainWindow &)>, open);
    MainWindowFixture fixture;
    fixture.wakeWithWindow();
    QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));

    open(*fixture.window);

    QTRY_VERIFY(fixture.window->menu()->isVisible());
    fixture.window->menu()->close();
}

void VTMainWindowTest::menuItemsWork()
{
    MainWindowFixture fixture;
    const VTMainWindowController &controller = fixture.wakeWithWindow();
    QMenu *const menu = fixture.window->menu();
    fixture.window->popUpMenu();

    // "Go", and in it the third item: next day.
    auto *go = fixture.window->findChild<QMenu *>(u"goMenu"_s);
    for (int step = 0; step < menu->actions().size() && menu->activeAction() != go->menuAction(); ++step)
        QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Right);
    QTRY_VERIFY(go->isVisible());
    for (int i = 0; i < 2; ++i)
        QTest::keyClick(go, Qt::Key_Down);
    QTest::keyClick(go, Qt::Key_Return);

    QCOMPARE(controller.date(), localInstant("2026-11-21T10:00"));
}

void VTMainWindowTest::arrowsMoveTheSelectionFromAnywhere()
{
    MainWindowFixture fixture;
    fixture.addEvent("one", "2026-11-20T08:00");
    fixture.addEvent("two", "2026-11-20T09:00");
    const VTMainWindowController &controller = fixture.wakeWithWindow();
    QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));

    QTest::keyClick(controller.eventsAccordion(), Qt::Key_Down);
    QCOMPARE(controller.selectedCalItemUID().value_or(QString()), u"two"_s);

    QTest::keyClick(fixture.window->findChild<QWidget *>(u"todayButton"_s), Qt::Key_Up);
    QCOMPARE(controller.selectedCalItemUID().value_or(QString()), u"one"_s);
}

void VTMainWindowTest::returnTicksTheSelectedTask()
{
    MainWindowFixture fixture;
    fixture.addTask("task");
    const VTMainWindowController &controller = fixture.wakeWithWindow();

    QTest::keyClick(controller.tasksAccordion(), Qt::Key_Return);

    QVERIFY(fixture.backend().storedTask(u"task"_s)->isCompleted());
    QTRY_VERIFY(controller.tasks().first()->isCompleted());
}

void VTMainWindowTest::tabWalksThroughTheWindow()
{
    MainWindowFixture fixture;
    const VTMainWindowController &controller = fixture.wakeWithWindow();
    QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));
    controller.eventsAccordion()->setFocus();

    QStringList walk;
    for (int i = 0; i < 6; ++i) {
        QTest::keyClick(fixture.window->focusWidget(), Qt::Key_Tab);
        walk.append(fixture.window->focusWidget()->objectName());
    }

    QCOMPARE(walk,
        (QStringList { u"tasksAccordion"_s, u"divider"_s, u"todayButton"_s, u"newButton"_s, u"menuButton"_s,
            u"eventsAccordion"_s }));
}

void VTMainWindowTest::clickOnARowSelectsIt()
{
    MainWindowFixture fixture;
    fixture.addEvent("event");
    fixture.addTask("task");
    const VTMainWindowController &controller = fixture.wakeWithWindow();
    QVERIFY(QTest::qWaitForWindowExposed(fixture.window.get()));

    QTest::mouseClick(controller.tasksAccordion(), Qt::LeftButton, {}, QPoint(150, 12));

    QCOMPARE(controller.selectedCalItemUID().value_or(QString()), u"task"_s);
    QVERIFY(controller.tasksAccordion()->isFirstResponder());
}

void VTMainWindowTest::emptyListsSaySo()
{
    MainWindowFixture fixture;
    const VTMainWindowController &controller = fixture.wakeWithWindow();
    QVERIFY(QTest::qWaitForWindowExposed(fixture.window.get()));

    // One word is longer than the other: so is the ink on the line.
    const auto inkWidth = [](KLVAccordionView *list) {
        const QImage image = list->grab().toImage();
        const QRgb background = image.pixel(0, 0);
        int left = image.width();
        int right = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixel(x, y) != background) {
                    left = std::min(left, x);
                    right = std::max(right, x);
                }
            }
        }
        return right - left;
    };
    const int events = inkWidth(controller.eventsAccordion());
    const int tasks = inkWidth(controller.tasksAccordion());

    QVERIFY(tasks > 20);
    QVERIFY(events > tasks + 40);
}

void VTMainWindowTest::eventsListAloneHasAlternateRows()
{
    MainWindowFixture fixture;
    const VTMainWindowController &controller = fixture.wakeWithWindow();

    QCOMPARE(controller.eventsAccordion()->alternativeBackgroundColor().rgb(), qRgb(237, 243, 254));
    QVERIFY(!controller.tasksAccordion()->alternativeBackgroundColor().isValid());
}

void VTMainWindowTest::keyboardIsInTheListOfTheFirstItem()
{
    MainWindowFixture withEvents;
    withEvents.addEvent("event");
    withEvents.addTask("task");
    QVERIFY(withEvents.wakeWithWindow().eventsAccordion()->isFirstResponder());

    MainWindowFixture withoutEvents;
    withoutEvents.addTask("task");
    QVERIFY(withoutEvents.wakeWithWindow().tasksAccordion()->isFirstResponder());
}

void VTMainWindowTest::selectedRowHasARingOfItsCalendarsColor()
{
    MainWindowFixture fixture;
    fixture.addEvent("event", "2026-11-20T08:00", "Work");
    const VTMainWindowController &controller = fixture.wakeWithWindow();
    QVERIFY(QTest::qWaitForWindowExposed(fixture.window.get()));

    const QImage image = controller.eventsAccordion()->grab().toImage();

    // In the middle of the ring's left side, and inside of it at 0.15 over the background.
    const int middle = qRound(controller.eventsAccordion()->frameRectangle().height() / 2);
    QCOMPARE(QColor(image.pixel(2, middle)), QColor(Qt::red));
    const QColor inside(image.pixel(8, middle));
    QCOMPARE(inside.red(), 255);
    QVERIFY(std::abs(inside.green() - qRound(255 * 0.85)) <= 2);
}

void VTMainWindowTest::refetchKeepsSelectionScrollingAndFocus()
{
    LongDay fixture;
    VTMainWindowController &controller = fixture.wakeWithWindow();
    QVERIFY(QTest::qWaitForWindowExposed(fixture.window.get()));
    controller.setSelectedCalItemUID(u"event 10"_s);
    const auto areas = fixture.window->findChildren<KLVAccordionScrollArea *>();
    QCOMPARE(areas.size(), 2);
    for (const KLVAccordionScrollArea *area : areas) {
        QVERIFY(area->verticalScrollBar()->maximum() > 40);
        area->verticalScrollBar()->setValue(37);
    }
    controller.tasksAccordion()->setFocus();

    fixture.clock.advance(10s);
    controller.calStoreDidChange();

    QCOMPARE(controller.selectedCalItemUID().value_or(QString()), u"event 10"_s);
    for (const KLVAccordionScrollArea *area : areas)
        QCOMPARE(area->verticalScrollBar()->value(), 37);
    QCOMPARE(fixture.window->focusWidget(), controller.tasksAccordion());
}

void VTMainWindowTest::refetchRepaintsNothing()
{
    LongDay fixture;
    VTMainWindowController &controller = fixture.wakeWithWindow();
    QVERIFY(QTest::qWaitForWindowExposed(fixture.window.get()));
    controller.setSelectedCalItemUID(u"event 03"_s);
    QTest::qWait(1);
    const QImage before = fixture.window->grab().toImage();
    PaintCounter events(controller.eventsAccordion());
    PaintCounter tasks(controller.tasksAccordion());
    PaintCounter bar(fixture.window->dateBar());

    fixture.clock.advance(10s);
    QCoreApplication::processEvents();
    QCOMPARE(events.paints, 0);
    QCOMPARE(tasks.paints, 0);
    QCOMPARE(bar.paints, 0);

    controller.calStoreDidChange();
    QCoreApplication::processEvents();
    QCOMPARE(events.paints, 0);
    QCOMPARE(tasks.paints, 0);
    QCOMPARE(bar.paints, 0);
    QCOMPARE(fixture.window->grab().toImage(), before);
}

void VTMainWindowTest::storeChangeRepaintsTheChangedRowAlone()
{
    LongDay fixture;
    VTMainWindowController &controller = fixture.wakeWithWindow();
    QVERIFY(QTest::qWaitForWindowExposed(fixture.window.get()));
    QTest::qWait(1);
    PaintCounter events(controller.eventsAccordion());
    PaintCounter tasks(controller.tasksAccordion());

    const CalTaskPtr changed = makeTask(u"task 02"_s, u"task 02, said in other words"_s);
    fixture.backend().removeItem(u"task 02"_s);
    fixture.backend().addTask(u"Home"_s, changed);
    controller.calStoreDidChange();
    QCoreApplication::processEvents();

    QCOMPARE(events.paints, 0);
    QVERIFY(tasks.paints > 0);
    QVERIFY(tasks.painted.boundingRect().height() < 60);
}

void VTMainWindowTest::anotherDayBeginsAtTheTop()
{
    LongDay fixture;
    for (int i = 0; i < 20; ++i)
        fixture.addEvent(qPrintable(u"next %1"_s.arg(i)), "2026-11-21T12:00");
    const VTMainWindowController &controller = fixture.wakeWithWindow();
    QVERIFY(QTest::qWaitForWindowExposed(fixture.window.get()));
    fixture.window->eventsScrollArea()->verticalScrollBar()->setValue(37);

    QTest::mouseClick(fixture.window->findChild<QWidget *>(u"nextDayButton"_s), Qt::LeftButton);

    QCOMPARE(controller.events().size(), 20);
    QCOMPARE(fixture.window->eventsScrollArea()->verticalScrollBar()->value(), 0);
}

void VTMainWindowTest::dateBarIsToggledAndRemembered()
{
    MainWindowFixture fixture;
    VTMainWindowController &controller = fixture.wakeWithWindow();
    QCOMPARE(controller.showHideDateBarMenuTitle(), u"Hide Date Bar"_s);
    QCOMPARE(fixture.window->menu()->command("toogleDateBar")->text(), u"Hide Date Bar"_s);

    fixture.window->menu()->command("toogleDateBar")->trigger();

    QVERIFY(!fixture.window->dateBar()->isVisible());
    QCOMPARE(fixture.window->menu()->command("toogleDateBar")->text(), u"Show Date Bar"_s);
    QVERIFY(!fixture.window->windowState().isDateBarVisible);

    controller.toogleDateBar();
    QVERIFY(fixture.window->dateBar()->isVisible());
}

void VTMainWindowTest::windowIsFoundAsItWasLeft()
{
    WindowState left;
    left.frame = QRect(100, 120, 400, 500);
    left.dividerPosition = 150;
    VTMainWindow window;

    window.restoreWindowState(left);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    const WindowState found = window.windowState();
    QCOMPARE(found.frame.value_or(QRect()), left.frame.value_or(QRect()));
    QCOMPARE(found.dividerPosition.value_or(-1), 150);
    QVERIFY(found.isDateBarVisible);
}

void VTMainWindowTest::frameOutsideOfAllScreensIsNotRestored()
{
    WindowState left;
    left.frame = QRect(90'000, 90'000, 400, 500);
    VTMainWindow window;

    window.restoreWindowState(left);
    window.show();

    QVERIFY(window.screen()->availableGeometry().intersects(window.geometry()));
    QCOMPARE(window.size(), QSize(400, 500));
}

void VTMainWindowTest::frameSmallerThanTheSmallestIsEnlarged()
{
    WindowState left;
    left.frame = QRect(0, 0, 200, 100);
    VTMainWindow window;

    window.restoreWindowState(left);

    QVERIFY(window.width() >= window.minimumWidth());
    QVERIFY(window.height() >= window.minimumHeight());
}

void VTMainWindowTest::dividerStaysInsideTheWindow()
{
    WindowState left;
    left.dividerPosition = 50'000;
    VTMainWindow window;

    window.restoreWindowState(left);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    const QList<int> sizes = window.splitView()->sizes();
    QVERIFY(sizes.at(0) > 0);
    QVERIFY(sizes.at(0) + sizes.at(1) < window.height());
}

VANTLE_TEST(VTMainWindowTest)
#include "VTMainWindowTest.moc"
