// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "InterferingCalls.h"
#include "TestRegistry.h"

#include <CalCalendarStore.h>
#include <SaveJournal.h>

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

const QDate day(2026, 3, 11);

// A series with all that has to go along, and in one file with it what has to stay.
const QByteArray seriesText
    = "BEGIN:VEVENT\r\nUID:s\r\nSUMMARY:Series\r\nDTSTART;TZID=Odd:20260310T090000\r\n"
      "DURATION:PT1H\r\nRRULE:FREQ=DAILY;COUNT=5\r\nEXDATE;TZID=Odd:20260312T090000\r\n"
      "ATTENDEE;CN=\"A; B\":mailto:a@example.org\r\nX-KEEP;p=\"1,2\":\\q, kept\r\n"
      "BEGIN:VALARM\r\nACTION:DISPLAY\r\nTRIGGER:-PT5M\r\nX-IN:1\r\nEND:VALARM\r\nEND:VEVENT\r\n"
      "BEGIN:VEVENT\r\nUID:s\r\nSUMMARY:Another\r\nRECURRENCE-ID;TZID=Odd:20260313T090000\r\n"
      "DTSTART;TZID=Odd:20260313T110000\r\nDURATION:PT2H\r\nX-OWN:1\r\nEND:VEVENT\r\n";
const QByteArray zoneText = "BEGIN:VTIMEZONE\r\nTZID:Odd\r\nBEGIN:STANDARD\r\nDTSTART:19700101T000000\r\n"
                            "TZOFFSETFROM:+0100\r\nTZOFFSETTO:+0100\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n";
const QByteArray otherText = "BEGIN:VTODO\r\nUID:t\r\nSUMMARY:Neighbour\r\nEND:VTODO\r\n";

QStringList namesIn(const CalendarFolder &folder, const QString &calendar)
{
    return QDir(folder.path(calendar)).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
}

QByteArray onlyTextIn(const CalendarFolder &folder, const QString &calendar)
{
    const QStringList names = namesIn(folder, calendar);
    return names.size() == 1 ? folder.read(calendar + u'/' + names.first()) : QByteArray("not one file");
}

// A store over two back ends: "Home" in the one, "Away" in the other. Both call their calendar "c".
struct TwoFolders {
    TwoFolders()
    {
        from.write(u"c/displayname"_s, "Home");
        into.write(u"c/displayname"_s, "Away");
    }

    void open()
    {
        std::vector<std::unique_ptr<CalendarStoreBackend>> backends;
        for (auto [folder, calls] : { std::pair(&from, &callsOfFrom), std::pair(&into, &callsOfInto) }) {
            FolderCalendarStore::Options options;
            options.root = folder->root();
            options.watchesForChanges = false;
            backends.push_back(std::make_unique<FolderCalendarStore>(options, folder->clock(), *calls));
        }
        store = std::make_unique<CalCalendarStore>(std::move(backends));
    }

    CalCalendarPtr calendar(const QString &title) const
    {
        for (const CalCalendarPtr &each : store->calendars()) {
            if (each->title() == title)
                return each;
        }
        return nullptr;
    }
    CalEventList events(QDate on = day) const
    {
        return store->eventsWithPredicate(CalCalendarStore::eventPredicateWithStartDate_endDate_calendars(
            on.startOfDay(), on.addDays(1).startOfDay().addSecs(-1), store->calendars()));
    }
    CalTaskList tasks() const
    {
        return store->tasksWithPredicate(CalCalendarStore::taskPredicateWithCalendars(store->calendars()));
    }

    bool save(const CalTaskPtr &task) { return store->saveTask_error(task, &error); }
    bool save(const CalEventPtr &event, CalSpan span) { return store->saveEvent_span_error(event, span, &error); }
    // As the event sheet does it.
    bool saveInTwoSteps(const CalEventPtr &event)
    {
        const auto title = event->title();
        event->setTitle(u"DUMBY "_s + title.value_or(QString()));
        const bool isBegun = save(event, CalSpanThisEvent);
        event->setTitle(title);
        return save(event, CalSpanAllEvents) && isBegun;
    }

