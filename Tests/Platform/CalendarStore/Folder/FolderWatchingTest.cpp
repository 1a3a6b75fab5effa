// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "TestRegistry.h"

#include <CalCalendar.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

// A change of another program is shown within a second.
constexpr int atMost = 1000;

QStringList tasksOf(const std::unique_ptr<FolderCalendarStore> &store)
{
    return sortedTitles(allTasks(*store));
}

} // namespace

// How changes by other programs are taken in.
class FolderWatchingTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFileWrittenInPlaceIsReadAgain();
    void aFileRenamedOverIsReadAgain();
    void aSeriesThatIsCutShortIsFoundNoLonger();
    void aFileAppearsAndVanishes();
    void aNewCalendarAppearsWithItsFiles();
    void aCalendarIsRenamedAndRemoved();
    void aRootThatAppearsLaterIsFound();
    void aRootThatIsReplacedIsReadAgain();
    void changesInALinkedFolderAreSeen();
    void changesOfALinkedSingleFileAreSeen();
    void aSingleFileIsReadAgain();
    void colourNameAndOrderAreFollowed();
    void unchangedContentIsSilent();
    void aChangeTellsWhatAndWhose();
    void aStormMakesFewAnnouncements();
    void aHalfWrittenFileKeepsItsLastState();
    void aFileThatStaysCutIsTakenAsItIs();
    void anEmptiedFileKeepsItsLastStateUntilItSettles();
};

void FolderWatchingTest::aFileWrittenInPlaceIsReadAgain()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "Before")));
    const auto store = folder.open();

    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "After")));

    QTRY_COMPARE_WITH_TIMEOUT(tasksOf(store), QStringList { u"After"_s }, atMost);
}

void FolderWatchingTest::aFileRenamedOverIsReadAgain()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "Before")));
    const auto store = folder.open();

    // More than once, for a watch on the file itself would be lost by the first.
    for (const char *title : { "One", "Two", "Three" }) {
        folder.writeByRenaming(u"c/a.ics"_s, calendarText(taskText("a", title)));
        QTRY_COMPARE_WITH_TIMEOUT(tasksOf(store), QStringList { QString::fromLatin1(title) }, atMost);
    }
}

void FolderWatchingTest::aSeriesThatIsCutShortIsFoundNoLonger()
{
    const CalendarFolder folder;
    const auto series = [](const QByteArray &rule) {
        return calendarText(eventText("a", "Daily", "20260301T090000", "DURATION:PT1H\r\nRRULE:" + rule + "\r\n"));
    };
    folder.write(u"c/a.ics"_s, series("FREQ=DAILY"));
    const auto store = folder.open();
    const QDate later(2027, 6, 1);
    QCOMPARE(sortedTitles(eventsOn(*store, later)), QStringList { u"Daily"_s });

    folder.write(u"c/a.ics"_s, series("FREQ=DAILY;COUNT=10"));

    QTRY_VERIFY_WITH_TIMEOUT(eventsOn(*store, later).isEmpty(), atMost);
    QCOMPARE(sortedTitles(eventsOn(*store, QDate(2026, 3, 10))), QStringList { u"Daily"_s });
}

void FolderWatchingTest::aFileAppearsAndVanishes()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "A")));
    const auto store = folder.open();

    folder.write(u"c/b.ics"_s, calendarText(taskText("b", "B")));
    QTRY_COMPARE_WITH_TIMEOUT(tasksOf(store), QStringList({ u"A"_s, u"B"_s }), atMost);
    QVERIFY(folder.remove(u"c/a.ics"_s));
    QTRY_COMPARE_WITH_TIMEOUT(tasksOf(store), QStringList { u"B"_s }, atMost);
    QVERIFY(!store->holdsUid(u"c"_s, u"a"_s));
    QVERIFY(QFile::rename(folder.path(u"c/b.ics"_s), folder.path(u"c/b.txt"_s)));
    QTRY_VERIFY_WITH_TIMEOUT(tasksOf(store).isEmpty(), atMost);
}

void FolderWatchingTest::aNewCalendarAppearsWithItsFiles()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "A")));
    const auto store = folder.open();

    folder.write(u"d/b.ics"_s, calendarText(taskText("b", "B")));
    QTRY_COMPARE_WITH_TIMEOUT(store->calendars().size(), 2, atMost);
    QTRY_COMPARE_WITH_TIMEOUT(tasksOf(store), QStringList({ u"A"_s, u"B"_s }), atMost);
    folder.write(u"d/c.ics"_s, calendarText(taskText("c", "C")));
    QTRY_COMPARE_WITH_TIMEOUT(tasksOf(store).size(), 3, atMost);
}

