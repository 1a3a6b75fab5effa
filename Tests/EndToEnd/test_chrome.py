#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Menu, date bar, divider and the window of shortcuts, driven by mouse and keys."""

import unittest

from driver import Atspi, Home, Vantle, eventually


class Chrome(unittest.TestCase):
    def setUp(self):
        self.home = Home()
        self.addCleanup(self.home.remove)
        self.start()

    def start(self):
        self.vantle = Vantle(self.home)
        self.addCleanup(self.vantle.close)
        eventually(lambda: len(self.vantle.rows("To dos")) == 10, what="all to-dos")

    def find(self, role, name):
        return eventually(lambda: self.vantle.find_anywhere(role, name), what=f"{role} {name}")

    def is_shown(self, role, name):
        element = self.vantle.find_anywhere(role, name)
        return element is not None and element.has(Atspi.StateType.SHOWING)

    def choose(self, *names):
        """Clicks through the menu."""
        self.vantle.click(self.find("push button", "Menu"))
        for name in names:
            self.vantle.click(eventually(
                lambda name=name: self.vantle.shown_menu_item(name), what=f"the menu item {name}"))

    def height(self, name):
        return self.vantle.list(name).rectangle[3]

    def divider(self):
        return next(element for element in self.vantle.top.everything() if element.name == "Divider"
                    and element.has(Atspi.StateType.SHOWING))

    def drag_divider(self, to):
        self.vantle.drag(self.divider().centre, (self.divider().centre[0], to))

    # --- Sorting and filtering ---

    def test_to_dos_are_sorted_by_title_with_the_mouse(self):
        self.choose("To Dos", "Sort by Title")

        eventually(lambda: self.vantle.titles("To dos") == sorted(self.vantle.titles("To dos"), key=str.casefold),
                   what="to-dos by title")

    def test_to_dos_are_sorted_with_keys(self):
        before = self.vantle.titles("To dos")

        # From the menu's end up: help, to-dos; there the second item, by priority.
        self.vantle.press("F10", "Up", "Up", "Right", "Down", "Return")

        eventually(lambda: self.vantle.titles("To dos") != before, what="another order")
        self.assertEqual(self.vantle.titles("To dos")[:2], ["Renew the passport", "Send the invoice to Brandt"])

    def test_to_dos_due_later_are_hidden_and_the_setting_is_kept(self):
        self.choose("To Dos", "Hide Due After This Week")
        eventually(lambda: "Renew the passport" not in self.vantle.titles("To dos"), what="no passport")

        self.assertEqual(self.vantle.end(), 0)
        self.assertIn("VTRestrictTasksToCurrentWeek=true", self.home.settings().read_text())

    # --- The date bar ---

    def test_the_date_bar_is_hidden_and_brought_back_with_a_click(self):
        self.vantle.press("ctrl+shift+d")
        eventually(lambda: not self.is_shown("push button", "Next Day"), what="no date bar")

        self.vantle.click(self.find("push button", "Show Date Bar"))

        eventually(lambda: self.is_shown("push button", "Next Day"), what="the date bar")
        self.assertFalse(self.is_shown("push button", "Show Date Bar"))

    # --- The divider ---

    def test_the_divider_follows_the_mouse_to_its_limit(self):
        top = self.vantle.list("Events").rectangle[1]

        self.drag_divider(top + 150)
        eventually(lambda: abs(self.divider().rectangle[1] - (top + 150)) <= 4, what="the divider there")
        self.drag_divider(top + 35)
        eventually(lambda: abs(self.divider().rectangle[1] - (top + 48)) <= 1, what="the divider at 48 points")

    def test_both_panes_collapse_in_turn_and_come_back(self):
        top = self.vantle.list("Events").rectangle[1]
        bottom = self.vantle.top.rectangle[1] + self.vantle.top.rectangle[3]

        self.drag_divider(top + 2)
        eventually(lambda: not self.is_shown("list", "Events"), what="no events")
        self.vantle.press("ctrl+1")
        eventually(lambda: self.is_shown("list", "Events") and self.is_shown("list", "To dos"), what="both lists")

        self.drag_divider(bottom - 2)
        eventually(lambda: not self.is_shown("list", "To dos"), what="no to-dos")
        self.vantle.press("ctrl+3")
        eventually(lambda: self.is_shown("list", "To dos") and not self.is_shown("list", "Events"), what="to-dos only")

    def test_keys_move_the_divider(self):
        before = self.divider().rectangle[1]

        self.vantle.press("F8", "Up", "Up")
        eventually(lambda: self.divider().rectangle[1] == before - 16, what="the divider 16 points higher")

        self.vantle.press("End")
        eventually(lambda: not self.is_shown("list", "To dos"), what="no to-dos")

    def test_a_pane_that_the_window_squeezes_collapses(self):
        bottom = self.vantle.top.rectangle[1] + self.vantle.top.rectangle[3]
        self.drag_divider(bottom - 70)

        self.vantle.resize(340, 300)

        eventually(lambda: not self.is_shown("list", "To dos"), what="no to-dos")

    def test_divider_and_hidden_date_bar_are_found_again(self):
        self.vantle.press("ctrl+2", "ctrl+shift+d")
        eventually(lambda: not self.is_shown("list", "To dos"), what="no to-dos")
        self.assertEqual(self.vantle.end(), 0)

        self.vantle = Vantle(self.home)
        self.addCleanup(self.vantle.close)

        eventually(lambda: self.is_shown("push button", "Show Date Bar"), what="the strip that brings the bar back")
        self.assertFalse(self.is_shown("list", "To dos"))
        self.assertFalse(self.is_shown("push button", "Next Day"))

    # --- The window of shortcuts ---

    def test_the_shortcuts_open_with_either_key_and_close_with_escape(self):
        for key in ("F1", "ctrl+question"):
            self.vantle.press(key)
            eventually(lambda: self.is_shown("label", "Next Day: Ctrl+Right"), what="the window of shortcuts")

            eventually(lambda: self.vantle.find_anywhere("dialog", None).has(Atspi.StateType.ACTIVE),
                       what="the keyboard in it")
            self.vantle.press("Escape")
            eventually(lambda: not self.is_shown("label", "Next Day: Ctrl+Right"), what="the window closed")
            eventually(lambda: self.vantle.top.has(Atspi.StateType.ACTIVE), what="the keyboard in the main window")


if __name__ == "__main__":
    unittest.main(verbosity=2)
