#include "App/AppModel.h"
#include "App/Surroundings.h"
#include "Support/Await.h"
#include "Support/ManualClock.h"
#include "Support/SampleData.h"
#include "Support/ScriptedClient.h"
#include "Support/Settle.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <stdexcept>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using Mode = SetupCoordinator::Mode;

namespace {

QByteArray wrapped(const SafeConfig &config) {
    return "{\"config\":" + writeJSON(config) + "}";
}

const QByteArray noPlaylists = R"({"playlists":[]})";
const QByteArray authParams = R"({"clientId":"abc"})";

struct AuthParams {
    QString clientId;
};
ZELK_JSON_FIELDS(AuthParams, clientId)

AppModel::Launcher noEngine() {
    return []() -> AppModel::Engine { throw HelperError::helperMissing(); };
}

} // namespace

class TestAppModelAccounts : public QObject {
    Q_OBJECT

    std::shared_ptr<ScriptedClient> client;
    AppModel::Surroundings around;
    std::unique_ptr<AppModel> model;

    void answerFetches() {
        client->reply(Method::getConfig, wrapped(SampleData::sampleConfig()));
        client->reply(Method::listPlaylists, noPlaylists);
    }

private Q_SLOTS:
    void init() {
        client = std::make_shared<ScriptedClient>();
        around = surroundings();
        model = std::make_unique<AppModel>(client, around);
    }
    void cleanup() {
        model.reset();
        settle();
        client.reset();
    }

    void aTokenIsSentAsItIsAndNothingIsReadBack() {
        client->reply(Method::storeAccountToken, "null");
        QVERIFY(outcomeOf(model->storeAccountToken(AccountService::spotify, u" tok en\n"_s, u"app"_s)).succeeded());
        QCOMPARE(client->sent(),
                 std::vector{Request::storeAccountToken(AccountService::spotify, u" tok en\n"_s, u"app"_s)});
        QCOMPARE(client->timeouts(), std::vector<std::chrono::nanoseconds>{15s});
    }

    void aTokenThatIsRefusedFailsForTheCaller() {
        const auto refusal = HelperError::engineError(u"invalid_params"_s, u"No."_s);
        client->fail(Method::storeAccountToken, refusal);
        const auto outcome = outcomeOf(model->storeAccountToken(AccountService::acoustid, u"key"_s));
        QVERIFY(outcome.failedWith(refusal));
        QVERIFY(!model->sync()->banner() && !model->settings()->lastError());
    }

    void aDisconnectIsFollowedByARefreshOfTheSettings() {
        client->reply(Method::disconnectAccount, "null");
        client->reply(Method::getConfig, wrapped(SampleData::sampleConfig()));
        QVERIFY(outcomeOf(model->disconnectAccount(AccountService::spotify)).succeeded());
        QCOMPARE(client->sent(),
                 (std::vector{Request::disconnectAccount(AccountService::spotify), Request::getConfig()}));
        QCOMPARE(client->timeouts().front(), std::chrono::nanoseconds(15s));
        QVERIFY(model->settings()->config());
    }

    void aDisconnectThatFailsRefreshesNothing() {
        client->fail(Method::disconnectAccount, HelperError::helperCrashed());
        QVERIFY(
            outcomeOf(model->disconnectAccount(AccountService::applemusic)).failedWith(HelperError::helperCrashed()));
        QCOMPARE(client->sentCount(Method::getConfig), 0);
    }

    void accountsWithoutAClientFail() {
        AppModel bare(noEngine(), surroundings());
        QVERIFY(outcomeOf(bare.storeAccountToken(AccountService::proxy, u"x"_s))
                    .failedWith(HelperError::helperUnavailable()));
        QVERIFY(outcomeOf(bare.disconnectAccount(AccountService::proxy)).failedWith(HelperError::helperUnavailable()));
        QVERIFY(outcomeOf(bare.requestSpotifyAuthParams<AuthParams>()).failedWith(HelperError::helperUnavailable()));
        QVERIFY(!bare.sync()->banner());
    }

    void theParametersOfSpotifyAreReadAsAsked() {
        client->reply(Method::getSpotifyAuthParams, authParams);
        const auto outcome = outcomeOf(model->requestSpotifyAuthParams<AuthParams>());
        QVERIFY(outcome.value);
        QCOMPARE(outcome.value->clientId, u"abc"_s);
        QCOMPARE(client->sent(), std::vector{Request::getSpotifyAuthParams()});
    }

