// SPDX-License-Identifier: MIT
#include "ContractTest.h"

using namespace Qt::StringLiterals;

// What is told of changes, by whom they were made, and how often.
class NotificationsContract final : public ContractTest
{
    Q_OBJECT

public:
    using ContractTest::ContractTest;

private Q_SLOTS:
    void ownSavesAreToldAsOwn_data();
    void ownSavesAreToldAsOwn();
    void aMoveNamesBothCalendars();
    void otherProgramsChangesAreToldAsTheirs_data();
    void otherProgramsChangesAreToldAsTheirs();
    void aNewCalendarIsToldAsTheirs();
    void aCalendarTakenAwayIsToldAsTheirs();
    void ownSavesAreNotToldAgainAsTheirs();
    void nothingIsToldFromWithinACall();
    void aRefusedSaveIsNoChangeOfOurs();
    void whatIsToldIsThereAlready();
    void manyOwnSavesAreToldTogether();
    void manyChangesOfOthersAreToldTogether();
    void itemsOfBothKindsAreToldApart();

private:
    using Names = QMap<CalNotificationName, QSet<QString>>;

    // Everything told until each of the expected names has come.
    Names toldBy(const std::function<void()> &change, const QList<CalNotificationName> &expected)
    {
        Names told;
        const auto connection = connect(&store(), &CalCalendarStore::notificationPosted, this,
            [&told](const CalNotification &each) { told[each.name].unite(each.calendarUids); });
        change();
        constexpr int longest = 3'000; // milliseconds
        [[maybe_unused]] const bool isTold = QTest::qWaitFor(
            [&] { return std::ranges::all_of(expected, [&](auto name) { return told.contains(name); }); }, longest);
        disconnect(connection);
        return told;
    }
};

void NotificationsContract::ownSavesAreToldAsOwn_data()
{
    QTest::addColumn<QByteArray>("what");
    QTest::addColumn<CalNotificationName>("expected");

    QTest::newRow("a changed event") << QByteArray("change event") << CalEventsChangedNotification;
    QTest::newRow("a changed to-do") << QByteArray("change task") << CalTasksChangedNotification;
    QTest::newRow("a new event") << QByteArray("new event") << CalEventsChangedNotification;
    QTest::newRow("a new to-do") << QByteArray("new task") << CalTasksChangedNotification;
    QTest::newRow("a removed event") << QByteArray("remove event") << CalEventsChangedNotification;
    QTest::newRow("a removed to-do") << QByteArray("remove task") << CalTasksChangedNotification;
    QTest::newRow("a removal taken back") << QByteArray("undo") << CalTasksChangedNotification;
}

void NotificationsContract::ownSavesAreToldAsOwn()
{
    QFETCH(const QByteArray, what);
    QFETCH(const CalNotificationName, expected);
    fixture().put(u"Home"_s, u"a"_s, eventText("a", "A", "20260311T090000"));
    fixture().put(u"Home"_s, u"b"_s, taskText("b", "B"));
    const CalEventPtr event
        = what == "new event" ? std::make_shared<CalEvent>() : fixture().eventOn(contractDay, u"A"_s);
    const CalTaskPtr task = what == "new task" ? std::make_shared<CalTask>() : fixture().task(u"B"_s);
    event->setCalendar(fixture().calendar(u"Home"_s));
    task->setCalendar(fixture().calendar(u"Home"_s));
    event->setStartDate(at("12:00:00"));
    event->setEndDate(at("13:00:00"));
    task->setTitle(u"Other"_s);

    const Names told = toldBy(
        [&] {
            if (what == "remove event")
                QVERIFY(remove(event));
            else if (what == "remove task" || what == "undo")
                QVERIFY(remove(task));
            else if (what.endsWith("event"))
                QVERIFY(save(event));
            else
                QVERIFY(save(task));
            if (what == "undo")
                QVERIFY(undo());
        },
        { expected });

    QCOMPARE(told.keys(), QList { expected });
    QCOMPARE(told.value(expected), QSet { u"Home"_s });
}

