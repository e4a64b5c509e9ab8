// What a check makes of what a server answers.
#include "Services/UpdaterBench.h"

using namespace zelk;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QByteArray bomb =
    R"(<?xml version="1.0"?><!DOCTYPE rss [<!ENTITY a "aaaaaaaaaa"><!ENTITY b "&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;">]>)"
    "<rss><channel><title>&b;</title></channel></rss>";

} // namespace

class TestUpdaterChecks : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<UpdaterBench> _bench;

    void check() { _bench->launch().checkForUpdates(); }

private Q_SLOTS:
    void init() { _bench = std::make_unique<UpdaterBench>(); }
    void cleanup() { _bench.reset(); }

    void aNewerVersionIsOffered() {
        auto item = _bench->goodItem();
        item.extra = "<sparkle:shortVersionString>2.0 (spring)</sparkle:shortVersionString>"
                     "<description>&lt;p&gt;Faster.&lt;/p&gt;</description>";
        _bench->publish(item);
        check();
        QVERIFY(_bench->driver.shows<UpdateScene::Checking>());
        QTRY_VERIFY(_bench->driver.shows<UpdateScene::Found>());
        const UpdateScene::Found expected{.version = u"2.0 (spring)"_s,
                                          .current = u"1.0"_s,
                                          .notes = u"Faster."_s,
                                          .delivery = UpdateDelivery::download};
        QVERIFY(_bench->driver.last<UpdateScene::Found>() == expected);
        QCOMPARE(_bench->server.requests(), 1);
        QVERIFY(_bench->neighbours().isEmpty());
    }

    void theSameVersionAndAnOlderOneAreNeverOffered_data() {
        QTest::addColumn<QByteArray>("version");
        QTest::newRow("equal") << QByteArray("1.0");
        QTest::newRow("equal in another form") << QByteArray("1.0.0");
        QTest::newRow("older") << QByteArray("0.9");
        QTest::newRow("a beta of the same") << QByteArray("1.0-beta");
    }
    void theSameVersionAndAnOlderOneAreNeverOffered() {
        QFETCH(const QByteArray, version);
        auto item = _bench->goodItem();
        item.version = version;
        _bench->publish(item);
        check();
        QTRY_VERIFY(_bench->driver.shows<UpdateScene::UpToDate>());
        QCOMPARE(_bench->driver.last<UpdateScene::UpToDate>().version, u"1.0"_s);
    }

    void aFeedThatCanNotBeTakenIsSaidSo_data() {
        using Reply = UpdateServer::Reply;
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("location");
        QTest::addColumn<int>("problem");
        const auto row = [](const char *name, const Reply &reply, UpdateProblem problem) {
            QTest::newRow(name) << reply.body << reply.status << reply.location << static_cast<int>(problem);
        };
        row("malformed", {.body = "<rss><channel>"}, UpdateProblem::unreadableFeed);
        row("empty", {}, UpdateProblem::unreadableFeed);
        row("hostile", {.body = bomb}, UpdateProblem::unreadableFeed);
        row("huge", {.body = QByteArray(1024 * 1024 + 1, ' ')}, UpdateProblem::tooLarge);
        row("404", {.status = 404, .body = "<rss><channel/></rss>"}, UpdateProblem::refused);
        row("500", {.status = 500}, UpdateProblem::refused);
        row("password", {.status = 401}, UpdateProblem::refused);
        row("to http", {.status = 302, .location = "http://localhost:1/feed.xml"}, UpdateProblem::insecureAddress);
        row("to a file", {.status = 302, .location = "file:///etc/passwd"}, UpdateProblem::insecureAddress);
        row("to itself", {.status = 302, .location = "/feed.xml"}, UpdateProblem::refused);
    }
    void aFeedThatCanNotBeTakenIsSaidSo() {
        QFETCH(const QByteArray, body);
        QFETCH(const int, status);
        QFETCH(const QByteArray, location);
        QFETCH(const int, problem);
        _bench->server.set(u"/feed.xml"_s, UpdateServer::Reply{.status = status, .body = body, .location = location});
        check();
        QTRY_VERIFY(_bench->driver.shows<UpdateScene::Failed>());
        QCOMPARE(static_cast<int>(_bench->driver.last<UpdateScene::Failed>().problem), problem);
    }

    void aFeedOfTheLargestSizeIsRead() {
        const QByteArray feed = "<rss><channel>";
        const QByteArray end = "</channel></rss>";
        _bench->server.set(u"/feed.xml"_s, feed + QByteArray(1024 * 1024 - feed.size() - end.size(), ' ') + end);
        check();
        QTRY_VERIFY(_bench->driver.shows<UpdateScene::UpToDate>());
    }

    void aRedirectionToAnotherSecureAddressIsFollowed() {
        _bench->server.set(u"/feed.xml"_s, {.status = 302, .location = "/other.xml"});
        _bench->server.set(u"/other.xml"_s, _bench->goodItem().feed());
        check();
        QTRY_VERIFY(_bench->driver.shows<UpdateScene::Found>());
    }

    void aFeedThatIsCutOffIsLost() {
        _bench->server.set(u"/feed.xml"_s, {.body = "<rss><channel/></rss>", .announced = 500});
        check();
        QTRY_VERIFY(_bench->driver.failedFor(UpdateProblem::unreachable));
    }

    void aSilentServerIsWaitedForHalfAMinute() {
        _bench->server.set(u"/feed.xml"_s, {.silent = true});
        check();
        QTRY_COMPARE(_bench->server.requests(), 1);
        _bench->pass(30s - 1s);
        QVERIFY(_bench->driver.shows<UpdateScene::Checking>());
        _bench->pass(1s);
        QTRY_VERIFY(_bench->driver.failedFor(UpdateProblem::silence));
    }

    void aServerThatIsNotThereIsUnreachable() {
        {
            const UpdateServer gone;
            _bench->info[u"SUFeedURL"_s] = gone.url(u"/feed.xml"_s).toString();
        }
        check();
        QTRY_VERIFY(_bench->driver.failedFor(UpdateProblem::unreachable));
    }

    void aCertificateThatNobodyVouchesForIsRefused() {
        _bench->network = std::make_shared<QNetworkAccessManager>();
        _bench->publish(_bench->goodItem());
        check();
        QTRY_VERIFY(_bench->driver.failedFor(UpdateProblem::untrustedServer));
        QCOMPARE(_bench->server.requests(), 0);
    }

    void aCertificateForAnotherHostIsRefused() {
        QString address = _bench->server.url(u"/feed.xml"_s).toString();
        _bench->info[u"SUFeedURL"_s] = address.replace(u"localhost"_s, u"127.0.0.2"_s);
        check();
        QTRY_VERIFY(_bench->driver.shows<UpdateScene::Failed>());
        QCOMPARE(_bench->server.requests(), 0);
    }

    void anAddressThatIsNotSecureIsNeverAsked_data() {
        QTest::addColumn<QString>("address");
        QTest::newRow("http") << u"http://localhost:1/feed.xml"_s;
        QTest::newRow("a file") << u"file:///etc/passwd"_s;
        QTest::newRow("no host") << u"https:///feed.xml"_s;
        QTest::newRow("no address") << u"feed.xml"_s;
        QTest::newRow("rubbish") << u"https://[/"_s;
    }
    void anAddressThatIsNotSecureIsNeverAsked() {
        QFETCH(const QString, address);
        _bench->info[u"SUFeedURL"_s] = address;
        check();
        QTRY_VERIFY(_bench->driver.failedFor(UpdateProblem::insecureAddress));
    }

    void aBuildWithoutAFeedSaysSo() {
        _bench->info.remove(u"SUFeedURL"_s);
        check();
        QTRY_VERIFY(_bench->driver.failedFor(UpdateProblem::noFeed));
    }

    void anUpdateWithoutASignatureIsRefused() {
        auto item = _bench->goodItem();
        item.signature.clear();
        _bench->publish(item);
        check();
        QTRY_VERIFY(_bench->driver.failedFor(UpdateProblem::unsignedUpdate));
    }

    void aBuildWithoutAKeyTakesNoUpdate_data() {
        QTest::addColumn<QJsonValue>("key");
        QTest::newRow("none") << QJsonValue();
        QTest::newRow("empty") << QJsonValue(QString());
        QTest::newRow("too short") << QJsonValue(u"AAAA"_s);
        QTest::newRow("no base64") << QJsonValue(u"!"_s);
        QTest::newRow("a number") << QJsonValue(7);
    }
    void aBuildWithoutAKeyTakesNoUpdate() {
        QFETCH(const QJsonValue, key);
        _bench->info[u"SUPublicEDKey"_s] = key;
        _bench->publish(_bench->goodItem());
        check();
        QTRY_VERIFY(_bench->driver.failedFor(UpdateProblem::unsignedUpdate));
    }

    void aFileAtAnInsecureAddressIsRefused() {
        auto item = _bench->goodItem();
        item.url = "http://localhost:1/zelk.tar.gz";
        _bench->publish(item);
        check();
        QTRY_VERIFY(_bench->driver.failedFor(UpdateProblem::insecureAddress));
    }

    void anUpdateBeyondMeasureIsRefused() {
        auto item = _bench->goodItem();
        item.length = "1073741825";
        _bench->publish(item);
        check();
        QTRY_VERIFY(_bench->driver.failedFor(UpdateProblem::tooLarge));
    }

    void notesFromElsewhereAreFetchedAndReadAsText() {
        auto item = _bench->goodItem();
        item.extra = "<sparkle:releaseNotesLink>" + _bench->server.url(u"/notes.html"_s).toEncoded() +
                     "</sparkle:releaseNotesLink>";
        _bench->publish(item);
        _bench->server.set(u"/notes.html"_s, "<html><head><title>x</title></head><body><h1>New</h1><ul><li>Fast</ul>");
        check();
        QTRY_VERIFY(_bench->driver.shows<UpdateScene::Found>());
        QCOMPARE(_bench->driver.last<UpdateScene::Found>().notes, u"New\n\n• Fast"_s);
    }

    void notesThatCanNotBeHadKeepNoUpdateBack_data() {
        QTest::addColumn<QByteArray>("address");
        QTest::newRow("404") << QByteArray("SERVER/nowhere.html");
        QTest::newRow("http") << QByteArray("http://localhost:1/notes.html");
        QTest::newRow("a file") << QByteArray("file:///etc/passwd");
    }
    void notesThatCanNotBeHadKeepNoUpdateBack() {
        QFETCH(QByteArray, address);
        address.replace("SERVER", _bench->server.url({}).toEncoded());
        auto item = _bench->goodItem();
        item.extra = "<sparkle:releaseNotesLink>" + address + "</sparkle:releaseNotesLink>";
        _bench->publish(item);
        check();
        QTRY_VERIFY(_bench->driver.shows<UpdateScene::Found>());
        QCOMPARE(_bench->driver.last<UpdateScene::Found>().notes, QString());
    }

    void whatThePackageManagerBroughtIsLeftToIt() {
        _bench->owned = true;
        _bench->publish(_bench->goodItem());
        check();
        QTRY_VERIFY(_bench->driver.shows<UpdateScene::Found>());
        QCOMPARE(_bench->driver.last<UpdateScene::Found>().delivery, UpdateDelivery::packageManager);
        QCOMPARE(_bench->askedFor, _bench->bundlePath() + u"/Contents/Linux/zelk"_s);
        _bench->answer(UpdateAnswer::download);
        UpdaterBench::settle();
        QVERIFY(_bench->driver.shows<UpdateScene::Found>());
        QCOMPARE(_bench->server.requests(), 1);
    }

    void inAFolderThatCanNotBeWrittenNothingIsDownloaded() {
        QFile file(_bench->home.filePath(u"plain"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        _bench->folder = _bench->home.filePath(u"plain/apps"_s);
        _bench->publish(_bench->goodItem());
        check();
        QTRY_VERIFY(_bench->driver.shows<UpdateScene::Found>());
        QCOMPARE(_bench->driver.last<UpdateScene::Found>().delivery, UpdateDelivery::elsewhere);
        _bench->answer(UpdateAnswer::download);
        UpdaterBench::settle();
        QVERIFY(_bench->driver.shows<UpdateScene::Found>());
        QCOMPARE(_bench->server.requests(), 1);
    }

    void aRequestTellsNothingOfItsUser() {
        _bench->publish(_bench->goodItem());
        check();
        QTRY_VERIFY(_bench->driver.shows<UpdateScene::Found>());
        const QByteArray request = _bench->server.lastRequest().toLower();
        QVERIFY(request.contains("accept-encoding: identity"));
        for (const char *header : {"cookie:", "authorization:", "referer:"})
            QVERIFY2(!request.contains(header), header);
    }
};

QTEST_GUILESS_MAIN(TestUpdaterChecks)
#include "tst_updater_checks.moc"
