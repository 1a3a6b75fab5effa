// SPDX-License-Identifier: MIT
#include "MainWindowFixture.h"

#include <KLVAccordionView.h>
#include <KLVCalendarsDrawer.h>
#include <KLVCheckBoxTable.h>
#include <KLVCheckBoxTableRow.h>
#include <KLVDatePicker.h>
#include <TestRegistry.h>
#include <VTMainMenu.h>

#include <QAccessible>
#include <QAction>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

// With the calendars "Home", "Work" and "Club", an event in each, and the drawer open.
struct OpenDrawer : MainWindowFixture {
    OpenDrawer()
    {
        backend().addCalendar(makeCalendar(u"Club"_s, Qt::green));
        addEvent("at home", "2026-11-20T08:00", "Home");
        addEvent("at work", "2026-11-20T09:00", "Work");
        addEvent("at the club", "2026-11-20T10:00", "Club");
        wakeWithWindow().toogleCalendarDrawer();
    }

    KLVCheckBoxTableRow *row(int index) const { return controller->calendarsTable()->rows().at(index); }
    KLVCalendarsDrawer *drawer() const { return window->calendarsDrawer(); }
    QStringList hidden() const { return controller->unselectedCalendarsUID().value_or(QStringList()); }
    QStringList shownEvents() const { return uidsOf(controller->events()); }
    void setAvailability(const QString &uid, CalCalendar::Availability availability)
    {
        CalCalendar::Values values { .uid = uid, .title = uid, .color = Qt::red };
        values.availability = availability;
        backend().replaceCalendar(std::make_shared<CalCalendar>(values));
        controller->calStoreDidChange();
    }
    void click(QWidget *widget) const { QTest::mouseClick(widget, Qt::LeftButton); }

    // The day's digits are typed into the picker, which then has an edit pending.
    void typeDay(const char *digits) const
    {
        controller->jumpToDate();
        QTest::keyClicks(controller->textDatePicker(), QLatin1String(digits));
    }
};

} // namespace

class VTCalendarsDrawerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void settingOpensTheDrawer_data();
    void settingOpensTheDrawer();
    void toggleAnnouncesItsTitle();
    void jumpToDateOpensTheDrawerAndLeavesTheTitle();
    void jumpToDatePutsTheKeyboardIntoThePicker();
    void closingTheDrawerReturnsTheKeyboardToTheList();

    void tableHasARowForEachCalendarInTheStoresOrder();
    void cellHasTheCalendarsColourAndTitle();
    void rowFollowsTheCalendarsOfTheStore();
    void clickHidesTheCalendarsItemsAndShowsThemAgain();
    void togglingTwiceMovesTheIdentifierToTheEnd();
    void calendarHiddenByItsToDoSourceIsShownAgain();
    void settingARowIgnoresTheValue();
    void identifierOfAnUnknownCalendarStays();
    void allAndNone();
    void noCalendarAtAllLeavesBothListsEmpty();
    void ticksAreKeptInTheSettings();

    void arrowsWalkAndSpaceTicks();
    void tabWalksThroughTheDrawer();
    void returnOnAButtonOrRowTicksNoTask();
    void assistiveTechnologyTicksACalendar();
    void hostileNamesArePlainText();
    void calendarThatAsksForItsPasswordSaysSo();
    void accountSettingsAreOfferedOnlyWhenTheyAreNeeded();
    void desktopWithoutAccountSettingsIsSaid();

    void pickedDayKeepsTheTimeOfDay();
    void pickerShowsTheShownDay();
    void tickNeverWritesIntoAFocusedPicker();
    void navigationReachesAFocusedPicker();
    void returnAfterTypingGoesToTheDayAndToTheList();
    void returnWithoutAnEditTicksTheSelectedTask();
    void escapeForgetsWhatWasTyped();
    void leavingThePickerTakesOverWhatWasTyped();
};

void VTCalendarsDrawerTest::settingOpensTheDrawer_data()
{
    QTest::addColumn<bool>("isOpen");
    QTest::newRow("open") << true;
    QTest::newRow("closed") << false;
}

