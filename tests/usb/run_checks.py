#!/usr/bin/env python3
"""Runs the checks in the virtual machine, as root: one line for each, and a count at the end.

Usage: run_checks.py [NAME...]
       run_checks.py --list

NAME is a check's name or the start of some; without one all of them run. Each leaves its programs' output in logs/.
With --list, on any machine, names and describes the checks.
"""

import contextlib
import importlib
import pathlib
import signal
import sys
import time
import traceback

sys.path.append(str(pathlib.Path(__file__).resolve().parents[1] / "packaging"))

from bench import CHECKS, LOGS, Bench, Machine
from waiting import Failed

for _subject in ("program", "line", "closing", "polling", "modem_manager", "people", "time"):
    importlib.import_module(f"checks_{_subject}")

LONGEST = 600
"""Seconds for one check."""


def too_long(*_):
    raise Failed(f"did not end within {LONGEST} s")


def passes(machine, name):
    statement, function = CHECKS[name]
    started = time.monotonic()
    note, failure = "", None
    signal.alarm(LONGEST)
    try:
        with Bench(machine, name) as bench:
            try:
                function(bench)
            finally:
                note = bench.note
    except Exception as error:  # Whatever goes wrong fails this check and no other.
        failure = error
        (LOGS / f"{name}.trace").write_text(traceback.format_exc())
    finally:
        signal.alarm(0)
    notes = f"{note}, {time.monotonic() - started:.0f} s" if note else f"{time.monotonic() - started:.0f} s"
    print(f"{'FAILED' if failure else 'passed'}  {name}: {statement} ({notes})", flush=True)
    if failure:
        print(
            f"        {type(failure).__name__ + ': ' if not isinstance(failure, Failed) else ''}{failure}", flush=True
        )
    return failure is None


def main():
    if sys.argv[1:] == ["--list"]:
        for name, (statement, _) in CHECKS.items():
            print(f"{name}: {statement}")
        return
    unknown = [name for name in sys.argv[1:] if not any(each.startswith(name) for each in CHECKS)]
    if unknown:
        sys.exit(f"no check is called {', '.join(unknown)}; there are: {' '.join(CHECKS)}")
    chosen = [name for name in CHECKS if len(sys.argv) == 1 or name.startswith(tuple(sys.argv[1:]))]
    LOGS.mkdir(parents=True, exist_ok=True)
    signal.signal(signal.SIGALRM, too_long)
    with contextlib.ExitStack() as stack:
        machine = Machine(stack)
        passed = sum(passes(machine, name) for name in chosen)
    print(f"{passed} passed, {len(chosen) - passed} failed")
    sys.exit(passed != len(chosen))


if __name__ == "__main__":
    main()
