// SPDX-License-Identifier: MIT
#include "TestRecords.h"
#include "TestRegistry.h"

#include <CalEvent+VTHelper.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

CalEventPtr makeMeeting(const QString &uid, const QString &title)
{
    return makeEvent(uid, title, localInstant("2026-03-11T09:00"), localInstant("2026-03-11T10:00"));
}

class KeyRecorder final : public KeyValueObserver
{
public:
    explicit KeyRecorder(KeyValueObject &object)
    {
        for (const QString &key : { u"calendar"_s, u"notes"_s, u"title"_s, u"url"_s, u"alarms"_s, u"startDate"_s,
                 u"endDate"_s, u"isAllDay"_s, u"location"_s, u"recurrenceRule"_s })
            object.addObserver_forKeyPath_options_context(this, key);
    }
    void observeValueForKeyPath_ofObject_change_context(const QString &keyPath, KeyValueObject * /*object*/,
        const KeyValueChange & /*change*/, void * /*context*/) override
    {
        keys.append(keyPath);
    }

    QStringList keys;
};

} // namespace

class CalEventVTHelperTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void copyHasEqualButDistinctAlarms();
    void alarmsOfACopyHaveAllValues();
    void removingAnAlarmFromTheCopyLeavesTheOriginal();
    void copyHoldsEveryProperty();
    void locationIsAvailable_data();
    void locationIsAvailable();
    void updateTakesOverTheListedProperties();
    void updateTakesOverNothingElse();
    void updateTakesOverTheAlarmRecordsThemselves();
    void updateHappensInOrder();
    void updateFromItselfChangesNothing();
};

void CalEventVTHelperTest::copyHasEqualButDistinctAlarms()
{
    const CalEventPtr event = makeMeeting(u"uid"_s, u"Meeting"_s);
    event->setAlarms({ makeAlarm(-60), makeAlarm(-600), makeAlarm(-3600) });

    const CalEventPtr copy = VTDeepCopy(*event);

    QCOMPARE(copy->alarms().size(), 3);
    for (qsizetype index = 0; index < 3; ++index) {
        QVERIFY(copy->alarms().at(index) != event->alarms().at(index));
        QCOMPARE(copy->alarms().at(index)->relativeTrigger(), event->alarms().at(index)->relativeTrigger());
    }
}

void CalEventVTHelperTest::alarmsOfACopyHaveAllValues()
{
    const CalAlarmPtr mail = makeFullAlarm();
    const auto record = makeMeeting(u"uid"_s, u"Meeting"_s);
    record->setAlarms({ mail });

    const CalAlarmPtr copied = VTDeepCopy(*record)->alarms().first();

    QVERIFY(copied != mail);
    QCOMPARE(copied->action(), mail->action());
    QCOMPARE(copied->sound(), mail->sound());
    QCOMPARE(copied->emailAddress(), mail->emailAddress());
    QCOMPARE(copied->url(), mail->url());
    QCOMPARE(copied->absoluteTrigger(), mail->absoluteTrigger());
    QCOMPARE(copied->isRelatedToEnd(), mail->isRelatedToEnd());
    QCOMPARE(copied->storedIndex(), mail->storedIndex());
}

void CalEventVTHelperTest::removingAnAlarmFromTheCopyLeavesTheOriginal()
{
    const CalEventPtr event = makeMeeting(u"uid"_s, u"Meeting"_s);
    event->setAlarms({ makeAlarm(-60), makeAlarm(-600), makeAlarm(-3600) });
    const CalEventPtr copy = VTDeepCopy(*event);

    copy->removeAlarm(copy->alarms().last());

    QCOMPARE(copy->alarms().size(), 2);
    QCOMPARE(event->alarms().size(), 3);
}

void CalEventVTHelperTest::copyHoldsEveryProperty()
{
    const CalEventPtr event = makeMeeting(u"uid"_s, u"Meeting"_s);
    event->setLocation(u"Room 1"_s);
    event->setRecurrenceRule(CalRecurrenceRule { "FREQ=WEEKLY" });
    event->setAttendees(QList<CalAttendee> { { u"Ann"_s, QUrl(u"mailto:ann@example.org"_s), {} } });
    event->setIsCancelled(true);

    const CalEventPtr copy = VTDeepCopy(*event);

    QCOMPARE(copy->uid(), u"uid"_s);
    QCOMPARE(copy->title(), u"Meeting"_s);
    QCOMPARE(copy->startDate(), event->startDate());
    QCOMPARE(copy->endDate(), event->endDate());
    QCOMPARE(copy->location(), u"Room 1"_s);
    QCOMPARE(copy->recurrenceRule()->text, QByteArray("FREQ=WEEKLY"));
    QCOMPARE(copy->attendees()->size(), 1);
    QVERIFY(copy->isCancelled());
    QCOMPARE(copy->asRead(), event->asRead());
}

