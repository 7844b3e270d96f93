#!/usr/bin/env python3
"""Reads the udev rule as udev does: keys, operators, labels, and its place among the rules of the system.

Usage: device_rule_test.py RULE_FILE
"""

import pathlib
import re
import shutil
import subprocess
import sys
import unittest

RULE = pathlib.Path(sys.argv.pop(1))
TOKEN = re.compile(r'\s*([A-Z]+)(?:\{([^}]+)\})?(==|!=|\+=|:=|=)"([^"]*)"\s*(,|$)')
MATCHES = {"ACTION", "SUBSYSTEM", "SUBSYSTEMS", "KERNEL", "ATTR", "ATTRS", "ENV", "PROGRAM"}
ASSIGNMENTS = {"SYMLINK", "TAG", "ENV", "LABEL", "GOTO"}
NEEDS_ATTRIBUTE = {"ATTR", "ATTRS", "ENV"}


def rules():
    """Each rule as a list of (key, attribute, operator, value)."""
    text = RULE.read_text(encoding="utf-8")
    if not text.endswith("\n"):
        raise ValueError("the last line is not ended")
    for line in text.split("\n"):
        if not line or line.startswith("#"):
            continue
        tokens = []
        rest = line
        while rest:
            match = TOKEN.match(rest)
            if not match:
                raise ValueError(f"not a rule: {line}")
            tokens.append(match.groups()[:4])
            rest = rest[match.end() :]
        yield tokens


class DeviceRule(unittest.TestCase):
    def test_every_token_is_one_that_udev_knows(self):
        for rule in rules():
            for key, attribute, operator, _ in rule:
                known = MATCHES if operator in ("==", "!=") else ASSIGNMENTS
                self.assertIn(key, known, f"{key}{operator}")
                self.assertEqual(bool(attribute), key in NEEDS_ATTRIBUTE, key)

    def test_every_jump_leads_forward_to_its_label(self):
        labels = {token[3]: line for line, rule in enumerate(rules()) for token in rule if token[0] == "LABEL"}
        jumps = [(token[3], line) for line, rule in enumerate(rules()) for token in rule if token[0] == "GOTO"]
        self.assertTrue(jumps)
        for label, line in jumps:
            self.assertGreater(labels[label], line)

    def test_gives_the_name_that_the_wizard_looks_for_and_access_to_the_person_at_the_seat(self):
        assigned = [(key, value) for rule in rules() for key, _, operator, value in rule if operator == "+="]
        self.assertEqual(assigned, [("SYMLINK", "cu.usbmodem%n"), ("TAG", "uaccess")])

    def test_keeps_devices_from_the_modem_manager_only_while_a_wizard_is_open(self):
        ignoring = [rule for rule in rules() for key, attribute, _, _ in rule if (attribute or "").startswith("ID_MM_")]
        self.assertEqual(
            ignoring,
            [[("PROGRAM", None, "==", "/usr/bin/pgrep -x velmorindal-set"), ("ENV", "ID_MM_PORT_IGNORE", "=", "1")]],
        )

    def test_comes_after_what_it_needs_and_before_access_is_given(self):
        self.assertLess("60-serial.rules", RULE.name)
        self.assertLess(RULE.name, "73-seat-late.rules")

    def test_udev_itself_finds_nothing_wrong_where_it_can_tell(self):
        if not shutil.which("udevadm"):
            self.skipTest("there is no udevadm here")
        version = subprocess.run(["udevadm", "--version"], capture_output=True, text=True).stdout
        if int(version.split()[0]) < 254:
            self.skipTest("udevadm cannot verify rules here")
        verified = subprocess.run(["udevadm", "verify", str(RULE)], capture_output=True, text=True)
        self.assertEqual(verified.returncode, 0, verified.stdout + verified.stderr)


if __name__ == "__main__":
    unittest.main()
