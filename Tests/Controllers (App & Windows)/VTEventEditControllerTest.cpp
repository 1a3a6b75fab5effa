// SPDX-License-Identifier: MIT
#include "EditSheetFixture.h"

#include <TestRegistry.h>

#include <QAccessible>
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
    void editsReachTheStore();
    void textsSetByAssistiveTechnologyReachTheStore();
    void clearedFieldsAreAbsent();
    void unchangedFieldsKeepWhatTheyCannotShow();
    void addressWithoutASchemeIsCompleted();
    void addressThatIsNoneTodayIsKeptUntilEdited();
    void cancellingLeavesTheStoredEvent();
    void endBeforeTheStartIsSavedSo();
    void savingGoesInTwoSteps();
    void titleThatIsAbsentStaysAbsent();
    void firstSaveFailingShowsOneAlert();
    void bothSavesFailingShowTwoAlerts();
    void failedSaveKeepsTheEditsInTheRecord();
    void newEventIsCreatedOnce();
    void sheetIsClosedBeforeAnythingIsSaved();
    void returnSavesFromEveryControl_data();
    void returnSavesFromEveryControl();
    void returnInTheNotesIsALine();
    void returnInAPickerTakesOverWhatIsTyped();
    void escapeCancelsFromEveryControl_data();
    void escapeCancelsFromEveryControl();
    void closingTheWindowCancels();
    void saveAndCancelButtonsWork();
    void allDayEventsHaveNoTimes();
    void unchangedAllDayEventKeepsItsBounds();
    void alarmsMayAlwaysBeRelative();
    void alarmsOfEveryKindAreShownAndKept();
    void seriesSaysWhatSavingChanges();
    void singleEventSaysNothingOfASeries();
    void attendeesAreKept();
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

// Types over what is selected or marked in a field.
void replaceText(QLineEdit *field, const QString &text)
{
    field->setFocus();
    field->selectAll();
    if (text.isEmpty())
        QTest::keyClick(field, Qt::Key_Delete);
    else
        QTest::keyClicks(field, text);
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

void VTEventEditControllerTest::editsReachTheStore()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));

    replaceText(fixture.events.titleField(), u"Dinner"_s);
    replaceText(controlOf<QLineEdit>(fixture.events, u"locationField"_s), u"At home"_s);
    QTest::keyClicks(controlOf<QPlainTextEdit>(fixture.events, u"notesView"_s), u"Soup"_s);
    replaceText(fixture.events.urlField(), u"https://example.org/"_s);
    fixture.events.startDatePicker()->setDateTime(localInstant("2026-11-20T19:00"));
    fixture.events.endDatePicker()->setDateTime(localInstant("2026-11-20T21:00"));
    QTest::keyClick(fixture.events.titleField(), Qt::Key_Return);

    const CalEventPtr stored = fixture.storedEvent(u"Dinner"_s);
    QVERIFY(stored);
    QCOMPARE(stored->location().value_or(QString()), u"At home"_s);
    QCOMPARE(stored->notes().value_or(QString()), u"Soup"_s);
    QCOMPARE(stored->url().value_or(QUrl()), QUrl(u"https://example.org/"_s));
    QCOMPARE(stored->startDate(), localInstant("2026-11-20T19:00"));
    QCOMPARE(stored->endDate(), localInstant("2026-11-20T21:00"));
    QVERIFY(fixture.alerts.messages.isEmpty());
}

void VTEventEditControllerTest::textsSetByAssistiveTechnologyReachTheStore()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));

    const auto setText = [](QWidget *field, const QString &text) {
        QAccessible::queryAccessibleInterface(field)->editableTextInterface()->replaceText(
            0, static_cast<int>(field->property("text").toString().size()), text);
    };
    setText(fixture.events.titleField(), u"Dinner"_s);
    setText(controlOf<QLineEdit>(fixture.events, u"locationField"_s), u"At home"_s);
    fixture.events.insertNewline();

    QVERIFY(fixture.storedEvent(u"Dinner"_s));
    QCOMPARE(fixture.storedEvent(u"Dinner"_s)->location().value_or(QString()), u"At home"_s);
}

