#include "State/Records.h"
#include "State/SyncStore.h"

#include <QSignalSpy>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

using Kind = ServerEvent::TrackFinishKind;
using Text = std::optional<QString>;

} // namespace

Q_DECLARE_METATYPE(zelk::HelperEvent)
Q_DECLARE_METATYPE(zelk::TrackState)

class TestSyncStore : public QObject {
    Q_OBJECT

    std::unique_ptr<SyncStore> store;

    TrackModel &row(int group = 0, int track = 0) { return *store->groups()->at(group)->track(track); }

    void startRun() {
        store->route(syncStarted(u"run-1"_s));
        store->route(playlistStarted(u"p"_s, {u"p#0"_s, u"p#1"_s}));
        store->route(playlistStarted(u"q"_s, {u"q#0"_s}));
    }

private Q_SLOTS:
    void init() { store = std::make_unique<SyncStore>(); }
    void cleanup() { store.reset(); }

    void aNewStoreIsIdleAndEmpty() {
        QCOMPARE(store->phase(), SyncPhase::idle);
        QVERIFY(store->groups()->isEmpty());
        QVERIFY(!store->summary());
        QVERIFY(!store->banner());
        QVERIFY(!store->runId());
        QCOMPARE(store->proxyStatus(), ProxyStatusValue::off);
        QVERIFY(!store->proxyDetail());
        QVERIFY(!store->isRunning());
        QCOMPARE(store->overallFraction(), 0.0);
        QCOMPARE(store->overallTotal(), 0);
        QCOMPARE(store->reviewCount(), 0);
        QVERIFY(!store->anyReviewPending());
        QVERIFY(store->reviewQueue().isEmpty());
    }

    void aStartedRunTakesOverInTheToldOrder() {
        startRun();
        store->route(syncDone(3));
        QStringList order;
        connect(store.get(), &SyncStore::runIdChanged, this, [&] { order.append(u"runId"_s); });
        connect(store.get(), &SyncStore::summaryChanged, this, [&] { order.append(u"summary"_s); });
        connect(store->groups(), &PlaylistGroups::groupsReset, this, [&] { order.append(u"groups"_s); });
        connect(store.get(), &SyncStore::phaseChanged, this, [&] { order.append(u"phase"_s); });
        store->setBanner(SyncBanner::info(u"stays"_s));
        store->route(syncStarted(u"run-2"_s));
        QCOMPARE(order, (QStringList{u"runId"_s, u"summary"_s, u"groups"_s, u"phase"_s}));
        QCOMPARE(store->runId(), Text(u"run-2"_s));
        QVERIFY(!store->summary());
        QVERIFY(store->groups()->isEmpty());
        QCOMPARE(store->phase(), SyncPhase::running);
        QCOMPARE(store->banner(), std::optional(SyncBanner::info(u"stays"_s)));
        store->disconnect(this);
    }

    void aSecondRunForgetsTheRowsOfTheFirst() {
        startRun();
        store->route(syncStarted(u"run-2"_s));
        store->route(trackStarted(u"p#0"_s));
        store->route(playlistStarted(u"r"_s, {u"r#0"_s}));
        store->route(trackStarted(u"p#0"_s));
        QCOMPARE(row().state(), TrackState::queued());
        QCOMPARE(store->groups()->count(), 1);
    }

    void aStartedPlaylistBringsItsRowsAtTheEnd() {
        store->route(syncStarted(u"run-1"_s));
        QSignalSpy appended(store->groups(), &PlaylistGroups::groupsAppended);
        QSignalSpy phase(store.get(), &SyncStore::phaseChanged);
        store->route(playlistStarted(u"p"_s, {u"p#0"_s, u"p#1"_s}, 7));
        store->route(playlistStarted(u"q"_s, {}, 3)); // the order of arrival counts, not the index
        QCOMPARE(appended.count(), 2);
        QCOMPARE(phase.count(), 0);
        const PlaylistGroup *group = store->groups()->at(0);
        QCOMPARE(group->id(), u"p"_s);
        QCOMPARE(group->name(), u"Name of p"_s);
        QCOMPARE(group->index(), 7);
        QCOMPARE(group->total(), 2);
        QCOMPARE(row(0, 1).id(), u"p#1"_s);
        QCOMPARE(row(0, 1).dto(), trackOf(u"p#1"_s));
        QCOMPARE(row(0, 1).state(), TrackState::queued());
        QCOMPARE(store->groups()->at(1)->id(), u"q"_s);
    }

