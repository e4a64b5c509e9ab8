#include "Services/InstallerBench.h"
#include "Support/Cancelled.h"
#include "Support/LogCapture.h"
#include "Transport/HelperError.h"
#include "Transport/Tagged.h"

#include <QTest>

#include <system_error>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using InstallError = CLIInstaller::InstallError;
using Reason = RaisedShell::Failure::Reason;

/// On a root and a home of its own, and with stand-ins for the dialog and the Trash.
class TestCLIInstaller : public QObject {
    Q_OBJECT

    std::unique_ptr<InstallerBench> bench;

    QString systemLink() const { return bench->places().systemLink(); }
    QString userLink() const { return bench->places().userLink(); }

    /// What `install` fails with; nothing if it succeeds.
    std::exception_ptr failureOfInstall() const {
        try {
            bench->installer().install();
            return {};
        } catch (...) {
            return std::current_exception();
        }
    }
    static bool isIoFailure(const std::exception_ptr &failure) {
        try {
            if (failure)
                std::rethrow_exception(failure);
        } catch (const InstallError &error) {
            return caseOf<InstallError::IoFailed>(error);
        } catch (...) {
        }
        return false;
    }

private Q_SLOTS:
    void init() { bench = std::make_unique<InstallerBench>(); }

    void eachFailureHasItsText() {
        QCOMPARE(InstallError::escalationFailed(u"no"_s).errorDescription(),
                 u"Administrator authorization failed: no"_s);
        QCOMPARE(InstallError::ioFailed(u"no"_s).errorDescription(), u"Could not install the CLI: no"_s);
        QCOMPARE(InstallError::noHelper().errorDescription(), u"The bundled zelk helper could not be located."_s);
        QCOMPARE(describe(InstallError::ioFailed(u"ü"_s)), u"Could not install the CLI: ü"_s);
    }

    void withoutAnEngineNothingIsTouched() {
        QFile::remove(bench->engine);
        bench->makeSystemFolder();
        InstallerBench::makeProgram(systemLink(), "own");
        try {
            bench->installer().install();
            QFAIL("installed what is not there");
        } catch (const InstallError &failure) {
            QVERIFY(failure == InstallError::noHelper());
        }
        QVERIFY(QFileInfo(systemLink()).isFile());
        QVERIFY(bench->trash->asked.isEmpty());
    }

    void aWritableFolderNeedsNoDialog() {
        bench->makeSystemFolder();
        QCOMPARE(bench->installer().install(), systemLink());
        QCOMPARE(InstallerBench::targetOf(systemLink()), bench->engine);
        QVERIFY(bench->shell->commands.isEmpty());
        QVERIFY(!QFileInfo(userLink()).isSymLink());
    }

    void theEngineThatTheEnvironmentNamesIsInstalled() {
        bench->makeSystemFolder();
        const auto other = InstallerBench::makeProgram(bench->folder.filePath(u"other/engine"_s), "own");
        bench->around.environment.insert(u"ZELK_HELPER_PATH"_s, other);
        bench->installer().install();
        QCOMPARE(InstallerBench::targetOf(systemLink()), other);
    }

    void anExistingLinkIsReplaced_data() {
        QTest::addColumn<QString>("target");
        QTest::newRow("to something else") << u"other"_s;
        QTest::newRow("to nothing") << u"gone/zelk"_s;
        QTest::newRow("to a folder") << u"folder"_s;
        QTest::newRow("to the engine") << u"zelk.app/Contents/Helpers/zelk"_s;
    }
    void anExistingLinkIsReplaced() {
        QFETCH(QString, target);
        const auto other = InstallerBench::makeProgram(bench->folder.filePath(u"other"_s), "own");
        QDir(bench->folder.path()).mkdir(u"folder"_s);
        InstallerBench::makeLink(systemLink(), bench->folder.filePath(target));
        QCOMPARE(bench->installer().install(), systemLink());
        QCOMPARE(InstallerBench::targetOf(systemLink()), bench->engine);
        QVERIFY(QFileInfo(other).isFile());
        QVERIFY(QDir(bench->folder.filePath(u"folder"_s)).isEmpty());
        QVERIFY(bench->trash->asked.isEmpty());
    }

    void aFileOfTheUsersOwnGoesToTheTrash() {
        InstallerBench::makeProgram(systemLink(), "own");
        bench->installer().install();
        QCOMPARE(InstallerBench::targetOf(systemLink()), bench->engine);
        QVERIFY(bench->trash->taken(u"zelk"_s).contains("own"));
    }

    void itGoesThereEvenIfTheLinkThenFails() {
        InstallerBench::makeProgram(systemLink(), "own");
        bench->unwritable = {bench->places().systemFolder()};
        bench->shell->fail(Reason::refused, u"no"_s);
        InstallerBench::makeProgram(bench->places().home + u"/.local"_s, "in the way");
        QVERIFY(failureOfInstall());
        QVERIFY(bench->trash->taken(u"zelk"_s).contains("own"));
        QVERIFY(!QFileInfo::exists(systemLink()));
    }

    void aFileThatCanNotGoToTheTrashStaysAndIsInTheWay() {
        const LogCapture log;
        InstallerBench::makeProgram(systemLink(), "own");
        bench->trash->isFull = true;
        QVERIFY(isIoFailure(failureOfInstall()));
        QVERIFY(contentsOf(systemLink()).contains("own"));
        QCOMPARE(bench->trash->asked, QStringList{systemLink()});
        // A failure where the folder is writable is the end of it.
        QVERIFY(bench->shell->commands.isEmpty());
        QVERIFY(!QFileInfo(userLink()).isSymLink());
        QCOMPARE(log.messages(u"cli-installer"_s, u"not moved to the Trash: "_s).size(), 1);
    }

