// SPDX-License-Identifier: MIT
#include "EditSheetFixture.h"

#include <TestRegistry.h>

#include <QAccessible>

using namespace Qt::StringLiterals;

// What the event sheet makes of the event when it saves, over a store in memory that can refuse.
class VTEventSavingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
    void alertNamesANewEventAsThePersonDoes();
    void failedSaveKeepsTheEditsInTheRecord();
    void newEventIsCreatedOnce();
    void sheetIsClosedBeforeAnythingIsSaved();
    void alarmsOfEveryKindAreShownAndKept();
    void unchangedAllDayEventKeepsItsBounds();
    void attendeesAreKept();
};

void VTEventSavingTest::editsReachTheStore()
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

void VTEventSavingTest::textsSetByAssistiveTechnologyReachTheStore()
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

void VTEventSavingTest::clearedFieldsAreAbsent()
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

void VTEventSavingTest::unchangedFieldsKeepWhatTheyCannotShow()
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

void VTEventSavingTest::addressWithoutASchemeIsCompleted()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));

    replaceText(fixture.events.urlField(), u"example.org/review"_s);
    fixture.events.insertNewline();

    QCOMPARE(fixture.storedEvent(u"Lunch"_s)->url().value_or(QUrl()), QUrl(u"http://example.org/review"_s));
}

void VTEventSavingTest::addressThatIsNoneTodayIsKeptUntilEdited()
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

void VTEventSavingTest::cancellingLeavesTheStoredEvent()
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

void VTEventSavingTest::endBeforeTheStartIsSavedSo()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));

    fixture.events.endDatePicker()->setDateTime(localInstant("2026-11-20T08:00"));
    fixture.events.endEventEditSheetAndSaveEvent();

    QCOMPARE(fixture.backend().storedEvent(u"Lunch"_s)->startDate(), localInstant("2026-11-20T11:00"));
    QCOMPARE(fixture.backend().storedEvent(u"Lunch"_s)->endDate(), localInstant("2026-11-20T08:00"));
    QVERIFY(fixture.alerts.messages.isEmpty());
}

void VTEventSavingTest::savingGoesInTwoSteps()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));

    fixture.events.endEventEditSheetAndSaveEvent();

    QCOMPARE(fixture.backend().writes(), (QStringList { u"this: DUMBY Lunch"_s, u"all: Lunch"_s }));
    QVERIFY(fixture.storedEvent(u"Lunch"_s));
}

void VTEventSavingTest::titleThatIsAbsentStaysAbsent()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));

    replaceText(fixture.events.titleField(), QString());
    fixture.events.endEventEditSheetAndSaveEvent();

    QCOMPARE(fixture.backend().writes(), (QStringList { u"this: DUMBY "_s, u"all: "_s }));
    QVERIFY(!fixture.backend().storedEvent(u"Lunch"_s)->title().has_value());
}

void VTEventSavingTest::firstSaveFailingShowsOneAlert()
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

void VTEventSavingTest::bothSavesFailingShowTwoAlerts()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));
    fixture.backend().refuseSaves(StoreError::Code::Io, u"The disk is full."_s);

    fixture.events.endEventEditSheetAndSaveEvent();

    QCOMPARE(fixture.alerts.messages.size(), 2);
    for (const QString &message : fixture.alerts.messages)
        QVERIFY2(message.contains(u"“Lunch” in the calendar “Home”"_s), qPrintable(message));
    QVERIFY(fixture.storedEvent(u"Lunch"_s));
}

void VTEventSavingTest::alertNamesANewEventAsThePersonDoes()
{
    EditSheetFixture fixture;
    const auto event = std::make_shared<CalEvent>();
    event->setTitle(u"New event"_s);
    fixture.open(event);
    replaceText(fixture.events.titleField(), u"Dinner"_s);

    fixture.events.endEventEditSheetAndSaveEvent();

    const QString message = u"“Dinner” was not saved.\nNo calendar was chosen for it."_s;
    QCOMPARE(fixture.alerts.messages, QStringList({ message, message }));
}

void VTEventSavingTest::failedSaveKeepsTheEditsInTheRecord()
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

void VTEventSavingTest::newEventIsCreatedOnce()
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

void VTEventSavingTest::sheetIsClosedBeforeAnythingIsSaved()
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

void VTEventSavingTest::alarmsOfEveryKindAreShownAndKept()
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

void VTEventSavingTest::unchangedAllDayEventKeepsItsBounds()
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

void VTEventSavingTest::attendeesAreKept()
{
    EditSheetFixture fixture;
    const CalEventPtr event = makeEvent(u"1"_s, u"Lunch"_s, fixture.clock.now(), fixture.clock.now().addSecs(60));
    event->setAttendees(QList<CalAttendee> { { u"Ada"_s, QUrl(u"mailto:ada@example.org"_s), std::nullopt } });
    fixture.backend().addEvent(u"Home"_s, event);

    fixture.open(fixture.storedEvent(u"Lunch"_s));
    fixture.events.endEventEditSheetAndSaveEvent();

    QVERIFY(fixture.storedEvent(u"Lunch"_s)->attendees() == event->attendees());
}

VANTLE_TEST(VTEventSavingTest)
#include "VTEventSavingTest.moc"
