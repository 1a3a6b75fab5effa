#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""A person adds, edits, moves, ticks, deletes and takes back, with keys and clicks alone; what lies in
the files afterwards is held against what was made by hand."""

import datetime as dt
import re
import unittest

from driver import Atspi, Home, Vantle, eventually, run

# What differs from run to run, and says nothing of what the person did.
OWN = re.compile(rb"(UID|DTSTAMP|CREATED|LAST-MODIFIED|PRODID|SEQUENCE|COMPLETED):")

def unfolded(file):
    return file.read_bytes().replace(b"\r\n ", b"").replace(b"\r\n\t", b"")

def lines(file):
    """The lines of a file that the person decided on; zones, which are the system's, left out."""
    text = re.sub(rb"BEGIN:VTIMEZONE.*?END:VTIMEZONE\r\n", b"", unfolded(file), flags=re.S)
    return [line.decode() for line in text.split(b"\r\n") if line and not OWN.match(line)]

class Items(unittest.TestCase):
    def setUp(self):
        self.home = Home(sample=False)
        self.addCleanup(self.home.remove)
        for name, colour in (("Home", "#2f7de1"), ("Work", "#d6455d")):
            folder = self.home.calendars / name
            folder.mkdir()
            (folder / "displayname").write_text(name)
            (folder / "color").write_text(colour)
        self.vantle = Vantle(self.home)
        self.addCleanup(self.vantle.close)

    def files(self, calendar):
        return sorted((self.home.calendars / calendar).glob("*.ics"))

    def only_file(self, calendar):
        return eventually(lambda: self.files(calendar) and self.files(calendar)[0], what=f"a file in {calendar}")

    def has(self, file, *wanted):
        def all_there():
            found = lines(file)
            return all(line in found for line in wanted)
        eventually(all_there, what=f"{wanted} in {lines(file)}")

    def row(self, list_name, title):
        return eventually(lambda: self.vantle.row(list_name, title), what=f"the row {title}")

    def select_row(self, list_name, title):
        row = self.row(list_name, title)
        x, y, _, _ = row.rectangle
        self.vantle.click(row, position=(x + 120, y + 10))

    def open_new(self, key, sheet):
        self.vantle.press(key)
        return self.vantle.sheet(sheet)

    def add_event(self, title="Design review"):
        self.open_new("ctrl+n", "Event")
        self.vantle.type(title)
        self.vantle.press("Return")
        self.vantle.wait_until_closed("Event")
        return self.only_file("Home")

    def test_every_field_of_a_new_event_reaches_its_file(self):
        sheet = self.open_new("ctrl+n", "Event")
        self.vantle.type("Design review")
        self.vantle.press("Tab", "Tab")
        self.vantle.type("Studio 2, Harbour house")
        self.vantle.click(sheet.find("text", "Link"))
        self.vantle.type("meet.example.org/review")
        self.vantle.press("Tab")
        self.vantle.type("Bring the boards.")
        self.vantle.press("Return")
        self.vantle.type("All of them.")
        self.vantle.press("ctrl+Return")
        self.vantle.wait_until_closed("Event")

        file = self.only_file("Home")
        self.has(file, "SUMMARY:Design review", "LOCATION:Studio 2\\, Harbour house",
                 "URL:http://meet.example.org/review", "DESCRIPTION:Bring the boards.\\nAll of them.")
        self.assertNotIn(b"DUMBY", file.read_bytes())
        self.assertEqual(len(self.files("Home")), 1)

    def test_alarms_are_added_edited_and_removed(self):
        self.add_event()
        self.select_row("Events", "Design review")
        self.vantle.press("ctrl+e")
        sheet = self.vantle.sheet("Event")

        for _ in range(2):
            self.vantle.click(sheet.find("push button", "Add Alarm"))
            self.vantle.sheet("Alarm")
            self.vantle.press("Return")
            self.vantle.wait_until_closed("Alarm")
        self.vantle.click(sheet.find("push button", "Add Alarm"))
        alarm = self.vantle.sheet("Alarm")
        self.vantle.type("2")
        self.vantle.click(alarm.find("radio button", "Send an e-mail"))
        self.vantle.press("Tab")
        self.vantle.type("ada@example.org")
        self.vantle.press("Return")
        self.vantle.wait_until_closed("Alarm")
        self.vantle.press("Return")
        self.vantle.wait_until_closed("Event")
        file = self.only_file("Home")
        eventually(lambda: lines(file).count("BEGIN:VALARM") == 3, what="three alarms")
        self.has(file, "ACTION:EMAIL", "ATTENDEE:mailto:ada@example.org", "TRIGGER:-PT2M")

        self.vantle.press("ctrl+e")
        sheet = self.vantle.sheet("Event")
        self.vantle.click(next(sheet.find("list", "Alarms").children()))
        self.vantle.press("space")
        self.vantle.sheet("Alarm")
        self.vantle.type("25")
        self.vantle.press("Return")
        self.vantle.wait_until_closed("Alarm")
        self.vantle.press("Return")
        self.vantle.wait_until_closed("Event")

        self.has(file, "TRIGGER:-PT25M")
        self.assertEqual(lines(file).count("BEGIN:VALARM"), 3)

    def test_escape_cancels_everywhere(self):
        file = self.add_event()
        before = file.read_bytes()
        self.select_row("Events", "Design review")
        self.vantle.press("ctrl+e")
        self.vantle.sheet("Event")

        self.vantle.type("Something else")
        self.vantle.press("Escape")
        self.vantle.wait_until_closed("Event")
        self.open_new("ctrl+shift+n", "To do")
        self.vantle.type("Nothing")
        self.vantle.press("Escape")
        self.vantle.wait_until_closed("To do")

        self.assertEqual(file.read_bytes(), before)
        self.assertEqual(len(self.files("Home")), 1)

    def test_a_to_do_with_a_due_date_is_ticked_and_unticked(self):
        sheet = self.open_new("ctrl+shift+n", "To do")
        self.vantle.type("Order bulbs")
        box = sheet.find("check box", "Has a due date")
        self.vantle.click(box)
        eventually(lambda: box.has(Atspi.StateType.CHECKED), what="a due date")
        self.vantle.press("Return")
        self.vantle.wait_until_closed("To do")
        file = self.only_file("Home")
        self.has(file, "SUMMARY:Order bulbs")
        self.assertRegex(unfolded(file), rb"\r\nDUE[;:]")

        self.select_row("To dos", "Order bulbs")
        self.vantle.press("Return")
        self.has(file, "STATUS:COMPLETED")
        self.vantle.press("Return")
        eventually(lambda: "STATUS:COMPLETED" not in lines(file), what="the tick taken back")

    def test_items_move_to_another_calendar(self):
        self.add_event()
        self.select_row("Events", "Design review")
        self.vantle.press("ctrl+e")
        self.vantle.sheet("Event")

        self.vantle.press("Tab", "Down", "End", "Return")
        self.vantle.press("Return")
        self.vantle.wait_until_closed("Event")

        self.has(self.only_file("Work"), "SUMMARY:Design review")
        eventually(lambda: not self.files("Home"), what="nothing left in the first calendar")

    def test_a_deleted_item_comes_back_to_the_byte(self):
        file = self.add_event()
        before = file.read_bytes()
        self.select_row("Events", "Design review")

        self.vantle.press("Delete")
        eventually(lambda: not file.exists(), what="the file gone")
        eventually(lambda: self.vantle.row("Events", "Design review") is None, what="the row gone")

        self.vantle.press("ctrl+z")
        eventually(file.exists, what="the file back")
        self.assertEqual(file.read_bytes(), before)
        self.row("Events", "Design review")

    def test_mouse_alone_edits_and_opens_the_menu(self):
        self.add_event()
        row = self.row("Events", "Design review")
        x, y, _, _ = row.rectangle
        self.vantle.click(row, position=(x + 120, y + 10), times=2)
        sheet = self.vantle.sheet("Event")
        self.vantle.click(sheet.find("push button", "Cancel"))
        self.vantle.wait_until_closed("Event")

        self.vantle.click(row, button=3, position=(x + 120, y + 10))
        self.vantle.press("Down", "Return")
        self.vantle.sheet("Event")
        self.vantle.press("Escape")
        self.vantle.wait_until_closed("Event")

    def test_the_sheet_follows_its_window_and_keeps_the_keyboard(self):
        sheet = self.open_new("ctrl+n", "Event")

        run("xdotool", "windowmove", "--sync", self.vantle.window, "300", "120")
        eventually(lambda: abs(sheet.rectangle[1] - self.vantle.top.rectangle[1]) <= 1, what="the sheet at the edge")
        run("xdotool", "windowactivate", "--sync", self.vantle.window)
        eventually(lambda: sheet.has_active_state(), what="the sheet active again")
        self.vantle.type("Typed")
        self.vantle.press("Return")
        self.vantle.wait_until_closed("Event")

        self.has(self.only_file("Home"), "SUMMARY:Typed")

if __name__ == "__main__":
    unittest.main(verbosity=2)
