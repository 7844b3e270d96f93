#!/usr/bin/env python3
"""Checks that what the documents name exists: files, links, scripts, presets, targets, classes, functions, texts.

Usage: names_exist.py ROOT [DOCUMENT...]

Without documents, looks at all Markdown files of the tree. A name is what stands in `code` or as the target of a link.
What looks like a path must be one, `Class::member` must occur in the files of that class, and any other identifier must
occur in the sources as a whole word. Commands in code blocks must call scripts, presets and programs that exist.
"""

import glob
import json
import pathlib
import re
import subprocess
import sys

CODE = re.compile(r"`([^`\n]+)`")
LINK = re.compile(r"\]\(([^)#\s]+)\)")
FENCE = re.compile(r"^```.*?^```", re.MULTILINE | re.DOTALL)
INDENTED = re.compile(r"(?:^\n|\A)((?:^    .*\n?)+)", re.MULTILINE)
IDENTIFIER = re.compile(r"[A-Za-z_]\w*(?:::~?[A-Za-z_]\w*)*(?:\(\))?")
FILE = re.compile(r"[\w./*-]*\.(?:cpp|h|md|json|py|txt|cmake|rules|svg|png|xml|in|1)|\.[a-z][\w-]+|\.ci/run")
PROGRAM = re.compile(r"\bvelmorindal-[a-z-]+")
WRITTEN_IN = (".cpp", ".h", ".py", ".txt", ".cmake", ".json", ".rules", ".1", ".desktop", ".in", "")
# Words of the wire and of other systems that are no names of ours.
FOREIGN = set("c r e b v s x p d h k y l t w z name code dialout uaccess lsusb fuser".split())


class Tree:
    def __init__(self, root):
        self.root = root
        listed = subprocess.run(
            ["git", "-C", root, "ls-files", "--cached", "--others", "--exclude-standard"],
            check=True,
            capture_output=True,
            text=True,
        ).stdout.split("\n")
        self.files = [name for name in listed if name and (root / name).is_file()]
        self.tops = {name.split("/")[0] for name in self.files if "/" in name}
        written = [
            name
            for name in self.files
            if pathlib.PurePath(name).suffix in WRITTEN_IN and not name.startswith(("tests/data/", "tests/docs/"))
        ]
        self.texts = {name: (root / name).read_text(encoding="utf-8", errors="replace") for name in written}
        self.words = {word for text in self.texts.values() for word in re.findall(r"\w+", text)}
        presets = json.loads((root / "CMakePresets.json").read_text())["configurePresets"]
        self.presets = {preset["name"] for preset in presets}
        built = re.compile(r"add_(?:executable|library|custom_target)\(([\w-]+)|velmorindal_add_tests\((\w+)")
        self.targets = {name for text in self.texts.values() for pair in built.findall(text) for name in pair if name}

    def has_path(self, path):
        return bool(glob.glob(str(self.root / path)))

    def has_file(self, name):
        return any(pathlib.PurePath(each).match(name) for each in self.files)

    def has_member(self, name):
        first, *members = name.split("::")
        mine = [text for each, text in self.texts.items() if pathlib.PurePath(each).stem.startswith(first)]
        return all(any(re.search(rf"\b{re.escape(each)}\b", text) for text in mine) for each in members) and bool(mine)


def problem_with_name(tree, name):
    """What is wrong with a name in the text, or nothing."""
    if name.split("/")[0] in tree.tops and "/" in name:
        path, *_arguments = name.split()
        return None if tree.has_path(path.rstrip("/")) else "no such path"
    if FILE.fullmatch(name):
        return None if tree.has_file(name) else "no such file"
    if PROGRAM.fullmatch(name):
        return None if name in tree.targets else "no such program"
    if not IDENTIFIER.fullmatch(name) or name in FOREIGN:
        return None
    plain = name.removesuffix("()")
    if "::" in plain:
        return None if tree.has_member(plain) else "no such member"
    return None if plain in tree.words or plain in tree.targets else "no such name in the sources"


def problems_with_commands(tree, block):
    for path in re.findall(r"(?:^|\s)((?:scripts|tests|docs|packaging|benchmarks|src)/[\w./-]+)", block):
        if not tree.has_path(path):
            yield path, "no such path"
    for preset in re.findall(r"--preset[ =]([\w-]+)", block):
        if preset not in tree.presets:
            yield preset, "no such preset"
    for program in re.findall(r"(?:^|/| )(velmorindal-[a-z-]+)(?=\s|$)", block, re.MULTILINE):
        if program not in tree.targets:
            yield program, "no such program"
    for targets in re.findall(r"--target ([\w -]+?)(?= --|\n|$)", block):
        for target in targets.split():
            if target not in tree.targets:
                yield target, "no such target"


def problems(tree, document):
    text = document.read_text(encoding="utf-8")
    for block in FENCE.findall(text):
        yield from problems_with_commands(tree, block)
    prose = FENCE.sub("", text)
    for block in INDENTED.findall(prose):
        yield from problems_with_commands(tree, block)
    prose = INDENTED.sub("\n", prose)
    for target in LINK.findall(prose):
        if "://" not in target and not (document.parent / target).exists():
            yield target, "the link leads nowhere"
    for name in CODE.findall(prose):
        problem = problem_with_name(tree, name)
        if problem:
            yield name, problem


def main():
    root = pathlib.Path(sys.argv[1]).resolve()
    tree = Tree(root)
    documents = [pathlib.Path(name) for name in sys.argv[2:]]
    documents = documents or [root / name for name in tree.files if name.endswith(".md")]
    found = 0
    names = 0
    for document in documents:
        names += len(CODE.findall(FENCE.sub("", document.read_text(encoding="utf-8"))))
        for name, problem in problems(tree, document):
            print(f"{document}: `{name}`: {problem}")
            found += 1
    print(f"{names} names in {len(documents)} documents, {found} of what they name missing")
    return 1 if found or not names else 0


if __name__ == "__main__":
    sys.exit(main())
