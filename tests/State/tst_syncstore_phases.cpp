#include "State/Records.h"
#include "State/SyncStore.h"

#include <QSignalSpy>
#include <QTest>

#include <functional>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

using Text = std::optional<QString>;

const QString interruptedText = u"The sync was interrupted. Re-run Sync to continue safely."_s;

} // namespace

Q_DECLARE_METATYPE(zelk::HelperEvent)

class TestSyncStorePhases : public QObject {
    Q_OBJECT

    std::unique_ptr<SyncStore> store;

    TrackModel &row(int group = 0, int track = 0) { return *store->groups()->at(group)->track(track); }

    void startRun() {
        store->route(syncStarted(u"run-1"_s));
        store->route(playlistStarted(u"p"_s, {u"p#0"_s, u"p#1"_s}));
        store->route(playlistStarted(u"q"_s, {u"q#0"_s}));
    }

    /// Brings a fresh store into each phase that can be reached.
    void enter(int which) {
        if (which == 1)
            store->markPreparing();
        if (which >= 2)
            startRun();
        if (which == 3)
            store->route(syncDone(1));
        if (which == 4)
            store->markCancelled();
        if (which == 5)
            store->route(HelperEvent::helperCrashed());
    }

private Q_SLOTS:
    void init() { store = std::make_unique<SyncStore>(); }
    void cleanup() { store.reset(); }

    void aRunEndsWithItsSummary() {
        startRun();
        store->route(syncDone(2));
        QCOMPARE(store->phase(), SyncPhase::done);
        QCOMPARE(store->summary()->ok, 2);
        QCOMPARE(store->runId(), Text(u"run-1"_s));
        QVERIFY(store->property("hasSummary").toBool());
        QCOMPARE(store->groups()->count(), 2);
    }

    void anEndAfterAnEndStillCounts_data() {
        QTest::addColumn<bool>("isCrash");
        QTest::newRow("cancelled") << false;
        QTest::newRow("interrupted") << true;
    }

    void anEndAfterAnEndStillCounts() {
        QFETCH(bool, isCrash);
        startRun();
        if (isCrash)
            store->route(HelperEvent::helperCrashed());
        else
            store->markCancelled();
        store->route(syncDone(1));
        QCOMPARE(store->phase(), SyncPhase::done);
        QVERIFY(store->summary());
    }

    void rowsGoOnChangingAfterACancel() {
        startRun();
        store->markCancelled();
        store->route(trackStarted(u"p#0"_s));
        QCOMPARE(row().state(), TrackState::checkingDisk());
        QCOMPARE(store->phase(), SyncPhase::cancelled);
    }

    void theTunnelShowsInItsBanner_data() {
        QTest::addColumn<HelperEvent>("event");
        QTest::addColumn<int>("kind"); // -1: the earlier banner stays
        QTest::addColumn<QString>("message");
        using Status = ProxyStatusValue;
        const auto info = int(SyncBanner::Kind::info);
        const auto warning = int(SyncBanner::Kind::warning);
        QTest::newRow("off") << proxyStatus(Status::off) << -1 << QString();
        QTest::newRow("off, detail") << proxyStatus(Status::off, u"x"_s) << -1 << QString();
        QTest::newRow("connecting") << proxyStatus(Status::connecting) << info << u"Connecting to Vantrix VPN…"_s;
        QTest::newRow("connecting, detail")
            << proxyStatus(Status::connecting, u"x"_s) << info << u"Connecting to Vantrix VPN…"_s;
        QTest::newRow("connected") << proxyStatus(Status::connected) << info
                                   << u"Soulseek is routed through Vantrix VPN"_s;
        QTest::newRow("connected, detail") << proxyStatus(Status::connected, u"Oslo %1"_s) << info
                                           << u"Soulseek is routed through Vantrix VPN (Oslo %1)"_s;
        QTest::newRow("down") << proxyStatus(Status::down) << warning
                              << u"Vantrix VPN disconnected — Soulseek is paused"_s;
        QTest::newRow("down, detail") << proxyStatus(Status::down, u"lost"_s) << warning
                                      << u"Vantrix VPN disconnected — Soulseek is paused: lost"_s;
        QTest::newRow("error") << proxyStatus(Status::error) << warning << u"Vantrix VPN error — Soulseek is paused"_s;
        QTest::newRow("error, detail") << proxyStatus(Status::error, u"refused"_s) << warning
                                       << u"Vantrix VPN error — Soulseek is paused: refused"_s;
    }

