// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "InterferingCalls.h"
#include "TestRegistry.h"

#include <ItemFileWriter.h>

#include <QDir>
#include <QFile>
#include <QTest>

#include <cerrno>
#include <csignal>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utime.h>

using namespace Qt::StringLiterals;
using FolderStore::FileCalls;
using FolderStore::ItemFileWriter;
using FolderStore::WritingFault;

namespace
{

constexpr auto oldText = "the old content\r\n";
constexpr auto newText = "the new content, which is longer\r\n";

QStringList namesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
}

// How many calls a save makes when nothing goes wrong.
int callsOfASave()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, oldText);
    InterferingCalls calls;
    const bool isOk = ItemFileWriter(calls).replace(folder.path(u"c/a.ics"_s), oldText, newText).isOk();
    return isOk ? calls.made : 0;
}

} // namespace

class ItemFileWriterTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFileIsReplacedAndNothingElseIsLeft();
    void ownerAndPermissionsStay();
    void everyFailingCallLeavesTheOldFile_data();
    void everyFailingCallLeavesTheOldFile();
    void aKilledWriterLeavesTheOldFileOrTheNewOne();
    void aFileThatIsNotAsExpectedIsLeftAlone();
    void aFileChangedInTheLastMomentIsKept_data();
    void aFileChangedInTheLastMomentIsKept();
    void aFileThatVanishesInTheLastMomentDoesNotComeBack();
    void whatIsOverwrittenBeforeItIsAcknowledgedIsNoSuccess();
    void whatIsWrittenIntoAnOpenFileIsNotLost_data();
    void whatIsWrittenIntoAnOpenFileIsNotLost();
    void aReadOnlyFileIsNotReplaced();
    void aFolderThatCannotBeWrittenIsReported();
    void aLinkIsNotFollowed();
    void withoutExchangeTheFileIsRenamedOver();
    void withoutExchangeAChangedFileIsKept();
    void leftoversGoAfterADay();
};

void ItemFileWriterTest::aFileIsReplacedAndNothingElseIsLeft()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, oldText);
    FileCalls calls;

    QVERIFY(ItemFileWriter(calls).replace(folder.path(u"c/a.ics"_s), oldText, newText).isOk());

    QCOMPARE(folder.read(u"c/a.ics"_s), QByteArray(newText));
    QCOMPARE(namesIn(folder.path(u"c"_s)), QStringList { u"a.ics"_s });
}

void ItemFileWriterTest::ownerAndPermissionsStay()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, oldText);
    const QByteArray path = QFile::encodeName(folder.path(u"c/a.ics"_s));
    const bool isRoot = ::geteuid() == 0;
    QVERIFY(!isRoot || ::chown(path.constData(), 1234, 4321) == 0);
    QVERIFY(::chmod(path.constData(), 0664) == 0);
    struct stat before = {};
    QVERIFY(::stat(path.constData(), &before) == 0);
    FileCalls calls;

    QVERIFY(ItemFileWriter(calls).replace(folder.path(u"c/a.ics"_s), oldText, newText).isOk());

    struct stat after = {};
    QVERIFY(::stat(path.constData(), &after) == 0);
    QCOMPARE(after.st_mode, before.st_mode);
    QCOMPARE(after.st_uid, before.st_uid);
    QCOMPARE(after.st_gid, before.st_gid);
}

void ItemFileWriterTest::everyFailingCallLeavesTheOldFile_data()
{
    QTest::addColumn<int>("reason");

    QTest::newRow("disk full") << ENOSPC;
    QTest::newRow("quota") << EDQUOT;
    QTest::newRow("input/output error") << EIO;
    QTest::newRow("file-size limit") << EFBIG;
    QTest::newRow("read-only disk") << EROFS;
    QTest::newRow("no permission") << EACCES;
}

