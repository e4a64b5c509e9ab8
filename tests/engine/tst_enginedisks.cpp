#include "Files/FileProblem.h"
#include "Library/AudioReader.h"
#include "Output/CopyFile.h"
#include "engine/EngineHome.h"
#include "engine/TerminalChild.h"

#include <QDir>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QTest>

#include <sys/resource.h>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine;
using namespace zelk::engine::testing;

namespace {

/// While it stands, no file of this process or of one that it starts may grow beyond so many bytes, as if the disk were
/// full.
class SmallDisk {
public:
    explicit SmallDisk(rlim_t bytes) {
        ::getrlimit(RLIMIT_FSIZE, &_before);
        const rlimit small{bytes, _before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &small);
    }
    ~SmallDisk() { ::setrlimit(RLIMIT_FSIZE, &_before); }
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;

private:
    rlimit _before{};
};

/// Does something to a file after its first part has been read.
class MeddlingOps : public FileOps {
public:
    explicit MeddlingOps(std::function<void()> meddle) : _meddle(std::move(meddle)) {}
    ssize_t read(int descriptor, char *bytes, size_t count) override {
        const ssize_t result = FileOps::read(descriptor, bytes, count);
        if (_meddle) {
            std::exchange(_meddle, nullptr)();
        }
        return result;
    }

private:
    std::function<void()> _meddle;
};

QString detailOf(const QList<QJsonObject> &events, int row) {
    for (const QJsonObject &finished : named(events, u"trackFinished"_s)) {
        if (dataOf(finished).value("trackId"_L1).toString().endsWith(u"#%1"_s.arg(row))) {
            return dataOf(finished).value("detail"_L1).toString();
        }
    }
    return {};
}

QJsonArray orphansOf(EngineChild &engine) {
    return engine.call(u"listOrphans"_s, QJsonObject{{u"selection"_s, QJsonArray()}})
        .value("result"_L1)
        .toObject()
        .value("paths"_L1)
        .toArray();
}

} // namespace

