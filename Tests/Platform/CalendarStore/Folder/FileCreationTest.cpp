// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "InterferingCalls.h"
#include "TestRegistry.h"

#include <ItemFileWriter.h>

#include <QDir>
#include <QTest>

#include <cerrno>
#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using FolderStore::FileCalls;
using FolderStore::ItemFileWriter;
using FolderStore::WritingFault;

namespace
{

constexpr auto text = "the content\r\n";

QStringList namesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
}

// A folder with one file, "c/a.ics", and another name that is free, "c/b.ics".
struct Place {
    Place() { folder.write(u"c/a.ics"_s, text); }
    QStringList names() const { return namesIn(folder.path(u"c"_s)); }
    QString taken() const { return folder.path(u"c/a.ics"_s); }
    QString free() const { return folder.path(u"c/b.ics"_s); }

    CalendarFolder folder;
};

enum class Step { Create, Remove };

bool isDone(FileCalls &calls, const Place &place, Step step)
{
    return step == Step::Create ? ItemFileWriter(calls).create(place.free(), text).isOk()
                                : ItemFileWriter(calls).remove(place.taken(), text).isOk();
}

// How many calls a step makes when nothing goes wrong.
int callsOf(Step step)
{
    const Place place;
    InterferingCalls calls;
    return isDone(calls, place, step) ? calls.made : 0;
}

void addSteps()
{
    QTest::addColumn<Step>("step");
    QTest::newRow("create") << Step::Create;
    QTest::newRow("remove") << Step::Remove;
}

} // namespace

Q_DECLARE_METATYPE(Step)

// Files that come and files that go.
class FileCreationTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewFileIsWholeAndNothingElseIsLeft();
    void aNameThatIsTakenIsLeftAlone();
    void aNameThatIsTakenInTheLastMomentIsLeftAlone_data();
    void aNameThatIsTakenInTheLastMomentIsLeftAlone();
    void aRemovedFileLeavesNothing();
    void aFileThatIsNotAsExpectedIsNotRemoved();
    void aFileChangedInTheLastMomentIsNotRemoved_data();
    void aFileChangedInTheLastMomentIsNotRemoved();
    void everyFailingCallLeavesWhatWas_data();
    void everyFailingCallLeavesWhatWas();
    void aKilledWriterLeavesTheFileWholeOrNotThere_data();
    void aKilledWriterLeavesTheFileWholeOrNotThere();
    void bothWorkWhereNamesCannotBeKeptFree();
};

void FileCreationTest::aNewFileIsWholeAndNothingElseIsLeft()
{
    const Place place;
    FileCalls calls;

    QVERIFY(ItemFileWriter(calls).create(place.free(), text).isOk());

    QCOMPARE(place.folder.read(u"c/b.ics"_s), QByteArray(text));
    QCOMPARE(place.names(), (QStringList { u"a.ics"_s, u"b.ics"_s }));
}

void FileCreationTest::aNameThatIsTakenIsLeftAlone()
{
    const Place place;
    FileCalls calls;

    const auto outcome = ItemFileWriter(calls).create(place.taken(), "other");

    QVERIFY(!outcome);
    QCOMPARE(outcome.error().kind, WritingFault::Kind::Taken);
    QCOMPARE(place.folder.read(u"c/a.ics"_s), QByteArray(text));
    QCOMPARE(place.names(), QStringList { u"a.ics"_s });
}

void FileCreationTest::aNameThatIsTakenInTheLastMomentIsLeftAlone_data()
{
    QTest::addColumn<bool>("cannotExchange");
    QTest::newRow("in one step") << false;
    QTest::newRow("by a link") << true;
}

void FileCreationTest::aNameThatIsTakenInTheLastMomentIsLeftAlone()
{
    QFETCH(const bool, cannotExchange);
    const Place place;
    InterferingCalls calls;
    calls.cannotExchange = cannotExchange;
    calls.actsAt = 0;
    calls.action = [&] { place.folder.write(u"c/b.ics"_s, "somebody else's"); };

    const auto outcome = ItemFileWriter(calls).create(place.free(), text);

    QVERIFY(!outcome);
    QCOMPARE(outcome.error().kind, WritingFault::Kind::Taken);
    QCOMPARE(place.folder.read(u"c/b.ics"_s), QByteArray("somebody else's"));
    QCOMPARE(place.names(), (QStringList { u"a.ics"_s, u"b.ics"_s }));
}

