// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "TestRegistry.h"

#include <CalEvent.h>
#include <CalTask.h>
#include <RecentEdits.h>
#include <ZoneRegistry.h>

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using FolderStore::RecentEdits;

namespace
{

const QString path = u"/calendars/c/a.ics"_s;
const QDateTime now { QDate(2026, 3, 11), QTime(12, 0) };

StoreError errorNamed(const QString &item)
{
    StoreError error;
    error.code = StoreError::Code::Conflict;
    error.item = item;
    return error;
}

// A to-do of the three lines that tests change.
QByteArray text(const QByteArray &title, const QByteArray &notes, int sequence, const QByteArray &more = {})
{
    return calendarText(taskText("a", title,
        (notes.isEmpty() ? QByteArray() : "DESCRIPTION:" + notes + "\r\n") + "SEQUENCE:" + QByteArray::number(sequence)
            + "\r\n" + more));
}

} // namespace

Q_DECLARE_METATYPE(StoreError)

// Another program writes a text that it made before it could know of a save.
class RecentEditsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatWasMadeWithoutAnEditOverwritesIt_data();
    void whatWasMadeWithoutAnEditOverwritesIt();
    void eachOfSeveralEditsIsLookedFor_data();
    void eachOfSeveralEditsIsLookedFor();
    void editsOfOneLineAreLostTogether_data();
    void editsOfOneLineAreLostTogether();
    void anEditIsToldOnceAndForAMinute();
    void anItemThatWasRemovedIsNoOverwrittenEdit();
    void anExceptionThatWasNotKnownIsOverwritten();
    void theStoreTellsWhatWasOverwritten();
    void theStoreTellsNothingOfAnEditThatFollowed();
    void bothStepsOfAnEventAreToldWhenTheyAreOverwritten();
};

void RecentEditsTest::whatWasMadeWithoutAnEditOverwritesIt_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<QByteArray>("theirs");
    QTest::addColumn<bool>("isOverwritten");

    const QByteArray before = text("Old", "Notes", 1);
    const QByteArray after = text("New", "Notes", 2);
    QTest::newRow("the text from before") << before << after << before << true;
    QTest::newRow("other notes, without it") << before << after << text("Old", "Theirs", 1) << true;
    QTest::newRow("other notes, without it, counted") << before << after << text("Old", "Theirs", 2) << true;
    QTest::newRow("another title, without it") << before << after << text("Theirs", "Notes", 1) << true;
    QTest::newRow("other notes, with it") << before << after << text("New", "Theirs", 2) << false;
    QTest::newRow("other notes, with it, counted anew") << before << after << text("New", "Theirs", 0) << false;
    QTest::newRow("another title, made of it") << before << after << text("Theirs", "Notes", 3) << false;
    QTest::newRow("another line, with it") << before << after << text("New", "Notes", 2, "X-OTHER:a\r\n") << false;
    QTest::newRow("folded otherwise") << before << after
                                      << text("New", "Notes", 2).replace("SUMMARY:New", "SUMM\r\n ARY:New") << false;
    QTest::newRow("what was cleared is there again")
        << before << text("Old", {}, 2) << text("Old", "Notes", 1, "X-OTHER:a\r\n") << true;
    QTest::newRow("what was cleared is not") << before << text("Old", {}, 2) << text("Theirs", {}, 2) << false;
    QTest::newRow("what was added is not there")
        << text("Old", {}, 1) << text("Old", "Notes", 2) << text("Old", {}, 1, "X-OTHER:a\r\n") << true;
}

void RecentEditsTest::whatWasMadeWithoutAnEditOverwritesIt()
{
    QFETCH(const QByteArray, before);
    QFETCH(const QByteArray, after);
    QFETCH(const QByteArray, theirs);
    QFETCH(const bool, isOverwritten);
    ICalendar::ZoneRegistry zones;
    RecentEdits edits(zones);

    edits.add(path, before, after, errorNamed(u"Old"_s), now);
    const QList<StoreError> overwritten = edits.overwrittenBy(path, theirs, now);

    QCOMPARE(overwritten.size(), isOverwritten ? 1 : 0);
    if (isOverwritten)
        QCOMPARE(overwritten.constFirst().item, u"Old"_s);
}

