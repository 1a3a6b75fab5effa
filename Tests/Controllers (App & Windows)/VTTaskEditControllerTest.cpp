// SPDX-License-Identifier: MIT
#include "EditSheetFixture.h"

#include <ScopedTimeZone.h>
#include <TestRegistry.h>

#include <QAccessible>

using namespace Qt::StringLiterals;

class VTTaskEditControllerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void missingTaskIsAProgrammingError();
    void missingWindowIsAProgrammingError();
    void taskWithoutADueDateOpensWithTheSwitchOff();
    void taskWithADueDateOpensWithTheSwitchOn();
    void dueDateIsGivenAndTakenAway();
    void switchIsObservable();
    void alarmsAreRelativeOnlyWithADueDate();
    void newAlarmsAreRelativeToTheDueDate();
    void alarmRelativeToTheStartStaysSo();
    void relativeAlarmsOutliveTheDueDate();
    void switchSetByAssistiveTechnologyCounts();
    void dueDayStaysADayUntilItGetsATime();
    void dueDayStaysADayWhereTheClockSkipsMidnight();
    void editsReachTheStore();
    void priorityOfAnyNumberIsShownAndKept_data();
    void priorityOfAnyNumberIsShownAndKept();
    void completionIsKept();
    void cancellingLeavesTheStoredTask();
    void refusedSaveShowsOneAlert();
    void newTaskIsCreated();
    void returnSavesFromEveryControl_data();
    void returnSavesFromEveryControl();
    void escapeCancelsFromEveryControl_data();
    void escapeCancelsFromEveryControl();
    void taskOfAReadOnlyCalendarOpensWithNoCalendarSelected();
    void everyControlHasANameForAssistiveTechnology();
};

namespace
{

const QString source = u"Controllers (App & Windows)/VTTaskEditController"_s;

QCheckBox *dueSwitch(const EditSheetFixture &fixture)
{
    return controlOf<QCheckBox>(fixture.tasks, u"dueDateCheckBox"_s);
}

void addControlNames()
{
    QTest::addColumn<QString>("name");
    for (const char *name : { "titleField", "calendarsPopUp", "priorityPopUp", "dueDateCheckBox", "dueDatePicker",
             "urlField", "alarmsTable", "addAlarmButton", "cancelButton", "saveButton" })
        QTest::newRow(name) << QString::fromLatin1(name);
}

CalTaskPtr addFullTask(const EditSheetFixture &fixture)
{
    const CalTaskPtr task = makeTaskDue(u"1"_s, u"Milk"_s, localInstant("2026-11-22T12:00"));
    task->setAlarms({ makeAlarm(-900) });
    fixture.backend().addTask(u"Home"_s, task);
    return fixture.storedTask(u"Milk"_s);
}

} // namespace

void VTTaskEditControllerTest::missingTaskIsAProgrammingError()
{
    EditSheetFixture fixture;

    const auto failure = failureOf([&] { fixture.open(CalTaskPtr()); });

    QVERIFY(failure.has_value());
    QCOMPARE(failure->message(), u"showTaskEditSheetWithTask:attachToWindow: invoked with oTask == nil"_s);
    QCOMPARE(failure->sourceName(), source);
    QCOMPARE(failure->line(), 91);
}

void VTTaskEditControllerTest::missingWindowIsAProgrammingError()
{
    EditSheetFixture fixture;

    const auto failure = failureOf(
        [&] { fixture.tasks.showTaskEditSheetWithTask_attachToWindow(fixture.addTask(u"Milk"_s), nullptr); });

    QVERIFY(failure.has_value());
    QCOMPARE(failure->message(), u"showTaskEditSheetWithTask:attachToWindow: invoked with parentWindow == nil"_s);
    QCOMPARE(failure->sourceName(), source);
    QCOMPARE(failure->line(), 92);
}