    CalendarFolder from;
    CalendarFolder into;
    InterferingCalls callsOfFrom;
    InterferingCalls callsOfInto;
    std::unique_ptr<CalCalendarStore> store;
    StoreError error;
};

const QByteArray movedText = calendarText(taskText("a", "A"));

struct Calls {
    int ofFrom = 0;
    int ofInto = 0;
};

// How many calls a move makes when nothing goes wrong.
Calls callsOfAMove()
{
    TwoFolders folders;
    folders.from.write(u"c/a.ics"_s, movedText);
    folders.open();
    const CalTaskPtr task = folders.tasks().constFirst();
    task->setCalendar(folders.calendar(u"Away"_s));
    return folders.save(task) ? Calls { folders.callsOfFrom.made, folders.callsOfInto.made } : Calls();
}

} // namespace

// Items that go from one back end into another.
class BackendMovingTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aTaskKeepsItsBytes();
    void changesGoWithTheMove();
    void aWholeSeriesGoesAlone();
    void bothStepsOfTheSheetMoveOnce_data();
    void bothStepsOfTheSheetMoveOnce();
    void aMovedItemCanBeChangedRemovedAndMovedBack();
    void anItemWithoutIdentifierGetsTheOneItIsKnownBy();
    void theIdentifierMayBeTaken();
    void aChangeByAnotherProgramIsNotMoved();
    void aChangeInTheLastMomentStaysAndTheCopyGoes();
    void everyFailingCallLeavesOneWholeItem_data();
    void everyFailingCallLeavesOneWholeItem();
    void whatCannotBeTakenBackIsToldToBeInBoth();
    void aFailedMoveOfTheSheetTakesTheFirstStepBack();
};

void BackendMovingTest::aTaskKeepsItsBytes()
{
    TwoFolders folders;
    const QByteArray text
        = "begin:vcalendar\nX-ODD;A=\"b\":\\q\\\n" + taskText("a", "A", "X-KEEP;A=b:c\\, d\r\n") + "END:VCALENDAR";
    folders.from.write(u"c/a.ics"_s, text);
    folders.open();
    const CalTaskPtr task = folders.tasks().constFirst();

    task->setCalendar(folders.calendar(u"Away"_s));
    QVERIFY2(folders.save(task), qPrintable(folders.error.message()));

    QCOMPARE(namesIn(folders.from, u"c"_s), QStringList { u"displayname"_s });
    QVERIFY(folders.into.remove(u"c/displayname"_s));
    QCOMPARE(onlyTextIn(folders.into, u"c"_s), text);
    QCOMPARE(folders.tasks().size(), 1);
    QCOMPARE(folders.tasks().constFirst()->calendar()->title(), u"Away"_s);
    QCOMPARE(task->uid(), folders.tasks().constFirst()->uid());
}

void BackendMovingTest::changesGoWithTheMove()
{
    TwoFolders folders;
    folders.from.write(u"c/a.ics"_s, calendarText(taskText("a", "A", "DESCRIPTION:notes\r\nX-KEEP:1\r\n")));
    folders.open();
    const CalTaskPtr task = folders.tasks().constFirst();

    task->setTitle(u"B"_s);
    task->setNotes(std::nullopt);
    task->addAlarm(std::make_shared<CalAlarm>());
    task->setCalendar(folders.calendar(u"Away"_s));
    QVERIFY(folders.save(task));

    QVERIFY(folders.into.remove(u"c/displayname"_s));
    const QByteArray text = onlyTextIn(folders.into, u"c"_s);
    QVERIFY(text.contains("SUMMARY:B\r\n") && text.contains("X-KEEP:1\r\n") && text.contains("BEGIN:VALARM"));
    QVERIFY(!text.contains("DESCRIPTION:notes"));
    QCOMPARE(task->asRead()->title(), u"B"_s);
    QCOMPARE(task->alarms().constFirst()->storedIndex(), 0);
}

