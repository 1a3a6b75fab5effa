// SPDX-License-Identifier: MIT
#include "Operations.h"
#include "Tracing.h"
#include "WriterProcess.h"

#include <CalendarFolder.h>
#include <TestRegistry.h>

#include <QDir>
#include <QMap>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

// Whatever writes, flushes, renames or opens, each under all the names that it has.
const QStringList watchedCalls { u"write"_s, u"pwrite64"_s, u"writev"_s, u"fsync"_s, u"fdatasync"_s, u"rename"_s,
    u"renameat"_s, u"renameat2"_s, u"open"_s, u"openat"_s, u"openat2"_s };
const QStringList errors { u"ENOSPC"_s, u"EIO"_s, u"EROFS"_s, u"EACCES"_s, u"EDQUOT"_s };
constexpr int mostCalls = 40;

bool isLong()
{
    return qEnvironmentVariableIsSet("VANTLE_LONG_TESTS");
}

// Every file that a reader would look at, with its bytes, and what was left behind under hidden names.
QMap<QString, QByteArray> filesIn(const CalendarFolder &folder)
{
    QMap<QString, QByteArray> files;
    for (const QString &calendar : { u"Home"_s, u"Work"_s }) {
        for (const QString &name : QDir(folder.path(calendar)).entryList(QDir::Files | QDir::Hidden))
            files.insert(calendar + u'/' + name, folder.read(calendar + u'/' + name));
    }
    return files;
}

// The name of a traced call: "openat" of `openat(AT_FDCWD, …`.
QString nameOf(const QByteArray &call)
{
    return QString::fromLatin1(call.first(std::max<qsizetype>(0, call.indexOf('('))));
}

} // namespace

// The system refuses one call of a save after the other, for each reason that it may have.
class InjectedErrorsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRefusedCallIsARefusedSaveOrNone_data();
    void aRefusedCallIsARefusedSaveOrNone();

private:
    // The calls of one operation that nobody disturbs.
    static QStringList undisturbedCalls(const QString &operation);
};

QStringList InjectedErrorsTest::undisturbedCalls(const QString &operation)
{
    const CalendarFolder folder;
    Operations::prepare(folder);
    WriterProcess writer(folder, operation, 1);
    Tracing tracing(writer.processId(), { u"-e"_s, u"trace="_s + watchedCalls.join(u',') });
    writer.go();
    QStringList names;
    if (!tracing.isJoined() || !writer.waitForEnd() || writer.done() != 1)
        return names;
    for (const QByteArray &call : tracing.calls()) {
        if (call.contains("\"done "))
            break; // what comes behind is the end of the program
        names << nameOf(call);
    }
    return names.first(std::min<qsizetype>(names.size(), mostCalls));
}

void InjectedErrorsTest::aRefusedCallIsARefusedSaveOrNone_data()
{
    QTest::addColumn<QString>("operation");

    for (const QString &name : Operations::names())
        QTest::newRow(qPrintable(name)) << name;
}

void InjectedErrorsTest::aRefusedCallIsARefusedSaveOrNone()
{
    QFETCH(const QString, operation);
    const QStringList calls = undisturbedCalls(operation);
    QVERIFY2(calls.size() > 5, "nothing was traced");
    int runs = 0;
    int refusals = 0;

    for (qsizetype index = 0; index < calls.size(); ++index) {
        for (qsizetype error = 0; error < errors.size(); ++error) {
            // A tenth of them, spread over calls and reasons.
            if (!isLong() && (index + 2 * error) % 10 != 0)
                continue;
            const CalendarFolder folder;
            Operations::prepare(folder);
            const auto before = filesIn(folder);
            WriterProcess writer(folder, operation, 1);
            QVERIFY(writer.isReady());
            const QString &call = calls.at(index);
            const auto which = calls.first(index + 1).count(call);
            Tracing tracing(writer.processId(),
                { u"-e"_s, u"trace="_s + call, u"-e"_s,
                    u"inject=%1:error=%2:when=%3"_s.arg(call, errors.at(error)).arg(which) });
            QVERIFY(tracing.isJoined());

            writer.go();
            QVERIFY(writer.waitForEnd());

            const QString told
                = u"%1: %2 at call %3, %4 %5: "_s.arg(operation, errors.at(error)).arg(index + 1).arg(call).arg(which);
            ++runs;
            const QByteArray refusal = writer.refusal();
            QVERIFY2(!writer.hasCrashed(), qPrintable(told));
            QVERIFY2(writer.done() == (refusal.isEmpty() ? 1 : 0), qPrintable(told));
            const QString fault = Operations::faultIn(folder, operation, writer.done());
            QVERIFY2(fault.isEmpty(), qPrintable(told + fault + u" after: "_s + QString::fromUtf8(refusal)));
            if (refusal.isEmpty()) {
                // Whatever was refused was not needed: the new state, not the one before it.
                const QString older = Operations::faultIn(folder, operation, 0);
                QVERIFY2(older.isEmpty(), qPrintable(told + older));
                continue;
            }
            ++refusals;
            const bool namesItem
                = refusal.contains("“Number ") && (refusal.contains("“Home”") || refusal.contains("“Work”"));
            QVERIFY2(namesItem && refusal.size() > 60, qPrintable(told + QString::fromUtf8(refusal)));
            // A move can have made its copy, a removal can have been done and its undoing refused.
            if (operation != u"move" && operation != u"remove")
                QVERIFY2(filesIn(folder) == before, qPrintable(told + QString::fromUtf8(refusal)));
        }
    }
    qInfo("%d of %d errors, at %d calls, refused it", refusals, runs, int(calls.size()));
    QVERIFY(refusals > 0);
}

VANTLE_TEST(InjectedErrorsTest)
#include "InjectedErrorsTest.moc"
