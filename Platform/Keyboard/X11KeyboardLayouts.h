// SPDX-License-Identifier: MIT
#pragma once

#include "KeyboardLayouts.h"

#include <QByteArray>

#include <memory>

struct xcb_connection_t;
class QSocketNotifier;
class XkbKeyboardLayout;

struct XcbDisconnect {
    void operator()(xcb_connection_t *connection) const;
};
using XcbConnectionPtr = std::unique_ptr<xcb_connection_t, XcbDisconnect>;

// The layout of an X server's keyboard, also after another one was chosen or
// the other group of it was switched to.
//
// Has a connection of its own, because Qt's tells nothing about layouts and
// does not exist on Wayland. When the server goes, the last layout stays.
class X11KeyboardLayouts final : public KeyboardLayouts
{
    Q_OBJECT

public:
    // Null when there is no X server, or one without the keyboard extension.
    // An empty display is the session's.
    static std::unique_ptr<X11KeyboardLayouts> create(const QByteArray &display = {});
    ~X11KeyboardLayouts() override;

    KeyboardLayoutPtr currentLayout() override;
    quint32 keyboardType() override;

private:
    X11KeyboardLayouts(XcbConnectionPtr connection, int device, int firstEvent);

    void selectEvents();
    void askAndTakeEvents();
    void takeEvents();
    void readLayout();

    XcbConnectionPtr m_connection;
    int m_device;
    int m_firstEvent; // the extension's number for its events
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::shared_ptr<const XkbKeyboardLayout> m_layout;
    bool m_isAnnouncementDue = false;
};
