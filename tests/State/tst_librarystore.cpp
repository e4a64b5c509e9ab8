#include "State/LibraryStore.h"
#include "State/Records.h"
#include "Support/Await.h"
#include "Support/ScriptedClient.h"

#include <QSignalSpy>
#include <QTest>

#include <stdexcept>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

QStringList idsOf(const std::vector<const PlaylistDTO *> &entries) {
    QStringList ids;
    for (const PlaylistDTO *entry : entries)
        ids.append(entry->id);
    return ids;
}

QByteArray wrapped(const std::vector<PlaylistDTO> &playlists) {
    return "{\"playlists\":" + writeJSON(playlists) + "}";
}

} // namespace

class TestLibraryStore : public QObject {
    Q_OBJECT

    std::shared_ptr<ScriptedClient> client;
    std::unique_ptr<LibraryStore> store;

    void load(const std::vector<PlaylistDTO> &playlists) {
        client->reply(Method::listPlaylists, wrapped(playlists));
        QVERIFY(outcomeOf(store->refresh()).succeeded());
        QCOMPARE(store->loadState(), LoadState::loaded());
    }

private Q_SLOTS:
    void init() {
        client = std::make_shared<ScriptedClient>();
        store = std::make_unique<LibraryStore>(client);
    }
    void cleanup() {
        store.reset();
        client.reset();
    }

    void aNewStoreIsIdleAndEmpty() {
        QCOMPARE(store->loadState(), LoadState::idle());
        QVERIFY(store->playlists().empty());
        QVERIFY(store->selection().isEmpty());
        QVERIFY(store->roots().empty());
        QCOMPARE(store->selectedTrackCount(), 0);
    }

    void aRefreshGoesThroughLoadingToLoaded() {
        QList<LoadState> states;
        connect(store.get(), &LibraryStore::loadStateChanged, this, [&] { states.append(store->loadState()); });
        const auto playlists = std::vector{playlistOf(u"b"_s, u"B"_s), playlistOf(u"a"_s, u"A"_s)};
        client->reply(Method::listPlaylists, wrapped(playlists));
        QVERIFY(outcomeOf(store->refresh(PlaylistSourceId::apple)).succeeded());
        QCOMPARE(states, (QList{LoadState::loading(), LoadState::loaded()}));
        QCOMPARE(store->playlists(), playlists); // in the engine's order
        QCOMPARE(client->sent(), std::vector{Request::listPlaylists(PlaylistSourceId::apple)});
        QCOMPARE(client->timeouts(), std::vector<std::chrono::nanoseconds>{std::chrono::seconds(15)});
    }

    void aRefreshOfAllSourcesNamesNone() {
        load({});
        QCOMPARE(client->sent(), std::vector{Request::listPlaylists()});
    }

    void aBareListCostsASecondRequest() {
        const auto playlists = std::vector{playlistOf(u"a"_s, u"A"_s)};
        client->reply(Method::listPlaylists, writeJSON(playlists));
        client->reply(Method::listPlaylists, writeJSON(playlists));
        QVERIFY(outcomeOf(store->refresh(PlaylistSourceId::spotify)).succeeded());
        QCOMPARE(store->loadState(), LoadState::loaded());
        QCOMPARE(store->playlists(), playlists);
        const auto request = Request::listPlaylists(PlaylistSourceId::spotify);
        QCOMPARE(client->sent(), (std::vector{request, request}));
    }

    void aFirstFailureOfAnyKindIsForgotten_data() {
        QTest::addColumn<int>("which");
        QTest::newRow("timed out") << 0;
        QTest::newRow("engine error") << 1;
        QTest::newRow("crashed") << 2;
        QTest::newRow("no helper error at all") << 3;
    }

