"""Quitting while the kernel holds the close of a port, because its device takes no data."""

import time

from bench import DEADLINE, SLOWNESS, check, close, expect_left
from waiting import expect, expect_at_most, wait_for
from window_watch import WindowWatch

CLOSING = 0.5
"""Seconds from the decision to quit until the window is gone."""


def seconds_to_close(wizard):
    """From the decision to quit to the moment when the window is gone."""
    with WindowWatch(wizard) as watch:
        wizard.close_window()
        wizard.wait_for_line("I'm being told to go now.")
        gone = watch.wait_until_gone()
    return gone - wizard.output.time_of("I'm being told to go now.")


def stops_taking_data(bench):
    """A wizard that has tried to save, with a device that takes no data any more."""
    dongle = bench.dongle()
    wizard = bench.connected(step="Summary")
    dongle.take_data(False)
    wizard.save()
    wizard.wait_for_line("Save done. Fail.")
    wizard.answer_failed_save()
    return dongle, wizard


@check(
    "closing while the device takes no data: the window is gone within half a second, and the program ends by itself"
)
def closing(bench):
    healthy = bench.dongle()
    wizard = bench.connected()
    usual = seconds_to_close(wizard)
    expect_left(wizard)
    bench.pull(healthy)
    _, wizard = stops_taking_data(bench)
    taken = seconds_to_close(wizard)
    bench.note = f"{taken:.2f} s, with a healthy device {usual:.2f} s"
    expect_at_most(taken, CLOSING + usual, "seconds until the window was gone")
    decided = wizard.output.time_of("I'm being told to go now.")
    expect_left(wizard)
    ended = time.monotonic() - decided
    bench.note += f"; the process ended after {ended:.1f} s"
    quitting = ["I'm being told to go now.", "Quitting program!", "Setting polling state from  none none", "Farewell"]
    expect(wizard.output.texts[-4:], quitting, "the last lines")


@check("a second run meanwhile has the port within five seconds, or says that the first is still closing it")
def second_run_while_closing(bench):
    _, first = stops_taking_data(bench)
    second = bench.wizard()
    first.close_window()
    first.wait_for_line("I'm being told to go now.")
    second.press("alt+n")
    pressed = time.monotonic()

    def answer():
        for lines, part in ((second.errors, "closed"), (second.output, "Open Result:  ")):
            for line in lines.texts:
                if part in line:
                    return lines.time_of(line) - pressed, line
        return None

    wait_for(lambda: answer() is not None, "word of the port", 60)
    said, line = answer()
    bench.note = f"{said:.1f} s: {line}"
    expect_at_most(said, 5, "seconds until the second run had the port or said why not")
    expect("Open Result:  -1" in line, False, "a refusal without a reason")


@check(
    "a device that answers the search before the system knows that its query has arrived: connected, without a complaint"
)
def late_acknowledgements(bench):
    dongle = bench.dongle()
    dongle.acknowledges_after = 0.5
    wizard = bench.connected()
    dongle.acknowledges_after = 0
    expect(wizard.errors.texts, [], "standard error")
    close(wizard)


@check("a device that never takes data: no dongle found within five seconds, and the window closes at once")
def never_takes_data(bench):
    dongle = bench.dongle()
    dongle.take_data(False)
    wizard = bench.wizard()
    wizard.press("alt+n")
    pressed = time.monotonic()
    wizard.wait_for_line("No dongles found. Quitting.")
    found = wizard.output.time_of("No dongles found. Quitting.") - pressed
    expect_at_most(found, DEADLINE + SLOWNESS, "seconds until no dongle was found")
    wizard.press("Return", title="Connection Failed")
    wait_for(lambda: len(wizard.windows()) == 1, "the dialog to go")
    taken = seconds_to_close(wizard)
    expect_at_most(taken, 2 * CLOSING, "seconds until the window was gone")
    decided = wizard.output.time_of("I'm being told to go now.")
    expect_left(wizard)
    ended = time.monotonic() - decided
    bench.note = f"{found:.1f} s and {taken:.2f} s; the process ended after {ended:.1f} s"
