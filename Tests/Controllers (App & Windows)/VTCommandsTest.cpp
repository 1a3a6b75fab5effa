// SPDX-License-Identifier: MIT
#include "MainWindowFixture.h"

#include <KLVAccordionView.h>
#include <TestRegistry.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

// Two events and two to-dos, in the order of their names.
struct FullDay : MainWindowFixture {
    FullDay()
    {
        addEvent("event 1", "2026-11-20T08:00");
        addEvent("event 2", "2026-11-20T09:00");
        addTask("task 1");
        addTask("task 2");
    }
};

QString selected(const VTMainWindowController &controller)
{
    return controller.selectedCalItemUID().value_or(u"(none)"_s);
}

} // namespace

class VTCommandsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void upWithoutSelectionSelectsTheLastTask();
    void upWithoutSelectionAndTasksSelectsTheLastEvent();
    void downWithoutSelectionSelectsTheFirstEvent();
    void downWithoutSelectionAndEventsSelectsTheFirstTask();
    void movesOnAnEmptyDayBeep();
    void downWalksBothListsAndBeepsAtTheEnd();
    void upWalksBothListsAndBeepsAtTheTop();
    void downFromTheLastEventWithoutTasksDoesNothing();
    void upFromTheFirstTaskWithoutEventsBeeps();
    void staleSelectionCountsAsNone();
    void moveUpAndMoveDownAreTheArrowKeysNames();
    void everyEventOfAnIdentifierIsSelected();
    void noSelectionIsNothingAndNotAnEmptyList();
    void selectionIsAnnouncedUnderBothNames();
    void returnOnAnEventDoesNothing();
    void returnFlipsTheSelectedTask();

    void pressOnEmptySpaceIsNotUsed();
    void pressSelectsAndMovesTheFocus();
    void everyButtonAndClickCountSelects_data();
    void everyButtonAndClickCountSelects();
    void controlClickShowsTheItemInTheCalendarApplication();
    void controlClickWithoutACalendarApplicationOnlySelects();
    void rowsAreMadeForEventsAndTasksAlone();

    void focusFollowsTheSelectionAcrossTheLists();
    void focusElsewhereStaysWhereItIs();
};

void VTCommandsTest::upWithoutSelectionSelectsTheLastTask()
{
    FullDay day;
    VTMainWindowController &controller = day.wake();
    controller.setSelectedCalItemUID(std::nullopt);

    controller.moveSelectionUp();

    QCOMPARE(selected(controller), u"task 2"_s);
    QCOMPARE(day.beeper.beeps, 0);
}

void VTCommandsTest::upWithoutSelectionAndTasksSelectsTheLastEvent()
{
    MainWindowFixture day;
    day.addEvent("event 1", "2026-11-20T08:00");
    day.addEvent("event 2", "2026-11-20T09:00");
    VTMainWindowController &controller = day.wake();
    controller.setSelectedCalItemUID(std::nullopt);

    controller.moveSelectionUp();

    QCOMPARE(selected(controller), u"event 2"_s);
}

void VTCommandsTest::downWithoutSelectionSelectsTheFirstEvent()
{
    FullDay day;
    VTMainWindowController &controller = day.wake();
    controller.setSelectedCalItemUID(std::nullopt);

    controller.moveSelectionDown();

    QCOMPARE(selected(controller), u"event 1"_s);
}

void VTCommandsTest::downWithoutSelectionAndEventsSelectsTheFirstTask()
{
    MainWindowFixture day;
    day.addTask("task 1");
    VTMainWindowController &controller = day.wake();
    controller.setSelectedCalItemUID(std::nullopt);

    controller.moveSelectionDown();

    QCOMPARE(selected(controller), u"task 1"_s);
}

void VTCommandsTest::movesOnAnEmptyDayBeep()
{
    MainWindowFixture day;
    VTMainWindowController &controller = day.wake();

    controller.moveSelectionUp();
    controller.moveSelectionDown();

    QCOMPARE(day.beeper.beeps, 2);
    QVERIFY(!controller.selectedCalItemUID());
}

void VTCommandsTest::downWalksBothListsAndBeepsAtTheEnd()
{
    FullDay day;
    VTMainWindowController &controller = day.wake();

    QStringList walk;
    for (int step = 0; step < 4; ++step) {
        controller.moveSelectionDown();
        walk.append(selected(controller));
    }

    QCOMPARE(walk, (QStringList { u"event 2"_s, u"task 1"_s, u"task 2"_s, u"task 2"_s }));
    QCOMPARE(day.beeper.beeps, 1);
}

