"""What the policy of the packages takes for named."""

import unittest

from policy_test import policy

packages = policy('packages')


class Packages(unittest.TestCase):
    def test_whatRunsTheProgramIsNamedByThePackage(self):
        setup = 'fonts-sans   # run: the typeface\nfonts   # run: others\ng++   # build\nqml6-module-qt   # run: QML\n'
        self.assertEqual(packages.check(setup, 'DEPENDS\n    fonts-sans)\n"qml6-module-qt, x"'), ['fonts'])
        self.assertEqual(packages.check(setup, 'fonts-sans fonts qml6-module-qtquick'), ['qml6-module-qt'])


if __name__ == '__main__':
    unittest.main()
