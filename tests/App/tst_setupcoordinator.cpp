#include "App/SetupBench.h"

#include <QSignalSpy>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;
using Mode = SetupCoordinator::Mode;
using Screen = SetupCoordinator::Screen;

namespace {

SafeConfig configWith(bool bestQuality, bool upgradeEnabled) {
    auto config = SampleData::sampleConfig();
    config.quality = {QualityFloor::flac, true, bestQuality, upgradeEnabled};
    return config;
}

const QByteArray toolsInstalled = R"({"ok":true,"tools":[]})";

} // namespace

class TestSetupCoordinator : public QObject, SetupBench {
    Q_OBJECT

private Q_SLOTS:
    void init() { open(); }
    void cleanup() { close(); }

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
