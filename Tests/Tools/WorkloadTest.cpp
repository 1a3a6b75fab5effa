// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr int atMost = 120'000; // milliseconds

QByteArray outputOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    if (!process.waitForFinished(atMost) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return {};
    return process.readAllStandardOutput();
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

// One line for each event, so that two sets can be compared and read.
QStringList expectedEvents(const QJsonArray &events)
{
    const auto epoch = [](const QJsonValue &local) {
        return QDateTime::fromString(local.toString(), Qt::ISODate).toSecsSinceEpoch();
    };
    QStringList lines;
    for (const QJsonValue &each : events)
        lines << u"%1 %2 %3"_s.arg(each[u"uid"_s].toString()).arg(epoch(each[u"start"_s])).arg(epoch(each[u"end"_s]));
    return sorted(lines);
}

QStringList shownEvents(const QJsonArray &events)
{
    QStringList lines;
    for (const QJsonValue &each : events)
        lines << u"%1 %2 %3"_s.arg(each[u"uid"_s].toString())
                     .arg(each[u"start_epoch"_s].toInteger())
                     .arg(each[u"end_epoch"_s].toInteger());
    return sorted(lines);
}

QStringList expectedTasks(const QJsonObject &todos)
{
    QStringList uids;
    for (const QString &list : { u"open"_s, u"completed_since_monday"_s }) {
        for (const QJsonValue &uid : todos[list].toArray())
            uids << uid.toString();
    }
    return sorted(uids);
}

QStringList shownTasks(const QJsonArray &tasks)
{
    QStringList uids;
    for (const QJsonValue &each : tasks)
        uids << each[u"uid"_s].toString();
    return sorted(uids);
}

} // namespace

// The answers of vantle-day on generated calendars, against what the generator says that they hold.
class WorkloadTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFocusDayIsAsExpected_data();
    void everyFocusDayIsAsExpected();
};

void WorkloadTest::everyFocusDayIsAsExpected_data()
{
    QTest::addColumn<QString>("size");
    QTest::addColumn<QString>("layout");

    QTest::newRow("small, a file for each item") << u"small"_s << u"vdir"_s;
    QTest::newRow("small, a file for each calendar") << u"small"_s << u"big"_s;
    QTest::newRow("medium, a file for each item") << u"medium"_s << u"vdir"_s;
}

void WorkloadTest::everyFocusDayIsAsExpected()
{
    QFETCH(const QString, size);
    QFETCH(const QString, layout);
    QCOMPARE(qgetenv("TZ"), QByteArray("Europe/Berlin"));
    const QTemporaryDir folder;
    const QString tree = folder.filePath(u"tree"_s);
    const QString expectation = folder.filePath(u"expect.json"_s);
    QProcess maker;
    maker.start(QStringLiteral(VANTLE_PYTHON),
        { QStringLiteral(VANTLE_MAKE_CALENDARS), u"--size"_s, size, u"--layout"_s, layout, u"--out"_s, tree,
            u"--expect"_s, expectation });
    QVERIFY(maker.waitForFinished(atMost));
    QCOMPARE(maker.exitCode(), 0);
    QFile expectationFile(expectation);
    QVERIFY(expectationFile.open(QIODevice::ReadOnly));
    const QJsonObject expected = QJsonDocument::fromJson(expectationFile.readAll()).object();
    const QJsonObject days = expected[u"events_by_day"_s].toObject();
    const QDate focus = QDate::fromString(expected[u"date"_s].toString(), Qt::ISODate);
    QCOMPARE(days.size(), 15);

    for (auto day = days.begin(); day != days.end(); ++day) {
        const QByteArray output = outputOf(QStringLiteral(VANTLE_DAY), { tree, u"--date"_s, day.key() });
        const QJsonObject shown = QJsonDocument::fromJson(output).object();
        QVERIFY2(!shown.isEmpty(), qPrintable(day.key()));
        QVERIFY(!day->toArray().isEmpty());
        QCOMPARE(shownEvents(shown[u"events"_s].toArray()), expectedEvents(day->toArray()));
        // What was completed is told for the week of the focus date.
        const QDate date = QDate::fromString(day.key(), Qt::ISODate);
        if (date.weekNumber() == focus.weekNumber())
            QCOMPARE(shownTasks(shown[u"todos"_s].toArray()), expectedTasks(expected[u"todos"_s].toObject()));
    }
}

VANTLE_TEST(WorkloadTest)
#include "WorkloadTest.moc"
