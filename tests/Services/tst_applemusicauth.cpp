#include "LocalServer.h"
#include "Services/AppleMusicAuthService.h"
#include "Services/URLError.h"
#include "Services/URLSession.h"
#include "SignInBench.h"
#include "Support/Await.h"
#include "Support/LogCapture.h"
#include "Support/ManualClock.h"
#include "Support/SampleData.h"
#include "Support/SharedInstance.h"

#include <QNetworkAccessManager>
#include <QProcess>
#include <QTest>

#include <optional>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

const QString softText =
    u"Cloud Apple Music isn't available right now. zelk will keep using your local Music library."_s;
const QString detailed = u"Apple Music connection failed: "_s;

/// A service over a server of this machine, with the user's part scripted.
struct Bench {
    explicit Bench(QByteArray answer = LocalServer::response(200, "dev-token")) : server(std::move(answer)) {
        script->userToken = u"user-token"_s;
        service.emplace(
            AppleMusicAuthService::Operations{
                .authorization = authorization,
                .makeTokenProvider = [script = script] { return std::make_unique<ScriptedTokenProvider>(script); },
                .session = session},
            server.url());
    }
    Outcome<void> connect() {
        SafeConfig config = SampleData::sampleConfig();
        config.appleMusicConnected = true;
        model->client->reply(Method::getConfig, "{\"config\":" + writeJSON(config) + "}");
        return outcomeOf(service->connect(*model));
    }
    QString message() const {
        const auto &banner = model->syncStore->banner();
        return banner ? banner->message : QString();
    }

    LocalServer server;
    QNetworkAccessManager network;
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    std::shared_ptr<URLSession> session = std::make_shared<URLSession>(network, clock);
    std::shared_ptr<ScriptedAuthorization> authorization = std::make_shared<ScriptedAuthorization>();
    std::shared_ptr<TokenScript> script = std::make_shared<TokenScript>();
    std::optional<ScriptedModel> model{std::in_place};
    std::optional<AppleMusicAuthService> service;
};

} // namespace

Q_DECLARE_METATYPE(std::exception_ptr)

