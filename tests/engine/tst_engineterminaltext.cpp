// What the terminal is given to show, and what is typed there: as tables, without a program.
#include "Serve/CommandLine.h"
#include "Terminal/Choice.h"
#include "Terminal/HelpTexts.h"
#include "Terminal/PlainText.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace zelk;
using namespace zelk::engine;

namespace {

using Verb = CommandLine::Verb;

PlaylistDTO listOf(const QString &id, const QString &name, const QString &parent = {}, bool isFolder = false) {
    PlaylistDTO playlist;
    playlist.id = id;
    playlist.source = PlaylistSourceId::spotify;
    playlist.name = name;
    playlist.isFolder = isFolder;
    if (!parent.isEmpty()) {
        playlist.parentId = parent;
    }
    playlist.trackCount = 3;
    return playlist;
}

std::vector<NamedPlaylist> library() {
    return namePlaylists({listOf(u"s:1"_s, u"House"_s), listOf(u"s:2"_s, u"Deep Sets"_s, {}, true),
                          listOf(u"s:3"_s, u"House"_s, u"s:2"_s), listOf(u"s:4"_s, u"Tram Lines"_s, u"s:2"_s),
                          listOf(u"s:5"_s, u"Older"_s, u"s:2"_s, true), listOf(u"s:6"_s, u"Café"_s, u"s:5"_s),
                          listOf(u"s:7"_s, u"techno"_s), listOf(u"s:8"_s, u"Techno"_s), listOf(u"s:9"_s, u"Twin"_s),
                          listOf(u"s:10"_s, u"Twin"_s)});
}

QStringList idsOf(const std::vector<NamedPlaylist> &playlists) {
    QStringList ids;
    for (const NamedPlaylist &each : playlists) {
        ids += each.playlist.id;
    }
    return ids;
}

} // namespace

