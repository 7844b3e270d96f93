"""What a check works with: dongles to plug in, people who run the wizard, and the list of all checks."""

import contextlib
import pathlib
import re
import subprocess

from desktop import Person
from dongle import Dongle
from keyboard_run import Screen
from waiting import expect, wait_for
from wizard import Wizard

LOGS = pathlib.Path(__file__).parent / "logs"
DEADLINE = 2
"""Seconds that the wizard waits for an answer."""
SLOWNESS = 3
"""Seconds that may come on top in a machine that is slow."""
CHECKS = {}
"""By name, in the order in which they run: what must hold, and the function that checks it."""


def check(statement, *parameters, name=None):
    def register(function):
        CHECKS[name or function.__name__] = (statement, lambda bench: function(bench, *parameters))
        return function

    return register


class Machine:
    """What all checks of a run share."""

    def __init__(self, stack):
        self.desktop = Screen(stack)
        self.people = {name: Person(name, stack) for name in ("carer", "dialer", "stranger")}


class Bench:
    """For one check. Everything is pulled and ended when its context ends; pulling comes first, because a wizard may
    wait for a device that answers no more."""

    def __init__(self, machine, name):
        self.machine = machine
        self.desktop = machine.desktop
        self.name = name
        self.note = ""
        """What was measured, for the line of the check."""
        self._programs = 0
        self._devices = contextlib.ExitStack()
        self._started = contextlib.ExitStack()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._devices.close()
        wait_for(lambda: not nodes() and not links(), "the ports to vanish")
        self._started.close()

    def dongle(self, make=Dongle, **options):
        """Plugged in, with its port there and its rules applied."""
        dongle = make(**options)
        self._devices.callback(dongle.pull)
        self.plug_in(dongle)
        return dongle

    @staticmethod
    def plug_in(dongle):
        before = nodes()
        dongle.plug_in()
        node = wait_for(lambda: set(nodes()) - set(before), "the port of the plugged dongle").pop()
        # Until udev has done all that its rules say.
        subprocess.run(["udevadm", "wait", "--timeout=120", node], check=True)

    @staticmethod
    def pull(dongle):
        before = nodes()
        dongle.pull()
        wait_for(
            lambda: len(nodes()) < len(before) and all(link.exists() for link in links()),
            "the port of the pulled dongle to vanish",
        )

    def plug_in_again(self, dongle):
        """One that pulls itself."""
        wait_for(lambda: not (dongle.is_plugged() or nodes() or links()), "the port to vanish")
        self.plug_in(dongle)

    def wizard(self, person="carer", printing=True, **environment):
        """Started, with its window on the screen. See Wizard for `printing`."""
        self._programs += 1
        log = LOGS / f"{self.name}-{self._programs}"
        wizard = self._started.enter_context(
            Wizard(self.machine.people[person], self.desktop, log, environment, printing)
        )
        wait_for(lambda: wizard.windows(), "the window of the wizard")
        wizard.is_at("Welcome")
        return wizard

    def connected(self, person="carer", step="Connect", **environment):
        """A wizard that is connected and at a step."""
        wizard = self.wizard(person, **environment)
        wizard.connect()
        wizard.walk("Connect", step)
        return wizard

    def finally_(self, action):
        self._started.callback(action)


def nodes():
    return sorted(node for kind in ("ttyACM", "ttyUSB") for node in pathlib.Path("/dev").glob(f"{kind}*"))


def links():
    return sorted(pathlib.Path("/dev").glob("cu.usbmodem*"))


def attributes(path="/dev/ttyACM0"):
    """The line's attributes as `stty` names them."""
    return subprocess.run(["stty", "-F", path, "-a"], capture_output=True, text=True, check=True).stdout


def holds_back(path="/dev/ttyACM0"):
    """Whether the line waits for a minimum of bytes or echoes."""
    text = attributes(path)
    return {
        "min": int(re.search(r"\bmin = (\d+)", text)[1]),
        "time": int(re.search(r"\btime = (\d+)", text)[1]),
        "echo": "-echo " not in text,
        "icanon": "-icanon" not in text,
    }


def close(wizard):
    wizard.close_window()
    expect_left(wizard)


def expect_left(wizard):
    """The wizard has ended well."""
    expect(wizard.status(), 0, "the exit status")
    expect(wizard.output.texts[-1], "Farewell", "the last line")


def expect_reason(wizard, *parts):
    """A wizard that has ended said in one line on standard error, with all of these in it, why a port was not usable."""
    said = list(wizard.errors.texts)
    expect(any(all(part in line for part in parts) for line in said), True, f"a line with {parts} among {said}")
