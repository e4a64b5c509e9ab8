#include "Platform/MusicSignInPage.h"
#include "Platform/MusicUserTokenProvider.h"
#include "RawHttp.h"
#include "Support/Await.h"
#include "Support/LogCapture.h"
#include "Support/ManualClock.h"
#include "Support/SignInFakes.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString developerToken = u"developer-token-0123"_s;
const QString userToken = u"user-token-4567"_s;

/// A provider and the browser that it opens, which is this test.
struct Bench {
    std::shared_ptr<ScriptedOpener> opener = std::make_shared<ScriptedOpener>();
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    std::unique_ptr<MusicUserTokenProvider> provider = MusicUserTokenProvider::make({.opener = opener, .clock = clock});
    std::stop_source stop;
    QObject owner;

    ~Bench() {
        stop.request_stop();
        QCoreApplication::processEvents();
    }

    std::shared_ptr<Outcome<QString>> start(MusicTokenRequestOptions options = MusicTokenRequestOption::ignoreCache) {
        const auto outcome = observe(&owner, provider->userToken(developerToken, options, stop.get_token()));
        QCoreApplication::processEvents();
        return outcome;
    }
    QUrl url() const { return opener->opened.value(0); }
    QByteArray host() const { return "127.0.0.1:" + QByteArray::number(url().port()); }
    QByteArray get() const {
        return rawExchange(quint16(url().port()),
                           "GET " + url().path().toLatin1() + " HTTP/1.1\r\nHost: " + host() + "\r\n\r\n");
    }
    int post(const QByteArray &body) const {
        const QByteArray head = "POST " + url().path().toLatin1() + " HTTP/1.1\r\nHost: " + host() +
                                "\r\nOrigin: http://" + host() + "\r\nContent-Type: application/json" +
                                "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n";
        return statusOf(rawExchange(quint16(url().port()), head + body));
    }
    bool listens() const {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, quint16(url().port()));
        return socket.waitForConnected(2000);
    }
};

QByteArray tokenAnswer() {
    return QJsonDocument(QJsonObject{{u"userToken"_s, userToken}}).toJson();
}

} // namespace

