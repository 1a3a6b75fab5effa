#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Calendars that another person fills with markup and links: nothing is fetched, opened or run for them."""

import datetime as dt
import re
import socket
import unittest

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402  the version is named first

from driver import Home, Vantle, eventually, run  # noqa: E402

ITEM = """BEGIN:VCALENDAR
VERSION:2.0
PRODID:-//test//EN
BEGIN:{kind}
UID:hostile-{number}-{kind}
DTSTAMP:20260101T000000Z
{when}SUMMARY:{text}
LOCATION:{text}
DESCRIPTION:{text}
END:{kind}
END:VCALENDAR
"""


class HostileText(unittest.TestCase):
    def setUp(self):
        self.home = Home(sample=False)
        self.addCleanup(self.home.remove)
        self.server = socket.create_server(("127.0.0.1", 0))
        self.server.setblocking(False)
        self.addCleanup(self.server.close)
        self.bait = self.home.folder / "bait.png"
        self.bait.write_bytes(b"\x89PNG\r\n\x1a\n")
        web = f"http://127.0.0.1:{self.server.getsockname()[1]}/x.png"
        self.titles = [
            f"<b>Buy</b> <img src='file://{self.bait}'> <a href='file://{self.bait}'>milk</a>",
            f"<img src=\"{web}\"><link rel=stylesheet href=\"{web}\"><script src=\"{web}\"></script>",
            f"<html><body background='{self.bait}'><img src='{self.bait}'></body></html>",
            "\u202egnp.exe\u202c & R&D",
            "word " * 200_000,
        ]
        self.write_calendar()
        self.trace = self.home.folder / "trace"
        self.vantle = Vantle(self.home, before=["strace", "-D", "-f", "-qq", "-e", "trace=connect,open,openat,execve",
                                                "-o", self.trace])
        self.addCleanup(self.vantle.close)

    def write_calendar(self):
        folder = self.home.calendars / "hostile"
        folder.mkdir()
        (folder / "displayname").write_text(self.titles[0])
        (folder / "color").write_text("#d6455d")
        today = dt.date.today()
        for number, title in enumerate(self.titles):
            text = re.sub(r"([\\;,])", r"\\\1", title)
            for kind, when in (("VEVENT", f"DTSTART:{today:%Y%m%d}T090000\n"), ("VTODO", "")):
                item = ITEM.format(kind=kind, number=number, text=text, when=when)
                (folder / f"{number}-{kind}.ics").write_text(item.replace("\n", "\r\n"))

    def test_all_is_text_and_nothing_is_touched(self):
        eventually(lambda: len(self.vantle.rows("Events")) == len(self.titles), what="all events")

        for kind in ("Events", "To dos"):
            for title in self.titles[:4]:
                row = self.vantle.row(kind, title)
                self.assertIsNotNone(row, f"{title} is not shown as it stands")
                row.act("Press")
                eventually(lambda kind=kind, title=title: self.vantle.row(kind, title).has(Atspi.StateType.SELECTED),
                           what=f"{title} selected")
                x, y, _, _ = self.vantle.row(kind, title).rectangle
                run("xdotool", "mousemove", "--sync", x + 60, y + 10)
        self.vantle.press("F9")
        box = eventually(lambda: self.vantle.top.find("check box", self.titles[0]), what="the calendar by its name")
        self.hover(box)

        self.assertEqual(self.vantle.end(), 0)
        self.check_trace()

    def hover(self, element):
        """Long enough for a tool tip: it is there when a second window is."""
        run("xdotool", "mousemove", "--sync", *element.centre)
        windows = ("xdotool", "search", "--onlyvisible", "--pid", self.vantle.process.pid, "--name", ".*")
        eventually(lambda: len(run(*windows).split()) > 1, what="a tool tip")

    def check_trace(self):
        calls = self.trace.read_text()
        self.assertIn("hostile", calls)  # the trace does see files
        self.assertNotIn(str(self.bait), calls)
        self.assertNotRegex(calls, r"connect\(\d+, \{sa_family=AF_INET")
        self.assertEqual(len(re.findall(r"execve\(", calls)), 1)
        with self.assertRaises(BlockingIOError):
            self.server.accept()


if __name__ == "__main__":
    unittest.main(verbosity=2)
