#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The first command of a newcomer, on a machine without a display."""

import os
import pathlib
import struct
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]


def without_display():
    return {name: value for name, value in os.environ.items() if name not in ("DISPLAY", "WAYLAND_DISPLAY")}


class Run(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="vantle-run.")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def test_it_says_so_takes_a_picture_and_succeeds(self):
        picture = self.folder / "window.png"

        done = subprocess.run([str(ROOT / "script" / "run"), "--screenshot", str(picture)], env=without_display(),
                              stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False)

        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        self.assertIn("no display", done.stdout)
        self.assertIn(str(picture), done.stdout)
        width, height = struct.unpack(">II", picture.read_bytes()[16:24])
        self.assertGreaterEqual(width, 280)
        self.assertGreaterEqual(height, 240)

    def test_a_window_without_calendars_does_not_count_as_painted(self):
        empty = self.folder / "calendars"
        (empty / "home").mkdir(parents=True)
        (empty / "home" / "color").write_text("#2f7de1")
        environment = without_display() | {"XDG_DATA_HOME": str(self.folder), "VANTLE_PAINT_LIMIT": "3"}

        done = subprocess.run([str(ROOT / "script" / "headless"), str(ROOT / "script" / "photograph"),
                               str(self.folder / "window.png"), os.environ["VANTLE"]], env=environment,
                              stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False)

        self.assertNotEqual(done.returncode, 0)
        self.assertIn("not painted", done.stderr)


if __name__ == "__main__":
    unittest.main(verbosity=2)
