#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Measures the start of Vantle, to its first painted frame, against an empty Qt window.

  script/headless Benchmarks/start.py FOLDER-OF-BINARIES [--runs N]

The two take turns, so that both see the same machine. A pair gives one ratio.
"""

import argparse
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
        empty, vantle = [], []
        for run in range(arguments.runs + 1):
            pair = (milliseconds_to_first_frame(binaries / "vantle_empty_window", binaries, folders),
                    milliseconds_to_first_frame(binaries / "vantle", binaries, folders))
            if run > 0:  # the first pair warms the pages
                empty.append(pair[0])
                vantle.append(pair[1])

    print(f"Start to first painted frame, {arguments.runs} pairs, pages warm")
    summary("empty Qt window", empty)
    summary("Vantle, sample day", vantle)
    ratios = [ours / theirs for ours, theirs in zip(vantle, empty)]
    print(f"{'ratio, pair by pair':28} median {statistics.median(ratios):7.2f}")


if __name__ == "__main__":
    main()
