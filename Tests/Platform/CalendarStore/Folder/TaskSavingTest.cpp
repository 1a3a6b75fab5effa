// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "ScopedTimeZone.h"
#include "TestRegistry.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{

// Much that Vantle does not know, in odd writing.
const QByteArray richTask = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//x//y//EN\r\nX-WR-ODD;A=\"b;c\":d\\, e\r\n"
                            "BEGIN:VTIMEZONE\r\nTZID:Odd/Zone\r\nBEGIN:STANDARD\r\nDTSTART:19700101T000000\r\n"
                            "TZOFFSETFROM:+0100\r\nTZOFFSETTO:+0100\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n"
                            "BEGIN:VTODO\r\nUID:rich\r\nDTSTAMP:20260101T000000Z\r\nsummary;LANGUAGE=de:Gro\xc3\xdf\r\n"
                            "CATEGORIES:A,B\\,C\r\nDESCRIPTION:folded so\r\n  that it goes on\r\nX-KEEP;P=1:\\q\\\r\n"
                            "DUE;TZID=Odd/Zone:20260311T120000\r\nSTATUS:NEEDS-ACTION\r\nSEQUENCE:4\r\n"
                            "BEGIN:VALARM\r\nACTION:X-SHOUT\r\nTRIGGER:-PT15M\r\nX-LOUD:1\r\nEND:VALARM\r\n"
                            "END:VTODO\r\nBEGIN:X-COMP\r\nX-A:b\r\nEND:X-COMP\r\nEND:VCALENDAR\r\n";

// The lines of a text that are not in another, sorted.
QList<QByteArray> linesOnlyIn(const QByteArray &text, const QByteArray &other)
{
    const QList<QByteArray> others = other.split('\n');
    QList<QByteArray> lines = text.split('\n');
    lines.removeIf([&](const QByteArray &line) { return others.contains(line); });
    std::ranges::sort(lines);
    return lines;
}

StoreError refusalOf(const Result<void, StoreError> &outcome)
{
    return outcome ? StoreError { StoreError::Code::Io, u"was not refused"_s, {}, {} } : outcome.error();
}

} // namespace

// What a save of a to-do does to its file, and when it is refused.
class TaskSavingTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void completingChangesOnlyTheLinesThatItConcerns();
    void uncompletingTakesItBack();
    void anExistingCompletionDateIsKept();
    void otherValuesAreWrittenToo();
    void anUnchangedRecordWritesNothing();
    void ourOwnChangeIsVisibleAtOnceAndAnnouncedAsOurs();
    void aSecondSaveOfTheSameRecordIsNoConflict();
    void aFileChangedMeanwhileIsKept();
    void aFileRemovedMeanwhileDoesNotComeBack();
    void aReadOnlyCalendarRefuses();
    void aReadOnlyFileRefuses();
    void aLinkedItemFileRefuses();
    void aDamagedFileRefuses();
    void aDueDateKeepsItsForm_data();
    void aDueDateKeepsItsForm();
    void aDayStaysOneWhereTheClockSkipsMidnight();
    void aDueDateThatIsClearedGoes();
    void oneOfSeveralItemsOfAFileIsChanged();
    void savingClearsOldLeftovers();
};

