#!/usr/bin/env python3
"""Installs the package into a clean system of the release that this one is, programs a simulated device with what was
installed, by keys, as a person without privileges, removes the package, and finds the system as it was.

Usage: unshare --mount --propagation private --pid --fork --mount-proc try_package.py PACKAGE DIRECTORY

The system is made in DIRECTORY, which must be empty; the caller removes it. For root.
"""

import hashlib
import os
import pathlib
import platform
import shutil
import stat
import subprocess
import sys

import keyboard_run
from bare_dev import make_bare_dev, mount

NAME = "velmorindal-setup"
PERSON = "1000:1000"
HOME = "home/carer"
# What package tools change at every run, and what is not part of the system.
PASSED_OVER = (
    "proc",
    "sys",
    "dev",
    "tmp",
    HOME,
    "var/log",
    "var/cache",
    "var/lib/apt",
    "var/lib/dpkg/status",
    "var/lib/dpkg/status-old",
    "var/lib/dpkg/lock",
    "var/lib/dpkg/lock-frontend",
    "var/lib/dpkg/triggers",
)


class CleanSystem:
    def __init__(self, root):
        self.root = root
        self.environment = {
            "PATH": "/usr/sbin:/usr/bin:/sbin:/bin",
            "HOME": "/root",
            "LC_ALL": "C.UTF-8",
            "DEBIAN_FRONTEND": "noninteractive",
        }
        self.environment |= {name: value for name, value in os.environ.items() if name.lower().endswith("_proxy")}

    def make(self):
        # It becomes the root directory, which every user must be able to enter.
        self.root.chmod(0o755)
        run(
            "debootstrap",
            "--variant=minbase",
            "--include=ca-certificates",
            platform.freedesktop_os_release()["VERSION_CODENAME"],
            self.root,
        )
        shutil.rmtree(self.root / "etc/apt")
        shutil.copytree("/etc/apt", self.root / "etc/apt", symlinks=True)
        shutil.copy("/etc/resolv.conf", self.root / "etc/resolv.conf")
        mount("-t", "proc", "proc", self.root / "proc")
        make_bare_dev(self.root / "dev")
        (self.root / HOME / "dongles").mkdir(parents=True)
        for path in (self.root / HOME, self.root / HOME / "dongles"):
            os.chown(path, *map(int, PERSON.split(":")))
        self.run("apt-get", "update")

    def run(self, *command):
        return run("chroot", self.root, *command, environment=self.environment)

    def as_person(self, *command):
        return ["/usr/sbin/chroot", f"--userspec={PERSON}", str(self.root), *command]

    def files(self):
        """Everything in the system and what it is: kind, mode, owner, and content."""
        found = {}
        for directory, directories, files in os.walk(self.root):
            inside = pathlib.Path(directory).relative_to(self.root)
            directories[:] = [name for name in directories if str(inside / name) not in PASSED_OVER]
            for name in directories + files:
                path = pathlib.Path(directory) / name
                if str(inside / name) not in PASSED_OVER:
                    found[str(inside / name)] = describe(path)
        return found


def describe(path):
    status = path.lstat()
    content = ""
    if stat.S_ISREG(status.st_mode):
        content = hashlib.sha256(path.read_bytes()).hexdigest()
    elif stat.S_ISLNK(status.st_mode):
        content = os.readlink(path)
    return stat.filemode(status.st_mode), status.st_uid, status.st_gid, content


def run(*command, environment=None):
    done = subprocess.run(
        list(map(str, command)), env=environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True
    )
    if done.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))} ended with {done.returncode}:\n{done.stdout[-4000:]}")
    return done.stdout


def install(system, package):
    depends = run("dpkg-deb", "--field", package, "Depends").strip()
    system.run("apt-get", "satisfy", "--yes", "--no-install-recommends", depends)
    before = system.files()
    shutil.copy(package, system.root / "tmp/package.deb")
    system.run("dpkg", "--install", "/tmp/package.deb")
    changed = system.run("dpkg", "--verify", NAME)
    if changed:
        sys.exit(f"not installed as packed:\n{changed}")
    print(f"installed: {len(set(system.files()) - set(before))} files and directories")
    return before


def remove(system, before):
    system.run("dpkg", "--purge", NAME)
    after = system.files()
    left = sorted(set(after) - set(before))
    missing = sorted(set(before) - set(after))
    altered = sorted(path for path in set(before) & set(after) if before[path] != after[path])
    if left or missing or altered:
        sys.exit(f"after the removal: left behind {left}, missing {missing}, altered {altered}")
    print(f"removed: {len(after)} files and directories are as they were")


def needs_no_plugin_for_the_logo(wizard):
    maps = pathlib.Path(f"/proc/{wizard.process.pid}/maps").read_text()
    if "libqsvg" in maps:
        sys.exit("the wizard draws with a plugin that the package does not depend on")


def program_a_device(system):
    sockets = system.root / "tmp/.X11-unix"
    sockets.mkdir()
    pathlib.Path("/tmp/.X11-unix").mkdir(mode=0o1777, exist_ok=True)
    mount("--bind", "/tmp/.X11-unix", sockets)
    environment = {
        "PATH": "/usr/bin:/bin",
        "HOME": f"/{HOME}",
        "XDG_RUNTIME_DIR": f"/{HOME}",
        "LC_ALL": "C.UTF-8",
        "VELMORINDAL_DEVICE_DIRECTORY": f"/{HOME}/dongles",
    }
    _, stored = keyboard_run.run(
        system.as_person("/usr/bin/velmorindal-setup"),
        system.as_person("/usr/bin/velmorindal-simulator", f"/{HOME}/dongles"),
        environment,
        environment,
        look=needs_no_plugin_for_the_logo,
    )
    print("programmed by what was installed:", "; ".join(stored))


def main():
    package, directory = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
    if any(directory.iterdir()):
        sys.exit(f"{directory} is not empty")
    system = CleanSystem(directory)
    system.make()
    before = install(system, package)
    program_a_device(system)
    remove(system, before)


if __name__ == "__main__":
    main()
