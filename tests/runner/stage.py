"""The progress of a run: one line for each stage, which renews itself on a terminal."""

import re
import shutil
import sys
import time

# As Ninja and the linter say how far they are.
STEP = re.compile(r"^\[(\d+)/(\d+)")


class Stage:
    """A named piece of work and how many of its steps are done. For one thread at a time; use it in a `with`.

    Its time begins when it is made; one that is not shown yet is shown from the `with` on.
    """

    def __init__(self, name, unit, output=sys.stdout, shown=True, clock=time.monotonic):
        self.name, self.unit, self.output, self.shown, self.clock = name, unit, output, shown, clock
        self.renews = output.isatty()
        self.done = self.total = self.failed = 0
        self.start = clock()

    def __enter__(self):
        self.shown = True
        if self.renews:
            self.renew()
        else:
            self.write(f"{self.name} ... ")
        return self

    def __exit__(self, kind, *_):
        seconds = self.clock() - self.start
        if self.renews:
            self.renew()
        else:
            self.write(self.state())
        self.write(f" in {seconds:.0f} s\n" if kind is None else " - interrupted\n")

    def step(self, done, total, failed=0):
        self.done, self.total, self.failed = done, total, failed
        if self.renews and self.shown:
            self.renew()

    def read(self, line):
        """Takes the number of steps from a line of output, where it has one."""
        if match := STEP.match(line):
            self.step(int(match[1]), int(match[2]), self.failed)

    def state(self):
        return f"{self.done} of {self.total} {self.unit}" + (f", {self.failed} FAILED" if self.failed else "")

    def renew(self):
        width = shutil.get_terminal_size().columns
        self.write("\r\033[K" + f"{self.name}: {self.state()}"[: width - 1])

    def write(self, text):
        self.output.write(text)
        self.output.flush()
