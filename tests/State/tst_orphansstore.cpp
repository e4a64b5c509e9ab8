#include "State/OrphansStore.h"
#include "Support/Await.h"
#include "Support/ScriptedClient.h"

#include <QSignalSpy>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

class TestOrphansStore : public QObject {
    Q_OBJECT

    std::shared_ptr<ScriptedClient> client;
    std::unique_ptr<OrphansStore> store;
    const HelperError failure = HelperError::engineError(u"internal"_s, u"refused"_s);

private Q_SLOTS:
    void init() {
        client = std::make_shared<ScriptedClient>();
        store = std::make_unique<OrphansStore>(client);
    }
    void cleanup() {
        store.reset();
        client.reset();
    }

    void aNewStoreKnowsNoOrphans() {
        QVERIFY(store->paths().isEmpty());
        QVERIFY(!store->dismissed());
        QVERIFY(!store->hasOrphans());
        QVERIFY(!store->lastError());
    }

    void pathsAccumulateOnceEachInTheOrderOfTheirDiscovery() {
        store->accumulate({u"/b"_s, u"/a"_s, u"/b"_s});
        store->accumulate({u"/a"_s, u"/c"_s, u"/A"_s});
        QCOMPARE(store->paths(), (QStringList{u"/b"_s, u"/a"_s, u"/c"_s, u"/A"_s}));
        QVERIFY(store->hasOrphans());
    }

    void whatLeftTheListMayBeFoundAgain() {
        store->accumulate({u"/a"_s, u"/b"_s});
        client->reply(Method::trashOrphans, "null");
        QVERIFY(outcomeOf(store->trash({u"/a"_s})).succeeded());
        store->accumulate({u"/a"_s, u"/b"_s});
        QCOMPARE(store->paths(), (QStringList{u"/b"_s, u"/a"_s}));

        client->reply(Method::listOrphans, R"({"paths":["/c"]})");
        QVERIFY(outcomeOf(store->listOrphans({})).succeeded());
        store->accumulate({u"/a"_s, u"/c"_s});
        QCOMPARE(store->paths(), (QStringList{u"/c"_s, u"/a"_s}));

        store->reset();
        store->accumulate({u"/a"_s});
        QCOMPARE(store->paths(), QStringList{u"/a"_s});
    }

    void whatIsKnownIsNotAddedWhileItIsTold() {
        connect(store.get(), &OrphansStore::pathsChanged, this, [this] { store->accumulate({u"/a"_s, u"/b"_s}); });
        store->accumulate({u"/a"_s});
        QCOMPARE(store->paths(), (QStringList{u"/a"_s, u"/b"_s}));
    }

    void whatAddsNothingTellsNobody() {
        store->accumulate({u"/a"_s});
        QSignalSpy paths(store.get(), &OrphansStore::pathsChanged);
        QSignalSpy has(store.get(), &OrphansStore::hasOrphansChanged);
        store->accumulate({u"/a"_s, u"/a"_s});
        store->accumulate({});
        QCOMPARE(paths.count() + has.count(), 0);
        store->accumulate({u"/b"_s});
        QCOMPARE(paths.count(), 1);
        QCOMPARE(has.count(), 0);
    }

    void aDismissalOutlastsMoreOrphans() {
        store->accumulate({u"/a"_s});
        QSignalSpy has(store.get(), &OrphansStore::hasOrphansChanged);
        store->setDismissed(true);
        QVERIFY(!store->hasOrphans());
        QCOMPARE(has.count(), 1);
        store->accumulate({u"/b"_s});
        QVERIFY(!store->hasOrphans());
        QCOMPARE(store->paths().size(), 2);
        QCOMPARE(has.count(), 1);
    }

    void aResetForgetsPathsAndDismissalButNotTheFailure() {
        client->fail(Method::trashOrphans, failure);
        store->accumulate({u"/a"_s});
        QVERIFY(outcomeOf(store->trash({u"/a"_s})).succeeded());
        store->setDismissed(true);
        store->reset();
        QVERIFY(store->paths().isEmpty());
        QVERIFY(!store->dismissed());
        QCOMPARE(store->lastError(), std::optional(u"refused"_s));
    }

    void aListingReplacesThePathsAndBringsTheBannerBack() {
        store->accumulate({u"/old"_s});
        store->setDismissed(true);
        client->fail(Method::trashOrphans, failure);
        QVERIFY(outcomeOf(store->trash({u"/x"_s})).succeeded());
        client->reply(Method::listOrphans, R"({"paths":["/new","/old"]})");
        const std::vector selection{PlaylistSelection{PlaylistSourceId::apple, u"p"_s, u"P"_s}};
        QVERIFY(outcomeOf(store->listOrphans(selection)).succeeded());
        QCOMPARE(store->paths(), (QStringList{u"/new"_s, u"/old"_s}));
        QVERIFY(!store->dismissed());
        QVERIFY(store->hasOrphans());
        QVERIFY(!store->lastError());
        QCOMPARE(client->sent().back(), Request::listOrphans(selection));
        QCOMPARE(client->timeouts().back(), std::chrono::nanoseconds(std::chrono::seconds(15)));
        QCOMPARE(client->sentCount(Method::listOrphans), 1);
    }