void BackendMovingTest::aWholeSeriesGoesAlone()
{
    TwoFolders folders;
    folders.from.write(u"c/s.ics"_s, calendarText(zoneText + otherText + seriesText));
    folders.open();
    const CalEventPtr event = folders.events().constFirst();

    event->setCalendar(folders.calendar(u"Away"_s));
    QVERIFY2(folders.save(event, CalSpanAllEvents), qPrintable(folders.error.message()));

    QVERIFY(folders.into.remove(u"c/displayname"_s));
    QCOMPARE(onlyTextIn(folders.into, u"c"_s), calendarText(zoneText + seriesText));
    QCOMPARE(folders.from.read(u"c/s.ics"_s), calendarText(zoneText + otherText));
    for (const int offset : { -1, 0, 2, 3 }) {
        const CalEventList events = folders.events(day.addDays(offset));
        QCOMPARE(events.size(), 1);
        QCOMPARE(events.constFirst()->calendar()->title(), u"Away"_s);
    }
    QVERIFY(folders.events(day.addDays(1)).isEmpty());
}

void BackendMovingTest::bothStepsOfTheSheetMoveOnce_data()
{
    QTest::addColumn<QByteArray>("components");

    QTest::newRow("an event that happens once") << eventText("e", "Series", "20260311T090000");
    QTest::newRow("a series") << zoneText + seriesText;
}

void BackendMovingTest::bothStepsOfTheSheetMoveOnce()
{
    QFETCH(const QByteArray, components);
    TwoFolders folders;
    folders.from.write(u"c/e.ics"_s, calendarText(components));
    folders.open();
    const CalEventPtr event = folders.events().constFirst();

    event->setLocation(u"There"_s);
    event->setCalendar(folders.calendar(u"Away"_s));
    QVERIFY2(folders.saveInTwoSteps(event), qPrintable(folders.error.message()));

    QCOMPARE(namesIn(folders.from, u"c"_s), QStringList { u"displayname"_s });
    QVERIFY(folders.into.remove(u"c/displayname"_s));
    const QByteArray text = onlyTextIn(folders.into, u"c"_s);
    QVERIFY2(text.contains("LOCATION:There\r\n") && !text.contains("DUMBY"), text.constData());
    QCOMPARE(text.count("BEGIN:VEVENT"), components.count("BEGIN:VEVENT"));
    QVERIFY(QDir(FolderStore::SaveJournal::defaultFolder()).entryList({ u"*.save"_s }, QDir::Files).isEmpty());
    QCOMPARE(event->uid(), folders.events().constFirst()->uid());
}

void BackendMovingTest::aMovedItemCanBeChangedRemovedAndMovedBack()
{
    TwoFolders folders;
    const QByteArray text = calendarText(taskText("a", "A", "X-KEEP:1\r\n"));
    folders.from.write(u"c/a.ics"_s, text);
    folders.open();
    const CalTaskPtr task = folders.tasks().constFirst();
    task->setCalendar(folders.calendar(u"Away"_s));
    QVERIFY(folders.save(task));

    task->setTitle(u"B"_s);
    QVERIFY2(folders.save(task), qPrintable(folders.error.message()));
    QVERIFY(folders.store->removeTask_error(task, &folders.error));
    QVERIFY(folders.tasks().isEmpty());
    QVERIFY(folders.store->undoRemoval_error(&folders.error));
    const CalTaskPtr again = folders.tasks().constFirst();
    QCOMPARE(again->title(), u"B"_s);
    again->setCalendar(folders.calendar(u"Home"_s));
    QVERIFY2(folders.save(again), qPrintable(folders.error.message()));

    QCOMPARE(folders.tasks().constFirst()->calendar()->title(), u"Home"_s);
    QCOMPARE(namesIn(folders.into, u"c"_s), QStringList { u"displayname"_s });
    QVERIFY(folders.from.remove(u"c/displayname"_s));
    QVERIFY(onlyTextIn(folders.from, u"c"_s).contains("X-KEEP:1\r\n"));
}