void VTCommandsTest::upWalksBothListsAndBeepsAtTheTop()
{
    FullDay day;
    VTMainWindowController &controller = day.wake();
    controller.setSelectedCalItemUID(u"task 2"_s);

    QStringList walk;
    for (int step = 0; step < 4; ++step) {
        controller.moveSelectionUp();
        walk.append(selected(controller));
    }

    QCOMPARE(walk, (QStringList { u"task 1"_s, u"event 2"_s, u"event 1"_s, u"event 1"_s }));
    QCOMPARE(day.beeper.beeps, 1);
}

void VTCommandsTest::downFromTheLastEventWithoutTasksDoesNothing()
{
    MainWindowFixture day;
    day.addEvent("event 1");
    VTMainWindowController &controller = day.wake();

    controller.moveSelectionDown();

    QCOMPARE(selected(controller), u"event 1"_s);
    QCOMPARE(day.beeper.beeps, 0);
}

void VTCommandsTest::upFromTheFirstTaskWithoutEventsBeeps()
{
    MainWindowFixture day;
    day.addTask("task 1");
    VTMainWindowController &controller = day.wake();

    controller.moveSelectionUp();

    QCOMPARE(selected(controller), u"task 1"_s);
    QCOMPARE(day.beeper.beeps, 1);
}

void VTCommandsTest::staleSelectionCountsAsNone()
{
    FullDay day;
    VTMainWindowController &controller = day.wake();
    controller.setSelectedCalItemUID(u"gone"_s);

    controller.moveSelectionDown();

    QCOMPARE(selected(controller), u"event 1"_s);
}

void VTCommandsTest::moveUpAndMoveDownAreTheArrowKeysNames()
{
    FullDay day;
    VTMainWindowController &controller = day.wake();

    QVERIFY(QMetaObject::invokeMethod(&controller, "moveDown", Q_ARG(QObject *, nullptr)));
    QCOMPARE(selected(controller), u"event 2"_s);

    QVERIFY(QMetaObject::invokeMethod(&controller, "moveUp", Q_ARG(QObject *, nullptr)));
    QCOMPARE(selected(controller), u"event 1"_s);
}

void VTCommandsTest::everyEventOfAnIdentifierIsSelected()
{
    FullDay day;
    VTMainWindowController &controller = day.wake();
    const CalEventPtr one = makeEvent(u"same"_s, u"a"_s, day.clock.now(), day.clock.now());
    const CalEventPtr two = makeEvent(u"same"_s, u"b"_s, day.clock.now(), day.clock.now());
    controller.setEvents({ one, two });

    controller.setSelectedCalItemUID(u"same"_s);

    QCOMPARE(controller.selectedCalItems().value_or(CalCalendarItemList()), (CalCalendarItemList { one, two }));
    QCOMPARE(controller.selectedCalItem(), CalCalendarItemPtr(two));
}

void VTCommandsTest::noSelectionIsNothingAndNotAnEmptyList()
{
    FullDay day;
    VTMainWindowController &controller = day.wake();

    controller.setSelectedCalItemUID(u"gone"_s);

    QVERIFY(!controller.selectedCalItems().has_value());
    QVERIFY(!controller.selectedCalItem());
}

void VTCommandsTest::selectionIsAnnouncedUnderBothNames()
{
    class Recorder final : public KeyValueObserver
    {
    public:
        void observeValueForKeyPath_ofObject_change_context(const QString &keyPath, KeyValueObject *object,
            const KeyValueChange & /*change*/, void * /*context*/) override
        {
            keys.append(keyPath);
            wasStored = object->valueForKey(u"selectedCalItemUID"_s) == u"task 1"_s;
        }
        QStringList keys;
        bool wasStored = false;
    };
    FullDay day;
    VTMainWindowController &controller = day.wake();
    Recorder recorder;
    controller.addObserver_forKeyPath_options_context(&recorder, u"selectedCalItem"_s);
    controller.addObserver_forKeyPath_options_context(&recorder, u"selectedCalItems"_s);

    controller.setSelectedCalItemUID(u"task 1"_s);

    QCOMPARE(recorder.keys, (QStringList { u"selectedCalItem"_s, u"selectedCalItems"_s }));
    QVERIFY(recorder.wasStored);
}

void VTCommandsTest::returnOnAnEventDoesNothing()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();

    controller.insertNewline();

    QCOMPARE(day.backend().saves(), 0);
}

void VTCommandsTest::returnFlipsTheSelectedTask()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();
    controller.setSelectedCalItemUID(u"task 2"_s);

    controller.insertNewline();

    QCOMPARE(day.backend().saves(), 1);
    QVERIFY(day.backend().storedTask(u"task 2"_s)->isCompleted());
    QVERIFY(!day.backend().storedTask(u"task 1"_s)->isCompleted());
}