void VTCalendarsDrawerTest::settingOpensTheDrawer()
{
    QFETCH(const bool, isOpen);
    MainWindowFixture fixture;
    fixture.defaults.setBool_forKey(isOpen, u"VTShowCalendarDrawer"_s);

    fixture.wakeWithWindow();

    QCOMPARE(fixture.window->calendarsDrawer()->isVisible(), isOpen);
    fixture.controller->toogleCalendarDrawer();
    fixture.controller->saveDefaults();
    QCOMPARE(fixture.defaults.boolForKey(u"VTShowCalendarDrawer"_s), !isOpen);
}

void VTCalendarsDrawerTest::toggleAnnouncesItsTitle()
{
    MainWindowFixture fixture;
    VTMainWindowController &controller = fixture.wakeWithWindow();
    QAction *const action = fixture.window->menu()->command("toogleCalendarDrawer");
    QCOMPARE(action->text(), u"Show Calendars Drawer"_s);

    action->trigger();
    QVERIFY(controller.showCalendarDrawer());
    QVERIFY(fixture.window->isDrawerVisible());
    QCOMPARE(action->text(), u"Hide Calendars Drawer"_s);

    action->trigger();
    QVERIFY(!fixture.window->isDrawerVisible());
    QCOMPARE(action->text(), u"Show Calendars Drawer"_s);
}

void VTCalendarsDrawerTest::jumpToDateOpensTheDrawerAndLeavesTheTitle()
{
    MainWindowFixture fixture;
    VTMainWindowController &controller = fixture.wakeWithWindow();
    QAction *const toggle = fixture.window->menu()->command("toogleCalendarDrawer");

    fixture.window->menu()->command("jumpToDate")->trigger();

    QVERIFY(controller.showCalendarDrawer());
    QVERIFY(fixture.window->isDrawerVisible());
    QCOMPARE(controller.showHideCalendarDrawerMenuTitle(), u"Hide Calendars Drawer"_s);
    QCOMPARE(toggle->text(), u"Show Calendars Drawer"_s);

    controller.toogleCalendarDrawer();
    QVERIFY(!fixture.window->isDrawerVisible());
    QCOMPARE(toggle->text(), u"Show Calendars Drawer"_s);
}

void VTCalendarsDrawerTest::jumpToDatePutsTheKeyboardIntoThePicker()
{
    MainWindowFixture fixture;
    VTMainWindowController &controller = fixture.wakeWithWindow();
    QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));

    QTest::keyClick(fixture.window->windowHandle(), Qt::Key_G, Qt::ControlModifier);

    QVERIFY(controller.textDatePicker()->hasFocus());
}

void VTCalendarsDrawerTest::closingTheDrawerReturnsTheKeyboardToTheList()
{
    const OpenDrawer fixture;
    QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));
    fixture.controller->jumpToDate();

    fixture.controller->toogleCalendarDrawer();

    QVERIFY(fixture.controller->eventsAccordion()->hasFocus());
}

void VTCalendarsDrawerTest::tableHasARowForEachCalendarInTheStoresOrder()
{
    const OpenDrawer fixture;

    QStringList titles;
    for (const KLVCheckBoxTableRow *row : fixture.controller->calendarsTable()->rows())
        titles.append(row->cell().title());

    QCOMPARE(fixture.controller->numberOfRowsInTableView(fixture.controller->calendarsTable()), 3);
    QCOMPARE(titles, (QStringList { u"Home"_s, u"Work"_s, u"Club"_s }));
}

void VTCalendarsDrawerTest::cellHasTheCalendarsColourAndTitle()
{
    const OpenDrawer fixture;

    const KLVColoredButtonCell &cell = fixture.row(2)->cell();

    QCOMPARE(cell.imageTintColor(), QColor(Qt::green));
    QCOMPARE(cell.title(), u"Club"_s);
    QCOMPARE(cell.integerValue(), 1);
    QCOMPARE(cell.representedObject()->valueForKey(u"uid"_s).toString(), u"Club"_s);
}

