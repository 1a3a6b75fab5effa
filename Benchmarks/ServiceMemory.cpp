// SPDX-License-Identifier: MIT
//
// What the events of the desktop's calendar service cost of our own memory: a calendar of many events against an
// empty one. Uses the real service on a bus of its own.
#include <CalCalendarStore.h>
#include <CalendarServiceNeighbour.h>
#include <CalendarServiceSession.h>
#include <CalendarStoreBackend.h>
#include <Clock.h>
#include <ServiceCalendarStore.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include <cstdio>

#include <malloc.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patience = 120 * 1000; // milliseconds
constexpr int events = 10000;
constexpr int eventsPerSeries = 50; // two of a hundred repeat
constexpr double bytesPerMebibyte = 1024 * 1024;

struct Memory {
    double allocated; // mebibytes
    double resident;

    static Memory now()
    {
        ::malloc_trim(0);
        QFile statistics(u"/proc/self/statm"_s);
        double pages = 0;
        if (statistics.open(QIODevice::ReadOnly))
            pages = statistics.readAll().split(' ').value(1).toDouble();
        const struct mallinfo2 heap = ::mallinfo2();
        return { static_cast<double>(heap.uordblks + heap.hblkhd) / bytesPerMebibyte,
            pages * static_cast<double>(::sysconf(_SC_PAGESIZE)) / bytesPerMebibyte };
    }
};

void writeCalendar(const QString &path)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("The calendar cannot be written");
    file.write("BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//test//test//EN\r\n");
    for (int number = 0; number < events; ++number) {
        const QByteArray day = QDate(2020, 1, 1).addDays(number % 3650).toString(u"yyyyMMdd"_s).toLatin1();
        file.write("BEGIN:VEVENT\r\nUID:event-" + QByteArray::number(number)
            + "@benchmark\r\nDTSTAMP:20200101T000000Z\r\n" + "DTSTART;TZID=Europe/Berlin:" + day
            + "T090000\r\nDTEND;TZID=Europe/Berlin:" + day + "T100000\r\nSUMMARY:Appointment number "
            + QByteArray::number(number) + "\r\nLOCATION:Room " + QByteArray::number(number % 40) + "\r\n"
            + (number % eventsPerSeries == 0 ? "RRULE:FREQ=WEEKLY\r\n" : "") + "END:VEVENT\r\n");
    }
    file.write("END:VCALENDAR\r\n");
}

std::unique_ptr<CalCalendarStore> openedStore(Clock &clock)
{
    std::vector<std::unique_ptr<CalendarStoreBackend>> backends;
    backends.push_back(std::make_unique<ServiceCalendarStore>(clock));
    auto store = std::make_unique<CalCalendarStore>(std::move(backends));
    if (!QTest::qWaitFor([&] { return store->isComplete(); }, patience))
        qFatal("The calendars do not come");
    QTest::qWait(1000); // what is still let go
    return store;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    CalendarServiceSession &session = CalendarServiceSession::ofThisProcess();
    CalendarServiceNeighbour neighbour(session);
    SystemClock clock;
    neighbour.addCalendar(u"empty"_s, CalItemKind::Event, u"Empty"_s);
    Memory before = {};
    {
        const auto store = openedStore(clock);
        before = Memory::now();
    }

    writeCalendar(session.path(u"data/evolution/calendar/full/calendar.ics"_s));
    neighbour.addCalendar(u"full"_s, CalItemKind::Event, u"Full"_s);
    QElapsedTimer timer;
    timer.start();
    const auto store = openedStore(clock);
    const qint64 loaded = timer.elapsed() - 1000;
    const Memory after = Memory::now();
    int found = 0;
    for (QDate day(2020, 1, 1); day < QDate(2020, 1, 11); day = day.addDays(1)) {
        found += static_cast<int>(
            store
                ->eventsWithPredicate(CalCalendarStore::eventPredicateWithStartDate_endDate_calendars(
                    day.startOfDay(), day.endOfDay(), store->calendars()))
                .size());
    }
    std::printf("%d events, loaded in %lld ms: %.1f MiB allocated, %.1f MiB resident above an empty calendar "
                "(%d records on ten days)\n",
        events, static_cast<long long>(loaded), after.allocated - before.allocated, after.resident - before.resident,
        found);
    return 0;
}
