// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "HookedCalls.h"
#include "SheetSave.h"
#include "TestRegistry.h"

#include <CalEvent.h>

#include <QDir>
#include <QSet>
#include <QTest>

#include <algorithm>
#include <cerrno>
#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

enum class Kind { Series, Once, New };

const QString fileName = u"home/item.ics"_s;
const QDate day(2026, 3, 11);

// The series has an exception of each sort, so that a save that mixes them up is noticed.
QByteArray textOf(Kind kind)
{
    if (kind == Kind::New)
        return {};
    const QByteArray once = eventText("item", "Lunch", "20260311T110000Z",
        "DTEND:20260311T120000Z\r\nX-KEEP:1\r\nBEGIN:VALARM\r\nACTION:DISPLAY\r\nTRIGGER:-PT5M\r\nEND:VALARM\r\n");
    if (kind == Kind::Once)
        return calendarText(once);
    const QByteArray series = eventText("item", "Lunch", "20260309T110000Z",
        "DTEND:20260309T120000Z\r\nRRULE:FREQ=DAILY;COUNT=6\r\nEXDATE:20260310T110000Z\r\nX-KEEP:1\r\n");
    return calendarText(series
        + eventText(
            "item", "Late lunch", "20260312T130000Z", "DTEND:20260312T140000Z\r\nRECURRENCE-ID:20260312T110000Z\r\n"));
}

std::unique_ptr<CalCalendarStore> storeWith(const CalendarFolder &folder, HookedCalls &calls)
{
    FolderCalendarStore::Options options;
    options.root = folder.root();
    options.watchesForChanges = false;
    std::vector<std::unique_ptr<CalendarStoreBackend>> backends;
    backends.push_back(std::make_unique<FolderCalendarStore>(options, folder.clock(), calls));
    return std::make_unique<CalCalendarStore>(std::move(backends));
}

CalEventList eventsOf(const CalCalendarStore &store, QDate from = day, QDate to = day)
{
    return store.eventsWithPredicate(CalCalendarStore::eventPredicateWithStartDate_endDate_calendars(
        from.startOfDay(), to.endOfDay(), store.calendars()));
}

QStringList titles(const CalCalendarStore &store)
{
    QStringList titles;
    for (const CalEventPtr &event : eventsOf(store, day.addDays(-10), day.addDays(10)))
        titles << event->title().value_or(QString());
    return titles;
}

// The event of the day as a sheet holds it, edited: another title, an hour later.
CalEventPtr edited(const CalCalendarStore &store, Kind kind)
{
    CalEventPtr event;
    if (kind == Kind::New) {
        event = std::make_shared<CalEvent>();
        event->setCalendar(store.calendars().constFirst());
        event->setStartDate(QDateTime(day, QTime(12, 0)));
        event->setEndDate(QDateTime(day, QTime(13, 0)));
    } else {
        event = eventsOf(store).constFirst();
    }
    event->setTitle(u"Meal"_s);
    event->setStartDate(event->startDate().addSecs(3600));
    event->setEndDate(event->endDate().addSecs(3600));
    return event;
}

QStringList namesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

QStringList itemsOf(const CalendarFolder &folder)
{
    return namesIn(folder.path(u"home"_s)).filter(u".ics"_s);
}

// The one item, whatever its name; empty when there is none.
QByteArray contentOf(const CalendarFolder &folder)
{
    const QStringList names = itemsOf(folder);
    return names.size() == 1 ? folder.read(u"home/"_s + names.constFirst()) : QByteArray();
}

QStringList journal()
{
    return namesIn(qEnvironmentVariable("XDG_STATE_HOME") + u"/vantle/saves"_s).filter(u".save"_s);
}

void fill(const CalendarFolder &folder, Kind kind)
{
    QDir().mkpath(folder.path(u"home"_s));
    if (kind != Kind::New)
        folder.write(fileName, textOf(kind));
}

