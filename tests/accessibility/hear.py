#!/usr/bin/python3
"""The whole setup by keys under the real screen reader, and each way in which it fails: a transcript with what is said
beside each key, compared line by line with what is to be heard.

hear.py [SCENARIO...]"""

import contextlib
import os
import pathlib
import subprocess
import sys
import tempfile

import texts
from accessibility_bus import ACCESSIBLE, ROOT
from programs import Dongle, Wizard
from screen_reader import NotHeard, ScreenReader, wait_for
from screen_reader_voice import Voice, launch_bus, orca_version, plain

WINDOW = "Velmorindal Setup frame"
CONNECT_TITLE = "It's time to connect to the Velmorindal. label"
LOAD_TEXT = (
    "If you have previously saved a configuration, you can load it here. These settings will not be saved to "
    "the Velmorindal until the end."
)
CONNECTING = "Connecting... Connection progress 0 percent"
CONNECTED = 'Connection progress 100 percent Connection successful. Press "Next" to continue.'
MODE_QUESTION = "Which mode would you like?"
MODE_TEXT = (
    "The Velmorindal can operate in two modes: Direct Mode: control one output with a hum Long/Short Mode: "
    "control two outputs with a short hum or a long hum"
)
OUTPUT_QUESTION = "What output would you like the Velmorindal to trigger?"
SUMMARY_TITLE = "You have configured your Velmorindal with the following parameters: label"
WRITING = "Writing data... Write progress 0 percent"
WRITTEN = "Write progress 100 percent Settings successfully written. Please restart your Velmorindal."
STALE = "No readings are arriving. Check that the dongle is plugged in and the Velmorindal is turned on."
DISPLAY = "display is running. The buttons below the page return when it is stopped."
NEXT_GONE = "Next is not available. Enable an output."


def on_one_line(*parts):
    return " ".join(" ".join(parts).split())


def calibration_text():
    page = texts.calibration_page()
    numbers = ("0.50", "1.00 s")
    return on_one_line(*(text for text in page[:12] if not text.startswith("[") and text not in numbers))


def dialog(described, focus):
    title, message, _ = described
    return [f"{title} dialog {on_one_line(message)}", f"{focus} button"]


def uncut(utterance):
    return utterance.removeprefix("CUT OFF: ")


def press(key):
    subprocess.run(["xdotool", "key", key], check=True)


def type_text(text):
    subprocess.run(["xdotool", "type", text], check=True)


class Maybe(str):
    """Words that may be missing, such as those about a focus that a dialog takes away at once."""


def early(focus):
    """Newer versions do not always say the focus of a program that has only just started."""
    return Maybe(focus) if is_newer() else focus


def chosen(question, entry):
    """A radio button that gets the focus from outside its group."""
    return [f"{question} panel", *asked_again(question), f"{entry} selected radio button"]


def asked_again(question):
    """Newer versions of Orca say the name of its group with every radio button."""
    return [question] if is_newer() else []


def slider(name, value, percent):
    """The place on the scale is said by newer versions of Orca."""
    return [f"{name} slider {value}", *([f"{percent} percent"] if is_newer() else [])]


def is_newer():
    """Versions after 43 bring what is new about windows and the focus before what was announced earlier, and bring a
    window again where more came meanwhile."""
    return orca_version() > 43


BETWEEN_DIALOGS = (Maybe(f"{WINDOW} 1 unfocused dialog"), Maybe(WINDOW))
"""The window is active for a moment, which is said where the window manager is slow."""


