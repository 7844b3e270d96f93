#!/usr/bin/env python3
"""`busy.py COMMAND...` runs a command on a busy machine: beside eight loops and a process that writes to the disk
without pause, all at normal priority. They end with the command, or with this process, however it ends."""

import ctypes
import multiprocessing
import os
import signal
import subprocess
import sys
import tempfile

LOOPS = 8
BLOCK = bytes(1 << 20)
BLOCKS = 256


def end_with(parent):
    """Asks the system to end this process when its parent ends."""
    set_death_signal = 1
    ctypes.CDLL(None).prctl(set_death_signal, signal.SIGKILL)
    if os.getppid() != parent:
        os._exit(0)


def loop(parent):
    end_with(parent)
    while True:
        pass


def write(parent, directory):
    end_with(parent)
    while True:
        with open(os.path.join(directory, "written"), "wb", buffering=0) as file:
            for _ in range(BLOCKS):
                file.write(BLOCK)
            os.fsync(file.fileno())


def main():
    if len(sys.argv) < 2:
        sys.exit("usage: busy.py COMMAND...")
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    with tempfile.TemporaryDirectory() as directory:
        # Children of this process itself, so that they see it end.
        fork = multiprocessing.get_context("fork")
        load = [fork.Process(target=loop, args=(os.getpid(),)) for _ in range(LOOPS)]
        load.append(fork.Process(target=write, args=(os.getpid(), directory)))
        for each in load:
            each.start()
        try:
            status = subprocess.run(sys.argv[1:]).returncode
        finally:
            for each in load:
                each.kill()
                each.join()
    sys.exit(status)


if __name__ == "__main__":
    main()
