// SPDX-License-Identifier: MIT
#include "EditSheetFixture.h"

#include <CalAlarm+VTHelper.h>
#include <SeenToolTip.h>
#include <TestRegistry.h>

using namespace Qt::StringLiterals;

namespace
{

// An alarm sheet over a window, and who hears of it.
struct AlarmFixture : EditSheetFixture, VTAlarmEditDelegate {
    VTAlarmEditController sheet { services(), u"Relative to the event"_s };
    QList<std::pair<CalAlarmPtr, CalAlarmPtr>> updates;
    bool wasOpenAtUpdate = false;

    void updateAlarm_withAlarm(const CalAlarmPtr &alarm, const CalAlarmPtr &newAlarm) override
    {
        updates.append({ alarm, newAlarm });
        wasOpenAtUpdate = sheet.window()->isVisible();
    }

    void open(const CalAlarmPtr &alarm, bool allowRelativeTrigger = true)
    {
        sheet.editAlarm_allowRelativeTrigger_attachedToWindow_delegate(alarm, allowRelativeTrigger, &window, this);
    }
    const CalAlarm &confirmed()
    {
        sheet.endAlarmEditSheetAndReturnAlarm();
        return *updates.last().second;
    }
    template <typename Control> Control *control(const char *name) const
    {
        return sheet.window()->findChild<Control *>(QLatin1String(name));
    }
    void choose(const char *radio) const { control<QRadioButton>(radio)->click(); }
    QString relativeTrigger() const
    {
        return u"%1 %2 %3"_s.arg(sheet.triggerRelativeDuration()->text(), sheet.triggerRelativeUnit()->currentText(),
            sheet.triggerRelativeRelation()->currentText());
    }
};

CalAlarmPtr alarmDoing(const QString &action)
{
    auto alarm = makeAlarm(-900);
    alarm->setAction(action);
    return alarm;
}

} // namespace

class VTAlarmEditControllerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void missingAlarmIsAProgrammingError();
    void relativeTriggerFillsTheFields_data();
    void relativeTriggerFillsTheFields();
    void confirmingANewAlarmGivesTenMinutesBefore();
    void relativeTriggerIsTakenFromTheFields_data();
    void relativeTriggerIsTakenFromTheFields();
    void leadingNumberCounts_data();
    void leadingNumberCounts();
    void absoluteTriggerIsShownAndKeptToTheFraction();
    void withoutRelativeTriggersTheSheetIsAbsolute();
    void choiceOfTriggerEnablesItsControls();
    void chosenTriggerIsTheOneThatCounts();
    void actionIsShown_data();
    void actionIsShown();
    void actionOfAnotherProgramHasNoChoiceAndIsKept();
    void choosingAnActionEnablesItsControlAlone();
    void pressingAChosenActionAgainKeepsIt();
    void confirmingWithoutASoundSetsNone();
    void confirmingWithASoundSetsOnlyTheSound();
    void confirmingKeepsTheSoundAtTheFirstEntry();
    void choosingNoSoundTakesItAway();
    void unknownSoundIsAddedToTheList();
    void confirmingAnEmailTakesTheAddressAlone();
    void confirmingAFileTakesTheFileAlone();
    void choosingAFileShowsItsName();
    void givingUpTheChoiceChangesNothing();
    void fileNameIsNoMnemonic();
    void delegateHearsOnceAfterTheSheetHasClosed();
    void cancellingTellsNobody();
    void returnConfirmsFromEveryControl();
    void escapeCancelsFromEveryControl();
    void openingAgainFillsEverythingAnew();
    void focusIsOnTheTrigger();
    void everyControlHasANameForAssistiveTechnology();
    void choicesAreObservable();
};

void VTAlarmEditControllerTest::missingAlarmIsAProgrammingError()
{
    AlarmFixture fixture;

    const auto failure = failureOf([&] { fixture.open(CalAlarmPtr()); });

    QVERIFY(failure.has_value());
    QCOMPARE(
        failure->message(), u"editAlarm:allowRelativeTrigger:attachedToWindow:delegate: invoked with oAlarm == nil"_s);
    QCOMPARE(failure->sourceName(), u"Controllers (App & Windows)/VTAlarmEditController"_s);
    QCOMPARE(failure->line(), 129);
}

