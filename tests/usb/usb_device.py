"""A USB device in software. The kernel's virtual host controller (vhci_hcd) reaches it over a socket pair, by the
messages of USB/IP; all above that, from enumeration to the serial driver, is the kernel's own."""

import collections
import contextlib
import os
import pathlib
import socket
import struct
import subprocess
import threading
import time

CONTROLLER = pathlib.Path("/sys/devices/platform/vhci_hcd.0")
SPEEDS = {"full": 2, "high": 3}
SUBMIT, UNLINK = 1, 2
ANSWERED, UNLINKED = 3, 4
STALLED, RESET = -32, -104
LONGEST_BACKLOG = 4096
"""Bytes that wait for the host in one endpoint. What comes on top is lost, as in a device whose memory is full."""
HEADER = struct.Struct(">IIIIIIiiii8s")
"""Command, sequence number, device, direction, endpoint; then flags, length, start frame, packets, interval, setup."""


def put_before_programs(task):
    """Lets a thread of the device or the controller run before every program, since in a computer both are hardware."""
    os.sched_setscheduler(task, os.SCHED_FIFO, os.sched_param(1))


def controller_threads():
    pgrep = subprocess.run(["pgrep", "^vhci_[rt]x"], stdout=subprocess.PIPE, text=True, check=True)
    return map(int, pgrep.stdout.split())


class NoData(Exception):
    """A control request that the device does not know, which it answers by stalling."""


class InEndpoint:
    """Bytes on their way to the host, handed out in packets of at most `packet` bytes as the host asks for them."""

    def __init__(self, packet):
        self.packet = packet
        self.bytes = bytearray()
        self.asked = collections.OrderedDict()

    def answers(self):
        while self.bytes and self.asked:
            number, length = self.asked.popitem(last=False)
            count = min(length, self.packet)
            piece = bytes(self.bytes[:count])
            del self.bytes[:count]
            yield number, piece


