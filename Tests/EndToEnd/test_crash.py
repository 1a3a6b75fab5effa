#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""A run that crashes leaves a readable report, which the next one offers once."""

import signal
import unittest

from driver import ANSWER_LIMIT, Atspi, Home, Vantle, eventually


class Crash(unittest.TestCase):
    def setUp(self):
        self.home = Home()
        self.addCleanup(self.home.remove)
        self.trace = self.home.folder / "state" / "vantle" / "crash-trace.txt"

    def start(self, **environment):
        vantle = Vantle(self.home, **environment)
        self.addCleanup(vantle.close)
        eventually(lambda: len(vantle.rows("To dos")) == 10, what="all to-dos")
        return vantle

    def crash(self):
        vantle = self.start()
        vantle.process.send_signal(signal.SIGSEGV)
        self.assertEqual(vantle.process.wait(ANSWER_LIMIT), -signal.SIGSEGV)

    def field(self, window, name):
        return eventually(lambda: window.find("text", name), what=f"the field {name}")

    def text(self, window, name):
        return Atspi.Text.get_text(self.field(window, name).accessible, 0, -1)

    def test_a_run_without_a_crash_offers_nothing(self):
        self.assertEqual(self.start().end(), 0)
        self.assertFalse(self.trace.exists())

        self.assertIsNone(self.start().open_sheet("Crash Report"))

    def test_a_crash_is_noted_and_offered_once(self):
        self.crash()
        self.assertIn("signal 11\n", self.trace.read_text())

        second = self.start()
        window = eventually(lambda: second.open_sheet("Crash Report"), what="the report")
        report = self.text(window, "Details, which you can change")
        self.assertTrue(report.startswith("Vantle "), report)
        self.assertIn("Ended by signal 11 SIGSEGV\nSent by process ", report)
        # Where it waited, in names: the event loop, and main() at the bottom of it all.
        self.assertIn("QEventLoop::exec(", report)
        self.assertIn("(vantle + 0x", report)
        self.assertIn("Desktop: ", report)
        self.assertFalse(self.trace.exists())
        second.click(self.field(window, "Message"))
        second.press("Escape")
        second.wait_until_closed("Crash Report")
        self.assertEqual(second.end(), 0)

        self.assertIsNone(self.start().open_sheet("Crash Report"))

    def test_damaged_traces_do_no_harm(self):
        for content in (b"", b"\0\xff\xfe" * 1000, b"frame\n" * 100000, b"<img src=x>\n"):
            self.trace.parent.mkdir(parents=True, exist_ok=True)
            self.trace.write_bytes(content)

            vantle = self.start()

            eventually(lambda: not self.trace.exists(), what="a trace that was taken")
            self.assertEqual(vantle.end(), 0)


if __name__ == "__main__":
    unittest.main()
