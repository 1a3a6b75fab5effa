// SPDX-License-Identifier: MIT
#include "VirtualDisplay.h"

#include <QProcessEnvironment>

#include <csignal>

#include <sys/prctl.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patienceInMilliseconds = 30000; // several test programs may start at once

} // namespace

VirtualDisplay::~VirtualDisplay()
{
    stop();
}

bool VirtualDisplay::start()
{
    m_server.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
    m_server.setProcessChannelMode(QProcess::SeparateChannels);
    // The server chooses a free number itself and writes it when it is ready.
    m_server.start(u"Xvfb"_s,
        { u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"1024x768x24"_s, u"-nolisten"_s, u"tcp"_s, u"-noreset"_s });
    QByteArray number;
    while (!number.endsWith('\n')) {
        if (!m_server.waitForReadyRead(patienceInMilliseconds)) {
            m_failure = u"Xvfb did not start: %1 %2"_s.arg(
                m_server.errorString(), QString::fromLocal8Bit(m_server.readAllStandardError()));
            stop();
            return false;
        }
        number += m_server.readAllStandardOutput();
    }
    m_name = ':' + number.trimmed();
    return true;
}

void VirtualDisplay::stop()
{
    if (m_server.state() == QProcess::NotRunning)
        return;
    m_server.terminate();
    if (!m_server.waitForFinished(patienceInMilliseconds)) {
        m_server.kill();
        m_server.waitForFinished(patienceInMilliseconds);
    }
}

QProcessEnvironment VirtualDisplay::environment() const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DISPLAY"_s, QString::fromLatin1(m_name));
    environment.remove(u"WAYLAND_DISPLAY"_s);
    environment.remove(u"XAUTHORITY"_s);
    return environment;
}

bool VirtualDisplay::run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessEnvironment(environment());
    process.start(program, arguments);
    if (process.waitForFinished(patienceInMilliseconds) && process.exitStatus() == QProcess::NormalExit
        && process.exitCode() == 0)
        return true;
    m_failure = u"%1 %2: %3 %4"_s.arg(
        program, arguments.join(u' '), process.errorString(), QString::fromLocal8Bit(process.readAllStandardError()));
    return false;
}