void RecentEditsTest::eachOfSeveralEditsIsLookedFor_data()
{
    QTest::addColumn<QByteArray>("theirs");
    QTest::addColumn<QStringList>("overwritten");

    QTest::newRow("made before all of them")
        << text("Old", "Notes", 1, "X-OTHER:a\r\n") << QStringList { u"title"_s, u"notes"_s, u"notes again"_s };
    QTest::newRow("made after the first")
        << text("New", "Notes", 2, "X-OTHER:a\r\n") << QStringList { u"notes"_s, u"notes again"_s };
    QTest::newRow("made after the second")
        << text("New", "Ours", 3, "X-OTHER:a\r\n") << QStringList { u"notes again"_s };
    QTest::newRow("made after all of them") << text("New", "Ours too", 4, "X-OTHER:a\r\n") << QStringList();
}

void RecentEditsTest::eachOfSeveralEditsIsLookedFor()
{
    QFETCH(const QByteArray, theirs);
    QFETCH(const QStringList, overwritten);
    ICalendar::ZoneRegistry zones;
    RecentEdits edits(zones);
    edits.add(path, text("Old", "Notes", 1), text("New", "Notes", 2), errorNamed(u"title"_s), now);
    edits.add(path, text("New", "Notes", 2), text("New", "Ours", 3), errorNamed(u"notes"_s), now);
    edits.add(path, text("New", "Ours", 3), text("New", "Ours too", 4), errorNamed(u"notes again"_s), now);

    QStringList told;
    for (const StoreError &error : edits.overwrittenBy(path, theirs, now))
        told << error.item;

    QCOMPARE(told, overwritten);
}

void RecentEditsTest::editsOfOneLineAreLostTogether_data()
{
    QTest::addColumn<QByteArray>("theirs");
    QTest::addColumn<QStringList>("overwritten");

    QTest::newRow("made before all of them")
        << text("Old", "0", 1) << QStringList { u"first"_s, u"second"_s, u"third"_s, u"fourth"_s };
    QTest::newRow("made after the first")
        << text("Old", "01", 2) << QStringList { u"second"_s, u"third"_s, u"fourth"_s };
    QTest::newRow("made after the second") << text("Old", "012", 3) << QStringList { u"third"_s, u"fourth"_s };
    QTest::newRow("made after the third") << text("Old", "0123", 4) << QStringList { u"fourth"_s };
    QTest::newRow("made after all of them") << text("Old", "01234", 5, "X-OTHER:a\r\n") << QStringList();
    QTest::newRow("made after all of them, counted anew") << text("Old", "01234", 0) << QStringList();
}

void RecentEditsTest::editsOfOneLineAreLostTogether()
{
    QFETCH(const QByteArray, theirs);
    QFETCH(const QStringList, overwritten);
    ICalendar::ZoneRegistry zones;
    RecentEdits edits(zones);
    edits.add(path, text("Old", "0", 1), text("Old", "01", 2), errorNamed(u"first"_s), now);
    edits.add(path, text("Old", "01", 2), text("Old", "012", 3), errorNamed(u"second"_s), now);
    edits.add(path, text("Old", "012", 3), text("Old", "0123", 4), errorNamed(u"third"_s), now);
    edits.add(path, text("Old", "0123", 4), text("Old", "01234", 5), errorNamed(u"fourth"_s), now);

    QStringList told;
    for (const StoreError &error : edits.overwrittenBy(path, theirs, now))
        told << error.item;

    QCOMPARE(told, overwritten);
}

void RecentEditsTest::anEditIsToldOnceAndForAMinute()
{
    ICalendar::ZoneRegistry zones;
    RecentEdits edits(zones);
    const QByteArray before = text("Old", "Notes", 1);

    edits.add(path, before, text("New", "Notes", 2), errorNamed(u"Old"_s), now);
    QCOMPARE(edits.overwrittenBy(u"/calendars/c/b.ics"_s, before, now).size(), 0);
    QCOMPARE(edits.overwrittenBy(path, before, now).size(), 1);
    QCOMPARE(edits.overwrittenBy(path, before, now).size(), 0);

    edits.add(path, before, text("New", "Notes", 2), errorNamed(u"Old"_s), now);
    QCOMPARE(edits.overwrittenBy(path, before, now.addSecs(61)).size(), 0);

    edits.add(path, before, text("New", "Notes", 2), errorNamed(u"Old"_s), now);
    edits.forget(path);
    QCOMPARE(edits.overwrittenBy(path, before, now).size(), 0);
}

