#!/usr/bin/python3
"""What the comparison of heard with expected words finds: a thing said twice, cut off, or left out."""

import contextlib
import functools
import io
import unittest
from unittest import mock

import screen_reader
from hear import Hearing, Maybe
from screen_reader import NotHeard
from screen_reader_voice import Pages


class HearingTest(unittest.TestCase):
    def setUp(self):
        self.utterances = []
        self.enterContext(contextlib.redirect_stdout(io.StringIO()))
        # The comparison is the same with every version, and Orca need not be installed.
        self.enterContext(mock.patch("hear.is_newer", lambda: False))
        self.hearing = self.enterContext(Hearing(Pages(self.utterances), "a test"))

    def hears(self, said, *expected):
        self.hearing.hears("a key", lambda: self.utterances.extend(said), *expected)

    def hears_wrongly(self, said, *expected):
        with self.assertRaises(NotHeard):
            self.hears(said, *expected)

    def test_the_words_may_be_cut_anywhere(self):
        self.hears(["Next", "button."], "Next button")
        self.hears(["Switch Output", "selected radio button"], "Switch Output selected", "radio button")

    def test_words_that_are_left_out_are_missed(self):
        self.enterContext(mock.patch("hear.wait_for", functools.partial(screen_reader.wait_for, bound=0)))
        self.hears_wrongly(["Next"], "Next button")
        self.hears_wrongly([], "Next button")

    def test_a_text_said_twice_at_once_is_wrong(self):
        self.hears_wrongly(["Next is available.", "Next is available."], "Next is available.")

    def test_a_text_said_again_before_the_next_key_is_wrong_beside_it(self):
        self.hears(["Next is available."], "Next is available.")
        self.utterances.append("Next is available.")
        self.hears_wrongly(["Back button"], "Back button")

    def test_what_comes_between_reading_a_page_and_turning_it_is_on_the_next(self):
        pages = Pages(self.utterances)
        self.utterances.append("Next is available.")
        pages.said()
        self.utterances.append("Next is available.")
        pages.turn()
        self.assertEqual(pages.said(), ["Next is available"])

    def test_a_text_said_again_after_the_next_key_is_wrong_beside_it(self):
        self.hears(["Next is available."], "Next is available.")
        self.hears_wrongly(["Next is available.", "Back button"], "Back button")

    def test_a_text_said_again_that_the_next_key_cuts_off_is_wrong_beside_it(self):
        self.hears(["Next is available."], "Next is available.")
        self.hears_wrongly(["Next is available.", None, "Back button"], "Back button")

    def test_an_order_to_be_silent_after_the_words_takes_nothing_back(self):
        self.hears(["Next is available."], "Next is available.")
        self.hears([None, None, "Back button"], "Back button")

    def test_words_that_may_be_missing_are_heard_once_at_most(self):
        self.hears(["OK button"], Maybe("Connect"), "OK button")
        self.hears(["Connect", "OK button"], Maybe("Connect"), "OK button")
        self.hears_wrongly(["Connect", "Connect", "OK button"], Maybe("Connect"), "OK button")

    def test_among_others_a_text_said_twice_is_wrong(self):
        said = ["File name: text", "Load dialog", "List"]
        self.hearing.hears_among_others("a key", lambda: self.utterances.extend(said), "Load dialog")
        with self.assertRaises(NotHeard):
            self.hearing.hears_among_others("a key", lambda: self.utterances.extend(said * 2), "Load dialog")


if __name__ == "__main__":
    unittest.main()
