# SPDX-License-Identifier: MIT
"""Starts the real program in a home of its own and drives it as a person would.

Runs inside script/headless: a virtual display with a window manager and a
session bus. The program under test is named by $VANTLE.
"""

import contextlib
import datetime as dt
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402  the version is named first

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAM = pathlib.Path(os.environ["VANTLE"])
START_LIMIT = 20.0
ANSWER_LIMIT = 10.0
COMMAND_LIMIT = 60.0


def eventually(question, limit=ANSWER_LIMIT, what="the condition"):
    """The first true answer to a question that is asked again and again."""
    deadline = time.monotonic() + limit
    while True:
        answer = None
        with contextlib.suppress(GLib.Error):
            answer = question()
        if answer:
            return answer
        if time.monotonic() > deadline:
            raise AssertionError(f"{what} did not come true within {limit} s; the last answer was {answer!r}")
        time.sleep(0.02)


def run(*command, **options):
    return subprocess.run([str(word) for word in command], check=True, capture_output=True, text=True,
                          timeout=COMMAND_LIMIT, **options).stdout


class Home:
    """A throw-away home with sample calendars around a day."""

    def __init__(self, day=None, sample=True):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="vantle-home."))
        self.day = day or dt.date.today()
        self.calendars = self.folder / "data" / "calendars"
        for name in ("data", "config", "state", "cache"):
            (self.folder / name).mkdir()
        if sample:
            run("/usr/bin/python3", ROOT / "script" / "make-sample-calendars", self.calendars, "--date", self.day)
        else:
            self.calendars.mkdir()

    def environment(self):
        names = {"XDG_DATA_HOME": "data", "XDG_CONFIG_HOME": "config", "XDG_STATE_HOME": "state",
                 "XDG_CACHE_HOME": "cache"}
        return {name: str(self.folder / folder) for name, folder in names.items()} | {"HOME": str(self.folder)}

    def settings(self):
        return self.folder / "config" / "vantle" / "vantle.conf"

    def remove(self):
        shutil.rmtree(self.folder)


class Element:
    """One thing on the screen, as assistive technology sees it."""

    def __init__(self, accessible):
        self.accessible = accessible

    @property
    def name(self):
        return self.accessible.get_name()

    @property
    def role(self):
        return self.accessible.get_role_name()

    @property
    def rectangle(self):
        extents = self.accessible.get_component_iface().get_extents(Atspi.CoordType.SCREEN)
        return extents.x, extents.y, extents.width, extents.height

    @property
    def centre(self):
        x, y, width, height = self.rectangle
        return x + width // 2, y + height // 2

    def has_active_state(self):
        return self.has(Atspi.StateType.ACTIVE)

    def has(self, state):
        return self.accessible.get_state_set().contains(state)

    def children(self):
        for index in range(self.accessible.get_child_count()):
            child = self.accessible.get_child_at_index(index)
            if child is not None:
                yield Element(child)

    def everything(self):
        for child in self.children():
            yield child
            yield from child.everything()

    def find(self, role=None, name=None):
        for element in self.everything():
            if (role is None or element.role == role) and (name is None or element.name == name):
                return element
        return None

    def actions(self):
        actions = self.accessible.get_action_iface()
        return [actions.get_action_name(index) for index in range(actions.get_n_actions())] if actions else []

    def act(self, name):
        self.accessible.get_action_iface().do_action(self.actions().index(name))


def shown_text(element):
    """What stands in a field."""
    return Atspi.Text.get_text(element.accessible, 0, -1)


def set_text(element, text):
    """As assistive technology writes into a field."""
    if not Atspi.EditableText.set_text_contents(element.accessible, text):
        raise AssertionError(f"nothing can be written into {element.name}")


