// SPDX-License-Identifier: MIT
#include "Operations.h"
#include "WriterProcess.h"

#include <CalendarFolder.h>
#include <HookedCalls.h>
#include <TestRegistry.h>

#include <QDir>
#include <QTest>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace
{

// Puts a small disk in the place of the folder, fills it to the last byte, runs the writer and takes what
// the disk holds then to another folder. Given: that folder, then the writer's own arguments.
const QString onAFullDisk = u"set -e; out=$1; shift; root=$2\n"
                            "cp -a \"$root/.\" \"$out\"\n"
                            "mount -t tmpfs -o size=200k,mode=755 tmpfs \"$root\"\n"
                            "cp -a \"$out/.\" \"$root\"; rm -r \"$out\"/*\n"
                            "cat /dev/zero > \"$root/filler\" 2>/dev/null || true\n"
                            "status=0; \"$@\" || status=$?\n"
                            "rm \"$root/filler\"; cp -a \"$root/.\" \"$out\"; exit $status\n"_s;
// Lets no file grow beyond four kilobytes.
const QString withSmallFiles = u"ulimit -f 4; exec \"$@\""_s;

bool canMount()
{
    return QProcess::execute(u"unshare"_s,
               { u"--user"_s, u"--map-root-user"_s, u"--mount"_s, u"mount"_s, u"-t"_s, u"tmpfs"_s, u"tmpfs"_s,
                   u"/mnt"_s })
        == 0;
}

void addOperationsThatNeedRoom()
{
    QTest::addColumn<QString>("operation");

    for (const QString &name : Operations::names()) {
        if (name != u"remove") // which needs none
            QTest::newRow(qPrintable(name)) << name;
    }
}

} // namespace

// No room for what is to be written.
class FullDiskTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFullDiskRefusesTheSave_data() { addOperationsThatNeedRoom(); }
    void aFullDiskRefusesTheSave();
    void aLimitOfTheSizeOfFilesRefusesTheSave_data() { addOperationsThatNeedRoom(); }
    void aLimitOfTheSizeOfFilesRefusesTheSave();

private:
    static void check(WriterProcess &writer, const CalendarFolder &folder, const QString &operation);
    static void checkWithFullDiskPretended(const QString &operation);
    static void checkRefusal(const QByteArray &refusal, const CalendarFolder &folder, const QString &operation);
};

void FullDiskTest::check(WriterProcess &writer, const CalendarFolder &folder, const QString &operation)
{
    QVERIFY(writer.isReady());
    writer.go();
    QVERIFY(writer.waitForEnd());

    QVERIFY(!writer.hasCrashed());
    QCOMPARE(writer.done(), 0);
    checkRefusal(writer.refusal(), folder, operation);
}

void FullDiskTest::checkRefusal(const QByteArray &refusal, const CalendarFolder &folder, const QString &operation)
{
    const bool namesCalendar = refusal.contains("“Home”") || (operation == u"move" && refusal.contains("“Work”"));
    QVERIFY2(refusal.contains("“Number ") && namesCalendar, refusal.constData());
    QCOMPARE(Operations::faultIn(folder, operation, 0), QString());
    // Nothing is left of the attempt.
    const QDir home(folder.path(u"Home"_s));
    const QStringList left = home.entryList({ u".vantle-*"_s }, QDir::Files | QDir::Hidden);
    QVERIFY2(left.isEmpty(), qPrintable(left.join(u' ')));
}

// The calls that write say what those of a full disk would say.
void FullDiskTest::checkWithFullDiskPretended(const QString &operation)
{
    const CalendarFolder folder;
    Operations::prepare(folder);
    HookedCalls calls;
    calls.hook = [](HookedCalls::Call call) { return call == HookedCalls::Call::Write ? ENOSPC : 0; };
    FolderCalendarStore::Options options;
    options.root = folder.root();
    options.watchesForChanges = false;
    std::vector<std::unique_ptr<CalendarStoreBackend>> backends;
    backends.push_back(std::make_unique<FolderCalendarStore>(options, folder.clock(), calls));
    CalCalendarStore store(std::move(backends));

    const auto refusal = (*Operations::named(operation))(store, 1);

    QVERIFY(refusal);
    checkRefusal(refusal->message().toUtf8(), folder, operation);
}

void FullDiskTest::aFullDiskRefusesTheSave()
{
    QFETCH(const QString, operation);
    if (!canMount()) {
        qWarning("THIS SYSTEM LETS NOBODY MOUNT: THE FULL DISK IS PRETENDED BY THE CALLS THAT WRITE");
        checkWithFullDiskPretended(operation);
        return;
    }
    const CalendarFolder folder;
    Operations::prepare(folder);
    const CalendarFolder after;
    QDir().mkpath(after.root());

    WriterProcess writer(folder, operation, 1,
        { u"unshare"_s, u"--user"_s, u"--map-root-user"_s, u"--mount"_s, u"bash"_s, u"-c"_s, onAFullDisk, u"bash"_s,
            after.root() });

    check(writer, after, operation);
}

void FullDiskTest::aLimitOfTheSizeOfFilesRefusesTheSave()
{
    QFETCH(const QString, operation);
    const CalendarFolder folder;
    Operations::prepare(folder);

    WriterProcess writer(folder, operation, 1, { u"bash"_s, u"-c"_s, withSmallFiles, u"bash"_s });

    check(writer, folder, operation);
}

VANTLE_TEST(FullDiskTest)
#include "FullDiskTest.moc"
