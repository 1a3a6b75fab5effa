// SPDX-License-Identifier: MIT
#include "ScopedTimeZone.h"
#include "TestRecords.h"
#include "TestRegistry.h"

#include <CalAlarm+VTHelper.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

const QStringList choices { u"VTActionIsMessage"_s, u"VTActionIsEmail"_s, u"VTActionIsFile"_s };

// Writes down which keys are announced, and what the alarm's action is by then.
class ChoiceRecorder final : public KeyValueObserver
{
public:
    explicit ChoiceRecorder(CalAlarm &alarm)
        : m_alarm(alarm)
    {
        for (const QString &key : choices)
            alarm.addObserver_forKeyPath_options_context(this, key);
    }
    void observeValueForKeyPath_ofObject_change_context(const QString &keyPath, KeyValueObject * /*object*/,
        const KeyValueChange & /*change*/, void * /*context*/) override
    {
        keys.append(keyPath);
        actions.append(m_alarm.action());
    }

    QStringList keys;
    QStringList actions;

private:
    CalAlarm &m_alarm;
};

CalAlarm alarmDoing(const QString &action)
{
    CalAlarm alarm;
    alarm.setAction(action);
    return alarm;
}

} // namespace

class CalAlarmVTHelperTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void kindFollowsTheAction_data();
    void kindFollowsTheAction();
    void actionIsReadAndSet();
    void settingTheActionTellsAllThreeChoicesInOrder();
    void turningAChoiceOnSetsItsAction_data();
    void turningAChoiceOnSetsItsAction();
    void turningAChoiceOffKeepsTheActionAndTellsAll_data();
    void turningAChoiceOffKeepsTheActionAndTellsAll();
    void messageOnASoundAlarmMakesItPlain();
    void choicesAreReadByKey();
    void relativeTriggerIsDescribed_data();
    void relativeTriggerIsDescribed();
    void actionIsDescribed_data();
    void actionIsDescribed();
    void absentDetailsLeaveTheirPlaceEmpty_data();
    void absentDetailsLeaveTheirPlaceEmpty();
    void absoluteTriggerIsDescribedWithItsZone_data();
    void absoluteTriggerIsDescribedWithItsZone();
    void absoluteTriggerWinsOverTheRelativeOne();
    void placeholdersInTextsOfACalendarStayAsTheyAre();
};

void CalAlarmVTHelperTest::kindFollowsTheAction_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<bool>("isMessage");
    QTest::addColumn<bool>("isEmail");
    QTest::addColumn<bool>("isFile");

    QTest::newRow("display") << CalAlarmActionDisplay << true << false << false;
    QTest::newRow("sound") << CalAlarmActionSound << true << false << false;
    QTest::newRow("e-mail") << CalAlarmActionEmail << false << true << false;
    QTest::newRow("procedure") << CalAlarmActionProcedure << false << false << true;
    QTest::newRow("unknown") << u"X-BLINK"_s << false << false << false;
    QTest::newRow("none") << QString() << false << false << false;
}

void CalAlarmVTHelperTest::kindFollowsTheAction()
{
    QFETCH(const QString, action);
    const CalAlarm alarm = alarmDoing(action);

    QTEST(VTActionIsMessage(alarm), "isMessage");
    QTEST(VTActionIsEmail(alarm), "isEmail");
    QTEST(VTActionIsFile(alarm), "isFile");
}

void CalAlarmVTHelperTest::actionIsReadAndSet()
{
    CalAlarm alarm;

    setVTAction(alarm, CalAlarmActionProcedure);

    QCOMPARE(alarm.action(), CalAlarmActionProcedure);
    QCOMPARE(VTAction(alarm), CalAlarmActionProcedure);
}

void CalAlarmVTHelperTest::settingTheActionTellsAllThreeChoicesInOrder()
{
    CalAlarm alarm;
    const ChoiceRecorder recorder(alarm);

    setVTAction(alarm, CalAlarmActionEmail);

    QCOMPARE(recorder.keys, choices);
    QCOMPARE(recorder.actions, QStringList(3, CalAlarmActionEmail));
}

