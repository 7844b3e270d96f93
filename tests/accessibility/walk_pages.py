#!/usr/bin/python3
"""Every page from the first to the last and back: texts, controls, order and states, and what the device is sent."""

import re

import texts
from screen_reader import pyatspi
from walk import Walk, main

QUERIES = [f"63 62 {kind} 00" for kind in "76 76 73 78 70 64 68 6b".split()]
RELAYS_LONG_SHORT = "63 62 79 0c 01 00 0a 00 e8 03 01 00 0a 00 e8 03"
RELAYS_DIRECT = "63 62 79 0c 01 00 0a 00 e8 03 00 00 0a 00 e8 03"
STORE = "63 62 77 00"


class Pages(Walk):
    def connection_log(self):
        return [
            "Open Result:  #",
            "Got version string:  Velmorindal 1.1M",
            f"Definitely this one  {self.dongle.path}",
            f'Have device(s) :  ["{self.dongle.path}"]',
            "We made it this far... version code is  Velmorindal 1.1M",
            "Have a status:  1",
            "Connected. Going to read settings",
            "Test: cutoff is  1.0",
            "Settings read successfully.",
            "Successful connection!",
            "Status updated now:  connected",
        ]

    def log(self):
        return [re.sub(r"^(Open Result:  )\d+$", r"\1#", line) for line in self.wizard.lines()]

    def every_control_is_usable_and_in_its_place(self):
        """Names, roles and values are in what is spoken; here the states, and that who sees the page reads its texts in
        the same order."""
        controls = list(self.windows()[0].everything())
        reached = (
            pyatspi.ROLE_PUSH_BUTTON,
            pyatspi.ROLE_RADIO_BUTTON,
            pyatspi.ROLE_CHECK_BOX,
            pyatspi.ROLE_SLIDER,
            pyatspi.ROLE_COMBO_BOX,
        )
        for control in controls:
            wanted = {"showing", "visible", "enabled", "sensitive", *["focusable"] * (control.role in reached)}
            self.same((control.name, wanted - control.states), (control.name or "no name", set()), "missing states")
        places = [control.place for control in controls if control.role == pyatspi.ROLE_LABEL]
        for column in (places[:7], places[7:]):
            for (left, top), (next_left, next_top) in zip(column, column[1:]):
                self.same(next_top > top + 8 or next_left > left, True, "below or beside the text before it")

    def shows(self, step, page, *buttons):
        self.hears_page(page, *buttons)
        self.is_at(step)
        self.every_control_is_usable_and_in_its_place()

    def save(self):
        """From the Summary page to the end of the write, with no file wished for."""
        self.press("Save")
        self.hears_dialog(texts.SAVE_SETTINGS)
        before = len(self.log())
        self.press("Yes")
        self.hears_dialog(texts.FILE_AFTER_SUCCESS)
        # The job may say that it starts before or after the button says that it has handed it over.
        self.becomes(
            lambda: sorted(self.log()[before : before + 3]),
            ["Starting save", "background save dispatched", "dispatching background save"],
            "the log",
        )
        self.becomes(lambda: self.log()[before + 3 :], ["Save completed.", "Save done. pass.", "All done!"], "the log")
        self.press("No")

    def test_direct_mode_on_a_switch_from_welcome_to_close(self):
        self.dongle.send("detect-mode 0")
        self.same(self.windows()[0].name, texts.WINDOW)
        self.same(self.windows()[0].role in (pyatspi.ROLE_FRAME, pyatspi.ROLE_WINDOW), True, "a window by its role")
        self.shows("Welcome", texts.WELCOME_PAGE, "Next", "Close")
        self.press("Next")
        self.shows("Connect", texts.connect_page(texts.CONNECTED), "Cancel", "Back", "Next")
        self.becomes(self.log, self.connection_log(), "the log of connecting")
        self.press("Next")
        self.shows("Mode", texts.mode_page("Direct Mode"), "Cancel", "Back", "Next")
        self.press("Next")
        self.shows("Ouptut", texts.output_page("Switch Output"), "Cancel", "Back", "Next")
        self.press("Next")
        self.shows("Calibration", texts.calibration_page(), "Cancel", "Back", "Next")
        self.press("Next")
        rows = [("Mode:", "Direct mode"), ("Output:", "Switch Jack #2"), ("Clarity:", "0.50")]
        self.shows("Summary", texts.summary_page(*rows), "Cancel", "Back", "Save")
        self.save()
        self.hears_page(texts.summary_page(*rows, status=texts.WRITTEN), "Back", "Close")
        self.becomes(
            self.dongle.received,
            [
                *QUERIES,
                "63 62 78 01 00",
                "63 62 70 01 01",
                "63 62 64 0b 00 00 00 19 00 19 00 ff ff 02 00",
                RELAYS_DIRECT,
                "63 62 68 08 00 00 00 3f 00 00 00 3f",
                "63 62 6b 08 00 00 00 00 00 00 00 00",
                STORE,
            ],
            "what the device was sent",
        )
        self.press("Close")
        self.has_left()
        self.same(self.log()[-5:], ["Setting polling state from  none none", *texts.QUITTING])

    def test_long_and_short_hums_as_bluetooth_keys_and_every_way_back(self):
        self.connect()
        self.press("Next")
        self.hears_page(texts.mode_page("Long/Short Mode", short=True, long=True), "Cancel", "Back", "Next")
        self.press("Next")
        self.hears_page(texts.output_page("Switch Output"), "Cancel", "Back", "Next")
        self.choose("Bluetooth Keyboard")
        self.hears_page(texts.output_page("Bluetooth Keyboard", short="Space", long="Enter"), "Cancel", "Back", "Next")
        self.choose_key("Short hum keystroke", "Shift+Tab")
        self.choose_key("Long hum keystroke", "F12")
        chosen = texts.output_page("Bluetooth Keyboard", short="Shift+Tab", long="F12")
        self.hears_page(chosen, "Cancel", "Back", "Next")
        self.press("Next")
        self.control("Clarity threshold", pyatspi.ROLE_SLIDER).set_value(0.3)
        self.control("Cutoff", pyatspi.ROLE_SLIDER).set_value(0.5)
        calibrated = texts.calibration_page(clarity="0.3", cutoff="0.5")
        self.hears_page(calibrated, "Cancel", "Back", "Next")
        self.press("Next")
        rows = [
            ("Mode:", "Long/short mode"),
            ("Long/Short outputs:", "Short output: ENABLED; Long output: ENABLED"),
            ("Output:", "Bluetooth Keyboard"),
            ("Output Keystroke:", "Short: Space; Long: Enter"),
            ("Long/Short cutoff:", "0.50s"),
            ("Clarity:", "0.30"),
        ]
        self.hears_page(texts.summary_page(*rows), "Cancel", "Back", "Save")
        self.save()
        self.hears_page(texts.summary_page(*rows, status=texts.WRITTEN), "Back", "Close")
        self.becomes(
            self.dongle.received,
            [
                *QUERIES,
                "63 62 78 01 01",
                "63 62 64 0b 03 00 00 0c 00 0c 00 ff ff 04 00",
                RELAYS_LONG_SHORT,
                "63 62 68 08 9a 99 99 3e 9a 99 99 3e",
                "63 62 6b 08 02 2b 00 00 00 45 00 00",
                STORE,
            ],
            "what the device was sent",
        )
        self.press("Back")
        self.hears_page(calibrated, "Cancel", "Back", "Next")
        self.press("Next")
        self.hears_page(texts.summary_page(*rows), "Cancel", "Back", "Save")
        self.press("Back", "Back")
        self.hears_page(chosen, "Cancel", "Back", "Next")
        self.press("Back")
        self.hears_page(texts.mode_page("Long/Short Mode", short=True, long=True), "Cancel", "Back", "Next")
        self.press("Back")
        self.hears_page(texts.connect_page(texts.CONNECTED), "Cancel", "Back", "Next")
        self.press("Back")
        self.hears_page(texts.WELCOME_PAGE, "Next", "Close")
        sent, log = len(self.dongle.received()), self.log()
        self.press("Next")
        self.hears_page(texts.connect_page(texts.CONNECTED), "Cancel", "Back", "Next")
        self.same(len(self.dongle.received()), sent, "no second attempt to connect")
        self.same(self.log(), log, "nothing said about it")

    def choose_key(self, label, key):
        keys = self.control(label, pyatspi.ROLE_COMBO_BOX)
        self.same([entry.name for entry in keys.entries()], texts.KEYS, "the keys on offer")
        keys.take_focus()
        self.has_focus(label)
        self.key("Home", *["Down"] * texts.KEYS.index(key))


if __name__ == "__main__":
    main()
