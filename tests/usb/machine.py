"""The virtual machine: boots the disk without keeping what is written to it, and is reached as root over ssh. It has no
way to any network."""

import contextlib
import socket
import subprocess
import sys
import time

TREE = "/checks"
MEMORY = "1536"
PROCESSORS = "2"
"""On one alone the device, the screen and the window would hold up the exchanges that are timed."""
SECONDS_TO_BOOT = 900


class Machine:
    def __init__(self, image, logs, longest):
        """`longest` bounds the machine's life in seconds, whatever happens to this program."""
        self.image = image
        self.port = free_port()
        command = [
            *f"timeout --kill-after=10 {longest} nice qemu-system-x86_64 -accel tcg -cpu max".split(),
            *f"-smp {PROCESSORS} -m {MEMORY} -display none -vga std -no-reboot -monitor none".split(),
            *("-serial", f"file:{logs / 'console'}"),
            *("-kernel", image / "vmlinuz"),
            *("-initrd", image / "initrd.img"),
            *("-append", "root=/dev/vda rw console=tty0 console=ttyS0 quiet mitigations=off"),
            *("-drive", f"file={image / 'disk'},if=virtio,format=raw,snapshot=on"),
            *("-netdev", f"user,id=net,restrict=on,hostfwd=tcp:127.0.0.1:{self.port}-:22"),
            *("-device", "virtio-net-pci,netdev=net,romfile="),
        ]
        self.process = subprocess.Popen(list(map(str, command)), stdin=subprocess.DEVNULL)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        with contextlib.suppress(ProcessLookupError):
            self.process.terminate()
        self.process.wait()

    def ssh(self, *command):
        return [
            *("ssh", "-q", "-i", str(self.image / "key"), "-p", str(self.port)),
            *"-o StrictHostKeyChecking=no -o UserKnownHostsFile=/dev/null -o BatchMode=yes".split(),
            *"-o ConnectTimeout=10 -o ServerAliveInterval=30".split(),
            "root@127.0.0.1",
            *command,
        ]

    def wait_until_up(self):
        deadline = time.monotonic() + SECONDS_TO_BOOT
        while time.monotonic() < deadline:
            if self.process.poll() is not None:
                sys.exit(f"the machine ended with {self.process.returncode} while it started")
            # The login comes before the rest of the system is up; a system with a failed unit counts as up.
            if subprocess.run(
                self.ssh("systemctl is-system-running --wait"),
                stdin=subprocess.DEVNULL,
                stdout=subprocess.DEVNULL,
                check=False,
            ).returncode in (0, 1):
                return
            time.sleep(1)
        sys.exit(f"the machine was not up after {SECONDS_TO_BOOT} s")

    def send(self, root, *paths):
        """Copies what lies below `root` to the same places below TREE."""
        pack = [
            "tar",
            "--create",
            "--exclude=__pycache__",
            "-C",
            str(root),
            *(str(path.relative_to(root)) for path in paths),
        ]
        with subprocess.Popen(pack, stdout=subprocess.PIPE) as packing:
            subprocess.run(
                self.ssh(f"mkdir -p {TREE} && tar --extract --no-same-owner -C {TREE}"),
                stdin=packing.stdout,
                check=True,
            )

    def fetch(self, directory, to):
        """Copies what is in a directory below TREE."""
        with subprocess.Popen(
            self.ssh(f"tar --create -C {TREE}/{directory} ."), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE
        ) as packing:
            subprocess.run(["tar", "--extract", "-C", str(to)], stdin=packing.stdout, check=True)

    def run(self, command):
        """In TREE, with the output of this program. Returns the exit status."""
        return subprocess.run(self.ssh(f"cd {TREE} && {command}"), stdin=subprocess.DEVNULL, check=False).returncode


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]
