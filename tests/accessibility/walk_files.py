#!/usr/bin/python3
"""Saving the settings to a file and loading them: every name, every place, and every file that cannot be used."""

import texts
from walk import Walk, main

SAVED = (
    '<VibrationSwitch OutputPath="Switch" OutputMode="LongShort" LongOutputEnabled="true" '
    'ShortOutputEnabled="true" LongOutputKey="Enter" ShortOutputKey="Space" DirectOutputKey="Enter" '
    'Sensitivity="0.50" Cutoff="1.00"/>'
)
LOADED = """<VibrationSwitch OutputPath="USBKeyboard" OutputMode="Direct" LongOutputEnabled="false"
    ShortOutputEnabled="true" LongOutputKey="F2" ShortOutputKey="Tab" DirectOutputKey="Shift+Tab"
    Sensitivity="0.30" Cutoff="2.50"/>"""


class Saving(Walk):
    def save_as(self, path):
        """Programs the device from the Summary page and saves the settings under that name."""
        self.agrees_to_save()
        self.hears_dialog(texts.FILE_AFTER_SUCCESS)
        self.press("Yes")
        self.answer_file_panel(texts.SAVE_PANEL, path)
        self.becomes(self.dialogs, [], "no dialog")
        self.same(self.buttons(), ["Back", "Close"])

    def setUp(self):
        super().setUp()
        self.connect()
        self.walk_to("Summary")

    def saves_again_as(self, path, file):
        self.press("Back", "Next")
        self.save_as(path)
        self.logged(f"URL:  {file}", "XML Document:")
        self.becomes(lambda: file.exists() and SAVED in file.read_text(encoding="utf-8"), True, f"{file} being whole")
        self.same([line for line in self.wizard.lines() if line == "Write failed. Boo."], [])

    def test_names_of_every_kind(self):
        names = {
            "plain.xml": "plain.xml",
            "without extension": "without extension.xml",
            "UPPER.XML": "UPPER.XML",
            "Ümit's “hum” 設定 наст.xml": "Ümit's “hum” 設定 наст.xml",
        }
        for name, file in names.items():
            with self.subTest(name):
                self.saves_again_as(self.directory / name, self.directory / file)
        self.same(
            sorted(path.name for path in self.directory.iterdir() if path.suffix in (".xml", ".XML")),
            sorted(names.values()),
        )

    def test_a_place_that_cannot_be_written_is_reported_in_the_log_alone(self):
        self.save_as("/proc/settings.xml")
        self.logged("Write failed. Boo.")
        self.press("Close")
        self.has_left()

    def test_no_and_a_panel_that_is_left_write_nothing(self):
        self.press("Save", "Yes")
        self.hears_dialog(texts.FILE_AFTER_SUCCESS)
        self.press("Yes")
        self.hears_panel(texts.SAVE_PANEL)
        self.press("Cancel")
        self.becomes(self.dialogs, [], "no dialog")
        self.same(list(self.directory.glob("*.xml")), [])
        self.same([line for line in self.wizard.lines() if line.startswith("URL")], [])


