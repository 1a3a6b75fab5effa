// SPDX-License-Identifier: MIT
#include "EditSheetFixture.h"

#include <SeenToolTip.h>
#include <TestRegistry.h>

#include <QApplication>
#include <QSignalSpy>
#include <QStandardItemModel>

using namespace Qt::StringLiterals;

namespace
{

QStringList alarmTexts(const VTCalItemEditController &sheet)
{
    QStringList texts;
    for (int row = 0; row < sheet.alarmsTable()->model()->rowCount(); ++row)
        texts.append(sheet.alarmsTable()->model()->index(row, 0).data().toString());
    return texts;
}

QStringList calendarTitles(const VTCalItemEditController &sheet)
{
    QStringList titles;
    for (int index = 0; index < sheet.calendarsPopUp()->count(); ++index)
        titles.append(sheet.calendarsPopUp()->itemText(index));
    return titles;
}

const QString quarter = u"15 minutes before, display a message"_s;
const QString hour = u"1 hours before, display a message"_s;

} // namespace

class VTCalItemEditControllerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutAlarmsTheTableIsOneEmptyDisabledRow();
    void firstAlarmEnablesTheTable();
    void editedAlarmGoesToTheEndOfTheList();
    void removingTheLastAlarmLeavesTheEmptyDisabledRow();
    void removingWithoutASelectionDoesNothing();
    void removeButtonNeedsASelection();
    void rowButtonEditsItsAlarm();
    void keysInTheTableEditAndRemove();
    void emptyRowHasNoButton();
    void onlyTheAlarmsTableHasRows();
    void cancellingLeavesTheStoredAlarms();
    void alarmSheetStacksOnTheSheet();

    void calendarsThatCanBeChangedAreOffered();
    void dotsOfCalendarsGrowWithTheFont();
    void calendarsOfAnotherKindAreOfferedDisabled();
    void changedCalendarsAreOfferedAnew();
    void chosenCalendarSurvivesAChangeOfTheCalendars();
    void calendarOfAReadOnlyItemIsNamedAndNotSelected();
    void wheelAndArrowsDoNotChangeAClosedPopUp();

    void sheetHangsUnderTheUpperEdgeAndMovesWithIt();
    void sheetTakesTheKeyboardFromItsWindow();
    void whatIsTypedSurvivesAChangeOfTheStore();
    void windowThatGoesTakesTheSheetWithIt();
    void autoRepeatedReturnDoesNothing();
};

void VTCalItemEditControllerTest::withoutAlarmsTheTableIsOneEmptyDisabledRow()
{
    EditSheetFixture fixture;

    fixture.open(fixture.addEvent(u"Lunch"_s));

    QCOMPARE(alarmTexts(fixture.events), QStringList { QString() });
    QVERIFY(!fixture.events.alarmsTable()->isEnabled());
}

void VTCalItemEditControllerTest::firstAlarmEnablesTheTable()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));

    controlOf<QAbstractButton>(fixture.events, u"addAlarmButton"_s)->click();
    fixture.events.alarmController()->insertNewline();

    QCOMPARE(alarmTexts(fixture.events), QStringList { u"10 minutes before, display a message"_s });
    QVERIFY(fixture.events.alarmsTable()->isEnabled());
}

void VTCalItemEditControllerTest::editedAlarmGoesToTheEndOfTheList()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s, { makeAlarm(-900), makeAlarm(-3600) }));
    QCOMPARE(alarmTexts(fixture.events), (QStringList { quarter, hour }));

    fixture.events.alarmsTable()->selectRow(0);
    fixture.events.showAlarmEditSheetWithSelectedAlarm();
    fixture.events.alarmController()->endAlarmEditSheetAndReturnAlarm();

    QCOMPARE(alarmTexts(fixture.events), (QStringList { hour, quarter }));
}

void VTCalItemEditControllerTest::removingTheLastAlarmLeavesTheEmptyDisabledRow()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s, { makeAlarm(-900) }));
    fixture.events.alarmsTable()->selectRow(0);

    controlOf<QAbstractButton>(fixture.events, u"removeAlarmButton"_s)->click();

    QCOMPARE(alarmTexts(fixture.events), QStringList { QString() });
    QVERIFY(!fixture.events.alarmsTable()->isEnabled());
    QCOMPARE(fixture.events.alarmsTable()->selectedRow(), -1);
}

void VTCalItemEditControllerTest::removingWithoutASelectionDoesNothing()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s, { makeAlarm(-900) }));

    fixture.events.removeSelectedAlarm();

    QCOMPARE(alarmTexts(fixture.events), QStringList { quarter });
}

