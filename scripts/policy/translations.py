#!/usr/bin/env python3
"""Refuses translations that have fallen behind the sources, or that lose what a text carries.

English is the language of the sources: its file holds the plurals alone. Every other file holds every text.
"""

import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
from pathlib import Path

sys.path.insert(0, __file__.rpartition('/')[0])
from source import ROOT, files, report  # noqa: E402

LUPDATE = shutil.which('lupdate', path='/usr/lib/qt6/bin') or shutil.which('lupdate')
_PLACES = re.compile(r'%(?:L?\d+|n)')
_KEYS = re.compile(r'^(?:Ctrl|Alt|Shift|F\d)[+\w.,]*$')


def carried(text):
    """What a translation must carry over from `text`, in any order."""
    return {
        'placeholders': sorted(_PLACES.findall(text)),
        'what joins it to the text before': text[:1].isspace() or text[:1] in (',', '.', ';'),
        'the blank before the next text': text[-1:].isspace(),
        'an ellipsis at its end': text.rstrip().endswith('…'),
        'a mnemonic': len(re.findall(r'&(?=\w)', text)),
        'keys': text if _KEYS.match(text) else None,
    }


def check(text):
    """What is wrong with the .ts file that holds `text`, one line each."""
    found = []
    for context in ElementTree.fromstring(text).iter('context'):
        for message in context.iter('message'):
            source = message.findtext('source') or ''
            where = f'{context.findtext("name")}: "{source}"'
            translation = message.find('translation')
            kind = translation.get('type')
            if kind:
                found.append(f'{where}: {"not translated" if kind == "unfinished" else "in no source any more"}')
                continue
            forms = [form.text or '' for form in translation.iter('numerusform')] or [translation.text or '']
            for form in forms:
                if not form.strip():
                    found.append(f'{where}: empty')
                    continue
                kept = carried(form)
                found += [f'{where}: "{form}" loses or adds {what}'
                          for what, wanted in carried(source).items() if kept[what] != wanted]
    return found


def update(path, folder):
    """The file's text as it would be if it were brought up to date with the sources below ROOT/src."""
    copy = Path(folder) / Path(path).name
    shutil.copy(ROOT / path, copy)
    plurals = ['-pluralonly'] if copy.stem.endswith('_en') else []
    done = subprocess.run(
        [LUPDATE, '-silent', '-locations', 'none', '-no-ui-lines', *plurals, str(ROOT / 'src'), '-ts', str(copy)],
        check=True, capture_output=True, text=True)
    return copy.read_text(encoding='utf-8'), done.stderr


if __name__ == '__main__':
    if not LUPDATE:
        report('translations', ['lupdate: not found; scripts/setup installs it'])
    findings = []
    with tempfile.TemporaryDirectory() as folder:
        for path in sys.argv[1:] or files('src/*.ts'):
            text, complaints = update(path, folder)
            findings += [f'{path}: {each}' for each in check(text)]
            # It guesses the context of a text that stands in no class of its own, and guesses wrong.
            findings += [f'{path}: {each}' for each in complaints.splitlines() if 'Q_OBJECT' in each]
    report('translations', findings)
