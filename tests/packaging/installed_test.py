#!/usr/bin/env python3
"""What an installed tree holds, and that it works from where it stands.

    installed_test.py --build BUILD    of what `cmake --install` makes of a build folder
    installed_test.py --root ROOT      of an unpacked package
"""

import argparse
import os
import re
import struct
import subprocess
import sys
import tempfile
import unittest
import wave
import xml.etree.ElementTree as ElementTree
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCE / 'scripts/policy'))
import man_pages  # noqa: E402

VERSION = re.search(r'^project\(zelk VERSION ([\d.]+)', (SOURCE / 'CMakeLists.txt').read_text(), re.MULTILINE).group(1)
ID = 'org.orrim.zelk'
APPLICATION = 'usr/lib/zelk/zelk.app/Contents/Linux/zelk'
ENGINE = 'usr/lib/zelk/zelk.app/Contents/Helpers/zelk'
SIZES = (16, 22, 24, 32, 48, 64, 128, 256, 512)
FILES = {
    APPLICATION,
    ENGINE,
    'usr/lib/zelk/zelk.app/Contents/Info.json',
    'usr/bin/zelk',
    f'usr/share/applications/{ID}.desktop',
    f'usr/share/metainfo/{ID}.metainfo.xml',
    f'usr/share/icons/hicolor/scalable/apps/{ID}.svg',
    f'usr/share/icons/hicolor/symbolic/apps/{ID}-symbolic.svg',
    *(f'usr/share/icons/hicolor/{size}x{size}/apps/{ID}.png' for size in SIZES),
    'usr/share/man/man1/zelk.1.gz',
    'usr/share/man/man7/zelk-window.7.gz',
    'usr/share/doc/zelk/changelog.Debian.gz',
    'usr/share/doc/zelk/copyright',
    'usr/share/lintian/overrides/zelk',
}
LIST = 'Title,Artist,Album,Duration\nNight Ferry,Ada Morena,Harbour,6:12\nCopper Sky,Mira Halden,Rooms,4:51\n'


def run(command, **options):
    """The output of `command`, both channels. It must succeed within two minutes, or `status` is what it must end with."""
    status = options.pop('status', 0)
    ended = subprocess.run([str(part) for part in command], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                           stderr=subprocess.STDOUT, text=True, encoding='utf-8', timeout=120, **options)
    if ended.returncode != status:
        raise AssertionError(f'{command} ended with {ended.returncode}:\n{ended.stdout}')
    return ended.stdout


def unpacked(path):
    return subprocess.run(['gzip', '-dc', path], check=True, capture_output=True).stdout.decode()


