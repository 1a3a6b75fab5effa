// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

const QByteArray lunch = "BEGIN:VEVENT\r\nUID:lunch\r\nDTSTART:20260311T110000Z\r\nDTEND:20260311T120000Z\r\n"
                         "SUMMARY:Lunch\r\nLOCATION:Here\r\nEND:VEVENT\r\n";
const QByteArray fair = "BEGIN:VEVENT\r\nUID:fair\r\nDTSTART;VALUE=DATE:20260311\r\nDTEND;VALUE=DATE:20260313\r\n"
                        "SUMMARY:Fair\r\nEND:VEVENT\r\n";
const QByteArray milk = "BEGIN:VTODO\r\nUID:milk\r\nSUMMARY:Milk\r\nEND:VTODO\r\n";
const QByteArray daily = "BEGIN:VEVENT\r\nUID:daily\r\nDTSTART;TZID=Europe/Berlin:20260301T090000\r\n"
                         "DTEND;TZID=Europe/Berlin:20260301T093000\r\nRRULE:FREQ=DAILY;COUNT=40\r\nSUMMARY:Daily\r\n"
                         "END:VEVENT\r\n";

} // namespace

class VantleEditTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void aFieldIsSet_data();
    void aFieldIsSet();
    void daysAreSetWhereTheClockSkipsMidnight();
    void anEmptyValueClears();
    void aToDoIsTickedAndOpened();
    void anItemIsDeleted();
    void anItemIsMovedToAnotherCalendar();
    void aWholeSeriesIsDeleted();
    void aSeriesWantsToKnowWhichOccurrence();
    void aRefusalIsTheMessageThatAPersonReads();
    void whatIsNotThereEndsWithOne_data();
    void whatIsNotThereEndsWithOne();
    void wrongUseEndsWithTwo_data();
    void wrongUseEndsWithTwo();

private:
    int run(const QStringList &arguments);
    QString path(const QString &name) const { return m_folder->filePath(name); }
    void write(const QString &name, const QByteArray &components) const;
    QByteArray read(const QString &name) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_zone; // the local one of the program
    QString m_errors; // of the last run
};

void VantleEditTest::init()
{
    m_zone = u"Europe/Berlin"_s;
    m_folder = std::make_unique<QTemporaryDir>();
    write(u"Home/lunch.ics"_s, lunch);
    write(u"Home/fair.ics"_s, fair);
    write(u"Home/milk.ics"_s, milk);
    write(u"Home/daily.ics"_s, daily);
    QDir().mkpath(path(u"Work"_s));
}

int VantleEditTest::run(const QStringList &arguments)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"TZ"_s, m_zone);
    environment.insert(u"XDG_STATE_HOME"_s, m_folder->filePath(u".state"_s));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(VANTLE_EDIT), QStringList { m_folder->path() } + arguments);
    process.waitForFinished();
    m_errors = QString::fromUtf8(process.readAllStandardError());
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

void VantleEditTest::write(const QString &name, const QByteArray &components) const
{
    QDir().mkpath(QFileInfo(path(name)).path());
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("BEGIN:VCALENDAR\r\nVERSION:2.0\r\n" + components + "END:VCALENDAR\r\n");
}

