"""Reads the windows of a program as a screen reader does. Runs as the person whose program it is; for every line on
standard input answers with one on standard output: the windows as JSON, each with its name, the current step and what
is spoken.

Usage: reader.py PROCESS
"""

import json
import sys

from screen_reader import ScreenReader

reader = ScreenReader(int(sys.argv[1]))
for _ in sys.stdin:
    windows = []
    for window in reader.read():
        controls = list(window.everything())
        windows.append(
            {
                "name": window.name,
                "spoken": [control.spoken() for control in controls],
                "step": next((control.name for control in controls if control.description == "current step"), ""),
            }
        )
    print(json.dumps(windows), flush=True)
