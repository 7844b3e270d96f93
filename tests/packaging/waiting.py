"""What checks do: wait for something with a bound, and compare."""

import time

SECONDS = 120
"""Nothing is waited for longer unless a check says so; a virtual machine on a busy computer is slow."""


class Failed(Exception):
    """What was expected is not so."""


def wait_for(condition, what, seconds=SECONDS):
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        result = condition()
        if result:
            return result
        time.sleep(0.02)
    raise Failed(f"waited {seconds} s for {what() if callable(what) else what}")


def expect(found, wanted, what):
    if found != wanted:
        raise Failed(f"{what}: {shown(found)}, and not {shown(wanted)}")


def expect_at_most(found, bound, what):
    if found > bound:
        raise Failed(f"{what}: {found:.3g}, and not at most {bound:.3g}")


def shown(value):
    return value.hex(" ") if isinstance(value, (bytes, bytearray)) else repr(value)
