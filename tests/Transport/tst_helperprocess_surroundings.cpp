// What the supervisor gives its child and takes from it, with a shell for the child.
#include "SupervisedChild.h"

#include "Platform/ProcessSignals.h"
#include "Support/Await.h"
#include "Support/LogCapture.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Termination = HelperProcess::Termination;

class TestHelperProcessSurroundings : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { prepareProcessSignals(); }

    // As it is for what a shell starts behind "trap '' CHLD": the end of a child would go untold, and its status be
    // lost.
    void aParentThatIgnoredTheEndOfChildrenChangesNoExit() {
        ::signal(SIGCHLD, SIG_IGN);
        prepareProcessSignals();
        Supervised clean("exit 0");
        QVERIFY(clean.start());
        QTRY_COMPARE(clean.ended(), QList{Termination::clean()});
        Supervised crashed("exit 3");
        QVERIFY(crashed.start());
        QTRY_COMPARE(crashed.ended(), QList{Termination::crash(3, u"exit 3"_s)});
    }

    void theEndOfItsOutputEndsTheStreamWhileItLives() {
        Supervised child("echo last; exec 1>&-; read line; exit 0");
        QVERIFY(child.start());
        QTRY_VERIFY(child.streamEnded);
        QCOMPARE(child.output, "last\n");
        QVERIFY(child.ended().isEmpty());
        QVERIFY(child.write("go\n"));
        QTRY_COMPARE(child.ended(), QList{Termination::clean()});
    }

    void itWorksInOurFolder() {
        const QTemporaryDir folder;
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(folder.path()));
        Supervised child("pwd -P; exit 0");
        const bool started = child.start();
        QVERIFY(QDir::setCurrent(before) && started);
        QTRY_VERIFY(child.streamEnded);
        QCOMPARE(child.output.trimmed(), QFile::encodeName(QFileInfo(folder.path()).canonicalFilePath()));
    }

    void aLineOfStandardErrorThatComesInTwoReadsIsTwoPieces() {
        const LogCapture log;
        Supervised child("printf 'one ' >&2; read line; echo line >&2; exit 0");
        QVERIFY(child.start());
        const auto pieces = [&log] { return log.messages(u"helper"_s, u"helper stderr: "_s); };
        QTRY_COMPARE(pieces(), QStringList{u"helper stderr: one "_s});
        QVERIFY(child.write("go\n"));
        QTRY_COMPARE(pieces(), (QStringList{u"helper stderr: one "_s, u"helper stderr: line"_s}));
    }
};

QTEST_GUILESS_MAIN(TestHelperProcessSurroundings)
#include "tst_helperprocess_surroundings.moc"
