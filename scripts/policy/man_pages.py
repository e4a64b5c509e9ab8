#!/usr/bin/env python3
"""Refuses a verb, an option or a variable of the environment that the man pages don't tell."""

import re
import sys

sys.path.insert(0, __file__.rpartition('/')[0])
from source import files, read, report  # noqa: E402

COMMAND_PAGE = 'packaging/man/zelk.1'
WINDOW_PAGE = 'packaging/man/zelk-window.7'

_STRING = r'u?"((?:[^"\\]|\\.)*)"'
# A word behind "zelk" in the list of uses, or before its explanation.
_VERB = re.compile(r'^ {2}([a-z]+) {2}', re.MULTILINE)
_OPTION = re.compile(r'(?<![\w-])(--[a-z][a-z-]*)')
# What the command line is compared with, told in the help or not.
_UNDERSTOOD = re.compile(r'"(--?[a-z][a-z-]*)"_L1|\{"([a-z]+)"_L1, Verb::')
_WINDOW_OPTION = re.compile(r'QCommandLineOption\s+\w+\s*[({]\s*' + _STRING)
# What Qt adds by itself.
_GIVEN = {'addHelpOption': {'-h', '--help', '--help-all'}, 'addVersionOption': {'-v', '--version'}}
_READ = re.compile(r'(?:getenv|qEnvironmentVariable\w*|[eE]nvironment(?:\(\))?\.(?:value|contains)|baseFolder|listOf)\s*\(\s*'
                   r'(?:QStringLiteral\s*\(\s*)?' + _STRING)
# Whoever reads it, and however, such a name is one of ours.
_OURS = re.compile(r'"(ZELK_[A-Z_]+)"')
# What is said to the programmer and not by the user: macros of the build, and what a test of the machine sets.
_BUILD = re.compile(r'^ZELK_(?:VERSION|WEBSITE|SERVICE_HOST|APPLICATION_ID)$')


def plain(page):
    """The text of a man page without its markup."""
    without = re.sub(r'\\f.|\\[|&]', '', page.replace(r'\-', '-'))
    return re.sub(r'^\.\w+ ?', '', without, flags=re.MULTILINE).replace('"', '')


def strings(code):
    """What the string literals of `code` say, one after the other."""
    return ''.join(text.replace(r'\n', '\n').replace(r'\"', '"') for text in re.findall(_STRING, code))


def has(text, word):
    return re.search(rf'(?<![\w-]){re.escape(word)}(?![\w-])', text) is not None


def told_at_the_terminal(help_texts):
    """Verbs and options of the help."""
    said = strings(help_texts)
    return set(_VERB.findall(said)) | set(_OPTION.findall(said))


def understood(command_line):
    """Verbs and options that the command line knows."""
    return {option or verb for option, verb in _UNDERSTOOD.findall(command_line)}


def window_options(main):
    given = (options for call, options in _GIVEN.items() if f'{call}(' in main)
    return {f'--{name}' for name in _WINDOW_OPTION.findall(main)}.union(*given)


def options_in(text):
    """The long options that a help or the text of a page names."""
    return set(_OPTION.findall(text))


def verbs_in(printed_help):
    return set(_VERB.findall(printed_help))


def variables(code):
    return {name for name in _READ.findall(code) + _OURS.findall(code) if not _BUILD.match(name)}


def check(page, words):
    """The words that the text of the page at `page` lacks."""
    text = plain(page)
    return sorted(word for word in words if not has(text, word))


def sources(folder):
    return '\n'.join(read(path) for path in files(f'{folder}/*.cpp', f'{folder}/*.h'))


if __name__ == '__main__':
    asked = {
        COMMAND_PAGE: told_at_the_terminal(read('engine/Terminal/HelpTexts.cpp'))
        | understood(read('engine/Serve/CommandLine.cpp')) | variables(sources('engine')),
        WINDOW_PAGE: window_options(read('src/App/main.cpp')) | variables(sources('src')),
    }
    report('man_pages', [f'{page}: doesn\'t tell of {word}' for page, words in asked.items()
                         for word in check(read(page), words)])
