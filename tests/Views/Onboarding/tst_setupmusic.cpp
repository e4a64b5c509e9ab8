#include "SetupWindow.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Mode = SetupCoordinator::Mode;
using Screen = SetupCoordinator::Screen;

namespace {

SafeConfig connected(bool apple, bool spotify) {
    SafeConfig config = SetupWindow::bare();
    config.appleMusicConnected = apple;
    config.spotifyConnected = spotify;
    return config;
}

} // namespace

class SetupMusicTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanup() { settleDown(); }

    void theCardsSayTheirTexts() {
        SetupWindow bench;
        bench.openAt(Screen::connectMusic);
        bench.coordinator()->setIdentityEnabled(true);
        bench.drawFrame();
        const QStringList texts = bench.texts(bench.item("setupBody"));
        const QStringList expected{
            u"Apple Music"_s,
            u"Sign in to read your Apple Music Cloud library and playlists."_s,
            u"Connect"_s,
            u"Use the Music app on this Mac"_s,
            u"A backup that reads local playlists — no subscription needed. Requires Automation permission."_s,
            u"Allow Access"_s,
            u"Spotify"_s,
            u"Authorize zelk in your browser to read your Spotify playlists."_s,
            u"Connect"_s,
            u"MusicBrainz + AcoustID"_s,
            u"Confirm each download is the right recording with MusicBrainz + AcoustID. More accurate, a little "
            "slower."_s,
            u"Reject a download AcoustID flags as a different recording."_s,
            u"AcoustID API key (optional)"_s};
        QCOMPARE(texts, expected);
        QCOMPARE(spoken(bench.item("identityEnabled")), u"Enable MusicBrainz and AcoustID matching"_s);
        QCOMPARE(spoken(bench.item("acoustidKey")), u"AcoustID API key (optional)"_s);
    }

    void appleMusicConnectsWithASpinnerAndThenAPill() {
        SetupWindow bench;
        bench.openAt(Screen::connectMusic);
        bench.click(bench.part("appleMusicLine", "accountConnect"));
        QTRY_COMPARE(bench.authorization->requests, 1);
        QVERIFY(bench.part("appleMusicLine", "accountConnecting"));
        QVERIFY(!bench.part("appleMusicLine", "accountConnect"));
        // The footer waits for nobody.
        QVERIFY(bench.item("setupPrimary")->isEnabled() && bench.item("setupSkip")->isEnabled());
        bench.engine->reply(Method::getConfig, SetupWindow::wrapped(connected(true, false)));
        bench.authorization->refuse();
        QTRY_VERIFY(bench.part("appleMusicLine", "accountConnected"));
        QCOMPARE(bench.texts(bench.part("appleMusicLine", "accountConnected")), QStringList{u"Connected"_s});
        QVERIFY(!bench.part("appleMusicLine", "accountConnecting"));
    }

    void theAnswerIsReadBeforeTheSpinnerGoes() {
        SetupWindow bench;
        bench.openAt(Screen::connectMusic);
        bench.press(bench.part("appleMusicLine", "accountConnect"));
        QTRY_COMPARE(bench.authorization->requests, 1);
        const int before = bench.engine->sentCount(Method::getConfig);
        bench.authorization->refuse();
        QTRY_COMPARE(bench.engine->sentCount(Method::getConfig), before + 1);
        QVERIFY(bench.part("appleMusicLine", "accountConnecting"));
        bench.engine->release(SetupWindow::wrapped(SetupWindow::bare()));
        // A sign-in that failed leaves the button, and its own message elsewhere.
        QTRY_VERIFY(bench.part("appleMusicLine", "accountConnect"));
        QVERIFY(bench.model.sync()->banner());
    }

    void aConnectionOutweighsTheSpinner() {
        SetupWindow bench;
        bench.openAt(Screen::connectMusic);
        bench.press(bench.part("appleMusicLine", "accountConnect"));
        QTRY_VERIFY(bench.part("appleMusicLine", "accountConnecting"));
        bench.configure(connected(true, false));
        QVERIFY(bench.part("appleMusicLine", "accountConnected"));
        QVERIFY(!bench.part("appleMusicLine", "accountConnecting"));
    }

    void spotifySaysThatTheBrowserIsNext() {
        SetupWindow bench;
        bench.openAt(Screen::connectMusic);
        bench.click(bench.part("spotifyLine", "accountConnect"));
        QTRY_COMPARE(bench.engine->sentCount(Method::connectSpotify), 1);
        QVERIFY(bench.shows(u"Connecting in your browser…"_s));
        QVERIFY(bench.part("spotifyLine", "accountConnecting"));
        bench.engine->reply(Method::getConfig, SetupWindow::wrapped(connected(false, true)));
        bench.engine->reply(Method::listPlaylists, R"({"playlists":[]})");
        bench.engine->release("null");
        QTRY_VERIFY(bench.part("spotifyLine", "accountConnected"));
        QTRY_VERIFY(bench.shows(u"Authorize zelk in your browser to read your Spotify playlists."_s));
    }

    void aSpotifyThatFailsGivesTheButtonBack() {
        SetupWindow bench;
        bench.openAt(Screen::connectMusic);
        bench.press(bench.part("spotifyLine", "accountConnect"));
        QTRY_COMPARE(bench.engine->held(), 1);
        bench.engine->releaseFailing(HelperError::helperUnavailable());
        QTRY_VERIFY(bench.part("spotifyLine", "accountConnect"));
        QVERIFY(bench.model.sync()->banner()->message.startsWith(u"Spotify connection failed: "_s));
    }

    void whatFailedIsSaidInTheSheetUntilItIsDismissedOrLeft_data() {
        QTest::addColumn<bool>("isDismissed");
        QTest::newRow("dismissed") << true;
        QTest::newRow("left") << false;
    }

    void whatFailedIsSaidInTheSheetUntilItIsDismissedOrLeft() {
        QFETCH(bool, isDismissed);
        SetupWindow bench;
        bench.model.sync()->setBanner(SyncBanner::info(u"Said before"_s));
        bench.openAt(Screen::connectMusic);
        QVERIFY(!bench.item("setupBanner")); // it stays where it was
        QVERIFY(bench.item("banner"));
        bench.press(bench.part("spotifyLine", "accountConnect"));
        QTRY_COMPARE(bench.engine->held(), 1);
        bench.engine->releaseFailing(HelperError::engineError(u"not_configured"_s, u"Export them first."_s));
        QTRY_VERIFY(bench.item("setupBanner"));
        QCOMPARE(bench.texts(bench.item("setupBanner")),
                 QStringList{u"Spotify connection failed: Export them first."_s});
        QVERIFY(!bench.item("banner")); // said once
        // It stands over the buttons and takes its room from the screen.
        const QQuickItem *message = bench.item("setupBanner");
        const QQuickItem *body = bench.item("setupBody");
        QVERIFY(body->y() + body->height() <= message->y());
        if (isDismissed) {
            bench.press(bench.part("setupBanner", "dismissBanner"));
            QTRY_VERIFY(!bench.item("setupBanner"));
            QVERIFY(!bench.model.sync()->banner());
        } else {
            bench.press("setupPrimary");
            QTRY_VERIFY(!bench.item("setupBanner"));
            QVERIFY(bench.model.sync()->banner()); // in the window, for later
        }
    }

    void aConnectGoesOnWithoutItsScreenAndIsNotBegunTwice() {
        SetupWindow bench;
        bench.openAt(Screen::connectMusic);
        bench.press(bench.part("spotifyLine", "accountConnect"));
        QTRY_COMPARE(bench.engine->sentCount(Method::connectSpotify), 1);
        bench.press("setupSkip");
        bench.press("setupBack");
        // A screen that comes anew knows nothing of it.
        QTRY_VERIFY(bench.part("spotifyLine", "accountConnect"));
        QVERIFY(!bench.shows(u"Connecting in your browser…"_s));
        bench.press(bench.part("spotifyLine", "accountConnect"));
        QVERIFY(bench.part("spotifyLine", "accountConnecting"));
        settleDown();
        QCOMPARE(bench.engine->sentCount(Method::connectSpotify), 1);
        bench.engine->reply(Method::getConfig, SetupWindow::wrapped(connected(false, true)));
        bench.engine->reply(Method::listPlaylists, R"({"playlists":[]})");
        bench.engine->release("null");
        QTRY_VERIFY(bench.part("spotifyLine", "accountConnected"));
    }

    void anAuthorizedLibraryShowsSoWithoutAsking() {
        SetupWindow bench;
        bench.consent->status = ConsentStatus::authorized;
        bench.monitor->recheck();
        bench.openAt(Screen::connectMusic);
        QVERIFY(bench.item("localAccessEnabled"));
        QCOMPARE(bench.texts(bench.item("localAccessEnabled")), QStringList{u"Enabled"_s});
        QVERIFY(!bench.item("localAccessAllow") && !bench.item("localAccessSettings"));
        settleDown();
        QCOMPARE(int(bench.consent->asks), 0);
        QCOMPARE(bench.engine->sentCount(Method::listPlaylists), 0);
    }

    void accessThatIsAllowedBringsThePlaylistsAtOnce() {
        SetupWindow bench;
        bench.openAt(Screen::connectMusic);
        bench.consent->answer = ConsentStatus::authorized;
        bench.click(bench.item("localAccessAllow"));
        QTRY_VERIFY(bench.item("localAccessEnabled"));
        QTRY_COMPARE(bench.engine->sentCount(Method::listPlaylists), 1);
        const auto *asked = caseOf<Request::ListPlaylists>(bench.engine->sent().back());
        QVERIFY(asked && asked->source == PlaylistSourceId::apple);
    }

    void accessThatIsRefusedShowsSoWithAWayOut() {
        SetupWindow bench;
        bench.openAt(Screen::connectMusic);
        bench.consent->answer = ConsentStatus::denied;
        bench.press("localAccessAllow");
        QTRY_VERIFY(bench.item("localAccessDenied"));
        QCOMPARE(bench.texts(bench.item("localAccessDenied")), QStringList{u"Denied"_s});
        QVERIFY(!bench.item("localAccessAllow"));
        QCOMPARE(spoken(bench.item("localAccessSettings")), u"Open Settings…"_s);
        bench.click(bench.item("localAccessSettings"));
        QCOMPARE(bench.consentSettings->opened, 1);
        QCOMPARE(bench.engine->sentCount(Method::listPlaylists), 0);
    }

    void accessThatLeadsNowhereShowsNothingMore() {
        SetupWindow bench;
        bench.openAt(Screen::connectMusic);
        bench.press("localAccessAllow");
        QTRY_COMPARE(bench.consent->asks.load(), 1);
        QVERIFY(bench.item("localAccessAllow") && !bench.item("localAccessSettings"));
        // Where the library is there later, that shows by itself.
        bench.consent->status = ConsentStatus::authorized;
        bench.monitor->recheck();
        QVERIFY(bench.item("localAccessEnabled") && !bench.item("localAccessSettings"));
    }

    void theReRunIsTheSameAndDisconnectsNothing() {
        SetupWindow bench;
        bench.openAt(Screen::connectMusic, connected(true, true), Mode::reRun);
        QVERIFY(bench.part("appleMusicLine", "accountConnected") && bench.part("spotifyLine", "accountConnected"));
        QVERIFY(!bench.item("accountConnect"));
        QVERIFY(!bench.shows(u"Disconnect"_s));
    }

    void theDetailsOfMatchingComeAndGoAndStayAsTheyAre() {
        SetupWindow bench;
        SafeConfig config = connected(true, true);
        config.identity = {false, false};
        bench.openAt(Screen::connectMusic, config);
        QVERIFY(!bench.item("identityStrict") && !bench.item("acoustidKey"));
        bench.click(bench.item("identityEnabled"));
        QTRY_VERIFY(bench.item("identityStrict"));
        QVERIFY(bench.coordinator()->identityEnabled());
        QVERIFY(zelk::press(bench.item("identityStrict"), QAccessibleActionInterface::toggleAction()));
        QVERIFY(bench.coordinator()->identityStrict());
        bench.type("acoustidKey", u"secret"_s);
        QCOMPARE(bench.coordinator()->acoustidKey(), u"secret"_s);
        QCOMPARE(bench.item("acoustidKey")->property("echoMode").toInt(), 2); // masked
        bench.item("identityEnabled")->forceActiveFocus(Qt::TabFocusReason);
        bench.key(Qt::Key_Space);
        QTRY_VERIFY(!bench.item("identityStrict") && !bench.item("acoustidKey"));
        QVERIFY(bench.coordinator()->identityStrict());
        bench.goTo(Screen::finish);
        for (const auto method : {Method::setConfig, Method::storeAccountToken})
            bench.engine->reply(method, "null");
        bench.engine->reply(Method::getConfig, SetupWindow::wrapped(config));
        bench.press("setupPrimary");
        QTRY_COMPARE(bench.engine->sentCount(Method::storeAccountToken), 1);
        std::optional<ConfigPatch> patch;
        for (const auto &request : bench.engine->sent()) {
            if (const auto *sent = caseOf<Request::SetConfig>(request))
                patch = sent->patch;
        }
        QVERIFY((patch->identity == SafeConfig::Identity{false, true}));
    }

    void theSpringOfTheDetailsGoesWithTheOthers() {
        SetupWindow bench;
        SafeConfig config = SetupWindow::bare();
        config.identity = {false, false};
        bench.openAt(Screen::connectMusic, config);
        bench.coordinator()->setIdentityEnabled(true);
        const qreal whole = bench.item("identityDetails")->height(); // at once, without motion
        QVERIFY(whole > 40);
        bench.coordinator()->setIdentityEnabled(false);
        bench.desktop->setReducedMotion(false);
        bench.coordinator()->setIdentityEnabled(true);
        const QQuickItem *details = bench.window.window()->findChild<QQuickItem *>(u"identityDetails"_s);
        QVERIFY(!details || details->height() < whole);
        QTRY_COMPARE(bench.item("identityDetails") ? bench.item("identityDetails")->height() : 0, whole);
    }
};

QTEST_MAIN(SetupMusicTest)
#include "tst_setupmusic.moc"
