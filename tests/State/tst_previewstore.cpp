#include "State/PreviewStore.h"
#include "State/Records.h"
#include "Support/LogCapture.h"
#include "Support/ManualClock.h"
#include "Support/ScriptedClient.h"
#include "Support/Settle.h"

#include <QSignalSpy>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto debounce = 250ms;
using OnDisk = PreviewTrackDTO::OnDisk;

QByteArray tracksJson(const std::vector<PreviewTrackDTO> &tracks) {
    PreviewTracksResult result;
    result.tracks = tracks;
    return writeJSON(result);
}

QByteArray oneTrack(const QString &id, OnDisk onDisk = OnDisk::missing) {
    return tracksJson({previewOf(id, onDisk)});
}

} // namespace

class TestPreviewStore : public QObject {
    Q_OBJECT

    std::shared_ptr<ScriptedClient> client;
    std::shared_ptr<ManualClock> clock;
    std::unique_ptr<PreviewStore> store;
    const PlaylistDTO a = playlistOf(u"a"_s, u"A"_s);
    const PlaylistDTO b = playlistOf(u"b"_s, u"B"_s);
    const PlaylistDTO c = playlistOf(u"c"_s, u"C"_s);

    void passDebounce() {
        settle();
        clock->advance(debounce);
        settle();
    }
    QStringList requested() const {
        QStringList ids;
        for (const auto &request : client->sent())
            ids.append(std::get<Request::GetPlaylistTracks>(request.value).id);
        return ids;
    }
    QStringList shown() const {
        QStringList ids;
        for (const PlaylistGroup *group : store->groups()->groups())
            ids.append(u"%1:%2"_s.arg(group->id()).arg(group->total()));
        return ids;
    }
    void load(const std::vector<PlaylistDTO> &selection) {
        for (const auto &playlist : selection)
            client->reply(Method::getPlaylistTracks, oneTrack(playlist.id + u"#0"_s));
        store->update(selection);
        passDebounce();
        QVERIFY(!store->isLoading());
    }

private Q_SLOTS:
    void init() {
        client = std::make_shared<ScriptedClient>();
        clock = std::make_shared<ManualClock>();
        store = std::make_unique<PreviewStore>(client, clock, debounce);
    }
    void cleanup() {
        store.reset();
        settle();
        client.reset();
    }

    void aNewStoreShowsNothing() {
        QVERIFY(store->groups()->isEmpty());
        QVERIFY(!store->isLoading());
        QCOMPARE(store->trackCount(), 0);
        QCOMPARE(store->onDiskCount(), 0);
    }

    void aSelectionIsFetchedAfterThePause() {
        store->update({a});
        QVERIFY(store->isLoading());
        settle();
        QCOMPARE(clock->untilNextAlarm(), std::optional<Clock::Duration>(debounce));
        clock->advance(debounce - 1ms);
        settle();
        QVERIFY(client->sent().empty());
        clock->advance(1ms);
        settle();
        QCOMPARE(client->sent(), std::vector{Request::getPlaylistTracks(PlaylistSourceId::spotify, u"a"_s, u"A"_s)});
        QCOMPARE(client->timeouts(), std::vector<std::chrono::nanoseconds>{15s});
    }

    void theRowsComeAllAtOnceOnePlaylistAfterTheOther() {
        QSignalSpy reset(store->groups(), &PlaylistGroups::groupsReset);
        store->update({b, a, c});
        passDebounce();
        QCOMPARE(requested(), QStringList{u"b"_s}); // one request in flight at a time
        client->release(tracksJson({previewOf(u"b#0"_s, OnDisk::present), previewOf(u"b#1"_s, OnDisk::missing)}));
        settle();
        QCOMPARE(requested(), (QStringList{u"b"_s, u"a"_s}));
        client->release(tracksJson({}));
        settle();
        QVERIFY(store->groups()->isEmpty());
        QVERIFY(store->isLoading());
        client->release(oneTrack(u"c#0"_s, OnDisk::present));
        settle();
        QCOMPARE(reset.count(), 1);
        QCOMPARE(shown(), (QStringList{u"b:2"_s, u"a:0"_s, u"c:1"_s}));
        QVERIFY(!store->isLoading());

        const PlaylistGroup *group = store->groups()->at(2);
        QCOMPARE(group->name(), u"C"_s);
        QCOMPARE(group->index(), 2);
        QCOMPARE(group->track(0)->state(), TrackState::present());
        QCOMPARE(group->track(0)->diskResult(), std::optional(DiskCheckResult::present));
        QCOMPARE(store->groups()->at(0)->track(1)->state(), TrackState::queued());
    }

