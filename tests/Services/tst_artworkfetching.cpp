#include "Services/ArtworkProvider.h"

#include "ArtworkBench.h"
#include "ImageServer.h"
#include "Pictures.h"
#include "Support/LogCapture.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

class ArtworkFetchingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aPictureIsFetchedDecodedAndKept() {
        ArtworkBench bench;
        ImageServer server;
        const QByteArray bytes = picture(500, 250, Qt::green);
        server.answers[u"/a"_s] = ImageServer::response(bytes);
        const ArtworkRef ref = ArtworkRef::url(server.url(u"/a"_s));
        const QImage image = bench.image(ref, 30);
        QCOMPARE(image.size(), QSize(60, 30));
        QCOMPARE(image.pixelColor(5, 5), QColor(Qt::green));
        QCOMPARE(bench.provider->cachedImage(ref, 30), image);
        QCOMPARE(bench.contents(bench.fileOf(ArtworkProvider::key(ref, 30))), bytes);
        QCOMPARE(bench.image(ref, 30), image);
        bench.restart();
        QCOMPARE(bench.image(ref, 30), image);
        QCOMPARE(server.asked[u"/a"_s], 1);
        QCOMPARE(bench.shelf.opened.load(), 0);
    }

    void theBytesCountAndNotTheStatus_data() {
        QTest::addColumn<QByteArray>("status");
        for (const char *status : {"400 Bad Request", "403 Forbidden", "404 Not Found", "410 Gone", "418 Teapot",
                                   "500 Internal Server Error", "503 Service Unavailable", "599 Odd"})
            QTest::newRow(status) << QByteArray(status);
    }
    void theBytesCountAndNotTheStatus() {
        QFETCH(QByteArray, status);
        const LogCapture log;
        ArtworkBench bench;
        ImageServer server;
        server.answers[u"/picture"_s] = ImageServer::response(picture(9, 9), status);
        server.answers[u"/page"_s] = ImageServer::response("<html>sorry</html>", status, "Content-Type: text/html\r\n");
        QVERIFY(bench.image(ArtworkRef::url(server.url(u"/page"_s)), 30).isNull());
        QCOMPARE(bench.files(), QStringList());
        QVERIFY(bench.provider->cachedImage(ArtworkRef::url(server.url(u"/page"_s)), 30).isNull());
        QVERIFY(!bench.image(ArtworkRef::url(server.url(u"/picture"_s)), 30).isNull());
        QCOMPARE(log.messages(u"artwork"_s), QStringList());
    }

    void redirectionsAreFollowed() {
        ArtworkBench bench;
        ImageServer server;
        server.answers[u"/old"_s] = ImageServer::response({}, "302 Found", "Location: /new\r\n");
        server.answers[u"/new"_s] = ImageServer::response(picture(9, 9));
        server.answers[u"/round"_s] = ImageServer::response({}, "302 Found", "Location: /round\r\n");
        const ArtworkRef ref = ArtworkRef::url(server.url(u"/old"_s));
        QVERIFY(!bench.image(ref, 30).isNull());
        QVERIFY(QFile::exists(bench.fileOf(ArtworkProvider::key(ref, 30))));
        QVERIFY(bench.image(ArtworkRef::url(server.url(u"/round"_s)), 30).isNull());
    }

    void aServerIsToldNothingThatItSaidBefore() {
        ArtworkBench bench;
        ImageServer server;
        server.answers[u"/a"_s] = ImageServer::response(picture(9, 9), "200 OK", "Set-Cookie: who=you; Path=/\r\n");
        server.answers[u"/b"_s] = server.answers[u"/a"_s];
        bench.image(ArtworkRef::url(server.url(u"/a"_s)), 30);
        bench.image(ArtworkRef::url(server.url(u"/b"_s)), 30);
        QCOMPARE(server.requests.size(), 2);
        QVERIFY2(!server.requests.last().toLower().contains("cookie"), server.requests.last());
    }

    void aFetchThatFailsIsLoggedForDebugging_data() {
        QTest::addColumn<QString>("path");
        QTest::newRow("cut off in the body") << u"/truncated"_s;
        QTest::newRow("cut off in the head") << u"/head"_s;
        QTest::newRow("nobody there") << QString();
    }
    void aFetchThatFailsIsLoggedForDebugging() {
        QFETCH(QString, path);
        const LogCapture log;
        ArtworkBench bench;
        ImageServer server;
        // A picture that would decode, but for its promise of more.
        const QByteArray whole = picture(9, 9);
        server.answers[u"/truncated"_s] = "HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n" + whole;
        server.answers[u"/head"_s] = "HTTP/1.1 200 OK\r\nContent-Le";
        const QUrl url = server.url(path.isEmpty() ? u"/x"_s : path);
        if (path.isEmpty())
            server.close();
        QVERIFY(bench.image(ArtworkRef::url(url), 30).isNull());
        QCOMPARE(bench.files(), QStringList());
        const auto entries = log.entries();
        QCOMPARE(log.messages(u"artwork"_s, u"url art failed: "_s).size(), 1);
        for (const LogCapture::Entry &entry : entries) {
            if (entry.category == "orrim.zelk.artwork"_L1)
                QCOMPARE(entry.type, QtDebugMsg);
        }
    }

    void aSilentServerIsWaitedForTwentySeconds() {
        const LogCapture log;
        ArtworkBench bench;
        ImageServer server;
        QObject owner;
        const auto outcome = observe(&owner, bench.provider->image(ArtworkRef::url(server.url(u"/slow"_s)), 30));
        QTRY_COMPARE(server.waiting.size(), 1);
        bench.clock->advance(19s);
        // What comes late but in time is waited for anew.
        server.waiting[0]->write("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\nx");
        QTRY_COMPARE(bench.clock->untilNextAlarm(), Clock::Duration(20s));
        bench.clock->advance(19s);
        bench.settle();
        QVERIFY(!outcome->isOver());
        bench.clock->advance(1s);
        QTRY_VERIFY(outcome->isOver());
        QVERIFY(outcome->value.value().isNull());
        QCOMPARE(log.messages(u"artwork"_s), QStringList{u"url art failed: The request timed out."_s});
        QTRY_COMPARE(server.gone, 1);
        QCOMPARE(bench.clock->pendingAlarms(), 0);
    }

    void aCancelledFetchIsSilentAndStoresNothing() {
        const LogCapture log;
        ArtworkBench bench;
        ImageServer server;
        QObject owner;
        std::stop_source stop;
        const ArtworkRef ref = ArtworkRef::url(server.url(u"/slow"_s));
        const auto outcome = observe(&owner, bench.provider->image(ref, 30, stop.get_token()));
        QTRY_COMPARE(server.waiting.size(), 1);
        stop.request_stop();
        QTRY_VERIFY(outcome->isOver());
        QVERIFY(outcome->value.value().isNull());
        QTRY_COMPARE(server.gone, 1);
        bench.settle();
        QVERIFY(bench.provider->cachedImage(ref, 30).isNull());
        QCOMPARE(bench.files(), QStringList());
        QCOMPARE(log.messages(u"artwork"_s), QStringList());
    }

    void bytesThatComeForACancelledCallerAreDropped() {
        ArtworkBench bench;
        ImageServer server;
        QObject owner;
        std::stop_source stop;
        const ArtworkRef ref = ArtworkRef::url(server.url(u"/a"_s));
        const auto outcome = observe(&owner, bench.provider->image(ref, 30, stop.get_token()));
        QTRY_COMPARE(server.waiting.size(), 1);
        server.waiting[0]->write(ImageServer::response(picture(9, 9)));
        server.waiting[0]->flush();
        stop.request_stop();
        QTRY_VERIFY(outcome->isOver());
        QVERIFY(outcome->value.value().isNull());
    }

    void othersGoOnWhileAFetchRuns() {
        ArtworkBench bench;
        bench.shelf.items = {{1, picture(9, 9)}};
        ImageServer server;
        QObject owner;
        const auto outcome = observe(&owner, bench.provider->image(ArtworkRef::url(server.url(u"/slow"_s)), 30));
        QTRY_COMPARE(server.waiting.size(), 1);
        server.answers[u"/fast"_s] = ImageServer::response(picture(9, 9));
        QVERIFY(!bench.image(ArtworkRef::url(server.url(u"/fast"_s)), 30).isNull());
        QVERIFY(!bench.image(ArtworkRef::appleMusic(u"1"_s), 30).isNull());
        QVERIFY(!outcome->isOver());
        server.waiting[0]->write(ImageServer::response(picture(9, 9)));
        server.waiting[0]->disconnectFromHost();
        QTRY_VERIFY(outcome->isOver());
        QVERIFY(!outcome->value.value().isNull());
    }

    void equalRequestsAreFetchedEach() {
        ArtworkBench bench;
        ImageServer server;
        QObject owner;
        const ArtworkRef ref = ArtworkRef::url(server.url(u"/a"_s));
        const auto first = observe(&owner, bench.provider->image(ref, 30));
        const auto second = observe(&owner, bench.provider->image(ref, 30));
        QTRY_COMPARE(server.waiting.size(), 2);
        for (QTcpSocket *socket : server.waiting) {
            socket->write(ImageServer::response(picture(9, 9)));
            socket->disconnectFromHost();
        }
        QTRY_VERIFY(first->isOver() && second->isOver());
        QVERIFY(!first->value.value().isNull());
        QVERIFY(!second->value.value().isNull());
    }

    void sixAreFetchedFromAHostAtOnce() {
        ArtworkBench bench;
        ImageServer server;
        QObject owner;
        std::vector<std::shared_ptr<Outcome<QImage>>> outcomes;
        for (int i = 0; i < 8; ++i)
            outcomes.push_back(
                observe(&owner, bench.provider->image(ArtworkRef::url(server.url(u"/%1"_s.arg(i))), 30)));
        QTRY_COMPARE(server.waiting.size(), 6);
        bench.settle();
        QCOMPARE(server.waiting.size(), 6);
    }

    void anAnswerWithoutEndIsGivenUp() {
        const LogCapture log;
        ArtworkBench bench;
        ImageServer server;
        QByteArray endless = "HTTP/1.1 200 OK\r\nContent-Type: image/png\r\n\r\n";
        endless += QByteArray(66 << 20, 'x');
        server.answers[u"/endless"_s] = endless;
        QVERIFY(bench.image(ArtworkRef::url(server.url(u"/endless"_s)), 30).isNull());
        QCOMPARE(log.messages(u"artwork"_s), QStringList{u"url art failed: The answer is too large."_s});
    }

    void aPictureOfHostileSizeIsNone() {
        ArtworkBench bench;
        ImageServer server;
        server.answers[u"/huge"_s] = ImageServer::response(hugeBitmap());
        QVERIFY(bench.image(ArtworkRef::url(server.url(u"/huge"_s)), 30).isNull());
        QCOMPARE(bench.files(), QStringList());
    }

    void filesOfThisMachineAreReadLikeTheRest() {
        ArtworkBench bench;
        const QString file = bench.caches.filePath(u"cover.png"_s);
        bench.write(file, picture(9, 9));
        QVERIFY(!bench.image(ArtworkRef::url(QUrl::fromLocalFile(file)), 30).isNull());
        QVERIFY(bench.image(ArtworkRef::url(QUrl::fromLocalFile(bench.caches.path())), 30).isNull());
        QVERIFY(bench.image(ArtworkRef::url(QUrl(u"file:///dev/zero"_s)), 30).isNull());
        QVERIFY(bench.image(ArtworkRef::url(QUrl(u"nowhere:x"_s)), 30).isNull());
    }

    void aProviderThatGoesAbortsItsFetches() {
        ArtworkBench bench;
        ImageServer server;
        QObject owner;
        const auto outcome = observe(&owner, bench.provider->image(ArtworkRef::url(server.url(u"/slow"_s)), 30));
        QTRY_COMPARE(server.waiting.size(), 1);
        bench.provider.reset();
        QTRY_VERIFY(outcome->isOver());
        QVERIFY(outcome->value.value().isNull());
        QTRY_COMPARE(server.gone, 1);
    }
};

QTEST_GUILESS_MAIN(ArtworkFetchingTest)
#include "tst_artworkfetching.moc"
