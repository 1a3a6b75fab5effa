// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "TestRegistry.h"

#include <CalCalendar.h>
#include <CollectionDescription.h>

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

QStringList uidsOf(const FolderCalendarStore &store)
{
    QStringList uids;
    for (const CalCalendarPtr &calendar : store.calendars())
        uids << calendar->uid();
    return uids;
}

CalCalendarPtr only(const FolderCalendarStore &store)
{
    const CalCalendarList calendars = store.calendars();
    return calendars.size() == 1 ? calendars.constFirst() : nullptr;
}

} // namespace

// Which calendars a folder holds and how they look.
class FolderCalendarsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void homeAndWorkAreMadeWhereThereIsNothing();
    void homeAndWorkAreNotMadeBesideAnything();
    void nothingIsMadeUnlessAskedFor();
    void homeAndWorkCanBeMadeLater();
    void homeAndWorkAreNotMadeLaterBesideAnything();
    void everyFolderIsACalendar();
    void calendarsComeByOrderThenByName();
    void aLinkedFolderIsFollowed();
    void aSingleFileIsAReadOnlyCalendar();
    void aSingleFileWithoutANameIsCalledAsItsFile();
    void loopsAndDanglingLinksAreLeftOut();
    void aFolderThatCannotBeWrittenIsNotEditable();
    void colours_data();
    void colours();
    void garbageInDescriptionsCountsAsNothing();
    void hugeDescriptionsCountAsNothing();
    void aDisplayNameIsOneLineOfPlainText();
};

void FolderCalendarsTest::homeAndWorkAreMadeWhereThereIsNothing()
{
    const CalendarFolder folder;
    FolderCalendarStore::Options options;
    options.createsDefaultCalendars = true;

    const auto store = folder.open(options);

    QCOMPARE(uidsOf(*store), QStringList({ u"Home"_s, u"Work"_s }));
    QCOMPARE(store->calendars().constFirst()->title(), u"Home"_s);
    QVERIFY(store->calendars().constFirst()->isEditable());
    QVERIFY(store->calendars().constFirst()->color() != store->calendars().constLast()->color());
    QVERIFY(QFileInfo(folder.path(u"Work"_s)).isDir());
}

void FolderCalendarsTest::homeAndWorkAreNotMadeBesideAnything()
{
    const CalendarFolder folder;
    folder.write(u"Mine/a.ics"_s, calendarText(taskText("a", "A")));
    FolderCalendarStore::Options options;
    options.createsDefaultCalendars = true;

    QCOMPARE(uidsOf(*folder.open(options)), QStringList { u"Mine"_s });
}

void FolderCalendarsTest::nothingIsMadeUnlessAskedFor()
{
    const CalendarFolder folder;

    QVERIFY(folder.open()->calendars().isEmpty());
    QVERIFY(!QFileInfo::exists(folder.root()));
}

void FolderCalendarsTest::homeAndWorkCanBeMadeLater()
{
    const CalendarFolder folder;
    const auto store = folder.open();
    QSignalSpy changes(store.get(), &FolderCalendarStore::changed);

    store->createDefaultCalendars();

    QCOMPARE(uidsOf(*store), QStringList({ u"Home"_s, u"Work"_s }));
    QVERIFY(changes.wait());
    QVERIFY(changes.first().first().value<CalBackendChange>().calendars);
}

void FolderCalendarsTest::homeAndWorkAreNotMadeLaterBesideAnything()
{
    const CalendarFolder folder;
    folder.write(u"Mine/a.ics"_s, calendarText(taskText("a", "A")));
    const auto store = folder.open();

    store->createDefaultCalendars();

    QCOMPARE(uidsOf(*store), QStringList { u"Mine"_s });
}

void FolderCalendarsTest::everyFolderIsACalendar()
{
    const CalendarFolder folder;
    folder.write(u"Full/a.ics"_s, calendarText(taskText("a", "A")));
    folder.write(u".hidden/a.ics"_s, calendarText(taskText("b", "B")));
    folder.write(u"old.tmp/a.ics"_s, calendarText(taskText("c", "C")));
    folder.write(u"strange.ics/a.ics"_s, calendarText(taskText("d", "D")));
    folder.write(u"README"_s, "no calendar");
    QDir().mkpath(folder.path(u"Empty"_s));

    QCOMPARE(uidsOf(*folder.open()), QStringList({ u"Empty"_s, u"Full"_s }));
}

void FolderCalendarsTest::calendarsComeByOrderThenByName()
{
    const CalendarFolder folder;
    folder.write(u"a/displayname"_s, "Zebra");
    folder.write(u"b/displayname"_s, "apple");
    folder.write(u"c/order"_s, "2\n");
    folder.write(u"d/order"_s, "1");
    folder.write(u"e/order"_s, "first, please");

    QCOMPARE(uidsOf(*folder.open()), QStringList({ u"d"_s, u"c"_s, u"b"_s, u"e"_s, u"a"_s }));
}

void FolderCalendarsTest::aLinkedFolderIsFollowed()
{
    const CalendarFolder elsewhere;
    elsewhere.write(u"real/a.ics"_s, calendarText(taskText("a", "Linked")));
    const CalendarFolder folder;
    QDir().mkpath(folder.root());
    QVERIFY(QFile::link(elsewhere.path(u"real"_s), folder.path(u"mine"_s)));

    const auto store = folder.open();

    QCOMPARE(uidsOf(*store), QStringList { u"mine"_s });
    QVERIFY(only(*store)->isEditable());
    QCOMPARE(sortedTitles(allTasks(*store)), QStringList { u"Linked"_s });
}

