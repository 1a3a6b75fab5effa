// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "TestRegistry.h"

#include <FolderSynchronizer.h>

#include <QDir>
#include <QFile>
#include <QTest>

#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace FolderStore;

namespace
{

constexpr int atMost = 1000;

// A system that has no more watches: none at all, or none for certain folders.
class FewWatches final : public WatchCalls
{
public:
    FewWatches(bool hasQueue, QByteArray unwatched)
        : m_hasQueue(hasQueue)
        , m_unwatched(std::move(unwatched))
    {
    }

    int start() override
    {
        if (m_hasQueue)
            return WatchCalls::start();
        errno = EMFILE;
        return -1;
    }
    int watch(int queue, const char *folder, quint32 events) override
    {
        if (!QByteArray(folder).endsWith(m_unwatched))
            return WatchCalls::watch(queue, folder, events);
        errno = ENOSPC;
        return -1;
    }

private:
    bool m_hasQueue;
    QByteArray m_unwatched;
};

// More changes than the system keeps for somebody who does not ask for them.
bool overflowTheQueue(const CalendarFolder &folder)
{
    QFile limit(u"/proc/sys/fs/inotify/max_queued_events"_s);
    if (!limit.open(QIODevice::ReadOnly))
        return false;
    const int changes = limit.readAll().trimmed().toInt() + 100;
    const QByteArray one = QFile::encodeName(folder.path(u"c/1.ics"_s));
    const QByteArray other = QFile::encodeName(folder.path(u"c/2.ics"_s));
    // In turns, for a change that repeats the one before is not kept twice.
    for (int change = 0; change < changes; ++change) {
        if (::chmod(change % 2 == 0 ? one.constData() : other.constData(), 0600) != 0)
            return false;
    }
    return true;
}

QStringList titlesIn(const FolderSynchronizer &synchronizer)
{
    QStringList titles;
    for (const auto &collection : synchronizer.collections()) {
        for (const FileSnapshotPtr &file : collection->files())
            titles << file->document().items.constFirst().summary;
    }
    titles.sort();
    return titles;
}

} // namespace

// Changes that the system does not tell of are found all the same.
class LostChangesTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void moreChangesThanTheSystemKeepsAreFound();
    void foldersThatCannotBeWatchedAreLookedAtAgainAndAgain_data();
    void foldersThatCannotBeWatchedAreLookedAtAgainAndAgain();
    void watchedFoldersAreNotLookedAtAgain();
    void aFolderThatMayNotBeLookedIntoIsClosed();
    void aChangeOfALinkedFilesTargetIsSeen();
    void aLinkThatLeadsElsewhereIsFollowedThere();
    void aLinkedFilesTargetThatComesBackIsSeen();
};

void LostChangesTest::moreChangesThanTheSystemKeepsAreFound()
{
    const CalendarFolder folder;
    folder.write(u"c/1.ics"_s, calendarText(taskText("a", "One")));
    folder.write(u"c/2.ics"_s, calendarText(taskText("b", "Two")));
    folder.write(u"c/3.ics"_s, calendarText(taskText("c", "Three")));
    const auto store = folder.open();

    QVERIFY(overflowTheQueue(folder));
    folder.write(u"c/4.ics"_s, calendarText(taskText("d", "Four")));
    folder.write(u"c/2.ics"_s, calendarText(taskText("b", "Changed")));
    QVERIFY(folder.remove(u"c/3.ics"_s));
    folder.write(u"e/5.ics"_s, calendarText(taskText("e", "Five")));

    QTRY_COMPARE_WITH_TIMEOUT(
        sortedTitles(allTasks(*store)), QStringList({ u"Changed"_s, u"Five"_s, u"Four"_s, u"One"_s }), 3 * atMost);
}

void LostChangesTest::foldersThatCannotBeWatchedAreLookedAtAgainAndAgain_data()
{
    QTest::addColumn<bool>("hasQueue");
    QTest::addColumn<QByteArray>("unwatched");

    QTest::newRow("nothing can be watched") << false << QByteArray("/");
    QTest::newRow("no watch is left for a calendar") << true << QByteArray("/c");
    QTest::newRow("no watch is left for the root") << true << QByteArray("/calendars");
}

void LostChangesTest::foldersThatCannotBeWatchedAreLookedAtAgainAndAgain()
{
    QFETCH(const bool, hasQueue);
    QFETCH(const QByteArray, unwatched);
    const CalendarFolder folder;
    folder.write(u"c/1.ics"_s, calendarText(taskText("a", "One")));
    folder.write(u"c/2.ics"_s, calendarText(taskText("b", "Two")));
    FolderCalendarStore::Options options;
    options.root = folder.root();
    FolderSynchronizer synchronizer(
        options, std::make_unique<FolderWatcher>(std::make_unique<FewWatches>(hasQueue, unwatched), 50ms));
    synchronizer.open();
    QCOMPARE(titlesIn(synchronizer), QStringList({ u"One"_s, u"Two"_s }));

    folder.writeByRenaming(u"c/1.ics"_s, calendarText(taskText("a", "Changed")));
    QVERIFY(folder.remove(u"c/2.ics"_s));
    folder.write(u"d/3.ics"_s, calendarText(taskText("c", "Three")));

    QTRY_COMPARE_WITH_TIMEOUT(titlesIn(synchronizer), QStringList({ u"Changed"_s, u"Three"_s }), atMost);
}

