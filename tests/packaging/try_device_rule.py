#!/usr/bin/env python3
"""Lets udev itself apply the rule to made-up devices, and the wizard program a simulated device through the link that
udev made: in /dev, as installed, with nothing in the environment.

Usage: unshare --mount --propagation private --pid --fork --mount-proc try_device_rule.py RULE_FILE WIZARD SIMULATOR

Real: the rules of this system and ours, how udev reads and applies them, the link that it makes, the wizard and its
whole run by keys. Made up: the USB devices in sysfs, and the port behind the link, which is the simulator's. logind,
which gives the access that the rule asks for, is not part of this. Everything under /dev and /run, and every process,
is in a separate name space and ends with it. For root.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

import keyboard_run
from bare_dev import make_bare_dev, mount
from waiting import expect

TTY = """P: /devices/usb1/1-{n}/1-{n}:1.0/tty/ttyACM{n}
N: ttyACM{n}
E: DEVNAME=/dev/ttyACM{n}
E: MAJOR=166
E: MINOR={n}
E: SUBSYSTEM=tty
A: dev=166:{n}

P: /devices/usb1/1-{n}/1-{n}:1.0
E: DEVTYPE=usb_interface
E: SUBSYSTEM=usb
A: bInterfaceClass=02
A: bInterfaceNumber=00
A: bInterfaceProtocol=01
A: bInterfaceSubClass=02

P: /devices/usb1/1-{n}
E: DEVTYPE=usb_device
E: SUBSYSTEM=usb
A: bDeviceClass=02
A: bNumInterfaces= 2
A: idProduct=0001
A: idVendor=0000

P: /devices/usb1
E: DEVTYPE=usb_device
E: SUBSYSTEM=usb
A: bNumInterfaces= 1
A: idProduct=0002
A: idVendor=0000
"""


def replace_dev_and_run():
    """A /dev with nothing in it but what every program needs, and an empty /run."""
    new = pathlib.Path(tempfile.mkdtemp(prefix="velmorindal-dev-"))
    make_bare_dev(new)
    mount("--move", new, "/dev")
    new.rmdir()
    mount("-t", "tmpfs", "tmpfs", "/run")


def only_says_what_it_would_do():
    """Newer versions of "udevadm test" make no links and run no programs: they take each for one that succeeded."""
    version = subprocess.run(["udevadm", "--version"], check=True, capture_output=True, text=True).stdout
    return int(version.split()[0]) >= 257


def apply_rules(number):
    """What udev makes of a port: its properties, as a dictionary."""
    with tempfile.NamedTemporaryFile("w", suffix=".umockdev") as device:
        device.write(TTY.format(n=number))
        device.flush()
        path = f"/sys/devices/usb1/1-{number}/1-{number}:1.0/tty/ttyACM{number}"
        command = ["umockdev-run", "--device", device.name, "--", "udevadm", "test", path]
        done = subprocess.run(command, capture_output=True, text=True)
    if done.returncode != 0:
        sys.exit(f"udevadm ended with {done.returncode}:\n{done.stdout}{done.stderr}")
    # What udev says while it reads the file; lines about a device begin with the device's name.
    complaint = re.compile(r"\S*velmorindal-setup\.rules:\d+ ")
    complaints = [line for line in done.stderr.splitlines() if complaint.match(line)]
    expect(complaints, [], "udev's complaints about the rule")
    properties = dict(line.strip().split("=", 1) for line in done.stdout.splitlines() if "=" in line)
    if only_says_what_it_would_do():
        do_what_udev_would(number, properties, done.stderr)
    return properties


def do_what_udev_would(number, properties, said):
    link = f"/dev/cu.usbmodem{number}"
    if link in properties.get("DEVLINKS", "").split():
        os.symlink(os.path.basename(properties["DEVNAME"]), link)
    programs = re.findall(
        r"velmorindal-setup\.rules:\d+ (?:Running )?PROGRAM==?\"(.+?)\"(?:$|: Running)", said, re.MULTILINE
    )
    for program in set(programs):
        if subprocess.run(program.split(), stdout=subprocess.DEVNULL).returncode != 0:
            del properties["ID_MM_PORT_IGNORE"]


def check_rule(number, ignored_as_modem):
    properties = apply_rules(number)
    expect(f"/dev/cu.usbmodem{number}" in properties.get("DEVLINKS", "").split(), True, "the link among the device's")
    expect(os.readlink(f"/dev/cu.usbmodem{number}"), f"ttyACM{number}", "where the link leads")
    expect("uaccess" in properties["TAGS"].split(":"), True, "access for the person at the seat")
    ignored = properties.get("ID_MM_PORT_IGNORE") == "1"
    expect(ignored, ignored_as_modem, "whether modem managers ignore the device")


def check_rule_beside_an_open_wizard(number):
    """Any program of the wizard's name does."""
    program = pathlib.Path("/run/velmorindal-setup")
    shutil.copy("/usr/bin/sleep", program)
    with subprocess.Popen([program, "infinity"]) as running:
        try:
            check_rule(number, ignored_as_modem=True)
        finally:
            running.kill()


def narrow(rule, vendor, product):
    """Changes the rule as its comments say, once the numbers are known: each line in a comment replaces the line
    below."""
    lines = rule.read_text().splitlines()
    for number, line in enumerate(lines):
        if line.startswith("#     "):
            lines[number + 1] = line[6:].replace('"...."', f'"{vendor}"', 1).replace('"...."', f'"{product}"', 1)
    rule.write_text("\n".join(lines) + "\n")


def check_narrowed_rule(rule):
    """The made-up devices have the numbers 0000 and 0001."""
    whole = rule.read_text()
    narrow(rule, "0000", "0001")
    check_rule(2, ignored_as_modem=True)
    rule.write_text(whole)
    narrow(rule, "0000", "0009")
    properties = apply_rules(3)
    expect("uaccess" in properties.get("TAGS", "").split(":"), False, "access to a device of other numbers")
    expect(os.path.lexists("/dev/cu.usbmodem3"), False, "a link to a device of other numbers")


def program_through_the_link(wizard, simulator):
    port_directory = tempfile.mkdtemp(prefix="velmorindal-port-", dir="/run")

    def put_in_place_of_the_node(port):
        node = pathlib.Path("/dev/ttyACM0")
        node.touch()
        mount("--bind", port.resolve(), node)

    bare = {"PATH": os.environ["PATH"], "HOME": port_directory, "XDG_RUNTIME_DIR": port_directory}
    lines, stored = keyboard_run.run([wizard], [simulator, port_directory], bare, bare, put_in_place_of_the_node)
    expect("Definitely this one  /dev/cu.usbmodem0" in lines, True, "the link is what the wizard found")
    print("programmed through /dev/cu.usbmodem0:", "; ".join(stored))


def main():
    rule, wizard, simulator = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
    replace_dev_and_run()
    rules = pathlib.Path("/run/udev/rules.d")
    rules.mkdir(parents=True)
    installed = pathlib.Path(shutil.copy(rule, rules))
    check_rule(0, ignored_as_modem=False)
    check_rule_beside_an_open_wizard(1)
    check_narrowed_rule(installed)
    for number in (1, 2):
        os.unlink(f"/dev/cu.usbmodem{number}")
    program_through_the_link(wizard, simulator)
    print("the device rule makes the link, gives access, and keeps modem managers away while a wizard is open")


if __name__ == "__main__":
    main()
