#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""A to-do is ticked, by mouse, key and assistive technology; other programs read it as completed."""

import json
import os
import re
import unittest

from driver import Home, Vantle, eventually, run

CHANGED = ("STATUS", "COMPLETED", "PERCENT-COMPLETE", "DTSTAMP", "LAST-MODIFIED", "SEQUENCE")


def lines_beside_the_tick(content):
    return [line for line in content.split(b"\r\n") if not line.startswith(tuple(name.encode() for name in CHANGED))]


class ToDos(unittest.TestCase):
    def setUp(self):
        self.home = Home()
        self.addCleanup(self.home.remove)
        self.files = {file: file.read_bytes() for file in self.home.calendars.glob("*/*.ics")}
        self.vantle = Vantle(self.home)
        self.addCleanup(self.vantle.close)

    def check_box(self, title):
        row = eventually(lambda: self.vantle.row("To dos", title), what=f"the row {title}")
        return row.find("check box")

    def todoman(self):
        """All to-dos as todoman reads them, completed or not."""
        configuration = self.home.folder / "todoman.py"
        configuration.write_text(f'path = "{self.home.calendars}/*"\ncache_path = "{self.home.folder}/todoman.db"\n'
                                 'date_format = "%Y-%m-%d"\ntime_format = "%H:%M"\n')
        text = run("todoman", "--config", configuration, "--porcelain", "list", "--status", "ANY",
                   env=os.environ | self.home.environment() | {"LC_ALL": "C.UTF-8"})
        return {todo["summary"]: todo for todo in json.loads(text)}

    def assert_ticked(self, name, title):
        file = self.home.calendars / name
        eventually(lambda: b"STATUS:COMPLETED" in file.read_bytes(), what="a completed to-do in the file")

        self.assertTrue(self.todoman()[title]["completed"])
        self.assertEqual(lines_beside_the_tick(file.read_bytes()), lines_beside_the_tick(self.files[file]))
        self.assertRegex(file.read_bytes(), rb"\r\nCOMPLETED:\d{8}T\d{6}Z\r\n")
        others = {other: other.read_bytes() for other in self.files if other != file}
        self.assertEqual(others, {other: self.files[other] for other in others})

    def test_a_click_on_the_check_box_completes_it_in_its_file_alone(self):
        self.assertFalse(self.todoman()["Send the invoice to Brandt"]["completed"])

        self.vantle.click(self.check_box("Send the invoice to Brandt"))

        self.assert_ticked("work/invoice.ics", "Send the invoice to Brandt")

    def test_assistive_technology_ticks_it_by_its_action(self):
        box = self.check_box("Return the library books")

        box.act(next(action for action in box.actions() if re.match("(?i)toggle|press|check", action)))

        self.assert_ticked("home/library.ics", "Return the library books")

    def test_return_ticks_the_selected_one_and_takes_it_back(self):
        row = eventually(lambda: self.vantle.row("To dos", "Book the train"), what="the row")
        self.vantle.click(row, position=(row.rectangle[0] + 120, row.rectangle[1] + 10))
        file = self.home.calendars / "work/travel.ics"

        self.vantle.press("Return")
        self.assert_ticked("work/travel.ics", "Book the train to Lübeck")

        self.vantle.press("Return")
        eventually(lambda: b"STATUS:COMPLETED" not in file.read_bytes(), what="the tick taken back")
        self.assertFalse(self.todoman()["Book the train to Lübeck"]["completed"])


if __name__ == "__main__":
    unittest.main(verbosity=2)