    void noAdministratorOverwritesAFileThatCanNotGoToTheTrash() {
        InstallerBench::makeProgram(systemLink(), "own");
        bench->trash->isFull = true;
        bench->unwritable = {bench->places().systemFolder()};
        bench->shell->runForReal();
        QCOMPARE(bench->installer().install(), userLink());
        QVERIFY(contentsOf(systemLink()).contains("own"));
        QVERIFY(bench->shell->commands.isEmpty());
    }

    void aMissingFolderIsMadeByTheAdministrator() {
        bench->shell->runForReal();
        QCOMPARE(bench->installer().install(), systemLink());
        QCOMPARE(InstallerBench::targetOf(systemLink()), bench->engine);
        const QString folder = bench->places().systemFolder();
        const QString command = u"mkdir -p %1 && ln -sf '%2' '%3'"_s.arg(folder, bench->engine, systemLink());
        QCOMPARE(bench->shell->commands, QStringList{command});
        QVERIFY(!QFileInfo(userLink()).isSymLink());
    }

    void aFolderThatIsNotWritableTakesTheAdministratorToo() {
        bench->unwritable = {bench->makeSystemFolder()};
        InstallerBench::makeLink(systemLink(), u"/gone"_s);
        bench->shell->runForReal();
        QCOMPARE(bench->installer().install(), systemLink());
        QCOMPARE(InstallerBench::targetOf(systemLink()), bench->engine);
        QCOMPARE(bench->shell->commands.size(), 1);
    }

    void whateverTheAdministratorsFailureTheUsersOwnPlaceIsTaken_data() {
        QTest::addColumn<int>("which");
        QTest::newRow("dismissed") << 0;
        QTest::newRow("refused") << 1;
        QTest::newRow("failed") << 2;
        QTest::newRow("nobody to ask") << 3;
    }
    void whateverTheAdministratorsFailureTheUsersOwnPlaceIsTaken() {
        QFETCH(int, which);
        bench->shell->answer = [which](const QString &, const std::stop_token &) -> QString {
            if (which == 3)
                throw std::system_error(std::make_error_code(std::errc::no_such_file_or_directory), "pkexec");
            throw RaisedShell::Failure(static_cast<Reason>(which), u"no"_s);
        };
        QCOMPARE(bench->installer().install(), userLink());
        QCOMPARE(InstallerBench::targetOf(userLink()), bench->engine);
        QVERIFY(!QFileInfo(systemLink()).isSymLink());
    }

    void aLinkAtTheUsersOwnPlaceIsReplacedAndAFileTrashed() {
        bench->shell->fail(Reason::dismissed, {});
        InstallerBench::makeLink(userLink(), u"/gone"_s);
        QCOMPARE(bench->installer().install(), userLink());
        QCOMPARE(InstallerBench::targetOf(userLink()), bench->engine);
        QFile::remove(userLink());
        InstallerBench::makeProgram(userLink(), "own");
        QCOMPARE(bench->installer().install(), userLink());
        QCOMPARE(InstallerBench::targetOf(userLink()), bench->engine);
        QVERIFY(bench->trash->taken(u"zelk"_s).contains("own"));
    }

    void aHomeThatTakesNoFolderFails() {
        bench->shell->fail(Reason::dismissed, {});
        const auto file = InstallerBench::makeProgram(bench->places().home + u"/.local"_s, "in the way");
        const auto failure = failureOfInstall();
        QVERIFY(failure && !isIoFailure(failure));
        QVERIFY(describe(failure).startsWith(bench->places().userFolder() + u": "_s));
        QVERIFY(contentsOf(file).contains("in the way"));
    }

    void aLinkThatCanNotBeMadeAtTheUsersOwnPlaceFails() {
        bench->shell->fail(Reason::dismissed, {});
        InstallerBench::makeProgram(userLink(), "own");
        bench->trash->isFull = true;
        QVERIFY(isIoFailure(failureOfInstall()));
        QVERIFY(contentsOf(userLink()).contains("own"));
    }

    void doubleQuotesAndSpacesReachTheShellAsTheyAre() {
        const auto engine = InstallerBench::makeProgram(bench->folder.filePath(u"my \"own\" $x/zelk"_s), "own");
        bench->around.environment.insert(u"ZELK_HELPER_PATH"_s, engine);
        bench->shell->runForReal();
        QCOMPARE(bench->installer().install(), systemLink());
        QCOMPARE(InstallerBench::targetOf(systemLink()), engine);
    }

    void aSingleQuoteBreaksTheCommandAndTheFallbackTakesOver() {
        const LogCapture log;
        const auto engine = InstallerBench::makeProgram(bench->folder.filePath(u"ada's/zelk"_s), "own");
        bench->around.environment.insert(u"ZELK_HELPER_PATH"_s, engine);
        bench->shell->runForReal();
        QCOMPARE(bench->installer().install(), userLink());
        QCOMPARE(InstallerBench::targetOf(userLink()), engine);
        QVERIFY(!QFileInfo(systemLink()).isSymLink());
        const auto told =
            log.messages(u"cli-installer"_s, u"not installed for all users: Administrator authorization failed: "_s);
        QCOMPARE(told.size(), 1);
    }

    void whoQuitsAtTheDialogGetsNoLinkAtAll() {
        bench->shell->answer = [](const QString &, const std::stop_token &stop) -> QString {
            if (stop.stop_requested())
                throw Cancelled();
            return {};
        };
        std::stop_source stop;
        stop.request_stop();
        QVERIFY_THROWS_EXCEPTION(Cancelled, bench->installer().install(stop.get_token()));
        QVERIFY(!QFileInfo(userLink()).isSymLink());
    }
};

QTEST_GUILESS_MAIN(TestCLIInstaller)
#include "tst_cliinstaller.moc"
