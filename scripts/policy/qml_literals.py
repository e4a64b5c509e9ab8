#!/usr/bin/env python3
"""Refuses colours and type sizes written out in QML: each comes from Tokens, where dark, light and contrast are decided."""

import re
import sys

sys.path.insert(0, __file__.rpartition('/')[0])
from source import files, read, report, without_comments  # noqa: E402

_COLOUR_NAMES = ('aqua|black|blue|brown|crimson|cyan|darkgray|darkgrey|fuchsia|gold|gray|green|grey|indigo|lightgray|lightgrey|lime'
                 '|magenta|maroon|navy|olive|orange|pink|purple|red|salmon|silver|steelblue|teal|tomato|violet|white|yellow')
_LITERALS = [
    (re.compile(r'"#(?:[0-9A-Fa-f]{3,4}|[0-9A-Fa-f]{6}|[0-9A-Fa-f]{8})"'), 'a colour'),
    (re.compile(rf'\b\w*[cC]olor\s*:[^\n"]*"(?:{_COLOUR_NAMES})"'), 'a colour'),
    (re.compile(r'\bQt\.(?:rgba|hsla|hsva)\(\s*[\d.]+\s*,\s*[\d.]+\s*,\s*[\d.]+'), 'a colour'),
    (re.compile(r'\bfont\s*\.\s*(?:pixelSize|pointSize|weight|letterSpacing)\s*:\s*-?\d'), 'a type size'),
    (re.compile(r'\bfont\s*\.\s*family\s*:\s*"'), 'a typeface'),
    (re.compile(r'\bfont\s*:\s*\(?\{|\bQt\.font\('), 'a typeface'),
]


def check(text):
    """The (line, what) of each literal in a QML text."""
    code = without_comments(text)
    return sorted((code.count('\n', 0, match.start()) + 1, what)
                  for pattern, what in _LITERALS for match in pattern.finditer(code))


if __name__ == '__main__':
    report('qml_literals', [
        f'{path}:{line}: {what} written out; take it from Tokens'
        for path in sys.argv[1:] or files('src/*.qml') if not re.search(r'/Tokens\w*\.qml$', path)
        for line, what in check(read(path))])
