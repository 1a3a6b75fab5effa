// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "TestRegistry.h"

#include <ScopedTimeZone.h>

#include <QDir>
#include <QRegularExpression>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{

struct NewItems {
    NewItems()
    {
        folder.write(u"Home/old.ics"_s, calendarText(taskText("old", "Old")));
        store = folder.openWithoutWatching();
    }

    CalEventPtr event(const QString &title) const
    {
        auto event = std::make_shared<CalEvent>();
        event->setTitle(title);
        event->setCalendar(store->calendars().constFirst());
        event->setStartDate(QDateTime(QDate(2026, 3, 11), QTime(9, 0)));
        event->setEndDate(QDateTime(QDate(2026, 3, 11), QTime(10, 0)));
        return event;
    }
    CalTaskPtr task(const QString &title) const
    {
        auto task = std::make_shared<CalTask>();
        task->setTitle(title);
        task->setCalendar(store->calendars().constFirst());
        return task;
    }
    QStringList newNames() const
    {
        QStringList names = QDir(folder.path(u"Home"_s)).entryList(QDir::Files | QDir::Hidden, QDir::Name);
        names.removeOne(u"old.ics"_s);
        return names;
    }
    QByteArray newText() const { return folder.read(u"Home/"_s + newNames().value(0)); }

    CalendarFolder folder;
    std::unique_ptr<FolderCalendarStore> store;
};

} // namespace

// Files of new items.
class ItemCreationTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewEventIsAFileOfItsOwn();
    void aNewToDoIsAFileOfItsOwn();
    void aNewItemIsThereAtOnceAndCanBeChanged();
    void aNewAllDayEventHasDays();
    void aNewDueDateHasATimeInTheZoneOfTheProcess();
    void theEndOfAYearsOldZoneIsRight();
    void aHostileTitleNamesNoFile_data();
    void aHostileTitleNamesNoFile();
    void whoeverMayLookIntoTheFolderMayReadIt();
    void anEventWithoutStartIsRefused();
    void aCalendarThatCannotBeChangedRefuses();
    void aFolderThatCannotBeWrittenRefuses();
    void aFolderThatVanishedRefuses();
};

void ItemCreationTest::aNewEventIsAFileOfItsOwn()
{
    const NewItems items;
    const CalEventPtr event = items.event(u"Lunch, late"_s);
    event->setLocation(u"Here"_s);

    QVERIFY(items.store->saveEvent(*event, CalSpanThisEvent).isOk());

    QCOMPARE(items.newNames().size(), 1);
    const QString name = items.newNames().constFirst();
    QVERIFY(QRegularExpression(u"^[0-9a-f-]{36}\\.ics$"_s).match(name).hasMatch());
    const QByteArray uid = name.chopped(4).toLatin1();
    QCOMPARE(items.newText().split('\n').first(3),
        (QByteArrayList { "BEGIN:VCALENDAR\r", "VERSION:2.0\r", "PRODID:-//Vantle//Vantle//EN\r" }));
    const QByteArray component = "BEGIN:VEVENT\r\nUID:" + uid
        + "\r\nDTSTAMP:20260311T110000Z\r\nCREATED:20260311T110000Z\r\nDTSTART;TZID=Europe/Berlin:20260311T090000\r\n"
          "DTEND;TZID=Europe/Berlin:20260311T100000\r\nSUMMARY:Lunch\\, late\r\nLOCATION:Here\r\nEND:VEVENT\r\n";
    QVERIFY2(items.newText().contains(component), items.newText().constData());
    QCOMPARE(items.newText().count("BEGIN:VTIMEZONE\r\nTZID:Europe/Berlin\r\n"), 1);
}

