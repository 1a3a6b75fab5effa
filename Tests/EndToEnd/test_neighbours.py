#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""What other programs change in the calendars is on the screen at once."""

import os
import time
import unittest

from driver import Home, Vantle, eventually, run

# The goal is a second.
LIMIT_SECONDS = 3.0


class Neighbours(unittest.TestCase):
    def setUp(self):
        self.home = Home()
        self.addCleanup(self.home.remove)
        self.vantle = Vantle(self.home)
        self.addCleanup(self.vantle.close)
        eventually(lambda: self.vantle.row("Events", "Dentist"), what="the rows of the day")

    def environment(self):
        return os.environ | self.home.environment() | {"LC_ALL": "C.UTF-8"}

    def assert_shown_soon(self, kind, title):
        began = time.monotonic()
        eventually(lambda: self.vantle.row(kind, title), LIMIT_SECONDS, f"the row {title}")
        print(f"{title}: on the screen after {time.monotonic() - began:.2f} s")

    def test_an_event_that_khal_adds(self):
        configuration = self.home.folder / "khal.conf"
        configuration.write_text(
            f"[calendars]\n[[home]]\npath = {self.home.calendars}/home\ntype = calendar\n"
            "[locale]\ntimeformat = %H:%M\ndateformat = %Y-%m-%d\nlongdateformat = %Y-%m-%d\n"
            "datetimeformat = %Y-%m-%d %H:%M\nlongdatetimeformat = %Y-%m-%d %H:%M\n"
            f"[sqlite]\npath = {self.home.folder}/khal.db\n[default]\ndefault_calendar = home\n")

        run("khal", "-c", configuration, "new", f"{self.home.day:%Y-%m-%d}", "13:10", "13:50", "Walk with khal",
            env=self.environment())

        self.assert_shown_soon("Events", "Walk with khal")

    def test_a_to_do_that_todoman_adds(self):
        configuration = self.home.folder / "todoman.py"
        configuration.write_text(f'path = "{self.home.calendars}/*"\ncache_path = "{self.home.folder}/todoman.db"\n'
                                 'default_list = "home"\n')

        run("todoman", "--config", configuration, "new", "--list", "Home", "Feed the cat", env=self.environment())

        self.assert_shown_soon("To dos", "Feed the cat")

    def test_an_editor_that_writes_in_place(self):
        file = self.home.calendars / "home" / "dentist.ics"
        text = file.read_bytes().replace(b"SUMMARY:Dentist", b"SUMMARY:Dentist, second try")

        with open(file, "r+b") as stream:
            stream.write(text)
            stream.truncate()

        self.assert_shown_soon("Events", "Dentist, second try")

    def test_a_file_that_is_renamed_into_place(self):
        file = self.home.calendars / "home" / "dentist.ics"
        written = file.with_suffix(".tmp")
        written.write_bytes(file.read_bytes().replace(b"SUMMARY:Dentist", b"SUMMARY:Orthodontist"))

        written.rename(file)

        self.assert_shown_soon("Events", "Orthodontist")

    def test_a_file_that_is_removed(self):
        (self.home.calendars / "home" / "dentist.ics").unlink()

        eventually(lambda: self.vantle.row("Events", "Dentist") is None, LIMIT_SECONDS, "the row gone")


if __name__ == "__main__":
    unittest.main(verbosity=2)