    void anIdThatOccursTwiceIsItsLastRow() {
        store->route(playlistStarted(u"p"_s, {u"x"_s, u"x"_s}));
        store->route(trackStarted(u"x"_s));
        QCOMPARE(row(0, 0).state(), TrackState::queued());
        QCOMPARE(row(0, 1).state(), TrackState::checkingDisk());
        store->route(playlistStarted(u"q"_s, {u"x"_s}));
        store->route(needsReview(u"x"_s));
        QCOMPARE(row(0, 1).state(), TrackState::checkingDisk());
        QCOMPARE(row(1, 0).state(), TrackState::awaitingReview({}));
    }

    void eventsOfUnknownTracksAndPlaylistsChangeNothing() {
        const HelperEvent events[] = {
            trackStarted(u"no"_s),
            diskCheck(u"no"_s, DiskCheckResult::present),
            step(u"no"_s, Phase::tagging),
            downloadProgress(u"no"_s, 50),
            needsReview(u"no"_s),
            trackFinished(u"no"_s, Finish::ok),
            playlistFinished(u"no"_s, Finish::ok),
            orphansFound(u"no"_s, {u"/x"_s}),
        };
        for (const auto &event : events)
            store->route(event); // before any row
        startRun();
        QSignalSpy rows(store->groups(), &PlaylistGroups::rowChanged);
        QSignalSpy groups(store->groups(), &PlaylistGroups::groupChanged);
        for (const auto &event : events)
            store->route(event);
        QCOMPARE(rows.count() + groups.count(), 0);
        store->clearResults();
        store->route(trackStarted(u"p#0"_s)); // and after they were cleared
        QVERIFY(store->groups()->isEmpty());
    }

    void eachEventPutsItsRowIntoItsState_data() {
        QTest::addColumn<HelperEvent>("event");
        QTest::addColumn<TrackState>("state");
        const auto flac = metaOf(u"FLAC"_s);
        const auto candidates = std::vector{candidateOf(u"c1"_s), candidateOf(u"c2"_s)};
        const auto id = u"p#1"_s;
        QTest::newRow("trackStarted") << trackStarted(id) << TrackState::checkingDisk();
        QTest::newRow("diskCheck present")
            << diskCheck(id, DiskCheckResult::present, flac) << TrackState::present(flac);
        QTest::newRow("diskCheck present, nothing known")
            << diskCheck(id, DiskCheckResult::present) << TrackState::present();
        QTest::newRow("diskCheck missing")
            << diskCheck(id, DiskCheckResult::missing, flac) << TrackState::working(Phase::searching);
        QTest::newRow("diskCheck broken")
            << diskCheck(id, DiskCheckResult::broken, flac) << TrackState::working(Phase::searching);
        QTest::newRow("step") << step(id, Phase::converting) << TrackState::working(Phase::converting);
        QTest::newRow("step with detail")
            << step(id, Phase::verifying, u"x"_s) << TrackState::working(Phase::verifying, u"x"_s);
        QTest::newRow("downloadProgress") << downloadProgress(id, 50) << TrackState::working(Phase::downloading);
        QTest::newRow("needsReview") << needsReview(id, candidates) << TrackState::awaitingReview(candidates);
        QTest::newRow("failed with detail")
            << trackFinished(id, Finish::failed, {}, u"No source"_s, flac) << TrackState::failed(u"No source"_s);
        QTest::newRow("failed without detail") << trackFinished(id, Finish::failed) << TrackState::failed(u"Failed"_s);
        QTest::newRow("failed, whatever the kind")
            << trackFinished(id, Finish::failed, Kind::verified) << TrackState::failed(u"Failed"_s);
        QTest::newRow("ok verified") << trackFinished(id, Finish::ok, Kind::verified, {}, flac)
                                     << TrackState::present(flac);
        QTest::newRow("ok downloaded") << trackFinished(id, Finish::ok, Kind::downloaded, {}, flac)
                                       << TrackState::done(Finish::ok, flac);
        QTest::newRow("ok without kind") << trackFinished(id, Finish::ok, {}, u"x"_s, flac)
                                         << TrackState::done(Finish::ok, flac);
        QTest::newRow("lowConfidence") << trackFinished(id, Finish::lowConfidence, Kind::verified, {}, flac)
                                       << TrackState::done(Finish::lowConfidence, flac);
        QTest::newRow("skipped") << trackFinished(id, Finish::skipped) << TrackState::done(Finish::skipped);
    }

