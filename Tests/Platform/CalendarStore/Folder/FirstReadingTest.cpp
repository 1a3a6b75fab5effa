// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "TestRegistry.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <ctime>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

const QDate day(2026, 3, 11);

} // namespace

// How a folder too big for one go is read: piece by piece, the window staying alive.
class FirstReadingTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFirstReadingGoesOnAfterItsBudget();
    void theWindowIsNeverKeptWaiting();
};

void FirstReadingTest::theFirstReadingGoesOnAfterItsBudget()
{
    constexpr int files = 2000;
    const CalendarFolder folder;
    for (int index = 0; index < files; ++index)
        folder.write(u"c/%1.ics"_s.arg(index), calendarText(taskText(QByteArray::number(index), "Task")));
    FolderCalendarStore::Options options;
    options.readingBudget = 0ms;

    const auto store = folder.open(options);
    QSignalSpy loaded(store.get(), &FolderCalendarStore::loaded);
    QSignalSpy changed(store.get(), &FolderCalendarStore::changed);
    QVERIFY(!store->isComplete());
    QCOMPARE(store->calendars().size(), 1);
    QVERIFY(allTasks(*store).size() < files);

    QVERIFY(loaded.wait());
    QVERIFY(store->isComplete());
    QCOMPARE(allTasks(*store).size(), files);
    QTRY_VERIFY(!changed.isEmpty());
    QCOMPARE(loaded.size(), 1);
}

void FirstReadingTest::theWindowIsNeverKeptWaiting()
{
    constexpr int files = 10000;
    constexpr qint64 longestGap = 100;
    const CalendarFolder folder;
    for (int index = 0; index < files; ++index)
        folder.write(u"c/%1.ics"_s.arg(index),
            calendarText(eventText(QByteArray::number(index), "Event",
                QDateTime(day, QTime(8, 0)).addSecs(3600LL * index).toString(u"yyyyMMdd'T'hhmmss"_s).toLatin1())));
    QByteArray big;
    for (int index = 0; index < files; ++index)
        big += eventText("big" + QByteArray::number(index), "Big", "20260311T090000");
    folder.write(u"big.ics"_s, calendarText(big));
    FolderCalendarStore::Options options;
    options.readingBudget = 50ms;

    // Counted in the thread's own time as well, for other programs may take the processor away.
    const auto threadMilliseconds = [] {
        timespec spent {};
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &spent);
        return spent.tv_sec * 1000LL + spent.tv_nsec / 1000000;
    };
    QElapsedTimer sinceLast;
    qint64 gap = 0;
    qint64 longestWork = 0;
    qint64 worked = 0;
    const auto store = folder.open(options);
    QSignalSpy loaded(store.get(), &FolderCalendarStore::loaded);
    QTimer beat;
    connect(&beat, &QTimer::timeout, &beat, [&] {
        gap = std::max(gap, sinceLast.restart());
        longestWork = std::max(longestWork, threadMilliseconds() - std::exchange(worked, threadMilliseconds()));
    });
    sinceLast.start();
    worked = threadMilliseconds();
    beat.start(1);
    while (!store->isComplete())
        QVERIFY(loaded.wait(30000));

    qInfo("longest gap while reading: %lld ms, of work: %lld ms", gap, longestWork);
    QVERIFY(longestWork < 3 * longestGap);
    QVERIFY(gap < 10 * longestGap);
    QCOMPARE(eventsOn(*store, day).size(), 10000 + 16);
}

VANTLE_TEST(FirstReadingTest)
#include "FirstReadingTest.moc"
