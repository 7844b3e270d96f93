#!/usr/bin/env python3
"""Moves the wizard's window, kills the wizard, and looks where its window is when it starts again.

Usage: killed_test.py WIZARD
"""

import contextlib
import os
import pathlib
import re
import struct
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "packaging"))
import keyboard_run  # noqa: E402

# The window opens in the middle of a screen of 1280 x 800, and is moved to a corner.
CORNER = (20, 30)
NEAR = 60
TITLE = "Velmorindal Setup"
LETTERS = {b"a": b"\a", b"b": b"\b", b"f": b"\f", b"n": b"\n", b"r": b"\r", b"t": b"\t", b"v": b"\v", b"0": b"\0"}


def unescaped(text):
    return re.sub(
        rb"\\(?:x([0-9a-f]+)|(.))", lambda m: bytes([int(m[1], 16)]) if m[1] else LETTERS.get(m[2], m[2]), text
    )


def is_near_the_corner(place):
    return all(abs(at - corner) <= NEAR for at, corner in zip(place, CORNER))


def remembered_place(file):
    """Left and top of the remembered frame, or nothing yet."""
    if not file.exists():
        return None
    frame = re.search(rb'^Main%20Window="?@ByteArray\((.*)\)"?$', file.read_bytes(), re.MULTILINE)
    # A number that marks the format, two of its version, and the frame.
    return struct.unpack_from(">ii", unescaped(frame[1]), 8)


def place_of(screen, window):
    lines = dict(line.split("=") for line in screen.xdotool("getwindowgeometry", "--shell", window))
    return int(lines["X"]), int(lines["Y"])


def main():
    with tempfile.TemporaryDirectory() as home, contextlib.ExitStack() as stack:
        screen = keyboard_run.Screen(stack)
        environment = os.environ | {
            "HOME": home,
            "XDG_CONFIG_HOME": home,
            "QT_QPA_PLATFORM": "xcb",
            "VELMORINDAL_DEVICE_DIRECTORY": home,
            "DISPLAY": screen.display,
        }
        file = pathlib.Path(home) / "Velmorindal/velmorindal-setup.conf"

        with keyboard_run.Program([sys.argv[1]], environment):
            window = keyboard_run.wait_for(lambda: screen.windows(TITLE), "the window")[0]
            if is_near_the_corner(place_of(screen, window)):
                raise SystemExit("the window is near the corner before it was moved")

            def is_moved():
                # Asked again, since a window that is only just coming up may be placed after it was moved.
                screen.xdotool("windowmove", window, *map(str, CORNER))
                return is_near_the_corner(place_of(screen, window))

            keyboard_run.wait_for(is_moved, "the window to move")
            keyboard_run.wait_for(
                lambda: (place := remembered_place(file)) and is_near_the_corner(place), "the frame to be remembered"
            )
            # Leaving this kills it.
        with keyboard_run.Program([sys.argv[1]], environment):
            window = keyboard_run.wait_for(lambda: screen.windows(TITLE), "the window of the second run")[0]
            keyboard_run.wait_for(
                lambda: is_near_the_corner(place_of(screen, window)), "the window to come back where it was"
            )


if __name__ == "__main__":
    main()
