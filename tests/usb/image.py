#!/usr/bin/env python3
"""Makes the disk of the virtual machine: a Debian system with its own kernel, udev, logind and ModemManager, three
people, and what a run needs. The wizard's package is not on it, only what the package depends on.

Usage: unshare --mount --propagation private --pid --fork --mount-proc image.py PACKAGE DIRECTORY

Leaves disk, kernel, initrd and the key for root's login in DIRECTORY. Does nothing when they are there and were made
from the same inputs. For root; needs the network and some minutes.
"""

import hashlib
import os
import pathlib
import shutil
import subprocess
import sys

RELEASE = "bookworm"
PACKAGES = (
    "linux-image-amd64",
    "initramfs-tools",
    "zstd",
    "systemd-sysv",
    "udev",
    "dbus",
    "dbus-x11",
    "libpam-systemd",
    "modemmanager",
    "openssh-server",
    "python3",
    "python3-pyatspi",
    "gir1.2-atspi-2.0",
    "at-spi2-core",
    "xvfb",
    "openbox",
    "xdotool",
    "x11-utils",
    "fonts-dejavu-core",
    "psmisc",
    "procps",
    "acl",
)
# `carer` sits at the screen and is in no group; `dialer` is in dialout and elsewhere; `stranger` has neither.
PEOPLE = {"carer": (), "dialer": ("dialout",), "stranger": ()}
FILES = {
    "etc/fstab": "/dev/vda / ext4 defaults 0 1\n",
    "etc/hostname": "wizard-test\n",
    "etc/hosts": "127.0.0.1 localhost wizard-test\n",
    "etc/systemd/network/any.network": "[Match]\nType=ether\n\n[Network]\nAddress=10.0.2.15/24\n",
    "etc/systemd/system/getty@tty1.service.d/autologin.conf": "[Service]\nExecStart=\nExecStart=-/sbin/agetty --autologin carer --noclear %I $TERM\n",
    # Nothing of the initrd is guessed from the machine on which it is made.
    "etc/initramfs-tools/conf.d/small": "MODULES=list\nCOMPRESS=zstd\n",
    "etc/initramfs-tools/modules": "virtio_pci\nvirtio_blk\next4\n",
    "etc/modules-load.d/usbip.conf": "vhci_hcd\n",
    # Nothing starts while the system is being made.
    "usr/sbin/policy-rc.d": "#!/bin/sh\nexit 101\n",
}
NOT_STARTED = (
    "apt-daily.timer",
    "apt-daily-upgrade.timer",
    "dpkg-db-backup.timer",
    "e2scrub_all.timer",
    "e2scrub_reap.service",
    "fstrim.timer",
    "systemd-pstore.service",
    "serial-getty@ttyS0.service",
    "systemd-networkd-wait-online.service",
)
ROOM_FOR_A_RUN = 400 * 2**20


def run(*command, environment=None):
    done = subprocess.run(
        list(map(str, command)),
        env=environment,
        stdin=subprocess.DEVNULL,
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        text=True,
    )
    if done.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))} ended with {done.returncode}:\n{done.stdout[-4000:]}")
    return done.stdout


class System:
    """The tree that becomes the disk."""

    def __init__(self, root):
        self.root = root
        self.environment = {
            "PATH": "/usr/sbin:/usr/bin:/sbin:/bin",
            "HOME": "/root",
            "LC_ALL": "C.UTF-8",
            "DEBIAN_FRONTEND": "noninteractive",
        }
        self.environment |= {name: value for name, value in os.environ.items() if name.lower().endswith("_proxy")}

    def run(self, *command):
        return run("chroot", self.root, *command, environment=self.environment)

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)

    def make(self, depends, key):
        self.root.mkdir(mode=0o755)
        run("debootstrap", "--variant=minbase", "--include=ca-certificates", RELEASE, self.root)
        shutil.rmtree(self.root / "etc/apt")
        shutil.copytree("/etc/apt", self.root / "etc/apt", symlinks=True)
        shutil.copy("/etc/resolv.conf", self.root / "etc/resolv.conf")
        for name, text in FILES.items():
            self.write(name, text)
        (self.root / "usr/sbin/policy-rc.d").chmod(0o755)
        run("mount", "-t", "proc", "proc", self.root / "proc")
        self.run("apt-get", "update")
        self.run(
            "apt-get", "install", "--yes", "--no-install-recommends", "-o", "Dpkg::Options::=--force-confold", *PACKAGES
        )
        self.run("apt-get", "satisfy", "--yes", "--no-install-recommends", depends)
        self.run("apt-get", "clean")
        for name, groups in PEOPLE.items():
            self.run("useradd", "--create-home", "--shell", "/bin/sh", *[f"--groups={group}" for group in groups], name)
        self.run("systemctl", "mask", *NOT_STARTED)
        self.run("systemctl", "enable", "systemd-networkd", "ssh")
        (self.root / "usr/sbin/policy-rc.d").unlink()
        self.write("root/.ssh/authorized_keys", key.read_text())
        run("umount", self.root / "proc")

    def write_disk(self, disk):
        used = int(run("du", "--summarize", "--block-size=1", self.root).split()[0])
        megabytes = (used * 5 // 4 + ROOM_FOR_A_RUN) // 2**20
        run("mke2fs", "-q", "-t", "ext4", "-d", self.root, disk, f"{megabytes}M")


def digest(depends):
    return hashlib.sha256(pathlib.Path(__file__).read_bytes() + depends.encode()).hexdigest()


def main():
    package, directory = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
    depends = run("dpkg-deb", "--field", package, "Depends").strip()
    made_from = directory / "made-from"
    if made_from.exists() and made_from.read_text() == digest(depends):
        return
    print("Making the disk of the machine, which takes some minutes.", flush=True)
    shutil.rmtree(directory, ignore_errors=True)
    directory.mkdir(parents=True)
    run("ssh-keygen", "-q", "-t", "ed25519", "-N", "", "-f", directory / "key")
    system = System(directory / "root")
    system.make(depends, directory / "key.pub")
    for name in ("vmlinuz", "initrd.img"):
        shutil.copy(system.root / name, directory / name)
    system.write_disk(directory / "disk")
    shutil.rmtree(system.root)
    made_from.write_text(digest(depends))


if __name__ == "__main__":
    main()
