#include "State/Records.h"
#include "State/TrackModel.h"

#include <QSignalSpy>
#include <QTest>

using namespace zelk;

Q_DECLARE_METATYPE(zelk::TrackState)

class TestTrackModel : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aNewRowIsQueued() {
        const TrackModel track(trackOf(QStringLiteral("p#0")));
        QCOMPARE(track.id(), QStringLiteral("p#0"));
        QCOMPARE(track.dto(), trackOf(QStringLiteral("p#0")));
        QCOMPARE(track.state(), TrackState::queued());
        QCOMPARE(track.statusRole(), StatusRole::queued);
        QCOMPARE(track.progressFraction(), std::optional(0.0));
        QVERIFY(!track.isFinished());
        QVERIFY(!track.displayMeta());
        QCOMPARE(track.downloadFraction(), 0.0);
        QVERIFY(!track.progressDetail());
        QVERIFY(!track.diskResult());
    }

    void everythingFollowsFromTheState_data() {
        QTest::addColumn<TrackState>("state");
        QTest::addColumn<StatusRole>("role");
        QTest::addColumn<double>("fraction"); // -1 for none
        QTest::addColumn<bool>("isFinished");
        QTest::addColumn<QString>("format"); // of the shown meta
        QTest::addColumn<int>("tally");

        const auto meta = metaOf(QStringLiteral("FLAC"));
        const auto flac = QStringLiteral("FLAC");
        const QString none;
        const auto waiting = int(TrackTally::waiting);
        const auto active = int(TrackTally::active);
        const auto review = int(TrackTally::review);
        const auto complete = int(TrackTally::complete);
        const auto failed = int(TrackTally::failed);
        const auto detail = std::optional(QStringLiteral("x"));
        QTest::newRow("queued") << TrackState::queued() << StatusRole::queued << 0.0 << false << none << waiting;
        QTest::newRow("checkingDisk") << TrackState::checkingDisk() << StatusRole::working << -1.0 << false << none
                                      << active;
        QTest::newRow("present") << TrackState::present(meta) << StatusRole::present << 1.0 << true << flac << complete;
        QTest::newRow("present, nothing known")
            << TrackState::present() << StatusRole::present << 1.0 << true << none << complete;
        QTest::newRow("searching") << TrackState::working(Phase::searching) << StatusRole::working << -1.0 << false
                                   << none << active;
        QTest::newRow("downloading") << TrackState::working(Phase::downloading, detail) << StatusRole::working << 0.75
                                     << false << none << active;
        QTest::newRow("converting") << TrackState::working(Phase::converting, detail) << StatusRole::working << -1.0
                                    << false << none << active;
        QTest::newRow("tagging") << TrackState::working(Phase::tagging) << StatusRole::working << -1.0 << false << none
                                 << active;
        QTest::newRow("verifying") << TrackState::working(Phase::verifying) << StatusRole::working << -1.0 << false
                                   << none << active;
        QTest::newRow("awaitingReview") << TrackState::awaitingReview({candidateOf(QStringLiteral("c"))})
                                        << StatusRole::review << -1.0 << false << none << review;
        QTest::newRow("done ok") << TrackState::done(Finish::ok, meta) << StatusRole::done << 1.0 << true << flac
                                 << complete;
        QTest::newRow("done lowConfidence")
            << TrackState::done(Finish::lowConfidence, meta) << StatusRole::review << 1.0 << true << flac << complete;
        QTest::newRow("done failed") << TrackState::done(Finish::failed) << StatusRole::failed << 1.0 << true << none
                                     << failed;
        QTest::newRow("done skipped") << TrackState::done(Finish::skipped) << StatusRole::skipped << 1.0 << true << none
                                      << complete;
        QTest::newRow("failed") << TrackState::failed(QStringLiteral("x")) << StatusRole::failed << -1.0 << true << none
                                << failed;
    }

    void everythingFollowsFromTheState() {
        QFETCH(TrackState, state);
        QFETCH(double, fraction);
        QFETCH(QString, format);

        TrackModel track(trackOf(QStringLiteral("p#0")));
        track.setDownloadFraction(0.75);
        track.setState(state);
        QCOMPARE(track.state(), state);
        QTEST(track.statusRole(), "role");
        QCOMPARE(track.progressFraction(), fraction < 0 ? std::nullopt : std::optional(fraction));
        QTEST(track.isFinished(), "isFinished");
        QCOMPARE(track.displayMeta(), format.isEmpty() ? std::nullopt : std::optional(metaOf(format)));
        QTEST(int(tallyOf(track.state())), "tally");

        // And as QML reads it.
        QCOMPARE(track.property("progressFraction").toDouble(), std::max(fraction, 0.0));
        QCOMPARE(track.property("progressFraction").isNull(), fraction < 0);
        QCOMPARE(track.property("isFinished").toBool(), track.isFinished());
        QCOMPARE(track.property("statusRole").value<StatusRole>(), track.statusRole());
    }

    void statesAreComparedByValue() {
        const auto candidates = std::vector{candidateOf(QStringLiteral("a"))};
        QVERIFY(TrackState::awaitingReview(candidates) == TrackState::awaitingReview(candidates));
        QVERIFY(TrackState::awaitingReview(candidates) != TrackState::awaitingReview({}));
        QVERIFY(TrackState::present(metaOf(QStringLiteral("A"))) == TrackState::present(metaOf(QStringLiteral("A"))));
        QVERIFY(TrackState::present(metaOf(QStringLiteral("A"))) != TrackState::present());
        QVERIFY(TrackState::working(Phase::tagging) != TrackState::working(Phase::tagging, QStringLiteral("x")));
        QVERIFY(TrackState::done(Finish::ok) != TrackState::done(Finish::skipped));
        QVERIFY(TrackState::queued() != TrackState::checkingDisk());
    }

    void aDownloadLeavesNoProgressForALaterPhase() {
        TrackModel track(trackOf(QStringLiteral("p#0")));
        track.setState(TrackState::working(Phase::downloading));
        track.setDownloadFraction(1);
        QCOMPARE(track.progressFraction(), std::optional(1.0));
        track.setState(TrackState::working(Phase::converting, QStringLiteral("x")));
        QVERIFY(!track.progressFraction());
        QCOMPARE(track.downloadFraction(), 1.0);
    }

    void aPreviewRowOnDiskIsPresent() {
        auto onDisk = previewOf(QStringLiteral("p#1"), PreviewTrackDTO::OnDisk::present);
        onDisk.meta = metaOf(QStringLiteral("MP3"));
        const TrackModel track(onDisk);
        QCOMPARE(track.state(), TrackState::present(metaOf(QStringLiteral("MP3"))));
        QCOMPARE(track.diskResult(), std::optional(DiskCheckResult::present));
        QCOMPARE(track.id(), onDisk.id);
        QCOMPARE(track.title(), onDisk.title);
        QCOMPARE(track.artist(), onDisk.artist);
        QCOMPARE(track.dto().album, onDisk.album);
        QCOMPARE(track.durationSec(), onDisk.durationSec);
        QCOMPARE(track.artwork(), onDisk.artwork);
    }

    void aPreviewRowOnDiskOfWhichNothingIsKnownIsPresentTheSame() {
        const TrackModel track(previewOf(QStringLiteral("p#1"), PreviewTrackDTO::OnDisk::present));
        QCOMPARE(track.state(), TrackState::present());
        QCOMPARE(track.statusRole(), StatusRole::present);
    }

    void aMissingPreviewRowIsQueued() {
        auto missing = previewOf(QStringLiteral("p#1"), PreviewTrackDTO::OnDisk::missing);
        missing.meta = metaOf(QStringLiteral("MP3"));
        const TrackModel track(missing);
        QCOMPARE(track.state(), TrackState::queued());
        QCOMPARE(track.diskResult(), std::optional(DiskCheckResult::missing));
    }

    void aSampleRowHasNoAlbumAndNoArtwork() {
        const TrackModel track(QStringLiteral("p#2"), QStringLiteral("T"), QStringLiteral("A"), 61.5);
        QCOMPARE(track.id(), QStringLiteral("p#2"));
        QCOMPARE(track.title(), QStringLiteral("T"));
        QCOMPARE(track.artist(), QStringLiteral("A"));
        QCOMPARE(track.durationSec(), 61.5);
        QVERIFY(!track.dto().album);
        QCOMPARE(track.artwork(), ArtworkRef::none());
    }

    void anEqualWriteTellsNobody() {
        TrackModel track(trackOf(QStringLiteral("p#0")));
        track.setState(TrackState::working(Phase::downloading, QStringLiteral("x")));
        track.setDownloadFraction(0.5);
        track.setProgressDetail(QStringLiteral("50%"));
        track.setDiskResult(DiskCheckResult::missing);

        QSignalSpy state(&track, &TrackModel::stateChanged);
        QSignalSpy role(&track, &TrackModel::statusRoleChanged);
        QSignalSpy finished(&track, &TrackModel::isFinishedChanged);
        QSignalSpy fraction(&track, &TrackModel::downloadFractionChanged);
        QSignalSpy progress(&track, &TrackModel::progressFractionChanged);
        QSignalSpy detail(&track, &TrackModel::progressDetailChanged);
        QSignalSpy disk(&track, &TrackModel::diskResultChanged);
        track.setState(TrackState::working(Phase::downloading, QStringLiteral("x")));
        track.setDownloadFraction(0.5);
        track.setProgressDetail(QStringLiteral("50%"));
        track.setDiskResult(DiskCheckResult::missing);
        for (const auto *spy : {&state, &role, &finished, &fraction, &progress, &detail, &disk})
            QCOMPARE(spy->count(), 0);
    }

    void aWriteTellsOfWhatReallyChanged() {
        TrackModel track(trackOf(QStringLiteral("p#0")));
        QSignalSpy state(&track, &TrackModel::stateChanged);
        QSignalSpy role(&track, &TrackModel::statusRoleChanged);
        QSignalSpy finished(&track, &TrackModel::isFinishedChanged);
        QSignalSpy progress(&track, &TrackModel::progressFractionChanged);
        QSignalSpy detail(&track, &TrackModel::progressDetailChanged);
        QSignalSpy disk(&track, &TrackModel::diskResultChanged);

        track.setState(TrackState::working(Phase::searching));
        QCOMPARE(state.count(), 1);
        QCOMPARE(role.count(), 1);
        QCOMPARE(progress.count(), 1);
        track.setState(TrackState::working(Phase::tagging)); // still at work, still without a figure
        QCOMPARE(state.count(), 2);
        QCOMPARE(role.count(), 1);
        QCOMPARE(progress.count(), 1);
        QCOMPARE(finished.count(), 0);
        track.setDownloadFraction(0.5); // not shown in this phase
        QCOMPARE(progress.count(), 1);
        track.setState(TrackState::done(Finish::ok));
        QCOMPARE(finished.count(), 1);
        QCOMPARE(progress.count(), 2);
        track.setProgressDetail(QStringLiteral("x"));
        track.setProgressDetail(std::nullopt);
        QCOMPARE(detail.count(), 2);
        track.setDiskResult(DiskCheckResult::broken);
        QCOMPARE(disk.count(), 1);
    }
};

QTEST_GUILESS_MAIN(TestTrackModel)
#include "tst_trackmodel.moc"
