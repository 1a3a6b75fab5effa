// SPDX-License-Identifier: MIT
#include <CalendarServiceNeighbour.h>
#include <CalendarServiceSession.h>
#include <DesktopCalendarApplication.h>
#include <TestRegistry.h>

#include <QDBusConnectionInterface>
#include <QElapsedTimer>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <chrono>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

using Element = CalendarApplication::Element;
using Kind = CalendarApplication::ElementKind;

const QByteArray meetingText = "BEGIN:VEVENT\r\nUID:meeting\r\nDTSTAMP:20261101T000000Z\r\n"
                               "DTSTART;TZID=Europe/Berlin:20270310T090000\r\n"
                               "DTEND;TZID=Europe/Berlin:20270310T100000\r\nSUMMARY:Harbour meeting\r\nEND:VEVENT\r\n";
const QByteArray errandText
    = "BEGIN:VTODO\r\nUID:errand\r\nDTSTAMP:20261101T000000Z\r\nSUMMARY:Order bulbs\r\nEND:VTODO\r\n";
const Element meeting { .calendarUid = u"harbour"_s, .plainUid = u"meeting"_s, .day = QDate(2027, 3, 10) };
const Element errand { .calendarUid = u"harbour"_s, .kind = Kind::Todo, .plainUid = u"errand"_s };

// A foreign program that comes up on a busy machine.
constexpr std::chrono::milliseconds patience = 60s;

// The titles of all windows that are to be seen.
QStringList windowTitles()
{
    QProcess search;
    search.start(u"xdotool"_s, { u"search"_s, u"--onlyvisible"_s, u"--name"_s, u"."_s });
    search.waitForFinished();
    QStringList titles;
    for (const QByteArray &window : search.readAllStandardOutput().split('\n')) {
        if (window.isEmpty())
            continue;
        QProcess question;
        question.start(u"xdotool"_s, { u"getwindowname"_s, QString::fromLatin1(window) });
        question.waitForFinished();
        titles << QString::fromUtf8(question.readAllStandardOutput()).trimmed();
    }
    return titles;
}

QImage screen()
{
    QProcess import;
    import.start(u"import"_s, { u"-silent"_s, u"-window"_s, u"root"_s, u"png:-"_s });
    import.waitForFinished();
    return QImage::fromData(import.readAllStandardOutput());
}

// Waits until everything is painted: until three pictures in a row are the same.
bool photograph(const QString &name)
{
    QElapsedTimer timer;
    timer.start();
    QImage last;
    int same = 0;
    while (timer.elapsed() < patience.count()) {
        const QImage next = screen();
        same = !next.isNull() && next == last ? same + 1 : 0;
        last = next;
        if (same == 2)
            return last.save(QStringLiteral(VANTLE_PICTURES "/") + name + u".png"_s);
    }
    return false;
}

// Only what it is given is installed, whatever this machine has besides.
DesktopEntries onlyProgram(const QString &desktopFile, const QTemporaryDir &folder)
{
    const QString system = u"/usr/share/applications/"_s;
    QFile::copy(system + desktopFile, folder.filePath(desktopFile));
    QFile cache(folder.filePath(u"mimeinfo.cache"_s));
    if (cache.open(QIODevice::WriteOnly) && desktopFile.contains(u"Evolution"_s)) {
        cache.write("[MIME Cache]\nx-scheme-handler/calendar=org.gnome.Evolution.desktop;\n"
                    "x-scheme-handler/task=org.gnome.Evolution.desktop;\n");
    }
    return DesktopEntries({ {}, { folder.path() }, {} });
}

} // namespace

class ShownItemsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void evolutionShowsAnEventAndAToDo();
    void evolutionThatIsNotRunningIsStarted();
    void gnomeCalendarShowsAnEventOfAnotherMonth();

private:
    std::unique_ptr<DesktopCalendarApplication> application(const QString &desktopFile)
    {
        m_folder = std::make_unique<QTemporaryDir>();
        return std::make_unique<DesktopCalendarApplication>(
            [](const QString &, Kind kind) { return kind == Kind::Event ? u"harbour"_s : u"errands"_s; },
            onlyProgram(desktopFile, *m_folder), QDBusConnection::sessionBus());
    }
    static bool isOnBus(const QString &name)
    {
        return QDBusConnection::sessionBus().interface()->isServiceRegistered(name);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void ShownItemsTest::initTestCase()
{
    CalendarServiceSession &session = CalendarServiceSession::ofThisProcess();
    session.enter();
    CalendarServiceNeighbour neighbour(session);
    neighbour.addCalendar(u"harbour"_s, CalItemKind::Event, u"Harbour"_s);
    neighbour.addCalendar(u"errands"_s, CalItemKind::Task, u"Harbour"_s);
    neighbour.put(u"harbour"_s, meetingText);
    neighbour.put(u"errands"_s, errandText);
}

// The programs end as a person's log-out ends them.
void ShownItemsTest::cleanup()
{
    for (const QString &name : { u"org.gnome.Evolution"_s, u"org.gnome.Calendar"_s }) {
        const QDBusReply<uint> process = QDBusConnection::sessionBus().interface()->servicePid(name);
        if (process.isValid())
            ::kill(static_cast<pid_t>(process.value()), SIGKILL);
        QTRY_VERIFY(!isOnBus(name));
    }
}

void ShownItemsTest::evolutionShowsAnEventAndAToDo()
{
    const auto evolution = application(u"org.gnome.Evolution.desktop"_s);
    evolution->activate();
    QTRY_VERIFY_WITH_TIMEOUT(isOnBus(u"org.gnome.Evolution"_s), patience.count());

    evolution->showElement(meeting);
    QTRY_VERIFY_WITH_TIMEOUT(windowTitles().contains(u"Appointment — Harbour meeting"_s), patience.count());
    QVERIFY(photograph(u"evolution-event"_s));
    evolution->showElement(errand);
    QTRY_VERIFY_WITH_TIMEOUT(windowTitles().contains(u"Task — Order bulbs"_s), patience.count());
    QVERIFY(photograph(u"evolution-to-do"_s));
}

void ShownItemsTest::evolutionThatIsNotRunningIsStarted()
{
    const auto evolution = application(u"org.gnome.Evolution.desktop"_s);

    evolution->activate();
    evolution->showElement(meeting);

    QTRY_VERIFY_WITH_TIMEOUT(windowTitles().contains(u"Appointment — Harbour meeting"_s), patience.count());
}

void ShownItemsTest::gnomeCalendarShowsAnEventOfAnotherMonth()
{
    const auto gnomeCalendar = application(u"org.gnome.Calendar.desktop"_s);
    QVERIFY(!gnomeCalendar->hasElement(errand));

    gnomeCalendar->activate();
    gnomeCalendar->showElement(meeting);

    // The event's own window stands over the calendar's.
    QTRY_COMPARE_WITH_TIMEOUT(windowTitles().count(u"Calendar"_s), 2, patience.count());
    QVERIFY(photograph(u"gnome-calendar-event"_s));
    QCOMPARE(windowTitles().count(u"Calendar"_s), 2);
}

VANTLE_TEST(ShownItemsTest)
#include "ShownItemsTest.moc"
