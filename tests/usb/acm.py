"""The descriptors and requests of a USB modem (communication device class, abstract control model), as which the dongle
shows itself: for each function an interface with an interrupt endpoint and one with the two bulk endpoints."""

import struct
import time

from usb_device import InEndpoint, NoData, UsbDevice

SET_LINE_CODING, GET_LINE_CODING, SET_CONTROL_LINE_STATE = 0x20, 0x21, 0x22
DTR = 1
STRINGS = {1: "Velmorindal", 2: "Dongle", 3: "0001"}


def interface(number, endpoints, *kind):
    return struct.pack("<9B", 9, 4, number, 0, endpoints, *kind, 0)


def endpoint(address, kind, packet, interval=0):
    return struct.pack("<BBBBHB", 7, 5, address, kind, packet, interval)


def acm_function(index, packet, protocol):
    control, data = 2 * index, 2 * index + 1
    # The notifications' endpoint, then the data's.
    numbers = 2 * index + 1, 2 * index + 2
    return (
        struct.pack("<8B", 8, 11, control, 2, 2, 2, protocol, 0)
        + interface(control, 1, 2, 2, protocol)
        + struct.pack("<BBBH", 5, 0x24, 0, 0x0110)
        + struct.pack("<5B", 5, 0x24, 1, 0, data)
        + struct.pack("<4B", 4, 0x24, 2, 2)
        + struct.pack("<5B", 5, 0x24, 6, control, data)
        + endpoint(0x80 | numbers[0], 3, 8, 10)
        + interface(data, 2, 10, 0, 0)
        + endpoint(numbers[1], 2, packet)
        + endpoint(0x80 | numbers[1], 2, packet)
    )


def descriptors(functions, packet, vendor, product, protocol):
    body = b"".join(acm_function(index, packet, protocol) for index in range(functions))
    configuration = struct.pack("<BBHBBBBB", 9, 2, 9 + len(body), 2 * functions, 1, 0, 0x80, 50) + body
    device = struct.pack("<BBHBBBBHHHBBBB", 18, 1, 0x0200, 0xEF, 2, 1, 64, vendor, product, 0x0100, 1, 2, 3, 1)
    return strings(STRINGS) | {0x0100: device, 0x0200: configuration}


def strings(texts):
    found = {0x0300: struct.pack("<BBH", 4, 3, 0x0409)}
    for index, text in texts.items():
        coded = text.encode("utf-16-le")
        found[0x0300 + index] = bytes([2 + len(coded), 3]) + coded
    return found


class Acm(UsbDevice):
    """`functions` serial ports in one device. The dongle is behind the first; what the others are sent is lost."""

    def __init__(self, speed="full", functions=1, vendor=0xF055, product=0x0001, protocol=1, packet=None):
        bulk = 512 if speed == "high" else 64
        super().__init__(descriptors(functions, bulk, vendor, product, protocol), speed)
        for index in range(functions):
            self.in_endpoints[2 * index + 1] = InEndpoint(8)
            self.in_endpoints[2 * index + 2] = InEndpoint(packet or bulk)
        self.line_coding = struct.pack("<IBBB", 9600, 0, 0, 8)
        self.line_states = []

    def is_open(self):
        """Whether a program has the first port open."""
        return bool(self.line_states) and bool(self.line_states[-1][1] & DTR)

    def received(self, data):
        """The host's bytes for the first port."""

    def control(self, request_type, request, value, index, data):
        if request == SET_LINE_CODING:
            self.line_coding = data
        elif request == GET_LINE_CODING:
            return self.line_coding
        elif request == SET_CONTROL_LINE_STATE:
            if index == 0:
                self.line_states.append((time.monotonic(), value))
        else:
            raise NoData
        return b""

    def taken(self, endpoint, data):
        if endpoint == 2:
            self.received(data)