void FolderCalendarsTest::aSingleFileIsAReadOnlyCalendar()
{
    const CalendarFolder folder;
    folder.write(u"holidays.ics"_s,
        calendarText("X-WR-CALNAME:Public holidays\r\nX-APPLE-CALENDAR-COLOR:#12345678\r\n" + taskText("a", "A")));

    const auto store = folder.open();

    QCOMPARE(only(*store)->uid(), u"holidays.ics"_s);
    QCOMPARE(only(*store)->title(), u"Public holidays"_s);
    QCOMPARE(only(*store)->color(), QColor(u"#123456"_s));
    QVERIFY(!only(*store)->isEditable());
    QCOMPARE(allTasks(*store).size(), 1);
}

void FolderCalendarsTest::aSingleFileWithoutANameIsCalledAsItsFile()
{
    const CalendarFolder folder;
    folder.write(u"holidays.ics"_s, calendarText(taskText("a", "A")));

    QCOMPARE(only(*folder.open())->title(), u"holidays"_s);
}

void FolderCalendarsTest::loopsAndDanglingLinksAreLeftOut()
{
    const CalendarFolder folder;
    folder.write(u"good/a.ics"_s, calendarText(taskText("a", "A")));
    QVERIFY(QFile::link(folder.path(u"loop"_s), folder.path(u"loop"_s)));
    QVERIFY(QFile::link(folder.path(u"nowhere"_s), folder.path(u"dangling"_s)));

    QCOMPARE(uidsOf(*folder.open()), QStringList { u"good"_s });
}

void FolderCalendarsTest::aFolderThatCannotBeWrittenIsNotEditable()
{
    const CalendarFolder folder;
    folder.write(u"locked/a.ics"_s, calendarText(taskText("a", "A")));
    // Rights bind root to nothing, so the store is opened as somebody else.
    constexpr uid_t nobody = 65534;
    const bool isRoot = ::geteuid() == 0;
    QVERIFY(::chmod(QFile::encodeName(folder.path(u".."_s)).constData(), 0755) == 0);
    QVERIFY(::chmod(QFile::encodeName(folder.path(u"locked"_s)).constData(), 0555) == 0);
    QVERIFY(!isRoot || ::seteuid(nobody) == 0);

    const auto store = folder.open();

    QVERIFY(!isRoot || ::seteuid(0) == 0);
    QVERIFY(::chmod(QFile::encodeName(folder.path(u"locked"_s)).constData(), 0755) == 0);
    QVERIFY(!only(*store)->isEditable());
    QCOMPARE(allTasks(*store).size(), 1);
}

void FolderCalendarsTest::colours_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QColor>("color");

    QTest::newRow("usual") << u"#2F7DE1"_s << QColor(0x2f, 0x7d, 0xe1);
    QTest::newRow("small letters and a line end") << u"#2f7de1\n"_s << QColor(0x2f, 0x7d, 0xe1);
    QTest::newRow("with transparency, which is left out") << u"#2F7DE100"_s << QColor(0x2f, 0x7d, 0xe1);
    QTest::newRow("short") << u"#f80"_s << QColor(0xff, 0x88, 0x00);
    QTest::newRow("short with transparency") << u"#f808"_s << QColor(0xff, 0x88, 0x00);
    QTest::newRow("a name is none") << u"red"_s << QColor();
    QTest::newRow("too short") << u"#12345"_s << QColor();
    QTest::newRow("no digits") << u"#ggggggg"_s << QColor();
    QTest::newRow("a path") << u"../../etc/passwd"_s << QColor();
}

void FolderCalendarsTest::colours()
{
    QFETCH(const QString, text);

    QTEST(FolderStore::colorOfText(text).value_or(QColor()), "color");
}

void FolderCalendarsTest::garbageInDescriptionsCountsAsNothing()
{
    const CalendarFolder folder;
    folder.write(u"mine/displayname"_s, QByteArray("\xff\xfe\x00\x01", 4));
    folder.write(u"mine/color"_s, "<script>");
    folder.write(u"mine/order"_s, "NaN");

    const auto store = folder.open();

    QCOMPARE(only(*store)->title(), u"mine"_s);
    QCOMPARE(only(*store)->color(), FolderStore::defaultColor(u"mine"_s));
}

void FolderCalendarsTest::hugeDescriptionsCountAsNothing()
{
    constexpr qsizetype tenMegabytes = 10 * 1024 * 1024;
    const CalendarFolder folder;
    for (const QString &name : { u"displayname"_s, u"color"_s, u"order"_s })
        folder.write(u"mine/"_s + name, QByteArray(tenMegabytes, '1'));

    const auto store = folder.open();

    QCOMPARE(only(*store)->title(), u"mine"_s);
    QCOMPARE(only(*store)->color(), FolderStore::defaultColor(u"mine"_s));
}

void FolderCalendarsTest::aDisplayNameIsOneLineOfPlainText()
{
    const CalendarFolder folder;
    folder.write(u"mine/displayname"_s, "  <b>Büro</b>\nsecond\tline \x07 \r\n");
    folder.write(u"long/displayname"_s, QByteArray(3000, 'x'));

    const CalCalendarList calendars = folder.open()->calendars();

    QCOMPARE(calendars.constFirst()->title(), u"<b>Büro</b> second line"_s);
    QCOMPARE(calendars.constLast()->title().size(), 200);
}

VANTLE_TEST(FolderCalendarsTest)
#include "FolderCalendarsTest.moc"