    void aFirstFailureOfAnyKindIsForgotten() {
        QFETCH(int, which);
        const std::exception_ptr failures[] = {
            std::make_exception_ptr(HelperError::requestTimedOut()),
            std::make_exception_ptr(HelperError::engineError(u"internal"_s, u"x"_s)),
            std::make_exception_ptr(HelperError::helperCrashed()),
            std::make_exception_ptr(std::runtime_error("x")),
        };
        const auto playlists = std::vector{playlistOf(u"a"_s, u"A"_s)};
        client->failWith(Method::listPlaylists, failures[which]);
        client->reply(Method::listPlaylists, writeJSON(playlists));
        QVERIFY(outcomeOf(store->refresh()).succeeded());
        QCOMPARE(store->loadState(), LoadState::loaded());
        QCOMPARE(store->playlists(), playlists);
    }

    void twoFailuresShowTheSecondAndKeepTheOldList() {
        load({playlistOf(u"a"_s, u"A"_s)});
        QSignalSpy playlists(store.get(), &LibraryStore::playlistsChanged);
        client->fail(Method::listPlaylists, HelperError::engineError(u"internal"_s, u"first"_s));
        client->fail(Method::listPlaylists, HelperError::engineError(u"internal"_s, u"second"_s));
        QVERIFY(outcomeOf(store->refresh()).succeeded());
        QCOMPARE(store->loadState(), LoadState::failed(u"second"_s));
        QCOMPARE(store->property("failure").toString(), u"second"_s);
        QCOMPARE(store->playlists().size(), 1u);
        QCOMPARE(playlists.count(), 0);
    }

    void aFailureThatIsNoHelperErrorShowsItsPlainText() {
        client->fail(Method::listPlaylists, HelperError::helperCrashed());
        client->failWith(Method::listPlaylists, std::make_exception_ptr(std::runtime_error("plain")));
        QVERIFY(outcomeOf(store->refresh()).succeeded());
        QCOMPARE(store->loadState(), LoadState::failed(u"plain"_s));
    }

    void ofTwoRefreshesTheLaterAnswerWins() {
        auto first = observe(this, store->refresh());
        auto second = observe(this, store->refresh());
        QTRY_COMPARE(client->held(), 2);
        client->release(wrapped({playlistOf(u"1"_s, u"1"_s)}));
        QTRY_VERIFY(first->isOver());
        QCOMPARE(store->playlists().front().id, u"1"_s);
        client->release(wrapped({playlistOf(u"2"_s, u"2"_s)}));
        QTRY_VERIFY(second->isOver());
        QCOMPARE(store->playlists().size(), 1u);
        QCOMPARE(store->playlists().front().id, u"2"_s);
    }

    void anEqualListTellsNobody() {
        load({playlistOf(u"a"_s, u"A"_s)});
        QSignalSpy playlists(store.get(), &LibraryStore::playlistsChanged);
        load({playlistOf(u"a"_s, u"A"_s)});
        QCOMPARE(playlists.count(), 0);
        load({playlistOf(u"a"_s, u"B"_s)});
        QCOMPARE(playlists.count(), 1);
    }

    void theTreeFollowsTheListsOrder() {
        load({
            playlistOf(u"z"_s, u"Z"_s),
            folderOf(u"f"_s, u"F"_s),
            playlistOf(u"2"_s, u"2"_s, u"f"_s),
            folderOf(u"g"_s, u"G"_s, u"f"_s),
            playlistOf(u"1"_s, u"1"_s, u"f"_s),
            playlistOf(u"deep"_s, u"Deep"_s, u"g"_s),
            playlistOf(u"lost"_s, u"Lost"_s, u"nowhere"_s),
            playlistOf(u"a"_s, u"A"_s),
        });
        QCOMPARE(idsOf(store->roots()), (QStringList{u"z"_s, u"f"_s, u"a"_s}));
        QCOMPARE(idsOf(store->children(u"f"_s)), (QStringList{u"2"_s, u"g"_s, u"1"_s}));
        QCOMPARE(idsOf(store->children(u"g"_s)), QStringList{u"deep"_s});
        QCOMPARE(idsOf(store->children(u"nowhere"_s)), QStringList{u"lost"_s});
        QVERIFY(store->children(u"z"_s).empty());
    }