class Hearing(contextlib.ExitStack):
    """One run of the wizard that is heard."""

    passed = 0
    failed = 0

    def __init__(self, pages, name, rest=lambda: None):
        super().__init__()
        self._pages = pages
        self._rest = rest
        self._said = []
        self._passing = []
        self._reader = None
        self.callback(pages.skip)
        self.directory = pathlib.Path(self.enter_context(tempfile.TemporaryDirectory(prefix="velmorindal-hear-")))
        self._devices = self.directory / "devices"
        self._devices.mkdir()
        print(f"\n== {name}", flush=True)

    def plug_in(self):
        self.dongle = Dongle(self.directory, self._devices)
        self.callback(self.dongle.stop)
        return self.dongle

    def opens(self):
        def start():
            self.wizard = Wizard(self.directory, self._devices)
            self.callback(self.wizard.stop)
            self._reader = ScreenReader(self.wizard.process.pid)

        # Of a program that has only just started, Orca does not always say the window and the focus.
        self.hears("(opens)", start, Maybe(WINDOW), Maybe("Next button"), on_one_line(*texts.WELCOME_PAGE[1:]))

    def key(self, key, *expected):
        self.hears(key, lambda: press(key), *expected)

    def announced(self, order, *expected):
        self.hears(f"({order})", lambda: self.dongle.send(order), *expected)

    def hears(self, cause, act, *expected):
        """These words and no others, in this order; how they are cut into utterances is the screen reader's business.
        What comes later than the last of them is heard beside the next key, and is wrong there; so every scenario ends
        with a key of which little is said."""
        ways = [[]]
        for text in expected:
            if text == WINDOW and cause != "(opens)" and is_newer():
                continue
            ways = [way + [plain(text)] for way in ways] + (ways if isinstance(text, Maybe) else [])
        wanted = [plain(on_one_line(*way)) for way in ways]
        passing, self._passing = self._passing, []
        self._hear(
            cause,
            act,
            lambda heard: heard in wanted,
            lambda heard: not any(way.startswith(heard) for way in wanted),
            wanted[0],
            passing,
        )

    def _meets(self, cause, act, described, focus, *before):
        """A dialog, which comes so early that `before` is perhaps still being said."""
        words = dialog(described, focus)
        if not is_newer():
            self.hears(cause, act, *before, *words)
            return
        needed = {plain(text) for text in before if not isinstance(text, Maybe)} | {plain(text) for text in words}
        self._passing = [plain(text) for text in (*words, WINDOW, WINDOW.rpartition(" ")[0])]
        allowed = [plain(text) for text in before] + self._passing
        self._hear(
            cause,
            act,
            lambda _: needed <= {uncut(each) for each in self._said},
            lambda _: any(uncut(each) not in allowed for each in self._said),
            on_one_line(*before, *words),
        )

    def meets_by(self, key, described, focus, *before):
        self._meets(key, lambda: press(key), described, focus, *before)

    def meets_after(self, order, described, focus, *before):
        self._meets(f"({order})", lambda: self.dongle.send(order), described, focus, *before)

    def hears_among_others(self, cause, act, expected):
        """In a window of the toolkit's own, which is not ours to word."""
        words = plain(expected)
        self._passing = [WINDOW, WINDOW.rpartition(" ")[0]] if is_newer() else []
        self._hear(
            cause,
            act,
            lambda heard: heard.count(words) == 1,
            lambda heard: heard.count(words) > 1,
            f"... {expected} ...",
        )

    def _hear(self, cause, act, fits, is_wrong, wanted, passing=()):
        """Reads until what was said fits, or is wrong whatever may follow."""
        act()

        def heard():
            return plain(on_one_line(*(each for each in self._said if uncut(each) not in passing)))

        def is_decided():
            self._said = self._pages.said()
            return fits(heard()) or is_wrong(heard())

        try:
            wait_for("the words", is_decided)
            self.come_to_rest()
            self._said = self._pages.said()
        except NotHeard:
            pass
        self._pages.turn()
        print(f"{cause:>24} | " + ("\n" + " " * 25 + "| ").join(self._said or ["-"]), flush=True)
        if fits(heard()):
            Hearing.passed += 1
        else:
            Hearing.failed += 1
            raise NotHeard(wanted)

    def come_to_rest(self):
        """A person presses a key when all is said; newer versions lose the focus that a key moves meanwhile. An answer of
        the wizard comes behind all that it has sent before, to the screen reader too."""
        for _ in range(2):
            if self._reader is not None:
                self._reader.ask_each([ROOT], (ACCESSIBLE, "GetRole", None))
            self._rest()


def starts_to_connect(hearing):
    """The dongle keeps its answer about the link back: a state that lasts only a moment is not said."""
    hearing.dongle.send("hold status")
    hearing.opens()
    hearing.key("Return", early(CONNECT_TITLE), LOAD_TEXT, CONNECTING)