void CalEventVTHelperTest::locationIsAvailable_data()
{
    QTest::addColumn<std::optional<QString>>("location");
    QTest::addColumn<bool>("isAvailable");

    QTest::newRow("absent") << std::optional<QString>() << false;
    QTest::newRow("empty") << std::optional(u""_s) << false;
    QTest::newRow("one blank") << std::optional(u" "_s) << true;
    QTest::newRow("text") << std::optional(u"Room 1"_s) << true;
}

void CalEventVTHelperTest::locationIsAvailable()
{
    QFETCH(const std::optional<QString>, location);
    QFETCH(const bool, isAvailable);
    const CalEventPtr event = makeMeeting(u"uid"_s, u"Meeting"_s);

    event->setLocation(location);

    QCOMPARE(VTLocationIsAvalible(*event), isAvailable);
}

void CalEventVTHelperTest::updateTakesOverTheListedProperties()
{
    const CalEventPtr source = makeAllDayEvent(u"source"_s, u"Fair"_s, QDate(2026, 3, 12), QDate(2026, 3, 13));
    source->setCalendar(makeCalendar(u"Work"_s));
    source->setNotes(u"Bring badges"_s);
    source->setUrl(QUrl(u"https://example.org"_s));
    source->setLocation(u"Hall 4"_s);
    source->setRecurrenceRule(CalRecurrenceRule { "FREQ=YEARLY" });
    const CalEventPtr event = makeMeeting(u"uid"_s, u"Meeting"_s);

    VTUpdatePropertiesFromEvent(*event, *source);

    QCOMPARE(event->calendar()->uid(), u"Work"_s);
    QCOMPARE(event->notes(), u"Bring badges"_s);
    QCOMPARE(event->title(), u"Fair"_s);
    QCOMPARE(event->url(), QUrl(u"https://example.org"_s));
    QCOMPARE(event->startDate(), localInstant("2026-03-12T00:00:00"));
    QCOMPARE(event->endDate(), localInstant("2026-03-13T23:59:59"));
    QVERIFY(event->isAllDay());
    QCOMPARE(event->location(), u"Hall 4"_s);
    QCOMPARE(event->recurrenceRule()->text, QByteArray("FREQ=YEARLY"));
}

void CalEventVTHelperTest::updateTakesOverNothingElse()
{
    const CalEventPtr source = makeMeeting(u"source"_s, u"Fair"_s);
    source->setAttendees(QList<CalAttendee> { { u"Ann"_s, QUrl(u"mailto:ann@example.org"_s), {} } });
    source->setIsCancelled(true);
    const CalEventPtr event = makeMeeting(u"uid"_s, u"Meeting"_s);

    VTUpdatePropertiesFromEvent(*event, *source);

    QVERIFY(!event->attendees());
    QVERIFY(!event->isCancelled());
    QCOMPARE(event->uid(), u"uid"_s);
    QCOMPARE(event->origin().plainUid, u"uid"_s);
}

void CalEventVTHelperTest::updateTakesOverTheAlarmRecordsThemselves()
{
    const CalEventPtr source = makeMeeting(u"source"_s, u"Fair"_s);
    source->setAlarms({ makeAlarm(-60), makeAlarm(-600) });
    const CalEventPtr event = makeMeeting(u"uid"_s, u"Meeting"_s);
    event->setAlarms({ makeAlarm(-1) });

    VTUpdatePropertiesFromEvent(*event, *source);

    QCOMPARE(event->alarms(), source->alarms());
}

void CalEventVTHelperTest::updateHappensInOrder()
{
    const CalEventPtr event = makeMeeting(u"uid"_s, u"Meeting"_s);
    const KeyRecorder recorder(*event);

    VTUpdatePropertiesFromEvent(*event, *makeMeeting(u"source"_s, u"Fair"_s));

    // The alarms change twice: all go, then the source's come.
    QCOMPARE(recorder.keys,
        (QStringList { u"calendar"_s, u"notes"_s, u"title"_s, u"url"_s, u"alarms"_s, u"alarms"_s, u"startDate"_s,
            u"endDate"_s, u"isAllDay"_s, u"location"_s, u"recurrenceRule"_s }));
}

void CalEventVTHelperTest::updateFromItselfChangesNothing()
{
    const CalEventPtr event = makeMeeting(u"uid"_s, u"Meeting"_s);
    event->setAlarms({ makeAlarm(-60) });

    VTUpdatePropertiesFromEvent(*event, *event);

    QCOMPARE(event->title(), u"Meeting"_s);
    QCOMPARE(event->alarms().size(), 1);
}

VANTLE_TEST(CalEventVTHelperTest)
#include "CalEventVTHelperTest.moc"
