#!/usr/bin/env python3
"""Boots the virtual machine, installs the package there, and runs the checks in it.

Usage: try_usb.py PACKAGE DIRECTORY [NAME...]

DIRECTORY has the disk in image/ and the program bare_exchange, and takes the logs. NAME is a check's name or the start
of some; without one all of them run.
"""

import pathlib
import shlex
import shutil
import sys

from machine import Machine

ROOT = pathlib.Path(__file__).resolve().parents[2]
NEEDED = ("tests/usb", "tests/packaging", "tests/accessibility", "docs/protocol.md")
LONGEST = 10800
"""Seconds that the machine lives at most."""


def main():
    package, directory = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
    logs = directory / "logs"
    shutil.rmtree(logs, ignore_errors=True)
    logs.mkdir()
    with Machine(directory / "image", logs, LONGEST) as machine:
        machine.wait_until_up()
        machine.send(ROOT, *(ROOT / name for name in NEEDED), package, directory / "bare_exchange")
        if machine.run(f"dpkg --install {package.relative_to(ROOT)} >/dev/null") != 0:
            sys.exit("the package could not be installed")
        bare = (directory / "bare_exchange").relative_to(ROOT)
        status = machine.run(f"BARE_EXCHANGE={bare} tests/usb/run_checks.py {shlex.join(sys.argv[3:])}")
        machine.fetch("tests/usb/logs", logs)
    return status


if __name__ == "__main__":
    sys.exit(main())