void VTEventEditControllerTest::clearedFieldsAreAbsent()
{
    EditSheetFixture fixture;
    const CalEventPtr event = makeEvent(u"1"_s, u"Lunch"_s, fixture.clock.now(), fixture.clock.now().addSecs(60));
    event->setLocation(u"Harbour house"_s);
    event->setNotes(u"Bring the boards."_s);
    event->setUrl(QUrl(u"https://example.org/"_s));
    fixture.backend().addEvent(u"Home"_s, event);
    fixture.open(fixture.storedEvent(u"Lunch"_s));

    replaceText(controlOf<QLineEdit>(fixture.events, u"locationField"_s), QString());
    auto *const notes = controlOf<QPlainTextEdit>(fixture.events, u"notesView"_s);
    notes->selectAll();
    QTest::keyClick(notes, Qt::Key_Delete);
    replaceText(fixture.events.urlField(), QString());
    fixture.events.endEventEditSheetAndSaveEvent();

    const CalEventPtr stored = fixture.storedEvent(u"Lunch"_s);
    QVERIFY(!stored->location().has_value());
    QVERIFY(!stored->notes().has_value());
    QVERIFY(!stored->url().has_value());
}

void VTEventEditControllerTest::unchangedFieldsKeepWhatTheyCannotShow()
{
    EditSheetFixture fixture;
    const QDateTime start = localInstant("2026-11-20T11:00:37").addMSecs(250);
    const CalEventPtr event = makeEvent(u"1"_s, u"Two\nlines"_s, start, start.addSecs(1));
    event->setNotes(u"One\r\ntwo"_s);
    event->setLocation(u"Here\tand there"_s);
    fixture.backend().addEvent(u"Home"_s, event);
    fixture.open(fixture.storedEvent(u"Two\nlines"_s));
    QCOMPARE(fixture.events.titleField()->text(), u"Two lines"_s);

    fixture.events.endEventEditSheetAndSaveEvent();

    const CalEventPtr stored = fixture.storedEvent(u"Two\nlines"_s);
    QVERIFY(stored);
    QCOMPARE(stored->notes().value_or(QString()), u"One\r\ntwo"_s);
    QCOMPARE(stored->location().value_or(QString()), u"Here\tand there"_s);
    QCOMPARE(stored->startDate(), start);
    QCOMPARE(stored->endDate(), start.addSecs(1));
}

void VTEventEditControllerTest::addressWithoutASchemeIsCompleted()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));

    replaceText(fixture.events.urlField(), u"example.org/review"_s);
    fixture.events.insertNewline();

    QCOMPARE(fixture.storedEvent(u"Lunch"_s)->url().value_or(QUrl()), QUrl(u"http://example.org/review"_s));
}

void VTEventEditControllerTest::addressThatIsNoneTodayIsKeptUntilEdited()
{
    EditSheetFixture fixture;
    const QUrl odd(u"http://exa mple.org:port/"_s, QUrl::TolerantMode);
    const CalEventPtr event = makeEvent(u"1"_s, u"Lunch"_s, fixture.clock.now(), fixture.clock.now().addSecs(60));
    event->setUrl(odd);
    fixture.backend().addEvent(u"Home"_s, event);

    fixture.open(fixture.storedEvent(u"Lunch"_s));
    fixture.events.insertNewline();
    QVERIFY(fixture.storedEvent(u"Lunch"_s)->url().has_value());

    fixture.open(fixture.storedEvent(u"Lunch"_s));
    replaceText(fixture.events.urlField(), u"no address"_s);
    fixture.events.insertNewline();
    QVERIFY(!fixture.storedEvent(u"Lunch"_s)->url().has_value());
}

void VTEventEditControllerTest::cancellingLeavesTheStoredEvent()
{
    EditSheetFixture fixture;
    const CalEventPtr event = fixture.addEvent(u"Lunch"_s, { makeAlarm(-900) });
    fixture.open(event);
    replaceText(fixture.events.titleField(), u"Dinner"_s);
    fixture.events.startDatePicker()->setDateTime(localInstant("2026-11-20T19:00"));

    fixture.events.cancelEventEditSheet();

    QVERIFY(!fixture.events.window()->isVisible());
    QCOMPARE(event->title().value_or(QString()), u"Lunch"_s);
    QCOMPARE(event->startDate(), localInstant("2026-11-20T11:00"));
    QCOMPARE(fixture.backend().saves(), 0);
}