void VTCalendarsDrawerTest::rowFollowsTheCalendarsOfTheStore()
{
    const OpenDrawer fixture;
    QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));
    fixture.row(2)->setFocus(Qt::TabFocusReason);

    fixture.backend().removeCalendar(u"Home"_s);
    fixture.backend().postCalendarsChange();

    QTRY_COMPARE(fixture.controller->calendarsTable()->rows().size(), 2);
    QCOMPARE(fixture.row(0)->accessibleName(), u"Work"_s);
    // The keyboard stays with its calendar, wherever it moves.
    QVERIFY(fixture.row(1)->hasFocus());
    QCOMPARE(fixture.row(1)->accessibleName(), u"Club"_s);
}

void VTCalendarsDrawerTest::clickHidesTheCalendarsItemsAndShowsThemAgain()
{
    const OpenDrawer fixture;

    fixture.click(fixture.row(1));
    QCOMPARE(fixture.hidden(), QStringList { u"Work"_s });
    QVERIFY(!fixture.row(1)->isChecked());
    QCOMPARE(fixture.shownEvents(), (QStringList { u"at home"_s, u"at the club"_s }));

    fixture.click(fixture.row(1));
    QCOMPARE(fixture.hidden(), QStringList());
    QVERIFY(fixture.row(1)->isChecked());
    QCOMPARE(fixture.shownEvents().size(), 3);
}

void VTCalendarsDrawerTest::togglingTwiceMovesTheIdentifierToTheEnd()
{
    const OpenDrawer fixture;
    for (const int row : { 2, 0, 1 })
        fixture.click(fixture.row(row));
    QCOMPARE(fixture.hidden(), (QStringList { u"Club"_s, u"Home"_s, u"Work"_s }));

    fixture.click(fixture.row(2));
    fixture.click(fixture.row(2));

    QCOMPARE(fixture.hidden(), (QStringList { u"Home"_s, u"Work"_s, u"Club"_s }));
}

void VTCalendarsDrawerTest::calendarHiddenByItsToDoSourceIsShownAgain()
{
    const OpenDrawer fixture;
    fixture.backend().setDesktopSource(u"Work"_s, CalItemKind::Event, u"Work"_s);
    fixture.backend().setDesktopSource(u"Work"_s, CalItemKind::Task, u"to-dos of work"_s);
    fixture.controller->setUnselectedCalendarsUID(QStringList { u"to-dos of work"_s, u"gone"_s, u"Work"_s });
    QVERIFY(!fixture.row(1)->isChecked());
    QCOMPARE(fixture.shownEvents(), (QStringList { u"at home"_s, u"at the club"_s }));

    fixture.controller->setUnselectedCalendarsUID(QStringList { u"to-dos of work"_s, u"gone"_s });
    QVERIFY(!fixture.row(1)->isChecked());
    QCOMPARE(fixture.shownEvents(), (QStringList { u"at home"_s, u"at the club"_s }));

    // Neither identifier is left behind, where it would hide the calendar without anybody knowing why.
    fixture.controller->setUnselectedCalendarsUID(QStringList { u"to-dos of work"_s, u"gone"_s, u"Work"_s });
    fixture.click(fixture.row(1));
    QCOMPARE(fixture.hidden(), QStringList { u"gone"_s });
    QVERIFY(fixture.row(1)->isChecked());
    QCOMPARE(fixture.shownEvents().size(), 3);

    fixture.click(fixture.row(1));
    QCOMPARE(fixture.hidden(), (QStringList { u"gone"_s, u"Work"_s }));
}

void VTCalendarsDrawerTest::settingARowIgnoresTheValue()
{
    const OpenDrawer fixture;
    KLVCheckBoxTable *const table = fixture.controller->calendarsTable();

    fixture.controller->tableView_setObjectValue_forRow(table, true, 0);
    QVERIFY(!fixture.controller->tableView_objectValueForRow(table, 0));

    fixture.controller->tableView_setObjectValue_forRow(table, true, 0);
    QVERIFY(fixture.controller->tableView_objectValueForRow(table, 0));
}

void VTCalendarsDrawerTest::identifierOfAnUnknownCalendarStays()
{
    const OpenDrawer fixture;
    fixture.controller->setUnselectedCalendarsUID(QStringList { u"gone"_s });

    fixture.click(fixture.row(0));

    QCOMPARE(fixture.hidden(), (QStringList { u"gone"_s, u"Home"_s }));
}

