#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""A person looks at a day, walks on, selects rows and leaves."""

import datetime as dt
import unittest

from driver import Home, Vantle, eventually


class Days(unittest.TestCase):
    def setUp(self):
        self.home = Home()
        self.addCleanup(self.home.remove)
        self.vantle = Vantle(self.home)
        self.addCleanup(self.vantle.close)

    def wait_for_day(self, day):
        text = f"{day:%A}, {day.day} {day:%B}"
        eventually(lambda: self.vantle.top.find("label", text), what=f"the label {text}")

    def wait_for_event(self, title):
        return eventually(lambda: self.vantle.row("Events", title), what=f"the row {title}")

    def test_the_day_of_today_is_there_at_the_start(self):
        self.wait_for_day(self.home.day)

        self.assertEqual(self.vantle.titles("Events"), [
            "Mira’s birthday", "Breakfast with the harbour crew", "Design review", "Dentist", "Seed exchange",
            "Dinner at Noor’s"])
        self.assertEqual(len(self.vantle.rows("To dos")), 10)

    def test_keys_walk_through_days_and_weeks(self):
        one, week = dt.timedelta(days=1), dt.timedelta(days=7)

        for key, day in (("ctrl+Right", self.home.day + one), ("ctrl+Left", self.home.day),
                         ("ctrl+Left", self.home.day - one), ("ctrl+t", self.home.day),
                         ("ctrl+shift+Right", self.home.day + week), ("ctrl+shift+Left", self.home.day)):
            self.vantle.press(key)
            self.wait_for_day(day)

        self.wait_for_event("Design review")

    def test_clicks_on_the_date_bar_walk_too(self):
        self.vantle.click(self.vantle.top.find("push button", "Next Day"))
        self.wait_for_day(self.home.day + dt.timedelta(days=1))
        self.wait_for_event("Market")

        self.vantle.click(self.vantle.top.find("push button", "Next Week"))
        self.wait_for_day(self.home.day + dt.timedelta(days=8))

        self.vantle.click(self.vantle.top.find("push button", "Today"))
        self.wait_for_day(self.home.day)

    def test_a_clicked_row_grows_and_the_one_before_shrinks(self):
        first = self.wait_for_event("Mira’s birthday")
        review = self.wait_for_event("Design review")
        small = review.rectangle[3]

        self.vantle.click(review, position=(review.rectangle[0] + 60, review.rectangle[1] + 10))

        eventually(lambda: self.vantle.row("Events", "Design review").rectangle[3] > 3 * small,
                   what="a row three times as high")
        self.assertEqual(self.vantle.row("Events", "Mira’s birthday").rectangle[3], first.rectangle[3])

    def test_the_arrow_keys_move_the_selection_from_row_to_row(self):
        heights = [row.rectangle[3] for row in self.vantle.rows("Events")]

        self.vantle.press("Down", "Down")

        eventually(lambda: self.vantle.rows("Events")[2].rectangle[3] > heights[2], what="the third row selected")
        self.vantle.press("Up")
        eventually(lambda: self.vantle.rows("Events")[2].rectangle[3] == heights[2], what="the third row as before")

    def test_the_signal_to_end_writes_the_settings(self):
        self.assertFalse(self.home.settings().exists())

        status = self.vantle.end()

        self.assertEqual(status, 0)
        self.assertIn("VTSelectedTaskSortMethod", self.home.settings().read_text())

    def test_ctrl_q_ends_with_status_0(self):
        self.vantle.press("ctrl+q")

        self.assertEqual(self.vantle.process.wait(10), 0)


if __name__ == "__main__":
    unittest.main(verbosity=2)
