// SPDX-License-Identifier: MIT
#include "MemoryStore.h"
#include "TestRecords.h"
#include "TestRegistry.h"

#include <VTDayContents.h>

#include <CalCalendarStore.h>
#include <CalTask.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

QDateTime local(const char *text)
{
    return QDateTime::fromString(QString::fromLatin1(text), Qt::ISODate);
}

CalTaskPtr task(const std::optional<QString> &title, const std::optional<QDateTime> &due = {}, int priority = 0)
{
    auto made = std::make_shared<CalTask>();
    made->setTitle(title);
    made->setDueDate(due);
    made->setPriority(priority);
    return made;
}

template <typename Record> QStringList titles(const QList<std::shared_ptr<Record>> &records)
{
    QStringList result;
    for (const auto &each : records)
        result << each->title().value_or(u"(none)"_s);
    return result;
}

// Wednesday; its week goes from the 9th to the 15th of March.
VTDayQuestion wednesday()
{
    VTDayQuestion question;
    question.date = local("2026-03-11T12:00:00");
    return question;
}

} // namespace

class VTDayContentsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutAListOfUnselectedCalendarsAllAreUsed();
    void unselectedCalendarsAreLeftOut();
    void aCalendarIsUnselectedByEitherOfItsSources();
    void aSourceNamedAsAnotherCalendarUnselectsThatOneAlone();
    void withAllCalendarsUnselectedBothListsAreEmpty();
    void unknownUnselectedCalendarsAreIgnored();
    void eventsAreThoseOfTheDayInTheStoresOrder();
    void completedTasksAreThoseOfTheShownWeekBeforeTheOpenOnes();
    void completedTasksAreTiedToTheShownWeekNotToTheCurrentOne();
    void allCompletedTasksAreShownWhenAskedFor();
    void tasksDueAtTheWeeksEndOrLaterAreHiddenWhenAskedFor();
    void weekOfADay_data();
    void weekOfADay();
    void weekMayStartOnAnyDay();
    void dueDatesSortBeforeTheirAbsence();
    void equalDueDatesSortByTitle();
    void prioritiesSortBeforeTheirAbsenceEachGroupByTitle();
    void everyOtherMethodSortsByTitle();
    void titlesSortWithoutRegardToCase();
    void titlesSortAsTheLocaleDoes();
    void aTaskWithoutTitleSortsFirst();
    void equalTasksKeepTheirOrder();
};

void VTDayContentsTest::withoutAListOfUnselectedCalendarsAllAreUsed()
{
    const MemoryStore memory;

    QCOMPARE(VTSelectedCalendars(memory.store(), std::nullopt).size(), memory.store().calendars().size());
}

void VTDayContentsTest::unselectedCalendarsAreLeftOut()
{
    const MemoryStore memory;
    memory.backend->addTask(u"Home"_s, makeTask(u"1"_s, u"At home"_s));
    memory.backend->addTask(u"Work"_s, makeTask(u"2"_s, u"At work"_s));
    VTDayQuestion question = wednesday();
    question.unselectedCalendarsUID = QStringList { u"Home"_s };

    QCOMPARE(titles(VTTasksOfDay(memory.store(), question)), QStringList { u"At work"_s });
}

void VTDayContentsTest::aCalendarIsUnselectedByEitherOfItsSources()
{
    const MemoryStore memory;
    memory.backend->setDesktopSource(u"Home"_s, CalItemKind::Event, u"Home"_s);
    memory.backend->setDesktopSource(u"Home"_s, CalItemKind::Task, u"to-dos at home"_s);
    memory.backend->addTask(u"Home"_s, makeTask(u"1"_s, u"At home"_s));
    memory.backend->addTask(u"Work"_s, makeTask(u"2"_s, u"At work"_s));
    memory.backend->addEvent(
        u"Home"_s, makeEvent(u"3"_s, u"Dinner"_s, local("2026-03-11T19:00:00"), local("2026-03-11T20:00:00")));
    VTDayQuestion question = wednesday();
    QCOMPARE(titles(VTEventsOfDay(memory.store(), question)), QStringList { u"Dinner"_s });

    question.unselectedCalendarsUID = QStringList { u"to-dos at home"_s };

    QCOMPARE(titles(VTTasksOfDay(memory.store(), question)), QStringList { u"At work"_s });
    QVERIFY(VTEventsOfDay(memory.store(), question).isEmpty());
}

