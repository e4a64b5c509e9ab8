#include "Services/InstallerBench.h"
#include "Support/Cancelled.h"
#include "Transport/HelperError.h"

#include <QTest>

#include <unistd.h>

using namespace zelk;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

using InstallError = CLIInstaller::InstallError;
using Reason = RaisedShell::Failure::Reason;

namespace {

const QByteArray addition = "\nexport PATH=\"$HOME/.local/bin:$PATH\"\n";

void write(const QString &path, const QByteArray &content) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

} // namespace

/// Removal, version and command path.
class TestCLIInstallerRest : public QObject {
    Q_OBJECT

    std::unique_ptr<InstallerBench> bench;

    QString systemLink() const { return bench->places().systemLink(); }
    QString userLink() const { return bench->places().userLink(); }
    QString inHome(const QString &name) const { return bench->places().home + u'/' + name; }

private Q_SLOTS:
    void init() { bench = std::make_unique<InstallerBench>(); }

    void bothLinksAreTakenAwayWhateverTheyPointAt() {
        const auto other = InstallerBench::makeProgram(bench->folder.filePath(u"other"_s), "own");
        InstallerBench::makeLink(systemLink(), bench->engine);
        InstallerBench::makeLink(userLink(), other);
        bench->installer().uninstall();
        QVERIFY(!QFileInfo(systemLink()).isSymLink());
        QVERIFY(!QFileInfo(userLink()).isSymLink());
        QVERIFY(QFileInfo(bench->engine).isFile() && QFileInfo(other).isFile());
        QVERIFY(bench->shell->commands.isEmpty());
    }

    void aRegularFileIsNeverTouched() {
        InstallerBench::makeProgram(systemLink(), "own");
        InstallerBench::makeProgram(userLink(), "own too");
        bench->unwritable = {bench->places().systemFolder()};
        bench->installer().uninstall();
        QVERIFY(contentsOf(systemLink()).contains("own"));
        QVERIFY(contentsOf(userLink()).contains("own too"));
        QVERIFY(bench->trash->asked.isEmpty());
        QVERIFY(bench->shell->commands.isEmpty());
    }

    void whereNothingIsThereIsNothingToRemove() { bench->installer().uninstall(); }

    void aLinkWhoseTargetIsGoneIsPassedOver() {
        InstallerBench::makeLink(systemLink(), u"/gone"_s);
        bench->unwritable = {bench->places().systemFolder()};
        bench->installer().uninstall();
        QVERIFY(QFileInfo(systemLink()).isSymLink());
        QVERIFY(bench->shell->commands.isEmpty());
    }

    void anUnwritableFolderTakesTheAdministrator() {
        InstallerBench::makeLink(systemLink(), bench->engine);
        InstallerBench::makeLink(userLink(), bench->engine);
        bench->unwritable = {bench->places().systemFolder()};
        bench->shell->runForReal();
        bench->installer().uninstall();
        QCOMPARE(bench->shell->commands, QStringList{u"rm -f '%1'"_s.arg(systemLink())});
        QVERIFY(!QFileInfo(systemLink()).isSymLink());
        QVERIFY(!QFileInfo(userLink()).isSymLink());
    }

    void aRefusalIsToldAndLeavesTheSecondPlaceAlone() {
        InstallerBench::makeLink(systemLink(), bench->engine);
        InstallerBench::makeLink(userLink(), bench->engine);
        bench->unwritable = {bench->places().systemFolder()};
        bench->shell->fail(Reason::dismissed, u"Request dismissed"_s);
        try {
            bench->installer().uninstall();
            QFAIL("removed without the rights");
        } catch (const InstallError &failure) {
            QVERIFY(failure == InstallError::escalationFailed(u"Request dismissed"_s));
        }
        QVERIFY(QFileInfo(userLink()).isSymLink());
    }