class Loading(Walk):
    def load(self, path):
        self.press("Load")
        self.answer_file_panel(texts.LOAD_PANEL, path)

    def file(self, name, content):
        path = self.directory / name
        path.write_text(content, encoding="utf-8")
        return path

    def test_a_file_fills_the_later_pages_and_the_device_is_written_at_the_end(self):
        self.connect()
        self.load(self.file("Ümit's “hum” 設定.xml", LOADED))
        self.hears_page(texts.connect_page(texts.CONNECTED), "Cancel", "Back", "Next")
        self.logged("Load pressed", "Found element:  VibrationSwitch")
        self.same(len(self.dongle.received()), 8, "nothing was sent")
        self.press("Next")
        self.hears_page(texts.mode_page("Direct Mode"), "Cancel", "Back", "Next")
        self.choose("Long/Short Mode")
        self.hears_page(texts.mode_page("Long/Short Mode", short=True, long=False), "Cancel", "Back", "Next")
        self.press("Next")
        self.hears_page(texts.output_page("USB Keyboard", short="Tab"), "Cancel", "Back", "Next")
        self.press("Back")
        self.choose("Direct Mode")
        self.press("Next")
        self.hears_page(texts.output_page("USB Keyboard", keystroke="Shift+Tab"), "Cancel", "Back", "Next")
        self.press("Next")
        self.hears_page(texts.calibration_page(clarity="0.3", cutoff="2.5"), "Cancel", "Back", "Next")
        self.press("Next")
        self.hears_page(
            texts.summary_page(
                ("Mode:", "Direct mode"),
                ("Output:", "USB Keyboard"),
                ("Output Keystroke:", "Short: Space; Long: Enter"),
                ("Clarity:", "0.30"),
            ),
            "Cancel",
            "Back",
            "Save",
        )
        self.press("Save", "Yes")
        self.hears_dialog(texts.FILE_AFTER_SUCCESS)
        self.same(self.dongle.received()[-2], "63 62 6b 08 00 00 00 00 02 2b 00 00")

    def test_files_that_cannot_be_used_say_why(self):
        self.connect()
        missing_key = LOADED.replace('LongOutputKey="F2"', "")
        for name, content, text, printed in (
            ("broken.xml", "<VibrationSwitch", "Could not parse XML file. Possibly invalid syntax.", None),
            ("other.xml", "<other/>", "Missing output path", "Missing output path"),
            ("mode.xml", LOADED.replace('Direct"', 'direct"'), "Missing output mode", "Missing output mode"),
            ("key.xml", missing_key, "Missing long output key", "Misisng long output key"),
        ):
            with self.subTest(name):
                self.load(self.file(name, content))
                self.hears_dialog(texts.load_failed(text))
                self.press("OK")
                self.hears_page(
                    texts.connect_page(texts.CONNECTED, reason=texts.load_failed(text)[1]), "Cancel", "Back", "Next"
                )
                self.logged(*([printed] if printed else []), f"Could not read XML:  {text}")
        self.press("Next")
        self.hears_page(texts.mode_page("Long/Short Mode", short=True, long=True), "Cancel", "Back", "Next")

    def test_a_file_that_may_not_be_read(self):
        self.connect()
        unreadable = self.directory / "unreadable.xml"
        unreadable.symlink_to("/proc/self/mem")
        self.load(unreadable)
        self.hears_dialog(texts.load_failed("Could not load contents of XML file"))
        self.logged("Could not read XML:  Could not load contents of XML file")

    def test_a_connection_may_fail_while_a_file_is_chosen(self):
        self.starts_to_connect()
        self.press("Load")
        self.hears_panel(texts.LOAD_PANEL)
        self.dongle.send("pull-out")
        self.becomes(
            lambda: [window.name for window in self.windows(details=False)[1:]],
            [texts.LOAD_PANEL, "Connection Failed"],
            "both windows",
        )
        self.press("OK")
        self.hears_panel(texts.LOAD_PANEL)
        self.answer_file_panel(texts.LOAD_PANEL, self.file("good.xml", LOADED))
        self.hears_page(
            texts.connect_page(texts.BROKEN, reason="The device sent an unrecognized response. (Error code: VS/CC)"),
            "Close",
        )
        self.logged("Could not connect.", "Found element:  VibrationSwitch")

    def test_loading_works_without_a_device_and_cancel_does_nothing(self):
        self.dongle.send("pull-out")
        self.press("Next")
        self.hears_dialog(texts.connection_failed(texts.NO_DONGLE))
        self.press("OK", "Load")
        self.hears_panel(texts.LOAD_PANEL)
        self.press("Cancel")
        self.becomes(self.dialogs, [], "no dialog")
        self.load(self.file("good.xml", LOADED))
        self.hears_page(texts.connect_page(texts.BROKEN, reason=texts.NO_DONGLE), "Close")
        self.logged("Load pressed", "Load pressed", "Found element:  VibrationSwitch")


if __name__ == "__main__":
    main()
