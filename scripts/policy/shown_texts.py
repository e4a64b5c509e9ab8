#!/usr/bin/env python3
"""Refuses a sentence in the application's C++ that no translation can reach.

Whatever the user reads goes through tr() or translate(). What is written down for others stays English: the log, the
terminal, the protocol and what is thrown at it.
"""

import re
import sys

sys.path.insert(0, __file__.rpartition('/')[0])
from source import files, read, report, without_comments  # noqa: E402

# The terminal's, the protocol's, and what only tests and previews show.
EXEMPT = ('src/App/main.cpp', 'src/App/UnattendedRun.cpp', 'src/Support/', 'src/Transport/JSON',
          'src/Transport/HelperProtocol')
NAMES = {'Apple Music'}
# Kept from the user: a failure for the log, or one for which another sentence is shown.
UNSEEN = {
    'src/Services/AppleMusicAuthService.cpp': {'Developer token unavailable.'},
    'src/Services/ArtworkSession.cpp': {'The request timed out.', 'The answer is too large.'},
    'src/Services/URLSession.cpp': {'The request timed out.'},
}

_SENTENCE = re.compile(r'(?:\bu|QStringLiteral\(\s*|QLatin1StringView\(\s*)"([A-Z][\w\']*,? [^"]*)"')
_TO_OTHERS = re.compile(r'\b(?:_?logger|Logger|fatal|qFatal|qWarning|sendErrorReply)\b')


def check(path, text):
    """The (line, sentence) of each sentence in the file's text that is neither translated nor said to others."""
    known = NAMES | UNSEEN.get(path, set())
    code = without_comments(text)
    found = []
    for match in _SENTENCE.finditer(code):
        statement = re.split(r'[;{}]', code[:match.start()])[-1]
        if not _TO_OTHERS.search(statement) and match.group(1) not in known:
            found.append((code.count('\n', 0, match.start()) + 1, match.group(1)))
    return found


if __name__ == '__main__':
    report('shown_texts', [
        f'{path}:{line}: "{sentence}" can\'t be translated: see docs/notes/translations.md'
        for path in sys.argv[1:] or files('src/*.h', 'src/*.cpp') if not path.startswith(EXEMPT)
        for line, sentence in check(path, read(path))])
