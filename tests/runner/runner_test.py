#!/usr/bin/env python3
"""Gives the runner programs that end in every way, and checks that each of their tests is counted once."""

import io
import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from unittest import mock

import cases
from stage import Stage

HERE = pathlib.Path(__file__).parent
# A program that answers as GoogleTest does. Each of its tests is a name and what it does.
PROGRAM = """
import os, sys
tests = {tests!r}
if "--gtest_list_tests" in sys.argv:
    print("Suite.")
    for name, _ in tests:
        print("  " + name)
    sys.exit({listing})
shard, shards = (int(os.environ.get("GTEST_" + each, default)) for each, default in
                 (("SHARD_INDEX", 0), ("TOTAL_SHARDS", 1)))
for number, (name, action) in enumerate(tests):
    if number % shards == shard:
        print("[ RUN      ] Suite." + name, flush=True)
        how, _, rest = action.partition(":")
        exec(rest)
        print("said without an end of line", end="")
        print("[" + how + "] Suite." + name + (", where GetParam() = 1" if "FAILED" in how else "") + " (0 ms)", flush=True)
sys.exit({status})
"""
PASS = "       OK :"
FAIL = "  FAILED  :"
SKIP = "  SKIPPED :"
CRASH = PASS + "os.abort()"
HANG = (
    PASS
    + "import pathlib, subprocess; pathlib.Path(__file__).with_name('hangs').touch(); subprocess.run(['sleep', '1000'])"
)


class Runner(unittest.TestCase):
    def setUp(self):
        self.directory = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))

    def run_program(self, *actions, status=0, listing=0):
        """Returns the numbers of tests that passed, failed and were skipped, and what was printed."""
        program = self.directory / "program.py"
        program.write_text(
            PROGRAM.format(
                tests=[(f"Test{n}", action) for n, action in enumerate(actions)], status=status, listing=listing
            )
        )
        return self.run_test([sys.executable, str(program)], "LABELS googletest")

    def run_test(self, command, *properties):
        quoted = " ".join(f'"{each}"' for each in command)
        (self.directory / "CTestTestfile.cmake").write_text(
            f"add_test(each {quoted})\n"
            + "".join(f"set_tests_properties(each PROPERTIES {each})\n" for each in properties)
        )
        jobs = cases.jobs_of("preset", self.directory, os.environ)
        reported = []
        outcomes = [job.run(lambda name, how: reported.append(name)) for job in jobs]
        names = [name for each in outcomes for kind in each[:3] for name in kind]
        self.assertEqual(sorted(reported), sorted(names))
        self.assertEqual(sorted(names), sorted(name for job in jobs for name in job.names))
        return (
            *(sum(len(each[kind]) for each in outcomes) for kind in range(3)),
            "".join(each.output for each in outcomes),
        )

    def test_tests_that_pass_fail_and_are_skipped(self):
        self.assertEqual(self.run_program(PASS, FAIL, SKIP)[:3], (1, 1, 1))

    def test_every_share_of_a_program_of_many_tests(self):
        self.assertEqual(self.run_program(*([PASS, FAIL, PASS, SKIP, PASS] * 3))[:3], (9, 3, 3))

    def test_a_crash_fails_its_test_and_those_that_were_to_come(self):
        passed, failed, skipped, output = self.run_program(PASS, CRASH, PASS)
        self.assertEqual((passed, failed, skipped), (1, 2, 0))
        self.assertIn("SIGABRT", output)

    def test_a_silence_fails_like_a_crash_and_takes_the_processes_of_the_test_with_it(self):
        hangs = self.directory / "hangs"

        class WatchOfAHang(cases.Watch):
            """Counts from the moment at which the program hangs."""

            def watch(self):
                while not hangs.exists() and not self.ended.wait(0.01):
                    pass
                self.start = time.monotonic()
                super().watch()

        for name, value in (("SILENCE", 1), ("Watch", WatchOfAHang)):
            self.enterContext(mock.patch.object(cases, name, value))
        passed, failed, skipped, output = self.run_program(PASS, HANG)
        self.assertEqual((passed, failed, skipped), (1, 1, 0))
        self.assertIn("was ended: it had gone on for 1 s", output)

    def test_a_program_that_fails_after_its_tests_have_passed(self):
        self.assertEqual(self.run_program(PASS, PASS, status=1)[:3], (1, 1, 0))

    def test_a_program_without_tests_fails(self):
        self.assertEqual(self.run_program()[:3], (0, 1, 0))

    def test_a_program_that_cannot_list_its_tests_fails(self):
        self.assertEqual(self.run_program(PASS, PASS, listing=1, status=1)[:3], (0, 1, 0))

    def test_a_check_passes_fails_or_is_skipped_by_its_status(self):
        for status, counts in ((0, (1, 0, 0)), (3, (0, 1, 0)), (77, (0, 0, 1))):
            found = self.run_test(["sh", "-c", f"exit {status}"], "SKIP_RETURN_CODE 77")
            self.assertEqual(found[:3], counts)

    def test_a_check_that_takes_too_long_or_is_not_there_fails(self):
        self.assertEqual(self.run_test(["sleep", "1000"], "TIMEOUT 1")[:3], (0, 1, 0))
        self.assertEqual(self.run_test([str(self.directory / "missing")])[:3], (0, 1, 0))

    def test_a_check_has_its_directory_and_environment(self):
        place = self.directory / "place"
        found = self.run_test(
            ["sh", "-c", "pwd; echo $WORD"], f'WORKING_DIRECTORY "{place}"', "ENVIRONMENT WORD=spoken"
        )
        self.assertEqual(found[3], f"{place}\nspoken\n")

    def test_the_checks_that_cost_most_come_first(self):
        (self.directory / "CTestTestfile.cmake").write_text(
            "".join(f"add_test({name} true)\n" for name in ("short", "long", "medium"))
            + "set_tests_properties(long PROPERTIES COST 30)\nset_tests_properties(medium PROPERTIES COST 2)\n"
        )
        jobs = cases.jobs_of("preset", self.directory, os.environ)
        self.assertEqual([job.name for job in jobs], ["long", "medium", "short"])

    def test_what_has_a_label_that_is_not_wanted_is_left_out(self):
        (self.directory / "CTestTestfile.cmake").write_text(
            "add_test(always true)\nadd_test(late true)\nset_tests_properties(late PROPERTIES LABELS before_merge)\n"
        )
        for without, names in (((), ["always", "late"]), (("before_merge",), ["always"])):
            jobs = cases.jobs_of("preset", self.directory, os.environ, without)
            self.assertEqual([job.name for job in jobs], names)

    def test_what_a_check_needs_and_is_missing_skips_it(self):
        needing = str(HERE / "needing")
        found = self.run_test([needing, "sh", "no-such-program", "--", "false"], "SKIP_RETURN_CODE 77")
        self.assertEqual(found, (0, 0, 1, "skipped: there is no no-such-program here\n"))
        self.assertEqual(
            self.run_test([needing, "python3:no_such_module", "--", "false"], "SKIP_RETURN_CODE 77")[:3], (0, 0, 1)
        )
        self.assertEqual(
            self.run_test([needing, "sh", "python3:os", "--", "true"], "SKIP_RETURN_CODE 77")[:3], (1, 0, 0)
        )