    void aSpotifyConnectionWithoutAClientShowsNothing() {
        AppModel bare(noEngine(), surroundings());
        QVERIFY(outcomeOf(bare.connectSpotify()).succeeded());
        QVERIFY(!bare.sync()->banner());
    }

    void aSpotifyConnectionTakesFiveMinutesAndBringsAccountThenPlaylists() {
        const auto connecting = observe(this, model->connectSpotify());
        settle();
        QCOMPARE(client->sent(), std::vector{Request::connectSpotify()});
        QCOMPARE(client->timeouts(), std::vector<std::chrono::nanoseconds>{300s});
        client->release("{\"whatever\":1}");
        settle();
        QCOMPARE(client->sent().back(), Request::getConfig()); // the playlists only after it
        client->release(wrapped(SampleData::sampleConfig()));
        settle();
        QCOMPARE(client->sent().back(), Request::listPlaylists());
        client->release(noPlaylists);
        QTRY_VERIFY(connecting->succeeded());
        QVERIFY(!model->sync()->banner());
    }

    void aSpotifyConnectionThatFailsShowsItInTheBanner_data() {
        QTest::addColumn<int>("failure");
        QTest::addColumn<QString>("words");
        QTest::newRow("time-out") << 0 << HelperError::requestTimedOut().errorDescription();
        QTest::newRow("crash") << 1 << HelperError::helperCrashed().errorDescription();
        QTest::newRow("engine") << 2 << u"Denied."_s;
        QTest::newRow("other") << 3 << u"out of luck"_s;
    }

    void aSpotifyConnectionThatFailsShowsItInTheBanner() {
        QFETCH(int, failure);
        QFETCH(QString, words);
        client->failWith(Method::connectSpotify,
                         failure == 0   ? std::make_exception_ptr(HelperError::requestTimedOut())
                         : failure == 1 ? std::make_exception_ptr(HelperError::helperCrashed())
                         : failure == 2 ? std::make_exception_ptr(HelperError::engineError(u"x"_s, u"Denied."_s))
                                        : std::make_exception_ptr(std::runtime_error("out of luck")));
        QVERIFY(outcomeOf(model->connectSpotify()).succeeded());
        QCOMPARE(model->sync()->banner(), std::optional(SyncBanner::error(u"Spotify connection failed: "_s + words)));
        QCOMPARE(client->sent().size(), 1u);

        client->reply(Method::connectSpotify, "null"); // a later press starts a new request
        answerFetches();
        QVERIFY(outcomeOf(model->connectSpotify()).succeeded());
        QCOMPARE(client->sentCount(Method::connectSpotify), 2);
    }

    void aModelThatGoesWhileSpotifyConnectsDisturbsNothing() {
        const auto connecting = observe(this, model->connectSpotify());
        settle();
        model.reset();
        QTRY_VERIFY(connecting->isOver());
    }

    void theModeOfTheSetupFollowsWhetherTheUserHasBeenThroughIt_data() {
        QTest::addColumn<std::optional<bool>>("didOnboard");
        QTest::addColumn<std::optional<Mode>>("given");
        QTest::addColumn<Mode>("expected");
        const std::optional<Mode> none;
        QTest::newRow("never set") << std::optional<bool>() << none << Mode::firstRun;
        QTest::newRow("false") << std::optional(false) << none << Mode::firstRun;
        QTest::newRow("true") << std::optional(true) << none << Mode::reRun;
        QTest::newRow("told to re-run") << std::optional<bool>() << std::optional(Mode::reRun) << Mode::reRun;
        QTest::newRow("told to begin") << std::optional(true) << std::optional(Mode::firstRun) << Mode::firstRun;
    }

    void theModeOfTheSetupFollowsWhetherTheUserHasBeenThroughIt() {
        QFETCH(std::optional<bool>, didOnboard);
        QFETCH(std::optional<Mode>, given);
        QFETCH(Mode, expected);
        if (didOnboard)
            around.defaults->set(u"didOnboard"_s, *didOnboard);
        answerFetches();
        model->beginOnboarding(given);
        settle();
        QVERIFY(model->isOnboardingPresented());
        QCOMPARE(model->setupCoordinator()->mode(), expected);
    }