void TaskSavingTest::completingChangesOnlyTheLinesThatItConcerns()
{
    const CalendarFolder folder;
    folder.write(u"c/rich.ics"_s, richTask);
    const auto store = folder.openWithoutWatching();
    const CalTaskPtr task = allTasks(*store).constFirst();

    task->setIsCompleted(true);
    const auto outcome = store->saveTask(*task);
    QVERIFY2(outcome, qPrintable(refusalOf(outcome).reason));

    const QByteArray saved = folder.read(u"c/rich.ics"_s);
    QCOMPARE(linesOnlyIn(richTask, saved),
        (QList<QByteArray> { "DTSTAMP:20260101T000000Z\r", "SEQUENCE:4\r", "STATUS:NEEDS-ACTION\r" }));
    QCOMPARE(linesOnlyIn(saved, richTask),
        (QList<QByteArray> { "COMPLETED:20260311T110000Z\r", "DTSTAMP:20260311T110000Z\r",
            "LAST-MODIFIED:20260311T110000Z\r", "PERCENT-COMPLETE:100\r", "SEQUENCE:5\r", "STATUS:COMPLETED\r" }));
    // Everything behind the to-do is where it was.
    const QByteArray tail = "END:VTODO\r\nBEGIN:X-COMP\r\nX-A:b\r\nEND:X-COMP\r\nEND:VCALENDAR\r\n";
    QVERIFY(saved.endsWith(tail));
    QVERIFY(task->isCompleted());
    QCOMPARE(task->completedDate(), folder.clock().now());
}

void TaskSavingTest::uncompletingTakesItBack()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s,
        calendarText(taskText("a", "A", "STATUS:COMPLETED\r\nCOMPLETED:20260310T100000Z\r\nPERCENT-COMPLETE:100\r\n")));
    const auto store = folder.openWithoutWatching();
    const CalTaskPtr task = taskNamed(*store, u"A"_s);

    task->setIsCompleted(false);
    QVERIFY(store->saveTask(*task).isOk());

    const QByteArray saved = folder.read(u"c/a.ics"_s);
    QVERIFY(!saved.contains("COMPLETED"));
    QVERIFY(!saved.contains("PERCENT"));
    QVERIFY(saved.contains("STATUS:NEEDS-ACTION\r\n"));
    QVERIFY(!task->completedDate());
    QVERIFY(!taskNamed(*store, u"A"_s)->isCompleted());
}

void TaskSavingTest::anExistingCompletionDateIsKept()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "A")));
    const auto store = folder.openWithoutWatching();
    const CalTaskPtr task = taskNamed(*store, u"A"_s);

    task->setIsCompleted(true);
    task->setCompletedDate(QDateTime(QDate(2026, 3, 9), QTime(8, 0)));
    QVERIFY(store->saveTask(*task).isOk());

    QVERIFY(folder.read(u"c/a.ics"_s).contains("COMPLETED:20260309T070000Z\r\n"));
    QCOMPARE(folder.read(u"c/a.ics"_s).count("\nCOMPLETED"), 1);
}

void TaskSavingTest::otherValuesAreWrittenToo()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "A", "PRIORITY:1\r\nURL:https://example.org/\r\n")));
    const auto store = folder.openWithoutWatching();
    const CalTaskPtr task = taskNamed(*store, u"A"_s);

    task->setTitle(u"New; title, with\nlines"_s);
    task->setNotes(u"Notes"_s);
    task->setPriority(0);
    task->setUrl(std::nullopt);
    QVERIFY(store->saveTask(*task).isOk());

    const QByteArray saved = folder.read(u"c/a.ics"_s);
    QVERIFY(saved.contains("SUMMARY:New\\; title\\, with\\nlines\r\n"));
    QVERIFY(saved.contains("DESCRIPTION:Notes\r\n"));
    QVERIFY(!saved.contains("PRIORITY"));
    QVERIFY(!saved.contains("URL"));
    QCOMPARE(allTasks(*folder.openWithoutWatching()).constFirst()->title(), u"New; title, with\nlines"_s);
}

void TaskSavingTest::anUnchangedRecordWritesNothing()
{
    const CalendarFolder folder;
    const QByteArray text = calendarText(taskText("a", "A"));
    folder.write(u"c/a.ics"_s, text);
    const auto store = folder.openWithoutWatching();

    QVERIFY(store->saveTask(*taskNamed(*store, u"A"_s)).isOk());

    QCOMPARE(folder.read(u"c/a.ics"_s), text);
}

