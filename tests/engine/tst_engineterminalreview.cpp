// The review at a terminal: what it shows, and that each answer is the decision that the window would send.
#include "engine/TerminalChild.h"

#include <QTest>
#include <QUrl>

#include <csignal>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine::testing;

namespace {

/// Somebody with two doubtful tracks, of which the first stands in two rows and has two matches.
void fill(const EngineHome &home) {
    home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
    home.addAudio(u"soulseek/remix.flac"_s, u"Ines"_s, u"Slow Burn (Remix)"_s);
    home.addAudio(u"demo.m4a"_s, u"Zoe"_s, u"Tide (Demo)"_s);
    home.addAudio(u"other/free.flac"_s, u"Somebody"_s, u"Something"_s);
    home.addList(u"Late.csv"_s, {u"Slow Burn|Ines|2"_s, u"Slow Burn|Ines|2"_s, u"Tide|Zoe|2"_s});
}

/// The path that stands under a match's number.
QString pathOf(const EngineHome &home, const QString &shown, int number) {
    const QStringList lines = shown.split(u'\n');
    for (qsizetype i = 0; i + 2 < lines.size(); ++i) {
        if (lines[i].startsWith(u"  %1  "_s.arg(number))) {
            return home.path(lines[i + 2].trimmed().mid(2));
        }
    }
    return {};
}

} // namespace

