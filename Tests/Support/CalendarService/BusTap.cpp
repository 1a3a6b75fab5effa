// SPDX-License-Identifier: MIT

// Before every header of Qt, whose key words some of GLib's names would be.
#include <gio/gio.h>

#include "BusTap.h"

#include <QHash>

#include <mutex>

// What the filter of the connection holds: it may still be running when the tap has gone.
class BusTap::Line final
{
public:
    explicit Line(Watch watch)
        : m_watch(std::move(watch))
    {
    }

    void cut()
    {
        const std::scoped_lock lock(m_mutex);
        m_watch = nullptr;
    }

    Fate see(GDBusMessage *message, bool isIncoming)
    {
        const std::scoped_lock lock(m_mutex);
        if (!m_watch)
            return Fate::Pass;
        const QByteArray member(g_dbus_message_get_member(message));
        const QByteArray path(g_dbus_message_get_path(message));
        switch (g_dbus_message_get_message_type(message)) {
        case G_DBUS_MESSAGE_TYPE_METHOD_CALL:
            if (isIncoming)
                return Fate::Pass;
            m_calls.insert(g_dbus_message_get_serial(message), member);
            return m_watch({ Kind::Call, member, path });
        case G_DBUS_MESSAGE_TYPE_METHOD_RETURN:
            return isIncoming ? m_watch({ Kind::Answer, m_calls.take(g_dbus_message_get_reply_serial(message)), {} })
                              : Fate::Pass;
        case G_DBUS_MESSAGE_TYPE_SIGNAL:
            return isIncoming ? m_watch({ Kind::Signal, member, path }) : Fate::Pass;
        default:
            return Fate::Pass;
        }
    }

private:
    std::mutex m_mutex;
    Watch m_watch;
    QHash<quint32, QByteArray> m_calls; // members by their serial numbers
};

BusTap::BusTap(Watch watch)
    : m_line(std::make_shared<Line>(std::move(watch)))
{
    GError *error = nullptr;
    GDBusConnection *const bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, &error);
    if (!bus)
        qFatal("No connection with the bus to listen on: %s", error->message);
    m_filter = g_dbus_connection_add_filter(
        bus,
        [](GDBusConnection * /*bus*/, GDBusMessage *message, gboolean isIncoming, gpointer line) -> GDBusMessage * {
            if ((*static_cast<std::shared_ptr<Line> *>(line))->see(message, isIncoming) == Fate::Pass)
                return message;
            g_object_unref(message);
            return nullptr;
        },
        new std::shared_ptr<Line>(m_line), [](gpointer line) { delete static_cast<std::shared_ptr<Line> *>(line); });
    g_object_unref(bus);
}

BusTap::~BusTap()
{
    m_line->cut();
    if (GDBusConnection *const bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr)) {
        g_dbus_connection_remove_filter(bus, m_filter);
        g_object_unref(bus);
    }
}

bool isWriting(const BusTap::Message &message)
{
    return message.member == "CreateObjects" || message.member == "ModifyObjects" || message.member == "RemoveObjects";
}
