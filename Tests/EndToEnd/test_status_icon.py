#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The status icon, on a bus, in a tray, and where nobody shows it."""

import os
import pathlib
import re
import subprocess
import time
import unittest

import dbus

from desk import OnADesk, Process, focused_window, is_viewable, visible_windows
from driver import ANSWER_LIMIT, Atspi, eventually, run

HOST = pathlib.Path(__file__).with_name("status_icon_host.py")
ITEM = "org.kde.StatusNotifierItem"
# Seconds after which some desktops have their panel ready. In the short run it comes after the window.
LATE = 10.0 if os.environ.get("VANTLE_LONG_TESTS") else 0.0


class Host:
    """A StatusNotifier host of our own."""

    def __init__(self):
        self.process = subprocess.Popen(["/usr/bin/python3", str(HOST)], stdout=subprocess.PIPE, text=True)
        assert self.process.stdout.readline().strip() == "ready"

    def registered_item(self):
        """The bus name of the next icon that comes; waits for it."""
        return self.process.stdout.readline().strip()

    def close(self):
        if self.process.poll() is None:
            self.process.terminate()
            self.process.wait()
        self.process.stdout.close()


class Item:
    """The icon, as a host has it."""

    def __init__(self, service):
        self.bus = dbus.SessionBus()
        self.object = self.bus.get_object(service, "/StatusNotifierItem", introspect=False)
        self.menu = self.bus.get_object(service, str(self.property("Menu")), introspect=False)

    def property(self, name):
        return self.object.Get(ITEM, name, dbus_interface="org.freedesktop.DBus.Properties")

    def press(self, times=1):
        for _ in range(times):
            self.object.Activate(100, 100, dbus_interface=ITEM)

    def entries(self):
        """Text and number of each entry of the menu."""
        _, (_, _, children) = self.menu.GetLayout(0, -1, dbus.Array([], signature="s"),
                                                         dbus_interface="com.canonical.dbusmenu")
        found = {}
        for number, properties, _ in children:
            if "label" in properties:
                found[str(properties["label"]).replace("_", "")] = int(number)
        return found

    def use(self, text):
        self.menu.Event(self.entries()[text], "clicked", dbus.String("", variant_level=1), dbus.UInt32(0),
                        dbus_interface="com.canonical.dbusmenu")


class StatusIcon(OnADesk, unittest.TestCase):
    def host(self):
        host = Host()
        self.addCleanup(host.close)
        return host

    def choose_from_menu(self, press):
        """Opens the menu by a press and takes its first entry by keys."""
        before = visible_windows(self.vantle)
        press()
        eventually(lambda: visible_windows(self.vantle) - before, what="the menu after one press")
        run("xdotool", "key", "Down", "Return")
        eventually(lambda: focused_window() == self.window, what="our window by the menu's first entry")
        eventually(lambda: visible_windows(self.vantle) == before, what="the end of the menu")

    def test_presses_on_the_icon(self):
        host = self.host()
        self.start()
        item = Item(host.registered_item())
        self.assertEqual(item.property("Id"), "vantle")
        self.assertTrue(item.property("IconPixmap"))
        other = self.other_program()

        item.press(times=2)
        eventually(lambda: focused_window() == self.window, what="our window after two presses")

        other.focus()
        self.choose_from_menu(item.press)

    def test_the_menu_does_all_that_the_icon_does(self):
        host = self.host()
        self.start()
        item = Item(host.registered_item())
        self.assertEqual(list(item.entries()),
                         ["Show Vantle", "New Event", "New To Do", "Today", "Preferences…", "Quit Vantle"])
        self.other_program()

        item.use("Show Vantle")
        eventually(lambda: focused_window() == self.window, what="our window")

        item.use("Preferences…")
        eventually(lambda: self.vantle.open_sheet("Preferences"), what="the preferences")

        item.use("Quit Vantle")
        self.assertEqual(self.vantle.process.wait(ANSWER_LIMIT), 0)

    def test_closing_the_window_leaves_the_icon_which_brings_it_back(self):
        host = self.host()
        self.start()
        item = Item(host.registered_item())

        self.vantle.press("alt+F4")
        eventually(lambda: not is_viewable(self.window), what="a closed window")

        item.use("Show Vantle")
        # The toolkit makes another window in place of the one that was closed.
        eventually(lambda: focused_window() == int(self.vantle.visible_window() or 0), what="our window back")
        self.assertIsNone(self.vantle.process.poll())

    def test_a_host_that_restarts_finds_the_icon_again(self):
        first = self.host()
        self.start()
        first.registered_item()

        first.close()
        second = self.host()

        self.assertTrue(Item(second.registered_item()).entries())

    def test_a_host_that_comes_late_finds_the_icon(self):
        self.start(VTIconStatus=2)
        self.assertTrue(is_viewable(self.window))
        time.sleep(LATE)  # nothing tells that a desktop is slow

        item = Item(self.host().registered_item())

        self.other_program()
        item.press(times=2)
        eventually(lambda: focused_window() == self.window, what="our window")

    def test_the_preferences_say_that_nobody_shows_the_icon(self):
        self.start(VTIconStatus=2)
        self.assertTrue(is_viewable(self.window))

        run("gapplication", "action", "org.vantle.Vantle", "preferences")
        preferences = self.vantle.sheet("Preferences")

        def note_is_there():
            return any("shows no menu-bar icons" in element.name and element.has(Atspi.StateType.SHOWING)
                       for element in preferences.everything())

        eventually(note_is_there, what="a note on the missing icons")
        self.host()
        eventually(lambda: not note_is_there(), what="the end of the note")

    def test_a_tray_of_the_display_embeds_the_icon(self):
        self.start()
        tray = Process("trayer", "--edge", "top", "--align", "left", "--widthtype", "request", "--height", "28")
        self.addCleanup(tray.close)

        x, y = eventually(self.embedded_icon, what="the icon in the tray")
        other = self.other_program()
        run("xdotool", "mousemove", "--sync", x, y, "click", "--repeat", 2, "--delay", 60, 1)
        eventually(lambda: focused_window() == self.window, what="our window after two presses")

        other.focus()
        self.choose_from_menu(lambda: run("xdotool", "mousemove", "--sync", x, y, "click", 1))

    @staticmethod
    def embedded_icon():
        """The middle of the icon on the screen, once the tray has it."""
        panel = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^panel$"], capture_output=True,
                               text=True, check=False).stdout.split()
        for window in panel:
            tree = run("xwininfo", "-id", window, "-tree")
            found = re.search(r'"vantle".*?(\d+)x(\d+)\+-?\d+\+-?\d+\s+\+(\d+)\+(\d+)', tree)
            if found:
                width, height, left, top = map(int, found.groups())
                return left + width // 2, top + height // 2
        return None


if __name__ == "__main__":
    unittest.main(verbosity=2)
