#include "Services/ArtworkCache.h"

#include "Pictures.h"

#include <QTest>

#include <thread>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

class ArtworkCacheTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatWasPutInIsFound() {
        ArtworkCache cache(1000);
        QVERIFY(cache.image(u"a"_s).isNull());
        cache.insert(u"a"_s, plain(2, 3));
        QCOMPARE(cache.image(u"a"_s), plain(2, 3));
        cache.insert(u"a"_s, plain(3, 2));
        QCOMPARE(cache.image(u"a"_s), plain(3, 2));
        QVERIFY(cache.image(u"b"_s).isNull());
    }

    void aPictureCostsFourBytesAPixel() {
        ArtworkCache cache(4 * 6 * 2);
        cache.insert(u"a"_s, plain(2, 3));
        cache.insert(u"b"_s, plain(3, 2));
        QVERIFY(!cache.image(u"a"_s).isNull());
        QVERIFY(!cache.image(u"b"_s).isNull());
        cache.insert(u"c"_s, plain(1, 1));
        QVERIFY(cache.image(u"a"_s).isNull());
        QVERIFY(!cache.image(u"b"_s).isNull());
        QVERIFY(!cache.image(u"c"_s).isNull());
    }

    void theLeastRecentlyUsedGoesFirst() {
        ArtworkCache cache(4 * 2);
        cache.insert(u"a"_s, plain(1, 1));
        cache.insert(u"b"_s, plain(1, 1));
        QVERIFY(!cache.image(u"a"_s).isNull());
        cache.insert(u"c"_s, plain(1, 1));
        QVERIFY(!cache.image(u"a"_s).isNull());
        QVERIFY(cache.image(u"b"_s).isNull());
    }

    void aPictureBeyondTheLimitIsNotKept() {
        ArtworkCache cache(4 * 3);
        cache.insert(u"a"_s, plain(1, 1));
        cache.insert(u"b"_s, plain(2, 2));
        QVERIFY(cache.image(u"b"_s).isNull());
        QVERIFY(!cache.image(u"a"_s).isNull());
    }

    void severalThreadsMayAskAtOnce() {
        ArtworkCache cache(4 * 100 * 8);
        const auto name = [](int i) { return QString::number(i % 16); };
        std::vector<std::thread> threads;
        std::atomic_int wrong = 0;
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([&cache, &wrong, &name, thread] {
                for (int i = 0; i < 2000; ++i) {
                    if (i % 3 == thread % 3)
                        cache.insert(name(i), plain(10, 10));
                    const QImage found = cache.image(name(i + 1));
                    if (!found.isNull() && found.pixel(5, 5) != qRgb(255, 0, 0))
                        ++wrong;
                }
            });
        }
        for (std::thread &each : threads)
            each.join();
        QCOMPARE(wrong.load(), 0);
    }
};

QTEST_GUILESS_MAIN(ArtworkCacheTest)
#include "tst_artworkcache.moc"
