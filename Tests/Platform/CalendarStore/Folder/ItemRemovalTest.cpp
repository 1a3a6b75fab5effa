// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "TestRegistry.h"

#include <QDir>
#include <QSignalSpy>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{

QStringList namesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
}

CalEventPtr eventNamed(const FolderCalendarStore &store, const QString &title)
{
    for (const CalEventPtr &event : eventsOn(store, QDate(2026, 3, 11))) {
        if (event->title() == title)
            return event;
    }
    return nullptr;
}

} // namespace

// What a removal does to a file, and how it is taken back.
class ItemRemovalTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRemovedItemTakesItsFileWithIt();
    void aSeriesIsRemovedAsAWhole();
    void oneOfSeveralItemsLeavesTheOthersToTheByte();
    void aJournalOfTheSameFileStays();
    void ownRemovalIsVisibleAtOnceAndAnnouncedAsOurs();
    void aFileChangedMeanwhileIsKept();
    void aFileRemovedMeanwhileIsReported();
    void aReadOnlyFileRefuses();
    void aLinkedItemFileRefuses();

    void takingBackRestoresTheFileToTheByte();
    void takingBackRestoresAPartToTheByte();
    void takingBackIsRefusedWhereAnotherFileHasTheName();
    void takingBackIsRefusedWhereTheItemIsThereAgain();
    void takingBackIsRefusedWhereTheFileChanged();
    void oneOfTwoEqualsComesBack();
};

void ItemRemovalTest::aRemovedItemTakesItsFileWithIt()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "A")));
    folder.write(u"c/b.ics"_s, calendarText(eventText("b", "B", "20260311T080000Z")));
    folder.write(u"c/c.ics"_s, calendarText(taskText("c", "C")));
    const auto store = folder.openWithoutWatching();

    QVERIFY(store->removeTask(*taskNamed(*store, u"A"_s)).isOk());
    QVERIFY(store->removeEvent(*eventNamed(*store, u"B"_s), CalSpanThisEvent).isOk());

    QCOMPARE(namesIn(folder.path(u"c"_s)), QStringList { u"c.ics"_s });
    QCOMPARE(sortedTitles(allTasks(*store)), QStringList { u"C"_s });
    QVERIFY(eventsOn(*store, QDate(2026, 3, 11)).isEmpty());
}

void ItemRemovalTest::aSeriesIsRemovedAsAWhole()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s,
        calendarText(eventText("a", "Daily", "20260301T080000Z", "RRULE:FREQ=DAILY\r\n")
            + eventText("a", "Once other", "20260311T090000Z", "RECURRENCE-ID:20260311T080000Z\r\n")));
    const auto store = folder.openWithoutWatching();

    QVERIFY(store->removeEvent(*eventNamed(*store, u"Once other"_s), CalSpanAllEvents).isOk());

    QVERIFY(namesIn(folder.path(u"c"_s)).isEmpty());
    QVERIFY(eventsOn(*store, QDate(2026, 3, 12)).isEmpty());
}

void ItemRemovalTest::oneOfSeveralItemsLeavesTheOthersToTheByte()
{
    const CalendarFolder folder;
    const QByteArray zone = "BEGIN:VTIMEZONE\r\nTZID:X\r\nEND:VTIMEZONE\r\n";
    const QByteArray first = taskText("a", "A");
    const QByteArray series = eventText("s", "S", "20260301T080000Z", "RRULE:FREQ=DAILY\r\n");
    const QByteArray override = eventText("s", "Other", "20260311T090000Z", "RECURRENCE-ID:20260311T080000Z\r\n");
    const QByteArray last = eventText("c", "C", "20260311T080000Z");
    folder.write(u"c/a.ics"_s, calendarText(zone + series + first + override + last));
    const auto store = folder.openWithoutWatching();

    QVERIFY(store->removeEvent(*eventNamed(*store, u"Other"_s), CalSpanAllEvents).isOk());
    QCOMPARE(folder.read(u"c/a.ics"_s), calendarText(zone + first + last));
    QVERIFY(store->removeEvent(*eventNamed(*store, u"C"_s), CalSpanThisEvent).isOk());
    QCOMPARE(folder.read(u"c/a.ics"_s), calendarText(zone + first));
    QVERIFY(store->removeTask(*taskNamed(*store, u"A"_s)).isOk());

    QVERIFY(namesIn(folder.path(u"c"_s)).isEmpty());
}

