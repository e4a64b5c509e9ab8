// A sync on a terminal of its own: what it draws, what never reaches the terminal, and how signals end it.
#include "engine/TerminalChild.h"

#include "Terminal/PlainText.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

#include <csignal>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine::testing;

namespace {

const QString longTitle = u"東京の夜は七時 a\u0301 very long song that no narrow terminal has room for 終わり"_s;

void fill(const EngineHome &home) {
    home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
    home.addAudio(u"b.flac"_s, u"ピチカート"_s, longTitle);
    home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
    home.addList(u"Late.csv"_s, {u"One|Ann|2"_s, u"%1|ピチカート|2"_s.arg(longTitle), u"Slow Burn|Ines|2"_s});
}

constexpr int largeFiles = 12;

/// Work for a while: files of some size that are written one after the other.
void fillWithLargeFiles(const EngineHome &home) {
    QStringList rows;
    for (int i = 0; i < largeFiles; ++i) {
        home.addWav(u"Ann - Big %1.wav"_s.arg(i), 400 + 60 * i);
        rows += u"Big %1|Ann|%2"_s.arg(i).arg(400 + 60 * i);
    }
    home.addList(u"L.csv"_s, rows);
    home.write(home.path(u".config/zelk/engine.json"_s),
               R"({"run":{"searchCount":5,"concurrency":1,"toleranceSec":5,"searchTimeoutSec":30,"cooloffHours":24}})");
}

QString withoutOurSequences(QByteArray written) {
    QString text = QString::fromUtf8(written);
    static const QRegularExpression ours(u"\r\x1b\\[K|\x1b\\[(?:0|2|31|32|33)m"_s);
    return text.remove(ours);
}

/// Each state that a line has had, without colours.
QStringList drawnLines(const QByteArray &written) {
    QString text = QString::fromUtf8(written);
    static const QRegularExpression colours(u"\x1b\\[(?:0|2|31|32|33)m"_s);
    static const QRegularExpression ends(u"\r\n|\n|\r\x1b\\[K"_s);
    return text.remove(colours).split(ends);
}

bool hasPartialFiles(const EngineHome &home) {
    return !home.outputFiles().filter(QRegularExpression(u"^\\."_s)).isEmpty();
}

} // namespace

