"""The whole way from plugging in to the stored settings, and the dongle pulled at every point of it."""

from bench import check, close
from dongle import CONNECTING, DURATION, KEYS, PATH, PROTOCOL, RELAYS, STATUS, STORE, THRESHOLDS, VERSION, WRITING
from waiting import expect

NO_DONGLE = "Could not detect Velmorindal Dongle."
READING = (
    ("the first version", (VERSION, 1), NO_DONGLE),
    ("the version", (VERSION, 2), "CC/NR"),
    ("the status", (STATUS, 1), "VS/CC"),
    ("the protocol", (PROTOCOL, 1), "VC/TC"),
    ("the output path", (PATH, 1), "VC/TC"),
    ("the hum duration", (DURATION, 1), "VC/TC"),
    ("the thresholds", (THRESHOLDS, 1), "VC/TC"),
    ("the keys", (KEYS, 1), "VC/TC"),
)
WRITTEN = (
    ("the protocol", (PROTOCOL, 2), "PS/TC2"),
    ("the output path", (PATH, 2), "OP/TC"),
    ("the hum duration", (DURATION, 2), "HD/TC"),
    ("the relays", (RELAYS, 1), "RC/TC"),
    ("the thresholds", (THRESHOLDS, 2), "HT/TC"),
    ("the keys", (KEYS, 2), "KC/TC"),
    ("the order to store", (STORE, 1), "WS/TC"),
)
PAGES = ("Connect", "Mode", "Ouptut", "Calibration", "Summary")


def expect_programmed(dongle):
    expect(bytes(dongle.bytes), b"".join(CONNECTING + WRITING), "all that the host sent")


def expect_next_run_connects(bench, dongle):
    """A device that was plugged in again hears of no earlier run, and a new run connects."""
    expect(bytes(dongle.bytes), b"", "what the host sent after the dongle was plugged in again")
    bench.connected()
    expect(bytes(dongle.bytes), b"".join(CONNECTING), "what the new run sent")


def program(wizard, dongle):
    """From the Summary page to the end of the program."""
    wizard.save()
    wizard.wait_for_line("All done!")
    expect(wizard.leave(), 0, "the exit status")
    expect_programmed(dongle)


@check("finds, connects, reads and saves, exact to the byte")
def saves(bench):
    dongle = bench.dongle()
    wizard = bench.connected(step="Summary")
    program(wizard, dongle)
    expect(wizard.errors.texts, [], "standard error")


@check("pulled and plugged in again on the Welcome page: saves, exact to the byte")
def pulled_on_welcome(bench):
    dongle = bench.dongle()
    wizard = bench.wizard()
    bench.pull(dongle)
    bench.plug_in(dongle)
    wizard.connect()
    wizard.walk("Connect", "Summary")
    program(wizard, dongle)


def pulled_on_page(bench, page):
    dongle = bench.dongle()
    wizard = bench.connected(step=page)
    bench.pull(dongle)
    bench.plug_in(dongle)
    wizard.walk(page, "Summary")
    wizard.save()
    wizard.hears("Save Failed")
    wizard.hears("PS/")
    wizard.answer_failed_save()
    close(wizard)
    expect_next_run_connects(bench, dongle)


for _page in PAGES:
    check(
        f"pulled and plugged in again on the {'Output' if _page == 'Ouptut' else _page} page: saving fails with its text",
        _page,
        name=f"pulled_on_{'output' if _page == 'Ouptut' else _page.lower()}",
    )(pulled_on_page)


def pulled_while_reading(bench, query, text):
    dongle = bench.dongle()
    dongle.faults[query] = dongle.pull
    wizard = bench.wizard()
    wizard.press("alt+n")
    wizard.wait_for_line("Could not connect.")
    wizard.hears(text)
    bench.plug_in_again(dongle)
    wizard.press("Return", title="Connection Failed")
    close(wizard)
    expect_next_run_connects(bench, dongle)


for _what, _query, _text in READING:
    check(
        f"pulled when asked for {_what}: {_text.removesuffix('.')}",
        _query,
        _text,
        name=f"pulled_reading_{_what.removeprefix('the ').replace(' ', '_')}",
    )(pulled_while_reading)


def pulled_while_writing(bench, command, code):
    dongle = bench.dongle()
    dongle.faults[command] = dongle.pull
    wizard = bench.connected(step="Summary")
    wizard.save()
    wizard.hears(code)
    bench.plug_in_again(dongle)
    wizard.answer_failed_save()
    close(wizard)
    expect_next_run_connects(bench, dongle)


for _what, _command, _code in WRITTEN:
    check(
        f"pulled when sent {_what}: {_code}",
        _command,
        _code,
        name=f"pulled_writing_{_what.removeprefix('the ').replace(' ', '_')}",
    )(pulled_while_writing)