    void theFiguresCountRowsAndThoseOnDisk() {
        store->update({a, b});
        passDebounce();
        client->release(tracksJson({previewOf(u"a#0"_s, OnDisk::present), previewOf(u"a#1"_s, OnDisk::missing)}));
        settle();
        client->release(oneTrack(u"b#0"_s, OnDisk::present));
        settle();
        QCOMPARE(store->trackCount(), 3);
        QCOMPARE(store->onDiskCount(), 2);
    }

    void aQuickRunOfChangesCostsOneFetch() {
        store->update({a});
        settle();
        clock->advance(debounce - 1ms);
        settle();
        store->update({b});
        settle();
        clock->advance(1ms); // the first pause would be over
        settle();
        QVERIFY(client->sent().empty());
        clock->advance(debounce - 1ms);
        settle();
        QCOMPARE(requested(), QStringList{u"b"_s});
        QCOMPARE(clock->pendingAlarms(), 0);
    }

    void aChangeThatMeetsTheEndOfThePauseStillSendsNothingOfTheOldSelection() {
        store->update({a});
        settle();
        clock->advance(debounce);
        QMetaObject::invokeMethod(
            store.get(), [this] { store->update({b}); }, Qt::QueuedConnection);
        settle();
        QVERIFY(requested().isEmpty());
        passDebounce();
        QCOMPARE(requested(), QStringList{u"b"_s});
    }

    void aStoreThatGoesAsThePauseEndsSendsNothing() {
        QObject other;
        store->update({a});
        settle();
        clock->advance(debounce);
        QMetaObject::invokeMethod(
            &other, [this] { store.reset(); }, Qt::QueuedConnection);
        settle();
        QVERIFY(requested().isEmpty());
    }

    void anEmptySelectionOnceMoreRunsThroughAllTheStepsAgain() {
        store->update({});
        store->update({a});
        QVERIFY(store->isLoading());
        store->update({});
        QVERIFY(!store->isLoading());
        passDebounce();
        QVERIFY(requested().isEmpty());
    }

    void theSameSelectionOnceMoreChangesNothing() {
        load({a, b});
        QSignalSpy reset(store->groups(), &PlaylistGroups::groupsReset);
        QSignalSpy loading(store.get(), &PreviewStore::isLoadingChanged);
        store->update({a, b});
        settle();
        QCOMPARE(clock->pendingAlarms(), 0);
        passDebounce();
        QCOMPARE(requested().size(), 2);
        QCOMPARE(reset.count() + loading.count(), 0);
    }

    void theSamePlaylistsInAnotherOrderAreAnotherSelection() {
        load({a, b});
        load({b, a});
        QCOMPARE(shown(), (QStringList{u"b:1"_s, u"a:1"_s}));
    }

    void theShownSelectionOnceMoreLeavesAFetchUnderWayAlone() {
        load({a});
        store->update({b});
        passDebounce();
        store->update({a});
        QVERIFY(store->isLoading());
        client->release(oneTrack(u"b#0"_s));
        settle();
        QCOMPARE(shown(), QStringList{u"b:1"_s});
    }

    void groupsThatCameOutEmptyAreNotFetchedAgain() {
        client->fail(Method::getPlaylistTracks, HelperError::helperCrashed());
        client->fail(Method::getPlaylistTracks, HelperError::helperCrashed());
        const LogCapture log;
        store->update({a});
        passDebounce();
        QCOMPARE(shown(), QStringList{u"a:0"_s});
        store->update({a});
        passDebounce();
        QCOMPARE(requested().size(), 2);
        QVERIFY(!store->isLoading());
    }

    void theSameSelectionStartsAnewWhileItsFirstFetchIsUnderWay() {
        store->update({a});
        passDebounce();
        QCOMPARE(requested().size(), 1);
        store->update({a});
        client->release(oneTrack(u"a#0"_s));
        settle();
        QVERIFY(store->groups()->isEmpty()); // the answer of the cancelled fetch
        QVERIFY(store->isLoading());
        passDebounce();
        QCOMPARE(requested().size(), 2);
        client->release(oneTrack(u"a#0"_s));
        settle();
        QCOMPARE(shown(), QStringList{u"a:1"_s});
        QVERIFY(!store->isLoading());
    }

    void theOldRowsStayUntilTheNewOnesAreComplete() {
        load({a});
        const TrackModel *old = store->groups()->at(0)->track(0);
        store->update({b, c});
        passDebounce();
        client->release(oneTrack(u"b#0"_s));
        settle();
        QCOMPARE(store->groups()->at(0)->track(0), old);
        client->release(oneTrack(u"c#0"_s));
        settle();
        QCOMPARE(shown(), (QStringList{u"b:1"_s, u"c:1"_s}));
    }