void ItemFileWriterTest::everyFailingCallLeavesTheOldFile()
{
    QFETCH(const int, reason);
    const int count = callsOfASave();
    QVERIFY(count >= 8);

    // The last call clears the old file away; by then the new one is safe, and the save is a success.
    for (int at = 0; at < count - 1; ++at) {
        const CalendarFolder folder;
        folder.write(u"c/a.ics"_s, oldText);
        InterferingCalls calls;
        calls.failsAt = at;
        calls.reason = reason;

        const auto outcome = ItemFileWriter(calls).replace(folder.path(u"c/a.ics"_s), oldText, newText);

        QVERIFY2(!outcome, qPrintable(QString::number(at)));
        QVERIFY(!outcome.error().reason.isEmpty());
        QCOMPARE(folder.read(u"c/a.ics"_s), QByteArray(oldText));
        QCOMPARE(namesIn(folder.path(u"c"_s)), QStringList { u"a.ics"_s });
    }
}

void ItemFileWriterTest::aKilledWriterLeavesTheOldFileOrTheNewOne()
{
    const int count = callsOfASave();
    QSet<QByteArray> seen;
    for (int at = 0; at < count; ++at) {
        for (const bool after : { false, true }) {
            const CalendarFolder folder;
            folder.write(u"c/a.ics"_s, oldText);
            const QString path = folder.path(u"c/a.ics"_s);

            const pid_t child = ::fork();
            if (child == 0) {
                InterferingCalls calls;
                calls.actsAt = at;
                calls.actsAfter = after;
                calls.action = [] { ::kill(::getpid(), SIGKILL); };
                (void)ItemFileWriter(calls).replace(path, oldText, newText);
                ::_exit(0);
            }
            int status = 0;
            QCOMPARE(::waitpid(child, &status, 0), child);
            QVERIFY(WIFSIGNALED(status));

            const QByteArray left = folder.read(u"c/a.ics"_s);
            QVERIFY(left == oldText || left == newText);
            seen.insert(left);
            for (const QString &name : namesIn(folder.path(u"c"_s)))
                QVERIFY(name == u"a.ics" || (name.startsWith(u".vantle-") && name.endsWith(u".tmp")));
        }
    }
    QCOMPARE(seen.size(), 2);
}

void ItemFileWriterTest::aFileThatIsNotAsExpectedIsLeftAlone()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, "somebody else's");
    FileCalls calls;

    const auto outcome = ItemFileWriter(calls).replace(folder.path(u"c/a.ics"_s), oldText, newText);

    QVERIFY(!outcome);
    QCOMPARE(outcome.error().kind, WritingFault::Kind::Changed);
    QCOMPARE(folder.read(u"c/a.ics"_s), QByteArray("somebody else's"));
    QCOMPARE(namesIn(folder.path(u"c"_s)), QStringList { u"a.ics"_s });
}

void ItemFileWriterTest::aFileChangedInTheLastMomentIsKept_data()
{
    QTest::addColumn<bool>("byRenaming");

    QTest::newRow("written in place") << false;
    QTest::newRow("renamed over") << true;
}

void ItemFileWriterTest::aFileChangedInTheLastMomentIsKept()
{
    QFETCH(const bool, byRenaming);
    const int count = callsOfASave();
    const int exchange = count - 3; // followed by the folder's flush and the clearing away

    for (int at = 0; at <= exchange; ++at) {
        const CalendarFolder folder;
        folder.write(u"c/a.ics"_s, oldText);
        InterferingCalls calls;
        calls.actsAt = at;
        calls.action = [&] {
            if (byRenaming)
                folder.writeByRenaming(u"c/a.ics"_s, "somebody else's");
            else
                folder.write(u"c/a.ics"_s, "somebody else's");
        };

        const auto outcome = ItemFileWriter(calls).replace(folder.path(u"c/a.ics"_s), oldText, newText);

        QVERIFY(!outcome);
        QCOMPARE(outcome.error().kind, WritingFault::Kind::Changed);
        QCOMPARE(folder.read(u"c/a.ics"_s), QByteArray("somebody else's"));
        QCOMPARE(namesIn(folder.path(u"c"_s)), QStringList { u"a.ics"_s });
    }
}

