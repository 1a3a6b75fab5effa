#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""A person who sees nothing and presses no key: everything goes through assistive technology."""

import datetime as dt
import itertools
import re
import unittest

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402  the version is named first

from driver import Element, Home, Vantle, eventually  # noqa: E402


def unescaped(text):
    return re.sub(r"\\([\\;,nN])", lambda match: "\n" if match[1] in "nN" else match[1], text)


def details_in(file):
    """What the file of an item holds of all that a selected row is to tell."""
    lines = file.read_bytes().decode().replace("\r\n ", "").split("\r\n")
    item = lines[next(index for index, line in enumerate(lines) if line in ("BEGIN:VEVENT", "BEGIN:VTODO")):]
    details = {}
    for line in itertools.takewhile(lambda line: line != "BEGIN:VALARM", item):
        if match := re.fullmatch(r"(SUMMARY|LOCATION|DESCRIPTION|URL)(?:;[^:]*)?:(.*)", line):
            details.setdefault(match[1], unescaped(match[2]))
        elif match := re.fullmatch(r"ATTENDEE;.*?CN=\"?([^;:\"]*).*", line):
            details.setdefault("ATTENDEES", []).append(match[1])
    return details


class Accessibility(unittest.TestCase):
    def setUp(self):
        self.home = Home()
        self.addCleanup(self.home.remove)
        self.vantle = Vantle(self.home)
        self.addCleanup(self.vantle.close)
        eventually(lambda: self.vantle.row("Events", "Design review"), what="the calendars of today")

    def press(self, role, name):
        eventually(lambda: self.vantle.top.find(role, name), what=f"the {role} {name}").act("Press")

    def wait_for_day(self, day):
        text = f"{day:%A}, {day.day} {day:%B}"
        eventually(lambda: self.vantle.top.find("label", text), what=f"the label {text}")

    def application(self):
        desktop = Element(Atspi.get_desktop(0))
        return next(child for child in desktop.children()
                    if child.accessible.get_process_id() == self.vantle.process.pid)

    def choose(self, group, command):
        """A command of the menu, by its name, as a screen reader walks there."""
        self.press("push button", "Menu")
        for name in (group, command):
            self.use(eventually(lambda name=name: self.item(name), what=f"the menu item {name}"))

    def use(self, item):
        item.act(next(action for action in ("Toggle", "Press", "ShowMenu") if action in item.actions()))

    def item(self, name):
        for element in self.application().everything():
            if "menu item" in element.role and element.name == name and element.has(Atspi.StateType.SHOWING):
                return element
        return None

    def select(self, kind, title):
        self.vantle.row(kind, title).act("Press")
        return eventually(lambda: next((row for row in self.vantle.rows(kind) if row.name.startswith(title)
                                        and row.has(Atspi.StateType.SELECTED)), None), what=f"{title} selected")

    def test_buttons_walk_through_days_and_weeks(self):
        for name, days in (("Next Day", 1), ("Next Week", 8), ("Previous Week", 1), ("Previous Day", 0),
                           ("Previous Day", -1), ("Today", 0)):
            self.press("push button", name)
            self.wait_for_day(self.home.day + dt.timedelta(days=days))

    def test_each_row_can_be_selected_and_one_at_a_time(self):
        for kind in ("Events", "To dos"):
            for title in self.vantle.titles(kind):
                self.select(kind, title)

                selected = [row.name for other in ("Events", "To dos") for row in self.vantle.rows(other)
                            if row.has(Atspi.StateType.SELECTED)]
                self.assertEqual(len(selected), 1, selected)

    def test_a_selected_row_tells_all_its_details(self):
        row = self.select("Events", "Design review")

        parts = [(part.role, part.name) for part in row.children()]

        for expected in (("label", "Design review"), ("label", "11:00"), ("label", "12:30"),
                         ("label", "Studio 2, Harbour house"), ("push button", "✓  Ada Moreau"),
                         ("push button", "!  Jun Sato"), ("push button", "✖  R. Lindqvist"),
                         ("push button", "?  Tomás Oliveira"), ("link", "meet.example.org/review")):
            self.assertIn(expected, parts)
        self.assertTrue(any(name.startswith("Bring the printed boards.") for _, name in parts), parts)
        for word in ("Design review", "11:00 to 12:30", "Work", "repeats", "has an alarm"):
            self.assertIn(word, row.name)

    def test_every_row_tells_what_its_file_holds(self):
        """Each is selected in turn; nothing of its title, place, guests, link and notes is missing."""
        files = [details_in(file) for file in self.home.calendars.glob("*/*.ics")]
        told = set()
        for kind in ("Events", "To dos"):
            for title in self.vantle.titles(kind):
                row = self.select(kind, title)
                wanted = next(details for details in files if details["SUMMARY"] == title)

                names = [part.name for part in row.children()]
                links = [part.name for part in row.children() if part.role == "link"]

                for text in (wanted["SUMMARY"], wanted.get("LOCATION", ""), wanted.get("DESCRIPTION", "")):
                    self.assertTrue(any(text in name for name in names), f"{text} in {names}")
                for guest in wanted.get("ATTENDEES", []):
                    self.assertTrue(any(name.endswith(guest) for name in names), f"{guest} in {names}")
                if "URL" in wanted:
                    self.assertTrue(links and links[0] in wanted["URL"], f"{wanted['URL']} in {names}")
                told |= set(wanted)
        self.assertEqual(told, {"SUMMARY", "LOCATION", "DESCRIPTION", "URL", "ATTENDEES"})

    def test_a_tick_is_made_and_found_again(self):
        row = self.vantle.row("To dos", "Send the invoice")
        box = row.find("check box")
        self.assertEqual(box.name, "Send the invoice to Brandt")
        self.assertFalse(box.has(Atspi.StateType.CHECKED))

        box.act("Toggle")

        eventually(lambda: self.vantle.row("To dos", "Send the invoice").find("check box").has(
            Atspi.StateType.CHECKED), what="the box ticked")
        eventually(lambda: "completed" in self.vantle.row("To dos", "Send the invoice").name,
                   what="a name that says so")
        file = self.home.calendars / "work" / "invoice.ics"
        eventually(lambda: "STATUS:COMPLETED" in file.read_text(), what="the tick in the file")

    def test_a_hidden_calendar_takes_its_rows_with_it(self):
        self.choose("View", "Show Calendars Drawer")
        box = eventually(lambda: self.vantle.top.find("check box", "Work"), what="the calendar's check box")
        self.assertTrue(box.has(Atspi.StateType.CHECKED))

        box.act("Toggle")

        eventually(lambda: not self.vantle.top.find("check box", "Work").has(Atspi.StateType.CHECKED),
                   what="the calendar hidden")
        eventually(lambda: "Design review" not in self.vantle.titles("Events"), what="its events gone")
        self.assertIn("Dentist", self.vantle.titles("Events"))
        self.assertNotIn("Send the invoice to Brandt", self.vantle.titles("To dos"))

    def test_to_dos_are_sorted_and_the_menu_says_how(self):
        before = self.vantle.titles("To dos")
        self.choose("To Dos", "Sort by Title")

        eventually(lambda: self.vantle.titles("To dos") == sorted(before, key=str.casefold), what="the titles sorted")
        self.press("push button", "Menu")
        self.use(eventually(lambda: self.item("To Dos"), what="the menu"))
        item = eventually(lambda: self.item("Sort by Title"), what="the sorting")
        self.assertTrue(item.has(Atspi.StateType.CHECKED))
        self.assertFalse(self.item("Sort by Due Date").has(Atspi.StateType.CHECKED))

    def test_everything_that_can_be_used_has_a_name(self):
        self.choose("View", "Show Calendars Drawer")
        eventually(lambda: self.vantle.top.find("check box", "Work"), what="the drawer")
        self.select("Events", "Design review")

        nameless = [(element.role, element.rectangle) for element in self.vantle.top.everything()
                    if element.has(Atspi.StateType.FOCUSABLE) and element.has(Atspi.StateType.SHOWING)
                    and not element.name]

        self.assertEqual(nameless, [])


if __name__ == "__main__":
    unittest.main(verbosity=2)
