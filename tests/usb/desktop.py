"""People with an account of the machine, and what their programs print."""

import os
import pathlib
import pwd
import subprocess
import threading
import time


class Person:
    """An account of the machine, with a session bus."""

    def __init__(self, name, stack):
        entry = pwd.getpwnam(name)
        runtime = pathlib.Path("/tmp/runtime", name)
        runtime.mkdir(mode=0o700, parents=True, exist_ok=True)
        os.chown(runtime, entry.pw_uid, entry.pw_gid)
        self.identity = {
            "user": entry.pw_uid,
            "group": entry.pw_gid,
            "extra_groups": os.getgrouplist(name, entry.pw_gid),
            "cwd": entry.pw_dir,
        }
        self.environment = {
            "PATH": "/usr/bin:/bin",
            "HOME": entry.pw_dir,
            "USER": name,
            "LC_ALL": "C.UTF-8",
            "XDG_RUNTIME_DIR": str(runtime),
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
        }
        bus = stack.enter_context(
            self.start(
                ["dbus-daemon", "--session", "--nofork", "--print-address"],
                stdout=subprocess.PIPE,
                stderr=subprocess.DEVNULL,
                text=True,
            )
        )
        stack.callback(bus.kill)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()

    def start(self, command, **options):
        environment = self.environment | options.pop("environment", {})
        return subprocess.Popen(command, env=environment, **self.identity, **options)


class Lines:
    """What a program prints, line by line with the time of each, kept in a file too."""

    def __init__(self, stream, path):
        self.times = []
        self.texts = []
        self.thread = threading.Thread(target=self._read, args=(stream, path), daemon=True)
        self.thread.start()

    def _read(self, stream, path):
        with open(path, "w", encoding="utf-8") as file:
            for line in stream:
                now = time.monotonic()
                file.write(f"{now:.3f} {line}")
                file.flush()
                self.times.append(now)
                self.texts.append(line.rstrip("\n"))

    def time_of(self, start):
        """Of the first line that starts so, or nothing."""
        return next((at for at, text in zip(self.times, list(self.texts)) if text.startswith(start)), None)

    def since(self, at):
        return [text for when, text in zip(list(self.times), list(self.texts)) if when >= at]
