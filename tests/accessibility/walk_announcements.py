#!/usr/bin/python3
"""What is announced when something changes: each thing once, and nothing twice."""

import contextlib

import texts
from screen_reader import GLib, listen, pyatspi
from walk import Walk, main


class Ears:
    """Writes down what the bus announces: the kind of event, the role, path and name of what it is about."""

    KINDS = {
        "object:property-change:accessible-name": "name",
        "object:property-change:accessible-value": "value",
        "object:property-change:accessible-description": "description",
        "object:state-changed:showing": "shown",
        "object:state-changed:checked": "checked",
        "window:activate": "window",
    }

    def __init__(self):
        self.events = []
        pyatspi.Registry.registerEventListener(self._hear, *self.KINDS)

    def stop(self):
        pyatspi.Registry.deregisterEventListener(self._hear, *self.KINDS)

    def _hear(self, event):
        kind = self.KINDS[str(event.type)]
        if kind == "shown" and not event.detail1:
            return
        # What is gone can no longer be read.
        with contextlib.suppress(GLib.Error):
            event.source.clearCache()
            self.events.append((kind, event.source.getRole(), event.source.path, event.source.name))

    def forget(self):
        listen()
        self.events.clear()

    def heard(self, kind, source):
        """The names of what was announced so, in order. `source` is a role, or the path of one control."""
        listen()
        return [name for heard, role, path, name in self.events if heard == kind and source in (role, path)]


