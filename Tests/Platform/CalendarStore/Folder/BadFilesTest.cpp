// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "TestRegistry.h"

#include <QFile>
#include <QTest>

#include <algorithm>
#include <ctime>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

const QDate day(2026, 3, 11);

// Counts notes of the store and keeps their texts while it lives.
class Notes final
{
public:
    Notes()
    {
        s_texts.clear();
        s_previous = qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &context, const QString &text) {
            if (qstrcmp(context.category, "vantle.store") == 0)
                s_texts << text;
            else
                s_previous(type, context, text);
        });
    }
    ~Notes() { qInstallMessageHandler(s_previous); }
    Notes(const Notes &) = delete;
    Notes &operator=(const Notes &) = delete;

    static qsizetype about(const QString &text)
    {
        return std::ranges::count_if(s_texts, [&](const QString &each) { return each.contains(text); });
    }

private:
    static inline QStringList s_texts;
    static inline QtMessageHandler s_previous = nullptr;
};

} // namespace

// Broken, unreadable and oversized files: they hide no good ones, and the notes name them.
class BadFilesTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void badFilesHideNoGoodOnes();
    void pipesSocketsFoldersAndLoopsAreSkippedWithANote();
    void anUnreadableFileIsSkippedWithANote();
    void aHugeFileIsSkippedWithOneNote();
    void aHugeLineAndAHugeTitleHideNoGoodFiles();
    void tenThousandOverridesAreAskedForAtOnce();
    void thousandsOfPropertiesHideNothing();
    void tooFrequentRulesShowTheirFirstInstanceAndOneNote();
    void bytesThatAreNoTextSurviveASave();
};

void BadFilesTest::badFilesHideNoGoodOnes()
{
    const CalendarFolder folder;
    const QByteArray good = calendarText(eventText("good", "Good", "20260311T090000"));
    const QList<QByteArray> bad { {}, "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nUID:cut\r\nDTST",
        "<html><body>404</body></html>", QByteArray(5000, '\0'), QByteArray::fromHex("fffe42004500"), "\xef\xbb\xbf",
        QByteArray("BEGIN:VEVENT\r\n").repeated(3000), good.left(good.size() - 20), "END:VCALENDAR\r\n" };
    for (int index = 0; index < bad.size(); ++index)
        folder.write(u"c/bad%1.ics"_s.arg(index), bad.at(index));
    folder.write(u"c/zgood.ics"_s, good);

    const auto store = folder.openWithoutWatching();

    QVERIFY(sortedTitles(eventsOn(*store, day)).contains(u"Good"_s));
    for (int index = 0; index < bad.size(); ++index)
        QCOMPARE(folder.read(u"c/bad%1.ics"_s.arg(index)), bad.at(index));
}

void BadFilesTest::pipesSocketsFoldersAndLoopsAreSkippedWithANote()
{
    const CalendarFolder folder;
    folder.write(u"c/good.ics"_s, calendarText(taskText("a", "Good")));
    folder.write(u"c/folder.ics/inner.ics"_s, calendarText(taskText("b", "Inner")));
    QVERIFY(::mkfifo(QFile::encodeName(folder.path(u"c/pipe.ics"_s)).constData(), 0600) == 0);
    QVERIFY(::mkfifo(QFile::encodeName(folder.path(u"pipe.ics"_s)).constData(), 0600) == 0);
    QVERIFY(::mkfifo(QFile::encodeName(folder.path(u"c/color"_s)).constData(), 0600) == 0);
    QVERIFY(QFile::link(folder.path(u"c/loop.ics"_s), folder.path(u"c/loop.ics"_s)));
    QVERIFY(QFile::link(folder.path(u"c/nowhere"_s), folder.path(u"c/dangling.ics"_s)));
    QVERIFY(QFile::link(u"/dev/zero"_s, folder.path(u"c/device.ics"_s)));
    const int listener = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address {};
    address.sun_family = AF_UNIX;
    const QByteArray socketPath = QFile::encodeName(folder.path(u"c/socket.ics"_s));
    QVERIFY(socketPath.size() < static_cast<qsizetype>(sizeof(address.sun_path)));
    std::ranges::copy(socketPath, address.sun_path);
    QVERIFY(::bind(listener, reinterpret_cast<const sockaddr *>(&address), sizeof(address)) == 0);
    const Notes notes;

    const auto store = folder.openWithoutWatching();

    ::close(listener);
    QCOMPARE(sortedTitles(allTasks(*store)), QStringList { u"Good"_s });
    QCOMPARE(store->calendars().size(), 1);
    for (const QString &name : { u"c/folder.ics"_s, u"c/pipe.ics"_s, u"calendars/pipe.ics"_s, u"c/loop.ics"_s,
             u"c/dangling.ics"_s, u"c/device.ics"_s, u"c/socket.ics"_s, u"c/color"_s })
        QVERIFY2(Notes::about(name) == 1, qPrintable(name));
}

void BadFilesTest::anUnreadableFileIsSkippedWithANote()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "Locked")));
    folder.write(u"c/b.ics"_s, calendarText(taskText("b", "Good")));
    QVERIFY(::chmod(QFile::encodeName(folder.path(u"c/a.ics"_s)).constData(), 0) == 0);
    QVERIFY(::chmod(QFile::encodeName(folder.path(u".."_s)).constData(), 0755) == 0);
    constexpr uid_t nobody = 65534;
    const bool isRoot = ::geteuid() == 0; // rights bind root to nothing
    QVERIFY(!isRoot || ::seteuid(nobody) == 0);
    const Notes notes;

    const auto store = folder.openWithoutWatching();

    QVERIFY(!isRoot || ::seteuid(0) == 0);
    QCOMPARE(sortedTitles(allTasks(*store)), QStringList { u"Good"_s });
    QCOMPARE(Notes::about(u"c/a.ics"_s), 1);
}

