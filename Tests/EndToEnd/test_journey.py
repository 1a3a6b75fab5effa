#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The journey with real key presses and clicks, as a person at the keyboard makes them."""

import unittest

from driver import eventually, run, shown_text
from journey import Journey, shown_date


class KeysAndClicks:
    """What a person does with keyboard and mouse. Where a control is, the screen tells."""

    def __init__(self, vantle):
        self.vantle = vantle

    def new(self, name):
        self.vantle.press("ctrl+n" if name == "Event" else "ctrl+shift+n")
        return self.vantle.sheet(name)

    def select(self, kind, title):
        row = eventually(lambda: self.vantle.row(kind, title), what=f"the row {title}")
        x, y, _, _ = row.rectangle
        self.vantle.click(row, position=(x + 120, y + 10))

    def edit(self, kind, title, name):
        self.select(kind, title)
        self.vantle.press("ctrl+e")
        return self.vantle.sheet(name)

    def type(self, sheet, name, text):
        field = sheet.find("text", name)
        self.vantle.click(field)
        self.vantle.press("ctrl+a")
        lines = text.split("\n")
        self.vantle.type(lines[0])
        for line in lines[1:]:
            self.vantle.press("Return")
            self.vantle.type(line)
        eventually(lambda: shown_text(field) == text, what=f"“{text}” in the field {name}")

    def set_date(self, sheet, name, instant):
        picker = sheet.find("spin button", name)
        self.vantle.click(picker)
        self.vantle.press("Home")
        self.vantle.type(shown_date(instant).split(" ", 1)[1])  # the weekday follows from the date
        eventually(lambda: shown_text(picker) == shown_date(instant), what=f"{instant} in {name}")

    def choose(self, sheet, name, entry):
        pop_up = sheet.find("combo box", name)
        names = [child.name for child in pop_up.children()]
        self.vantle.click(pop_up)
        eventually(self.vantle.pop_up_is_open, what="the open list")
        self.vantle.press("Home", *["Down"] * names.index(entry), "Return")
        eventually(lambda: self.vantle.chosen_entry(pop_up) == entry, what=f"{entry} chosen")

    def switch(self, sheet, role, name):
        self.vantle.click(sheet.find(role, name), position=self._label(sheet.find(role, name)))

    @staticmethod
    def _label(control):
        x, y, _, height = control.rectangle
        return x + 20, y + height // 2

    def add_alarm(self, sheet):
        self.vantle.click(sheet.find("push button", "Add Alarm"))
        return self.vantle.sheet("Alarm")

    def _alarm_row(self, sheet, number):
        return list(sheet.find("list", "Alarms").children())[number]

    def edit_alarm(self, sheet, number):
        self.vantle.click(self._alarm_row(sheet, number).find("push button", "Edit Alarm"))
        return self.vantle.sheet("Alarm")

    def remove_alarm(self, sheet, number):
        self.vantle.click(self._alarm_row(sheet, number))
        self.vantle.press("Delete")

    def confirm(self, _sheet, name, _button):
        """From whatever control has the keyboard."""
        self.vantle.press("Return")
        self.vantle.wait_until_closed(name)

    def cancel(self, _sheet, name):
        self.vantle.press("Escape")
        self.vantle.wait_until_closed(name)

    def tick(self, title):
        self.select("To dos", title)
        self.vantle.press("Return")

    def delete(self, kind, title):
        self.select(kind, title)
        self.vantle.press("Delete")

    def undo(self, _title):
        self.vantle.press("ctrl+z")


class JourneyWithKeysAndClicks(unittest.TestCase):
    def test_the_whole_journey(self):
        Journey(self, KeysAndClicks).walk()

    def test_escape_closes_what_is_open_over_the_sheet_first(self):
        journey = Journey(self, KeysAndClicks)
        vantle = journey.vantle
        sheet = journey.hand.new("Event")
        picker = sheet.find("spin button", "Starts")
        x, y, width, height = picker.rectangle
        for place in (sheet.find("combo box", "Calendar").centre, (x + width - 10, y + height // 2)):
            run("xdotool", "mousemove", "--sync", *place, "click", 1)
            eventually(vantle.pop_up_is_open, what="an open list or calendar")
            vantle.press("Escape")
            eventually(lambda: not vantle.pop_up_is_open(), what="the end of the list or calendar")
            self.assertIsNotNone(vantle.open_sheet("Event"))
        vantle.press("Escape")
        vantle.wait_until_closed("Event")
        self.assertEqual(journey.files("Home"), [])

    def test_a_wheel_over_a_closed_pop_up_changes_nothing(self):
        journey = Journey(self, KeysAndClicks)
        sheet = journey.hand.new("Event")
        pop_up, picker = sheet.find("combo box", "Calendar"), sheet.find("spin button", "Starts")
        shown = shown_text(picker)
        journey.vantle.click(sheet.find("text", "Title"))
        for control in (pop_up, picker):
            journey.vantle.click(control, button=5, times=3)
        journey.vantle.type("Typed afterwards")
        eventually(lambda: shown_text(sheet.find("text", "Title")).endswith("Typed afterwards"), what="the typed text")

        self.assertEqual(journey.vantle.chosen_entry(pop_up), "Home")
        self.assertEqual(shown_text(picker), shown)


if __name__ == "__main__":
    unittest.main(verbosity=2)