// What the same edit makes of the file in one save. A new event has a name of its own each time.
QByteArray savedAtOnce(Kind kind)
{
    const CalendarFolder folder;
    fill(folder, kind);
    const auto store = storeOver(folder);
    StoreError error;
    if (!store->saveEvent_span_error(edited(*store, kind), CalSpanAllEvents, &error))
        qFatal("%s", qPrintable(error.message()));
    return contentOf(folder);
}

QByteArray withoutUid(const QByteArray &text)
{
    QByteArrayList lines = text.split('\n');
    lines.removeIf([](const QByteArray &line) { return line.startsWith("UID:"); });
    return lines.join('\n');
}

// Runs it in a process of its own, which ends by SIGKILL or at the end.
void inAnotherProcess(const std::function<void()> &work)
{
    const pid_t child = ::fork();
    if (child == 0) {
        work();
        ::_exit(0);
    }
    int status = 0;
    if (::waitpid(child, &status, 0) != child || (WIFEXITED(status) && WEXITSTATUS(status) != 0))
        qFatal("The other process did not end as it was to");
}

void killedBetweenTheSteps(const CalendarFolder &folder, Kind kind)
{
    inAnotherProcess([&] {
        const auto store = storeOver(folder);
        StoreError error;
        saveFirstStep(*store, edited(*store, kind), &error);
        ::kill(::getpid(), SIGKILL);
    });
}

} // namespace

// The two saves of the event sheet.
class TwoStepSavingTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void bothStepsAreOneEdit_data();
    void bothStepsAreOneEdit();
    void anEventThatWasNotChangedStaysAsItIs_data();
    void anEventThatWasNotChangedStaysAsItIs();
    void anEventWithoutATitleHasNoneAfterwards();
    void betweenTheStepsOneOccurrenceHasThePrefix();
    void aFailingSecondStepTakesTheFirstBack_data();
    void aFailingSecondStepTakesTheFirstBack();
    void whatCannotBeTakenBackAtOnceIsAtTheNextStart();
    void afterAFailingFirstStepTheSecondIsTheEdit_data();
    void afterAFailingFirstStepTheSecondIsTheEdit();
    void withoutAJournalTheFirstStepIsRefused();
    void anotherProgramsChangeBetweenTheStepsIsKept();
    void aSeriesGoesToAnotherCalendarWithTheSecondStep();
    void savingOneOccurrenceAloneIsNoFirstStep();
    void killedBetweenTheStepsTheNextStartMendsIt_data();
    void killedBetweenTheStepsTheNextStartMendsIt();
    void killedAnywhereTheItemIsWholeAfterTheNextStart_data();
    void killedAnywhereTheItemIsWholeAfterTheNextStart();
    void whatAnotherProgramMadeOfItAfterACrashIsKept_data();
    void whatAnotherProgramMadeOfItAfterACrashIsKept();
    void anItemRemovedOrRenamedAfterACrashIsNotBroughtBack();
    void aSaveThatIsUnderWayIsLeftAlone();
    void leftOversOfOtherFoldersAreLeftAlone();

private:
    static void addKinds();
};

void TwoStepSavingTest::cleanup()
{
    QDir(qEnvironmentVariable("XDG_STATE_HOME")).removeRecursively();
}

void TwoStepSavingTest::addKinds()
{
    QTest::addColumn<Kind>("kind");

    QTest::newRow("series") << Kind::Series;
    QTest::newRow("event that happens once") << Kind::Once;
    QTest::newRow("new event") << Kind::New;
}

void TwoStepSavingTest::bothStepsAreOneEdit_data()
{
    addKinds();
}

void TwoStepSavingTest::bothStepsAreOneEdit()
{
    QFETCH(const Kind, kind);
    const CalendarFolder folder;
    fill(folder, kind);
    const auto store = storeOver(folder);
    const CalEventPtr event = edited(*store, kind);

    StoreError error;
    QVERIFY2(saveAsSheet(*store, event, &error), qPrintable(error.message()));

    QCOMPARE(withoutUid(contentOf(folder)), withoutUid(savedAtOnce(kind)));
    QCOMPARE(event->title(), u"Meal"_s);
    QCOMPARE(event->asRead()->title(), u"Meal"_s);
    QVERIFY(!event->uid().isEmpty());
    QCOMPARE(namesIn(folder.path(u"home"_s)).size(), 1);
    QCOMPARE(journal(), QStringList());
    const QString kept = u"Late lunch"_s;
    QCOMPARE(titles(*store),
        kind == Kind::Series ? QStringList({ u"Meal"_s, u"Meal"_s, kept, u"Meal"_s, u"Meal"_s })
                             : QStringList(u"Meal"_s));
}