    void theTunnelShowsInItsBanner() {
        QFETCH(HelperEvent, event);
        QFETCH(int, kind);
        QFETCH(QString, message);
        const auto earlier = SyncBanner::error(u"earlier"_s, u"code"_s);
        store->setBanner(earlier);
        store->route(event);
        if (kind < 0) {
            QCOMPARE(store->banner(), std::optional(earlier));
        } else {
            QCOMPARE(int(store->banner()->kind), kind);
            QCOMPARE(store->banner()->message, message);
            QVERIFY(!store->banner()->code);
        }
        const auto &told = std::get<ServerEvent::ProxyStatus>(caseOf<HelperEvent::Server>(event)->event.value);
        QCOMPARE(store->proxyStatus(), told.status);
        QCOMPARE(store->proxyDetail(), told.detail);
    }

    void aTunnelSwitchedOffLeavesItsBanner() {
        store->route(proxyStatus(ProxyStatusValue::connected));
        store->route(proxyStatus(ProxyStatusValue::off));
        QCOMPARE(store->banner()->message, u"Soulseek is routed through Vantrix VPN"_s);
        QCOMPARE(store->proxyStatus(), ProxyStatusValue::off);
    }

    void anErrorShowsWithItsCodeAndLeavesTheRun() {
        startRun();
        store->route(engineError(u"Broken"_s, u"some_code"_s));
        QCOMPARE(store->banner(), std::optional(SyncBanner::error(u"Broken"_s, u"some_code"_s)));
        QCOMPARE(store->phase(), SyncPhase::running);
        QCOMPARE(row().state(), TrackState::queued());
        store->route(engineError(u"Broken"_s));
        QVERIFY(!store->banner()->code);
    }

    void whatIsOthersChangesNothingHere() {
        startRun();
        QSignalSpy rows(store->groups(), &PlaylistGroups::rowChanged);
        QSignalSpy banner(store.get(), &SyncStore::bannerChanged);
        QSignalSpy phase(store.get(), &SyncStore::phaseChanged);
        store->route(logged(u"line"_s));
        store->route(HelperEvent::server(ServerEvent::ToolProgress()));
        store->route(HelperEvent::server(ServerEvent::Unknown()));
        store->route(HelperEvent::helperReady());
        QCOMPARE(rows.count() + banner.count() + phase.count(), 0);
        QCOMPARE(store->groups()->count(), 2);
    }

    void whoCountsAsRunning_data() {
        QTest::addColumn<int>("which");
        QTest::addColumn<SyncPhase>("phase");
        QTest::addColumn<bool>("isRunning");
        QTest::newRow("idle") << 0 << SyncPhase::idle << false;
        QTest::newRow("preparing") << 1 << SyncPhase::preparing << true;
        QTest::newRow("running") << 2 << SyncPhase::running << true;
        QTest::newRow("done") << 3 << SyncPhase::done << false;
        QTest::newRow("cancelled") << 4 << SyncPhase::cancelled << false;
        QTest::newRow("interrupted") << 5 << SyncPhase::interrupted << false;
    }

    void whoCountsAsRunning() {
        QFETCH(int, which);
        enter(which);
        QTEST(store->phase(), "phase");
        QTEST(store->isRunning(), "isRunning");
    }

    void everyPhaseMovesAsTold_data() {
        QTest::addColumn<int>("which");
        QTest::addColumn<SyncPhase>("afterCrash");
        QTest::addColumn<bool>("isBannerSet");
        QTest::newRow("idle") << 0 << SyncPhase::idle << false;
        QTest::newRow("preparing") << 1 << SyncPhase::interrupted << true;
        QTest::newRow("running") << 2 << SyncPhase::interrupted << true;
        QTest::newRow("done") << 3 << SyncPhase::done << false;
        QTest::newRow("cancelled") << 4 << SyncPhase::cancelled << false;
        QTest::newRow("interrupted") << 5 << SyncPhase::interrupted << false;
    }

    void everyPhaseMovesAsTold() {
        QFETCH(int, which);
        QFETCH(bool, isBannerSet);
        enter(which);
        store->setBanner(std::nullopt);
        store->route(HelperEvent::helperCrashed());
        QTEST(store->phase(), "afterCrash");
        const auto warning = SyncBanner::warning(interruptedText);
        QCOMPARE(store->banner(), isBannerSet ? std::optional(warning) : std::nullopt);

        const std::pair<std::function<void()>, SyncPhase> fromAny[] = {
            {[&] { store->markPreparing(); }, SyncPhase::preparing},
            {[&] { store->route(syncStarted(u"run"_s)); }, SyncPhase::running},
            {[&] { store->route(syncDone(0)); }, SyncPhase::done},
            {[&] { store->markCancelled(); }, SyncPhase::cancelled},
            {[&] { store->clearResults(); }, SyncPhase::idle},
        };
        for (const auto &[cause, phase] : fromAny) {
            init();
            enter(which);
            cause();
            QCOMPARE(store->phase(), phase);
            QSignalSpy again(store.get(), &SyncStore::phaseChanged);
            cause();
            QCOMPARE(again.count(), 0);
        }
    }

