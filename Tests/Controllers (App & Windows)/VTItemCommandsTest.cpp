// SPDX-License-Identifier: MIT
#include "MainWindowFixture.h"

#include <KLVAccordionView.h>
#include <KLVBarButton.h>
#include <KLVDateBar.h>
#include <TestRegistry.h>
#include <VTMainMenu.h>

#include <QAction>
#include <QContextMenuEvent>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

struct FullDay : MainWindowFixture {
    FullDay()
    {
        addEvent("event 1", "2026-11-20T08:00");
        addEvent("event 2", "2026-11-20T09:00");
        addTask("task 1");
        addTask("task 2");
    }

    QAction *command(const char *name) const { return window->menu()->command(name); }
    void select(const QString &uid) const { controller->setSelectedCalItemUID(uid); }
    void press(const CalCalendarItemPtr &item, Qt::MouseButton button, int clickCount = 1,
        Qt::KeyboardModifiers modifiers = {}) const
    {
        const bool isEvent = item->kind() == CalItemKind::Event;
        controller->accordionView_mouseDown_forRepresentedObject(
            isEvent ? controller->eventsAccordion() : controller->tasksAccordion(),
            { .button = button,
                .modifiers = modifiers,
                .clickCount = clickCount,
                .location = {},
                .globalPosition = {} },
            item);
    }
    // The keyboard's own way into the window.
    void type(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const
    {
        QTest::keyClick(window->windowHandle(), key, modifiers);
    }
};

} // namespace

class VTItemCommandsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void deleteRemovesTheSelectedTask();
    void deleteRemovesOneOccurrence();
    void deleteWithoutASelectionDoesNothing();
    void refusedDeleteShowsAnAlertAndLeavesTheLists();
    void anOverwrittenChangeShowsAnAlert();
    void undoPutsTheLastDeletedItemBack();
    void undoWithoutADeleteDoesNothing();
    void refusedUndoShowsAnAlert();
    void editOpensTheSheetOfTheSelectedItem();
    void editWithoutASelectionOpensNothing();
    void doubleClickEdits();
    void doubleClickOnEmptySpaceOpensNothing();
    void controlClickShowsAndDoesNotEdit();
    void rightClickSelectsAndOpensTheContextMenu();
    void contextMenuKeyOpensItAtTheSelection();
    void contextMenuOffersEveryCommand();
    void calendarApplicationIsOfferedOnlyWhereThereIsOne();
    void showInCalendarTakesTheSelectedItem();
    void newEventHasATitleAndTheDefaultCalendar();
    void newTaskHasATitleAndTheDefaultCalendar();
    void newItemBringsTheWindowBack();
    void newItemDuringAnEditBeepsAndKeepsTheSheet();
    void keysWork_data();
    void keysWork();
    void deleteIsNamedForOneOccurrence();
    void undoNamesTheItem();
    void commandsNeedASelection();
    void commandsFollowTheDay();
    void newButtonOffersBothKinds();
    void savedEditIsShownAndStaysSelected();
    void heldReturnDoesNotTickTwice();
};

void VTItemCommandsTest::deleteRemovesTheSelectedTask()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();
    day.select(u"task 1"_s);

    controller.delete_();

    QCOMPARE(day.backend().writes(), QStringList { u"remove task: task 1"_s });
    QTRY_COMPARE(uidsOf(controller.tasks()), QStringList { u"task 2"_s });
    QVERIFY(day.alerts.messages.isEmpty());
}

void VTItemCommandsTest::deleteRemovesOneOccurrence()
{
    MainWindowFixture day;
    for (const char *start : { "2026-11-20T08:00", "2026-11-21T08:00" }) {
        const QDateTime begin = localInstant(start);
        day.backend().addEvent(u"Home"_s, makeOccurrence(u"series"_s, u"Walk"_s, begin, begin.addSecs(3600)));
    }
    VTMainWindowController &controller = day.wakeWithWindow();
    QCOMPARE(controller.events().size(), 1);

    controller.delete_();

    QCOMPARE(day.backend().writes(), QStringList { u"remove this: Walk"_s });
    QTRY_VERIFY(controller.events().isEmpty());
    QCOMPARE(day.backend().storedEvents(), 1);
}

