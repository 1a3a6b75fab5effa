// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <CrashReport.h>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

class CrashReportTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void traceBecomesReadable();
    void whatMeansNothingStaysAsItIs_data();
    void whatMeansNothingStaysAsItIs();
    void thereIsNoReportWithoutACrash();
    void reportIsTakenOnce();
    void crashLeavesATrace_data();
    void crashLeavesATrace();
    void folderIsMadeForTheTrace();
    void linkInPlaceOfTheFileIsNotWritten();

private:
    // Ends by that kind of crash, with the handler installed for that file.
    static int crash(const QString &kind, const QString &path)
    {
        QProcess process;
        process.start(QStringLiteral(VANTLE_CRASHER), { kind, path });
        if (!process.waitForFinished() || process.exitStatus() != QProcess::CrashExit)
            return 0;
        return process.exitCode();
    }
};

void CrashReportTest::traceBecomesReadable()
{
    const QByteArray trace = "Vantle 1.2.3\n"
                             "signal 11\n"
                             "time 1795255200\n"
                             "address 0x10\n"
                             "frame 0x7f0000001234 _ZN7QWidget4showEv+0x1c\n"
                             "frame 0x7f0000001300\n"
                             "frame 0x5500 main+0x2\n"
                             "module 7f0000001000-7f0000002000 r-xp 00004000 fd:00 42   /usr/lib/libQt 6.so\n";

    const QString report = readableCrashReport(trace);

    QVERIFY(report.startsWith(u"Vantle 1.2.3\nEnded by signal 11 SIGSEGV\nAt 2026-11-21T"_s));
    QVERIFY(report.contains(u"Touching address 0x10\n"_s));
    QVERIFY2(report.contains(u"  0  QWidget::show() + 0x1c (libQt 6.so + 0x4234)\n"_s), qPrintable(report));
    QVERIFY(report.contains(u"  1  ? (libQt 6.so + 0x4300)\n"_s));
    QVERIFY(report.endsWith(u"  2  main + 0x2 (0x5500)\n"_s));
}

void CrashReportTest::whatMeansNothingStaysAsItIs_data()
{
    QTest::addColumn<QByteArray>("trace");
    QTest::addColumn<QString>("report");

    QTest::newRow("words") << QByteArray("<b>some</b> words") << u"<b>some</b> words\n"_s;
    QTest::newRow("broken frame") << QByteArray("frame zzz x") << u"  0  zzz x\n"_s;
    QTest::newRow("broken module") << QByteArray("module 1-2\nmodule x-y a b c d e\nframe 0x1") << u"  0  ? (0x1)\n"_s;
    QTest::newRow("cut") << QByteArray("signal 6\nfra") << u"Ended by signal 6 SIGABRT\nfra\n"_s;
    QTest::newRow("unknown signal") << QByteArray("signal 4711") << u"Ended by signal 4711\n"_s;
}

void CrashReportTest::whatMeansNothingStaysAsItIs()
{
    QFETCH(const QByteArray, trace);
    QFETCH(const QString, report);

    QCOMPARE(readableCrashReport(trace), report);
}

void CrashReportTest::thereIsNoReportWithoutACrash()
{
    const QTemporaryDir folder;

    QVERIFY(!CrashReportFile(folder.filePath(u"crash-trace.txt"_s)).take());
    QVERIFY(!CrashReportFile(folder.path()).take());
}

void CrashReportTest::reportIsTakenOnce()
{
    const QTemporaryDir folder;
    const CrashReportFile file(folder.filePath(u"crash-trace.txt"_s));
    QCOMPARE(crash(u"null"_s, file.path()), SIGSEGV);

    QVERIFY(file.take());
    QVERIFY(!file.take());
    QVERIFY(!QFile::exists(file.path()));
}

void CrashReportTest::crashLeavesATrace_data()
{
    QTest::addColumn<int>("signal");
    QTest::addColumn<QString>("function"); // that crashed, as a person reads it

    QTest::newRow("null") << SIGSEGV << u"crashByNullPointer(int*)"_s;
    QTest::newRow("stack") << SIGSEGV << u"crashByFullStack(int)"_s;
    QTest::newRow("abort") << SIGABRT << u"crashByAbort()"_s;
    QTest::newRow("exception") << SIGABRT << u"crashByException()"_s;
    QTest::newRow("sent") << SIGSEGV << u"crashBySignal()"_s;
    QTest::newRow("damaged heap") << SIGSEGV << u"crashWithDamagedHeap()"_s;
}

void CrashReportTest::crashLeavesATrace()
{
    QFETCH(const int, signal);
    QFETCH(const QString, function);
    const QTemporaryDir folder;
    const CrashReportFile file(folder.filePath(u"crash-trace.txt"_s));

    QCOMPARE(crash(QString::fromLatin1(QTest::currentDataTag()), file.path()), signal);

    QCOMPARE(QFile::permissions(file.path()) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    const auto report = file.take();
    QVERIFY(report);
    QVERIFY2(report->startsWith(u"Crasher 1\nEnded by signal %1 "_s.arg(signal)), qPrintable(*report));
    QVERIFY2(report->contains(function), qPrintable(*report));
    QVERIFY2(report->contains(u"(crasher + 0x"_s), qPrintable(*report));
}

void CrashReportTest::folderIsMadeForTheTrace()
{
    const QTemporaryDir folder;
    const CrashReportFile file(folder.filePath(u"state/vantle/crash-trace.txt"_s));

    QCOMPARE(crash(u"null"_s, file.path()), SIGSEGV);

    QVERIFY(file.take());
}

void CrashReportTest::linkInPlaceOfTheFileIsNotWritten()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"crash-trace.txt"_s);
    const QString target = folder.filePath(u"precious"_s);
    QFile precious(target);
    QVERIFY(precious.open(QIODevice::WriteOnly));
    precious.write("precious");
    precious.close();
    QVERIFY(QFile::link(target, path));

    QCOMPARE(crash(u"null"_s, path), SIGSEGV);

    QVERIFY(precious.open(QIODevice::ReadOnly));
    QCOMPARE(precious.readAll(), QByteArray("precious"));
}

VANTLE_TEST(CrashReportTest)
#include "CrashReportTest.moc"
