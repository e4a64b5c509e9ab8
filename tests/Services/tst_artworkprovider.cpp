#include "Services/ArtworkImaging.h"
#include "Services/ArtworkProvider.h"

#include "ArtworkBench.h"
#include "Pictures.h"
#include "Support/LogCapture.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

ArtworkRef music(const QString &id) {
    return ArtworkRef::appleMusic(id);
}

} // namespace

class ArtworkProviderTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aKeyIsTheReferenceAndTheWholePoints_data() {
        QTest::addColumn<ArtworkRef>("ref");
        QTest::addColumn<double>("size");
        QTest::addColumn<QString>("key");
        QTest::newRow("url") << ArtworkRef::url(QUrl(u"https://x/a b?c=1"_s)) << 30.0 << u"u:https://x/a%20b?c=1@30"_s;
        QTest::newRow("id") << music(u"1A2B"_s) << 22.0 << u"a:1A2B@22"_s;
        QTest::newRow("short mosaic") << ArtworkRef::mosaic({u"1"_s, u"2"_s}) << 56.0 << u"m:1,2@56"_s;
        QTest::newRow("long mosaic") << ArtworkRef::mosaic({u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s}) << 56.0
                                     << u"m:1,2,3,4@56"_s;
        QTest::newRow("empty mosaic") << ArtworkRef::mosaic({}) << 56.0 << u"m:@56"_s;
        QTest::newRow("none") << ArtworkRef::none() << 30.0 << u"n@30"_s;
        QTest::newRow("size is cut") << music(u"1"_s) << 80.9 << u"a:1@80"_s;
    }
    void aKeyIsTheReferenceAndTheWholePoints() {
        QFETCH(ArtworkRef, ref);
        QFETCH(double, size);
        QFETCH(QString, key);
        QCOMPARE(ArtworkProvider::key(ref, size), key);
    }

    void noneIsNothingAndLeavesNothing() {
        ArtworkBench bench;
        QVERIFY(bench.image(ArtworkRef::none(), 30).isNull());
        QVERIFY(bench.provider->cachedImage(ArtworkRef::none(), 30).isNull());
        QCOMPARE(bench.files(), QStringList());
    }

    void anIDIsHexadecimalAndElseDecimal_data() {
        QTest::addColumn<QList<quint64>>("held");
        QTest::addColumn<QString>("asked");
        QTest::addColumn<int>("found");
        QTest::newRow("letters") << QList<quint64>{0x1A2B} << u"1A2B"_s << 0;
        QTest::newRow("small letters") << QList<quint64>{0x1A2B} << u"1a2b"_s << 0;
        QTest::newRow("hexadecimal first") << QList<quint64>{1234, 0x1234} << u"1234"_s << 1;
        QTest::newRow("decimal then") << QList<quint64>{1234} << u"1234"_s << 0;
        QTest::newRow("all bits") << QList<quint64>{~quint64{0}} << u"FFFFFFFFFFFFFFFF"_s << 0;
        QTest::newRow("decimal alone is in range") << QList<quint64>{~quint64{0}} << u"18446744073709551615"_s << 0;
        QTest::newRow("too many bits") << QList<quint64>{~quint64{0}} << u"1FFFFFFFFFFFFFFFF"_s << -1;
        QTest::newRow("empty") << QList<quint64>{0} << QString() << -1;
        QTest::newRow("prefix") << QList<quint64>{0x12} << u"0x12"_s << -1;
        QTest::newRow("space") << QList<quint64>{0x12} << u" 12"_s << -1;
        QTest::newRow("negative") << QList<quint64>{~quint64{0}} << u"-1"_s << -1;
        QTest::newRow("unknown") << QList<quint64>{0x12} << u"13"_s << -1;
        QTest::newRow("the later of two") << QList<quint64>{7, 7} << u"7"_s << 1;
    }
    void anIDIsHexadecimalAndElseDecimal() {
        QFETCH(QList<quint64>, held);
        QFETCH(QString, asked);
        QFETCH(int, found);
        ArtworkBench bench;
        const QList<QColor> colors{Qt::red, Qt::green};
        for (int i = 0; i < held.size(); ++i)
            bench.shelf.items.push_back({held[i], picture(9, 9, colors[i])});
        const QImage image = bench.image(music(asked), 30);
        QCOMPARE(image.isNull(), found < 0);
        if (found >= 0)
            QCOMPARE(image.pixelColor(4, 4), colors[found]);
    }

    void aLoadedPictureIsInMemoryAndItsBytesOnDisk() {
        ArtworkBench bench;
        const QByteArray bytes = picture(500, 500);
        bench.shelf.items = {{1, bytes}};
        QVERIFY(bench.provider->cachedImage(music(u"1"_s), 30).isNull());
        const QImage image = bench.image(music(u"1"_s), 30);
        QCOMPARE(image.size(), QSize(60, 60));
        QCOMPARE(bench.provider->cachedImage(music(u"1"_s), 30), image);
        QCOMPARE(bench.contents(bench.fileOf(u"a:1@30"_s)), bytes);
        QCOMPARE(bench.image(music(u"1"_s), 22).size(), QSize(44, 44));
        QCOMPARE(bench.files().size(), 2);
        QCOMPARE(bench.image(music(u"1"_s), 30), image);
        QCOMPARE(bench.shelf.coversRead.load(), 2);
    }

    void sizesThatAreCutToTheSamePointsShareAPicture() {
        ArtworkBench bench;
        bench.shelf.items = {{1, picture(500, 500)}};
        QCOMPARE(bench.image(music(u"1"_s), 80.9).width(), 161);
        QCOMPARE(bench.image(music(u"1"_s), 80.0).width(), 161);
        QCOMPARE(bench.files().size(), 1);
    }

    void aCoverThatDoesNotDecodeIsNotKept() {
        ArtworkBench bench;
        bench.shelf.items = {{1, "no picture"}, {2, {}}};
        QVERIFY(bench.image(music(u"1"_s), 30).isNull());
        QVERIFY(bench.image(music(u"2"_s), 30).isNull());
        QCOMPARE(bench.files(), QStringList());
    }

    void theLibraryIsOpenedAtTheFirstNeedAndOnce() {
        ArtworkBench bench;
        bench.shelf.items = {{1, picture(9, 9)}, {2, picture(9, 9)}};
        bench.image(ArtworkRef::none(), 30);
        QCOMPARE(bench.shelf.opened.load(), 0);
        QVERIFY(bench.settle());
        bench.image(music(u"1"_s), 30);
        bench.image(music(u"2"_s), 30);
        bench.image(ArtworkRef::mosaic({u"1"_s}), 30);
        QCOMPARE(bench.shelf.opened.load(), 1);
        QVERIFY(bench.settle());
    }

    void aLibraryThatCannotBeOpenedIsNotTriedAgain() {
        const LogCapture log;
        ArtworkBench bench;
        bench.shelf.canBeOpened = false;
        QVERIFY(bench.image(music(u"1"_s), 30).isNull());
        QVERIFY(!bench.settle());
        bench.shelf.canBeOpened = true;
        bench.shelf.items = {{1, picture(9, 9)}};
        QVERIFY(bench.image(music(u"1"_s), 30).isNull());
        QVERIFY(bench.image(ArtworkRef::mosaic({u"1"_s}), 30).isNull());
        QCOMPARE(bench.shelf.opened.load(), 1);
        QCOMPARE(log.messages(u"artwork"_s), QStringList{u"iTunesLibrary unavailable: there is no library"_s});
        QCOMPARE(log.entries().value(0).type, QtCriticalMsg);
    }

    void withoutPermissionNothingIsTriedAndLaterItMay() {
        ArtworkBench bench;
        bench.shelf.items = {{1, picture(9, 9)}};
        bench.isAllowed = false;
        QVERIFY(bench.image(music(u"1"_s), 30).isNull());
        QVERIFY(bench.image(ArtworkRef::mosaic({u"1"_s}), 30).isNull());
        QCOMPARE(bench.shelf.opened.load(), 0);
        QVERIFY(bench.settle());
        bench.isAllowed = true;
        QVERIFY(!bench.image(music(u"1"_s), 30).isNull());
        bench.isAllowed = false;
        QVERIFY(bench.image(music(u"1"_s), 22).isNull());
        QCOMPARE(bench.shelf.coversRead.load(), 1);
    }

    void aMosaicIsOfItsFirstFourIDs() {
        ArtworkBench bench;
        bench.shelf.items = {{5, picture(9, 9)}, {6, picture(9, 9)}};
        const ArtworkRef six = ArtworkRef::mosaic({u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s, u"6"_s});
        QVERIFY(bench.image(six, 30).isNull());
        QCOMPARE(bench.shelf.coversRead.load(), 0);
        QVERIFY(bench.image(ArtworkRef::mosaic({}), 30).isNull());
    }

    void aMosaicSkipsWhatHasNoCover() {
        ArtworkBench bench;
        bench.shelf.items = {{1, {}}, {2, picture(99, 99, Qt::green)}, {4, picture(99, 99, Qt::blue)}};
        const QImage mosaic = bench.image(ArtworkRef::mosaic({u"1"_s, u"2"_s, u"3"_s, u"4"_s}), 28);
        QCOMPARE(mosaic.size(), QSize(56, 56));
        QCOMPARE(mosaic.pixelColor(14, 14), QColor(Qt::green));
        QCOMPARE(mosaic.pixelColor(42, 14), QColor(Qt::blue));
        QCOMPARE(mosaic.pixelColor(14, 42), QColor(Qt::blue));
        QCOMPARE(mosaic.pixelColor(42, 42), QColor(Qt::blue));
    }

    void aMosaicIsInMemoryAndOnlyItsTilesOnDisk() {
        ArtworkBench bench;
        bench.shelf.items = {{1, picture(99, 99)}, {2, picture(99, 99)}};
        const ArtworkRef ref = ArtworkRef::mosaic({u"1"_s, u"2"_s});
        const QImage mosaic = bench.image(ref, 28);
        QCOMPARE(bench.provider->cachedImage(ref, 28), mosaic);
        QStringList tiles{ArtworkDisk::fileName(u"m:1,2@28#1"_s), ArtworkDisk::fileName(u"m:1,2@28#2"_s)};
        tiles.sort();
        QCOMPARE(bench.files(), tiles);
        QCOMPARE(bench.image(ref, 28), mosaic);
        QCOMPARE(bench.shelf.coversRead.load(), 2);
        // Composed again after a launch, from the library and not from the tiles.
        bench.write(bench.fileOf(u"m:1,2@28#1"_s), "changed");
        bench.restart();
        QCOMPARE(bench.image(ref, 28), mosaic);
        QCOMPARE(bench.shelf.coversRead.load(), 4);
        QCOMPARE(bench.contents(bench.fileOf(u"m:1,2@28#1"_s)), bench.shelf.items[0].cover);
    }

    void mosaicsWithTheSameFirstFourAreOne() {
        ArtworkBench bench;
        bench.shelf.items = {{1, picture(99, 99)}};
        bench.image(ArtworkRef::mosaic({u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s}), 28);
        const ArtworkRef other = ArtworkRef::mosaic({u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"6"_s});
        QVERIFY(!bench.provider->cachedImage(other, 28).isNull());
    }

    void nothingIsDecodedOnTheCallersThread() {
        ArtworkBench bench;
        bench.shelf.items = {{1, picture(99, 99)}};
        bench.image(music(u"1"_s), 30);
        bench.restart();
        bench.image(music(u"1"_s), 30);
        bench.image(ArtworkRef::mosaic({u"1"_s}), 30);
        QVERIFY(!bench.provider->cachedImage(music(u"1"_s), 30).isNull());
        QCOMPARE(ArtworkImaging::decodesOnThisThread(), 0);
    }

    void aCancelledCallerGetsNoPicture() {
        ArtworkBench bench;
        bench.shelf.items = {{1, picture(99, 99)}};
        bench.image(music(u"1"_s), 30);
        std::stop_source stop;
        stop.request_stop();
        QVERIFY(outcomeOf(bench.provider->image(music(u"1"_s), 30, stop.get_token())).value.value().isNull());
        QVERIFY(outcomeOf(bench.provider->image(music(u"1"_s), 22, stop.get_token())).value.value().isNull());
        QCOMPARE(bench.files().size(), 1);
    }

    void aProviderThatGoesEndsItsCallsWithoutAPicture() {
        ArtworkBench bench;
        bench.shelf.items = {{1, picture(99, 99)}};
        QObject owner;
        const auto outcome = observe(&owner, bench.provider->image(music(u"1"_s), 30));
        bench.provider.reset();
        QTRY_VERIFY(outcome->isOver());
        QVERIFY(outcome->succeeded());
    }

    void theSharedOneIsWhatTheApplicationGave() {
        QVERIFY(!ArtworkProvider::shared());
        const ArtworkBench bench;
        ArtworkProvider::setShared(bench.provider);
        QCOMPARE(ArtworkProvider::shared(), bench.provider);
        ArtworkProvider::setShared(nullptr);
    }
};

QTEST_GUILESS_MAIN(ArtworkProviderTest)
#include "tst_artworkprovider.moc"
