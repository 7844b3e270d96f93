#!/usr/bin/python3
"""The keyboard alone does everything: the order of the focus, the letters, Return, Escape, and the keys of sliders."""

import texts
from screen_reader import pyatspi
from walk import Walk, main

LETTERS = {
    "Cancel": "Alt+C",
    "Back": "Alt+B",
    "Next": "Alt+N",
    "Save": "Alt+S",
    "Close": "Alt+E",
    "Load": "Alt+O",
    "Show Clarity": "Alt+H",
    "Show Duration": "Alt+D",
    "Yes": "Alt+Y",
    "No": "Alt+N",
    "OK": "Alt+O",
}


CONNECT_TITLE = texts.connect_page(texts.CONNECTED)[0]
SUMMARY_TITLE = texts.summary_page()[0]


class Keyboard(Walk):
    def setUp(self):
        super().setUp()
        self.has_focus("Next")

    def next_page(self, step, key="Return"):
        """Return is Next, which has the focus or is the default button."""
        self.key(key)
        self.is_at(step)

    def connect(self):
        self.next_page("Connect")
        self.hears_page(texts.connect_page(texts.CONNECTED), "Cancel", "Back", "Next")
        self.has_focus(CONNECT_TITLE)

    def tabs_through(self, *names):
        """From the first of these, Tab comes to each in turn and round to the first, and with Shift back again."""
        self.has_focus(names[0])
        for name in (*names[1:], names[0]):
            self.key("Tab")
            self.has_focus(name)
        for name in (*reversed(names[1:]), names[0]):
            self.key("shift+Tab")
            self.has_focus(name)

    def says(self, role, name, said):
        self.becomes(lambda: self.control(name, role, details=True).spoken(), said, name)


class FocusOrder(Keyboard):
    def test_tab_comes_to_every_control_in_the_order_of_the_page(self):
        self.tabs_through("Next", "Close")
        self.connect()
        # A title has the focus when a page comes up, and is no stop of the Tab key.
        self.key("Tab")
        self.tabs_through("Load", "Cancel", "Back", "Next")
        self.next_page("Mode", "alt+n")
        self.tabs_through("Long/Short Mode", "Enable short output", "Enable long output", "Cancel", "Back", "Next")
        self.next_page("Ouptut", "alt+n")
        self.tabs_through("Switch Output", "Cancel", "Back", "Next")
        self.key("Down")
        self.has_focus("USB Keyboard")
        self.hears_page(texts.output_page("USB Keyboard", short="Space", long="Enter"), "Cancel", "Back", "Next")
        self.tabs_through("USB Keyboard", "Short hum keystroke", "Long hum keystroke", "Cancel", "Back", "Next")
        self.next_page("Calibration", "alt+n")
        self.tabs_through("Show Clarity", "Clarity threshold", "Show Duration", "Cutoff", "Cancel", "Back", "Next")
        self.next_page("Summary", "alt+n")
        self.has_focus(SUMMARY_TITLE)
        self.key("Tab")
        self.tabs_through("Cancel", "Back", "Save")

    def test_back_leaves_the_focus_on_back_and_a_save_on_close(self):
        self.connect()
        for step in ("Mode", "Ouptut", "Calibration", "Summary"):
            self.next_page(step, "alt+n")
        for step in ("Calibration", "Ouptut", "Mode", "Connect"):
            self.key("alt+b")
            self.is_at(step)
            self.has_focus("Back")
        self.key("Return")
        self.is_at("Welcome")
        self.has_focus("Next")
        for step in ("Connect", "Mode", "Ouptut", "Calibration", "Summary"):
            self.next_page(step, "alt+n")
        self.key("Return")
        self.hears_dialog(texts.SAVE_SETTINGS)
        self.key("alt+y")
        self.hears_dialog(texts.FILE_AFTER_SUCCESS)
        self.key("Escape")
        self.has_focus("Close")


