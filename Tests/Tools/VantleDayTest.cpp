// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <QDir>
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

struct Run {
    int status = -1;
    QByteArray output;
    QByteArray errors;

    QJsonObject day() const { return QJsonDocument::fromJson(output).object(); }
    QStringList titlesOf(const QString &list) const
    {
        QStringList titles;
        for (const QJsonValue &each : day()[list].toArray())
            titles << each[u"title"_s].toString();
        return titles;
    }
};

Run run(const QStringList &arguments, const QString &zone = u"Europe/Berlin"_s)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"TZ"_s, zone);
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(VANTLE_DAY), arguments);
    process.waitForFinished();
    return { process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError() };
}

} // namespace

class VantleDayTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void eventsAndTasksArePrintedInTheModelsOrder();
    void anAllDayEventEndsExclusively();
    void theZoneIsThatOfTheEnvironment();
    void optionsAreThoseOfTheWindow();
    void wrongUseEndsWithTwo_data();
    void wrongUseEndsWithTwo();
    void anUnreadableFolderEndsWithOne();
    void anEmptyFolderIsAnEmptyDayAndStaysEmpty();

private:
    void write(const QString &name, const QByteArray &components) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void VantleDayTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

void VantleDayTest::write(const QString &name, const QByteArray &components) const
{
    QDir().mkpath(QFileInfo(m_folder->filePath(name)).path());
    QFile file(m_folder->filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("BEGIN:VCALENDAR\r\nVERSION:2.0\r\n" + components + "END:VCALENDAR\r\n");
}

void VantleDayTest::eventsAndTasksArePrintedInTheModelsOrder()
{
    write(u"c/a.ics"_s,
        "BEGIN:VEVENT\r\nUID:late\r\nDTSTART:20260311T150000Z\r\nDTEND:20260311T160000Z\r\nSUMMARY:Late\r\nEND:"
        "VEVENT\r\n"
        "BEGIN:VEVENT\r\nUID:early\r\nDTSTART:20260311T080000Z\r\nDTEND:20260311T090000Z\r\nSUMMARY:Early\r\nEND:"
        "VEVENT\r\n"
        "BEGIN:VTODO\r\nUID:none\r\nSUMMARY:a\r\nEND:VTODO\r\n"
        "BEGIN:VTODO\r\nUID:due\r\nSUMMARY:b\r\nDUE:20260312T080000Z\r\nEND:VTODO\r\n");

    const Run day = run({ m_folder->path(), u"--date"_s, u"2026-03-11"_s });

    QCOMPARE(day.status, 0);
    QCOMPARE(day.titlesOf(u"events"_s), QStringList({ u"Early"_s, u"Late"_s }));
    QCOMPARE(day.titlesOf(u"todos"_s), QStringList({ u"b"_s, u"a"_s }));
    const QJsonObject early = day.day()[u"events"_s].toArray().first().toObject();
    QCOMPARE(early[u"uid"_s].toString(), u"early"_s);
    QCOMPARE(early[u"all_day"_s].toBool(true), false);
    QCOMPARE(early[u"start_epoch"_s].toInteger(), 1773216000);
    QCOMPARE(early[u"end_epoch"_s].toInteger(), 1773219600);
}

void VantleDayTest::anAllDayEventEndsExclusively()
{
    // The day on which the clocks go forward, 23 hours long.
    write(u"c/a.ics"_s, "BEGIN:VEVENT\r\nUID:a\r\nDTSTART;VALUE=DATE:20260329\r\nSUMMARY:A\r\nEND:VEVENT\r\n");

    const Run day = run({ m_folder->path(), u"--date"_s, u"2026-03-29"_s });

    const QJsonObject event = day.day()[u"events"_s].toArray().first().toObject();
    QCOMPARE(event[u"all_day"_s].toBool(), true);
    QCOMPARE(event[u"end_epoch"_s].toInteger() - event[u"start_epoch"_s].toInteger(), 23 * 3600);
}

void VantleDayTest::theZoneIsThatOfTheEnvironment()
{
    write(u"c/a.ics"_s, "BEGIN:VEVENT\r\nUID:a\r\nDTSTART:20260311T230000Z\r\nSUMMARY:A\r\nEND:VEVENT\r\n");
    const QStringList arguments { m_folder->path(), u"--date"_s, u"2026-03-12"_s };

    QCOMPARE(run(arguments, u"Europe/Berlin"_s).titlesOf(u"events"_s).size(), 1);
    QCOMPARE(run(arguments, u"America/New_York"_s).titlesOf(u"events"_s).size(), 0);
}

void VantleDayTest::optionsAreThoseOfTheWindow()
{
    write(u"c/a.ics"_s,
        "BEGIN:VTODO\r\nUID:done\r\nSUMMARY:done\r\nCOMPLETED:20200101T000000Z\r\nEND:VTODO\r\n"
        "BEGIN:VTODO\r\nUID:later\r\nSUMMARY:later\r\nDUE:20260401T000000Z\r\nPRIORITY:9\r\nEND:VTODO\r\n"
        "BEGIN:VTODO\r\nUID:urgent\r\nSUMMARY:urgent\r\nPRIORITY:1\r\nEND:VTODO\r\n");
    write(u"d/b.ics"_s, "BEGIN:VTODO\r\nUID:d\r\nSUMMARY:d\r\nEND:VTODO\r\n");
    const auto tasks = [&](const QStringList &more) {
        return run(QStringList { m_folder->path(), u"--date"_s, u"2026-03-11"_s } + more).titlesOf(u"todos"_s);
    };

    QCOMPARE(tasks({}), QStringList({ u"later"_s, u"d"_s, u"urgent"_s }));
    QCOMPARE(tasks({ u"--sort"_s, u"1"_s }), QStringList({ u"urgent"_s, u"later"_s, u"d"_s }));
    QCOMPARE(tasks({ u"--sort"_s, u"2"_s }), QStringList({ u"d"_s, u"later"_s, u"urgent"_s }));
    QCOMPARE(tasks({ u"--hide-due-later"_s }), QStringList({ u"d"_s, u"urgent"_s }));
    QCOMPARE(tasks({ u"--hidden"_s, u"x,d"_s }), QStringList({ u"later"_s, u"urgent"_s }));
    QVERIFY(tasks({ u"--all-completed"_s }).contains(u"done"_s));
}

void VantleDayTest::wrongUseEndsWithTwo_data()
{
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("nothing") << QStringList();
    QTest::newRow("no folder") << QStringList { u"--date"_s, u"2026-03-11"_s };
    QTest::newRow("no date") << QStringList { u"/tmp"_s };
    QTest::newRow("no such day") << QStringList { u"/tmp"_s, u"--date"_s, u"2026-02-30"_s };
    QTest::newRow("no such order") << QStringList { u"/tmp"_s, u"--date"_s, u"2026-03-11"_s, u"--sort"_s, u"3"_s };
    QTest::newRow("unknown option") << QStringList { u"/tmp"_s, u"--date"_s, u"2026-03-11"_s, u"--what"_s };
    QTest::newRow("two folders") << QStringList { u"/tmp"_s, u"/tmp"_s, u"--date"_s, u"2026-03-11"_s };
}

void VantleDayTest::wrongUseEndsWithTwo()
{
    QFETCH(const QStringList, arguments);

    const Run wrong = run(arguments);

    QCOMPARE(wrong.status, 2);
    QVERIFY(wrong.output.isEmpty());
    QVERIFY(wrong.errors.contains("usage"));
}

void VantleDayTest::anUnreadableFolderEndsWithOne()
{
    const Run missing = run({ m_folder->filePath(u"missing"_s), u"--date"_s, u"2026-03-11"_s });

    QCOMPARE(missing.status, 1);
    QVERIFY(missing.output.isEmpty());
    QVERIFY(missing.errors.contains("missing"));
}

void VantleDayTest::anEmptyFolderIsAnEmptyDayAndStaysEmpty()
{
    const Run day = run({ m_folder->path(), u"--date"_s, u"2026-03-11"_s });

    QCOMPARE(day.status, 0);
    QVERIFY(day.day()[u"events"_s].toArray().isEmpty());
    QVERIFY(day.day().contains(u"todos"_s));
    QVERIFY(QDir(m_folder->path()).isEmpty());
}

VANTLE_TEST(VantleDayTest)
#include "VantleDayTest.moc"
