#!/usr/bin/env python3
"""Calls both programs with every kind of command line, without a display.

Usage: command_line_test.py DIRECTORY_OF_THE_PROGRAMS VERSION
"""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

VERSION = sys.argv.pop(2)
PROGRAMS = pathlib.Path(sys.argv.pop(1))
NAMES = [name for name in ("velmorindal-setup", "velmorindal-simulator") if (PROGRAMS / name).exists()]
# A program that opens a window or serves instead never ends.
SECONDS = 600


class CommandLine(unittest.TestCase):
    def setUp(self):
        self.directory = self.enterContext(tempfile.TemporaryDirectory())

    def call(self, name, *arguments):
        environment = {
            each: value
            for each, value in os.environ.items()
            if each not in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM")
        }
        done = subprocess.run(
            [PROGRAMS / name, *arguments],
            env=environment,
            cwd=self.directory,
            capture_output=True,
            text=True,
            timeout=SECONDS,
        )
        self.assertEqual(os.listdir(self.directory), [])
        return done.returncode, done.stdout, done.stderr

    def test_help_names_every_option(self):
        for name in NAMES:
            for option in ("--help", "-h"):
                status, output, errors = self.call(name, option)
                self.assertEqual((status, errors), (0, ""), name)
                self.assertIn("Usage: ", output.splitlines()[0])
                self.assertIn("-h, --help", output)
                self.assertIn("-v, --version", output)
                self.assertRegex(output, r"--(record|replay) <?FILE")

    def test_the_version_is_the_projects(self):
        for name in NAMES:
            for option in ("--version", "-v"):
                self.assertEqual(self.call(name, option), (0, f"{name} {VERSION}\n", ""))

    def test_what_is_unknown_is_refused_in_one_line(self):
        for name in NAMES:
            for arguments in (
                ["--nonsense"],
                ["-x"],
                ["--help=yes"],
                ["--help", "--nonsense"],
                ["-platform", "offscreen"],
                ["a", "b"],
                ["--record"],
                ["--replay"],
                ["--record", "a", "--record", "b"],
                ["--replay", "", "a"],
                ["--replay", "a", "--replay=b", "c"],
            ):
                status, output, errors = self.call(name, *arguments)
                self.assertEqual((status, output), (2, ""), (name, arguments, errors))
                self.assertRegex(errors, rf"^{name}: [^\n]*\. Usage: {name} [^\n]*\n$")

    def test_the_wizard_takes_no_argument_and_the_simulator_one(self):
        if "velmorindal-setup" in NAMES:
            status, _, errors = self.call("velmorindal-setup", "word")
            self.assertEqual((status, errors[:44]), (2, "velmorindal-setup: Unknown argument 'word'. "))
        status, _, errors = self.call("velmorindal-simulator")
        self.assertEqual((status, errors[:36]), (2, "velmorindal-simulator: No directory."))
        status, _, errors = self.call("velmorindal-simulator", "--", "--help")
        self.assertEqual(status, 1)
        self.assertIn("--help", errors)

    def test_a_record_that_cannot_be_made_is_refused_before_a_window_opens(self):
        if "velmorindal-setup" in NAMES:
            for name in ("missing/file", "missing/\u0161\u00e9\u20ac", ""):
                status, output, errors = self.call("velmorindal-setup", f"--record={name}")
                self.assertEqual((status, output), (2, ""), errors)
                self.assertRegex(
                    errors,
                    rf"^velmorindal-setup: cannot write the record {name}: No such file or directory\. Usage: [^\n]*\n$",
                )


if __name__ == "__main__":
    unittest.main()