class EngineTerminalText : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aTextCannotSteerATerminal_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shown");
        QTest::newRow("plain") << u"Åsa – Första"_s << u"Åsa – Första"_s;
        QTest::newRow("colour") << u"a\x1b[31mb"_s << u"a\uFFFD[31mb"_s;
        QTest::newRow("title of the window") << u"a\x1b]0;x\x07z"_s << u"a\uFFFD]0;x\uFFFDz"_s;
        QTest::newRow("eight-bit escape") << u"a\u009b2Jb"_s << u"a\uFFFD2Jb"_s;
        QTest::newRow("backspace and delete") << u"a\bb\x7f"_s << u"a\uFFFDb\uFFFD"_s;
        QTest::newRow("breaks") << u"a\r\nb\tc\vd\u0085e\u2028f\u2029g"_s << u"a  b c d e f g"_s;
        QTest::newRow("turned around") << u"a\u202Egpj.\u202C\u2066b\u2069\u200Fc"_s << u"agpj.bc"_s;
        QTest::newRow("hidden")
            << u"a\u200Bb\uFEFFc\u00ADd"_s
            << u"a\u200Bb\uFEFFc\u00ADd"_s.remove(QChar(0x200B)).remove(QChar(0xFEFF)).remove(QChar(0xAD));
        QTest::newRow("joined") << u"👩\u200D🎤"_s << u"👩\u200D🎤"_s;
        QTest::newRow("half a character") << u"a"_s + QChar(0xD800) + u'b' << u"a\uFFFDb"_s;
        QTest::newRow("zero") << u"a"_s + QChar(u'\0') + u'b' << u"a\uFFFDb"_s;
    }

    void aTextCannotSteerATerminal() {
        QFETCH(QString, text);
        QTEST(plainText(text), "shown");
    }

    void columnsAreCountedAsATerminalDoes_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("columns");
        QTest::newRow("nothing") << QString() << 0;
        QTest::newRow("Latin") << u"Åsa"_s << 3;
        QTest::newRow("accents apart") << u"A\u030Asa"_s << 3;
        QTest::newRow("Japanese") << u"東京"_s << 4;
        QTest::newRow("Korean") << u"서울"_s << 4;
        QTest::newRow("half width") << u"ﾄｳ"_s << 2;
        QTest::newRow("emoji") << u"🎧"_s << 2;
        QTest::newRow("mixed") << u"DJ 東"_s << 5;
    }

    void columnsAreCountedAsATerminalDoes() {
        QFETCH(QString, text);
        QTEST(columnsOf(text), "columns");
    }

    void aTextIsCutBetweenCharactersAndNeverTooLong_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("columns");
        QTest::addColumn<QString>("cut");
        QTest::newRow("fits") << u"abc"_s << 3 << u"abc"_s;
        QTest::newRow("one too long") << u"abcd"_s << 3 << u"ab…"_s;
        QTest::newRow("wide ones fit") << u"東京"_s << 4 << u"東京"_s;
        QTest::newRow("half of a wide one") << u"東京都"_s << 4 << u"東…"_s;
        QTest::newRow("all of a wide one") << u"東京都"_s << 5 << u"東京…"_s;
        QTest::newRow("accent stays") << u"ae\u0301bcd"_s << 3 << u"ae\u0301…"_s;
        QTest::newRow("accent goes with its letter") << u"abe\u0301cd"_s << 3 << u"ab…"_s;
        QTest::newRow("family stays together") << u"👩\u200D👩\u200D👧abc"_s << 6 << u"…"_s;
        QTest::newRow("no room") << u"abc"_s << 1 << u"…"_s;
        QTest::newRow("none at all") << u"abc"_s << 0 << QString();
        QTest::newRow("less than none") << u"abc"_s << -5 << QString();
    }

    void aTextIsCutBetweenCharactersAndNeverTooLong() {
        QFETCH(QString, text);
        QFETCH(int, columns);
        const QString cut = cutTo(text, columns);
        QTEST(cut, "cut");
        QVERIFY(columnsOf(cut) <= std::max(columns, 0));
    }

    void paddingCountsColumns() {
        QCOMPARE(padded(u"東"_s, 4), u"東  "_s);
        QCOMPARE(paddedLeft(u"東"_s, 4), u"  東"_s);
        QCOMPARE(padded(u"abc"_s, 2), u"abc"_s);
    }

    void aNameMeansOnePlaylist_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("ids");
        QTest::newRow("name") << u"Tram Lines"_s << QStringList{u"s:4"_s};
        QTest::newRow("without case") << u"tram lines"_s << QStringList{u"s:4"_s};
        QTest::newRow("path") << u"Deep Sets/House"_s << QStringList{u"s:3"_s};
        QTest::newRow("path without case") << u"deep sets/older/café"_s << QStringList{u"s:6"_s};
        QTest::newRow("id") << u"s:1"_s << QStringList{u"s:1"_s};
        QTest::newRow("exact before case") << u"techno"_s << QStringList{u"s:7"_s};
        QTest::newRow("accents apart") << u"Cafe\u0301"_s << QStringList{u"s:6"_s};
        QTest::newRow("folder with folders") << u"Deep Sets"_s << QStringList({u"s:3"_s, u"s:4"_s, u"s:6"_s});
        QTest::newRow("inner folder") << u"older"_s << QStringList{u"s:6"_s};
    }

    void aNameMeansOnePlaylist() {
        QFETCH(QString, name);
        QTEST(idsOf(choosePlaylists(library(), {name})), "ids");
    }

    void aNameThatMeansNoneOrSeveralNamesTheCandidates_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QStringList>("candidates");
        QTest::newRow("several") << u"House"_s << u"\"House\" means 2 playlists"_s
                                 << QStringList({u"s:1  House (3 tracks, Spotify)"_s,
                                                 u"s:3  Deep Sets/House (3 tracks, Spotify)"_s});
        QTest::newRow("several without case")
            << u"TECHNO"_s << u"\"TECHNO\" means 2 playlists"_s
            << QStringList({u"s:7  techno (3 tracks, Spotify)"_s, u"s:8  Techno (3 tracks, Spotify)"_s});
        QTest::newRow("mistyped") << u"Trem Lines"_s << u"there is no playlist \"Trem Lines\""_s
                                  << QStringList{u"s:4  Deep Sets/Tram Lines (3 tracks, Spotify)"_s};
        QTest::newRow("part of it") << u"tram"_s << u"there is no playlist \"tram\""_s
                                    << QStringList{u"s:4  Deep Sets/Tram Lines (3 tracks, Spotify)"_s};
        QTest::newRow("a folder") << u"deep"_s << u"there is no playlist \"deep\""_s
                                  << QStringList{u"s:2  Deep Sets (folder, Spotify)"_s};
        QTest::newRow("nothing like it") << u"xyzzy"_s << u"there is no playlist \"xyzzy\""_s << QStringList();
        QTest::newRow("empty") << QString() << u"there is no playlist \"\""_s << QStringList();
    }

    void aNameThatMeansNoneOrSeveralNamesTheCandidates() {
        QFETCH(QString, name);
        try {
            choosePlaylists(library(), {u"Tram Lines"_s, name});
            QFAIL("it was taken");
        } catch (const ChoiceProblem &problem) {
            QTEST(problem.message(), "message");
            QTEST(problem.candidates(), "candidates");
        }
    }

    void playlistsComeInTheLibrarysOrderAndOnce() {
        QCOMPARE(idsOf(choosePlaylists(library(), {u"s:7"_s, u"Tram Lines"_s, u"Deep Sets"_s, u"s:1"_s})),
                 QStringList({u"s:1"_s, u"s:3"_s, u"s:4"_s, u"s:6"_s, u"s:7"_s}));
        QCOMPARE(choosePlaylists(library(), {}).size(), std::size_t(8)); // without the folders
        QVERIFY(choosePlaylists({}, {}).empty());
    }

    void onlyPlaylistsOfOnePathNeedTheirIds() {
        QStringList ambiguous;
        for (const NamedPlaylist &each : library()) {
            if (each.isAmbiguous) {
                ambiguous += each.playlist.id;
            }
        }
        QCOMPARE(ambiguous, QStringList({u"s:9"_s, u"s:10"_s}));
    }

    void commandLinesAreRead_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("verb");
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QString>("switches");
        const auto row = [](const char *title, const QString &arguments, Verb verb, const QStringList &names = {},
                            const char *switches = "") {
            QTest::newRow(title) << arguments.split(u'|') << static_cast<int>(verb) << names
                                 << QString::fromLatin1(switches);
        };
        row("serve", u"serve"_s, Verb::Serve);
        row("list", u"list"_s, Verb::List);
        row("sync all", u"sync"_s, Verb::Sync);
        row("sync some", u"sync|A|B c"_s, Verb::Sync, {u"A"_s, u"B c"_s});
        row("switches anywhere", u"sync|A|--dry-run|B|--cleanup"_s, Verb::Sync, {u"A"_s, u"B"_s}, "dry cleanup");
        row("names behind --", u"sync|--dry-run|--|--cleanup|--|-h"_s, Verb::Sync, {u"--cleanup"_s, u"--"_s, u"-h"_s},
            "dry");
        row("a dash is a name", u"sync|-"_s, Verb::Sync, {u"-"_s});
        row("an empty name", u"sync|"_s, Verb::Sync, {QString(u""_s)});
        row("review", u"review"_s, Verb::Review);
        row("doctor", u"doctor"_s, Verb::Doctor);
        row("doctor that fixes", u"doctor|--fix"_s, Verb::Doctor, {}, "fix");
    }

    void commandLinesAreRead() {
        QFETCH(QStringList, arguments);
        const CommandLine line = readCommandLine(arguments);
        QTEST(static_cast<int>(line.verb), "verb");
        QTEST(line.names, "names");
        QStringList switches;
        switches += line.dryRun ? u"dry"_s : QString();
        switches += line.cleanup ? u"cleanup"_s : QString();
        switches += line.fix ? u"fix"_s : QString();
        QTEST(switches.join(u' ').simplified(), "switches");
        QCOMPARE(line.output, QString());
    }

    void wrongUseSaysWhatAndHow_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("output");
        QTest::newRow("unknown option")
            << QStringList({u"sync"_s, u"--fast"_s})
            << u"zelk: unknown option \"--fast\"\nUsage: zelk sync [--dry-run] [--cleanup] [NAME...]\nTry \"zelk sync --help\".\n"_s;
        QTest::newRow("another verb's option")
            << QStringList({u"list"_s, u"--fix"_s})
            << u"zelk: unknown option \"--fix\"\nUsage: zelk list\nTry \"zelk list --help\".\n"_s;
        QTest::newRow("a name too many")
            << QStringList({u"review"_s, u"House"_s})
            << u"zelk: \"review\" takes no names, and \"House\" is one\nUsage: zelk review\nTry \"zelk review --help\".\n"_s;
        QTest::newRow("an escape sequence")
            << QStringList{u"\x1b[2J"_s}
            << u"zelk: unknown command \"\uFFFD[2J\"\nUsage: zelk list | sync | review | doctor | serve | --version | --help\nTry \"zelk --help\".\n"_s;
    }

    void wrongUseSaysWhatAndHow() {
        QFETCH(QStringList, arguments);
        const CommandLine line = readCommandLine(arguments);
        QTEST(line.output, "output");
        QCOMPARE(line.exitStatus, 2);
        QCOMPARE(line.verb, Verb::None);
    }

    void helpIsAsWideAsATerminalAndNamesEachVerbAndSwitch() {
        QStringList texts{helpText()};
        for (const Verb verb : {Verb::Serve, Verb::List, Verb::Sync, Verb::Review, Verb::Doctor}) {
            texts += helpText(verb);
            QVERIFY(helpText(verb).startsWith(usageOf(verb)));
            QVERIFY(helpText(verb).contains("Exit status:"_L1));
        }
        for (const QString &text : texts) {
            for (const QString &line : text.split(u'\n')) {
                QVERIFY2(line.size() <= 92, qPrintable(line));
            }
        }
        for (const auto &word :
             {"serve"_L1, "list"_L1, "sync"_L1, "review"_L1, "doctor"_L1, "--version"_L1, "--help"_L1}) {
            QVERIFY(helpText().contains(word));
        }
        QVERIFY(helpText(Verb::Sync).contains("--dry-run"_L1) && helpText(Verb::Sync).contains("--cleanup"_L1));
        QVERIFY(helpText(Verb::Sync).contains("without a NAME,\nall of them"_L1));
        QVERIFY(helpText(Verb::Doctor).contains("--fix"_L1));
    }

    void helpIsGivenWhereverItIsAskedFor() {
        QCOMPARE(readCommandLine({u"sync"_s, u"A"_s, u"--help"_s}).output, helpText(Verb::Sync));
        QCOMPARE(readCommandLine({u"doctor"_s, u"-h"_s}).output, helpText(Verb::Doctor));
        QCOMPARE(readCommandLine({u"--help"_s}).output, helpText());
        QCOMPARE(readCommandLine({u"sync"_s, u"--"_s, u"--help"_s}).names, QStringList{u"--help"_s});
    }
};

QTEST_GUILESS_MAIN(EngineTerminalText)
#include "tst_engineterminaltext.moc"
