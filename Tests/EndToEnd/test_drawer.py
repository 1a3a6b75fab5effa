#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The calendars drawer, driven by mouse, keys and assistive technology."""

import unittest

from driver import Atspi, Home, Vantle, eventually

DRAWER_WIDTH = 190
CALENDARS = ["Home", "Work", "Garden club", "Birthdays"]


class Drawer(unittest.TestCase):
    def setUp(self):
        self.home = Home()
        self.addCleanup(self.home.remove)
        self.vantle = Vantle(self.home)
        self.addCleanup(self.vantle.close)

    def window_width(self):
        return self.vantle.top.rectangle[2]

    def box(self, calendar):
        return eventually(lambda: next((element for element in self.vantle.top.everything()
                                        if element.role == "check box" and element.name == calendar), None),
                          what=f"the check box {calendar}")

    def open(self):
        self.vantle.press("F9")
        eventually(lambda: self.box("Home").has(Atspi.StateType.SHOWING), what="an open drawer")

    def wait_for_events(self, *titles):
        eventually(lambda: self.vantle.titles("Events") == list(titles), what=f"the events {titles}")

    def test_the_window_grows_for_the_drawer_and_shrinks_again(self):
        width = self.window_width()

        self.open()
        eventually(lambda: self.window_width() == width + DRAWER_WIDTH, what="a wider window")

        self.vantle.press("F9")
        eventually(lambda: self.window_width() == width, what="the window as wide as before")

    def test_the_boxes_stand_in_the_order_of_the_calendars_and_are_ticked(self):
        self.open()

        boxes = [self.box(calendar) for calendar in CALENDARS]

        self.assertEqual(sorted(boxes, key=lambda box: box.rectangle[1]), boxes)
        for box in boxes:
            self.assertTrue(box.has(Atspi.StateType.CHECKED), box.name)

    def test_a_click_hides_a_calendar_and_shows_it_again(self):
        self.open()
        before = self.vantle.titles("Events")

        self.vantle.click(self.box("Home"))
        eventually(lambda: not self.box("Home").has(Atspi.StateType.CHECKED), what="a box without its tick")
        eventually(lambda: "Dentist" not in self.vantle.titles("Events"), what="the events without those of Home")

        self.vantle.click(self.box("Home"))
        self.wait_for_events(*before)

    def test_keys_reach_the_boxes_and_tick_them(self):
        self.open()
        # From the events over to-dos and divider; then down to the second calendar.
        self.vantle.press("Tab", "Tab", "Tab", "Down", "space")

        eventually(lambda: not self.box("Work").has(Atspi.StateType.CHECKED), what="a box without its tick")
        self.assertNotIn("Design review", self.vantle.titles("Events"))
        self.assertTrue(self.box("Work").has(Atspi.StateType.FOCUSED))

    def test_assistive_technology_hides_a_calendar_by_the_boxs_action(self):
        self.open()
        box = self.box("Birthdays")

        box.act(next(action for action in box.actions() if action.lower() in ("toggle", "press", "check")))

        eventually(lambda: not self.box("Birthdays").has(Atspi.StateType.CHECKED), what="a box without its tick")
        eventually(lambda: "Mira’s birthday" not in self.vantle.titles("Events"), what="no birthday")

    def test_none_and_all(self):
        self.open()

        self.vantle.click(self.vantle.top.find("push button", "Show no calendar"))
        self.wait_for_events()
        self.assertEqual(self.vantle.rows("To dos"), [])

        self.vantle.click(self.vantle.top.find("push button", "Show all calendars"))
        eventually(lambda: len(self.vantle.rows("Events")) == 6, what="all events")

    def test_a_date_is_typed_and_gone_to(self):
        day = self.home.day.replace(day=28 if self.home.day.day != 28 else 27)

        self.vantle.press("ctrl+g")
        eventually(lambda: self.vantle.top.find("spin button", "Go to date"), what="the date picker")
        self.vantle.press(*str(day.day), "Return")

        eventually(lambda: self.vantle.top.find("label", f"{day:%A}, {day.day} {day:%B}"), what=f"the day {day}")
        # The keyboard is in the list again: its arrows select.
        eventually(lambda: self.vantle.list("Events").has(Atspi.StateType.FOCUSED), what="the list focused")

    def test_drawer_and_ticks_are_found_again_at_the_next_start(self):
        width = self.window_width()
        self.open()
        self.vantle.click(self.box("Work"))
        eventually(lambda: not self.box("Work").has(Atspi.StateType.CHECKED), what="a box without its tick")
        self.assertEqual(self.vantle.end(), 0)

        self.vantle = Vantle(self.home)
        self.addCleanup(self.vantle.close)

        self.assertFalse(self.box("Work").has(Atspi.StateType.CHECKED))
        self.assertTrue(self.box("Home").has(Atspi.StateType.CHECKED))
        eventually(lambda: self.window_width() == width + DRAWER_WIDTH, what="a window with its drawer")
        self.assertNotIn("Design review", self.vantle.titles("Events"))

    def test_a_window_at_the_edge_of_the_screen_moves_aside(self):
        width = self.window_width()
        self.vantle.move(1280 - width - 5, 60)

        self.open()

        eventually(lambda: self.window_width() == width + DRAWER_WIDTH, what="a wider window")
        left = eventually(lambda: self.vantle.top.rectangle[0], what="the window's place")
        self.assertLessEqual(left + width + DRAWER_WIDTH, 1280)


if __name__ == "__main__":
    unittest.main(verbosity=2)
