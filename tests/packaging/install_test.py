#!/usr/bin/env python3
"""Installs the built tree to temporary prefixes and runs the simulator from there.

Usage: install_test.py CMAKE BUILD_DIRECTORY
"""

import contextlib
import os
import pathlib
import select
import signal
import subprocess
import sys
import tempfile
import termios
import tty
import unittest

BUILD = sys.argv.pop(2)
CMAKE = sys.argv.pop(1)
SECONDS = 600

SIZES = (16, 22, 24, 32, 48, 64, 96, 128, 256, 512)
EXPECTED = {
    "bin/velmorindal-setup",
    "bin/velmorindal-simulator",
    "lib/udev/rules.d/70-velmorindal-setup.rules",
    "share/applications/velmorindal-setup.desktop",
    "share/doc/velmorindal-setup/changelog.gz",
    "share/doc/velmorindal-setup/copyright",
    "share/icons/hicolor/scalable/apps/velmorindal-setup.svg",
    "share/man/man1/velmorindal-setup.1.gz",
    "share/man/man1/velmorindal-simulator.1.gz",
    "share/metainfo/invalid.velmorindal.setup.metainfo.xml",
} | {f"share/icons/hicolor/{size}x{size}/apps/velmorindal-setup.png" for size in SIZES}


def files_under(root):
    return {str(path.relative_to(root)) for path in root.rglob("*") if not path.is_dir()}


def size_of_png(path):
    header = path.read_bytes()[:24]
    if header[:8] != b"\x89PNG\r\n\x1a\n":
        raise ValueError(f"{path} is no PNG")
    return int.from_bytes(header[16:20], "big"), int.from_bytes(header[20:24], "big")


def ask(port, question, length):
    """Writes a frame to a terminal and reads `length` bytes of what comes back."""
    descriptor = os.open(port, os.O_RDWR | os.O_NOCTTY)
    try:
        tty.setraw(descriptor, termios.TCSANOW)
        os.write(descriptor, question)
        answer = b""
        while len(answer) < length and select.select([descriptor], [], [], SECONDS)[0]:
            answer += os.read(descriptor, length - len(answer))
        return answer
    finally:
        os.close(descriptor)


class Install(unittest.TestCase):
    def setUp(self):
        self.directory = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))

    def install(self, prefix, **environment):
        done = subprocess.run(
            [CMAKE, "--install", BUILD, "--prefix", str(prefix)],
            capture_output=True,
            text=True,
            env=os.environ | environment,
        )
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)

    def test_a_prefix_holds_everything_and_the_simulator_runs_from_there(self):
        prefix = self.directory / "a prefix"
        self.install(prefix)

        self.assertEqual(files_under(self.directory), {f"a prefix/{name}" for name in EXPECTED})
        for size in SIZES:
            icon = prefix / f"share/icons/hicolor/{size}x{size}/apps/velmorindal-setup.png"
            self.assertEqual(size_of_png(icon), (size, size))
        dongles = self.directory / "dongles"
        dongles.mkdir()
        command = [prefix / "bin/velmorindal-simulator", dongles]
        with subprocess.Popen(command, stdout=subprocess.PIPE, text=True) as program:
            with contextlib.ExitStack() as stack:
                stack.callback(program.kill)
                port = program.stdout.readline().rstrip("\n")
                self.assertEqual(port, str(dongles / "cu.usbmodem-simulated"))
                self.assertEqual(ask(port, bytes.fromhex("63627300"), 5), bytes.fromhex("7262730101"))
                program.send_signal(signal.SIGINT)
                self.assertEqual(program.wait(SECONDS), 0)
        self.assertEqual(list(dongles.iterdir()), [])

    def test_a_staging_directory_is_put_in_front_of_the_prefix(self):
        self.install("/opt/somewhere", DESTDIR=str(self.directory / "stage"))

        self.assertEqual(files_under(self.directory), {f"stage/opt/somewhere/{name}" for name in EXPECTED})


if __name__ == "__main__":
    unittest.main()
