#include "Styling/Symbols.h"
#include "Views/Onboarding/SetupRecap.h"
#include "Views/Onboarding/SetupTexts.h"
#include "Views/Onboarding/ToolRowFace.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Screen = SetupCoordinator::Screen;
using Tool = ToolProvisioningStore::ToolProgress;

class SetupTextsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Q_INIT_RESOURCE(symbols); }

    void whatStandsOverAScreen_data() {
        QTest::addColumn<Screen>("screen");
        QTest::addColumn<QString>("symbol");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("subtitle");
        QTest::newRow("welcome") << Screen::welcome << QString() << QString() << QString();
        QTest::newRow("prepareTools") << Screen::prepareTools << u"arrow.down.circle"_s << u"Getting things ready"_s
                                      << QString();
        QTest::newRow("connectMusic")
            << Screen::connectMusic << u"music.note"_s << u"Connect your music"_s
            << u"Choose where zelk reads your playlists. You can add more later in Settings."_s;
        QTest::newRow("downloadSources")
            << Screen::downloadSources << u"square.stack.3d.up"_s << u"Service setup"_s
            << u"Choose where zelk finds audio, and optionally route it through a VPN. The defaults work great."_s;
        QTest::newRow("fineTuning") << Screen::fineTuning << u"slider.horizontal.3"_s << u"Quality & downloads"_s
                                    << u"Choose where files are saved and your audio quality."_s;
        QTest::newRow("finish") << Screen::finish << QString() << QString() << QString();
    }
    void whatStandsOverAScreen() {
        QFETCH(Screen, screen);
        QFETCH(QString, title);
        const auto info = headerInfo(screen);
        QCOMPARE(info.has_value(), !title.isEmpty());
        if (!info)
            return;
        QTEST(info->symbol, "symbol");
        QTEST(info->title, "title");
        QTEST(info->subtitle, "subtitle");
        QVERIFY(Symbols::contains(info->symbol));
    }

    void theButtonsOfAScreen_data() {
        QTest::addColumn<Screen>("screen");
        QTest::addColumn<QString>("primary");
        QTest::addColumn<bool>("skip");
        QTest::newRow("welcome") << Screen::welcome << u"Get Started"_s << false;
        QTest::newRow("prepareTools") << Screen::prepareTools << u"Continue"_s << false;
        QTest::newRow("connectMusic") << Screen::connectMusic << u"Continue"_s << true;
        QTest::newRow("downloadSources") << Screen::downloadSources << u"Continue"_s << true;
        QTest::newRow("fineTuning") << Screen::fineTuning << u"Continue"_s << true;
        QTest::newRow("finish") << Screen::finish << u"Start Using zelk"_s << false;
    }
    void theButtonsOfAScreen() {
        QFETCH(Screen, screen);
        QTEST(primaryText(screen), "primary");
        QTEST(offersSkip(screen), "skip");
    }

    void theRowOfATool_data() {
        QTest::addColumn<Tool>("tool");
        QTest::addColumn<ToolRowFace>("face");
        const auto tool = [](ToolPhase phase, std::optional<double> percent = {}, std::optional<QString> detail = {}) {
            return Tool{u"ffmpeg"_s, u"ffmpeg"_s, percent, phase, std::move(detail)};
        };
        const auto face = [](const char *symbol, Ink ink) {
            ToolRowFace made;
            made.name = u"ffmpeg"_s;
            made.symbol = QString::fromLatin1(symbol);
            made.ink = ink;
            return made;
        };
        const auto measured = [&face](double value, const char *text) {
            ToolRowFace made = face("arrow.down.circle", Ink::accent);
            made.measured = true;
            made.value = value;
            made.valueText = QString::fromLatin1(text);
            return made;
        };
        QTest::newRow("download at 43") << tool(ToolPhase::download, 43, u"unseen"_s) << measured(0.43, "43 percent");
        QTest::newRow("download at 130 is full") << tool(ToolPhase::download, 130) << measured(1, "100 percent");
        QTest::newRow("download below nothing is empty") << tool(ToolPhase::download, -5) << measured(0, "0 percent");
        ToolRowFace busy = face("arrow.down.circle", Ink::accent);
        busy.busy = true;
        QTest::newRow("download of no known size") << tool(ToolPhase::download, {}, u"unseen"_s) << busy;
        busy.text = u"Verifying…"_s;
        QTest::newRow("verify") << tool(ToolPhase::verify, 50, u"unseen"_s) << busy;
        busy.text = u"Installing…"_s;
        QTest::newRow("install") << tool(ToolPhase::install, 50, u"unseen"_s) << busy;
        ToolRowFace done = face("checkmark.circle.fill", Ink::green);
        done.text = u"Installed"_s;
        done.done = true;
        QTest::newRow("done") << tool(ToolPhase::done, 100, u"unseen"_s) << done;
        ToolRowFace failed = face("exclamationmark.triangle.fill", Ink::red);
        failed.failed = true;
        failed.text = u"Disk full"_s;
        QTest::newRow("error") << tool(ToolPhase::error, 50, u"Disk full"_s) << failed;
        failed.text = u"Couldn't install"_s;
        QTest::newRow("error without a detail") << tool(ToolPhase::error) << failed;
    }
    void theRowOfATool() {
        QFETCH(Tool, tool);
        QFETCH(ToolRowFace, face);
        QVERIFY(toolRowFace(tool) == face);
        QVERIFY(Symbols::contains(face.symbol));
    }

    void wherePlaylistsComeFrom_data() {
        QTest::addColumn<bool>("apple");
        QTest::addColumn<bool>("spotify");
        QTest::addColumn<ConsentStatus>("local");
        QTest::addColumn<QString>("text");
        using enum ConsentStatus;
        QTest::newRow("nowhere") << false << false << undetermined << QString();
        QTest::newRow("refused") << false << false << denied << QString();
        QTest::newRow("apple") << true << false << undetermined << u"Apple Music"_s;
        QTest::newRow("local") << false << false << authorized << u"Apple Music (local)"_s;
        QTest::newRow("the account hides the local library") << true << false << authorized << u"Apple Music"_s;
        QTest::newRow("spotify") << false << true << undetermined << u"Spotify"_s;
        QTest::newRow("both") << true << true << authorized << u"Apple Music, Spotify"_s;
        QTest::newRow("local and spotify") << false << true << authorized << u"Apple Music (local), Spotify"_s;
    }
    void wherePlaylistsComeFrom() {
        QFETCH(bool, apple);
        QFETCH(bool, spotify);
        QFETCH(ConsentStatus, local);
        QTEST(playlistSummary(apple, spotify, local), "text");
    }

    void theRowsAtTheEnd_data() {
        QTest::addColumn<int>("place");
        QTest::addColumn<QString>("symbol");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("valueOfNothing");
        QTest::newRow("accounts") << 0 << u"music.note.list"_s << u"Playlist sources"_s << u"a"_s << u"None yet"_s;
        QTest::newRow("sources") << 1 << u"square.and.arrow.down"_s << u"Download sources"_s << u"b"_s << QString();
        QTest::newRow("quality") << 2 << u"waveform"_s << u"Quality"_s << u"c"_s << QString();
        QTest::newRow("folder") << 3 << u"folder"_s << u"Saved to"_s << u"d"_s << QString();
    }
    void theRowsAtTheEnd() {
        QFETCH(int, place);
        const auto rows = recapRows({.playlists = u"a"_s, .sources = u"b"_s, .quality = u"c"_s, .folder = u"d"_s});
        QCOMPARE(rows.size(), 4u);
        const RecapFace &row = rows.at(static_cast<std::size_t>(place));
        QTEST(row.symbol, "symbol");
        QTEST(row.title, "title");
        QTEST(row.value, "value");
        QCOMPARE(row.isFolder, place == 3);
        QVERIFY(Symbols::contains(row.symbol));
        const Recap nothing;
        QTEST(recapRows(nothing).at(static_cast<std::size_t>(place)).value, "valueOfNothing");
    }

    void theSourcesAreNamedInTheOrderOfTheList() {
        QCOMPARE(sourcesSummary({}), QString());
        QCOMPARE(sourcesSummary({SourceId::youtube, SourceId::soulseek}), u"YouTube, Soulseek"_s);
    }
};

QTEST_MAIN(SetupTextsTest)
#include "tst_setuptexts.moc"