void VTCalendarsDrawerTest::allAndNone()
{
    const OpenDrawer fixture;

    fixture.click(fixture.drawer()->noneButton());
    QCOMPARE(fixture.hidden(), (QStringList { u"Home"_s, u"Work"_s, u"Club"_s }));
    for (int row = 0; row < 3; ++row)
        QVERIFY(!fixture.row(row)->isChecked());

    fixture.click(fixture.drawer()->allButton());
    QVERIFY(!fixture.controller->unselectedCalendarsUID());
    for (int row = 0; row < 3; ++row)
        QVERIFY(fixture.row(row)->isChecked());
    QCOMPARE(fixture.shownEvents().size(), 3);
}

void VTCalendarsDrawerTest::noCalendarAtAllLeavesBothListsEmpty()
{
    OpenDrawer fixture;
    fixture.addTask("task");
    fixture.controller->calStoreDidChange();
    QCOMPARE(fixture.controller->tasks().size(), 1);

    fixture.click(fixture.drawer()->noneButton());

    QVERIFY(fixture.controller->events().isEmpty());
    QVERIFY(fixture.controller->tasks().isEmpty());
}

void VTCalendarsDrawerTest::ticksAreKeptInTheSettings()
{
    OpenDrawer fixture;

    fixture.click(fixture.row(2));
    fixture.click(fixture.row(0));
    fixture.controller->saveDefaults();

    QCOMPARE(fixture.defaults.arrayForKey(u"VTUnselectedCalendarsUID"_s).value_or(QStringList()),
        (QStringList { u"Club"_s, u"Home"_s }));
}

void VTCalendarsDrawerTest::arrowsWalkAndSpaceTicks()
{
    const OpenDrawer fixture;
    QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));
    fixture.row(0)->setFocus(Qt::TabFocusReason);

    QTest::keyClick(fixture.window->focusWidget(), Qt::Key_Down);
    QTest::keyClick(fixture.window->focusWidget(), Qt::Key_Space);
    QCOMPARE(fixture.hidden(), QStringList { u"Work"_s });

    QTest::keyClick(fixture.window->focusWidget(), Qt::Key_End);
    QTest::keyClick(fixture.window->focusWidget(), Qt::Key_Return);
    QCOMPARE(fixture.hidden(), (QStringList { u"Work"_s, u"Club"_s }));

    QTest::keyClick(fixture.window->focusWidget(), Qt::Key_Down);
    QVERIFY(fixture.row(2)->hasFocus());
    QTest::keyClick(fixture.window->focusWidget(), Qt::Key_Home);
    QVERIFY(fixture.row(0)->hasFocus());
}

void VTCalendarsDrawerTest::tabWalksThroughTheDrawer()
{
    const OpenDrawer fixture;
    QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));
    // A calendar that came later stands in the same place of the order.
    fixture.backend().addCalendar(makeCalendar(u"Later"_s));
    fixture.controller->calStoreDidChange();
    fixture.row(3)->setFocus(Qt::TabFocusReason);
    fixture.window->moveDividerByKeys();

    QStringList walk;
    // Inside the picker the key goes from day to month to year.
    for (int i = 0; i < 7; ++i) {
        QTest::keyClick(fixture.window->focusWidget(), Qt::Key_Tab);
        const QString name = fixture.window->focusWidget()->objectName();
        if (walk.isEmpty() || walk.last() != name)
            walk.append(name);
    }

    QCOMPARE(walk,
        (QStringList { u"calendar Later"_s, u"selectAllCalendars"_s, u"unselectAllCalendars"_s, u"textDatePicker"_s,
            u"todayButton"_s }));
}

void VTCalendarsDrawerTest::returnOnAButtonOrRowTicksNoTask()
{
    OpenDrawer fixture;
    fixture.addTask("task");
    fixture.controller->calStoreDidChange();
    fixture.controller->setSelectedCalItemUID(u"task"_s);
    QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));

    for (QWidget *widget :
        { static_cast<QWidget *>(fixture.row(0)), static_cast<QWidget *>(fixture.drawer()->allButton()) }) {
        widget->setFocus(Qt::TabFocusReason);
        QTest::keyClick(widget, Qt::Key_Return);
    }

    QCOMPARE(fixture.backend().saves(), 0);
    QCOMPARE(fixture.hidden(), QStringList());
}

