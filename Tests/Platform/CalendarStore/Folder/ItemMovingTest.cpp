// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "InterferingCalls.h"
#include "TestRegistry.h"

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

const QByteArray oddTask = "begin:vcalendar\nX-ODD;A=\"b\":\\q\\\n" + taskText("a", "A") + "END:VCALENDAR";

CalCalendarPtr calendarNamed(const FolderCalendarStore &store, const QString &uid)
{
    for (const CalCalendarPtr &calendar : store.calendars()) {
        if (calendar->uid() == uid)
            return calendar;
    }
    return nullptr;
}

QStringList namesIn(const CalendarFolder &folder, const QString &calendar)
{
    return QDir(folder.path(calendar)).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
}

// "Home" with the to-do A in a.ics, and an empty "Work".
struct TwoCalendars {
    explicit TwoCalendars(const QByteArray &text = oddTask)
    {
        folder.write(u"Home/a.ics"_s, text);
        QDir().mkpath(folder.path(u"Work"_s));
        FolderCalendarStore::Options options;
        options.root = folder.root();
        options.watchesForChanges = false;
        store = std::make_unique<FolderCalendarStore>(options, folder.clock(), calls);
    }

    Result<void, StoreError> moveToWork(const CalTaskPtr &task) const
    {
        task->setCalendar(calendarNamed(*store, u"Work"_s));
        return store->saveTask(*task);
    }

    CalendarFolder folder;
    InterferingCalls calls;
    std::unique_ptr<FolderCalendarStore> store;
};

} // namespace

// Items that change their calendar.
class ItemMovingTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aMovedItemKeepsItsBytesAndItsName();
    void aMovedItemCanBeChangedAgain();
    void changesGoWithTheMove();
    void aNameThatIsTakenGetsAnother();
    void oneOfSeveralItemsLeavesTheOthers();
    void aWholeSeriesMovesByItself();
    void aCalendarThatHoldsTheIdentifierRefuses();
    void aCalendarThatCannotBeChangedRefuses();
    void aFileChangedMeanwhileIsNotMoved();
    void everyFailingCallLeavesOneWholeCopy();
    void aFileChangedInTheLastMomentStaysWhereItIs();
};

void ItemMovingTest::aMovedItemKeepsItsBytesAndItsName()
{
    const TwoCalendars calendars;

    QVERIFY(calendars.moveToWork(taskNamed(*calendars.store, u"A"_s)).isOk());

    QCOMPARE(calendars.folder.read(u"Work/a.ics"_s), oddTask);
    QVERIFY(namesIn(calendars.folder, u"Home"_s).isEmpty());
    QCOMPARE(allTasks(*calendars.store).size(), 1);
    QCOMPARE(taskNamed(*calendars.store, u"A"_s)->calendar()->uid(), u"Work"_s);
}

void ItemMovingTest::aMovedItemCanBeChangedAgain()
{
    const TwoCalendars calendars;
    const CalTaskPtr task = taskNamed(*calendars.store, u"A"_s);
    QVERIFY(calendars.moveToWork(task).isOk());

    task->setTitle(u"B"_s);
    QVERIFY(calendars.store->saveTask(*task).isOk());
    task->setCalendar(calendarNamed(*calendars.store, u"Home"_s));
    QVERIFY(calendars.store->saveTask(*task).isOk());

    QVERIFY(namesIn(calendars.folder, u"Work"_s).isEmpty());
    QVERIFY(calendars.folder.read(u"Home/a.ics"_s).contains("SUMMARY:B"));
}

