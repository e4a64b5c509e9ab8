#!/usr/bin/env python3
"""Refuses `{` and `[` in a statement that awaits.

g++ 12 destroys some temporaries of a co_await expression twice: `co_await send(A{.x = 1})`, `co_await f([captured] {…})`
and `A{.n = co_await g()}` compile without a word and corrupt the heap. What is awaited is therefore built in a statement
before it. A lambda's body is made of statements of its own, and so is a block that follows an awaiting condition.
"""

import re
import sys

sys.path.insert(0, __file__.rpartition('/')[0])
from source import code_only, files, read, report  # noqa: E402

_TOKEN = re.compile(r'[A-Za-z_]\w*|->|::|""|[^\s\w]|\d[\w.\']*')
_CLOSING = {'(': ')', '[': ']', '{': '}'}
_CONDITIONS = {'if', 'while', 'for', 'switch', 'catch'}
_DECLARATIONS = {'class', 'struct', 'union', 'enum', 'namespace', 'extern'}
_BEFORE_A_BLOCK = {'else', 'do', 'try', 'const', 'noexcept', 'override', 'final', 'mutable', 'requires'}


class _Statement:
    def __init__(self):
        self.tokens = []  # all of it but the bodies of its lambdas
        self.awaits = None  # the line of the first co_await
        self.offence = None  # the first `{` or `[`


class _Scanner:
    def __init__(self, text):
        code = re.sub(r'\[\[[^\]]*\]\]', ' ', code_only(text))  # an attribute is no subscript
        self.tokens, line, last = [], 1, 0
        for match in _TOKEN.finditer(code):
            line += code.count('\n', last, match.start())
            last = match.start()
            self.tokens.append((match.group(), line))
        self.at = 0
        self.found = []

    def block(self):
        """Statements up to the block's closing brace, or to the end of the file."""
        while self.at < len(self.tokens):
            token = self.tokens[self.at][0]
            if token == '}':
                self.at += 1
                return
            self.statement()

    def statement(self):
        statement = _Statement()
        while self.at < len(self.tokens):
            token, _ = self.tokens[self.at]
            if token == '}':
                break  # the end of the block that holds it
            if token == ';':
                self.at += 1
                break
            if token == '{' and self.opens_block(statement.tokens):
                is_lambda = self.in_lambda(statement.tokens)
                self.at += 1
                self.block()
                if is_lambda:
                    continue  # the expression goes on behind the lambda
                break
            condition = len(statement.tokens) == 0 and token in _CONDITIONS
            self.take(statement)
            if condition:
                if self.at < len(self.tokens) and self.tokens[self.at][0] == 'constexpr':
                    self.take(statement)
                if self.at < len(self.tokens) and self.tokens[self.at][0] == '(':
                    self.take(statement)
                break  # what follows the condition is a statement of its own
            if len(statement.tokens) == 1 and token in ('else', 'do', 'try'):
                break
        if statement.awaits and statement.offence:
            self.found.append((statement.awaits, statement.offence))

    def take(self, statement):
        """One token, and if it opens a bracket all up to the closing one."""
        token, line = self.tokens[self.at]
        self.at += 1
        if token == 'co_await' and not statement.awaits:
            statement.awaits = line
        if token in '{[' and not statement.offence:
            statement.offence = token
        statement.tokens.append(token)
        if token not in _CLOSING:
            return
        inner = len(statement.tokens)
        while self.at < len(self.tokens) and self.tokens[self.at][0] != _CLOSING[token]:
            before = statement.tokens[inner:]
            if self.tokens[self.at][0] == '{' and before and self.opens_block(before):
                self.at += 1
                self.block()
                statement.tokens.append('{}')
            else:
                self.take(statement)
        if self.at < len(self.tokens):
            statement.tokens.append(self.tokens[self.at][0])
            self.at += 1

    @staticmethod
    def opens_block(before):
        """Whether a `{` behind these tokens of its statement opens a block, and not a brace-built value."""
        while len(before) > 1 and before[-1] == '&' and before[-2] in (')', 'const', '&'):
            before = before[:-1]  # the reference qualifier of a member function
        if not before:
            return True
        if before[0] in _DECLARATIONS or before[-1] in _BEFORE_A_BLOCK or before[-1] in ');':
            return True
        if before[0] in ('case', 'default', 'public', 'private', 'protected') and before[-1] == ':':
            return True
        if before[0] in ('template', 'inline', 'typedef', 'static', 'constexpr') and _DECLARATIONS & set(before):
            return '=' not in before and '(' not in before
        if before[-1] == ']':
            return _Scanner.ends_in_capture(before)
        return _Scanner.ends_in_return_type(before)

    @staticmethod
    def ends_in_capture(before):
        depth = 0
        for index in range(len(before) - 1, -1, -1):
            depth += {']': 1, '[': -1}.get(before[index], 0)
            if depth == 0:
                previous = before[index - 1] if index else ''
                return previous in ('return', 'co_return', 'co_await', 'co_yield') or not re.match(r'[\w)\]]', previous)
        return False

    @staticmethod
    def ends_in_return_type(before):
        for index in range(len(before) - 1, 0, -1):
            if before[index] == '->':
                return before[index - 1] in (')', ']', 'mutable', 'noexcept', 'const')
            if not re.fullmatch(r'\w+|::|[<>,*&]', before[index]):
                return False
        return False

    @staticmethod
    def in_lambda(before):
        """Whether the block about to open is the body of a lambda at the end of these tokens."""
        depth = 0
        for index in range(len(before) - 1, -1, -1):
            depth += {']': 1, ')': 1, '[': -1, '(': -1}.get(before[index], 0)
            if before[index] == '[' and depth == 0:
                previous = before[index - 1] if index else ''
                return previous != '[' and not re.match(r'[\w)\]]', previous) or previous in ('return', 'co_return')
            if depth < 0 or (depth == 0 and before[index] == '='):
                return False
        return False


def check(text):
    """The (line, character) of each statement of `text` that awaits and holds a `{` or `[`."""
    scanner = _Scanner(text)
    while scanner.at < len(scanner.tokens):  # a stray closing brace ends a block early, and the rest is read all the same
        scanner.block()
    return sorted(scanner.found)


if __name__ == '__main__':
    paths = sys.argv[1:] or files('src/*.h', 'src/*.cpp', 'engine/*.h', 'engine/*.cpp', 'tests/*.h', 'tests/*.cpp')
    report('await_statements', [
        f'{path}:{line}: "{character}" in a statement with co_await; build what it awaits in a statement before it'
        for path in paths for line, character in check(read(path))])
