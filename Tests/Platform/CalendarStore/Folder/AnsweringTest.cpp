// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "TestRegistry.h"

#include <CalCalendarStore.h>

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <ctime>
#include <thread>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

const QDate day(2026, 3, 11);
constexpr int manyFiles = 10000;
constexpr int changedFiles = 3000; // the first ones
const QDate lastDay = day.addDays((8 + manyFiles - 1) / 24);

// How long the event loop is kept from its next turn, and how much of that is our own doing: work, and waiting for
// anything but the processor, which other programs may have taken away.
class TurnMeter final : public QObject
{
public:
    TurnMeter()
    {
        connect(&m_beat, &QTimer::timeout, this, &TurnMeter::measure);
        m_sinceLast.start();
        m_ousted = ousted();
        m_worked = worked();
        m_beat.start(1);
    }

    bool isWithinBounds(const char *what) const
    {
        constexpr qint64 goal = 100; // milliseconds
        qInfo("longest turn %s: %lld ms, %lld ms of our own, of work: %lld ms", what, m_longestGap, m_longestOwnGap,
            m_longestWork);
        return m_longestWork < goal && m_longestOwnGap < 3 * goal;
    }

private:
    void measure()
    {
        const qint64 gap = m_sinceLast.restart();
        const qint64 oustedByNow = ousted();
        const qint64 oustedMeanwhile = oustedByNow - std::exchange(m_ousted, oustedByNow);
        m_longestGap = std::max(m_longestGap, gap);
        m_longestOwnGap = std::max(m_longestOwnGap, gap - oustedMeanwhile);
        const qint64 workedByNow = worked();
        m_longestWork = std::max(m_longestWork, workedByNow - std::exchange(m_worked, workedByNow));
    }
    static qint64 worked()
    {
        timespec spent {};
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &spent);
        return spent.tv_sec * 1000LL + spent.tv_nsec / 1000000;
    }
    // How long the thread had something to do and no processor to do it on. Absent in rare kernels: then none.
    static qint64 ousted()
    {
        QFile file(u"/proc/thread-self/schedstat"_s);
        const QByteArrayList words = file.open(QIODevice::ReadOnly) ? file.readAll().split(' ') : QByteArrayList();
        return words.value(1).toLongLong() / 1000000;
    }

    QTimer m_beat;
    QElapsedTimer m_sinceLast;
    qint64 m_worked = 0;
    qint64 m_ousted = 0;
    qint64 m_longestGap = 0;
    qint64 m_longestOwnGap = 0;
    qint64 m_longestWork = 0;
};

QString nameOf(int index)
{
    return u"c/%1.ics"_s.arg(index);
}

// An event an hour, from the day on.
QByteArray eventOf(int index, const QByteArray &title)
{
    const QDateTime start = QDateTime(day, QTime(8, 0), Qt::UTC).addSecs(3600LL * index);
    return calendarText(eventText(QByteArray::number(index), title, start.toString(u"yyyyMMdd'T'hhmmss"_s).toLatin1()));
}

void writeManyFiles(const CalendarFolder &folder, const QByteArray &title)
{
    for (int index = 0; index < manyFiles; ++index)
        folder.write(nameOf(index), eventOf(index, title));
}

qsizetype countOn(const FolderCalendarStore &store, QDate date, const QString &title)
{
    return sortedTitles(eventsOn(store, date)).count(title);
}

} // namespace

// The window answers while ten thousand files are read and change: the work comes in small turns.
class AnsweringTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whileAFullFolderIsReadForTheFirstTime();
    void whileThousandsOfFilesChange();
    void whileAFullFolderIsLookedThroughForLostChanges();
    void whileAFullFolderIsTakenAway();
    void tenThousandChangesAreToldAFewTimesASecond();
};

void AnsweringTest::whileAFullFolderIsReadForTheFirstTime()
{
    const CalendarFolder folder;
    writeManyFiles(folder, "Event");
    QByteArray big;
    for (int index = 0; index < manyFiles; ++index)
        big += eventText("big" + QByteArray::number(index), "Big", "20260311T090000");
    folder.write(u"big.ics"_s, calendarText(big));
    FolderCalendarStore::Options options;
    options.readingBudget = 50ms;

    const auto store = folder.open(options);
    QSignalSpy loaded(store.get(), &FolderCalendarStore::loaded);
    const TurnMeter meter;
    while (!store->isComplete())
        QVERIFY(loaded.wait(30000));

    QVERIFY(meter.isWithinBounds("of the first reading"));
    QCOMPARE(eventsOn(*store, day).size(), manyFiles + 16);
}

