#!/usr/bin/env python3
"""Runs the linter: `lint_together.py BUILD_DIRECTORY FILE...`, with the compile commands of that directory.

Nearly all of the linter's time goes into the headers of the toolkit and the standard library, so that a dozen files of
one target are put together in one and share them. What is found is told with the file and the line it stands in.
"""

import concurrent.futures
import json
import os
import pathlib
import re
import subprocess
import sys

TOGETHER = 12


def batches(build, wanted):
    """Yields lists of a dozen compile commands or fewer, each of one target."""
    targets = {}
    seen = set()
    for command in json.loads((build / "compile_commands.json").read_text()):
        if command["file"] in wanted and command["file"] not in seen:
            seen.add(command["file"])
            target = re.search(r"-o (\S+)\.dir/", command["command"])[1]
            targets.setdefault(target, []).append(command)
    if missing := wanted - seen:
        sys.exit(f"No command compiles {', '.join(sorted(missing))}")
    for commands in targets.values():
        for first in range(0, len(commands), TOGETHER):
            yield commands[first : first + TOGETHER]


def put_together(files, name):
    """Writes the files into one, each header included once. Returns the file and the line that each of its lines comes from."""
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


def lint(commands, name):
    origins = put_together([command["file"] for command in commands], name)
    options = commands[0]["command"].split()[1:]
    options = [option for option in options[: options.index("-o")] if option != "-c"]
    result = subprocess.run(
        ["clang-tidy", "--quiet", name, "--", *options], cwd=commands[0]["directory"], capture_output=True, text=True
    )
    told = re.sub(r"(?m)^\d+ warnings? generated\.\n", "", result.stdout + result.stderr)

    def place(match):
        file, line = origins[int(match[1]) - 1]
        return f"{os.path.relpath(file)}:{line}:"

    return result.returncode == 0, re.sub(re.escape(str(name)) + r":(\d+):", place, told)


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    wanted = {str(pathlib.Path(file).resolve()) for file in sys.argv[2:]}
    place = build / "together"
    place.mkdir(exist_ok=True)
    clean = True
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as workers:
        runs = [
            workers.submit(lint, commands, place / f"{number}.cpp")
            for number, commands in enumerate(batches(build, wanted))
        ]
        for run in runs:
            fine, told = run.result()
            sys.stdout.write(told)
            clean = clean and fine
    sys.exit(not clean)


if __name__ == "__main__":
    main()