    void anEmptyListingBringsNoBanner() {
        store->accumulate({u"/old"_s});
        client->reply(Method::listOrphans, R"({"paths":[]})");
        QVERIFY(outcomeOf(store->listOrphans({})).succeeded());
        QVERIFY(!store->hasOrphans());
    }

    void aBareListCostsASecondRequest() {
        client->reply(Method::listOrphans, R"(["/a"])");
        client->reply(Method::listOrphans, R"(["/a"])");
        QVERIFY(outcomeOf(store->listOrphans({})).succeeded());
        QCOMPARE(store->paths(), QStringList{u"/a"_s});
        QCOMPARE(client->sentCount(Method::listOrphans), 2);
    }

    void aFailedListingKeepsPathsAndDismissal() {
        store->accumulate({u"/a"_s});
        store->setDismissed(true);
        client->fail(Method::listOrphans, HelperError::engineError(u"internal"_s, u"first"_s));
        client->fail(Method::listOrphans, failure);
        QVERIFY(outcomeOf(store->listOrphans({})).succeeded());
        QCOMPARE(store->paths(), QStringList{u"/a"_s});
        QVERIFY(store->dismissed());
        QCOMPARE(store->lastError(), std::optional(u"refused"_s));
    }

    void whatWasTrashedLeavesTheListInOrder() {
        store->accumulate({u"/a"_s, u"/b"_s, u"/c"_s, u"/d"_s});
        client->reply(Method::trashOrphans, "null");
        QVERIFY(outcomeOf(store->trash({u"/c"_s, u"/a"_s, u"/none"_s})).succeeded());
        QCOMPARE(store->paths(), (QStringList{u"/b"_s, u"/d"_s}));
        QCOMPARE(client->sent().back(), Request::trashOrphans({u"/c"_s, u"/a"_s, u"/none"_s}));
        QCOMPARE(client->timeouts().back(), std::chrono::nanoseconds(std::chrono::seconds(15)));
    }

    void whatTurnsUpMeanwhileStays() {
        store->accumulate({u"/a"_s});
        const auto trashing = observe(this, store->trash({u"/a"_s}));
        QTRY_COMPARE(client->held(), 1);
        store->accumulate({u"/b"_s});
        client->release("{}");
        QTRY_VERIFY(trashing->isOver());
        QCOMPARE(store->paths(), QStringList{u"/b"_s});
    }

    void whenAllAreTrashedThereAreNone() {
        store->accumulate({u"/a"_s, u"/b"_s});
        client->reply(Method::trashOrphans, R"({"anything":[1]})");
        QSignalSpy has(store.get(), &OrphansStore::hasOrphansChanged);
        store->trashPaths(store->paths());
        QTRY_VERIFY(store->paths().isEmpty());
        QVERIFY(!store->hasOrphans());
        QCOMPARE(has.count(), 1);
    }

    void aFailedTrashingLeavesAllInPlace() {
        store->accumulate({u"/a"_s, u"/b"_s});
        client->fail(Method::trashOrphans, failure);
        QSignalSpy told(store.get(), &OrphansStore::lastErrorChanged);
        QVERIFY(outcomeOf(store->trash({u"/a"_s})).succeeded());
        QCOMPARE(store->paths().size(), 2);
        QCOMPARE(store->lastError(), std::optional(u"refused"_s));
        QCOMPARE(client->sentCount(Method::trashOrphans), 1); // and it isn't tried twice
        client->fail(Method::trashOrphans, failure);
        QVERIFY(outcomeOf(store->trash({u"/a"_s})).succeeded());
        QCOMPARE(told.count(), 1);
        client->reply(Method::trashOrphans, "{}");
        QVERIFY(outcomeOf(store->trash({u"/a"_s})).succeeded());
        QVERIFY(!store->lastError());
        QCOMPARE(told.count(), 2);
    }

    void aStoreThatGoesWhileItWaitsDisturbsNothing() {
        const auto listing = observe(this, store->listOrphans({}));
        const auto trashing = observe(this, store->trash({u"/a"_s}));
        store->trashPaths({u"/b"_s});
        QTRY_COMPARE(client->held(), 3);
        store.reset();
        QTRY_VERIFY(listing->isOver() && trashing->isOver());
    }
};

QTEST_GUILESS_MAIN(TestOrphansStore)
#include "tst_orphansstore.moc"