void TwoStepSavingTest::anEventThatWasNotChangedStaysAsItIs_data()
{
    addKinds();
}

void TwoStepSavingTest::anEventThatWasNotChangedStaysAsItIs()
{
    QFETCH(const Kind, kind);
    if (kind == Kind::New)
        return; // is always a change
    const CalendarFolder folder;
    fill(folder, kind);
    const auto store = storeOver(folder);

    StoreError error;
    QVERIFY2(saveAsSheet(*store, eventsOf(*store).constFirst(), &error), qPrintable(error.message()));

    QCOMPARE(folder.read(fileName), textOf(kind));
}

void TwoStepSavingTest::anEventWithoutATitleHasNoneAfterwards()
{
    const CalendarFolder folder;
    folder.write(fileName, textOf(Kind::Series).replace("SUMMARY:Lunch\r\n", ""));
    const auto store = storeOver(folder);
    const CalEventPtr event = eventsOf(*store).constFirst();
    event->setNotes(u"Bring bread"_s);

    StoreError error;
    QVERIFY2(saveAsSheet(*store, event, &error), qPrintable(error.message()));

    QCOMPARE(event->title(), std::nullopt);
    QCOMPARE(folder.read(fileName).count("SUMMARY"), 1);
    QCOMPARE(folder.read(fileName).count("Bring bread"), 2);
}

void TwoStepSavingTest::betweenTheStepsOneOccurrenceHasThePrefix()
{
    const CalendarFolder folder;
    fill(folder, Kind::Series);
    const auto store = storeOver(folder);
    const CalEventPtr event = edited(*store, Kind::Series);

    StoreError error;
    QVERIFY2(saveFirstStep(*store, event, &error), qPrintable(error.message()));

    QCOMPARE(titles(*store), QStringList({ u"Lunch"_s, u"DUMBY Meal"_s, u"Late lunch"_s, u"Lunch"_s, u"Lunch"_s }));
    QCOMPARE(event->asRead()->title(), u"Lunch"_s);
    QCOMPARE(journal().size(), 1);
}

void TwoStepSavingTest::aFailingSecondStepTakesTheFirstBack_data()
{
    addKinds();
}

void TwoStepSavingTest::aFailingSecondStepTakesTheFirstBack()
{
    QFETCH(const Kind, kind);
    const CalendarFolder folder;
    fill(folder, kind);
    HookedCalls calls;
    const auto store = storeWith(folder, calls);
    const CalEventPtr event = edited(*store, kind);
    StoreError error;
    QVERIFY2(saveFirstStep(*store, event, &error), qPrintable(error.message()));

    bool hasFailed = false;
    calls.hook = [&](HookedCalls::Call call) {
        const bool fails = call == HookedCalls::Call::Write && !hasFailed;
        hasFailed = hasFailed || fails;
        return fails ? ENOSPC : 0;
    };
    QVERIFY(!saveSecondStep(*store, event, &error));

    QVERIFY(hasFailed);
    QCOMPARE(error.code, StoreError::Code::Io);
    QCOMPARE(contentOf(folder), textOf(kind));
    QVERIFY(!titles(*store).contains(u"DUMBY Meal"_s));
    QCOMPARE(journal(), QStringList());
    // The record keeps the edits, and can be saved again.
    QCOMPARE(event->title(), u"Meal"_s);
    QVERIFY2(saveAsSheet(*store, event, &error), qPrintable(error.message()));
    QCOMPARE(withoutUid(contentOf(folder)), withoutUid(savedAtOnce(kind)));
}

