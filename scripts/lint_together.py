#!/usr/bin/env python3
"""Runs the linter: `lint_together.py [--deep] BUILD_DIRECTORY FILE...`, with the compile commands of that directory.

Nearly all of the linter's time goes into the headers of the toolkit and the standard library, so that many files are
put together in one and share them. What is found is told with the file and the line it stands in. Each
file is also compiled alone, with the precompiled headers of that build, which shows whether it includes what it needs and
takes the locks that it has to.
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

# Of tests, as many as a unity build puts together, where names are distinct.
TESTS_TOGETHER = 12
# What stands before the system's own functions cannot take the system's reserved names. A test may end by an exception,
# and hands its events to the toolkit, which deletes them.
BESIDE_THE_PROGRAM = (
    "--checks=-readability-inconsistent-declaration-parameter-name,-bugprone-exception-escape,"
    "-clang-analyzer-cplusplus.NewDeleteLeaks"
)

# The analyzer stops after so many states of a function. Its default is 225,000, which --deep keeps; this takes half the time,
# and few functions have more states.
SHALLOW = ("-Xclang", "-analyzer-config", "-Xclang", "max-nodes=75000")

# As Mutex.h tells the compiler.
LOCKS = ("-Wthread-safety", "-Werror=thread-safety")


def targets(build, wanted):
    """Returns the files of each target with the options that they are compiled with, a list of pairs."""
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
    """Yields lists of targets, as of targets(), whose files are put together: of the program all that share their
    headers, of tests some of one target."""
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
    """The options of several targets, each once, in order, without precompiled headers, which they may not have in common."""
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
    """Writes the files into one, each header included once. Returns the file and the line that each of its lines comes
    from."""
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
    """Returns whether the file compiles, and what the compiler told."""
    result = subprocess.run(["clang++", "-fsyntax-only", *LOCKS, *options, file], capture_output=True, text=True)
    return result.returncode == 0, result.stderr


def lint(batch, name, depth):
    """Returns whether the linter found nothing, and its output."""
    fine, output = lint_together(batch, name, depth)
    if "[clang-diagnostic-error]" in output and len(batch) > 1:
        # Names of different targets may collide.
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
    # More than there are processors, so that a busy machine leaves enough of them to the linter.
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
