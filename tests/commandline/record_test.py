#!/usr/bin/env python3
"""Programs a simulated device by the keyboard while the wizard records the line, and again while the simulator
plays that record. Both records must be the same but for their times.

Usage: record_test.py WIZARD SIMULATOR
"""

import contextlib
import os
import pathlib
import signal
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "packaging"))
import keyboard_run  # noqa: E402


def require(holds, what):
    if not holds:
        raise SystemExit(what)


def record_a_run(wizard, simulator, place):
    """Returns the record and what the simulator printed. `simulator` ends with its directory."""
    directory = simulator[-1]
    record = place / "record"
    environment = os.environ | {
        "VELMORINDAL_DEVICE_DIRECTORY": directory,
        "HOME": str(place),
        "XDG_CONFIG_HOME": str(place / "config"),
        "QT_QPA_PLATFORM": "xcb",
    }
    with contextlib.ExitStack() as stack:
        screen = keyboard_run.Screen(stack)
        served = stack.enter_context(keyboard_run.Program(simulator, os.environ))
        served.wait_for_line(f"{directory}/")
        program = stack.enter_context(
            keyboard_run.Program([wizard, "--record", str(record)], environment | {"DISPLAY": screen.display})
        )
        keyboard_run.program_a_device(program, screen, lambda wizard: None)
        status = served.end(signal.SIGINT)
    require(status == 0, f"the simulator ended with {status}: {served.lines}")
    return record, served.lines


def without_times(record):
    return [line.split(" ", 1)[1] for line in record.read_text().splitlines()]


def main():
    wizard, simulator = sys.argv[1:]
    with tempfile.TemporaryDirectory() as first, tempfile.TemporaryDirectory() as second:
        recorded, _ = record_a_run(wizard, [simulator, first], pathlib.Path(first))
        lines = without_times(recorded)
        require(lines[0] == "record 1" and lines[1] == "1 open" and "1 > 63 62 77 00" in lines, f"the record: {lines}")
        require("/" not in recorded.read_text(), "the record holds a path")
        replayed, said = record_a_run(wizard, [simulator, "--replay", str(recorded), second], pathlib.Path(second))
        require(said[-1] == "The host has sent all that the record has of it.", f"the simulator said {said}")
        require(without_times(replayed) == lines, f"{without_times(replayed)}\nis not\n{lines}")
    print(f"{len(lines)} lines recorded and played again")


if __name__ == "__main__":
    main()
