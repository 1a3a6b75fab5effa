#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The status icon in a real desktop's panel. Part of the long run."""

import os
import pathlib
import subprocess
import unittest

from desk import OtherProgram, focused_window, visible_windows, write_settings
from driver import Home, Vantle, eventually, run
from panel import PANEL_HEIGHT, Panel

PICTURES = os.environ.get("VANTLE_PICTURES")


def pixels(window):
    picture = subprocess.run(["import", "-silent", "-window", window, "-depth", "8", "ppm:-"], capture_output=True,
                             check=True).stdout
    _, width, height, _ = picture.split(maxsplit=4)[:4]
    return int(width), int(height), picture[-3 * int(width) * int(height):]


@unittest.skipUnless(os.environ.get("VANTLE_LONG_TESTS"), "the long run has it")
class Panels(unittest.TestCase):
    def start(self, dark=False, panel_first=True):
        self.home = Home(sample=False)
        self.addCleanup(self.home.remove)
        write_settings(self.home, VTIconStatus=2)
        if panel_first:
            self.panel = self.start_panel(dark)
        self.vantle = Vantle(self.home)
        self.addCleanup(self.vantle.close)
        self.window = int(self.vantle.window)

    def start_panel(self, dark=False):
        panel = Panel(self.home, dark)
        self.addCleanup(panel.close)
        return panel

    def icon(self, panel, dark=False):
        """The middle of what differs from the panel's plain ground, once that is the size of an icon.

        A panel that has just come shows a line of itself, or ground that nobody has painted yet.
        """
        width, height, bytes_ = pixels(panel.window)
        marked = []
        for index in range(0, len(bytes_), 3):
            light = sum(bytes_[index:index + 3]) / 3
            if (light > 200) if dark else (light < 110):
                marked.append((index // 3 % width, index // 3 // width))
        if not marked:
            return None
        xs, ys = zip(*marked)
        if not all(8 <= max(side) - min(side) < PANEL_HEIGHT for side in (xs, ys)):
            return None
        return (min(xs) + max(xs)) // 2, (min(ys) + max(ys)) // 2

    def picture(self, panel, name):
        if PICTURES:
            run("import", "-silent", "-window", panel.window, pathlib.Path(PICTURES, name + ".png"))

    def use(self, panel, point):
        other = OtherProgram()
        self.addCleanup(other.close)
        run("xdotool", "mousemove", "--sync", *point, "click", "--repeat", 2, "--delay", 60, 1)
        eventually(lambda: focused_window() == self.window, what="our window after two presses")
        before = visible_windows(self.vantle)
        run("xdotool", "mousemove", "--sync", *point, "click", 1)
        eventually(lambda: visible_windows(self.vantle) - before, what="the menu after one press")
        if PICTURES:
            run("import", "-silent", "-window", "root", pathlib.Path(PICTURES, "panel-menu.png"))

    def test_a_light_panel(self):
        self.start()
        point = eventually(lambda: self.icon(self.panel), what="a dark icon")
        self.picture(self.panel, "panel-light")
        self.use(self.panel, point)

    @staticmethod
    def wish_for_dark():
        portal = subprocess.Popen(["/usr/bin/python3", str(pathlib.Path(__file__).with_name("settings_portal.py"))],
                                  stdout=subprocess.PIPE, text=True)
        portal.stdout.readline()
        return portal

    def test_a_dark_panel(self):
        portal = self.wish_for_dark()
        self.addCleanup(portal.stdout.close)
        self.addCleanup(portal.wait)
        self.addCleanup(portal.terminate)
        self.start(dark=True)
        point = eventually(lambda: self.icon(self.panel, dark=True), what="a light icon")
        self.picture(self.panel, "panel-dark")
        self.use(self.panel, point)

    def test_a_panel_that_starts_late_and_again(self):
        self.start(panel_first=False)
        first = self.start_panel()
        eventually(lambda: self.icon(first), what="the icon")
        first.close()
        second = self.start_panel()
        self.use(second, eventually(lambda: self.icon(second), what="the icon once more"))


if __name__ == "__main__":
    unittest.main(verbosity=2)