/// Disks that are full, read only, or not connected just now, and files that change while they are copied.
class EngineDisks : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aDiskThatFillsUpInMidCopyIsToldAndTheRestGoesOn_data() {
        QTest::addColumn<int>("room");
        // 40 seconds are 640,044 bytes: the disk is full long before their end, and behind it, when the tags follow.
        QTest::newRow("in mid copy") << 300'000;
        QTest::newRow("while it is tagged") << 640'060;
    }

    void aDiskThatFillsUpInMidCopyIsToldAndTheRestGoesOn() {
        QFETCH(int, room);
        const EngineHome home;
        home.addWav(u"Ann - Long.wav"_s, 40);
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"Long|Ann|40"_s, u"One|Ann|2"_s});
        {
            EngineChild first(home); // the memory and the settings are there already
            first.selectAll();
        }
        {
            const auto full = std::make_unique<SmallDisk>(static_cast<rlim_t>(room));
            EngineChild engine(home);
            const QList<QJsonObject> events = engine.syncAll();
            QCOMPARE(endings(events).values(), QStringList({u"failed"_s, u"ok downloaded"_s}));
            QVERIFY2(detailOf(events, 0).contains(room < 640'000 ? "is full. Make room"_L1 : "Check the disk"_L1),
                     qPrintable(detailOf(events, 0)));
            QCOMPARE(home.outputFiles(), QStringList{u"Ann - One.flac"_s});
        }
        EngineChild engine(home);
        QCOMPARE(endings(engine.syncAll()).values(), QStringList({u"ok downloaded"_s, u"present"_s}));
    }

    void aDiskThatFillsUpIsAFailureAtATerminalToo() {
        const EngineHome home;
        home.addWav(u"Ann - Big.wav"_s, 60);
        home.addWav(u"Ann - Small.wav"_s, 1);
        home.addList(u"L.csv"_s, {u"Big|Ann|60"_s, u"Small|Ann|1"_s});
        const SmallDisk disk(300'000);
        const Ended sync = runZelk(home, {u"sync"_s});
        QCOMPARE(sync.status, 1);
        QVERIFY2((sync.out + sync.error).contains("is full. Make room"_L1), qPrintable(sync.out + sync.error));
        QCOMPARE(home.outputFiles(), QStringList{u"Ann - Small.wav"_s});
    }

    void aFolderInAFilesPlaceIsNamedAndTheRestGoesOn() {
        const EngineHome home;
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        EngineChild engine(home);
        engine.syncAll();
        QVERIFY(QFile::remove(home.output(u"/Ann - One.flac"_s)));
        QVERIFY(QDir().mkpath(home.output(u"/Ann - One.flac"_s)));
        home.addAudio(u"b.flac"_s, u"Ann"_s, u"Two"_s);
        home.addList(u"M.csv"_s, {u"Two|Ann|2"_s});
        const QList<QJsonObject> events = engine.syncAll();
        const QString detail = detailOf(events, 0);
        QVERIFY2(detail.contains(u"A folder stands at "_s + home.output(u"/Ann - One.flac"_s)), qPrintable(detail));
        QVERIFY2(named(events, u"error"_s).isEmpty(), "the output folder was blamed");
        QVERIFY(home.outputFiles().contains(u"Ann - Two.flac"_s));
    }

    void anOutputFolderThatIsGoneIsNotTakenForDeletedFiles() {
        const EngineHome home;
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.addAudio(u"b.mp3"_s, u"Ann"_s, u"Two"_s);
        home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s, u"Two|Ann|2"_s, u"Slow Burn|Ines|2"_s});
        EngineChild engine(home);
        engine.syncAll();
        const auto before = home.outputContents();
        QCOMPARE(before.size(), 2);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s, u"Slow Burn|Ines|2"_s}); // an orphan, if it could be seen
        QVERIFY(QFile::rename(home.output(), home.path(u"unplugged"_s)));

        const QList<QJsonObject> events = engine.syncAll();
        QCOMPARE(named(events, u"error"_s).size(), 1);
        const QString message = dataOf(named(events, u"error"_s).first()).value("message"_L1).toString();
        QVERIFY2(message.contains(home.output()) && message.contains("Connect the disk"_L1), qPrintable(message));
        QCOMPARE(detailOf(events, 0), message);
        QVERIFY(named(events, u"orphansFound"_s).isEmpty());
        QVERIFY(orphansOf(engine).isEmpty());
        QVERIFY2(!QFileInfo::exists(home.output()), "a folder was made where the disk belongs");
        const QJsonObject orphan{{u"paths"_s, QJsonArray{home.output(u"/Ann - Two.mp3"_s)}}};
        QVERIFY(!engine.call(u"trashOrphans"_s, orphan).value("ok"_L1).toBool());
        // Nor is one made by a late decision, which is kept all the same.
        const QJsonObject accept{{u"kind"_s, u"accept"_s}};
        QCOMPARE(named(events, u"needsReview"_s).size(), 1);
        const QJsonObject review = dataOf(named(events, u"needsReview"_s).first());
        engine.tell(u"reviewDecision"_s, {{u"trackId"_s, review.value("trackId"_L1)}, {u"decision"_s, accept}});
        const QJsonObject finished = dataOf(engine.until(u"trackFinished"_s));
        QCOMPARE(finished.value("status"_L1).toString(), u"failed"_s);
        QCOMPARE(finished.value("detail"_L1).toString(), message);
        QVERIFY(!QFileInfo::exists(home.output()));

        QVERIFY(QFile::rename(home.path(u"unplugged"_s), home.output()));
        const QList<QJsonObject> again = engine.syncAll();
        QCOMPARE(endings(again).values(), QStringList({u"present"_s, u"ok downloaded"_s}));
        QCOMPARE(named(again, u"orphansFound"_s).size(), 1); // now that it can be seen
        auto after = home.outputContents();
        QVERIFY(after.remove(u"Ines - Slow Burn.mp3"_s));
        QVERIFY(after == before);
    }

    void aCollectionFolderThatIsGoneIsNotTakenForDeletedFiles() {
        const EngineHome home;
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.addAudio(u"b.flac"_s, u"Ann"_s, u"Two"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        EngineChild engine(home);
        engine.syncAll();
        const auto before = home.outputContents();
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s, u"Two|Ann|2"_s});
        const QString folder = QDir::cleanPath(home.collection({}));
        QVERIFY(QFile::rename(folder, home.path(u"unplugged"_s)));
        for (int i = 0; i < 2; ++i) { // the second time from the cool-off, which must say the same
            const QList<QJsonObject> events = engine.syncAll();
            QCOMPARE(endings(events).values(), QStringList({u"present"_s, u"failed"_s}));
            const QString detail = detailOf(events, 1);
            QVERIFY2(detail.contains(folder) && detail.contains("Connect the disk"_L1), qPrintable(detail));
            QVERIFY(named(events, u"orphansFound"_s).isEmpty());
            QVERIFY(orphansOf(engine).isEmpty());
            QVERIFY(home.outputContents() == before);
        }
        QVERIFY(QFile::rename(home.path(u"unplugged"_s), folder));
        QCOMPARE(endings(engine.syncAll()).values(), QStringList({u"present"_s, u"ok downloaded"_s}));
    }

    void aFileThatVanishesBeforeItsTurnIsNamedAndTheRestGoesOn() {
        const EngineHome home;
        QVERIFY(QDir().mkpath(home.path(u"bin"_s)));
        QVERIFY(QFile::link(QStringLiteral(CONVERTER_PROGRAM), home.path(u"bin/ffmpeg"_s)));
        QProcessEnvironment environment;
        environment.insert(u"PATH"_s, home.path(u"bin:"_s) + qEnvironmentVariable("PATH"));
        environment.insert(u"CONVERTED"_s, QStringLiteral(AUDIO_FIXTURES "/tone.mp3"));
        environment.insert(u"CONVERTER_DOES"_s, u"wait"_s);
        environment.insert(u"CONVERTER_GATE"_s, home.path(u"gate"_s));
        home.addAudio(u"a.opus"_s, u"Ann"_s, u"One"_s);
        home.addAudio(u"b.flac"_s, u"Ann"_s, u"Two"_s);
        home.addAudio(u"c.flac"_s, u"Ann"_s, u"Three"_s);
        home.addAudio(u"d.flac"_s, u"Ann"_s, u"Four"_s);
        home.addAudio(u"e.flac"_s, u"Ann"_s, u"Five"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s, u"Two|Ann|2"_s, u"Three|Ann|2"_s, u"Four|Ann|2"_s, u"Five|Ann|2"_s});
        EngineChild engine(home, environment);
        QJsonObject params{{u"selection"_s, engine.selectAll()}};
        params.insert(u"options"_s, QJsonObject{{u"concurrency"_s, 1}});
        QVERIFY(engine.call(u"startSync"_s, params).value("ok"_L1).toBool());
        while (dataOf(engine.until(u"step"_s)).value("phase"_L1).toString() != "converting"_L1) {
        }
        QVERIFY(QFile::remove(home.collection(u"b.flac"_s)));
        home.write(home.collection(u"c.flac"_s), QByteArray(5'000, 'x'));
        home.write(home.collection(u"d.flac"_s), home.read(home.collection(u"d.flac"_s)).left(20));
        home.write(home.path(u"gate"_s), {});
        QList<QJsonObject> events;
        for (QJsonObject line = engine.next(); !line.isEmpty(); line = engine.next()) {
            events += line;
            if (line.value("event"_L1).toString() == "syncDone"_L1) {
                break;
            }
        }
        QCOMPARE(endings(events).values(),
                 QStringList({u"ok downloaded"_s, u"failed"_s, u"failed"_s, u"failed"_s, u"ok downloaded"_s}));
        QVERIFY2(named(events, u"error"_s).isEmpty(), "the output folder was blamed");
        for (const auto &[row, name] : {std::pair{1, u"b.flac"_s}, {2, u"c.flac"_s}, {3, u"d.flac"_s}}) {
            QVERIFY2(detailOf(events, row).contains(home.collection(name)), qPrintable(detailOf(events, row)));
            QVERIFY2(detailOf(events, row).contains("sync again"_L1), qPrintable(detailOf(events, row)));
        }
        QCOMPARE(home.outputFiles(), QStringList({u"Ann - Five.flac"_s, u"Ann - One.mp3"_s}));
    }

    void aFileThatChangesInMidCopyIsNotKept_data() {
        QTest::addColumn<QString>("change");
        QTest::newRow("grows") << u"grows"_s;
        QTest::newRow("is cut") << u"is cut"_s;
        QTest::newRow("is rewritten") << u"is rewritten"_s;
    }

    void aFileThatChangesInMidCopyIsNotKept() {
        QFETCH(QString, change);
        const EngineHome home;
        home.addWav(u"Ann - Long.wav"_s, 60);
        const QString from = home.collection(u"Ann - Long.wav"_s);
        const QString to = home.path(u"copy.wav"_s);
        MeddlingOps ops([&] {
            QFile file(from);
            QVERIFY(file.open(QIODevice::ReadWrite));
            if (change == "is cut"_L1) {
                QVERIFY(file.resize(300'000));
            } else {
                QVERIFY(change == "is rewritten"_L1 || file.seek(file.size()));
                QCOMPARE(file.write("RIFF"), 4);
            }
        });
        try {
            copyFile(
                from, to, [](qint64, qint64) {}, {}, ops);
            QFAIL("the change went unnoticed");
        } catch (const FileChanged &problem) {
            QVERIFY(QString::fromUtf8(problem.what()).contains(from));
        }
        QVERIFY(!QFile::exists(to));
    }

    void aFileThatIsDeletedInMidCopyIsCopiedWhole() {
        const EngineHome home;
        home.addWav(u"Ann - Long.wav"_s, 60);
        const QString from = home.collection(u"Ann - Long.wav"_s);
        const QByteArray bytes = home.read(from);
        MeddlingOps ops([&] { QVERIFY(QFile::remove(from)); });
        copyFile(
            from, home.path(u"copy.wav"_s), [](qint64, qint64) {}, {}, ops);
        QVERIFY(home.read(home.path(u"copy.wav"_s)) == bytes);
    }
};

QTEST_GUILESS_MAIN(EngineDisks)
#include "tst_enginedisks.moc"
