// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "TestRegistry.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

const QByteArray message = "BEGIN:VALARM\r\nACTION:DISPLAY\r\nDESCRIPTION:Go\r\nTRIGGER;X-A=b:-PT15M\r\n"
                           "X-LOUD:1\r\nREPEAT:2\r\nDURATION:PT5M\r\nEND:VALARM\r\n";
const QByteArray unknown = "BEGIN:VALARM\r\nACTION:X-SHOUT\r\nTRIGGER:-PT1M\r\nX-OUT:loud\r\nEND:VALARM\r\n";
const QByteArray heard = "BEGIN:VALARM\r\nACTION:AUDIO\r\nATTACH;FMTTYPE=audio/basic:bell\r\nTRIGGER:PT0S\r\n"
                         "END:VALARM\r\n";

// An event with these alarms, and its record.
struct AlarmedEvent {
    explicit AlarmedEvent(const QByteArray &alarms)
        : before(calendarText(eventText("e", "Lunch; late", "20260311T080000Z", "DURATION:PT1H\r\n" + alarms)))
    {
        folder.write(u"c/e.ics"_s, before);
        store = folder.openWithoutWatching();
        event = eventsOn(*store, QDate(2026, 3, 11)).constFirst();
    }

    bool save() const { return store->saveEvent(*event, CalSpanThisEvent).isOk(); }
    QByteArray saved() const { return folder.read(u"c/e.ics"_s); }
    CalAlarmList alarmsAgain() const
    {
        return eventsOn(*folder.openWithoutWatching(), QDate(2026, 3, 11)).constFirst()->alarms();
    }

    CalendarFolder folder;
    QByteArray before;
    std::unique_ptr<FolderCalendarStore> store;
    CalEventPtr event;
};

CalAlarmPtr newAlarm(double trigger)
{
    auto alarm = std::make_shared<CalAlarm>();
    alarm->setRelativeTrigger(trigger);
    return alarm;
}

} // namespace

// What a save does to the alarms of an item.
class AlarmSavingTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewAlarmIsWritten_data();
    void aNewAlarmIsWritten();
    void aChangedTriggerLeavesTheRestOfTheAlarm();
    void theTriggerThatWasSetLastCounts();
    void aSoundMakesAMessageHeard();
    void anotherActionBringsWhatItNeeds();
    void aRemovedAlarmGoesAlone();
    void oneThatWasMovedToTheEndStaysInItsPlace();
    void aSecondSaveAddsNothing();
    void unchangedAlarmsAreNotTouched();
    void alarmsOfToDosAreWrittenToo();
    void aLineEndInAnAddressBeginsNoLine();
    void anAddressThatHoldsNothingIsNotWritten();
};

void AlarmSavingTest::aNewAlarmIsWritten_data()
{
    QTest::addColumn<CalAlarmPtr>("alarm");
    QTest::addColumn<QByteArray>("written");

    const CalAlarmPtr sound = newAlarm(0);
    sound->setSound(u"bell"_s);
    const CalAlarmPtr mail = newAlarm(3600);
    mail->setAction(CalAlarmActionEmail);
    mail->setEmailAddress(u"ann@example.org"_s);
    const CalAlarmPtr file = newAlarm(-86400);
    file->setAction(CalAlarmActionProcedure);
    file->setUrl(QUrl(u"file:///tmp/a%20b"_s));
    const CalAlarmPtr absolute = newAlarm(-60);
    absolute->setAbsoluteTrigger(QDateTime(QDate(2026, 3, 11), QTime(8, 30)));
    const CalAlarmPtr atEnd = newAlarm(-90);
    atEnd->setRelatedToEnd(true);

    QTest::newRow("message") << newAlarm(-600)
                             << QByteArray("ACTION:DISPLAY\r\nTRIGGER:-PT10M\r\n"
                                           "DESCRIPTION:Lunch\\; late\r\n");
    QTest::newRow("sound") << sound << QByteArray("ACTION:AUDIO\r\nTRIGGER:PT0S\r\nATTACH:bell\r\n");
    QTest::newRow("e-mail") << mail
                            << QByteArray("ACTION:EMAIL\r\nTRIGGER:PT1H\r\nATTENDEE:mailto:ann@example.org\r\n"
                                          "SUMMARY:Lunch\\; late\r\nDESCRIPTION:Lunch\\; late\r\n");
    QTest::newRow("file") << file << QByteArray("ACTION:PROCEDURE\r\nTRIGGER:-P1D\r\nATTACH:file:///tmp/a%20b\r\n");
    QTest::newRow("at a time") << absolute
                               << QByteArray("ACTION:DISPLAY\r\nTRIGGER;VALUE=DATE-TIME:20260311T073000Z\r\n"
                                             "DESCRIPTION:Lunch\\; late\r\n");
    QTest::newRow("before the end") << atEnd
                                    << QByteArray("ACTION:DISPLAY\r\nTRIGGER;RELATED=END:-PT1M30S\r\n"
                                                  "DESCRIPTION:Lunch\\; late\r\n");
}

