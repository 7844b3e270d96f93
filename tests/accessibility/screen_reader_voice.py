"""The real screen reader, Orca, with a synthesizer that writes down what it would say."""

import os
import pathlib
import re
import shutil
import socket
import subprocess
import tempfile
from functools import cache

from screen_reader import BOUND, NotHeard, wait_for
from synthesizer import Synthesizer

BUS_LAUNCHERS = ("/usr/libexec/at-spi-bus-launcher", "/usr/lib/at-spi2-core/at-spi-bus-launcher")
QUIET = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
DECISIONS = re.compile(
    r"Dequeued (window|focus|object:state-changed:(active|focused))| DEFAULT: |Changing locusOfFocus|active window|SPEECH OUTPUT"
)
CUSTOMIZATIONS = pathlib.Path(__file__).with_name("orca_customizations.py")


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


def launch_bus():
    """The accessibility bus, told that a screen reader is there."""
    launcher = next(path for path in BUS_LAUNCHERS if os.path.exists(path))
    return subprocess.Popen([launcher, "--launch-immediately", "--a11y=1"], **QUIET)


class Voice:
    """Orca, from its start to its end. It must be there before the program that it reads; and it reads one alone, since
    newer versions may take what they meet in a later program for what has ended with an earlier one."""

    def __init__(self, home, runtime):
        directory = tempfile.mkdtemp(dir=runtime)
        speech, rest, self._log = (pathlib.Path(directory, name) for name in ("speech", "rest", "log"))
        self.pages = Pages(Synthesizer(speech).utterances)
        customizations = pathlib.Path(home, ".local/share/orca/orca-customizations.py")
        customizations.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(CUSTOMIZATIONS, customizations)
        # Orca refuses to start beside another one of the same user, so it does not see the other one.
        blind = pathlib.Path(directory, "pgrep")
        blind.write_text("#!/bin/sh\nexit 1\n", encoding="utf-8")
        blind.chmod(0o755)
        environment = {
            **os.environ,
            "SPEECHD_ADDRESS": f"unix_socket:{speech}",
            "VELMORINDAL_REST_SOCKET": str(rest),
            "VELMORINDAL_EVENT_LOG": str(self._log),
            "PATH": f"{directory}{os.pathsep}{os.environ['PATH']}",
        }
        self._orca = subprocess.Popen(["orca"], env=environment, **QUIET)
        wait_for("Orca's first words", lambda: any("on" in said for said in self.pages.said()))
        self._questions = socket.socket(socket.AF_UNIX)
        self._questions.settimeout(BOUND)
        self._questions.connect(str(rest))
        self.rest()
        self.pages.skip()

    def rest(self):
        """Waits until Orca has dealt with all that has reached it."""
        try:
            self._questions.sendall(b"?\n")
            answered = self._questions.recv(64)
        except OSError:
            answered = b""
        if not answered:
            raise NotHeard("Orca coming to rest")

    def decisions(self):
        """The end of Orca's log: what it made of windows and focus, and what it said."""
        lines = self._log.read_text(encoding="utf-8", errors="replace").splitlines()
        return [line for line in lines if DECISIONS.search(line)][-100:]

    def stop(self):
        self._orca.kill()
        self._orca.wait()
        self._questions.close()
