// SPDX-License-Identifier: MIT
#include "PortalFrontEnd.h"

#include "MockPortalBackEnd.h"

#include <QDBusConnectionInterface>
#include <QFile>
#include <QTest>

#include <csignal>

#include <sys/prctl.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patienceInMilliseconds = 30000; // several test programs may start at once

} // namespace

PortalFrontEnd::~PortalFrontEnd()
{
    kill();
}

bool PortalFrontEnd::start(const QString &busAddress, const QDBusConnection &bus, Desktop desktop)
{
    QFile description(m_folder.filePath(u"mock.portal"_s));
    if (!description.open(QIODevice::WriteOnly)) {
        m_failure = description.errorString();
        return false;
    }
    description.write("[portal]\nDBusName=" + MockPortalBackEnd::service().toUtf8() + "\nInterfaces="
        + (desktop == Desktop::WithHotKeys ? "org.freedesktop.impl.portal.GlobalShortcuts;" : "") + "\nUseIn=mock\n");
    description.close();

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, busAddress);
    environment.insert(u"XDG_DESKTOP_PORTAL_DIR"_s, m_folder.path());
    environment.insert(u"XDG_CURRENT_DESKTOP"_s, u"mock"_s);
    environment.insert(u"XDG_RUNTIME_DIR"_s, m_folder.path());
    m_process.setProcessEnvironment(environment);
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
    m_process.start(u"/usr/libexec/xdg-desktop-portal"_s, { u"-v"_s });
    // The event loop runs meanwhile: the portal asks the back end, which lives here.
    m_bus = bus;
    const bool isReady = QTest::qWaitFor([this] { return isRegistered(); }, patienceInMilliseconds);
    if (!isReady)
        m_failure = u"The portal did not start: %1 %2"_s.arg(
            m_process.errorString(), QString::fromLocal8Bit(m_process.readAll()));
    return isReady;
}

void PortalFrontEnd::kill()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill();
    m_process.waitForFinished(patienceInMilliseconds);
    // The next one may be started at once, and is not to be mistaken for this one.
    if (!QTest::qWaitFor([this] { return !isRegistered(); }, patienceInMilliseconds))
        m_failure = u"The portal is gone, but not its name."_s;
}

bool PortalFrontEnd::isRegistered() const
{
    return m_bus.interface()->isServiceRegistered(Portal::service()).value();
}