    void eachEventPutsItsRowIntoItsState() {
        QFETCH(HelperEvent, event);
        startRun();
        QSignalSpy rows(store->groups(), &PlaylistGroups::rowChanged);
        store->route(event);
        QTEST(row(0, 1).state(), "state");
        QCOMPARE(rows.count(), 1); // one event, one word of it, and no other row
        QCOMPARE(rows[0][0].value<PlaylistGroup *>(), store->groups()->at(0));
        QCOMPARE(rows[0][1].toInt(), 1);
        QCOMPARE(row(0, 0).state(), TrackState::queued());
        QCOMPARE(row(1, 0).state(), TrackState::queued());
        store->route(event);
        QCOMPARE(rows.count(), 1); // the same once more changes nothing
        QCOMPARE(store->phase(), SyncPhase::running);
    }

    void theDisksAnswerStaysOnTheRow_data() {
        QTest::addColumn<DiskCheckResult>("result");
        QTest::newRow("present") << DiskCheckResult::present;
        QTest::newRow("missing") << DiskCheckResult::missing;
        QTest::newRow("broken") << DiskCheckResult::broken;
    }

    void theDisksAnswerStaysOnTheRow() {
        QFETCH(DiskCheckResult, result);
        startRun();
        store->route(diskCheck(u"p#0"_s, result));
        store->route(step(u"p#0"_s, Phase::tagging));
        QCOMPARE(row().diskResult(), std::optional(result));
    }

    void downloadProgressIsHeldAndTold_data() {
        QTest::addColumn<double>("percent");
        QTest::addColumn<QString>("sizeText"); // null for none
        QTest::addColumn<QString>("speedText");
        QTest::addColumn<double>("fraction");
        QTest::addColumn<QString>("detail");
        const QString none;
        QTest::newRow("alone") << 42.0 << none << none << 0.42 << u"42%"_s;
        QTest::newRow("all") << 50.0 << u"6 MB"_s << u"1.2 MB/s"_s << 0.5 << u"50% · 6 MB · 1.2 MB/s"_s;
        QTest::newRow("size") << 50.0 << u"6 MB"_s << none << 0.5 << u"50% · 6 MB"_s;
        QTest::newRow("speed") << 50.0 << none << u"1.2 MB/s"_s << 0.5 << u"50% · 1.2 MB/s"_s;
        QTest::newRow("above") << 250.0 << u"6 MB"_s << none << 1.0 << u"250% · 6 MB"_s;
        QTest::newRow("raw figure") << 130.0 << none << none << 1.0 << u"130%"_s;
        QTest::newRow("negative") << -3.0 << none << none << 0.0 << u"-3%"_s;
        QTest::newRow("tie") << 12.5 << none << none << 0.125 << u"13%"_s;
        QTest::newRow("even tie") << 13.5 << none << none << 0.135 << u"14%"_s;
        QTest::newRow("negative tie") << -0.5 << none << none << 0.0 << u"-1%"_s;
        QTest::newRow("hardly negative") << -0.2 << none << none << 0.0 << u"0%"_s;
        QTest::newRow("percents in the texts") << 1.0 << u"%1"_s << u"%2%"_s << 0.01 << u"1% · %1 · %2%"_s;
    }