def reach_connected(hearing):
    starts_to_connect(hearing)
    hearing.announced("release", CONNECTED)


def reach_calibration(hearing):
    """By Return and the letter of Next, with everything left as the device had it."""
    reach_connected(hearing)
    hearing.key("Return", *chosen(MODE_QUESTION, "Long/Short Mode"), MODE_TEXT)
    hearing.key("alt+n", *chosen(OUTPUT_QUESTION, "Switch Output"))
    hearing.key("alt+n", "Show Clarity button", calibration_text())


def starts_to_write(hearing):
    """The dongle keeps its second acknowledgement back."""
    hearing.dongle.send("hold outputPath")
    hearing.meets_by("Return", texts.SAVE_SETTINGS, "No")
    hearing.key("alt+y", WINDOW, SUMMARY_TITLE, WRITING)


def whole_setup(hearing):
    hearing.plug_in()
    reach_connected(hearing)
    hearing.key("Return", *chosen(MODE_QUESTION, "Long/Short Mode"), MODE_TEXT)
    hearing.key("Tab", "Enable short output check box checked")
    hearing.key("space", "not checked")
    hearing.key("Tab", "Enable long output check box checked")
    hearing.key("space", "not checked", NEXT_GONE)
    hearing.key("space", "checked", "Next is available.")
    hearing.key("shift+Tab", "Enable short output check box not checked")
    hearing.key("space", "checked")
    hearing.key("alt+n", *chosen(OUTPUT_QUESTION, "Switch Output"))
    hearing.key("Down", *asked_again(OUTPUT_QUESTION), "USB Keyboard selected radio button")
    hearing.key("Tab", "Short hum keystroke combo box Space")
    hearing.key("Down", "Enter")
    hearing.key("Tab", "Long hum keystroke combo box Enter")
    hearing.key("alt+b", "Back button", on_one_line(MODE_TEXT, "Which mode would you like?"))
    hearing.key("alt+n", *chosen(OUTPUT_QUESTION, "USB Keyboard"))
    hearing.key("alt+n", "Show Clarity button", calibration_text())
    hearing.key("space", f"The clarity {DISPLAY}")
    # A hum rises above what was there before it.
    wait_for("the quiet before", lambda: "Have a reading of  0.05" in hearing.wizard.lines())
    hearing.dongle.send("clarity 0.72")
    wait_for("the reading", lambda: "Have a reading of  0.72" in hearing.wizard.lines())
    hearing.announced("clarity 0.05", "0.72, above the threshold")
    hearing.key("Tab", *slider("Clarity threshold", "0.50", 50))
    hearing.key("Prior", "0.60")
    hearing.key("alt+h", "The clarity display has stopped.")
    hearing.key("Tab", "Show Duration button")
    hearing.key("space", f"The duration {DISPLAY}")
    # The first answer reports a hum from before the display and is dropped.
    wait_for("the second question", lambda: hearing.dongle.received().count("63 62 6c 00") > 1)
    hearing.announced("hum 40", "1.60 seconds, long")
    hearing.announced("hum 10", "0.40 seconds, short")
    hearing.announced("hum 10", "0.40 seconds, short")
    hearing.key("Tab", *slider("Cutoff", "1.00", 34), "seconds")
    hearing.key("Right", "1.05")
    hearing.key("alt+d", "The duration display has stopped.")
    hearing.key(
        "alt+n",
        SUMMARY_TITLE,
        "Mode: Long/short mode Long/Short outputs: Short output: ENABLED; Long output: ENABLED Output: USB "
        "Keyboard Output Keystroke: Short: Space; Long: Enter Long/Short cutoff: 1.05s Clarity: 0.60",
    )
    starts_to_write(hearing)
    hearing.meets_after("release", texts.FILE_AFTER_SUCCESS, "No", Maybe("Close button"))
    hearing.key("Escape", WINDOW, "Close button", WRITTEN)
    hearing.key("Tab", "Back button")


