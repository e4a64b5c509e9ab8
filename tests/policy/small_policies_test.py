"""What the policies that look for single words refuse and let through."""

import unittest

from policy_test import policy

threads = policy('threads')
qml_literals = policy('qml_literals')
words = policy('words')
lengths = policy('lengths')
named_tests = policy('named_tests')
shown_texts = policy('shown_texts')


class Threads(unittest.TestCase):
    def test_whatMakesAThreadIsRefused(self):
        for code in ['std::thread worker(run);', 'std::jthread worker;', 'auto f = std::async(run);', 'class W : public QThread {};',
                     'auto *t = QThread::create(run);', 'auto *t = new QThread;', 'QThread _thread;', 'QtConcurrent::run(f);',
                     'QThreadPool::globalInstance()->start(f);', 'pthread_create(&t, nullptr, run, nullptr);']:
            with self.subTest(code):
                self.assertEqual([line for line, _ in threads.check(f'\n{code}')], [2])

    def test_whatOnlyLooksAtAThreadIsLetThrough(self):
        for code in ['Q_ASSERT(QThread::currentThread() == thread());', 'std::this_thread::yield();', 'std::thread::id id;',
                     'class QThread;', 'QThread *thread() const;', '// a QThread of its own', '#include <QThread>\n',
                     'log("std::thread");']:
            with self.subTest(code):
                self.assertEqual(threads.check(code), [])


class QmlLiterals(unittest.TestCase):
    def test_writtenOutLooksAreRefused(self):
        for code in ['color: "#fff"', 'color: "#12345678"', 'border.color: dark ? "#000000" : Tokens.edge', 'color: "white"',
                     'textColor: "red"', 'color: Qt.rgba(0, 0, 0, 0.5)', 'font.pixelSize: 13', 'font.pointSize: 9',
                     'font.weight: 600', 'font.family: "Inter"', 'font: Qt.font({ pixelSize: 12 })']:
            with self.subTest(code):
                self.assertEqual([line for line, _ in qml_literals.check(f'Item {{\n{code}\n}}')], [2])

    def test_looksFromTokensAreLetThrough(self):
        for code in ['color: Tokens.accent', 'color: "transparent"', 'font.pixelSize: Tokens.bodySize', 'font.weight: Font.Medium',
                     'color: Qt.rgba(tint.r, tint.g, tint.b, 0.5)', 'text: "#1"', '// color: "#fff"', '/* font.pixelSize: 3 */',
                     'text: "red"', 'source: "http://example.org/#fff"']:
            with self.subTest(code):
                self.assertEqual(qml_literals.check(f'Item {{\n{code}\n}}'), [])


class ShownTexts(unittest.TestCase):
    def test_aSentenceThatNoTranslationReachesIsRefused(self):
        for code in ['setBanner(SyncBanner::info(QStringLiteral("Select one first.")));', 'throw Failure(u"No browser could be opened."_s);',
                     'return u"It failed: "_s + why;', 'setLastError(\n    QStringLiteral("Some tools, not all."));',
                     'logger.info(u"all good"_s); return u"It is good."_s;']:
            with self.subTest(code):
                self.assertEqual(len(shown_texts.check('src/a.cpp', code)), 1)

    def test_whatIsTranslatedOrSaidToOthersIsLetThrough(self):
        for code in ['setBanner(Texts::tr("Select one first."));', '_logger.error(QStringLiteral("It failed: %1").arg(why));',
                     'Logger("updates").info(\n    u"No release notes: %1"_s.arg(why));', '// u"No browser could be opened."_s',
                     'qFatal("It must not be: %s", why);', 'names += u"Apple Music"_s;', 'key == u"persistent id"_s;']:
            with self.subTest(code):
                self.assertEqual(shown_texts.check('src/a.cpp', code), [])


class Words(unittest.TestCase):
    # Each is put together here, so that this file does not offend either.
    def test_whatLeansOnSomethingElsewhereIsRefused(self):
        for text in ['see Par' + 't 2.3', 'fixes issu' + 'e #12', 'issu' + 'e 4', 'as the spe' + 'c says', 'the spe' + 'cification',
                     'shared' + '/design', 'in desig' + 'n.md', '/wor' + 'k/main/src', 'rm /hom' + 'e/ann/x', 'TO' + 'DO: later',
                     'FIX' + 'ME']:
            with self.subTest(text):
                self.assertEqual([line for line, _, _ in words.check('src/a.h', f'\n// {text}\n')], [2])

    def test_ordinaryWordsAreLetThrough(self):
        for text in ['a part of 2 things', 'the issue is how', 'a special case', 'specify', 'network/main', 'designed', 'todo',
                     'https://example.org/home', 'shared with', 'a shared' + '/state lock', './wor' + 'k/tree', 'XXXXXX']:
            with self.subTest(text):
                self.assertEqual(words.check('src/a.h', text), [])

    def test_aTestMayMakeUpPeople(self):
        self.assertEqual(words.check('tests/a.cpp', '/hom' + 'e/ann/Music'), [])


class Lengths(unittest.TestCase):
    def test_onlyAFileOverItsLimitIsWarnedOf(self):
        self.assertIsNone(lengths.check('src/a.cpp', '\n' * 450))
        self.assertEqual(lengths.check('src/a.cpp', '\n' * 451), 'src/a.cpp: 451 lines, more than 450')
        self.assertEqual(lengths.check('src/A.qml', '\n' * 221), 'src/A.qml: 221 lines, more than 220')
        self.assertIsNone(lengths.check('docs/a.md', '\n' * 5000))


class NamedTests(unittest.TestCase):
    SOURCES = {'tst_a': 'void itHolds() {}\nvoid itHoldsToo() {}'}

    def test_aTestThatIsNotThereIsRefused(self):
        for name in ['tst_a::itHold', 'tst_a::holds', 'tst_b::itHolds']:
            with self.subTest(name):
                self.assertEqual(named_tests.check(f'\nsee `{name}`', self.SOURCES), [(2, name)])

    def test_aTestThatIsThereIsLetThrough(self):
        self.assertEqual(named_tests.check('`tst_a::itHolds`, `tst_a::itHoldsToo`, `Foo::bar`', self.SOURCES), [])


if __name__ == '__main__':
    unittest.main()