void VTTaskEditControllerTest::taskWithoutADueDateOpensWithTheSwitchOff()
{
    EditSheetFixture fixture;

    fixture.open(fixture.addTask(u"Milk"_s));

    QVERIFY(!fixture.tasks.dueDateIsSet());
    QVERIFY(!dueSwitch(fixture)->isChecked());
    QCOMPARE(fixture.tasks.dueDatePicker()->dateValue(), fixture.clock.now());
    QVERIFY(!fixture.tasks.dueDatePicker()->isEnabled());
    QVERIFY(!fixture.tasks.allowRelativeTrigger());
    QCOMPARE(fixture.tasks.window()->focusWidget(), fixture.tasks.titleField());
}

void VTTaskEditControllerTest::taskWithADueDateOpensWithTheSwitchOn()
{
    EditSheetFixture fixture;

    fixture.open(addFullTask(fixture));

    QVERIFY(fixture.tasks.dueDateIsSet());
    QVERIFY(dueSwitch(fixture)->isChecked());
    QCOMPARE(fixture.tasks.dueDatePicker()->dateValue(), localInstant("2026-11-22T12:00"));
}

void VTTaskEditControllerTest::dueDateIsGivenAndTakenAway()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addTask(u"Milk"_s));

    dueSwitch(fixture)->click();
    fixture.tasks.dueDatePicker()->setDateTime(localInstant("2026-11-25T18:00"));
    fixture.tasks.endTaskEditSheetAndSaveTask();
    QCOMPARE(fixture.storedTask(u"Milk"_s)->dueDate().value_or(QDateTime()), localInstant("2026-11-25T18:00"));

    fixture.open(fixture.storedTask(u"Milk"_s));
    dueSwitch(fixture)->click();
    fixture.tasks.endTaskEditSheetAndSaveTask();
    QVERIFY(!fixture.storedTask(u"Milk"_s)->dueDate().has_value());
}

void VTTaskEditControllerTest::switchIsObservable()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addTask(u"Milk"_s));
    QVariant seen;
    const KeyValueBinding binding(fixture.tasks, u"dueDateIsSet"_s, [&seen](const QVariant &value) { seen = value; });
    QCOMPARE(seen, QVariant(false));

    fixture.tasks.setDueDateIsSet(true);

    QCOMPARE(seen, QVariant(true));
    QVERIFY(dueSwitch(fixture)->isChecked());
    QVERIFY(fixture.tasks.dueDatePicker()->isEnabled());
}

void VTTaskEditControllerTest::alarmsAreRelativeOnlyWithADueDate()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addTask(u"Milk"_s));
    fixture.tasks.showAlarmEditSheetWithNewAlarm();
    QVERIFY(!fixture.tasks.alarmController()->allowRelativeTrigger());
    QVERIFY(fixture.tasks.alarmController()->isAbsolute());
    fixture.tasks.alarmController()->cancelAlarmEditSheet();

    dueSwitch(fixture)->click();
    fixture.tasks.showAlarmEditSheetWithNewAlarm();

    QVERIFY(fixture.tasks.alarmController()->allowRelativeTrigger());
    QVERIFY(!fixture.tasks.alarmController()->isAbsolute());
}

void VTTaskEditControllerTest::newAlarmsAreRelativeToTheDueDate()
{
    EditSheetFixture fixture;
    const CalTaskPtr task = makeTaskDue(u"1"_s, u"Milk"_s, localInstant("2026-11-22T12:00"));
    const auto absolute = std::make_shared<CalAlarm>();
    absolute->setAbsoluteTrigger(localInstant("2026-11-22T08:00"));
    task->setAlarms({ absolute });
    fixture.backend().addTask(u"Home"_s, task);
    fixture.open(fixture.storedTask(u"Milk"_s));

    fixture.tasks.showAlarmEditSheetWithNewAlarm();
    fixture.tasks.alarmController()->insertNewline();
    QVERIFY(fixture.tasks.proxyCalItem()->alarms().last()->isRelatedToEnd());
    QVERIFY(!fixture.tasks.proxyCalItem()->alarms().first()->isRelatedToEnd());

    fixture.tasks.alarmsTable()->selectRow(0);
    fixture.tasks.showAlarmEditSheetWithSelectedAlarm();
    fixture.tasks.alarmController()->setIsAbsolute(false);
    fixture.tasks.alarmController()->insertNewline();
    QVERIFY(fixture.tasks.proxyCalItem()->alarms().last()->isRelatedToEnd());
}

