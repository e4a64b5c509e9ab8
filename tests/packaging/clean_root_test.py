#!/usr/bin/env python3
"""Installs the package into a root folder of its own, runs it from there and purges it. dpkg keeps its books beside that
folder and asks nothing of this machine: no network, no root, and no other package, since the programs find their libraries
here.

    clean_root_test.py PACKAGE
"""

import hashlib
import os
import stat
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from installed_test import ENGINE, FILES, run

# Where a package or a program might leave something on this machine. Programs of other people work in /tmp and /var/tmp.
SYSTEM = tuple(Path(folder) for folder in ('/etc', '/opt', '/srv', '/usr', '/var'))
NOT_WATCHED = ('/var/tmp',)
NAMES = ('zelk', 'orrim')
# What other packages have in the folders that it shares with them.
NEIGHBOURS = ('usr/bin/neighbour', 'usr/lib/neighbour/part', 'usr/share/applications/neighbour.desktop',
              'usr/share/doc/neighbour/copyright', 'usr/share/icons/hicolor/16x16/apps/neighbour.png',
              'usr/share/man/man1/neighbour.1.gz')


def told(path, times=False):
    """All that there is to know of a file, but for when it was read."""
    facts = path.lstat()
    what = [stat.filemode(facts.st_mode), facts.st_uid, facts.st_gid]
    if stat.S_ISLNK(facts.st_mode):
        what.append(os.readlink(path))
    elif stat.S_ISREG(facts.st_mode):
        what.append(hashlib.sha256(path.read_bytes()).hexdigest())
    return (*what, facts.st_mtime_ns if times else None)


def listing(folder, times=False):
    """What is below a folder. With times a file that came and went is seen as well, by its folder's time."""
    return {str(path.relative_to(folder)): told(path, times) for path in (folder, *folder.rglob('*'))}


def named_after_it():
    """What there is on this machine with a name of ours."""
    found = set()
    for top in SYSTEM:
        for folder, folders, files in os.walk(top):
            found.update(os.path.join(folder, name) for name in folders + files if any(ours in name.lower() for ours in NAMES))
            folders[:] = (name for name in folders if os.path.join(folder, name) not in NOT_WATCHED)
    return found


class Root:
    """A root folder that has nothing, and the books that dpkg keeps of it."""

    def __init__(self, scratch):
        self.folder = scratch / 'root'
        self._scratch = scratch
        for folder in self.folder, *(scratch / 'dpkg' / part for part in ('info', 'updates', 'triggers')):
            folder.mkdir(parents=True)
        (scratch / 'dpkg/status').touch()
        (scratch / 'dpkg/available').touch()

    def dpkg(self, *arguments):
        """Without --force-script-chrootless a script of the package's would have to run in the root, and fail."""
        return run(['dpkg', f'--admindir={self._scratch / "dpkg"}', f'--instdir={self.folder}', f'--log={self._scratch / "log"}',
                    '--force-depends', '--force-not-root', '--force-unsafe-io', '--path-include=*', *arguments],
                   env={'PATH': '/usr/sbin:/usr/bin:/sbin:/bin', 'HOME': str(self._scratch), 'LC_ALL': 'C.UTF-8'})

    def known(self):
        """The packages that dpkg still knows of, be it by their settings only."""
        return [line.partition(': ')[2] for line in (self._scratch / 'dpkg/status').read_text().splitlines()
                if line.startswith('Package: ')]


class CleanRoot(unittest.TestCase):
    package = None
    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix='zelk-clean.')
        self.addCleanup(folder.cleanup)
        self.scratch = Path(folder.name)
        self.root = Root(self.scratch)

    def runEverythingFromThere(self):
        """All that an installation is tried by, in a working folder of its own."""
        here, passing = self.scratch / 'here', self.scratch / 'passing'
        here.mkdir()
        passing.mkdir()
        said = run([sys.executable, '-B', Path(__file__).with_name('installed_test.py'), '--root', self.root.folder],
                   cwd=here, env={**os.environ, 'TMPDIR': str(passing)})
        self.assertRegex(said, r'\nRan [1-9]\d+ tests')
        self.assertEqual((list(here.iterdir()), list(passing.iterdir())), ([], []))

    def test_isInstalledRunAndPurgedWithoutATrace(self):
        before = listing(self.root.folder)
        named_before = named_after_it()
        self.root.dpkg('--install', self.package)
        self.assertLessEqual(FILES, set(listing(self.root.folder)))
        installed = listing(self.root.folder, times=True)

        self.runEverythingFromThere()
        self.assertEqual(listing(self.root.folder, times=True), installed, 'running it has changed what is installed')

        self.root.dpkg('--purge', 'zelk')
        self.assertEqual(listing(self.root.folder), before)
        self.assertEqual(self.root.known(), [])
        self.assertEqual(named_after_it() - named_before, set())

    def test_leavesWhatOtherPackagesHaveBesideIt(self):
        for path in NEIGHBOURS:
            file = self.root.folder / path
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text(path)
        before = listing(self.root.folder)
        self.root.dpkg('--install', self.package)
        self.root.dpkg('--purge', 'zelk')
        self.assertEqual(listing(self.root.folder), before)

    def test_whatAProgramLeavesInTheBundleIsSeen(self):
        before = listing(self.root.folder)
        self.root.dpkg('--install', self.package)
        installed = listing(self.root.folder, times=True)
        stray = (self.root.folder / ENGINE).with_name('left.behind')
        stray.touch()
        self.assertNotEqual(listing(self.root.folder, times=True), installed)
        self.root.dpkg('--purge', 'zelk')
        after = listing(self.root.folder)
        self.assertIn(str(stray.relative_to(self.root.folder)), after)
        self.assertNotEqual(after, before)

    def test_whatComesAndGoesInTheBundleIsSeen(self):
        self.root.dpkg('--install', self.package)
        installed = listing(self.root.folder, times=True)
        stray = (self.root.folder / ENGINE).with_name('came.and.went')
        stray.touch()
        stray.unlink()
        self.assertNotEqual(listing(self.root.folder, times=True), installed)

    def test_hasNoScriptThatRunsAsRoot(self):
        members = subprocess.run(['dpkg-deb', '--ctrl-tarfile', self.package], check=True, stdout=subprocess.PIPE).stdout
        names = subprocess.run(['tar', '--list'], input=members, check=True, stdout=subprocess.PIPE).stdout.decode().split()
        self.assertEqual(sorted(names), ['./control', './md5sums'])


if __name__ == '__main__':
    if len(sys.argv) != 2:
        sys.exit('usage: clean_root_test.py PACKAGE')
    CleanRoot.package = Path(sys.argv[1]).resolve()
    unittest.main(argv=sys.argv[:1])
