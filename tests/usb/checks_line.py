"""What a line does that no pseudo-terminal shows: other programs' settings, echo, devices that take no data, packets."""

import contextlib
import os
import subprocess
import time

import checks_program
from bench import check, expect_left, holds_back
from dongle import CONNECTING, DURATION, RELAYS, THRESHOLDS, WRITING
from waiting import expect, expect_at_most, wait_for
from plain_serial import PlainDongle
from window_watch import WindowWatch

PORT = "/dev/ttyACM0"
PLAIN_PORT = "/dev/ttyUSB0"
DEADLINE = 2
"""Seconds that the wizard waits for an answer."""
SLOWNESS = 3
"""Seconds that may come on top in a machine that is slow."""
CLOSING = 0.5
"""Seconds from the decision to quit until the window is gone."""
OWN_ATTRIBUTES = {"min": 0, "time": 2, "echo": False, "icanon": False}


def stty(*settings):
    """As root, whom exclusive mode does not keep away."""
    subprocess.run(["stty", "-F", PORT, *settings], check=True)


@check("`stty min 1 time 0` by another program while a command is unanswered: the two seconds hold")
def foreign_settings_in_an_exchange(bench):
    dongle = bench.dongle()
    dongle.faults[DURATION, 2] = lambda: None
    wizard = bench.connected(step="Summary")
    wizard.save()
    wait_for(lambda: dongle.count(DURATION) == 2, "the command")
    stty("min", "1", "time", "0")
    expect(holds_back()["min"], 1, "the minimum that the other program set")
    asked = dongle.arrivals[-1][0]
    wizard.wait_for_line("Save done. Fail.", seconds=20)
    waited = wizard.output.time_of("Save done. Fail.") - asked
    bench.note = f"{waited:.1f} s"
    expect_at_most(waited, DEADLINE + SLOWNESS, "seconds until saving failed")
    wizard.hears("HD/TC")


@check("`stty sane` by another program between two exchanges: the port's own settings are put back, exact to the byte")
def foreign_settings_between_exchanges(bench):
    dongle = bench.dongle()
    wizard = bench.connected(step="Summary")
    expect(holds_back(), OWN_ATTRIBUTES, "the line as the wizard set it")
    stty("sane")
    wizard.save()
    wizard.wait_for_line("Save done.")
    expect(holds_back(), OWN_ATTRIBUTES, "the line after the exchange")
    expect(wizard.leave(), 0, "the exit status")
    checks_program.expect_programmed(dongle)


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


@check("closing while the device takes no data: the window is gone within half a second, and the program ends by itself")
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
    bench.note += f"; the process ended after {time.monotonic() - decided:.0f} s"
    quitting = ["I'm being told to go now.", "Quitting program!", "Setting polling state from  none none", "Farewell"]
    expect(wizard.output.texts[-4:], quitting, "the last lines")


@check("a second run meanwhile says within five seconds that the first is still closing the port")
def second_run_while_closing(bench):
    _, first = stops_taking_data(bench)
    second = bench.wizard()
    first.close_window()
    first.wait_for_line("I'm being told to go now.")
    second.press("alt+n")
    pressed = time.monotonic()
    second.wait_for_error("closed", seconds=60)
    line = next(line for line in second.errors.texts if "closed" in line)
    said = second.errors.time_of(line) - pressed
    bench.note = f"{said:.1f} s: {line}"
    expect_at_most(said, 5, "seconds until the second run said so")
    for part in ("ttyACM0", str(first.process.pid)):
        expect(part in line.replace("cu.usbmodem0", "ttyACM0"), True, f"{part!r} in {line!r}")


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
    bench.note = f"{found:.1f} s and {taken:.2f} s"
    expect_at_most(taken, 2 * CLOSING, "seconds until the window was gone")
    expect_left(wizard)


@check("bytes that arrive once the port is open and before anything is printed: none is echoed to the device")
def early_bytes(bench):
    dongle = bench.dongle()
    wizard = bench.wizard(printing=False)
    wizard.press("alt+n")
    # What comes before the open has returned is echoed by the kernel, whatever the program does next.
    wait_for(lambda: wizard.has_open(PORT), "the port to be open")
    time.sleep(0.5)
    dongle.say(bytes.fromhex("72 62 74 08 cd cc 4c 3d a4 70 bd 3e"))
    wait_for(lambda: dongle.has_sent(2), "the host to take the bytes")
    wizard.let_print()
    wait_for(lambda: wizard.output.time_of("Could not connect.") or wizard.output.time_of("Status updated now:"),
             "the end of the search")
    query = CONNECTING[0]
    asked = (query, query * 2, b"".join(CONNECTING))
    expect(bytes(dongle.bytes) in asked, True, f"whether {dongle.bytes.hex(' ')} is what the wizard asks")


