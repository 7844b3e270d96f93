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

IS_X86_64 = platform.machine() == "x86_64"


def said_by(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True, env=dict(os.environ, LC_ALL="C")).stdout


def readelf(option, program):
    return said_by("readelf", "--wide", option, program)


def is_position_independent(program):
    return (
        "Type:                              DYN" in readelf("--file-header", program)
        and re.search(r"\(FLAGS_1\).*\bPIE\b", readelf("--dynamic", program)) is not None
    )


def has_read_only_relocations(program):
    return "GNU_RELRO" in readelf("--program-headers", program)


def is_bound_at_start(program):
    return re.search(r"\(FLAGS\).*\bBIND_NOW\b|\(FLAGS_1\).*\bNOW\b", readelf("--dynamic", program)) is not None


def has_data_only_stack(program):
    stack = re.search(r"GNU_STACK(?:\s+0x\w+){5}\s+(\S+)", readelf("--program-headers", program))
    return stack is not None and "E" not in stack.group(1)


def has_guarded_stack(program):
    return "__stack_chk_fail" in readelf("--dyn-syms", program)


def has_guarded_branches(program):
    # The linker drops the note about the whole program if the system's start files lack it, as those of Debian do. So
    # this looks at the code itself: where a call may land.
    code = said_by("objdump", "--disassemble=main", "--no-show-raw-insn", program)
    return re.search(r"<main>:\n\s+[0-9a-f]+:\s+endbr64", code) is not None


def looks_for_libraries_where_the_system_does(program):
    return re.search(r"\((RPATH|RUNPATH)\)", readelf("--dynamic", program)) is None


CHECKS = [
    # what, check, flags with it, flags that take it away
    ("position independent", is_position_independent, ["-fPIE", "-pie"], ["-fno-pie", "-no-pie"]),
    ("relocations read-only", has_read_only_relocations, ["-Wl,-z,relro"], ["-Wl,-z,norelro"]),
    ("bound at the start", is_bound_at_start, ["-Wl,-z,now"], ["-Wl,-z,lazy"]),
    ("stack not executable", has_data_only_stack, ["-Wl,-z,noexecstack"], ["-Wl,-z,execstack"]),
    ("stack protector", has_guarded_stack, ["-fstack-protector-strong"], ["-fno-stack-protector"]),
    ("no library path", looks_for_libraries_where_the_system_does, [], ["-Wl,-rpath,/nowhere"]),
] + (
    [("control flow protection", has_guarded_branches, ["-fcf-protection"], ["-fcf-protection=none"])]
    if IS_X86_64
    else []
)

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
    return [what for what, check, _, _ in CHECKS if not check(program)]


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
    for what, _, with_it, without_it in CHECKS:
        flags += without_it if what == left_out else with_it
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