void TwoStepSavingTest::whatCannotBeTakenBackAtOnceIsAtTheNextStart()
{
    const CalendarFolder folder;
    fill(folder, Kind::Series);
    HookedCalls calls;
    auto store = storeWith(folder, calls);
    const CalEventPtr event = edited(*store, Kind::Series);
    StoreError error;
    QVERIFY(saveFirstStep(*store, event, &error));
    calls.hook = [](HookedCalls::Call call) { return call == HookedCalls::Call::Write ? ENOSPC : 0; };

    QVERIFY(!saveSecondStep(*store, event, &error));
    QVERIFY(folder.read(fileName).contains("DUMBY"));
    QCOMPARE(journal().size(), 1);
    store.reset();
    store = storeOver(folder);

    QCOMPARE(folder.read(fileName), textOf(Kind::Series));
    QCOMPARE(journal(), QStringList());
}

void TwoStepSavingTest::afterAFailingFirstStepTheSecondIsTheEdit_data()
{
    addKinds();
}

void TwoStepSavingTest::afterAFailingFirstStepTheSecondIsTheEdit()
{
    QFETCH(const Kind, kind);
    const CalendarFolder folder;
    fill(folder, kind);
    HookedCalls calls;
    const auto store = storeWith(folder, calls);
    const CalEventPtr event = edited(*store, kind);
    calls.hook = [](HookedCalls::Call call) { return call == HookedCalls::Call::Create ? EDQUOT : 0; };

    StoreError error;
    QVERIFY(!saveFirstStep(*store, event, &error));
    QCOMPARE(contentOf(folder), textOf(kind));
    calls.hook = [](HookedCalls::Call) { return 0; };
    QVERIFY2(saveSecondStep(*store, event, &error), qPrintable(error.message()));

    QCOMPARE(withoutUid(contentOf(folder)), withoutUid(savedAtOnce(kind)));
    QCOMPARE(journal(), QStringList());
}

void TwoStepSavingTest::withoutAJournalTheFirstStepIsRefused()
{
    const CalendarFolder folder;
    fill(folder, Kind::Series);
    const auto store = storeOver(folder);
    const CalEventPtr event = edited(*store, Kind::Series);
    QFile inTheWay(qEnvironmentVariable("XDG_STATE_HOME"));
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));

    StoreError error;
    const bool isFirstSaved = saveFirstStep(*store, event, &error);
    const QByteArray afterFirst = folder.read(fileName);
    StoreError secondError;
    const bool isSecondSaved = saveSecondStep(*store, event, &secondError);
    inTheWay.remove();

    QVERIFY(!isFirstSaved);
    QCOMPARE(error.item, u"Lunch"_s);
    QVERIFY(!error.reason.isEmpty());
    QCOMPARE(afterFirst, textOf(Kind::Series));
    QVERIFY2(isSecondSaved, qPrintable(secondError.message()));
    QCOMPARE(folder.read(fileName), savedAtOnce(Kind::Series));
}

void TwoStepSavingTest::anotherProgramsChangeBetweenTheStepsIsKept()
{
    const CalendarFolder folder;
    fill(folder, Kind::Series);
    const auto store = storeOver(folder);
    const CalEventPtr event = edited(*store, Kind::Series);
    StoreError error;
    QVERIFY(saveFirstStep(*store, event, &error));
    folder.writeByRenaming(fileName, folder.read(fileName).replace("Late lunch", "Very late lunch"));

    QVERIFY(!saveSecondStep(*store, event, &error));

    QCOMPARE(error.code, StoreError::Code::Conflict);
    QCOMPARE(folder.read(fileName), textOf(Kind::Series).replace("Late lunch", "Very late lunch"));
    QCOMPARE(journal(), QStringList());
}