void VTTaskEditControllerTest::alarmRelativeToTheStartStaysSo()
{
    EditSheetFixture fixture;
    fixture.open(addFullTask(fixture));

    fixture.tasks.alarmsTable()->selectRow(0);
    fixture.tasks.showAlarmEditSheetWithSelectedAlarm();
    fixture.tasks.alarmController()->insertNewline();

    QVERIFY(!fixture.tasks.proxyCalItem()->alarms().first()->isRelatedToEnd());
}

void VTTaskEditControllerTest::switchSetByAssistiveTechnologyCounts()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addTask(u"Milk"_s));

    QAccessible::queryAccessibleInterface(dueSwitch(fixture))
        ->actionInterface()
        ->doAction(QAccessibleActionInterface::toggleAction());

    QVERIFY(fixture.tasks.dueDateIsSet());
    QVERIFY(fixture.tasks.dueDatePicker()->isEnabled());
}

void VTTaskEditControllerTest::relativeAlarmsOutliveTheDueDate()
{
    EditSheetFixture fixture;
    fixture.open(addFullTask(fixture));

    dueSwitch(fixture)->click();
    fixture.tasks.endTaskEditSheetAndSaveTask();

    const CalAlarmList alarms = fixture.storedTask(u"Milk"_s)->alarms();
    QCOMPARE(alarms.size(), 1);
    QCOMPARE(alarms.first()->relativeTrigger(), -900.0);
}

void VTTaskEditControllerTest::dueDayStaysADayUntilItGetsATime()
{
    EditSheetFixture fixture;
    const CalTaskPtr task = makeTaskDue(u"1"_s, u"Milk"_s, localInstant("2026-11-22T00:00"));
    task->setIsDueDateOnly(true);
    fixture.backend().addTask(u"Home"_s, task);

    fixture.open(fixture.storedTask(u"Milk"_s));
    fixture.tasks.dueDatePicker()->setDateTime(localInstant("2026-11-23T00:00"));
    fixture.tasks.endTaskEditSheetAndSaveTask();
    QVERIFY(fixture.storedTask(u"Milk"_s)->isDueDateOnly());
    QCOMPARE(fixture.storedTask(u"Milk"_s)->dueDate().value_or(QDateTime()), localInstant("2026-11-23T00:00"));

    fixture.open(fixture.storedTask(u"Milk"_s));
    fixture.tasks.dueDatePicker()->setDateTime(localInstant("2026-11-23T08:00"));
    fixture.tasks.endTaskEditSheetAndSaveTask();
    QVERIFY(!fixture.storedTask(u"Milk"_s)->isDueDateOnly());
}

void VTTaskEditControllerTest::dueDayStaysADayWhereTheClockSkipsMidnight()
{
    const ScopedTimeZone zone("Africa/Cairo");
    const QDate longNight(2026, 4, 24); // begins at one
    EditSheetFixture fixture;
    const CalTaskPtr task = makeTaskDue(u"1"_s, u"Milk"_s, longNight.addDays(-1).startOfDay());
    task->setIsDueDateOnly(true);
    fixture.backend().addTask(u"Home"_s, task);

    for (const QDate day : { longNight, longNight.addDays(1) }) {
        fixture.open(fixture.storedTask(u"Milk"_s));
        fixture.tasks.dueDatePicker()->setDate(day);
        fixture.tasks.endTaskEditSheetAndSaveTask();
        QVERIFY(fixture.storedTask(u"Milk"_s)->isDueDateOnly());
        QCOMPARE(fixture.storedTask(u"Milk"_s)->dueDate().value_or(QDateTime()), day.startOfDay());
    }
}