class TestAppleMusicAuth : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theUsersTokenGoesToTheEngineAndTheSettingsAreReadAgain() {
        Bench bench;
        QVERIFY(bench.connect().succeeded());
        QCOMPARE(bench.model->stored.size(), 1u);
        QVERIFY((bench.model->stored[0] ==
                 ScriptedModel::Stored{AccountService::applemusic, u"user-token"_s, std::nullopt}));
        QCOMPARE(bench.model->client->sentCount(Method::getConfig), 1);
        QCOMPARE(bench.model->client->sent().size(), 1u);
        QVERIFY(bench.model->settingsStore->appleMusicConnected());
        QVERIFY(!bench.model->syncStore->banner());
    }

    void theDeveloperTokenIsTheWholeBodyTrimmedAndANewUserTokenIsMinted() {
        Bench bench(LocalServer::response(200, " \r\n\tdev \xC3\xA4 token\n\n"));
        bench.connect();
        QCOMPARE(bench.script->requests.size(), 1u);
        QCOMPARE(bench.script->requests[0].developerToken, u"dev ä token"_s);
        QVERIFY(bench.script->requests[0].options == MusicTokenRequestOption::ignoreCache);
        QVERIFY(bench.server.requests.value(0).startsWith("GET /applemusic/dev-token HTTP/1.1\r\n"));
    }

    void eachConnectGetsTokensOfItsOwn() {
        Bench bench;
        bench.connect();
        bench.script->userToken = u"another"_s;
        bench.connect();
        QCOMPARE(bench.server.requests.size(), 2);
        QCOMPARE(bench.model->stored[1].token, u"another"_s);
    }

    void withoutSettingsTheTokenIsStoredAllTheSame() {
        Bench bench;
        bench.model->settingsStore.reset();
        QVERIFY(bench.connect().succeeded());
        QCOMPARE(bench.model->stored.size(), 1u);
        QVERIFY(!bench.model->syncStore->banner());
    }

    void withoutAuthorizationNothingIsLoaded_data() {
        QTest::addColumn<ConsentStatus>("status");
        QTest::newRow("refused") << ConsentStatus::denied;
        QTest::newRow("left open") << ConsentStatus::undetermined;
    }
    void withoutAuthorizationNothingIsLoaded() {
        QFETCH(ConsentStatus, status);
        const LogCapture log;
        Bench bench;
        bench.authorization->status = status;
        QVERIFY(bench.connect().succeeded());
        QCOMPARE(bench.model->syncStore->banner(),
                 SyncBanner::warning(u"Apple Music access was not granted. Using your local library instead."_s));
        QCoreApplication::processEvents();
        QVERIFY(bench.server.requests.isEmpty());
        QVERIFY(bench.script->requests.empty());
        QVERIFY(bench.model->stored.empty());
        QVERIFY(log.messages(u"applemusic-auth"_s).isEmpty());
    }

    void anythingButATokenReadsAsAnAbsence_data() {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("only whitespace") << 200 << QByteArray(" \n\t\r\n ");
        QTest::newRow("nothing") << 200 << QByteArray();
        QTest::newRow("no UTF-8") << 200 << QByteArray("dev\xFFtoken");
        QTest::newRow("created") << 201 << QByteArray("dev-token");
        QTest::newRow("no content") << 204 << QByteArray();
        QTest::newRow("bad request") << 400 << QByteArray("dev-token");
        QTest::newRow("not allowed") << 401 << QByteArray("dev-token");
        QTest::newRow("forbidden") << 403 << QByteArray("dev-token");
        QTest::newRow("not found") << 404 << QByteArray("dev-token");
        QTest::newRow("broken") << 500 << QByteArray("dev-token");
        QTest::newRow("down") << 503 << QByteArray();
    }
    void anythingButATokenReadsAsAnAbsence() {
        QFETCH(int, status);
        QFETCH(QByteArray, body);
        const LogCapture log;
        Bench bench(LocalServer::response(status, body));
        QVERIFY(bench.connect().succeeded());
        QCOMPARE(bench.model->syncStore->banner(), SyncBanner::warning(softText));
        QVERIFY(bench.script->requests.empty());
        QVERIFY(bench.model->stored.empty());
        QCOMPARE(log.messages(u"applemusic-auth"_s),
                 QStringList{u"apple music connect failed: Developer token unavailable."_s});
        QCOMPARE(log.entries().value(0).type, QtCriticalMsg);
    }

    void failuresAreToldByTheirKind_data() {
        QTest::addColumn<std::exception_ptr>("failure");
        QTest::addColumn<QString>("message");
        using enum URLError::Code;
        const auto url = [](URLError::Code code) { return std::make_exception_ptr(URLError(code, u"Why."_s)); };
        const auto engine = [](const QString &code) {
            return std::make_exception_ptr(HelperError::engineError(code, u"Engine says."_s));
        };
        QTest::newRow("cannotFindHost") << url(cannotFindHost) << softText;
        QTest::newRow("cannotConnectToHost") << url(cannotConnectToHost) << softText;
        QTest::newRow("notConnectedToInternet") << url(notConnectedToInternet) << softText;
        QTest::newRow("dnsLookupFailed") << url(dnsLookupFailed) << softText;
        QTest::newRow("timedOut") << url(timedOut) << softText;
        QTest::newRow("networkConnectionLost") << url(networkConnectionLost) << softText;
        QTest::newRow("another URL error") << url(other) << detailed + u"Why."_s;
        QTest::newRow("no developer token") << engine(u"applemusic_dev_token"_s) << softText;
        QTest::newRow("another engine error")
            << engine(u"internal"_s)
            << detailed + HelperError::engineError(u"internal"_s, u"Engine says."_s).errorDescription();
        QTest::newRow("no engine") << std::make_exception_ptr(HelperError::helperUnavailable())
                                   << detailed + HelperError::helperUnavailable().errorDescription();
        QTest::newRow("no browser") << std::make_exception_ptr(MusicTokenError(u"No web browser could be opened."_s))
                                    << detailed + u"No web browser could be opened."_s;
        QTest::newRow("something else") << std::make_exception_ptr(std::runtime_error("odd")) << detailed + u"odd"_s;
    }
    void failuresAreToldByTheirKind() {
        QFETCH(std::exception_ptr, failure);
        QFETCH(QString, message);
        {
            Bench bench;
            bench.script->failure = failure;
            QVERIFY(bench.connect().succeeded());
            QCOMPARE(bench.model->syncStore->banner(), SyncBanner::warning(message));
            QVERIFY(bench.model->stored.empty());
        }
        Bench bench;
        bench.model->storeFailure = failure;
        QVERIFY(bench.connect().succeeded());
        QCOMPARE(bench.model->syncStore->banner(), SyncBanner::warning(message));
        QCOMPARE(bench.model->client->sent().size(), 0u);
    }

    void aServerThatIsNotThereReadsAsAnAbsence() {
        Bench bench;
        bench.server.close();
        QVERIFY(bench.connect().succeeded());
        QCOMPARE(bench.message(), softText);
    }

    void aConnectionThatIsNotSecureTellsItsDetails() {
        Bench bench;
        QUrl url = bench.server.url();
        url.setScheme(u"https"_s);
        bench.service.emplace(AppleMusicAuthService::Operations{.authorization = bench.authorization,
                                                                .makeTokenProvider = {},
                                                                .session = bench.session},
                              url);
        QVERIFY(bench.connect().succeeded());
        QVERIFY2(bench.message().startsWith(detailed + u"SSL handshake failed"_s), qUtf8Printable(bench.message()));
    }

    void aServerThatSaysNothingIsGivenUpAfterAMinute() {
        Bench bench{QByteArray()};
        QObject owner;
        const auto outcome = observe(&owner, bench.service->connect(*bench.model));
        QTRY_COMPARE(bench.server.requests.size(), 1);
        bench.clock->advance(URLSession::patience);
        QTRY_VERIFY(outcome->isOver());
        QCOMPARE(bench.message(), softText);
    }

    void aConnectionThatBreaksOffIsNoToken() {
        Bench bench("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\ndev-token");
        QVERIFY(bench.connect().succeeded());
        QCOMPARE(bench.message(), softText);
        QVERIFY(bench.script->requests.empty());
    }

    void aBodyThatIsNotWholeIsNoToken_data() {
        QTest::addColumn<QByteArray>("rest");
        const auto packed = [](const QByteArray &bytes) {
            return "Content-Encoding: gzip\r\nContent-Length: " + QByteArray::number(bytes.size()) + "\r\n\r\n" + bytes;
        };
        // 20 times "dev-token" and some more, as gzip packs it.
        auto gzip = QByteArray::fromHex("1f8b08000000000002034b492dd32dc9cf4ecd4b193a8cc4a4640543236385"
                                        "8aca2a85c2c242004d4ffae8c3000000");
        QTest::newRow("broken chunks") << QByteArray(
            "Transfer-Encoding: chunked\r\n\r\n9\r\ndev-token\r\n-5\r\nabcde\r\n");
        QTest::newRow("packed unasked") << packed(gzip);
        QTest::newRow("cut off while it was packed") << packed(gzip.left(35));
        QTest::newRow("its end is not packed") << packed(gzip.left(25) + "dev-token");
        gzip[gzip.size() - 6] = '?';
        QTest::newRow("its checksum is another") << packed(gzip);
        const QByteArray large(URLSession::mostBody + 1, 't');
        QTest::newRow("larger than any token")
            << QByteArray("Content-Length: " + QByteArray::number(large.size()) + "\r\n\r\n" + large);
        QTest::newRow("larger and without an end") << QByteArray("\r\n" + large);
    }
    void aBodyThatIsNotWholeIsNoToken() {
        QFETCH(const QByteArray, rest);
        Bench bench("HTTP/1.1 200 OK\r\nConnection: close\r\n" + rest);
        QVERIFY(bench.connect().succeeded());
        QVERIFY(!bench.message().isEmpty());
        QVERIFY(bench.script->requests.empty());
        QVERIFY(bench.model->stored.empty());
        QVERIFY(bench.server.requests.value(0).contains("Accept-Encoding: identity\r\n"));
    }

    void aBodyOfTheLimitIsRead() {
        const QByteArray body(URLSession::mostBody, 't');
        LocalServer server(LocalServer::response(200, body));
        QNetworkAccessManager network;
        URLSession session(network, std::make_shared<ManualClock>());
        const auto outcome = outcomeOf(session.get(server.url()));
        QVERIFY(outcome.succeeded());
        QCOMPARE(outcome.value->body, body);
    }

    void aLargePageOfARefusalIsCutOffAndItsStatusCounts() {
        LocalServer server(LocalServer::response(503, QByteArray(10 * URLSession::mostBody, 'p')));
        QNetworkAccessManager network;
        URLSession session(network, std::make_shared<ManualClock>());
        const auto outcome = outcomeOf(session.get(server.url()));
        QVERIFY(outcome.succeeded());
        QCOMPARE(outcome.value->status, 503);
        QVERIFY(outcome.value->body.size() <= URLSession::mostBody);
    }

    void theTokensAreInNoLogLine() {
        const LogCapture log;
        Bench bench;
        bench.connect();
        bench.model->storeFailure = std::make_exception_ptr(HelperError::helperCrashed());
        bench.connect();
        const auto entries = log.entries();
        QVERIFY(!entries.isEmpty());
        for (const auto &entry : entries)
            QVERIFY2(!entry.message.contains(u"-token"_s), qUtf8Printable(entry.message));
    }

    void quittingWhileTheUserSignsInSaysNothing() {
        const LogCapture log;
        Bench bench;
        bench.script->waits = true;
        QObject owner;
        const auto outcome = observe(&owner, bench.service->connect(*bench.model));
        QTRY_COMPARE(bench.script->requests.size(), 1u);
        bench.service.reset();
        QTRY_VERIFY(outcome->isOver());
        QVERIFY(outcome->succeeded());
        QVERIFY(!bench.model->syncStore->banner());
        QVERIFY(bench.model->stored.empty());
        QVERIFY(log.messages(u"applemusic-auth"_s).isEmpty());
    }

    void quittingWhileTheServerIsAskedSaysNothing() {
        Bench bench{QByteArray()};
        QObject owner;
        const auto outcome = observe(&owner, bench.service->connect(*bench.model));
        QTRY_COMPARE(bench.server.requests.size(), 1);
        bench.model.reset();
        bench.service.reset();
        QTRY_VERIFY(outcome->isOver());
        QVERIFY(outcome->succeeded());
        QCOMPARE(bench.clock->pendingAlarms(), 0);
    }

    void theNetworkMayGoBeforeTheAnswer() {
        LocalServer server{QByteArray()};
        auto network = std::make_unique<QNetworkAccessManager>();
        URLSession session(*network, std::make_shared<ManualClock>());
        QObject owner;
        const auto outcome = observe(&owner, session.get(server.url()));
        QTRY_COMPARE(server.requests.size(), 1);
        network.reset();
        QTRY_VERIFY(outcome->isOver());
        QVERIFY_THROWS_EXCEPTION(Cancelled, std::rethrow_exception(outcome->failure));
    }

    void theModelMayGoWhileTheUserSignsIn() {
        Bench bench;
        bench.script->waits = true;
        QObject owner;
        const auto outcome = observe(&owner, bench.service->connect(*bench.model));
        QTRY_COMPARE(bench.script->requests.size(), 1u);
        bench.model.reset();
        bench.service.reset();
        QTRY_VERIFY(outcome->isOver());
        QVERIFY(outcome->succeeded());
    }

    void qtsFailuresHaveTheirKinds_data() {
        QTest::addColumn<QNetworkReply::NetworkError>("error");
        QTest::addColumn<int>("code");
        using Qt = QNetworkReply;
        const auto row = [](QNetworkReply::NetworkError error, URLError::Code code) {
            QTest::addRow("%d", error) << error << int(code);
        };
        using enum URLError::Code;
        row(Qt::HostNotFoundError, cannotFindHost);
        row(Qt::ProxyNotFoundError, dnsLookupFailed);
        row(Qt::ConnectionRefusedError, cannotConnectToHost);
        row(Qt::ProxyConnectionRefusedError, cannotConnectToHost);
        row(Qt::NetworkSessionFailedError, notConnectedToInternet);
        row(Qt::TemporaryNetworkFailureError, notConnectedToInternet);
        row(Qt::UnknownNetworkError, notConnectedToInternet);
        row(Qt::TimeoutError, timedOut);
        row(Qt::ProxyTimeoutError, timedOut);
        row(Qt::RemoteHostClosedError, networkConnectionLost);
        row(Qt::ProxyConnectionClosedError, networkConnectionLost);
        row(Qt::SslHandshakeFailedError, other);
        row(Qt::TooManyRedirectsError, other);
        row(Qt::InsecureRedirectError, other);
        row(Qt::ProxyAuthenticationRequiredError, other);
        row(Qt::ProtocolUnknownError, other);
    }
    void qtsFailuresHaveTheirKinds() {
        QFETCH(QNetworkReply::NetworkError, error);
        QFETCH(int, code);
        QCOMPARE(int(URLError::codeOf(error)), code);
    }

    void theEndpointIsASecureOneOfOurOwnService() {
        const QUrl url = AppleMusicAuthService::compiledDevTokenURL();
        QVERIFY(url.isValid());
        QCOMPARE(url.scheme(), u"https"_s);
        QVERIFY(!url.host().isEmpty());
        QCOMPARE(url.path(), u"/applemusic/dev-token"_s);
    }

    void aURLThatIsNoneEndsTheProgram() {
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), {u"--with-an-invalid-url"_s});
        QVERIFY(child.waitForFinished(20000));
        QCOMPARE(child.exitStatus(), QProcess::CrashExit);
        QVERIFY(child.readAllStandardError().contains("The URL of developer tokens is none"));
    }

    void theSharedServiceIsTheOneThatTheApplicationMade() {
        Bench bench;
        const SharedInstance shared(*bench.service);
        QCOMPARE(&AppleMusicAuthService::shared(), &*bench.service);
    }
};

int main(int argc, char **argv) {
    QCoreApplication application(argc, argv);
    if (QCoreApplication::arguments().contains(u"--with-an-invalid-url"_s))
        const AppleMusicAuthService broken({}, QUrl(u"https://a b/applemusic/dev-token"_s));
    TestAppleMusicAuth test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_applemusicauth.moc"
