#!/usr/bin/env python3
"""Builds presets and runs their tests: `run.py [all]`, called by scripts/test. The last line counts all tests.

Without a word, the preset check; with `all` also asan, tsan and the linter.
"""

import concurrent.futures
import os
import pathlib
import re
import subprocess
import sys
import threading

import cases
from stage import Stage

ROOT = pathlib.Path(__file__).resolve().parents[2]
# Many tests wait for other processes most of the time.
AT_ONCE = 3 * (os.cpu_count() or 1)
# What is run by hand is built as before a merge, so that it does not go stale.
TARGETS_OF_ALL = {"check": ("all", "by_hand")}
# The presets that have the fault matrix.
WITH_MATRIX = ("check", "asan")


class Count:
    """What the last line says."""

    def __init__(self):
        self.passed = self.failed = self.skipped = 0

    def add(self, passed=0, failed=0, skipped=0):
        self.passed += passed
        self.failed += failed
        self.skipped += skipped

    def line(self):
        return f"{self.passed} passed, {self.failed} failed" + (f", {self.skipped} skipped" if self.skipped else "")


def run(command, stage, environment=None):
    """Runs a command that says how far it is, and returns whether it succeeded and what it said."""
    said = []
    with subprocess.Popen(
        command,
        cwd=ROOT,
        env=environment,
        text=True,
        errors="replace",
        stdin=subprocess.DEVNULL,
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
    ) as process:
        for line in process.stdout:
            said.append(line)
            stage.read(line)
    return process.returncode == 0, "".join(said)


def build(preset, count, targets=("all",)):
    """Returns whether the targets could be built."""
    with Stage(f"Building {preset}", "steps") as stage:
        configured, said = run(["cmake", "--preset", preset], stage)
        built = configured
        if configured:
            environment = os.environ | {"NINJA_STATUS": "[%f/%t] "}
            built, said = run(["cmake", "--build", "--preset", preset, "--target", *targets], stage, environment)
    if not built:
        print(*[line for line in said.splitlines() if not re.match(r"\[\d+/\d+\] [A-Z]", line)][-60:], sep="\n")
        print(f"FAILED: the {preset} build")
        count.add(failed=1)
    return built


def environment_of_tests():
    environment = os.environ | {"QT_QPA_PLATFORM": "offscreen"}
    environment["TSAN_OPTIONS"] = f"halt_on_error=1 {environment.get('TSAN_OPTIONS', '')}".strip()
    return environment


class Tests:
    """The tests of all presets, run side by side. They can begin before the last preset is built."""

    def __init__(self):
        self.pool = concurrent.futures.ThreadPoolExecutor(AT_ONCE)
        self.runs = {}
        self.lock = threading.Lock()
        self.done = self.total = self.failed = 0
        self.stage = None

    def start(self, jobs):
        with self.lock:
            self.total += sum(len(job.names) for job in jobs)
        for job in jobs:
            self.runs[self.pool.submit(job.run, self.ended)] = job

    def ended(self, _, how):
        with self.lock:
            self.done += 1
            self.failed += how == "FAILED"
            self.show()

    def show(self):
        if self.stage:
            self.stage.step(self.done, self.total, self.failed)

    def finish(self, presets):
        """Waits for all of them. Returns the outcomes of each preset."""
        outcomes = {preset: [] for preset in presets}
        with Stage(f"Testing {', '.join(presets)}", "tests") as stage:
            with self.lock:
                self.stage = stage
                self.show()
            for each in concurrent.futures.as_completed(self.runs):
                outcomes[self.runs[each].preset].append(each.result())
        self.pool.shutdown()
        return outcomes


def report(preset, outcomes, count):
    """Counts what a preset's tests have come to, and shows what those printed that failed."""
    log = "".join(each.output for each in outcomes)
    (ROOT / "build" / preset / "tests.log").write_text(log)
    passed, failed, skipped = (sum(len(each[kind]) for each in outcomes) for kind in range(3))
    for each in outcomes:
        if each.failed:
            print(*each.output.splitlines()[-200:], sep="\n")
    for reason in sorted(
        {line for each in outcomes if each.skipped for line in each.output.splitlines() if line.startswith("skipped: ")}
    ):
        print(f"{preset}: {reason}")
    for name in sorted(name for each in outcomes for name in each.failed):
        print(f"FAILED in {preset}: {name}")
    print(f"{preset}: {passed} of {passed + failed + skipped} tests passed")
    if passed + failed == 0:
        print(f"FAILED: the {preset} preset ran no test")
        failed += 1
    count.add(passed, failed, skipped)
    report_amounts(
        preset, log, sum("FaultMatrixTest." in name for each in outcomes for name in each.passed + each.failed), count
    )


def report_amounts(preset, log, cells_run, count):
    """Says how much the tests that search went through, and sees that every cell of the fault matrix was run, where the
    preset has it."""
    for line in re.findall(r"(?m)^.* inputs replayed$", log):
        print(f"{preset}: {line}")
    for what, pattern in (
        ("Monkey: {} steps", r"(?m)^Monkey: (\d+) steps, seed "),
        ("Schedules explored: {}", r"(?m)^Schedules explored: (\d+) "),
    ):
        if amounts := re.findall(pattern, log):
            print(f"{preset}:", what.format(sum(map(int, amounts))))
    if preset not in WITH_MATRIX:
        return
    cells = re.search(r"(?m)^Fault matrix: (\d+) cells, ", log)
    if cells and int(cells[1]) == cells_run:
        print(f"{preset}: Fault matrix: {cells_run} cells, every one run")
    else:
        print(
            f"FAILED: of the {cells[1] if cells else 'unknown'} cells of the fault matrix {cells_run} were run in {preset}"
        )
        count.add(failed=1)


class Lint:
    """The linter, beside the tests: many of those wait most of the time."""

    def __init__(self):
        self.stage = Stage("Linting", "files", shown=False)
        self.pool = concurrent.futures.ThreadPoolExecutor(1)
        self.result = self.pool.submit(run, ["scripts/lint"], self.stage, os.environ | {"VELMORINDAL_PROGRESS": "1"})

    def finish(self, count):
        with self.stage:
            clean, said = self.result.result()
        self.pool.shutdown()
        if not clean:
            print(*[line for line in said.splitlines() if not re.match(r"\[\d+/\d+\]", line)][-200:], sep="\n")
            print("FAILED: sources are formatted, layered and lint-free")
        count.add(passed=clean, failed=not clean)


def main():
    everything = sys.argv[1:] == ["all"]
    if sys.argv[1:] and not everything:
        sys.exit("usage: run.py [all]")
    count = Count()
    tests = Tests()
    built, shares = [], []
    for preset in ["check", "asan", "tsan"] if everything else ["check"]:
        if build(preset, count, TARGETS_OF_ALL.get(preset, ("all",)) if everything else ("all",)):
            built.append(preset)
            without = () if everything else ("before_merge",)
            jobs = cases.jobs_of(preset, ROOT / "build" / preset, environment_of_tests(), without)
            # A job of one long test mostly waits, so it begins while the next preset is built.
            tests.start([job for job in jobs if not job.is_share])
            shares += [job for job in jobs if job.is_share]
    tests.start(shares)
    linter = Lint() if everything else None
    if built:
        for preset, outcomes in tests.finish(built).items():
            report(preset, outcomes, count)
    if linter:
        linter.finish(count)
    print(count.line())
    sys.exit(count.failed > 0)


if __name__ == "__main__":
    main()
