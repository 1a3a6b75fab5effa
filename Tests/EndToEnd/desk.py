# SPDX-License-Identifier: MIT
"""What stands around the program on a desktop: another window manager, another
program's window, and what the window manager says of ours."""

import os
import re
import select
import signal
import subprocess

from driver import ANSWER_LIMIT, START_LIMIT, Home, Vantle, eventually, run


def property_of(window, name):
    """The value of a window's property as xprop prints it, or nothing."""
    answer = run("xprop", "-id", window, name)
    return answer.split("=", 1)[1].strip() if "=" in answer else ""


def focused_window():
    """Nothing before the window manager has put one in front for the first time."""
    found = re.search(r"0x[0-9a-f]+", run("xprop", "-root", "_NET_ACTIVE_WINDOW"))
    return int(found.group(), 16) if found else 0


def is_viewable(window):
    answer = subprocess.run(["xwininfo", "-id", str(window)], capture_output=True, text=True, check=False).stdout
    return "IsViewable" in answer


def place_of(window):
    """Left and top on the screen, without what the window manager puts around it."""
    answer = run("xwininfo", "-id", window)
    return tuple(int(re.search(rf"Absolute upper-left {axis}:\s+(-?\d+)", answer).group(1)) for axis in "XY")


def visible_windows(vantle):
    """All of the program's, menus among them."""
    return set(subprocess.run(["xdotool", "search", "--onlyvisible", "--pid", str(vantle.process.pid)],
                              capture_output=True, text=True, check=False).stdout.split())


def window_manager():
    check = run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK")
    found = re.search(r"0x[0-9a-f]+", check)
    if not found:
        return ""
    answer = subprocess.run(["xprop", "-id", found.group(), "_NET_WM_NAME"], capture_output=True, text=True,
                            check=False).stdout
    return answer.split('"')[1].lower() if '"' in answer else ""


class Process:
    """A child that is ended with its test."""

    def __init__(self, *command, **environment):
        self.process = subprocess.Popen([str(word) for word in command], env=os.environ | environment,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def close(self):
        if self.process.poll() is None:
            self.process.terminate()
            self.process.wait()


class WindowManager(Process):
    """Takes the place of the window manager that is there."""

    def __init__(self, *command):
        super().__init__(*command)
        eventually(lambda: window_manager().startswith(str(command[0])[:5]), what=f"{command[0]} as window manager")


class LaunchingBus:
    """A session bus of its own that starts one program when its name is called, and nothing else.

    What runs in this process is on that bus until it is closed; what the bus started ends with it.
    """

    CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir={folder}</listen>
  <auth>EXTERNAL</auth>
  <servicedir>{folder}</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""

    def __init__(self, folder, name, program, environment):
        folder.mkdir()
        (folder / f"{name}.service").write_text(f"[D-BUS Service]\nName={name}\nExec={program}\n")
        configuration = folder / "bus.conf"
        configuration.write_text(self.CONFIGURATION.format(folder=folder))
        # What it starts inherits its output, which nobody may have to wait for, and its group of processes.
        with open(folder / "log", "w", encoding="utf-8") as log:
            self.process = subprocess.Popen(
                ["dbus-daemon", "--nofork", "--nopidfile", "--print-address", f"--config-file={configuration}"],
                env=os.environ | environment, stdout=subprocess.PIPE, stderr=log, text=True, start_new_session=True)
        self.before = os.environ["DBUS_SESSION_BUS_ADDRESS"]
        try:
            if not select.select([self.process.stdout], [], [], START_LIMIT)[0]:
                raise AssertionError("the bus does not tell its address")
            os.environ["DBUS_SESSION_BUS_ADDRESS"] = self.process.stdout.readline().strip()
        except BaseException:
            self.close()
            raise

    @staticmethod
    def owner(name):
        """The process that has the name, or nothing."""
        answer = subprocess.run(
            ["gdbus", "call", "--session", "--timeout", str(int(ANSWER_LIMIT)), "--dest", "org.freedesktop.DBus",
             "--object-path", "/org/freedesktop/DBus", "--method",
             "org.freedesktop.DBus.GetConnectionUnixProcessID", name],
            capture_output=True, text=True, timeout=2 * ANSWER_LIMIT, check=False).stdout
        found = re.search(r"uint32 (\d+)", answer)
        return int(found.group(1)) if found else None

    def close(self):
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = self.before
        os.killpg(self.process.pid, signal.SIGKILL)
        self.process.wait(ANSWER_LIMIT)
        self.process.stdout.close()


class OtherProgram(Process):
    """A program of somebody else, with a window that has the keyboard."""

    TITLE = "Event Tester"

    def __init__(self):
        super().__init__("xev", "-name", self.TITLE)
        self.window = eventually(self._find, what="the other program's window")
        self.focus()

    def _find(self):
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{self.TITLE}$"],
                               capture_output=True, text=True, check=False).stdout.split()
        return int(found[0]) if found else None

    def focus(self):
        run("xdotool", "windowactivate", "--sync", self.window)
        eventually(lambda: focused_window() == self.window, what="the other program in front")


def write_settings(home, **values):
    """Settings as an earlier run left them."""
    path = home.settings()
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text("[General]\n" + "".join(f"{name}={value}\n" for name, value in values.items()))


def read_settings(home):
    lines = home.settings().read_text().splitlines()
    return dict(line.split("=", 1) for line in lines if "=" in line)


class OnADesk:
    """What tests do that look at the program among others."""

    def start(self, **settings):
        """With settings of an earlier run and no items."""
        self.home = Home(sample=False)
        self.addCleanup(self.home.remove)
        write_settings(self.home, **settings)
        self.vantle = Vantle(self.home)
        self.addCleanup(self.vantle.close)
        self.window = int(self.vantle.window)

    def other_program(self):
        other = OtherProgram()
        self.addCleanup(other.close)
        return other
