"""The wizard as a person runs it: on a screen, with a keyboard, heard by a screen reader."""

import contextlib
import fcntl
import json
import os
import pathlib
import subprocess

from desktop import Lines
from waiting import SECONDS, Failed, wait_for

STEPS = ["Connect", "Mode", "Ouptut", "Calibration", "Summary"]
TITLE = "Velmorindal Setup"
PIPE = 4096
HERE = pathlib.Path(__file__).parent


class Wizard:
    """Ends when its context does. `log` is the path of its log without the ending."""

    def __init__(self, person, desktop, log, environment=None, printing=True):
        """Without `printing`, standard output takes nothing until `let_print` is called: a line that the program prints
        holds it up."""
        self.person = person
        self.desktop = desktop
        reader, writer = os.pipe()
        fcntl.fcntl(writer, fcntl.F_SETPIPE_SZ, PIPE)
        if not printing:
            os.write(writer, b"." * (PIPE - 1) + b"\n")
        self.process = person.start(
            ["/usr/bin/velmorindal-setup"],
            stdin=subprocess.DEVNULL,
            stdout=writer,
            stderr=subprocess.PIPE,
            text=True,
            errors="replace",
            environment={"DISPLAY": desktop.display} | (environment or {}),
        )
        os.close(writer)
        self._printed = os.fdopen(reader, errors="replace")
        self._log = log
        self.output = None
        if printing:
            self.let_print()
        self.errors = Lines(self.process.stderr, f"{log}.err")
        self._reader = None

    def let_print(self):
        self.output = Lines(self._printed, f"{self._log}.out")

    def has_open(self, port):
        """Whether an open of the port has returned."""
        for descriptor in pathlib.Path(f"/proc/{self.process.pid}/fd").iterdir():
            with contextlib.suppress(FileNotFoundError):
                if os.readlink(descriptor) == port:
                    return True
        return False

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()
        if self._reader:
            self._reader.kill()
            self._reader.wait()

    def press(self, *keys, title=TITLE):
        for key in keys:
            self.desktop.press(title, key)

    def wait_for_line(self, start, seconds=SECONDS):
        wait_for(
            lambda: self.output.time_of(start) is not None,
            lambda: f"the line {start!r}; printed was {self.output.texts[-6:]}",
            seconds,
        )

    def wait_for_error(self, part, seconds=SECONDS):
        return wait_for(
            lambda: next((line for line in list(self.errors.texts) if part in line), None),
            lambda: f"{part!r} on standard error; there is {self.errors.texts}",
            seconds,
        )

    def windows(self):
        """What a screen reader knows of the windows on the screen."""
        if self._reader is None:
            self._reader = self.person.start(
                ["/usr/bin/python3", HERE / "reader.py", str(self.process.pid)],
                environment={"PYTHONPATH": str(HERE.parent / "accessibility")},
                stdin=subprocess.PIPE,
                stdout=subprocess.PIPE,
                stderr=subprocess.DEVNULL,
                text=True,
            )
        self._reader.stdin.write("\n")
        self._reader.stdin.flush()
        answer = self._reader.stdout.readline()
        if not answer:
            raise Failed("the screen reader lost the program")
        return json.loads(answer)

    def hears(self, text):
        """Waits until some window says something with `text` in it."""

        def heard():
            return any(text in spoken for window in self.windows() for spoken in [window["name"], *window["spoken"]])

        wait_for(heard, lambda: f"{text!r} on the screen; there is {self.windows()}")

    def is_at(self, step):
        wait_for(lambda: any(window["step"] == step for window in self.windows()), f"the step {step}")

    # What a person does.

    def connect(self):
        self.press("alt+n")
        self.wait_for_line("Status updated now:  connected")
        # The line comes before the page says it, and until then there is no Next.
        self.hears("Connection successful.")

    def walk(self, start, end):
        """From one step to a later one, by Next. The first is the Connect page once it is connected, at the earliest."""
        for following in STEPS[STEPS.index(start) + 1 : STEPS.index(end) + 1]:
            self.press("alt+n")
            self.is_at(following)

    def save(self):
        """On the Summary page. Returns once the writing has begun."""
        self.press("alt+s")
        self.press("alt+y", title="Save Settings\\?")
        self.wait_for_line("Starting save")

    def answer_failed_save(self):
        """Both dialogs, with the file not wanted."""
        self.press("Return", title="Save Failed")
        self.press("alt+n", title="Write Configuration File\\?")
        wait_for(lambda: len(self.windows()) == 1, "the dialogs to go")

    def leave(self, seconds=SECONDS):
        """From the last page after a save that has ended, with the file not wanted."""
        self.press("alt+n", title="Write Configuration File\\?")
        wait_for(lambda: len(self.windows()) == 1, "the dialog to go")
        self.hears("[button] Close")
        self.press("alt+e")
        return self.status(seconds)

    def close_window(self):
        self.press("alt+F4")

    def status(self, seconds=SECONDS):
        wait_for(lambda: self.process.poll() is not None, "the end of the wizard", seconds)
        return self.process.returncode
