"""Learns from the window manager the moment when a window goes from the screen."""

import subprocess
import time

from desktop import Lines
from waiting import wait_for
from wizard import TITLE


class WindowWatch:
    def __init__(self, wizard):
        window = wizard.desktop.windows(TITLE)[0]
        command = ["xprop", "-display", wizard.desktop.display, "-id", window, "-spy", "WM_STATE"]
        self._process = subprocess.Popen(["stdbuf", "-oL", *command], stdout=subprocess.PIPE, text=True)
        self._lines = Lines(self._process.stdout, "/dev/null")
        # It reports the state as it is, and from then on every change.
        wait_for(lambda: self._lines.texts, "the state of the window")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._process.kill()
        self._process.wait()

    def wait_until_gone(self, seconds=60):
        def gone():
            reported = self._lines.time_of("WM_STATE:  not found") or self._lines.time_of("\t\twindow state: Withdrawn")
            return reported or (self._process.poll() is not None and time.monotonic())

        return wait_for(gone, lambda: f"the window to go; its state: {self._lines.texts}", seconds)