void ItemMovingTest::changesGoWithTheMove()
{
    const TwoCalendars calendars(calendarText(taskText("a", "A") + taskText("b", "B")));
    const CalTaskPtr task = taskNamed(*calendars.store, u"A"_s);
    task->setDueDate(QDateTime(QDate(2026, 3, 12), QTime(9, 0))); // brings a time zone with it

    QVERIFY(calendars.moveToWork(task).isOk());

    const QByteArray moved = calendars.folder.read(u"Work/a.ics"_s);
    QVERIFY(moved.contains("DUE;TZID=Europe/Berlin:20260312T090000\r\n"));
    QVERIFY(moved.contains("BEGIN:VTIMEZONE"));
    QVERIFY(!moved.contains("UID:b"));
    QCOMPARE(calendars.folder.read(u"Home/a.ics"_s), calendarText(taskText("b", "B")));
}

void ItemMovingTest::aNameThatIsTakenGetsAnother()
{
    const TwoCalendars calendars;
    const QByteArray theirs = calendarText(taskText("x", "Theirs"));
    calendars.folder.write(u"Work/a.ics"_s, theirs);

    QVERIFY(calendars.moveToWork(taskNamed(*calendars.store, u"A"_s)).isOk());

    QCOMPARE(calendars.folder.read(u"Work/a.ics"_s), theirs);
    QCOMPARE(namesIn(calendars.folder, u"Work"_s).size(), 2);
    QVERIFY(namesIn(calendars.folder, u"Home"_s).isEmpty());
}

void ItemMovingTest::oneOfSeveralItemsLeavesTheOthers()
{
    const QByteArray zone = "BEGIN:VTIMEZONE\r\nTZID:X\r\nEND:VTIMEZONE\r\n";
    const QByteArray journal = "BEGIN:VJOURNAL\r\nUID:j\r\nEND:VJOURNAL\r\n";
    const QByteArray a = taskText("a", "A", "X-KEEP;P=1:\\q\\\r\n");
    const TwoCalendars calendars(calendarText(zone + taskText("b", "B") + a + journal));

    QVERIFY(calendars.moveToWork(taskNamed(*calendars.store, u"A"_s)).isOk());

    QCOMPARE(calendars.folder.read(u"Work/a.ics"_s), calendarText(zone + a));
    QCOMPARE(calendars.folder.read(u"Home/a.ics"_s), calendarText(zone + taskText("b", "B") + journal));
}

void ItemMovingTest::aWholeSeriesMovesByItself()
{
    const QByteArray text = calendarText(eventText("s", "Daily", "20260301T080000Z", "RRULE:FREQ=DAILY\r\n")
        + eventText("s", "Other", "20260311T090000Z", "RECURRENCE-ID:20260311T080000Z\r\n"));
    const TwoCalendars calendars(text);
    const CalEventPtr event = eventsOn(*calendars.store, QDate(2026, 3, 12)).constFirst();

    event->setCalendar(calendarNamed(*calendars.store, u"Work"_s));
    QVERIFY(calendars.store->saveEvent(*event, CalSpanAllEvents).isOk());

    QCOMPARE(calendars.folder.read(u"Work/a.ics"_s), text);
    QVERIFY(namesIn(calendars.folder, u"Home"_s).isEmpty());
}

void ItemMovingTest::aCalendarThatHoldsTheIdentifierRefuses()
{
    const TwoCalendars calendars;
    calendars.folder.write(u"Work/other.ics"_s, calendarText(taskText("a", "Same")));
    const auto store = calendars.folder.openWithoutWatching();
    const CalTaskPtr task = taskNamed(*store, u"A"_s);
    task->setCalendar(calendarNamed(*store, u"Work"_s));

    const auto outcome = store->saveTask(*task);

    QVERIFY(!outcome);
    QCOMPARE(outcome.error().code, StoreError::Code::Conflict);
    QCOMPARE(calendars.folder.read(u"Home/a.ics"_s), oddTask);
    QCOMPARE(namesIn(calendars.folder, u"Work"_s), QStringList { u"other.ics"_s });
}

