#include "Services/AppleMusicAuthService.h"
#include "Services/LocalServer.h"
#include "Services/SignInBench.h"
#include "Services/URLSession.h"
#include "TabBench.h"

#include "Views/Settings/AccountsLogic.h"

#include <QNetworkAccessManager>

#include <optional>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

// The tab over a sign-in to Apple Music whose user is scripted.
struct Bench : TabBench {
    explicit Bench(ConsentStatus consent = ConsentStatus::undetermined) : TabBench(consent) {
        script->userToken = u"user-token"_s;
    }

    // An account is Apple Music's or Spotify's.
    QQuickItem *row(bool appleMusic) const { return tab.item(appleMusic ? "appleMusicAccount" : "spotifyAccount"); }
    QQuickItem *local() const { return tab.item("localLibrary"); }
    static QQuickItem *part(const QQuickItem *row, const char *name) {
        return row->findChild<QQuickItem *>(QLatin1StringView(name));
    }
    static QQuickItem *action(const QQuickItem *row) { return part(row, "action"); }
    // What is in view at the end of a row: its state, then what its button says.
    static QStringList says(const QQuickItem *row) {
        QStringList result;
        for (const char *const name : {"state", "action"}) {
            if (const QQuickItem *const item = part(row, name); item->isVisible())
                result += item->property("text").toString();
        }
        return result;
    }
    QString failure(bool appleMusic) const {
        const QQuickItem *const note = tab.item(appleMusic ? "appleMusicFailure" : "spotifyFailure");
        return note->isVisible() ? note->property("text").toString() : QString();
    }

    LocalServer server{LocalServer::response(200, "dev-token")};
    QNetworkAccessManager network;
    std::shared_ptr<ScriptedAuthorization> authorization = std::make_shared<ScriptedAuthorization>();
    std::shared_ptr<TokenScript> script = std::make_shared<TokenScript>();
    AppleMusicAuthService auth{
        {.authorization = authorization,
         .makeTokenProvider = [script = script] { return std::make_unique<ScriptedTokenProvider>(script); },
         .session = std::make_shared<URLSession>(network, std::make_shared<ManualClock>())},
        server.url()};
    const SharedInstance<AppleMusicAuthService> sharedAuth{auth};
    AccountsLogic logic{model};
    FormBench tab{u"Settings/AccountsSettings"_s, {{u"logic"_s, QVariant::fromValue(&logic)}}, QSize(640, 560)};
};

const QByteArray noPlaylists = R"({"playlists":[]})";
const QStringList unconnected{u"Connect"_s};
const QStringList connected{u"Connected"_s, u"Disconnect"_s};

void addAccounts() {
    QTest::addColumn<bool>("appleMusic");
    QTest::newRow("Apple Music") << true;
    QTest::newRow("Spotify") << false;
}

AccountService serviceOf(bool appleMusic) {
    return appleMusic ? AccountService::applemusic : AccountService::spotify;
}

} // namespace

class AccountsSettingsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    /// What was cancelled with a model ends on the next turn.
    void cleanup() { settle(); }
    void initTestCase() { QAccessible::setActive(true); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void withoutAConfigurationNeitherIsConnected() {
        const Bench bench;
        QCOMPARE(Bench::says(bench.row(true)), unconnected);
        QCOMPARE(Bench::says(bench.row(false)), unconnected);
        QVERIFY(bench.sent().empty());
    }

    void eachAccountGoesByItsOwnPartOfTheConfiguration() {
        Bench bench;
        bench.load(TabBench::config(true, false));
        QCOMPARE(Bench::says(bench.row(true)), connected);
        QCOMPARE(Bench::says(bench.row(false)), unconnected);
        bench.load(TabBench::config(false, true));
        QCOMPARE(Bench::says(bench.row(true)), unconnected);
        QCOMPARE(Bench::says(bench.row(false)), connected);
    }

    void aConnectedAccountAndADeniedLibraryDoNotAffectEachOther() {
        Bench bench(ConsentStatus::denied);
        bench.load(TabBench::config(true, false));
        QCOMPARE(Bench::says(bench.row(true)), connected);
        QCOMPARE(Bench::says(bench.local()), (QStringList{u"Denied"_s, u"Open Settings…"_s}));
        bench.load(TabBench::config(false, false));
        QCOMPARE(Bench::says(bench.local()), (QStringList{u"Denied"_s, u"Open Settings…"_s}));
        bench.load(TabBench::config(true, false));
        bench.access->status = ConsentStatus::authorized;
        bench.monitor->recheck();
        QCOMPARE(Bench::says(bench.row(true)), connected);
        QCOMPARE(Bench::says(bench.local()), QStringList{u"Enabled"_s});
    }

    void connectingAppleMusicStoresItsTokenAndReadsTheConfiguration_data() { addHands(); }
    void connectingAppleMusicStoresItsTokenAndReadsTheConfiguration() {
        QFETCH(Hand, hand);
        Bench bench;
        bench.load(TabBench::config(false, false));
        bench.client->reply(Method::storeAccountToken, "{}");
        bench.replyConfig(TabBench::config(true, false));
        use(bench.tab, Bench::action(bench.row(true)), hand);
        QTRY_COMPARE(Bench::says(bench.row(true)), connected);
        QCOMPARE(bench.sent(), (std::vector{Request::storeAccountToken(AccountService::applemusic, u"user-token"_s),
                                            Request::getConfig()}));
        QCOMPARE(Bench::says(bench.row(false)), unconnected);
    }

    void connectingSpotifyReadsTheConfigurationAndThenThePlaylists_data() { addHands(); }
    void connectingSpotifyReadsTheConfigurationAndThenThePlaylists() {
        QFETCH(Hand, hand);
        Bench bench;
        bench.load(TabBench::config(false, false));
        bench.client->reply(Method::connectSpotify, "{}");
        bench.replyConfig(TabBench::config(false, true));
        bench.client->reply(Method::listPlaylists, noPlaylists);
        use(bench.tab, Bench::action(bench.row(false)), hand);
        QTRY_COMPARE(bench.sent().size(), 3u);
        QCOMPARE(bench.sent(),
                 (std::vector{Request::connectSpotify(), Request::getConfig(), Request::listPlaylists()}));
        QTRY_COMPARE(Bench::says(bench.row(false)), connected);
        QCOMPARE(Bench::says(bench.row(true)), unconnected);
    }

    void disconnectingForgetsTheAccountAndReadsTheConfiguration_data() {
        QTest::addColumn<Hand>("hand");
        QTest::addColumn<bool>("appleMusic");
        QTest::newRow("Apple Music, mouse") << Hand::mouse << true;
        QTest::newRow("Apple Music, space") << Hand::space << true;
        QTest::newRow("Spotify, return") << Hand::enter << false;
        QTest::newRow("Spotify, screen reader") << Hand::screenReader << false;
    }
    void disconnectingForgetsTheAccountAndReadsTheConfiguration() {
        QFETCH(Hand, hand);
        QFETCH(bool, appleMusic);
        Bench bench;
        bench.load(TabBench::config(true, true));
        bench.client->reply(Method::disconnectAccount, "{}");
        bench.replyConfig(TabBench::config(!appleMusic, appleMusic));
        use(bench.tab, Bench::action(bench.row(appleMusic)), hand);
        QTRY_COMPARE(Bench::says(bench.row(appleMusic)), unconnected);
        QCOMPARE(Bench::says(bench.row(!appleMusic)), connected);
        QCOMPARE(bench.sent(), (std::vector{Request::disconnectAccount(serviceOf(appleMusic)), Request::getConfig()}));
        QCOMPARE(bench.failure(appleMusic), QString());
    }

    void theRowStaysAsItIsUntilTheConfigurationChanges() {
        Bench bench;
        bench.load(TabBench::config(true, false));
        use(bench.tab, Bench::action(bench.row(false)));
        QTRY_COMPARE(bench.client->held(), 1);
        QCOMPARE(Bench::says(bench.row(false)), unconnected);
        bench.replyConfig(TabBench::config(true, true));
        bench.client->release("{}");
        QTRY_COMPARE(Bench::says(bench.row(false)), connected);
        // The playlists are still on their way.
        QVERIFY(Bench::action(bench.row(false))->isEnabled());

        use(bench.tab, Bench::action(bench.row(true)));
        QTRY_COMPARE(bench.sent().back(), Request::disconnectAccount(AccountService::applemusic));
        QCOMPARE(Bench::says(bench.row(true)), connected);
    }

    void aSecondSignInWaitsForTheFirst() {
        Bench bench;
        bench.load(TabBench::config(false, false));
        QQuickItem *const action = Bench::action(bench.row(false));
        use(bench.tab, action);
        use(bench.tab, action);
        QTRY_COMPARE(bench.client->held(), 1);
        QVERIFY(!action->isEnabled());
        QVERIFY(Bench::action(bench.row(true))->isEnabled());
        QCOMPARE(bench.client->sentCount(Method::connectSpotify), 1);
        bench.client->releaseFailing(HelperError::requestTimedOut());
        QTRY_VERIFY(action->isEnabled());
        use(bench.tab, action);
        QTRY_COMPARE(bench.client->sentCount(Method::connectSpotify), 2);
    }

    void aSignInThatFailsIsToldInTheBannerAlone() {
        Bench bench;
        bench.load(TabBench::config(false, false));
        bench.authorization->status = ConsentStatus::denied;
        use(bench.tab, Bench::action(bench.row(true)));
        QTRY_COMPARE(bench.banner(), u"Apple Music access was not granted. Using your local library instead."_s);
        QTRY_VERIFY(bench.logic.appleMusic()->canAct());
        QCOMPARE(bench.failure(true), QString());
        bench.client->fail(Method::connectSpotify, HelperError::engineError(u"x"_s, u"No browser."_s));
        use(bench.tab, Bench::action(bench.row(false)));
        QTRY_COMPARE(bench.banner(), u"Spotify connection failed: No browser."_s);
        QTRY_VERIFY(bench.logic.spotify()->canAct());
        QCOMPARE(bench.failure(false), QString());
        QCOMPARE(bench.sent(), std::vector{Request::connectSpotify()});
        QCOMPARE(Bench::says(bench.row(true)), unconnected);
        QCOMPARE(Bench::says(bench.row(false)), unconnected);
    }

    void anOlderFailureOfTheSettingsIsNotASignInsOwn() {
        Bench bench;
        bench.load(TabBench::config(false, false));
        bench.client->fail(Method::disconnectAccount, HelperError::engineError(u"x"_s, u"No tunnel."_s));
        outcomeOf(bench.model.settings()->disconnectProxy());
        QCOMPARE(bench.model.settings()->lastError(), u"No tunnel."_s);
        bench.client->fail(Method::connectSpotify, HelperError::engineError(u"x"_s, u"No browser."_s));
        use(bench.tab, Bench::action(bench.row(false)));
        QTRY_VERIFY(!bench.banner().isEmpty());
        QTRY_VERIFY(bench.logic.spotify()->canAct());
        QCOMPARE(bench.failure(false), QString());
    }

    void aDisconnectThatFailsIsToldUnderItsOwnRowUntilItIsTriedAgain_data() { addAccounts(); }
    void aDisconnectThatFailsIsToldUnderItsOwnRowUntilItIsTriedAgain() {
        QFETCH(bool, appleMusic);
        Bench bench;
        bench.load(TabBench::config(true, true));
        bench.client->fail(Method::disconnectAccount, HelperError::engineError(u"x"_s, u"The keyring is locked."_s));
        use(bench.tab, Bench::action(bench.row(appleMusic)));
        QTRY_COMPARE(bench.failure(appleMusic), u"The keyring is locked."_s);
        QCOMPARE(bench.failure(!appleMusic), QString());
        QCOMPARE(Bench::says(bench.row(appleMusic)), connected);
        QCOMPARE(bench.sent(), std::vector{Request::disconnectAccount(serviceOf(appleMusic))});
        QVERIFY(FormBench::names(&bench.tab.window).contains(u"The keyring is locked."_s));
        use(bench.tab, Bench::action(bench.row(appleMusic)));
        QTRY_COMPARE(bench.client->held(), 1);
        QCOMPARE(bench.failure(appleMusic), QString());
    }

    void whatCouldNotBeReadBackIsToldUnderTheRowUntilItCanBe_data() { addAccounts(); }
    void whatCouldNotBeReadBackIsToldUnderTheRowUntilItCanBe() {
        QFETCH(bool, appleMusic);
        Bench bench;
        bench.load(TabBench::config(true, true));
        bench.client->reply(Method::disconnectAccount, "{}");
        for (int i = 0; i < 2; ++i)
            bench.client->fail(Method::getConfig, HelperError::engineError(u"x"_s, u"Unreadable."_s));
        use(bench.tab, Bench::action(bench.row(appleMusic)));
        QTRY_COMPARE(bench.failure(appleMusic), u"Unreadable."_s);
        QCOMPARE(bench.failure(!appleMusic), QString());
        bench.load(TabBench::config(true, true));
        QCOMPARE(bench.failure(appleMusic), QString());
    }

    void anAccountConnectedButNotReadBackSaysSo() {
        Bench bench;
        bench.load(TabBench::config(false, false));
        bench.client->reply(Method::storeAccountToken, "{}");
        for (int i = 0; i < 2; ++i)
            bench.client->fail(Method::getConfig, HelperError::engineError(u"x"_s, u"Unreadable."_s));
        use(bench.tab, Bench::action(bench.row(true)));
        QTRY_COMPARE(bench.failure(true), u"Unreadable."_s);
        QCOMPARE(bench.banner(), QString());
    }

    void grantingAccessReadsThePlaylistsOfTheLibraryIfItWasGranted_data() {
        QTest::addColumn<ConsentStatus>("answer");
        QTest::addColumn<QStringList>("says");
        QTest::addColumn<bool>("reads");
        using enum ConsentStatus;
        QTest::newRow("granted") << authorized << QStringList{u"Enabled"_s} << true;
        QTest::newRow("refused") << denied << QStringList{u"Denied"_s, u"Open Settings…"_s} << false;
        QTest::newRow("left") << undetermined << QStringList{u"Not enabled"_s, u"Grant Access"_s} << false;
    }
    void grantingAccessReadsThePlaylistsOfTheLibraryIfItWasGranted() {
        QFETCH(ConsentStatus, answer);
        QFETCH(QStringList, says);
        QFETCH(bool, reads);
        Bench bench;
        bench.access->answer = answer;
        bench.client->reply(Method::listPlaylists, noPlaylists);
        QCOMPARE(Bench::says(bench.local()), (QStringList{u"Not enabled"_s, u"Grant Access"_s}));
        use(bench.tab, Bench::action(bench.local()));
        QTRY_COMPARE(bench.access->asks, 1);
        QTRY_COMPARE(Bench::says(bench.local()), says);
        if (reads)
            QTRY_COMPARE(bench.sent(), std::vector{Request::listPlaylists(PlaylistSourceId::apple)});
        settle();
        QCOMPARE(bench.sent().size(), reads ? 1u : 0u);
        QCOMPARE(bench.permissions->opened, 0);
    }

    void aDeniedLibraryLeadsToThePermissions_data() { addHands(); }
    void aDeniedLibraryLeadsToThePermissions() {
        QFETCH(Hand, hand);
        Bench bench(ConsentStatus::denied);
        use(bench.tab, Bench::action(bench.local()), hand);
        QCOMPARE(bench.permissions->opened, 1);
        QCOMPARE(bench.access->asks, 0);
        QVERIFY(bench.sent().empty());
    }

    void aScreenReaderFindsTheSectionsWithTheirRowsInOrder() {
        Bench bench(ConsentStatus::denied);
        bench.load(TabBench::config(true, false));
        QCOMPARE(FormBench::names(&bench.tab.window),
                 (QStringList{
                     u"Apple Music"_s, u"Apple Music"_s, u"Apple Music"_s, u"Connected"_s, u"Disconnect"_s,
                     u"Music app on this Mac"_s, u"Local backup"_s, u"Denied"_s, u"Open Settings…"_s,
                     u"Cloud sign-in uses your Apple Music subscription (preferred). The Music app on this Mac is a "
                     "free local backup that needs Automation permission."_s,
                     u"Spotify"_s, u"Spotify"_s, u"Spotify"_s, u"Connect"_s,
                     u"Authorize zelk in your browser to read your Spotify playlists."_s}));
        QCOMPARE(FormBench::role(Bench::action(bench.row(true))), QAccessible::Button);
        QCOMPARE(FormBench::role(Bench::part(bench.row(true), "state")), QAccessible::StaticText);
        // Which of two equal buttons it is.
        QCOMPARE(spoken(Bench::action(bench.row(false)), QAccessible::Description), u"Spotify"_s);
        QCOMPARE(spoken(Bench::action(bench.row(true)), QAccessible::Description), u"Apple Music"_s);
    }

    void theKeyboardGoesThroughTheButtonsFromTopToBottom() {
        Bench bench;
        bench.load(TabBench::config(true, false));
        for (const QQuickItem *row : {bench.row(true), bench.local(), bench.row(false)}) {
            bench.tab.key(Qt::Key_Tab);
            QCOMPARE(bench.tab.window.activeFocusItem(), Bench::action(row));
            QVERIFY(Bench::action(row)->property("visualFocus").toBool());
        }
    }

    void onlyDisconnectIsRed() {
        Bench bench;
        bench.load(TabBench::config(true, false));
        const auto ink = [](const QQuickItem *row) { return Bench::action(row)->property("ink").value<QColor>(); };
        QCOMPARE(ink(bench.row(true)), bench.tab.tokens().color()->red);
        QCOMPARE(ink(bench.row(false)), bench.tab.tokens().color()->primary);
        QCOMPARE(ink(bench.local()), bench.tab.tokens().color()->primary);
    }

    void aTabThatIsClosedLetsTheSignInGoOn() {
        Bench bench;
        bench.load(TabBench::config(false, false));
        auto logic = std::make_unique<AccountsLogic>(bench.model);
        logic->spotify()->act();
        QTRY_COMPARE(bench.client->held(), 1);
        logic.reset();
        bench.replyConfig(TabBench::config(false, true));
        bench.client->reply(Method::listPlaylists, noPlaylists);
        bench.client->release("{}");
        QTRY_COMPARE(Bench::says(bench.row(false)), connected);
    }
};

QTEST_MAIN(AccountsSettingsTest)
#include "tst_accountssettings.moc"
