// The model and what stands behind it: when it checks, what it says, and which answers count.
#include "Services/UpdaterBench.h"

#include <QSignalSpy>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

class TestUpdater : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<UpdaterBench> _bench;

    void waitForTheOffer() { QTRY_VERIFY(_bench->driver.shows<UpdateScene::Found>()); }
    /// A launch that checks by itself and comes to its end, whatever that is.
    void launchAndLetItCheck(int requests) {
        _bench->launch();
        QTRY_COMPARE(_bench->server.requests(), requests);
        QTest::qWait(50);
        UpdaterBench::settle();
    }

private Q_SLOTS:
    void init() { _bench = std::make_unique<UpdaterBench>(); }
    void cleanup() { _bench.reset(); }

    void theCurrentVersionIsTheBundles_data() {
        QTest::addColumn<QJsonValue>("value");
        QTest::addColumn<QString>("version");
        QTest::newRow("text") << QJsonValue(u"1.4"_s) << u"1.4"_s;
        QTest::newRow("none") << QJsonValue(QJsonValue::Undefined) << u"0.0.0"_s;
        QTest::newRow("a number") << QJsonValue(1.4) << u"0.0.0"_s;
        QTest::newRow("null") << QJsonValue() << u"0.0.0"_s;
    }
    void theCurrentVersionIsTheBundles() {
        QFETCH(const QJsonValue, value);
        _bench->info[u"CFBundleShortVersionString"_s] = value;
        _bench->launch();
        QTEST(_bench->model->currentVersion(), "version");
    }

    void itCanAlwaysCheck() {
        _bench->server.set(u"/feed.xml"_s, {.silent = true});
        _bench->launch();
        QVERIFY(_bench->model->canCheck());
        _bench->model->checkForUpdates();
        QVERIFY(_bench->model->canCheck());
        QTRY_COMPARE(_bench->server.requests(), 1);
        QVERIFY(_bench->model->canCheck());
    }

    void theModelAndTheMenuReachTheSameUpdater() {
        _bench->publish(_bench->goodItem());
        _bench->launch();
        _bench->model->checkForUpdates();
        waitForTheOffer();
        _bench->model->controller()->updater()->checkForUpdates();
        QCOMPARE(_bench->driver.raised, 1);
    }

    void theChoiceIsPassedThroughToldAndKept() {
        AppUpdater &updater = _bench->launch();
        QSignalSpy told(_bench->model.get(), &UpdaterModel::automaticallyChecksChanged);
        QVERIFY(!_bench->model->automaticallyChecks());
        _bench->model->setAutomaticallyChecks(true);
        QVERIFY(updater.automaticallyChecksForUpdates());
        QCOMPARE(told.size(), 1);
        _bench->model->setAutomaticallyChecks(true);
        QCOMPARE(told.size(), 1);
        updater.setAutomaticallyChecksForUpdates(false);
        QVERIFY(!_bench->model->automaticallyChecks());
        QCOMPARE(told.size(), 2);
        updater.setAutomaticallyChecksForUpdates(true);
        _bench->defaults = std::make_shared<UserDefaults>(_bench->home.filePath(u"zelk.conf"_s));
        _bench->launch();
        QVERIFY(_bench->model->automaticallyChecks());
    }

    void theChoiceIsTheBundlesUntilTheUserMakesOne() {
        _bench->info[u"SUEnableAutomaticChecks"_s] = true;
        _bench->launch();
        QVERIFY(_bench->model->automaticallyChecks());
        _bench->model->setAutomaticallyChecks(false);
        _bench->launch();
        QVERIFY(!_bench->model->automaticallyChecks());
    }

    void withoutAFeedItDoesNotClaimToCheckNorToHaveChecked() {
        _bench->info[u"SUEnableAutomaticChecks"_s] = true;
        _bench->info[u"SUFeedURL"_s] = QString();
        _bench->launch().checkForUpdates();
        QVERIFY(!_bench->model->automaticallyChecks());
        QTRY_VERIFY(_bench->driver.failedFor(UpdateProblem::noFeed));
        QVERIFY(!_bench->defaults->value(u"SULastCheckTime"_s).isValid());
        _bench->model->setAutomaticallyChecks(true); // the user's word counts all the same
        QVERIFY(_bench->model->automaticallyChecks());
    }

    void withoutItsBundleItOnlySaysThatThereIsNothing() {
        UpdaterSurroundings bare = _bench->surroundings();
        bare.bundle = Bundle(_bench->home.filePath(u"nowhere"_s), {});
        UpdaterModel model(std::move(bare));
        QCOMPARE(model.currentVersion(), u"0.0.0"_s);
        QVERIFY(!model.automaticallyChecks());
        model.checkForUpdates();
        QTRY_VERIFY(_bench->driver.failedFor(UpdateProblem::noFeed));
    }

    void itChecksByItselfAtLaunchAndOnceADay() {
        _bench->info[u"SUEnableAutomaticChecks"_s] = true;
        _bench->server.set(u"/feed.xml"_s, "<rss><channel/></rss>");
        launchAndLetItCheck(1);
        _bench->pass(24h - 1s);
        QCOMPARE(_bench->server.requests(), 1);
        _bench->pass(1s);
        QTRY_COMPARE(_bench->server.requests(), 2);
    }

    void aRestartRemembersTheLastCheck() {
        _bench->info[u"SUEnableAutomaticChecks"_s] = true;
        _bench->server.set(u"/feed.xml"_s, "<rss><channel/></rss>");
        launchAndLetItCheck(1);
        _bench->defaults = std::make_shared<UserDefaults>(_bench->home.filePath(u"zelk.conf"_s));
        launchAndLetItCheck(1);
    }

    void aFailedCheckIsNotRepeatedBeforeADayEither() {
        _bench->info[u"SUEnableAutomaticChecks"_s] = true;
        launchAndLetItCheck(1);
        launchAndLetItCheck(1);
        QVERIFY(_bench->driver.scenes.isEmpty());
    }

    void withoutTheChoiceItNeverChecksByItself() {
        _bench->launch();
        _bench->pass(72h);
        QCOMPARE(_bench->server.requests(), 0);
        QCOMPARE(_bench->clock->pendingAlarms(), 0);
    }

    void theChoiceWorksAtOnceBothWays() {
        _bench->server.set(u"/feed.xml"_s, "<rss><channel/></rss>");
        _bench->launch();
        _bench->model->setAutomaticallyChecks(true);
        QTRY_COMPARE(_bench->server.requests(), 1);
        _bench->model->setAutomaticallyChecks(false);
        _bench->pass(48h);
        QCOMPARE(_bench->server.requests(), 1);
    }

    void anUnattendedRunChecksOnlyWhenItIsAsked() {
        _bench->info[u"SUEnableAutomaticChecks"_s] = true;
        _bench->unattended = true;
        _bench->launch();
        _bench->pass(48h);
        QCOMPARE(_bench->server.requests(), 0);
        _bench->model->checkForUpdates();
        QTRY_COMPARE(_bench->server.requests(), 1);
    }

    void withoutAFeedNothingIsCheckedByItself() {
        _bench->info[u"SUEnableAutomaticChecks"_s] = true;
        _bench->info[u"SUFeedURL"_s] = QString();
        _bench->launch();
        UpdaterBench::settle();
        QVERIFY(_bench->driver.scenes.isEmpty());
        QCOMPARE(_bench->clock->pendingAlarms(), 0);
    }

    void aControllerThatDoesNotStartItsUpdaterChecksNothingByItself() {
        _bench->info[u"SUEnableAutomaticChecks"_s] = true;
        _bench->server.set(u"/feed.xml"_s, "<rss><channel/></rss>");
        StandardUpdaterController controller(false, _bench->surroundings());
        _bench->pass(48h);
        QCOMPARE(_bench->server.requests(), 0);
        controller.updater()->checkForUpdates();
        QTRY_VERIFY(_bench->driver.shows<UpdateScene::UpToDate>());
    }

    void aCheckByItselfSaysNothingWithoutAnUpdate_data() {
        QTest::addColumn<QByteArray>("feed");
        QTest::newRow("nothing new") << QByteArray("<rss><channel/></rss>");
        QTest::newRow("malformed") << QByteArray("<rss>");
        const FeedItem item{
            .version = "2.0", .url = "https://localhost/zelk", .length = "9", .signature = {}, .extra = {}};
        QTest::newRow("unsigned") << item.feed();
    }
    void aCheckByItselfSaysNothingWithoutAnUpdate() {
        QFETCH(const QByteArray, feed);
        _bench->info[u"SUEnableAutomaticChecks"_s] = true;
        _bench->server.set(u"/feed.xml"_s, feed);
        launchAndLetItCheck(1);
        QVERIFY(_bench->driver.scenes.isEmpty());
    }

    void aCheckByItselfSpeaksOfAnUpdate() {
        _bench->info[u"SUEnableAutomaticChecks"_s] = true;
        _bench->publish(_bench->goodItem());
        _bench->launch();
        waitForTheOffer();
        QCOMPARE(_bench->driver.scenes.size(), 1);
    }

    void askingDuringACheckByItselfJoinsIt() {
        _bench->info[u"SUEnableAutomaticChecks"_s] = true;
        _bench->server.set(u"/feed.xml"_s, {.silent = true});
        AppUpdater &updater = _bench->launch();
        QTRY_COMPARE(_bench->server.requests(), 1);
        QVERIFY(_bench->driver.scenes.isEmpty());
        updater.checkForUpdates();
        QVERIFY(_bench->driver.shows<UpdateScene::Checking>());
        updater.checkForUpdates();
        QCOMPARE(_bench->driver.raised, 1);
        _bench->pass(30s);
        QTRY_VERIFY(_bench->driver.failedFor(UpdateProblem::silence));
        QCOMPARE(_bench->server.requests(), 1);
    }

    void turningItOffEndsASilentCheckAndNoOther() {
        _bench->info[u"SUEnableAutomaticChecks"_s] = true;
        _bench->server.set(u"/feed.xml"_s, {.silent = true});
        AppUpdater &updater = _bench->launch();
        QTRY_COMPARE(_bench->server.requests(), 1);
        updater.setAutomaticallyChecksForUpdates(false);
        UpdaterBench::settle();
        QCOMPARE(_bench->clock->pendingAlarms(), 0);
        QVERIFY(_bench->driver.scenes.isEmpty());
        updater.setAutomaticallyChecksForUpdates(true);
        updater.checkForUpdates();
        updater.setAutomaticallyChecksForUpdates(false);
        QVERIFY(_bench->driver.shows<UpdateScene::Checking>());
    }

    void aSecondRequestNeverStartsASecondCheck() {
        _bench->publish(_bench->goodItem());
        AppUpdater &updater = _bench->launch();
        updater.checkForUpdates();
        updater.checkForUpdates();
        waitForTheOffer();
        updater.checkForUpdates();
        QCOMPARE(_bench->server.requests(), 1);
        QCOMPARE(_bench->driver.raised, 2);
        QVERIFY(_bench->driver.shows<UpdateScene::Found>());
    }

    void afterWordsARequestChecksAgain() {
        _bench->server.set(u"/feed.xml"_s, "<rss><channel/></rss>");
        AppUpdater &updater = _bench->launch();
        updater.checkForUpdates();
        QTRY_VERIFY(_bench->driver.shows<UpdateScene::UpToDate>());
        _bench->publish(_bench->goodItem());
        updater.checkForUpdates();
        waitForTheOffer();
    }

    void aCancelledCheckEndsWithoutAWord() {
        _bench->server.set(u"/feed.xml"_s, {.silent = true});
        AppUpdater &updater = _bench->launch();
        updater.checkForUpdates();
        QTRY_COMPARE(_bench->server.requests(), 1);
        _bench->answer(UpdateAnswer::cancel);
        QVERIFY(_bench->driver.shows<UpdateScene::Nothing>());
        UpdaterBench::settle();
        QCOMPARE(_bench->driver.scenes.size(), 2);
        QCOMPARE(_bench->clock->pendingAlarms(), 0);
        _bench->publish(_bench->goodItem());
        updater.checkForUpdates();
        waitForTheOffer();
    }

    void aCheckCancelledBeforeItBeganEndsToo() {
        _bench->publish(_bench->goodItem());
        _bench->launch().checkForUpdates();
        _bench->answer(UpdateAnswer::cancel);
        UpdaterBench::settle();
        QVERIFY(_bench->driver.shows<UpdateScene::Nothing>());
        QCOMPARE(_bench->server.requests(), 0);
    }

    void aSkippedVersionIsOnlyShownWhenItIsAskedFor() {
        _bench->info[u"SUEnableAutomaticChecks"_s] = true;
        _bench->publish(_bench->goodItem());
        _bench->launch();
        waitForTheOffer();
        _bench->answer(UpdateAnswer::skip);
        QVERIFY(_bench->driver.shows<UpdateScene::Nothing>());
        _bench->driver.scenes.clear();
        _bench->pass(24h);
        QTRY_COMPARE(_bench->server.requests(), 2);
        QTest::qWait(50);
        QVERIFY(_bench->driver.scenes.isEmpty());
        _bench->model->checkForUpdates();
        waitForTheOffer();
    }

    void aVersionAfterTheSkippedOneIsShown() {
        _bench->info[u"SUEnableAutomaticChecks"_s] = true;
        _bench->publish(_bench->goodItem());
        _bench->launch();
        waitForTheOffer();
        _bench->answer(UpdateAnswer::skip);
        auto next = _bench->goodItem();
        next.version = "2.1";
        _bench->publish(next);
        _bench->pass(24h);
        waitForTheOffer();
    }

    void laterMeansInADay() {
        _bench->info[u"SUEnableAutomaticChecks"_s] = true;
        _bench->publish(_bench->goodItem());
        _bench->launch();
        waitForTheOffer();
        _bench->answer(UpdateAnswer::later);
        QVERIFY(_bench->driver.shows<UpdateScene::Nothing>());
        _bench->pass(24h - 1s);
        QCOMPARE(_bench->server.requests(), 1);
        _bench->pass(1s);
        waitForTheOffer();
    }

    void anOfferThatStandsIsNotReplacedByTheNextCheck() {
        _bench->info[u"SUEnableAutomaticChecks"_s] = true;
        _bench->publish(_bench->goodItem());
        _bench->launch();
        waitForTheOffer();
        _bench->pass(25h);
        QCOMPARE(_bench->server.requests(), 1);
        _bench->answer(UpdateAnswer::later);
        UpdaterBench::settle();
        QCOMPARE(_bench->server.requests(), 1);
        _bench->pass(24h);
        QTRY_COMPARE(_bench->server.requests(), 2);
    }

    void anAnswerToSomethingElseDoesNothing() {
        constexpr UpdateAnswer all[] = {UpdateAnswer::download, UpdateAnswer::skip, UpdateAnswer::later,
                                        UpdateAnswer::cancel, UpdateAnswer::showInFolder};
        _bench->publish(_bench->goodItem());
        AppUpdater &updater = _bench->launch();
        for (const auto given : all)
            _bench->answer(given);
        QVERIFY(_bench->driver.scenes.isEmpty());
        updater.checkForUpdates();
        for (const auto given :
             {UpdateAnswer::download, UpdateAnswer::skip, UpdateAnswer::later, UpdateAnswer::showInFolder})
            _bench->answer(given);
        QVERIFY(_bench->driver.shows<UpdateScene::Checking>());
        waitForTheOffer();
        for (const auto given : {UpdateAnswer::cancel, UpdateAnswer::showInFolder})
            _bench->answer(given);
        QVERIFY(_bench->driver.shows<UpdateScene::Found>());
        _bench->answer(UpdateAnswer::download);
        for (const auto given :
             {UpdateAnswer::download, UpdateAnswer::skip, UpdateAnswer::later, UpdateAnswer::showInFolder})
            _bench->answer(given);
        QVERIFY(_bench->driver.shows<UpdateScene::Downloading>());
        QTRY_VERIFY(_bench->driver.shows<UpdateScene::Ready>());
        for (const auto given : {UpdateAnswer::download, UpdateAnswer::skip, UpdateAnswer::cancel})
            _bench->answer(given);
        QVERIFY(_bench->driver.shows<UpdateScene::Ready>());
        _bench->answer(UpdateAnswer::later);
        QVERIFY(_bench->driver.shows<UpdateScene::Nothing>());
        QVERIFY(_bench->shown.isEmpty());
    }

    void whatWasShownEndsWithTheUpdater() {
        _bench->publish(_bench->goodItem());
        _bench->launch().checkForUpdates();
        waitForTheOffer();
        _bench->model.reset();
        QVERIFY(!_bench->driver.answered);
    }

    void theUpdaterMayGoDuringACheck() {
        _bench->server.set(u"/feed.xml"_s, {.silent = true});
        _bench->launch().checkForUpdates();
        QTRY_COMPARE(_bench->server.requests(), 1);
        _bench->model.reset();
        UpdaterBench::settle();
        QCOMPARE(_bench->clock->pendingAlarms(), 0);
        QCOMPARE(_bench->driver.scenes.size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestUpdater)
#include "tst_updater.moc"