    void aCancelledFetchWritesNothingAndAsksNoMore() {
        load({a});
        store->update({b, c});
        passDebounce();
        store->update({c});
        client->release(oneTrack(u"b#0"_s));
        settle();
        QCOMPARE(requested(), (QStringList{u"a"_s, u"b"_s})); // b's successor isn't asked for
        QCOMPARE(shown(), QStringList{u"a:1"_s});
        QVERIFY(store->isLoading());
        passDebounce();
        QCOMPARE(requested(), (QStringList{u"a"_s, u"b"_s, u"c"_s}));
        client->release(oneTrack(u"c#0"_s));
        settle();
        QCOMPARE(shown(), QStringList{u"c:1"_s});
    }

    void aCancelledFetchThatFailsIsSilent() {
        const LogCapture log;
        store->update({a});
        passDebounce();
        store->clear();
        client->releaseFailing(HelperError::helperCrashed());
        settle();
        while (client->held() > 0) {
            client->releaseFailing(HelperError::helperCrashed());
            settle();
        }
        QVERIFY(log.messages(u"preview"_s).isEmpty());
        QVERIFY(store->groups()->isEmpty());
    }

    void aPlaylistThatFailsIsAnEmptyGroupInItsPlace() {
        const LogCapture log;
        client->reply(Method::getPlaylistTracks, oneTrack(u"a#0"_s));
        client->fail(Method::getPlaylistTracks, HelperError::helperCrashed());
        client->fail(Method::getPlaylistTracks, HelperError::engineError(u"internal"_s, u"no such list"_s));
        client->reply(Method::getPlaylistTracks, oneTrack(u"c#0"_s));
        store->update({a, b, c});
        passDebounce();
        QCOMPARE(shown(), (QStringList{u"a:1"_s, u"b:0"_s, u"c:1"_s}));
        QCOMPARE(store->groups()->at(1)->name(), u"B"_s);
        QCOMPARE(store->groups()->at(1)->index(), 1);
        QCOMPARE(log.messages(u"preview"_s), QStringList{u"getPlaylistTracks failed for b: no such list"_s});
        QVERIFY(log.entries().front().type == QtCriticalMsg);
    }

    void anEmptySelectionShowsNothingAtOnce() {
        load({a});
        store->update({b});
        settle();
        store->update({});
        QVERIFY(store->groups()->isEmpty());
        QVERIFY(!store->isLoading());
        passDebounce();
        QCOMPARE(requested(), QStringList{u"a"_s});
        store->update({});
        passDebounce();
        QVERIFY(!store->isLoading());
        QCOMPARE(requested().size(), 1);
        load({a}); // and the way back is open
        QCOMPARE(shown(), QStringList{u"a:1"_s});
    }

    void clearedDuringThePauseNothingIsAsked() {
        store->update({a});
        settle();
        store->clear();
        QVERIFY(!store->isLoading());
        passDebounce();
        QVERIFY(client->sent().empty());
        QVERIFY(store->groups()->isEmpty());
    }

    void clearedDuringARequestItsAnswerIsThrownAway() {
        store->update({a});
        passDebounce();
        store->clear();
        client->release(oneTrack(u"a#0"_s));
        settle();
        QVERIFY(store->groups()->isEmpty());
        QVERIFY(!store->isLoading());
    }

    void whatWasClearedIsFetchedAgain() {
        load({a});
        store->clear();
        QVERIFY(store->groups()->isEmpty());
        load({a});
        QCOMPARE(requested().size(), 2);
    }

    void loadingIsToldOnRealChangesOnly() {
        QSignalSpy loading(store.get(), &PreviewStore::isLoadingChanged);
        store->clear();
        QCOMPARE(loading.count(), 0);
        store->update({a});
        store->update({b});
        QCOMPARE(loading.count(), 1);
        store->clear();
        store->clear();
        QCOMPARE(loading.count(), 2);
    }

    void aStoreThatGoesEndsItsFetchAndLetsTheClientGo_data() {
        QTest::addColumn<bool>("isPausing");
        QTest::newRow("in the pause") << true;
        QTest::newRow("in a request") << false;
    }

    void aStoreThatGoesEndsItsFetchAndLetsTheClientGo() {
        QFETCH(bool, isPausing);
        store->update({a});
        settle();
        if (!isPausing)
            passDebounce();
        const std::weak_ptr watched(client);
        store.reset();
        client.reset();
        QTRY_VERIFY(watched.expired());
        QTRY_COMPARE(clock->pendingAlarms(), 0);
    }
};

QTEST_GUILESS_MAIN(TestPreviewStore)
#include "tst_previewstore.moc"
