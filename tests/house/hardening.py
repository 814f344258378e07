"""What users get is hardened: the flags of cmake/TalvoCompiler.cmake reach the binary.

Runs on the release preset only (TALVO_RELEASE=1); elsewhere it is reported as skipped.
TALVO_EXECUTABLE is the program, TALVO_COMPILE_COMMANDS the compile commands of its build.
"""

import json
import os
import re
import subprocess
import sys
import unittest

from project import ROOT

SKIPPED = 77

#: Flags that every source of the product is compiled with on x86-64.
FLAGS = [
    "-D_FORTIFY_SOURCE=2",
    "-fstack-protector-strong",
    "-fstack-clash-protection",
    "-fcf-protection",
    "-fPIE",
]


def readelf(*arguments, file=None):
    command = ["readelf", "--wide", *arguments, file or os.environ["TALVO_EXECUTABLE"]]
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def product_commands():
    """The compile commands of the sources in Talvo/."""
    with open(os.environ["TALVO_COMPILE_COMMANDS"], encoding="utf-8") as file:
        commands = json.load(file)
    return [command for command in commands if command["file"].startswith(f"{ROOT}/Talvo/")]


class Hardening(unittest.TestCase):
    def test_it_is_loaded_at_a_random_address(self):
        self.assertRegex(readelf("--file-header"), r"Type:\s+DYN")
        self.assertRegex(readelf("--dynamic"), r"FLAGS_1.*\bPIE\b")

    def test_its_tables_are_read_only_after_start(self):
        self.assertIn("GNU_RELRO", readelf("--segments"))
        self.assertRegex(readelf("--dynamic"), r"FLAGS_1.*\bNOW\b")

    def test_its_stack_is_not_executable(self):
        self.assertRegex(readelf("--segments"), r"GNU_STACK\s+(0x[0-9a-f]+\s+){5}RW\s")

    def test_its_stack_frames_are_guarded(self):
        self.assertIn("__stack_chk_fail", readelf("--dyn-syms"))

    def test_every_object_marks_the_targets_of_its_jumps(self):
        # Not asked of the program as a whole: the C library's start-up objects of Debian 12 lack the
        # marks, and so the linker leaves them out of its note.
        for command in product_commands():
            path = os.path.join(command["directory"], command["command"].split(" -o ")[1].split()[0])
            self.assertIn("IBT, SHSTK", readelf("--notes", file=path), path)

    def test_every_source_is_compiled_with_the_flags(self):
        commands = product_commands()
        self.assertGreater(len(commands), 20)
        for command in commands:
            arguments = set(command["command"].split())
            missing = [flag for flag in FLAGS if flag not in arguments]
            if "-fPIC" in arguments and "-fPIE" in missing:
                missing.remove("-fPIE")
            self.assertEqual(missing, [], command["file"])
            self.assertIsNone(re.search(r"-fno-stack-protector|-z execstack", command["command"]))


if __name__ == "__main__":
    if os.environ.get("TALVO_RELEASE") != "1":
        print("skipped: the hardening is that of the release preset")
        sys.exit(SKIPPED)
    unittest.main()
