#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""All thirteen settings survive every way in which the program ends, and it leaves nothing behind."""

import os
import signal
import subprocess
import unittest

from desk import read_settings, write_settings
from driver import ANSWER_LIMIT, Home, Vantle, eventually, run

# Each of them another value than a fresh start has.
SETTINGS = {
    "VTAddEventCarbonModiferFlags": "768",
    "VTAddEventKeyCode": "40",
    "VTAddTaskCarbonModiferFlags": "0",
    "VTAddTaskKeyCode": "-1",
    "VTHidesWhenInactive": "true",
    "VTHotkeyCarbonModiferFlags": "6656",
    "VTHotkeyKeyCode": "96",
    "VTIconStatus": "2",
    "VTIncludeAllCompletedTasks": "true",
    "VTRestrictTasksToCurrentWeek": "true",
    "VTSelectedTaskSortMethod": "2",
    "VTShowCalendarDrawer": "true",
    "VTUnselectedCalendarsUID": "deleted-long-ago, work",
}


class Exit(unittest.TestCase):
    def setUp(self):
        self.home = Home(sample=False)
        self.addCleanup(self.home.remove)
        write_settings(self.home, **SETTINGS)

    def start(self, **environment):
        self.vantle = Vantle(self.home, **environment)
        self.addCleanup(self.vantle.close)

    def forget(self):
        """From here on only the running program knows the settings."""
        self.home.settings().unlink()

    def expect_end(self):
        self.assertEqual(self.vantle.process.wait(ANSWER_LIMIT), 0)

    def expect_settings(self):
        self.assertEqual(read_settings(self.home), SETTINGS)

    def test_they_survive_the_quit_command(self):
        self.start()
        self.forget()

        self.vantle.press("ctrl+q")

        self.expect_end()
        self.expect_settings()

    def test_they_survive_a_signal(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(number.name):
                self.start()
                self.forget()

                self.vantle.process.send_signal(number)

                self.expect_end()
                self.expect_settings()

    def test_they_survive_the_end_of_the_session(self):
        manager = self.session_manager()
        self.start(SESSION_MANAGER=manager.address)
        manager.wait_for("registered")
        self.forget()

        manager.tell("save")
        manager.wait_for("saved")
        # Written before the answer: some sessions then end without another word.
        self.expect_settings()

        manager.tell("die")
        self.expect_end()
        self.expect_settings()

    def test_a_session_that_goes_on_keeps_the_program_and_its_hot_keys(self):
        manager = self.session_manager()
        self.home.settings().unlink()
        self.start(SESSION_MANAGER=manager.address)
        manager.wait_for("registered")

        manager.tell("save")
        manager.wait_for("saved")

        run("xdotool", "key", "--clearmodifiers", "ctrl+alt+e")
        eventually(lambda: self.vantle.open_sheet("Event"), what="the sheet of a new event")

    def test_a_signal_ends_it_with_an_open_sheet(self):
        self.start()
        self.forget()
        self.vantle.press("ctrl+n")
        self.vantle.sheet("Event")

        self.vantle.process.send_signal(signal.SIGTERM)

        self.expect_end()
        self.expect_settings()

    def test_a_change_made_in_the_run_is_there_in_the_next_one(self):
        self.start()
        self.vantle.press("F9")  # closes the drawer
        eventually(lambda: not self.vantle.top.find("check box", "Home") or not self.vantle.top.find(
            "check box", "Home").rectangle[2], what="a closed drawer")
        run("gapplication", "action", "org.vantle.Vantle", "preferences")
        self.vantle.sheet("Preferences")
        self.vantle.find_anywhere("radio button", "Task bar only").act("Toggle")
        self.vantle.end()
        expected = SETTINGS | {"VTShowCalendarDrawer": "false", "VTIconStatus": "1"}
        self.assertEqual(read_settings(self.home), expected)

        self.start()
        self.vantle.end()

        self.assertEqual(read_settings(self.home), expected)

    def session_manager(self):
        manager = SessionManager()
        self.addCleanup(manager.close)
        return manager


class SessionManager:
    def __init__(self):
        self.process = subprocess.Popen([os.environ["VANTLE_SESSION_MANAGER"]], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, text=True)
        self.address = self.process.stdout.readline().strip()

    def wait_for(self, word):
        line = self.process.stdout.readline().strip()
        assert line == word, f"{line!r} in place of {word!r}"

    def tell(self, word):
        self.process.stdin.write(word + "\n")
        self.process.stdin.flush()

    def close(self):
        self.process.stdin.close()
        self.process.wait()
        self.process.stdout.close()


if __name__ == "__main__":
    unittest.main(verbosity=2)
