// SPDX-License-Identifier: MIT
#include "Operations.h"
#include "WriterProcess.h"

#include <CalendarFolder.h>
#include <TestRegistry.h>

#include <QElapsedTimer>
#include <QTest>

#include <random>

namespace
{

// In all; each operation gets its share.
int countOfKills()
{
    return qEnvironmentVariableIsSet("VANTLE_LONG_TESTS") ? 1'000 : 100;
}

// The time in which about one operation is done, passed without giving the processor away.
void passMicroseconds(qint64 microseconds)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.nsecsElapsed() < microseconds * 1'000)
        continue;
}

} // namespace

// A writer that is killed somewhere in a save leaves every item as it was or as it was to be.
class KillingTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aKilledWriterLeavesWholeItems_data();
    void aKilledWriterLeavesWholeItems();
    void anEndedWriterFinishesTheSave_data();
    void anEndedWriterFinishesTheSave();
};

void KillingTest::aKilledWriterLeavesWholeItems_data()
{
    QTest::addColumn<QString>("operation");

    for (const QString &name : Operations::names())
        QTest::newRow(qPrintable(name)) << name;
}

void KillingTest::aKilledWriterLeavesWholeItems()
{
    QFETCH(const QString, operation);
    const auto operations = static_cast<int>(Operations::names().size());
    const int kills = (countOfKills() + operations - 1) / operations;
    constexpr int longestOperation = 12'000; // microseconds
    std::mt19937 random(static_cast<quint32>(qHash(operation, 0)));

    for (int number = 0; number < kills; ++number) {
        const CalendarFolder folder;
        Operations::prepare(folder);
        WriterProcess writer(folder, operation, 0);
        QVERIFY(writer.isReady());

        writer.go();
        writer.waitUntilDone(static_cast<int>(random() % 3));
        passMicroseconds(static_cast<qint64>(random() % longestOperation));
        writer.kill();

        QCOMPARE(writer.refusal(), QByteArray());
        const int done = writer.done();
        const QString fault = Operations::faultIn(folder, operation, done);
        QVERIFY2(fault.isEmpty(), qPrintable(QStringLiteral("kill %1 after %2: %3").arg(number).arg(done).arg(fault)));
    }
}

void KillingTest::anEndedWriterFinishesTheSave_data()
{
    aKilledWriterLeavesWholeItems_data();
}

// As a session does it that ends: the operation in hand is finished, the next is not begun.
void KillingTest::anEndedWriterFinishesTheSave()
{
    QFETCH(const QString, operation);
    std::mt19937 random(7);
    const CalendarFolder folder;
    Operations::prepare(folder);
    WriterProcess writer(folder, operation, 0);
    QVERIFY(writer.isReady());

    writer.go();
    writer.waitUntilDone(2);
    passMicroseconds(static_cast<qint64>(random() % 5'000));
    writer.terminate();

    QVERIFY(writer.waitForEnd());
    QVERIFY(!writer.hasCrashed());
    QCOMPARE(writer.exitCode(), 0);
    QCOMPARE(writer.refusal(), QByteArray());
    // What was begun is finished and acknowledged: it is neither one operation less nor one more.
    QCOMPARE(Operations::faultIn(folder, operation, writer.done()), QString());
    QCOMPARE(Operations::faultIn(folder, operation, writer.done() - 1), QString());
}

VANTLE_TEST(KillingTest)
#include "KillingTest.moc"
