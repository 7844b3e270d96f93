#!/usr/bin/python3
"""Everything that can go wrong between the wizard and the device, and what is said about it."""

import texts
from walk import Walk, main

UNRECOGNIZED = "The device sent an unrecognized response.\n\n(Error code: {})"
INVALID_RESPONSE = "Invalid response from dongle (Error code: {})"
INVALID_MESSAGE = "Invalid message received from server.\n\n(Error code: VC/TC)"
REFUSED = "Failed to write instruction to device.\n\nError code: {}"
LOST = "Disconnection during writing process. Your changes were not saved.\n\nError code: {}"


class FailedConnections(Walk):
    def test_every_failure_is_said_in_a_dialog_and_on_the_page_and_leaves_only_close(self):
        not_read = "Failed to read settings."
        for order, text, log in (
            ("next status silent", UNRECOGNIZED.format("VS/CC"), "Error; could not get a status from the device"),
            ("next protocolSelect invalid", INVALID_RESPONSE.format("VCPS/IV"), not_read),
            ("next keyboardConfig invalid", INVALID_RESPONSE.format("VCKC/IV"), not_read),
            ("next humDuration pulled-out", INVALID_MESSAGE, not_read),
            ("pull-out", texts.NO_DONGLE, "No dongles found. Quitting."),
        ):
            with self.subTest(order):
                self.dongle.send(order)
                self.fails(text, texts.BROKEN, log)
                self.start()

    def test_link_down(self):
        self.dongle.send("link 0")
        self.fails(texts.LINK_DOWN, texts.NOT_CONNECTED, "Have a status:  0")

    def fails(self, text, status, log):
        self.press("Next")
        self.hears_dialog(texts.connection_failed(text))
        self.press("OK")
        self.hears_page(texts.connect_page(status, reason=text), "Close")
        self.logged(log, "Could not connect.")
        self.press("Close")
        self.has_left()

    def test_two_dongles_are_a_warning(self):
        other = self.plug_in(name="cu.usbmodem-other")
        self.press("Next")
        self.hears_dialog(texts.SEVERAL_DONGLES)
        self.press("OK")
        self.hears_page(texts.connect_page(texts.CONNECTED, reason=texts.SEVERAL_DONGLES[1]), "Cancel", "Back", "Next")
        self.logged("This program has detected 2 dongles.", "", "One will be chosen arbitrarily.")
        self.becomes(lambda: self.wizard.lines()[-1], "Connected, with warnings.", "the log")
        # The settings are read from one of the two; the other is asked for its version alone.
        self.same(sorted(len(dongle.received()) for dongle in (self.dongle, other)), [1, 8])

    def test_a_port_that_another_wizard_holds_is_no_dongle(self):
        self.connect()
        first, reader = self.wizard, self.reader
        self.start()
        self.press("Next")
        self.hears_dialog(texts.connection_failed(texts.NO_DONGLE))
        self.press("OK")
        self.log_is("Open Result:  -1", "No dongles found. Quitting.", "Could not connect.")
        self.press("Close")
        self.has_left(
            f'{self.dongle.path}: could not be opened: Device or resource busy. The program "velmorindal-setup", '
            f"process {first.process.pid}, holds it: end it, or wait until it lets go.\n"
        )
        # The first one has lost nothing by it.
        self.wizard, self.reader = first, reader
        self.walk_to("Summary")
        self.agrees_to_save()
        self.hears_dialog(texts.FILE_AFTER_SUCCESS)


class FailedWrites(Walk):
    def ready_to_save(self, output="Switch Output"):
        self.connect()
        self.walk_to("Ouptut")
        self.choose(output)
        self.press("Next", "Next")
        self.is_at("Summary")
        self.page = self.spoken()

    def fails(self, text):
        self.agrees_to_save()
        self.hears_dialog(texts.save_failed(text))
        self.logged("Save done. Fail.", "Could not save.")
        self.press("OK")
        self.hears_dialog(texts.FILE_AFTER_FAILURE)
        self.press("No")
        reason = " ".join(texts.save_failed(text)[1].split())
        self.becomes(self.spoken, [*self.page[:-3], reason, *self.page[-3:]], "the Summary page with the reason")
        self.same(self.buttons(), ["Cancel", "Back", "Save"])

    def test_every_step_that_is_refused_has_its_code(self):
        for kind, code, output in (
            ("protocolSelect", "PS/SC", "Bluetooth Keyboard"),
            ("outputPath", "OP/SC", "Switch Output"),
            ("writeSettings", "WS/SC", "USB Keyboard"),
        ):
            with self.subTest(kind):
                self.ready_to_save(output)
                self.dongle.send(f"next {kind} refused")
                self.fails(REFUSED.format(code))
                self.leaves_by_cancel()
                self.start()

    def test_a_dongle_pulled_out_while_writing_and_a_second_try(self):
        self.ready_to_save()
        self.dongle.send("next relayConfig pulled-out")
        self.fails(LOST.format("RC/TC"))
        not_connected = (
            "The Velmorindal is not connected, or the connection has been lost.\n\n"
            "Please ensure your device is connected and run this program again."
        )
        self.fails(not_connected)
        self.press("Back", "Back", "Back", "Back")
        reason = texts.save_failed(not_connected)[1]
        self.hears_page(texts.connect_page(texts.BROKEN, reason=reason), "Close")

    def test_a_dongle_pulled_out_while_measuring_leaves_the_window_alive(self):
        self.connect()
        self.walk_to("Calibration")
        for measurement in ("Show Clarity", "Show Duration"):
            self.press(measurement)
            self.becomes(self.buttons, [], "no button while it runs")
            if measurement == "Show Clarity":
                self.dongle.send("pull-out")
            self.press(measurement)
            self.hears_page(texts.calibration_page(), "Cancel", "Back", "Next")
        self.press("Next")
        self.is_at("Summary")
        self.page = self.spoken()
        # What is gone before the first byte takes nothing; what goes later does not answer.
        self.fails(REFUSED.format("PS/SC2"))
        self.logged("Could not write my whole sequence.", "Save done. Fail.", "Could not save.")


class Cancelling(Walk):
    def test_cancel_asks_on_every_page_and_no_changes_nothing(self):
        self.starts_to_connect()
        self.cancels()
        self.dongle.send("release")
        self.is_connected()
        self.cancels()
        for step in texts.STEPS[2:]:
            self.press("Next")
            self.is_at(step)
            self.cancels()
        self.starts_to_write()
        self.becomes(
            lambda: self.spoken()[-3:],
            [texts.WRITING, "[progress bar] Write progress 3", "[button] Cancel"],
            "the progress",
        )
        self.cancels()
        self.dongle.send("release")
        self.hears_dialog(texts.FILE_AFTER_SUCCESS)

    def cancels(self):
        before = self.spoken()
        self.press("Cancel")
        self.hears_dialog(texts.CLOSE_PROGRAM)
        self.same(self.wizard.lines()[-1], "Cancel pressed")
        self.press("No")
        self.becomes(self.dialogs, [], "no dialog")
        self.same(self.spoken(), before)


if __name__ == "__main__":
    main()
