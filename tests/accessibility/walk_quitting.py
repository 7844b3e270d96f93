#!/usr/bin/python3
"""Every way out of the wizard, on every page and in the middle of everything."""

import texts
from walk import Walk, main


class Quitting(Walk):
    def leaves_by_window_manager(self):
        self.close_by_window_manager()
        self.has_left()

    def leaves_by_signal(self):
        self.wizard.terminate()
        self.has_left()

    def leaves_by_key(self):
        self.key("ctrl+q")
        self.has_left()

    def go_to(self, step):
        if step != "Welcome":
            self.connect()
            self.walk_to(step)


class OnEveryPage(Quitting):
    def test_the_window_manager_closes_every_page(self):
        for step in texts.STEPS:
            with self.subTest(step):
                self.go_to(step)
                self.leaves_by_window_manager()
                self.same(self.wizard.lines()[-4:], texts.QUITTING)
                self.start()

    def test_the_window_manager_closes_a_dialog_which_means_no(self):
        self.go_to("Mode")
        page = self.spoken()
        self.press("Cancel")
        self.hears_dialog(texts.CLOSE_PROGRAM)
        self.close_by_window_manager()
        self.becomes(self.dialogs, [], "no dialog")
        self.same(self.spoken(), page)
        self.press("Cancel")
        self.hears_dialog(texts.CLOSE_PROGRAM)
        self.leaves_by_signal()

    def test_a_signal_closes_a_file_panel_with_everything_else(self):
        self.go_to("Connect")
        self.press("Load")
        self.hears_panel(texts.LOAD_PANEL)
        self.leaves_by_signal()
        self.same(self.wizard.lines()[-5:], ["Load pressed", *texts.QUITTING])

    def test_keys_and_signals_close_it_too(self):
        self.leaves_by_key()
        self.start()
        self.connect()
        self.leaves_by_cancel()
        self.same(self.wizard.lines()[-5:], ["Cancel pressed", *texts.QUITTING])


class WhileConnecting(Quitting):
    def test_every_way_out_leaves_at_once(self):
        for leave in (self.leaves_by_window_manager, self.leaves_by_signal, self.leaves_by_key, self.leaves_by_cancel):
            with self.subTest(leave.__name__):
                self.starts_to_connect()
                leave()
                # Nobody waits for the answer any more, and the next wizard must not take it for its own.
                self.dongle.send("forget")
                self.start()


class WhileMeasuring(Quitting):
    def leaves_measuring(self, measurement, *orders):
        """Starts a measurement, waits until it runs, and closes the window."""
        self.go_to("Calibration")
        self.dongle.send(*orders)
        self.press(f"Show {measurement}")
        self.becomes(self.buttons, [], "no button while it runs")
        self.leaves_by_window_manager()
        self.same(self.wizard.lines().count("Quitting program!"), 1)
        self.logged(f"Setting polling state from  {measurement.lower()} none")

    def test_clarity_is_stopped_first(self):
        self.leaves_measuring("Clarity")
        # A report may have passed for the acknowledgement, so the dongle may get the command later.
        self.becomes(lambda: self.dongle.received()[-1], "63 62 74 01 00", "auto-tune was ended")

    def test_duration_is_stopped_first(self):
        self.leaves_measuring("Duration")

    def test_a_measurement_that_is_only_starting_is_stopped_too(self):
        self.go_to("Calibration")
        self.dongle.send("hold autoTune")
        self.press("Show Clarity")
        self.logged("Starting clarity polling")
        self.dongle.holds()
        self.close_by_window_manager()
        self.logged("Quitting program!")
        self.dongle.send("forget")
        self.has_left()


class WhileWriting(Quitting):
    def waits_for_the_write(self):
        self.logged("Waiting for write to finish.")
        self.same(self.dongle.stored(), ["Nothing was stored."])
        self.dongle.send("release")
        self.has_left()
        # The log may end before its line about this, which another thread prints.
        self.same(self.dongle.received()[-1], "63 62 77 00", "the write came to its end")
        self.same(self.dongle.stored()[-1], "Times stored: 1")

    def test_the_window_manager_waits_for_the_write(self):
        self.go_to("Summary")
        self.starts_to_write()
        self.close_by_window_manager()
        self.waits_for_the_write()

    def test_yes_to_closing_waits_for_the_write(self):
        self.go_to("Summary")
        self.starts_to_write()
        self.press("Cancel")
        self.hears_dialog(texts.CLOSE_PROGRAM)
        self.press("Yes")
        self.waits_for_the_write()

    def test_a_signal_waits_for_the_write_and_a_failed_one_ends_it(self):
        self.go_to("Summary")
        self.starts_to_write()
        self.wizard.terminate()
        self.logged("Waiting for write to finish.")
        self.dongle.send("pull-out")
        self.has_left()
        self.same("Save completed." in self.wizard.lines(), False, "nothing was stored")


if __name__ == "__main__":
    main()