void AnsweringTest::whileThousandsOfFilesChange()
{
    const CalendarFolder folder;
    writeManyFiles(folder, "Before");
    const auto store = folder.open();
    const QDate lastChanged = day.addDays((8 + changedFiles - 1) / 24);
    QCOMPARE(countOn(*store, lastChanged, u"Before"_s), 24);

    const TurnMeter meter;
    std::jthread neighbour([&folder] {
        for (int index = 0; index < changedFiles; ++index)
            folder.writeByRenaming(nameOf(index), eventOf(index, "After"));
    });
    QTRY_COMPARE_WITH_TIMEOUT(countOn(*store, lastChanged, u"After"_s), 8, 60000);
    neighbour.join();
    QTRY_COMPARE_WITH_TIMEOUT(countOn(*store, day, u"After"_s), 16, 60000);

    QVERIFY(meter.isWithinBounds("while thousands change"));
    QVERIFY(countOn(*store, lastDay, u"Before"_s) > 0);
}

void AnsweringTest::whileAFullFolderIsLookedThroughForLostChanges()
{
    const CalendarFolder folder;
    writeManyFiles(folder, "Event");
    const CalendarFolder elsewhere;
    const auto store = folder.open();
    writeManyFiles(elsewhere, "Event");

    // A folder that comes whole tells of no file in it.
    const TurnMeter meter;
    QVERIFY(QFile::rename(elsewhere.path(u"c"_s), folder.path(u"d"_s)));
    QTRY_COMPARE_WITH_TIMEOUT(countOn(*store, day, u"Event"_s), 32, 60000);
    QTRY_COMPARE_WITH_TIMEOUT(countOn(*store, lastDay, u"Event"_s), 48, 60000);

    QVERIFY(meter.isWithinBounds("while a folder is looked through"));
}

void AnsweringTest::whileAFullFolderIsTakenAway()
{
    const CalendarFolder folder;
    writeManyFiles(folder, "Event");
    const auto store = folder.open();

    const TurnMeter meter;
    std::jthread neighbour([&folder] {
        for (int index = 0; index < manyFiles; ++index)
            (void)folder.remove(nameOf(index));
    });
    QTRY_VERIFY_WITH_TIMEOUT(!store->holdsUid(u"c"_s, QString::number(manyFiles - 1)), 60000);
    neighbour.join();

    QVERIFY(meter.isWithinBounds("while thousands vanish"));
    const QDateTime begin(day, QTime(0, 0));
    QTRY_VERIFY(store->events(begin, begin.addYears(3), store->calendars()).isEmpty());
}

// Whoever hears of a change fetches everything anew.
void AnsweringTest::tenThousandChangesAreToldAFewTimesASecond()
{
    constexpr int atMost = 5; // in a second
    const CalendarFolder folder;
    writeManyFiles(folder, "Before");
    std::vector<std::unique_ptr<CalendarStoreBackend>> backends;
    backends.push_back(folder.open());
    const auto &backend = static_cast<const FolderCalendarStore &>(*backends.front());
    const CalCalendarStore store(std::move(backends));
    QElapsedTimer clock;
    std::vector<qint64> told; // milliseconds
    connect(&store, &CalCalendarStore::notificationPosted, this, [&] { told.push_back(clock.elapsed()); });

    clock.start();
    std::thread other([&folder] {
        for (int index = 0; index < manyFiles; ++index)
            folder.writeByRenaming(nameOf(index), eventOf(index, "After"));
    });
    QTRY_COMPARE_WITH_TIMEOUT(countOn(backend, lastDay, u"Before"_s), 0, 120'000);
    QTRY_COMPARE_WITH_TIMEOUT(countOn(backend, day, u"Before"_s), 0, 120'000);
    other.join();
    QTRY_VERIFY_WITH_TIMEOUT(!told.empty() && clock.elapsed() - told.back() > 1000, 120'000);

    qInfo("%d changes told by %zu notifications in %lld ms", manyFiles, told.size(), told.back() - told.front());
    for (std::size_t index = atMost; index < told.size(); ++index) {
        const qint64 apart = told[index] - told[index - atMost];
        QVERIFY2(apart >= 1000, qPrintable(u"%1 within %2 ms"_s.arg(atMost + 1).arg(apart)));
    }
    QCOMPARE(countOn(backend, day, u"After"_s), 16);
}

VANTLE_TEST(AnsweringTest)
#include "AnsweringTest.moc"