void FileCreationTest::aRemovedFileLeavesNothing()
{
    const Place place;
    FileCalls calls;

    QVERIFY(ItemFileWriter(calls).remove(place.taken(), text).isOk());

    QVERIFY(place.names().isEmpty());
}

void FileCreationTest::aFileThatIsNotAsExpectedIsNotRemoved()
{
    const Place place;
    FileCalls calls;

    const auto outcome = ItemFileWriter(calls).remove(place.taken(), "something else");

    QVERIFY(!outcome);
    QCOMPARE(outcome.error().kind, WritingFault::Kind::Changed);
    QCOMPARE(place.folder.read(u"c/a.ics"_s), QByteArray(text));
    QCOMPARE(place.names(), QStringList { u"a.ics"_s });
}

void FileCreationTest::aFileChangedInTheLastMomentIsNotRemoved_data()
{
    QTest::addColumn<bool>("byRenaming");
    QTest::newRow("written in place") << false;
    QTest::newRow("renamed over") << true;
}

void FileCreationTest::aFileChangedInTheLastMomentIsNotRemoved()
{
    QFETCH(const bool, byRenaming);
    const Place place;
    InterferingCalls calls;
    calls.actsAt = 0; // the file loses its name
    calls.action = [&] {
        if (byRenaming)
            place.folder.writeByRenaming(u"c/a.ics"_s, "somebody else's");
        else
            place.folder.write(u"c/a.ics"_s, "somebody else's");
    };

    const auto outcome = ItemFileWriter(calls).remove(place.taken(), text);

    QVERIFY(!outcome);
    QCOMPARE(outcome.error().kind, WritingFault::Kind::Changed);
    QCOMPARE(place.folder.read(u"c/a.ics"_s), QByteArray("somebody else's"));
    QCOMPARE(place.names(), QStringList { u"a.ics"_s });
}

void FileCreationTest::everyFailingCallLeavesWhatWas_data()
{
    addSteps();
}

void FileCreationTest::everyFailingCallLeavesWhatWas()
{
    QFETCH(const Step, step);
    // The last call of a removal clears the file away that has lost its name: it is gone by then.
    const int count = callsOf(step) - (step == Step::Remove ? 1 : 0);
    QVERIFY(count >= 2);

    for (int at = 0; at < count; ++at) {
        const Place place;
        InterferingCalls calls;
        calls.failsAt = at;

        QVERIFY2(!isDone(calls, place, step), qPrintable(QString::number(at)));

        QCOMPARE(place.folder.read(u"c/a.ics"_s), QByteArray(text));
        QCOMPARE(place.names(), QStringList { u"a.ics"_s });
    }
}

void FileCreationTest::aKilledWriterLeavesTheFileWholeOrNotThere_data()
{
    addSteps();
}

void FileCreationTest::aKilledWriterLeavesTheFileWholeOrNotThere()
{
    QFETCH(const Step, step);
    const int count = callsOf(step);
    for (int at = 0; at < count; ++at) {
        const Place place;
        const pid_t child = ::fork();
        if (child == 0) {
            InterferingCalls calls;
            calls.actsAt = at;
            calls.actsAfter = true;
            calls.action = [] { ::kill(::getpid(), SIGKILL); };
            (void)isDone(calls, place, step);
            ::_exit(0);
        }
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(WIFSIGNALED(status));

        for (const QString &name : place.names()) {
            const bool isItem = name == u"a.ics" || name == u"b.ics";
            QVERIFY(isItem || (name.startsWith(u".vantle-") && name.endsWith(u".tmp")));
            QVERIFY(!isItem || place.folder.read(u"c/"_s + name) == text);
        }
    }
}

void FileCreationTest::bothWorkWhereNamesCannotBeKeptFree()
{
    const Place place;
    InterferingCalls calls;
    calls.cannotExchange = true;

    QVERIFY(ItemFileWriter(calls).create(place.free(), text).isOk());
    QVERIFY(ItemFileWriter(calls).remove(place.taken(), text).isOk());

    QCOMPARE(place.folder.read(u"c/b.ics"_s), QByteArray(text));
    QCOMPARE(place.names(), QStringList { u"b.ics"_s });
}

VANTLE_TEST(FileCreationTest)
#include "FileCreationTest.moc"
