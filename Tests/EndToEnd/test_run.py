#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The first command of a newcomer: without a display, and beside a Vantle that runs."""

import contextlib
import os
import pathlib
import signal
import struct
import subprocess
import tempfile
import unittest

from driver import ANSWER_LIMIT, START_LIMIT, Home, Vantle, eventually, run

BUILD_LIMIT = 240.0
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

    def test_the_sample_opens_beside_the_vantle_that_runs(self):
        home = Home(sample=False)
        self.addCleanup(home.remove)
        vantle = Vantle(home)
        self.addCleanup(vantle.close)

        sample = subprocess.Popen([str(ROOT / "script" / "run"), "--sample"], stdin=subprocess.DEVNULL,
                                  stdout=subprocess.DEVNULL, start_new_session=True)
        self.addCleanup(sample.wait, ANSWER_LIMIT)
        self.addCleanup(self.kill_group, sample)
        other = eventually(lambda: next((window for window in self.windows() if window != vantle.window), None),
                           BUILD_LIMIT, "a second window")

        # Each has its own process and goes by itself.
        process = int(run("xdotool", "getwindowpid", other))
        self.assertNotEqual(process, vantle.process.pid)
        os.kill(process, signal.SIGTERM)
        self.assertEqual(sample.wait(START_LIMIT), 0)
        self.assertIsNone(vantle.process.poll())
        self.assertEqual(self.windows(), [vantle.window])

    @staticmethod
    def windows():
        return subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^Vantle$"], capture_output=True,
                              text=True, timeout=ANSWER_LIMIT, check=False).stdout.split()

    @staticmethod
    def kill_group(process):
        with contextlib.suppress(ProcessLookupError):
            os.killpg(process.pid, signal.SIGKILL)


if __name__ == "__main__":
    unittest.main(verbosity=2)