void VTCalItemEditControllerTest::removeButtonNeedsASelection()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s, { makeAlarm(-900) }));
    auto *const button = controlOf<QAbstractButton>(fixture.events, u"removeAlarmButton"_s);
    QVERIFY(!button->isEnabled());

    fixture.events.alarmsTable()->selectRow(0);
    QVERIFY(button->isEnabled());

    button->click();
    QVERIFY(!button->isEnabled());
}

void VTCalItemEditControllerTest::rowButtonEditsItsAlarm()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s, { makeAlarm(-900), makeAlarm(-3600) }));
    auto *const button = controlOf<QAbstractButton>(fixture.events, u"rowButton1"_s);
    QCOMPARE(button->accessibleName(), u"Edit Alarm"_s);
    QCOMPARE(button->accessibleDescription(), hour);

    button->click();

    QCOMPARE(fixture.events.alarmsTable()->selectedRow(), 1);
    QCOMPARE(fixture.events.alarmController()->originalAlarm(), fixture.events.proxyCalItem()->alarms().at(1));
}

void VTCalItemEditControllerTest::keysInTheTableEditAndRemove()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s, { makeAlarm(-900), makeAlarm(-3600) }));
    fixture.events.alarmsTable()->setFocus();
    fixture.events.alarmsTable()->selectRow(1);

    QTest::keyClick(fixture.events.alarmsTable(), Qt::Key_Space);
    QVERIFY(fixture.events.alarmController()->window()->isVisible());
    QCOMPARE(fixture.events.alarmController()->originalAlarm()->relativeTrigger(), -3600.0);
    fixture.events.alarmController()->cancelOperation();

    QTest::keyClick(fixture.events.alarmsTable(), Qt::Key_Delete);
    QCOMPARE(alarmTexts(fixture.events), QStringList { quarter });
}

void VTCalItemEditControllerTest::emptyRowHasNoButton()
{
    EditSheetFixture fixture;

    fixture.open(fixture.addEvent(u"Lunch"_s));

    QVERIFY(!controlOf<QAbstractButton>(fixture.events, u"rowButton0"_s));
}

void VTCalItemEditControllerTest::onlyTheAlarmsTableHasRows()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s, { makeAlarm(-900) }));
    KLVTableView other;

    QCOMPARE(fixture.events.numberOfRowsInTableView(&other), 0);
    QVERIFY(!fixture.events.tableView_objectValueForTableColumn_row(&other, 0, 0).isValid());
    QVERIFY(!fixture.events.tableView_objectValueForTableColumn_row(fixture.events.alarmsTable(), 1, 0).isValid());
}

void VTCalItemEditControllerTest::cancellingLeavesTheStoredAlarms()
{
    EditSheetFixture fixture;
    const CalEventPtr event = fixture.addEvent(u"Lunch"_s, { makeAlarm(-900), makeAlarm(-3600) });
    fixture.open(event);
    fixture.events.alarmsTable()->selectRow(0);
    fixture.events.removeSelectedAlarm();
    fixture.events.showAlarmEditSheetWithNewAlarm();
    fixture.events.alarmController()->endAlarmEditSheetAndReturnAlarm();

    fixture.events.cancelEventEditSheet();

    QCOMPARE(event->alarms().size(), 2);
    QCOMPARE(event->alarms().first()->relativeTrigger(), -900.0);
    QCOMPARE(fixture.storedEvent(u"Lunch"_s)->alarms().size(), 2);
    QCOMPARE(fixture.backend().saves(), 0);
}

void VTCalItemEditControllerTest::alarmSheetStacksOnTheSheet()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));

    fixture.events.showAlarmEditSheetWithNewAlarm();

    KLVSheet *const alarm = fixture.events.alarmController()->window();
    QCOMPARE(alarm->sheetParent(), fixture.events.window());
    QCOMPARE(alarm->pos().y(), fixture.events.window()->mapToGlobal(QPoint()).y());
    fixture.events.alarmController()->cancelAlarmEditSheet();
    QVERIFY(fixture.events.window()->isVisible());
}

void VTCalItemEditControllerTest::calendarsThatCanBeChangedAreOffered()
{
    EditSheetFixture fixture;
    fixture.backend().addCalendar(makeReadOnlyCalendar(u"Holidays"_s));

    fixture.open(fixture.addEvent(u"Lunch"_s));

    QCOMPARE(calendarTitles(fixture.events), (QStringList { u"Home"_s, u"Work"_s }));
    QCOMPARE(fixture.events.calendarsPopUp()->currentText(), u"Home"_s);
    QVERIFY(!fixture.events.calendarsPopUp()->itemIcon(0).isNull());
    QCOMPARE(fixture.events.calendarsPopUp()->itemData(1).value<CalCalendarPtr>()->uid(), u"Work"_s);
}

