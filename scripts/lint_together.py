#!/usr/bin/env python3
"""Runs the linter: `lint_together.py [--deep] BUILD_DIRECTORY FILE...`, with the compile commands of that directory.

Nearly all of the linter's time goes into the headers of the toolkit and the standard library, so many files are put
together into one and share them. Findings are printed with their original file and line. Each file is also compiled alone,
with the precompiled headers of that build, which shows whether it includes what it needs and takes the locks that it must.

With --deep, the analyzer examines more states of each function. With VELMORINDAL_PROGRESS set, progress is printed.
"""

import argparse
import concurrent.futures
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys

# For tests, the batch size of the unity builds, in which names are unique.
TESTS_TOGETHER = 12
# A test that replaces functions of the system cannot use their reserved parameter names. A test may end by an exception, and
# passes events to the toolkit, which deletes them.
BESIDE_THE_PROGRAM = (
    "--checks=-readability-inconsistent-declaration-parameter-name,-bugprone-exception-escape,"
    "-clang-analyzer-cplusplus.NewDeleteLeaks"
)

# The analyzer stops after this number of states in a function. --deep keeps its default of 225,000. This number takes half
# the time, and few functions have more states.
SHALLOW = ("-Xclang", "-analyzer-config", "-Xclang", "max-nodes=75000")

# Checks the attributes of Mutex.h.
LOCKS = ("-Wthread-safety", "-Werror=thread-safety")


def targets(build, wanted):
    """Returns for each target its compile options and its files, as a list of pairs."""
    files_of = {}
    seen = set()
    for command in json.loads((build / "compile_commands.json").read_text()):
        file = os.path.realpath(command["file"])
        if file in wanted and file not in seen:
            seen.add(file)
            arguments = shlex.split(command["command"])[1:]
            output = arguments.index("-o")
            target = arguments[output + 1].split(".dir/")[0]
            files_of.setdefault((target, *arguments[:output]), []).append(file)
    if missing := wanted - seen:
        sys.exit(f"No command compiles {', '.join(sorted(missing))}")
    return [(options, files) for (_, *options), files in files_of.items()]


def batches(build, wanted):
    """Yields lists of pairs, as targets() returns them, whose files are put together: of the program all files that share
    their headers, of tests some files of one target."""
    together = {}
    for options, files in targets(build, wanted):
        if all(map(is_of_the_program, files)):
            toolkit = any("QtWidgets" in option for option in options)
            together.setdefault((os.path.relpath(files[0]).split("/")[0], toolkit), []).append((options, files))
        else:
            for first in range(0, len(files), TESTS_TOGETHER):
                yield [(options, files[first : first + TESTS_TOGETHER])]
    yield from together.values()


def joined(options_of_targets):
    """The options of several targets, each once, in order, without precompiled headers, which may differ."""
    result, seen = [], set()
    for options in options_of_targets:
        rest = iter(options)
        for option in rest:
            words = (option, next(rest)) if option in ("-isystem", "-Xclang") else (option,)
            if option != "-Xclang" and words not in seen:
                seen.add(words)
                result += words
    return result


def is_of_the_program(file):
    return os.path.relpath(file).startswith(("src/", "simulator/"))


def put_together(files, name):
    """Writes the files into one, with each header included once. Returns for each line its original file and number."""
    lines, origins, included = [], [], set()
    for file in files:
        for number, line in enumerate(pathlib.Path(file).read_text().splitlines(), start=1):
            if line.startswith("#include"):
                if (file, line) in included:
                    sys.exit(f"{file}:{number}: included twice")
                line = "" if line in included else line
                included |= {line, (file, line)}
            lines.append(line)
            origins.append((file, number))
    name.write_text("\n".join(lines) + "\n")
    return origins


def compile_alone(options, file):
    """Returns whether the file compiles, and the output of the compiler."""
    result = subprocess.run(["clang++", "-fsyntax-only", *LOCKS, *options, file], capture_output=True, text=True)
    return result.returncode == 0, result.stderr


def lint(batch, name, depth):
    """Returns whether the linter found nothing, and its output."""
    fine, output = lint_together(batch, name, depth)
    if "[clang-diagnostic-error]" in output and len(batch) > 1:
        # Different targets may use the same names.
        results = [lint_together([target], name, depth) for target in batch]
        fine, output = all(each for each, _ in results), "".join(each for _, each in results)
    return fine, output


def lint_together(batch, name, depth):
    files = [file for _, files in batch for file in files]
    origins = put_together(files, name)
    folders = sorted({f"-iquote{os.path.dirname(file)}" for file in files})
    checks = [] if all(map(is_of_the_program, files)) else [BESIDE_THE_PROGRAM]
    options = [*joined(options for options, _ in batch), "-Wno-shadow", *folders, *depth]
    command = ["clang-tidy", "--quiet", *checks, name, "--", *options]
    result = subprocess.run(command, capture_output=True, text=True)
    output = re.sub(r"(?m)^\d+ warnings? generated\.\n", "", result.stdout + result.stderr)

    def place(match):
        file, line = origins[int(match[1]) - 1]
        return f"{os.path.relpath(file)}:{line}:"

    return result.returncode == 0, re.sub(re.escape(str(name)) + r":(\d+):", place, output)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--deep", action="store_true")
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("files", nargs="+")
    arguments = parser.parse_args()
    build = arguments.build.resolve()
    depth = () if arguments.deep else SHALLOW
    wanted = {os.path.realpath(file) for file in arguments.files}
    place = build / "together"
    place.mkdir(exist_ok=True)
    clean = True
    # More workers than processors, so that the linter gets its share of a busy machine.
    with concurrent.futures.ThreadPoolExecutor(2 * (os.cpu_count() or 1)) as workers:
        runs = []
        for number, batch in enumerate(batches(build, wanted)):
            runs.append(workers.submit(lint, batch, place / f"{number}.cpp", depth))
        for options, files in targets(build, wanted):
            runs += [workers.submit(compile_alone, options, file) for file in files]
        for done, run in enumerate(concurrent.futures.as_completed(runs), start=1):
            if "VELMORINDAL_PROGRESS" in os.environ:
                print(f"[{done}/{len(runs)}]", flush=True)
            fine, output = run.result()
            sys.stdout.write(output)
            clean = clean and fine
    sys.exit(not clean)


if __name__ == "__main__":
    main()
