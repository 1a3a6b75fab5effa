#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Where the program shows itself, how it hides, and how it comes to the front: with two window managers."""

import subprocess
import unittest

from desk import (OnADesk, WindowManager, focused_window, is_viewable, place_of, property_of, visible_windows,
                  window_manager)
from driver import PROGRAM, eventually, run

SKIPPED = ("_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER")
ALL_DESKTOPS = "4294967295"
HOT_KEY, NEW_EVENT_KEY = "ctrl+alt+v", "ctrl+alt+e"


class Presence(OnADesk):
    """The tests themselves; each window manager runs them."""

    def states(self):
        return property_of(self.window, "_NET_WM_STATE")

    def leave(self, other=None):
        """Another program takes the keyboard, and Vantle has heard of it."""
        if other:
            other.focus()
        else:
            other = self.other_program()
        eventually(lambda: not self.vantle.top.has_active_state(), what="the keyboard elsewhere")
        return other

    def gapplication(self, *words):
        run("gapplication", *words)

    def test_the_window_of_the_menu_bar_has_no_entry_and_is_on_all_desktops(self):
        self.start(VTIconStatus=2)
        for _ in range(2):
            for state in SKIPPED:
                eventually(lambda state=state: state in self.states(), what=state)
            eventually(lambda: property_of(self.window, "_NET_WM_DESKTOP") == ALL_DESKTOPS, what="all desktops")
            # Hidden and shown again, it is the same.
            run("xdotool", "key", "--clearmodifiers", HOT_KEY)
            eventually(lambda: not is_viewable(self.window), what="a hidden window")
            run("xdotool", "key", "--clearmodifiers", HOT_KEY)
            eventually(lambda: focused_window() == self.window, what="the window in front again")

    def test_the_window_of_the_task_bar_has_an_entry(self):
        self.start(VTIconStatus=1)
        eventually(lambda: property_of(self.window, "_NET_WM_DESKTOP") == ALL_DESKTOPS, what="all desktops")
        for state in SKIPPED:
            self.assertNotIn(state, self.states())

    def test_a_hot_key_brings_the_window_in_front_of_another_program(self):
        self.start()
        other = self.leave()
        self.assertNotEqual(focused_window(), self.window)

        run("xdotool", "key", "--clearmodifiers", HOT_KEY)
        eventually(lambda: focused_window() == self.window, what="our window in front")
        eventually(self.vantle.top.has_active_state, what="the keyboard in our window")

        run("xdotool", "key", "--clearmodifiers", HOT_KEY)
        eventually(lambda: not is_viewable(self.window), what="a hidden window")
        self.leave(other)
        run("xdotool", "key", "--clearmodifiers", HOT_KEY)
        eventually(lambda: is_viewable(self.window) and focused_window() == self.window, what="our window back")

    def start_at_a_place(self):
        """Where the person, and not the window manager, wants it."""
        self.start()
        eventually(lambda: focused_window() == self.window, what="our window in front")
        before = self.vantle.top.rectangle
        self.vantle.move(37, 91)
        eventually(lambda: self.vantle.top.rectangle[:2] != before[:2], what="a window that knows of its move")
        return place_of(self.window)

    def test_a_hidden_window_comes_back_where_it_was(self):
        place = self.start_at_a_place()

        run("xdotool", "key", "--clearmodifiers", HOT_KEY)
        eventually(lambda: not is_viewable(self.window), what="a hidden window")
        run("xdotool", "key", "--clearmodifiers", HOT_KEY)
        eventually(lambda: focused_window() == self.window, what="our window back")
        eventually(lambda: place_of(self.window) == place, what=f"a window at {place}")

    def test_a_closed_window_comes_back_at_once_and_where_it_was(self):
        place = self.start_at_a_place()

        self.vantle.press("ctrl+w")
        eventually(lambda: not visible_windows(self.vantle), what="a closed window")
        run("xdotool", "key", "--clearmodifiers", HOT_KEY)
        # It is another window for the display.
        eventually(lambda: str(focused_window()) in visible_windows(self.vantle), what="our window back")
        eventually(lambda: place_of(focused_window()) == place, what=f"a window at {place}")

    def test_it_hides_while_another_program_is_in_front(self):
        self.start(VTHidesWhenInactive="true")
        eventually(lambda: focused_window() == self.window, what="our window in front")

        self.other_program()
        eventually(lambda: not is_viewable(self.window), what="a hidden window")

        run("xdotool", "key", "--clearmodifiers", HOT_KEY)
        eventually(lambda: is_viewable(self.window) and focused_window() == self.window, what="our window back")

    def test_a_further_start_raises_the_window_and_ends(self):
        self.start()
        self.other_program()
        run("xdotool", "windowminimize", "--sync", self.window)

        done = subprocess.run([str(PROGRAM)], capture_output=True, text=True, timeout=20, check=False)

        self.assertEqual((done.returncode, done.stdout + done.stderr), (0, ""))
        eventually(lambda: is_viewable(self.window) and focused_window() == self.window, what="our window in front")

    def test_actions_of_the_launcher_work(self):
        self.start()
        self.other_program()

        self.gapplication("action", "org.vantle.Vantle", "today")
        eventually(lambda: focused_window() == self.window, what="our window in front")

        self.gapplication("action", "org.vantle.Vantle", "toggle")
        eventually(lambda: not is_viewable(self.window), what="a hidden window")
        self.gapplication("launch", "org.vantle.Vantle")
        eventually(lambda: focused_window() == self.window, what="our window back")

        self.gapplication("action", "org.vantle.Vantle", "preferences")
        eventually(lambda: self.vantle.open_sheet("Preferences"), what="the preferences")
        self.vantle.press("Escape")
        self.vantle.wait_until_closed("Preferences")

        self.gapplication("action", "org.vantle.Vantle", "new-event")
        eventually(lambda: self.vantle.open_sheet("Event"), what="the sheet of a new event")
        self.vantle.press("Escape")
        self.vantle.wait_until_closed("Event")
        self.gapplication("action", "org.vantle.Vantle", "new-todo")
        eventually(lambda: self.vantle.open_sheet("To do"), what="the sheet of a new to-do")


class WithOpenbox(Presence, unittest.TestCase):
    def test_the_window_manager_is_openbox(self):
        self.assertIn("openbox", window_manager())


class WithXfwm4(Presence, unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.manager = WindowManager("xfwm4", "--replace", "--compositor=off")

    @classmethod
    def tearDownClass(cls):
        cls.manager.close()


if __name__ == "__main__":
    unittest.main(verbosity=2)