void VTItemCommandsTest::deleteWithoutASelectionDoesNothing()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();
    for (const std::optional<QString> &uid : { std::optional<QString>(), std::optional(u"gone"_s) }) {
        controller.setSelectedCalItemUID(uid);

        controller.delete_();
    }

    QCOMPARE(day.backend().removals(), 0);
    QVERIFY(day.alerts.messages.isEmpty());
}

void VTItemCommandsTest::refusedDeleteShowsAnAlertAndLeavesTheLists()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();
    day.backend().refuseSaves(StoreError::Code::ReadOnly, u"The disk is read-only."_s);
    for (const QString &uid : { u"event 1"_s, u"task 1"_s }) {
        day.select(uid);

        controller.delete_();

        QVERIFY(day.alerts.messages.last().startsWith(u"“%1” in the calendar “Home” was not deleted."_s.arg(uid)));
        QVERIFY(day.alerts.messages.last().endsWith(u"The disk is read-only."_s));
    }
    QCOMPARE(day.alerts.messages.size(), 2);
    QCOMPARE(controller.events().size(), 2);
    QCOMPARE(controller.tasks().size(), 2);
}

void VTItemCommandsTest::anOverwrittenChangeShowsAnAlert()
{
    MainWindowFixture fixture;
    fixture.wakeWithWindow();
    StoreError error;
    error.code = StoreError::Code::Conflict;
    error.item = u"Lunch"_s;
    error.calendar = u"Home"_s;
    error.reason = u"Overwritten."_s;

    Q_EMIT fixture.backend().overwritten(error);

    QTRY_COMPARE(fixture.alerts.messages, QStringList { error.message() });
}

void VTItemCommandsTest::undoPutsTheLastDeletedItemBack()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();
    day.select(u"event 2"_s);
    controller.delete_();
    QTRY_COMPARE(controller.events().size(), 1);

    controller.undo();

    QTRY_COMPARE(uidsOf(controller.events()), (QStringList { u"event 1"_s, u"event 2"_s }));
    QVERIFY(!day.calendars.store().undoableRemovalTitle().has_value());
}

void VTItemCommandsTest::undoWithoutADeleteDoesNothing()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();

    controller.undo();

    QVERIFY(day.alerts.messages.isEmpty());
}

void VTItemCommandsTest::refusedUndoShowsAnAlert()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();
    controller.delete_();
    day.backend().refuseSaves(StoreError::Code::Io, u"The disk is full."_s);

    controller.undo();

    QCOMPARE(day.alerts.messages.size(), 1);
    QVERIFY(day.alerts.messages.first().contains(u"was not restored"_s));
    QVERIFY(day.command("undo")->isEnabled());
}

void VTItemCommandsTest::editOpensTheSheetOfTheSelectedItem()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();
    day.select(u"event 2"_s);
    controller.editSelectedItem();
    QCOMPARE(controller.eventEditController()->originalCalItem()->uid(), u"event 2"_s);
    QCOMPARE(controller.eventEditController()->window()->sheetParent(), day.window.get());
    QVERIFY(!controller.taskEditController()->isOpen());
    controller.eventEditController()->cancelEventEditSheet();

    day.select(u"task 1"_s);
    controller.editSelectedItem();

    QCOMPARE(controller.taskEditController()->originalCalItem()->uid(), u"task 1"_s);
    QVERIFY(!controller.eventEditController()->isOpen());
}

void VTItemCommandsTest::editWithoutASelectionOpensNothing()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();
    controller.setSelectedCalItemUID(std::nullopt);

    controller.editSelectedItem();

    QVERIFY(!controller.eventEditController()->isOpen());
    QVERIFY(!controller.taskEditController()->isOpen());
}