void VTDayContentsTest::aSourceNamedAsAnotherCalendarUnselectsThatOneAlone()
{
    const MemoryStore memory;
    memory.backend->setDesktopSource(u"Home"_s, CalItemKind::Event, u"Home"_s);
    memory.backend->setDesktopSource(u"Home"_s, CalItemKind::Task, u"Work"_s);

    const CalCalendarList selected = VTSelectedCalendars(memory.store(), QStringList { u"Work"_s });

    QCOMPARE(selected.size(), 1);
    QCOMPARE(selected.first()->uid(), u"Home"_s);
}

void VTDayContentsTest::withAllCalendarsUnselectedBothListsAreEmpty()
{
    const MemoryStore memory;
    memory.backend->addTask(u"Home"_s, makeTask(u"1"_s, u"At home"_s));
    memory.backend->addEvent(
        u"Work"_s, makeEvent(u"2"_s, u"At work"_s, local("2026-03-11T10:00:00"), local("2026-03-11T11:00:00")));
    VTDayQuestion question = wednesday();
    question.unselectedCalendarsUID = QStringList { u"Home"_s, u"Work"_s };

    QVERIFY(VTTasksOfDay(memory.store(), question).isEmpty());
    QVERIFY(VTEventsOfDay(memory.store(), question).isEmpty());
}

void VTDayContentsTest::unknownUnselectedCalendarsAreIgnored()
{
    const MemoryStore memory;

    const CalCalendarList selected = VTSelectedCalendars(memory.store(), QStringList { u"Gone"_s });

    QCOMPARE(selected.size(), memory.store().calendars().size());
}

void VTDayContentsTest::eventsAreThoseOfTheDayInTheStoresOrder()
{
    const MemoryStore memory;
    const auto add = [&](const char *start, const char *end, const QString &title) {
        memory.backend->addEvent(u"Home"_s, makeEvent(title, title, local(start), local(end)));
    };
    add("2026-03-11T23:59:59", "2026-03-12T01:00:00", u"in the last second"_s);
    add("2026-03-10T23:00:00", "2026-03-11T00:00:00", u"ends as the day begins"_s);
    add("2026-03-10T23:00:00", "2026-03-11T00:00:01", u"reaches into the day"_s);
    add("2026-03-12T00:00:00", "2026-03-12T01:00:00", u"of the next day"_s);
    add("2026-03-11T12:00:00", "2026-03-11T13:00:00", u"at noon"_s);

    QCOMPARE(titles(VTEventsOfDay(memory.store(), wednesday())),
        QStringList({ u"reaches into the day"_s, u"at noon"_s, u"in the last second"_s }));
}

void VTDayContentsTest::completedTasksAreThoseOfTheShownWeekBeforeTheOpenOnes()
{
    const MemoryStore memory;
    memory.backend->addTask(u"Home"_s, makeTask(u"1"_s, u"open"_s));
    memory.backend->addTask(
        u"Home"_s, makeCompletedTask(u"2"_s, u"done a second before"_s, local("2026-03-08T23:59:59")));
    memory.backend->addTask(u"Work"_s, makeCompletedTask(u"3"_s, u"done as it began"_s, local("2026-03-09T00:00:00")));

    QCOMPARE(titles(VTTasksOfDay(memory.store(), wednesday())), QStringList({ u"done as it began"_s, u"open"_s }));
}

void VTDayContentsTest::completedTasksAreTiedToTheShownWeekNotToTheCurrentOne()
{
    const MemoryStore memory;
    memory.backend->addTask(u"Home"_s, makeCompletedTask(u"1"_s, u"done"_s, local("2026-03-09T08:00:00")));
    VTDayQuestion question = wednesday();

    question.date = question.date.addDays(7);
    QVERIFY(VTTasksOfDay(memory.store(), question).isEmpty());
    question.date = question.date.addDays(-14);
    QCOMPARE(titles(VTTasksOfDay(memory.store(), question)), QStringList { u"done"_s });
}

