// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QObject>

#include <memory>

class QDBusServiceWatcher;
class TrayOwnerWatcher;

// Finds out whether anything shows status icons: a StatusNotifier host on the
// session bus, or the owner of the X server's tray selection.
//
// Asks without waiting, and follows both as they come, go and come back.
class StatusIconHosts final : public QObject
{
    Q_OBJECT

public:
    // Without an X server an empty display.
    StatusIconHosts(const QDBusConnection &bus, const QByteArray &xDisplay, QObject *parent = nullptr);
    ~StatusIconHosts() override;

    bool hasHost() const { return m_hasNotifierHost || hasTray(); }

Q_SIGNALS:
    void hasHostDidChange();

private Q_SLOTS:
    void askWatcher();

private:
    bool hasTray() const;
    void watcherIsGone();
    void setHasNotifierHost(bool hasHost);
    void announce();

    QDBusConnection m_bus;
    std::unique_ptr<TrayOwnerWatcher> m_tray; // null without an X server
    bool m_hasNotifierHost = false;
    bool m_announced = false;
};