void TaskSavingTest::ourOwnChangeIsVisibleAtOnceAndAnnouncedAsOurs()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "A")));
    folder.write(u"c/b.ics"_s, calendarText(taskText("b", "B")));
    const auto store = folder.open();
    QSignalSpy changed(store.get(), &FolderCalendarStore::changed);
    const CalTaskPtr task = taskNamed(*store, u"A"_s);

    task->setIsCompleted(true);
    QVERIFY(store->saveTask(*task).isOk());
    QVERIFY(taskNamed(*store, u"A"_s)->isCompleted());
    QVERIFY(changed.isEmpty()); // from the event loop only

    QVERIFY(changed.wait(1000));
    const auto change = changed.constFirst().constFirst().value<CalBackendChange>();
    QCOMPARE(change.author, CalBackendChange::Author::Ourselves);
    QVERIFY(change.tasks);
    // What the watcher sees of our own writing is no further change: the next one is the other program's.
    folder.write(u"c/b.ics"_s, calendarText(taskText("b", "Theirs")));
    QTRY_VERIFY(taskNamed(*store, u"Theirs"_s));
    QTRY_COMPARE(changed.size(), 2);
}

void TaskSavingTest::aSecondSaveOfTheSameRecordIsNoConflict()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "A")));
    const auto store = folder.openWithoutWatching();
    const CalTaskPtr task = taskNamed(*store, u"A"_s);

    task->setIsCompleted(true);
    QVERIFY(store->saveTask(*task).isOk());
    task->setIsCompleted(false);
    QVERIFY(store->saveTask(*task).isOk());
    task->setTitle(u"Again"_s);
    QVERIFY(store->saveTask(*task).isOk());

    QVERIFY(folder.read(u"c/a.ics"_s).contains("SEQUENCE:3\r\n"));
    QVERIFY(taskNamed(*store, u"Again"_s));
}

void TaskSavingTest::aFileChangedMeanwhileIsKept()
{
    const CalendarFolder folder;
    folder.write(u"Home/a.ics"_s, calendarText(taskText("a", "A")));
    const auto store = folder.openWithoutWatching();
    const CalTaskPtr task = taskNamed(*store, u"A"_s);
    const QByteArray theirs = calendarText(taskText("a", "Theirs"));
    folder.write(u"Home/a.ics"_s, theirs);

    task->setIsCompleted(true);
    const StoreError error = refusalOf(store->saveTask(*task));

    QCOMPARE(error.code, StoreError::Code::Conflict);
    QCOMPARE(error.item, u"A"_s);
    QCOMPARE(error.calendar, u"Home"_s);
    QVERIFY(!error.reason.isEmpty());
    QCOMPARE(folder.read(u"Home/a.ics"_s), theirs);
    QVERIFY(taskNamed(*store, u"Theirs"_s)); // read again at once
    QVERIFY(task->isCompleted()); // the record keeps the edit
}

void TaskSavingTest::aFileRemovedMeanwhileDoesNotComeBack()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "A")));
    const auto store = folder.openWithoutWatching();
    const CalTaskPtr task = taskNamed(*store, u"A"_s);
    QVERIFY(folder.remove(u"c/a.ics"_s));

    task->setIsCompleted(true);

    QCOMPARE(refusalOf(store->saveTask(*task)).code, StoreError::Code::NotFound);
    QVERIFY(!QFile::exists(folder.path(u"c/a.ics"_s)));
    QVERIFY(allTasks(*store).isEmpty());
}

void TaskSavingTest::aReadOnlyCalendarRefuses()
{
    const CalendarFolder folder;
    const QByteArray text = calendarText(taskText("a", "A"));
    folder.write(u"single.ics"_s, text);
    const auto store = folder.openWithoutWatching();
    const CalTaskPtr task = taskNamed(*store, u"A"_s);

    task->setIsCompleted(true);

    QCOMPARE(refusalOf(store->saveTask(*task)).code, StoreError::Code::ReadOnly);
    QCOMPARE(folder.read(u"single.ics"_s), text);
}