void TwoStepSavingTest::aSeriesGoesToAnotherCalendarWithTheSecondStep()
{
    const CalendarFolder folder;
    fill(folder, Kind::Series);
    QDir().mkpath(folder.path(u"work"_s));
    const auto store = storeOver(folder);
    const CalEventPtr event = edited(*store, Kind::Series);
    event->setCalendar(store->calendarWithUID(u"work"_s));

    StoreError error;
    QVERIFY2(saveFirstStep(*store, event, &error), qPrintable(error.message()));
    QCOMPARE(namesIn(folder.path(u"work"_s)), QStringList());
    QVERIFY2(saveSecondStep(*store, event, &error), qPrintable(error.message()));

    QCOMPARE(folder.read(u"work/item.ics"_s), savedAtOnce(Kind::Series));
    QCOMPARE(namesIn(folder.path(u"home"_s)), QStringList());
    QCOMPARE(journal(), QStringList());
}

void TwoStepSavingTest::savingOneOccurrenceAloneIsNoFirstStep()
{
    const CalendarFolder folder;
    fill(folder, Kind::Series);
    auto store = storeOver(folder);
    const CalEventPtr event = edited(*store, Kind::Series);

    StoreError error;
    QVERIFY2(store->saveEvent_span_error(event, CalSpanThisEvent, &error), qPrintable(error.message()));
    QCOMPARE(journal(), QStringList());
    store = storeOver(folder);

    QCOMPARE(titles(*store), QStringList({ u"Lunch"_s, u"Meal"_s, u"Late lunch"_s, u"Lunch"_s, u"Lunch"_s }));
}

void TwoStepSavingTest::killedBetweenTheStepsTheNextStartMendsIt_data()
{
    addKinds();
}

void TwoStepSavingTest::killedBetweenTheStepsTheNextStartMendsIt()
{
    QFETCH(const Kind, kind);
    const CalendarFolder folder;
    fill(folder, kind);
    killedBetweenTheSteps(folder, kind);
    QVERIFY(contentOf(folder).contains("SUMMARY:DUMBY Meal"));

    const auto store = storeOver(folder);

    QVERIFY(!titles(*store).contains(u"DUMBY Meal"_s));
    QCOMPARE(contentOf(folder), textOf(kind));
    QCOMPARE(journal(), QStringList());
}

void TwoStepSavingTest::killedAnywhereTheItemIsWholeAfterTheNextStart_data()
{
    addKinds();
}

void TwoStepSavingTest::killedAnywhereTheItemIsWholeAfterTheNextStart()
{
    QFETCH(const Kind, kind);
    const QByteArray after = withoutUid(savedAtOnce(kind));
    const auto saveAndKillAt = [kind](const CalendarFolder &folder, int at) {
        int count = 0;
        HookedCalls calls;
        calls.hook = [&](HookedCalls::Call) {
            if (count++ == at)
                ::kill(::getpid(), SIGKILL);
            return 0;
        };
        const auto store = storeWith(folder, calls);
        StoreError error;
        if (!saveAsSheet(*store, edited(*store, kind), &error))
            qFatal("%s", qPrintable(error.message()));
        return count;
    };
    const CalendarFolder unharmed;
    fill(unharmed, kind);
    const int calls = saveAndKillAt(unharmed, -1);
    QVERIFY(calls >= 20);

    QSet<QByteArray> seen;
    for (int at = 0; at < calls; ++at) {
        const CalendarFolder folder;
        fill(folder, kind);
        inAnotherProcess([&] { saveAndKillAt(folder, at); });
        const auto store = storeOver(folder);

        const QByteArray left = contentOf(folder);
        QVERIFY2(left == textOf(kind) || withoutUid(left) == after, left.constData());
        QCOMPARE(journal(), QStringList());
        seen.insert(withoutUid(left));
    }
    QCOMPARE(seen.size(), 2);
}

