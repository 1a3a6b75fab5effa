#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The window is dark when the desktop wishes it, and follows when the wish changes."""

import pathlib
import subprocess
import unittest

from driver import Home, Vantle, eventually, run

PORTAL = pathlib.Path(__file__).with_name("settings_portal.py")
DARK, LIGHT = 1, 2


class Appearance(unittest.TestCase):
    def setUp(self):
        self.portal = subprocess.Popen(["/usr/bin/python3", str(PORTAL)], stdout=subprocess.PIPE, text=True)
        self.addCleanup(self.end_portal)
        self.assertEqual(self.portal.stdout.readline().strip(), "ready")
        self.home = Home()
        self.addCleanup(self.home.remove)
        self.vantle = Vantle(self.home)
        self.addCleanup(self.vantle.close)

    def end_portal(self):
        self.portal.terminate()
        self.portal.wait()
        self.portal.stdout.close()

    def lightness(self):
        """Of the window's upper left corner, which is its background."""
        width, _, pixels = self.vantle.pixels()
        index = 3 * (4 * width + 4)
        return sum(pixels[index:index + 3]) / 3

    def wish(self, scheme):
        run("gdbus", "call", "--session", "--dest", "org.freedesktop.portal.Desktop", "--object-path",
            "/org/freedesktop/portal/desktop", "--method", "org.vantle.TestPortal.Wish", str(scheme))

    def test_it_starts_dark_and_turns_light_and_dark_again(self):
        eventually(lambda: self.lightness() < 80, what="a dark window")

        self.wish(LIGHT)
        eventually(lambda: self.lightness() > 200, what="a light window")

        self.wish(DARK)
        eventually(lambda: self.lightness() < 80, what="a dark window again")


if __name__ == "__main__":
    unittest.main(verbosity=2)
