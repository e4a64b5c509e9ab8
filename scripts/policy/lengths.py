#!/usr/bin/env python3
"""Warns of files that have grown beyond one purpose; it refuses none, for a long table is no fault."""

import sys

sys.path.insert(0, __file__.rpartition('/')[0])
from source import files, read, report  # noqa: E402

LIMITS = {'.h': 450, '.cpp': 450, '.qml': 220, '.py': 300}


def check(path, text):
    """A warning, or None."""
    limit = LIMITS.get(path[path.rfind('.'):])
    lines = text.count('\n')
    return f'{path}: {lines} lines, more than {limit}' if limit and lines > limit else None


if __name__ == '__main__':
    patterns = [f'*{suffix}' for suffix in LIMITS]
    report('lengths', [], [warning for path in sys.argv[1:] or files(*patterns) if (warning := check(path, read(path)))])