void RecentEditsTest::anItemThatWasRemovedIsNoOverwrittenEdit()
{
    ICalendar::ZoneRegistry zones;
    RecentEdits edits(zones);

    edits.add(path, text("Old", "Notes", 1), text("New", "Notes", 2), errorNamed(u"Old"_s), now);

    QCOMPARE(edits.overwrittenBy(path, calendarText(taskText("b", "Other")), now).size(), 0);
}

void RecentEditsTest::anExceptionThatWasNotKnownIsOverwritten()
{
    ICalendar::ZoneRegistry zones;
    RecentEdits edits(zones);
    const QByteArray series = eventText("e", "Lunch", "20260309T110000Z", "DURATION:PT1H\r\nRRULE:FREQ=DAILY\r\n");
    const QByteArray exception
        = eventText("e", "Dinner", "20260311T110000Z", "DURATION:PT1H\r\nRECURRENCE-ID:20260311T110000Z\r\n");

    edits.add(path, calendarText(series), calendarText(series + exception), errorNamed(u"Lunch"_s), now);

    QCOMPARE(edits.overwrittenBy(path, calendarText(series).replace("DAILY", "DAILY;COUNT=9"), now).size(), 1);
}

void RecentEditsTest::theStoreTellsWhatWasOverwritten()
{
    const CalendarFolder folder;
    const QByteArray before = text("Old", "Notes", 1);
    folder.write(u"c/a.ics"_s, before);
    const auto store = folder.open();
    QSignalSpy overwritten(store.get(), &FolderCalendarStore::overwritten);
    const CalTaskPtr task = taskNamed(*store, u"Old"_s);

    task->setTitle(u"New"_s);
    QVERIFY(store->saveTask(*task).isOk());
    folder.writeByRenaming(u"c/a.ics"_s, QByteArray(before).replace("Notes", "Theirs"));

    QTRY_COMPARE(overwritten.size(), 1);
    const auto error = overwritten.constFirst().constFirst().value<StoreError>();
    QCOMPARE(error.code, StoreError::Code::Conflict);
    QCOMPARE(error.item, u"Old"_s);
    QCOMPARE(error.calendar, u"c"_s);
    QVERIFY(!error.reason.isEmpty());
    QVERIFY(taskNamed(*store, u"Old"_s));
}

void RecentEditsTest::theStoreTellsNothingOfAnEditThatFollowed()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, text("Old", "Notes", 1));
    const auto store = folder.open();
    QSignalSpy overwritten(store.get(), &FolderCalendarStore::overwritten);
    QSignalSpy changed(store.get(), &FolderCalendarStore::changed);
    const CalTaskPtr task = taskNamed(*store, u"Old"_s);

    task->setTitle(u"New"_s);
    QVERIFY(store->saveTask(*task).isOk());
    folder.writeByRenaming(u"c/a.ics"_s, folder.read(u"c/a.ics"_s).replace("Notes", "Theirs"));

    QTRY_COMPARE(taskNamed(*store, u"New"_s)->notes(), u"Theirs"_s);
    QTRY_VERIFY(!changed.isEmpty());
    QCOMPARE(overwritten.size(), 0);
}

void RecentEditsTest::bothStepsOfAnEventAreToldWhenTheyAreOverwritten()
{
    const CalendarFolder folder;
    const QByteArray before = calendarText(eventText("e", "Lunch", "20260311T110000Z"));
    folder.write(u"c/a.ics"_s, before);
    const auto store = folder.open();
    QSignalSpy overwritten(store.get(), &FolderCalendarStore::overwritten);
    const CalEventPtr event = eventsOn(*store, QDate(2026, 3, 11)).constFirst();

    event->setTitle(u"DUMBY Dinner"_s);
    QVERIFY(store->saveEvent(*event, CalSpanThisEvent).isOk());
    event->setTitle(u"Dinner"_s);
    QVERIFY(store->saveEvent(*event, CalSpanAllEvents).isOk());
    folder.writeByRenaming(u"c/a.ics"_s, QByteArray(before).replace("UID:e", "X-OTHER:a\r\nUID:e"));

    QTRY_VERIFY(!overwritten.isEmpty());
    for (const QList<QVariant> &each : overwritten)
        QCOMPARE(each.constFirst().value<StoreError>().item, u"Lunch"_s);
}

VANTLE_TEST(RecentEditsTest)
#include "RecentEditsTest.moc"
