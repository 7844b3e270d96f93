"""The dongle with the device behind it: answers as docs/protocol.md says, keeps every byte that the host sent, and
misbehaves on demand."""

import pathlib
import threading
import time

from acm import Acm

HEADER = 4
VERSION, STATUS, PROTOCOL, PATH, DURATION, RELAYS, THRESHOLDS, KEYS, STORE = b"vsxpdyhkw"
LAST_HUM, AUTO_TUNE = b"lt"


def conversation(title):
    """The example of that title in docs/protocol.md: what the host sends, and what the device answers."""
    page = (pathlib.Path(__file__).parents[2] / "docs/protocol.md").read_text()
    block = page.split(f"### {title}\n", 1)[1].split("```conversation\n", 1)[1].split("```", 1)[0]
    lines = [(line[0], bytes.fromhex(line[1:])) for line in block.splitlines()]
    return [frame for side, frame in lines if side == ">"], [frame for side, frame in lines if side == "<"]


CONNECTING, ANSWERS = conversation("Connecting")
WRITING, _ = conversation("Writing")


class Dongle(Acm):
    """By default a device as it leaves the simulator's factory. `faults` maps a type and how many times it has come to what
    is done in place of answering; each fault is used once."""

    report_interval = 0.05

    def __init__(self, **options):
        super().__init__(**options)
        self.faults = {}
        self.paused = False
        self.hum_ticks = 0
        self._forget()

    def _forget(self):
        self.answers = {frame[2]: frame for frame in ANSWERS}
        self.bytes = bytearray()
        self.packets = 0
        self.seen = {}
        self.arrivals = []
        self.line_states = []
        self.plugged_at = time.monotonic()
        self._pending = bytearray()
        self._streaming = threading.Event()
        self._pulled = threading.Event()

    def plug_in(self):
        with self.lock:
            self._forget()
        threading.Thread(target=self._stream, args=(self._streaming, self._pulled), daemon=True).start()
        super().plug_in()

    def pull(self):
        self._pulled.set()
        self._streaming.set()
        super().pull()

    def say(self, data):
        self.send(2, data)

    def received(self, data):
        self.bytes += data
        self.packets += 1
        self._pending += data
        self._skip()
        while len(self._pending) >= HEADER and len(self._pending) >= HEADER + self._pending[3]:
            length = HEADER + self._pending[3]
            frame = bytes(self._pending[:length])
            del self._pending[:length]
            self._frame(frame)
            self._skip()

    def _skip(self):
        """What does not start like a frame is passed over."""
        while self._pending and not b"cb".startswith(self._pending[:2]):
            del self._pending[0]

    def _frame(self, frame):
        kind = frame[2]
        self.seen[kind] = self.seen.get(kind, 0) + 1
        self.arrivals.append((time.monotonic(), frame))
        fault = self.faults.pop((kind, self.seen[kind]), None)
        if fault:
            fault()
            return
        self.say(self.answer(frame))
        if kind == AUTO_TUNE and frame[HEADER:]:
            (self._streaming.set if frame[HEADER] == 2 else self._streaming.clear)()

    def answer(self, frame):
        kind = frame[2]
        if frame[HEADER:] or kind == STORE:
            self.answers[kind] = b"r" + frame[1:]
            return self.answers[kind]
        if kind == LAST_HUM:
            ticks, self.hum_ticks = self.hum_ticks, 0
            return b"rbl\3" + ticks.to_bytes(2, "little") + b"\0"
        return self.answers.get(kind, b"eb" + bytes([kind, 0]))

    def streams(self):
        return self._streaming.is_set()

    def pause_reports(self, pause):
        """Keeps streamed reports back, as a device does that is out of reach for a while."""
        self.paused = pause

    def count(self, kind):
        with self.lock:
            return self.seen.get(kind, 0)

    def _stream(self, streaming, pulled):
        report = bytes.fromhex("72 62 74 08 cd cc 4c 3d a4 70 bd 3e")
        while not pulled.is_set():
            streaming.wait()
            if not pulled.is_set():
                if not self.paused:
                    self.say(report)
                pulled.wait(self.report_interval)
