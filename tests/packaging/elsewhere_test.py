#!/usr/bin/env python3
"""Configures the tree as for a system that is not Linux, and looks at what would be built and installed there.

Usage: elsewhere_test.py CMAKE GENERATOR SOURCE_DIRECTORY
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


def output_of(*command):
    done = subprocess.run(list(map(str, command)), stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    if done.returncode != 0:
        raise AssertionError(f"{command} ended with {done.returncode}:\n{done.stdout}")
    return done.stdout


class Elsewhere(unittest.TestCase):
    def test_the_wizard_alone_is_built_and_installed(self):
        with tempfile.TemporaryDirectory() as directory:
            system = pathlib.Path(directory) / "Elsewhere.cmake"
            system.write_text("set(CMAKE_SYSTEM_NAME Elsewhere)\n")
            build = pathlib.Path(directory) / "build"
            answers = build / ".cmake/api/v1/reply"
            (build / ".cmake/api/v1/query").mkdir(parents=True)
            (build / ".cmake/api/v1/query/codemodel-v2").touch()
            output_of(CMAKE, "-G", GENERATOR, "-S", SOURCE, "-B", build, f"-DCMAKE_PROJECT_INCLUDE={system}",
                      "-DCMAKE_BUILD_TYPE=Release", "-DVELMORINDAL_BENCHMARKS=ON")

            targets = [json.loads(answer.read_text()) for answer in answers.glob("target-*.json")]
            self.assertEqual([target["name"] for target in targets if target["type"] == "EXECUTABLE"],
                             ["velmorindal-setup"])
            self.assertEqual([target["name"] for target in targets if "install" in target], ["velmorindal-setup"])


if __name__ == "__main__":
    unittest.main()
