#include "App/AppModel.h"
#include "App/Surroundings.h"
#include "Support/SampleData.h"
#include "Support/ScriptedClient.h"
#include "Support/Settle.h"
#include "Views/BannerLogic.h"

#include <QSignalSpy>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Kind = SyncBanner::Kind;
using Mode = SetupCoordinator::Mode;

class BannerLogicTest : public QObject {
    Q_OBJECT

    std::shared_ptr<ScriptedClient> client;
    AppModel::Surroundings around;
    std::unique_ptr<AppModel> model;
    std::unique_ptr<BannerLogic> logic;

    void show(Kind kind, const std::optional<QString> &code) {
        SyncBanner banner = SyncBanner::error(u"It broke"_s, code);
        banner.kind = kind;
        model->sync()->setBanner(banner);
    }

private Q_SLOTS:
    void init() {
        client = std::make_shared<ScriptedClient>();
        around = surroundings();
        model = std::make_unique<AppModel>(client, around);
        logic = std::make_unique<BannerLogic>(*model);
    }
    void cleanup() {
        logic.reset();
        model.reset();
        client.reset();
        settle();
    }

    void kindsHaveTheirFaces_data() {
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<QString>("symbol");
        QTest::addColumn<Ink>("ink");
        QTest::newRow("info") << Kind::info << u"info.circle.fill"_s << Ink::accent;
        QTest::newRow("warning") << Kind::warning << u"exclamationmark.triangle.fill"_s << Ink::orange;
        QTest::newRow("error") << Kind::error << u"xmark.octagon.fill"_s << Ink::red;
    }
    void kindsHaveTheirFaces() {
        QFETCH(Kind, kind);
        QFETCH(Ink, ink);
        show(kind, {});
        QTEST(logic->symbol(), "symbol");
        QCOMPARE(logic->ink(), static_cast<int>(ink));
    }

    void whatItLeavesWithIsWhatItSaid() {
        QVERIFY(!logic->shown());
        show(Kind::error, {});
        QVERIFY(logic->shown());
        QCOMPARE(logic->message(), u"It broke"_s);
        logic->dismiss();
        QVERIFY(!logic->shown());
        QCOMPARE(logic->message(), u"It broke"_s);
    }

    void aNewMessageTakesTheOldOnesPlace() {
        show(Kind::error, u"spotify_auth_expired"_s);
        model->sync()->setBanner(SyncBanner::info(u"All is well"_s));
        QCOMPARE(logic->message(), u"All is well"_s);
        QVERIFY(!logic->offersReconnect());
        logic->dismiss();
        QVERIFY(!logic->shown()); // nothing was queued behind it
    }

    void onlyTheCodeDecidesWhetherToReconnect_data() {
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<std::optional<QString>>("code");
        QTest::addColumn<bool>("offers");
        const auto expired = std::optional(u"spotify_auth_expired"_s);
        QTest::newRow("error") << Kind::error << expired << true;
        QTest::newRow("warning") << Kind::warning << expired << true;
        QTest::newRow("info") << Kind::info << expired << true;
        QTest::newRow("no code") << Kind::error << std::optional<QString>() << false;
        QTest::newRow("empty code") << Kind::error << std::optional(QString()) << false;
        QTest::newRow("another code") << Kind::error << std::optional(u"internal"_s) << false;
        QTest::newRow("almost the code") << Kind::error << std::optional(u"Spotify_auth_expired"_s) << false;
    }
    void onlyTheCodeDecidesWhetherToReconnect() {
        QFETCH(Kind, kind);
        QFETCH(std::optional<QString>, code);
        QFETCH(bool, offers);
        client->reply(Method::getConfig, "{\"config\":" + writeJSON(SampleData::sampleConfig()) + "}");
        show(kind, code);
        QCOMPARE(logic->offersReconnect(), offers);
        logic->reconnect();
        settle();
        QCOMPARE(model->isOnboardingPresented(), offers);
    }

    void whoHasBeenThroughTheSetupRunsItAgain_data() {
        QTest::addColumn<bool>("didOnboard");
        QTest::addColumn<Mode>("mode");
        QTest::newRow("never") << false << Mode::firstRun;
        QTest::newRow("before") << true << Mode::reRun;
    }
    void whoHasBeenThroughTheSetupRunsItAgain() {
        QFETCH(bool, didOnboard);
        client->reply(Method::getConfig, "{\"config\":" + writeJSON(SampleData::sampleConfig()) + "}");
        around.defaults->set(u"didOnboard"_s, didOnboard);
        show(Kind::error, u"spotify_auth_expired"_s);
        logic->reconnect();
        QTRY_VERIFY(model->setupCoordinator());
        QTEST(model->setupCoordinator()->mode(), "mode");
        QVERIFY(logic->shown()); // the message stays
        QCOMPARE(client->sentCount(Method::connectSpotify), 0);
    }

    void dismissingIsAtOnceAndNothingElse() {
        show(Kind::error, u"spotify_auth_expired"_s);
        logic->dismiss();
        QVERIFY(!model->sync()->banner());
        settle();
        QVERIFY(client->sent().empty());
        QVERIFY(client->notified().empty());
        QVERIFY(!model->isOnboardingPresented());
        QVERIFY(!around.defaults->value(u"didOnboard"_s).isValid());
    }

    void aMessageThatHasGoneReconnectsNothing() {
        show(Kind::error, u"spotify_auth_expired"_s);
        logic->dismiss();
        logic->reconnect();
        settle();
        QVERIFY(!model->isOnboardingPresented());
    }
};

QTEST_GUILESS_MAIN(BannerLogicTest)
#include "tst_bannerlogic.moc"
