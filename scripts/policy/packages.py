#!/usr/bin/env python3
"""Refuses a package that zelk needs to run and that its own package doesn't name."""

import re
import sys

sys.path.insert(0, __file__.rpartition('/')[0])
from source import read, report  # noqa: E402

_NEEDED = re.compile(r'^(\S+) +# run: ', re.MULTILINE)


def check(setup, package):
    """The packages that `setup` installs to run zelk, and `package` names nowhere."""
    named = set(re.findall(r'[a-z0-9][a-z0-9.+-]*', package))
    return [name for name in _NEEDED.findall(setup) if name not in named]


if __name__ == '__main__':
    report('packages', [f'packaging/Package.cmake: doesn\'t name {name}, which scripts/setup installs to run zelk'
                        for name in check(read('scripts/setup'), read('packaging/Package.cmake'))])