class UsbDevice:
    """One device with its descriptors. Subclasses say what they do with bytes and control requests.

    Everything runs on one thread for each plugging in, and under `lock`, which can be taken again by its holder."""

    def __init__(self, descriptors, speed="full"):
        self.descriptors = descriptors
        self.speed = SPEEDS[speed]
        self.lock = threading.RLock()
        self.in_endpoints = {}
        self.takes_data = True
        self.acknowledges_after = 0
        """Seconds from the moment when the device has the host's bytes until the host hears of it. What the device answers
        does not wait for that."""
        self._waiting_out = []
        self._port = None
        self._socket = None
        self._server = None

    # What a subclass does.

    def control(self, request_type, request, value, index, data):
        """A class request. Returns the answer's bytes."""
        raise NoData

    def taken(self, endpoint, data):
        """The host's bytes have arrived at an OUT endpoint."""

    # What a check does.

    def plug_in(self):
        ours, theirs = socket.socketpair()
        if self._server:
            self._server.join()
        with self.lock:
            self._port = free_port()
            self._socket = ours
            self._waiting_out = []
            for endpoint in self.in_endpoints.values():
                endpoint.asked.clear()
                endpoint.bytes.clear()
        self._server = threading.Thread(target=self._serve, args=(ours,), daemon=True)
        self._server.start()
        (CONTROLLER / "attach").write_text(f"{self._port} {theirs.fileno()} {0x10001 + self._port} {self.speed}")
        # The controller holds its own reference.
        theirs.close()
        for thread in controller_threads():
            # Those of a device that is just being pulled may have ended.
            with contextlib.suppress(ProcessLookupError):
                put_before_programs(thread)

    def pull(self):
        """The kernel learns of it as it does of a cable that is pulled: the port says that nothing is there."""
        with self.lock:
            port, self._port = self._port, None
        if port is not None:
            (CONTROLLER / "detach").write_text(str(port))

    def is_plugged(self):
        with self.lock:
            return self._port is not None

    def send(self, endpoint, data):
        with self.lock:
            waiting = self.in_endpoints[endpoint].bytes
            if len(waiting) + len(data) <= LONGEST_BACKLOG:
                waiting += data
            self._hand_out(endpoint)

    def has_sent(self, endpoint):
        """Whether the host has taken all bytes of an IN endpoint."""
        with self.lock:
            return not self.in_endpoints[endpoint].bytes

    def take_data(self, takes):
        """Whether the device accepts what the host sends. While it does not, the host's packets wait."""
        with self.lock:
            self.takes_data = takes
            if takes:
                waiting, self._waiting_out = self._waiting_out, []
                for number, endpoint, data in waiting:
                    self._accept(number, endpoint, data)

    # The socket.

    def _serve(self, connection):
        put_before_programs(threading.get_native_id())
        while True:
            try:
                header = receive(connection, HEADER.size)
            except (EOFError, OSError):
                return
            command, number, _, is_in, endpoint, _, length, _, _, _, setup = HEADER.unpack(header)
            if command == UNLINK:
                # The number to forget stands where a transfer has its flags.
                self._unlink(number, struct.unpack_from(">I", header, 20)[0])
                continue
            data = b"" if is_in or not length else receive(connection, length)
            with self.lock:
                if endpoint == 0:
                    self._control(number, setup, data, length)
                elif is_in:
                    self.in_endpoints[endpoint].asked[number] = length
                    self._hand_out(endpoint)
                elif self.takes_data:
                    self._accept(number, endpoint, data)
                else:
                    self._waiting_out.append((number, endpoint, data))

    def _answer(self, number, status, length, data=b""):
        self._send(struct.pack(">IIIIIiiiii8x", ANSWERED, number, 0, 0, 0, status, length, 0, 0, 0) + data)

    def _send(self, message):
        # It may be pulled meanwhile.
        with contextlib.suppress(OSError):
            self._socket.sendall(message)

    def _hand_out(self, endpoint):
        for number, data in self.in_endpoints[endpoint].answers():
            self._answer(number, 0, len(data), data)

    def _accept(self, number, endpoint, data):
        if self.acknowledges_after:
            threading.Timer(self.acknowledges_after, self._acknowledge, (number, data)).start()
        else:
            self._answer(number, 0, len(data))
        self.taken(endpoint, data)

    def _acknowledge(self, number, data):
        with self.lock:
            self._answer(number, 0, len(data))

    def _unlink(self, number, forgotten):
        with self.lock:
            waited = any(endpoint.asked.pop(forgotten, None) is not None for endpoint in self.in_endpoints.values())
            kept = [out for out in self._waiting_out if out[0] != forgotten]
            waited = waited or len(kept) < len(self._waiting_out)
            self._waiting_out = kept
            status = RESET if waited else 0
            self._send(struct.pack(">IIIIIi24x", UNLINKED, number, 0, 0, 0, status))

    def _control(self, number, setup, data, length):
        request_type, request, value, index, _ = struct.unpack("<BBHHH", setup)
        try:
            if request_type & 0x60:
                answer = self.control(request_type, request, value, index, data)
            else:
                answer = self._standard(request, value)
        except NoData:
            self._answer(number, STALLED, 0)
            return
        if request_type & 0x80:
            answer = answer[:length]
            self._answer(number, 0, len(answer), answer)
        else:
            self._answer(number, 0, len(data))

    def _standard(self, request, value):
        get_status, get_descriptor, get_configuration = 0, 6, 8
        if request == get_descriptor:
            if value not in self.descriptors:
                raise NoData
            return self.descriptors[value]
        return {get_status: b"\0\0", get_configuration: b"\1"}.get(request, b"")


def receive(connection, count):
    data = connection.recv(count, socket.MSG_WAITALL)
    if len(data) < count:
        raise EOFError
    return data


def free_port():
    """The number of a port of the controller that has nothing plugged in, of those for full and high speed."""
    deadline = time.monotonic() + 30
    while time.monotonic() < deadline:
        for line in (CONTROLLER / "status").read_text().splitlines():
            hub, port, status, *_ = line.split()
            if hub == "hs" and int(status) == 4:
                return int(port)
        time.sleep(0.05)
    raise RuntimeError("no free port on the virtual host controller")
