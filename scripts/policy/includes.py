#!/usr/bin/env python3
"""Refuses an include that goes against the order of the libraries, or that brings the platform where it does not belong.

The linker sees a call into a library that a target does not link, but not a header whose code is all inline; and a folder
may hold files of two libraries. Which file belongs to which library is read from the CMake files.
"""

import posixpath
import re
import sys

sys.path.insert(0, __file__.rpartition('/')[0])
from source import files, read, report  # noqa: E402

# Each may include its own headers and those of the libraries before it.
ORDER = ['support', 'wire', 'platform', 'transport', 'state', 'services', 'appmodel', 'ui', 'application']
# What only tests link: sees all up to this library, and no library sees it.
STAND_INS = {'testing': 'support', 'simulated': 'state'}
ENGINE_SEES = ['support', 'wire', 'platform']
# For files that no CMake list names, such as lone headers and the sources of a QML module.
FOLDERS = {'Support': 'support', 'Platform': 'platform', 'Transport': 'wire', 'State': 'state', 'Services': 'services',
           'Models': 'services', 'App': 'appmodel', 'Views': 'ui', 'Styling': 'ui'}

_LIBRARY = re.compile(r'zelk_library\(\s*(\w+)\s+(?:STATIC\s+)?SOURCES\b(.*?)(?:\bLINKS\b|\))', re.DOTALL)
_INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*([<"])([^>"]+)[>"]', re.MULTILINE)
_POSIX = re.compile(r'(?:sys|linux|netinet|arpa|net|systemd|X11|bits)/.*'
                    r'|(?:unistd|fcntl|poll|spawn|signal|pthread|dirent|pwd|grp|dlfcn|termios|sched|syslog|time)\.h')
_DBUS = re.compile(r'(?:QtDBus/)?QDBus\w*|QtDBus|dbus/.*')
# The engine is a command-line program that writes files with care; D-Bus is not its business either.
ENGINE_MAY = {'unistd.h', 'fcntl.h', 'signal.h', 'poll.h', 'termios.h', 'dirent.h', 'sys/stat.h', 'sys/types.h',
              'sys/statvfs.h', 'sys/ioctl.h', 'sys/prctl.h'}


def libraries(cmake_files):
    """From the texts of src's CMake files by path: the library of each file that they name, by its path below src/."""
    owners = {}
    for path, text in cmake_files.items():
        folder = path.rpartition('/')[0].partition('src/')[2]
        text = re.sub(r'#.*', '', text)
        for library, sources in _LIBRARY.findall(text):
            for source in sources.split():
                source = source.replace('${CMAKE_CURRENT_SOURCE_DIR}/', '')
                owners[posixpath.normpath(f'{folder}/{source}').removeprefix('./')] = library
    return owners


def owner(path, owners):
    """The library of a file below src/: as listed, else as its namesake's, else as its folder's.

    The application is no library but the program over all of them.
    """
    if path in owners:
        return owners[path]
    stem = path.rpartition('.')[0]
    for listed, library in owners.items():
        if listed.rpartition('.')[0] == stem:
            return library
    if re.fullmatch(r'App/(?:main\w*|ZELKApp|UnattendedRun)\.(?:h|cpp)', path):
        return 'application'
    return FOLDERS.get(path.partition('/')[0])


def check(path, text, owners, below_src):
    """What `text`, the file at `path`, may not include. `below_src` says whether a path below src/ is a file."""
    found = []
    in_engine = path.startswith('engine/')
    own = None if in_engine else owner(path.removeprefix('src/'), owners)
    if not in_engine and own is None:
        return [f'{path}:1: belongs to no library']
    for match in _INCLUDE.finditer(text):
        where = f'{path}:{text.count(chr(10), 0, match.start()) + 1}'
        header = match.group(2)
        if match.group(1) == '<' or not below_src(header):
            platform = _DBUS.fullmatch(header) or (_POSIX.fullmatch(header) and not (in_engine and header in ENGINE_MAY))
            if platform and own != 'platform':
                found.append(f'{where}: {header}: only src/Platform speaks to the platform')
            continue
        other = owner(header, owners)
        if in_engine:
            allowed = other in ENGINE_SEES
        elif own in STAND_INS:
            allowed = other == own or other in ORDER[:ORDER.index(STAND_INS[own]) + 1]
        else:
            allowed = other in ORDER and ORDER.index(other) <= ORDER.index(own)
        if not allowed:
            found.append(f'{where}: {header}: {"the engine" if in_engine else own} may not see {other}')
    return found


if __name__ == '__main__':
    known = libraries({path: read(path) for path in files('src/CMakeLists.txt', 'src/**/CMakeLists.txt')})
    present = {path.removeprefix('src/') for path in files('src/*.h')}
    unknown = sorted(set(known.values()) - set(ORDER) - set(STAND_INS))
    findings = [f'src: the library {library} has no place in the order of scripts/policy/includes.py' for library in unknown]
    for checked in sys.argv[1:] or files('src/*.h', 'src/*.cpp', 'engine/*.h', 'engine/*.cpp'):
        findings += check(checked, read(checked), known, present.__contains__)
    report('includes', findings)