void ItemRemovalTest::aJournalOfTheSameFileStays()
{
    const CalendarFolder folder;
    const QByteArray journal = "BEGIN:VJOURNAL\r\nUID:j\r\nSUMMARY:Dear diary\r\nEND:VJOURNAL\r\n";
    folder.write(u"c/a.ics"_s, calendarText(journal + taskText("a", "A")));
    const auto store = folder.openWithoutWatching();

    QVERIFY(store->removeTask(*taskNamed(*store, u"A"_s)).isOk());

    QCOMPARE(folder.read(u"c/a.ics"_s), calendarText(journal));
}

void ItemRemovalTest::ownRemovalIsVisibleAtOnceAndAnnouncedAsOurs()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "A")));
    const auto store = folder.open();
    QSignalSpy changed(store.get(), &FolderCalendarStore::changed);

    QVERIFY(store->removeTask(*taskNamed(*store, u"A"_s)).isOk());
    QVERIFY(allTasks(*store).isEmpty());
    QVERIFY(changed.isEmpty()); // from the event loop only

    QVERIFY(changed.wait(1000));
    const auto change = changed.constFirst().constFirst().value<CalBackendChange>();
    QCOMPARE(change.author, CalBackendChange::Author::Ourselves);
    QVERIFY(change.tasks);
    QVERIFY(!change.events);
    // What the watcher sees of our own removal is no further change.
    folder.write(u"c/b.ics"_s, calendarText(taskText("b", "Theirs")));
    QTRY_VERIFY(taskNamed(*store, u"Theirs"_s));
    QTRY_COMPARE(changed.size(), 2);
}

void ItemRemovalTest::aFileChangedMeanwhileIsKept()
{
    const CalendarFolder folder;
    folder.write(u"Home/a.ics"_s, calendarText(taskText("a", "A")));
    const auto store = folder.openWithoutWatching();
    const CalTaskPtr task = taskNamed(*store, u"A"_s);
    const QByteArray theirs = calendarText(taskText("a", "Theirs"));
    folder.write(u"Home/a.ics"_s, theirs);

    const auto outcome = store->removeTask(*task);

    QVERIFY(!outcome);
    QCOMPARE(outcome.error().code, StoreError::Code::Conflict);
    QCOMPARE(outcome.error().item, u"A"_s);
    QCOMPARE(outcome.error().calendar, u"Home"_s);
    QCOMPARE(folder.read(u"Home/a.ics"_s), theirs);
    QVERIFY(taskNamed(*store, u"Theirs"_s));
}

void ItemRemovalTest::aFileRemovedMeanwhileIsReported()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "A")));
    const auto store = folder.openWithoutWatching();
    const CalTaskPtr task = taskNamed(*store, u"A"_s);
    QVERIFY(folder.remove(u"c/a.ics"_s));

    const auto outcome = store->removeTask(*task);

    QVERIFY(!outcome);
    QCOMPARE(outcome.error().code, StoreError::Code::NotFound);
    QVERIFY(allTasks(*store).isEmpty());
}

void ItemRemovalTest::aReadOnlyFileRefuses()
{
    const CalendarFolder folder;
    const QByteArray text = calendarText(taskText("a", "A"));
    folder.write(u"c/a.ics"_s, text);
    QVERIFY(::chmod(QFile::encodeName(folder.path(u"c/a.ics"_s)).constData(), 0444) == 0);
    const auto store = folder.openWithoutWatching();

    const auto outcome = store->removeTask(*taskNamed(*store, u"A"_s));

    QVERIFY(!outcome);
    QCOMPARE(outcome.error().code, StoreError::Code::ReadOnly);
    QCOMPARE(folder.read(u"c/a.ics"_s), text);
}

void ItemRemovalTest::aLinkedItemFileRefuses()
{
    const CalendarFolder elsewhere;
    elsewhere.write(u"a.ics"_s, calendarText(taskText("a", "A")));
    const CalendarFolder folder;
    QDir().mkpath(folder.path(u"c"_s));
    QVERIFY(QFile::link(elsewhere.path(u"a.ics"_s), folder.path(u"c/a.ics"_s)));
    const auto store = folder.openWithoutWatching();

    const auto outcome = store->removeTask(*taskNamed(*store, u"A"_s));

    QVERIFY(!outcome);
    QCOMPARE(outcome.error().code, StoreError::Code::ReadOnly);
    QVERIFY(QFileInfo(folder.path(u"c/a.ics"_s)).isSymLink());
    QVERIFY(QFile::exists(elsewhere.path(u"a.ics"_s)));
}

