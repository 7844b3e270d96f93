#!/usr/bin/env python3
"""Calls scripts/setup on made-up systems: what is installed, what apt offers and whether it can be reached.

Usage: setup_test.py SOURCE_DIRECTORY
"""

import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

SETUP = pathlib.Path(sys.argv.pop(1)) / "scripts/setup"
ORDINARY = "bash cat dirname env grep head id mktemp rm sed sort tail".split()
# Each made-up program reads what it answers from the directory that it is in.
PROGRAMS = {
    "dpkg-query": """
        case "$*" in
            *Status*) while read -r name version; do echo "installed $name"; done <"$here/installed" ;;
            *) while read -r name version; do [ "$name" != "${@: -1}" ] || echo "$version"; done <"$here/installed" ;;
        esac""",
    "dpkg": '[ "$2" != "$4" ] && [ "$(printf "%s\\n" "$2" "$4" | sort -V | head -n 1)" = "$2" ]',
    "apt-cache": """
        while read -r name version; do
            [ "$name" != "$2" ] || { echo "  Candidate: $version"; exit; }
        done <"$here/offered"
        echo "  Candidate: (none)" """,
    "apt-get": """
        echo "$*" >>"$here/called"
        cat "$here/said"
        exit "$(cat "$here/status")" """,
    "sudo": '"$@"',
}
BUILD = "g++ cmake ninja-build qt6-base-dev qt6-svg-dev libutfcpp-dev fonts-dejavu-core"
VERSIONS = {"cmake": "3.25.1-1", "qt6-base-dev": "6.4.2+dfsg-10"}


class Setup(unittest.TestCase):
    def setUp(self):
        self.bin = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        for name in ORDINARY:
            (self.bin / name).symlink_to(shutil.which(name))

    def system(self, installed="", offered="", said="", status=0, versions=None):
        versions = VERSIONS | (versions or {})
        for name, body in PROGRAMS.items():
            (self.bin / name).write_text(f"#!/usr/bin/env bash\nhere={self.bin}\n{body}\n")
            (self.bin / name).chmod(0o755)
        for file, names in (("installed", installed), ("offered", offered)):
            (self.bin / file).write_text("".join(f"{name} {versions.get(name, '1')}\n" for name in names.split()))
        (self.bin / "said").write_text(said)
        (self.bin / "status").write_text(str(status))

    def setup(self, *arguments):
        """Returns the status, both outputs, and the calls of apt-get."""
        done = subprocess.run([SETUP, *arguments], env={"PATH": str(self.bin)}, capture_output=True, text=True)
        called = self.bin / "called"
        return done.returncode, done.stdout, done.stderr, called.read_text().splitlines() if called.exists() else []

    def refused(self, *arguments):
        """Returns the one line in which it was refused."""
        status, output, errors, _ = self.setup(*arguments)
        self.assertNotEqual(status, 0)
        self.assertEqual((output, errors.count("\n")), ("", 1), errors)
        return errors.rstrip("\n")

    def test_says_and_does_nothing_where_all_is_there(self):
        self.system(installed=BUILD)
        self.assertEqual(self.setup("run"), (0, "", "", []))

    def test_installs_what_is_missing_and_nothing_else(self):
        self.system(installed="g++ cmake ninja-build qt6-base-dev", offered=BUILD)
        status, output, errors, called = self.setup("run")
        self.assertEqual((status, errors), (0, ""))
        self.assertEqual(output, "Installing: qt6-svg-dev libutfcpp-dev fonts-dejavu-core\n")
        self.assertEqual(
            called, ["update", "install -y --no-install-recommends qt6-svg-dev libutfcpp-dev fonts-dejavu-core"]
        )

    def test_takes_the_name_that_the_system_has(self):
        self.system(offered=BUILD.replace("qt6-svg-dev", "libqt6svg6-dev"))
        self.assertIn(" libqt6svg6-dev ", self.setup("run")[1])
        self.system(installed=BUILD.replace("qt6-svg-dev", "libqt6svg6-dev"))
        self.assertEqual(self.setup("run")[:3], (0, "", ""))

    def test_goes_on_without_what_a_check_can_do_without(self):
        self.system(offered=f"{BUILD} clang git procps python3 libgtest-dev libgmock-dev python3-serial socat")
        status, output, errors, _ = self.setup("test")
        self.assertEqual((status, errors), (0, ""))
        self.assertEqual(
            output.split()[-8:], "clang git procps python3 libgtest-dev libgmock-dev python3-serial socat".split()
        )

    def test_names_what_the_system_does_not_have(self):
        self.system(offered=BUILD.replace("libutfcpp-dev", ""))
        self.assertEqual(self.refused("run"), "scripts/setup: apt offers no libutfcpp-dev.")

    def test_says_that_the_network_is_missing(self):
        self.system(said="Err:1 http://registry Temporary failure resolving 'registry'\n")
        self.assertIn("; the package registry cannot be reached.", self.refused("run"))

    def test_says_that_the_network_has_gone_before_the_packages_came(self):
        self.system(offered=BUILD, said="E: Failed to fetch g++  Could not connect to registry\n", status=100)
        status, _, errors, _ = self.setup("run")
        self.assertEqual((status, errors), (1, "scripts/setup: the package registry cannot be reached.\n"))

    def test_refuses_a_toolkit_that_is_too_old_installed_or_offered(self):
        old = {"qt6-base-dev": "6.2.4+dfsg-2"}
        self.system(installed=BUILD, versions=old)
        line = "scripts/setup: Qt is too old here: 6.2.4+dfsg-2, and 6.4 is the least."
        self.assertEqual(self.refused("run"), line)
        self.system(offered=BUILD, versions=old)
        self.assertEqual(self.refused("run"), line)

    def test_refuses_a_build_tool_that_is_too_old(self):
        self.system(installed=BUILD, versions={"cmake": "3.22.1"})
        self.assertIn("CMake is too old here: 3.22.1", self.refused("run"))

    def test_names_all_that_is_missing_where_there_is_no_apt(self):
        line = self.refused("run")
        for name in ("no apt", "GCC 12 or Clang 14", "Ninja", "CMake 3.25", "Qt 6.4", "UTF8-CPP"):
            self.assertIn(name, line)

    def test_names_what_several_purposes_need_once(self):
        self.assertEqual(self.refused("test", "lint").count("Clang 14,"), 2, "a compiler or Clang; Clang")

    def link_build_tools(self):
        for name in ("cmake", "ninja", "c++", "g++", "as", "ld"):
            if shutil.which(name):
                (self.bin / name).symlink_to(shutil.which(name))

    def test_goes_on_where_there_is_no_apt_and_nothing_is_missing(self):
        self.link_build_tools()
        self.assertEqual(self.setup("run")[:3], (0, "", ""))

    def test_searches_for_the_libraries_whatever_else_is_missing(self):
        self.link_build_tools()
        self.assertRegex(self.refused("package"), r"first: dpkg-dev\.$")

    def test_refuses_an_unknown_purpose(self):
        status, output, errors, _ = self.setup("nonsense")
        self.assertEqual((status, output), (2, ""))
        self.assertRegex(errors, r"^usage: [^\n]*\n$")


if __name__ == "__main__":
    unittest.main()
