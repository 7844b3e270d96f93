"""Goes through the wizard as a person does who hears the window and does not see it."""

import pathlib
import subprocess
import tempfile
import unittest

import texts
from programs import Dongle, Wizard
from screen_reader import NotHeard, ScreenReader, pyatspi, wait_for


class Walk(unittest.TestCase):
    """Starts a dongle and a wizard for each test. What is expected of the window is waited for, since it comes from
    another process; what is not there after the bound is reported."""

    maxDiff = None
    checked = 0

    def setUp(self):
        self.directory = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory(prefix="velmorindal-walk-")))
        self.devices = self.directory / "devices"
        self.devices.mkdir()
        self.dongle = self.plug_in()
        self.start()

    def plug_in(self, **options):
        dongle = Dongle(self.directory, self.devices, **options)
        self.addCleanup(dongle.stop)
        return dongle

    def start(self):
        self.wizard = Wizard(self.directory, self.devices)
        self.addCleanup(self.wizard.stop)
        self.reader = ScreenReader(self.wizard.process.pid)
        wait_for("the focus in the window", self.focused)

    # What is heard.

    def windows(self, details=True):
        """The main window and the dialogs over it."""
        return wait_for("a window", lambda: self.reader.read(details))

    def spoken(self):
        """All that the main window says: steps, page, buttons."""
        return [control.spoken() for control in self.windows()[0].everything()]

    def buttons(self):
        """The navigation buttons from left to right."""
        return self.read_buttons(self.windows()[0])

    def dialogs(self):
        return [self.read_dialog(window) for window in self.windows()[1:]]

    @staticmethod
    def read_buttons(window):
        labels = ("Cancel", "Back", "Next", "Save", "Close")
        found = [
            control
            for control in window.everything()
            if control.role == pyatspi.ROLE_PUSH_BUTTON and control.name in labels
        ]
        return [control.name for control in sorted(found, key=lambda control: control.place)]

    @staticmethod
    def read_dialog(window):
        """Title, text and buttons."""
        controls = list(window.everything())
        labels = [control.name for control in controls if control.role == pyatspi.ROLE_LABEL]
        pressed = [control for control in controls if control.role == pyatspi.ROLE_PUSH_BUTTON]
        return (
            window.name,
            "\n".join(label for label in labels if label != window.name),
            [control.name for control in sorted(pressed, key=lambda control: control.place)],
        )

    def control(self, name, role=pyatspi.ROLE_PUSH_BUTTON, details=False):
        """The control of that name in the window that was opened last, waited for."""

        def find():
            return next(
                (
                    control
                    for control in self.windows(details)[-1].everything()
                    if control.role == role and control.name == name and "enabled" in control.states
                ),
                None,
            )

        return wait_for(lambda: f"{name!r} to be used; there is {self.heard()}", find)

    def focused(self):
        """What has the keyboard in the window that is active, by its name."""
        for window in self.windows(details=False):
            if "active" in window.states:
                return next((control.name for control in window.everything() if "focused" in control.states), None)
        return None

    def heard(self):
        """For the words of a failure."""
        return [[control.spoken() for control in window.everything()] for window in self.windows()]

    # What is done.

    def press(self, *names):
        for name in names:
            button = self.control(name)
            button.act()
            # It stays down for a moment; a press meanwhile would only make it longer.
            wait_for(f"{name!r} to come up again", lambda: "pressed" not in button.states_now())  # noqa: B023

    def choose(self, name):
        self.control(name, pyatspi.ROLE_RADIO_BUTTON).act("Toggle")

    def answer_file_panel(self, title, path):
        """Types a path into the panel of that title and confirms it."""
        self.hears_panel(title)
        self.control("File name:", pyatspi.ROLE_TEXT).set_text(str(path))
        self.press("Open" if title == texts.LOAD_PANEL else "Save")

    def key(self, *keys):
        """Presses keys on the keyboard, one after the other. A key that comes before the window is active is lost."""
        wait_for("the window being active", lambda: "active" in self.windows(details=False)[-1].states)
        subprocess.run(["xdotool", "key", "--clearmodifiers", *keys], check=True)

    def close_by_window_manager(self):
        self.key("alt+F4")

    def connect(self):
        self.press("Next")
        self.is_connected()

    def is_connected(self):
        """The page says so, and then the last line of the attempt is in the log, which another thread prints."""
        self.hears_page(texts.connect_page(texts.CONNECTED), "Cancel", "Back", "Next")
        self.logged("Status updated now:  connected")

    def starts_to_connect(self):
        """The dongle keeps its answer about the link back."""
        self.dongle.send("hold status")
        self.press("Next")
        self.hears_page(texts.connect_page(texts.CONNECTING, progress="1"), "Cancel")
        self.dongle.holds()

    def starts_to_write(self):
        """The dongle keeps its answer about the thresholds back."""
        self.dongle.send("hold humThresholds")
        self.press("Save", "Yes")
        self.becomes(self.buttons, ["Cancel"], "only Cancel while it writes")
        self.dongle.holds()

    def agrees_to_save(self):
        self.press("Save")
        self.hears_dialog(texts.SAVE_SETTINGS)
        self.press("Yes")

    def leaves_by_cancel(self):
        self.press("Cancel")
        self.hears_dialog(texts.CLOSE_PROGRAM)
        self.press("Yes")
        self.has_left()

    def walk_to(self, step):
        """From the Connect page, once connected, to a later one."""
        for following in texts.STEPS[2 : texts.STEPS.index(step) + 1]:
            self.press("Next")
            self.is_at(following)

    # What is to be.

    def becomes(self, ask, expected, what):
        """Waits for an answer and counts it as one thing checked."""
        Walk.checked += 1
        try:
            wait_for(what, lambda: ask() == expected)
        except NotHeard:
            self.assertEqual(ask(), expected, what)

    def hears_page(self, page, *buttons):
        """The whole window is this page with these buttons, and no dialog is on the screen."""

        def heard():
            windows = self.windows()
            return (
                [control.spoken() for control in windows[0].everything()],
                self.read_buttons(windows[0]),
                [window.name for window in windows[1:]],
            )

        said = [*texts.STEPS, texts.VERSION, *page, *texts.buttons(*buttons)]
        self.becomes(heard, (said, list(buttons), []), "the page, its buttons from left to right, and no dialog")

    def hears_dialog(self, dialog):
        self.becomes(self.dialogs, [dialog], "the dialog")

    def hears_panel(self, title):
        self.becomes(lambda: [window.name for window in self.windows(details=False)[1:]], [title], "the file panel")

    def is_at(self, step):
        """The step column says where the walk is."""

        def current():
            return [control.name for control in self.windows()[0].everything() if control.description == "current step"]

        self.becomes(current, [step], "the current step")

    def has_focus(self, name):
        self.becomes(self.focused, name, "the focus")

    def logged(self, *lines):
        """These lines come in the log, one right after the other."""

        def found():
            log = self.wizard.lines()
            return any(log[start : start + len(lines)] == list(lines) for start in range(len(log)))

        Walk.checked += 1
        try:
            wait_for("the log lines", found)
        except NotHeard:
            self.assertEqual(self.wizard.lines(), list(lines), "the log")

    def log_is(self, *lines):
        self.becomes(self.wizard.lines, list(lines), "the log")

    def has_left(self, complaint=""):
        """The program has ended well: status 0, its last words, and nothing but `complaint` on standard error."""
        self.same(self.wizard.status(), 0, "exit status")
        self.same(self.wizard.lines()[-1], "Farewell", "the last line")
        self.same(self.wizard.lines().count("Farewell"), 1, "one farewell")
        self.same(self.wizard.errors(), complaint, "standard error")

    def same(self, first, second, what=None):
        Walk.checked += 1
        self.assertEqual(first, second, what)


def main():
    program = unittest.main(module="__main__", exit=False, warnings="ignore", verbosity=2)
    print(f"{Walk.checked} things checked")
    raise SystemExit(not (program.result.wasSuccessful() and Walk.checked > 0))
