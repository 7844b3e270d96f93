#!/usr/bin/env python3
"""Shows that the build refuses an include that runs upwards or sideways.

For each layer, a file is compiled with the folders that the build gives to that layer: it must not find a header of any
layer that is not below it, nor of the toolkit where the layer has none, and it must find those of the layers below.

Usage: layers_test.py BUILD_DIRECTORY SOURCE_DIRECTORY
"""

import concurrent.futures
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys
import unittest

SOURCE = pathlib.Path(sys.argv.pop(2))
BUILD = pathlib.Path(sys.argv.pop(1))
# Each layer with its folder, one of its headers, and those that it may include.
FOUNDATION = {
    "bytes": ("src/bytes", "ByteBuffer.h", ()),
    "locks": ("src/locks", "Mutex.h", ()),
    "diagnostics": ("src/diagnostics", "FatalError.h", ("bytes", "locks")),
    "transport": ("src/transport", "SerialSettings.h", ("bytes", "locks", "diagnostics")),
    "protocol": ("src/protocol", "RawValue.h", ("bytes", "locks", "diagnostics")),
    "record": ("src/record", "FrameSplitter.h", ("bytes", "locks", "diagnostics", "transport", "protocol")),
    "simulator": ("simulator", "OwnedDescriptor.h", ("bytes", "locks", "diagnostics", "protocol")),
    "settings": ("src/settings", "ModelTypes.h", ()),
    "settingsfile": ("src/settingsfile", "TextConversions.h", ("bytes", "locks", "diagnostics", "settings")),
    "colors": ("src/ui/colors", "Color.h", ()),
}
SESSION = ("bytes", "locks", "diagnostics", "transport", "protocol", "settings")
VIEWS = (*SESSION, "session", "colors")
WITHOUT_TOOLKIT = FOUNDATION | {
    "session": ("src/session", "SessionStates.h", (*SESSION, "settingsfile")),
    "views": ("src/ui/views", "wizardState.h", VIEWS),
    "app_delegate": ("src/app", "AppDelegate.h", (*SESSION, "session")),
}
TOOLKIT = {
    "look": ("src/ui/look", "LogoPicture.h", ("colors",)),
    "controls": ("src/ui/controls", "AccessibleControls.h", (*VIEWS, "views", "look")),
    "pages": ("src/ui/pages", "PageWidget.h", (*VIEWS, "views", "look", "controls")),
    "app": ("src/app", "Wizard.h", ("app_delegate", *VIEWS, "pages", "views", "look", "controls")),
}
LAYERS = WITHOUT_TOOLKIT | TOOLKIT


def options_of_targets():
    """Where each target looks for headers, as options; only those of targets with sources are there."""
    options = {}
    for command in json.loads((BUILD / "compile_commands.json").read_text()):
        words = shlex.split(command["command"])
        target = re.search(r"/CMakeFiles/velmorindal_(\w+)\.dir/", words[words.index("-o") + 1])
        if target:
            found = [words[0]]
            for word, following in zip(words, [*words[1:], ""]):
                if word.startswith(("-I", "-D", "-std=", "-fPIC")):
                    found.append(word)
                elif word == "-isystem":
                    found += [word, following]
            options.setdefault(target[1], found)
    return options


OPTIONS = options_of_targets()
BUILT = [layer for layer in LAYERS if layer in OPTIONS]


def complaint(layer, text):
    """What the compiler says of a file of that layer, in its first line; nothing when it takes it."""
    done = subprocess.run(
        [*OPTIONS[layer], "-fsyntax-only", "-x", "c++", "-"],
        input=text,
        text=True,
        capture_output=True,
        env=os.environ | {"LC_ALL": "C"},
    )
    return "" if done.returncode == 0 else done.stderr.split("\n")[0]


def complaints(pairs):
    """The answer to each pair of a layer and a header."""
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        return list(pool.map(lambda pair: complaint(pair[0], f'#include "{pair[1]}"\n'), pairs))


class Layers(unittest.TestCase):
    def test_every_folder_of_the_program_is_a_layer(self):
        folders = {str(each.parent.relative_to(SOURCE)) for each in (SOURCE / "src").rglob("*.h")}

        self.assertEqual(folders | {"simulator"}, {folder for folder, _, _ in LAYERS.values()})
        self.assertLessEqual({"session", "views", "simulator"}, set(BUILT))

    def test_a_header_that_is_not_below_is_refused(self):
        pairs = [
            (layer, other)
            for layer in BUILT
            for other, (folder, _, _) in LAYERS.items()
            if other not in (layer, *LAYERS[layer][2]) and folder != LAYERS[layer][0]
        ]
        self.assertGreater(len(pairs), 80)
        for pair, said in zip(pairs, complaints((layer, LAYERS[other][1]) for layer, other in pairs)):
            with self.subTest(pair):
                self.assertRegex(said, "No such file|file not found")

    def test_every_header_is_found_by_the_layers_above_it_and_by_no_other(self):
        # The preprocessor alone answers, for all headers at once.
        for layer in BUILT:
            open_to_it = {layer, *LAYERS[layer][2]}
            folders = {LAYERS[each][0] for each in open_to_it}
            wrong = []
            for folder, _, _ in LAYERS.values():
                for header in (SOURCE / folder).glob("*.h"):
                    condition = "!" if folder in folders else ""
                    wrong.append(f'#if {condition}__has_include("{header.name}")\n#error {header.name}\n#endif\n')
            with self.subTest(layer):
                self.assertEqual(complaint(layer, "".join(wrong)), "")

    def test_a_header_from_below_is_taken(self):
        pairs = [(layer, LAYERS[below[-1]][1]) for layer in BUILT if (below := LAYERS[layer][2])]
        for pair, said in zip(pairs, complaints(pairs)):
            with self.subTest(pair):
                self.assertEqual(said, "")

    def test_the_toolkit_is_refused_below_its_layers(self):
        without = [layer for layer in WITHOUT_TOOLKIT if layer in OPTIONS and layer != "settingsfile"]
        for layer, said in zip(without, complaints((layer, "QString") for layer in without)):
            with self.subTest(layer):
                self.assertRegex(said, "No such file|file not found")


unittest.main()
