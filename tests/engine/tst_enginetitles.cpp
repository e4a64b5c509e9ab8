#include "Matching/Fold.h"
#include "Matching/TitleParse.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine;

class EngineTitles : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void spellingsFoldTogether_data() {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::addColumn<bool>("equal");
        QTest::newRow("case") << u"Night DRIVE"_s << u"night drive"_s << true;
        QTest::newRow("sharp s") << u"Straße"_s << u"STRASSE"_s << true;
        QTest::newRow("accents") << u"Beyoncé"_s << u"Beyonce"_s << true;
        QTest::newRow("decomposed") << u"Bjo\u0308rk"_s << u"Bj\u00F6rk"_s << true;
        QTest::newRow("Nordic") << u"Mø Ærø Đorđe"_s << u"Mo Aero Dorde"_s << true;
        QTest::newRow("Polish, French") << u"Łódź cœur"_s << u"Lodz coeur"_s << true;
        QTest::newRow("Icelandic") << u"Þór við"_s << u"Thor vid"_s << true;
        QTest::newRow("Turkish") << u"Işık İZMİR"_s << u"isik izmir"_s << true;
        QTest::newRow("Greek") << u"Ελλάς"_s << u"ελλασ"_s << true;
        QTest::newRow("Cyrillic") << u"Ёлка"_s << u"елка"_s << true;
        QTest::newRow("quotes") << u"Don’t “go”"_s << u"Don't \"go\""_s << true;
        QTest::newRow("dashes") << u"A – B — C"_s << u"A - B - C"_s << true;
        QTest::newRow("and") << u"You & Me + Us"_s << u"you and me and us"_s << true;
        QTest::newRow("full width") << u"ＡＢＣ　１２"_s << u"abc 12"_s << true;
        QTest::newRow("angle quotes") << u"«go» now"_s << u"\"go\" now"_s << true;
        QTest::newRow("full-width and") << u"You＆Me"_s << u"You & Me"_s << true;
        QTest::newRow("Vietnamese") << u"Trần Lạc"_s << u"Tran Lac"_s << true;
        QTest::newRow("a vertical dash") << u"A \uFE31 B"_s << u"A - B"_s << true;
        QTest::newRow("Hebrew keeps its points") << u"שָׁלוֹם"_s << u"שלום"_s << false;
        QTest::newRow("ligature") << u"ﬁne"_s << u"fine"_s << true;
        QTest::newRow("Japanese keeps its marks") << u"が"_s << u"か"_s << false;
        QTest::newRow("Japanese composed") << u"か\u3099"_s << u"が"_s << true;
        QTest::newRow("no transliteration") << u"東京"_s << u"Tokyo"_s << false;
        QTest::newRow("Hindi keeps its marks") << u"कि"_s << u"क"_s << false;
    }

    void spellingsFoldTogether() {
        QFETCH(QString, a);
        QFETCH(QString, b);
        QFETCH(bool, equal);
        QCOMPARE(fold(a) == fold(b), equal);
        QCOMPARE(fold(fold(a)), fold(a));
    }

    void wordsAreJoinedByApostrophesAndParted() {
        QCOMPARE(wordsOf(fold(u"Don't stop-now (it's 5!)"_s)),
                 QStringList({u"dont"_s, u"stop"_s, u"now"_s, u"its"_s, u"5"_s}));
        QCOMPARE(wordsOf(fold(u"!!!"_s)), QStringList{u"!!!"_s});
        QCOMPARE(wordsOf(QString()), QStringList());
    }

    void titlesComeApart_data() {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("core");
        QTest::addColumn<QStringList>("featured");
        QTest::addColumn<QStringList>("version");
        const QStringList none;
        QTest::newRow("plain") << u"Night Drive"_s << u"night drive"_s << none << none;
        QTest::newRow("feat.") << u"Song feat. Ono"_s << u"song"_s << QStringList{u"ono"_s} << none;
        QTest::newRow("(ft)") << u"Song (ft Ono & Kai)"_s << u"song"_s << QStringList{u"ono"_s, u"kai"_s} << none;
        QTest::newRow("[featuring]") << u"Song [featuring Ono]"_s << u"song"_s << QStringList{u"ono"_s} << none;
        QTest::newRow("(with)") << u"Song (with Ono)"_s << u"song"_s << QStringList{u"ono"_s} << none;
        QTest::newRow("with outside") << u"Song with Ono"_s << u"song with ono"_s << none << none;
        QTest::newRow("(with you)") << u"Stay (With You)"_s << u"stay with you"_s << none << none;
        QTest::newRow("a guest in a version") << u"Song (Kai Remix feat. Ono)"_s << u"song"_s << QStringList{u"ono"_s}
                                              << QStringList{u"kai"_s, u"remix"_s};
        QTest::newRow("two neutral ones") << u"Song - Stereo / Remastered 2009"_s << u"song"_s << none << none;
        QTest::newRow("a year apart") << u"Song - 2009 - Remaster"_s << u"song"_s << none << none;
        QTest::newRow("live version") << u"Song (Live Version)"_s << u"song"_s << none << QStringList{u"live"_s};
        QTest::newRow("sped-up") << u"Song (Sped-Up)"_s << u"song"_s << none << QStringList{u"sped"_s, u"up"_s};
        QTest::newRow("no whole word") << u"Feather"_s << u"feather"_s << none << none;
        for (const char *neutral :
             {"Remastered", "Remaster", "2011 Remaster", "Remastered 2011", "Digitally Remastered", "Original Mix",
              "Original Version", "Single Version", "Album Version", "Mono", "Stereo", "Mono Version", "Explicit",
              "Bonus Track", "Deluxe", "Deluxe Edition", "Official Audio", "Official Video", "Official Music Video"}) {
            const QString remark = QString::fromLatin1(neutral);
            QTest::newRow(qPrintable(u"(%1)"_s.arg(remark))) << u"Song (%1)"_s.arg(remark) << u"song"_s << none << none;
            QTest::newRow(qPrintable(u"- "_s + remark)) << u"Song - "_s + remark << u"song"_s << none << none;
        }
        QTest::newRow("remix") << u"Song (Kai Remix)"_s << u"song"_s << none << QStringList{u"kai"_s, u"remix"_s};
        QTest::newRow("- remix") << u"Song - Kai Remix"_s << u"song"_s << none << QStringList{u"kai"_s, u"remix"_s};
        for (const char *version :
             {"Mix", "Edit", "Extended", "Club", "Dub", "VIP", "Bootleg", "Mashup", "Rework", "Live", "Unplugged",
              "Acoustic", "Instrumental", "Karaoke", "Cover", "Demo", "Slowed"}) {
            const QString remark = QString::fromLatin1(version);
            QTest::newRow(version) << u"Song (%1)"_s.arg(remark) << u"song"_s << none << QStringList{remark.toLower()};
        }
        QTest::newRow("a cappella") << u"Song (A Cappella)"_s << u"song"_s << none << QStringList{u"acappella"_s};
        QTest::newRow("acapella") << u"Song (Acapella)"_s << u"song"_s << none << QStringList{u"acappella"_s};
        QTest::newRow("sped up") << u"Song (Sped Up)"_s << u"song"_s << none << QStringList{u"sped"_s, u"up"_s};
        QTest::newRow("both") << u"Song - Live - Remastered 2009"_s << u"song"_s << none << QStringList{u"live"_s};
        QTest::newRow("live word in a title") << u"Live Forever"_s << u"live forever"_s << none << none;
        QTest::newRow("bracketed title") << u"(I Can't) Sleep"_s << u"i cant sleep"_s << none << none;
        QTest::newRow("dash in a title") << u"A - B"_s << u"a b"_s << none << none;
        QTest::newRow("all remark") << u"(Live)"_s << u"live"_s << none << QStringList{u"live"_s};
        QTest::newRow("unclosed") << u"Song (Kai Remix"_s << u"song"_s << none << QStringList{u"kai"_s, u"remix"_s};
        QTest::newRow("all at once") << u"Song (feat. Ono) [Extended Mix] - 2012 Remaster"_s << u"song"_s
                                     << QStringList{u"ono"_s} << QStringList{u"extended"_s, u"mix"_s};
    }

    void titlesComeApart() {
        QFETCH(QString, title);
        const ParsedTitle parsed = parseTitle(title);
        QTEST(parsed.core, "core");
        QTEST(parsed.featured, "featured");
        QTEST(parsed.version, "version");
    }

    void numbersAreFound_data() {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QStringList>("numbers");
        QTest::newRow("Pt. 1") << u"Suite (Pt. 1)"_s << QStringList{u"1"_s};
        QTest::newRow("Part Two") << u"Suite, Part Two"_s << QStringList{u"2"_s};
        QTest::newRow("pt ii") << u"Suite Pt II"_s << QStringList{u"2"_s};
        QTest::newRow("Pt2") << u"Suite Pt2"_s << QStringList{u"2"_s};
        QTest::newRow("Roman at the end") << u"Suite V"_s << QStringList{u"5"_s};
        QTest::newRow("Roman XIV") << u"Suite XIV"_s << QStringList{u"14"_s};
        QTest::newRow("a word") << u"Two Hearts"_s << QStringList{u"2"_s};
        QTest::newRow("a letter") << u"Suite, Side B"_s << QStringList{u"b"_s};
        QTest::newRow("inside of a word") << u"Signal v2"_s << QStringList{u"2"_s};
        QTest::newRow("leading zero") << u"Song 07"_s << QStringList{u"7"_s};
        QTest::newRow("Chinese") << u"第三番"_s << QStringList{u"3"_s};
        QTest::newRow("other digits") << u"أغنية ٢"_s << QStringList{u"2"_s};
        QTest::newRow("in their order") << u"3 of 2"_s << QStringList({u"3"_s, u"2"_s});
        QTest::newRow("none") << u"I Will"_s << QStringList{};
        QTest::newRow("plain") << u"99 Bells"_s << QStringList{u"99"_s};
    }

    void numbersAreFound() {
        QFETCH(QString, title);
        QTEST(parseTitle(title).numbers, "numbers");
    }

    void artistsComeApart_data() {
        QTest::addColumn<QString>("artists");
        QTest::addColumn<QStringList>("list");
        QTest::newRow("comma") << u"Ono, Kai"_s << QStringList{u"ono"_s, u"kai"_s};
        QTest::newRow("&") << u"Ono & Kai"_s << QStringList{u"ono"_s, u"kai"_s};
        QTest::newRow("semicolon") << u"Ono; Kai"_s << QStringList{u"ono"_s, u"kai"_s};
        QTest::newRow("feat.") << u"Ono feat. Kai"_s << QStringList{u"ono"_s, u"kai"_s};
        QTest::newRow("the") << u"The Bells"_s << QStringList{u"bells"_s};
        QTest::newRow("and inside a word") << u"Sandra"_s << QStringList{u"sandra"_s};
    }

    void artistsComeApart() {
        QFETCH(QString, artists);
        QTEST(foldedArtists(artists), "list");
    }

    void versionWordsWithoutBracketsAreFoundInTheCore() {
        QCOMPARE(parseTitle(u"Night Drive Live"_s).bareVersion, QStringList{u"live"_s});
        QCOMPARE(parseTitle(u"Night Drive (Live)"_s).bareVersion, QStringList());
        QCOMPARE(parseTitle(u"Deliverance"_s).bareVersion, QStringList());
    }
};

QTEST_GUILESS_MAIN(EngineTitles)
#include "tst_enginetitles.moc"