class Announcements(Walk):
    def setUp(self):
        self.ears = Ears()
        self.addCleanup(self.ears.stop)
        super().setUp()

    def after_one_more_turn(self):
        """The program has done all that was due: keys go through the same queue as its repainting and its timers."""
        before = self.focused()
        self.key("Tab")
        self.becomes(lambda: self.focused() not in (before, None), True, "the focus elsewhere")

    def announced(self, kind, role, *names):
        """Exactly these and no more, also not a little later."""
        self.becomes(lambda: self.ears.heard(kind, role), list(names), f"what is announced: {kind}")
        self.after_one_more_turn()
        self.same(self.ears.heard(kind, role), list(names), f"what is announced: {kind}")

    def test_the_status_line_is_announced_once_each_time_it_changes(self):
        self.starts_to_connect()
        self.announced("name", pyatspi.ROLE_LABEL, texts.CONNECTING)
        self.ears.forget()
        self.dongle.send("release")
        self.hears_page(texts.connect_page(texts.CONNECTED), "Cancel", "Back", "Next")
        self.announced("name", pyatspi.ROLE_LABEL, texts.CONNECTED)

    def test_a_failed_connection_is_announced_by_its_line_and_one_dialog(self):
        self.starts_to_connect()
        self.ears.forget()
        self.dongle.send("link 0", "pull-out")
        dialog = texts.connection_failed("The device sent an unrecognized response.\n\n(Error code: VS/CC)")
        self.hears_dialog(dialog)
        self.announced_dialog(dialog)
        self.same(self.ears.heard("name", pyatspi.ROLE_LABEL).count(texts.BROKEN), 1)

    def announced_dialog(self, dialog):
        """One dialog has come, and its text with it, each once."""
        title, message, buttons = dialog
        self.has_focus(buttons[-1])
        self.becomes(lambda: self.ears.heard("window", pyatspi.ROLE_DIALOG), [title], "the dialogs that came")
        self.same(self.ears.heard("shown", pyatspi.ROLE_LABEL).count(message), 1, "the text was shown once")
        # The title is said as the window's name; as a text of the window it would be said twice.
        labels = [control.name for control in self.windows()[-1].everything() if control.role == pyatspi.ROLE_LABEL]
        self.same(labels, [message], "the texts in the dialog")
        self.same(self.ears.heard("shown", pyatspi.ROLE_PUSH_BUTTON)[-len(buttons) :], buttons)

    def test_dialogs_that_follow_each_other_are_announced_once_each(self):
        self.connect()
        self.walk_to("Summary")
        self.dongle.send("next outputPath refused")
        failed = texts.save_failed("Failed to write instruction to device.\n\nError code: OP/SC")
        for press, dialog in (("Save", texts.SAVE_SETTINGS), ("Yes", failed), ("OK", texts.FILE_AFTER_FAILURE)):
            self.ears.forget()
            self.press(press)
            self.hears_dialog(dialog)
            self.announced_dialog(dialog)

    def test_the_result_of_a_write_is_announced_once(self):
        self.connect()
        self.walk_to("Summary")
        self.ears.forget()
        self.starts_to_write()
        self.becomes(lambda: texts.WRITING in self.spoken(), True, "the write")
        self.becomes(lambda: self.ears.heard("name", pyatspi.ROLE_LABEL).count(texts.WRITING), 1, "the write announced")
        self.dongle.send("release")
        self.hears_dialog(texts.FILE_AFTER_SUCCESS)
        self.press("No")
        self.becomes(lambda: texts.WRITTEN in self.spoken(), True, "the result")
        self.after_one_more_turn()
        line = self.control(texts.WRITTEN, pyatspi.ROLE_LABEL)
        self.same(self.ears.heard("name", line.path), [texts.WRITING, texts.WRITTEN], "the status line")

    def test_a_page_is_announced_once_and_by_its_step(self):
        self.connect()
        for step, page in (
            ("Mode", texts.mode_page("Long/Short Mode", True, True)),
            ("Ouptut", texts.output_page("Switch Output")),
            ("Calibration", texts.calibration_page()),
        ):
            self.ears.forget()
            self.press("Next")
            self.hears_page(page, "Cancel", "Back", "Next")
            self.announced("shown", pyatspi.ROLE_LABEL, *[text for text in page if not text.startswith("[")])
            self.same(self.ears.heard("description", pyatspi.ROLE_LABEL)[-1], step)
            # The cutoff that the device has sent comes to its place with the page.
            changed = ["1.00 s"] if step == "Calibration" else []
            self.same(self.ears.heard("name", pyatspi.ROLE_LABEL), changed)

    def test_each_hum_is_announced_once_and_no_reading_between(self):
        self.connect()
        self.walk_to("Calibration")
        self.dongle.send("clarity 0.25")
        self.ears.forget()
        self.press("Show Clarity")
        runs = "display is running. The buttons below the page return when it is stopped."
        self.becomes(lambda: "[progress bar] Clarity level 0.25" in self.spoken(), True, "the reading")
        self.dongle.send("clarity 0.75")
        self.becomes(lambda: "[image] Clarity indicator: Above threshold" in self.spoken(), True, "the indicator")
        self.becomes(lambda: self.wizard.lines().count("Have a reading of  0.75") > 5, True, "five times the same")
        self.dongle.send("clarity 0.05")
        self.announced("shown", pyatspi.ROLE_NOTIFICATION, f"The clarity {runs}", "0.75, above the threshold")
        self.same(self.ears.heard("value", pyatspi.ROLE_PROGRESS_BAR), [], "the bar")
        self.press("Show Clarity")
        self.becomes(self.buttons, ["Cancel", "Back", "Next"], "the buttons")
        self.ears.forget()
        self.press("Show Duration")
        # The first answer reports a hum from before the display and is dropped.
        self.becomes(lambda: self.dongle.received().count("63 62 6c 00") > 1, True, "the second question")
        self.dongle.send("hum 50")
        self.announced("shown", pyatspi.ROLE_NOTIFICATION, f"The duration {runs}", "2.00 seconds, long")
        self.hears_page(texts.calibration_page(kinds=("off", "on"), show=(" (unavailable)", ""), hum="2.00 s"))
        self.press("Show Duration")
        self.hears_page(texts.calibration_page(), "Cancel", "Back", "Next")


if __name__ == "__main__":
    main()