void ItemCreationTest::aNewToDoIsAFileOfItsOwn()
{
    const NewItems items;
    const CalTaskPtr task = items.task(u"Buy milk"_s);
    task->setPriority(5);

    QVERIFY(items.store->saveTask(*task).isOk());

    const QByteArray uid = items.newNames().constFirst().chopped(4).toLatin1();
    const QByteArray text
        = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Vantle//Vantle//EN\r\nBEGIN:VTODO\r\nUID:" + uid
        + "\r\nDTSTAMP:20260311T110000Z\r\nCREATED:20260311T110000Z\r\nSUMMARY:Buy milk\r\nPRIORITY:5\r\n"
          "END:VTODO\r\nEND:VCALENDAR\r\n";
    QCOMPARE(items.newText(), text);
}

void ItemCreationTest::aNewItemIsThereAtOnceAndCanBeChanged()
{
    const NewItems items;
    const CalEventPtr event = items.event(u"DUMBY Lunch"_s);
    QVERIFY(items.store->saveEvent(*event, CalSpanThisEvent).isOk());
    QCOMPARE(sortedTitles(eventsOn(*items.store, QDate(2026, 3, 11))), QStringList { u"DUMBY Lunch"_s });

    event->setTitle(u"Lunch"_s);
    QVERIFY(items.store->saveEvent(*event, CalSpanAllEvents).isOk());

    QCOMPARE(items.newNames().size(), 1);
    QCOMPARE(sortedTitles(eventsOn(*items.store, QDate(2026, 3, 11))), QStringList { u"Lunch"_s });
    QCOMPARE(eventsOn(*items.store, QDate(2026, 3, 11)).constFirst()->origin().version, event->origin().version);
    QVERIFY(!items.newText().contains("DUMBY"));
}

void ItemCreationTest::aNewAllDayEventHasDays()
{
    const NewItems items;
    const CalEventPtr event = items.event(u"Fair"_s);
    event->setIsAllDay(true);
    event->setEndDate(QDateTime(QDate(2026, 3, 12), QTime(10, 0)));

    QVERIFY(items.store->saveEvent(*event, CalSpanThisEvent).isOk());

    QVERIFY(items.newText().contains("DTSTART;VALUE=DATE:20260311\r\nDTEND;VALUE=DATE:20260313\r\n"));
    QVERIFY(!items.newText().contains("VTIMEZONE"));
}

void ItemCreationTest::aNewDueDateHasATimeInTheZoneOfTheProcess()
{
    const NewItems items;
    const CalTaskPtr task = items.task(u"Buy milk"_s);
    task->setDueDate(QDateTime(QDate(2026, 7, 1), QTime(18, 30)));

    QVERIFY(items.store->saveTask(*task).isOk());

    QVERIFY(items.newText().contains("DUE;TZID=Europe/Berlin:20260701T183000\r\n"));
    QVERIFY(items.newText().contains("BEGIN:VTIMEZONE"));
    QCOMPARE(taskNamed(*items.store, u"Buy milk"_s)->dueDate(), task->dueDate());
}

void ItemCreationTest::theEndOfAYearsOldZoneIsRight()
{
    // Clocks in New York changed by other rules before 2007, which the rule of today does not tell.
    const ScopedTimeZone newYork("America/New_York");
    const NewItems items;
    const CalEventPtr event = items.event(u"Long ago"_s);
    event->setStartDate(QDateTime(QDate(2006, 3, 20), QTime(9, 0)));
    event->setEndDate(QDateTime(QDate(2006, 3, 20), QTime(10, 0)));

    QVERIFY(items.store->saveEvent(*event, CalSpanThisEvent).isOk());

    QVERIFY(items.newText().contains("DTSTART:20060320T140000Z\r\n"));
    QVERIFY(items.newText().contains("DTEND:20060320T150000Z\r\n"));
}

void ItemCreationTest::aHostileTitleNamesNoFile_data()
{
    QTest::addColumn<QString>("title");

    QTest::newRow("path upwards") << u"../../x"_s;
    QTest::newRow("path from the root") << u"/etc/x"_s;
    QTest::newRow("NUL") << QString(QChar(0));
    QTest::newRow("long") << QString(300, u'x');
    QTest::newRow("hidden") << u".hidden"_s;
    QTest::newRow("empty") << QString(u""_s);
    QTest::newRow("a line of its own") << u"A\r\nEND:VEVENT\r\nX:y"_s;
    QTest::newRow("of the same letters") << u"OLD"_s;
}

