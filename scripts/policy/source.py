"""What the policy scripts share: which files there are, their text without comments or literals, and how to report."""

import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]

_SKIPPED = re.compile(
    r'''(?P<comment>//(?:[^\n\\]|\\.)*|/\*.*?\*/)
      | (?P<raw>(?:u8|u|U|L)?R"(?P<mark>[^()\s\\]{0,16})\(.*?\)(?P=mark)")
      | (?P<text>"(?:[^"\\\n]|\\.)*"|(?:\b(?:u8|u|U|L)|(?<![0-9A-Za-z_]))'(?:[^'\\\n]|\\.)*')
      | (?P<directive>^[ \t]*\#(?:[^\n\\]|\\.)*)''',
    re.DOTALL | re.MULTILINE | re.VERBOSE)


def code_only(text):
    """`text` with comments and preprocessor lines blanked and literals emptied; every line keeps its number."""

    def blank(match):
        lines = '\n' * match.group().count('\n')
        return '""' + lines if match.group('raw') or match.group('text') else ' ' + lines

    return _SKIPPED.sub(blank, text)


def without_comments(text):
    """`text` with comments blanked; literals stay, and every line keeps its number."""
    return _SKIPPED.sub(lambda match: '\n' * match.group().count('\n') if match.group('comment') else match.group(), text)


def files(*patterns):
    """The files of the repository, committed or about to be, that match one of the git path patterns."""
    listed = subprocess.run(
        ['git', 'ls-files', '-z', '--cached', '--others', '--exclude-standard', '--', *patterns],
        cwd=ROOT, check=True, capture_output=True, text=True).stdout
    return [path for path in sorted(set(listed.split('\0'))) if path and (ROOT / path).is_file()]


def read(path):
    return (ROOT / path).read_text(encoding='utf-8')


def report(name, findings, warnings=()):
    """Prints what was found, as "file:line: message", and ends the program: with 1 if anything was."""
    for warning in warnings:
        print(f'{warning} (a warning)')
    for finding in findings:
        print(finding)
    print(f'{name}: {len(findings)} found' if findings else f'{name}: good')
    sys.exit(1 if findings else 0)
