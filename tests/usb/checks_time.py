"""How long connecting takes, compared with a program that makes the same exchanges and nothing else."""

import contextlib
import os
import pathlib
import statistics
import subprocess
import time

from bench import LOGS, check
from desktop import Lines
from dongle import CONNECTING
from waiting import expect, expect_at_most

BARE = os.environ.get("BARE_EXCHANGE", "")
RUNS = 15
RATIO = 1.5
RANDOM_ADDRESSES = pathlib.Path("/proc/sys/kernel/randomize_va_space")


@contextlib.contextmanager
def fixed_addresses():
    """Loads the wizard at the same addresses every time, as the bare program always is. At new addresses the emulator
    translates its code again: half of the processor time of its exchanges."""
    before = RANDOM_ADDRESSES.read_text()
    RANDOM_ADDRESSES.write_text("0")
    try:
        yield
    finally:
        RANDOM_ADDRESSES.write_text(before)


def first_open(dongle, since):
    return next(at for at, state in dongle.line_states if at >= since and state)


def bare_seconds(bench, dongle):
    since = time.monotonic()
    with subprocess.Popen([os.path.abspath(BARE), "/dev/cu.usbmodem0"], stdout=subprocess.PIPE, text=True) as program:
        printed = Lines(program.stdout, LOGS / "bare_exchange.out")
        expect(program.wait(), 0, "the exit status of the bare program")
        printed.thread.join()
    return printed.time_of("connected") - first_open(dongle, since)


def wizard_seconds(bench, dongle):
    wizard = bench.wizard()
    since = time.monotonic()
    wizard.press("alt+n")
    wizard.wait_for_line("Successful connection!")
    wizard.close_window()
    expect(wizard.status(), 0, "the exit status")
    return wizard.output.time_of("Successful connection!") - first_open(dongle, since)


@check("from the first open to connected: at most 1.5 times what a bare program takes for the same exchanges")
def time_to_connect(bench):
    dongle = bench.dongle()
    bare, wizard = [], []
    with fixed_addresses():
        for _ in range(RUNS):
            for run, seconds in ((bare_seconds, bare), (wizard_seconds, wizard)):
                dongle.bytes.clear()
                seconds.append(run(bench, dongle))
                expect(bytes(dongle.bytes), b"".join(CONNECTING), "what was sent")
    middle, bare_middle = statistics.median(wizard), statistics.median(bare)
    bench.note = f"{middle * 1000:.0f} ms, bare {bare_middle * 1000:.0f} ms, ratio {middle / bare_middle:.2f}"
    expect_at_most(middle / bare_middle, RATIO, "the ratio")