@check("a device that takes data a second late: what was written is finished, exact to the byte")
def late_taking(bench):
    dongle = bench.dongle()

    def answer_and_hold():
        dongle.takes_data = False
        dongle.say(dongle.answer(WRITING[3]))

    dongle.faults[RELAYS, 1] = answer_and_hold
    wizard = bench.connected(step="Summary")
    wizard.save()
    wait_for(lambda: not dongle.takes_data, "the device to hold the line")
    time.sleep(1)
    expect(dongle.count(THRESHOLDS), 1, "the thresholds' frames so far")
    dongle.take_data(True)
    wizard.wait_for_line("All done!")
    expect(wizard.leave(), 0, "the exit status")
    checks_program.expect_programmed(dongle)


@check("a line that has no room at first: the frame is written once there is room, exact to the byte")
def no_room(bench):
    dongle = bench.dongle()
    answer = []
    dongle.faults[RELAYS, 1] = lambda: answer.append(dongle.answer(WRITING[3]))
    wizard = bench.connected(step="Summary")
    wizard.save()
    wait_for(lambda: answer, "the frame before the thresholds")
    dongle.take_data(False)
    filled = fill(PORT)
    dongle.say(answer[0])
    time.sleep(1)
    dongle.take_data(True)
    wizard.wait_for_line("All done!")
    bench.note = f"{filled} bytes of another program in front"
    sent = bytes(dongle.bytes)
    expect(sent, b"".join(CONNECTING + WRITING[:4]) + bytes(filled) + b"".join(WRITING[4:]), "all that was sent")


@check("a frame of which eight of twelve bytes fit at first: all of it is written, exact to the byte")
def half_fitting_frame(bench):
    full = bench.dongle(make=PlainDongle)
    full.take_data(False)
    room = fill(PLAIN_PORT)
    bench.pull(full)
    dongle = bench.dongle(make=PlainDongle)
    answer = []
    dongle.faults[RELAYS, 1] = lambda: answer.append(dongle.answer(WRITING[3]))
    wizard = bench.connected("dialer", step="Summary", VELMORINDAL_DEVICE_PREFIX="ttyUSB")
    wizard.save()
    wait_for(lambda: answer, "the frame before the thresholds")
    dongle.take_data(False)
    expect(fill(PLAIN_PORT, room - 8), room - 8, "the bytes in front")
    dongle.say(answer[0])
    time.sleep(1)
    dongle.take_data(True)
    wizard.wait_for_line("Save done.")
    bench.note = f"{room - 8} bytes of another program in front"
    whole = b"".join(CONNECTING + WRITING[:4]) + bytes(room - 8) + b"".join(WRITING[4:])
    wait_for(lambda: len(dongle.bytes) >= len(whole),
             lambda: f"all that is to be sent; the last bytes are {dongle.bytes[-16:].hex(' ')}", seconds=20)
    expect(bytes(dongle.bytes), whole, "all that was sent")
    expect(wizard.leave(), 0, "the exit status")


def fill(path, most=None):
    """Writes zeros, one at a time, until the line takes no more or `most` are written. Returns how many."""
    descriptor = os.open(path, os.O_WRONLY | os.O_NOCTTY | os.O_NONBLOCK)
    written = 0
    with contextlib.suppress(BlockingIOError):
        while most is None or written < most:
            written += os.write(descriptor, bytes(1))
    os.close(descriptor)
    return written


@check("two dongles: the first is programmed, exact to the byte, and a warning says that there are two")
def two_dongles(bench):
    dongles = [bench.dongle(), bench.dongle()]
    wizard = bench.wizard()
    wizard.press("alt+n")
    wizard.wait_for_line("Connected, with warnings.")
    wizard.hears("Multiple dongles found.")
    wizard.press("Return", title="Warning")
    wizard.walk("Connect", "Summary")
    wizard.save()
    wizard.wait_for_line("All done!")
    expect(wizard.leave(), 0, "the exit status")
    sent = sorted((bytes(dongle.bytes) for dongle in dongles), key=len)
    expect(sent, [CONNECTING[0], b"".join(CONNECTING + WRITING)], "what the two were sent")


@check("packets of a single byte: saves, exact to the byte")
def single_byte_packets(bench):
    saved(bench, bench.dongle(packet=1))


@check("high speed, with endpoints of 512 bytes: saves, exact to the byte")
def high_speed(bench):
    saved(bench, bench.dongle(speed="high"))


def saved(bench, dongle):
    wizard = bench.connected(step="Summary")
    wizard.save()
    wizard.wait_for_line("All done!")
    expect(wizard.leave(), 0, "the exit status")
    checks_program.expect_programmed(dongle)
