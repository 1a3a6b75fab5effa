// SPDX-License-Identifier: MIT
#include "CalDavServer.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <csignal>

#include <sys/prctl.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patienceInMilliseconds = 60000; // a Python program on a busy machine

bool write(const QString &path, const QByteArray &text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

} // namespace

CalDavServer::~CalDavServer()
{
    stop();
}

QString CalDavServer::collectionFolder(const QString &name) const
{
    return m_folder.filePath(u"storage/collection-root/%1/%2"_s.arg(user(), name));
}

void CalDavServer::addCollection(const QString &name) const
{
    QDir().mkpath(collectionFolder(name));
    const QByteArray properties = R"({"tag": "VCALENDAR", "D:displayname": ")" + name.toUtf8()
        + R"(", "C:supported-calendar-component-set": "VEVENT,VTODO"})";
    if (!write(collectionFolder(name) + u"/.Radicale.props"_s, properties))
        qFatal("The server's collection cannot be made");
}

bool CalDavServer::writeConfiguration()
{
    const QString configuration
        = u"[server]\nhosts = 127.0.0.1:%1\n"
          "[auth]\ntype = htpasswd\nhtpasswd_filename = %2\nhtpasswd_encryption = plain\ndelay = 0\n"
          "[storage]\nfilesystem_folder = %3\n"
          "[logging]\nlevel = info\n"_s.arg(
              QString::number(m_port), m_folder.filePath(u"users"_s), m_folder.filePath(u"storage"_s));
    return write(m_folder.filePath(u"config"_s), configuration.toUtf8())
        && write(m_folder.filePath(u"users"_s), (user() + u':' + password() + u'\n').toUtf8());
}

bool CalDavServer::start()
{
    if (!writeConfiguration()) {
        m_failure = u"cannot write the server's configuration"_s;
        return false;
    }
    m_server.setProcessChannelMode(QProcess::MergedChannels);
    m_server.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
    m_server.start(u"radicale"_s, { u"--config"_s, m_folder.filePath(u"config"_s) });
    QByteArray log;
    while (!log.contains("server ready")) {
        if (!m_server.waitForReadyRead(patienceInMilliseconds)) {
            m_failure = u"the server did not start: "_s + m_server.errorString() + u'\n' + QString::fromUtf8(log);
            return false;
        }
        log += m_server.readAll();
    }
    // Nobody reads what it says from here on: it must not fill up the pipe.
    m_server.closeReadChannel(QProcess::StandardOutput);
    return takePort(log);
}

bool CalDavServer::takePort(const QByteArray &log)
{
    static const QRegularExpression line(u"Listening on '\\[127\\.0\\.0\\.1\\]:(\\d+)'"_s);
    m_port = line.match(QString::fromUtf8(log)).captured(1).toInt();
    if (m_port == 0)
        m_failure = u"the server does not say its port: "_s + QString::fromUtf8(log);
    return m_port != 0;
}

void CalDavServer::pause()
{
    m_isPaused = ::kill(static_cast<pid_t>(m_server.processId()), SIGSTOP) == 0;
    if (!m_isPaused)
        qFatal("The server cannot be paused");
}

void CalDavServer::resume()
{
    m_isPaused = false;
    ::kill(static_cast<pid_t>(m_server.processId()), SIGCONT);
}

void CalDavServer::stop()
{
    if (m_isPaused)
        resume();
    if (m_server.state() == QProcess::NotRunning)
        return;
    m_server.terminate();
    if (!m_server.waitForFinished(patienceInMilliseconds)) {
        m_server.kill();
        m_server.waitForFinished(patienceInMilliseconds);
    }
}

QString CalDavServer::url(const QString &collection) const
{
    return u"http://%1@127.0.0.1:%2/%1/%3/"_s.arg(user()).arg(m_port).arg(collection);
}

QByteArray CalDavServer::contents(const QString &collection) const
{
    QByteArray text;
    const QDir folder(collectionFolder(collection));
    for (const QString &name : folder.entryList({ u"*.ics"_s }, QDir::Files)) {
        QFile file(folder.filePath(name));
        if (file.open(QIODevice::ReadOnly))
            text += file.readAll();
    }
    return text;
}
