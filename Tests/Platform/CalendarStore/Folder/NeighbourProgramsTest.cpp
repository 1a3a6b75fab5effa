// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "TestRegistry.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr int atMost = 1000; // milliseconds from another program's change to ours
const QDate day(2026, 3, 11);

} // namespace

// Programs that people use on the same folders: khal for events, todoman for to-dos.
class NeighbourProgramsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void anEventMadeInKhalIsShown();
    void aTaskMadeInTodomanIsShown();
    void aTaskDoneInTodomanIsShownAsCompleted();
    void aTaskTickedHereIsCompletedInTodoman();

private:
    QByteArray khal(const QStringList &arguments) const;
    QByteArray todoman(const QStringList &arguments) const;
    static QByteArray run(const QString &program, const QStringList &arguments);

    std::unique_ptr<CalendarFolder> m_folder;
};

void NeighbourProgramsTest::init()
{
    m_folder = std::make_unique<CalendarFolder>();
    m_folder->write(u"Home/displayname"_s, "Home");
    m_folder->write(u"../khal.conf"_s,
        "[calendars]\n[[home]]\npath = " + QFile::encodeName(m_folder->path(u"Home"_s))
            + "\n[sqlite]\npath = " + QFile::encodeName(m_folder->path(u"../khal.db"_s))
            + "\n[locale]\nlocal_timezone = Europe/Berlin\ndefault_timezone = Europe/Berlin\ntimeformat = %H:%M\n"
              "dateformat = %Y-%m-%d\nlongdateformat = %Y-%m-%d\ndatetimeformat = %Y-%m-%d %H:%M\n"
              "longdatetimeformat = %Y-%m-%d %H:%M\n[default]\ndefault_calendar = home\n");
    m_folder->write(u"../todoman.py"_s,
        "path = '" + QFile::encodeName(m_folder->root()) + "/*'\ndefault_list = 'Home'\ncache_path = '"
            + QFile::encodeName(m_folder->path(u"../todoman.db"_s))
            + "'\ndate_format = '%Y-%m-%d'\ntime_format = '%H:%M'\n");
}

QByteArray NeighbourProgramsTest::run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        qWarning(
            "%ls did not do what was asked: %ls", qUtf16Printable(program), qUtf16Printable(process.errorString()));
    return process.readAllStandardOutput();
}

QByteArray NeighbourProgramsTest::khal(const QStringList &arguments) const
{
    return run(u"khal"_s, QStringList { u"-c"_s, m_folder->path(u"../khal.conf"_s) } + arguments);
}

QByteArray NeighbourProgramsTest::todoman(const QStringList &arguments) const
{
    return run(u"todoman"_s, QStringList { u"--config"_s, m_folder->path(u"../todoman.py"_s) } + arguments);
}

void NeighbourProgramsTest::anEventMadeInKhalIsShown()
{
    const auto store = m_folder->open();

    khal({ u"new"_s, u"2026-03-11"_s, u"10:00"_s, u"11:00"_s, u"From khal"_s });

    QTRY_COMPARE_WITH_TIMEOUT(sortedTitles(eventsOn(*store, day)), QStringList { u"From khal"_s }, atMost);
    QCOMPARE(eventsOn(*store, day).constFirst()->startDate(), QDateTime(day, QTime(10, 0)));
}

void NeighbourProgramsTest::aTaskMadeInTodomanIsShown()
{
    const auto store = m_folder->open();
    QSignalSpy changed(store.get(), &FolderCalendarStore::changed);

    todoman({ u"new"_s, u"--list"_s, u"Home"_s, u"From"_s, u"todoman"_s });

    QTRY_VERIFY_WITH_TIMEOUT(taskNamed(*store, u"From todoman"_s), atMost);
    QTRY_VERIFY_WITH_TIMEOUT(!changed.isEmpty(), atMost);
}

void NeighbourProgramsTest::aTaskDoneInTodomanIsShownAsCompleted()
{
    m_folder->write(u"Home/a.ics"_s, calendarText(taskText("a", "Shared")));
    const auto store = m_folder->open();

    todoman({ u"done"_s, u"1"_s });

    QTRY_VERIFY_WITH_TIMEOUT(taskNamed(*store, u"Shared"_s)->isCompleted(), atMost);
}

void NeighbourProgramsTest::aTaskTickedHereIsCompletedInTodoman()
{
    m_folder->write(u"Home/a.ics"_s, calendarText(taskText("a", "Shared", "X-KEEP;A=b:c\\, d\r\n")));
    const auto store = m_folder->open();
    const QStringList listing { u"--porcelain"_s, u"list"_s, u"--status"_s, u"ANY"_s };
    const auto first = [&] { return QJsonDocument::fromJson(todoman(listing)).array().first().toObject(); };
    QVERIFY(!first()[u"completed"_s].toBool(true));

    const CalTaskPtr task = taskNamed(*store, u"Shared"_s);
    task->setIsCompleted(true);
    QVERIFY(store->saveTask(*task).isOk());

    QCOMPARE(first()[u"summary"_s].toString(), u"Shared"_s);
    QVERIFY(first()[u"completed"_s].toBool());
    QVERIFY(m_folder->read(u"Home/a.ics"_s).contains("X-KEEP;A=b:c\\, d\r\n"));
}

VANTLE_TEST(NeighbourProgramsTest)
#include "NeighbourProgramsTest.moc"
