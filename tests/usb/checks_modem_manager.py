"""ModemManager beside the wizard: as Debian installs it, and where it takes the dongle for a modem."""

import os
import pathlib
import signal
import subprocess
import time

from bench import check, close, expect_reason
from checks_program import program
from dongle import CONNECTING, STORE
from waiting import Failed, expect, wait_for

PROBING_RULE = pathlib.Path("/run/udev/rules.d/75-probe.rules")
PROBE = 'SUBSYSTEM=="usb", ENV{DEVTYPE}=="usb_device", ATTR{idVendor}=="f055", ENV{ID_MM_DEVICE_PROCESS}="1"\n'
TIME_TO_COME = 15
"""Seconds. Where ModemManager takes an interest in a port, it opens it after 2 to 3."""
TIME_TO_GO = 90


def modem_manager():
    """The number of its process."""
    shown = subprocess.run(
        ["systemctl", "show", "--property=MainPID", "--value", "ModemManager"],
        capture_output=True,
        text=True,
        check=True,
    ).stdout
    process = int(shown)
    if not process:
        raise Failed("ModemManager does not run")
    return process


def make_it_probe(bench):
    """Tells ModemManager by a property of the device to look whether it is a modem."""

    def reload():
        subprocess.run(["udevadm", "control", "--reload"], check=True)

    PROBING_RULE.parent.mkdir(parents=True, exist_ok=True)
    PROBING_RULE.write_text(PROBE)
    bench.finally_(reload)
    bench.finally_(PROBING_RULE.unlink)
    reload()


def wait_until_it_has_gone(bench, dongle):
    """Notes when it opened the port, what it wrote, and how long it stayed."""
    wait_for(lambda: not dongle.is_open(), "ModemManager to let go", TIME_TO_GO)
    # It may open the port more than once.
    quiet = time.monotonic()
    while time.monotonic() < quiet + 5:
        if dongle.is_open():
            wait_for(lambda: not dongle.is_open(), "ModemManager to let go", TIME_TO_GO)
            quiet = time.monotonic()
        time.sleep(0.1)
    opened, left = dongle.line_states[0][0], dongle.line_states[-1][0]
    bench.note = (
        f"opened {opened - dongle.plugged_at:.1f} s after the plug, for {left - opened:.1f} s, "
        f"{len(dongle.bytes)} bytes in {dongle.packets} packets"
    )


@check("ModemManager as it comes: opens no port of a device with one function, and the wizard saves, exact to the byte")
def modem_manager_as_it_comes(bench):
    modem_manager()
    dongle = bench.dongle()
    time.sleep(TIME_TO_COME)
    expect((dongle.line_states, bytes(dongle.bytes)), ([], b""), "what reached the device")
    program(bench.connected(step="Summary"), dongle)


def busy_with_modem_manager(bench, told_to_probe, functions):
    modem_manager()
    if told_to_probe:
        make_it_probe(bench)
    dongle = bench.dongle(functions=functions)
    wait_for(lambda: dongle.bytes, "ModemManager to write")
    wizard = bench.wizard()
    expect(dongle.is_open(), True, "whether ModemManager still holds the port")
    wizard.press("alt+n")
    wizard.wait_for_line("Could not connect.")
    wizard.press("Return", title="Connection Failed")
    close(wizard)
    wait_until_it_has_gone(bench, dongle)
    dongle.bytes.clear()
    bench.connected()
    expect(bytes(dongle.bytes), b"".join(CONNECTING), "what the next run sent")
    expect_reason(wizard, "/dev/cu.usbmodem0", "busy")


check(
    "ModemManager told to probe: says that the port is busy, and connects once it is free",
    True,
    1,
    name="modem_manager_told_to_probe",
)(busy_with_modem_manager)
check(
    "ModemManager with a device of two functions: says that the port is busy, and connects once it is free",
    False,
    2,
    name="modem_manager_two_functions",
)(busy_with_modem_manager)


@check("plugged in while the wizard is open, ModemManager told to probe: it leaves the port alone")
def modem_manager_kept_away(bench):
    modem_manager()
    make_it_probe(bench)
    wizard = bench.wizard()
    dongle = bench.dongle()
    time.sleep(TIME_TO_COME)
    expect(bytes(dongle.bytes), b"", "what reached the device")
    wizard.connect()
    expect(bytes(dongle.bytes), b"".join(CONNECTING), "what reached the device")


@check("ModemManager comes after the connection: saving ends, with success only if the device was told to store")
def modem_manager_comes_late(bench):
    make_it_probe(bench)
    process = modem_manager()
    os.kill(process, signal.SIGSTOP)
    bench.finally_(lambda: os.kill(process, signal.SIGCONT))
    dongle = bench.dongle()
    wizard = bench.connected(step="Summary")
    connected = len(dongle.bytes)
    os.kill(process, signal.SIGCONT)
    wait_for(lambda: len(dongle.bytes) > connected, "ModemManager to write")
    wizard.save()
    wizard.wait_for_line("Save done.")
    succeeded = wizard.output.time_of("Save done. pass.") is not None
    bench.note = "saved" if succeeded else "not saved"
    expect(succeeded, bool(dongle.count(STORE)), "whether the wizard says that it has saved")
    if succeeded:
        expect(wizard.leave(), 0, "the exit status")
    else:
        wizard.answer_failed_save()
        close(wizard)