void BadFilesTest::aHugeFileIsSkippedWithOneNote()
{
    constexpr qsizetype fiftyMegabytes = 50 * 1024 * 1024;
    const CalendarFolder folder;
    folder.write(u"c/huge.ics"_s, QByteArray(fiftyMegabytes, 'x'));
    folder.write(u"c/good.ics"_s, calendarText(taskText("a", "Good")));
    const Notes notes;

    const auto store = folder.openWithoutWatching();

    QCOMPARE(sortedTitles(allTasks(*store)), QStringList { u"Good"_s });
    QCOMPARE(Notes::about(u"c/huge.ics"_s), 1);
}

void BadFilesTest::aHugeLineAndAHugeTitleHideNoGoodFiles()
{
    const CalendarFolder folder;
    folder.write(u"c/line.ics"_s,
        calendarText(taskText("line", "Line", "DESCRIPTION:" + QByteArray(20 * 1024 * 1024, 'x') + "\r\n")));
    folder.write(u"c/title.ics"_s, calendarText(taskText("title", QByteArray(1024 * 1024, 't'))));
    folder.write(u"c/good.ics"_s, calendarText(taskText("a", "Good")));

    const Notes notes;

    const auto store = folder.openWithoutWatching();

    QVERIFY(taskNamed(*store, u"Good"_s));
    QVERIFY(store->holdsUid(u"c"_s, u"title"_s));
    QCOMPARE(Notes::about(u"c/line.ics"_s), 1);
    QCOMPARE(taskNamed(*store, u"Line"_s)->notes(), std::nullopt);
}

void BadFilesTest::tenThousandOverridesAreAskedForAtOnce()
{
    const CalendarFolder folder;
    QByteArray text = eventText("many", "Usual", "20200101T090000Z", "DURATION:PT1H\r\nRRULE:FREQ=DAILY\r\n");
    for (int index = 0; index < 10000; ++index) {
        const QByteArray date = QDate(2020, 1, 1).addDays(index).toString(u"yyyyMMdd"_s).toLatin1();
        text
            += eventText("many", "Moved", date + "T150000Z", "DURATION:PT1H\r\nRECURRENCE-ID:" + date + "T090000Z\r\n");
    }
    folder.write(u"c/many.ics"_s, calendarText(text));
    folder.write(u"c/good.ics"_s, calendarText(eventText("good", "Good", "20260311T100000")));
    const auto store = folder.openWithoutWatching();
    const std::clock_t begin = std::clock();

    const CalEventList events = eventsOn(*store, day);

    constexpr std::clock_t goal = 100 * CLOCKS_PER_SEC / 1000;
    QVERIFY(std::clock() - begin < 3 * goal);
    QCOMPARE(sortedTitles(events), QStringList({ u"Good"_s, u"Moved"_s }));
}

void BadFilesTest::thousandsOfPropertiesHideNothing()
{
    const CalendarFolder folder;
    const QByteArray unknown = QByteArray("X-UNKNOWN;X-PARAMETER=value:text\r\n").repeated(100'000);
    folder.write(u"c/a.ics"_s,
        calendarText(unknown + eventText("a", "Full", "20260311T090000", unknown) + taskText("b", "Behind", unknown)));

    const auto store = folder.openWithoutWatching();

    QCOMPARE(sortedTitles(eventsOn(*store, day)), QStringList { u"Full"_s });
    QCOMPARE(sortedTitles(allTasks(*store)), QStringList { u"Behind"_s });
}

void BadFilesTest::tooFrequentRulesShowTheirFirstInstanceAndOneNote()
{
    const CalendarFolder folder;
    folder.write(u"c/often.ics"_s,
        calendarText(eventText("often", "Often", "20260311T090000", "DURATION:PT1S\r\nRRULE:FREQ=SECONDLY\r\n")));
    folder.write(u"c/never.ics"_s,
        calendarText(eventText("never", "Never", "20200101T090000", "RRULE:FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=30\r\n")));
    folder.write(u"c/good.ics"_s, calendarText(eventText("good", "Good", "20260311T100000")));
    const Notes notes;
    const auto store = folder.openWithoutWatching();

    const CalEventList events = eventsOn(*store, day);
    (void)eventsOn(*store, day);

    QCOMPARE(sortedTitles(events), QStringList({ u"Good"_s, u"Often"_s }));
    QCOMPARE(Notes::about(u"repeats too often"_s), 1);
}

void BadFilesTest::bytesThatAreNoTextSurviveASave()
{
    const CalendarFolder folder;
    const QByteArray latin = "SUMMARY:M\xfcll hinausbringen\r\nX-ODD:\xff\xfe\x80\r\n";
    folder.write(u"c/a.ics"_s, calendarText("BEGIN:VTODO\r\nUID:a\r\n" + latin + "END:VTODO\r\n"));
    const auto store = folder.openWithoutWatching();
    const CalTaskPtr task = allTasks(*store).constFirst();
    QCOMPARE(task->title(), u"M\xfcll hinausbringen"_s);

    task->setIsCompleted(true);
    QVERIFY(store->saveTask(*task).isOk());

    QVERIFY(folder.read(u"c/a.ics"_s).contains(latin));
}

VANTLE_TEST(BadFilesTest)
#include "BadFilesTest.moc"
