#include "Run/SyncRun.h"
#include "engine/DatabaseEdit.h"
#include "engine/EngineHome.h"
#include "engine/TinyAudio.h"

#include "Library/AudioReader.h"

#include <QJsonArray>
#include <QTest>

#include <cerrno>

using namespace Qt::Literals::StringLiterals;
using namespace zelk;
using namespace zelk::engine;
using namespace zelk::engine::testing;

namespace {

/// A disk that suddenly lets nothing be renamed.
class FrozenOps : public FileOps {
public:
    bool isFrozen = false;

    int rename(const QByteArray &from, const QByteArray &to) override {
        errno = EROFS;
        return isFrozen ? -1 : FileOps::rename(from, to);
    }
};

class SilentSink : public EventSink {
public:
    void send(const ServerEvent &) override {}
};

QJsonObject summaryOf(const QList<QJsonObject> &events) {
    return events.isEmpty() ? QJsonObject() : dataOf(events.last()).value("summary"_L1).toObject();
}

QStringList storyOf(const QList<QJsonObject> &events, const QString &trackSuffix) {
    QStringList story;
    for (const QJsonObject &event : events) {
        const QJsonObject data = dataOf(event);
        if (data.value("trackId"_L1).toString().endsWith(trackSuffix)) {
            const QString more = data.value("phase"_L1).toString() + data.value("result"_L1).toString();
            story += (event.value("event"_L1).toString() + u' ' + more).trimmed();
        }
    }
    return story;
}

void setUpgrading(EngineChild &engine, bool on, bool bestQuality = true) {
    const QJsonObject quality{
        {u"floor"_s, u"any"_s}, {u"losslessOnly"_s, false}, {u"bestQuality"_s, bestQuality}, {u"upgradeEnabled"_s, on}};
    const QJsonObject patch{{u"patch"_s, QJsonObject{{u"quality"_s, quality}}}};
    QVERIFY(engine.call(u"setConfig"_s, patch).value("ok"_L1).toBool());
}

/// A list of one track and the MP3 file of it, synced.
void syncedOnce(const EngineHome &home, const QStringList &rows = {u"One|Ann|2"_s}) {
    home.addAudio(u"a.mp3"_s, u"Ann"_s, u"One"_s);
    home.addList(u"L.csv"_s, rows);
    EngineChild engine(home);
    engine.syncAll();
    QCOMPARE(home.outputFiles(), QStringList{u"Ann - One.mp3"_s});
    QCOMPARE(engine.finish(), 0);
}

} // namespace