void VTAlarmEditControllerTest::relativeTriggerFillsTheFields_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<QString>("fields");

    QTest::newRow("new alarm") << 0.0 << u"10 minutes before"_s;
    QTest::newRow("an hour and a half") << -5400.0 << u"90 minutes before"_s;
    QTest::newRow("two days") << -172800.0 << u"2 days before"_s;
    QTest::newRow("an hour after") << 3600.0 << u"1 hours after"_s;
    QTest::newRow("truncated toward zero") << -90.0 << u"1 minutes before"_s;
    QTest::newRow("truncated toward zero after") << 90.0 << u"1 minutes after"_s;
    QTest::newRow("less than a minute") << -30.0 << u"0 minutes before"_s;
    QTest::newRow("a day after") << 86400.0 << u"1 days after"_s;
    QTest::newRow("beyond 32 bits") << -1e15 << u"2147483647 minutes before"_s;
}

void VTAlarmEditControllerTest::relativeTriggerFillsTheFields()
{
    QFETCH(const double, seconds);
    AlarmFixture fixture;

    fixture.open(makeAlarm(seconds));

    QTEST(fixture.relativeTrigger(), "fields");
    QVERIFY(!fixture.sheet.isAbsolute());
    QVERIFY(fixture.control<QRadioButton>("relativeRadio")->isChecked());
}

void VTAlarmEditControllerTest::confirmingANewAlarmGivesTenMinutesBefore()
{
    AlarmFixture fixture;
    fixture.open(std::make_shared<CalAlarm>());

    const CalAlarm &confirmed = fixture.confirmed();

    QCOMPARE(confirmed.relativeTrigger(), -600.0);
    QVERIFY(!confirmed.absoluteTrigger().has_value());
    QCOMPARE(confirmed.action(), CalAlarmActionDisplay);
}

void VTAlarmEditControllerTest::relativeTriggerIsTakenFromTheFields_data()
{
    QTest::addColumn<QString>("duration");
    QTest::addColumn<int>("unit");
    QTest::addColumn<int>("relation");
    QTest::addColumn<double>("seconds");

    QTest::newRow("minutes before") << u"15"_s << 0 << 0 << -900.0;
    QTest::newRow("hours after") << u"2"_s << 1 << 1 << 7200.0;
    QTest::newRow("days before") << u"3"_s << 2 << 0 << -259200.0;
    QTest::newRow("empty") << QString() << 0 << 0 << 0.0;
    QTest::newRow("no number") << u"soon"_s << 0 << 0 << 0.0;
    QTest::newRow("fraction") << u"1.5"_s << 1 << 0 << -5400.0;
}

void VTAlarmEditControllerTest::relativeTriggerIsTakenFromTheFields()
{
    QFETCH(const QString, duration);
    QFETCH(const int, unit);
    QFETCH(const int, relation);
    AlarmFixture fixture;
    fixture.open(makeAlarm(-900));

    fixture.sheet.triggerRelativeDuration()->setText(duration);
    fixture.sheet.triggerRelativeUnit()->setCurrentIndex(unit);
    fixture.sheet.triggerRelativeRelation()->setCurrentIndex(relation);

    QTEST(fixture.confirmed().relativeTrigger(), "seconds");
}

void VTAlarmEditControllerTest::leadingNumberCounts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("number");

    QTest::newRow("whole") << u"15"_s << 15.0;
    QTest::newRow("comma") << u"1,5"_s << 1.5;
    QTest::newRow("point") << u" 1.5"_s << 1.5;
    QTest::newRow("words after it") << u"15 or so"_s << 15.0;
    QTest::newRow("negative") << u"-3"_s << -3.0;
    QTest::newRow("exponents are words") << u"1e300"_s << 1.0;
    QTest::newRow("infinity is a word") << u"inf"_s << 0.0;
    QTest::newRow("fraction alone") << u".5"_s << 0.5;
}

void VTAlarmEditControllerTest::leadingNumberCounts()
{
    QFETCH(const QString, text);

    QTEST(VTLeadingNumber(text), "number");
}

void VTAlarmEditControllerTest::absoluteTriggerIsShownAndKeptToTheFraction()
{
    AlarmFixture fixture;
    const QDateTime instant = localInstant("2026-11-20T10:45:37").addMSecs(250);
    const auto alarm = std::make_shared<CalAlarm>();
    alarm->setAbsoluteTrigger(instant);

    fixture.open(alarm);

    QVERIFY(fixture.sheet.isAbsolute());
    QVERIFY(fixture.control<QRadioButton>("absoluteRadio")->isChecked());
    QCOMPARE(fixture.confirmed().absoluteTrigger().value_or(QDateTime()), instant);
}

