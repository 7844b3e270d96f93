"""The dongle as an adapter without a class, driven by the kernel's generic driver for USB serial adapters. Its line has
room for any number of bytes, where that of the modem driver takes whole writes only; so here a frame can half fit."""

import struct
import subprocess

from acm import STRINGS, endpoint, interface, strings
from dongle import Dongle

VENDOR, PRODUCT = 0xF055, 0x0002


class PlainDongle(Dongle):
    def __init__(self):
        super().__init__()
        body = interface(0, 2, 0xFF, 0, 0) + endpoint(2, 2, 64) + endpoint(0x82, 2, 64)
        self.descriptors = strings(STRINGS) | {
            0x0100: struct.pack("<BBHBBBBHHHBBBB", 18, 1, 0x0200, 0, 0, 0, 64, VENDOR, PRODUCT, 0x0100, 1, 2, 3, 1),
            0x0200: struct.pack("<BBHBBBBB", 9, 2, 9 + len(body), 1, 1, 0, 0x80, 50) + body,
        }
        subprocess.run(["modprobe", "usbserial", f"vendor={VENDOR:#x}", f"product={PRODUCT:#x}"], check=True)
