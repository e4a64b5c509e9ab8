// The built program's verbs as a script calls them: with pipes, by what they print and how they end.
#include "engine/TerminalChild.h"

#include <QFileInfo>
#include <QTest>

#include <csignal>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine::testing;

namespace {

/// Somebody with one list of four tracks: one to be had, one twice, one doubtful, one missing.
void fill(const EngineHome &home) {
    home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
    home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
    home.addList(u"Late.csv"_s, {u"One|Ann|2"_s, u"One|Ann|2"_s, u"Slow Burn|Ines|2"_s, u"Gone|Nobody|2"_s});
    home.addList(u"Sets/House.csv"_s, {u"One|Ann|2"_s});
    home.addList(u"House.csv"_s, {u"One|Ann|2"_s});
}

QStringList linesOf(const QString &text) {
    return text.split(u'\n', Qt::SkipEmptyParts);
}

QString lineWith(const QString &text, const QString &word) {
    for (const QString &line : linesOf(text)) {
        if (line.contains(word)) {
            return line;
        }
    }
    return {};
}

} // namespace

class EngineTerminal : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void playlistsAreListedInStableColumns() {
        const EngineHome home;
        fill(home);
        home.addList(u"東京.csv"_s, {u"One|Ann|2"_s});
        const Ended before = runZelk(home, {u"list"_s});
        QCOMPARE(before.status, 0);
        QCOMPARE(before.error, QString());
        QCOMPARE(linesOf(before.out).first(), u"ON DISK  TRACKS  SOURCE   NAME"_s);
        QCOMPARE(lineWith(before.out, u"Late"_s), u"      0       4  Spotify  Late"_s);
        QCOMPARE(runZelk(home, {u"sync"_s, u"Late"_s}).status, 1);
        const Ended after = runZelk(home, {u"list"_s});
        QCOMPARE(lineWith(after.out, u"Late"_s), u"      2       4  Spotify  Late"_s);
        QCOMPARE(lineWith(after.out, u"Sets"_s), u"      1       1  Spotify  Sets/House"_s);
        QCOMPARE(lineWith(after.out, u"東京"_s), u"      1       1  Spotify  東京"_s);
        QCOMPARE(linesOf(after.out).size(), 5);
        QVERIFY(!after.out.contains(u'\x1b'));
    }

    void playlistsOfOnePathAreListedWithTheIdsThatSyncTakes() {
        const EngineHome home;
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.addList(u"Twin.csv"_s, {u"One|Ann|2"_s});
        home.write(home.playlists(u"Twin.m3u8"_s), "#EXTM3U\n#EXTINF:2,Ann - One\none.mp3\n");
        const Ended listed = runZelk(home, {u"list"_s});
        const QString line = lineWith(listed.out, u"Spotify"_s);
        const QString id = line.section(u'[', -1).chopped(1);
        QVERIFY2(id.startsWith("spotify:"_L1), qPrintable(listed.out));
        QCOMPARE(listed.out.count("  ["_L1), 2);
        const Ended refused = runZelk(home, {u"sync"_s, u"Twin"_s});
        QCOMPARE(refused.status, 2);

        QVERIFY2(refused.error.contains(u"  %1  Twin (1 track, Spotify)"_s.arg(id)), qPrintable(refused.error));
        QVERIFY(home.outputFiles().isEmpty());
        QCOMPARE(runZelk(home, {u"sync"_s, id}).status, 0);
        QCOMPARE(home.outputFiles(), QStringList{u"Ann - One.flac"_s});
    }

    void withoutPlaylistsListSaysWhereTheyBelongAndSyncFails() {
        const EngineHome home;
        const Ended listed = runZelk(home, {u"list"_s});
        QCOMPARE(listed.status, 0);
        QCOMPARE(listed.out, QString());
        QVERIFY(listed.error.contains(home.path(u"Music/zelk/Playlists"_s)));
        const Ended synced = runZelk(home, {u"sync"_s});
        QCOMPARE(synced.status, 1);
        QVERIFY(synced.error.contains(home.path(u"Music/zelk/Playlists"_s)));
    }

    void aSyncTellsOfEachTrackAndWhatIsLeftToDo() {
        const EngineHome home;
        fill(home);
        const Ended ended = runZelk(home, {u"sync"_s, u"late"_s});
        QCOMPARE(ended.status, 1); // one is missing
        QCOMPARE(ended.error, QString());
        const QStringList lines = linesOf(ended.out);
        QCOMPARE(lines.first(), u"Late (4 tracks)"_s);
        QVERIFY(lines.contains("  done     Ann - One"_L1));
        QVERIFY(lines.contains("  on disk  Ann - One"_L1));
        QVERIFY(lines.contains("  review   Ines - Slow Burn"_L1));
        QVERIFY(lineWith(ended.out, u"Gone"_s).startsWith("  failed   Nobody - Gone: Not in your collection."_L1));
        QVERIFY(lines.contains("Summary: 1 done, 1 on disk, 1 flagged, 1 failed, 0 skipped"_L1));
        QCOMPARE(lines.last(), u"1 track waits for your decision. Run \"zelk review\"."_s);
        QCOMPARE(lines.size(), 7);
        QVERIFY(!ended.out.contains(u'\x1b') && !ended.out.contains(u'\r'));
        QCOMPARE(home.outputFiles(), QStringList{u"Ann - One.flac"_s});
    }

    void aSyncInWhichNothingFailsEndsWithZero() {
        const EngineHome home;
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s, u"Slow Burn|Ines|2"_s});
        QCOMPARE(runZelk(home, {u"sync"_s}).status, 0); // a doubtful one is no failure
        const Ended again = runZelk(home, {u"sync"_s});
        QCOMPARE(again.status, 0);
        QVERIFY(again.out.contains("Summary: 0 done, 1 on disk, 1 flagged, 0 failed, 0 skipped\n"_L1));
    }

    void aSyncWithoutNamesTakesAllAndWithAFolderAllInIt() {
        const EngineHome home;
        fill(home);
        const Ended folder = runZelk(home, {u"sync"_s, u"Sets"_s});
        QCOMPARE(folder.status, 0);
        QCOMPARE(linesOf(folder.out).first(), u"House (1 track)"_s);
        QCOMPARE(folder.out.count("track)"_L1), 1);
        const Ended all = runZelk(home, {u"sync"_s});
        QCOMPARE(all.out.count("House (1 track)"_L1), 2);
        QVERIFY(all.out.contains("Late (4 tracks)"_L1));
    }

    void anUnknownOrDoubtfulNameIsWrongUseAndWritesNothing_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("said");
        QTest::newRow("none") << u"xyzzy"_s
                              << u"zelk: there is no playlist \"xyzzy\".\n\"zelk list\" shows all there are.\n"_s;
        QTest::newRow("mistyped") << u"Lste"_s << u"Late (4 tracks, Spotify)"_s;
        QTest::newRow("several") << u"House"_s << u"zelk: \"House\" means 2 playlists."_s;
        QTest::newRow("several, with a path") << u"House"_s << u"  Sets/House (1 track, Spotify)"_s;
    }

    void anUnknownOrDoubtfulNameIsWrongUseAndWritesNothing() {
        QFETCH(QString, name);
        QFETCH(QString, said);
        const EngineHome home;
        fill(home);
        const Ended ended = runZelk(home, {u"sync"_s, u"Late"_s, name});
        QCOMPARE(ended.status, 2);
        QCOMPARE(ended.out, QString());
        QVERIFY2(ended.error.contains(said), qPrintable(ended.error));
        QVERIFY(home.outputFiles().isEmpty());
    }

    void aDryRunWritesNothing() {
        const EngineHome home;
        fill(home);
        const Ended ended = runZelk(home, {u"sync"_s, u"--dry-run"_s, u"Sets"_s});
        QCOMPARE(ended.status, 0);
        QVERIFY(ended.out.contains("  skipped  Ann - One: Would copy "_L1));
        QVERIFY(!QFileInfo::exists(home.output()));
    }

    void leftoversAreNamedAndCleanedUpWhenAskedFor() {
        const EngineHome home;
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.addAudio(u"b.flac"_s, u"Ann"_s, u"Two"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s, u"Two|Ann|2"_s});
        QCOMPARE(runZelk(home, {u"sync"_s}).status, 0);
        home.addList(u"L.csv"_s, {u"Two|Ann|2"_s});
        const Ended told = runZelk(home, {u"sync"_s});
        QVERIFY2(
            told.out.endsWith(
                u"1 file is in no playlist any more:\n  %1\n\"zelk sync --cleanup\" moves them to the Trash.\n"_s.arg(
                    home.output(u"/Ann - One.flac"_s))),
            qPrintable(told.out));
        QCOMPARE(home.outputFiles().size(), 2);
        const Ended cleaned = runZelk(home, {u"sync"_s, u"--cleanup"_s});
        QVERIFY(cleaned.out.contains("0 skipped, 1 removed\n"_L1));
        QCOMPARE(home.outputFiles(), QStringList{u"Ann - Two.flac"_s});
    }

    void anOutputThatCannotBeWrittenFailsAndIsSaidOnce() {
        const EngineHome home;
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        home.write(home.output(), "a file where the folder should be");
        const Ended ended = runZelk(home, {u"sync"_s});
        QCOMPARE(ended.status, 1);
        QCOMPARE(ended.error.count(home.output()), 1);
        QVERIFY(ended.error.startsWith("zelk: "_L1));
    }

    void whatCannotBeReadIsSaidOnStandardError() {
        const EngineHome home;
        home.addList(u"Good.csv"_s, {u"One|Ann|2"_s});
        home.write(home.playlists(u"Bad.csv"_s), "no,known,column\n1,2,3\n");
        const Ended ended = runZelk(home, {u"list"_s});
        QCOMPARE(ended.status, 0);
        QVERIFY2(ended.error.contains("Bad.csv"_L1), qPrintable(ended.error));
        QVERIFY(ended.out.contains("Good"_L1));
    }

    void theDoctorChecksAndFixes() {
        const EngineHome home;
        QVERIFY(QDir(home.playlists({})).removeRecursively());
        const Ended ill = runZelk(home, {u"doctor"_s});
        QCOMPARE(ill.status, 1);
        QVERIFY(lineWith(ill.out, u"Playlists  "_s).startsWith("fail  Playlists"_L1));
        QVERIFY(lineWith(ill.out, u"Output folder"_s).startsWith("warn  Output folder"_L1));
        QVERIFY(lineWith(ill.out, u"Output folder"_s).endsWith("\"zelk doctor --fix\" makes it."_L1));
        QVERIFY(lineWith(ill.out, u"Collection"_s).startsWith("ok    Collection"_L1));
        QCOMPARE(linesOf(ill.out).size(), 5);
        QVERIFY(!QFileInfo::exists(home.output())); // it only looks
        const Ended fixed = runZelk(home, {u"doctor"_s, u"--fix"_s});
        QCOMPARE(fixed.status, 1); // there is still no playlist in the folder
        QVERIFY(QFileInfo(home.output()).isDir() && QFileInfo(home.playlists({})).isDir());
        QVERIFY(lineWith(fixed.out, u"Output folder"_s).startsWith("ok    Output folder"_L1));
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        const Ended well = runZelk(home, {u"doctor"_s, u"--fix"_s});
        QCOMPARE(well.status, 0);
        QVERIFY(!well.out.contains("fail"_L1));
    }

    void whatTheDoctorCannotFixStaysAFailure() {
        const EngineHome home;
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        home.write(home.path(u"plain"_s), "a file");
        const Ended ended =
            runZelk(home, {u"doctor"_s, u"--fix"_s}, {}, {{u"ZELK_COLLECTION_DIRS"_s, home.path(u"plain/below"_s)}});
        QCOMPARE(ended.status, 1);
        const QString line = lineWith(ended.out, u"Collection"_s);
        QVERIFY2(line.startsWith("fail  Collection"_L1) && line.contains(home.path(u"plain/below"_s)),
                 qPrintable(line));
        QVERIFY(!line.contains("--fix"_L1)); // where it would not help, it isn't offered
    }

    void everyVerbHasHelpAndTheProgramAVersion_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("begins");
        for (const auto &verb : {u"serve"_s, u"list"_s, u"sync"_s, u"review"_s, u"doctor"_s}) {
            QTest::newRow(qPrintable(verb)) << QStringList({verb, u"--help"_s}) << u"Usage: zelk "_s + verb;
        }
        QTest::newRow("all") << QStringList{u"--help"_s} << u"Usage: zelk list\n"_s;
        QTest::newRow("version") << QStringList{u"--version"_s} << u"zelk "_s;
    }

    void everyVerbHasHelpAndTheProgramAVersion() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, begins);
        const EngineHome home;
        const Ended ended = runZelk(home, arguments);
        QCOMPARE(ended.status, 0);
        QCOMPARE(ended.error, QString());
        QVERIFY2(ended.out.startsWith(begins), qPrintable(ended.out));
        QVERIFY(!QFileInfo::exists(home.path(u".local"_s))); // it asks for nothing and leaves nothing
    }

    void wrongUseEndsWithTwoAndSaysHow_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("nothing") << QStringList{};
        QTest::newRow("unknown verb") << QStringList{u"dance"_s};
        QTest::newRow("unknown option") << QStringList({u"sync"_s, u"--fast"_s});
        QTest::newRow("a name for list") << QStringList({u"list"_s, u"House"_s});
        QTest::newRow("a name for doctor") << QStringList({u"doctor"_s, u"House"_s});
        QTest::newRow("an option for serve") << QStringList({u"serve"_s, u"--fix"_s});
    }

    void wrongUseEndsWithTwoAndSaysHow() {
        QFETCH(QStringList, arguments);
        const EngineHome home;
        const Ended ended = runZelk(home, arguments);
        QCOMPARE(ended.status, 2);
        QCOMPARE(ended.out, QString());
        QVERIFY(ended.error.startsWith("zelk: "_L1) && ended.error.contains("Usage: zelk"_L1));
    }

    void aFullDiskBehindTheOutputIsAFailure() {
        const EngineHome home;
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        for (const QString &argument : {u"list"_s, u"--help"_s}) {
            QProcess process;
            process.setProcessEnvironment(environmentIn(home));
            process.setStandardOutputFile(u"/dev/full"_s);
            process.start(QStringLiteral(ENGINE_PROGRAM), {argument});
            QVERIFY(process.waitForFinished());
            QCOMPARE(process.exitCode(), 1);
            QVERIFY(process.readAllStandardError().startsWith("zelk: what there is to say can't be written: "));
        }
    }

    void manyAtOnceOnAFreshHomeDisturbNobody() {
        const EngineHome home;
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        std::vector<std::unique_ptr<QProcess>> processes;
        for (int i = 0; i < 6; ++i) {
            processes.push_back(std::make_unique<QProcess>());
            processes.back()->setProcessEnvironment(environmentIn(home));
            processes.back()->start(QStringLiteral(ENGINE_PROGRAM), {u"list"_s});
        }
        for (const auto &process : processes) {
            QVERIFY(process->waitForFinished(60'000));
            QCOMPARE(process->exitCode(), 0);
            QCOMPARE(process->readAllStandardError(), QByteArray());
        }
    }
};

QTEST_GUILESS_MAIN(EngineTerminal)
#include "tst_engineterminal.moc"
