# SPDX-License-Identifier: MIT
"""A real desktop's panel, with nothing in it but its status icons."""

import os
import pathlib
import re
import signal
import subprocess

from desk import Process
from driver import eventually, run

PANEL_HEIGHT = 32  # pixels

SETTINGS = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="dark-mode" type="bool" value="{dark}"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="icon-size" type="uint" value="22"/>
      <property name="size" type="uint" value="{height}"/>
      <property name="background-style" type="uint" value="1"/>
      <property name="background-rgba" type="array">
        {rgba}
      </property>
      <property name="plugin-ids" type="array"><value type="int" value="1"/></property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="systray">
      <property name="square-icons" type="bool" value="true"/>
    </property>
  </property>
</channel>
"""


class Panel:
    """xfce4-panel along the upper edge of the screen."""

    def __init__(self, home, dark=False):
        shade = 0.15 if dark else 0.92
        rgba = "".join(f'<value type="double" value="{value}"/>' for value in (shade, shade, shade, 1.0))
        path = pathlib.Path(home.folder, "config", "xfce4", "xfconf", "xfce-perchannel-xml", "xfce4-panel.xml")
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(SETTINGS.format(dark="true" if dark else "false", rgba=rgba, height=PANEL_HEIGHT))
        # The bus starts the settings service of the panel, which must not know anybody else's.
        for name, value in home.environment().items():
            run("dbus-update-activation-environment", f"{name}={value}")
        run("dbus-update-activation-environment", f"DISPLAY={os.environ['DISPLAY']}")
        self.process = Process("xfce4-panel", "--disable-wm-check", **home.environment())
        self.window = eventually(self._find, what="the panel")

    @staticmethod
    def _find():
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--class", "xfce4-panel"],
                               capture_output=True, text=True, check=False).stdout.split()
        return found[0] if found else None

    def close(self):
        self.process.close()
        # It read the settings of this home.
        answer = subprocess.run(["gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path",
                                 "/org/freedesktop/DBus",
                                 "--method", "org.freedesktop.DBus.GetConnectionUnixProcessID", "org.xfce.Xfconf"],
                                capture_output=True, text=True, check=False).stdout
        number = re.search(r"uint32 (\d+)", answer)
        if number:
            os.kill(int(number.group(1)), signal.SIGTERM)
