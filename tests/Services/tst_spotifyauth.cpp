#include "Services/SpotifyAuthService.h"
#include "SignInBench.h"
#include "Support/Await.h"
#include "Support/SharedInstance.h"

#include <QTest>

using namespace zelk;

class TestSpotifyAuth : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void connectingEndsWhenTheModelsDoes() {
        ScriptedModel model;
        const auto promised = std::make_shared<OneShot<void>>(std::make_exception_ptr(Cancelled()));
        model.onConnectSpotify = promised->future();
        SpotifyAuthService service;
        QObject owner;
        const auto outcome = observe(&owner, service.connect(model));
        QTRY_COMPARE(model.spotifyConnects, 1);
        QVERIFY(!outcome->isOver());
        promised->fulfil();
        QTRY_VERIFY(outcome->isOver());
        QVERIFY(outcome->succeeded());
        QCOMPARE(model.spotifyConnects, 1);
        QVERIFY(model.client->sent().empty());
        QVERIFY(!model.syncStore->banner());
    }

    void theSharedServiceIsTheOneThatTheApplicationMade() {
        SpotifyAuthService service;
        const SharedInstance shared(service);
        QCOMPARE(&SpotifyAuthService::shared(), &service);
    }
};

QTEST_GUILESS_MAIN(TestSpotifyAuth)
#include "tst_spotifyauth.moc"