class Said(unittest.TestCase):
    def said(self, output):
        with Stage("Building", "steps", output, clock=iter([7, 19]).__next__) as stage:
            for line in ("[1/2] Compiling", "warning: [7/9]", "[2/2] Linking"):
                stage.read(line)
        return output.getvalue()

    def test_elsewhere_one_line_for_a_stage(self):
        self.assertEqual(self.said(io.StringIO()), "Building ... 2 of 2 steps in 12 s\n")

    def test_on_a_terminal_the_line_renews_itself(self):
        terminal = io.StringIO()
        terminal.isatty = lambda: True
        said = self.said(terminal)
        self.assertEqual(
            [part for part in said.split("\r\033[K") if part][1:],
            ["Building: 1 of 2 steps", "Building: 2 of 2 steps", "Building: 2 of 2 steps in 12 s\n"],
        )

    def test_what_is_not_shown_yet_takes_its_time_and_says_nothing(self):
        terminal = io.StringIO()
        terminal.isatty = lambda: True
        stage = Stage("Linting", "files", terminal, shown=False, clock=iter([7, 19]).__next__)
        stage.step(1, 2)
        self.assertEqual(terminal.getvalue(), "")
        with stage:
            stage.step(2, 2)
        self.assertEqual(
            [part for part in terminal.getvalue().split("\r\033[K") if part],
            ["Linting: 1 of 2 files", "Linting: 2 of 2 files", "Linting: 2 of 2 files in 12 s\n"],
        )


def runs(process):
    """Whether the process runs; one that has ended and that no parent has reaped does not."""
    try:
        return pathlib.Path(f"/proc/{process}/stat").read_text().rpartition(")")[2].split()[0] != "Z"
    except FileNotFoundError:
        return False


class Busy(unittest.TestCase):
    def test_the_load_is_there_beside_the_command_and_gone_after_it_and_the_status_is_the_commands(self):
        count = "ps -o stat=,ni= --ppid $PPID; exit 3"
        done = subprocess.run(
            [sys.executable, "-B", HERE / "busy.py", "sh", "-c", count],
            capture_output=True,
            text=True,
            start_new_session=True,
        )
        self.assertEqual(done.returncode, 3, done.stderr)
        self.assertEqual(len(done.stdout.splitlines()), 8 + 1 + 1, done.stdout)

    def test_the_load_ends_even_where_the_process_that_made_it_is_killed(self):
        with subprocess.Popen(
            [sys.executable, "-B", HERE / "busy.py", "sh", "-c", "echo up; sleep 60"],
            stdout=subprocess.PIPE,
            text=True,
            start_new_session=True,
        ) as busy:
            self.assertEqual(busy.stdout.readline(), "up\n")
            load = self.loops_of(busy.pid)
            self.assertEqual(len(load), 9)
            busy.kill()
        # The command that it ran is left, and holds the pipes.
        self.addCleanup(os.killpg, busy.pid, signal.SIGKILL)
        deadline = time.monotonic() + 600
        while time.monotonic() < deadline and any(map(runs, load)):
            time.sleep(0.05)
        self.assertEqual(list(filter(runs, load)), [])

    @staticmethod
    def loops_of(parent):
        listed = subprocess.run(
            ["ps", "-o", "pid=,comm=", "--ppid", str(parent)], capture_output=True, text=True
        ).stdout
        return [line.split()[0] for line in listed.splitlines() if line.split()[1] != "sh"]


if __name__ == "__main__":
    unittest.main()