void VTAlarmEditControllerTest::withoutRelativeTriggersTheSheetIsAbsolute()
{
    AlarmFixture fixture;

    fixture.open(makeAlarm(-900), false);

    QVERIFY(fixture.sheet.isAbsolute());
    QCOMPARE(fixture.sheet.triggerAbsoluteDate()->dateValue(), fixture.clock.now());
    QVERIFY(!fixture.control<QRadioButton>("relativeRadio")->isEnabled());
    QVERIFY(!fixture.sheet.triggerRelativeDuration()->isEnabled());
}

void VTAlarmEditControllerTest::choiceOfTriggerEnablesItsControls()
{
    AlarmFixture fixture;
    fixture.open(makeAlarm(-900));
    QVERIFY(fixture.sheet.triggerRelativeDuration()->isEnabled());
    QVERIFY(!fixture.sheet.triggerAbsoluteDate()->isEnabled());

    fixture.choose("absoluteRadio");

    QVERIFY(fixture.sheet.isAbsolute());
    QVERIFY(!fixture.sheet.triggerRelativeDuration()->isEnabled());
    QVERIFY(!fixture.sheet.triggerRelativeUnit()->isEnabled());
    QVERIFY(!fixture.sheet.triggerRelativeRelation()->isEnabled());
    QVERIFY(fixture.sheet.triggerAbsoluteDate()->isEnabled());
}

void VTAlarmEditControllerTest::chosenTriggerIsTheOneThatCounts()
{
    AlarmFixture fixture;
    const auto alarm = std::make_shared<CalAlarm>();
    alarm->setAbsoluteTrigger(localInstant("2026-11-20T10:45"));
    fixture.open(alarm);

    fixture.choose("relativeRadio");

    QCOMPARE(VTDescriptionForDisplay(fixture.confirmed()), u"10 minutes before, display a message"_s);
    QVERIFY(alarm->absoluteTrigger().has_value());
}

void VTAlarmEditControllerTest::actionIsShown_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("radio");

    QTest::newRow("display") << CalAlarmActionDisplay << u"messageRadio"_s;
    QTest::newRow("sound") << CalAlarmActionSound << u"messageRadio"_s;
    QTest::newRow("e-mail") << CalAlarmActionEmail << u"emailRadio"_s;
    QTest::newRow("file") << CalAlarmActionProcedure << u"fileRadio"_s;
}

void VTAlarmEditControllerTest::actionIsShown()
{
    QFETCH(const QString, action);
    QFETCH(const QString, radio);
    AlarmFixture fixture;

    fixture.open(alarmDoing(action));

    for (const QString &each : { u"messageRadio"_s, u"emailRadio"_s, u"fileRadio"_s })
        QCOMPARE(fixture.sheet.window()->findChild<QRadioButton *>(each)->isChecked(), each == radio);
    QCOMPARE(fixture.confirmed().action(), action);
}

void VTAlarmEditControllerTest::actionOfAnotherProgramHasNoChoiceAndIsKept()
{
    AlarmFixture fixture;

    fixture.open(alarmDoing(u"X-BLINK"_s));

    for (const char *radio : { "messageRadio", "emailRadio", "fileRadio" })
        QVERIFY(!fixture.control<QRadioButton>(radio)->isChecked());
    QCOMPARE(fixture.confirmed().action(), u"X-BLINK"_s);
}

void VTAlarmEditControllerTest::choosingAnActionEnablesItsControlAlone()
{
    AlarmFixture fixture;
    fixture.open(makeAlarm(-900));
    const auto enabled = [&fixture] {
        return QList<bool> { fixture.sheet.actionSound()->isEnabled(), fixture.sheet.actionEmailAddress()->isEnabled(),
            fixture.sheet.actionFilePath()->isEnabled() };
    };
    QCOMPARE(enabled(), (QList<bool> { true, false, false }));

    fixture.choose("emailRadio");
    QCOMPARE(enabled(), (QList<bool> { false, true, false }));

    fixture.choose("fileRadio");
    QCOMPARE(enabled(), (QList<bool> { false, false, true }));
    QCOMPARE(fixture.sheet.proxyAlarm()->action(), CalAlarmActionProcedure);
}