void VTEventEditControllerTest::endBeforeTheStartIsSavedSo()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));

    fixture.events.endDatePicker()->setDateTime(localInstant("2026-11-20T08:00"));
    fixture.events.endEventEditSheetAndSaveEvent();

    QCOMPARE(fixture.backend().storedEvent(u"Lunch"_s)->startDate(), localInstant("2026-11-20T11:00"));
    QCOMPARE(fixture.backend().storedEvent(u"Lunch"_s)->endDate(), localInstant("2026-11-20T08:00"));
    QVERIFY(fixture.alerts.messages.isEmpty());
}

void VTEventEditControllerTest::savingGoesInTwoSteps()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));

    fixture.events.endEventEditSheetAndSaveEvent();

    QCOMPARE(fixture.backend().writes(), (QStringList { u"this: DUMBY Lunch"_s, u"all: Lunch"_s }));
    QVERIFY(fixture.storedEvent(u"Lunch"_s));
}

void VTEventEditControllerTest::titleThatIsAbsentStaysAbsent()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));

    replaceText(fixture.events.titleField(), QString());
    fixture.events.endEventEditSheetAndSaveEvent();

    QCOMPARE(fixture.backend().writes(), (QStringList { u"this: DUMBY "_s, u"all: "_s }));
    QVERIFY(!fixture.backend().storedEvent(u"Lunch"_s)->title().has_value());
}

void VTEventEditControllerTest::firstSaveFailingShowsOneAlert()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));
    fixture.backend().refuseNextSave(StoreError::Code::Io, u"The disk is full."_s);
    replaceText(fixture.events.titleField(), u"Dinner"_s);

    fixture.events.endEventEditSheetAndSaveEvent();

    QCOMPARE(fixture.alerts.messages.size(), 1);
    QVERIFY(fixture.alerts.messages.first().contains(u"“Home”"_s));
    QVERIFY(fixture.alerts.messages.first().endsWith(u"The disk is full."_s));
    QCOMPARE(fixture.backend().writes().size(), 2);
    QVERIFY(fixture.storedEvent(u"Dinner"_s));
}

void VTEventEditControllerTest::bothSavesFailingShowTwoAlerts()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));
    fixture.backend().refuseSaves(StoreError::Code::Io, u"The disk is full."_s);

    fixture.events.endEventEditSheetAndSaveEvent();

    QCOMPARE(fixture.alerts.messages.size(), 2);
    QVERIFY(fixture.alerts.messages.last().contains(u"“Lunch” in the calendar “Home”"_s));
    QVERIFY(fixture.storedEvent(u"Lunch"_s));
}

void VTEventEditControllerTest::failedSaveKeepsTheEditsInTheRecord()
{
    EditSheetFixture fixture;
    const CalEventPtr event = fixture.addEvent(u"Lunch"_s);
    fixture.open(event);
    fixture.backend().refuseSaves(StoreError::Code::Io, u"The disk is full."_s);
    replaceText(fixture.events.titleField(), u"Dinner"_s);

    fixture.events.endEventEditSheetAndSaveEvent();

    QCOMPARE(event->title().value_or(QString()), u"Dinner"_s);
    QVERIFY(fixture.storedEvent(u"Lunch"_s));
    QVERIFY(!fixture.storedEvent(u"Dinner"_s));
}

void VTEventEditControllerTest::newEventIsCreatedOnce()
{
    EditSheetFixture fixture;
    const auto event = std::make_shared<CalEvent>();
    event->setTitle(u"New event"_s);
    event->setCalendar(fixture.calendars.store().calendars().first());
    fixture.open(event);
    QCOMPARE(fixture.backend().storedEvents(), 0);

    fixture.events.endEventEditSheetAndSaveEvent();

    QCOMPARE(fixture.backend().storedEvents(), 1);
    QCOMPARE(fixture.storedEvent(u"New event"_s)->startDate(), localInstant("2026-11-20T11:00"));
    QVERIFY(fixture.alerts.messages.isEmpty());
}

