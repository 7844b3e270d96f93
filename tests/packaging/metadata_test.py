#!/usr/bin/env python3
"""Checks that the package's metadata says what the program says.

Usage: metadata_test.py ROOT VERSION
"""

import pathlib
import re
import sys
import unittest
import xml.etree.ElementTree as ElementTree

VERSION = sys.argv.pop(2)
ROOT = pathlib.Path(sys.argv.pop(1))
PACKAGING = ROOT / "packaging"


class Metadata(unittest.TestCase):
    entry = (PACKAGING / "velmorindal-setup.desktop").read_text()
    component = ElementTree.parse(PACKAGING / "invalid.velmorindal.setup.metainfo.xml.in").getroot()

    def test_the_newest_release_and_change_are_this_version(self):
        self.assertEqual(self.component.find("releases/release").get("version"), VERSION)
        self.assertTrue((PACKAGING / "changelog").read_text().startswith(f"velmorindal-setup ({VERSION}) "))

    def test_the_window_belongs_to_the_desktop_entry(self):
        setup = (ROOT / "src/app/ApplicationSetup.cpp").read_text()
        self.assertIn('setDesktopFileName(QStringLiteral("velmorindal-setup"))', setup)
        self.assertIn('setApplicationName(QStringLiteral("velmorindal-setup"))', setup)
        self.assertIn("\nStartupWMClass=velmorindal-setup\n", self.entry)
        self.assertEqual(self.component.findtext("launchable"), "velmorindal-setup.desktop")

    def test_both_say_the_same_categories(self):
        categories = re.search(r"^Categories=(.*);$", self.entry, re.MULTILINE)[1].split(";")
        self.assertEqual([each.text for each in self.component.findall("categories/category")], categories)

    def test_every_screenshot_is_a_picture_that_the_tour_takes(self):
        tour = (ROOT / "tests/wizard/Tour.cpp").read_text()
        taken = set(re.findall(r'takePicture\(driver, "([^"]+)"\)', tour))
        shown = [each.text.rsplit("/", 1)[1].removesuffix(".png") for each in self.component.iter("image")]
        self.assertTrue(shown)
        self.assertLessEqual(set(shown), taken)

    def test_no_licence_is_claimed_that_was_not_chosen(self):
        self.assertEqual(self.component.findtext("project_license"), "LicenseRef-proprietary")
        self.assertIn("License: LicenseRef-proprietary\n", (PACKAGING / "copyright").read_text())

    def test_every_address_is_below_a_name_that_can_never_exist(self):
        format_url = "https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/"
        for file in sorted(PACKAGING.iterdir()):
            text = file.read_text().replace(format_url, "")
            for host in re.findall(r"(?:://|\w@)([\w.-]+)", text):
                self.assertTrue(host.endswith(".invalid"), f"{file.name}: {host}")


if __name__ == "__main__":
    unittest.main()
