"""The real screen reader, Orca, with a synthesizer that writes down what it would say."""

import os
import pathlib
import re
import subprocess
from functools import cache

from screen_reader import wait_for
from synthesizer import Synthesizer

BUS_LAUNCHERS = ("/usr/libexec/at-spi-bus-launcher", "/usr/lib/at-spi2-core/at-spi-bus-launcher")
# Keys are not echoed: they stand beside what is said anyway.
SETTINGS = "import orca.settings\norca.settings.enableKeyEcho = False\n"


def plain(utterance):
    """One utterance without what differs between versions of Orca: full stops after names, the words for some roles."""
    text = re.sub(r"\bpush button\b", "button", utterance.replace(" dot dot dot", "..."))
    text = re.sub(r"^notification\b| notification$| label$|\bopens popup$", "", text.strip().rstrip("."))
    return text.strip().rstrip(".")


@cache
def orca_version():
    """The number before the first point."""
    said = subprocess.run(["orca", "--version"], check=True, capture_output=True, text=True).stdout
    return int(re.search(r"\d+", said)[0])


class Pages:
    """What is said, a page for each key. Nothing is lost between two pages: what was not read on one is on the next."""

    def __init__(self, utterances):
        self._utterances = utterances
        self._turned = self._read = 0

    def said(self):
        """What has been said since the page was turned; an order to be silent takes back what it cut off."""
        self._read = len(self._utterances)
        said = []
        cut_off = []
        for utterance in self._utterances[self._turned : self._read]:
            if utterance is None:
                cut_off += said
                said = []
            elif plain(utterance):
                said.append(plain(utterance))
        return [f"CUT OFF: {text}" for text in cut_off] + said

    def turn(self):
        """What has been read is done with."""
        self._turned = self._read

    def skip(self):
        """What has been said so far belongs to no key."""
        self._turned = len(self._utterances)


class Voice:
    """Orca, from its start to its end. It must be there before the program that it reads."""

    def __init__(self, home, runtime):
        socket = pathlib.Path(runtime, "synthesizer.sock")
        self._synthesizer = Synthesizer(socket)
        self.pages = Pages(self._synthesizer.utterances)
        customizations = pathlib.Path(home, ".local/share/orca/orca-customizations.py")
        customizations.parent.mkdir(parents=True)
        customizations.write_text(SETTINGS, encoding="utf-8")
        # Orca refuses to start beside another one of the same user, so it does not see the other one.
        commands = pathlib.Path(home, "commands")
        commands.mkdir()
        (commands / "pgrep").write_text("#!/bin/sh\nexit 1\n", encoding="utf-8")
        (commands / "pgrep").chmod(0o755)
        environment = {
            **os.environ,
            "SPEECHD_ADDRESS": f"unix_socket:{socket}",
            "PATH": f"{commands}{os.pathsep}{os.environ['PATH']}",
        }
        launcher = next(path for path in BUS_LAUNCHERS if os.path.exists(path))
        quiet = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL, "env": environment}
        self._programs = [
            subprocess.Popen([launcher, "--launch-immediately", "--a11y=1"], **quiet),
            subprocess.Popen(["orca"], **quiet),
        ]
        wait_for("Orca's first words", lambda: any("on" in said for said in self.pages.said()))
        self.pages.skip()

    def stop(self):
        for program in reversed(self._programs):
            program.kill()
            program.wait()
