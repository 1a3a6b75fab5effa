// SPDX-License-Identifier: MIT
#include "Operations.h"
#include "Tracing.h"
#include "WriterProcess.h"

#include <CalendarFolder.h>
#include <TestRegistry.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

struct Step {
    const char *name;
    std::function<bool(const QByteArray &call)> isIt;
};

bool isOf(const QByteArray &call, const char *name, const QByteArray &detail)
{
    return call.startsWith(QByteArray(name).append('(')) && call.contains(detail) && !call.contains("= -1");
}

// The steps of a safe save, each by the call that does it.
std::vector<Step> stepsFor(const QByteArray &fileName)
{
    return {
        { "make a temporary file",
            [](const QByteArray &call) {
                return isOf(call, "openat", ".vantle-") && call.contains("O_CREAT|O_EXCL");
            } },
        { "write it", [](const QByteArray &call) { return isOf(call, "write", ".vantle-"); } },
        { "flush it", [](const QByteArray &call) { return isOf(call, "fsync", ".vantle-"); } },
        { "exchange it",
            [fileName](const QByteArray &call) {
                return isOf(call, "renameat2", "RENAME_EXCHANGE") && call.contains(fileName);
            } },
        { "open what came out",
            [](const QByteArray &call) { return isOf(call, "openat", ".vantle-") && call.contains("O_RDONLY"); } },
        { "read it", [](const QByteArray &call) { return isOf(call, "read", ".vantle-"); } },
        { "flush the folder", [](const QByteArray &call) { return isOf(call, "fsync", "/Home>"); } },
        { "remove it", [](const QByteArray &call) { return isOf(call, "unlinkat", ".vantle-"); } },
    };
}

} // namespace

// The order of the calls that a save makes, as the system sees them.
class WritingOrderTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSaveWritesFlushesExchangesComparesAndFlushes_data();
    void aSaveWritesFlushesExchangesComparesAndFlushes();
    void nothingIsWrittenToTheItemItself();
};

void WritingOrderTest::aSaveWritesFlushesExchangesComparesAndFlushes_data()
{
    QTest::addColumn<QString>("operation");

    for (const QString &name : { u"task"_s, u"event"_s, u"occurrence"_s, u"series"_s })
        QTest::newRow(qPrintable(name)) << name;
}

void WritingOrderTest::aSaveWritesFlushesExchangesComparesAndFlushes()
{
    QFETCH(const QString, operation);
    const CalendarFolder folder;
    Operations::prepare(folder);
    WriterProcess writer(folder, operation, 1);
    Tracing tracing(
        writer.processId(), { u"-y"_s, u"-e"_s, u"trace=openat,read,write,fsync,fdatasync,/^rename,/^unlink"_s });
    QVERIFY(tracing.isJoined());
    writer.go();
    QVERIFY(writer.waitForEnd());
    QCOMPARE(writer.done(), 1);

    // Each step is looked for behind the one before it.
    const QByteArrayList calls = tracing.calls();
    auto at = calls.cbegin();
    for (const Step &step : stepsFor(operation.toLatin1() + ".ics")) {
        at = std::find_if(at, calls.cend(), step.isIt);
        QVERIFY2(
            at != calls.cend(), QByteArray(step.name).append(" is missing in:\n").append(calls.join('\n')).constData());
        ++at;
    }
}

void WritingOrderTest::nothingIsWrittenToTheItemItself()
{
    const CalendarFolder folder;
    Operations::prepare(folder);
    WriterProcess writer(folder, u"task"_s, 3);
    Tracing tracing(writer.processId(), { u"-y"_s, u"-e"_s, u"trace=openat,write,pwrite64,truncate,ftruncate"_s });
    QVERIFY(tracing.isJoined());
    writer.go();
    QVERIFY(writer.waitForEnd());

    for (const QByteArray &call : tracing.calls()) {
        const bool isOfItem = call.contains("task.ics");
        const bool isForWriting = !call.startsWith("openat(") || call.contains("O_WRONLY") || call.contains("O_RDWR");
        QVERIFY2(!isOfItem || !isForWriting, call.constData());
    }
}

VANTLE_TEST(WritingOrderTest)
#include "WritingOrderTest.moc"