void LostChangesTest::watchedFoldersAreNotLookedAtAgain()
{
    const CalendarFolder folder;
    folder.write(u"c/1.ics"_s, calendarText(taskText("a", "One")));
    FolderWatcher watcher(std::make_unique<FewWatches>(true, "/nowhere"), 1ms);
    int looks = 0;
    connect(&watcher, &FolderWatcher::changesLost, &watcher, [&] { ++looks; });

    QVERIFY(watcher.watch(folder.path(u"c"_s)));
    QVERIFY(!watcher.watch(folder.path(u"d"_s))); // is not there: nothing to look at
    QTest::qWait(50);
    QCOMPARE(looks, 0);

    FolderWatcher blind(std::make_unique<FewWatches>(true, "/c"), 1ms);
    connect(&blind, &FolderWatcher::changesLost, &blind, [&] { ++looks; });
    QVERIFY(blind.watch(folder.path(u"c"_s)));
    QTRY_VERIFY(looks > 2);
}

void LostChangesTest::aFolderThatMayNotBeLookedIntoIsClosed()
{
    const CalendarFolder folder;
    folder.write(u"c/1.ics"_s, calendarText(taskText("a", "One")));
    const QByteArray closed = QFile::encodeName(folder.path(u"c"_s));
    QVERIFY(::chmod(QFile::encodeName(folder.path(u".."_s)).constData(), 0755) == 0);
    constexpr uid_t nobody = 65534;
    const bool isRoot = ::geteuid() == 0; // rights bind root to nothing
    QVERIFY(::chmod(closed.constData(), 0) == 0);
    QVERIFY(!isRoot || ::seteuid(nobody) == 0);

    const FolderDifferences differences = differencesIn(folder.path(u"c"_s), {});

    QVERIFY(!isRoot || ::seteuid(0) == 0);
    QVERIFY(::chmod(closed.constData(), 0700) == 0);
    QVERIFY(differences.isClosed);
    QCOMPARE(differences.faults.size(), 1);
    QVERIFY(differences.names.isEmpty());
}

void LostChangesTest::aChangeOfALinkedFilesTargetIsSeen()
{
    const CalendarFolder elsewhere;
    elsewhere.write(u"shared/list.txt"_s, calendarText(taskText("a", "Before")));
    const CalendarFolder folder;
    folder.write(u"c/own.ics"_s, calendarText(taskText("b", "Own")));
    QVERIFY(QFile::link(elsewhere.path(u"shared/list.txt"_s), folder.path(u"c/linked.ics"_s)));
    const auto store = folder.open();
    QCOMPARE(sortedTitles(allTasks(*store)), QStringList({ u"Before"_s, u"Own"_s }));

    elsewhere.write(u"shared/list.txt"_s, calendarText(taskText("a", "In place")));
    QTRY_COMPARE_WITH_TIMEOUT(sortedTitles(allTasks(*store)), QStringList({ u"In place"_s, u"Own"_s }), atMost);

    elsewhere.writeByRenaming(u"shared/list.txt"_s, calendarText(taskText("a", "Renamed over")));
    QTRY_COMPARE_WITH_TIMEOUT(sortedTitles(allTasks(*store)), QStringList({ u"Own"_s, u"Renamed over"_s }), atMost);
}

void LostChangesTest::aLinkThatLeadsElsewhereIsFollowedThere()
{
    const CalendarFolder elsewhere;
    const QByteArray text = calendarText(taskText("a", "Same"));
    elsewhere.write(u"one/a.ics"_s, text);
    elsewhere.write(u"two/a.ics"_s, text);
    const CalendarFolder folder;
    QVERIFY(QDir().mkpath(folder.path(u"c"_s)));
    QVERIFY(QFile::link(elsewhere.path(u"one/a.ics"_s), folder.path(u"c/a.ics"_s)));
    folder.write(u"c/witness.ics"_s, calendarText(taskText("b", "Before")));
    const auto store = folder.open();

    QVERIFY(folder.remove(u"c/a.ics"_s));
    QVERIFY(QFile::link(elsewhere.path(u"two/a.ics"_s), folder.path(u"c/a.ics"_s)));
    folder.write(u"c/witness.ics"_s, calendarText(taskText("b", "After")));
    QTRY_COMPARE_WITH_TIMEOUT(sortedTitles(allTasks(*store)), QStringList({ u"After"_s, u"Same"_s }), atMost);
    elsewhere.write(u"two/a.ics"_s, calendarText(taskText("a", "Changed")));

    QTRY_COMPARE_WITH_TIMEOUT(sortedTitles(allTasks(*store)), QStringList({ u"After"_s, u"Changed"_s }), atMost);
}

void LostChangesTest::aLinkedFilesTargetThatComesBackIsSeen()
{
    const CalendarFolder elsewhere;
    elsewhere.write(u"a.ics"_s, calendarText(taskText("a", "Linked")));
    const CalendarFolder folder;
    QVERIFY(QDir().mkpath(folder.path(u"c"_s)));
    QVERIFY(QFile::link(elsewhere.path(u"a.ics"_s), folder.path(u"c/a.ics"_s)));
    const auto store = folder.open();

    QVERIFY(elsewhere.remove(u"a.ics"_s));
    QTRY_VERIFY_WITH_TIMEOUT(allTasks(*store).isEmpty(), atMost);
    elsewhere.write(u"a.ics"_s, calendarText(taskText("a", "Back")));

    QTRY_COMPARE_WITH_TIMEOUT(sortedTitles(allTasks(*store)), QStringList { u"Back"_s }, atMost);
}

VANTLE_TEST(LostChangesTest)
#include "LostChangesTest.moc"