class TestMusicUserToken : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void thePagesTokenIsTheAnswerAndThePageGoes() {
        Bench bench;
        const auto outcome = bench.start();
        QCOMPARE(bench.opener->opened.size(), 1);
        QVERIFY(bench.get().contains(developerToken.toUtf8()));
        QVERIFY(!outcome->isOver());
        QCOMPARE(bench.post(tokenAnswer()), 204);
        QTRY_VERIFY(outcome->isOver());
        QCOMPARE(outcome->value, userToken);
        QVERIFY(!bench.listens());
        QCOMPARE(bench.clock->pendingAlarms(), 0);
    }

    void eachRequestMintsATokenOfItsOwn() {
        Bench bench;
        const auto first = bench.start();
        QCOMPARE(bench.post(tokenAnswer()), 204);
        QTRY_VERIFY(first->isOver());
        const auto second = bench.start();
        QCOMPARE(bench.opener->opened.size(), 2);
        QVERIFY(!second->isOver());
        QVERIFY(bench.opener->opened[0] != bench.opener->opened[1]);
    }

    void aFailureOfThePageIsToldInItsWords() {
        Bench bench;
        const auto outcome = bench.start();
        QCOMPARE(bench.post(R"({"failure":"The account\nhas no subscription"})"), 204);
        QTRY_VERIFY(outcome->isOver());
        QCOMPARE(outcome->failureText(), u"The account has no subscription"_s);
        QVERIFY(!bench.listens());
    }

    void cancellingOnThePageFails() {
        Bench bench;
        const auto outcome = bench.start();
        QCOMPARE(bench.post(R"({"cancelled":true})"), 204);
        QTRY_VERIFY(outcome->isOver());
        QCOMPARE(outcome->failureText(), u"The sign-in was cancelled."_s);
        QVERIFY(!bench.listens());
    }

    void afterFiveMinutesThePageGoes() {
        Bench bench;
        const auto outcome = bench.start();
        bench.clock->advance(5min - 1ns);
        QCoreApplication::processEvents();
        QCOMPARE(statusOf(bench.get()), 200);
        QVERIFY(!outcome->isOver());
        bench.clock->advance(1ns);
        QTRY_VERIFY(outcome->isOver());
        QCOMPARE(outcome->failureText(), u"Nobody signed in before the time was up."_s);
        QVERIFY(!bench.listens());
    }

    void withoutABrowserItFailsAtOnce() {
        Bench bench;
        bench.opener->opens = false;
        const auto outcome = bench.start();
        QTRY_VERIFY(outcome->isOver());
        QCOMPARE(outcome->failureText(), u"No web browser could be opened."_s);
        QVERIFY(!bench.listens());
        QCOMPARE(bench.clock->pendingAlarms(), 0);
    }

    void beingStoppedEndsTheWaitAndThePage() {
        Bench bench;
        const auto outcome = bench.start();
        bench.stop.request_stop();
        QTRY_VERIFY(outcome->isOver());
        QVERIFY_THROWS_EXCEPTION(Cancelled, std::rethrow_exception(outcome->failure));
        QVERIFY(!bench.listens());
        QCOMPARE(bench.clock->pendingAlarms(), 0);
    }

    void beingStoppedBeforehandAsksNobody() {
        Bench bench;
        bench.stop.request_stop();
        const auto outcome = bench.start();
        QTRY_VERIFY(outcome->isOver());
        QVERIFY_THROWS_EXCEPTION(Cancelled, std::rethrow_exception(outcome->failure));
        QVERIFY(bench.opener->opened.isEmpty());
    }

    void theProviderMayGoWhileTheUserSignsIn() {
        Bench bench;
        const auto outcome = bench.start();
        bench.provider.reset();
        QCOMPARE(bench.post(tokenAnswer()), 204);
        QTRY_VERIFY(outcome->isOver());
        QCOMPARE(outcome->value, userToken);
    }

    void noTokenIsInAnyLogLineOrCommandLineOrAddress() {
        const LogCapture log;
        Bench bench;
        const auto outcome = bench.start();
        bench.get();
        QCOMPARE(bench.post("{\"userToken\":\"" + userToken.toUtf8() + "\",\"more\":1}"), 400);
        QCOMPARE(bench.post(tokenAnswer()), 204);
        QTRY_VERIFY(outcome->isOver());
        const auto entries = log.entries();
        for (const auto &entry : entries)
            QVERIFY(!entry.message.contains(userToken) && !entry.message.contains(developerToken));
        QFile arguments(u"/proc/self/cmdline"_s);
        QVERIFY(arguments.open(QIODevice::ReadOnly));
        QVERIFY(!arguments.readAll().contains(userToken.toUtf8()));
        QVERIFY(!bench.url().toString().contains(userToken));
        QVERIFY(!bench.url().toString().contains(developerToken));
    }

    void whatThePageNeverSaysIsNoAnswer_data() {
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("no JSON") << QByteArray("userToken=a");
        QTest::newRow("a list") << QByteArray(R"(["a"])");
        QTest::newRow("an empty token") << QByteArray(R"({"userToken":""})");
        QTest::newRow("a number for a token") << QByteArray(R"({"userToken":1})");
        QTest::newRow("token and failure") << QByteArray(R"({"userToken":"a","failure":"b"})");
        QTest::newRow("an empty failure") << QByteArray(R"({"failure":" "})");
        QTest::newRow("not cancelled") << QByteArray(R"({"cancelled":false})");
        QTest::newRow("something else") << QByteArray(R"({"token":"a"})");
    }
    void whatThePageNeverSaysIsNoAnswer() {
        QFETCH(QByteArray, body);
        QVERIFY(!MusicSignInPage::readAnswer(body));
    }

    void aLongFailureIsCut() {
        const auto answer = MusicSignInPage::readAnswer("{\"failure\":\"" + QByteArray(5000, 'a') + "\"}");
        QVERIFY(answer);
        QCOMPARE(answer->failure.size(), 300);
    }

    void aTokenCanNotEndTheScriptItStandsIn() {
        const auto content = MusicSignInPage::content({.developerToken = u"</script><script>alert(1)//\u2028\"\\"_s,
                                                       .musicKit = QUrl(u"https://cdn.example/kit.js"_s),
                                                       .ignoresCache = true,
                                                       .build = u"1.0"_s});
        QCOMPARE(content.html.count("</script>"), 1);
        QVERIFY(!content.html.contains("\u2028"));
        QVERIFY(!content.html.contains("@nonce@"));
        QVERIFY(!content.html.contains("@request@"));
    }

    void thePolicyLetsInOneScriptAndOurOwn() {
        const MusicSignInPage::Request request{.developerToken = developerToken,
                                               .musicKit = QUrl(u"https://cdn.example/v3/kit.js?a=b"_s),
                                               .build = u"1.0"_s};
        const auto content = MusicSignInPage::content(request);
        const QRegularExpression nonce(u"script-src 'nonce-([A-Za-z0-9+/=]{24})' https://cdn\\.example;"_s);
        const auto match = nonce.match(QString::fromLatin1(content.contentSecurityPolicy));
        QVERIFY(match.hasMatch());
        QVERIFY(content.html.contains("<script nonce=\"" + match.captured(1).toLatin1() + "\">"));
        const auto again = MusicSignInPage::content(request);
        QVERIFY(again.contentSecurityPolicy != content.contentSecurityPolicy);
        for (const char *rule : {"default-src 'none'", "base-uri 'none'", "form-action 'none'",
                                 "frame-ancestors 'none'", "connect-src 'self' https://*.apple.com"})
            QVERIFY2(content.contentSecurityPolicy.contains(rule), rule);
        QVERIFY(!content.contentSecurityPolicy.contains("unsafe"));
    }
};

QTEST_GUILESS_MAIN(TestMusicUserToken)
#include "tst_musicusertoken.moc"