/// Files that are given up for a better copy of the same recording.
class EngineUpgrade : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aBetterCopyTakesTheFilesPlace() {
        const EngineHome home;
        syncedOnce(home);
        home.addAudio(u"bandcamp/a.flac"_s, u"Ann"_s, u"One"_s);
        EngineChild engine(home);
        const QList<QJsonObject> events = engine.syncAll();
        QCOMPARE(storyOf(events, u"#0"_s),
                 QStringList({u"trackStarted"_s, u"diskCheck missing"_s, u"step searching"_s, u"downloadProgress"_s,
                              u"step tagging"_s, u"step verifying"_s, u"trackFinished"_s}));
        const QJsonObject finished = dataOf(named(events, u"trackFinished"_s).first());
        QCOMPARE(finished.value("status"_L1).toString(), u"ok"_s);
        QCOMPARE(finished.value("kind"_L1).toString(), u"downloaded"_s);
        QCOMPARE(finished.value("meta"_L1).toObject().value("format"_L1).toString(), u"FLAC"_s);
        QCOMPARE(finished.value("meta"_L1).toObject().value("source"_L1).toString(), u"bandcamp"_s);
        QCOMPARE(summaryOf(events).value("upgraded"_L1).toInt(), 1);
        QCOMPARE(summaryOf(events).value("ok"_L1).toInt(), 1);
        QCOMPARE(summaryOf(events).value("present"_L1).toInt(), 0);
        QCOMPARE(home.outputFiles(), QStringList{u"Ann - One.flac"_s});
        const QByteArray content = home.outputContents().first();
        const QList<QJsonObject> next = engine.syncAll();
        QCOMPARE(storyOf(next, u"#0"_s), QStringList({u"trackStarted"_s, u"diskCheck present"_s}));
        QCOMPARE(summaryOf(next).value("upgraded"_L1).toInt(), 0);
        QCOMPARE(home.outputContents().first(), content);
    }

    void allRowsOfTheFileGoAlongAndItStaysOneEntry() {
        const EngineHome home;
        syncedOnce(home, {u"One|Ann|2"_s, u"One (Remastered 2011)|Ann|3"_s, u"One|Ann|2"_s});
        const QVariant id = change(home, {u"SELECT id FROM files"_s});
        const QVariant wants = change(home, {u"SELECT count(*) FROM wants"_s});
        QCOMPARE(wants.toInt(), 2);
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        {
            EngineChild engine(home);
            const QStringList ends = endings(engine.syncAll()).values();
            QCOMPARE(ends[0], u"ok downloaded"_s);
            QVERIFY(ends[1] == "ok verified"_L1 || ends[1] == "present"_L1);
            QVERIFY(ends[2] == "ok verified"_L1 || ends[2] == "present"_L1);
            QCOMPARE(home.outputFiles(), QStringList{u"Ann - One.flac"_s});
            QCOMPARE(endings(engine.syncAll()).values(), QStringList({u"present"_s, u"present"_s, u"present"_s}));
            QCOMPARE(engine.finish(), 0);
        }
        QCOMPARE(change(home, {u"SELECT count(*) FROM files"_s}).toInt(), 1);
        QCOMPARE(change(home, {u"SELECT id FROM files WHERE replaces = ''"_s}), id);
        QCOMPARE(change(home, {u"SELECT count(*) FROM wants"_s}), wants);
    }

    void itIsNeverDoneUnlessAskedFor_data() {
        QTest::addColumn<bool>("setting");
        QTest::addColumn<QVariant>("option");
        QTest::addColumn<bool>("isDone");
        QTest::newRow("on") << true << QVariant() << true;
        QTest::newRow("off") << false << QVariant() << false;
        QTest::newRow("on, but not this time") << true << QVariant(false) << false;
        QTest::newRow("off, but this time") << false << QVariant(true) << true;
    }

    void itIsNeverDoneUnlessAskedFor() {
        QFETCH(bool, setting);
        QFETCH(QVariant, option);
        QFETCH(bool, isDone);
        const EngineHome home;
        syncedOnce(home);
        const QByteArray content = home.outputContents().first();
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        EngineChild engine(home);
        setUpgrading(engine, setting);
        const QList<QJsonObject> events =
            engine.syncAll(option.isValid() ? QJsonObject{{u"upgrade"_s, option.toBool()}} : QJsonObject());
        QCOMPARE(endings(events).values(), QStringList{isDone ? u"ok downloaded"_s : u"present"_s});
        QCOMPARE(home.outputFiles(), QStringList{isDone ? u"Ann - One.flac"_s : u"Ann - One.mp3"_s});
        QVERIFY(isDone || home.outputContents().first() == content);
    }

    void betterIsLosslessThenBitrateThenTheOrderOfSources_data() {
        QTest::addColumn<QByteArray>("first");
        QTest::addColumn<QByteArray>("second");
        QTest::addColumn<QString>("firstName");
        QTest::addColumn<QString>("secondName");
        QTest::addColumn<bool>("isDone");
        const QByteArray small = tinyMp3(128, 60);
        const QByteArray large = tinyMp3(320, 60);
        const QByteArray flac = tinyFlac(60, {{"TITLE", "One"}, {"ARTIST", "Ann"}});
        const QString mp3 = u"Ann - One.mp3"_s;
        QTest::newRow("bitrate") << small << large << mp3 << u"x/"_s + mp3 << true;
        QTest::newRow("less") << large << small << mp3 << u"x/"_s + mp3 << false;
        QTest::newRow("lossy for lossless") << flac << large << u"a.flac"_s << mp3 << false;
        QTest::newRow("equal") << small << small << u"x/"_s + mp3 << mp3 << false;
        QTest::newRow("a source further ahead")
            << small << small << u"youtube/"_s + mp3 << u"bandcamp/"_s + mp3 << true;
        QTest::newRow("a source further behind")
            << small << small << u"bandcamp/"_s + mp3 << u"youtube/"_s + mp3 << false;
        QTest::newRow("bitrate before sources")
            << small << large << u"bandcamp/"_s + mp3 << u"youtube/"_s + mp3 << true;
    }

    void betterIsLosslessThenBitrateThenTheOrderOfSources() {
        QFETCH(QByteArray, first);
        QFETCH(QByteArray, second);
        QFETCH(QString, firstName);
        QFETCH(QString, secondName);
        QFETCH(bool, isDone);
        const EngineHome home;
        home.write(home.collection(firstName), first);
        home.addList(u"L.csv"_s, {u"One|Ann|60"_s});
        EngineChild engine(home);
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"ok downloaded"_s});
        home.write(home.collection(secondName), second);
        for (int run = 0; run < 2; ++run) {
            const QList<QJsonObject> events = engine.syncAll();
            const bool now = isDone && run == 0;
            QCOMPARE(endings(events).values(), QStringList{now ? u"ok downloaded"_s : u"present"_s});
            QCOMPARE(summaryOf(events).value("upgraded"_L1).toInt(), now ? 1 : 0);
        }
        QCOMPARE(home.outputFiles().size(), 1);
    }

    void aFileThatWasItselfReplacedByABetterOneCountsToo() {
        const EngineHome home;
        home.write(home.collection(u"Ann - One.mp3"_s), tinyMp3(128, 60));
        home.addList(u"L.csv"_s, {u"One|Ann|60"_s});
        EngineChild engine(home);
        engine.syncAll();
        home.write(home.collection(u"Ann - One.mp3"_s), tinyMp3(320, 60));
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"ok downloaded"_s});
        QCOMPARE(readAudio(home.output(u"/Ann - One.mp3"_s)).bitrateKbps, 320);
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"present"_s});
    }

    void whatTheUserHasChosenStays() {
        const EngineHome home;
        home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addList(u"L.csv"_s, {u"Slow Burn|Ines|2"_s});
        EngineChild engine(home);
        const QJsonValue track = dataOf(named(engine.syncAll(), u"needsReview"_s).first()).value("trackId"_L1);
        engine.tell(u"reviewDecision"_s,
                    {{u"trackId"_s, track}, {u"decision"_s, QJsonObject{{u"kind"_s, u"accept"_s}}}});
        QCOMPARE(dataOf(engine.until(u"trackFinished"_s)).value("status"_L1).toString(), u"ok"_s);
        home.addAudio(u"studio.flac"_s, u"Ines"_s, u"Slow Burn"_s);
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"present"_s});
        QCOMPARE(home.outputFiles(), QStringList{u"Ines - Slow Burn.mp3"_s});
    }

    void whatCannotBeReplacedStaysAndIsToldAsPresent() {
        const EngineHome home;
        syncedOnce(home);
        const QByteArray content = home.outputContents().first();
        home.write(home.output(u"/Ann - One.flac"_s), "mine");
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        EngineChild engine(home);
        const QList<QJsonObject> events = engine.syncAll();
        QCOMPARE(endings(events).values(), QStringList{u"ok verified"_s});
        QCOMPARE(dataOf(named(events, u"trackFinished"_s).first()).value("meta"_L1).toObject().value("format"_L1),
                 QJsonValue(u"MP3"_s));
        QCOMPARE(summaryOf(events).value("upgraded"_L1).toInt(), 0);
        QCOMPARE(summaryOf(events).value("present"_L1).toInt(), 1);
        const QString said = dataOf(named(events, u"log"_s).first()).value("message"_L1).toString();
        QVERIFY2(said.contains(u"Ann - One.mp3"_s) && said.contains(u"stays"_s), qPrintable(said));
        QCOMPARE(home.read(home.output(u"/Ann - One.mp3"_s)), content);
        QCOMPARE(home.read(home.output(u"/Ann - One.flac"_s)), QByteArray("mine"));
        QVERIFY(QFile::remove(home.output(u"/Ann - One.flac"_s)));
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"ok downloaded"_s}); // tried again
    }

    void aFailureAtTheLastStepLeavesTheFileAndItsEntryAsTheyWere() {
        const EngineHome home;
        const auto warn = [](const QString &) {};
        Database database(home.path(u"e.db"_s), warn);
        PlaylistCatalogue lists(
            [&] {
                return PlaylistPlaces{{home.playlists({})}, {}};
            },
            warn, [](const PlaylistSnapshot &) {});
        AudioLibrary collection(database, warn);
        SilentSink sink;
        FrozenOps ops;
        home.write(home.collection(u"Ann - One.mp3"_s), tinyMp3(128, 60));
        home.addList(u"L.csv"_s, {u"One|Ann|60"_s});
        const auto sync = [&] {
            RunRequest request;
            request.runId = u"r"_s;
            request.selection.push_back(
                {PlaylistSourceId::spotify, lists.refresh(std::chrono::seconds(20))->playlists.at(0).id, {}});
            request.config.collectionDirs = {QFileInfo(home.collection(u"x"_s)).path()};
            request.outputDir = home.output();
            SyncRun(request, RunServices{database, lists, collection, sink, home.path(u"d"_s), ops})
                .execute({[](const auto &work) { work(); }, [] {}, [] {}});
        };
        sync();
        const QMap<QString, QByteArray> before = home.outputContents();
        QCOMPARE(before.size(), 1);
        const WrittenFile entry = database.writtenFiles().at(0);
        home.write(home.collection(u"Ann - One.mp3"_s), tinyMp3(320, 60));
        ops.isFrozen = true;
        sync();
        QCOMPARE(home.outputContents(), before);
        QVERIFY(database.writtenFiles() == std::vector<WrittenFile>{entry});
        ops.isFrozen = false;
        sync();
        QCOMPARE(database.writtenFiles().at(0).bitrateKbps, 320);
        QCOMPARE(database.writtenFiles().at(0).id, entry.id);
    }

    void aDryRunTellsAndTouchesNothing() {
        const EngineHome home;
        syncedOnce(home);
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        EngineChild engine(home);
        const QList<QJsonObject> events = engine.syncAll({{u"dryRun"_s, true}});
        const QJsonObject finished = dataOf(named(events, u"trackFinished"_s).first());
        QCOMPARE(finished.value("status"_L1).toString(), u"skipped"_s);
        QVERIFY(finished.value("detail"_L1).toString().startsWith(u"Would replace"_s));
        QCOMPARE(home.outputFiles(), QStringList{u"Ann - One.mp3"_s});
    }

    /// Two rows in other words, each with a file of its own, turn out to be one recording.
    void aBetterCopyThatIsWrittenAlreadyIsShared() {
        const EngineHome home;
        syncedOnce(home);
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"One (Remastered 2011)|Ann|3"_s});
        {
            EngineChild engine(home);
            setUpgrading(engine, false);
            QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"ok downloaded"_s});
            QCOMPARE(home.outputFiles().size(), 2);
            home.addList(u"L.csv"_s, {u"One (Remastered 2011)|Ann|3"_s, u"One|Ann|2"_s});
            setUpgrading(engine, true);
            const QList<QJsonObject> events = engine.syncAll();
            QCOMPARE(endings(events).values(), QStringList({u"present"_s, u"present"_s}));
            QCOMPARE(summaryOf(events).value("upgraded"_L1).toInt(), 1);
            QCOMPARE(home.outputFiles().size(), 1);
            QVERIFY(home.outputFiles().first().endsWith(u".flac"_s));
            QCOMPARE(endings(engine.syncAll()).values(), QStringList({u"present"_s, u"present"_s}));
            QCOMPARE(engine.finish(), 0);
        }
        QCOMPARE(change(home, {u"SELECT count(*) FROM files"_s}).toInt(), 1);
        QCOMPARE(change(home, {u"SELECT count(*) FROM wants"_s}).toInt(), 2);
    }

    void aReplacementThatWasCutOffIsFinishedOrForgotten_data() {
        QTest::addColumn<bool>("isInPlace");
        QTest::newRow("after the rename") << true;
        QTest::newRow("before it") << false;
    }

    void aReplacementThatWasCutOffIsFinishedOrForgotten() {
        QFETCH(bool, isInPlace);
        const EngineHome home;
        syncedOnce(home);
        // As if the engine had been killed at that moment.
        change(home, {u"INSERT INTO files (path, source_path, size, modified, duration, format, bitrate, lossless,"
                      " replaces) SELECT replace(path, '.mp3', '.flac'), 'x', 1, 1, 2, 'FLAC', 1, 1, path FROM files"_s,
                      u"INSERT INTO wants SELECT 2, row_key, playlist_id FROM wants"_s});
        if (isInPlace) {
            home.write(home.output(u"/Ann - One.flac"_s), home.read(QStringLiteral(AUDIO_FIXTURES "/tone.flac")));
        }
        EngineChild engine(home);
        setUpgrading(engine, false);
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"present"_s});
        QCOMPARE(home.outputFiles(), QStringList{isInPlace ? u"Ann - One.flac"_s : u"Ann - One.mp3"_s});
        QCOMPARE(engine.finish(), 0);
        QCOMPARE(change(home, {u"SELECT count(*) FROM files"_s}).toInt(), 1);
        QCOMPARE(change(home, {u"SELECT count(*) FROM wants"_s}).toInt(), 1);
        QCOMPARE(change(home, {u"SELECT path FROM files"_s}).toString(),
                 home.output(u'/' + home.outputFiles().first()));
    }
};

QTEST_GUILESS_MAIN(EngineUpgrade)
#include "tst_engineupgrade.moc"