void CalAlarmVTHelperTest::turningAChoiceOnSetsItsAction_data()
{
    QTest::addColumn<QString>("from");

    QTest::newRow("display") << CalAlarmActionDisplay;
    QTest::newRow("sound") << CalAlarmActionSound;
    QTest::newRow("e-mail") << CalAlarmActionEmail;
    QTest::newRow("procedure") << CalAlarmActionProcedure;
    QTest::newRow("unknown") << u"X-BLINK"_s;
}

void CalAlarmVTHelperTest::turningAChoiceOnSetsItsAction()
{
    QFETCH(const QString, from);

    CalAlarm message = alarmDoing(from);
    setVTActionIsMessage(message, true);
    QCOMPARE(message.action(), CalAlarmActionDisplay);

    CalAlarm email = alarmDoing(from);
    setVTActionIsEmail(email, true);
    QCOMPARE(email.action(), CalAlarmActionEmail);

    CalAlarm file = alarmDoing(from);
    setVTActionIsFile(file, true);
    QCOMPARE(file.action(), CalAlarmActionProcedure);
}

void CalAlarmVTHelperTest::turningAChoiceOffKeepsTheActionAndTellsAll_data()
{
    turningAChoiceOnSetsItsAction_data();
}

void CalAlarmVTHelperTest::turningAChoiceOffKeepsTheActionAndTellsAll()
{
    QFETCH(const QString, from);
    for (const auto turnOff : { &setVTActionIsMessage, &setVTActionIsEmail, &setVTActionIsFile }) {
        CalAlarm alarm = alarmDoing(from);
        const ChoiceRecorder recorder(alarm);

        turnOff(alarm, false);

        QCOMPARE(alarm.action(), from);
        QCOMPARE(recorder.keys, choices);
    }
}

void CalAlarmVTHelperTest::messageOnASoundAlarmMakesItPlain()
{
    CalAlarm alarm = alarmDoing(CalAlarmActionSound);
    alarm.setSound(u"bell"_s);
    QVERIFY(VTActionIsMessage(alarm));

    setVTActionIsMessage(alarm, true);

    QCOMPARE(alarm.action(), CalAlarmActionDisplay);
    QVERIFY(VTActionIsMessage(alarm));
}

void CalAlarmVTHelperTest::choicesAreReadByKey()
{
    const CalAlarm alarm = alarmDoing(CalAlarmActionEmail);

    QCOMPARE(valueForKey(alarm, u"VTActionIsMessage"_s), QVariant(false));
    QCOMPARE(valueForKey(alarm, u"VTActionIsEmail"_s), QVariant(true));
    QCOMPARE(valueForKey(alarm, u"VTActionIsFile"_s), QVariant(false));
    QCOMPARE(valueForKey(alarm, u"action"_s), QVariant(CalAlarmActionEmail));
    QVERIFY(!valueForKey(alarm, u"VTActionIsSong"_s).isValid());
}

void CalAlarmVTHelperTest::relativeTriggerIsDescribed_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<QString>("text");

    QTest::newRow("minutes") << -900.0 << u"15 minutes before, display a message"_s;
    QTest::newRow("hours") << -7200.0 << u"2 hours before, display a message"_s;
    QTest::newRow("days") << -172800.0 << u"2 days before, display a message"_s;
    QTest::newRow("one day keeps the plural") << 86400.0 << u"1 days after, display a message"_s;
    QTest::newRow("one hour keeps the plural") << -3600.0 << u"1 hours before, display a message"_s;
    QTest::newRow("zero") << 0.0 << u"0 days after, display a message"_s;
    QTest::newRow("negative zero") << -0.0 << u"0 days after, display a message"_s;
    QTest::newRow("one and a half, to the even two") << -90.0 << u"2 minutes before, display a message"_s;
    QTest::newRow("two and a half, to the even two") << -150.0 << u"2 minutes before, display a message"_s;
    QTest::newRow("half a minute") << 30.0 << u"0 minutes after, display a message"_s;
    QTest::newRow("half a minute before") << -30.0 << u"0 minutes before, display a message"_s;
    QTest::newRow("one hour and a half") << -5400.0 << u"90 minutes before, display a message"_s;
    QTest::newRow("fraction of a second") << 90.5 << u"2 minutes after, display a message"_s;
    QTest::newRow("beyond single precision") << -86400.0 * 16777217 << u"16777216 days before, display a message"_s;
}

