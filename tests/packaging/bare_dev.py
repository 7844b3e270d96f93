"""A separate device directory, in a separate mount name space."""

import os
import stat
import subprocess

DEVICES = ("null", "zero", "full", "random", "urandom", "tty")
# A shell reads "<(command)" through the first.
LINKS = {"fd": "/proc/self/fd", "stdin": "fd/0", "stdout": "fd/1", "stderr": "fd/2"}


def mount(*arguments):
    subprocess.run(["mount", *map(str, arguments)], check=True)


def make_bare_dev(directory):
    """Puts there what every program needs, and pseudo-terminals; nothing else."""
    mount("-t", "tmpfs", "-o", "mode=755", "tmpfs", directory)
    for name in DEVICES:
        (directory / name).touch()
        mount("--bind", f"/dev/{name}", directory / name)
    for name, target in LINKS.items():
        (directory / name).symlink_to(target)
    (directory / "pts").mkdir()
    mount("--bind", "/dev/pts", directory / "pts")
    (directory / "shm").mkdir(mode=0o1777)
    # A node of its own: the kernel takes the pseudo-terminals from the directory "pts" beside it.
    ptmx = directory / "ptmx"
    os.mknod(ptmx, stat.S_IFCHR, os.makedev(5, 2))
    ptmx.chmod(0o666)