void VTCalendarsDrawerTest::assistiveTechnologyTicksACalendar()
{
    const OpenDrawer fixture;
    QAccessibleInterface *const box = QAccessible::queryAccessibleInterface(fixture.row(1));
    QCOMPARE(box->role(), QAccessible::CheckBox);
    QCOMPARE(box->text(QAccessible::Name), u"Work"_s);
    QVERIFY(box->state().checked);

    box->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());

    QVERIFY(!box->state().checked);
    QCOMPARE(fixture.hidden(), QStringList { u"Work"_s });
}

void VTCalendarsDrawerTest::hostileNamesArePlainText()
{
    OpenDrawer fixture;
    CalCalendar::Values values;
    values.uid = u"hostile"_s;
    values.title = u"<b>R&D</b>\n<img src='file:///etc/passwd'> "_s + QString(5000, u'x');
    fixture.backend().addCalendar(std::make_shared<CalCalendar>(values));
    fixture.controller->calStoreDidChange();

    const QString name = fixture.row(3)->accessibleName();
    QVERIFY(name.startsWith(u"<b>R&D</b> <img src='file:///etc/passwd'> xx"_s));
    QVERIFY(name.size() <= 4000);
    QVERIFY(fixture.row(3)->toolTip().isEmpty());
    QVERIFY(fixture.row(3)->width() < 200);
}

void VTCalendarsDrawerTest::calendarThatAsksForItsPasswordSaysSo()
{
    OpenDrawer fixture;
    QVERIFY(fixture.row(0)->accessibleDescription().isEmpty());

    fixture.setAvailability(u"Work"_s, CalCalendar::Availability::CredentialsRequired);
    QVERIFY(fixture.row(1)->accessibleDescription().startsWith(u"The account asks for its password."_s));
    fixture.setAvailability(u"Work"_s, CalCalendar::Availability::Offline);
    QVERIFY(fixture.row(1)->accessibleDescription().startsWith(u"The server is not reached."_s));
    fixture.setAvailability(u"Work"_s, CalCalendar::Availability::Available);
    QVERIFY(fixture.row(1)->accessibleDescription().isEmpty());
}

void VTCalendarsDrawerTest::accountSettingsAreOfferedOnlyWhenTheyAreNeeded()
{
    OpenDrawer fixture;
    QPushButton *const button = fixture.drawer()->accountSettingsButton();
    QVERIFY(!button->isVisible());
    fixture.setAvailability(u"Work"_s, CalCalendar::Availability::Offline);
    QVERIFY(!button->isVisible());

    fixture.setAvailability(u"Work"_s, CalCalendar::Availability::CredentialsRequired);
    QVERIFY(button->isVisible());
    fixture.click(button);

    QCOMPARE(fixture.workspace.accountSettingsOpened, 1);
    QVERIFY(fixture.alerts.messages.isEmpty());
}

void VTCalendarsDrawerTest::desktopWithoutAccountSettingsIsSaid()
{
    OpenDrawer fixture;
    fixture.workspace.hasAccountSettings = false;
    fixture.setAvailability(u"Work"_s, CalCalendar::Availability::CredentialsRequired);

    fixture.click(fixture.drawer()->accountSettingsButton());

    QCOMPARE(fixture.alerts.messages.size(), 1);
    QVERIFY(fixture.alerts.messages.first().startsWith(u"Vantle cannot open the account settings"_s));
}

void VTCalendarsDrawerTest::pickedDayKeepsTheTimeOfDay()
{
    const OpenDrawer fixture;

    fixture.controller->textDatePicker()->setDate(QDate(2026, 12, 24));

    QCOMPARE(fixture.controller->date(), localInstant("2026-12-24T10:00"));
    QVERIFY(!fixture.controller->hasDateRefresher());
}