void VTTaskEditControllerTest::editsReachTheStore()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addTask(u"Milk"_s));

    QTest::keyClicks(fixture.tasks.titleField(), u"Bread"_s);
    QTest::keyClicks(controlOf<QPlainTextEdit>(fixture.tasks, u"notesView"_s), u"Rye"_s);
    QTest::keyClicks(fixture.tasks.urlField(), u"example.org"_s);
    auto *const priority = controlOf<KLVPopUpButton>(fixture.tasks, u"priorityPopUp"_s);
    QTest::keyClick(priority, Qt::Key_Space);
    QTest::keyClick(priority->view(), Qt::Key_End);
    QTest::keyClick(priority->view(), Qt::Key_Return);
    QTest::keyClick(fixture.tasks.titleField(), Qt::Key_Return);

    QCOMPARE(fixture.backend().writes(), QStringList { u"task: Bread"_s });
    const CalTaskPtr stored = fixture.storedTask(u"Bread"_s);
    QCOMPARE(stored->notes().value_or(QString()), u"Rye"_s);
    QCOMPARE(stored->url().value_or(QUrl()), QUrl(u"http://example.org"_s));
    QCOMPARE(stored->priority(), 1);
}

void VTTaskEditControllerTest::priorityOfAnyNumberIsShownAndKept_data()
{
    QTest::addColumn<int>("priority");
    QTest::addColumn<QString>("shown");

    QTest::newRow("none") << 0 << u"None"_s;
    QTest::newRow("high") << 1 << u"High"_s;
    QTest::newRow("three") << 3 << u"High"_s;
    QTest::newRow("medium") << 5 << u"Medium"_s;
    QTest::newRow("seven") << 7 << u"Low"_s;
    QTest::newRow("low") << 9 << u"Low"_s;
}

void VTTaskEditControllerTest::priorityOfAnyNumberIsShownAndKept()
{
    QFETCH(const int, priority);
    EditSheetFixture fixture;
    const CalTaskPtr task = makeTask(u"1"_s, u"Milk"_s);
    task->setPriority(priority);
    fixture.backend().addTask(u"Home"_s, task);

    fixture.open(fixture.storedTask(u"Milk"_s));
    QTEST(controlOf<KLVPopUpButton>(fixture.tasks, u"priorityPopUp"_s)->currentText(), "shown");
    fixture.tasks.endTaskEditSheetAndSaveTask();

    QCOMPARE(fixture.storedTask(u"Milk"_s)->priority(), priority);
}

void VTTaskEditControllerTest::completionIsKept()
{
    EditSheetFixture fixture;
    fixture.backend().addTask(u"Home"_s, makeCompletedTask(u"1"_s, u"Milk"_s, localInstant("2026-11-19T08:00")));

    fixture.open(fixture.storedTask(u"Milk"_s));
    fixture.tasks.endTaskEditSheetAndSaveTask();

    QVERIFY(fixture.storedTask(u"Milk"_s)->isCompleted());
    QCOMPARE(fixture.storedTask(u"Milk"_s)->completedDate().value_or(QDateTime()), localInstant("2026-11-19T08:00"));
}

void VTTaskEditControllerTest::cancellingLeavesTheStoredTask()
{
    EditSheetFixture fixture;
    const CalTaskPtr task = addFullTask(fixture);
    fixture.open(task);
    QTest::keyClicks(fixture.tasks.titleField(), u"Bread"_s);
    dueSwitch(fixture)->click();
    fixture.tasks.alarmsTable()->selectRow(0);
    fixture.tasks.removeSelectedAlarm();

    fixture.tasks.cancelTaskEditSheet();

    QCOMPARE(task->title().value_or(QString()), u"Milk"_s);
    QVERIFY(task->dueDate().has_value());
    QCOMPARE(task->alarms().size(), 1);
    QCOMPARE(fixture.backend().saves(), 0);
}