QByteArray VantleEditTest::read(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void VantleEditTest::aFieldIsSet_data()
{
    QTest::addColumn<QString>("uid");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QByteArrayList>("written");

    using Lines = QByteArrayList;
    QTest::newRow("title") << u"lunch"_s << u"title"_s << u"-Dinner, later"_s << Lines { "SUMMARY:-Dinner\\, later" };
    QTest::newRow("location") << u"lunch"_s << u"location"_s << u"There"_s << Lines { "LOCATION:There" };
    QTest::newRow("notes") << u"milk"_s << u"notes"_s << u"two\nlines"_s << Lines { "DESCRIPTION:two\\nlines" };
    QTest::newRow("url") << u"milk"_s << u"url"_s << u"https://example.org/"_s << Lines { "URL:https://example.org/" };
    QTest::newRow("start") << u"lunch"_s << u"start"_s << u"2026-03-12T18:00"_s
                           << Lines { "DTSTART:20260312T170000Z", "DTEND:20260312T180000Z" };
    QTest::newRow("end") << u"lunch"_s << u"end"_s << u"2026-03-11T14:30"_s
                         << Lines { "DTSTART:20260311T110000Z", "DTEND:20260311T133000Z" };
    QTest::newRow("start of days") << u"fair"_s << u"start"_s << u"2026-03-29"_s
                                   << Lines { "DTSTART;VALUE=DATE:20260329", "DTEND;VALUE=DATE:20260331" };
    QTest::newRow("end of days") << u"fair"_s << u"end"_s << u"2026-03-11"_s
                                 << Lines { "DTSTART;VALUE=DATE:20260311", "DTEND;VALUE=DATE:20260312" };
    QTest::newRow("allday") << u"lunch"_s << u"allday"_s << u"1"_s
                            << Lines { "DTSTART;VALUE=DATE:20260311", "DTEND;VALUE=DATE:20260312" };
    QTest::newRow("due on a day") << u"milk"_s << u"due"_s << u"2026-03-12"_s << Lines { "DUE;VALUE=DATE:20260312" };
    QTest::newRow("due at a time") << u"milk"_s << u"due"_s << u"2026-03-12T09:00"_s
                                   << Lines { "DUE;TZID=Europe/Berlin:20260312T090000" };
    QTest::newRow("priority") << u"milk"_s << u"priority"_s << u"5"_s << Lines { "PRIORITY:5" };
}

void VantleEditTest::aFieldIsSet()
{
    QFETCH(const QString, uid);
    QFETCH(const QString, field);
    QFETCH(const QString, value);
    QFETCH(const QByteArrayList, written);

    QCOMPARE(run({ uid, u"set"_s, field, value }), 0);

    QVERIFY(m_errors.isEmpty());
    const QByteArray text = read(u"Home/"_s + uid + u".ics"_s);
    for (const QByteArray &line : written)
        QVERIFY2(text.contains(QByteArray("\r\n" + line + "\r\n")), text.constData());
}

void VantleEditTest::daysAreSetWhereTheClockSkipsMidnight()
{
    m_zone = u"Africa/Cairo"_s; // 24 April 2026 begins at one

    QCOMPARE(run({ u"fair"_s, u"set"_s, u"start"_s, u"2026-04-24"_s }), 0);
    QVERIFY(read(u"Home/fair.ics"_s).contains("\r\nDTSTART;VALUE=DATE:20260424\r\n"));
    QCOMPARE(run({ u"milk"_s, u"set"_s, u"due"_s, u"2026-04-24"_s }), 0);
    QVERIFY(read(u"Home/milk.ics"_s).contains("\r\nDUE;VALUE=DATE:20260424\r\n"));
}

void VantleEditTest::anEmptyValueClears()
{
    QCOMPARE(run({ u"lunch"_s, u"set"_s, u"location"_s, QString(u""_s) }), 0);

    QVERIFY(!read(u"Home/lunch.ics"_s).contains("LOCATION"));
}

void VantleEditTest::aToDoIsTickedAndOpened()
{
    QCOMPARE(run({ u"milk"_s, u"tick"_s }), 0);
    QVERIFY(read(u"Home/milk.ics"_s).contains("STATUS:COMPLETED\r\n"));

    QCOMPARE(run({ u"milk"_s, u"untick"_s }), 0);
    QVERIFY(read(u"Home/milk.ics"_s).contains("STATUS:NEEDS-ACTION\r\n"));
    QVERIFY(!read(u"Home/milk.ics"_s).contains("\r\nCOMPLETED"));
}

void VantleEditTest::anItemIsDeleted()
{
    QCOMPARE(run({ u"milk"_s, u"delete"_s }), 0);
    QCOMPARE(run({ u"lunch"_s, u"delete"_s }), 0);

    QCOMPARE(QDir(path(u"Home"_s)).entryList(QDir::Files | QDir::Hidden, QDir::Name),
        (QStringList { u"daily.ics"_s, u"fair.ics"_s }));
}

void VantleEditTest::anItemIsMovedToAnotherCalendar()
{
    const QByteArray before = read(u"Home/lunch.ics"_s);

    QCOMPARE(run({ u"lunch"_s, u"set"_s, u"calendar"_s, u"Work"_s }), 0);

    QCOMPARE(read(u"Work/lunch.ics"_s), before);
    QVERIFY(!QFile::exists(path(u"Home/lunch.ics"_s)));
}

void VantleEditTest::aWholeSeriesIsDeleted()
{
    QCOMPARE(run({ u"daily"_s, u"--span"_s, u"all"_s, u"delete"_s }), 0);

    QVERIFY(!QFile::exists(path(u"Home/daily.ics"_s)));
}

void VantleEditTest::aSeriesWantsToKnowWhichOccurrence()
{
    const QByteArray before = read(u"Home/daily.ics"_s);

    QCOMPARE(run({ u"daily"_s, u"--span"_s, u"this"_s, u"delete"_s }), 1);
    QVERIFY(m_errors.contains(u"--occurrence"));
    QCOMPARE(run({ u"daily"_s, u"--occurrence"_s, u"2026-03-11T10:00"_s, u"delete"_s }), 1);

    QCOMPARE(read(u"Home/daily.ics"_s), before);
}

void VantleEditTest::aRefusalIsTheMessageThatAPersonReads()
{
    QFile file(path(u"Home/lunch.ics"_s));
    QVERIFY(file.setPermissions(QFileDevice::ReadOwner));

    QCOMPARE(run({ u"lunch"_s, u"set"_s, u"title"_s, u"Dinner"_s }), 1);

    QVERIFY(m_errors.startsWith(u"“Lunch” in the calendar “Home” was not saved.\n"_s));
    QVERIFY(m_errors.count(u'\n') == 2);
}

void VantleEditTest::whatIsNotThereEndsWithOne_data()
{
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("no such item") << QStringList { u"nobody"_s, u"delete"_s };
    QTest::newRow("no such calendar") << QStringList { u"lunch"_s, u"set"_s, u"calendar"_s, u"Nowhere"_s };
    QTest::newRow("an event is not ticked") << QStringList { u"lunch"_s, u"tick"_s };
    QTest::newRow("a to-do has no place") << QStringList { u"milk"_s, u"set"_s, u"location"_s, u"Here"_s };
}

void VantleEditTest::whatIsNotThereEndsWithOne()
{
    QFETCH(const QStringList, arguments);

    QCOMPARE(run(arguments), 1);

    QVERIFY(!m_errors.trimmed().isEmpty());
}

void VantleEditTest::wrongUseEndsWithTwo_data()
{
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("nothing") << QStringList {};
    QTest::newRow("no action") << QStringList { u"lunch"_s };
    QTest::newRow("unknown action") << QStringList { u"lunch"_s, u"paint"_s };
    QTest::newRow("unknown option") << QStringList { u"lunch"_s, u"--colour"_s, u"red"_s, u"delete"_s };
    QTest::newRow("option without value") << QStringList { u"lunch"_s, u"--span"_s };
    QTest::newRow("unknown span") << QStringList { u"lunch"_s, u"--span"_s, u"some"_s, u"delete"_s };
    QTest::newRow("no moment") << QStringList { u"lunch"_s, u"--occurrence"_s, u"noon"_s, u"delete"_s };
    QTest::newRow("unknown field") << QStringList { u"lunch"_s, u"set"_s, u"colour"_s, u"red"_s };
    QTest::newRow("no value") << QStringList { u"lunch"_s, u"set"_s, u"title"_s };
    QTest::newRow("too much") << QStringList { u"lunch"_s, u"delete"_s, u"now"_s };
    QTest::newRow("no date") << QStringList { u"lunch"_s, u"set"_s, u"start"_s, u"soon"_s };
    QTest::newRow("no number") << QStringList { u"milk"_s, u"set"_s, u"priority"_s, u"high"_s };
    QTest::newRow("neither 0 nor 1") << QStringList { u"lunch"_s, u"set"_s, u"allday"_s, u"yes"_s };
}

void VantleEditTest::wrongUseEndsWithTwo()
{
    QFETCH(const QStringList, arguments);

    QCOMPARE(run(arguments), 2);

    QVERIFY(m_errors.contains(u"usage: vantle-edit"));
    QVERIFY(read(u"Home/lunch.ics"_s).contains(lunch));
}

VANTLE_TEST(VantleEditTest)
#include "VantleEditTest.moc"