void NotificationsContract::aMoveNamesBothCalendars()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A"));
    const CalTaskPtr task = fixture().task(u"A"_s);
    task->setCalendar(fixture().calendar(u"Work"_s));

    const Names told = toldBy([&] { QVERIFY(save(task)); }, { CalTasksChangedNotification });

    QCOMPARE(told.value(CalTasksChangedNotification), (QSet { u"Home"_s, u"Work"_s }));
}

void NotificationsContract::otherProgramsChangesAreToldAsTheirs_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after"); // empty: taken away
    QTest::addColumn<CalNotificationName>("expected");

    const QByteArray event = eventText("a", "A", "20260311T090000");
    const QByteArray task = taskText("a", "A");
    QTest::newRow("a new event") << QByteArray() << event << CalEventsChangedExternallyNotification;
    QTest::newRow("a changed event") << event << eventText("a", "B", "20260311T090000")
                                     << CalEventsChangedExternallyNotification;
    QTest::newRow("an event taken away") << event << QByteArray() << CalEventsChangedExternallyNotification;
    QTest::newRow("a new to-do") << QByteArray() << task << CalTasksChangedExternallyNotification;
    QTest::newRow("a changed to-do") << task << taskText("a", "B") << CalTasksChangedExternallyNotification;
    QTest::newRow("a to-do taken away") << task << QByteArray() << CalTasksChangedExternallyNotification;
}

void NotificationsContract::otherProgramsChangesAreToldAsTheirs()
{
    QFETCH(const QByteArray, before);
    QFETCH(const QByteArray, after);
    QFETCH(const CalNotificationName, expected);
    if (!before.isEmpty())
        fixture().put(u"Work"_s, u"a"_s, before);
    if (before.isEmpty() || fixture().tasks().size() + fixture().eventsOn(contractDay).size() == 1)
        QCoreApplication::processEvents(); // whatever the first calls announce

    const Names told = toldBy(
        [&] {
            if (after.isEmpty())
                fixture().takeAway(u"Work"_s, u"a"_s);
            else
                fixture().put(u"Work"_s, u"a"_s, after);
        },
        { expected });

    QCOMPARE(told.keys(), QList { expected });
    QCOMPARE(told.value(expected), QSet { u"Work"_s });
}

void NotificationsContract::aNewCalendarIsToldAsTheirs()
{
    QVERIFY(!fixture().calendar(u"Club"_s));

    const Names told = toldBy([&] { fixture().addCalendar(u"Club"_s); }, { CalCalendarsChangedExternallyNotification });

    QVERIFY(told.value(CalCalendarsChangedExternallyNotification).contains(u"Club"_s));
    QVERIFY(!told.contains(CalCalendarsChangedNotification));
    QVERIFY(fixture().calendar(u"Club"_s));
}

void NotificationsContract::aCalendarTakenAwayIsToldAsTheirs()
{
    QVERIFY(fixture().calendar(u"Work"_s));

    const Names told
        = toldBy([&] { fixture().takeCalendarAway(u"Work"_s); }, { CalCalendarsChangedExternallyNotification });

    QVERIFY(told.value(CalCalendarsChangedExternallyNotification).contains(u"Work"_s));
    QVERIFY(!fixture().calendar(u"Work"_s));
}

void NotificationsContract::ownSavesAreNotToldAgainAsTheirs()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A"));
    const CalTaskPtr task = fixture().task(u"A"_s);
    task->setIsCompleted(true);

    // Another program's change, made after ours, is told after ours: by then ours has been told as often as it will.
    const Names told = toldBy(
        [&] {
            QVERIFY(save(task));
            fixture().put(u"Work"_s, u"b"_s, eventText("b", "B", "20260311T090000"));
        },
        { CalTasksChangedNotification, CalEventsChangedExternallyNotification });

    QVERIFY(!told.contains(CalTasksChangedExternallyNotification));
    QVERIFY(!told.contains(CalEventsChangedNotification));
}

