#include "State/PlaylistGroups.h"
#include "State/Records.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

using TrackFields = TrackModel::Fields;
using TrackField = TrackModel::Field;

struct Told {
    QString group;
    int row;
    int fields;
    bool operator==(const Told &) const = default;
};

} // namespace

class TestPlaylistGroups : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aNewGroupHasNeitherStatusNorOrphansAndIsOpen() {
        const auto group = groupOf(u"p"_s, {u"p#0"_s, u"p#1"_s});
        QCOMPARE(group->id(), u"p"_s);
        QCOMPARE(group->name(), u"Name of p"_s);
        QCOMPARE(group->total(), 2);
        QCOMPARE(group->tracks()[1]->id(), u"p#1"_s);
        QVERIFY(!group->status());
        QVERIFY(group->orphanPaths().isEmpty());
        QVERIFY(!group->isCollapsed());
    }

    void eachStateCountsAsItShould_data() {
        QTest::addColumn<int>("which");
        QTest::addColumn<int>("completed");
        QTest::addColumn<int>("active");
        QTest::addColumn<int>("review");
        QTest::addColumn<int>("failed");
        QTest::newRow("queued") << 0 << 0 << 0 << 0 << 0;
        QTest::newRow("checkingDisk") << 1 << 0 << 1 << 0 << 0;
        QTest::newRow("working") << 2 << 0 << 1 << 0 << 0;
        QTest::newRow("awaitingReview") << 3 << 0 << 0 << 1 << 0;
        QTest::newRow("present") << 4 << 1 << 0 << 0 << 0;
        QTest::newRow("done ok") << 5 << 1 << 0 << 0 << 0;
        QTest::newRow("done lowConfidence") << 6 << 1 << 0 << 0 << 0;
        QTest::newRow("done failed") << 7 << 1 << 0 << 0 << 1;
        QTest::newRow("done skipped") << 8 << 1 << 0 << 0 << 0;
        QTest::newRow("failed") << 9 << 1 << 0 << 0 << 1;
    }

    void eachStateCountsAsItShould() {
        QFETCH(int, which);
        const TrackState states[] = {
            TrackState::queued(),
            TrackState::checkingDisk(),
            TrackState::working(Phase::tagging),
            TrackState::awaitingReview({}),
            TrackState::present(),
            TrackState::done(Finish::ok),
            TrackState::done(Finish::lowConfidence),
            TrackState::done(Finish::failed),
            TrackState::done(Finish::skipped),
            TrackState::failed(u"x"_s),
        };
        PlaylistGroups groups;
        groups.append(groupOf(u"other"_s, {u"o#0"_s}));
        groups.append(groupOf(u"p"_s, {u"p#0"_s, u"p#1"_s, u"p#2"_s}));
        PlaylistGroup *group = groups.at(1);
        group->track(0)->setState(TrackState::checkingDisk()); // a fresh row that moves, so that equal is no excuse
        group->track(0)->setState(states[which]);
        QFETCH(int, completed);
        QCOMPARE(group->completed(), completed);
        QTEST(group->activeCount(), "active");
        QTEST(group->reviewCount(), "review");
        QTEST(group->failedCount(), "failed");
        QCOMPARE(group->total(), 3);
        QCOMPARE(group->fraction(), completed / 3.0);

        QCOMPARE(groups.total(), 4);
        QCOMPARE(groups.completed(), completed);
        QTEST(groups.reviewCount(), "review");
        QTEST(groups.failedCount(), "failed");
        QTEST(static_cast<int>(groups.reviewQueue().size()), "review");
    }

    void anEmptyGroupHasAFractionOfNothing() {
        const auto group = groupOf(u"p"_s, {});
        QCOMPARE(group->fraction(), 0.0);
        QCOMPARE(group->total(), 0);
    }

    void theReviewQueueIsInTheOrderOfGroupsAndRows() {
        PlaylistGroups groups;
        groups.append(groupOf(u"a"_s, {u"a#0"_s, u"a#1"_s, u"a#2"_s}));
        groups.append(groupOf(u"b"_s, {u"b#0"_s}));
        groups.at(1)->track(0)->setState(TrackState::awaitingReview({}));
        groups.at(0)->track(2)->setState(TrackState::awaitingReview({}));
        groups.at(0)->track(0)->setState(TrackState::awaitingReview({}));
        groups.at(0)->track(1)->setState(TrackState::done(Finish::lowConfidence));
        QStringList ids;
        const auto queue = groups.reviewQueue();
        for (const TrackModel *track : queue)
            ids.append(track->id());
        QCOMPARE(ids, (QStringList{u"a#0"_s, u"a#2"_s, u"b#0"_s}));
    }

    void anEqualWriteToAGroupTellsNobody() {
        PlaylistGroups groups;
        groups.append(groupOf(u"p"_s, {}));
        PlaylistGroup *group = groups.at(0);
        group->setStatus(Finish::ok);
        group->setCollapsed(true);
        QSignalSpy status(group, &PlaylistGroup::statusChanged);
        QSignalSpy collapsed(group, &PlaylistGroup::isCollapsedChanged);
        QSignalSpy orphans(group, &PlaylistGroup::orphanPathsChanged);
        QSignalSpy told(&groups, &PlaylistGroups::groupChanged);
        group->setStatus(Finish::ok);
        group->setCollapsed(true);
        group->appendOrphanPaths({});
        QCOMPARE(status.count() + collapsed.count() + orphans.count() + told.count(), 0);
    }

    void theListTellsWhatChangedInWhichGroup() {
        PlaylistGroups groups;
        groups.append(groupOf(u"a"_s, {}));
        groups.append(groupOf(u"b"_s, {}));
        QList<std::pair<int, int>> told;
        connect(&groups, &PlaylistGroups::groupChanged, this, [&](PlaylistGroup *group, PlaylistGroup::Fields fields) {
            told.append({group->position(), int(fields)});
        });
        groups.at(1)->setStatus(Finish::skipped);
        groups.at(0)->setCollapsed(true);
        groups.at(1)->appendOrphanPaths({u"/x"_s});
        groups.at(1)->appendOrphanPaths({u"/x"_s, u"/y"_s});
        const QList<std::pair<int, int>> expected{{1, int(PlaylistGroup::Field::Status)},
                                                  {0, int(PlaylistGroup::Field::IsCollapsed)},
                                                  {1, int(PlaylistGroup::Field::OrphanPaths)},
                                                  {1, int(PlaylistGroup::Field::OrphanPaths)}};
        QCOMPARE(told, expected);
        QCOMPARE(groups.at(1)->orphanPaths(), (QStringList{u"/x"_s, u"/x"_s, u"/y"_s}));
    }

    void theListTellsWhatChangedInWhichRow() {
        PlaylistGroups groups;
        groups.append(groupOf(u"a"_s, {u"a#0"_s}));
        groups.append(groupOf(u"b"_s, {u"b#0"_s, u"b#1"_s}));
        QList<Told> told;
        connect(&groups, &PlaylistGroups::rowChanged, this, [&](PlaylistGroup *group, int row, TrackFields fields) {
            told.append({group->id(), row, int(fields)});
        });
        TrackModel *track = groups.at(1)->track(1);
        track->setState(TrackState::checkingDisk());
        track->setState(TrackState::working(Phase::searching));
        track->setDownloadFraction(0.5);
        track->setProgressDetail(u"50%"_s);
        track->setDiskResult(DiskCheckResult::missing);
        track->setDiskResult(DiskCheckResult::missing);
        const QList<Told> expected{{u"b"_s, 1, int(TrackField::State | TrackField::Tally)},
                                   {u"b"_s, 1, int(TrackField::State)},
                                   {u"b"_s, 1, int(TrackField::DownloadFraction)},
                                   {u"b"_s, 1, int(TrackField::ProgressDetail)},
                                   {u"b"_s, 1, int(TrackField::DiskResult)}};
        QCOMPARE(told, expected);
    }

    void whatIsGatheredIsToldOnceAndOnlyWhenThereIsSomething() {
        PlaylistGroups groups;
        groups.append(groupOf(u"a"_s, {u"a#0"_s}));
        QList<int> told;
        connect(&groups, &PlaylistGroups::rowChanged, this,
                [&](PlaylistGroup *, int, TrackFields fields) { told.append(int(fields)); });
        TrackModel *track = groups.at(0)->track(0);
        {
            const TrackModel::Changes outer(*track);
            track->setState(TrackState::working(Phase::downloading));
            {
                const TrackModel::Changes inner(*track);
                track->setDownloadFraction(0.5);
            }
            track->setProgressDetail(u"50%"_s);
            QVERIFY(told.isEmpty());
        }
        {
            const TrackModel::Changes nothing(*track);
            track->setDownloadFraction(0.5);
        }
        QCOMPARE(told, QList{int(TrackField::State | TrackField::Tally | TrackField::DownloadFraction |
                                 TrackField::ProgressDetail)});
    }

    void theSumsAreToldToHaveChangedOnlyWhenARowCountsAsSomethingElse() {
        PlaylistGroups groups;
        groups.append(groupOf(u"a"_s, {u"a#0"_s}));
        QSignalSpy ofList(&groups, &PlaylistGroups::countsChanged);
        QSignalSpy ofGroup(groups.at(0), &PlaylistGroup::countsChanged);
        TrackModel *track = groups.at(0)->track(0);
        track->setState(TrackState::checkingDisk());
        QCOMPARE(ofList.count(), 1);
        QCOMPARE(ofGroup.count(), 1);
        track->setState(TrackState::working(Phase::searching));
        track->setDownloadFraction(0.5);
        QCOMPARE(ofList.count(), 1);
        track->setState(TrackState::awaitingReview({}));
        track->setState(TrackState::done(Finish::lowConfidence)); // the same role, and yet another count
        QCOMPARE(ofList.count(), 3);
        QCOMPARE(ofGroup.count(), 3);
    }

    void groupsAreAppendedInOrder() {
        PlaylistGroups groups;
        QSignalSpy appended(&groups, &PlaylistGroups::groupsAppended);
        QSignalSpy count(&groups, &PlaylistGroups::countChanged);
        QSignalSpy counts(&groups, &PlaylistGroups::countsChanged);
        QSignalSpy reset(&groups, &PlaylistGroups::groupsReset);
        groups.append(groupOf(u"b"_s, {u"b#0"_s}));
        groups.append(groupOf(u"a"_s, {}));
        QCOMPARE(appended.count(), 2);
        QCOMPARE(appended[0], (QVariantList{0, 1}));
        QCOMPARE(appended[1], (QVariantList{1, 1}));
        QCOMPARE(count.count(), 2);
        QCOMPARE(counts.count(), 2);
        QCOMPARE(reset.count(), 0);
        QCOMPARE(groups.at(0)->id(), u"b"_s);
        QCOMPARE(groups.at(1)->position(), 1);
        QVERIFY(!groups.at(2));
        QVERIFY(!groups.at(-1));
    }

    void aGroupIsFoundByItsIdTheFirstOneFirst() {
        PlaylistGroups groups;
        groups.append(groupOf(u"a"_s, {}));
        groups.append(groupOf(u"b"_s, {}));
        groups.append(groupOf(u"b"_s, {}));
        QCOMPARE(groups.groupWithId(u"b"_s), groups.at(1));
        QVERIFY(!groups.groupWithId(u"c"_s));
    }

    void aResetReplacesEverythingAndTellsBeforeAndAfter() {
        PlaylistGroups groups;
        groups.append(groupOf(u"a"_s, {}));
        QStringList told;
        connect(&groups, &PlaylistGroups::groupsAboutToBeReset, this,
                [&] { told.append(u"before: %1"_s.arg(groups.at(0)->id())); });
        connect(&groups, &PlaylistGroups::groupsReset, this,
                [&] { told.append(u"after: %1 at %2"_s.arg(groups.at(0)->id()).arg(groups.at(0)->position())); });
        QSignalSpy count(&groups, &PlaylistGroups::countChanged);
        std::vector<std::unique_ptr<PlaylistGroup>> others;
        others.push_back(groupOf(u"b"_s, {}));
        groups.reset(std::move(others));
        QCOMPARE(told, (QStringList{u"before: a"_s, u"after: b at 0"_s}));
        QCOMPARE(count.count(), 0);
        groups.disconnect(this);
        groups.reset();
        QVERIFY(groups.isEmpty());
        QCOMPARE(count.count(), 1);
    }

    void aResetOfNothingToNothingTellsNobody() {
        PlaylistGroups groups;
        QSignalSpy before(&groups, &PlaylistGroups::groupsAboutToBeReset);
        QSignalSpy after(&groups, &PlaylistGroups::groupsReset);
        QSignalSpy counts(&groups, &PlaylistGroups::countsChanged);
        groups.reset();
        QCOMPARE(before.count() + after.count() + counts.count(), 0);
    }

    void whatIsReplacedCanBeReadUntilTheEndOfTheTurnAndThenGoes() {
        PlaylistGroups groups;
        groups.append(groupOf(u"a"_s, {u"a#0"_s}));
        const QPointer<TrackModel> track = groups.at(0)->track(0);
        QSignalSpy told(&groups, &PlaylistGroups::rowChanged);
        groups.reset();
        QVERIFY(track);
        QCOMPARE(track->title(), u"Title of a#0"_s);
        track->setState(TrackState::checkingDisk());
        QCOMPARE(told.count(), 0); // it is nobody's row any more
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!track);
    }

    void theRowsAreOursInTheEyesOfQML() {
        PlaylistGroups groups;
        groups.append(groupOf(u"a"_s, {u"a#0"_s}));
        QCOMPARE(groups.at(0)->parent(), &groups);
        QCOMPARE(groups.at(0)->track(0)->parent(), groups.at(0));
    }

    void aListenerMayReplaceTheRowsItHearsOf() {
        PlaylistGroups groups;
        groups.append(groupOf(u"a"_s, {u"a#0"_s}));
        connect(&groups, &PlaylistGroups::rowChanged, this, [&] { groups.reset(); });
        groups.at(0)->track(0)->setState(TrackState::checkingDisk());
        QVERIFY(groups.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestPlaylistGroups)
#include "tst_playlistgroups.moc"