void VTAlarmEditControllerTest::pressingAChosenActionAgainKeepsIt()
{
    AlarmFixture fixture;
    fixture.open(alarmDoing(CalAlarmActionEmail));

    fixture.choose("emailRadio");

    QVERIFY(fixture.control<QRadioButton>("emailRadio")->isChecked());
    QCOMPARE(fixture.sheet.proxyAlarm()->action(), CalAlarmActionEmail);
}

void VTAlarmEditControllerTest::confirmingWithoutASoundSetsNone()
{
    AlarmFixture fixture;
    fixture.open(makeAlarm(-900));
    QCOMPARE(fixture.sheet.actionSound()->currentIndex(), 0);

    QVERIFY(!fixture.confirmed().sound().has_value());
}

void VTAlarmEditControllerTest::confirmingWithASoundSetsOnlyTheSound()
{
    AlarmFixture fixture;
    fixture.open(makeAlarm(-900));

    fixture.sheet.actionSound()->setCurrentIndex(2);
    fixture.sheet.actionEmailAddress()->setText(u"a@example.org"_s);
    fixture.sheet.setFilePath(QUrl(u"file:///srv/plan.pdf"_s));

    const CalAlarm &confirmed = fixture.confirmed();
    QCOMPARE(confirmed.sound().value_or(QString()), u"complete"_s);
    QCOMPARE(confirmed.action(), CalAlarmActionSound);
    QVERIFY(!confirmed.emailAddress().has_value());
    QVERIFY(!confirmed.url().has_value());
}

void VTAlarmEditControllerTest::confirmingKeepsTheSoundAtTheFirstEntry()
{
    AlarmFixture fixture;
    const auto alarm = makeAlarm(-900);
    alarm->setSound(u"bell"_s);
    fixture.open(alarm);

    fixture.sheet.actionSound()->setCurrentIndex(0);

    QCOMPARE(fixture.confirmed().sound().value_or(QString()), u"bell"_s);
}

void VTAlarmEditControllerTest::choosingNoSoundTakesItAway()
{
    AlarmFixture fixture;
    const auto alarm = makeAlarm(-900);
    alarm->setSound(u"bell"_s);
    fixture.open(alarm);
    QCOMPARE(fixture.sheet.actionSound()->currentText(), u"bell"_s);

    KLVPopUpButton *const popUp = fixture.sheet.actionSound();
    popUp->showPopup();
    QTest::keyClick(popUp->view(), Qt::Key_Home);
    QTest::keyClick(popUp->view(), Qt::Key_Return);

    QVERIFY(fixture.sheet.window()->isVisible());
    const CalAlarm &confirmed = fixture.confirmed();
    QVERIFY(!confirmed.sound().has_value());
    QCOMPARE(confirmed.action(), CalAlarmActionDisplay);
    QCOMPARE(alarm->sound().value_or(QString()), u"bell"_s);
}

void VTAlarmEditControllerTest::unknownSoundIsAddedToTheList()
{
    AlarmFixture fixture;
    const auto alarm = makeAlarm(-900);
    alarm->setSound(u"Basso"_s);

    fixture.open(alarm);

    QCOMPARE(fixture.sheet.actionSound()->currentText(), u"Basso"_s);
    QCOMPARE(fixture.sheet.actionSound()->count(), 5);
    QCOMPARE(fixture.confirmed().sound().value_or(QString()), u"Basso"_s);
}

void VTAlarmEditControllerTest::confirmingAnEmailTakesTheAddressAlone()
{
    AlarmFixture fixture;
    fixture.open(makeAlarm(-900));

    fixture.choose("emailRadio");
    fixture.sheet.actionSound()->setCurrentIndex(1);
    QTest::keyClicks(fixture.sheet.actionEmailAddress(), u"a@example.org"_s);

    const CalAlarm &confirmed = fixture.confirmed();
    QCOMPARE(confirmed.action(), CalAlarmActionEmail);
    QCOMPARE(confirmed.emailAddress().value_or(QString()), u"a@example.org"_s);
    QVERIFY(!confirmed.sound().has_value());
}

