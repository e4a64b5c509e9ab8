#include "Platform/LoopbackPage.h"
#include "RawHttp.h"

#include <QNetworkInterface>
#include <QRegularExpression>
#include <QTest>

#include <optional>
#include <vector>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

/// A page that takes {"good": …} for an answer.
struct Bench {
    std::vector<QByteArray> answers;
    std::optional<LoopbackPage> page{std::in_place,
                                     LoopbackPage::Content{.html = "<p>hello</p>", .contentSecurityPolicy = "policy"},
                                     [this](const QByteArray &body) {
                                         if (!body.contains("good"))
                                             return false;
                                         answers.push_back(body);
                                         return true;
                                     }};

    quint16 port() const { return quint16(page->url().port()); }
    QByteArray path() const { return page->url().path().toLatin1(); }
    QByteArray host() const { return "127.0.0.1:" + QByteArray::number(port()); }
    QByteArray exchange(const QByteArray &bytes) const { return rawExchange(port(), bytes); }
    QByteArray get(const QByteArray &target, const QByteArray &host) const {
        return exchange("GET " + target + " HTTP/1.1\r\nHost: " + host + "\r\n\r\n");
    }

    struct Post {
        QByteArray target, host, origin, type = "application/json", body = R"({"good":1})";
    };
    Post post() const { return {.target = path(), .host = host(), .origin = "http://" + host()}; }
    QByteArray send(const Post &post) const {
        return exchange("POST " + post.target + " HTTP/1.1\r\nHost: " + post.host +
                        (post.origin.isEmpty() ? QByteArray() : "\r\nOrigin: " + post.origin) +
                        "\r\nContent-Type: " + post.type +
                        "\r\nContent-Length: " + QByteArray::number(post.body.size()) + "\r\n\r\n" + post.body);
    }
};

} // namespace

