#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The desktop's own calendars in the window: what others change, what is written, and a service that is silent."""

import os
import pathlib
import time
import unittest

from driver import Atspi, Home, Vantle, eventually, run
from neighbour import CalendarService, Neighbour

# The goal is a second.
LIMIT_SECONDS = 3.0
# A save gives up after ten seconds; each of the sheet's two can.
SAVE_LIMIT_SECONDS = 60.0


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
            run("import", "-silent", "-window", "root", pathlib.Path(folder) / f"{name}.png")

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
        self.wait_for_the_service()
        self.neighbour.put_event("work", "lunch", self.home.day, "Lunch", "1200", "1300")
        self.assert_shown_soon("Events", "Lunch")

    def message(self):
        """The message that is open, else nothing."""
        return next((element for window in self.vantle._accessible_windows() for element in [window, *window.everything()]
                     if element.role == "alert" and element.has(Atspi.StateType.SHOWING)), None)

    def edit(self, title, new_title):
        x, y, _, _ = self.row("Events", title).rectangle
        self.vantle.click(self.row("Events", title), position=(x + 120, y + 10))
        self.vantle.press("ctrl+e")
        self.vantle.sheet("Event")
        self.vantle.type(new_title)

    def wait_for_the_service(self):
        eventually(lambda: not any("may be out of date" in element.name for element in self.vantle.top.everything()),
                   30, "the end of the notice")

    def test_a_save_that_nobody_answers_is_told_and_happens_never(self):
        self.edit("Design review", "Nobody hears this")
        service = CalendarService()
        service.stop()
        self.addCleanup(service.resume)

        began = time.monotonic()
        self.vantle.press("Return")
        message = eventually(self.message, SAVE_LIMIT_SECONDS, "a message")
        text = "\n".join([message.name, *(part.name for part in message.everything())])
        print(f"A save that nobody answers is told after {time.monotonic() - began:.1f} s")
        self.photograph("save-without-answer")
        for words in ("“Design review”", "“Work”", "The calendar service does not answer."):
            self.assertIn(words, text)
        # Each of the sheet's two saves has its message.
        eventually(lambda: self.message() is None or self.message().find("push button", "OK").act("Press"),
                   SAVE_LIMIT_SECONDS, "the end of the messages")
        self.vantle.wait_until_closed("Event")

        service.resume()
        self.wait_for_the_service()
        self.assertIn("SUMMARY:Design review", self.neighbour.ask("get", "work", "review"))
        self.edit("Design review", "Heard at last")
        self.vantle.press("Return")
        self.vantle.wait_until_closed("Event")
        self.row("Events", "Heard at last")
        self.assertIn("SUMMARY:Heard at last", self.neighbour.ask("get", "work", "review"))


if __name__ == "__main__":
    unittest.main(verbosity=2)
