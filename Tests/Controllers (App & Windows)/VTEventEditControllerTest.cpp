// SPDX-License-Identifier: MIT
#include "EditSheetFixture.h"

#include <TestRegistry.h>

#include <QLabel>

using namespace Qt::StringLiterals;

class VTEventEditControllerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void missingEventIsAProgrammingError();
    void missingWindowIsAProgrammingError();
    void openingFillsEveryField();
    void absentValuesAreEmptyFields();
    void eventWithoutDatesIsAnHourLongInAnHour();
    void eachMissingDateIsSuppliedAlone();
    void returnSavesFromEveryControl_data();
    void returnSavesFromEveryControl();
    void returnInTheNotesIsALine();
    void returnInAPickerTakesOverWhatIsTyped();
    void escapeCancelsFromEveryControl_data();
    void escapeCancelsFromEveryControl();
    void closingTheWindowCancels();
    void saveAndCancelButtonsWork();
    void allDayEventsHaveNoTimes();
    void alarmsMayAlwaysBeRelative();
    void seriesSaysWhatSavingChanges();
    void singleEventSaysNothingOfASeries();
    void everyControlHasANameForAssistiveTechnology();
};

namespace
{

const QString source = u"Controllers (App & Windows)/VTEventEditController"_s;

void addControlNames()
{
    QTest::addColumn<QString>("name");
    for (const char *name : { "titleField", "calendarsPopUp", "locationField", "allDayCheckBox", "startDatePicker",
             "endDatePicker", "urlField", "alarmsTable", "addAlarmButton", "cancelButton", "saveButton" })
        QTest::newRow(name) << QString::fromLatin1(name);
}

} // namespace

void VTEventEditControllerTest::missingEventIsAProgrammingError()
{
    EditSheetFixture fixture;

    const auto failure = failureOf([&] { fixture.open(CalEventPtr()); });

    QVERIFY(failure.has_value());
    QCOMPARE(failure->message(), u"showEventEditSheetWithEvent: invoked with oEvent == nil"_s);
    QCOMPARE(failure->sourceName(), source);
    QCOMPARE(failure->line(), 102);
}

void VTEventEditControllerTest::missingWindowIsAProgrammingError()
{
    EditSheetFixture fixture;

    const auto failure = failureOf(
        [&] { fixture.events.showEventEditSheetWithEvent_attachToWindow(fixture.addEvent(u"Lunch"_s), nullptr); });

    QVERIFY(failure.has_value());
    QCOMPARE(failure->message(), u"showEventEditSheetWithEvent: invoked with targetWindow == nil"_s);
    QCOMPARE(failure->sourceName(), source);
    QCOMPARE(failure->line(), 103);
}

void VTEventEditControllerTest::openingFillsEveryField()
{
    EditSheetFixture fixture;
    const CalEventPtr event
        = makeEvent(u"1"_s, u"Lunch"_s, localInstant("2026-11-20T11:00"), localInstant("2026-11-20T12:30"));
    event->setLocation(u"Harbour house"_s);
    event->setNotes(u"Bring the boards."_s);
    event->setUrl(QUrl(u"https://example.org/a%20b"_s));
    event->setAlarms({ makeAlarm(-900) });
    fixture.backend().addEvent(u"Work"_s, event);

    fixture.open(fixture.storedEvent(u"Lunch"_s));

    QCOMPARE(fixture.events.titleField()->text(), u"Lunch"_s);
    QCOMPARE(controlOf<QLineEdit>(fixture.events, u"locationField"_s)->text(), u"Harbour house"_s);
    QCOMPARE(controlOf<QPlainTextEdit>(fixture.events, u"notesView"_s)->toPlainText(), u"Bring the boards."_s);
    QCOMPARE(fixture.events.urlField()->text(), u"https://example.org/a%20b"_s);
    QCOMPARE(fixture.events.startDatePicker()->dateValue(), localInstant("2026-11-20T11:00"));
    QCOMPARE(fixture.events.endDatePicker()->dateValue(), localInstant("2026-11-20T12:30"));
    QVERIFY(!controlOf<QCheckBox>(fixture.events, u"allDayCheckBox"_s)->isChecked());
    QCOMPARE(fixture.events.calendarsPopUp()->currentText(), u"Work"_s);
    QCOMPARE(fixture.events.alarmsTable()->model()->rowCount(), 1);
    QCOMPARE(fixture.events.window()->focusWidget(), fixture.events.titleField());
    QVERIFY(fixture.events.proxyCalItem() != fixture.events.originalCalItem());
}