void FolderWatchingTest::aCalendarIsRenamedAndRemoved()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "A")));
    const auto store = folder.open();

    QVERIFY(QDir().rename(folder.path(u"c"_s), folder.path(u"d"_s)));
    QTRY_COMPARE_WITH_TIMEOUT(store->calendars().constFirst()->uid(), u"d"_s, atMost);
    QCOMPARE(tasksOf(store), QStringList { u"A"_s });
    folder.write(u"d/a.ics"_s, calendarText(taskText("a", "Changed")));
    QTRY_COMPARE_WITH_TIMEOUT(tasksOf(store), QStringList { u"Changed"_s }, atMost);
    QVERIFY(QDir(folder.path(u"d"_s)).removeRecursively());
    QTRY_VERIFY_WITH_TIMEOUT(store->calendars().isEmpty(), atMost);
    QVERIFY(tasksOf(store).isEmpty());
}

void FolderWatchingTest::aRootThatAppearsLaterIsFound()
{
    const CalendarFolder folder;
    const auto store = folder.open();
    QVERIFY(store->calendars().isEmpty());

    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "A")));

    QTRY_COMPARE_WITH_TIMEOUT(tasksOf(store), QStringList { u"A"_s }, atMost);
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "Changed")));
    QTRY_COMPARE_WITH_TIMEOUT(tasksOf(store), QStringList { u"Changed"_s }, atMost);
}

void FolderWatchingTest::aRootThatIsReplacedIsReadAgain()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "A")));
    const auto store = folder.open();

    QVERIFY(QDir().rename(folder.root(), folder.root() + u".old"_s));
    QTRY_VERIFY_WITH_TIMEOUT(store->calendars().isEmpty(), atMost);
    folder.write(u"c/b.ics"_s, calendarText(taskText("b", "B")));
    QTRY_COMPARE_WITH_TIMEOUT(tasksOf(store), QStringList { u"B"_s }, atMost);
}

void FolderWatchingTest::changesInALinkedFolderAreSeen()
{
    const CalendarFolder elsewhere;
    elsewhere.write(u"real/a.ics"_s, calendarText(taskText("a", "A")));
    const CalendarFolder folder;
    QDir().mkpath(folder.root());
    QVERIFY(QFile::link(elsewhere.path(u"real"_s), folder.path(u"mine"_s)));
    const auto store = folder.open();

    elsewhere.write(u"real/a.ics"_s, calendarText(taskText("a", "Changed")));

    QTRY_COMPARE_WITH_TIMEOUT(tasksOf(store), QStringList { u"Changed"_s }, atMost);
}

void FolderWatchingTest::changesOfALinkedSingleFileAreSeen()
{
    const CalendarFolder elsewhere;
    elsewhere.write(u"real.ics"_s, calendarText(taskText("a", "A")));
    const CalendarFolder folder;
    QDir().mkpath(folder.root());
    QVERIFY(QFile::link(elsewhere.path(u"real.ics"_s), folder.path(u"mine.ics"_s)));
    const auto store = folder.open();

    elsewhere.writeByRenaming(u"real.ics"_s, calendarText(taskText("a", "Changed")));

    QTRY_COMPARE_WITH_TIMEOUT(tasksOf(store), QStringList { u"Changed"_s }, atMost);
}

void FolderWatchingTest::aSingleFileIsReadAgain()
{
    const CalendarFolder folder;
    folder.write(u"one.ics"_s, calendarText("X-WR-CALNAME:Before\r\n" + taskText("a", "A")));
    const auto store = folder.open();
    QSignalSpy changed(store.get(), &FolderCalendarStore::changed);

    folder.write(u"one.ics"_s, calendarText("X-WR-CALNAME:After\r\n" + taskText("a", "B")));

    QTRY_COMPARE_WITH_TIMEOUT(tasksOf(store), QStringList { u"B"_s }, atMost);
    QCOMPARE(store->calendars().constFirst()->title(), u"After"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!changed.isEmpty(), atMost);
    QVERIFY(changed.constFirst().constFirst().value<CalBackendChange>().calendars);
}

void FolderWatchingTest::colourNameAndOrderAreFollowed()
{
    const CalendarFolder folder;
    folder.write(u"c/displayname"_s, "C");
    folder.write(u"d/displayname"_s, "D");
    const auto store = folder.open();
    QSignalSpy changed(store.get(), &FolderCalendarStore::changed);

    folder.write(u"d/displayname"_s, "Changed");
    folder.write(u"d/color"_s, "#102030");
    folder.writeByRenaming(u"d/order"_s, "1");

    QTRY_COMPARE_WITH_TIMEOUT(store->calendars().constFirst()->title(), u"Changed"_s, atMost);
    QTRY_COMPARE_WITH_TIMEOUT(store->calendars().constFirst()->color(), QColor(u"#102030"_s), atMost);
    QTRY_VERIFY_WITH_TIMEOUT(!changed.isEmpty(), atMost);
    const auto change = changed.constFirst().constFirst().value<CalBackendChange>();
    QVERIFY(change.calendars);
    QVERIFY(!change.events);
    QVERIFY(!change.tasks);
    QCOMPARE(change.calendarUids, QSet<QString> { u"d"_s });
}