void ItemCreationTest::aHostileTitleNamesNoFile()
{
    QFETCH(const QString, title);
    const NewItems items;

    QVERIFY(items.store->saveEvent(*items.event(title), CalSpanThisEvent).isOk());

    QCOMPARE(items.newNames().size(), 1);
    QVERIFY(QRegularExpression(u"^[0-9a-f-]{36}\\.ics$"_s).match(items.newNames().constFirst()).hasMatch());
    QVERIFY(!items.newText().contains('\0'));
    QCOMPARE(QDir(items.folder.root()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList { u"Home"_s });
    QCOMPARE(eventsOn(*items.folder.openWithoutWatching(), QDate(2026, 3, 11)).size(), 1);
    QCOMPARE(items.folder.read(u"Home/old.ics"_s), calendarText(taskText("old", "Old")));
}

void ItemCreationTest::whoeverMayLookIntoTheFolderMayReadIt()
{
    const NewItems items;
    QVERIFY(::chmod(QFile::encodeName(items.folder.path(u"Home"_s)).constData(), 0750) == 0);

    QVERIFY(items.store->saveTask(*items.task(u"A"_s)).isOk());

    struct stat status = {};
    const QString path = items.folder.path(u"Home/"_s + items.newNames().constFirst());
    QVERIFY(::stat(QFile::encodeName(path).constData(), &status) == 0);
    QCOMPARE(status.st_mode & 07777U, 0640U);
}

void ItemCreationTest::anEventWithoutStartIsRefused()
{
    const NewItems items;
    const CalEventPtr event = items.event(u"Never"_s);
    event->setStartDate({});

    const auto outcome = items.store->saveEvent(*event, CalSpanThisEvent);

    QVERIFY(!outcome);
    QCOMPARE(outcome.error().code, StoreError::Code::Invalid);
    QVERIFY(items.newNames().isEmpty());
    QVERIFY(!event->origin().isStored());
}

void ItemCreationTest::aCalendarThatCannotBeChangedRefuses()
{
    const NewItems items;
    items.folder.write(u"single.ics"_s, calendarText(taskText("a", "A")));
    const auto store = items.folder.openWithoutWatching();
    const CalTaskPtr task = items.task(u"B"_s);
    task->setCalendar(store->calendars().constLast());
    QVERIFY(!task->calendar()->isEditable());

    const auto outcome = store->saveTask(*task);

    QVERIFY(!outcome);
    QCOMPARE(outcome.error().code, StoreError::Code::ReadOnly);
}

void ItemCreationTest::aFolderThatCannotBeWrittenRefuses()
{
    const NewItems items;
    // A file in the folder's place: nobody, root included, can write into it.
    QVERIFY(QDir().rename(items.folder.path(u"Home"_s), items.folder.path(u"elsewhere"_s)));
    items.folder.write(u"Home"_s, "no folder");

    const auto outcome = items.store->saveTask(*items.task(u"B"_s));

    QVERIFY(!outcome);
    QCOMPARE(outcome.error().item, u"B"_s);
    QCOMPARE(outcome.error().calendar, u"Home"_s);
    QVERIFY(!outcome.error().reason.isEmpty());
    QCOMPARE(items.folder.read(u"Home"_s), QByteArray("no folder"));
}

void ItemCreationTest::aFolderThatVanishedRefuses()
{
    const NewItems items;
    QVERIFY(QDir(items.folder.path(u"Home"_s)).removeRecursively());

    const auto outcome = items.store->saveTask(*items.task(u"B"_s));

    QVERIFY(!outcome);
    QCOMPARE(outcome.error().code, StoreError::Code::NotFound);
    QVERIFY(!QFile::exists(items.folder.path(u"Home"_s)));
}

VANTLE_TEST(ItemCreationTest)
#include "ItemCreationTest.moc"
