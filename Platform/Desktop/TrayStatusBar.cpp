// SPDX-License-Identifier: MIT
#include "TrayStatusBar.h"

#include "TrayStatusItem.h"
#include "X11Messages.h"

TrayStatusBar::TrayStatusBar(const QDBusConnection &bus, const QByteArray &xDisplay, QObject *parent)
    : StatusBar(parent)
    , m_hosts(bus, xDisplay)
{
    connect(&m_hosts, &StatusIconHosts::hasHostDidChange, this, &StatusBar::availabilityDidChange);
}

// Windows of Wayland cannot be embedded into a tray of X.
TrayStatusBar::TrayStatusBar(QObject *parent)
    : TrayStatusBar(
        QDBusConnection::sessionBus(), X11Messages::isAvailable() ? qgetenv("DISPLAY") : QByteArray(), parent)
{
}

std::unique_ptr<StatusItem> TrayStatusBar::makeStatusItem()
{
    return std::make_unique<TrayStatusItem>(m_hosts);
}
