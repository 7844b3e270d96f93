#!/usr/bin/env python3
"""Runs the project's scripts in a clean system of each release, and prints a table of what became of them.

Usage: unshare --mount --propagation private --pid --fork --mount-proc try_systems.py SOURCE ROOTS RESULTS NAME...

The systems are made in the directory ROOTS; the caller removes it. RESULTS gets what was printed in each, and its
package. For root.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import time

from bare_dev import make_bare_dev, mount

COLUMNS = "{:<10} {:<12} {:<8} {:<7} {:>7} {:>7} {:>8} {:<8} {:>7}"
HEADINGS = ("system", "compiler", "Qt", "run", "passed", "failed", "skipped", "package", "minutes")
COUNTS = re.compile(r"(\d+) passed, (\d+) failed(?:, (\d+) skipped)?")


class System:
    def __init__(self, name, root, log):
        self.root, self.log = root, log
        self.environment = {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "HOME": "/root", "LC_ALL": "C.UTF-8"}
        self.environment |= {each: value for each, value in os.environ.items() if each.lower().endswith("_proxy")}
        self.call("debootstrap", "--variant=minbase", name, root)
        # A mirror that lags behind is good enough here.
        (root / "etc/apt/apt.conf.d/00lagging-mirror").write_text('Acquire::Check-Valid-Until "false";\n')
        # `unshare` inside needs its root to be a mount point.
        mount("--bind", root, root)
        mount("-t", "proc", "proc", root / "proc")
        mount("--rbind", "/sys", root / "sys")
        make_bare_dev(root / "dev")

    def call(self, *command):
        done = subprocess.run(
            list(map(str, command)),
            env=self.environment,
            stdin=subprocess.DEVNULL,
            stdout=self.log,
            stderr=subprocess.STDOUT,
        )
        if done.returncode != 0:
            raise RuntimeError(f"{command[0]} ended with {done.returncode}")

    def inside(self, command):
        """Runs a command in the tree there. Returns whether it succeeded, and what it printed."""
        self.log.write(f"--- {command}\n")
        self.log.flush()
        done = subprocess.run(
            ["chroot", self.root, "sh", "-c", f"cd /velmorindal && {command}"],
            env=self.environment,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
            errors="replace",
        )
        self.log.write(done.stdout)
        self.log.flush()
        return done.returncode == 0, done.stdout

    def version(self, command):
        found = re.search(r"\d+\.\d+(\.\d+)?", self.inside(command)[1])
        return found[0] if found else "?"


def try_scripts(name, source, root, results):
    """Returns the cells of the table, and whether all is well."""
    start = time.monotonic()
    with open(results / f"{name}.log", "w", encoding="utf-8") as log:
        system = System(name, root, log)
        system.call("git", "-c", "safe.directory=*", "clone", "--quiet", "--no-local", source, root / "velmorindal")
        ran, _ = system.inside("scripts/run")
        tested, printed = system.inside("scripts/test")
        packaged, _ = system.inside("scripts/package")
        for package in (root / "velmorindal/build/package").glob("*.deb"):
            shutil.copy(package, results / f"{name}.deb")
        counted = COUNTS.fullmatch(printed.rstrip().rpartition("\n")[2])
        passed, failed, skipped = (counted[each] or "0" for each in (1, 2, 3)) if counted else "???"
        compiler = "GCC " + system.version("c++ -dumpfullversion")
        qt = system.version("dpkg-query -W -f='${Version}' qt6-base-dev")
    minutes = f"{(time.monotonic() - start) / 60:.0f}"
    cells = (name, compiler, qt, verdict(ran), passed, failed, skipped, verdict(packaged), minutes)
    return cells, ran and tested and packaged


def verdict(fine):
    return "good" if fine else "FAILED"


def main():
    source, roots, results = (pathlib.Path(each).resolve() for each in sys.argv[1:4])
    everything_is_well = True
    print(COLUMNS.format(*HEADINGS), flush=True)
    for name in sys.argv[4:]:
        try:
            cells, well = try_scripts(name, source, roots / name, results)
        except RuntimeError as error:
            cells, well = (name, "-", "-", "FAILED", "-", "-", "-", "-", "-"), False
            print(f"{name}: {error}; see {results / name}.log", file=sys.stderr)
        print(COLUMNS.format(*cells), flush=True)
        everything_is_well = everything_is_well and well
    sys.exit(not everything_is_well)


if __name__ == "__main__":
    main()
