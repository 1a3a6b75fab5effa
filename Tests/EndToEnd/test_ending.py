#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The session ends in the middle of a save, on a disk that takes its time."""

import unittest

from driver import Home, Vantle, eventually

# Every flush takes a second; the tracer leaves the program our child.
SLOW_DISK = ("strace", "-D", "-q", "-f", "-o", "/dev/null", "-e", "trace=fsync",
             "-e", "inject=fsync:delay_enter=1000000")


class Ending(unittest.TestCase):
    def setUp(self):
        self.home = Home()
        self.addCleanup(self.home.remove)
        self.file = self.home.calendars / "work/invoice.ics"
        self.vantle = Vantle(self.home, before=SLOW_DISK)
        self.addCleanup(self.vantle.close)

    def temporary_files(self):
        return list(self.file.parent.glob(".vantle-*"))

    def test_a_save_that_was_begun_is_finished_and_the_settings_are_written(self):
        row = eventually(lambda: self.vantle.row("To dos", "Send the invoice"), what="the row")
        before = self.file.read_bytes()
        self.assertFalse(self.home.settings().exists())

        self.vantle.click(row.find("check box"))
        eventually(self.temporary_files, what="a save under way")
        self.assertEqual(self.file.read_bytes(), before)
        status = self.vantle.end()

        self.assertEqual(status, 0)
        self.assertIn(b"\r\nSTATUS:COMPLETED\r\n", self.file.read_bytes())
        self.assertEqual(self.temporary_files(), [])
        self.assertTrue(self.home.settings().exists())


if __name__ == "__main__":
    unittest.main(verbosity=2)
