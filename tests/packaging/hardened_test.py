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

FLAGS = ('-fstack-protector-strong', '-fstack-clash-protection', '-D_FORTIFY_SOURCE=2', '-Werror=format-security')


class Hardened(unittest.TestCase):
    programs = ()
    build = None

    def eachProgram(self, *options):
        for program in self.programs:
            with self.subTest(program):
                yield subprocess.run(['readelf', '--wide', *options, program],
                                     check=True, capture_output=True, text=True).stdout

    def test_standsAtAnyAddress(self):
        for told in self.eachProgram('--file-header', '--dynamic'):
            self.assertRegex(told, r'Type: +DYN')
            self.assertRegex(told, r'\(FLAGS_1\).*\bPIE\b')

    def test_bindsEverythingAtTheStartAndThenLocksIt(self):
        for told in self.eachProgram('--program-headers', '--dynamic'):
            self.assertIn('GNU_RELRO', told)
            self.assertRegex(told, r'BIND_NOW|\(FLAGS_1\).*\bNOW\b')

    def test_hasNoStackThatCanBeRun(self):
        for told in self.eachProgram('--program-headers'):
            self.assertRegex(told, r'GNU_STACK.* RW ')
            self.assertNotRegex(told, r' RWE ')

    def test_noticesAnOverwrittenStack(self):
        for told in self.eachProgram('--dyn-syms'):
            self.assertIn('__stack_chk_fail', told)

    def test_asksTheCheckedFunctions(self):
        for told in self.eachProgram('--dyn-syms'):
            self.assertRegex(told, r' __\w+_chk\b')

    @unittest.skipUnless(platform.machine() in ('x86_64', 'AMD64'), 'only these processors know it')
    def test_jumpsOnlyWhereItMay(self):
        for told in self.eachProgram('--notes'):
            self.assertRegex(told, r'x86 feature:.*\bIBT\b.*\bSHSTK\b')

    def test_eachSourceIsBuiltWithEveryFlag(self):
        commands = json.loads((self.build / 'compile_commands.json').read_text())
        self.assertGreater(len(commands), 300)
        for entry in commands:
            for flag in FLAGS:
                self.assertRegex(entry['command'], rf'(?<!\S){re.escape(flag)}(?!\S)', entry['file'])


if __name__ == '__main__':
    parser = argparse.ArgumentParser()
    parser.add_argument('--build', type=Path, required=True)
    parser.add_argument('programs', nargs='+')
    arguments = parser.parse_args()
    Hardened.build, Hardened.programs = arguments.build, arguments.programs
    unittest.main(argv=[sys.argv[0]])