class Installed(unittest.TestCase):
    root = None
    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix='zelk-installed.')
        self.addCleanup(folder.cleanup)
        self.home = Path(folder.name)

    def file(self, path):
        return self.root / path

    def environment(self, **more):
        """That of somebody with a home of their own, no display and no bus."""
        kept = {name: os.environ[name] for name in ('PATH', 'LC_ALL', 'LANG') if name in os.environ}
        for folder in 'run', 'passing':
            (self.home / folder).mkdir(mode=0o700, exist_ok=True)
        return {**kept, 'HOME': str(self.home), 'XDG_RUNTIME_DIR': str(self.home / 'run'), 'TMPDIR': str(self.home / 'passing'),
                'QT_QPA_PLATFORM': 'offscreen', 'QT_QUICK_BACKEND': 'software', **more}

    def addList(self):
        folder = self.home / 'Music/zelk/Playlists'
        folder.mkdir(parents=True)
        (self.home / 'Music/zelk/Collection').mkdir()
        (folder / 'Tiny.csv').write_text(LIST)

    def entry(self):
        lines = self.file(f'usr/share/applications/{ID}.desktop').read_text().splitlines()
        return dict(line.split('=', 1) for line in lines if '=' in line)

    def test_everyFileIsAtItsPlaceAndNoOther(self):
        found = {str(path.relative_to(self.root)) for path in self.root.rglob('*') if path.is_symlink() or not path.is_dir()}
        self.assertEqual(sorted(found), sorted(FILES))

    def test_theCommandIsALinkToTheEngineOfTheBundle(self):
        command = self.file('usr/bin/zelk')
        self.assertEqual(os.readlink(command), '../lib/zelk/zelk.app/Contents/Helpers/zelk')
        self.assertEqual(command.resolve(), self.file(ENGINE).resolve())
        self.assertEqual(run([command, '--version']), f'zelk {VERSION}\n')

    def test_theCommandWorksOnTheHomeOfItsUser(self):
        self.addList()
        self.assertRegex(run([self.file('usr/bin/zelk'), 'list'], env=self.environment()), r'\b0 +2 .* Tiny\n')

    def test_theWindowFindsTheEngineOfItsBundle(self):
        self.addList()
        said = run([self.file(APPLICATION), '--unattended'], env=self.environment())
        self.assertIn('Playlist: Tiny (2)', said)
        self.assertIn('Summary: 0 done', said)

    def test_theWindowIsNeverItsOwnEngine(self):
        self.addList()
        said = run([self.file(APPLICATION), '--unattended'], env=self.environment(ZELK_HELPER_PATH=str(self.file(APPLICATION))))
        self.assertIn('Summary: 0 done', said)

    def test_withoutItsEngineTheWindowDoesNotTakeTheCommandOnThePathForIt(self):
        bundle = self.home / 'alone.app/Contents/Linux'
        bundle.mkdir(parents=True)
        (bundle / 'zelk').write_bytes(self.file(APPLICATION).read_bytes())
        (bundle / 'zelk').chmod(0o755)
        path = f'{self.file("usr/bin")}:{os.environ["PATH"]}'
        said = run([bundle / 'zelk', '--unattended'], env=self.environment(PATH=path), status=1)
        self.assertIn('The zelk helper could not be found in the app bundle.', said)
        self.assertNotIn('Summary', said)

    def test_itWritesOnlyWhereItsUserHasFoldersForIt(self):
        self.addList()
        with wave.open(str(self.home / 'Music/zelk/Collection/Mira Halden - Copper Sky.wav'), 'wb') as file:
            file.setparams((1, 2, 8000, 0, 'NONE', None))
            file.writeframes(bytes(2 * 8000 * 291))
        kinds = 'config', 'data', 'cache', 'state'
        for folder in *kinds, 'here':
            (self.home / folder).mkdir()
        bases = {f'XDG_{kind.upper()}_HOME': str(self.home / kind) for kind in kinds}
        surroundings = {'env': self.environment(**bases), 'cwd': self.home / 'here'}
        self.assertIn('Summary: 1 done', run([self.file('usr/bin/zelk'), 'sync'], status=1, **surroundings))
        self.assertIn('Summary: 0 done, 1 on disk', run([self.file(APPLICATION), '--unattended'], **surroundings))

        def names(folder):
            return sorted(path.name for path in (self.home / folder).iterdir())
        self.assertEqual(names('.'), sorted(['Music', 'run', 'passing', 'here', *kinds]))
        self.assertEqual(names('Music'), ['DjayImport', 'zelk'])
        self.assertEqual(names('config'), ['orrim', 'zelk'])
        self.assertEqual(names('data'), ['zelk'])
        self.assertLessEqual({'orrim', 'orrim.zelk'}, set(names('cache')))  # and what the typefaces' library keeps
        for unused in 'state', 'run', 'passing', 'here':
            self.assertEqual(names(unused), [], unused)

    def test_theCommandMayBeGivenAsTheEngine(self):
        self.addList()
        said = run([self.file(APPLICATION), '--unattended'], env=self.environment(ZELK_HELPER_PATH=str(self.file('usr/bin/zelk'))))
        self.assertIn('Summary: 0 done', said)

    def test_theDesktopEntryIsValid(self):
        self.assertEqual(run(['desktop-file-validate', self.file(f'usr/share/applications/{ID}.desktop')]), '')

    def test_theDesktopEntryStartsTheWindow(self):
        entry = self.entry()
        self.assertEqual(entry['Exec'], f'/{APPLICATION}')
        self.assertEqual(entry['TryExec'], f'/{APPLICATION}')
        self.assertEqual(run([self.file(APPLICATION), '--version'], env=self.environment()), f'zelk {VERSION}\n')

    def test_theWindowHasTheNameOfTheDesktopEntry(self):
        """Or a desktop would show it without its icon and beside its launcher."""
        self.assertIn(ID.encode('utf-16-le'), self.file(APPLICATION).read_bytes())
        self.assertEqual(self.entry()['Icon'], ID)
        # What Qt calls the class of a window on X11.
        self.assertEqual(self.entry()['StartupWMClass'], Path(APPLICATION).name)

    def test_theDescriptionIsValid(self):
        run(['appstreamcli', 'validate', '--no-net', '--pedantic', '--no-color',
             self.file(f'usr/share/metainfo/{ID}.metainfo.xml')])

    def test_theDescriptionIsOfThisEntryAndVersion(self):
        component = ElementTree.parse(self.file(f'usr/share/metainfo/{ID}.metainfo.xml')).getroot()
        self.assertEqual(component.findtext('id'), ID)
        self.assertEqual(component.findtext('launchable'), f'{ID}.desktop')
        self.assertEqual(component.findtext('provides/binary'), 'zelk')
        self.assertEqual(component.find('releases/release').get('version'), VERSION)

    def test_whatADesktopShowsIsInGermanToo(self):
        entry = self.entry()
        for key in 'GenericName', 'Comment', 'Keywords':
            with self.subTest(key):
                self.assertNotIn(entry[f'{key}[de]'], ('', entry[key]))
        component = ElementTree.parse(self.file(f'usr/share/metainfo/{ID}.metainfo.xml')).getroot()
        language = '{http://www.w3.org/XML/1998/namespace}lang'
        for parent in component.iter():
            for tag in 'name', 'summary', 'developer_name', 'p', 'li', 'caption':
                texts = [(each.get(language), each.text) for each in parent.findall(tag)]
                english = [text for told, text in texts if not told]
                german = [text for told, text in texts if told == 'de']
                with self.subTest(english):
                    self.assertEqual(len(german), len(english))
                    self.assertTrue(tag == 'name' or not set(english) & set(german))

    def test_theScreenshotsAreThoseOfTheDocuments(self):
        component = ElementTree.parse(self.file(f'usr/share/metainfo/{ID}.metainfo.xml')).getroot()
        for image in component.iterfind('screenshots/screenshot/image'):
            with self.subTest(image.text):
                picture = SOURCE / 'docs/screenshots' / image.text.rpartition('/')[2]
                told = int(image.get('width')), int(image.get('height'))
                self.assertEqual(struct.unpack('>II', picture.read_bytes()[16:24]), told)

    def test_eachIconIsOfTheSizeOfItsFolder(self):
        for size in SIZES:
            with self.subTest(size):
                picture = self.file(f'usr/share/icons/hicolor/{size}x{size}/apps/{ID}.png').read_bytes()
                self.assertEqual(picture[:8], b'\x89PNG\r\n\x1a\n')
                self.assertEqual(struct.unpack('>II', picture[16:24]), (size, size))

    def test_theManPagesAreReadWithoutAWarning(self):
        for page in 'man1/zelk.1', 'man7/zelk-window.7':
            with self.subTest(page):
                quiet = {**self.environment(LC_ALL='C.UTF-8', MANWIDTH='80', MANROFFSEQ='')}
                warnings = subprocess.run(
                    ['man', '--warnings', '-E', 'UTF-8', '-l', '-Tutf8', '-Z', self.file(f'usr/share/man/{page}.gz')],
                    env=quiet, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
                self.assertEqual((warnings.returncode, warnings.stderr), (0, ''))

    def test_theManPagesNameThePlacesOfThisInstallation(self):
        text = unpacked(self.file('usr/share/man/man7/zelk-window.7.gz'))
        for path in APPLICATION, ENGINE, 'usr/bin/zelk':
            self.assertIn(f'/{path}\n', text.replace(' ', '\n'))

    def page(self, name):
        return man_pages.plain(unpacked(self.file(f'usr/share/man/{name}.gz')))

    def test_thePageOfTheWindowTellsItsOptionsAndNoOther(self):
        own, every = (man_pages.options_in(run([self.file(APPLICATION), asked], env=self.environment()))
                      for asked in ('--help', '--help-all'))
        self.assertLess(own, every)
        told = man_pages.options_in(self.page('man7/zelk-window.7'))
        self.assertEqual((own - told, told - every), (set(), set()))

    def test_thePageOfTheCommandTellsItsVerbsAndOptionsAndNoOther(self):
        command = self.file('usr/bin/zelk')
        helps = [run([command, '--help'])]
        verbs = man_pages.verbs_in(helps[0])
        self.assertIn('sync', verbs)
        helps += (run([command, verb, '--help']) for verb in sorted(verbs))
        text = self.page('man1/zelk.1')
        self.assertEqual(man_pages.options_in(text), man_pages.options_in(''.join(helps)))
        synopsis = text.partition('SYNOPSIS')[2].partition('DESCRIPTION')[0]
        self.assertEqual(set(re.findall(r'zelk\n([a-z]+)$', synopsis, re.MULTILINE)), verbs)

    def test_theChangelogIsOfThisVersion(self):
        self.assertTrue(unpacked(self.file('usr/share/doc/zelk/changelog.Debian.gz')).startswith(f'zelk ({VERSION}-1) '))

    def test_noFileNamesTheFolderThatItWasBuiltIn(self):
        """Nor a place that was to be written into it."""
        for path in FILES:
            if path in (APPLICATION, ENGINE, 'usr/bin/zelk') or path.endswith('.png'):
                continue
            file = self.file(path)
            text = unpacked(file) if path.endswith('.gz') else file.read_text()
            for place in str(self.root), str(SOURCE), '@application@', '@ZELK_', '@PROJECT_':
                self.assertFalse(place in text, f'{path} has {place}')

    def test_noProgramLooksForLibrariesInTheFolderThatItWasBuiltIn(self):
        for program in APPLICATION, ENGINE:
            self.assertNotRegex(run(['readelf', '--dynamic', self.file(program)]), 'R(UN)?PATH')


def main():
    parser = argparse.ArgumentParser()
    given = parser.add_mutually_exclusive_group(required=True)
    given.add_argument('--build', type=Path)
    given.add_argument('--root', type=Path)
    arguments, rest = parser.parse_known_args()
    with tempfile.TemporaryDirectory(prefix='zelk-root.') as scratch:
        Installed.root = (arguments.root or Path(scratch)).resolve()
        if arguments.build:
            run(['cmake', '--install', arguments.build, '--prefix', '/usr'], env={**os.environ, 'DESTDIR': scratch})
        unittest.main(argv=[sys.argv[0], *rest])


if __name__ == '__main__':
    main()
