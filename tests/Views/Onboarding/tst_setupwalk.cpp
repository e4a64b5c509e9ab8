#include "SetupWindow.h"
#include "Views/Onboarding/SetupTexts.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Mode = SetupCoordinator::Mode;
using Screen = SetupCoordinator::Screen;

namespace {

const auto installed = R"({"ok":true,"tools":[]})";

/// What reached the engine, a line a request.
QStringList lines(const ScriptedClient &engine) {
    QStringList all;
    for (const auto &request : engine.sent()) {
        QString line = QString(wireName(request.method()));
        if (const auto *sent = caseOf<Request::SetConfig>(request))
            line += u' ' + QString::fromUtf8(writeJSON(sent->patch));
        if (const auto *sent = caseOf<Request::StoreAccountToken>(request))
            line += u' ' + QString(wireName(sent->service)) + u'=' + sent->token;
        all += line;
    }
    return all;
}

QString roleOf(QAccessible::Role role) {
    switch (role) {
    case QAccessible::Button:
        return u"button"_s;
    case QAccessible::CheckBox:
        return u"check"_s;
    case QAccessible::RadioButton:
        return u"radio"_s;
    case QAccessible::EditableText:
        return u"field"_s;
    case QAccessible::Heading:
        return u"heading"_s;
    case QAccessible::ProgressBar:
        return u"progress"_s;
    case QAccessible::Graphic:
        return u"graphic"_s;
    case QAccessible::StaticText:
        return u"text"_s;
    default:
        return QString::number(role);
    }
}

/// What a screen reader meets on the sheet, in the order in which it does; "!" for what can be pressed.
QStringList spokenTree(QAccessibleInterface *root) {
    QStringList all;
    for (int i = 0; i < root->childCount(); ++i) {
        QAccessibleInterface *child = root->child(i);
        if (child->state().invisible)
            continue;
        const QString name = child->text(QAccessible::Name);
        if (!name.isEmpty() || child->actionInterface()) {
            const auto *const actions = child->actionInterface();
            const bool presses = actions && const_cast<QAccessibleActionInterface *>(actions)->actionNames().contains(
                                                QAccessibleActionInterface::pressAction());
            all += roleOf(child->role()) + (presses ? u"! "_s : u" "_s) + name;
        }
        all += spokenTree(child);
    }
    return all;
}

QStringList spokenTree(const SetupWindow &bench) {
    return spokenTree(QAccessible::queryAccessibleInterface(bench.item("setupSheet")));
}

} // namespace

class SetupWalkTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanup() { settleDown(); }

    void aNewcomerWalksFromTheWelcomeToAConfiguredLibrary() {
        const auto defaults = freshDefaults();
        SetupWindow bench(defaults);
        const auto &engine = bench.engine;
        QTRY_COMPARE(engine->held(), 1);
        SafeConfig config = SetupWindow::bare();
        config.identity = {false, false};
        config.quality = {QualityFloor::flac, true, true, false};
        engine->release(SetupWindow::wrapped(config));
        QTRY_VERIFY(bench.item("setupPrimary"));
        bench.window.window()->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(bench.window.window()));
        QTRY_VERIFY(bench.item("setupSheet")->hasActiveFocus());

        engine->fail(Method::provisionTools, HelperError::helperUnavailable());
        bench.key(Qt::Key_Return); // the welcome
        QTRY_VERIFY(bench.item("toolsFailed"));
        bench.key(Qt::Key_Return); // leads nowhere
        engine->reply(Method::provisionTools, installed);
        bench.press("toolsTryAgain");
        QTRY_VERIFY(bench.item("setupPrimary")->isEnabled());
        bench.key(Qt::Key_Return);

        QCOMPARE(bench.coordinator()->currentScreen(), Screen::connectMusic);
        config.spotifyConnected = true;
        engine->reply(Method::connectSpotify, "null");
        engine->reply(Method::getConfig, SetupWindow::wrapped(config));
        engine->reply(Method::listPlaylists, R"({"playlists":[]})");
        bench.press(bench.part("spotifyLine", "accountConnect"));
        QTRY_VERIFY(bench.part("spotifyLine", "accountConnected"));
        bench.press("identityEnabled");
        bench.type("acoustidKey", u"key "_s);
        bench.press("setupPrimary");

        bench.press(bench.part("source3", "sourceSwitch"));
        bench.type("sourceToken", u"token"_s);
        bench.type("proxySubscription", u"https://vpn"_s);
        bench.press("setupPrimary");

        bench.press("quality2");
        bench.press("setupSkip");

        QCOMPARE(bench.coordinator()->currentScreen(), Screen::finish);
        engine->reply(Method::setConfig, "null");
        for (int i = 0; i < 2; ++i) {
            engine->reply(Method::getConfig, SetupWindow::wrapped(config));
            engine->reply(Method::storeAccountToken, "null");
        }
        // A secret that the engine doesn't take holds nobody up.
        engine->fail(Method::storeAccountToken, HelperError::helperUnavailable());
        engine->reply(Method::listPlaylists, R"({"playlists":[]})");
        bench.press("setupPrimary");
        QTRY_VERIFY(!bench.item("setupSheet"));
        settleDown();
        QVERIFY(defaults->boolValue(u"didOnboard"_s));
        QCOMPARE(
            lines(*engine),
            (QStringList{
                u"getConfig"_s, u"provisionTools"_s, u"provisionTools"_s, u"connectSpotify"_s, u"getConfig"_s,
                u"listPlaylists"_s,
                u"setConfig {\"sources\":[\"soulseek\",\"bandcamp\",\"soundcloud\"],\"quality\":{\"floor\":\"any\","
                "\"losslessOnly\":false,\"bestQuality\":false,\"upgradeEnabled\":false},\"ui\":{\"theme\":\"dark\"},"
                "\"outputDir\":\"~/Music/DjayImport\",\"identity\":{\"enabled\":true,\"strict\":false}}"_s,
                u"getConfig"_s, u"storeAccountToken soundcloud=token"_s, u"storeAccountToken acoustid=key"_s,
                u"storeAccountToken proxy=https://vpn"_s, u"getConfig"_s, u"listPlaylists"_s}));
    }

    void aReRunKeepsWhatItDoesNotTouch() {
        SetupWindow bench;
        const auto &engine = bench.engine;
        SafeConfig config = SampleData::sampleConfig();
        config.sources = {SourceId::youtube, SourceId::soulseek};
        config.quality = {QualityFloor::any, false, true, false};
        config.identity = {true, true};
        engine->reply(Method::provisionTools, installed);
        bench.open(Mode::reRun, config);
        for (int i = 0; i < 4; ++i) {
            QTRY_VERIFY(bench.item("setupPrimary")->isEnabled());
            bench.key(Qt::Key_Return);
        }
        QCOMPARE(bench.coordinator()->currentScreen(), Screen::finish);
        QCOMPARE(spoken(bench.item("stepDots")), u"Step 5 of 5"_s);
        engine->reply(Method::setConfig, "null");
        for (int i = 0; i < 2; ++i)
            engine->reply(Method::getConfig, SetupWindow::wrapped(config));
        engine->reply(Method::listPlaylists, R"({"playlists":[]})");
        bench.key(Qt::Key_Return);
        QTRY_VERIFY(!bench.item("setupSheet"));
        settleDown();
        QCOMPARE(
            lines(*engine),
            (QStringList{u"getConfig"_s, u"provisionTools"_s,
                         u"setConfig {\"sources\":[\"youtube\",\"soulseek\"],\"quality\":{\"floor\":\"any\","
                         "\"losslessOnly\":false,\"bestQuality\":true,\"upgradeEnabled\":false},\"ui\":{\"theme\":"
                         "\"dark\"},\"outputDir\":\"~/Music/zelk\",\"identity\":{\"enabled\":true,\"strict\":true}}"_s,
                         u"getConfig"_s, u"getConfig"_s, u"listPlaylists"_s}));
    }

    void aReaderMeetsEachScreenInItsOrder_data() {
        QTest::addColumn<Screen>("screen");
        QTest::addColumn<QStringList>("tree");
        QTest::newRow("welcome") << Screen::welcome
                                 << QStringList{u"heading Turn your playlists into a DJ-ready library"_s,
                                                u"text zelk finds and downloads clean audio for the playlists you "
                                                "already love, then drops them straight into your djay library."_s,
                                                u"text Connect Apple Music or Spotify"_s,
                                                u"text zelk downloads matching audio"_s,
                                                u"text Auto-imports into your djay library"_s,
                                                u"text Step 1 of 6"_s,
                                                u"button! Get Started"_s};
        QTest::newRow("prepareTools")
            << Screen::prepareTools
            << QStringList{u"heading Getting things ready"_s,
                           u"text zelk needs a couple of small open-source tools (yt-dlp and ffmpeg) to download and "
                           "convert audio."_s,
                           u"text yt-dlp"_s,
                           u"progress yt-dlp"_s,
                           u"text ffmpeg"_s,
                           u"progress ffmpeg"_s,
                           u"button! Back"_s,
                           u"text Step 2 of 6"_s,
                           u"button! Continue"_s};
        QTest::newRow("connectMusic")
            << Screen::connectMusic
            << QStringList{
                   u"heading Connect your music"_s,
                   u"text Choose where zelk reads your playlists. You can add more later in Settings."_s,
                   u"graphic Apple Music"_s,
                   u"text Apple Music"_s,
                   u"text Sign in to read your Apple Music Cloud library and playlists."_s,
                   u"button! Connect"_s,
                   u"text Use the Music app on this Mac"_s,
                   u"text A backup that reads local playlists — no subscription needed. Requires Automation permission."_s,
                   u"button! Allow Access"_s,
                   u"graphic Spotify"_s,
                   u"text Spotify"_s,
                   u"text Authorize zelk in your browser to read your Spotify playlists."_s,
                   u"button! Connect"_s,
                   u"graphic MusicBrainz + AcoustID"_s,
                   u"text MusicBrainz + AcoustID"_s,
                   u"text Confirm each download is the right recording with MusicBrainz + AcoustID. More accurate, a "
                   "little slower."_s,
                   u"check! Enable MusicBrainz and AcoustID matching"_s,
                   u"check! Reject a download AcoustID flags as a different recording."_s,
                   u"field AcoustID API key (optional)"_s,
                   u"button! Back"_s,
                   u"text Step 3 of 6"_s,
                   u"button! Skip"_s,
                   u"button! Continue"_s};
        QTest::newRow("downloadSources")
            << Screen::downloadSources
            << QStringList{
                   u"heading Service setup"_s,
                   u"text Choose where zelk finds audio, and optionally route it through a VPN. The defaults work great."_s,
                   u"graphic Soulseek"_s,
                   u"text Soulseek"_s,
                   u"text Peer-to-peer lossless sharing — best quality (FLAC). No setup needed."_s,
                   u"check! Enable Soulseek"_s,
                   u"graphic Bandcamp"_s,
                   u"text Bandcamp"_s,
                   u"text Real FLAC for lossless tracks, straight from artists."_s,
                   u"check! Enable Bandcamp"_s,
                   u"graphic SoundCloud"_s,
                   u"text SoundCloud"_s,
                   u"text Remixes and DJ edits. Add a token to unlock higher-quality (256 kbps) streams."_s,
                   u"check! Enable SoundCloud"_s,
                   u"field SoundCloud OAuth token (optional)"_s,
                   u"graphic YouTube"_s,
                   u"text YouTube"_s,
                   u"text The widest catalog, as a lossy last resort."_s,
                   u"check! Enable YouTube"_s,
                   u"text Privacy"_s,
                   u"graphic Vantrix VPN"_s,
                   u"text Vantrix VPN"_s,
                   u"field Vantrix VPN subscription URL (optional)"_s,
                   u"button! Back"_s,
                   u"text Step 4 of 6"_s,
                   u"button! Skip"_s,
                   u"button! Continue"_s};
        QTest::newRow("fineTuning") << Screen::fineTuning
                                    << QStringList{
                                           u"heading Quality & downloads"_s,
                                           u"text Choose where files are saved and your audio quality."_s,
                                           u"heading Download location"_s,
                                           u"text ~/Music/DjayImport"_s,
                                           u"button! Change…"_s,
                                           u"text Downloads are saved here and auto-imported into your djay library."_s,
                                           u"heading Download quality"_s,
                                           u"radio! Best"_s,
                                           u"text Upgrade to lossless whenever it's available."_s,
                                           u"radio! Balanced"_s,
                                           u"text Keep 256k+/lossless; replace anything worse or missing."_s,
                                           u"radio! Fast"_s,
                                           u"text Accept the first decent match — fills your library quickly."_s,
                                           u"button! Back"_s,
                                           u"text Step 5 of 6"_s,
                                           u"button! Skip"_s,
                                           u"button! Continue"_s};
        QTest::newRow("finish")
            << Screen::finish
            << QStringList{u"graphic Setup complete"_s,
                           u"heading You're all set"_s,
                           u"text zelk is ready to build your library."_s,
                           u"text Playlist sources"_s,
                           u"text None yet"_s,
                           u"text Download sources"_s,
                           u"text Soulseek, Bandcamp, SoundCloud, YouTube"_s,
                           u"text Quality"_s,
                           u"text Best"_s,
                           u"text Saved to"_s,
                           u"text ~/Music/DjayImport"_s,
                           u"button! Change…"_s,
                           u"text Select playlists in the sidebar and press Sync. Downloads land in your djay watch "
                           "folder automatically."_s,
                           u"button! Back"_s,
                           u"text Step 6 of 6"_s,
                           u"button! Start Using zelk"_s};
    }
    void aReaderMeetsEachScreenInItsOrder() {
        QFETCH(Screen, screen);
        SetupWindow bench;
        bench.openAt(screen);
        QTEST(spokenTree(bench), "tree");
        QCOMPARE(spoken(bench.item("setupSheet")), screenTitle(screen));
        QCOMPARE(QAccessible::queryAccessibleInterface(bench.item("setupSheet"))->role(), QAccessible::Dialog);
    }
};

QTEST_MAIN(SetupWalkTest)
#include "tst_setupwalk.moc"
