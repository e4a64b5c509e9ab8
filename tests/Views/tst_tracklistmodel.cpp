#include "Groups.h"

#include "Views/TrackListEntries.h"
#include "Views/TrackListModel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

// A model under the tester, over groups that the test changes.
struct Bench {
    PlaylistGroups groups;
    TrackListModel model{[this](const QString &id) { return playlists.value(id); }};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::QtTest};
    QSignalSpy changed{&model, &QAbstractItemModel::dataChanged};
    QSignalSpy inserted{&model, &QAbstractItemModel::rowsInserted};
    QSignalSpy removed{&model, &QAbstractItemModel::rowsRemoved};
    QSignalSpy wasReset{&model, &QAbstractItemModel::modelReset};
    QHash<QString, TrackListModel::PlaylistMeta> playlists;

    Bench() { model.setGroups(&groups); }

    TrackModel *track(int group, int row) { return groups.at(group)->track(row); }
    // Every element told of since the last call, with the roles, in order.
    QList<std::pair<int, QList<int>>> told() {
        QList<std::pair<int, QList<int>>> result;
        for (const QList<QVariant> &call : std::as_const(changed)) {
            for (int row = call[0].toModelIndex().row(); row <= call[1].toModelIndex().row(); ++row)
                result += {row, call[2].value<QList<int>>()};
        }
        changed.clear();
        return result;
    }
};

} // namespace

class TrackListModelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aGroupIsItsHeaderColumnsRowsAndRoom() {
        Bench bench;
        bench.groups.append(makeGroup(u"a"_s, 2));
        QCOMPARE(bench.model.rowCount(), 5);
        QCOMPARE(bench.model.groupAt(0), bench.groups.at(0));
        QCOMPARE(bench.model.kindOf(1), int(TrackListModel::ColumnHeads));
        QCOMPARE(bench.model.trackAt(2), bench.track(0, 0));
        QCOMPARE(bench.model.trackAt(3), bench.track(0, 1));
        QCOMPARE(bench.model.kindOf(4), -1);
        QCOMPARE(bench.model.contentHeight(), 80.0 + 28 + 2 * 34 + 12);
        QCOMPARE(bench.model.data(bench.model.index(2), Qt::DisplayRole), u"a/0"_s);
    }

    void appendedGroupsAreInsertedAtTheEnd() {
        Bench bench;
        bench.groups.append(makeGroup(u"a"_s, 2));
        bench.inserted.clear();
        bench.groups.append(makeGroup(u"b"_s, 0));
        QCOMPARE(bench.inserted.count(), 1);
        QCOMPARE(bench.inserted[0][1].toInt(), 5);
        QCOMPARE(bench.inserted[0][2].toInt(), 8);
        QCOMPARE(bench.wasReset.count(), 1); // by setGroups alone
        QCOMPARE(bench.model.kindOf(7), -1); // the blank row
    }

    void rowsAreHaltedAtOnceAndSoAreThoseThatComeIntoView() {
        Bench bench;
        bench.groups.append(makeGroup(u"a"_s, 2));
        bench.track(0, 0)->setState(TrackState::working(Phase::converting));
        const auto loaded = [&](int index) {
            auto entry = bench.model.createEntry(TrackListModel::Row);
            entry->setIndex(index);
            bench.model.load(*entry, {});
            return entry;
        };
        const auto before = loaded(2);
        auto *row = qobject_cast<TrackRowEntry *>(before.get());
        QVERIFY(!row->halted());
        bench.told();
        bench.model.setHalted(true);
        const auto told = bench.told();
        QVERIFY(told.contains({2, QList<int>{TrackListModel::StateRole}}));
        bench.model.load(*row, {TrackListModel::StateRole});
        QVERIFY(row->halted());
        QCOMPARE(row->statusText(), u"Converting"_s); // what it was last at
        QVERIFY(qobject_cast<TrackRowEntry *>(loaded(3).get())->halted());
        bench.model.setHalted(true);
        QVERIFY(bench.told().isEmpty());
        bench.model.setHalted(false);
        bench.model.load(*row, {TrackListModel::StateRole});
        QVERIFY(!row->halted());
    }

    void collapsingTakesExactlyTheRowsOut() {
        Bench bench;
        bench.groups.append(makeGroup(u"a"_s, 3));
        bench.groups.append(makeGroup(u"b"_s, 2));
        bench.groups.at(0)->setCollapsed(true);
        QCOMPARE(bench.removed.count(), 1);
        QCOMPARE(bench.removed[0][1].toInt(), 1);
        QCOMPARE(bench.removed[0][2].toInt(), 4);
        QCOMPARE(bench.model.groupAt(2), bench.groups.at(1));
        bench.inserted.clear();
        bench.groups.at(0)->setCollapsed(false);
        QCOMPARE(bench.inserted.count(), 1);
        QCOMPARE(bench.inserted[0][1].toInt(), 1);
        QCOMPARE(bench.inserted[0][2].toInt(), 4);
        QCOMPARE(bench.model.trackAt(4), bench.track(0, 2));
    }

    void aGroupThatComesCollapsedHasNoRows() {
        Bench bench;
        auto group = makeGroup(u"a"_s, 3);
        group->setCollapsed(true);
        bench.groups.append(std::move(group));
        QCOMPARE(bench.model.rowCount(), 2);
        bench.groups.at(0)->setCollapsed(false);
        QCOMPARE(bench.model.rowCount(), 6);
    }

    void manyChangesOfARowAreToldOnceAndOnlyOfThatRow() {
        Bench bench;
        bench.groups.append(makeGroup(u"a"_s, 5));
        for (int i = 1; i <= 50; ++i)
            bench.track(0, 3)->setDownloadFraction(i / 100.0);
        QCOMPARE(bench.changed.count(), 0);
        QTRY_COMPARE(bench.changed.count(), 1);
        const auto told = bench.told();
        QCOMPARE(told.size(), 1);
        QCOMPARE(told[0].first, 5);
        QCOMPARE(told[0].second, QList<int>{TrackListModel::ProgressRole});
        QTest::qWait(40);
        QCOMPARE(bench.changed.count(), 0);
    }

    void aNewStateTellsTheRowAndItsCard() {
        Bench bench;
        bench.groups.append(makeGroup(u"a"_s, 2));
        bench.track(0, 1)->setState(TrackState::done(Finish::ok));
        QTRY_VERIFY(!bench.changed.isEmpty());
        const auto told = bench.told();
        QCOMPARE(told.size(), 2);
        QCOMPARE(told[0].first, 0);
        QCOMPARE(told[0].second, QList<int>{TrackListModel::CountsRole});
        QCOMPARE(told[1].first, 3);
        QVERIFY(told[1].second.contains(TrackListModel::StateRole));
    }

    void neighboursThatChangeAlikeAreToldTogether() {
        Bench bench;
        bench.groups.append(makeGroup(u"a"_s, 6));
        for (const int row : {4, 1, 2, 3})
            bench.track(0, row)->setDownloadFraction(0.5);
        QTRY_COMPARE(bench.changed.count(), 1);
        QCOMPARE(bench.changed[0][0].toModelIndex().row(), 3);
        QCOMPARE(bench.changed[0][1].toModelIndex().row(), 6);
    }

    void rowsOfACollapsedGroupAreNotTold() {
        Bench bench;
        bench.groups.append(makeGroup(u"a"_s, 3));
        bench.track(0, 1)->setDownloadFraction(0.5);
        bench.groups.at(0)->setCollapsed(true);
        bench.changed.clear();
        QTest::qWait(40);
        for (const auto &[element, roles] : bench.told())
            QCOMPARE(element, 0);
    }

    void aResetForgetsWhatWasPending() {
        Bench bench;
        bench.groups.append(makeGroup(u"a"_s, 3));
        bench.track(0, 2)->setDownloadFraction(0.5);
        bench.groups.reset();
        QCOMPARE(bench.model.rowCount(), 0);
        QTest::qWait(40);
        QCOMPARE(bench.changed.count(), 0);
        bench.groups.append(makeGroup(u"b"_s, 1));
        QCOMPARE(bench.model.rowCount(), 4);
    }

    void aFinishedGroupTellsItsBadge() {
        Bench bench;
        bench.groups.append(makeGroup(u"a"_s, 1));
        bench.groups.at(0)->setStatus(Finish::ok);
        QTRY_COMPARE(bench.changed.count(), 1);
        QVERIFY(bench.told()[0].second.contains(TrackListModel::BadgeRole));
    }

    void otherGroupsTakeTheOldOnesPlace() {
        Bench bench;
        bench.groups.append(makeGroup(u"a"_s, 1));
        PlaylistGroups others;
        others.append(makeGroup(u"x"_s, 2));
        bench.model.setGroups(&others);
        QCOMPARE(bench.model.rowCount(), 5);
        bench.groups.append(makeGroup(u"b"_s, 9));
        QCOMPARE(bench.model.rowCount(), 5);
        bench.model.setGroups(nullptr);
        QCOMPARE(bench.model.rowCount(), 0);
    }

    void aDownloadIsRememberedUntilTheNextGroups() {
        Bench bench;
        bench.groups.append(makeGroup(u"a"_s, 1));
        QSignalSpy shows(&bench.model, &TrackListModel::showsDownloadsChanged);
        bench.track(0, 0)->setState(TrackState::working(Phase::searching));
        QVERIFY(!bench.model.showsDownloads());
        bench.track(0, 0)->setState(TrackState::working(Phase::downloading));
        QVERIFY(bench.model.showsDownloads());
        bench.track(0, 0)->setState(TrackState::done(Finish::ok));
        QVERIFY(bench.model.showsDownloads());
        QCOMPARE(shows.count(), 1);
        bench.groups.reset();
        QVERIFY(!bench.model.showsDownloads());
    }

    void theRowUnderReviewIsToldWhenItComesAndGoes() {
        Bench bench;
        bench.groups.append(makeGroup(u"a"_s, 3));
        bench.model.setUnderReview(bench.track(0, 1));
        QCOMPARE(bench.told().value(0).first, 3);
        QVERIFY(bench.model.data(bench.model.index(3), TrackListModel::ReviewRole).toBool());
        bench.model.setUnderReview(nullptr);
        QCOMPARE(bench.told().value(0).first, 3);
        QVERIFY(!bench.model.data(bench.model.index(3), TrackListModel::ReviewRole).toBool());
    }

    void anEntryShowsItsElement() {
        Bench bench;
        bench.playlists.insert(u"a"_s, {PlaylistSourceId::spotify, ArtworkRef::mosaic({u"1"_s})});
        bench.groups.append(makeGroup(u"a"_s, 2));
        bench.track(0, 1)->setState(TrackState::present(TrackMeta{u"mp3"_s, u"320"_s, u"bandcamp"_s}));
        const auto header = bench.model.createEntry(TrackListModel::GroupHeader);
        header->setIndex(0);
        bench.model.load(*header, {});
        QCOMPARE(header->property("sourceName"), u"Spotify"_s);
        QCOMPARE(header->property("artwork").value<ArtworkRef>(), ArtworkRef::mosaic({u"1"_s}));
        bench.playlists.insert(u"a"_s, {PlaylistSourceId::spotify, ArtworkRef::mosaic({u"2"_s})});
        bench.model.playlistsChanged();
        QCOMPARE(bench.told().value(0).first, 0);
        bench.model.load(*header, {TrackListModel::SourceRole});
        QCOMPARE(header->property("artwork").value<ArtworkRef>(), ArtworkRef::mosaic({u"2"_s}));
        QCOMPARE(header->property("placeholderSymbol"), u"music.note.list"_s);
        QCOMPARE(header->property("counts"), u"1 / 2"_s);
        QCOMPARE(header->property("progressLabel"), u"a progress"_s);
        QCOMPARE(header->property("percentText"), u"50 percent"_s);
        QCOMPARE(header->property("collapseLabel"), u"Collapse a"_s);
        QCOMPARE(header->property("collapseSymbol"), u"chevron.up"_s);
        bench.groups.at(0)->setCollapsed(true);
        bench.model.load(*header, {});
        QCOMPARE(header->property("collapseLabel"), u"Expand a"_s);
        QCOMPARE(header->property("collapseSymbol"), u"chevron.down"_s);
        bench.groups.at(0)->setCollapsed(false);

        const auto row = bench.model.createEntry(TrackListModel::Row);
        row->setIndex(3);
        bench.model.load(*row, {});
        QCOMPARE(row->property("title"), u"a/1"_s);
        QCOMPARE(row->property("time"), u"3:20"_s);
        QCOMPARE(row->property("quality"), u"MP3 · 320 kbps"_s);
        QCOMPARE(row->property("sourceLabel"), u"Bandcamp"_s);
        QCOMPARE(row->property("statusText"), u"On disk"_s);
        QVERIFY(row->property("last").toBool());
        // The next track has none of it.
        row->setIndex(2);
        bench.model.load(*row, {});
        QCOMPARE(row->property("quality"), QString());
        QCOMPARE(row->property("sourceLabel"), QString());
        QVERIFY(!row->property("last").toBool());
    }

    void aSourceTextThatIsNoSourceReadsUnknown() {
        Bench bench;
        bench.groups.append(makeGroup(u"a"_s, 1));
        bench.track(0, 0)->setState(TrackState::done(Finish::ok, TrackMeta{{}, {}, u"attic"_s}));
        const auto row = bench.model.createEntry(TrackListModel::Row);
        row->setIndex(2);
        bench.model.load(*row, {});
        QCOMPARE(row->property("sourceLabel"), u"Unknown"_s);
        QCOMPARE(row->property("sourceSymbol"), QString());
    }
};

QTEST_MAIN(TrackListModelTest)
#include "tst_tracklistmodel.moc"
