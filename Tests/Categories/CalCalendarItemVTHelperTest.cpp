// SPDX-License-Identifier: MIT
#include "RecordingCalendarApplication.h"
#include "TestRecords.h"
#include "TestRegistry.h"

#include <CalCalendarItem+VTHelper.h>

#include <QTest>

using namespace Qt::StringLiterals;

using ElementKind = CalendarApplication::ElementKind;

namespace
{

CalEventPtr makeMeeting()
{
    const CalEventPtr event
        = makeEvent(u"uid"_s, u"Meeting"_s, localInstant("2026-03-11T09:00"), localInstant("2026-03-11T10:00"));
    event->setCalendar(makeCalendar(u"Home"_s));
    return event;
}

CalTaskPtr makeErrand()
{
    const CalTaskPtr task = makeTask(u"uid"_s, u"Buy milk"_s);
    task->setCalendar(makeCalendar(u"Home"_s));
    return task;
}

} // namespace

class CalCalendarItemVTHelperTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eventIsShownInTheCalendarApplication();
    void taskIsShownInTheCalendarApplication();
    void occurrenceIsShownByItsPlainUid();
    void unknownCalendarDoesNothing();
    void unknownItemDoesNothing();
    void itemOfTheOtherKindDoesNothing();
    void itemOfAnotherCalendarDoesNothing();
    void itemWithoutCalendarDoesNothing();

    void sortKeysAreReadByName();
    void absentValuesSortAfterPresentOnes();
    void otherOperationsAreReadByName();
    void operationsOfTheOtherKindHaveNoValue();
    void ownValuesAreReadByName();
};

void CalCalendarItemVTHelperTest::eventIsShownInTheCalendarApplication()
{
    RecordingCalendarApplication application;
    application.addElement(u"Home"_s, ElementKind::Event, u"uid"_s);

    showInICal(*makeMeeting(), application);

    QCOMPARE(application.commands(), (QStringList { u"activate"_s, u"show event Home/uid"_s }));
}

void CalCalendarItemVTHelperTest::taskIsShownInTheCalendarApplication()
{
    RecordingCalendarApplication application;
    application.addElement(u"Home"_s, ElementKind::Todo, u"uid"_s);

    showInICal(*makeErrand(), application);

    QCOMPARE(application.commands(), (QStringList { u"activate"_s, u"show todo Home/uid"_s }));
}

void CalCalendarItemVTHelperTest::occurrenceIsShownByItsPlainUid()
{
    RecordingCalendarApplication application;
    application.addElement(u"Home"_s, ElementKind::Event, u"uid"_s);
    const CalEventPtr event = makeMeeting();
    event->setUid(u"uid and an instant"_s);
    CalItemOrigin origin = event->origin();
    origin.recurrenceId = u"20261120T090000"_s;
    event->setOrigin(origin);

    showInICal(*event, application);

    QCOMPARE(application.commands(), (QStringList { u"activate"_s, u"show event Home/uid"_s }));
    QCOMPARE(application.shown().recurrenceId, u"20261120T090000"_s);
    QCOMPARE(application.shown().day, event->startDate().toLocalTime().date());
}

void CalCalendarItemVTHelperTest::unknownCalendarDoesNothing()
{
    RecordingCalendarApplication application;
    application.addElement(u"Work"_s, ElementKind::Event, u"uid"_s);

    showInICal(*makeMeeting(), application);

    QVERIFY(application.commands().isEmpty());
}

void CalCalendarItemVTHelperTest::unknownItemDoesNothing()
{
    RecordingCalendarApplication application;
    application.addElement(u"Home"_s, ElementKind::Event, u"other"_s);

    showInICal(*makeMeeting(), application);

    QVERIFY(application.commands().isEmpty());
}

void CalCalendarItemVTHelperTest::itemOfTheOtherKindDoesNothing()
{
    RecordingCalendarApplication application;
    application.addElement(u"Home"_s, ElementKind::Todo, u"uid"_s);

    showInICal(*makeMeeting(), application);

    QVERIFY(application.commands().isEmpty());
}

void CalCalendarItemVTHelperTest::itemOfAnotherCalendarDoesNothing()
{
    RecordingCalendarApplication application;
    application.addCalendar(u"Home"_s);
    application.addElement(u"Work"_s, ElementKind::Event, u"uid"_s);

    showInICal(*makeMeeting(), application);

    QVERIFY(application.commands().isEmpty());
}

void CalCalendarItemVTHelperTest::itemWithoutCalendarDoesNothing()
{
    RecordingCalendarApplication application;

    showInICal(*makeTask(u"uid"_s, u"Buy milk"_s), application);

    QVERIFY(application.commands().isEmpty());
}

void CalCalendarItemVTHelperTest::sortKeysAreReadByName()
{
    const CalTaskPtr task = makeErrand();
    QCOMPARE(valueForKey(*task, u"VTPriorityIsNone"_s), QVariant(true));
    QCOMPARE(valueForKey(*task, u"VTDueDateIsNotSet"_s), QVariant(true));

    task->setPriority(1);
    task->setDueDate(localInstant("2026-03-11T09:00"));

    QCOMPARE(valueForKey(*task, u"VTPriorityIsNone"_s), QVariant(false));
    QCOMPARE(valueForKey(*task, u"VTDueDateIsNotSet"_s), QVariant(false));
}

void CalCalendarItemVTHelperTest::absentValuesSortAfterPresentOnes()
{
    const QVariant ofDue
        = valueForKey(*makeTaskDue(u"a"_s, {}, localInstant("2026-03-11T09:00")), u"VTDueDateIsNotSet"_s);
    const QVariant ofOpen = valueForKey(*makeTask(u"b"_s, {}), u"VTDueDateIsNotSet"_s);

    QVERIFY(QVariant::compare(ofDue, ofOpen) == QPartialOrdering::Less);
}

void CalCalendarItemVTHelperTest::otherOperationsAreReadByName()
{
    const CalEventPtr event = makeMeeting();
    event->setLocation(u"Room 1"_s);

    QCOMPARE(valueForKey(*event, u"VTLocationIsAvalible"_s), QVariant(true));
    QCOMPARE(valueForKey(*makeErrand(), u"VTDueDateIsSet"_s), QVariant(false));
    QCOMPARE(valueForKey(*makeErrand(), u"VTIsUrlAvailable"_s), QVariant(false));
}

void CalCalendarItemVTHelperTest::operationsOfTheOtherKindHaveNoValue()
{
    QVERIFY(!valueForKey(*makeMeeting(), u"VTPriorityIsNone"_s).isValid());
    QVERIFY(!valueForKey(*makeErrand(), u"VTLocationIsAvalible"_s).isValid());
}

void CalCalendarItemVTHelperTest::ownValuesAreReadByName()
{
    const CalTaskPtr task = makeErrand();
    task->setPriority(5);

    QCOMPARE(valueForKey(*task, u"priority"_s), QVariant(5));
    QCOMPARE(valueForKey(*task, u"uid"_s), QVariant(u"uid"_s));
    QVERIFY(!valueForKey(*task, u"vtpriorityisnone"_s).isValid());
}

VANTLE_TEST(CalCalendarItemVTHelperTest)
#include "CalCalendarItemVTHelperTest.moc"
