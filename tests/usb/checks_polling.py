"""What the Calibration page shows and prints when the dongle is pulled while it measures."""

import time

from bench import check, expect_left
from waiting import expect_at_most, wait_for

LINES_A_SECOND = 2
LOOKED_AT = 5
"""Seconds."""


def pulled_while_showing(bench, key, started):
    dongle = bench.dongle()
    wizard = bench.connected(step="Calibration")
    wizard.press(key)
    wait_for(started(dongle), "the readings")
    bench.pull(dongle)
    pulled = time.monotonic()
    time.sleep(LOOKED_AT)
    printed = [line for line in wizard.output.since(pulled) if not line.startswith("Have a reading of")]
    bench.note = f"{len(printed) / LOOKED_AT:.1f} lines a second"
    expect_at_most(len(printed), LINES_A_SECOND * LOOKED_AT, f"lines in {LOOKED_AT} seconds")
    wizard.hears("No readings arrive")
    wizard.press(key)
    wizard.close_window()
    expect_left(wizard)


check("pulled during Show Duration: at most two lines a second, and the page says that no readings arrive",
      "alt+d", lambda dongle: lambda: dongle.count(ord("l")) > 5, name="pulled_showing_duration")(pulled_while_showing)
check("pulled during Show Clarity: at most two lines a second, and the page says that no readings arrive",
      "alt+h", lambda dongle: dongle.streams, name="pulled_showing_clarity")(pulled_while_showing)


@check("silent during Show Clarity: the page says that no readings arrive, and that is gone once they do")
def silent_while_showing_clarity(bench):
    dongle = bench.dongle()
    wizard = bench.connected(step="Calibration")
    wizard.press("alt+h")
    wait_for(dongle.streams, "the readings")
    wizard.wait_for_line("Have a reading of")
    dongle.pause_reports(True)
    wizard.hears("No readings arrive")
    dongle.pause_reports(False)
    wait_for(lambda: not any("No readings arrive" in spoken for window in wizard.windows() for spoken in window["spoken"]),
             "the words to go")
    wizard.press("alt+h")
    wizard.close_window()
    expect_left(wizard)
