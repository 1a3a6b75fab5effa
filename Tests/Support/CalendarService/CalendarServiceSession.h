// SPDX-License-Identifier: MIT
#pragma once

#include <PrivateBus.h>

#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <memory>
#include <optional>

// A session of a desktop of its own, with the real calendar service on a bus of
// its own and with fresh homes: one machine of a person. No display, no keyring.
// Several of them live beside each other, and beside other test programs.
//
// The service is started when somebody first asks for it, as on a desktop. All
// that runs in these homes ends with the object, also what has been stopped.
//
//     CalendarServiceSession session;
//     QVERIFY2(session.start(), qPrintable(session.failure()));
//     session.enter();                       // this process is now on that machine
//     CalendarServiceNeighbour neighbour(session);
//     neighbour.addCalendar(...);
//
// Main thread only.
class CalendarServiceSession final
{
public:
    CalendarServiceSession();
    ~CalendarServiceSession();
    CalendarServiceSession(const CalendarServiceSession &) = delete;
    CalendarServiceSession &operator=(const CalendarServiceSession &) = delete;

    // The bus and the homes. False, with a reason for the test's report, when they did not come up.
    [[nodiscard]] bool start();
    QString failure() const { return m_failure; }

    // Puts this process on that machine. GLib connects to the bus of the environment once for the whole
    // process: so one session in the life of a process may be entered, before anything asks for a bus,
    // and it must outlive all that does.
    void enter() const;
    // The session that this process has entered, started with the first call; it lasts until the end of the process.
    // Ends the program with a message if it cannot be had.
    static CalendarServiceSession &ofThisProcess();

    // For programs on that machine.
    QProcessEnvironment environment() const;
    QString busAddress() const { return m_bus.address(); }
    // A path below the homes: "data/evolution/calendar/...", "config/...", "cache/...", "home/...".
    QString path(const QString &relative) const { return m_folder.filePath(relative); }

    // What answers for all calendars. Both names are looked up on the bus at each call; starts nothing.
    enum class Part { Factory, Registry };
    // Nothing while that part is not running.
    std::optional<qint64> processId(Part part);
    // Starts it if need be, and waits until it is on the bus. False when it did not come within a generous limit.
    [[nodiscard]] bool activate(Part part);
    // Kills it as a crash does, and waits until the bus has noticed.
    [[nodiscard]] bool kill(Part part);
    // From now on it is there and answers nothing, until resume().
    [[nodiscard]] bool stop(Part part);
    [[nodiscard]] bool resume(Part part);
    // The well-known name on the bus, of the version that is installed.
    QString busName(Part part) const;

private:
    void endAllProcesses();
    bool copyServiceFiles();
    QList<qint64> processesHere() const;
    bool isHere(qint64 processId) const;
    bool signal(Part part, int number);

    QTemporaryDir m_folder;
    PrivateBus m_bus;
    QStringList m_busNames;
    std::unique_ptr<QDBusConnection> m_connection;
    QString m_failure;
};
