#include "Services/ArtworkImaging.h"

#include "Pictures.h"

#include <QTest>

using namespace zelk;
using namespace zelk::ArtworkImaging;
using namespace Qt::Literals::StringLiterals;

namespace {

// The colour in the middle of a quarter of a mosaic: 0 top left, 1 top right, 2 bottom left, 3 bottom right.
QColor quarter(const QImage &mosaic, int which) {
    const int x = (which % 2 ? 3 : 1) * mosaic.width() / 4;
    const int y = (which / 2 ? 3 : 1) * mosaic.height() / 4;
    return mosaic.pixelColor(x, y);
}

} // namespace

class ArtworkImagingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theLongerSideIsTwicePointsAtMost_data() {
        QTest::addColumn<QSize>("source");
        QTest::addColumn<double>("points");
        QTest::addColumn<QSize>("result");
        QTest::newRow("square") << QSize(500, 500) << 30.0 << QSize(60, 60);
        QTest::newRow("wide") << QSize(400, 100) << 30.0 << QSize(60, 15);
        QTest::newRow("tall") << QSize(100, 400) << 30.0 << QSize(15, 60);
        QTest::newRow("fraction is cut") << QSize(400, 400) << 30.9 << QSize(61, 61);
        QTest::newRow("tiny is never enlarged") << QSize(3, 2) << 30.0 << QSize(3, 2);
        QTest::newRow("as large as asked for") << QSize(60, 60) << 30.0 << QSize(60, 60);
        QTest::newRow("no points") << QSize(8, 8) << 0.0 << QSize(1, 1);
        QTest::newRow("thin") << QSize(1000, 2) << 10.0 << QSize(20, 1);
        QTest::newRow("one pixel") << QSize(1, 1) << 30.0 << QSize(1, 1);
    }
    void theLongerSideIsTwicePointsAtMost() {
        QFETCH(QSize, source);
        QFETCH(double, points);
        QFETCH(QSize, result);
        for (const char *format : {"PNG", "JPEG", "BMP"}) {
            const QImage image = downsample(encoded(plain(source.width(), source.height()), format), points);
            QCOMPARE(image.size(), result);
            QCOMPARE(image.format(), QImage::Format_RGBA8888_Premultiplied);
            QVERIFY(image.pixelColor(0, 0).red() > 240);
        }
    }

    void aRotatedPictureIsUpright() {
        QImage stored(200, 100, QImage::Format_RGB32);
        stored.fill(Qt::blue);
        for (int y = 0; y < 100; ++y) {
            for (int x = 0; x < 100; ++x)
                stored.setPixelColor(x, y, Qt::red);
        }
        const QImage image = downsample(turnedRight(stored), 40);
        QCOMPARE(image.size(), QSize(40, 80));
        QVERIFY(image.pixelColor(20, 10).red() > 200);
        QVERIFY(image.pixelColor(20, 70).blue() > 200);
        QCOMPARE(downsample(turnedRight(plain(20, 10)), 40).size(), QSize(10, 20));
    }

    void whatIsNoPictureGivesNone_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("page") << "<!DOCTYPE html><html><body>404</body></html>"_ba;
        QTest::newRow("half") << picture(50, 50).left(40);
        // Could name files of this machine.
        QTest::newRow("drawing") << "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'><rect width='9' "
                                    "height='9'/></svg>"_ba;
        QTest::newRow("huge") << hugeBitmap();
    }
    void whatIsNoPictureGivesNone() {
        QFETCH(QByteArray, bytes);
        QVERIFY(downsample(bytes, 30).isNull());
    }

    void aHugeJpegIsDecodedSmall() {
        const QByteArray bytes = encoded(plain(9000, 6000), "JPEG");
        QCOMPARE(downsample(bytes, 30).size(), QSize(60, 40));
    }

    void transparencyStays() {
        QImage clear(10, 10, QImage::Format_ARGB32);
        clear.fill(QColor(255, 0, 0, 128));
        const QColor pixel = downsample(encoded(clear), 30).pixelColor(5, 5);
        QCOMPARE(pixel.alpha(), 128);
        QCOMPARE(pixel.red(), 255);
    }

    void theFirstPictureOfAnAnimationIsTaken() {
        // Two frames of one pixel, the first white, the second black.
        const QByteArray animation = QByteArray::fromHex("474946383961010001008000"
                                                         "00ffffff000000"
                                                         "21f90400000000002c000000000100010000020244010021f904000000"
                                                         "00002c0000000001000100000202"
                                                         "4c01003b");
        const QImage image = downsample(animation, 30);
        QCOMPARE(image.size(), QSize(1, 1));
        QCOMPARE(image.pixelColor(0, 0), QColor(Qt::white));
    }

    void theLastPictureFillsWhatIsLeftOver_data() {
        QTest::addColumn<int>("count");
        QTest::addColumn<QList<int>>("drawn");
        QTest::newRow("one") << 1 << QList<int>{0, 0, 0, 0};
        QTest::newRow("two") << 2 << QList<int>{0, 1, 1, 1};
        QTest::newRow("three") << 3 << QList<int>{0, 1, 2, 2};
        QTest::newRow("four") << 4 << QList<int>{0, 1, 2, 3};
        QTest::newRow("five") << 5 << QList<int>{0, 1, 2, 3};
    }
    void theLastPictureFillsWhatIsLeftOver() {
        QFETCH(int, count);
        QFETCH(QList<int>, drawn);
        const std::vector<QColor> colors{Qt::red, Qt::green, Qt::blue, Qt::yellow, Qt::black};
        std::vector<QImage> images;
        for (int i = 0; i < count; ++i)
            images.push_back(plain(10 + i, 20, colors[static_cast<std::size_t>(i)]));
        const QImage mosaic = composeMosaic(images, 40);
        QCOMPARE(mosaic.size(), QSize(40, 40));
        QCOMPARE(mosaic.format(), QImage::Format_RGBA8888_Premultiplied);
        for (int i = 0; i < 4; ++i)
            QCOMPARE(quarter(mosaic, i), colors[static_cast<std::size_t>(drawn[i])]);
    }

    void anOddEdgeLeavesALineAtTheTopAndTheRight() {
        const QImage mosaic = composeMosaic({plain(4, 4)}, 9);
        QCOMPARE(mosaic.size(), QSize(9, 9));
        for (int i = 0; i < 9; ++i) {
            QCOMPARE(mosaic.pixelColor(i, 0).alpha(), 0);
            QCOMPARE(mosaic.pixelColor(8, i).alpha(), 0);
        }
        QCOMPARE(mosaic.pixelColor(0, 8), QColor(Qt::red));
        QCOMPARE(mosaic.pixelColor(7, 1), QColor(Qt::red));
    }

    void nothingIsComposedOfNothing() {
        QVERIFY(composeMosaic({}, 40).isNull());
        QVERIFY(composeMosaic({plain(4, 4)}, 0).isNull());
    }
};

QTEST_GUILESS_MAIN(ArtworkImagingTest)
#include "tst_artworkimaging.moc"
