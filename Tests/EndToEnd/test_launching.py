#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Launchers that start the program through the session bus, as its desktop file tells them to."""

import os
import signal
import subprocess
import unittest

from desk import LaunchingBus, focused_window, read_settings
from driver import COMMAND_LIMIT, PROGRAM, START_LIMIT, Home, eventually, run

NAME = "org.vantle.Vantle"


class Launching(unittest.TestCase):
    def setUp(self):
        self.home = Home(sample=False)
        self.addCleanup(self.home.remove)
        self.bus = LaunchingBus(self.home.folder / "bus", NAME, PROGRAM, self.home.environment())
        self.addCleanup(self.bus.close)

    def windows(self, title):
        """Those on the screen whose title begins with that."""
        process = self.bus.owner(NAME)
        if not process:
            return []
        found = subprocess.run(["xdotool", "search", "--all", "--onlyvisible", "--pid", str(process), "--name",
                                f"^{title}"], capture_output=True, text=True, timeout=COMMAND_LIMIT, check=False)
        return [int(window) for window in found.stdout.split()]

    def expect_in_front(self, title):
        eventually(lambda: focused_window() in self.windows(title), START_LIMIT, f"{title} in front")

    def test_a_launcher_starts_it(self):
        run("gapplication", "launch", NAME)

        self.expect_in_front("Vantle")
        os.kill(self.bus.owner(NAME), signal.SIGTERM)
        eventually(lambda: not self.bus.owner(NAME), what="the end of the program")
        eventually(lambda: len(read_settings(self.home)) == 13, what="all settings")

    def test_an_action_starts_it_and_is_performed(self):
        for action, title in (("preferences", "Preferences"), ("new-event", "Event"), ("new-todo", "To do")):
            with self.subTest(action):
                self.assertIsNone(self.bus.owner(NAME))

                run("gapplication", "action", NAME, action)

                self.expect_in_front(title)
                self.assertTrue(self.windows("Vantle"))
                os.kill(self.bus.owner(NAME), signal.SIGTERM)
                eventually(lambda: not self.bus.owner(NAME), what="the end of the program")

    def test_the_key_that_a_desktop_binds_shows_the_window_of_a_fresh_start(self):
        run("gapplication", "action", NAME, "toggle")

        self.expect_in_front("Vantle")


if __name__ == "__main__":
    unittest.main(verbosity=2)
