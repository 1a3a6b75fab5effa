#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Measures the start of Vantle, to its first painted frame, against an empty Qt window, and with the
desktop's calendar service against a start without it.

  script/headless --calendar-service Benchmarks/start.py FOLDER-OF-BINARIES [--runs N]

They take turns, so that all see the same machine. A round gives one ratio of each kind.
"""

import argparse
import contextlib
import os
import pathlib
import statistics
import subprocess
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[1]


def milliseconds_to_first_frame(program, binaries, environment):
    variables = os.environ | environment | {
        "QT_QPA_GENERIC_PLUGINS": "firstframe", "QT_PLUGIN_PATH": str(binaries / "plugins"),
        "VANTLE_STARTED_AT": str(time.monotonic_ns())}
    done = subprocess.run([str(program)], env=variables, check=True, capture_output=True, text=True, timeout=60)
    return float(done.stdout.split()[0])


@contextlib.contextmanager
def bus_without_services(folder):
    """Where the calendar service can neither be found nor started."""
    configuration = folder / "bus.conf"
    configuration.write_text(
        f"<busconfig><type>session</type><listen>unix:path={folder}/bus</listen><auth>EXTERNAL</auth>"
        '<policy context="default"><allow send_destination="*"/><allow receive_sender="*"/><allow own="*"/></policy>'
        "</busconfig>")
    daemon = subprocess.Popen(["dbus-daemon", "--nofork", "--print-address", f"--config-file={configuration}"],
                              stdout=subprocess.PIPE, text=True)
    try:
        yield {"DBUS_SESSION_BUS_ADDRESS": daemon.stdout.readline().strip()}
    finally:
        daemon.terminate()
        daemon.wait()


def summary(name, values):
    values = sorted(values)
    print(f"{name:28} median {statistics.median(values):7.1f} ms   best {values[0]:7.1f}   worst {values[-1]:7.1f}")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("binaries", type=pathlib.Path)
    parser.add_argument("--runs", type=int, default=15)
    arguments = parser.parse_args()
    binaries = arguments.binaries.resolve()

    with tempfile.TemporaryDirectory(prefix="vantle-start.") as home:
        home = pathlib.Path(home)
        subprocess.run(["/usr/bin/python3", str(ROOT / "script" / "make-sample-calendars"),
                        str(home / "data" / "calendars")], check=True)
        folders = {f"XDG_{name.upper()}_HOME": str(home / name) for name in ("data", "config", "state", "cache")}
        rounds = []
        with bus_without_services(home) as without:
            for run in range(arguments.runs + 1):
                each = (milliseconds_to_first_frame(binaries / "vantle_empty_window", binaries, folders | without),
                        milliseconds_to_first_frame(binaries / "vantle", binaries, folders | without),
                        milliseconds_to_first_frame(binaries / "vantle", binaries, folders))
                if run > 0:  # the first round warms the pages
                    rounds.append(each)

    print(f"Start to first painted frame, {arguments.runs} rounds, pages warm")
    summary("empty Qt window", [empty for empty, _, _ in rounds])
    summary("Vantle, sample day", [alone for _, alone, _ in rounds])
    summary("with the calendar service", [served for _, _, served in rounds])
    print(f"{'to the empty window':28} median {statistics.median(alone / empty for empty, alone, _ in rounds):7.2f}")
    print(f"{'with the service to without':28} median "
          f"{statistics.median(served / alone for _, alone, served in rounds):7.2f}")


if __name__ == "__main__":
    main()