void VTCommandsTest::pressOnEmptySpaceIsNotUsed()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();

    const bool wasUsed
        = controller.accordionView_mouseDown_forRepresentedObject(controller.tasksAccordion(), {}, nullptr);

    QVERIFY(!wasUsed);
    QCOMPARE(selected(controller), u"event 1"_s);
}

void VTCommandsTest::pressSelectsAndMovesTheFocus()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();

    const bool wasUsed = controller.accordionView_mouseDown_forRepresentedObject(
        controller.tasksAccordion(), {}, controller.tasks().last());

    QVERIFY(wasUsed);
    QCOMPARE(selected(controller), u"task 2"_s);
    QVERIFY(controller.tasksAccordion()->isFirstResponder());
}

void VTCommandsTest::everyButtonAndClickCountSelects_data()
{
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::addColumn<int>("clickCount");

    QTest::newRow("left") << Qt::LeftButton << 1;
    QTest::newRow("double") << Qt::LeftButton << 2;
    QTest::newRow("right") << Qt::RightButton << 1;
    QTest::newRow("middle") << Qt::MiddleButton << 1;
}

void VTCommandsTest::everyButtonAndClickCountSelects()
{
    QFETCH(const Qt::MouseButton, button);
    QFETCH(const int, clickCount);
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();

    controller.accordionView_mouseDown_forRepresentedObject(controller.eventsAccordion(),
        { .button = button, .modifiers = {}, .clickCount = clickCount, .location = {}, .globalPosition = {} },
        controller.events().last());

    QCOMPARE(selected(controller), u"event 2"_s);
    QVERIFY(controller.eventsAccordion()->isFirstResponder());
}

void VTCommandsTest::controlClickShowsTheItemInTheCalendarApplication()
{
    FullDay day;
    day.calendarApplication.addCalendar(u"Home"_s);
    day.calendarApplication.addElement(u"Home"_s, CalendarApplication::ElementKind::Event, u"event 2"_s);
    VTMainWindowController &controller = day.wakeWithWindow();

    controller.accordionView_mouseDown_forRepresentedObject(controller.eventsAccordion(),
        { .button = Qt::LeftButton,
            .modifiers = Qt::ControlModifier,
            .clickCount = 1,
            .location = {},
            .globalPosition = {} },
        controller.events().last());

    QCOMPARE(selected(controller), u"event 2"_s);
    QVERIFY(day.calendarApplication.commands().contains(u"show event Home/event 2"_s));
}

void VTCommandsTest::controlClickWithoutACalendarApplicationOnlySelects()
{
    FullDay day;
    VTMainWindowServices services = day.services();
    services.calendarApplication = nullptr;
    VTMainWindowController controller(services);
    controller.awakeFromNib();

    controller.accordionView_mouseDown_forRepresentedObject(nullptr,
        { .button = Qt::LeftButton,
            .modifiers = Qt::ControlModifier,
            .clickCount = 1,
            .location = {},
            .globalPosition = {} },
        controller.events().last());

    QCOMPARE(selected(controller), u"event 2"_s);
}

void VTCommandsTest::rowsAreMadeForEventsAndTasksAlone()
{
    FullDay day;
    VTMainWindowController &controller = day.wake();
    const CalCalendarPtr neither = makeCalendar(u"x"_s);

    QVERIFY(controller.accordionView_itemForRepresentedObject(nullptr, controller.events().first()));
    QVERIFY(controller.accordionView_itemForRepresentedObject(nullptr, controller.tasks().first()));
    QVERIFY(!controller.accordionView_itemForRepresentedObject(nullptr, neither));
}

void VTCommandsTest::focusFollowsTheSelectionAcrossTheLists()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();
    QVERIFY(controller.eventsAccordion()->isFirstResponder());

    controller.moveSelectionDown();
    controller.moveSelectionDown();
    QCOMPARE(selected(controller), u"task 1"_s);
    QVERIFY(controller.tasksAccordion()->isFirstResponder());

    controller.moveSelectionUp();
    QVERIFY(controller.eventsAccordion()->isFirstResponder());
}

void VTCommandsTest::focusElsewhereStaysWhereItIs()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();
    controller.setSelectedCalItemUID(u"event 2"_s);
    auto *menuButton = day.window->findChild<QWidget *>(u"menuButton"_s);
    menuButton->setFocus();

    controller.moveSelectionDown();

    QCOMPARE(selected(controller), u"task 1"_s);
    QCOMPARE(day.window->focusWidget(), menuButton);
}

VANTLE_TEST(VTCommandsTest)
#include "VTCommandsTest.moc"
