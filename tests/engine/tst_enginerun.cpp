#include "engine/EngineHome.h"
#include "engine/Soon.h"

#include "Library/AudioReader.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStandardPaths>
#include <QTest>
#include <QUrl>

#include <csignal>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine::testing;

namespace {

QJsonObject selectionOf(const QJsonArray &playlists, const QJsonObject &options = {}) {
    QJsonObject params{{u"selection"_s, playlists}};
    if (!options.isEmpty()) {
        params.insert(u"options"_s, options);
    }
    return params;
}

QStringList namesOf(const QList<QJsonObject> &events, const QString &trackSuffix) {
    QStringList names;
    for (const QJsonObject &event : events) {
        if (dataOf(event).value("trackId"_L1).toString().endsWith(trackSuffix)) {
            const QString phase = dataOf(event).value("phase"_L1).toString();
            names += event.value("event"_L1).toString() + (phase.isEmpty() ? QString() : u' ' + phase);
        }
    }
    return names;
}

QJsonObject summaryOf(const QList<QJsonObject> &events) {
    return events.isEmpty() ? QJsonObject() : dataOf(events.last()).value("summary"_L1).toObject();
}

} // namespace

/// Whole runs of the built program, over audio made for the purpose.
class EngineRun : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void playlistsArePlayedByNameHoweverTheyAreSelected() {
        const EngineHome home;
        const QStringList byName{u"apple"_s, u"Banana"_s, u"Mix 2"_s, u"Mix 10"_s};
        for (const QString &name : {u"gigs/Banana.csv"_s, u"Mix 10.csv"_s, u"apple.csv"_s, u"Mix 2.csv"_s}) {
            home.addList(name, {u"One|Ann|2"_s});
        }
        EngineChild engine(home);
        QJsonArray selection = engine.selectAll();
        QCOMPARE(selection.size(), byName.size());
        for (int turn = 0; turn < 2; ++turn) {
            engine.call(u"startSync"_s, QJsonObject{{u"selection"_s, selection}});
            QStringList played;
            for (int i = 0; i < byName.size(); ++i) {
                played += dataOf(engine.until(u"playlistStarted"_s)).value("name"_L1).toString();
            }
            QCOMPARE(played, byName);
            engine.until(u"syncDone"_s);
            QJsonArray reversed;
            for (const auto &each : std::as_const(selection)) {
                reversed.prepend(each);
            }
            selection = reversed;
        }
    }

    void aRunTellsItsStoryInOrderUnderItsId() {
        const EngineHome home;
        home.addAudio(u"bandcamp/x.flac"_s, u"Mira Holt"_s, u"Night Drive"_s);
        home.addList(u"Late.csv"_s, {u"Night Drive|Mira Holt|2"_s});
        EngineChild engine(home);
        const QList<QJsonObject> events = engine.syncAll();
        QStringList story;
        const QString runId = dataOf(events.first()).value("runId"_L1).toString();
        QVERIFY(!runId.isEmpty());
        for (const QJsonObject &event : events) {
            QCOMPARE(event.value("correlationId"_L1).toString(), runId);
            const QString phase = dataOf(event).value("phase"_L1).toString();
            story += event.value("event"_L1).toString() + (phase.isEmpty() ? QString() : u' ' + phase);
        }
        QCOMPARE(story, QStringList({u"syncStarted"_s, u"playlistStarted"_s, u"trackStarted"_s, u"diskCheck"_s,
                                     u"step searching"_s, u"downloadProgress"_s, u"step tagging"_s, u"step verifying"_s,
                                     u"trackFinished"_s, u"playlistFinished"_s, u"syncDone"_s}));
        const QJsonObject finished = dataOf(named(events, u"trackFinished"_s).first());
        QCOMPARE(finished.value("status"_L1).toString(), u"ok"_s);
        QCOMPARE(finished.value("kind"_L1).toString(), u"downloaded"_s);
        const QJsonObject meta = finished.value("meta"_L1).toObject();
        QCOMPARE(meta.value("format"_L1).toString(), u"FLAC"_s);
        QCOMPARE(meta.value("source"_L1).toString(), u"bandcamp"_s);
        QCOMPARE(dataOf(named(events, u"playlistFinished"_s).first()).value("status"_L1).toString(), u"ok"_s);
        QCOMPARE(summaryOf(events).value("ok"_L1).toInt(), 1);
        QCOMPARE(home.outputFiles(), QStringList{u"Mira Holt - Night Drive.flac"_s});
    }

    void everyKindOfFileArrivesTaggedAsItsRowSays() {
        const EngineHome home;
        home.addAudio(u"a.flac"_s, u"ann"_s, u"one"_s);
        home.addAudio(u"b.mp3"_s, u"ann"_s, u"two"_s);
        home.addAudio(u"c.m4a"_s, u"ann"_s, u"three"_s);
        home.addWav(u"Ann - Four.wav"_s, 2);
        home.addList(u"All.csv"_s, {u"One|Ann|2"_s, u"Two|Ann|2"_s, u"Three|Ann|2"_s, u"Four|Ann|2"_s});
        EngineChild engine(home);
        engine.syncAll();
        QCOMPARE(home.outputFiles(),
                 QStringList({u"Ann - Four.wav"_s, u"Ann - One.flac"_s, u"Ann - Three.m4a"_s, u"Ann - Two.mp3"_s}));
        for (const QString &name : home.outputFiles()) {
            const auto file = zelk::engine::readAudio(home.output(u'/' + name));
            QCOMPARE(file.artist, u"Ann"_s);
            QCOMPARE(u"Ann - "_s + file.title, name.section(u'.', 0, -2));
        }
    }

    void aSecondRunRewritesNothing() {
        const EngineHome home;
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.addAudio(u"b.mp3"_s, u"Ann"_s, u"Two"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s, u"Two|Ann|2"_s, u"One|Ann|2"_s});
        QMap<QString, QByteArray> before;
        QList<QDateTime> times;
        const auto timesNow = [&] {
            QList<QDateTime> list;
            for (const QString &name : home.outputFiles()) {
                list += QFileInfo(home.output(u'/' + name)).lastModified();
            }
            return list;
        };
        {
            EngineChild engine(home);
            QCOMPARE(endings(engine.syncAll()).size(), 3);
            before = home.outputContents();
            times = timesNow();
        }
        EngineChild engine(home); // a new process: all must come from what is remembered
        const QList<QJsonObject> events = engine.syncAll();
        QCOMPARE(endings(events).values(), QStringList({u"present"_s, u"present"_s, u"present"_s}));
        QVERIFY(named(events, u"step"_s).isEmpty());
        QCOMPARE(summaryOf(events).value("present"_L1).toInt(), 3);
        QCOMPARE(home.outputContents(), before);
        QCOMPARE(timesNow(), times);
    }

    void twoRunsFromNothingGiveTheSameFolderByteForByte() {
        const EngineHome home;
        QStringList rows;
        for (int i = 0; i < 8; ++i) {
            const QString title = QString(QChar(u'A' + i)).repeated(6);
            home.addAudio(u"%1.mp3"_s.arg(i), u"Ann"_s, title);
            rows += title + u"|Ann|2"_s;
        }
        // Two recordings whose names differ in case and in signs only.
        home.addWav(u"Zed - Same Name Again.wav"_s, 2);
        home.addWav(u"Zed - same name again.wav"_s, 60);
        rows += {u"Same Name Again|Zed|60"_s, u"same name again|Zed|2"_s};
        home.addList(u"L.csv"_s, rows);
        QMap<QString, QByteArray> first;
        {
            EngineChild engine(home);
            engine.syncAll({{u"concurrency"_s, 8}});
            first = home.outputContents();
        }
        QCOMPARE(first.size(), 10);
        QVERIFY(first.contains(u"Zed - Same Name Again.wav"_s));
        QVERIFY(first.contains(u"Zed - same name again (2).wav"_s));
        QDir(home.output()).removeRecursively();
        QDir(home.path(u".local"_s)).removeRecursively();
        EngineChild engine(home);
        engine.syncAll({{u"concurrency"_s, 3}});
        QVERIFY(home.outputContents() == first);
    }

    void oneRecordingIsOneFileForAllItsRows() {
        const EngineHome home;
        home.addWav(u"Ann - Long.wav"_s, 30);
        home.addList(u"A.csv"_s, {u"Long|Ann|30"_s, u"Long|Ann|30"_s, u"Long (Remastered 2011)|Ann|31"_s});
        EngineChild engine(home);
        const QList<QJsonObject> events = engine.syncAll();
        const QStringList ends = endings(events).values();
        QCOMPARE(ends[0], u"ok downloaded"_s);
        QVERIFY(ends[1] == "ok verified"_L1 || ends[1] == "present"_L1);
        QCOMPARE(ends[2], u"ok verified"_s);
        QCOMPARE(home.outputFiles(), QStringList{u"Ann - Long.wav"_s});
    }

    void aMissingTrackFailsWithWhatToDoAndRestsUntilSomethingIsNew() {
        const EngineHome home;
        home.addList(u"L.csv"_s, {u"Nowhere|Nobody|2"_s});
        EngineChild engine(home);
        QList<QJsonObject> events = engine.syncAll();
        QCOMPARE(dataOf(named(events, u"trackFinished"_s).first()).value("status"_L1).toString(), u"failed"_s);
        QVERIFY(dataOf(named(events, u"trackFinished"_s).first())
                    .value("detail"_L1)
                    .toString()
                    .contains("Add the file"_L1));
        QCOMPARE(dataOf(named(events, u"playlistFinished"_s).first()).value("status"_L1).toString(), u"failed"_s);
        events = engine.syncAll(); // nothing has changed, so nothing is looked for
        QVERIFY(named(events, u"step"_s).isEmpty());
        QCOMPARE(endings(events).values(), QStringList{u"failed"_s});
        home.addAudio(u"n.mp3"_s, u"Nobody"_s, u"Nowhere"_s);
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"ok downloaded"_s});
    }

    void aBrokenFileIsToldAndWrittenAnew() {
        const EngineHome home;
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        EngineChild engine(home);
        engine.syncAll();
        const QString file = home.output(u"/Ann - One.flac"_s);
        const QByteArray whole = home.read(file);
        home.write(file, whole.left(whole.size() / 3));
        const QList<QJsonObject> events = engine.syncAll();
        QCOMPARE(dataOf(named(events, u"diskCheck"_s).first()).value("result"_L1).toString(), u"broken"_s);
        QCOMPARE(endings(events).values(), QStringList{u"ok downloaded"_s});
        QCOMPARE(home.read(file), whole);
        QCOMPARE(home.outputFiles().size(), 1);
    }

    void aForeignFileOfThatNameIsLeftAlone() {
        const EngineHome home;
        home.write(home.output(u"/ANN - ONE.txt"_s), "mine");
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        EngineChild engine(home);
        engine.syncAll();
        QCOMPARE(home.outputFiles(), QStringList({u"ANN - ONE.txt"_s, u"Ann - One (2).flac"_s}));
        QCOMPARE(home.read(home.output(u"/ANN - ONE.txt"_s)), QByteArray("mine"));
    }

    void filesThatCannotBeUsedAreNamedAndTheRestGoesOn() {
        const EngineHome home;
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.write(home.collection(u"empty.mp3"_s), {});
        home.write(home.collection(u"junk.flac"_s), QByteArray(5'000, 'x'));
        home.addWav(u"cut.wav"_s, 3);
        home.write(home.collection(u"cut.wav"_s), home.read(home.collection(u"cut.wav"_s)).left(100));
        QVERIFY(QFile::link(home.collection({}), home.collection(u"round"_s)));
        QVERIFY(QFile::link(home.path(u"gone"_s), home.collection(u"dangling.mp3"_s)));
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        EngineChild engine(home);
        const QList<QJsonObject> events = engine.syncAll();
        QCOMPARE(endings(events).values(), QStringList{u"ok downloaded"_s});
        QString said;
        for (const QJsonObject &log : named(events, u"log"_s)) {
            said += dataOf(log).value("message"_L1).toString() + u'\n';
        }
        for (const QString &name : {u"empty.mp3"_s, u"junk.flac"_s, u"cut.wav"_s, u"dangling.mp3"_s}) {
            QVERIFY2(said.contains(name), qPrintable(said));
        }
    }

    void aDecomposedFileNameMatchesAComposedTitle() {
        const EngineHome home;
        home.addWav(u"A\u030Asa - Fo\u0308rsta Sno\u0308n.wav"_s, 2);
        home.addList(u"L.csv"_s, {u"F\u00F6rsta Sn\u00F6n|\u00C5sa|2"_s});
        EngineChild engine(home);
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"ok downloaded"_s});
        QCOMPARE(home.outputFiles(), QStringList{u"\u00C5sa - F\u00F6rsta Sn\u00F6n.wav"_s});
    }

    void anUnusableOutputFolderIsNamedOnceAndNothingIsLost_data() {
        QTest::addColumn<QString>("outputDir");
        QTest::newRow("below a file") << u"%1/file/out"_s;
        QTest::newRow("a file") << u"%1/file"_s;
        QTest::newRow("kernel's") << u"/proc/zelk"_s;
    }

    void anUnusableOutputFolderIsNamedOnceAndNothingIsLost() {
        QFETCH(QString, outputDir);
        const EngineHome home;
        if (outputDir.contains("%1"_L1)) {
            outputDir = outputDir.arg(home.path());
        }
        home.write(home.path(u"file"_s), "mine");
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.addAudio(u"b.flac"_s, u"Ann"_s, u"Two"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s, u"Two|Ann|2"_s});
        EngineChild engine(home);
        QVERIFY(engine.call(u"setConfig"_s, QJsonObject{{u"patch"_s, QJsonObject{{u"outputDir"_s, outputDir}}}})
                    .value("ok"_L1)
                    .toBool());
        const QList<QJsonObject> events = engine.syncAll();
        const QList<QJsonObject> errors = named(events, u"error"_s);
        QCOMPARE(errors.size(), 1);
        const QString message = dataOf(errors.first()).value("message"_L1).toString();
        QVERIFY(message.contains(outputDir.section(u'/', 0, -2)) && message.contains("choose another"_L1));
        QCOMPARE(endings(events).values(), QStringList({u"failed"_s, u"failed"_s}));
        QCOMPARE(home.read(home.path(u"file"_s)), QByteArray("mine"));
    }

    void aDryRunWritesNothing() {
        const EngineHome home;
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        EngineChild engine(home);
        const QList<QJsonObject> events = engine.syncAll({{u"dryRun"_s, true}});
        QCOMPARE(endings(events).values(), QStringList{u"skipped"_s});
        QVERIFY(!QFileInfo::exists(home.output()));
    }

    void aQualityFloorShutsFilesOutAndSaysSo() {
        const EngineHome home;
        home.addAudio(u"a.mp3"_s, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        EngineChild engine(home);
        const QList<QJsonObject> events = engine.syncAll({{u"qualityFloor"_s, u"flac"_s}});
        QVERIFY(dataOf(named(events, u"trackFinished"_s).first()).value("detail"_L1).toString().contains("quality"_L1));
    }

    void aPreviewKnowsWhatIsOnDisk() {
        const EngineHome home;
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s, u"Two|Ann|2"_s});
        EngineChild engine(home);
        engine.syncAll();
        const QJsonArray tracks = engine.call(u"getPlaylistTracks"_s, engine.selectAll().first())
                                      .value("result"_L1)
                                      .toObject()
                                      .value("tracks"_L1)
                                      .toArray();
        QCOMPARE(tracks.size(), 2);
        QCOMPARE(tracks[0].toObject().value("onDisk"_L1).toString(), u"present"_s);
        QCOMPARE(tracks[0].toObject().value("meta"_L1).toObject().value("format"_L1).toString(), u"FLAC"_s);
        QCOMPARE(tracks[1].toObject().value("onDisk"_L1).toString(), u"missing"_s);
    }

    void onlyOneRunGoesAtATime() {
        const EngineHome home;
        home.addWav(u"Ann - Big.wav"_s, 400);
        home.addList(u"L.csv"_s, {u"Big|Ann|400"_s});
        EngineChild engine(home);
        const QJsonArray all = engine.selectAll();
        // Two in one write: the second is read before the first can be over.
        const QJsonDocument first(
            QJsonObject{{u"id"_s, u"a"_s}, {u"method"_s, u"startSync"_s}, {u"params"_s, selectionOf(all)}});
        QByteArray lines = first.toJson(QJsonDocument::Compact);
        lines += '\n' + QByteArray(lines).replace("\"a\"", "\"b\"");
        engine.send(lines);
        QMap<QString, QJsonObject> replies;
        for (QJsonObject line = engine.next(); replies.size() < 2 && !line.isEmpty(); line = engine.next()) {
            if (line.contains("id"_L1)) {
                replies.insert(line.value("id"_L1).toString(), line);
            }
        }
        QVERIFY(replies.value(u"a"_s).value("ok"_L1).toBool());
        QCOMPARE(replies.value(u"b"_s).value("error"_L1).toObject().value("code"_L1).toString(), u"sync_in_progress"_s);
    }

    void aCancelSkipsWhatIsLeftAndLeavesNoPartialFile_data() {
        QTest::addColumn<bool>("byName");
        QTest::newRow("own id: no summary") << true;
        QTest::newRow("no id: summary") << false;
    }

    void aCancelSkipsWhatIsLeftAndLeavesNoPartialFile() {
        QFETCH(bool, byName);
        const EngineHome home;
        QStringList rows;
        for (int i = 0; i < 12; ++i) {
            const QString title = QString(QChar(u'A' + i)).repeated(6);
            home.addWav(u"Ann - %1.wav"_s.arg(title), 500 + i);
            rows += u"%1|Ann|%2"_s.arg(title).arg(500 + i);
        }
        home.addList(u"L.csv"_s, rows);
        EngineChild engine(home);
        const QJsonObject params = selectionOf(engine.selectAll(), {{u"concurrency"_s, 1}});
        QVERIFY(engine.call(u"startSync"_s, params).value("ok"_L1).toBool());
        const QString runId = dataOf(engine.until(u"syncStarted"_s)).value("runId"_L1).toString();
        engine.until(u"downloadProgress"_s);
        engine.tell(u"cancelSync"_s, byName ? QJsonObject{{u"runId"_s, runId}} : QJsonObject());
        // The run counts as over at once.
        QVERIFY(engine.call(u"startSync"_s, params).value("ok"_L1).toBool());
        QList<QJsonObject> events;
        for (QJsonObject line = engine.next(); !line.isEmpty(); line = engine.next()) {
            if (line.value("event"_L1).toString() == "syncStarted"_L1) {
                QVERIFY(line.value("correlationId"_L1).toString() != runId);
                break;
            }
            events += line;
        }
        QCOMPARE(named(events, u"syncDone"_s).size(), byName ? 0 : 1);
        QVERIFY(endings(events).values().contains(u"skipped"_s));
        QVERIFY(!named(events, u"playlistFinished"_s).isEmpty());
        for (QJsonObject line = engine.next(); !line.isEmpty(); line = engine.next()) {
            QVERIFY2(line.value("correlationId"_L1).toString() != runId,
                     "an old run spoke after the next one's beginning");
            if (line.value("event"_L1).toString() == "syncDone"_L1) {
                break;
            }
        }
        QCOMPARE(home.outputFiles().size(), 12);
        QVERIFY(home.outputFiles().filter(u"partial"_s).isEmpty());
    }

    void theEndOfInputFinishesOrUndoesTheFileInHand() {
        const EngineHome home;
        home.addWav(u"Ann - Big.wav"_s, 4'000);
        home.addList(u"L.csv"_s, {u"Big|Ann|4000"_s});
        EngineChild engine(home);
        QVERIFY(engine.call(u"startSync"_s, selectionOf(engine.selectAll())).value("ok"_L1).toBool());
        engine.until(u"downloadProgress"_s);
        QCOMPARE(engine.finish(), 0);
        const QStringList files = home.outputFiles();
        QVERIFY2(files.isEmpty() || files == QStringList{u"Ann - Big.wav"_s}, qPrintable(files.join(u", "_s)));
        if (!files.isEmpty()) {
            QCOMPARE(zelk::engine::readAudio(home.output(u"/Ann - Big.wav"_s)).durationSec, 4'000);
        }
    }

    void aKilledEngineLeavesNothingThatTheNextRunKeeps() {
        const EngineHome home;
        home.addWav(u"Ann - Big.wav"_s, 3'000);
        home.addList(u"L.csv"_s, {u"Big|Ann|3000"_s});
        {
            EngineChild engine(home);
            QVERIFY(engine.call(u"startSync"_s, selectionOf(engine.selectAll())).value("ok"_L1).toBool());
            QVERIFY(soon([&] { return !home.outputFiles().isEmpty(); }));
            ::kill(static_cast<pid_t>(engine.process().processId()), SIGKILL);
            QVERIFY(engine.process().waitForFinished());
        }
        EngineChild engine(home);
        engine.syncAll();
        QCOMPARE(home.outputFiles(), QStringList{u"Ann - Big.wav"_s});
        QCOMPARE(zelk::engine::readAudio(home.output(u"/Ann - Big.wav"_s)).durationSec, 3'000);
    }

    void aReaderThatPausesLosesNoLineAndCanStillCancel() {
        const EngineHome home;
        QStringList rows;
        for (int i = 0; i < 3'000; ++i) {
            rows += u"Song number %1 of a long list|Ann and a rather long list of friends|2"_s.arg(i);
        }
        home.addList(u"L.csv"_s, rows);
        EngineChild engine(home);
        const QJsonObject params = selectionOf(engine.selectAll());
        QVERIFY(engine.call(u"startSync"_s, params).value("ok"_L1).toBool());
        engine.tell(u"cancelSync"_s, {}); // sent while megabytes may be waiting to be read
        QTest::qSleep(200);
        QList<QJsonObject> events;
        for (QJsonObject line = engine.next(); !line.isEmpty(); line = engine.next()) {
            QVERIFY(line.contains("event"_L1));
            events += line;
            if (line.value("event"_L1).toString() == "syncDone"_L1) {
                break;
            }
        }
        const bool announced = !named(events, u"playlistStarted"_s).isEmpty();
        QCOMPARE(endings(events).size(), announced ? 3'000 : 0);
        QCOMPARE(named(events, u"syncDone"_s).size(), 1);
    }

    void opusBecomesMp3() {
        if (QStandardPaths::findExecutable(u"ffmpeg"_s).isEmpty()) {
            QSKIP("ffmpeg isn't installed; aMissingConverterIsNamed covers that");
        }
        const EngineHome home;
        home.addAudio(u"a.opus"_s, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        EngineChild engine(home);
        const QList<QJsonObject> events = engine.syncAll();
        QVERIFY(namesOf(events, u"#0"_s).contains(u"step converting"_s));
        QCOMPARE(home.outputFiles(), QStringList{u"Ann - One.mp3"_s});
        QVERIFY(zelk::engine::readAudio(home.output(u"/Ann - One.mp3"_s)).bitrateKbps >= 300);
    }

    void aMissingConverterIsNamed() {
        const EngineHome home;
        home.addAudio(u"a.opus"_s, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        QProcessEnvironment environment;
        environment.insert(u"PATH"_s, home.path());
        EngineChild engine(home, environment);
        const QJsonObject finished = dataOf(named(engine.syncAll(), u"trackFinished"_s).first());
        QCOMPARE(finished.value("status"_L1).toString(), u"failed"_s);
        QVERIFY(finished.value("detail"_L1).toString().contains("Install the package \"ffmpeg\""_L1));
        QVERIFY(home.outputFiles().isEmpty());
    }
};

QTEST_GUILESS_MAIN(EngineRun)
#include "tst_enginerun.moc"