void AlarmSavingTest::aNewAlarmIsWritten()
{
    QFETCH(const CalAlarmPtr, alarm);
    QFETCH(const QByteArray, written);
    const AlarmedEvent item(message);
    item.event->addAlarm(alarm);

    QVERIFY(item.save());

    const QByteArray expected = message + "BEGIN:VALARM\r\n" + written + "END:VALARM\r\nEND:VEVENT\r\n";
    QVERIFY2(item.saved().contains(expected), item.saved().constData());
    const CalAlarmPtr again = item.alarmsAgain().constLast();
    QCOMPARE(again->action(), alarm->action());
    QCOMPARE(again->sound(), alarm->sound());
    QCOMPARE(again->emailAddress(), alarm->emailAddress());
    QCOMPARE(again->url(), alarm->url());
    QCOMPARE(again->absoluteTrigger(), alarm->absoluteTrigger());
    QCOMPARE(again->isRelatedToEnd(), alarm->isRelatedToEnd());
}

void AlarmSavingTest::aChangedTriggerLeavesTheRestOfTheAlarm()
{
    const AlarmedEvent item(unknown + message);
    item.event->alarms().at(1)->setRelativeTrigger(-3600);

    QVERIFY(item.save());

    QByteArray changed = message;
    changed.replace("-PT15M", "-PT1H");
    QVERIFY2(item.saved().contains(QByteArray(unknown + changed)), item.saved().constData());
}

void AlarmSavingTest::theTriggerThatWasSetLastCounts()
{
    const AlarmedEvent item(message + heard);
    item.event->alarms().at(0)->setRelativeTrigger(-60);
    item.event->alarms().at(0)->setAbsoluteTrigger(QDateTime(QDate(2026, 3, 10), QTime(12, 0)));
    item.event->alarms().at(1)->setAbsoluteTrigger(QDateTime(QDate(2026, 3, 10), QTime(12, 0)));
    item.event->alarms().at(1)->setRelativeTrigger(-120);

    QVERIFY(item.save());

    QVERIFY(item.saved().contains("TRIGGER;VALUE=DATE-TIME;X-A=b:20260310T110000Z\r\n"));
    QVERIFY(item.saved().contains("TRIGGER:-PT2M\r\n"));
    QVERIFY(!item.alarmsAgain().at(1)->absoluteTrigger());
}

void AlarmSavingTest::aSoundMakesAMessageHeard()
{
    const AlarmedEvent item(message);
    item.event->alarms().constFirst()->setSound(u"bell"_s);

    QVERIFY(item.save());

    QVERIFY(item.saved().contains("ACTION:AUDIO\r\n"));
    QVERIFY(item.saved().contains("ATTACH:bell\r\n"));
    QVERIFY(item.saved().contains("X-LOUD:1\r\n"));
    QCOMPARE(item.event->alarms().constFirst()->action(), CalAlarmActionSound);
}

void AlarmSavingTest::anotherActionBringsWhatItNeeds()
{
    const AlarmedEvent item(heard);
    const CalAlarmPtr alarm = item.event->alarms().constFirst();
    alarm->setAction(CalAlarmActionEmail);
    alarm->setEmailAddress(u"ann@example.org"_s);

    QVERIFY(item.save());

    const QByteArray saved = item.saved();
    QVERIFY(!saved.contains("ATTACH"));
    for (const char *const line : { "ACTION:EMAIL\r\n", "ATTENDEE:mailto:ann@example.org\r\n", "TRIGGER:PT0S\r\n" })
        QVERIFY2(saved.contains(line), line);
    QCOMPARE(saved.count("SUMMARY:Lunch\\; late\r\n"), 1);
    QCOMPARE(saved.count("DESCRIPTION:Lunch\\; late\r\n"), 1);
}