void FolderWatchingTest::unchangedContentIsSilent()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "A")));
    folder.write(u"c/b.ics"_s, calendarText(taskText("b", "B")));
    const auto store = folder.open();
    QSignalSpy changed(store.get(), &FolderCalendarStore::changed);

    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "A")));
    folder.writeByRenaming(u"c/a.ics"_s, calendarText(taskText("a", "A")));
    QTest::qWait(0);
    folder.write(u"c/b.ics"_s, calendarText(eventText("b", "B", "20260311T090000")));

    QVERIFY(changed.wait(atMost));
    QCOMPARE(changed.size(), 1);
    QVERIFY(changed.constFirst().constFirst().value<CalBackendChange>().events); // of b alone, which was a to-do
}

void FolderWatchingTest::aChangeTellsWhatAndWhose()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "A")));
    folder.write(u"d/b.ics"_s, calendarText(eventText("b", "B", "20260311T090000")));
    const auto store = folder.open();
    QSignalSpy changed(store.get(), &FolderCalendarStore::changed);

    folder.write(u"d/b.ics"_s, calendarText(eventText("b", "Changed", "20260311T090000")));

    QVERIFY(changed.wait(atMost));
    const auto change = changed.constFirst().constFirst().value<CalBackendChange>();
    QCOMPARE(change.author, CalBackendChange::Author::Others);
    QVERIFY(change.events);
    QVERIFY(!change.tasks);
    QVERIFY(!change.calendars);
    QCOMPARE(change.calendarUids, QSet<QString> { u"d"_s });
}

void FolderWatchingTest::aStormMakesFewAnnouncements()
{
    constexpr int files = 1000;
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "A")));
    const auto store = folder.open();
    QSignalSpy changed(store.get(), &FolderCalendarStore::changed);
    QElapsedTimer timer;
    timer.start();

    for (int index = 0; index < files; ++index) {
        folder.writeByRenaming(u"c/%1.ics"_s.arg(index), calendarText(taskText(QByteArray::number(index), "Task")));
        QCoreApplication::processEvents();
    }

    QTRY_COMPARE_WITH_TIMEOUT(allTasks(*store).size(), files + 1, 5000);
    QTRY_VERIFY(!changed.isEmpty());
    QVERIFY2(changed.size() <= 2 + timer.elapsed() / 200, qPrintable(QString::number(changed.size())));
}

void FolderWatchingTest::aHalfWrittenFileKeepsItsLastState()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "Before")));
    const auto store = folder.open();
    QSignalSpy changed(store.get(), &FolderCalendarStore::changed);
    const QByteArray after = calendarText(taskText("a", "After"));

    // A careless program writes half, closes the file, and goes on later.
    folder.write(u"c/a.ics"_s, after.left(after.size() / 2));
    folder.write(u"c/b.ics"_s, calendarText(taskText("b", "Witness")));
    QTRY_VERIFY_WITH_TIMEOUT(taskNamed(*store, u"Witness"_s), atMost);
    QVERIFY(taskNamed(*store, u"Before"_s));
    folder.write(u"c/a.ics"_s, after);

    QTRY_VERIFY_WITH_TIMEOUT(taskNamed(*store, u"After"_s), atMost);
    QCOMPARE(allTasks(*store).size(), 2);
}

void FolderWatchingTest::aFileThatStaysCutIsTakenAsItIs()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "Before") + taskText("b", "Cut away")));
    const auto store = folder.open();

    folder.write(u"c/a.ics"_s, "BEGIN:VCALENDAR\r\n" + taskText("a", "After"));

    QTRY_COMPARE_WITH_TIMEOUT(tasksOf(store), QStringList { u"After"_s }, 4000);
}

void FolderWatchingTest::anEmptiedFileKeepsItsLastStateUntilItSettles()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "Before")));
    folder.write(u"c/b.ics"_s, calendarText(taskText("b", "B")));
    const auto store = folder.open();

    folder.write(u"c/a.ics"_s, {});
    folder.write(u"c/b.ics"_s, calendarText(taskText("b", "Witness")));
    QTRY_VERIFY_WITH_TIMEOUT(taskNamed(*store, u"Witness"_s), atMost);
    QVERIFY(taskNamed(*store, u"Before"_s));

    QTRY_COMPARE_WITH_TIMEOUT(tasksOf(store), QStringList { u"Witness"_s }, 4000);
}

VANTLE_TEST(FolderWatchingTest)
#include "FolderWatchingTest.moc"
