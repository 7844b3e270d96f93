#!/usr/bin/env python3
"""Makes the Debian package and looks at it with Debian's own tools.

Usage: debian_package_test.py CPACK BUILD_DIRECTORY
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

BUILD = sys.argv.pop(2)
CPACK = sys.argv.pop(1)
LINTIAN = pathlib.Path(__file__).with_name("lintian_clean")


def output_of(*command):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    if done.returncode != 0:
        raise AssertionError(f"{command} ended with {done.returncode}:\n{done.stdout}")
    return done.stdout


class DebianPackage(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        directory = cls.enterClassContext(tempfile.TemporaryDirectory())
        # Whatever the umask of the build, everyone can read the package's directories.
        os.umask(0o077)
        made = output_of(CPACK, "--config", f"{BUILD}/CPackConfig.cmake", "-G", "DEB", "-B", directory)
        packages = list(pathlib.Path(directory).glob("*.deb"))
        assert len(packages) == 1, made
        cls.package = str(packages[0])

    def test_lintian_finds_nothing(self):
        self.assertEqual(output_of(LINTIAN, self.package), "")

    def test_depends_on_what_the_programs_are_linked_with_and_on_what_the_rule_runs(self):
        depends = re.split(r",\s*", output_of("dpkg-deb", "--field", self.package, "Depends").strip())
        for package in ("libc6", "libqt6widgets6", "libqt6svg6", "libstdc++6", "procps"):
            self.assertEqual([each.split()[0] for each in depends].count(package), 1, depends)

    def test_runs_nothing_as_root_when_it_is_installed_or_removed(self):
        with tempfile.TemporaryDirectory() as directory:
            output_of("dpkg-deb", "--control", self.package, directory)
            self.assertEqual({path.name for path in pathlib.Path(directory).iterdir()}, {"control", "md5sums"})

    def test_everything_belongs_to_root_and_nobody_else_can_write_it(self):
        lines = output_of("dpkg-deb", "--contents", self.package).splitlines()
        self.assertGreater(len(lines), 20)
        for line in lines:
            self.assertRegex(line, r"^(?:drwxr-xr-x|-rw-r--r--|-rwxr-xr-x) root/root ")
        programs = {re.search(r"\./\S+$", line)[0] for line in lines if line.startswith("-rwx")}
        self.assertEqual(programs, {"./usr/bin/velmorindal-setup", "./usr/bin/velmorindal-simulator"})


if __name__ == "__main__":
    unittest.main()