void VTItemCommandsTest::doubleClickEdits()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();

    day.press(controller.tasks().last(), Qt::LeftButton, 2);

    QVERIFY(controller.taskEditController()->isOpen());
    QCOMPARE(controller.taskEditController()->originalCalItem()->uid(), u"task 2"_s);
}

void VTItemCommandsTest::doubleClickOnEmptySpaceOpensNothing()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();

    controller.accordionView_mouseDown_forRepresentedObject(controller.tasksAccordion(),
        { .button = Qt::LeftButton, .modifiers = {}, .clickCount = 2, .location = {}, .globalPosition = {} }, nullptr);

    QVERIFY(!controller.eventEditController()->isOpen());
    QVERIFY(!controller.taskEditController()->isOpen());
}

void VTItemCommandsTest::controlClickShowsAndDoesNotEdit()
{
    FullDay day;
    day.calendarApplication.addCalendar(u"Home"_s);
    day.calendarApplication.addElement(u"Home"_s, CalendarApplication::ElementKind::Event, u"event 2"_s);
    VTMainWindowController &controller = day.wakeWithWindow();

    day.press(controller.events().last(), Qt::LeftButton, 2, Qt::ControlModifier);

    QVERIFY(day.calendarApplication.commands().contains(u"show event Home/event 2"_s));
    QVERIFY(!controller.eventEditController()->isOpen());
}

void VTItemCommandsTest::rightClickSelectsAndOpensTheContextMenu()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();

    day.press(controller.events().last(), Qt::RightButton, 1, Qt::ControlModifier);

    QCOMPARE(controller.selectedCalItemUID().value_or(QString()), u"event 2"_s);
    QTRY_VERIFY(controller.calItemContextMenu()->isVisible());
    QVERIFY(day.calendarApplication.commands().isEmpty());
}

void VTItemCommandsTest::contextMenuKeyOpensItAtTheSelection()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();
    QContextMenuEvent key(QContextMenuEvent::Keyboard, QPoint(1, 1), QPoint(1, 1));

    QApplication::sendEvent(controller.eventsAccordion(), &key);

    QTRY_VERIFY(controller.calItemContextMenu()->isVisible());
    QVERIFY(day.window->frameGeometry().contains(controller.calItemContextMenu()->pos()));
}

void VTItemCommandsTest::contextMenuOffersEveryCommand()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();

    QStringList offered;
    const auto actions = controller.calItemContextMenu()->actions();
    for (const QAction *action : actions) {
        if (!action->isSeparator() && action->isVisible())
            offered.append(action->objectName());
    }

    QCOMPARE(offered,
        (QStringList { u"editItem"_s, u"deleteItem"_s, u"showInCalendar"_s, u"newEvent"_s, u"newTask"_s, u"undo"_s }));
}

void VTItemCommandsTest::calendarApplicationIsOfferedOnlyWhereThereIsOne()
{
    FullDay day;
    day.wakeWithWindow();
    QVERIFY(day.command("showInCalendar")->isVisible());

    VTMainWindowServices services = day.services();
    services.calendarApplication = nullptr;
    VTMainWindow other;
    VTMainWindowController controller(services);
    controller.setWindow(&other);
    controller.awakeFromNib();

    QVERIFY(!other.menu()->command("showInCalendar")->isVisible());
}

void VTItemCommandsTest::showInCalendarTakesTheSelectedItem()
{
    FullDay day;
    day.calendarApplication.addCalendar(u"Home"_s);
    day.calendarApplication.addElement(u"Home"_s, CalendarApplication::ElementKind::Todo, u"task 1"_s);
    VTMainWindowController &controller = day.wakeWithWindow();

    controller.setSelectedCalItemUID(std::nullopt);
    controller.showSelectedCalItemInICal();
    QVERIFY(day.calendarApplication.commands().isEmpty());

    day.select(u"task 1"_s);
    day.command("showInCalendar")->trigger();
    QCOMPARE(day.calendarApplication.commands(), (QStringList { u"activate"_s, u"show todo Home/task 1"_s }));
}