void VTTaskEditControllerTest::refusedSaveShowsOneAlert()
{
    EditSheetFixture fixture;
    const CalTaskPtr task = fixture.addTask(u"Milk"_s);
    fixture.open(task);
    fixture.backend().refuseSaves(StoreError::Code::Io, u"The disk is full."_s);
    QTest::keyClicks(fixture.tasks.titleField(), u"Bread"_s);

    fixture.tasks.endTaskEditSheetAndSaveTask();

    QCOMPARE(
        fixture.alerts.messages, QStringList { u"“Bread” in the calendar “Home” was not saved.\nThe disk is full."_s });
    QCOMPARE(task->title().value_or(QString()), u"Bread"_s);
    QCOMPARE(fixture.backend().saves(), 1);
    QVERIFY(fixture.storedTask(u"Milk"_s));
}

void VTTaskEditControllerTest::newTaskIsCreated()
{
    EditSheetFixture fixture;
    const auto task = std::make_shared<CalTask>();
    task->setTitle(u"New to do"_s);
    task->setCalendar(fixture.calendars.store().calendars().last());
    fixture.open(task);

    fixture.tasks.insertNewline();

    QCOMPARE(fixture.backend().storedTasks(), 1);
    QCOMPARE(fixture.storedTask(u"New to do"_s)->calendar()->uid(), u"Work"_s);
}

void VTTaskEditControllerTest::returnSavesFromEveryControl_data()
{
    addControlNames();
}

void VTTaskEditControllerTest::returnSavesFromEveryControl()
{
    QFETCH(const QString, name);
    EditSheetFixture fixture;
    fixture.open(addFullTask(fixture));
    auto *const control = controlOf<QWidget>(fixture.tasks, name);
    control->setFocus();

    QTest::keyClick(control, Qt::Key_Return);

    QVERIFY(!fixture.tasks.isOpen());
    QCOMPARE(fixture.backend().saves(), 1);
}

void VTTaskEditControllerTest::escapeCancelsFromEveryControl_data()
{
    addControlNames();
    QTest::newRow("notes") << u"notesView"_s;
}

void VTTaskEditControllerTest::escapeCancelsFromEveryControl()
{
    QFETCH(const QString, name);
    EditSheetFixture fixture;
    fixture.open(addFullTask(fixture));
    auto *const control = controlOf<QWidget>(fixture.tasks, name);
    control->setFocus();

    QTest::keyClick(control, Qt::Key_Escape);

    QVERIFY(!fixture.tasks.isOpen());
    QCOMPARE(fixture.backend().saves(), 0);
}

void VTTaskEditControllerTest::taskOfAReadOnlyCalendarOpensWithNoCalendarSelected()
{
    EditSheetFixture fixture;
    fixture.backend().addCalendar(makeReadOnlyCalendar(u"Holidays"_s));
    fixture.backend().addTask(u"Holidays"_s, makeTask(u"1"_s, u"Milk"_s));

    fixture.open(fixture.storedTask(u"Milk"_s));

    QCOMPARE(fixture.tasks.calendarsPopUp()->currentIndex(), -1);
}

void VTTaskEditControllerTest::everyControlHasANameForAssistiveTechnology()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addTask(u"Milk"_s));

    for (const char *name : { "titleField", "calendarsPopUp", "priorityPopUp", "dueDatePicker", "urlField", "notesView",
             "alarmsTable", "addAlarmButton", "removeAlarmButton" })
        QVERIFY2(!controlOf<QWidget>(fixture.tasks, QLatin1String(name))->accessibleName().isEmpty(), name);
    for (const char *name : { "dueDateCheckBox", "cancelButton", "saveButton" })
        QVERIFY2(!controlOf<QAbstractButton>(fixture.tasks, QLatin1String(name))->text().isEmpty(), name);
    QCOMPARE(fixture.tasks.window()->accessibleName(), u"To do"_s);
}

VANTLE_TEST(VTTaskEditControllerTest)
#include "VTTaskEditControllerTest.moc"
