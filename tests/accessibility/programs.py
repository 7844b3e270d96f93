"""The two programs of a walk: the wizard, and the dongle that is directed while it runs."""

import os
import pathlib
import signal
import subprocess

from screen_reader import wait_for

BUILT = pathlib.Path(__file__).resolve().parents[2] / "build" / "check" / "bin"
PROGRAMS = pathlib.Path(os.environ.get("VELMORINDAL_PROGRAMS", BUILT))


class Program:
    """A program whose standard output and standard error are kept, line by line."""

    def __init__(self, directory, name, arguments=(), variables=None, **options):
        self.name = name
        kept = name.replace("/", "-")
        self._output = pathlib.Path(directory, f"{kept}-{id(self)}.out")
        self._errors = pathlib.Path(directory, f"{kept}-{id(self)}.err")
        with open(self._output, "wb") as output, open(self._errors, "wb") as errors:
            self.process = subprocess.Popen(
                [PROGRAMS / name, *arguments],
                stdout=output,
                stderr=errors,
                env={**os.environ, **(variables or {})},
                **options,
            )

    def lines(self):
        """The whole lines printed so far."""
        return self._output.read_text(encoding="utf-8").split("\n")[:-1]

    def errors(self):
        return self._errors.read_text(encoding="utf-8")

    def has_ended(self):
        return self.process.poll() is not None

    def status(self):
        """The exit status, waited for."""
        wait_for(f"the end of {self.name}", self.has_ended)
        return self.process.returncode

    def stop(self):
        if not self.has_ended():
            self.process.kill()
        self.process.wait()
        if self.process.stdin is not None:
            self.process.stdin.close()


class Wizard(Program):
    """The wizard under test, whose exchanges time out where the dongle is silent and at no other time."""

    def __init__(self, directory, devices):
        variables = {"VELMORINDAL_DEVICE_DIRECTORY": f"{devices}/", "VELMORINDAL_SILENCES": f"{directory}/silences"}
        super().__init__(directory, "unhurried/velmorindal-setup", variables=variables, cwd=directory)

    def errors(self):
        # Newer toolkits say so when a reader asks for an object that has just gone, as readers do.
        asked_too_late = "qt.accessibility.atspi: Could not find accessible on path: "
        return "".join(
            line for line in super().errors().splitlines(keepends=True) if not line.startswith(asked_too_late)
        )

    def terminate(self):
        self.process.send_signal(signal.SIGTERM)


class Dongle(Program):
    """A simulated dongle that takes orders, such as `send("hold status")`."""

    def __init__(self, directory, devices, name="cu.usbmodem-simulated"):
        super().__init__(
            directory, "velmorindal-scripted-dongle", [devices, name, f"{directory}/silences"], stdin=subprocess.PIPE
        )
        self._orders = 0
        self._holds = 0
        wait_for("the simulated dongle", self.lines)
        self.path = self.lines()[0]

    def send(self, *orders):
        for order in orders:
            self._holds += order.startswith("hold ")
            self.process.stdin.write(order.encode() + b"\n")
            self.process.stdin.flush()
            self._orders += 1
            wait_for(
                lambda order=order: f"{order!r} being done; {self.errors()}",
                lambda: self.lines().count("done") == self._orders,
            )

    def holds(self):
        """Waits until each answer that is to be held back is due: the wizard waits for it from then on."""
        wait_for("an answer to hold back", lambda: self.lines().count("held") == self._holds)

    def received(self):
        """The frames that the wizard has sent, in hexadecimal digits."""
        marker = "received "
        return [line[len(marker) :] for line in self.lines() if line.startswith(marker)]

    def stored(self):
        """What the device has kept, in words."""
        before = len(self.lines())
        self.send("stored")
        return [line for line in self.lines()[before:] if line != "done" and not line.startswith("received ")]
