#include "App/AppModel.h"
#include "App/Surroundings.h"
#include "Support/Await.h"
#include "Support/SampleData.h"
#include "Support/ScriptedClient.h"
#include "Support/Settle.h"

#include <QSignalSpy>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;
using Mode = SetupCoordinator::Mode;
using Screen = SetupCoordinator::Screen;

namespace {

QByteArray wrapped(const SafeConfig &config) {
    return "{\"config\":" + writeJSON(config) + "}";
}

SafeConfig configWith(bool bestQuality, bool upgradeEnabled) {
    auto config = SampleData::sampleConfig();
    config.quality = {QualityFloor::flac, true, bestQuality, upgradeEnabled};
    return config;
}

const QByteArray toolsInstalled = R"({"ok":true,"tools":[]})";

} // namespace

class TestSetupCoordinator : public QObject {
    Q_OBJECT

    std::shared_ptr<ScriptedClient> client;
    AppModel::Surroundings around;
    std::unique_ptr<AppModel> model;

    void load(const SafeConfig &config) {
        client->reply(Method::getConfig, wrapped(config));
        QVERIFY(outcomeOf(model->settings()->refresh()).succeeded());
    }
    void commit(SetupCoordinator &coordinator) { QVERIFY(outcomeOf(coordinator.commit()).succeeded()); }
    void acceptPatch() {
        client->reply(Method::setConfig, "null");
        client->reply(Method::getConfig, wrapped(SampleData::sampleConfig()));
    }
    /// The patch that was sent last.
    ConfigPatch sentPatch() const {
        ConfigPatch patch;
        for (const auto &request : client->sent()) {
            if (const auto *sent = caseOf<Request::SetConfig>(request))
                patch = sent->patch;
        }
        return patch;
    }
    QStringList storedTokens() const {
        QStringList tokens;
        for (const auto &request : client->sent()) {
            if (const auto *sent = caseOf<Request::StoreAccountToken>(request))
                tokens.append(QString(wireName(sent->service)) + u'=' + sent->token);
        }
        return tokens;
    }
    /// The setup as the model opens it.
    SetupCoordinator &open(Mode mode) {
        model->beginOnboarding(mode);
        settle();
        return *model->setupCoordinator();
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

    void aFirstRunHasSixScreensInTheirOrder() {
        const SetupCoordinator coordinator(Mode::firstRun, model.get(), {});
        QCOMPARE(coordinator.screenOrder(), (std::vector{Screen::welcome, Screen::prepareTools, Screen::connectMusic,
                                                         Screen::downloadSources, Screen::fineTuning, Screen::finish}));
        QCOMPARE(coordinator.stepCount(), 6);
        QCOMPARE(coordinator.currentScreen(), Screen::welcome);
        QVERIFY(coordinator.isFirst() && !coordinator.isLast());
    }

    void aReRunHasNoWelcome() {
        SetupCoordinator coordinator(Mode::reRun, model.get(), {});
        QCOMPARE(coordinator.stepCount(), 5);
        QCOMPARE(coordinator.currentIndex(), 0);
        QCOMPARE(coordinator.currentScreen(), Screen::prepareTools);
        coordinator.back();
        QCOMPARE(coordinator.currentScreen(), Screen::prepareTools);
        QCOMPARE(std::ranges::count(coordinator.screenOrder(), Screen::welcome), 0);
    }

    void theScreensHaveTheirNumbers() {
        QCOMPARE(static_cast<int>(Screen::welcome), 0);
        QCOMPARE(static_cast<int>(Screen::finish), 5);
    }

    void stepsGoOneAtATimeAndNowhereAtTheEnds() {
        SetupCoordinator coordinator(Mode::firstRun, model.get(), {});
        const QSignalSpy changed(&coordinator, &SetupCoordinator::currentScreenChanged);
        coordinator.back();
        QCOMPARE(coordinator.currentScreen(), Screen::welcome);
        QCOMPARE(changed.count(), 0);
        for (int i = 1; i < 6; ++i) {
            coordinator.advance();
            QCOMPARE(coordinator.currentIndex(), i);
        }
        QVERIFY(coordinator.isLast());
        QCOMPARE(changed.count(), 5);
        coordinator.advance();
        QCOMPARE(coordinator.currentScreen(), Screen::finish);
        QCOMPARE(changed.count(), 5);
        coordinator.back();
        QCOMPARE(coordinator.currentScreen(), Screen::fineTuning);
    }

    void theSourceScreenIsReachedFromAnywhere() {
        SetupCoordinator coordinator(Mode::reRun, model.get(), {});
        coordinator.goToConnectMusic();
        QCOMPARE(coordinator.currentScreen(), Screen::connectMusic);
        const QSignalSpy changed(&coordinator, &SetupCoordinator::currentScreenChanged);
        coordinator.goToConnectMusic();
        QCOMPARE(changed.count(), 0);
    }

    void withoutAConfigurationTheDefaultsStand() {
        const SetupCoordinator coordinator(Mode::firstRun, model.get(), {});
        QCOMPARE(coordinator.selectedSources(),
                 (std::vector{SourceId::soulseek, SourceId::bandcamp, SourceId::soundcloud, SourceId::youtube}));
        QCOMPARE(coordinator.qualityProfile(), QualityProfile::balanced);
        QVERIFY(!coordinator.identityEnabled() && !coordinator.identityStrict());
        QCOMPARE(coordinator.outputDir(), u"~/Music/DjayImport"_s);
        QCOMPARE(coordinator.uiTheme(), SafeConfig::Theme::dark);
        QVERIFY(coordinator.soundcloudToken().isEmpty() && coordinator.acoustidKey().isEmpty() &&
                coordinator.proxySubscription().isEmpty());
        QVERIFY(!coordinator.isCommitting() && !coordinator.lastError() && !coordinator.dismissedSourceWarning());
    }

    void aConfigurationGivesItsValuesAndNoSecret() {
        auto config = SampleData::sampleConfig();
        config.sources = {SourceId::youtube, SourceId::bandcamp};
        config.identity = {true, true};
        config.outputDir = u"/elsewhere"_s;
        config.ui.theme = SafeConfig::Theme::light;
        config.soundcloudConnected = config.acoustidConfigured = config.proxy.configured = true;
        const SetupCoordinator coordinator(Mode::firstRun, model.get(), config);
        QCOMPARE(coordinator.selectedSources(), config.sources);
        QVERIFY(coordinator.identityEnabled() && coordinator.identityStrict());
        QCOMPARE(coordinator.outputDir(), u"/elsewhere"_s);
        QCOMPARE(coordinator.uiTheme(), SafeConfig::Theme::light);
        QVERIFY(coordinator.soundcloudToken().isEmpty() && coordinator.acoustidKey().isEmpty() &&
                coordinator.proxySubscription().isEmpty());
    }

    void aProfileIsItsTwoFlags_data() {
        QTest::addColumn<QualityProfile>("profile");
        QTest::addColumn<QString>("id");
        QTest::addColumn<bool>("bestQuality");
        QTest::addColumn<bool>("upgradeEnabled");
        QTest::newRow("best") << QualityProfile::best << u"best"_s << true << true;
        QTest::newRow("balanced") << QualityProfile::balanced << u"balanced"_s << true << false;
        QTest::newRow("fast") << QualityProfile::fast << u"fast"_s << false << false;
    }

    void aProfileIsItsTwoFlags() {
        QFETCH(QualityProfile, profile);
        QFETCH(QString, id);
        QFETCH(bool, bestQuality);
        QFETCH(bool, upgradeEnabled);
        const SafeConfig::Quality expected{QualityFloor::any, false, bestQuality, upgradeEnabled};
        QCOMPARE(toQuality(profile), expected);
        QCOMPARE(idOf(profile), id);
        QCOMPARE(qualityProfileFrom(expected), std::optional(profile));
    }

    void theProfilesAreListedFromBestToFast() {
        QCOMPARE(allQualityProfiles,
                 (std::array{QualityProfile::best, QualityProfile::balanced, QualityProfile::fast}));
    }

    void aQualityReadsAsTheNearestProfile_data() {
        QTest::addColumn<bool>("bestQuality");
        QTest::addColumn<bool>("upgradeEnabled");
        QTest::addColumn<QualityProfile>("profile");
        QTest::newRow("neither") << false << false << QualityProfile::fast;
        QTest::newRow("upgrades only") << false << true << QualityProfile::fast;
        QTest::newRow("both") << true << true << QualityProfile::best;
        QTest::newRow("best only") << true << false << QualityProfile::balanced;
    }

    void aQualityReadsAsTheNearestProfile() {
        QFETCH(bool, bestQuality);
        QFETCH(bool, upgradeEnabled);
        QFETCH(QualityProfile, profile);
        const SetupCoordinator coordinator(Mode::firstRun, model.get(), configWith(bestQuality, upgradeEnabled));
        QCOMPARE(coordinator.qualityProfile(), profile);
        QVERIFY(!qualityProfileFrom(std::nullopt));
    }

    void theToolsGateFollowsTheirStore() {
        SetupCoordinator coordinator(Mode::firstRun, model.get(), {});
        QVERIFY(!coordinator.canAdvancePastTools());
        const QSignalSpy changed(&coordinator, &SetupCoordinator::canAdvancePastToolsChanged);
        client->reply(Method::provisionTools, toolsInstalled);
        QVERIFY(outcomeOf(model->toolProvisioning()->provision()).succeeded());
        QVERIFY(coordinator.canAdvancePastTools());
        QVERIFY(changed.count() > 0);
        coordinator.advance();
        coordinator.advance(); // the gate is the button's business
        QCOMPARE(coordinator.currentScreen(), Screen::connectMusic);
        model.reset();
        QVERIFY(!coordinator.canAdvancePastTools());
    }

    void theToolsGateFollowsAStoreThatComesLater() {
        const auto engine = std::make_shared<ScriptedClient>();
        AppModel late([engine] { return AppModel::Engine{.client = engine, .start = [] { return nothing(); }}; },
                      surroundings());
        const SetupCoordinator coordinator(Mode::firstRun, &late, {});
        QVERIFY(!coordinator.canAdvancePastTools());
        const auto starting = observe(this, late.start());
        settle();
        const QSignalSpy changed(&coordinator, &SetupCoordinator::canAdvancePastToolsChanged);
        engine->reply(Method::provisionTools, toolsInstalled);
        QVERIFY(outcomeOf(late.toolProvisioning()->provision()).succeeded());
        QVERIFY(changed.count() > 0);
        QVERIFY(coordinator.canAdvancePastTools());
        QVERIFY(!starting->isOver());
    }

    void aCommitWritesOneWholePatch() {
        auto config = SampleData::sampleConfig();
        config.quality = {QualityFloor::flac, true, false, true};
        config.ui.theme = SafeConfig::Theme::light;
        load(config);
        SetupCoordinator coordinator(Mode::firstRun, model.get(), config);
        coordinator.setSelectedSources({SourceId::youtube, SourceId::soulseek});
        coordinator.setOutputDir(u" ~/My Music "_s); // neither trimmed nor expanded
        coordinator.setIdentityEnabled(true);
        coordinator.setIdentityStrict(true);
        acceptPatch();
        commit(coordinator);
        ConfigPatch expected;
        expected.sources = std::vector{SourceId::youtube, SourceId::soulseek};
        expected.quality = SafeConfig::Quality{QualityFloor::any, false, false, false};
        expected.ui = SafeConfig::UI{SafeConfig::Theme::light};
        expected.outputDir = u" ~/My Music "_s;
        expected.identity = SafeConfig::Identity{true, true};
        QCOMPARE(sentPatch(), expected);
        QCOMPARE(client->sentCount(Method::setConfig), 1);
        QVERIFY(!coordinator.lastError());
    }

    void noSourcesAreWrittenAsNone() {
        auto config = SampleData::sampleConfig();
        config.sources.clear();
        SetupCoordinator coordinator(Mode::firstRun, model.get(), config);
        acceptPatch();
        commit(coordinator);
        QCOMPARE(sentPatch().sources, std::optional(std::vector<SourceId>()));
    }

    void anOutputFolderThatWasNeverSetIsWrittenAsTheDefaultToTheLetter() {
        auto config = SampleData::sampleConfig();
        config.outputDir.reset();
        SetupCoordinator coordinator(Mode::firstRun, model.get(), config);
        acceptPatch();
        commit(coordinator);
        QCOMPARE(sentPatch().outputDir, std::optional(u"~/Music/DjayImport"_s));
    }

    void theSecretsFollowTheConfigurationInTheirOrder() {
        SetupCoordinator coordinator(Mode::firstRun, model.get(), {});
        coordinator.setProxySubscription(u"https://tunnel.example\n"_s);
        coordinator.setAcoustidKey(u"key\n"_s);
        coordinator.setSoundcloudToken(u"  token "_s);
        acceptPatch();
        for (int i = 0; i < 3; ++i)
            client->reply(Method::storeAccountToken, "null");
        commit(coordinator);
        std::vector<Method> order;
        for (const auto &request : client->sent())
            order.push_back(request.method());
        QCOMPARE(order, (std::vector{Method::setConfig, Method::getConfig, Method::storeAccountToken,
                                     Method::storeAccountToken, Method::storeAccountToken}));
        QCOMPARE(storedTokens(),
                 (QStringList{u"soundcloud=token"_s, u"acoustid=key"_s, u"proxy=https://tunnel.example"_s}));
        // The fields keep what was typed.
        QCOMPARE(coordinator.acoustidKey(), u"key\n"_s);
        QCOMPARE(coordinator.soundcloudToken(), u"  token "_s);
        QCOMPARE(coordinator.proxySubscription(), u"https://tunnel.example\n"_s);
    }

    void blankSecretsAreNotStored() {
        SetupCoordinator coordinator(Mode::firstRun, model.get(), {});
        coordinator.setSoundcloudToken(u"   "_s);
        coordinator.setAcoustidKey(u"\n\t"_s);
        acceptPatch();
        commit(coordinator);
        QCOMPARE(client->sentCount(Method::storeAccountToken), 0);
    }

    void aSecretThatIsRefusedHoldsNobodyUp() {
        SetupCoordinator coordinator(Mode::firstRun, model.get(), {});
        coordinator.setSoundcloudToken(u"bad"_s);
        coordinator.setAcoustidKey(u"good"_s);
        acceptPatch();
        client->fail(Method::storeAccountToken, HelperError::engineError(u"invalid_params"_s, u"No."_s));
        client->reply(Method::storeAccountToken, "null");
        commit(coordinator);
        QCOMPARE(storedTokens(), (QStringList{u"soundcloud=bad"_s, u"acoustid=good"_s}));
        QVERIFY(!coordinator.lastError());
    }

    void aRefusedConfigurationShowsAndTheSecretsGoAllTheSame() {
        SetupCoordinator coordinator(Mode::firstRun, model.get(), {});
        coordinator.setAcoustidKey(u"key"_s);
        client->fail(Method::setConfig, HelperError::engineError(u"invalid_params"_s, u"No such folder."_s));
        client->reply(Method::storeAccountToken, "null");
        commit(coordinator);
        QCOMPARE(coordinator.lastError(), std::optional(u"No such folder."_s));
        QCOMPARE(storedTokens(), QStringList(u"acoustid=key"_s));
        QVERIFY(!coordinator.isCommitting());

        acceptPatch();
        client->reply(Method::storeAccountToken, "null");
        commit(coordinator);
        QVERIFY(!coordinator.lastError());
    }

    void aCommitIsUnderWayFromItsBeginningToItsEnd() {
        SetupCoordinator coordinator(Mode::firstRun, model.get(), {});
        coordinator.setAcoustidKey(u"key"_s);
        const QSignalSpy changed(&coordinator, &SetupCoordinator::isCommittingChanged);
        const auto committing = observe(this, coordinator.commit());
        QVERIFY(coordinator.isCommitting());
        for (const QByteArray &reply : {QByteArray("null"), wrapped(SampleData::sampleConfig()), QByteArray("null")}) {
            QTRY_COMPARE(client->held(), 1);
            QVERIFY(coordinator.isCommitting());
            client->release(reply);
        }
        QTRY_VERIFY(committing->succeeded());
        QVERIFY(!coordinator.isCommitting());
        QCOMPARE(changed.count(), 2);
    }

    void aCommitWithoutAModelEnds() {
        SetupCoordinator coordinator(Mode::firstRun, model.get(), {});
        coordinator.setAcoustidKey(u"key"_s);
        model.reset();
        commit(coordinator);
        QVERIFY(!coordinator.isCommitting());
        QVERIFY(!coordinator.lastError());
        QVERIFY(coordinator.hasNoSource());
        QVERIFY(client->sent().empty());
    }

    void aCommitSkipsTheStoresThatAreNotThere() {
        AppModel bare([]() -> AppModel::Engine { throw HelperError::helperMissing(); }, surroundings());
        SetupCoordinator coordinator(Mode::firstRun, &bare, {});
        coordinator.setAcoustidKey(u"key"_s);
        commit(coordinator);
        QVERIFY(!coordinator.lastError());
    }

    void aModelThatGoesDuringACommitDisturbsNothing() {
        SetupCoordinator coordinator(Mode::firstRun, model.get(), {});
        const auto committing = observe(this, coordinator.commit());
        QTRY_COMPARE(client->held(), 1);
        model.reset();
        QTRY_VERIFY(committing->isOver());
        QVERIFY(!coordinator.isCommitting());
    }

    void aCoordinatorThatGoesDuringACommitDisturbsNothing() {
        auto coordinator = std::make_unique<SetupCoordinator>(Mode::firstRun, model.get(), std::nullopt);
        const auto committing = observe(this, coordinator->commit());
        QTRY_COMPARE(client->held(), 1);
        coordinator.reset();
        client->release("null");
        QTRY_COMPARE(client->held(), 1);
        client->release(wrapped(SampleData::sampleConfig()));
        QTRY_VERIFY(committing->isOver());
    }

    void onlyAccountsWithPlaylistsCountAsSources_data() {
        QTest::addColumn<int>("which");
        QTest::addColumn<bool>("hasNone");
        QTest::newRow("nothing") << 0 << true;
        QTest::newRow("spotify") << 1 << false;
        QTest::newRow("apple music") << 2 << false;
        QTest::newRow("soundcloud") << 3 << true;
    }

    void onlyAccountsWithPlaylistsCountAsSources() {
        QFETCH(int, which);
        QFETCH(bool, hasNone);
        auto config = SampleData::sampleConfig();
        config.spotifyConnected = which == 1;
        config.appleMusicConnected = which == 2;
        config.soundcloudConnected = which == 3;
        const SetupCoordinator coordinator(Mode::firstRun, model.get(), config);
        QVERIFY(coordinator.hasNoSource()); // no configuration yet: what the engine says now counts
        load(config);
        QCOMPARE(coordinator.hasNoSource(), hasNone);
    }

    void accessToTheLocalLibraryAloneCountsAsASource_data() {
        QTest::addColumn<ConsentStatus>("consent");
        QTest::addColumn<bool>("hasNone");
        QTest::newRow("allowed") << ConsentStatus::authorized << false;
        QTest::newRow("refused") << ConsentStatus::denied << true;
        QTest::newRow("not asked") << ConsentStatus::undetermined << true;
    }

    void accessToTheLocalLibraryAloneCountsAsASource() {
        QFETCH(ConsentStatus, consent);
        QFETCH(bool, hasNone);
        AppModel other(std::make_shared<ScriptedClient>(), surroundings(std::make_shared<ManualClock>(), consent));
        const SetupCoordinator coordinator(Mode::firstRun, &other, {});
        QCOMPARE(coordinator.hasNoSource(), hasNone);
    }

    void aFirstRunWithoutASourceAsksFirst() {
        client->fail(Method::getConfig, HelperError::helperCrashed());
        client->fail(Method::getConfig, HelperError::helperCrashed());
        auto &coordinator = open(Mode::firstRun);
        const QSignalSpy asked(&coordinator, &SetupCoordinator::sourceWarningNeeded);
        coordinator.attemptFinish();
        settle();
        QCOMPARE(asked.count(), 1);
        QCOMPARE(client->sentCount(Method::setConfig), 0);

        coordinator.connectASource();
        QCOMPARE(coordinator.currentScreen(), Screen::connectMusic);
        QVERIFY(!coordinator.dismissedSourceWarning());
        coordinator.attemptFinish();
        QCOMPARE(asked.count(), 2); // it can come up again

        coordinator.continueAnyway();
        QVERIFY(coordinator.dismissedSourceWarning());
        settle();
        QCOMPARE(client->sentCount(Method::setConfig), 1);
        coordinator.attemptFinish();
        QCOMPARE(asked.count(), 2);
    }

    void aReRunAndAFirstRunWithASourceDoNotAsk_data() {
        QTest::addColumn<Mode>("mode");
        QTest::newRow("first run") << Mode::firstRun;
        QTest::newRow("re-run") << Mode::reRun;
    }

    void aReRunAndAFirstRunWithASourceDoNotAsk() {
        QFETCH(Mode, mode);
        auto config = SampleData::sampleConfig();
        config.appleMusicConnected = false;
        config.spotifyConnected = mode == Mode::firstRun;
        load(config);
        auto &coordinator = open(mode);
        const QSignalSpy asked(&coordinator, &SetupCoordinator::sourceWarningNeeded);
        coordinator.attemptFinish();
        QTRY_COMPARE(client->held(), 1);
        QCOMPARE(client->sentCount(Method::setConfig), 1);
        QCOMPARE(asked.count(), 0);
    }

    void aFinishClosesTheSetupAndLoadsWhatItChanged() {
        load(SampleData::sampleConfig());
        auto &coordinator = open(Mode::reRun);
        acceptPatch();
        coordinator.attemptFinish();
        QTRY_VERIFY(!model->isOnboardingPresented());
        QVERIFY(!model->setupCoordinator());
        QTRY_COMPARE(client->sent().back(), Request::getConfig());
    }

    void aFinishThatFailsKeepsTheSetupOpenAndItsFields() {
        load(SampleData::sampleConfig());
        auto &coordinator = open(Mode::reRun);
        coordinator.setOutputDir(u"/typed"_s);
        coordinator.setAcoustidKey(u"key"_s);
        coordinator.setQualityProfile(QualityProfile::fast);
        coordinator.setSelectedSources({SourceId::youtube});
        client->fail(Method::setConfig, HelperError::requestTimedOut());
        client->reply(Method::storeAccountToken, "null");
        coordinator.attemptFinish();
        QTRY_VERIFY(coordinator.lastError());
        settle();
        QVERIFY(model->isOnboardingPresented());
        QCOMPARE(model->setupCoordinator(), &coordinator);
        QCOMPARE(coordinator.outputDir(), u"/typed"_s);
        QCOMPARE(coordinator.acoustidKey(), u"key"_s);
        QCOMPARE(coordinator.qualityProfile(), QualityProfile::fast);
        QCOMPARE(coordinator.selectedSources(), std::vector{SourceId::youtube});
        QVERIFY(!coordinator.isCommitting());
        QCOMPARE(coordinator.currentScreen(), Screen::prepareTools);

        acceptPatch();
        client->reply(Method::storeAccountToken, "null");
        coordinator.attemptFinish(); // once more
        QTRY_VERIFY(!model->isOnboardingPresented());
    }

    void aSetupThatIsClosedWhileItStoresIsStoredToItsEnd() {
        load(SampleData::sampleConfig());
        auto &coordinator = open(Mode::reRun);
        coordinator.setAcoustidKey(u"key"_s);
        coordinator.attemptFinish();
        QTRY_COMPARE(client->held(), 1);
        model->setOnboardingPresented(false);
        QVERIFY(model->setupCoordinator());
        client->release("null");
        QTRY_COMPARE(client->held(), 1);
        client->release(wrapped(SampleData::sampleConfig()));
        QTRY_COMPARE(storedTokens(), QStringList(u"acoustid=key"_s));
        client->release("null");
        QTRY_VERIFY(!model->setupCoordinator());
    }

    void continuingAnywayKeepsTheSetupOpenWhenItCanNotBeStored() {
        client->fail(Method::getConfig, HelperError::helperCrashed());
        client->fail(Method::getConfig, HelperError::helperCrashed());
        auto &coordinator = open(Mode::firstRun);
        client->fail(Method::setConfig, HelperError::requestTimedOut());
        coordinator.continueAnyway();
        QTRY_VERIFY(coordinator.lastError());
        settle();
        QVERIFY(model->isOnboardingPresented());
    }

    void equalWritesTellNobody() {
        SetupCoordinator coordinator(Mode::firstRun, model.get(), {});
        const QSignalSpy folder(&coordinator, &SetupCoordinator::outputDirChanged);
        const QSignalSpy profile(&coordinator, &SetupCoordinator::qualityProfileChanged);
        const QSignalSpy sources(&coordinator, &SetupCoordinator::selectedSourcesChanged);
        for (int i = 0; i < 2; ++i) {
            coordinator.setOutputDir(u"/x"_s);
            coordinator.setQualityProfile(QualityProfile::best);
            coordinator.setSelectedSources({SourceId::youtube});
        }
        QCOMPARE(folder.count(), 1);
        QCOMPARE(profile.count(), 1);
        QCOMPARE(sources.count(), 1);
    }

private:
    static QCoro::Task<> nothing() { co_return; }
};

QTEST_GUILESS_MAIN(TestSetupCoordinator)
#include "tst_setupcoordinator.moc"