    void aLinkThatCanNotBeRemovedIsToldAndLeavesTheSecondPlaceAlone() {
        if (::geteuid() == 0)
            QSKIP("nothing is forbidden to root; see aRefusalIsToldAndLeavesTheSecondPlaceAlone");
        InstallerBench::makeLink(systemLink(), bench->engine);
        InstallerBench::makeLink(userLink(), bench->engine);
        bench->around.isWritable = [](const QString &) { return true; };
        QFile::setPermissions(bench->places().systemFolder(), QFile::ReadOwner | QFile::ExeOwner);
        QString told;
        try {
            bench->installer().uninstall();
        } catch (const std::exception &failure) {
            told = describe(failure);
        }
        QFile::setPermissions(bench->places().systemFolder(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QVERIFY(told.startsWith(systemLink() + u": "_s));
        QVERIFY(QFileInfo(userLink()).isSymLink());
    }

    void theMachineSaysWhatIsWritable() {
        const auto around = CLIInstaller::Surroundings::ofThisMachine();
        QCOMPARE(around.places.root, QString());
        QVERIFY(around.isWritable(bench->folder.path()));
        QVERIFY(!around.isWritable(bench->folder.filePath(u"nothing"_s)));
        QCOMPARE(CLIInstaller::shared(), CLIInstaller::shared());
    }

    void theVersionIsWhatTheFirstProgramSays_data() {
        QTest::addColumn<QByteArray>("system");
        QTest::addColumn<QByteArray>("user");
        QTest::addColumn<std::optional<QString>>("version");
        const std::optional<QString> none;
        QTest::newRow("none there") << QByteArray() << QByteArray() << none;
        QTest::newRow("the machine's") << QByteArray("echo ' zelk 1 '") << QByteArray("echo user")
                                       << std::optional(u"zelk 1"_s);
        QTest::newRow("the user's") << QByteArray() << QByteArray("echo user") << std::optional(u"user"_s);
        QTest::newRow("on the other channel")
            << QByteArray("echo zelk 2 >&2") << QByteArray("echo user") << std::optional(u"zelk 2"_s);
        QTest::newRow("whatever the status") << QByteArray("echo v; exit 1") << QByteArray() << std::optional(u"v"_s);
        QTest::newRow("silent") << QByteArray("exit 0") << QByteArray("echo user") << std::optional(u"user"_s);
        QTest::newRow("no text") << QByteArray("printf '\\377'") << QByteArray("echo user") << std::optional(u"user"_s);
        QTest::newRow("its argument") << QByteArray("echo \"$#$1\"") << QByteArray() << std::optional(u"1--version"_s);
        QTest::newRow("both silent") << QByteArray("true") << QByteArray("true") << none;
    }
    void theVersionIsWhatTheFirstProgramSays() {
        QFETCH(QByteArray, system);
        QFETCH(QByteArray, user);
        QFETCH(std::optional<QString>, version);
        if (!system.isEmpty())
            InstallerBench::makeProgram(systemLink(), system);
        if (!user.isEmpty())
            InstallerBench::makeProgram(userLink(), user);
        QCOMPARE(bench->installer().detectedVersion(), version);
    }

    void aLinkIsAskedForItsVersionToo() {
        InstallerBench::makeLink(systemLink(), bench->engine);
        QCOMPARE(bench->installer().detectedVersion(), std::optional(u"zelk 1.0"_s));
    }

    void whatCanNotBeStartedOrRunsForEverHasNoVersion() {
        bench->makeSystemFolder();
        write(systemLink(), "#!/nowhere/interpreter\n");
        QFile::setPermissions(systemLink(), QFile::ReadOwner | QFile::ExeOwner);
        InstallerBench::makeProgram(userLink(), "echo early; exec sleep 1000");
        bench->around.versionPatience = 100ms;
        QCOMPARE(bench->installer().detectedVersion(), std::nullopt);
    }

    void whatIsNotExecutableIsNotRun() {
        bench->makeSystemFolder();
        write(systemLink(), "#!/bin/sh\necho no\n");
        QCOMPARE(bench->installer().detectedVersion(), std::nullopt);
    }

    void theUsersPlaceIsOnThePathOnlyAsAWholeEntry_data() {
        QTest::addColumn<std::optional<QString>>("path"); // %1 is the home
        QTest::addColumn<bool>("is");
        QTest::newRow("not set") << std::optional<QString>() << false;
        QTest::newRow("empty") << std::optional(u""_s) << false;
        QTest::newRow("alone") << std::optional(u"%1/.local/bin"_s) << true;
        QTest::newRow("last") << std::optional(u"/usr/bin::%1/.local/bin"_s) << true;
        QTest::newRow("below it") << std::optional(u"%1/.local/bin/below"_s) << false;
        QTest::newRow("with a slash") << std::optional(u"%1/.local/bin/"_s) << false;
        QTest::newRow("unexpanded") << std::optional(u"~/.local/bin:$HOME/.local/bin"_s) << false;
        QTest::newRow("quoted") << std::optional(u"\"%1/.local/bin\""_s) << false;
    }
    void theUsersPlaceIsOnThePathOnlyAsAWholeEntry() {
        QFETCH(std::optional<QString>, path);
        QFETCH(bool, is);
        bench->around.places.home = bench->folder.filePath(u"a \"home\"'s"_s);
        if (path)
            bench->around.environment.insert(u"PATH"_s, QString(*path).replace(u"%1"_s, bench->places().home));
        QCOMPARE(bench->installer().localBinOnPath(), is);
    }

    void theShellsOwnFileIsExtended_data() {
        QTest::addColumn<std::optional<QString>>("shell");
        QTest::addColumn<QString>("name");
        QTest::newRow("not set") << std::optional<QString>() << u".zshrc"_s;
        QTest::newRow("zsh") << std::optional(u"/usr/bin/zsh"_s) << u".zshrc"_s;
        QTest::newRow("a zsh of one's own") << std::optional(u"/opt/my zsh's/bin/sh"_s) << u".zshrc"_s;
        QTest::newRow("bash") << std::optional(u"/bin/bash"_s) << u".bash_profile"_s;
        QTest::newRow("fish") << std::optional(u"/usr/bin/fish"_s) << u".bash_profile"_s;
        QTest::newRow("empty") << std::optional(u""_s) << u".bash_profile"_s;
    }
    void theShellsOwnFileIsExtended() {
        QFETCH(std::optional<QString>, shell);
        QFETCH(QString, name);
        if (shell)
            bench->around.environment.insert(u"SHELL"_s, *shell);
        const QString other = name == u".zshrc"_s ? u".bash_profile"_s : u".zshrc"_s;
        bench->installer().addLocalBinToPath();
        QCOMPARE(contentsOf(inHome(name)), addition);
        QVERIFY(!QFileInfo::exists(inHome(other)));
    }

    void theLineComesBehindWhatIsThereEachTime() {
        write(inHome(u".zshrc"_s), "alias z=zelk");
        bench->installer().addLocalBinToPath();
        QCOMPARE(contentsOf(inHome(u".zshrc"_s)), "alias z=zelk" + addition);
        bench->installer().addLocalBinToPath();
        QCOMPARE(contentsOf(inHome(u".zshrc"_s)), "alias z=zelk" + addition + addition);
    }

    void aLinkedFileIsExtendedWhereItIs() {
        write(inHome(u"dotfile"_s), "first");
        InstallerBench::makeLink(inHome(u".zshrc"_s), inHome(u"dotfile"_s));
        bench->installer().addLocalBinToPath();
        QCOMPARE(contentsOf(inHome(u"dotfile"_s)), "first" + addition);
        QVERIFY(QFileInfo(inHome(u".zshrc"_s)).isSymLink());
    }

    void whatIsThereAndCanNotBeOpenedIsNotReplaced() {
        QDir(bench->places().home).mkpath(u".zshrc/below"_s);
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, bench->installer().addLocalBinToPath());
        QVERIFY(QFileInfo(inHome(u".zshrc/below"_s)).isDir());
    }

    void aFileThatMayNotBeWrittenIsNotReplaced() {
        if (::geteuid() == 0)
            QSKIP("nothing is forbidden to root; see whatIsThereAndCanNotBeOpenedIsNotReplaced");
        write(inHome(u".zshrc"_s), "mine");
        QFile::setPermissions(inHome(u".zshrc"_s), QFile::ReadOwner);
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, bench->installer().addLocalBinToPath());
        QCOMPARE(contentsOf(inHome(u".zshrc"_s)), "mine");
    }

    void aHomeThatTakesNoFileFails() {
        bench->around.places.home = InstallerBench::makeProgram(bench->folder.filePath(u"plain"_s), "own");
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, bench->installer().addLocalBinToPath());
    }
};

QTEST_GUILESS_MAIN(TestCLIInstallerRest)
#include "tst_cliinstaller_rest.moc"