void VTCalendarsDrawerTest::pickerShowsTheShownDay()
{
    const OpenDrawer fixture;
    QCOMPARE(fixture.controller->textDatePicker()->date(), QDate(2026, 11, 20));

    fixture.controller->setDate(localInstant("2027-02-03T23:00"));

    QCOMPARE(fixture.controller->textDatePicker()->date(), QDate(2027, 2, 3));
    QCOMPARE(fixture.controller->date(), localInstant("2027-02-03T23:00"));
}

void VTCalendarsDrawerTest::tickNeverWritesIntoAFocusedPicker()
{
    OpenDrawer fixture;
    QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));
    fixture.clock.setNow(localInstant("2026-11-20T23:59").addSecs(55));
    fixture.controller->setDateToNow();
    fixture.controller->jumpToDate();

    fixture.clock.advance(10s);
    QCOMPARE(fixture.controller->date().toLocalTime().date(), QDate(2026, 11, 21));
    QCOMPARE(fixture.controller->textDatePicker()->date(), QDate(2026, 11, 20));

    fixture.controller->eventsAccordion()->setFocus();
    QCOMPARE(fixture.controller->textDatePicker()->date(), QDate(2026, 11, 21));
    QCOMPARE(fixture.controller->date().toLocalTime().date(), QDate(2026, 11, 21));
}

void VTCalendarsDrawerTest::navigationReachesAFocusedPicker()
{
    const OpenDrawer fixture;
    QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));
    fixture.controller->jumpToDate();

    fixture.click(fixture.window->findChild<QWidget *>(u"nextDayButton"_s));

    QVERIFY(fixture.controller->textDatePicker()->hasFocus());
    QCOMPARE(fixture.controller->textDatePicker()->date(), QDate(2026, 11, 21));
}

void VTCalendarsDrawerTest::returnAfterTypingGoesToTheDayAndToTheList()
{
    OpenDrawer fixture;
    fixture.addTask("task");
    fixture.controller->calStoreDidChange();
    fixture.controller->setSelectedCalItemUID(u"task"_s);
    QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));
    fixture.typeDay("24");
    QVERIFY(fixture.controller->textDatePicker()->hasPendingEdit());
    QCOMPARE(fixture.controller->date(), localInstant("2026-11-20T10:00"));

    QTest::keyClick(fixture.controller->textDatePicker(), Qt::Key_Return);

    QCOMPARE(fixture.controller->date(), localInstant("2026-11-24T10:00"));
    QVERIFY(fixture.controller->tasksAccordion()->hasFocus());
    QCOMPARE(fixture.backend().saves(), 0);
}

void VTCalendarsDrawerTest::returnWithoutAnEditTicksTheSelectedTask()
{
    OpenDrawer fixture;
    fixture.addTask("task");
    fixture.controller->calStoreDidChange();
    fixture.controller->setSelectedCalItemUID(u"task"_s);
    QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));
    fixture.controller->jumpToDate();

    QTest::keyClick(fixture.controller->textDatePicker(), Qt::Key_Return);

    QVERIFY(fixture.backend().storedTask(u"task"_s)->isCompleted());
    QVERIFY(fixture.controller->textDatePicker()->hasFocus());
}

void VTCalendarsDrawerTest::escapeForgetsWhatWasTyped()
{
    const OpenDrawer fixture;
    QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));
    const QString text = fixture.controller->textDatePicker()->text();
    fixture.typeDay("24");

    QTest::keyClick(fixture.controller->textDatePicker(), Qt::Key_Escape);

    QCOMPARE(fixture.controller->date(), localInstant("2026-11-20T10:00"));
    QCOMPARE(fixture.controller->textDatePicker()->text(), text);
    QVERIFY(fixture.controller->eventsAccordion()->hasFocus());
}

void VTCalendarsDrawerTest::leavingThePickerTakesOverWhatWasTyped()
{
    const OpenDrawer fixture;
    QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));
    fixture.typeDay("24");

    fixture.controller->eventsAccordion()->setFocus();

    QCOMPARE(fixture.controller->date(), localInstant("2026-11-24T10:00"));
    QVERIFY(!fixture.controller->textDatePicker()->hasPendingEdit());
}

VANTLE_TEST(VTCalendarsDrawerTest)
#include "VTCalendarsDrawerTest.moc"
