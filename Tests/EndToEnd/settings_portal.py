#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Stands in for the desktop's settings portal: wishes for dark until it is told otherwise."""

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

SETTINGS = "org.freedesktop.portal.Settings"
APPEARANCE = "org.freedesktop.appearance"


class Portal(dbus.service.Object):
    def __init__(self, bus):
        super().__init__(bus, "/org/freedesktop/portal/desktop")
        self.scheme = dbus.UInt32(1)

    @dbus.service.method(SETTINGS, in_signature="ss", out_signature="v")
    def Read(self, namespace, key):
        return self.value(namespace, key)

    @dbus.service.method(SETTINGS, in_signature="ss", out_signature="v")
    def ReadOne(self, namespace, key):
        return self.value(namespace, key)

    def value(self, namespace, key):
        if (namespace, key) != (APPEARANCE, "color-scheme"):
            raise dbus.DBusException("no such setting", name="org.freedesktop.portal.Error.NotFound")
        return self.scheme

    @dbus.service.signal(SETTINGS, signature="ssv")
    def SettingChanged(self, namespace, key, value):
        pass

    @dbus.service.method("org.vantle.TestPortal", in_signature="u", out_signature="")
    def Wish(self, scheme):
        self.scheme = dbus.UInt32(scheme)
        self.SettingChanged(APPEARANCE, "color-scheme", self.scheme)


def main():
    dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    name = dbus.service.BusName("org.freedesktop.portal.Desktop", bus)
    portal = Portal(bus)
    print("ready", flush=True)
    GLib.MainLoop().run()
    del name, portal


if __name__ == "__main__":
    main()
