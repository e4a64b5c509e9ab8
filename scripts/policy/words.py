#!/usr/bin/env python3
"""Refuses text that makes sense only with something outside the repository, and work put off in a comment.

Whoever reads a file has this repository and nothing else: no numbered section of another document, no number in a
tracker that may move, no path of somebody's machine.
"""

import re
import sys

sys.path.insert(0, __file__.rpartition('/')[0])
from source import files, read, report  # noqa: E402

# Written so that none of them matches itself.
_WORDS = [
    (re.compile(r'\bPar[t] \d+\.\d', re.IGNORECASE), 'a numbered section of another document'),
    (re.compile(r'\bissu[e] #?\d', re.IGNORECASE), 'a number in a tracker'),
    (re.compile(r'\bthe spe[c](?:ification)?\b|\bspe[c](?:ification)?\.md\b', re.IGNORECASE), 'another document'),
    (re.compile(r'\bshare[d]/(?:spe[c]|design|look|local-engine)|(?<!\w)desig[n]\.md\b'), 'another document'),
    (re.compile(r'(?<![\w.])/(?:wor[k]|home/\w+|Users/\w+)/(?!\$)'), "a path of somebody's machine"),
    (re.compile(r'\b(?:TOD[O]|FIXM[E]|XX[X])\b'), 'work put off; do it or leave it out'),
]
# Paths below /home that a test makes up for its people.
_MADE_UP = re.compile(r'^(?:tests|benchmarks)/')


def check(path, text):
    """The (line, words, what) of each place in `text`, the file at `path`, that leans on something elsewhere."""
    found = []
    for pattern, what in _WORDS:
        for match in pattern.finditer(text):
            if 'machine' in what and _MADE_UP.match(path) and not match.group().startswith('/wor'):
                continue
            found.append((text.count('\n', 0, match.start()) + 1, match.group(), what))
    return sorted(found)


def text_of(path):
    try:
        return read(path)
    except UnicodeDecodeError:  # a picture, or a fixture that is broken on purpose
        return ''


if __name__ == '__main__':
    report('words', [
        f'{path}:{line}: "{words}": {what}'
        for path in sys.argv[1:] or files() if path not in ('LICENSE',)
        for line, words, what in check(path, text_of(path))])
