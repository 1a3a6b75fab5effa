// SPDX-License-Identifier: MIT
#include "CalendarServiceSession.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <csignal>

#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patienceInMilliseconds = 30000; // several services may start at once

const QString servicePrefix = u"org.gnome.evolution.dataserver."_s;

// Whether the process ended within the limit. One that is gone has ended; it need not be our child.
bool hasEnded(qint64 processId)
{
    const auto descriptor = static_cast<int>(::syscall(SYS_pidfd_open, static_cast<pid_t>(processId), 0));
    if (descriptor < 0)
        return errno == ESRCH;
    pollfd end { descriptor, POLLIN, 0 };
    const bool isOver = ::poll(&end, 1, patienceInMilliseconds) == 1;
    ::close(descriptor);
    return isOver;
}

} // namespace

CalendarServiceSession::CalendarServiceSession() = default;

CalendarServiceSession::~CalendarServiceSession()
{
    if (m_connection)
        PrivateBus::disconnect(*m_connection);
    endAllProcesses();
}

bool CalendarServiceSession::start()
{
    for (const QString &name : { u"home"_s, u"config"_s, u"data"_s, u"cache"_s, u"state"_s, u"runtime"_s }) {
        if (!QDir().mkpath(path(name))) {
            m_failure = u"no folder for the homes"_s;
            return false;
        }
    }
    QFile::setPermissions(path(u"runtime"_s), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    if (!copyServiceFiles())
        return false;
    m_bus.setServices(path(u"services"_s), environment());
    if (!m_bus.start()) {
        m_failure = m_bus.failure();
        return false;
    }
    m_connection = std::make_unique<QDBusConnection>(m_bus.connect());
    return true;
}

// Only these can be started on the bus: what else is installed on this machine stays out of the test.
bool CalendarServiceSession::copyServiceFiles()
{
    QDir().mkpath(path(u"services"_s));
    const QDir installed(u"/usr/share/dbus-1/services"_s);
    for (const QFileInfo &file : installed.entryInfoList({ servicePrefix + u"*.service"_s })) {
        m_busNames.append(file.completeBaseName());
        if (!QFile::copy(file.filePath(), path(u"services/"_s + file.fileName()))) {
            m_failure = u"cannot copy "_s + file.filePath();
            return false;
        }
    }
    if (busName(Part::Factory).isEmpty() || busName(Part::Registry).isEmpty()) {
        m_failure = u"the calendar service is not installed: script/bootstrap test"_s;
        return false;
    }
    return true;
}

QString CalendarServiceSession::busName(Part part) const
{
    const QString beginning = servicePrefix + (part == Part::Factory ? u"Calendar"_s : u"Sources"_s);
    for (const QString &name : m_busNames) {
        if (name.startsWith(beginning))
            return name;
    }
    return {};
}

QProcessEnvironment CalendarServiceSession::environment() const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // What GLib complains of ends a test program, but not the service.
    for (const QString &name : { u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"XAUTHORITY"_s, u"LD_PRELOAD"_s, u"G_DEBUG"_s })
        environment.remove(name);
    environment.insert(u"HOME"_s, path(u"home"_s));
    environment.insert(u"XDG_CONFIG_HOME"_s, path(u"config"_s));
    environment.insert(u"XDG_DATA_HOME"_s, path(u"data"_s));
    environment.insert(u"XDG_CACHE_HOME"_s, path(u"cache"_s));
    environment.insert(u"XDG_STATE_HOME"_s, path(u"state"_s));
    environment.insert(u"XDG_RUNTIME_DIR"_s, path(u"runtime"_s));
    environment.insert(u"GSETTINGS_BACKEND"_s, u"memory"_s);
    if (!m_bus.address().isEmpty())
        environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, m_bus.address());
    return environment;
}

void CalendarServiceSession::enter() const
{
    const QProcessEnvironment variables = environment();
    for (const QString &name : variables.keys()) // NOLINT(bugprone-*)
        qputenv(name.toUtf8().constData(), variables.value(name).toUtf8());
}

CalendarServiceSession &CalendarServiceSession::ofThisProcess()
{
    static CalendarServiceSession session;
    static const bool isEntered = [] {
        if (!session.start())
            qFatal("No session with a calendar service: %s", qUtf8Printable(session.failure()));
        session.enter();
        return true;
    }();
    Q_UNUSED(isEntered)
    return session;
}

std::optional<qint64> CalendarServiceSession::processId(Part part)
{
    const QDBusReply<uint> reply = m_connection->interface()->servicePid(busName(part));
    if (!reply.isValid() || !isHere(reply.value()))
        return std::nullopt;
    return reply.value();
}

bool CalendarServiceSession::activate(Part part)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"StartServiceByName"_s);
    call << busName(part) << 0U;
    const QDBusMessage reply = m_connection->call(call, QDBus::Block, patienceInMilliseconds);
    return reply.type() == QDBusMessage::ReplyMessage && processId(part).has_value();
}

bool CalendarServiceSession::kill(Part part)
{
    const std::optional<qint64> victim = processId(part);
    if (!victim || !signal(part, SIGKILL))
        return false;
    if (!hasEnded(*victim))
        return false;
    // Each question is one way to the bus and back.
    const QDeadlineTimer deadline(patienceInMilliseconds);
    while (m_connection->interface()->servicePid(busName(part)).value() == *victim) {
        if (deadline.hasExpired())
            return false;
    }
    return true;
}

bool CalendarServiceSession::stop(Part part)
{
    return signal(part, SIGSTOP);
}

bool CalendarServiceSession::resume(Part part)
{
    return signal(part, SIGCONT);
}

bool CalendarServiceSession::signal(Part part, int number)
{
    const std::optional<qint64> receiver = processId(part);
    return receiver && ::kill(static_cast<pid_t>(*receiver), number) == 0;
}

// A process that has ended but was not waited for has no environment any more.
bool CalendarServiceSession::isHere(qint64 processId) const
{
    QFile file(u"/proc/%1/environ"_s.arg(processId));
    return file.open(QIODevice::ReadOnly)
        && file.readAll().split('\0').contains("HOME=" + QFile::encodeName(path(u"home"_s)));
}

QList<qint64> CalendarServiceSession::processesHere() const
{
    QList<qint64> found;
    const QStringList names = QDir(u"/proc"_s).entryList(QDir::Dirs);
    for (const QString &name : names) {
        bool isNumber = false;
        const qint64 processId = name.toLongLong(&isNumber);
        if (isNumber && processId != QCoreApplication::applicationPid() && isHere(processId))
            found.append(processId);
    }
    return found;
}

// The bus daemon is among them. What is stopped must go on to end.
void CalendarServiceSession::endAllProcesses()
{
    const QList<qint64> processIds = processesHere();
    for (const qint64 processId : processIds) {
        ::kill(static_cast<pid_t>(processId), SIGTERM);
        ::kill(static_cast<pid_t>(processId), SIGCONT);
    }
    for (const qint64 processId : processIds) {
        if (!hasEnded(processId))
            ::kill(static_cast<pid_t>(processId), SIGKILL);
    }
}
