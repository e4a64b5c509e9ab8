#include "App/SetupBench.h"

#include <QSignalSpy>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;
using Mode = SetupCoordinator::Mode;
using Screen = SetupCoordinator::Screen;

class TestSetupCommit : public QObject, SetupBench {
    Q_OBJECT

private Q_SLOTS:
    void init() { open(); }
    void cleanup() { close(); }

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

    void aFirstRunWithoutASourceAsksFirst() {
        client->fail(Method::getConfig, HelperError::helperCrashed());
        client->fail(Method::getConfig, HelperError::helperCrashed());
        auto &coordinator = openSetup(Mode::firstRun);
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
        auto &coordinator = openSetup(mode);
        const QSignalSpy asked(&coordinator, &SetupCoordinator::sourceWarningNeeded);
        coordinator.attemptFinish();
        QTRY_COMPARE(client->held(), 1);
        QCOMPARE(client->sentCount(Method::setConfig), 1);
        QCOMPARE(asked.count(), 0);
    }

    void aFinishClosesTheSetupAndLoadsWhatItChanged() {
        load(SampleData::sampleConfig());
        auto &coordinator = openSetup(Mode::reRun);
        acceptPatch();
        coordinator.attemptFinish();
        QTRY_VERIFY(!model->isOnboardingPresented());
        QVERIFY(!model->setupCoordinator());
        QTRY_COMPARE(client->sent().back(), Request::getConfig());
    }

    void aFinishThatFailsKeepsTheSetupOpenAndItsFields() {
        load(SampleData::sampleConfig());
        auto &coordinator = openSetup(Mode::reRun);
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
        auto &coordinator = openSetup(Mode::reRun);
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
        auto &coordinator = openSetup(Mode::firstRun);
        client->fail(Method::setConfig, HelperError::requestTimedOut());
        coordinator.continueAnyway();
        QTRY_VERIFY(coordinator.lastError());
        settle();
        QVERIFY(model->isOnboardingPresented());
    }
};

QTEST_GUILESS_MAIN(TestSetupCommit)
#include "tst_setupcommit.moc"