    void downloadProgressIsHeldAndTold() {
        QFETCH(double, percent);
        QFETCH(QString, sizeText);
        QFETCH(QString, speedText);
        const auto optional = [](const QString &text) { return text.isNull() ? std::nullopt : std::optional(text); };
        startRun();
        store->route(downloadProgress(u"p#0"_s, percent, optional(sizeText), optional(speedText)));
        QTEST(row().downloadFraction(), "fraction");
        QTEST(row().progressDetail().value_or(u"none"_s), "detail");
    }

    void aStepKeepsWhatTheDownloadLeft() {
        startRun();
        store->route(downloadProgress(u"p#0"_s, 80));
        store->route(step(u"p#0"_s, Phase::tagging));
        QCOMPARE(row().downloadFraction(), 0.8);
        QCOMPARE(row().progressDetail(), Text(u"80%"_s));
    }

    void aFinishedPlaylistSetsTheStatusOfItsFirstGroup() {
        startRun();
        store->route(playlistStarted(u"q"_s, {}));
        store->route(playlistFinished(u"q"_s, Finish::lowConfidence));
        QVERIFY(!store->groups()->at(0)->status());
        QCOMPARE(store->groups()->at(1)->status(), std::optional(Finish::lowConfidence));
        QVERIFY(!store->groups()->at(2)->status());
    }

    void orphansOfAPlaylistAccumulate() {
        startRun();
        store->route(orphansFound(u"q"_s, {u"/a"_s}));
        store->route(orphansFound(u"q"_s, {u"/b"_s, u"/a"_s}));
        QVERIFY(store->groups()->at(0)->orphanPaths().isEmpty());
        QCOMPARE(store->groups()->at(1)->orphanPaths(), (QStringList{u"/a"_s, u"/b"_s, u"/a"_s}));
    }

    void orphansOfNoPlaylistAreNoGroups() {
        startRun();
        store->route(playlistStarted(QString(), {}));
        store->route(orphansFound({}, {u"/a"_s}));
        for (const auto *group : store->groups()->groups())
            QVERIFY(group->orphanPaths().isEmpty());
    }

    void theOverallFiguresSumUpTheGroups() {
        startRun();
        store->route(downloadProgress(u"p#0"_s, 50)); // a half download adds nothing
        QCOMPARE(store->overallFraction(), 0.0);
        store->route(trackFinished(u"p#0"_s, Finish::failed));
        store->route(trackFinished(u"q#0"_s, Finish::ok));
        store->route(needsReview(u"p#1"_s));
        QCOMPARE(store->overallTotal(), 3);
        QCOMPARE(store->overallCompleted(), 2);
        QCOMPARE(store->overallFraction(), 2.0 / 3);
        QCOMPARE(store->failedCount(), 1);
        QCOMPARE(store->reviewCount(), 1);
        QVERIFY(store->anyReviewPending());
        QCOMPARE(store->reviewQueue(), QList{&row(0, 1)});
        store->route(trackFinished(u"p#1"_s, Finish::lowConfidence));
        QCOMPARE(row(0, 1).statusRole(), StatusRole::review);
        QVERIFY(store->reviewQueue().isEmpty());
        QCOMPARE(store->overallFraction(), 1.0);
    }

    void aHundredThousandRowsAreEachFoundByTheirEvents() {
        QStringList ids;
        for (int i = 0; i < 100'000; ++i)
            ids.append(u"p#%1"_s.arg(i));
        store->route(syncStarted(u"run"_s));
        store->route(playlistStarted(u"p"_s, ids));
        int told = 0;
        connect(store->groups(), &PlaylistGroups::rowChanged, this,
                [&](PlaylistGroup *, int changed, TrackModel::Fields) { told += changed == told; });
        for (const QString &id : std::as_const(ids))
            store->route(trackFinished(id, Finish::ok));
        QCOMPARE(told, 100'000);
        QCOMPARE(store->overallCompleted(), 100'000);
        store->clearResults();
        QVERIFY(store->groups()->isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestSyncStore)
#include "tst_syncstore.moc"
