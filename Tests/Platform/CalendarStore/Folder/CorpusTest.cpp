// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "CorpusFiles.h"
#include "TestRegistry.h"

#include <QElapsedTimer>
#include <QTest>

#include <array>

using namespace Qt::StringLiterals;

namespace
{

const QDate day(2026, 3, 11);
constexpr qint64 mostMillisecondsPerFile = 3 * 2000; // three times the goal, for a busy machine
constexpr qsizetype fewestCorpusFiles = 500;

void writeNeighbours(const CalendarFolder &folder)
{
    folder.write(u"c/0-before.ics"_s, calendarText(eventText("neighbour-1", "Neighbour", "20260311T090000")));
    folder.write(u"c/zz-behind.ics"_s, calendarText(taskText("neighbour-2", "Neighbour")));
}

bool neighboursAreShown(const FolderCalendarStore &store)
{
    return sortedTitles(eventsOn(store, day)).contains(u"Neighbour"_s)
        && sortedTitles(allTasks(store)).contains(u"Neighbour"_s);
}

// Days of years in which calendars of all kinds have something, and such that have nothing.
void askAround(const FolderCalendarStore &store)
{
    constexpr std::array years { 1, 1600, 1970, 1997, 2008, 2016, 2024, 2026, 9999 };
    for (const int year : years)
        (void)eventsOn(store, QDate(year, 3, 30));
}

} // namespace

// Calendar files of other projects: each alone beside good neighbours, and all of them together.
class CorpusTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theCorpusIsThere();
    void everyFileAloneHidesNoNeighbour();
    void allFilesTogetherHideNoNeighbour();
};

void CorpusTest::theCorpusIsThere()
{
    const QString corpus = QStringLiteral(VANTLE_CORPUS);
    QVERIFY2(!corpus.isEmpty(),
        "No folder of real calendar files was given. Configure with -DVANTLE_CORPUS_DIR=/path/to/corpus.");
    QVERIFY2(calendarFilesBelow(corpus).size() >= fewestCorpusFiles, qPrintable(corpus));
}

void CorpusTest::everyFileAloneHidesNoNeighbour()
{
    for (const QString &path : calendarFilesBelow(QStringLiteral(VANTLE_CORPUS))) {
        const QByteArray bytes = bytesOf(path);
        const CalendarFolder folder;
        writeNeighbours(folder);
        folder.write(u"c/sample.ics"_s, bytes);
        QElapsedTimer timer;
        timer.start();

        const auto store = folder.openWithoutWatching();
        QVERIFY2(neighboursAreShown(*store), qPrintable(path));
        askAround(*store);

        QVERIFY2(timer.elapsed() < mostMillisecondsPerFile, qPrintable(path));
        QVERIFY2(folder.read(u"c/sample.ics"_s) == bytes, qPrintable(path));
    }
}

void CorpusTest::allFilesTogetherHideNoNeighbour()
{
    const CalendarFolder folder;
    writeNeighbours(folder);
    QHash<QString, QByteArray> written;
    for (const QString &path : calendarFilesBelow(QStringLiteral(VANTLE_CORPUS)))
        written.insert(u"c/%1.ics"_s.arg(written.size()), bytesOf(path));
    for (auto each = written.cbegin(); each != written.cend(); ++each)
        folder.write(each.key(), each.value());
    QElapsedTimer timer;

    timer.start();
    const auto store = folder.openWithoutWatching();
    const qint64 reading = timer.restart();
    QVERIFY(neighboursAreShown(*store));
    qInfo("%lld files: read in %lld ms, first day in %lld ms", qint64(written.size()), reading, timer.elapsed());
    askAround(*store);

    for (auto each = written.cbegin(); each != written.cend(); ++each)
        QCOMPARE(folder.read(each.key()), each.value());
}

VANTLE_TEST(CorpusTest)
#include "CorpusTest.moc"
