#!/usr/bin/env python3
"""Calls scripts/lint on made-up trees, with made-up tools in the place of those that take long.

Usage: lint_test.py SOURCE_DIRECTORY
"""

import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

LINT = pathlib.Path(sys.argv.pop(1)) / "scripts/lint"
FOLDERS = ("src", "simulator", "tests", "benchmarks", "fuzz")


class Lint(unittest.TestCase):
    def setUp(self):
        self.tree = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.bin = self.tree / "bin"
        for name in ("bash", "dirname", "git", "grep", "sed", "sort", "uniq"):
            self.bin.mkdir(exist_ok=True)
            (self.bin / name).symlink_to(shutil.which(name))
        for name in ("clang-format", "cmake", "pyflakes3"):
            self.program(self.bin / name, "")
        for name in ("black", "shellcheck"):
            self.program(self.bin / name, f'printf "%s\\n" "$@" >{name}_files\n')
        self.write("scripts/lint", LINT.read_text()).chmod(0o755)
        self.program(self.tree / "scripts/lint_together.py", 'printf "%s\\n" "$@" >linted\n')
        for folder in FOLDERS:
            self.write(f"{folder}/Of_{folder}.cpp", '#include "Own.h"\n#include <sys/types.h>\n')
        subprocess.run(["git", "init", "-q", self.tree], check=True)

    def program(self, path, body):
        path.write_text(f"#!{shutil.which('bash')}\n{body}")
        path.chmod(0o755)

    def write(self, name, text):
        file = self.tree / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text)
        return file

    def lint(self, *arguments):
        return subprocess.run(
            [self.tree / "scripts/lint", *arguments], env={"PATH": str(self.bin)}, text=True, capture_output=True
        )

    def test_accepts_a_clean_tree_and_lints_the_program_and_the_simulator(self):
        done = self.lint()

        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))
        self.assertEqual(
            (self.tree / "linted").read_text().split(),
            ["build/lint", "simulator/Of_simulator.cpp", "src/Of_src.cpp"],
        )

    def test_fails_where_a_lock_cannot_be_checked(self):
        self.write("src/Lock.h", "std::mutex mutex;\n")

        done = self.lint()

        self.assertEqual(done.returncode, 1)
        self.assertIn("Only the locks of Mutex.h can be checked.", done.stderr)

    def test_lints_all_folders_when_asked_to(self):
        self.assertEqual(self.lint("all").returncode, 0)
        linted = (self.tree / "linted").read_text().split()
        self.assertEqual(linted[:2], ["--deep", "build/lint"])
        self.assertEqual(len(linted), 2 + len(FOLDERS))

    def test_looks_at_each_script_in_its_language(self):
        self.write("tests/runner/needing", "#!/usr/bin/env bash\n")
        self.write("benchmarks/startup", "#!/usr/bin/env python3\n")
        self.write("tests/docs/names.py", 'text = """\n#!/usr/bin/env bash\n"""\n')
        self.write("README.md", "Scripts start so:\n#!/usr/bin/env python3\n")
        self.assertEqual(self.lint().returncode, 0)

        self.assertIn("tests/runner/needing", self.files_of("shellcheck"))
        self.assertNotIn("tests/docs/names.py", self.files_of("shellcheck"))
        self.assertIn("benchmarks/startup", self.files_of("black"))
        self.assertIn("tests/docs/names.py", self.files_of("black"))
        self.assertNotIn("README.md", self.files_of("black"))

    def files_of(self, tool):
        return (self.tree / f"{tool}_files").read_text().split()

    def test_fails_by_the_name_of_a_folder_that_is_not_there(self):
        for folder in FOLDERS:
            with self.subTest(folder):
                shutil.move(self.tree / folder, self.tree / "away")
                done = self.lint()
                shutil.move(self.tree / "away", self.tree / folder)

                self.assertEqual(done.returncode, 1)
                self.assertIn(f"no folder {folder}:", done.stderr)

    def test_fails_where_a_header_is_included_by_a_path(self):
        for path in ("../src/Own.h", "session/Own.h"):
            for folder in FOLDERS:
                with self.subTest(path=path, folder=folder):
                    bad = self.write(f"{folder}/Bad.cpp", f'#include "{path}"\n')
                    done = self.lint()
                    bad.unlink()

                    self.assertEqual(done.returncode, 1)
                    self.assertIn(f"{folder}/Bad.cpp:1:", done.stdout)

    def test_fails_where_two_headers_have_one_name(self):
        self.write("src/session/Own.h", "")
        self.assertEqual(self.lint().returncode, 0)
        self.write("tests/Own.h", "")
        done = self.lint()

        self.assertEqual(done.returncode, 1)
        self.assertIn("name Own.h", done.stderr)

    def test_fails_where_any_of_its_tools_does(self):
        tools = [self.bin / name for name in ("clang-format", "cmake", "shellcheck", "black", "pyflakes3")]
        for program in (*tools, self.tree / "scripts/lint_together.py"):
            with self.subTest(program.name):
                good = program.read_text()
                self.program(program, "exit 1\n")
                self.assertEqual(self.lint().returncode, 1)
                self.program(program, good.split("\n", 1)[1])


unittest.main()