void ItemFileWriterTest::aFileThatVanishesInTheLastMomentDoesNotComeBack()
{
    const int exchange = callsOfASave() - 3;
    for (int at = 0; at <= exchange; ++at) {
        const CalendarFolder folder;
        folder.write(u"c/a.ics"_s, oldText);
        InterferingCalls calls;
        calls.actsAt = at;
        calls.action = [&] { folder.remove(u"c/a.ics"_s); };

        const auto outcome = ItemFileWriter(calls).replace(folder.path(u"c/a.ics"_s), oldText, newText);

        QVERIFY(!outcome);
        QCOMPARE(outcome.error().kind, WritingFault::Kind::Vanished);
        QVERIFY(namesIn(folder.path(u"c"_s)).isEmpty());
    }
}

// As a program does it that looked at the old file before the exchange.
void ItemFileWriterTest::whatIsOverwrittenBeforeItIsAcknowledgedIsNoSuccess()
{
    for (const bool isRemoved : { false, true }) {
        const CalendarFolder folder;
        folder.write(u"c/a.ics"_s, oldText);
        InterferingCalls calls;
        calls.actsAt = callsOfASave() - 2; // the flush of the folder
        calls.action = [&] {
            if (isRemoved)
                folder.remove(u"c/a.ics"_s);
            else
                folder.writeByRenaming(u"c/a.ics"_s, "somebody else's");
        };

        const auto outcome = ItemFileWriter(calls).replace(folder.path(u"c/a.ics"_s), oldText, newText);

        QVERIFY(!outcome);
        QCOMPARE(outcome.error().kind, isRemoved ? WritingFault::Kind::Vanished : WritingFault::Kind::Changed);
        QCOMPARE(folder.read(u"c/a.ics"_s), QByteArray(isRemoved ? "" : "somebody else's"));
        QCOMPARE(namesIn(folder.path(u"c"_s)), isRemoved ? QStringList() : QStringList { u"a.ics"_s });
    }
}

void ItemFileWriterTest::whatIsWrittenIntoAnOpenFileIsNotLost_data()
{
    QTest::addColumn<bool>("isRemoval");
    QTest::addColumn<int>("flushOfFolder"); // which call it is

    QTest::newRow("that is replaced") << false << callsOfASave() - 2;
    QTest::newRow("that is removed") << true << 1;
}

void ItemFileWriterTest::whatIsWrittenIntoAnOpenFileIsNotLost()
{
    QFETCH(const bool, isRemoval);
    QFETCH(const int, flushOfFolder);
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, oldText);
    const QString path = folder.path(u"c/a.ics"_s);
    QFile theirs(path);
    QVERIFY(theirs.open(QIODevice::ReadWrite));
    InterferingCalls calls;
    calls.actsAt = flushOfFolder;
    calls.action = [&] {
        theirs.write("somebody else's words");
        theirs.flush();
    };
    ItemFileWriter writer(calls);

    std::optional<WritingFault> fault;
    if (isRemoval) {
        if (const auto removed = writer.remove(path, oldText); !removed)
            fault = removed.error();
    } else if (const auto replaced = writer.replace(path, oldText, newText); !replaced) {
        fault = replaced.error();
    }

    QVERIFY(fault);
    QCOMPARE(fault->kind, WritingFault::Kind::Changed);
    QVERIFY(folder.read(u"c/a.ics"_s).startsWith("somebody else's words"));
    QCOMPARE(namesIn(folder.path(u"c"_s)), QStringList { u"a.ics"_s });
}

void ItemFileWriterTest::aReadOnlyFileIsNotReplaced()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, oldText);
    const QByteArray path = QFile::encodeName(folder.path(u"c/a.ics"_s));
    QVERIFY(::chmod(path.constData(), 0444) == 0);
    FileCalls calls;

    const auto outcome = ItemFileWriter(calls).replace(folder.path(u"c/a.ics"_s), oldText, newText);

    QVERIFY(!outcome);
    QCOMPARE(outcome.error().kind, WritingFault::Kind::NotAllowed);
    QCOMPARE(folder.read(u"c/a.ics"_s), QByteArray(oldText));
    struct stat status = {};
    QVERIFY(::stat(path.constData(), &status) == 0);
    QCOMPARE(status.st_mode & 0777, 0444U);
}

