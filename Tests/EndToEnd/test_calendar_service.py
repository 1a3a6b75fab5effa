#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The desktop's own calendars in the window: what others change, what is written, and a service that is silent."""

import os
import pathlib
import time
import unittest

from driver import Home, Vantle, eventually
from neighbour import CalendarService, Neighbour

# The goal is a second.
LIMIT_SECONDS = 3.0


class CalendarServiceTest(unittest.TestCase):
    def setUp(self):
        self.home = Home(sample=False)
        self.addCleanup(self.home.remove)
        self.neighbour = Neighbour()
        self.addCleanup(self.neighbour.close)
        for kind, source in (("events", "work"), ("tasks", "work-tasks")):
            self.neighbour.ask("add-calendar", source, kind, "Work", "#d6455d")
            self.addCleanup(self.neighbour.ask, "remove-source", source)
        self.neighbour.put_event("work", "review", self.home.day, "Design review")
        self.neighbour.put_to_do("work-tasks", "boards", "Print the boards", "X-OTHER-PROGRAM;X-A=b:kept, as it is")
        self.vantle = Vantle(self.home)
        self.addCleanup(self.vantle.close)
        self.row("Events", "Design review")
        self.row("To dos", "Print the boards")

    def row(self, kind, title, limit=10.0):
        return eventually(lambda: self.vantle.row(kind, title), limit, f"the row {title}")

    def photograph(self, name):
        if folder := os.environ.get("VANTLE_PICTURES"):
            self.vantle.photograph(pathlib.Path(folder) / f"{name}.png")

    def assert_shown_soon(self, kind, title):
        began = time.monotonic()
        self.row(kind, title, LIMIT_SECONDS)
        print(f"{title}: on the screen after {time.monotonic() - began:.2f} s")

    def assert_gone_soon(self, kind, title):
        began = time.monotonic()
        eventually(lambda: self.vantle.row(kind, title) is None, LIMIT_SECONDS, f"the end of the row {title}")
        print(f"{title}: gone from the screen after {time.monotonic() - began:.2f} s")

    def test_another_program_adds_edits_and_deletes(self):
        day = self.home.day
        self.neighbour.put_event("work", "lunch", day, "Lunch", "1200", "1300")
        self.assert_shown_soon("Events", "Lunch")
        self.neighbour.put_event("work", "lunch", day, "Late lunch", "1400", "1500")
        self.assert_shown_soon("Events", "Late lunch")
        self.neighbour.ask("remove", "work", "lunch")
        self.assert_gone_soon("Events", "Late lunch")

        self.neighbour.put_to_do("work-tasks", "cat", "Feed the cat")
        self.assert_shown_soon("To dos", "Feed the cat")
        self.neighbour.put_to_do("work-tasks", "cat", "Feed both cats")
        self.assert_shown_soon("To dos", "Feed both cats")
        self.neighbour.ask("remove", "work-tasks", "cat")
        self.assert_gone_soon("To dos", "Feed both cats")

    def test_no_calendars_are_made_beside_the_service(self):
        self.assertEqual(list(self.home.calendars.iterdir()), [])

    def test_a_tick_changes_nothing_but_the_completion(self):
        before = self.neighbour.ask("get", "work-tasks", "boards")
        self.vantle.row("To dos", "Print the boards").find("check box").act("Toggle")

        eventually(lambda: "STATUS:COMPLETED" in self.neighbour.ask("get", "work-tasks", "boards"),
                   LIMIT_SECONDS, "the tick in the service")
        after = self.neighbour.ask("get", "work-tasks", "boards")
        own = ("DTSTAMP", "LAST-MODIFIED", "SEQUENCE", "STATUS:COMPLETED", "PERCENT-COMPLETE:100", "COMPLETED:")
        self.assertEqual([line for line in before.split("\n") if not line.startswith(own)],
                         [line for line in after.split("\n") if not line.startswith(own)])
        self.assertIn("X-OTHER-PROGRAM", after)

    def test_a_silent_service_is_told_and_the_window_goes_on(self):
        service = CalendarService()
        service.stop()
        self.addCleanup(service.resume)

        self.vantle.press("ctrl+Right")
        eventually(lambda: self.vantle.row("Events", "Design review") is None, LIMIT_SECONDS, "the next day")
        self.vantle.press("ctrl+Left")
        self.row("Events", "Design review", LIMIT_SECONDS)
        notice = eventually(lambda: next((element for element in self.vantle.top.everything()
                                          if "may be out of date" in element.name), None), 30, "the notice")
        print(notice.name)
        self.photograph("silent-service")

        service.resume()
        eventually(lambda: not any("may be out of date" in element.name for element in self.vantle.top.everything()),
                   30, "the end of the notice")
        self.neighbour.put_event("work", "lunch", self.home.day, "Lunch", "1200", "1300")
        self.assert_shown_soon("Events", "Lunch")


if __name__ == "__main__":
    unittest.main(verbosity=2)