class EngineTerminalReview : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aTrackIsShownWithItsMatchesAndAskedForOnce() {
        const EngineHome home;
        fill(home);
        QCOMPARE(runZelk(home, {u"sync"_s}).status, 0);
        const Ended ended = runZelk(home, {u"review"_s});
        QCOMPARE(ended.status, 0);
        QCOMPARE(ended.error, QString());
        QVERIFY2(ended.out.startsWith("1 of 2: Ines - Slow Burn (Late, 0:02)\n"_L1), qPrintable(ended.out));
        QVERIFY(ended.out.contains("     Another version: live\n     ~/Music/zelk/Collection/live.mp3\n"_L1));
        QVERIFY(ended.out.contains("     ~/Music/zelk/Collection/soulseek/remix.flac\n"_L1));
        const QString flac = ended.out.section(u'\n', 1, -1).split(u'\n').filter(u"(Remix)"_s).value(0);
        QVERIFY2(flac.contains("Ines - Slow Burn (Remix) (0:02, FLAC, "_L1) && flac.contains("kbps, soulseek, "_L1) &&
                     flac.endsWith(" %)"_L1),
                 qPrintable(flac));
        QVERIFY(ended.out.endsWith("2 tracks still wait for your decision.\n"_L1)); // its input was at the end
        QVERIFY(home.outputFiles().isEmpty());
    }

    void eachAnswerIsADecisionThatIsKept_data() {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("written"); // the number of the match, "free", or nothing
        QTest::newRow("the best") << u"a"_s << u"1"_s;
        QTest::newRow("first") << u"1"_s << u"1"_s;
        QTest::newRow("second") << u" 2 "_s << u"2"_s;
        QTest::newRow("skip") << u"s"_s << u""_s;
        QTest::newRow("path") << u"%1/Music/zelk/Collection/other/free.flac"_s << u"free"_s;
        QTest::newRow("from the home") << u"~/Music/zelk/Collection/other/free.flac"_s << u"free"_s;
        QTest::newRow("from here") << u"./Music/zelk/Collection/other/free.flac"_s << u"free"_s;
        QTest::newRow("address") << u"file://%1/Music/zelk/Collection/other/free.flac"_s << u"free"_s;
    }

    void eachAnswerIsADecisionThatIsKept() {
        QFETCH(QString, answer);
        QFETCH(QString, written);
        const EngineHome home;
        fill(home);
        QCOMPARE(runZelk(home, {u"sync"_s}).status, 0);
        QProcess process;
        process.setProcessEnvironment(environmentIn(home));
        process.setWorkingDirectory(home.path());
        process.start(QStringLiteral(ENGINE_PROGRAM), {u"review"_s});
        process.write((answer.contains("%1"_L1) ? answer.arg(home.path()) : answer).toUtf8() + "\nn\n");
        process.closeWriteChannel();
        QVERIFY(process.waitForFinished());
        const QString shown = QString::fromUtf8(process.readAllStandardOutput());
        QCOMPARE(process.exitCode(), 0);
        QVERIFY2(shown.contains(written.isEmpty() ? "\n  skipped\n2 of 2: "_L1 : "\n  done\n2 of 2: "_L1),
                 qPrintable(shown));
        QVERIFY(shown.endsWith("1 track still waits for your decision.\n"_L1));
        if (written.isEmpty()) {
            QVERIFY(home.outputFiles().isEmpty());
        } else {
            const QString source =
                written == "free"_L1 ? home.collection(u"other/free.flac"_s) : pathOf(home, shown, written.toInt());
            QCOMPARE(home.outputFiles(), QStringList{u"Ines - Slow Burn."_s + source.section(u'.', -1)});
        }
        const Ended again = runZelk(home, {u"sync"_s});
        QCOMPARE(again.out.count(written.isEmpty() ? "  skipped  Ines - Slow Burn: You chose to skip this track."_L1
                                                   : "  on disk  Ines - Slow Burn\n"_L1),
                 2);
        QVERIFY(runZelk(home, {u"review"_s}).out.startsWith("1 of 1: Zoe - Tide"_L1));
    }

    void qAndTheEndKeepTheRest_data() {
        QTest::addColumn<QByteArray>("input");
        QTest::newRow("q") << QByteArray("q\na\na\n");
        QTest::newRow("end") << QByteArray();
        QTest::newRow("later twice") << QByteArray("n\nn\n");
    }

    void qAndTheEndKeepTheRest() {
        QFETCH(QByteArray, input);
        const EngineHome home;
        fill(home);
        QCOMPARE(runZelk(home, {u"sync"_s}).status, 0);
        for (int i = 0; i < 2; ++i) {
            const Ended ended = runZelk(home, {u"review"_s}, input);
            QCOMPARE(ended.status, 0);
            QVERIFY(ended.out.endsWith("2 tracks still wait for your decision.\n"_L1));
        }
        QVERIFY(home.outputFiles().isEmpty());
    }

    void whatIsNotUnderstoodOrCannotBeTakenIsAskedAgain_data() {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("said");
        QTest::newRow("nothing") << QByteArray() << u"Answer with a number"_s;
        QTest::newRow("nonsense") << QByteArray("maybe") << u"Answer with a number"_s;
        QTest::newRow("no such match") << QByteArray("3") << u"There is no match 3."_s;
        QTest::newRow("zero") << QByteArray("0") << u"There is no match 0."_s;
        QTest::newRow("no such file") << QByteArray("/nowhere/at/all.mp3")
                                      << u"zelk: /nowhere/at/all.mp3 can't be used"_s;
        QTest::newRow("escape") << QByteArray("/no\x1b[2Jwhere") << u"/no\uFFFD[2Jwhere"_s;
    }

    void whatIsNotUnderstoodOrCannotBeTakenIsAskedAgain() {
        QFETCH(QByteArray, answer);
        QFETCH(QString, said);
        const EngineHome home;
        fill(home);
        QCOMPARE(runZelk(home, {u"sync"_s}).status, 0);
        const Ended ended = runZelk(home, {u"review"_s}, answer + "\ns\ns\n");
        QCOMPARE(ended.status, 1); // a script's answer wasn't carried out
        QVERIFY2(ended.error.contains(said), qPrintable(ended.error));
        QVERIFY(!ended.error.contains(u'\x1b'));
        QVERIFY(ended.out.endsWith("All decided.\n"_L1));
    }

    void withoutAnythingToDecideItSaysSo() {
        const EngineHome home;
        fill(home);
        const Ended ended = runZelk(home, {u"review"_s});
        QCOMPARE(ended.status, 0);
        QCOMPARE(ended.out, u"No track waits for your decision.\n"_s);
    }

    void aTrackThatHasLeftItsPlaylistIsNotAskedFor() {
        const EngineHome home;
        fill(home);
        QCOMPARE(runZelk(home, {u"sync"_s}).status, 0);
        home.addList(u"Late.csv"_s, {u"Tide|Zoe|2"_s});
        const Ended ended = runZelk(home, {u"review"_s}, "a\n");
        QVERIFY(ended.out.startsWith("1 of 1: Zoe - Tide"_L1));
        QVERIFY(ended.out.endsWith("All decided.\n"_L1));
        QCOMPARE(home.outputFiles(), QStringList{u"Zoe - Tide.m4a"_s});
    }

    void aPersonIsPromptedAndMayMistype() {
        const EngineHome home;
        fill(home);
        QCOMPARE(runZelk(home, {u"sync"_s}).status, 0);
        TerminalChild person(home, {u"review"_s});
        QVERIFY(person.shows("1-2 take one, a the best, s skip, n later, q quit, or a path: "));
        person.type("9\n");
        QVERIFY(person.shows("There is no match 9."));
        QVERIFY(person.shows("or a path: "));
        person.type("1\n");
        QVERIFY(person.shows("done"));
        QVERIFY(person.shows("2 of 2: Zoe - Tide"));
        QVERIFY(person.shows("1 take it, s skip, n later, q quit, or a path: "));
        person.type("\x04"); // the end of the input
        QVERIFY(person.shows("1 track still waits for your decision."));
        QCOMPARE(person.end(), 0);
        QCOMPARE(home.outputFiles().size(), 1);
    }

    void ctrlCAtThePromptEndsItAndKeepsTheRest() {
        const EngineHome home;
        fill(home);
        QCOMPARE(runZelk(home, {u"sync"_s}).status, 0);
        TerminalChild person(home, {u"review"_s});
        QVERIFY(person.shows("or a path: "));
        person.type("\x03");
        QCOMPARE(person.end(), -SIGINT);
        QVERIFY(runZelk(home, {u"review"_s}).out.endsWith("2 tracks still wait for your decision.\n"_L1));
    }
};

QTEST_GUILESS_MAIN(EngineTerminalReview)
#include "tst_engineterminalreview.moc"
