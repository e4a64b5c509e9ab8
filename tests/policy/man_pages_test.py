"""What the policy of the man pages asks for, and what it takes for told."""

import unittest

from policy_test import policy

man_pages = policy('man_pages')


class Asked(unittest.TestCase):
    def test_verbsAndOptionsOfTheHelp(self):
        help_texts = 'return u"Usage: zelk mend [--fast]\\n"\n  "  mend       repair --all of it\\n"\n "\\n"_s;'
        self.assertEqual(man_pages.told_at_the_terminal(help_texts), {'mend', '--fast', '--all'})

    def test_verbsAndOptionsThatTheHelpKeepsToItself(self):
        code = 'if (name == "-h"_L1 || name == "--all"_L1) verbs[] = {{"mend"_L1, Verb::Mend}}; text("--gone"); path("mend"_L1);'
        self.assertEqual(man_pages.understood(code), {'-h', '--all', 'mend'})

    def test_optionsOfTheWindow(self):
        code = 'const QCommandLineOption quiet(u"quiet"_s, u"Say --nothing."_s); QCommandLineOption loud{u"loud"_s};'
        self.assertEqual(man_pages.window_options(code), {'--quiet', '--loud'})

    def test_optionsThatTheWindowHasOfQt(self):
        self.assertEqual(man_pages.window_options('parser.addHelpOption();'), {'-h', '--help', '--help-all'})
        self.assertEqual(man_pages.window_options('parser.addVersionOption();'), {'-v', '--version'})

    def test_whatAHelpPrints(self):
        printed = 'Usage: zelk mend [--fast]\n\n  mend       repair all\n  --all-of-it  even what is whole\n'
        self.assertEqual(man_pages.options_in(printed), {'--fast', '--all-of-it'})
        self.assertEqual(man_pages.verbs_in(printed), {'mend'})

    def test_variablesHoweverTheyAreRead(self):
        for code in ['qEnvironmentVariable("KEY")', 'qEnvironmentVariableIntValue("KEY")', 'std::getenv("KEY")', 'qgetenv("KEY")',
                     'environment.value(QStringLiteral("KEY"))', '_around.environment.value(u"KEY"_s, other)',
                     'systemEnvironment().contains("KEY")', 'baseFolder("KEY", x)', 'listOf("KEY")']:
            with self.subTest(code):
                self.assertEqual(man_pages.variables(code), {'KEY'})
        self.assertEqual(man_pages.variables('ask("ZELK_SOMETHING")'), {'ZELK_SOMETHING'})

    def test_whatTheBuildSetsIsNobodysVariable(self):
        self.assertEqual(man_pages.variables('QStringLiteral(ZELK_VERSION); settings.value(u"KEY"_s); name("ZELK_VERSION")'), set())


class Told(unittest.TestCase):
    def test_whatAPageLacksIsRefused(self):
        page = '.B \\-\\-dry\\-run\n.BR sync " [" \\-\\-cleanup ]\n.B ZELK_DIRS_OLD\nresyncing\n'
        self.assertEqual(man_pages.check(page, {'--dry-run', '--cleanup', 'sync', '--dry', '--clean', 'ZELK_DIRS', 'syncing'}),
                         ['--clean', '--dry', 'ZELK_DIRS', 'syncing'])


if __name__ == '__main__':
    unittest.main()