void BackendMovingTest::anItemWithoutIdentifierGetsTheOneItIsKnownBy()
{
    TwoFolders folders;
    folders.from.write(u"c/nameless.ics"_s, calendarText("BEGIN:VTODO\r\nSUMMARY:A\r\nEND:VTODO\r\n"));
    folders.open();
    const CalTaskPtr task = folders.tasks().constFirst();
    const QString known = task->origin().plainUid;
    QVERIFY(!known.isEmpty());

    task->setCalendar(folders.calendar(u"Away"_s));
    QVERIFY2(folders.save(task), qPrintable(folders.error.message()));

    QVERIFY(folders.into.remove(u"c/displayname"_s));
    QVERIFY(onlyTextIn(folders.into, u"c"_s).contains(QByteArray("UID:" + known.toUtf8() + "\r\n")));
    QCOMPARE(folders.tasks().constFirst()->origin().plainUid, known);
}

void BackendMovingTest::theIdentifierMayBeTaken()
{
    TwoFolders folders;
    const QByteArray text = calendarText(taskText("a", "A"));
    folders.from.write(u"c/a.ics"_s, text);
    folders.into.write(u"c/b.ics"_s, calendarText(taskText("a", "B")));
    folders.open();
    const CalTaskPtr task = folders.tasks().constFirst();

    task->setTitle(u"Changed"_s);
    task->setCalendar(folders.calendar(u"Away"_s));
    QVERIFY(!folders.save(task));

    QCOMPARE(folders.error.code, StoreError::Code::Conflict);
    QCOMPARE(folders.error.item, u"A"_s);
    QCOMPARE(folders.error.calendar, u"Away"_s);
    QCOMPARE(folders.from.read(u"c/a.ics"_s), text);
    QCOMPARE(task->calendar()->title(), u"Away"_s);
    QCOMPARE(task->asRead()->title(), u"A"_s);
}

void BackendMovingTest::aChangeByAnotherProgramIsNotMoved()
{
    TwoFolders folders;
    folders.from.write(u"c/a.ics"_s, calendarText(taskText("a", "A")));
    folders.open();
    const CalTaskPtr task = folders.tasks().constFirst();
    const QByteArray theirs = calendarText(taskText("a", "Theirs"));
    folders.from.write(u"c/a.ics"_s, theirs);

    task->setCalendar(folders.calendar(u"Away"_s));
    QVERIFY(!folders.save(task));

    QCOMPARE(folders.error.code, StoreError::Code::Conflict);
    QCOMPARE(folders.from.read(u"c/a.ics"_s), theirs);
    QCOMPARE(namesIn(folders.into, u"c"_s), QStringList { u"displayname"_s });
}

void BackendMovingTest::aChangeInTheLastMomentStaysAndTheCopyGoes()
{
    TwoFolders folders;
    folders.from.write(u"c/a.ics"_s, calendarText(taskText("a", "A")));
    folders.open();
    const CalTaskPtr task = folders.tasks().constFirst();
    const QByteArray theirs = calendarText(taskText("a", "Theirs"));
    folders.callsOfInto.actsAt = 0;
    folders.callsOfInto.action = [&] { folders.from.write(u"c/a.ics"_s, theirs); };

    task->setCalendar(folders.calendar(u"Away"_s));
    QVERIFY(!folders.save(task));

    QCOMPARE(folders.error.code, StoreError::Code::Conflict);
    QCOMPARE(folders.from.read(u"c/a.ics"_s), theirs);
    QCOMPARE(namesIn(folders.into, u"c"_s), QStringList { u"displayname"_s });
    QCOMPARE(folders.tasks().size(), 1);
    QCOMPARE(folders.tasks().constFirst()->title(), u"Theirs"_s);
}