void TaskSavingTest::aReadOnlyFileRefuses()
{
    const CalendarFolder folder;
    const QByteArray text = calendarText(taskText("a", "A"));
    folder.write(u"c/a.ics"_s, text);
    QVERIFY(::chmod(QFile::encodeName(folder.path(u"c/a.ics"_s)).constData(), 0444) == 0);
    const auto store = folder.openWithoutWatching();
    const CalTaskPtr task = taskNamed(*store, u"A"_s);

    task->setIsCompleted(true);
    const StoreError error = refusalOf(store->saveTask(*task));

    QCOMPARE(error.code, StoreError::Code::ReadOnly);
    QVERIFY(!error.reason.isEmpty());
    QCOMPARE(folder.read(u"c/a.ics"_s), text);
    QVERIFY(!taskNamed(*store, u"A"_s)->isCompleted());
}

void TaskSavingTest::aLinkedItemFileRefuses()
{
    const CalendarFolder elsewhere;
    const QByteArray text = calendarText(taskText("a", "A"));
    elsewhere.write(u"a.ics"_s, text);
    const CalendarFolder folder;
    QDir().mkpath(folder.path(u"c"_s));
    QVERIFY(QFile::link(elsewhere.path(u"a.ics"_s), folder.path(u"c/a.ics"_s)));
    const auto store = folder.openWithoutWatching();
    const CalTaskPtr task = taskNamed(*store, u"A"_s);

    task->setIsCompleted(true);

    QCOMPARE(refusalOf(store->saveTask(*task)).code, StoreError::Code::ReadOnly);
    QCOMPARE(elsewhere.read(u"a.ics"_s), text);
    QVERIFY(QFileInfo(folder.path(u"c/a.ics"_s)).isSymLink());
}

void TaskSavingTest::aDamagedFileRefuses()
{
    const CalendarFolder folder;
    const QByteArray text = "BEGIN:VCALENDAR\r\n" + taskText("a", "A");
    folder.write(u"c/a.ics"_s, text);
    const auto store = folder.openWithoutWatching();
    const CalTaskPtr task = taskNamed(*store, u"A"_s);
    QVERIFY(task);

    task->setIsCompleted(true);

    QCOMPARE(refusalOf(store->saveTask(*task)).code, StoreError::Code::Unreadable);
    QCOMPARE(folder.read(u"c/a.ics"_s), text);
}

void TaskSavingTest::aDueDateKeepsItsForm_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QDateTime>("due");
    QTest::addColumn<QByteArray>("written");

    const auto day = [](int number, int hour) { return QDateTime(QDate(2026, 3, number), QTime(hour, 0)); };
    QTest::newRow("a day") << QByteArray("DUE;VALUE=DATE:20260311\r\n") << day(13, 0)
                           << QByteArray("DUE;VALUE=DATE:20260313\r\n");
    QTest::newRow("a day with a time") << QByteArray("DUE;VALUE=DATE:20260311\r\n") << day(13, 9)
                                       << QByteArray("DUE;TZID=Europe/Berlin:20260313T090000\r\n");
    QTest::newRow("UTC") << QByteArray("DUE:20260311T080000Z\r\n") << day(13, 0)
                         << QByteArray("DUE:20260312T230000Z\r\n");
    QTest::newRow("floating") << QByteArray("DUE:20260311T080000\r\n") << day(13, 9)
                              << QByteArray("DUE:20260313T090000\r\n");
    QTest::newRow("in a zone") << QByteArray("DUE;TZID=Asia/Tokyo:20260311T080000\r\n") << day(13, 9)
                               << QByteArray("DUE;TZID=Asia/Tokyo:20260313T170000\r\n");
    QTest::newRow("a length") << QByteArray("DTSTART:20260311T080000Z\r\nDURATION:PT1H\r\n") << day(13, 9)
                              << QByteArray("DTSTART:20260311T080000Z\r\nDUE:20260313T080000Z\r\n");
    QTest::newRow("none") << QByteArray() << day(13, 9) << QByteArray("DUE;TZID=Europe/Berlin:20260313T090000\r\n");
}