void VTDayContentsTest::allCompletedTasksAreShownWhenAskedFor()
{
    const MemoryStore memory;
    memory.backend->addTask(u"Home"_s, makeCompletedTask(u"1"_s, u"done long ago"_s, local("2020-01-01T08:00:00")));
    memory.backend->addTask(u"Home"_s, makeTask(u"2"_s, u"open"_s));
    VTDayQuestion question = wednesday();
    question.showAllCompletedTasks = true;

    QCOMPARE(titles(VTTasksOfDay(memory.store(), question)), QStringList({ u"done long ago"_s, u"open"_s }));
}

void VTDayContentsTest::tasksDueAtTheWeeksEndOrLaterAreHiddenWhenAskedFor()
{
    const MemoryStore memory;
    memory.backend->addTask(u"Home"_s, makeTaskDue(u"1"_s, u"at the end"_s, local("2026-03-15T23:59:59")));
    memory.backend->addTask(u"Home"_s, makeTaskDue(u"2"_s, u"a second earlier"_s, local("2026-03-15T23:59:58")));
    memory.backend->addTask(u"Home"_s, makeTask(u"3"_s, u"without a date"_s));
    memory.backend->addTask(u"Home"_s, makeTaskDue(u"4"_s, u"next week"_s, local("2026-03-16T10:00:00")));
    VTDayQuestion question = wednesday();

    QCOMPARE(VTTasksOfDay(memory.store(), question).size(), 4);
    question.hideTasksDueAfterThisWeek = true;
    QCOMPARE(
        titles(VTTasksOfDay(memory.store(), question)), QStringList({ u"a second earlier"_s, u"without a date"_s }));
}

void VTDayContentsTest::weekOfADay_data()
{
    QTest::addColumn<QDateTime>("day");
    QTest::addColumn<QDateTime>("start");
    QTest::addColumn<QDateTime>("end");

    QTest::newRow("Monday begins its week")
        << local("2026-03-09T00:00:00") << local("2026-03-09T00:00:00") << local("2026-03-15T23:59:59");
    QTest::newRow("Wednesday") << local("2026-03-11T15:30:00") << local("2026-03-09T00:00:00")
                               << local("2026-03-15T23:59:59");
    QTest::newRow("Sunday belongs to the week that began six days earlier")
        << local("2026-03-15T23:59:59") << local("2026-03-09T00:00:00") << local("2026-03-15T23:59:59");
    QTest::newRow("week over the new year")
        << local("2027-01-01T12:00:00") << local("2026-12-28T00:00:00") << local("2027-01-03T23:59:59");
    QTest::newRow("Monday before the clocks go forward on Sunday: the end lies an hour late")
        << local("2026-03-23T12:00:00") << local("2026-03-23T00:00:00") << local("2026-03-30T00:59:59");
    QTest::newRow("Sunday on which the clocks go forward: no hour is counted off yet at its first second")
        << local("2026-03-29T12:00:00") << local("2026-03-23T00:00:00") << local("2026-03-30T00:59:59");
    QTest::newRow("Monday before the clocks go back on Sunday: the end lies an hour early")
        << local("2026-10-19T12:00:00") << local("2026-10-19T00:00:00") << local("2026-10-25T22:59:59");
}

void VTDayContentsTest::weekOfADay()
{
    QFETCH(const QDateTime, day);

    const VTWeekBounds week = VTWeekBoundsOfDay(day, VTMonday);

    QTEST(week.start, "start");
    QTEST(week.end, "end");
}

void VTDayContentsTest::weekMayStartOnAnyDay()
{
    const QDateTime sunday = local("2026-03-29T12:00:00");

    // The week of a Sunday start begins on that very day; of a Saturday start, the day before.
    QCOMPARE(VTWeekBoundsOfDay(sunday, 1).start, local("2026-03-29T00:00:00"));
    QCOMPARE(VTWeekBoundsOfDay(sunday, 7).start, local("2026-03-28T00:00:00"));
    // Counted back from Tuesday in steps of 86400 seconds, the night of the change takes an hour.
    QCOMPARE(VTWeekBoundsOfDay(local("2026-03-31T12:00:00"), 7).start, local("2026-03-27T23:00:00"));
}