void ItemRemovalTest::takingBackRestoresTheFileToTheByte()
{
    const CalendarFolder folder;
    const QByteArray odd = "begin:vcalendar\nX-ODD;A=\"b\":\\q\\\n" + taskText("a", "A") + "END:VCALENDAR";
    folder.write(u"c/Its own name.ICS"_s, odd);
    QVERIFY(::chmod(QFile::encodeName(folder.path(u"c/Its own name.ICS"_s)).constData(), 0604) == 0);
    const auto store = folder.openWithoutWatching();
    auto removal = store->removeTask(*taskNamed(*store, u"A"_s));
    QVERIFY(removal.isOk());
    QVERIFY(namesIn(folder.path(u"c"_s)).isEmpty());

    QVERIFY(removal.value()->takeBack().isOk());

    QCOMPARE(namesIn(folder.path(u"c"_s)), QStringList { u"Its own name.ICS"_s });
    QCOMPARE(folder.read(u"c/Its own name.ICS"_s), odd);
    struct stat status = {};
    QVERIFY(::stat(QFile::encodeName(folder.path(u"c/Its own name.ICS"_s)).constData(), &status) == 0);
    QCOMPARE(status.st_mode & 07777U, 0604U);
    QVERIFY(taskNamed(*store, u"A"_s));
}

void ItemRemovalTest::takingBackRestoresAPartToTheByte()
{
    const CalendarFolder folder;
    const QByteArray text = calendarText(taskText("a", "A") + taskText("b", "B"));
    folder.write(u"c/a.ics"_s, text);
    const auto store = folder.openWithoutWatching();
    auto removal = store->removeTask(*taskNamed(*store, u"A"_s));
    QVERIFY(removal.isOk());
    QVERIFY(folder.read(u"c/a.ics"_s) != text);

    QVERIFY(removal.value()->takeBack().isOk());

    QCOMPARE(folder.read(u"c/a.ics"_s), text);
    QCOMPARE(sortedTitles(allTasks(*store)), (QStringList { u"A"_s, u"B"_s }));
}

void ItemRemovalTest::takingBackIsRefusedWhereAnotherFileHasTheName()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "A")));
    const auto store = folder.openWithoutWatching();
    auto removal = store->removeTask(*taskNamed(*store, u"A"_s));
    QVERIFY(removal.isOk());
    const QByteArray theirs = calendarText(taskText("x", "Theirs"));
    folder.write(u"c/a.ics"_s, theirs);

    const auto outcome = removal.value()->takeBack();

    QVERIFY(!outcome);
    QCOMPARE(outcome.error().code, StoreError::Code::Conflict);
    QCOMPARE(outcome.error().item, u"A"_s);
    QCOMPARE(folder.read(u"c/a.ics"_s), theirs);
    QCOMPARE(namesIn(folder.path(u"c"_s)), QStringList { u"a.ics"_s });
}

void ItemRemovalTest::takingBackIsRefusedWhereTheItemIsThereAgain()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "A")));
    const auto store = folder.open();
    auto removal = store->removeTask(*taskNamed(*store, u"A"_s));
    QVERIFY(removal.isOk());
    folder.write(u"c/synchronised.ics"_s, calendarText(taskText("a", "Theirs")));
    QTRY_VERIFY(taskNamed(*store, u"Theirs"_s));

    const auto outcome = removal.value()->takeBack();

    QVERIFY(!outcome);
    QCOMPARE(outcome.error().code, StoreError::Code::Conflict);
    QCOMPARE(namesIn(folder.path(u"c"_s)), QStringList { u"synchronised.ics"_s });
}

void ItemRemovalTest::takingBackIsRefusedWhereTheFileChanged()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "A") + taskText("b", "B")));
    const auto store = folder.openWithoutWatching();
    auto removal = store->removeTask(*taskNamed(*store, u"A"_s));
    QVERIFY(removal.isOk());
    const QByteArray theirs = calendarText(taskText("b", "Theirs"));
    folder.write(u"c/a.ics"_s, theirs);

    const auto outcome = removal.value()->takeBack();

    QVERIFY(!outcome);
    QCOMPARE(outcome.error().code, StoreError::Code::Conflict);
    QCOMPARE(folder.read(u"c/a.ics"_s), theirs);
}

void ItemRemovalTest::oneOfTwoEqualsComesBack()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, calendarText(taskText("a", "First")));
    folder.write(u"c/b.ics"_s, calendarText(taskText("a", "Second")));
    const auto store = folder.openWithoutWatching();
    auto removal = store->removeTask(*taskNamed(*store, u"First"_s));
    QVERIFY(removal.isOk());
    QCOMPARE(sortedTitles(allTasks(*store)), QStringList { u"Second"_s });

    QVERIFY(removal.value()->takeBack().isOk());

    QCOMPARE(sortedTitles(allTasks(*store)), (QStringList { u"First"_s, u"Second"_s }));
}

VANTLE_TEST(ItemRemovalTest)
#include "ItemRemovalTest.moc"