void VTItemCommandsTest::newEventHasATitleAndTheDefaultCalendar()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();

    day.command("newEvent")->trigger();

    const CalCalendarItemPtr item = controller.eventEditController()->originalCalItem();
    QCOMPARE(item->title().value_or(QString()), u"New event"_s);
    QCOMPARE(item->calendar()->uid(), u"Home"_s);
    QVERIFY(!std::static_pointer_cast<CalEvent>(item)->startDate().isValid());
    QCOMPARE(day.backend().storedEvents(), 2);
    controller.eventEditController()->insertNewline();
    QCOMPARE(day.backend().storedEvents(), 3);
    QTRY_COMPARE(controller.events().size(), 3);
}

void VTItemCommandsTest::newTaskHasATitleAndTheDefaultCalendar()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();

    day.command("newTask")->trigger();

    const auto task = std::static_pointer_cast<CalTask>(controller.taskEditController()->originalCalItem());
    QCOMPARE(task->title().value_or(QString()), u"New to do"_s);
    QCOMPARE(task->calendar()->uid(), u"Home"_s);
    QVERIFY(!task->dueDate().has_value());
    QCOMPARE(task->priority(), 0);
    QVERIFY(task->alarms().isEmpty());
    controller.taskEditController()->cancelOperation();
    QCOMPARE(day.backend().storedTasks(), 2);
}

void VTItemCommandsTest::newItemBringsTheWindowBack()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();
    day.window->hide();

    QVERIFY(QMetaObject::invokeMethod(&controller, "showTaskEditSheetWithNewTask", Q_ARG(QObject *, nullptr)));

    QVERIFY(day.window->isVisible());
    QVERIFY(controller.taskEditController()->isOpen());
}

void VTItemCommandsTest::newItemDuringAnEditBeepsAndKeepsTheSheet()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();
    controller.editSelectedItem();
    QTest::keyClicks(controller.eventEditController()->titleField(), u"typed"_s);

    controller.showEventEditSheetWithNewEvent();
    controller.showTaskEditSheetWithNewTask();

    QCOMPARE(day.beeper.beeps, 2);
    QCOMPARE(controller.eventEditController()->titleField()->text(), u"typed"_s);
    QVERIFY(!controller.taskEditController()->isOpen());
}

void VTItemCommandsTest::keysWork_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("withControl");
    QTest::addColumn<bool>("withShift");
    QTest::addColumn<QString>("command");

    QTest::newRow("new event") << int(Qt::Key_N) << true << false << u"newEvent"_s;
    QTest::newRow("new to-do") << int(Qt::Key_N) << true << true << u"newTask"_s;
    QTest::newRow("edit") << int(Qt::Key_E) << true << false << u"editItem"_s;
    QTest::newRow("delete") << int(Qt::Key_Delete) << false << false << u"deleteItem"_s;
    QTest::newRow("undo") << int(Qt::Key_Z) << true << false << u"undo"_s;
}

void VTItemCommandsTest::keysWork()
{
    QFETCH(const int, key);
    QFETCH(const bool, withControl);
    QFETCH(const bool, withShift);
    QFETCH(const QString, command);
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();
    QVERIFY(QTest::qWaitForWindowActive(day.window.get()));
    day.select(u"task 2"_s);
    controller.delete_();
    QTRY_COMPARE(controller.tasks().size(), 1);
    day.select(u"event 1"_s);
    QSignalSpy triggered(day.command(qPrintable(command)), &QAction::triggered);

    Qt::KeyboardModifiers modifiers;
    modifiers.setFlag(Qt::ControlModifier, withControl);
    modifiers.setFlag(Qt::ShiftModifier, withShift);
    day.type(static_cast<Qt::Key>(key), modifiers);

    QCOMPARE(triggered.size(), 1);
}