class Letters(Keyboard):
    def presses(self, name):
        """The letter that is announced for a button presses it."""
        letter = self.control(name).shortcut()
        self.same(letter, LETTERS[name])
        self.key(letter.replace("Alt+", "alt+").lower())

    def test_each_button_has_a_letter_that_its_text_does_not_show(self):
        self.presses("Next")
        self.hears_page(texts.connect_page(texts.CONNECTED), "Cancel", "Back", "Next")
        self.presses("Load")
        self.hears_panel(texts.LOAD_PANEL)
        self.key("Escape")
        self.becomes(self.dialogs, [], "no dialog")
        self.presses("Cancel")
        self.hears_dialog(texts.CLOSE_PROGRAM)
        self.presses("No")
        self.becomes(self.dialogs, [], "no dialog")
        self.presses("Back")
        self.is_at("Welcome")
        for step in ("Connect", "Mode", "Ouptut", "Calibration"):
            self.presses("Next")
            self.is_at(step)
        for measurement, other in (("Show Clarity", "Show Duration"), ("Show Duration", "Show Clarity")):
            self.presses(measurement)
            self.becomes(lambda: "enabled" in self.named(other).states, False, "the other one")  # noqa: B023
            self.presses(measurement)
            self.becomes(self.buttons, ["Cancel", "Back", "Next"], "the buttons")
        self.presses("Next")
        self.presses("Save")
        self.hears_dialog(texts.SAVE_SETTINGS)
        self.presses("Yes")
        self.hears_dialog(texts.FILE_AFTER_SUCCESS)
        self.presses("No")
        self.becomes(self.dialogs, [], "no dialog")
        self.presses("Close")
        self.has_left()

    def test_a_notice_has_one_too(self):
        self.dongle.send("link 0")
        self.presses("Next")
        self.hears_dialog(texts.connection_failed(texts.LINK_DOWN))
        self.presses("OK")
        self.becomes(self.dialogs, [], "no dialog")

    def named(self, name):
        return next(control for control in self.windows()[0].everything() if control.name == name)


class Dialogs(Keyboard):
    def test_escape_and_return_decline_and_the_arrow_and_return_go_ahead(self):
        self.connect()
        for decline in ("Escape", "Return"):
            self.key("alt+c")
            self.hears_dialog(texts.CLOSE_PROGRAM)
            self.has_focus("No")
            self.key(decline)
            self.becomes(self.dialogs, [], "no dialog")
            self.has_focus(CONNECT_TITLE)
        self.key("alt+c")
        self.hears_dialog(texts.CLOSE_PROGRAM)
        self.tabs_through("No", "Yes")
        self.key("Tab")
        self.has_focus("Yes")
        self.key("Return")
        self.has_left()

    def test_escape_dismisses_a_notice(self):
        self.plug_in(name="cu.usbmodem-other")
        self.key("Return")
        self.hears_dialog(texts.SEVERAL_DONGLES)
        self.has_focus("OK")
        self.key("Escape")
        self.hears_page(texts.connect_page(texts.CONNECTED, reason=texts.SEVERAL_DONGLES[1]), "Cancel", "Back", "Next")


class Controls(Keyboard):
    def test_a_device_is_programmed_without_a_pointer(self):
        self.connect()
        self.next_page("Mode")
        self.key("Tab")
        self.has_focus("Enable short output")
        self.key("space")
        self.says(pyatspi.ROLE_CHECK_BOX, "Enable short output", "[check box] Enable short output (not checked)")
        self.key("shift+Tab", "Up")
        self.has_focus("Direct Mode")
        self.hears_page(texts.mode_page("Direct Mode"), "Cancel", "Back", "Next")
        self.next_page("Ouptut")
        self.key("Down")
        self.hears_page(texts.output_page("USB Keyboard", keystroke="Enter"), "Cancel", "Back", "Next")
        self.key("Tab")
        self.has_focus("Keystroke")
        self.key("Down", "Down")
        self.hears_page(texts.output_page("USB Keyboard", keystroke="Shift+Tab"), "Cancel", "Back", "Next")
        self.next_page("Calibration")
        self.next_page("Summary", "alt+n")
        self.has_focus(SUMMARY_TITLE)
        self.key("Return")
        self.hears_dialog(texts.SAVE_SETTINGS)
        self.key("Tab")
        self.has_focus("Yes")
        self.key("Return")
        self.hears_dialog(texts.FILE_AFTER_SUCCESS)
        self.key("Escape")
        self.becomes(self.buttons, ["Back", "Close"], "the buttons")
        self.same(self.dongle.received()[-2], "63 62 6b 08 00 00 00 00 02 2b 00 00")

    def test_sliders_move_by_one_step_with_arrows_and_by_ten_with_the_page_keys(self):
        self.connect()
        self.walk_to("Calibration")
        for name, ends, steps in (
            (
                "Clarity threshold",
                (0.0, 1.0, 0.01),
                "Right 0.51, Up 0.52, Left 0.51, Down 0.5, Prior 0.6, Next 0.5, "
                "End 1, Right 1, Home 0, Left 0, Next 0",
            ),
            (
                "Cutoff",
                (0.1, 3.0, 0.05),
                "Right 1.05, Up 1.1, Left 1.05, Down 1, Prior 1.5, Next 1, End 3, Right 3, Home 0.1, Left 0.1",
            ),
        ):
            slider = self.control(name, pyatspi.ROLE_SLIDER)
            self.same(tuple(round(end, 6) for end in slider.range()), ends, "lowest, highest, step")
            slider.take_focus()
            self.has_focus(name)
            for step in steps.split(", "):
                key, value = step.split()
                self.key(key)
                self.says(pyatspi.ROLE_SLIDER, name, f"[slider] {name} {value}")


if __name__ == "__main__":
    main()