void VTAlarmEditControllerTest::confirmingAFileTakesTheFileAlone()
{
    AlarmFixture fixture;
    fixture.open(makeAlarm(-900));
    fixture.choose("fileRadio");
    fixture.fileChooser.answer = QUrl(u"file:///srv/plan.pdf"_s);

    fixture.sheet.actionFilePath()->click();
    fixture.sheet.actionSound()->setCurrentIndex(1);

    const CalAlarm &confirmed = fixture.confirmed();
    QCOMPARE(confirmed.action(), CalAlarmActionProcedure);
    QCOMPARE(confirmed.url().value_or(QUrl()), QUrl(u"file:///srv/plan.pdf"_s));
    QVERIFY(!confirmed.sound().has_value());
}

void VTAlarmEditControllerTest::choosingAFileShowsItsName()
{
    AlarmFixture fixture;
    fixture.open(alarmDoing(CalAlarmActionProcedure));
    QCOMPARE(fixture.sheet.actionFilePath()->text(), u"select file"_s);
    fixture.fileChooser.answer = QUrl(u"file:///srv/My%20plan.pdf"_s);

    fixture.sheet.showSelectFilePathDialog();

    QCOMPARE(fixture.sheet.actionFilePath()->text(), u"My plan.pdf"_s);
    QCOMPARE(fixture.sheet.filePath().value_or(QUrl()), QUrl(u"file:///srv/My%20plan.pdf"_s));
}

void VTAlarmEditControllerTest::givingUpTheChoiceChangesNothing()
{
    AlarmFixture fixture;
    const auto alarm = alarmDoing(CalAlarmActionProcedure);
    alarm->setUrl(QUrl(u"file:///srv/plan.pdf"_s));
    fixture.open(alarm);

    fixture.sheet.showSelectFilePathDialog();

    QCOMPARE(fixture.fileChooser.questions, 1);
    QCOMPARE(fixture.sheet.actionFilePath()->text(), u"plan.pdf"_s);
    QCOMPARE(fixture.confirmed().url().value_or(QUrl()), QUrl(u"file:///srv/plan.pdf"_s));
}

void VTAlarmEditControllerTest::fileNameIsNoMnemonic()
{
    AlarmFixture fixture;
    const auto alarm = alarmDoing(CalAlarmActionProcedure);
    alarm->setUrl(QUrl::fromLocalFile(u"/srv/R&D.pdf"_s));

    fixture.open(alarm);

    QCOMPARE(fixture.sheet.actionFilePath()->text(), u"R&&D.pdf"_s);
    QCOMPARE(fixture.sheet.actionFilePath()->accessibleName(), u"R&D.pdf"_s);
    QCOMPARE(seenInToolTip(fixture.sheet.actionFilePath()->toolTip()), u"file:///srv/R&D.pdf"_s);
    QCOMPARE(fixture.sheet.actionFilePath()->accessibleDescription(), u"file:///srv/R&D.pdf"_s);
}

void VTAlarmEditControllerTest::delegateHearsOnceAfterTheSheetHasClosed()
{
    AlarmFixture fixture;
    const CalAlarmPtr alarm = makeAlarm(-900);
    fixture.open(alarm);
    QVERIFY(fixture.sheet.window()->isVisible());

    fixture.sheet.endAlarmEditSheetAndReturnAlarm();

    QCOMPARE(fixture.updates.size(), 1);
    QCOMPARE(fixture.updates.first().first, alarm);
    QVERIFY(fixture.updates.first().second != alarm);
    QVERIFY(!fixture.wasOpenAtUpdate);
    QCOMPARE(alarm->relativeTrigger(), -900.0);
}

void VTAlarmEditControllerTest::cancellingTellsNobody()
{
    AlarmFixture fixture;
    fixture.open(makeAlarm(-900));

    fixture.control<QAbstractButton>("cancelButton")->click();

    QVERIFY(!fixture.sheet.window()->isVisible());
    QVERIFY(fixture.updates.isEmpty());
}

void VTAlarmEditControllerTest::returnConfirmsFromEveryControl()
{
    AlarmFixture fixture;
    for (const char *name : { "relativeRadio", "triggerRelativeDuration", "triggerRelativeUnit",
             "triggerRelativeRelation", "absoluteRadio", "messageRadio", "actionSound", "cancelButton", "okButton" }) {
        fixture.open(makeAlarm(-900));
        auto *const control = fixture.control<QWidget>(name);
        control->setFocus();

        QTest::keyClick(control, Qt::Key_Return);

        QVERIFY2(!fixture.sheet.window()->isVisible(), name);
    }
    QCOMPARE(fixture.updates.size(), 9);
}