void ItemFileWriterTest::aFolderThatCannotBeWrittenIsReported()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, oldText);
    const QByteArray path = QFile::encodeName(folder.path(u"c"_s));
    QVERIFY(::chmod(QFile::encodeName(folder.path(u".."_s)).constData(), 0755) == 0);
    QVERIFY(::chmod(path.constData(), 0555) == 0);
    constexpr uid_t nobody = 65534;
    const bool isRoot = ::geteuid() == 0; // rights bind root to nothing
    QVERIFY(!isRoot || ::chown(QFile::encodeName(folder.path(u"c/a.ics"_s)).constData(), nobody, nobody) == 0);
    QVERIFY(!isRoot || ::seteuid(nobody) == 0);
    FileCalls calls;

    const auto outcome = ItemFileWriter(calls).replace(folder.path(u"c/a.ics"_s), oldText, newText);

    QVERIFY(!isRoot || ::seteuid(0) == 0);
    QVERIFY(::chmod(path.constData(), 0755) == 0);
    QVERIFY(!outcome);
    QCOMPARE(outcome.error().kind, WritingFault::Kind::NotAllowed);
    QCOMPARE(folder.read(u"c/a.ics"_s), QByteArray(oldText));
}

void ItemFileWriterTest::aLinkIsNotFollowed()
{
    const CalendarFolder folder;
    folder.write(u"outside"_s, oldText);
    folder.write(u"c/other"_s, "");
    QVERIFY(QFile::link(folder.path(u"outside"_s), folder.path(u"c/a.ics"_s)));
    FileCalls calls;

    const auto outcome = ItemFileWriter(calls).replace(folder.path(u"c/a.ics"_s), oldText, newText);

    QVERIFY(!outcome);
    QCOMPARE(outcome.error().kind, WritingFault::Kind::NotAllowed);
    QCOMPARE(folder.read(u"outside"_s), QByteArray(oldText));
}

void ItemFileWriterTest::withoutExchangeTheFileIsRenamedOver()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, oldText);
    InterferingCalls calls;
    calls.cannotExchange = true;

    QVERIFY(ItemFileWriter(calls).replace(folder.path(u"c/a.ics"_s), oldText, newText).isOk());

    QCOMPARE(folder.read(u"c/a.ics"_s), QByteArray(newText));
    QCOMPARE(namesIn(folder.path(u"c"_s)), QStringList { u"a.ics"_s });
}

void ItemFileWriterTest::withoutExchangeAChangedFileIsKept()
{
    const CalendarFolder folder;
    folder.write(u"c/a.ics"_s, oldText);
    InterferingCalls calls;
    calls.cannotExchange = true;
    calls.actsAt = 0;
    calls.action = [&] { folder.write(u"c/a.ics"_s, "somebody else's"); };

    const auto outcome = ItemFileWriter(calls).replace(folder.path(u"c/a.ics"_s), oldText, newText);

    QVERIFY(!outcome);
    QCOMPARE(folder.read(u"c/a.ics"_s), QByteArray("somebody else's"));
    QCOMPARE(namesIn(folder.path(u"c"_s)), QStringList { u"a.ics"_s });
}

void ItemFileWriterTest::leftoversGoAfterADay()
{
    const CalendarFolder folder;
    const auto writeAged = [&](const QString &name, int hours) {
        folder.write(name, "x");
        const time_t then = folder.clock().now().addSecs(-3600 * hours).toSecsSinceEpoch();
        const utimbuf times { then, then };
        QVERIFY(::utime(QFile::encodeName(folder.path(name)).constData(), &times) == 0);
    };
    writeAged(u"c/.vantle-old.tmp"_s, 25);
    writeAged(u"c/.vantle-young.tmp"_s, 23);
    writeAged(u"c/notes.tmp"_s, 1000);
    writeAged(u"c/a.ics"_s, 1000);

    ItemFileWriter::removeLeftovers(folder.path(u"c"_s), folder.clock().now());

    QCOMPARE(namesIn(folder.path(u"c"_s)), QStringList({ u".vantle-young.tmp"_s, u"a.ics"_s, u"notes.tmp"_s }));
}

VANTLE_TEST(ItemFileWriterTest)
#include "ItemFileWriterTest.moc"
