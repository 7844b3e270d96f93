#!/usr/bin/env python3
"""Starts a benchmark without a display, and checks that all of its processes end.

Usage: no_display_test.py BENCHMARK
"""

import os
import subprocess
import sys
import time

SECONDS = 600


def is_anyone_left(group):
    """Whether a process of the group still runs. A zombie does not count."""
    listed = subprocess.run(["ps", "-o", "stat=", "-g", str(group)], capture_output=True, text=True).stdout
    return any(not line.startswith("Z") for line in listed.splitlines())


def main():
    environment = {name: value for name, value in os.environ.items() if name not in ("DISPLAY", "WAYLAND_DISPLAY")}
    environment["QT_QPA_PLATFORM"] = "xcb"
    with subprocess.Popen(
        [sys.argv[1], "1"],
        env=environment,
        stdout=subprocess.DEVNULL,
        stderr=subprocess.DEVNULL,
        start_new_session=True,
    ) as benchmark:
        if benchmark.wait(SECONDS) == 0:
            sys.exit("The benchmark ran without a display.")
    deadline = time.monotonic() + SECONDS
    while is_anyone_left(benchmark.pid):
        if time.monotonic() > deadline:
            os.killpg(benchmark.pid, 9)
            sys.exit("The benchmark's dongle did not end.")
        time.sleep(0.05)


if __name__ == "__main__":
    main()