class Vantle:
    """The running program."""

    def __init__(self, home, before=(), **environment):
        """`before` is put ahead of the program's name, such as a tracer that leaves it our child."""
        self.home = home
        variables = os.environ | home.environment() | {
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1", "LC_ALL": "C.UTF-8", "LANGUAGE": ""} | environment
        self.process = subprocess.Popen([*map(str, before), str(PROGRAM)], env=variables)
        try:
            self.window = eventually(self.visible_window, START_LIMIT, "a visible window")
            self.top = eventually(self._accessible_window, START_LIMIT, "a window for assistive technology")
            run("xdotool", "windowactivate", "--sync", self.window)
        except BaseException:
            self.process.kill()
            self.process.wait()
            raise

    def visible_window(self):
        if self.process.poll() is not None:
            raise RuntimeError(f"the program ended with status {self.process.returncode}")
        found = subprocess.run(["xdotool", "search", "--all", "--onlyvisible", "--pid", str(self.process.pid), "--name", "."],
                               capture_output=True, text=True, check=False).stdout.split()
        return found[0] if found else None

    def _accessible_windows(self):
        desktop = Element(Atspi.get_desktop(0))
        for application in desktop.children():
            if application.accessible.get_process_id() == self.process.pid:
                return list(application.children())
        return []

    def _accessible_window(self):
        return next((window for window in self._accessible_windows() if window.accessible.get_child_count()), None)

    def _application(self):
        return next((application for application in Element(Atspi.get_desktop(0)).children()
                     if application.accessible.get_process_id() == self.process.pid), None)

    # --- What is on the screen ---

    def list(self, name):
        return eventually(lambda: self.top.find("list", name), what=f"the list {name}")

    def rows(self, name):
        return [row for row in self.list(name).children() if row.role == "list item"]

    def titles(self, name):
        """The first line of each row's name is its title."""
        return [row.name.split("\n")[0].split(", ")[0] for row in self.rows(name)]

    def row(self, name, title):
        return next((row for row in self.rows(name) if row.name.startswith(title)), None)

    def open_sheet(self, name):
        """The sheet of that name while it is open, else nothing."""
        for window in self._accessible_windows():
            for element in [window, *window.everything()]:
                if element.role in ("dialog", "frame", "window") and element.name == name and element.has(
                        Atspi.StateType.SHOWING):
                    return element
        return None

    def sheet(self, name):
        """Open, and with the keyboard: what is typed at once goes to it."""
        def found():
            sheet = self.open_sheet(name)
            return sheet if sheet and sheet.has_active_state() else None
        return eventually(found, what=f"the sheet {name}")

    def wait_until_closed(self, name):
        eventually(lambda: self.open_sheet(name) is None, what=f"the end of the sheet {name}")

    def find_anywhere(self, role, name):
        """In any window of the program, preferring what is to be seen."""
        found = [element for element in self._application().everything()
                 if element.role == role and (name is None or element.name == name)]
        return next((element for element in found if element.has(Atspi.StateType.SHOWING)), found[0] if found else None)

    def shown_menu_item(self, name):
        """An item of a menu that is open."""
        return next((element for element in self._application().everything()
                     if element.name == name and "menu" in element.role and element.has(Atspi.StateType.SHOWING)
                     and element.rectangle[2] > 0), None)

    def all_showing(self, role, name):
        return [element for element in self._application().everything()
                if element.role == role and element.name == name and element.has(Atspi.StateType.SHOWING)]

    def find_showing(self, role, name):
        return next(iter(self.all_showing(role, name)), None)

    @staticmethod
    def is_selected(element):
        return element is not None and element.has(Atspi.StateType.SELECTED)

    @staticmethod
    def chosen_entry(pop_up):
        return next((entry.name for entry in pop_up.children() if entry.has(Atspi.StateType.SELECTED)), None)

    def pop_up_is_open(self):
        """Whether an X window of the program's that the window manager does not know is on the screen."""
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--pid", str(self.process.pid), "--class", "."],
                               capture_output=True, text=True, check=False).stdout.split()
        managed = run("xprop", "-root", "_NET_CLIENT_LIST")
        return any(hex(int(window)) not in managed for window in found)

    def pixels(self):
        """Width, height and the bytes of red, green and blue of the window."""
        picture = subprocess.run(["import", "-silent", "-window", self.window, "-depth", "8", "ppm:-"],
                                 capture_output=True, check=True).stdout
        _, width, height, _ = picture.split(maxsplit=4)[:4]
        return int(width), int(height), picture[-3 * int(width) * int(height):]

    def photograph(self, file):
        run("import", "-silent", "-window", self.window, file)

    # --- What a person does ---

    def press(self, *keys):
        run("xdotool", "key", "--clearmodifiers", *keys)

    def type(self, text):
        run("xdotool", "type", "--clearmodifiers", text)

    def click(self, element, button=1, position=None, times=1):
        x, y = position or element.centre
        run("xdotool", "mousemove", "--sync", x, y, "click", "--repeat", times, "--delay", 60, button)

    def drag(self, start, end):
        """With the left button, in steps, as a hand does."""
        run("xdotool", "mousemove", "--sync", *start, "mousedown", 1)
        for step in range(1, 9):
            point = [round(a + (b - a) * step / 8) for a, b in zip(start, end)]
            run("xdotool", "mousemove", "--sync", *point)
        run("xdotool", "mouseup", 1)

    def resize(self, width, height):
        run("xdotool", "windowsize", "--sync", self.window, width, height)

    def move(self, left, top):
        run("xdotool", "windowmove", "--sync", self.window, left, top)

    def end(self):
        """Asks the program to end; its exit status."""
        self.process.send_signal(signal.SIGTERM)
        return self.process.wait(ANSWER_LIMIT)

    def close(self):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
