#include "SetupWindow.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Event = ServerEvent;
using Mode = SetupCoordinator::Mode;
using Screen = SetupCoordinator::Screen;

namespace {

const auto allInstalled =
    R"({"ok":true,"tools":[{"id":"yt-dlp","name":"yt-dlp","status":"ok","detail":"1"},{"id":"ffmpeg","name":"ffmpeg","status":"ok","detail":"1"}]})";
const auto oneMissing =
    R"({"ok":false,"tools":[{"id":"yt-dlp","name":"yt-dlp","status":"ok","detail":"1"},{"id":"ffmpeg","name":"ffmpeg","status":"missing","detail":"No network"}]})";
const auto advice = "Check your internet connection, or install Homebrew from https://brew.sh, then try again.";

void say(SetupWindow &bench, const ServerEvent &event) {
    bench.engine->emit(HelperEvent::server(event));
    settleDown();
}

SafeConfig connected(bool apple, bool spotify) {
    SafeConfig config = SetupWindow::bare();
    config.appleMusicConnected = apple;
    config.spotifyConnected = spotify;
    return config;
}

QString value(const SetupWindow &bench, const char *row) {
    return bench.part(row, "recapValue")->property("text").toString();
}

} // namespace

class SetupToolsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanup() { settleDown(); }

    void theToolsAreInstalledAsTheScreenComesUp() {
        SetupWindow bench;
        bench.open();
        QCOMPARE(bench.engine->sentCount(Method::provisionTools), 0);
        bench.press("setupPrimary");
        QTRY_COMPARE(bench.engine->sentCount(Method::provisionTools), 1);
        QVERIFY(bench.shows(
            u"zelk needs a couple of small open-source tools (yt-dlp and ffmpeg) to download and convert audio."_s));
        QCOMPARE(bench.part("tool0", "toolName")->property("text").toString(), u"yt-dlp"_s);
        QCOMPARE(bench.part("tool1", "toolName")->property("text").toString(), u"ffmpeg"_s);
        // While it runs there is nothing but the rows.
        QVERIFY(!bench.item("toolsReady") && !bench.item("toolsFailed") && !bench.item("toolsLog"));
    }

    void aRowFollowsItsTool() {
        SetupWindow bench;
        bench.openAt(Screen::prepareTools);
        QTRY_COMPARE(bench.tools()->phase(), ProvisioningPhase::running);
        QVERIFY(bench.part("tool1", "toolSpinner") && !bench.part("tool1", "toolBar"));
        say(bench, Event::ToolProgress{u"ffmpeg"_s, ToolPhase::download, 63, u"28 MB"_s});
        QTRY_VERIFY(bench.part("tool1", "toolBar"));
        QCOMPARE(bench.part("tool1", "toolBar")->property("value").toReal(), 0.63);
        QCOMPARE(spoken(bench.part("tool1", "toolBar"), QAccessible::Description), u"63 percent"_s);
        QCOMPARE(bench.part("tool1", "toolBar")->width(), 220.0);
        QVERIFY(!bench.part("tool1", "toolSpinner") && !bench.shows(u"28 MB"_s));
        say(bench, Event::ToolProgress{u"ffmpeg"_s, ToolPhase::download, 130, {}});
        QTRY_COMPARE(bench.part("tool1", "toolBar")->property("value").toReal(), 1.0);
        say(bench, Event::ToolProgress{u"ffmpeg"_s, ToolPhase::download, -1, {}});
        QTRY_COMPARE(bench.part("tool1", "toolBar")->property("value").toReal(), 0.0);
        say(bench, Event::ToolProgress{u"ffmpeg"_s, ToolPhase::verify, {}, {}});
        QTRY_VERIFY(bench.shows(u"Verifying…"_s));
        QVERIFY(bench.part("tool1", "toolSpinner") && !bench.part("tool1", "toolBar"));
        say(bench, Event::ToolProgress{u"ffmpeg"_s, ToolPhase::install, {}, {}});
        QTRY_VERIFY(bench.shows(u"Installing…"_s));
        say(bench, Event::ToolProgress{u"ffmpeg"_s, ToolPhase::done, {}, {}});
        QTRY_VERIFY(bench.shows(u"Installed"_s));
        QCOMPARE(bench.texts(bench.part("tool1", "toolPill")), QStringList{u"Ready"_s});
        QVERIFY(!bench.part("tool0", "toolPill"));
        say(bench, Event::ToolProgress{u"yt-dlp"_s, ToolPhase::error, {}, {}});
        QTRY_VERIFY(bench.shows(u"Couldn't install"_s));
        QCOMPARE(bench.part("tool0", "toolText")->property("color").value<QColor>(),
                 bench.window.tokens().color()->red);
    }

    void theLastLineOfTheLogShowsWhileItRuns() {
        SetupWindow bench;
        bench.openAt(Screen::prepareTools);
        QTRY_COMPARE(bench.tools()->phase(), ProvisioningPhase::running);
        say(bench, Event::Log{{}, ServerEvent::LogLevel::info, u"ffmpeg: fetched 28.4 MB of 45.1 MB"_s});
        QTRY_COMPARE(bench.texts(bench.item("toolsLog")), QStringList{u"ffmpeg: fetched 28.4 MB of 45.1 MB"_s});
        QCOMPARE(bench.item("toolsLog")->property("elide").toInt(), int(Qt::ElideMiddle));
        bench.engine->release(allInstalled);
        QTRY_VERIFY(!bench.item("toolsLog"));
        QCOMPARE(bench.texts(bench.item("toolsReady")), QStringList{u"All components are ready."_s});
    }

    void aFailureSaysWhyAndOffersAnotherTry() {
        SetupWindow bench;
        bench.engine->reply(Method::provisionTools, oneMissing);
        bench.openAt(Screen::prepareTools);
        QTRY_VERIFY(bench.item("toolsFailed"));
        QCOMPARE(bench.texts(bench.item("toolsFailed")),
                 (QStringList{u"No network"_s, QString::fromLatin1(advice), u"Try Again"_s}));
        // Coming back begins nothing by itself.
        bench.press("setupBack");
        bench.press("setupPrimary");
        settleDown();
        QCOMPARE(bench.engine->sentCount(Method::provisionTools), 1);
        QVERIFY(bench.item("toolsFailed"));
        bench.click(bench.item("toolsTryAgain"));
        QTRY_COMPARE(bench.engine->sentCount(Method::provisionTools), 2);
        QVERIFY(!bench.item("toolsFailed"));
        bench.engine->release(allInstalled);
        QTRY_VERIFY(bench.item("toolsReady"));
    }

    void aFailureWithoutAWordStillGivesItsAdvice() {
        SetupWindow bench;
        bench.engine->reply(Method::provisionTools, QByteArray(oneMissing).replace("No network", ""));
        bench.openAt(Screen::prepareTools);
        QTRY_VERIFY(bench.item("toolsFailed"));
        QVERIFY(!bench.item("toolsFailure"));
        QVERIFY(bench.shows(QString::fromLatin1(advice)));
    }

    void whatIsReadyAlreadyIsShownAndNotBegunAgain() {
        SetupWindow bench;
        bench.engine->reply(Method::provisionTools, allInstalled);
        startTask(bench.tools(), [&bench](const std::stop_token &) { return bench.tools()->provision(); });
        QTRY_VERIFY(bench.tools()->isReady());
        bench.open(Mode::reRun);
        QVERIFY(bench.item("toolsReady"));
        QCOMPARE(bench.items("toolPill").size(), 2);
        QVERIFY(bench.item("setupPrimary")->isEnabled());
        settleDown();
        QCOMPARE(bench.engine->sentCount(Method::provisionTools), 1);
    }

    void theEndRecapsWhatWasChosen() {
        SetupWindow bench;
        SafeConfig config = connected(true, true);
        config.sources = {SourceId::youtube, SourceId::soulseek};
        bench.openAt(Screen::finish, config);
        QCOMPARE(bench.texts(bench.item("setupBody")),
                 (QStringList{u"You're all set"_s, u"zelk is ready to build your library."_s, u"Playlist sources"_s,
                              u"Apple Music, Spotify"_s, u"Download sources"_s, u"YouTube, Soulseek"_s, u"Quality"_s,
                              u"Best"_s, u"Saved to"_s, u"~/Music/DjayImport"_s, u"Change…"_s,
                              u"Select playlists in the sidebar and press Sync. Downloads land in your djay watch "
                              "folder automatically."_s}));
        bench.coordinator()->setQualityProfile(QualityProfile::fast);
        QCOMPARE(value(bench, "recapQuality"), u"Fast"_s);
    }

    void onlyMissingPlaylistsReadAsNoneYet() {
        SetupWindow bench;
        SafeConfig config = connected(false, false);
        config.sources = {};
        bench.openAt(Screen::finish, config);
        QCOMPARE(value(bench, "recapAccounts"), u"None yet"_s);
        QCOMPARE(value(bench, "recapSources"), QString());
        bench.consent->status = ConsentStatus::authorized;
        bench.monitor->recheck();
        QCOMPARE(value(bench, "recapAccounts"), u"Apple Music (local)"_s);
        bench.configure(connected(true, false));
        QCOMPARE(value(bench, "recapAccounts"), u"Apple Music"_s);
    }

    void theFolderChosenAtTheEndIsTheOneThatCounts() {
        SetupWindow bench;
        bench.openAt(Screen::finish, connected(true, true));
        QVERIFY(bench.part("recapFolder", "recapButton"));
        QCOMPARE(bench.part("recapFolder", "recapValue")->property("elide").toInt(), int(Qt::ElideMiddle));
        bench.folders->next = u"/music/sets"_s;
        bench.click(bench.part("recapFolder", "recapButton"));
        QTRY_COMPARE(value(bench, "recapFolder"), u"/music/sets"_s);
        bench.press("setupPrimary");
        QTRY_COMPARE(bench.engine->sentCount(Method::setConfig), 1);
        const auto *sent = caseOf<Request::SetConfig>(bench.engine->sent().back());
        QVERIFY(sent);
        QCOMPARE(sent->patch.outputDir, std::optional(u"/music/sets"_s));
    }
};

QTEST_MAIN(SetupToolsTest)
#include "tst_setuptools.moc"
