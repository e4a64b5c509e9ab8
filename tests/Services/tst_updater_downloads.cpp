// From the answer to the offer to the file beside the application.
#include "Services/UpdaterBench.h"

#include <QFileInfo>

#include <csignal>

#include <sys/resource.h>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// While it lives, no file of this process grows beyond `bytes`.
class FileLimit {
public:
    explicit FileLimit(rlim_t bytes) {
        std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &_before);
        rlimit limit = _before;
        limit.rlim_cur = bytes;
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileLimit() { ::setrlimit(RLIMIT_FSIZE, &_before); }
    Q_DISABLE_COPY_MOVE(FileLimit)

private:
    rlimit _before{};
};

} // namespace

class TestUpdaterDownloads : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<UpdaterBench> _bench;

    /// Up to the answer.
    void accept(const FeedItem &item) {
        _bench->publish(item);
        _bench->launch().checkForUpdates();
        QTRY_VERIFY(_bench->driver.shows<UpdateScene::Found>());
        _bench->answer(UpdateAnswer::download);
        QVERIFY(_bench->driver.shows<UpdateScene::Downloading>());
    }
    void isRefusedFor(UpdateProblem problem) {
        QTRY_VERIFY(_bench->driver.shows<UpdateScene::Failed>());
        QCOMPARE(_bench->driver.last<UpdateScene::Failed>().problem, problem);
        UpdaterBench::settle();
        QCOMPARE(_bench->neighbours(), QStringList());
        QVERIFY(std::none_of(_bench->driver.scenes.cbegin(), _bench->driver.scenes.cend(),
                             [](const auto &scene) { return std::holds_alternative<UpdateScene::Ready>(scene); }));
    }
    QByteArray contentOf(const QString &path) const {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private Q_SLOTS:
    void init() { _bench = std::make_unique<UpdaterBench>(); }
    void cleanup() { _bench.reset(); }

    void aSignedUpdateArrivesWholeBesideTheApplication() {
        accept(_bench->goodItem());
        QTRY_VERIFY(_bench->driver.shows<UpdateScene::Ready>());
        UpdaterBench::settle();
        const auto ready = _bench->driver.last<UpdateScene::Ready>();
        QCOMPARE(ready.version, u"2.0"_s);
        QCOMPARE(_bench->neighbours(), QStringList{u"zelk-2.0.tar.gz"_s});
        QCOMPARE(ready.file, _bench->folder + u"/zelk-2.0.tar.gz"_s);
        QCOMPARE(contentOf(ready.file), _bench->content);
        QVERIFY(!QFileInfo(ready.file).isExecutable());
        QVERIFY(_bench->shown.isEmpty());
        _bench->answer(UpdateAnswer::showInFolder);
        QCOMPARE(_bench->shown, QStringList{ready.file});
        QVERIFY(_bench->driver.shows<UpdateScene::Nothing>());
    }

    void itsProgressGrowsToTheWhole() {
        accept(_bench->goodItem());
        QTRY_VERIFY(_bench->driver.shows<UpdateScene::Ready>());
        qint64 received = -1;
        for (const auto &scene : std::as_const(_bench->driver.scenes)) {
            if (const auto *step = std::get_if<UpdateScene::Downloading>(&scene)) {
                QVERIFY(step->received > received);
                QCOMPARE(step->total, _bench->content.size());
                received = step->received;
            }
        }
        QCOMPARE(received, _bench->content.size());
    }

    void aWrongSignatureIsRefused() {
        auto item = _bench->goodItem();
        item.signature = SigningKey().sign(_bench->content).toBase64();
        accept(item);
        isRefusedFor(UpdateProblem::wrongSignature);
    }

    void aFileThatDiffersByOneByteAtItsEndIsRefused() {
        const auto item = _bench->goodItem();
        QByteArray changed = _bench->content;
        changed.back() = '!';
        _bench->server.set(u"/zelk-2.0.tar.gz"_s, changed);
        accept(item);
        isRefusedFor(UpdateProblem::wrongSignature);
    }

    void aTruncatedFileIsRefused() {
        const auto item = _bench->goodItem();
        _bench->server.set(u"/zelk-2.0.tar.gz"_s, _bench->content.first(1000));
        accept(item);
        isRefusedFor(UpdateProblem::wrongLength);
    }

    void aConnectionThatBreaksIsSaidSo() {
        const auto item = _bench->goodItem();
        _bench->server.set(u"/zelk-2.0.tar.gz"_s,
                           {.body = _bench->content.first(1000), .announced = _bench->content.size()});
        accept(item);
        isRefusedFor(UpdateProblem::unreachable);
    }

    void aLongerFileThanAnnouncedIsRefused() {
        const auto item = _bench->goodItem();
        _bench->server.set(u"/zelk-2.0.tar.gz"_s, _bench->content + "more");
        accept(item);
        isRefusedFor(UpdateProblem::wrongLength);
    }

    void aWrongLengthIsRefusedThoughTheSignatureIsRight() {
        auto item = _bench->goodItem();
        item.length = QByteArray::number(_bench->content.size() + 1);
        accept(item);
        isRefusedFor(UpdateProblem::wrongLength);
    }

    void aMissingFileIsRefused() {
        auto item = _bench->goodItem();
        item.url = _bench->server.url(u"/nowhere.tar.gz"_s).toEncoded();
        accept(item);
        isRefusedFor(UpdateProblem::refused);
    }

    void aFileThatLeadsToAnInsecurePlaceIsRefused() {
        const auto item = _bench->goodItem();
        _bench->server.set(u"/zelk-2.0.tar.gz"_s, {.status = 302, .location = "http://localhost:1/zelk.tar.gz"});
        accept(item);
        isRefusedFor(UpdateProblem::insecureAddress);
    }

    void aServerThatFallsSilentIsWaitedForAMinute() {
        const auto item = _bench->goodItem();
        _bench->server.set(
            u"/zelk-2.0.tar.gz"_s,
            {.body = _bench->content.first(100'000), .announced = _bench->content.size(), .silent = true});
        accept(item);
        QTRY_COMPARE(_bench->driver.last<UpdateScene::Downloading>().received, 100'000);
        _bench->pass(60s - 1s);
        QVERIFY(_bench->driver.shows<UpdateScene::Downloading>());
        _bench->pass(1s);
        isRefusedFor(UpdateProblem::silence);
    }

    void aCancelledDownloadLeavesNothing() {
        const auto item = _bench->goodItem();
        _bench->server.set(
            u"/zelk-2.0.tar.gz"_s,
            {.body = _bench->content.first(100'000), .announced = _bench->content.size(), .silent = true});
        accept(item);
        QTRY_COMPARE(_bench->driver.last<UpdateScene::Downloading>().received, 100'000);
        _bench->answer(UpdateAnswer::cancel);
        QVERIFY(_bench->driver.shows<UpdateScene::Nothing>());
        QTRY_COMPARE(_bench->neighbours(), QStringList());
        UpdaterBench::settle();
        QVERIFY(_bench->driver.shows<UpdateScene::Nothing>());
    }

    void quittingDuringADownloadLeavesNothing() {
        const auto item = _bench->goodItem();
        _bench->server.set(
            u"/zelk-2.0.tar.gz"_s,
            {.body = _bench->content.first(100'000), .announced = _bench->content.size(), .silent = true});
        accept(item);
        QTRY_COMPARE(_bench->driver.last<UpdateScene::Downloading>().received, 100'000);
        _bench->model.reset();
        UpdaterBench::settle();
        QCOMPARE(_bench->neighbours(), QStringList());
    }

    void aFolderThatWentAwayMeanwhileIsSaidSo() {
        _bench->folder = _bench->home.filePath(u"elsewhere"_s);
        QVERIFY(QDir().mkpath(_bench->folder));
        _bench->publish(_bench->goodItem());
        _bench->launch().checkForUpdates();
        QTRY_VERIFY(_bench->driver.shows<UpdateScene::Found>());
        QVERIFY(QDir(_bench->folder).removeRecursively());
        _bench->answer(UpdateAnswer::download);
        isRefusedFor(UpdateProblem::unwritable);
    }

    void aFullDiskIsSaidSo() {
        _bench->publish(_bench->goodItem());
        _bench->launch().checkForUpdates();
        QTRY_VERIFY(_bench->driver.shows<UpdateScene::Found>());
        const FileLimit limit(4096);
        _bench->answer(UpdateAnswer::download);
        isRefusedFor(UpdateProblem::unwritable);
    }

    void anExistingFileIsNeverWrittenOver() {
        const auto item = _bench->goodItem();
        QVERIFY(QDir().mkpath(_bench->folder));
        QFile file(_bench->folder + u"/zelk-2.0.tar.gz"_s);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("the user's own");
        file.close();
        accept(item);
        QTRY_VERIFY(_bench->driver.shows<UpdateScene::Ready>());
        QCOMPARE(contentOf(file.fileName()), QByteArray("the user's own"));
        QCOMPARE(_bench->driver.last<UpdateScene::Ready>().file, _bench->folder + u"/2-zelk-2.0.tar.gz"_s);
        QCOMPARE(contentOf(_bench->folder + u"/2-zelk-2.0.tar.gz"_s), _bench->content);
    }

    void anAddressDecidesNothingBeyondAPlainName_data() {
        QTest::addColumn<QString>("path");
        QTest::newRow("hidden above") << u"/..%2F..%2F.zelk.desktop"_s;
        QTest::newRow("hidden") << u"/.zelk.desktop"_s;
        QTest::newRow("an option") << u"/-rf.txt"_s;
        QTest::newRow("a control character") << u"/a%0Ab.txt"_s;
        QTest::newRow("another script") << u"/zelk%D0%B0.txt"_s;
        QTest::newRow("no name") << u"/"_s;
        QTest::newRow("the application") << u"/zelk"_s;
    }
    void anAddressDecidesNothingBeyondAPlainName() {
        QFETCH(const QString, path);
        auto item = _bench->goodItem();
        _bench->server.set(path, _bench->content);
        item.url = _bench->server.url({}).toEncoded() + path.toLatin1();
        accept(item);
        QTRY_VERIFY(_bench->driver.shows<UpdateScene::Ready>());
        QCOMPARE(_bench->neighbours(), QStringList{u"zelk-update"_s});
    }

    void aFileStaysInItsFolderWhateverItsAddress() {
        auto item = _bench->goodItem();
        _bench->server.set(u"/..%2F..%2Fzelk.tar"_s, _bench->content);
        item.url = _bench->server.url({}).toEncoded() + "/..%2F..%2Fzelk.tar";
        accept(item);
        QTRY_VERIFY(_bench->driver.shows<UpdateScene::Ready>());
        QCOMPARE(_bench->neighbours(), QStringList{u"zelk.tar"_s});
    }

    void whatAnEarlierDownloadLeftIsSweptAndNothingElse() {
        const auto item = _bench->goodItem();
        QVERIFY(QDir().mkpath(_bench->folder));
        const auto leave = [this](const QString &name, int daysAgo) {
            QFile file(_bench->folder + u'/' + name);
            QVERIFY(file.open(QIODevice::WriteOnly));
            QVERIFY(file.setFileTime(QDateTime::currentDateTime().addDays(-daysAgo), QFile::FileModificationTime));
        };
        leave(u".zelk-update-aBcDeF.part"_s, 2);
        leave(u".zelk-update-young1.part"_s, 0);
        leave(u".zelk-update-too-long.part"_s, 2);
        leave(u"notes.part"_s, 2);
        accept(item);
        QTRY_VERIFY(_bench->driver.shows<UpdateScene::Ready>());
        QStringList left = _bench->neighbours();
        left.sort();
        QCOMPARE(left, (QStringList{u".zelk-update-too-long.part"_s, u".zelk-update-young1.part"_s, u"notes.part"_s,
                                    u"zelk-2.0.tar.gz"_s}));
    }
};

QTEST_GUILESS_MAIN(TestUpdaterDownloads)
#include "tst_updater_downloads.moc"
