#!/usr/bin/env python3
"""Shows that the check of the documents' names finds what is wrong, and passes what is right.

Usage: names_exist_test.py ROOT
"""

import pathlib
import sys
import tempfile
import unittest

import names_exist

ROOT = pathlib.Path(sys.argv.pop(1)).resolve()


class NamesExist(unittest.TestCase):
    tree = names_exist.Tree(ROOT)

    def found_in(self, text):
        with tempfile.TemporaryDirectory() as directory:
            document = pathlib.Path(directory) / "page.md"
            document.write_text(text, encoding="utf-8")
            return [name for name, _ in names_exist.problems(self.tree, document)]

    def test_passes_what_there_is(self):
        self.assertEqual(
            self.found_in(
                "`src/session`, `VelmorindalSwitch`, `VelmorindalSwitch::connect()`, `SerialPort.cpp`, "
                "`velmorindal-setup`, `.clang-format`, `0x63`, `src/session/*.h`, `scripts/test all`\n"
                "\n    scripts/run\n    cmake --preset release --target velmorindal-setup\n"
            ),
            [],
        )

    def test_finds_a_path_a_file_a_class_a_member_and_a_program_that_are_not_there(self):
        for name in (
            "src/gone",
            "Gone.cpp",
            "GoneClass",
            "gone_function()",
            "VelmorindalSwitch::noSuchMember()",
            "Gone::connect",
            "velmorindal-gone",
            "src/session/*.gone",
            ".gone-format",
            "scripts/gone all",
        ):
            self.assertEqual(self.found_in(f"Look at `{name}`.\n"), [name])

    def test_finds_a_link_that_leads_nowhere(self):
        self.assertEqual(self.found_in("[page](gone.md) [project](https://example.invalid/)\n"), ["gone.md"])

    def test_finds_what_a_command_calls_and_is_not_there(self):
        self.assertEqual(self.found_in("Try\n\n    scripts/gone\n"), ["scripts/gone"])
        self.assertEqual(self.found_in("```\ncmake --preset gone\n```\n"), ["gone"])
        self.assertEqual(self.found_in("```\nvelmorindal-gone /tmp\n```\n"), ["velmorindal-gone"])
        self.assertEqual(self.found_in("```\ncmake --build build --target gone\n```\n"), ["gone"])


if __name__ == "__main__":
    unittest.main()