void VTItemCommandsTest::deleteIsNamedForOneOccurrence()
{
    MainWindowFixture day;
    const QDateTime start = localInstant("2026-11-20T08:00");
    day.backend().addEvent(u"Home"_s, makeOccurrence(u"series"_s, u"Walk"_s, start, start.addSecs(3600)));
    day.addEvent("single");
    VTMainWindowController &controller = day.wakeWithWindow();
    const QAction *remove = day.window->menu()->command("deleteItem");
    QCOMPARE(remove->text(), u"Delete This Occurrence"_s);

    controller.setSelectedCalItemUID(u"single"_s);

    QCOMPARE(remove->text(), u"Delete"_s);
}

void VTItemCommandsTest::undoNamesTheItem()
{
    MainWindowFixture day;
    day.addEvent("R&D <b>\nplan");
    VTMainWindowController &controller = day.wakeWithWindow();
    const QAction *undo = day.window->menu()->command("undo");
    QCOMPARE(undo->text(), u"Undo Delete"_s);
    QVERIFY(!undo->isEnabled());

    controller.delete_();

    QCOMPARE(undo->text(), u"Undo Delete of “R&&D <b> plan”"_s);
    QVERIFY(undo->isEnabled());
}

void VTItemCommandsTest::commandsNeedASelection()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();
    QVERIFY(day.command("editItem")->isEnabled());

    controller.setSelectedCalItemUID(std::nullopt);

    for (const char *name : { "editItem", "deleteItem", "showInCalendar" })
        QVERIFY2(!day.command(name)->isEnabled(), name);
    for (const char *name : { "newEvent", "newTask" })
        QVERIFY2(day.command(name)->isEnabled(), name);
}

void VTItemCommandsTest::commandsFollowTheDay()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();

    controller.setDate(localInstant("2026-12-24T10:00"));
    QVERIFY(!day.command("deleteItem")->isEnabled());

    controller.setDate(localInstant("2026-11-20T10:00"));
    QVERIFY(day.command("deleteItem")->isEnabled());
}

void VTItemCommandsTest::newButtonOffersBothKinds()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();

    QTest::mouseClick(day.window->dateBar()->newButton(), Qt::LeftButton);

    auto *const menu = day.window->findChild<QMenu *>(u"newMenu"_s);
    QTRY_VERIFY(menu->isVisible());
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Return);
    QVERIFY(controller.taskEditController()->isOpen());
}

void VTItemCommandsTest::savedEditIsShownAndStaysSelected()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();
    day.select(u"task 1"_s);
    controller.editSelectedItem();
    QTest::keyClicks(controller.taskEditController()->titleField(), u"Bread"_s);

    QTest::keyClick(controller.taskEditController()->titleField(), Qt::Key_Return);

    QTRY_COMPARE(controller.tasks().first()->title().value_or(QString()), u"Bread"_s);
    QCOMPARE(controller.selectedCalItemUID().value_or(QString()), u"task 1"_s);
    QVERIFY(controller.selectedCalItem());
}

void VTItemCommandsTest::heldReturnDoesNotTickTwice()
{
    FullDay day;
    VTMainWindowController &controller = day.wakeWithWindow();
    day.select(u"task 1"_s);
    controller.tasksAccordion()->setFocus();

    QTest::keyClick(controller.tasksAccordion(), Qt::Key_Return);
    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_s, true);
    QApplication::sendEvent(controller.tasksAccordion(), &repeated);

    QCOMPARE(day.backend().saves(), 1);
    QVERIFY(day.backend().storedTask(u"task 1"_s)->isCompleted());
}

VANTLE_TEST(VTItemCommandsTest)
#include "VTItemCommandsTest.moc"
