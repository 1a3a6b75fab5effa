# SPDX-License-Identifier: MIT
"""Another program on the desktop's calendar service, and the service itself, for tests of the window.

Runs inside script/headless --calendar-service. The program is named by $VANTLE_NEIGHBOUR; what it
understands stands at the top of Tests/Support/CalendarService/Neighbour.cpp.
"""

import os
import signal
import subprocess

from gi.repository import Gio, GLib


def _escaped(text):
    return text.replace("\\", "\\\\").replace("\r\n", "\\n").replace("\n", "\\n").replace("\t", "\\t")


def _unescaped(text):
    result, characters = "", iter(text)
    for character in characters:
        if character == "\\":
            character = {"n": "\n", "t": "\t"}.get(following := next(characters), following)
        result += character
    return result


class Refused(Exception):
    pass


class Neighbour:
    def __init__(self):
        self.process = subprocess.Popen([os.environ["VANTLE_NEIGHBOUR"]], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, text=True, bufsize=1)

    def ask(self, *fields):
        self.process.stdin.write("\t".join(map(_escaped, fields)) + "\n")
        outcome, _, text = self.process.stdout.readline().rstrip("\n").partition("\t")
        if outcome != "ok":
            raise Refused(f"{fields}: {_unescaped(text)}")
        return _unescaped(text)

    def put(self, source, *lines):
        self.ask("put", source, "\n".join(("BEGIN:VCALENDAR", "VERSION:2.0", *lines, "END:VCALENDAR", "")))

    def put_event(self, source, uid, day, title, start="0900", end="1000", *lines):
        self.put(source, "BEGIN:VEVENT", f"UID:{uid}", f"DTSTART;TZID=Europe/Berlin:{day:%Y%m%d}T{start}00",
                 f"DTEND;TZID=Europe/Berlin:{day:%Y%m%d}T{end}00", f"SUMMARY:{title}", *lines, "END:VEVENT")

    def put_to_do(self, source, uid, title, *lines):
        self.put(source, "BEGIN:VTODO", f"UID:{uid}", f"SUMMARY:{title}", *lines, "END:VTODO")

    def close(self):
        self.process.stdin.close()
        self.process.wait(30)
        self.process.stdout.close()


class CalendarService:
    """The process that answers for all calendars, to be stopped and killed."""

    def __init__(self):
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)

    def _ask(self, method, arguments=None):
        return self.bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method,
                                  arguments, None, Gio.DBusCallFlags.NONE, 10000, None).unpack()[0]

    def process(self):
        name = next(name for name in self._ask("ListNames") if name.startswith("org.gnome.evolution.dataserver.Calendar"))
        return self._ask("GetConnectionUnixProcessID", GLib.Variant("(s)", (name,)))

    def stop(self):
        os.kill(self.process(), signal.SIGSTOP)

    def resume(self):
        os.kill(self.process(), signal.SIGCONT)

    def kill(self):
        os.kill(self.process(), signal.SIGKILL)
