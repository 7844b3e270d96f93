"""What a line does that no pseudo-terminal shows: other programs' settings, echo, devices that take no data,
packets."""

import contextlib
import os
import subprocess
import time

import checks_program
from bench import DEADLINE, SLOWNESS, check, holds_back
from dongle import CONNECTING, DURATION, RELAYS, THRESHOLDS, WRITING
from waiting import expect, expect_at_most, wait_for
from plain_serial import PlainDongle

PORT = "/dev/ttyACM0"
PLAIN_PORT = "/dev/ttyUSB0"
OWN_ATTRIBUTES = {"min": 0, "time": 2, "echo": False, "icanon": False}


def stty(*settings):
    """As root, which exclusive mode does not keep away."""
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
    wait_for(
        lambda: wizard.output.time_of("Could not connect.") or wizard.output.time_of("Status updated now:"),
        "the end of the search",
    )
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
    wait_for(
        lambda: len(dongle.bytes) >= len(whole),
        lambda: f"all that is to be sent; the last bytes are {dongle.bytes[-16:].hex(' ')}",
        seconds=20,
    )
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
    saves_to(bench, packet=1)


@check("high speed, with endpoints of 512 bytes: saves, exact to the byte")
def high_speed(bench):
    saves_to(bench, speed="high")


def saves_to(bench, **options):
    dongle = bench.dongle(**options)
    checks_program.program(bench.connected(step="Summary"), dongle)
