// SPDX-License-Identifier: MIT
#include "TestRegistry.h"
#include "TwoStepItem.h"

#include <QDir>
#include <QTest>

#include <cerrno>

using namespace Qt::StringLiterals;
using namespace TwoStep;

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

VANTLE_TEST(TwoStepSavingTest)
#include "TwoStepSavingTest.moc"