void VTCalItemEditControllerTest::dotsOfCalendarsGrowWithTheFont()
{
    const QFont before = QApplication::font();
    QFont twice = before;
    twice.setPixelSize(26);
    QApplication::setFont(twice);
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));
    const KLVPopUpButton *const popUp = fixture.events.calendarsPopUp();
    QApplication::setFont(before);

    QCOMPARE(popUp->iconSize(), QSize(20, 20));
    QCOMPARE(popUp->itemIcon(0).actualSize({ 20, 20 }), QSize(20, 20));
}

void VTCalItemEditControllerTest::calendarsOfAnotherKindAreOfferedDisabled()
{
    EditSheetFixture fixture;
    fixture.backend().addCalendar(std::make_shared<CalCalendar>(
        CalCalendar::Values { .uid = u"Tasks"_s, .title = u"Tasks"_s, .color = Qt::red, .holdsEvents = false }));

    fixture.open(fixture.addEvent(u"Lunch"_s));
    fixture.open(fixture.addTask(u"Milk"_s));

    const auto itemOf = [](const VTCalItemEditController &sheet) {
        return qobject_cast<QStandardItemModel *>(sheet.calendarsPopUp()->model())
            ->item(sheet.calendarsPopUp()->findText(u"Tasks"_s));
    };
    QVERIFY(!itemOf(fixture.events)->isEnabled());
    QCOMPARE(seenInToolTip(itemOf(fixture.events)->toolTip()), u"The calendar cannot hold events."_s);
    QVERIFY(itemOf(fixture.tasks)->isEnabled());
}

void VTCalItemEditControllerTest::changedCalendarsAreOfferedAnew()
{
    EditSheetFixture fixture;
    fixture.backend().addCalendar(makeCalendar(u"Club"_s));
    fixture.open(fixture.addEvent(u"Lunch"_s));
    QCOMPARE(calendarTitles(fixture.events), (QStringList { u"Home"_s, u"Work"_s, u"Club"_s }));

    fixture.backend().removeCalendar(u"Club"_s);
    fixture.backend().addCalendar(makeReadOnlyCalendar(u"Club"_s));
    fixture.backend().postCalendarsChange();

    QTRY_COMPARE(calendarTitles(fixture.events), (QStringList { u"Home"_s, u"Work"_s }));
}

void VTCalItemEditControllerTest::chosenCalendarSurvivesAChangeOfTheCalendars()
{
    EditSheetFixture fixture;
    const CalEventPtr event = fixture.addEvent(u"Lunch"_s);
    fixture.open(event);
    KLVPopUpButton *const popUp = fixture.events.calendarsPopUp();
    popUp->setFocus();
    QTest::keyClick(popUp, Qt::Key_Down);
    QTest::keyClick(popUp->view(), Qt::Key_End);
    QTest::keyClick(popUp->view(), Qt::Key_Return);
    QCOMPARE(popUp->currentText(), u"Work"_s);

    fixture.backend().addCalendar(makeCalendar(u"Club"_s));
    fixture.backend().postCalendarsChange();
    QTRY_COMPARE(popUp->count(), 3);

    QCOMPARE(popUp->currentIndex(), -1);
    QCOMPARE(popUp->placeholderText(), u"Work"_s);
    fixture.events.endEventEditSheetAndSaveEvent();
    QCOMPARE(fixture.storedEvent(u"Lunch"_s)->calendar()->uid(), u"Work"_s);
}

void VTCalItemEditControllerTest::calendarOfAReadOnlyItemIsNamedAndNotSelected()
{
    EditSheetFixture fixture;
    fixture.backend().addCalendar(makeReadOnlyCalendar(u"Holidays"_s));
    fixture.backend().addEvent(
        u"Holidays"_s, makeEvent(u"1"_s, u"Easter"_s, fixture.clock.now(), fixture.clock.now().addSecs(60)));

    fixture.open(fixture.storedEvent(u"Easter"_s));

    QCOMPARE(fixture.events.calendarsPopUp()->currentIndex(), -1);
    QCOMPARE(fixture.events.calendarsPopUp()->placeholderText(), u"Holidays"_s);
    fixture.events.endEventEditSheetAndSaveEvent();
    QCOMPARE(fixture.alerts.messages.size(), 2);
    QVERIFY(fixture.alerts.messages.last().contains(u"“Easter”"_s));
    QVERIFY(fixture.alerts.messages.last().contains(u"“Holidays”"_s));
}

