#!/usr/bin/env python3
"""Refuses a document that names a test, as `program::test`, which isn't there.

What a document says of the program's safety is worth as much as the test that shows it.
"""

import re
import sys

sys.path.insert(0, __file__.rpartition('/')[0])
from source import files, read, report  # noqa: E402

_NAMED = re.compile(r'`(tst_\w+)::(\w+)`')


def check(text, sources):
    """The (line, name) of each test named in `text` that the source of its program doesn't hold; `sources` is by program."""
    return [(text.count('\n', 0, match.start()) + 1, '::'.join(match.groups()))
            for match in _NAMED.finditer(text)
            if not re.search(rf'\bvoid {match.group(2)}\(\)', sources.get(match.group(1), ''))]


def main():
    sources = {path.rpartition('/')[2].removesuffix('.cpp'): read(path) for path in files('tests/**/tst_*.cpp')}
    report('named tests', [f'{path}:{line}: there is no test {name}'
                           for path in files('*.md') for line, name in check(read(path), sources)])


if __name__ == '__main__':
    main()
