// SPDX-License-Identifier: MIT
#include "TestRegistry.h"
#include "TwoStepItem.h"

#include <QDir>
#include <QSet>
#include <QTest>

#include <csignal>
#include <functional>

#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace TwoStep;

namespace
{

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

// What the next start finds when Vantle was ended in the middle of the event sheet's two saves.
class InterruptedSavingTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
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

void InterruptedSavingTest::cleanup()
{
    QDir(qEnvironmentVariable("XDG_STATE_HOME")).removeRecursively();
}

void InterruptedSavingTest::addKinds()
{
    QTest::addColumn<Kind>("kind");

    QTest::newRow("series") << Kind::Series;
    QTest::newRow("event that happens once") << Kind::Once;
    QTest::newRow("new event") << Kind::New;
}

void InterruptedSavingTest::killedBetweenTheStepsTheNextStartMendsIt_data()
{
    addKinds();
}

void InterruptedSavingTest::killedBetweenTheStepsTheNextStartMendsIt()
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

void InterruptedSavingTest::killedAnywhereTheItemIsWholeAfterTheNextStart_data()
{
    addKinds();
}

void InterruptedSavingTest::killedAnywhereTheItemIsWholeAfterTheNextStart()
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

void InterruptedSavingTest::whatAnotherProgramMadeOfItAfterACrashIsKept_data()
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

void InterruptedSavingTest::whatAnotherProgramMadeOfItAfterACrashIsKept()
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

void InterruptedSavingTest::anItemRemovedOrRenamedAfterACrashIsNotBroughtBack()
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

void InterruptedSavingTest::aSaveThatIsUnderWayIsLeftAlone()
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

void InterruptedSavingTest::leftOversOfOtherFoldersAreLeftAlone()
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

VANTLE_TEST(InterruptedSavingTest)
#include "InterruptedSavingTest.moc"