void TaskSavingTest::aDueDateKeepsItsForm()
{
    QFETCH(const QByteArray, lines);
    QFETCH(const QDateTime, due);
    QFETCH(const QByteArray, written);
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "A", lines)));
    const auto store = folder.openWithoutWatching();
    const CalTaskPtr task = taskNamed(*store, u"A"_s);

    task->setDueDate(due);
    QVERIFY(store->saveTask(*task).isOk());

    const QByteArray saved = folder.read(u"c/a.ics"_s);
    QVERIFY2(saved.contains(QByteArray("SUMMARY:A\r\n" + written)), saved.constData());
    QCOMPARE(saved.count("DURATION"), 0);
    const CalTaskPtr again = taskNamed(*folder.openWithoutWatching(), u"A"_s);
    QCOMPARE(again->dueDate(), due);
    QCOMPARE(again->isDueDateOnly(), task->isDueDateOnly());
}

void TaskSavingTest::aDayStaysOneWhereTheClockSkipsMidnight()
{
    const ScopedTimeZone zone("Africa/Cairo");
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "A", "DUE;VALUE=DATE:20260423\r\n")));
    const auto store = folder.openWithoutWatching();
    const CalTaskPtr task = taskNamed(*store, u"A"_s);

    task->setDueDate(QDate(2026, 4, 24).startOfDay());
    QVERIFY(task->dueDate()->time() > QTime(0, 0));
    QVERIFY(store->saveTask(*task).isOk());

    QVERIFY(folder.read(u"c/a.ics"_s).contains("\r\nDUE;VALUE=DATE:20260424\r\n"));
    QVERIFY(taskNamed(*folder.openWithoutWatching(), u"A"_s)->isDueDateOnly());
}

void TaskSavingTest::aDueDateThatIsClearedGoes()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "A", "DUE;VALUE=DATE:20260311\r\n")));
    const auto store = folder.openWithoutWatching();
    const CalTaskPtr task = taskNamed(*store, u"A"_s);

    task->setDueDate(std::nullopt);
    QVERIFY(store->saveTask(*task).isOk());

    QVERIFY(!folder.read(u"c/a.ics"_s).contains("DUE"));
    QVERIFY(!taskNamed(*store, u"A"_s)->dueDate());
}

void TaskSavingTest::oneOfSeveralItemsOfAFileIsChanged()
{
    const CalendarFolder folder;
    const QByteArray first = taskText("a", "A");
    const QByteArray last = taskText("c", "C");
    folder.write(u"c/a.ics"_s, calendarText(first + taskText("b", "B") + last));
    const auto store = folder.openWithoutWatching();
    const CalTaskPtr task = taskNamed(*store, u"B"_s);

    task->setIsCompleted(true);
    QVERIFY(store->saveTask(*task).isOk());

    const QByteArray saved = folder.read(u"c/a.ics"_s);
    QVERIFY(saved.contains(first));
    QVERIFY(saved.contains(last));
    QCOMPARE(saved.count("STATUS:COMPLETED"), 1);
    QVERIFY(taskNamed(*store, u"B"_s)->isCompleted());
    QVERIFY(!taskNamed(*store, u"C"_s)->isCompleted());
}

void TaskSavingTest::savingClearsOldLeftovers()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "A")));
    folder.write(u"c/.vantle-1.tmp"_s, "left by a killed writer");
    QFile leftover(folder.path(u"c/.vantle-1.tmp"_s));
    QVERIFY(leftover.open(QIODevice::ReadWrite));
    QVERIFY(leftover.setFileTime(folder.clock().now().addDays(-2), QFileDevice::FileModificationTime));
    leftover.close();
    const auto store = folder.openWithoutWatching();
    const CalTaskPtr task = taskNamed(*store, u"A"_s);

    task->setIsCompleted(true);
    QVERIFY(store->saveTask(*task).isOk());

    QVERIFY(!leftover.exists());
}

VANTLE_TEST(TaskSavingTest)
#include "TaskSavingTest.moc"