    void theSetupStartsFromTheConfigurationAtHand() {
        client->reply(Method::getConfig, wrapped(SampleData::sampleConfig()));
        QVERIFY(outcomeOf(model->settings()->refresh()).succeeded());
        model->beginOnboarding(Mode::reRun);
        QVERIFY(!model->isOnboardingPresented()); // only on the next turn
        settle();
        QVERIFY(model->isOnboardingPresented());
        QCOMPARE(client->sentCount(Method::getConfig), 1);
        QCOMPARE(model->setupCoordinator()->selectedSources(), SampleData::sampleConfig().sources);
    }

    void theSetupWaitsForAConfigurationOnce() {
        model->beginOnboarding(Mode::firstRun);
        settle();
        QVERIFY(!model->isOnboardingPresented());
        QVERIFY(!model->setupCoordinator());
        auto config = SampleData::sampleConfig();
        config.outputDir = u"/music"_s;
        client->release(wrapped(config));
        settle();
        QVERIFY(model->isOnboardingPresented());
        QCOMPARE(model->setupCoordinator()->outputDir(), u"/music"_s);
    }

    void theSetupOpensWithoutAConfigurationToo() {
        client->fail(Method::getConfig, HelperError::requestTimedOut());
        client->fail(Method::getConfig, HelperError::requestTimedOut());
        model->beginOnboarding(Mode::firstRun);
        settle();
        QVERIFY(model->isOnboardingPresented());
        QCOMPARE(model->setupCoordinator()->outputDir(), u"~/Music/DjayImport"_s);
    }

    void theSetupOpensWithoutAClientToo() {
        AppModel bare(noEngine(), surroundings());
        QStringList order;
        connect(&bare, &AppModel::setupCoordinatorChanged, this, [&] { order.append(u"coordinator"_s); });
        connect(&bare, &AppModel::isOnboardingPresentedChanged, this, [&] { order.append(u"presented"_s); });
        bare.beginOnboarding();
        settle();
        QVERIFY(bare.isOnboardingPresented());
        QCOMPARE(bare.setupCoordinator()->mode(), Mode::firstRun);
        QCOMPARE(order, (QStringList{u"coordinator"_s, u"presented"_s}));
    }

    void theEndOfTheSetupLoadsTheConfigurationThenThePlaylists() {
        client->reply(Method::getConfig, wrapped(SampleData::sampleConfig()));
        model->beginOnboarding(Mode::firstRun);
        settle();
        const QPointer<SetupCoordinator> coordinator(model->setupCoordinator());
        const QSignalSpy presented(model.get(), &AppModel::isOnboardingPresentedChanged);
        model->finishOnboarding();
        QVERIFY(!model->isOnboardingPresented());
        QVERIFY(!model->setupCoordinator());
        QCOMPARE(presented.count(), 1);
        QTRY_VERIFY(!coordinator);
        QCOMPARE(client->sentCount(Method::getConfig), 2);
        QCOMPARE(client->sentCount(Method::listPlaylists), 0);
        client->release(wrapped(SampleData::sampleConfig()));
        settle();
        QCOMPARE(client->sent().back(), Request::listPlaylists());
        QVERIFY(!around.defaults->value(u"didOnboard"_s).isValid()); // for whoever shows the setup to write
    }

    void theEndOfTheSetupWithoutAClientIsAnEndAllTheSame() {
        AppModel bare(noEngine(), surroundings());
        bare.beginOnboarding();
        settle();
        bare.finishOnboarding();
        settle();
        QVERIFY(!bare.isOnboardingPresented() && !bare.setupCoordinator());
    }

    void aSetupThatIsOpenedAgainStartsAfresh() {
        client->reply(Method::getConfig, wrapped(SampleData::sampleConfig()));
        model->beginOnboarding(Mode::reRun);
        settle();
        model->setupCoordinator()->setOutputDir(u"/typed"_s);
        model->setOnboardingPresented(false); // closed half way
        QVERIFY(!model->setupCoordinator());
        model->beginOnboarding(Mode::reRun);
        settle();
        QVERIFY(model->setupCoordinator()->outputDir() != u"/typed"_s);
        QCOMPARE(model->setupCoordinator()->currentScreen(), SetupCoordinator::Screen::prepareTools);
    }

    void aModelThatGoesWhileTheSetupOpensDisturbsNothing() {
        model->beginOnboarding(Mode::firstRun);
        settle();
        QCOMPARE(client->held(), 1);
        model.reset();
        settle();
    }
};

QTEST_GUILESS_MAIN(TestAppModelAccounts)
#include "tst_appmodel_accounts.moc"
