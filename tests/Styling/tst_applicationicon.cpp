// The application's icon as a window and a desktop get it.
#include "Styling/ApplicationIcon.h"

#include <QColor>
#include <QImage>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

QImage pictureOf(int size) {
    return applicationIcon().pixmap(QSize(size, size), 1).toImage();
}

} // namespace

class TestApplicationIcon : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void isDrawnInEachSizeOfAWindow() {
        QStringList sizes;
        const auto drawn = applicationIcon().availableSizes();
        for (const QSize &size : drawn)
            sizes += u"%1x%2"_s.arg(size.width()).arg(size.height());
        sizes.sort();
        QCOMPARE(sizes, (QStringList{u"128x128"_s, u"16x16"_s, u"22x22"_s, u"24x24"_s, u"256x256"_s, u"32x32"_s,
                                     u"48x48"_s, u"64x64"_s}));
    }

    void isAWhiteMarkOnAnIndigoTile_data() {
        QTest::addColumn<int>("size");
        for (const int size : {16, 22, 24, 32, 48, 64, 128, 256})
            QTest::addRow("%d px", size) << size;
    }
    void isAWhiteMarkOnAnIndigoTile() {
        QFETCH(const int, size);
        const QImage picture = pictureOf(size);
        QCOMPARE(picture.size(), QSize(size, size));
        QVERIFY2(picture.pixelColor(0, 0).alpha() < 128, "the corner isn't round");
        const QColor middle = picture.pixelColor(size / 2, size / 2);
        QVERIFY2(middle.lightness() > 235, qPrintable(middle.name()));
        const QColor tile = picture.pixelColor(size / 2, size / 8);
        QCOMPARE(tile.alpha(), 255);
        QVERIFY2(tile.hue() > 235 && tile.hue() < 250, qPrintable(tile.name()));
    }

    /// What falls between pixels at these sizes is a grey smear.
    void isOfWholePixelsWhereItIsSmall_data() {
        QTest::addColumn<int>("size");
        for (const int size : {16, 22, 24})
            QTest::addRow("%d px", size) << size;
    }
    void isOfWholePixelsWhereItIsSmall() {
        QFETCH(const int, size);
        const QImage picture = pictureOf(size);
        const QRect inside = picture.rect().adjusted(size / 6, size / 6, -size / 6, -size / 6);
        const QColor tile = picture.pixelColor(inside.topLeft());
        for (int y = inside.top(); y <= inside.bottom(); ++y)
            for (int x = inside.left(); x <= inside.right(); ++x) {
                const QColor seen = picture.pixelColor(x, y);
                QVERIFY2(seen == tile || seen == QColor(Qt::white), qPrintable(u"%1, %2"_s.arg(x).arg(y)));
            }
    }
};

QTEST_MAIN(TestApplicationIcon)
#include "tst_applicationicon.moc"