def no_dongle(hearing):
    """The only dongle is unplugged while it is asked, so that the page is shown before the dialog."""
    hearing.plug_in().send("hold version")
    hearing.opens()
    hearing.key("Tab", "Close button")
    hearing.key("shift+Tab", "Next button")
    hearing.key("Return", early(CONNECT_TITLE), LOAD_TEXT)
    hearing.meets_after("pull-out", texts.connection_failed(texts.NO_DONGLE), "OK")
    hearing.key("Return", WINDOW, CONNECT_TITLE, texts.BROKEN)
    hearing.key("Tab", "Load button")


def link_down(hearing):
    hearing.plug_in().send("link 0")
    starts_to_connect(hearing)
    hearing.meets_after("release", texts.connection_failed(texts.LINK_DOWN), "OK")
    hearing.key("Return", WINDOW, CONNECT_TITLE, texts.NOT_CONNECTED)
    hearing.key("Tab", "Load button")


def torn_file(hearing):
    hearing.plug_in()
    reach_connected(hearing)
    (hearing.directory / "torn.xml").write_text('<VibrationSwitch OutputPath="Sw', encoding="utf-8")
    hearing.hears_among_others("alt+o", lambda: press("alt+o"), f"{texts.LOAD_PANEL} dialog")
    failure = dialog(texts.load_failed("Could not parse XML file. Possibly invalid syntax."), "OK")

    def answer():
        type_text("torn.xml")
        # A screen reader that is behind handles the letters after the dialog, and stops saying it for them.
        hearing.come_to_rest()
        press("Return")

    hearing.hears_among_others("(torn.xml) Return", answer, on_one_line(*map(plain, failure)))
    hearing.key("Return", WINDOW, CONNECT_TITLE)
    hearing.key("Tab", "Load button")


def failed_write(hearing):
    hearing.plug_in()
    reach_calibration(hearing)
    hearing.key(
        "alt+n",
        SUMMARY_TITLE,
        "Mode: Long/short mode Long/Short outputs: Short output: ENABLED; Long output: ENABLED "
        "Output: Both switch jacks Long/Short cutoff: 1.00s Clarity: 0.50",
    )
    hearing.dongle.send("next relayConfig pulled-out")
    starts_to_write(hearing)
    hearing.meets_after(
        "release",
        texts.save_failed("Disconnection during writing process. Your changes were not saved.\n\nError code: RC/TC"),
        "OK",
    )
    hearing.meets_by(
        "Return", texts.FILE_AFTER_FAILURE, "No", *BETWEEN_DIALOGS, *([Maybe(SUMMARY_TITLE)] if is_newer() else [])
    )
    hearing.key("Return", WINDOW, SUMMARY_TITLE)
    hearing.key("Tab", "Cancel button")


def pulled_out_while_a_display_runs(hearing):
    hearing.plug_in()
    reach_calibration(hearing)
    hearing.key("space", f"The clarity {DISPLAY}")
    hearing.announced("pull-out", STALE)
    hearing.key("space", "The clarity display has stopped.")
    hearing.key("Tab", *slider("Clarity threshold", "0.50", 50))


SCENARIOS = (whole_setup, no_dongle, link_down, torn_file, failed_write, pulled_out_while_a_display_runs)


def go_through(scenario):
    voice = Voice(os.environ["HOME"], os.environ["XDG_RUNTIME_DIR"])
    try:
        with Hearing(voice.pages, scenario.__name__.replace("_", " "), voice.rest) as hearing:
            scenario(hearing)
    except NotHeard as missing:
        print(f"{'FAILED, expected':>24} | {missing}", *voice.decisions(), sep="\n", flush=True)
        Hearing.failed += Hearing.failed == 0
    finally:
        voice.stop()


def main():
    names = sys.argv[1:]
    bus = launch_bus()
    try:
        for scenario in SCENARIOS:
            if not names or scenario.__name__ in names:
                go_through(scenario)
    finally:
        bus.terminate()
        bus.wait()
    print(f"\n{Hearing.passed} passed, {Hearing.failed} failed")
    raise SystemExit(Hearing.failed != 0 or Hearing.passed == 0)


if __name__ == "__main__":
    main()
