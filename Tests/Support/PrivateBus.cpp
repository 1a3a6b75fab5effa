// SPDX-License-Identifier: MIT
#include "PrivateBus.h"

#include <QFile>

#include <csignal>

#include <sys/prctl.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patienceInMilliseconds = 30000; // several test programs may start at once

constexpr auto configuration = R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=/tmp</listen>
%1  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)"_L1;

} // namespace

PrivateBus::~PrivateBus()
{
    if (m_daemon.state() == QProcess::NotRunning)
        return;
    m_daemon.terminate();
    if (!m_daemon.waitForFinished(patienceInMilliseconds)) {
        m_daemon.kill();
        m_daemon.waitForFinished(patienceInMilliseconds);
    }
}

void PrivateBus::setServices(const QString &folder, const QProcessEnvironment &environment)
{
    m_services = folder;
    m_daemon.setProcessEnvironment(environment);
}

bool PrivateBus::start()
{
    QFile file(m_folder.filePath(u"bus.conf"_s));
    const QString services
        = m_services.isEmpty() ? QString() : u"  <servicedir>%1</servicedir>\n"_s.arg(m_services.toHtmlEscaped());
    if (!file.open(QIODevice::WriteOnly) || file.write(QString(configuration).arg(services).toUtf8()) < 0) {
        m_failure = file.errorString();
        return false;
    }
    file.close();

    m_daemon.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
    m_daemon.start(u"dbus-daemon"_s, { u"--nofork"_s, u"--print-address"_s, u"--config-file="_s + file.fileName() });
    QByteArray line;
    while (!line.endsWith('\n')) {
        if (!m_daemon.waitForReadyRead(patienceInMilliseconds)) {
            m_failure = u"dbus-daemon did not start: %1 %2"_s.arg(
                m_daemon.errorString(), QString::fromLocal8Bit(m_daemon.readAllStandardError()));
            return false;
        }
        line += m_daemon.readAllStandardOutput();
    }
    m_address = QString::fromLatin1(line.trimmed());
    return true;
}

QDBusConnection PrivateBus::connect()
{
    static int count = 0;
    return QDBusConnection::connectToBus(m_address, u"participant%1"_s.arg(++count));
}

void PrivateBus::disconnect(QDBusConnection &participant)
{
    QDBusConnection::disconnectFromBus(participant.name());
    // What still holds the connection keeps it open.
    participant = QDBusConnection(QString());
}
