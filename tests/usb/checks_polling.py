"""What the Calibration page shows and prints when the dongle is pulled while it measures."""

import time

from bench import check, close
from dongle import AUTO_TUNE, LAST_HUM
from waiting import expect, expect_at_most, wait_for

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
    wizard.hears("No readings are arriving")
    wizard.press(key)
    close(wizard)


check(
    "pulled during Show Duration: at most two lines a second, and the page says that no readings arrive",
    "alt+d",
    lambda dongle: lambda: dongle.count(LAST_HUM) > 5,
    name="pulled_showing_duration",
)(pulled_while_showing)
check(
    "pulled during Show Clarity: at most two lines a second, and the page says that no readings arrive",
    "alt+h",
    lambda dongle: dongle.streams,
    name="pulled_showing_clarity",
)(pulled_while_showing)


def pulled_in_exchange(bench, key, exchange):
    """At the start of a measurement, or at its end."""
    dongle = bench.dongle()
    dongle.faults[exchange] = dongle.pull
    wizard = bench.connected(step="Calibration")
    wizard.press(key)
    if exchange[1] > 1:
        wizard.wait_for_line("Have a reading of")
        wizard.press(key)
    bench.plug_in_again(dongle)
    if LAST_HUM == exchange[0]:
        # Only the start of this measurement can fail, and says so.
        wizard.wait_for_line("Not a good start to duration polling")
    wizard.walk("Calibration", "Summary")
    close(wizard)
    expect(bytes(dongle.bytes), b"", "what the host sent after the dongle was plugged in again")


for _what, _key, _exchange in (
    ("clarity_begins", "alt+h", (AUTO_TUNE, 1)),
    ("clarity_ends", "alt+h", (AUTO_TUNE, 2)),
    ("duration_begins", "alt+d", (LAST_HUM, 1)),
):
    check(
        f"pulled when the display of the {_what.replace('_', ' ')}: the next page can be reached, and the program ends",
        _key,
        _exchange,
        name=f"pulled_as_{_what}",
    )(pulled_in_exchange)


@check("silent during Show Clarity: the page says that no readings arrive, and that is gone once they do")
def silent_while_showing_clarity(bench):
    dongle = bench.dongle()
    wizard = bench.connected(step="Calibration")
    wizard.press("alt+h")
    wait_for(dongle.streams, "the readings")
    wizard.wait_for_line("Have a reading of")
    dongle.pause_reports(True)
    wizard.hears("No readings are arriving")
    dongle.pause_reports(False)
    wait_for(
        lambda: not any(
            "No readings are arriving" in spoken for window in wizard.windows() for spoken in window["spoken"]
        ),
        "the words to go",
    )
    wizard.press("alt+h")
    close(wizard)