void BackendMovingTest::everyFailingCallLeavesOneWholeItem_data()
{
    QTest::addColumn<bool>("isSource"); // whose calls fail
    QTest::addColumn<int>("calls");

    const Calls calls = callsOfAMove();
    QTest::newRow("the new calendar's calls") << false << calls.ofInto;
    // The last one clears the old file away, which has lost its name by then.
    QTest::newRow("the old calendar's calls") << true << calls.ofFrom - 1;
}

void BackendMovingTest::everyFailingCallLeavesOneWholeItem()
{
    QFETCH(const bool, isSource);
    QFETCH(const int, calls);
    QVERIFY(calls >= 2);
    for (int call = 0; call < calls; ++call) {
        TwoFolders folders;
        folders.from.write(u"c/a.ics"_s, movedText);
        folders.open();
        const CalTaskPtr task = folders.tasks().constFirst();
        (isSource ? folders.callsOfFrom : folders.callsOfInto).failsAt = call;

        task->setCalendar(folders.calendar(u"Away"_s));
        QVERIFY2(!folders.save(task), qPrintable(QString::number(call)));

        QVERIFY(folders.error.item == u"A" && !folders.error.reason.isEmpty());
        QCOMPARE(folders.from.read(u"c/a.ics"_s), movedText);
        QCOMPARE(namesIn(folders.from, u"c"_s), (QStringList { u"a.ics"_s, u"displayname"_s }));
        QCOMPARE(namesIn(folders.into, u"c"_s), QStringList { u"displayname"_s });
        // Once the disk is well again, it goes.
        QVERIFY2(folders.save(task), qPrintable(folders.error.message()));
        QCOMPARE(folders.tasks().constFirst()->calendar()->title(), u"Away"_s);
    }
}

void BackendMovingTest::whatCannotBeTakenBackIsToldToBeInBoth()
{
    TwoFolders folders;
    folders.from.write(u"c/a.ics"_s, movedText);
    folders.open();
    const CalTaskPtr task = folders.tasks().constFirst();
    folders.callsOfFrom.failsAt = 0; // the removal of the old one
    folders.callsOfInto.failsAt = callsOfAMove().ofInto; // the removal of the new one, which comes then

    task->setCalendar(folders.calendar(u"Away"_s));
    QVERIFY(!folders.save(task));

    QVERIFY2(folders.error.message().contains(u"It is in both calendars now: it could not be taken out of “Home”."_s),
        qPrintable(folders.error.message()));
    QCOMPARE(folders.from.read(u"c/a.ics"_s), movedText);
    QVERIFY(folders.into.remove(u"c/displayname"_s));
    QCOMPARE(onlyTextIn(folders.into, u"c"_s), movedText);
}

void BackendMovingTest::aFailedMoveOfTheSheetTakesTheFirstStepBack()
{
    TwoFolders folders;
    const QByteArray text = calendarText(zoneText + seriesText);
    folders.from.write(u"c/s.ics"_s, text);
    folders.open();
    const CalEventPtr event = folders.events().constFirst();
    folders.callsOfInto.failsAt = 0;

    event->setLocation(u"There"_s);
    event->setCalendar(folders.calendar(u"Away"_s));
    QVERIFY(!folders.saveInTwoSteps(event));

    QCOMPARE(folders.from.read(u"c/s.ics"_s), text);
    QCOMPARE(namesIn(folders.into, u"c"_s), QStringList { u"displayname"_s });
    QVERIFY(folders.saveInTwoSteps(event));
    QVERIFY(folders.into.remove(u"c/displayname"_s));
    QVERIFY(onlyTextIn(folders.into, u"c"_s).contains("LOCATION:There\r\n"));
}

VANTLE_TEST(BackendMovingTest)
#include "BackendMovingTest.moc"
