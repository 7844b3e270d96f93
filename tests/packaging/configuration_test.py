#!/usr/bin/env python3
"""Configures the tree as different people do, and looks at what would be built and installed.

Usage: configuration_test.py CMAKE GENERATOR SOURCE_DIRECTORY
"""

import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

SOURCE = sys.argv.pop(3)
GENERATOR = sys.argv.pop(2)
CMAKE = sys.argv.pop(1)
# What only tests and benchmarks need.
NOT_FOR_USERS = ("GTest", "Python3", "Boost", "Qt6Test", "Qt6SerialPort")


class Configured:
    """What a configuration would build, install and compile with."""

    def __init__(self, *options):
        with tempfile.TemporaryDirectory() as directory:
            build = pathlib.Path(directory)
            (build / ".cmake/api/v1/query").mkdir(parents=True)
            (build / ".cmake/api/v1/query/codemodel-v2").touch()
            done = subprocess.run(
                [CMAKE, "-G", GENERATOR, "-S", SOURCE, "-B", build, *options],
                text=True,
                stdout=subprocess.PIPE,
                stderr=subprocess.STDOUT,
            )
            if done.returncode != 0:
                raise AssertionError(f"{CMAKE} {options} ended with {done.returncode}:\n{done.stdout}")
            self.output = done.stdout
            answers = build / ".cmake/api/v1/reply"
            model = json.loads(next(answers.glob("codemodel-*.json")).read_text())["configurations"][0]
            targets = [json.loads((answers / each["jsonFile"]).read_text()) for each in model["targets"]]
            directories = [json.loads((answers / each["jsonFile"]).read_text()) for each in model["directories"]]
            self.programs = {each["name"] for each in targets if each["type"] == "EXECUTABLE"}
            self.installed_programs = {each["name"] for each in targets if "install" in each}
            self.installed_files = sum(len(each.get("installers", [])) for each in directories)
            self.commands = json.loads((build / "compile_commands.json").read_text())


class Configuration(unittest.TestCase):
    def test_a_plain_one_builds_the_two_programs_and_what_is_installed_with_them(self):
        plain = Configured(*(f"-DCMAKE_DISABLE_FIND_PACKAGE_{name}=ON" for name in NOT_FOR_USERS))

        self.assertEqual(plain.programs, {"velmorindal-setup", "velmorindal-simulator", "velmorindal-render-icon"})
        self.assertEqual(plain.installed_programs, {"velmorindal-setup", "velmorindal-simulator"})
        self.assertGreater(plain.installed_files, 10)

    def test_a_plain_one_is_optimised_and_not_strict_and_compiles_each_file_alone(self):
        for command in Configured().commands:
            self.assertRegex(command["command"], r" -O[23] ")
            self.assertNotIn("-Werror", command["command"])
            self.assertNotIn("unity", command["file"])

    def test_none_warns_those_who_work_on_it(self):
        everything = Configured("-DVELMORINDAL_TESTS=ON", "-DVELMORINDAL_BENCHMARKS=ON")

        self.assertNotIn("CMake Warning", everything.output)
        self.assertNotIn("Deprecat", everything.output)

    def test_on_other_systems_the_wizard_alone_is_built_and_installed(self):
        with tempfile.TemporaryDirectory() as directory:
            system = pathlib.Path(directory) / "Elsewhere.cmake"
            system.write_text("set(CMAKE_SYSTEM_NAME Elsewhere)\n")
            elsewhere = Configured(
                f"-DCMAKE_PROJECT_INCLUDE={system}", "-DVELMORINDAL_TESTS=ON", "-DVELMORINDAL_BENCHMARKS=ON"
            )

        self.assertEqual(elsewhere.programs, {"velmorindal-setup"})
        self.assertEqual(elsewhere.installed_programs, {"velmorindal-setup"})


if __name__ == "__main__":
    unittest.main()
