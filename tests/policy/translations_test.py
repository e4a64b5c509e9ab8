"""What the policy of translations refuses and lets through."""

import tempfile
import unittest
from xml.sax.saxutils import escape

from policy_test import policy

translations = policy('translations')


def file_with(source, *forms, kind=''):
    kind = f' type="{kind}"' if kind else ''
    inner = escape(forms[0]) if len(forms) == 1 else ''.join(f'<numerusform>{escape(f)}</numerusform>' for f in forms)
    numerus = ' numerus="yes"' if len(forms) > 1 else ''
    return (f'<TS version="2.1" language="de"><context><name>View</name><message{numerus}><source>{escape(source)}</source>'
            f'<translation{kind}>{inner}</translation></message></context></TS>')


class Translations(unittest.TestCase):
    def test_whatIsMissingOrLeftOverIsRefused(self):
        for kind in ['unfinished', 'vanished', 'obsolete']:
            with self.subTest(kind):
                self.assertEqual(len(translations.check(file_with('Sync', 'Sync', kind=kind))), 1)
        self.assertEqual(len(translations.check(file_with('Sync', ''))), 1)
        self.assertEqual(len(translations.check(file_with('%n file(s)', '%n Datei', ''))), 1)

    def test_whatLosesAPlaceOrAKeyIsRefused(self):
        for source, form in [('%1 of %2', '%1 von'), ('%1 done', 'fertig'), ('Done', '%1 fertig'), ('%1 of %2', '%1 von %1'),
                             ('Stored. ', 'Gespeichert.'), (' link', 'Link'), (', and more', 'und mehr'), ('Change…', 'Ändern'),
                             ('Change', 'Ändern …'), ('&File', 'Datei'), ('File', '&Datei'), ('Ctrl+R', 'Strg+R')]:
            with self.subTest(source):
                self.assertEqual(len(translations.check(file_with(source, form))), 1)
        self.assertEqual(len(translations.check(file_with('%n file(s)', 'eine Datei', '%n Dateien'))), 1)

    def test_aWholeTranslationIsLetThrough(self):
        for source, forms in [('Sync', ['Sync']), ('%1 of %2', ['%2 in %1']), ('Stored. ', ['Gespeichert. ']),
                              (' link', [', der Link']), ('Change…', ['Ändern …']), ('&File', ['&Datei']), ('Ctrl+,', ['Ctrl+,']),
                              ('Quality & downloads', ['Qualität & Downloads']), ('%n file(s)', ['%n Datei', '%n Dateien'])]:
            with self.subTest(source):
                self.assertEqual(translations.check(file_with(source, *forms)), [])

    @unittest.skipUnless(translations.LUPDATE, 'lupdate is not installed')
    def test_aTextThatTheFileLacksIsFound(self):
        with tempfile.TemporaryDirectory() as folder:
            path = f'{folder}/zelk_xx.ts'
            with open(path, 'w', encoding='utf-8') as file:
                file.write(file_with('A text that no source has', 'Ein Text, den keine Quelle hat'))
            with tempfile.TemporaryDirectory() as work:
                text, _ = translations.update(path, work)
        found = translations.check(text)
        self.assertIn('View: "A text that no source has": in no source any more', found)
        self.assertIn('AboutDialog: "Close": not translated', found)


if __name__ == '__main__':
    unittest.main()