void NotificationsContract::nothingIsToldFromWithinACall()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A"));
    const CalTaskPtr task = fixture().task(u"A"_s);
    QSignalSpy posted(&store(), &CalCalendarStore::notificationPosted);

    task->setIsCompleted(true);
    QVERIFY(save(task));
    QVERIFY(remove(task));
    QVERIFY(undo());

    QVERIFY(posted.isEmpty());
    QTRY_VERIFY(!posted.isEmpty());
}

void NotificationsContract::aRefusedSaveIsNoChangeOfOurs()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A"));
    const CalTaskPtr stale = fixture().task(u"A"_s);
    const CalTaskPtr task = fixture().task(u"A"_s);
    task->setTitle(u"B"_s);
    QVERIFY(
        toldBy([&] { QVERIFY(save(task)); }, { CalTasksChangedNotification }).contains(CalTasksChangedNotification));
    stale->setTitle(u"C"_s);

    const Names told = toldBy(
        [&] {
            QVERIFY(!save(stale));
            fixture().put(u"Work"_s, u"b"_s, eventText("b", "B", "20260311T090000"));
        },
        { CalEventsChangedExternallyNotification });

    QVERIFY(!told.contains(CalTasksChangedNotification));
}

void NotificationsContract::whatIsToldIsThereAlready()
{
    (void)fixture().tasks();
    QStringList found;
    connect(&store(), &CalCalendarStore::notificationPosted, this, [&] { found = titlesOf(fixture().tasks()); });

    putAndWait(u"Home"_s, u"a"_s, taskText("a", "A"));

    QCOMPARE(found, QStringList { u"A"_s });
}

void NotificationsContract::manyOwnSavesAreToldTogether()
{
    fixture().put(u"Home"_s, u"a"_s, taskText("a", "A"));
    const CalTaskPtr task = fixture().task(u"A"_s);
    QSignalSpy posted(&store(), &CalCalendarStore::notificationPosted);

    for (int number = 0; number < 20; ++number) {
        task->setTitle(QString::number(number));
        QVERIFY(save(task));
    }
    QTRY_VERIFY(!posted.isEmpty());

    QVERIFY2(posted.size() <= 2, qPrintable(QString::number(posted.size())));
}

void NotificationsContract::manyChangesOfOthersAreToldTogether()
{
    (void)fixture().tasks();
    QSignalSpy posted(&store(), &CalCalendarStore::notificationPosted);

    for (int number = 0; number < 100; ++number) {
        const QString uid = QString::number(number);
        fixture().put(u"Home"_s, uid, taskText(uid.toLatin1(), uid.toLatin1()));
    }
    QTRY_COMPARE(fixture().tasks().size(), 100);
    QTRY_VERIFY(!posted.isEmpty());

    QVERIFY2(posted.size() <= 20, qPrintable(QString::number(posted.size())));
}

void NotificationsContract::itemsOfBothKindsAreToldApart()
{
    (void)fixture().tasks();

    const Names told = toldBy(
        [&] {
            fixture().put(u"Home"_s, u"a"_s, taskText("a", "A"));
            fixture().put(u"Work"_s, u"b"_s, eventText("b", "B", "20260311T090000"));
        },
        { CalTasksChangedExternallyNotification, CalEventsChangedExternallyNotification });

    QVERIFY(told.value(CalTasksChangedExternallyNotification).contains(u"Home"_s));
    QVERIFY(told.value(CalEventsChangedExternallyNotification).contains(u"Work"_s));
    QVERIFY(!told.contains(CalCalendarsChangedExternallyNotification));
}

VANTLE_CONTRACT(NotificationsContract, "Notifications")
#include "NotificationsContract.moc"
