#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The journey of a person who sees nothing and presses no key: roles, names and actions alone."""

import unittest

from driver import eventually, set_text, shown_text
from journey import Journey, shown_date


class AssistiveTechnology:
    """What assistive technology does. It asks for no place on the screen."""

    def __init__(self, vantle):
        self.vantle = vantle

    def _use(self, find, action, what):
        eventually(find, what=what).act(action)

    def _command(self, group, name):
        self._use(lambda: self.vantle.top.find("push button", "Menu"), "Press", "the menu button")
        opened = eventually(lambda: self.vantle.find_showing("menu item", group), what=f"the menu {group}")
        opened.act(next(action for action in ("Press", "ShowMenu") if action in opened.actions()))
        # A group and a command in it may have the same name.
        others = 1 if name == group else 0
        item = eventually(lambda: self.vantle.all_showing("menu item", name)[others:], what=f"the command {name}")[-1]
        item.act("Press")

    def new(self, name):
        self._command("File", {"Event": "New Event", "To do": "New To Do"}[name])
        return self.vantle.sheet(name)

    def _select(self, kind, title):
        self._use(lambda: self.vantle.row(kind, title), "Press", f"the row {title}")
        eventually(lambda: self.vantle.is_selected(self.vantle.row(kind, title)), what=f"{title} selected")

    def edit(self, kind, title, name):
        self._select(kind, title)
        self._command("Edit", "Edit")
        return self.vantle.sheet(name)

    def type(self, sheet, name, text):
        field = sheet.find("text", name)
        set_text(field, text)
        eventually(lambda: shown_text(field) == text, what=f"“{text}” in the field {name}")

    def set_date(self, sheet, name, instant):
        picker = sheet.find("spin button", name)
        set_text(picker, shown_date(instant))
        eventually(lambda: shown_text(picker) == shown_date(instant), what=f"{instant} in {name}")

    def choose(self, sheet, name, entry):
        pop_up = sheet.find("combo box", name)
        pop_up.find("list item", entry).act("Press")
        eventually(lambda: self.vantle.chosen_entry(pop_up) == entry, what=f"{entry} chosen")

    def switch(self, sheet, role, name):
        sheet.find(role, name).act("Toggle")

    def add_alarm(self, sheet):
        sheet.find("push button", "Add Alarm").act("Press")
        return self.vantle.sheet("Alarm")

    def _alarm_row(self, sheet, number):
        return list(sheet.find("list", "Alarms").children())[number]

    def edit_alarm(self, sheet, number):
        self._alarm_row(sheet, number).find("push button", "Edit Alarm").act("Press")
        return self.vantle.sheet("Alarm")

    def remove_alarm(self, sheet, number):
        self._alarm_row(sheet, number).act("Press")
        eventually(lambda: "Press" in sheet.find("push button", "Remove Alarm").actions(), what="a button to use")
        sheet.find("push button", "Remove Alarm").act("Press")

    def confirm(self, sheet, name, button):
        sheet.find("push button", button).act("Press")
        self.vantle.wait_until_closed(name)

    def cancel(self, sheet, name):
        sheet.find("push button", "Cancel").act("Press")
        self.vantle.wait_until_closed(name)

    def tick(self, title):
        self._use(lambda: self.vantle.row("To dos", title).find("check box"), "Toggle", f"the check box of {title}")

    def delete(self, kind, title):
        self._select(kind, title)
        self._command("Edit", "Delete")

    def undo(self, title):
        self._command("Edit", f"Undo Delete of “{title}”")


class JourneyByAccessibility(unittest.TestCase):
    def test_the_whole_journey(self):
        Journey(self, AssistiveTechnology).walk()


if __name__ == "__main__":
    unittest.main(verbosity=2)