    void anEmptyParentIsAParentAllTheSame() {
        load({playlistOf(u"a"_s, u"A"_s, u""_s)});
        QVERIFY(store->roots().empty());
        QCOMPARE(idsOf(store->children(u""_s)), QStringList{u"a"_s});
    }

    void theFirstOfTwoWithTheSameIdIsFound() {
        load({playlistOf(u"a"_s, u"First"_s), playlistOf(u"a"_s, u"Second"_s)});
        QCOMPARE(store->playlist(u"a"_s)->name, u"First"_s);
        QVERIFY(!store->playlist(u"b"_s));
        QCOMPARE(store->roots().size(), 2u);
    }

    void aReplacedListForgetsTheOldTree() {
        load({playlistOf(u"a"_s, u"A"_s), playlistOf(u"b"_s, u"B"_s, u"a"_s)});
        load({playlistOf(u"c"_s, u"C"_s)});
        QVERIFY(!store->playlist(u"a"_s));
        QVERIFY(store->children(u"a"_s).empty());
        QCOMPARE(idsOf(store->roots()), QStringList{u"c"_s});
    }

    void thePayloadIsTheSelectedPlaylistsThatAreThere() {
        load({playlistOf(u"a"_s, u"A"_s), folderOf(u"f"_s, u"F"_s), playlistOf(u"b"_s, u"B"_s)});
        store->setSelection({u"a"_s, u"f"_s, u"gone"_s});
        const auto payload = store->selectionPayload();
        QCOMPARE(payload.size(), 1u);
        QCOMPARE(payload.front(), (PlaylistSelection{PlaylistSourceId::spotify, u"a"_s, u"A"_s}));
        QVERIFY(store->isSelected(u"gone"_s)); // nothing prunes it
        load({});
        QVERIFY(store->isSelected(u"a"_s));
        QVERIFY(store->selectionPayload().empty());
    }

    void thePayloadIsInTheSetsOwnOrder() {
        std::vector<PlaylistDTO> playlists;
        QSet<QString> ids;
        for (int i = 0; i < 20; ++i) {
            playlists.push_back(playlistOf(u"p%1"_s.arg(i), u"P"_s));
            ids.insert(u"p%1"_s.arg(i));
        }
        load(playlists);
        store->setSelection(ids);
        QStringList expected(store->selection().cbegin(), store->selection().cend());
        QStringList actual;
        for (const auto &entry : store->selectionPayload())
            actual.append(entry.id);
        QCOMPARE(actual, expected);
    }

    void theTrackCountSumsUpWhatIsThereFoldersToo() {
        auto a = playlistOf(u"a"_s, u"A"_s);
        a.trackCount = 3;
        auto f = folderOf(u"f"_s, u"F"_s);
        f.trackCount = 10;
        QSignalSpy told(store.get(), &LibraryStore::selectedTrackCountChanged);
        store->setSelection({u"a"_s, u"f"_s, u"none"_s, u"gone"_s});
        QCOMPARE(told.count(), 0);
        load({a, f, playlistOf(u"none"_s, u"N"_s)});
        QCOMPARE(store->selectedTrackCount(), 13);
        QCOMPARE(told.count(), 1);
        store->setSelection({u"a"_s, u"f"_s});
        QCOMPARE(told.count(), 1); // the same sum
        store->setSelection({u"none"_s});
        QCOMPARE(store->selectedTrackCount(), 0);
        QCOMPARE(told.count(), 2);
    }