void TwoStepSavingTest::whatAnotherProgramMadeOfItAfterACrashIsKept_data()
{
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<QByteArray>("from");
    QTest::addColumn<QByteArray>("to");
    QTest::addColumn<QStringList>("shown");

    const QString lunch = u"Lunch"_s;
    const QString late = u"Late lunch"_s;
    QTest::newRow("another occurrence") << Kind::Series << QByteArray("Late lunch") << QByteArray("Brunch")
                                        << QStringList { lunch, lunch, u"Brunch"_s, lunch, lunch };
    QTest::newRow("the occurrence, but not its title")
        << Kind::Series << QByteArray("SUMMARY:DUMBY Meal\r\n") << QByteArray("SUMMARY:DUMBY Meal\r\nX-THEIRS:1\r\n")
        << QStringList { lunch, u"Meal"_s, late, lunch, lunch };
    QTest::newRow("the title of the occurrence") << Kind::Series << QByteArray("DUMBY Meal") << QByteArray("Theirs")
                                                 << QStringList { lunch, u"Theirs"_s, late, lunch, lunch };
    QTest::newRow("an event that happens once")
        << Kind::Once << QByteArray("X-KEEP:1") << QByteArray("X-THEIRS:1") << QStringList { u"Meal"_s };
    QTest::newRow("a new event") << Kind::New << QByteArray("END:VEVENT") << QByteArray("X-THEIRS:1\r\nEND:VEVENT")
                                 << QStringList { u"Meal"_s };
}

void TwoStepSavingTest::whatAnotherProgramMadeOfItAfterACrashIsKept()
{
    QFETCH(const Kind, kind);
    QFETCH(const QByteArray, from);
    QFETCH(const QByteArray, to);
    QFETCH(const QStringList, shown);
    const CalendarFolder folder;
    fill(folder, kind);
    killedBetweenTheSteps(folder, kind);
    const QString name = u"home/"_s + itemsOf(folder).constFirst();
    QVERIFY(folder.read(name).contains(from));
    folder.writeByRenaming(name, folder.read(name).replace(from, to));

    const auto store = storeOver(folder);

    QCOMPARE(titles(*store), shown);
    QVERIFY(folder.read(name).contains(to.split('\n').constLast()));
    QVERIFY(!folder.read(name).contains("DUMBY"));
    QCOMPARE(journal(), QStringList());
}

void TwoStepSavingTest::anItemRemovedOrRenamedAfterACrashIsNotBroughtBack()
{
    const CalendarFolder removed;
    fill(removed, Kind::Series);
    killedBetweenTheSteps(removed, Kind::Series);
    QVERIFY(removed.remove(fileName));
    const CalendarFolder renamed;
    fill(renamed, Kind::Series);
    killedBetweenTheSteps(renamed, Kind::Series);
    QVERIFY(QFile::rename(renamed.path(fileName), renamed.path(u"home/other.ics"_s)));

    const auto store = storeOver(removed);
    const auto other = storeOver(renamed);

    QCOMPARE(titles(*store), QStringList());
    QCOMPARE(itemsOf(removed), QStringList());
    QCOMPARE(renamed.read(u"home/other.ics"_s), textOf(Kind::Series));
    QCOMPARE(itemsOf(renamed), QStringList { u"other.ics"_s });
    QCOMPARE(journal(), QStringList());
}

void TwoStepSavingTest::aSaveThatIsUnderWayIsLeftAlone()
{
    const CalendarFolder folder;
    fill(folder, Kind::Series);
    const auto store = storeOver(folder);
    const CalEventPtr event = edited(*store, Kind::Series);
    StoreError error;
    QVERIFY(saveFirstStep(*store, event, &error));

    inAnotherProcess([&] { storeOver(folder); });
    QCOMPARE(journal().size(), 1);
    QVERIFY2(saveSecondStep(*store, event, &error), qPrintable(error.message()));

    QCOMPARE(folder.read(fileName), savedAtOnce(Kind::Series));
}

void TwoStepSavingTest::leftOversOfOtherFoldersAreLeftAlone()
{
    const CalendarFolder folder;
    fill(folder, Kind::Once);
    killedBetweenTheSteps(folder, Kind::Once);
    const CalendarFolder other;
    fill(other, Kind::Once);

    storeOver(other);
    QCOMPARE(journal().size(), 1);
    storeOver(folder);

    QCOMPARE(folder.read(fileName), textOf(Kind::Once));
    QCOMPARE(journal(), QStringList());
}

VANTLE_TEST(TwoStepSavingTest)
#include "TwoStepSavingTest.moc"
