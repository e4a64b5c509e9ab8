#!/usr/bin/env python3
"""Refuses a thread made anywhere but in the executor and under the platform's operations.

Everything crosses threads through SerialExecutor, which is why nothing needs a lock.
"""

import re
import sys

sys.path.insert(0, __file__.rpartition('/')[0])
from source import code_only, files, read, report  # noqa: E402

ALLOWED = ('src/Platform/', 'src/Support/SerialExecutor')

_THREAD = re.compile(r'\bstd::(?:jthread|async|thread)\b(?!::(?:id|hardware_concurrency)\b)'
                     r'|\bQThread\b(?!::(?:currentThread|currentThreadId|isMainThread|idealThreadCount)\b|\s*\*)'
                     r'|\bQThreadPool\b|\bQRunnable\b|\bQtConcurrent\b|\bpthread_create\b')
_FORWARD = re.compile(r'\bclass\s+\w+\s*;')


def check(text):
    """The (line, name) of each place in `text` that makes a thread."""
    code = _FORWARD.sub(' ', code_only(text))
    return [(code.count('\n', 0, match.start()) + 1, match.group()) for match in _THREAD.finditer(code)]


if __name__ == '__main__':
    report('threads', [
        f'{path}:{line}: {name}: only SerialExecutor and src/Platform make threads'
        for path in sys.argv[1:] or files('src/*.h', 'src/*.cpp') if not path.startswith(ALLOWED)
        for line, name in check(read(path))])