    void aCrashLeavesTheRowsAndTheRun() {
        startRun();
        store->route(step(u"p#0"_s, Phase::tagging));
        store->route(needsReview(u"p#1"_s));
        store->route(HelperEvent::helperCrashed());
        store->route(HelperEvent::helperReady());
        QCOMPARE(store->phase(), SyncPhase::interrupted);
        QCOMPARE(row(0, 0).state(), TrackState::working(Phase::tagging));
        QCOMPARE(store->reviewQueue(), QList{&row(0, 1)});
        QCOMPARE(store->runId(), Text(u"run-1"_s));
        QVERIFY(!store->summary());
    }

    void preparingTakesTheBannerDown() {
        store->setBanner(SyncBanner::info(u"x"_s));
        store->markPreparing();
        QVERIFY(!store->banner());
    }

    void cancellingLeavesBannerAndRows() {
        startRun();
        store->setBanner(SyncBanner::info(u"x"_s));
        store->markCancelled();
        QVERIFY(store->banner());
        QCOMPARE(store->groups()->count(), 2);
    }

    void clearedResultsLeaveBannerAndTunnel() {
        startRun();
        store->route(proxyStatus(ProxyStatusValue::down, u"lost"_s));
        store->route(syncDone(1));
        const auto banner = store->banner();
        store->clearResults();
        QCOMPARE(store->phase(), SyncPhase::idle);
        QVERIFY(store->groups()->isEmpty());
        QVERIFY(!store->summary());
        QVERIFY(!store->runId());
        QCOMPARE(store->banner(), banner);
        QCOMPARE(store->proxyStatus(), ProxyStatusValue::down);
        QCOMPARE(store->proxyDetail(), Text(u"lost"_s));
    }

    void anEqualBannerTellsNobody() {
        QSignalSpy told(store.get(), &SyncStore::bannerChanged);
        store->setBanner(SyncBanner::error(u"x"_s, u"c"_s));
        store->setBanner(SyncBanner::error(u"x"_s, u"c"_s));
        QCOMPARE(told.count(), 1);
        store->setBanner(SyncBanner::error(u"x"_s)); // each of the three fields counts
        store->setBanner(SyncBanner::warning(u"x"_s));
        store->setBanner(SyncBanner::warning(u"y"_s));
        QCOMPARE(told.count(), 4);
        store->dismissBanner();
        store->dismissBanner();
        QCOMPARE(told.count(), 5);
        QVERIFY(store->property("banner").isNull());
    }

    void equalEventsOfRunAndTunnelTellOnce() {
        QSignalSpy run(store.get(), &SyncStore::runIdChanged);
        QSignalSpy status(store.get(), &SyncStore::proxyStatusChanged);
        QSignalSpy detail(store.get(), &SyncStore::proxyDetailChanged);
        QSignalSpy summary(store.get(), &SyncStore::summaryChanged);
        for (int i = 0; i < 2; ++i) {
            store->route(syncStarted(u"run"_s));
            store->route(proxyStatus(ProxyStatusValue::down, u"x"_s));
        }
        store->route(syncDone(1));
        store->route(syncDone(1));
        QCOMPARE(run.count(), 1);
        QCOMPARE(status.count(), 1);
        QCOMPARE(detail.count(), 1);
        QCOMPARE(summary.count(), 1);
    }

    void theBannerCanBeReadFromQML() {
        store->setBanner(SyncBanner::warning(u"message"_s));
        const QVariant banner = store->property("banner");
        const auto &meta = SyncBanner::staticMetaObject;
        const auto value = banner.value<SyncBanner>();
        QCOMPARE(meta.property(meta.indexOfProperty("message")).readOnGadget(&value).toString(), u"message"_s);
        QCOMPARE(meta.property(meta.indexOfProperty("kind")).readOnGadget(&value).toInt(),
                 int(SyncBanner::Kind::warning));
    }
};

QTEST_GUILESS_MAIN(TestSyncStorePhases)
#include "tst_syncstore_phases.moc"
