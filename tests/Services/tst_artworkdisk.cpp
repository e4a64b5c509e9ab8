#include "Services/ArtworkDisk.h"

#include "ArtworkBench.h"
#include "Pictures.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qint64 mebibyte = 1 << 20;

// A file that is that large without taking the room, and that old.
void plant(const ArtworkBench &bench, const QString &name, qint64 size, int ageInSeconds) {
    QFile file(bench.folder() + u'/' + name);
    if (!file.open(QIODevice::WriteOnly) || !file.resize(size))
        qFatal("no room for a sparse file");
    file.setFileTime(bench.now.addSecs(-ageInSeconds), QFile::FileModificationTime);
}

ArtworkRef music(const QString &id) {
    return ArtworkRef::appleMusic(id);
}

} // namespace

class ArtworkDiskTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFileIsNamedByItsKeyInBase64_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("name");
        QTest::newRow("padding stays") << u"n@30"_s << u"bkAzMA==.img"_s;
        QTest::newRow("plus and slash") << u"~~>~~?"_s << u"fn4-fn4_.img"_s;
        QTest::newRow("text in UTF-8") << u"ä"_s << u"w6Q=.img"_s;
    }
    void aFileIsNamedByItsKeyInBase64() {
        QFETCH(QString, key);
        QFETCH(QString, name);
        QCOMPARE(ArtworkDisk::fileName(key), name);
    }

    void aFileOfAnEarlierLaunchIsUsedBeforeAnythingIsAsked() {
        ArtworkBench bench;
        const QByteArray bytes = picture(99, 99, Qt::green);
        bench.write(bench.fileOf(u"a:1@30"_s), bytes);
        const QImage image = bench.image(music(u"1"_s), 30);
        QCOMPARE(image.pixelColor(9, 9), QColor(Qt::green));
        QCOMPARE(bench.provider->cachedImage(music(u"1"_s), 30), image);
        QCOMPARE(bench.shelf.opened.load(), 0);
        QCOMPARE(bench.contents(bench.fileOf(u"a:1@30"_s)), bytes);
        QCOMPARE(bench.files().size(), 1);
    }

    void aFileThatIsReadIsWrittenAgain() {
        ArtworkBench bench;
        plant(bench, ArtworkDisk::fileName(u"a:1@30"_s), 0, 5000);
        bench.write(bench.fileOf(u"a:1@30"_s), picture(9, 9));
        QFile file(bench.fileOf(u"a:1@30"_s));
        QVERIFY(file.open(QIODevice::ReadOnly)); // still the old one, if another takes its name
        QVERIFY(!bench.image(music(u"1"_s), 30).isNull());
        QCOMPARE(file.fileTime(QFile::FileModificationTime), bench.now);
        QVERIFY(QFileInfo(file.fileName()).lastModified() != bench.now);
    }

    void aCorruptFileIsTouchedNotUsedAndNotDeleted() {
        ArtworkBench bench;
        const QString file = bench.fileOf(u"a:1@30"_s);
        plant(bench, ArtworkDisk::fileName(u"a:1@30"_s), 100, 5000);
        QVERIFY(bench.image(music(u"1"_s), 30).isNull());
        QCOMPARE(bench.contents(file), QByteArray(100, '\0'));
        QCOMPARE(QFileInfo(file).lastModified(), bench.now);
    }

    void aFreshLoadReplacesACorruptFile() {
        ArtworkBench bench;
        bench.shelf.items = {{1, picture(9, 9)}};
        const QString file = bench.fileOf(u"a:1@30"_s);
        bench.write(file, "not a picture any more");
        QVERIFY(!bench.image(music(u"1"_s), 30).isNull());
        QCOMPARE(bench.contents(file), bench.shelf.items[0].cover);
    }

    void aNameTooLongForTheFileSystemIsNotStored() {
        ArtworkBench bench;
        QString id = u"1"_s;
        id.prepend(QString(300, u'0'));
        bench.shelf.items = {{1, picture(9, 9)}};
        QVERIFY(!bench.image(music(id), 30).isNull());
        QVERIFY(!bench.provider->cachedImage(music(id), 30).isNull());
        QCOMPARE(bench.files(), QStringList());
    }

    void withoutAFolderThereIsStillMemory() {
        ArtworkBench bench;
        bench.shelf.items = {{1, picture(9, 9)}};
        QVERIFY(QDir(bench.caches.filePath(u"orrim.zelk"_s)).removeRecursively());
        bench.write(bench.caches.filePath(u"orrim.zelk"_s), "in the way");
        bench.restart();
        QVERIFY(!bench.image(music(u"1"_s), 30).isNull());
        QVERIFY(!bench.provider->cachedImage(music(u"1"_s), 30).isNull());
    }

    void theFirstStoreScansAndTheOldestGo() {
        ArtworkBench bench;
        bench.shelf.items = {{1, picture(9, 9)}};
        plant(bench, u"b"_s, 100 * mebibyte, 200);
        plant(bench, u"a"_s, 100 * mebibyte, 300);
        plant(bench, u".c"_s, 100 * mebibyte, 100);
        bench.image(music(u"1"_s), 30);
        QCOMPARE(bench.files(), (QStringList{u".c"_s, ArtworkDisk::fileName(u"a:1@30"_s), u"b"_s}));
    }

    void whatIsExactlyTheLimitStays() {
        ArtworkBench bench;
        const QByteArray cover = picture(9, 9);
        bench.shelf.items = {{1, cover}};
        plant(bench, u"old"_s, 1, 900);
        plant(bench, u"large"_s, 256 * mebibyte - cover.size(), 500);
        bench.image(music(u"1"_s), 30);
        QCOMPARE(bench.files(), (QStringList{ArtworkDisk::fileName(u"a:1@30"_s), u"large"_s}));
    }

    void aMinuteGoesByBetweenTwoScans() {
        ArtworkBench bench;
        bench.shelf.items = {{1, picture(9, 9)}, {2, picture(9, 9)}, {3, picture(9, 9)}, {4, picture(9, 9)}};
        bench.image(music(u"1"_s), 30);
        plant(bench, u"old"_s, 256 * mebibyte, 500);
        plant(bench, u"newer"_s, mebibyte, 400);
        bench.clock->advance(30s);
        bench.image(music(u"2"_s), 30);
        QCOMPARE(bench.files().size(), 4);
        bench.clock->advance(30s);
        bench.image(music(u"3"_s), 30); // no more than 60 seconds
        QCOMPARE(bench.files().size(), 5);
        bench.clock->advance(1s);
        bench.image(music(u"1"_s), 30); // from memory: stores nothing
        QCOMPARE(bench.files().size(), 5);
        bench.image(music(u"4"_s), 30);
        QCOMPARE(bench.files().size(), 5);
        QVERIFY(!bench.files().contains(u"old"_s));
        QVERIFY(bench.files().contains(u"newer"_s));
    }

    void foldersAreLeftAlone() {
        ArtworkBench bench;
        bench.shelf.items = {{1, picture(9, 9)}};
        plant(bench, u"old"_s, 200 * mebibyte, 500);
        plant(bench, u"newer"_s, 100 * mebibyte, 400);
        // A folder that has the name of neither: it has no size of its own and is left alone.
        QVERIFY(QDir(bench.folder()).mkdir(u"folder"_s));
        bench.image(music(u"1"_s), 30);
        QVERIFY(!bench.files().contains(u"old"_s));
        QVERIFY(bench.files().contains(u"newer"_s));
        QVERIFY(QFileInfo(bench.folder() + u"/folder"_s).isDir());
    }

    void ageAloneRemovesNothing() {
        ArtworkBench bench;
        bench.shelf.items = {{1, picture(9, 9)}};
        plant(bench, u"ancient"_s, 100, 1'000'000'000);
        bench.image(music(u"1"_s), 30);
        bench.restart();
        bench.image(music(u"1"_s), 22);
        QVERIFY(bench.files().contains(u"ancient"_s));
    }
};

QTEST_GUILESS_MAIN(ArtworkDiskTest)
#include "tst_artworkdisk.moc"
