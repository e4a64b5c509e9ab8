#include "Services/CLIInstallation.h"
#include "Services/InstallerBench.h"
#include "Support/Cancelled.h"

#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <atomic>
#include <csignal>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Reason = RaisedShell::Failure::Reason;

class TestCLIInstallation : public QObject {
    Q_OBJECT

    std::unique_ptr<InstallerBench> bench;
    std::unique_ptr<CLIToolStore> store;
    std::unique_ptr<CLIInstallation> installation;
    // Of the dialog that a test lets stand.
    std::atomic_bool isAsked = false;
    std::atomic_bool isAnswered = false;
    std::weak_ptr<CLIInstaller> installer; // held by whoever works

    void letTheDialogStand() {
        bench->shell->answer = [this](const QString &, const std::stop_token &stop) -> QString {
            isAsked = true;
            while (!isAnswered) {
                if (stop.stop_requested())
                    throw Cancelled();
                QThread::yieldCurrentThread();
            }
            return {};
        };
    }

private Q_SLOTS:
    void init() {
        bench = std::make_unique<InstallerBench>();
        store = std::make_unique<CLIToolStore>(bench->places(), [this] { return std::optional(bench->engine); });
        const auto made = std::make_shared<CLIInstaller>(bench->around);
        installer = made;
        installation = std::make_unique<CLIInstallation>(made, store.get());
        isAsked = isAnswered = false;
    }
    void cleanup() {
        isAnswered = true;
        installation.reset();
        QTRY_VERIFY(installer.expired());
        store.reset();
        bench.reset();
    }

    void atFirstNothingIsUnderWay() {
        QVERIFY(!installation->busy());
        QVERIFY(!installation->lastError());
    }

    void anInstallationEndsWithALook() {
        bench->makeSystemFolder();
        QSignalSpy busy(installation.get(), &CLIInstallation::busyChanged);
        installation->install();
        QVERIFY(installation->busy());
        QCOMPARE(store->state(), CLIToolStore::State::unknown());
        QTRY_VERIFY(!installation->busy());
        QCOMPARE(busy.count(), 2);
        QCOMPARE(store->state(), CLIToolStore::State::installedSymlink(bench->engine));
        QVERIFY(!installation->lastError());
    }

    void aRemovalEndsWithALook() {
        InstallerBench::makeLink(bench->places().systemLink(), bench->engine);
        installation->uninstall();
        QTRY_VERIFY(!installation->busy());
        QCOMPARE(store->state(), CLIToolStore::State::notInstalled());
    }

    void theStoreHasLookedBeforeItIsOver() {
        bench->makeSystemFolder();
        CLIToolKind then{};
        connect(installation.get(), &CLIInstallation::busyChanged, this,
                [&] { then = store->property("kind").value<CLIToolKind>(); });
        installation->install();
        QTRY_VERIFY(!installation->busy());
        QCOMPARE(then, CLIToolKind::installedSymlink);
    }

    void aFailureIsToldAndTheStoreLooksAllTheSame() {
        InstallerBench::makeLink(bench->places().systemLink(), bench->engine);
        bench->unwritable = {bench->places().systemFolder()};
        bench->shell->fail(Reason::dismissed, u"Request dismissed"_s);
        installation->uninstall();
        QTRY_VERIFY(!installation->busy());
        QCOMPARE(installation->property("lastError").toString(),
                 u"Administrator authorization failed: Request dismissed"_s);
        QCOMPARE(store->state(), CLIToolStore::State::installedSymlink(bench->engine));
    }

    void theNextActionClearsTheFailure() {
        QFile::rename(bench->engine, bench->engine + u".away"_s);
        installation->install();
        QTRY_VERIFY(!installation->busy());
        QCOMPARE(installation->lastError(), std::optional(u"The bundled zelk helper could not be located."_s));
        QFile::rename(bench->engine + u".away"_s, bench->engine);
        bench->makeSystemFolder();
        letTheDialogStand();
        QSignalSpy told(installation.get(), &CLIInstallation::lastErrorChanged);
        installation->install();
        QVERIFY(!installation->lastError()); // from the beginning
        QTRY_VERIFY(!installation->busy());
        QCOMPARE(told.count(), 1);
        QVERIFY(!installation->lastError());
    }

    void aRefusedDialogInstallsForTheUserWithoutAFailure() {
        bench->shell->fail(Reason::dismissed, {});
        installation->install();
        QTRY_VERIFY(!installation->busy());
        QVERIFY(!installation->lastError());
        QCOMPARE(InstallerBench::targetOf(bench->places().userLink()), bench->engine);
    }

    void theWindowLivesWhileTheDialogStands() {
        letTheDialogStand();
        installation->install();
        QTRY_VERIFY(isAsked); // which takes turns of this thread's loop
        QVERIFY(installation->busy());
        isAnswered = true;
        QTRY_VERIFY(!installation->busy());
    }

    void nothingElseIsBegunMeanwhile() {
        letTheDialogStand();
        installation->install();
        QTRY_VERIFY(isAsked);
        installation->install();
        installation->uninstall();
        isAnswered = true;
        QTRY_VERIFY(!installation->busy());
        QCOMPARE(bench->shell->commands.size(), 1);
    }

    void whoGoesTakesTheDialogAlongAndWaitsForNobody() {
        const QString pidFile = bench->folder.filePath(u"pid"_s);
        bench->shell->standIn = writeProgram(bench->folder.filePath(u"dialog"_s),
                                             "echo $$ >'" + QFile::encodeName(pidFile) + "'; exec sleep 1000");
        bench->shell->runForReal();
        installation->install();
        QTRY_VERIFY(contentsOf(pidFile).endsWith('\n'));
        installation.reset();
        QTRY_VERIFY(installer.expired());
        QVERIFY(::kill(contentsOf(pidFile).trimmed().toInt(), 0) != 0);
        QCoreApplication::processEvents();
        QCOMPARE(store->state(), CLIToolStore::State::unknown());
        QVERIFY(!QFileInfo(bench->places().userLink()).isSymLink());
    }

    void aStoreThatGoesFirstDisturbsNothing() {
        letTheDialogStand();
        installation->install();
        QTRY_VERIFY(isAsked);
        store.reset();
        isAnswered = true;
        QTRY_VERIFY(!installation->busy());
    }

    void whoeverIsToldMayReleaseIt() {
        QFile::remove(bench->engine);
        connect(installation.get(), &CLIInstallation::lastErrorChanged, this, [this] { installation.reset(); });
        installation->install();
        QTRY_VERIFY(!installation);
        QCOMPARE(store->state(), CLIToolStore::State::unknown());
    }
};

QTEST_GUILESS_MAIN(TestCLIInstallation)
#include "tst_cliinstallation.moc"
