"""The order of the libraries, as the include policy reads and defends it."""

import unittest

from policy_test import policy

includes = policy('includes')

CMAKE = {
    'src/Transport/CMakeLists.txt': '''
        zelk_library(wire   # zelk_library(decoy SOURCES Decoy.h)
            SOURCES
                NDJSONFramer.h NDJSONFramer.cpp
                HelperProtocol.h
            LINKS zelk::support)
        zelk_library(transport SOURCES HelperClient.h ${CMAKE_CURRENT_SOURCE_DIR}/HelperProcess.h)''',
    'src/State/CMakeLists.txt': 'zelk_library(simulated SOURCES ../Support/MockHelperClient.h LINKS zelk::wire)',
}
OWNERS = includes.libraries(CMAKE)
FILES = {'Transport/NDJSONFramer.h', 'Transport/HelperProtocol.h', 'Transport/HelperClient.h', 'Support/Task.h',
         'Support/MockHelperClient.h', 'Platform/Bundle.h', 'State/SyncStore.h', 'App/AppModel.h', 'Views/Sidebar.h'}


def found(path, *lines):
    return includes.check(path, '\n'.join(f'#include {line}' for line in lines), OWNERS, FILES.__contains__)


class Includes(unittest.TestCase):
    def test_ownersAreReadFromTheBuildFiles(self):
        self.assertEqual(OWNERS, {
            'Transport/NDJSONFramer.h': 'wire', 'Transport/NDJSONFramer.cpp': 'wire', 'Transport/HelperProtocol.h': 'wire',
            'Transport/HelperClient.h': 'transport', 'Transport/HelperProcess.h': 'transport',
            'Support/MockHelperClient.h': 'simulated'})

    def test_aFileThatIsNotListedBelongsWithItsNamesakeOrItsFolder(self):
        self.assertEqual(includes.owner('Transport/HelperProtocol.cpp', OWNERS), 'wire')
        self.assertEqual(includes.owner('Views/Settings/AboutTab.h', OWNERS), 'ui')
        self.assertEqual(includes.owner('App/main.cpp', OWNERS), 'application')
        self.assertEqual(includes.owner('App/ZELKApp.h', OWNERS), 'application')
        self.assertEqual(includes.owner('App/UnattendedRun.cpp', OWNERS), 'application')
        self.assertIsNone(includes.owner('Elsewhere/Thing.h', OWNERS))

    def test_aFileOfNoLibraryIsRefused(self):
        self.assertEqual(found('src/Elsewhere/Thing.h'), ['src/Elsewhere/Thing.h:1: belongs to no library'])

    def test_eachLibraryMaySeeTheOnesBeforeIt(self):
        for path, header in [('src/Transport/HelperProtocol.h', '"Support/Task.h"'),
                             ('src/Transport/HelperClient.h', '"Transport/NDJSONFramer.h"'),
                             ('src/State/SyncStore.h', '"Transport/HelperClient.h"'),
                             ('src/App/AppModel.h', '"State/SyncStore.h"'),
                             ('src/App/main.cpp', '"Views/Sidebar.h"'),
                             ('src/Views/Sidebar.h', '"Views/Sidebar.h"'),
                             ('src/Support/MockHelperClient.h', '"State/SyncStore.h"'),
                             ('engine/Run/Run.h', '"Transport/HelperProtocol.h"'),
                             ('engine/Run/Run.h', '"Platform/Bundle.h"'),
                             ('engine/Run/Run.h', '"Matching/Fold.h"')]:
            with self.subTest(path=path, header=header):
                self.assertEqual(found(path, header), [])

    def test_noLibraryMaySeeTheOnesAfterIt(self):
        for path, header in [('src/Support/Task.h', '"Transport/HelperProtocol.h"'),
                             ('src/Transport/HelperProtocol.h', '"Transport/HelperClient.h"'),
                             ('src/Platform/Bundle.h', '"Transport/HelperClient.h"'),
                             ('src/Transport/HelperClient.h', '"State/SyncStore.h"'),
                             ('src/State/SyncStore.h', '"App/AppModel.h"'),
                             ('src/App/AppModel.h', '"Views/Sidebar.h"'),
                             ('src/App/main.cpp', '"Support/MockHelperClient.h"'),
                             ('src/Support/MockHelperClient.h', '"App/AppModel.h"'),
                             ('engine/Run/Run.h', '"Transport/HelperClient.h"')]:
            with self.subTest(path=path, header=header):
                self.assertEqual(len(found(path, '<QObject>', header)), 1)
                self.assertIn(f'{path}:2: ', found(path, '<QObject>', header)[0])

    def test_onlyThePlatformLibrarySpeaksToThePlatform(self):
        for header in ['<unistd.h>', '<sys/wait.h>', '<spawn.h>', '<linux/close_range.h>', '<QDBusConnection>',
                       '<QtDBus/QDBusMessage>', '"signal.h"']:
            with self.subTest(header):
                self.assertEqual(found('src/Platform/Bundle_linux.cpp', header), [])
                self.assertEqual(len(found('src/State/SyncStore.h', header)), 1)

    def test_theEngineMayHandleFilesAndTheTerminal(self):
        self.assertEqual(found('engine/Output/File.cpp', '<unistd.h>', '<sys/stat.h>'), [])
        self.assertEqual(len(found('engine/Output/File.cpp', '<spawn.h>', '<QDBusConnection>')), 2)

    def test_theLanguagesOwnHeadersAreNoPlatform(self):
        self.assertEqual(found('src/State/SyncStore.h', '<csignal>', '<ctime>', '<poll>', '<QTimer>', '<system_error>'), [])


if __name__ == '__main__':
    unittest.main()