void VTAlarmEditControllerTest::escapeCancelsFromEveryControl()
{
    AlarmFixture fixture;
    for (const char *name : { "relativeRadio", "triggerRelativeDuration", "triggerRelativeUnit",
             "triggerRelativeRelation", "absoluteRadio", "messageRadio", "actionSound", "cancelButton", "okButton" }) {
        fixture.open(makeAlarm(-900));
        auto *const control = fixture.control<QWidget>(name);
        control->setFocus();

        QTest::keyClick(control, Qt::Key_Escape);

        QVERIFY2(!fixture.sheet.window()->isVisible(), name);
    }
    QVERIFY(fixture.updates.isEmpty());
}

void VTAlarmEditControllerTest::openingAgainFillsEverythingAnew()
{
    AlarmFixture fixture;
    const auto first = alarmDoing(CalAlarmActionEmail);
    first->setEmailAddress(u"a@example.org"_s);
    first->setUrl(QUrl(u"file:///srv/plan.pdf"_s));
    first->setSound(u"bell"_s);
    first->setAbsoluteTrigger(localInstant("2026-11-21T10:45"));
    fixture.open(first, false);
    fixture.sheet.cancelAlarmEditSheet();

    fixture.open(std::make_shared<CalAlarm>());

    QVERIFY(!fixture.sheet.isAbsolute());
    QVERIFY(fixture.sheet.allowRelativeTrigger());
    QCOMPARE(fixture.relativeTrigger(), u"10 minutes before"_s);
    QCOMPARE(fixture.sheet.triggerAbsoluteDate()->dateValue(), fixture.clock.now());
    QCOMPARE(fixture.sheet.actionSound()->currentIndex(), 0);
    QCOMPARE(fixture.sheet.actionEmailAddress()->text(), QString());
    QVERIFY(!fixture.sheet.filePath().has_value());
    QVERIFY(fixture.control<QRadioButton>("messageRadio")->isChecked());
}

void VTAlarmEditControllerTest::focusIsOnTheTrigger()
{
    AlarmFixture fixture;
    fixture.open(makeAlarm(-900));
    QCOMPARE(fixture.sheet.window()->focusWidget(), fixture.sheet.triggerRelativeDuration());

    fixture.sheet.cancelAlarmEditSheet();
    fixture.open(makeAlarm(-900), false);

    QCOMPARE(fixture.sheet.window()->focusWidget(), fixture.sheet.triggerAbsoluteDate());
}

void VTAlarmEditControllerTest::everyControlHasANameForAssistiveTechnology()
{
    AlarmFixture fixture;
    fixture.open(makeAlarm(-900));

    for (const char *name : { "triggerRelativeDuration", "triggerRelativeUnit", "triggerRelativeRelation",
             "triggerAbsoluteDate", "actionSound", "actionEmailAddress", "actionFilePath" })
        QVERIFY2(!fixture.control<QWidget>(name)->accessibleName().isEmpty(), name);
    for (const char *name :
        { "relativeRadio", "absoluteRadio", "messageRadio", "emailRadio", "fileRadio", "cancelButton", "okButton" })
        QVERIFY2(!fixture.control<QAbstractButton>(name)->text().isEmpty(), name);
    QCOMPARE(fixture.sheet.window()->accessibleName(), u"Alarm"_s);
}

void VTAlarmEditControllerTest::choicesAreObservable()
{
    class Recorder final : public KeyValueObserver
    {
    public:
        void observeValueForKeyPath_ofObject_change_context(const QString &keyPath, KeyValueObject *object,
            const KeyValueChange & /*change*/, void * /*context*/) override
        {
            values.append(u"%1 %2"_s.arg(keyPath, object->valueForKey(keyPath).toString()));
        }
        QStringList values;
    };
    AlarmFixture fixture;
    fixture.open(makeAlarm(-900));
    Recorder recorder;
    fixture.sheet.addObserver_forKeyPath_options_context(&recorder, u"isAbsolute"_s);
    fixture.sheet.addObserver_forKeyPath_options_context(&recorder, u"allowRelativeTrigger"_s);

    fixture.choose("absoluteRadio");
    fixture.sheet.setAllowRelativeTrigger(false);

    QCOMPARE(recorder.values, (QStringList { u"isAbsolute true"_s, u"allowRelativeTrigger false"_s }));
}

VANTLE_TEST(VTAlarmEditControllerTest)
#include "VTAlarmEditControllerTest.moc"
