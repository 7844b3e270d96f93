"""The tests of a build directory, run and counted one by one."""

import collections
import json
import os
import re
import signal
import subprocess
import threading
import time

# A test program with many tests is run in this many processes, enough to keep the processors busy.
SHARDS = 4
# A process that prints nothing for this many seconds hangs, even on a busy machine.
SILENCE = 600
LISTING = 300

RUNS = re.compile(r"\[ RUN      \] (\S+)")
ENDS = re.compile(r"\[ +(OK|FAILED|SKIPPED) +\] (\S+?),? .*\(\d+ ms\)$")

Outcome = collections.namedtuple("Outcome", "passed failed skipped output")
"""The names of tests by how they ended, and everything that was printed."""


class Job:
    """A command that is one test or a share of a program's tests."""

    def __init__(self, preset, test, environment, shard=None, names=()):
        properties = {each["name"]: each["value"] for each in test.get("properties", [])}
        self.preset, self.name, self.command = preset, test["name"], test["command"]
        self.directory = properties.get("WORKING_DIRECTORY")
        self.seconds = SILENCE if names else properties.get("TIMEOUT", SILENCE)
        self.cost = properties.get("COST", 0)
        self.skip_status = properties.get("SKIP_RETURN_CODE")
        self.names = names or [self.name]
        self.is_share = bool(names)
        self.environment = dict(environment)
        self.environment.update(each.split("=", 1) for each in properties.get("ENVIRONMENT", []))
        if shard is not None:
            self.environment |= {"GTEST_TOTAL_SHARDS": str(SHARDS), "GTEST_SHARD_INDEX": str(shard)}

    def run(self, ended):
        """Runs it to its end, and calls `ended(name, how)` for each test that has ended. Returns the Outcome."""
        if self.directory:
            os.makedirs(self.directory, exist_ok=True)
        lines, results = [], {}
        try:
            process = subprocess.Popen(
                self.command,
                cwd=self.directory,
                env=self.environment,
                text=True,
                errors="replace",
                stdin=subprocess.DEVNULL,
                stdout=subprocess.PIPE,
                stderr=subprocess.STDOUT,
                start_new_session=True,
            )
        except OSError as error:
            return self.outcome({}, f"{self.name}: {error}\n", 1, ended)
        watch = Watch(process, self.seconds, renewable=self.is_share)
        for line in process.stdout:
            watch.renew()
            lines.append(line)
            if self.is_share and (match := ENDS.search(line)) and match[2] not in results:
                results[match[2]] = match[1]
                ended(match[2], match[1])
        # The process is reaped only after this: until then no other process can get its number.
        over = watch.stop()
        process.stdout.close()
        status = process.wait()
        if over:
            lines.append(f"{self.name} was ended: it had gone on for {self.seconds} s\n")
        if status < 0:
            lines.append(f"{self.name} was ended by signal {signal.Signals(-status).name}\n")
        return self.outcome(results, "".join(lines), status, ended)

    def outcome(self, results, output, status, ended):
        """Every test counts once: one that did not end has failed."""
        if not self.is_share:
            results = {self.name: "OK" if status == 0 else "SKIPPED" if status == self.skip_status else "FAILED"}
            ended(self.name, results[self.name])
        for name in self.names:
            if name not in results:
                output += f"[  FAILED  ] {name}: it did not come to its end\n"
                results[name] = "FAILED"
                ended(name, "FAILED")
        found = {how: [name for name in results if results[name] == how] for how in ("OK", "FAILED", "SKIPPED")}
        if self.is_share and status != 0 and not found["FAILED"]:
            # All passed, and then the program failed: a sanitizer speaks at the end, for one.
            found["FAILED"].append(found["OK"].pop() if found["OK"] else self.name)
            output += f"{self.name} ended with {status} after its tests\n"
        return Outcome(found["OK"], found["FAILED"], found["SKIPPED"], output)


class Watch:
    """Kills a process, and what it has started, once its time is over; a renewable time begins again with each line."""

    def __init__(self, process, seconds, renewable):
        self.process, self.seconds, self.renewable = process, seconds, renewable
        self.over = False
        self.start = time.monotonic()
        self.ended = threading.Event()
        self.thread = threading.Thread(target=self.watch, daemon=True)
        self.thread.start()

    def watch(self):
        while not self.over:
            rest = self.start + self.seconds - time.monotonic()
            if self.ended.wait(max(rest, 0)):
                return
            if self.start + self.seconds <= time.monotonic():
                self.over = True
                os.killpg(self.process.pid, signal.SIGKILL)

    def renew(self):
        if self.renewable:
            self.start = time.monotonic()

    def stop(self):
        """Returns whether the time was over before."""
        self.ended.set()
        self.thread.join()
        return self.over


def tests_in(directory):
    """The registered tests, as CTest describes them."""
    shown = subprocess.run(
        ["ctest", "--test-dir", directory, "--show-only=json-v1"], check=True, capture_output=True, text=True
    ).stdout
    # One whose program is not there has no command.
    return [{"command": [test["name"]], "properties": []} | test for test in json.loads(shown)["tests"]]


def names_of(command, environment):
    """The names of a program's tests, without those that are disabled."""
    listed = subprocess.run(
        [*command, "--gtest_list_tests"], env=environment, check=True, capture_output=True, text=True, timeout=LISTING
    ).stdout
    names, suite = [], ""
    for line in listed.splitlines():
        name = line.split("#")[0].strip()
        if line.startswith("  "):
            names.append(suite + name)
        elif name.endswith("."):
            suite = name
    return [name for name in names if "DISABLED_" not in name]


def jobs_of(preset, directory, environment, without=()):
    """Every job of a build directory that has none of the labels `without`: first those that are one long test, which
    mostly wait, the longest at the front."""
    checks, shares = [], []
    for test in tests_in(directory):
        labels = next((each["value"] for each in test["properties"] if each["name"] == "LABELS"), [])
        if not set(labels).isdisjoint(without):
            continue
        if "googletest" not in labels:
            checks.append(Job(preset, test, environment))
            continue
        try:
            names = names_of(test["command"], environment)
        except (OSError, subprocess.SubprocessError):
            # It cannot even say what it has: run as one test, it fails and says why.
            names = None
        if names is None:
            checks.append(Job(preset, test, environment))
        elif not names:
            shares.append(Job(preset, test, environment, names=[f"{test['name']} (which has no test)"]))
        elif len(names) < SHARDS:
            shares.append(Job(preset, test, environment, names=names))
        else:
            # The shares that the framework makes: every fourth test.
            shares += [Job(preset, test, environment, shard, names[shard::SHARDS]) for shard in range(SHARDS)]
    checks.sort(key=lambda job: -job.cost)
    return checks + shares