void VTEventEditControllerTest::absentValuesAreEmptyFields()
{
    EditSheetFixture fixture;
    const auto event = std::make_shared<CalEvent>();
    event->setCalendar(fixture.calendars.store().calendars().first());

    fixture.open(event);

    QCOMPARE(fixture.events.titleField()->text(), QString());
    QCOMPARE(fixture.events.urlField()->text(), QString());
    QCOMPARE(controlOf<QPlainTextEdit>(fixture.events, u"notesView"_s)->toPlainText(), QString());
}

void VTEventEditControllerTest::eventWithoutDatesIsAnHourLongInAnHour()
{
    EditSheetFixture fixture;

    fixture.open(std::make_shared<CalEvent>());

    QCOMPARE(fixture.events.startDatePicker()->dateValue(), localInstant("2026-11-20T11:00"));
    QCOMPARE(fixture.events.endDatePicker()->dateValue(), localInstant("2026-11-20T12:00"));
}

void VTEventEditControllerTest::eachMissingDateIsSuppliedAlone()
{
    EditSheetFixture fixture;
    const auto event = std::make_shared<CalEvent>();
    event->setStartDate(localInstant("2026-11-25T08:00"));

    fixture.open(event);

    QCOMPARE(fixture.events.startDatePicker()->dateValue(), localInstant("2026-11-25T08:00"));
    QCOMPARE(fixture.events.endDatePicker()->dateValue(), localInstant("2026-11-20T12:00"));
}

void VTEventEditControllerTest::returnSavesFromEveryControl_data()
{
    addControlNames();
}

void VTEventEditControllerTest::returnSavesFromEveryControl()
{
    QFETCH(const QString, name);
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s, { makeAlarm(-900) }));
    auto *const control = controlOf<QWidget>(fixture.events, name);
    control->setFocus();

    QTest::keyClick(control, Qt::Key_Return);

    QVERIFY(!fixture.events.isOpen());
    QCOMPARE(fixture.backend().saves(), 2);
}

void VTEventEditControllerTest::returnInTheNotesIsALine()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));
    auto *const notes = controlOf<QPlainTextEdit>(fixture.events, u"notesView"_s);
    notes->setFocus();

    QTest::keyClicks(notes, u"a"_s);
    QTest::keyClick(notes, Qt::Key_Return);
    QTest::keyClicks(notes, u"b"_s);
    QVERIFY(fixture.events.isOpen());
    QTest::keyClick(notes, Qt::Key_Return, Qt::ControlModifier);

    QVERIFY(!fixture.events.isOpen());
    QCOMPARE(fixture.storedEvent(u"Lunch"_s)->notes().value_or(QString()), u"a\nb"_s);
}

void VTEventEditControllerTest::returnInAPickerTakesOverWhatIsTyped()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));
    KLVDatePicker *const picker = fixture.events.startDatePicker();
    picker->setFocus();
    picker->setSelectedSection(QDateTimeEdit::HourSection);

    QTest::keyClicks(picker, u"09"_s);
    QTest::keyClick(picker, Qt::Key_Enter, Qt::KeypadModifier);

    QVERIFY(!fixture.events.isOpen());
    QCOMPARE(fixture.storedEvent(u"Lunch"_s)->startDate(), localInstant("2026-11-20T09:00"));
}

void VTEventEditControllerTest::escapeCancelsFromEveryControl_data()
{
    addControlNames();
    QTest::newRow("notes") << u"notesView"_s;
}

void VTEventEditControllerTest::escapeCancelsFromEveryControl()
{
    QFETCH(const QString, name);
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s, { makeAlarm(-900) }));
    auto *const control = controlOf<QWidget>(fixture.events, name);
    control->setFocus();

    QTest::keyClick(control, Qt::Key_Escape);

    QVERIFY(!fixture.events.isOpen());
    QCOMPARE(fixture.backend().saves(), 0);
}