void ItemMovingTest::aCalendarThatCannotBeChangedRefuses()
{
    const TwoCalendars calendars;
    const QByteArray single = calendarText(taskText("x", "X"));
    calendars.folder.write(u"single.ics"_s, single);
    const auto store = calendars.folder.openWithoutWatching();

    const CalTaskPtr in = taskNamed(*store, u"A"_s);
    in->setCalendar(calendarNamed(*store, u"single.ics"_s));
    const CalTaskPtr out = taskNamed(*store, u"X"_s);
    out->setCalendar(calendarNamed(*store, u"Work"_s));

    for (const CalTaskPtr &task : { in, out }) {
        const auto outcome = store->saveTask(*task);
        QVERIFY(!outcome);
        QCOMPARE(outcome.error().code, StoreError::Code::ReadOnly);
    }
    QCOMPARE(calendars.folder.read(u"single.ics"_s), single);
    QCOMPARE(calendars.folder.read(u"Home/a.ics"_s), oddTask);
    QVERIFY(namesIn(calendars.folder, u"Work"_s).isEmpty());
}

void ItemMovingTest::aFileChangedMeanwhileIsNotMoved()
{
    const TwoCalendars calendars;
    const CalTaskPtr task = taskNamed(*calendars.store, u"A"_s);
    const QByteArray theirs = calendarText(taskText("a", "Theirs"));
    calendars.folder.write(u"Home/a.ics"_s, theirs);

    const auto outcome = calendars.moveToWork(task);

    QVERIFY(!outcome);
    QCOMPARE(outcome.error().code, StoreError::Code::Conflict);
    QCOMPARE(calendars.folder.read(u"Home/a.ics"_s), theirs);
    QVERIFY(namesIn(calendars.folder, u"Work"_s).isEmpty());
}

void ItemMovingTest::everyFailingCallLeavesOneWholeCopy()
{
    TwoCalendars undisturbed;
    QVERIFY(undisturbed.moveToWork(taskNamed(*undisturbed.store, u"A"_s)).isOk());
    const int count = undisturbed.calls.made;
    QVERIFY(count >= 8);

    // The last call clears the old file away, which has lost its name by then.
    for (int at = 0; at < count - 1; ++at) {
        TwoCalendars calendars;
        const CalTaskPtr task = taskNamed(*calendars.store, u"A"_s);
        calendars.calls.failsAt = at;

        QVERIFY2(!calendars.moveToWork(task), qPrintable(QString::number(at)));

        QCOMPARE(calendars.folder.read(u"Home/a.ics"_s), oddTask);
        QCOMPARE(namesIn(calendars.folder, u"Home"_s), QStringList { u"a.ics"_s });
        QVERIFY(namesIn(calendars.folder, u"Work"_s).isEmpty());
        QCOMPARE(allTasks(*calendars.store).size(), 1);
        // Nothing is in the way of another try.
        QVERIFY(calendars.store->saveTask(*task).isOk());
        QCOMPARE(calendars.folder.read(u"Work/a.ics"_s), oddTask);
    }
}

void ItemMovingTest::aFileChangedInTheLastMomentStaysWhereItIs()
{
    TwoCalendars undisturbed;
    QVERIFY(undisturbed.moveToWork(taskNamed(*undisturbed.store, u"A"_s)).isOk());
    const int removal = undisturbed.calls.made - 3; // the old file loses its name
    TwoCalendars calendars;
    const QByteArray theirs = calendarText(taskText("a", "Theirs"));
    calendars.calls.actsAt = removal;
    calendars.calls.action = [&] { calendars.folder.write(u"Home/a.ics"_s, theirs); };

    const auto outcome = calendars.moveToWork(taskNamed(*calendars.store, u"A"_s));

    QVERIFY(!outcome);
    QCOMPARE(outcome.error().code, StoreError::Code::Conflict);
    QCOMPARE(calendars.folder.read(u"Home/a.ics"_s), theirs);
    QVERIFY(namesIn(calendars.folder, u"Work"_s).isEmpty());
}

VANTLE_TEST(ItemMovingTest)
#include "ItemMovingTest.moc"
