// SPDX-License-Identifier: MIT
#pragma once

#include "StatusBar.h"
#include "StatusIconHosts.h"

// Status icons by StatusNotifier or by embedding into a tray, whichever is there.
class TrayStatusBar final : public StatusBar
{
    Q_OBJECT

public:
    TrayStatusBar(const QDBusConnection &bus, const QByteArray &xDisplay, QObject *parent = nullptr);
    // Of this session.
    explicit TrayStatusBar(QObject *parent = nullptr);

    std::unique_ptr<StatusItem> makeStatusItem() override;
    bool isAvailable() const override { return m_hosts.hasHost(); }

private:
    StatusIconHosts m_hosts;
};