void VTEventEditControllerTest::closingTheWindowCancels()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));

    fixture.events.window()->close();

    QVERIFY(!fixture.events.isOpen());
    QVERIFY(!fixture.events.window()->isVisible());
    QCOMPARE(fixture.backend().saves(), 0);
}

void VTEventEditControllerTest::saveAndCancelButtonsWork()
{
    EditSheetFixture fixture;
    const CalEventPtr event = fixture.addEvent(u"Lunch"_s);
    fixture.open(event);
    QTest::mouseClick(controlOf<QWidget>(fixture.events, u"cancelButton"_s), Qt::LeftButton);
    QVERIFY(!fixture.events.isOpen());
    QCOMPARE(fixture.backend().saves(), 0);

    fixture.open(event);
    QTest::mouseClick(controlOf<QWidget>(fixture.events, u"saveButton"_s), Qt::LeftButton);
    QVERIFY(!fixture.events.isOpen());
    QCOMPARE(fixture.backend().saves(), 2);
}

void VTEventEditControllerTest::allDayEventsHaveNoTimes()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));
    QVERIFY(fixture.events.startDatePicker()->displayedSections().testFlag(QDateTimeEdit::HourSection));

    controlOf<QCheckBox>(fixture.events, u"allDayCheckBox"_s)->click();

    QVERIFY(!fixture.events.startDatePicker()->displayedSections().testFlag(QDateTimeEdit::HourSection));
    QVERIFY(!fixture.events.endDatePicker()->displayedSections().testFlag(QDateTimeEdit::HourSection));
    fixture.events.endEventEditSheetAndSaveEvent();
    QVERIFY(fixture.storedEvent(u"Lunch"_s)->isAllDay());
}

void VTEventEditControllerTest::alarmsMayAlwaysBeRelative()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));

    QVERIFY(fixture.events.allowRelativeTrigger());
    fixture.events.showAlarmEditSheetWithNewAlarm();
    QVERIFY(fixture.events.alarmController()->allowRelativeTrigger());
}

void VTEventEditControllerTest::seriesSaysWhatSavingChanges()
{
    EditSheetFixture fixture;
    const CalEventPtr event
        = makeOccurrence(u"1"_s, u"Lunch"_s, localInstant("2026-11-20T11:00"), localInstant("2026-11-20T12:00"));
    event->setRecurrenceRule(CalRecurrenceRule { "FREQ=WEEKLY" });
    fixture.backend().addEvent(u"Home"_s, event);

    fixture.open(fixture.storedEvent(u"Lunch"_s));

    QCOMPARE(controlOf<QLabel>(fixture.events, u"seriesLabel"_s)->text(),
        u"This event repeats every week. Saving changes all its occurrences."_s);
    QVERIFY(controlOf<QLabel>(fixture.events, u"seriesLabel"_s)->isVisible());
    QCOMPARE(controlOf<QLabel>(fixture.events, u"repeatsLabel"_s)->text(), u"every week on Friday"_s);
}

void VTEventEditControllerTest::singleEventSaysNothingOfASeries()
{
    EditSheetFixture fixture;

    fixture.open(fixture.addEvent(u"Lunch"_s));

    for (const QString &name : { u"seriesLabel"_s, u"repeatsLabel"_s, u"repeatsCaption"_s })
        QVERIFY(!controlOf<QLabel>(fixture.events, name)->isVisible());
}

void VTEventEditControllerTest::everyControlHasANameForAssistiveTechnology()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));

    for (const char *name : { "titleField", "calendarsPopUp", "locationField", "startDatePicker", "endDatePicker",
             "urlField", "notesView", "alarmsTable", "addAlarmButton", "removeAlarmButton" }) {
        QVERIFY2(!controlOf<QWidget>(fixture.events, QLatin1String(name))->accessibleName().isEmpty(), name);
    }
    for (const char *name : { "allDayCheckBox", "cancelButton", "saveButton" })
        QVERIFY2(!controlOf<QAbstractButton>(fixture.events, QLatin1String(name))->text().isEmpty(), name);
    QCOMPARE(fixture.events.window()->accessibleName(), u"Event"_s);
}

VANTLE_TEST(VTEventEditControllerTest)
#include "VTEventEditControllerTest.moc"