void AlarmSavingTest::aRemovedAlarmGoesAlone()
{
    const AlarmedEvent item(message + unknown + heard);
    item.event->removeAlarm(item.event->alarms().at(1));

    QVERIFY(item.save());

    QVERIFY(item.saved().contains(QByteArray(message + heard + "END:VEVENT\r\n")));
    QVERIFY(!item.saved().contains("SHOUT"));
}

void AlarmSavingTest::oneThatWasMovedToTheEndStaysInItsPlace()
{
    const AlarmedEvent item(message + unknown);
    const CalAlarmPtr first = item.event->alarms().constFirst();
    item.event->removeAlarm(first);
    item.event->addAlarm(first);
    item.event->setTitle(u"Other"_s);

    QVERIFY(item.save());

    QVERIFY(item.saved().contains(QByteArray(message + unknown + "END:VEVENT\r\n")));
}

void AlarmSavingTest::aSecondSaveAddsNothing()
{
    const AlarmedEvent item(message + unknown);
    item.event->removeAlarm(item.event->alarms().constFirst());
    item.event->addAlarm(newAlarm(-60));
    item.event->setTitle(u"DUMBY Lunch"_s);
    QVERIFY(item.save());

    item.event->setTitle(u"Lunch"_s);
    QVERIFY(item.store->saveEvent(*item.event, CalSpanAllEvents).isOk());
    item.event->alarms().constLast()->setRelativeTrigger(-120);
    QVERIFY(item.save());

    QCOMPARE(item.saved().count("BEGIN:VALARM"), 2);
    QVERIFY(item.saved().contains(QByteArray(unknown)));
    QVERIFY(item.saved().contains("TRIGGER:-PT2M\r\n"));
}

void AlarmSavingTest::unchangedAlarmsAreNotTouched()
{
    const AlarmedEvent item(message + unknown + heard);
    item.event->setTitle(u"Other"_s);

    QVERIFY(item.save());

    QVERIFY(item.saved().contains(QByteArray(message + unknown + heard + "END:VEVENT\r\n")));
}

void AlarmSavingTest::alarmsOfToDosAreWrittenToo()
{
    const CalendarFolder folder;
    folder.write(u"c/t.ics"_s, calendarText(taskText("t", "T", message)));
    const auto store = folder.openWithoutWatching();
    const CalTaskPtr task = allTasks(*store).constFirst();
    task->removeAlarm(task->alarms().constFirst());
    task->addAlarm(newAlarm(-60));

    QVERIFY(store->saveTask(*task).isOk());

    const QByteArray saved = folder.read(u"c/t.ics"_s);
    QCOMPARE(saved.count("BEGIN:VALARM"), 1);
    QVERIFY(saved.contains("TRIGGER:-PT1M\r\n"));
    QVERIFY(!saved.contains("X-LOUD"));
}

void AlarmSavingTest::aLineEndInAnAddressBeginsNoLine()
{
    const AlarmedEvent item({});
    const CalAlarmPtr alarm = newAlarm(-60);
    alarm->setAction(CalAlarmActionEmail);
    alarm->setEmailAddress(u"a@example.org\r\nEND:VALARM\r\nX-EVIL:1"_s);
    item.event->addAlarm(alarm);

    QVERIFY(item.save());

    QVERIFY(!item.saved().contains("\nX-EVIL"));
    QCOMPARE(item.saved().count("\nEND:VALARM"), 1);
}

void AlarmSavingTest::anAddressThatHoldsNothingIsNotWritten()
{
    const AlarmedEvent item(message);
    const CalAlarmPtr mail = newAlarm(3600);
    mail->setAction(CalAlarmActionEmail);
    mail->setEmailAddress(u" "_s);
    item.event->addAlarm(mail);

    QVERIFY(item.save());

    QVERIFY(item.saved().contains("ACTION:EMAIL"));
    QVERIFY2(!item.saved().contains("mailto:"), item.saved().constData());
}

VANTLE_TEST(AlarmSavingTest)
#include "AlarmSavingTest.moc"
