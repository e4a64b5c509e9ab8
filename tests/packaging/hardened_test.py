#!/usr/bin/env python3
"""Whether what a user gets was built so that an error in memory ends the program.

    hardened_test.py --build BUILD PROGRAM…    BUILD is the folder of a release build; PROGRAMs were built there
"""

import argparse
import json
import platform
import re
import subprocess
import sys
import unittest
from pathlib import Path

INTEL = platform.machine() in ('x86_64', 'AMD64')
FLAGS = ('-fstack-protector-strong', '-fstack-clash-protection', '-D_FORTIFY_SOURCE=2', '-Werror=format-security',
         *(['-fcf-protection'] if INTEL else []))


class Hardened(unittest.TestCase):
    programs = ()
    build = None

    def assertEachSays(self, option, pattern, says=True):
        """Whether readelf tells of each program what is looked for; it tells too much to be shown."""
        for program in self.programs:
            told = subprocess.run(['readelf', '--wide', option, program], check=True, stdout=subprocess.PIPE, text=True).stdout
            self.assertEqual(re.search(pattern, told) is not None, says, f'{program}: readelf {option}, {pattern}')

    def test_standsAtAnyAddress(self):
        self.assertEachSays('--file-header', r'Type: +DYN')
        self.assertEachSays('--dynamic', r'\(FLAGS_1\).*\bPIE\b')

    def test_bindsEverythingAtTheStartAndThenLocksIt(self):
        self.assertEachSays('--program-headers', r'\bGNU_RELRO\b')
        self.assertEachSays('--dynamic', r'BIND_NOW|\(FLAGS_1\).*\bNOW\b')

    def test_hasNoStackThatCanBeRun(self):
        self.assertEachSays('--program-headers', r'\bGNU_STACK\b.* RW ')
        self.assertEachSays('--program-headers', r' RWE ', says=False)

    def test_noticesAnOverwrittenStack(self):
        self.assertEachSays('--dyn-syms', r' __stack_chk_fail\b')

    def test_asksNoUncheckedFunctionWhereThereIsACheckedOne(self):
        """Of those that are always exchanged; of others it depends on whether a size is known."""
        self.assertEachSays('--dyn-syms', r' (?:v?(?:|f|d|s|sn|as)printf|longjmp|realpath)@', says=False)

    @unittest.skipUnless(INTEL, 'only these processors know it')
    def test_marksWhereItMayBeJumpedTo(self):
        """The mark is an instruction; the C library's own start has one or two of them."""
        for program in self.programs:
            self.assertGreater(Path(program).read_bytes().count(b'\xf3\x0f\x1e\xfa'), 5, program)

    def test_eachSourceIsBuiltWithEveryFlag(self):
        commands = json.loads((self.build / 'compile_commands.json').read_text())
        self.assertGreater(len(commands), 300)
        for entry in commands:
            for flag in FLAGS:
                self.assertIn(flag, entry['command'].split(), entry['file'])


if __name__ == '__main__':
    parser = argparse.ArgumentParser()
    parser.add_argument('--build', type=Path, required=True)
    parser.add_argument('programs', nargs='+')
    arguments = parser.parse_args()
    Hardened.build, Hardened.programs = arguments.build, arguments.programs
    unittest.main(argv=[sys.argv[0]])