class TestLoopbackPage : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theAddressIsOfThisMachineAndCanNotBeGuessed() {
        Bench bench;
        Bench other;
        QVERIFY(bench.page->isListening());
        const QRegularExpression address(u"^http://127\\.0\\.0\\.1:\\d+/[0-9a-f]{32}$"_s);
        QVERIFY(address.match(bench.page->url().toString()).hasMatch());
        QVERIFY(bench.path() != other.path());
        QVERIFY(bench.port() != other.port());
    }

    void noOtherAddressOfThisMachineAnswers() {
        Bench bench;
        QList<QHostAddress> others = QNetworkInterface::allAddresses();
        others.removeAll(QHostAddress(QHostAddress::LocalHost));
        others.append(QHostAddress(u"127.0.0.2"_s));
        for (const auto &each : std::as_const(others)) {
            QTcpSocket socket;
            socket.connectToHost(each, bench.port());
            QVERIFY2(!socket.waitForConnected(2000), qUtf8Printable(each.toString()));
        }
    }

    void thePageIsServedAndNeverKept() {
        Bench bench;
        const QByteArray answer = bench.get(bench.path(), bench.host());
        QCOMPARE(statusOf(answer), 200);
        QVERIFY(answer.endsWith("\r\n\r\n<p>hello</p>"));
        const QList<QByteArray> lines = answer.first(answer.indexOf("\r\n\r\n")).split('\n');
        for (const char *header :
             {"Content-Security-Policy: policy", "Referrer-Policy: no-referrer", "Cache-Control: no-store",
              "X-Content-Type-Options: nosniff", "Content-Type: text/html; charset=utf-8", "Content-Length: 12"})
            QVERIFY2(lines.contains(QByteArray(header) + '\r') || lines.last() == header, header);
        QCOMPARE(statusOf(bench.get(bench.path(), bench.host())), 200);
    }

    void anythingElseIsNotThere_data() {
        QTest::addColumn<QByteArray>("target");
        QTest::newRow("root") << QByteArray("/");
        QTest::newRow("icon") << QByteArray("/favicon.ico");
        QTest::newRow("another secret") << QByteArray("/00000000000000000000000000000000");
        QTest::newRow("below the page") << QByteArray("PATH/");
        QTest::newRow("with a query") << QByteArray("PATH?token=1");
        QTest::newRow("upwards") << QByteArray("/../PATH");
    }
    void anythingElseIsNotThere() {
        QFETCH(QByteArray, target);
        Bench bench;
        target.replace("/../PATH", "/.." + bench.path()).replace("PATH", bench.path());
        QCOMPARE(statusOf(bench.get(target, bench.host())), 404);
        auto post = bench.post();
        post.target = target;
        QCOMPARE(statusOf(bench.send(post)), 404);
        QVERIFY(bench.answers.empty());
    }

    void aNameForThisMachineIsRefused_data() {
        QTest::addColumn<QByteArray>("host");
        QTest::newRow("localhost") << QByteArray("localhost:PORT");
        QTest::newRow("a name that leads here") << QByteArray("rebound.example:PORT");
        QTest::newRow("without the port") << QByteArray("127.0.0.1");
        QTest::newRow("another port") << QByteArray("127.0.0.1:1");
        QTest::newRow("the beginning of a name") << QByteArray("127.0.0.1:PORT.example");
        QTest::newRow("empty") << QByteArray();
    }
    void aNameForThisMachineIsRefused() {
        QFETCH(QByteArray, host);
        Bench bench;
        host.replace("PORT", QByteArray::number(bench.port()));
        QCOMPARE(statusOf(bench.get(bench.path(), host)), 403);
        auto post = bench.post();
        post.host = host;
        QCOMPARE(statusOf(bench.send(post)), 403);
        QVERIFY(bench.answers.empty());
    }

    void anAnswerOfAnotherOriginIsRefused_data() {
        QTest::addColumn<QByteArray>("origin");
        QTest::newRow("another site") << QByteArray("https://example.org");
        QTest::newRow("another port") << QByteArray("http://127.0.0.1:1");
        QTest::newRow("another scheme") << QByteArray("https://HOST");
        QTest::newRow("a file") << QByteArray("null");
        QTest::newRow("none") << QByteArray();
    }
    void anAnswerOfAnotherOriginIsRefused() {
        QFETCH(QByteArray, origin);
        Bench bench;
        auto post = bench.post();
        post.origin = origin.replace("HOST", bench.host());
        QCOMPARE(statusOf(bench.send(post)), 403);
        QVERIFY(bench.answers.empty());
        QCOMPARE(statusOf(bench.send(bench.post())), 204);
    }

    void oneAnswerIsTakenAndNoSecond() {
        Bench bench;
        QCOMPARE(statusOf(bench.send(bench.post())), 204);
        auto second = bench.post();
        second.body = R"({"good":2})";
        QCOMPARE(statusOf(bench.send(second)), 409);
        QCOMPARE(bench.answers, std::vector<QByteArray>{R"({"good":1})"});
    }

    void whatIsNoAnswerLeavesThePageWaiting() {
        Bench bench;
        auto form = bench.post();
        form.type = "text/plain";
        QCOMPARE(statusOf(bench.send(form)), 415);
        auto nonsense = bench.post();
        nonsense.body = "{}";
        QCOMPARE(statusOf(bench.send(nonsense)), 400);
        QVERIFY(bench.answers.empty());
        QCOMPARE(statusOf(bench.send(bench.post())), 204);
    }

    void malformedAndLargeRequestsAreRefused_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("status");
        const QByteArray filler(17 * 1024, 'a');
        QTest::newRow("a large head") << QByteArray("GET PATH HTTP/1.1\r\nHost: HOST\r\nX: " + filler) << 431;
        QTest::newRow("a large complete head")
            << QByteArray("GET PATH HTTP/1.1\r\nHost: HOST\r\nX: " + filler + "\r\n\r\n") << 431;
        const QByteArray post = "POST PATH HTTP/1.1\r\nHost: HOST\r\nOrigin: http://HOST\r\n";
        QTest::newRow("a large body") << QByteArray(post + "Content-Length: 16385\r\n\r\n") << 413;
        QTest::newRow("a length beyond numbers")
            << QByteArray(post + "Content-Length: 99999999999999999999\r\n\r\n") << 413;
        QTest::newRow("a negative length") << QByteArray(post + "Content-Length: -1\r\n\r\n") << 400;
        QTest::newRow("no length") << QByteArray(post + "\r\n") << 411;
        QTest::newRow("two lengths") << QByteArray(post + "Content-Length: 1\r\nContent-Length: 2\r\n\r\nab") << 400;
        QTest::newRow("chunks") << QByteArray(post + "Transfer-Encoding: chunked\r\n\r\n0\r\n\r\n") << 400;
        QTest::newRow("two hosts") << QByteArray("GET PATH HTTP/1.1\r\nHost: HOST\r\nHost: HOST\r\n\r\n") << 400;
        QTest::newRow("no host") << QByteArray("GET PATH HTTP/1.1\r\n\r\n") << 400;
        QTest::newRow("another protocol") << QByteArray("\x16\x03\x01\x02\r\n\r\n") << 400;
        QTest::newRow("a header without a name") << QByteArray("GET PATH HTTP/1.1\r\nHost: HOST\r\n: a\r\n\r\n") << 400;
        QTest::newRow("a folded header") << QByteArray("GET PATH HTTP/1.1\r\nHost: HOST\r\n a\r\n\r\n") << 400;
        QTest::newRow("an absolute target") << QByteArray("GET http://HOST/ HTTP/1.1\r\nHost: HOST\r\n\r\n") << 400;
        QTest::newRow("another method") << QByteArray("PUT PATH HTTP/1.1\r\nHost: HOST\r\n\r\n") << 405;
        QTest::newRow("asking beforehand") << QByteArray("OPTIONS PATH HTTP/1.1\r\nHost: HOST\r\n\r\n") << 405;
    }
    void malformedAndLargeRequestsAreRefused() {
        QFETCH(QByteArray, bytes);
        QFETCH(int, status);
        Bench bench;
        bytes.replace("PATH", bench.path()).replace("HOST", bench.host());
        const QByteArray answer = bench.exchange(bytes);
        QCOMPARE(statusOf(answer), status);
        QVERIFY(!answer.toLower().contains("access-control"));
        QCOMPARE(statusOf(bench.get(bench.path(), bench.host())), 200);
    }

    void aRequestMayComeInPieces() {
        Bench bench;
        const QByteArray bytes = "GET " + bench.path() + " HTTP/1.1\r\nhOsT:" + bench.host() + " \r\n\r\n";
        HttpRequestReader reader;
        for (const char each : bytes) {
            QVERIFY(!reader.isComplete());
            reader.feed(QByteArrayView(&each, 1));
        }
        QVERIFY(reader.isComplete());
        QCOMPARE(reader.request().target, bench.path());
        QCOMPARE(reader.request().header("host"), bench.host());
    }

    void bodiesOfTheLimitAreRead() {
        HttpRequestReader reader;
        const QByteArray body(HttpRequestReader::bodyLimit, 'b');
        reader.feed("POST / HTTP/1.1\r\nHost: a\r\nContent-Length: 16384\r\n\r\n" + body + "GET / HTTP/1.1");
        QVERIFY(reader.isComplete());
        QCOMPARE(reader.request().body, body);
    }

    void whoIsSilentGivesWayToTheNext() {
        Bench bench;
        std::vector<std::unique_ptr<QTcpSocket>> idle;
        for (int i = 0; i < 40; ++i) {
            idle.push_back(std::make_unique<QTcpSocket>());
            idle.back()->connectToHost(QHostAddress::LocalHost, bench.port());
            QVERIFY(idle.back()->waitForConnected());
        }
        const auto openOnes = [&idle] {
            return std::ranges::count_if(
                idle, [](const auto &each) { return each->state() == QAbstractSocket::ConnectedState; });
        };
        QTRY_COMPARE(openOnes(), 32);
        QCOMPARE(idle.front()->state(), QAbstractSocket::UnconnectedState);
        QCOMPARE(idle.back()->state(), QAbstractSocket::ConnectedState);
        QCOMPARE(statusOf(bench.get(bench.path(), bench.host())), 200);
        QTRY_COMPARE(openOnes(), 31);
    }

    void whoHasBeenAnsweredTakesNobodysPlace() {
        Bench bench;
        QTcpSocket idle;
        idle.connectToHost(QHostAddress::LocalHost, bench.port());
        QVERIFY(idle.waitForConnected());
        for (int i = 0; i < 40; ++i)
            QCOMPARE(statusOf(bench.get(bench.path(), bench.host())), 200);
        QCOMPARE(idle.state(), QAbstractSocket::ConnectedState);
    }

    void nothingListensOnceThePageHasGone() {
        Bench bench;
        const quint16 port = bench.port();
        QTcpSocket open;
        open.connectToHost(QHostAddress::LocalHost, port);
        QVERIFY(open.waitForConnected());
        open.write("GET ");
        QCoreApplication::processEvents();
        bench.page.reset();
        QTRY_COMPARE(open.state(), QAbstractSocket::UnconnectedState);
        QTcpSocket late;
        late.connectToHost(QHostAddress::LocalHost, port);
        QVERIFY(!late.waitForConnected(2000));
    }
};

QTEST_GUILESS_MAIN(TestLoopbackPage)
#include "tst_loopbackpage.moc"