    void aSelectionThatIsCorrectedWhileItIsToldTellsEachCountOnce() {
        auto a = playlistOf(u"a"_s, u"A"_s);
        a.trackCount = 3;
        auto b = playlistOf(u"b"_s, u"B"_s);
        b.trackCount = 5;
        load({a, b});
        QList<qint64> counts;
        connect(store.get(), &LibraryStore::selectedTrackCountChanged, this,
                [&] { counts.append(store->selectedTrackCount()); });
        connect(store.get(), &LibraryStore::selectionChanged, this, [&] {
            if (store->isSelected(u"a"_s))
                store->setSelection({u"b"_s});
        });
        store->setSelection({u"a"_s});
        QCOMPARE(counts, QList<qint64>{5});
        store->setSelection({u"a"_s});
        QCOMPARE(counts, QList<qint64>{5}); // it was 3 only until it was corrected
    }

    void anEqualSelectionTellsNobody() {
        QSignalSpy told(store.get(), &LibraryStore::selectionChanged);
        store->setSelection({u"a"_s, u"b"_s});
        store->setProperty("selection", QStringList{u"b"_s, u"a"_s, u"a"_s});
        QCOMPARE(told.count(), 1);
        store->setProperty("selection", QStringList{u"b"_s});
        QCOMPARE(told.count(), 2);
        QCOMPARE(store->property("selection").toStringList(), QStringList{u"b"_s});
    }

    void withOnlyFoldersSelectedNothingIsSent() {
        load({folderOf(u"f"_s, u"F"_s)});
        store->setSelection({u"f"_s});
        const auto outcome = outcomeOf(store->startSync());
        QCOMPARE(outcome.value, std::optional(false));
        QCOMPARE(client->sentCount(Method::startSync), 0);
    }

    void aSyncIsAskedForTheSelectionAsItWasAtTheCall() {
        load({playlistOf(u"a"_s, u"A"_s), playlistOf(u"b"_s, u"B"_s)});
        store->setSelection({u"a"_s});
        SyncOptions options;
        options.dryRun = true;
        auto starting = observe(this, store->startSync(options));
        store->setSelection({u"b"_s});
        QTRY_COMPARE(client->held(), 1);
        client->release("{\"any\":1}");
        QTRY_VERIFY(starting->isOver());
        QCOMPARE(starting->value, std::optional(true));
        const std::vector selection{PlaylistSelection{PlaylistSourceId::spotify, u"a"_s, u"A"_s}};
        QCOMPARE(client->sent().back(), Request::startSync(selection, options));
        QCOMPARE(client->timeouts().back(), std::chrono::nanoseconds(std::chrono::seconds(15)));
    }

    void aRefusedSyncFails() {
        load({playlistOf(u"a"_s, u"A"_s)});
        store->setSelection({u"a"_s});
        const auto refusal = HelperError::engineError(u"sync_in_progress"_s, u"busy"_s);
        client->fail(Method::startSync, refusal);
        QVERIFY(outcomeOf(store->startSync()).failedWith(refusal));
        QCOMPARE(client->sentCount(Method::startSync), 1);
    }

    void aStoreThatGoesEndsItsRequestAndLetsTheClientGo() {
        const auto refreshing = observe(this, store->refresh());
        QTRY_COMPARE(client->held(), 1);
        const std::weak_ptr watched(client);
        store.reset();
        client.reset();
        QTRY_VERIFY(refreshing->isOver());
        QTRY_VERIFY(watched.expired());
    }

    void aBigLibraryTenDeepIsWalkedInOneGo() {
        std::vector<PlaylistDTO> playlists;
        for (int i = 0; i < 5000; ++i) {
            const auto parent = i % 10 == 0 ? std::nullopt : std::optional(QString::number(i - 1));
            playlists.push_back(i % 10 == 9 ? playlistOf(QString::number(i), u"P"_s, parent)
                                            : folderOf(QString::number(i), u"F"_s, parent));
        }
        load(playlists);
        int seen = 0;
        std::function<void(const std::vector<const PlaylistDTO *> &)> walk = [&](const auto &entries) {
            for (const PlaylistDTO *entry : entries) {
                ++seen;
                walk(store->children(entry->id));
            }
        };
        walk(store->roots());
        QCOMPARE(seen, 5000);
    }
};

QTEST_GUILESS_MAIN(TestLibraryStore)
#include "tst_librarystore.moc"