void VTCalItemEditControllerTest::wheelAndArrowsDoNotChangeAClosedPopUp()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));
    KLVPopUpButton *const popUp = fixture.events.calendarsPopUp();
    popUp->setFocus();

    for (const int delta : { -120, 120 }) {
        QWheelEvent wheel(QPointF(5, 5), popUp->mapToGlobal(QPointF(5, 5)), {}, { 0, delta }, Qt::NoButton,
            Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(popUp, &wheel);
        QVERIFY(!wheel.isAccepted());
    }
    for (const Qt::Key key : { Qt::Key_PageDown, Qt::Key_End, Qt::Key_W })
        QTest::keyClick(popUp, key);
    QCOMPARE(popUp->currentText(), u"Home"_s);

    QTest::keyClick(popUp, Qt::Key_Down);
    QVERIFY(popUp->view()->isVisible());
    QCOMPARE(popUp->currentText(), u"Home"_s);
    QTest::keyClick(popUp->view(), Qt::Key_Escape);
    QVERIFY(fixture.events.window()->isVisible());
}

void VTCalItemEditControllerTest::sheetHangsUnderTheUpperEdgeAndMovesWithIt()
{
    EditSheetFixture fixture;
    fixture.window.move(200, 60);
    fixture.open(fixture.addEvent(u"Lunch"_s));
    KLVSheet *const sheet = fixture.events.window();
    const auto offset = [&] {
        const QPoint edge = fixture.window.mapToGlobal(QPoint(fixture.window.width() / 2, 0));
        return QPoint(sheet->frameGeometry().left() + sheet->width() / 2, sheet->frameGeometry().top()) - edge;
    };
    QCOMPARE(offset(), QPoint(0, 0));

    fixture.window.move(260, 90);

    QTRY_COMPARE(offset(), QPoint(0, 0));
    QCOMPARE(sheet->windowModality(), Qt::WindowModal);
    QVERIFY(sheet->width() >= 420);
}

void VTCalItemEditControllerTest::sheetTakesTheKeyboardFromItsWindow()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));
    QVERIFY(QTest::qWaitForWindowActive(fixture.events.window()));

    fixture.window.activateWindow();

    QTRY_COMPARE(QApplication::activeWindow(), fixture.events.window());
    QCOMPARE(QApplication::focusWidget(), fixture.events.titleField());
}

void VTCalItemEditControllerTest::whatIsTypedSurvivesAChangeOfTheStore()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));
    fixture.events.titleField()->setFocus();
    QTest::keyClicks(fixture.events.titleField(), u"Dinner"_s);
    QTest::keyClicks(fixture.events.urlField(), u"example.org"_s);
    QSignalSpy posted(&fixture.calendars.store(), &CalCalendarStore::notificationPosted);

    fixture.backend().removeAllItems();
    fixture.backend().postEventsChange();
    fixture.backend().postCalendarsChange();
    QTRY_COMPARE(posted.size(), 2);

    QCOMPARE(fixture.events.titleField()->text(), u"Dinner"_s);
    QCOMPARE(fixture.events.urlField()->text(), u"example.org"_s);
    QVERIFY(fixture.events.window()->isVisible());
}

void VTCalItemEditControllerTest::windowThatGoesTakesTheSheetWithIt()
{
    EditSheetFixture fixture;
    const CalEventPtr event = fixture.addEvent(u"Lunch"_s);
    {
        QMainWindow other;
        other.show();
        fixture.events.showEventEditSheetWithEvent_attachToWindow(event, &other);
        QVERIFY(fixture.events.isOpen());
    }
    QVERIFY(!fixture.events.isOpen());

    fixture.open(event);

    QVERIFY(fixture.events.isOpen());
    QCOMPARE(fixture.events.titleField()->text(), u"Lunch"_s);
}

void VTCalItemEditControllerTest::autoRepeatedReturnDoesNothing()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));
    fixture.events.titleField()->setFocus();

    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_s, true);
    QApplication::sendEvent(fixture.events.titleField(), &repeated);

    QVERIFY(fixture.events.isOpen());
    QCOMPARE(fixture.backend().saves(), 0);
}

VANTLE_TEST(VTCalItemEditControllerTest)
#include "VTCalItemEditControllerTest.moc"