void CalAlarmVTHelperTest::relativeTriggerIsDescribed()
{
    QFETCH(const double, seconds);
    const CalAlarmPtr alarm = makeAlarm(seconds);

    QTEST(VTDescriptionForDisplay(*alarm), "text");
}

void CalAlarmVTHelperTest::actionIsDescribed_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("text");

    QTest::newRow("display") << CalAlarmActionDisplay << u"15 minutes before, display a message"_s;
    QTest::newRow("sound") << CalAlarmActionSound
                           << u"15 minutes before, display a message and play bell alert sound"_s;
    QTest::newRow("e-mail") << CalAlarmActionEmail << u"15 minutes before, send an email to a@example.org"_s;
    QTest::newRow("procedure") << CalAlarmActionProcedure << u"15 minutes before, open My%20plan.pdf"_s;
    QTest::newRow("unknown ends in comma and blank") << u"X-BLINK"_s << u"15 minutes before, "_s;
}

void CalAlarmVTHelperTest::actionIsDescribed()
{
    QFETCH(const QString, action);
    const CalAlarmPtr alarm = makeAlarm(-900);
    alarm->setSound(u"bell"_s);
    alarm->setEmailAddress(u"a@example.org"_s);
    alarm->setUrl(QUrl::fromLocalFile(u"/srv/My plan.pdf"_s));
    alarm->setAction(action);

    QTEST(VTDescriptionForDisplay(*alarm), "text");
}

void CalAlarmVTHelperTest::absentDetailsLeaveTheirPlaceEmpty_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("text");

    QTest::newRow("sound") << CalAlarmActionSound << u"15 minutes before, display a message and play  alert sound"_s;
    QTest::newRow("e-mail") << CalAlarmActionEmail << u"15 minutes before, send an email to "_s;
    QTest::newRow("procedure") << CalAlarmActionProcedure << u"15 minutes before, open "_s;
}

void CalAlarmVTHelperTest::absentDetailsLeaveTheirPlaceEmpty()
{
    QFETCH(const QString, action);
    const CalAlarmPtr alarm = makeAlarm(-900);
    alarm->setAction(action);

    QTEST(VTDescriptionForDisplay(*alarm), "text");
}

void CalAlarmVTHelperTest::absoluteTriggerIsDescribedWithItsZone_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QString>("text");

    QTest::newRow("east") << QByteArray("Europe/Berlin") << u"On 2026-11-20 10:45:00 +0100, display a message"_s;
    QTest::newRow("west") << QByteArray("America/New_York") << u"On 2026-11-20 04:45:00 -0500, display a message"_s;
    QTest::newRow("half hour") << QByteArray("Asia/Kolkata") << u"On 2026-11-20 15:15:00 +0530, display a message"_s;
}

void CalAlarmVTHelperTest::absoluteTriggerIsDescribedWithItsZone()
{
    QFETCH(const QByteArray, zone);
    const ScopedTimeZone local(zone);
    CalAlarm alarm;
    alarm.setAbsoluteTrigger(QDateTime(QDate(2026, 11, 20), QTime(9, 45), Qt::UTC));

    QTEST(VTDescriptionForDisplay(alarm), "text");
}

void CalAlarmVTHelperTest::absoluteTriggerWinsOverTheRelativeOne()
{
    const CalAlarmPtr alarm = makeAlarm(-900);
    alarm->setAbsoluteTrigger(localInstant("2026-11-20T10:45"));

    const QString text = VTDescriptionForDisplay(*alarm);

    QVERIFY(text.startsWith(u"On 2026-11-20 10:45:00 "_s));
    QVERIFY(!text.contains(u"15"_s));
}

void CalAlarmVTHelperTest::placeholdersInTextsOfACalendarStayAsTheyAre()
{
    CalAlarm alarm = alarmDoing(CalAlarmActionEmail);
    alarm.setEmailAddress(u"%1%2@example.org"_s);
    alarm.setAbsoluteTrigger(localInstant("2026-11-20T10:45"));

    QVERIFY(VTDescriptionForDisplay(alarm).endsWith(u", send an email to %1%2@example.org"_s));
}

VANTLE_TEST(CalAlarmVTHelperTest)
#include "CalAlarmVTHelperTest.moc"
