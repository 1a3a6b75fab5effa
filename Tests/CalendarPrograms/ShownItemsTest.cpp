// SPDX-License-Identifier: MIT
#include <CalAlarm.h>
#include <CalCalendarStore.h>
#include <CalendarServiceNeighbour.h>
#include <CalendarServiceSession.h>
#include <CalendarStoreBackend.h>
#include <Clock.h>
#include <DesktopCalendarApplication.h>
#include <ServiceLoader.h>
#include <TestRegistry.h>

#include <QDBusConnectionInterface>
#include <QElapsedTimer>
#include <QImage>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <chrono>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

using Element = CalendarApplication::Element;
using Kind = CalendarApplication::ElementKind;

const QDate wednesday(2027, 3, 10);

// Monday to Friday, written by another program.
const QByteArray seriesText = "BEGIN:VEVENT\r\nUID:tide\r\nDTSTAMP:20261101T000000Z\r\n"
                              "DTSTART;TZID=Europe/Berlin:20270308T140000\r\n"
                              "DTEND;TZID=Europe/Berlin:20270308T150000\r\nRRULE:FREQ=DAILY;COUNT=5\r\n"
                              "SUMMARY:Tide watch\r\nEND:VEVENT\r\n";

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

// What our store wrote through the calendar service, in the windows of other programs.
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

    void writeMeeting(CalCalendarStore &store);
    void writeErrand(CalCalendarStore &store);
    void changeSeries(CalCalendarStore &store);

    std::unique_ptr<QTemporaryDir> m_folder;
    Element m_meeting { .calendarUid = u"harbour"_s, .plainUid = {}, .day = wednesday };
    Element m_errand { .calendarUid = u"harbour"_s, .kind = Kind::Todo, .plainUid = {} };
};

void ShownItemsTest::initTestCase()
{
    CalendarServiceSession &session = CalendarServiceSession::ofThisProcess();
    session.enter();
    CalendarServiceNeighbour neighbour(session);
    neighbour.addCalendar(u"harbour"_s, CalItemKind::Event, u"Harbour"_s);
    neighbour.addCalendar(u"errands"_s, CalItemKind::Task, u"Harbour"_s);
    neighbour.put(u"harbour"_s, seriesText);

    SystemClock clock;
    CalCalendarStore store({});
    ServiceLoader loader(clock);
    QSignalSpy found(&loader, &ServiceLoader::found);
    loader.start();
    QVERIFY(!found.isEmpty() || found.wait(static_cast<int>(patience.count())));
    auto backend = loader.load();
    QVERIFY(backend);
    store.addBackend(std::move(backend));
    QTRY_VERIFY_WITH_TIMEOUT(store.calendarWithUID(u"harbour"_s), patience.count());

    writeMeeting(store);
    writeErrand(store);
    changeSeries(store);
}

void ShownItemsTest::writeMeeting(CalCalendarStore &store)
{
    const auto meeting = std::make_shared<CalEvent>();
    meeting->setCalendar(store.calendarWithUID(u"harbour"_s));
    meeting->setTitle(u"Harbour meeting"_s);
    meeting->setLocation(u"Quay 7, north; second door"_s);
    meeting->setNotes(u"Bring the boards.\nAll of them."_s);
    meeting->setStartDate(QDateTime(wednesday, QTime(9, 0)));
    meeting->setEndDate(QDateTime(wednesday, QTime(10, 0)));
    StoreError error;
    // As the sheet does.
    for (const CalSpan span : { CalSpanThisEvent, CalSpanAllEvents })
        QVERIFY2(store.saveEvent_span_error(meeting, span, &error), qPrintable(error.message()));
    m_meeting.plainUid = meeting->origin().plainUid;
}

void ShownItemsTest::writeErrand(CalCalendarStore &store)
{
    const auto errand = std::make_shared<CalTask>();
    errand->setCalendar(store.calendarWithUID(u"harbour"_s));
    errand->setTitle(u"Order bulbs"_s);
    errand->setDueDate(QDateTime(wednesday, QTime(18, 0)));
    StoreError error;
    QVERIFY2(store.saveTask_error(errand, &error), qPrintable(error.message()));
    m_errand.plainUid = errand->origin().plainUid;
}

// Wednesday's watch is an hour later, Thursday's is gone.
void ShownItemsTest::changeSeries(CalCalendarStore &store)
{
    const auto watchOn = [&store](const QDate &day) -> CalEventPtr {
        const CalEventList events
            = store.eventsWithPredicate(CalCalendarStore::eventPredicateWithStartDate_endDate_calendars(
                day.startOfDay(), day.endOfDay(), store.calendars()));
        const auto watch = std::ranges::find(events, u"Tide watch"_s, [](const auto &each) { return *each->title(); });
        return watch == events.end() ? nullptr : *watch;
    };
    const CalEventPtr moved = watchOn(wednesday);
    QVERIFY(moved);
    moved->setStartDate(moved->startDate().addSecs(3600));
    moved->setEndDate(moved->endDate().addSecs(3600));
    StoreError error;
    QVERIFY2(store.saveEvent_span_error(moved, CalSpanThisEvent, &error), qPrintable(error.message()));
    const CalEventPtr removed = watchOn(wednesday.addDays(1));
    QVERIFY(removed);
    QVERIFY2(store.removeEvent_span_error(removed, CalSpanThisEvent, &error), qPrintable(error.message()));
    QVERIFY(!watchOn(wednesday.addDays(1)));
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

    evolution->showElement(m_meeting);
    QTRY_VERIFY_WITH_TIMEOUT(windowTitles().contains(u"Appointment — Harbour meeting"_s), patience.count());
    QVERIFY(photograph(u"evolution-event"_s));
    evolution->showElement(m_errand);
    QTRY_VERIFY_WITH_TIMEOUT(windowTitles().contains(u"Task — Order bulbs"_s), patience.count());
    QVERIFY(photograph(u"evolution-to-do"_s));
}

void ShownItemsTest::evolutionThatIsNotRunningIsStarted()
{
    const auto evolution = application(u"org.gnome.Evolution.desktop"_s);

    evolution->activate();
    evolution->showElement(m_meeting);

    QTRY_VERIFY_WITH_TIMEOUT(windowTitles().contains(u"Appointment — Harbour meeting"_s), patience.count());
}

void ShownItemsTest::gnomeCalendarShowsAnEventOfAnotherMonth()
{
    const auto gnomeCalendar = application(u"org.gnome.Calendar.desktop"_s);
    QVERIFY(!gnomeCalendar->hasElement(m_errand));

    gnomeCalendar->activate();
    gnomeCalendar->showElement(m_meeting);

    // The event's own window stands over the calendar's.
    QTRY_COMPARE_WITH_TIMEOUT(windowTitles().count(u"Calendar"_s), 2, patience.count());
    QVERIFY(photograph(u"gnome-calendar-event"_s));
    QCOMPARE(windowTitles().count(u"Calendar"_s), 2);
}

VANTLE_TEST(ShownItemsTest)
#include "ShownItemsTest.moc"
