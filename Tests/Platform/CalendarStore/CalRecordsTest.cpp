// SPDX-License-Identifier: MIT
#include "TestRecords.h"
#include "TestRegistry.h"

#include <KeyValueBinding.h>

#include <QTest>

using namespace Qt::StringLiterals;

class CalRecordsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rememberedEventHasAlarmsOfItsOwn();
    void rememberedTaskHasAlarmsOfItsOwn();
    void rememberedRecordKeepsItsValues();
    void rememberedRecordHoldsNoEarlierOne();
    void newRecordRemembersNothing();
    void recordsWithTheSameUidAreEqual();
    void newRecordsAreEqualToThemselvesOnly();
    void calendarsWithTheSameUidAreEqual();
    void removedAlarmIsTheVeryRecord();
    void alarmsAreAddedInOrder();
    void soundOnAMessageAlarmMakesItASoundAlarm();
    void soundLeavesOtherKindsOfAlarms();
    void triggerSetLastCounts();
    void valuesAreReadByName();
    void unknownNameHasNoValue();
    void changesAreAnnounced();
};

namespace
{

template <typename Record> std::shared_ptr<Record> withAlarms(std::shared_ptr<Record> record)
{
    record->setAlarms({ makeAlarm(-60), makeAlarm(-600) });
    return record;
}

template <typename Record> void checkRememberedAlarms(const std::shared_ptr<Record> &record)
{
    const CalAlarmList before = record->alarms();

    record->markAsRead();
    record->alarms().first()->setRelativeTrigger(-1);

    const CalAlarmList remembered = record->asRead()->alarms();
    QCOMPARE(remembered.size(), 2);
    QCOMPARE(remembered.at(0)->relativeTrigger(), -60.0);
    QCOMPARE(remembered.at(1)->relativeTrigger(), -600.0);
    QVERIFY(remembered.at(0) != before.at(0));
    QVERIFY(record->alarms() == before);
}

} // namespace

void CalRecordsTest::rememberedEventHasAlarmsOfItsOwn()
{
    checkRememberedAlarms(withAlarms(std::make_shared<CalEvent>()));
}

void CalRecordsTest::rememberedTaskHasAlarmsOfItsOwn()
{
    checkRememberedAlarms(withAlarms(std::make_shared<CalTask>()));
}

void CalRecordsTest::rememberedRecordKeepsItsValues()
{
    const CalTaskPtr task = makeTask(u"uid"_s, u"Buy milk"_s);

    task->setTitle(u"Buy bread"_s);

    QCOMPARE(task->asRead()->title(), u"Buy milk"_s);
}

void CalRecordsTest::rememberedRecordHoldsNoEarlierOne()
{
    const CalTaskPtr task = makeTask(u"uid"_s, u"Buy milk"_s);

    task->markAsRead();

    QVERIFY(!task->asRead()->asRead());
}

void CalRecordsTest::newRecordRemembersNothing()
{
    QVERIFY(!CalTask().asRead());
    QVERIFY(!CalEvent().asRead());
    QVERIFY(!CalTask().origin().isStored());
}

void CalRecordsTest::recordsWithTheSameUidAreEqual()
{
    const CalTaskPtr task = makeTask(u"uid"_s, u"Buy milk"_s);

    QVERIFY(task->isEqual(*makeTask(u"uid"_s, u"Buy bread"_s)));
    QVERIFY(!task->isEqual(*makeTask(u"other"_s, u"Buy milk"_s)));
}

void CalRecordsTest::newRecordsAreEqualToThemselvesOnly()
{
    const CalTask task;

    QVERIFY(task.isEqual(task));
    QVERIFY(!task.isEqual(CalTask()));
}

void CalRecordsTest::calendarsWithTheSameUidAreEqual()
{
    QVERIFY(makeCalendar(u"Home"_s, Qt::red)->isEqual(*makeCalendar(u"Home"_s, Qt::blue)));
    QVERIFY(!makeCalendar(u"Home"_s)->isEqual(*makeCalendar(u"Work"_s)));
}

void CalRecordsTest::removedAlarmIsTheVeryRecord()
{
    CalTask task;
    const CalAlarmPtr first = makeAlarm(-60);
    const CalAlarmPtr equal = makeAlarm(-60);
    task.setAlarms({ first, equal });

    task.removeAlarm(equal);

    QCOMPARE(task.alarms(), CalAlarmList { first });
}

void CalRecordsTest::alarmsAreAddedInOrder()
{
    CalTask task;
    const CalAlarmPtr first = makeAlarm(-60);
    const CalAlarmPtr second = makeAlarm(-120);

    task.addAlarm(first);
    task.addAlarms({ second, first });

    QCOMPARE(task.alarms(), (CalAlarmList { first, second, first }));
}

void CalRecordsTest::soundOnAMessageAlarmMakesItASoundAlarm()
{
    CalAlarm alarm;

    alarm.setSound(u"bell"_s);

    QCOMPARE(alarm.action(), CalAlarmActionSound);
    QCOMPARE(alarm.sound().value_or(QString()), u"bell"_s);
}

void CalRecordsTest::soundLeavesOtherKindsOfAlarms()
{
    CalAlarm email;
    email.setAction(CalAlarmActionEmail);
    CalAlarm silent;

    email.setSound(u"bell"_s);
    silent.setSound(QString());
    silent.setSound(std::nullopt);

    QCOMPARE(email.action(), CalAlarmActionEmail);
    QCOMPARE(silent.action(), CalAlarmActionDisplay);
}

void CalRecordsTest::triggerSetLastCounts()
{
    CalAlarm alarm;
    alarm.setRelativeTrigger(-600);
    alarm.setAbsoluteTrigger(localInstant("2026-11-20T10:45"));
    QVERIFY(alarm.absoluteTrigger().has_value());

    alarm.setRelativeTrigger(-900);

    QVERIFY(!alarm.absoluteTrigger().has_value());
    QCOMPARE(alarm.relativeTrigger(), -900.0);
}

void CalRecordsTest::valuesAreReadByName()
{
    const CalTaskPtr task = makeTaskDue(u"uid"_s, u"Buy milk"_s, localInstant("2026-03-11T09:00"));
    task->setPriority(5);

    QCOMPARE(task->valueForKey(u"uid"_s).toString(), u"uid"_s);
    QCOMPARE(task->valueForKey(u"priority"_s).toInt(), 5);
    QCOMPARE(task->valueForKey(u"title"_s).value<std::optional<QString>>(), u"Buy milk"_s);
    QCOMPARE(task->valueForKey(u"dueDate"_s).value<std::optional<QDateTime>>(), localInstant("2026-03-11T09:00"));
}

void CalRecordsTest::unknownNameHasNoValue()
{
    QVERIFY(!makeTask(u"uid"_s, u"Buy milk"_s)->valueForKey(u"colour"_s).isValid());
    QVERIFY(!makeCalendar(u"Home"_s)->valueForKey(u"colour"_s).isValid());
}

void CalRecordsTest::changesAreAnnounced()
{
    const CalTaskPtr task = makeTask(u"uid"_s, u"Buy milk"_s);
    QList<int> priorities;
    const KeyValueBinding binding(
        *task, u"priority"_s, [&](const QVariant &value) { priorities.append(value.toInt()); });

    task->setPriority(9);

    QCOMPARE(priorities, (QList<int> { 0, 9 }));
}

VANTLE_TEST(CalRecordsTest)
#include "CalRecordsTest.moc"
