#include "Platform/RaisedShell.h"
#include "Platform/StandIn.h"
#include "Support/Cancelled.h"
#include "Support/SerialExecutor.h"

#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <atomic>
#include <csignal>
#include <system_error>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

/// Against a stand-in for the program that raises the rights: the real one asks the user.
class TestRaisedShell : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> _folder;

    std::shared_ptr<RaisedShell> shell(const QByteArray &script) const {
        return RaisedShell::over(writeProgram(_folder->filePath(u"stand-in"_s), script));
    }

private Q_SLOTS:
    void init() { _folder = std::make_unique<QTemporaryDir>(); }

    void theCommandGoesToAShellWithoutAPromptOnTheTerminal() {
        const auto raised = shell("printf '[%s]' \"$@\"");
        QCOMPARE(raised->run(u"ln -s 'a \"b\"' $HOME"_s, {}),
                 u"[--disable-internal-agent][/bin/sh][-c][ln -s 'a \"b\"' $HOME]"_s);
    }

    void theOutputIsGivenAsItIs() { QCOMPARE(shell("printf ' ü\\n'; echo x >&2")->run(u"true"_s, {}), u" ü\n"_s); }

    void theCommandRuns() {
        const QString mark = _folder->filePath(u"mark"_s);
        shell("shift; exec \"$@\"")->run(u"touch '%1' && echo done"_s.arg(mark), {});
        QVERIFY(QFile::exists(mark));
    }

    void aFailureSaysWhyAndWhat_data() {
        using Reason = RaisedShell::Failure::Reason;
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<Reason>("reason");
        QTest::addColumn<QString>("text");
        QTest::newRow("dismissed") << QByteArray("echo ' Request dismissed ' >&2; exit 126") << Reason::dismissed
                                   << u"Request dismissed"_s;
        QTest::newRow("refused") << QByteArray("echo 'Not authorized' >&2; exit 127") << Reason::refused
                                 << u"Not authorized"_s;
        QTest::newRow("failed") << QByteArray("echo out; printf 'sh: a\\nsh: b\\n\\n' >&2; exit 2") << Reason::failed
                                << u"sh: a\nsh: b"_s;
        QTest::newRow("silent") << QByteArray("exit 1") << Reason::failed << QString();
        QTest::newRow("no text") << QByteArray("printf '\\377' >&2; exit 1") << Reason::failed << u"unknown"_s;
        QTest::newRow("killed") << QByteArray("echo dying >&2; kill -9 $$") << Reason::failed << u"dying"_s;
    }
    void aFailureSaysWhyAndWhat() {
        QFETCH(QByteArray, script);
        QFETCH(RaisedShell::Failure::Reason, reason);
        QFETCH(QString, text);
        try {
            shell(script)->run(u"true"_s, {});
            QFAIL("it succeeded");
        } catch (const RaisedShell::Failure &failure) {
            QCOMPARE(failure.reason(), reason);
            QCOMPARE(failure.text(), text);
            QCOMPARE(QString::fromUtf8(failure.what()), text);
        }
    }

    void whereNothingRaisesRightsTheLaunchFails() {
        const auto nowhere = RaisedShell::over(_folder->filePath(u"nothing"_s));
        QVERIFY_THROWS_EXCEPTION(std::system_error, nowhere->run(u"true"_s, {}));
    }

    void theWindowLivesWhileTheDialogStandsAndTakesItAwayAtTheEnd() {
        const auto raised = shell("echo $$ >'" + QFile::encodeName(_folder->filePath(u"pid"_s)) + "'; exec sleep 1000");
        std::stop_source stop;
        std::atomic_bool isOver = false;
        std::atomic_bool isCancelled = false;
        const auto executor = SerialExecutor::make(u"raised"_s);
        executor->post([&] {
            try {
                raised->run(u"true"_s, stop.get_token());
            } catch (const Cancelled &) {
                isCancelled = true;
            }
            isOver = true;
        });
        QTRY_VERIFY(contentsOf(_folder->filePath(u"pid"_s)).endsWith('\n'));
        int turns = 0;
        QTimer turning;
        connect(&turning, &QTimer::timeout, this, [&] { ++turns; });
        turning.start(0);
        QTRY_VERIFY(turns > 100);
        QVERIFY(!isOver);
        stop.request_stop();
        QTRY_VERIFY(isOver);
        QVERIFY(isCancelled);
        QVERIFY(::kill(contentsOf(_folder->filePath(u"pid"_s)).trimmed().toInt(), 0) != 0);
    }

    void theScriptEscapesDoubleQuotesAndNothingElse_data() {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("script");
        QTest::newRow("plain") << u"rm -f '/a'"_s << u"do shell script \"rm -f '/a'\" with administrator privileges"_s;
        QTest::newRow("double quotes") << u"rm -f '/a \"b\"'"_s
                                       << u"do shell script \"rm -f '/a \\\"b\\\"'\" with administrator privileges"_s;
        QTest::newRow("backslash and single quote")
            << u"a\\ 'b$"_s << u"do shell script \"a\\ 'b$\" with administrator privileges"_s;
        QTest::newRow("empty") << u""_s << u"do shell script \"\" with administrator privileges"_s;
    }
    void theScriptEscapesDoubleQuotesAndNothingElse() {
        QFETCH(QString, command);
        QFETCH(QString, script);
        QCOMPARE(administratorScript(command), script);
    }
};

QTEST_GUILESS_MAIN(TestRaisedShell)
#include "tst_raisedshell.moc"