class EngineTerminalScreen : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aTerminalShowsABarBelowTheTracks() {
        const EngineHome home;
        fill(home);
        TerminalChild child(home, {u"sync"_s});
        QCOMPARE(child.end(), 0);
        QVERIFY2(child.written().contains("[--------------------] 0/3") ||
                     child.written().contains("[######--------------] 1/3"),
                 child.written().constData());
        QVERIFY(child.written().contains("\x1b[32m  done     \x1b[0m"));
        QVERIFY(child.written().contains("\x1b[33m  review   \x1b[0m"));
        const QStringList screen = screenOf(child.written());
        QVERIFY(screen.contains("  done     Ann - One"_L1));
        QVERIFY(screen.contains("Summary: 2 done, 0 on disk, 1 flagged, 0 failed, 0 skipped"_L1));
        QCOMPARE(screen.last(), QString()); // nothing stays behind of the bar
        QVERIFY(screen.filter(u"["_s).isEmpty());
    }

    void noLineIsWiderThanTheTerminal_data() {
        QTest::addColumn<int>("columns");
        QTest::addColumn<QString>("locale");
        QTest::newRow("20") << 20 << u"C.UTF-8"_s;
        QTest::newRow("40") << 40 << u"C.UTF-8"_s;
        QTest::newRow("79") << 79 << u"C.UTF-8"_s;
        QTest::newRow("40 without a language") << 40 << u"C"_s;
    }

    void noLineIsWiderThanTheTerminal() {
        QFETCH(int, columns);
        QFETCH(QString, locale);
        const EngineHome home;
        fill(home);
        TerminalChild child(home, {u"sync"_s}, {columns, 24}, {{u"LC_ALL"_s, locale}});
        QCOMPARE(child.end(), 0);
        const QStringList lines = drawnLines(child.written());
        int widest = 0;
        for (const QString &line : lines) {
            if (!line.startsWith("Summary"_L1) && !line.contains("zelk review"_L1)) { // these may wrap
                widest = std::max(widest, zelk::engine::columnsOf(line));
            }
        }
        QVERIFY2(widest <= columns, qPrintable(lines.join(u'\n')));
        QVERIFY(!lines.filter(u"ピチ"_s).isEmpty() && !lines.filter(u"…"_s).isEmpty());
    }

    void aNarrowerTerminalIsFollowed() {
        const EngineHome home;
        fillWithLargeFiles(home);
        TerminalChild child(home, {u"sync"_s}, {100, 24});
        QVERIFY(child.shows("copying"));
        child.resize({24, 24});
        QCOMPARE(child.end(), 0);
        int last = 0;
        for (const QString &line : drawnLines(child.written())) {
            last = line.contains(u'/') && !line.contains("tracks"_L1) ? zelk::engine::columnsOf(line) : last;
        }
        QVERIFY(last > 0 && last < 24);
    }

    void terminalsThatCannotOrShallNotAreSpared_data() {
        QTest::addColumn<QString>("term");
        QTest::addColumn<QString>("noColor");
        QTest::addColumn<bool>("draws");
        QTest::addColumn<bool>("colours");
        QTest::newRow("able") << u"xterm"_s << QString() << true << true;
        QTest::newRow("empty NO_COLOR") << u"xterm"_s << u""_s << true << true;
        QTest::newRow("NO_COLOR") << u"xterm"_s << u"1"_s << true << false;
        QTest::newRow("dumb") << u"dumb"_s << QString() << false << false;
        QTest::newRow("unknown") << QString() << QString() << false << false;
    }

    void terminalsThatCannotOrShallNotAreSpared() {
        QFETCH(QString, term);
        QFETCH(QString, noColor);
        QFETCH(bool, draws);
        QFETCH(bool, colours);
        const EngineHome home;
        fill(home);
        TerminalChild child(home, {u"sync"_s}, {}, {{u"TERM"_s, term}, {u"NO_COLOR"_s, noColor}});
        QCOMPARE(child.end(), 0);
        QCOMPARE(child.written().contains("\r\x1b[K"), draws);
        QCOMPARE(child.written().contains("\x1b[3"), colours);
        QCOMPARE(child.written().contains('\x1b'), draws || colours);
        QVERIFY(child.written().contains("  done     "));
    }

    void noTitleSteersTheTerminal_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<bool>("terminal");
        for (const bool terminal : {true, false}) {
            for (const auto &verb : {u"list"_s, u"sync"_s, u"review"_s}) {
                QTest::addRow("%s, %s", qPrintable(verb), terminal ? "terminal" : "pipe")
                    << QStringList{verb} << terminal;
            }
            QTest::addRow("unknown name, %s", terminal ? "terminal" : "pipe")
                << QStringList({u"sync"_s, u"a\x1b]0;owned\x07"_s}) << terminal;
        }
    }

    void noTitleSteersTheTerminal() {
        QFETCH(QStringList, arguments);
        QFETCH(bool, terminal);
        const EngineHome home;
        const QString evil = u"\x1b]0;owned\x07\x1b[2J\u009b5A\u202EOne"_s;
        home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addList(u"L\x1b[31m.csv"_s, {u"Slow Burn\x07\u009b|Ines|2"_s, u"Two%1|Ann|2"_s.arg(evil)});
        home.addList(u"L\x1b[31m/M.csv"_s, {u"Two%1|Ann|2"_s.arg(evil)});
        if (arguments.first() == "review"_L1) {
            runZelk(home, {u"sync"_s});
        }
        QString shown;
        if (terminal) {
            TerminalChild child(home, arguments);
            child.type("q\n");
            QVERIFY(child.end() >= 0);
            shown = withoutOurSequences(child.written());
        } else {
            const Ended ended = runZelk(home, arguments, "q\n");
            shown = ended.out + ended.error;
        }
        QVERIFY2(shown.contains(QChar(0xFFFD)), qPrintable(shown));
        for (const QChar c : {QChar(0x1b), QChar(0x07), QChar(0x9b), QChar(0x202e)}) {
            QVERIFY2(!shown.contains(c), qPrintable(shown));
        }
    }

    void aSignalStopsASyncBetweenFiles_data() {
        QTest::addColumn<int>("signal"); // 0 for a typed Ctrl+C
        QTest::addColumn<int>("status");
        QTest::newRow("Ctrl+C") << 0 << 130;
        QTest::newRow("SIGINT") << SIGINT << 130;
        QTest::newRow("SIGTERM") << SIGTERM << 143;
        QTest::newRow("SIGHUP") << SIGHUP << 129;
    }

    void aSignalStopsASyncBetweenFiles() {
        QFETCH(int, signal);
        QFETCH(int, status);
        const EngineHome home;
        fillWithLargeFiles(home);
        TerminalChild child(home, {u"sync"_s});
        QVERIFY(child.shows("copying"));
        if (signal == 0) {
            child.type("\x03");
        } else {
            child.signal(signal);
        }
        QCOMPARE(child.end(), status);
        const QStringList screen = screenOf(child.written());
        QVERIFY(!screen.filter(u"zelk: stopped. What was finished is kept"_s).isEmpty());
        QVERIFY(!screen.filter(u"  skipped  Ann - Big 11"_s).isEmpty());
        QVERIFY(!hasPartialFiles(home));
        QVERIFY(home.outputFiles().size() < largeFiles);
        QCOMPARE(runZelk(home, {u"sync"_s}).status, 0);
        QCOMPARE(home.outputFiles().size(), largeFiles);
    }

    void aSecondSignalEndsItAtOnce() {
        const EngineHome home;
        fillWithLargeFiles(home);
        TerminalChild child(home, {u"sync"_s});
        QVERIFY(child.shows("copying"));
        child.signal(SIGSTOP); // so that both come before it can do anything about the first
        child.signal(SIGTERM);
        child.signal(SIGINT);
        child.signal(SIGCONT);
        const int status = child.end();
        QVERIFY2(status == -SIGINT || status == -SIGTERM, qPrintable(QString::number(status)));
        QCOMPARE(runZelk(home, {u"sync"_s}).status, 0);
        QVERIFY(!hasPartialFiles(home));
        QCOMPARE(home.outputFiles().size(), largeFiles);
    }

    void ctrlCDoesNotStrikeTheConverter() {
        const EngineHome home;
        home.addAudio(u"a.opus"_s, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        home.write(home.path(u"bin/ffmpeg"_s),
                   "#!/bin/bash\n" // the plain shell would take signals that it was begun without
                   "trap '/bin/touch \"$HOME/struck\"' INT\n"
                   "/bin/touch \"$HOME/begun\"\n"
                   "/bin/sleep 5 & wait\n"
                   "/bin/sleep 5\n");
        ::chmod(qPrintable(home.path(u"bin/ffmpeg"_s)), 0755);
        TerminalChild child(home, {u"sync"_s}, {}, {{u"PATH"_s, home.path(u"bin"_s)}});
        QVERIFY(child.shows("converting"));
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(home.path(u"begun"_s)), 20'000);
        child.type("\x03");
        QCOMPARE(child.end(), 130);
        QVERIFY(!QFileInfo::exists(home.path(u"struck"_s)));
        QVERIFY(!screenOf(child.written()).filter(u"  skipped  Ann - One"_s).isEmpty());
        QVERIFY(home.outputFiles().isEmpty());
    }

    void aTerminalThatGoesAwayStopsASync() {
        const EngineHome home;
        fillWithLargeFiles(home);
        TerminalChild child(home, {u"sync"_s});
        QVERIFY(child.shows("copying"));
        child.hangUp();
        const int status = child.end();
        QVERIFY2(status == 129 || status == 141, qPrintable(QString::number(status)));
        QVERIFY(!hasPartialFiles(home));
    }

    void underNohupASyncGoesOn() {
        const EngineHome home;
        fillWithLargeFiles(home);
        QProcess process;
        process.setProcessEnvironment(environmentIn(home));
        process.setChildProcessModifier([] { ::signal(SIGHUP, SIG_IGN); });
        process.start(QStringLiteral(ENGINE_PROGRAM), {u"sync"_s});
        QTRY_VERIFY_WITH_TIMEOUT(!home.outputFiles().isEmpty(), 20'000);
        ::kill(static_cast<pid_t>(process.processId()), SIGHUP);
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 0);
        QCOMPARE(home.outputFiles().size(), largeFiles);
    }

    void aReaderThatGoesAwayEndsItQuietly_data() {
        QTest::addColumn<QStringList>("arguments");
        for (const auto &verb : {u"list"_s, u"sync"_s, u"review"_s, u"doctor"_s}) {
            QTest::newRow(qPrintable(verb)) << QStringList{verb};
        }
    }

    void aReaderThatGoesAwayEndsItQuietly() {
        QFETCH(QStringList, arguments);
        const EngineHome home;
        fillWithLargeFiles(home);
        int ends[2];
        QCOMPARE(::pipe(ends), 0);
        ::close(ends[0]);
        QProcess process;
        process.setProcessEnvironment(environmentIn(home));
        process.setChildProcessModifier([out = ends[1]] { ::dup2(out, STDOUT_FILENO); });
        process.start(QStringLiteral(ENGINE_PROGRAM), arguments);
        process.closeWriteChannel();
        QVERIFY(process.waitForFinished());
        ::close(ends[1]);
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 128 + SIGPIPE);
        QVERIFY(!process.readAllStandardError().contains("written"));
        QVERIFY(!hasPartialFiles(home));
        QVERIFY(home.outputFiles().size() < largeFiles);
    }

    void aReaderThatPausesDoesNotKeepASignalAway() {
        const EngineHome home;
        QStringList rows;
        for (int i = 0; i < 3'000; ++i) {
            rows += u"Song number %1 of a long list|Ann and a rather long list of friends|2"_s.arg(i);
        }
        home.addList(u"L.csv"_s, rows);
        int ends[2];
        QCOMPARE(::pipe(ends), 0);
        QProcess process;
        process.setProcessEnvironment(environmentIn(home));
        process.setChildProcessModifier([out = ends[1]] { ::dup2(out, STDOUT_FILENO); });
        process.start(QStringLiteral(ENGINE_PROGRAM), {u"sync"_s});
        QVERIFY(process.waitForStarted());
        char first = 0;
        QCOMPARE(::read(ends[0], &first, 1), 1); // it has begun, and soon the pipe is full
        QTest::qSleep(300);
        ::kill(static_cast<pid_t>(process.processId()), SIGTERM);
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 143);
        ::close(ends[0]);
        ::close(ends[1]);
    }
};

QTEST_GUILESS_MAIN(EngineTerminalScreen)
#include "tst_engineterminalscreen.moc"
