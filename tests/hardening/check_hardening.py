#!/usr/bin/env python3
"""Checks that finished programs are built with every protection against attacks, and names those that are missing.

hardening-check of devscripts does not replace it: on Debian that finds no branch protection in any program, and it sees
neither an executable stack nor a library path.

`check_hardening.py COMMANDS PROGRAM...` checks programs, and for what leaves no trace in a program the commands that
compiled it (compile_commands.json). `check_hardening.py --without-each COMPILER` builds a small program with all of it
and then without one thing at a time, and expects exactly the right check to fail.
"""

import json
import os
import platform
import re
import subprocess
import sys
import tempfile


def said_by(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True, env=dict(os.environ, LC_ALL="C")).stdout


DYNAMIC = "readelf --wide --dynamic"
SEGMENTS = "readelf --wide --program-headers"
SYMBOLS = "readelf --wide --dyn-syms"
# The linker drops the note about the whole program if the system's start files lack it, as those of Debian do. So this
# looks at the code itself: where a call may land.
MAIN = "objdump --disassemble=main --no-show-raw-insn"

CHECKS = [
    # what, what shows it, what that prints then, flags with it, flags that take it away
    ("position independent", DYNAMIC, r"\(FLAGS_1\).*\bPIE\b", "-fPIE -pie", "-fno-pie -no-pie"),
    ("relocations read-only", SEGMENTS, "GNU_RELRO", "-Wl,-z,relro", "-Wl,-z,norelro"),
    ("bound at the start", DYNAMIC, r"\(FLAGS\).*\bBIND_NOW\b|\(FLAGS_1\).*\bNOW\b", "-Wl,-z,now", "-Wl,-z,lazy"),
    ("stack not executable", SEGMENTS, r"GNU_STACK(\s+0x\w+){5}\s+[RW]+\s", "-Wl,-z,noexecstack", "-Wl,-z,execstack"),
    ("stack protector", SYMBOLS, "__stack_chk_fail", "-fstack-protector-strong", "-fno-stack-protector"),
    ("no library path", DYNAMIC, r"\A(?!(.|\n)*\((RPATH|RUNPATH)\))", "", "-Wl,-rpath,/nowhere"),
    ("control flow protection", MAIN, r"<main>:\n\s+\w+:\s+endbr64", "-fcf-protection", "-fcf-protection=none"),
]
if platform.machine() != "x86_64":
    CHECKS.pop()

# Calls that the compiler can see to be right are not made by way of a check, and so may leave none in a program.
FLAGS = ["-D_FORTIFY_SOURCE=2", "-D_GLIBCXX_ASSERTIONS", "-fstack-clash-protection", "-O3"]

SAMPLE = r"""
#include <cstdio>
#include <cstring>
int main(int count, char** arguments) {
    char name[16];
    std::strcpy(name, arguments[count - 1]);
    std::puts(name);
}
"""


def missing(program):
    return [what for what, command, printed, *_ in CHECKS if not re.search(printed, said_by(*command.split(), program))]


def compiled_without(flag, commands):
    """The shipped sources that were compiled without it; all, where there are none."""
    shipped = [entry for entry in commands if re.search(r"/(src|simulator)/", entry["file"])]
    return [entry["file"] for entry in shipped if flag not in entry["command"].split()] if shipped else ["all"]


def check_commands(commands):
    failed = False
    for flag in FLAGS:
        without = compiled_without(flag, commands)
        failed = failed or bool(without)
        print(f"{flag}: " + (f"MISSING in {len(without)}, as in {without[0]}" if without else "in every command"))
    return failed


def check_all(database, programs):
    with open(database, encoding="utf-8") as file:
        failed = check_commands(json.load(file))
    for program in programs:
        absent = missing(program)
        failed = failed or bool(absent)
        print(
            f"{os.path.basename(program)}: {len(CHECKS) - len(absent)} of {len(CHECKS)} protections"
            + "".join(f"; missing: {what}" for what in absent)
        )
    return 1 if failed else 0


def build(compiler, directory, left_out):
    program = os.path.join(directory, "sample")
    flags = ["-O2"]
    for what, _, _, with_it, without_it in CHECKS:
        flags += (without_it if what == left_out else with_it).split()
    subprocess.run([compiler, "-x", "c++", "-", "-o", program] + flags, input=SAMPLE, text=True, check=True)
    return program


def check_the_checks(compiler):
    failed = False
    with tempfile.TemporaryDirectory() as directory:
        for left_out in [None] + [what for what, *_ in CHECKS]:
            absent = missing(build(compiler, directory, left_out))
            seen = absent == ([left_out] if left_out else [])
            failed = failed or not seen
            print(f'without {left_out or "nothing"}: {"seen" if seen else f"NOT SEEN, but {absent}"}')
    for left_out in [None] + FLAGS:
        command = " ".join(["c++"] + [flag for flag in FLAGS if flag != left_out])
        commands = [{"file": "/a/src/b.cpp", "command": command}]
        seen = [flag for flag in FLAGS if compiled_without(flag, commands)] == ([left_out] if left_out else [])
        failed = failed or not seen
        print(f'compiled without {left_out or "nothing"}: {"seen" if seen else "NOT SEEN"}')
    return 1 if failed else 0


def main(arguments):
    if len(arguments) == 2 and arguments[0] == "--without-each":
        return check_the_checks(arguments[1])
    if len(arguments) < 2 or arguments[0].startswith("-"):
        print(__doc__, file=sys.stderr)
        return 2
    return check_all(arguments[0], arguments[1:])


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