void VTDayContentsTest::dueDatesSortBeforeTheirAbsence()
{
    const CalTaskList tasks { task(u"none"_s), task(u"late"_s, local("2026-03-12T10:00:00")),
        task(u"early"_s, local("2026-03-11T10:00:00")) };

    QCOMPARE(titles(VTSortedTasks(tasks, VTSortByDueDate)), QStringList({ u"early"_s, u"late"_s, u"none"_s }));
}

void VTDayContentsTest::equalDueDatesSortByTitle()
{
    const QDateTime due = local("2026-03-11T10:00:00");
    const CalTaskList tasks { task(u"d"_s), task(u"b"_s, due), task(u"c"_s), task(u"a"_s, due) };

    QCOMPARE(titles(VTSortedTasks(tasks, VTSortByDueDate)), QStringList({ u"a"_s, u"b"_s, u"c"_s, u"d"_s }));
}

void VTDayContentsTest::prioritiesSortBeforeTheirAbsenceEachGroupByTitle()
{
    const CalTaskList tasks { task(u"none b"_s), task(u"low"_s, {}, 9), task(u"none a"_s), task(u"high b"_s, {}, 1),
        task(u"high a"_s, {}, 1), task(u"middle"_s, {}, 5) };

    QCOMPARE(titles(VTSortedTasks(tasks, VTSortByPriority)),
        QStringList({ u"high a"_s, u"high b"_s, u"middle"_s, u"low"_s, u"none a"_s, u"none b"_s }));
}

void VTDayContentsTest::everyOtherMethodSortsByTitle()
{
    const CalTaskList tasks { task(u"b"_s, local("2026-03-11T10:00:00"), 1), task(u"a"_s) };

    QCOMPARE(titles(VTSortedTasks(tasks, VTSortByTitle)), QStringList({ u"a"_s, u"b"_s }));
    QCOMPARE(titles(VTSortedTasks(tasks, -1)), QStringList({ u"a"_s, u"b"_s }));
    QCOMPARE(titles(VTSortedTasks(tasks, 99)), QStringList({ u"a"_s, u"b"_s }));
}

void VTDayContentsTest::titlesSortWithoutRegardToCase()
{
    const CalTaskList tasks { task(u"beta"_s), task(u"Gamma"_s), task(u"ALPHA"_s) };

    QCOMPARE(titles(VTSortedTasks(tasks, VTSortByTitle)), QStringList({ u"ALPHA"_s, u"beta"_s, u"Gamma"_s }));
}

void VTDayContentsTest::titlesSortAsTheLocaleDoes()
{
    const CalTaskList tasks { task(u"Zug"_s), task(u"Überweisen"_s), task(u"Ofen"_s) };

    // By code point the umlaut would come last.
    const QCollator german(QLocale(QLocale::German, QLocale::Germany));
    QCOMPARE(
        titles(VTSortedTasks(tasks, VTSortByTitle, german)), QStringList({ u"Ofen"_s, u"Überweisen"_s, u"Zug"_s }));
}

void VTDayContentsTest::aTaskWithoutTitleSortsFirst()
{
    const CalTaskList tasks { task(u"a"_s), task(std::nullopt), task(u""_s) };

    QCOMPARE(titles(VTSortedTasks(tasks, VTSortByTitle)), QStringList({ u"(none)"_s, u""_s, u"a"_s }));
}

void VTDayContentsTest::equalTasksKeepTheirOrder()
{
    const CalTaskList tasks { task(u"Same"_s), task(u"same"_s), task(u"SAME"_s) };

    for (const int method : { VTSortByDueDate, VTSortByPriority, VTSortByTitle })
        QCOMPARE(titles(VTSortedTasks(tasks, method)), QStringList({ u"Same"_s, u"same"_s, u"SAME"_s }));
}

VANTLE_TEST(VTDayContentsTest)
#include "VTDayContentsTest.moc"
