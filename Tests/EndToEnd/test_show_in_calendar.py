#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""What the calendar program is told when an item of the desktop's calendars is shown in it. A script that notes its
calls stands in for the program; CalendarPrograms/ShownItems has the real ones."""

import datetime as dt
import os
import unittest
import zoneinfo

from driver import Home, Vantle, eventually
from neighbour import Neighbour

ENTRY = """[Desktop Entry]
Type=Application
Name=Evolution
Exec=evolution %U
"""
CACHE = """[MIME Cache]
x-scheme-handler/calendar=org.gnome.Evolution.desktop;
x-scheme-handler/task=org.gnome.Evolution.desktop;
"""


class ShowInCalendar(unittest.TestCase):
    def setUp(self):
        self.home = Home(sample=False)
        self.addCleanup(self.home.remove)
        self.neighbour = Neighbour()
        self.addCleanup(self.neighbour.close)
        for kind, source in (("events", "work"), ("tasks", "work-tasks")):
            self.neighbour.ask("add-calendar", source, kind, "Work", "#d6455d")
            self.addCleanup(self.neighbour.ask, "remove-source", source)
        self.neighbour.put_event("work", "review", self.home.day, "Design review")
        self.neighbour.put_event("work", "swim", self.home.day, "Swimming", "1800", "1900", "RRULE:FREQ=DAILY;COUNT=3")
        self.neighbour.put_to_do("work-tasks", "boards", "Print the boards")

        self.calls_file = self.home.folder / "calls"
        programs = self.home.folder / "bin"
        programs.mkdir()
        program = programs / "evolution"
        program.write_text(f'#!/bin/sh\necho "$*" >>"{self.calls_file}"\n')
        program.chmod(0o700)
        applications = self.home.folder / "data" / "applications"
        applications.mkdir()
        (applications / "org.gnome.Evolution.desktop").write_text(ENTRY)
        (applications / "mimeinfo.cache").write_text(CACHE)
        self.vantle = Vantle(self.home, PATH=f"{programs}:{os.environ['PATH']}")
        self.addCleanup(self.vantle.close)

    def calls(self):
        return self.calls_file.read_text().splitlines() if self.calls_file.exists() else []

    def show(self, kind, title):
        """By the menu of the item's row."""
        row = eventually(lambda: self.vantle.row(kind, title), what=f"the row {title}")
        x, y, _, _ = row.rectangle
        self.vantle.click(row, button=3, position=(x + 120, y + 10))
        eventually(self.vantle.pop_up_is_open, what="the row's menu")
        # After editing and deleting.
        self.vantle.press("Down", "Down", "Down", "Return")

    def assert_shown(self, address):
        # It does not run, so it is started on its calendar before it is given the address.
        eventually(lambda: len(self.calls()) >= 2, what="two calls")
        self.assertEqual(self.calls(), ["-c calendar", address])

    def test_an_event(self):
        self.show("Events", "Design review")
        self.assert_shown("calendar:///?source-uid=work&comp-uid=review")

    def test_an_occurrence(self):
        self.show("Events", "Swimming")
        # By its instant, whatever the zone in which it is written.
        began = dt.datetime.combine(self.home.day, dt.time(18), zoneinfo.ZoneInfo("Europe/Berlin"))
        instant = f"{began.astimezone(dt.timezone.utc):%Y%m%dT%H%M%SZ}"
        self.assert_shown(f"calendar:///?source-uid=work&comp-uid=swim&comp-rid={instant}")

    def test_a_to_do(self):
        self.show("To dos", "Print the boards")
        self.assert_shown("task:///?source-uid=work-tasks&comp-uid=boards")


if __name__ == "__main__":
    unittest.main(verbosity=2)
