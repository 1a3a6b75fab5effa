// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

struct xcb_connection_t;

// Whether a program embeds status icons on an X server, by the owner of the
// selection _NET_SYSTEM_TRAY_Sn. Has a connection of its own, which hears of that
// selection and nothing else.
class TrayOwnerWatcher final : public QObject
{
    Q_OBJECT

public:
    // Without a server there is never an owner.
    explicit TrayOwnerWatcher(const QByteArray &display, QObject *parent = nullptr);
    ~TrayOwnerWatcher() override;

    bool hasOwner() const { return m_hasOwner; }

Q_SIGNALS:
    void hasOwnerDidChange();

private:
    struct Disconnect {
        void operator()(xcb_connection_t *connection) const;
    };

    void takeEvents();
    void askForOwner();

    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    std::unique_ptr<QSocketNotifier> m_notifier;
    quint32 m_selection = 0;
    quint8 m_firstEvent = 0; // the extension's number for its events
    bool m_hasOwner = false;
};