void VTEventEditControllerTest::sheetIsClosedBeforeAnythingIsSaved()
{
    EditSheetFixture fixture;
    const CalEventPtr event = fixture.addEvent(u"Lunch"_s);
    fixture.open(event);
    class Recorder final : public KeyValueObserver
    {
    public:
        explicit Recorder(const VTEventEditController &sheet)
            : m_sheet(sheet)
        {
        }
        void observeValueForKeyPath_ofObject_change_context(const QString & /*keyPath*/, KeyValueObject * /*object*/,
            const KeyValueChange & /*change*/, void * /*context*/) override
        {
            ++changes;
            wasOpen = wasOpen || m_sheet.isOpen();
        }
        int changes = 0;
        bool wasOpen = false;

    private:
        const VTEventEditController &m_sheet;
    } recorder(fixture.events);
    event->addObserver_forKeyPath_options_context(&recorder, u"title"_s);

    fixture.events.endEventEditSheetAndSaveEvent();

    QCOMPARE(recorder.changes, 3); // copied back, prefixed, restored
    QVERIFY(!recorder.wasOpen);
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

void VTEventEditControllerTest::unchangedAllDayEventKeepsItsBounds()
{
    EditSheetFixture fixture;
    fixture.backend().addEvent(u"Home"_s, makeAllDayEvent(u"1"_s, u"Fair"_s, QDate(2026, 11, 20), QDate(2026, 11, 22)));
    const CalEventPtr event = fixture.storedEvent(u"Fair"_s);
    const QDateTime end = event->endDate();

    fixture.open(event);
    QCOMPARE(fixture.events.endDatePicker()->date(), QDate(2026, 11, 22));
    fixture.events.endEventEditSheetAndSaveEvent();

    QCOMPARE(fixture.storedEvent(u"Fair"_s)->startDate(), localInstant("2026-11-20T00:00"));
    QCOMPARE(fixture.storedEvent(u"Fair"_s)->endDate(), end);
}

void VTEventEditControllerTest::alarmsMayAlwaysBeRelative()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));

    QVERIFY(fixture.events.allowRelativeTrigger());
    fixture.events.showAlarmEditSheetWithNewAlarm();
    QVERIFY(fixture.events.alarmController()->allowRelativeTrigger());
}

void VTEventEditControllerTest::alarmsOfEveryKindAreShownAndKept()
{
    EditSheetFixture fixture;
    CalAlarmList alarms;
    for (const QString &action :
        { CalAlarmActionDisplay, CalAlarmActionSound, CalAlarmActionEmail, CalAlarmActionProcedure, u"X-BLINK"_s }) {
        alarms.append(makeAlarm(-900));
        alarms.last()->setUrl(QUrl(u"file:///srv/start.sh"_s));
        alarms.last()->setAction(action);
    }
    fixture.open(fixture.addEvent(u"Lunch"_s, alarms));
    QCOMPARE(
        fixture.events.alarmsTable()->model()->index(3, 0).data().toString(), u"15 minutes before, open start.sh"_s);

    fixture.events.endEventEditSheetAndSaveEvent();

    const CalAlarmList stored = fixture.storedEvent(u"Lunch"_s)->alarms();
    QCOMPARE(stored.size(), 5);
    QCOMPARE(stored.at(3)->action(), CalAlarmActionProcedure);
    QCOMPARE(stored.at(3)->url().value_or(QUrl()), QUrl(u"file:///srv/start.sh"_s));
    QCOMPARE(stored.at(4)->action(), u"X-BLINK"_s);
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

void VTEventEditControllerTest::attendeesAreKept()
{
    EditSheetFixture fixture;
    const CalEventPtr event = makeEvent(u"1"_s, u"Lunch"_s, fixture.clock.now(), fixture.clock.now().addSecs(60));
    event->setAttendees(QList<CalAttendee> { { u"Ada"_s, QUrl(u"mailto:ada@example.org"_s), std::nullopt } });
    fixture.backend().addEvent(u"Home"_s, event);

    fixture.open(fixture.storedEvent(u"Lunch"_s));
    fixture.events.endEventEditSheetAndSaveEvent();

    QVERIFY(fixture.storedEvent(u"Lunch"_s)->attendees() == event->attendees());
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
