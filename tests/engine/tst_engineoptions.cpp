#include "engine/EngineHome.h"
#include "engine/Soon.h"
#include "engine/TinyAudio.h"

#include <QDir>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine::testing;

namespace {

QJsonObject summaryOf(const QList<QJsonObject> &events) {
    return events.isEmpty() ? QJsonObject() : dataOf(events.last()).value("summary"_L1).toObject();
}

QString detailOf(const QList<QJsonObject> &events) {
    return dataOf(named(events, u"trackFinished"_s).value(0)).value("detail"_L1).toString();
}

void patch(EngineChild &engine, const QString &group, const QJsonValue &value) {
    const QJsonObject reply = engine.call(u"setConfig"_s, QJsonObject{{u"patch"_s, QJsonObject{{group, value}}}});
    QVERIFY2(reply.value("ok"_L1).toBool(), qPrintable(group));
}

QJsonObject quality(const QString &floor, bool losslessOnly, bool bestQuality) {
    return {{u"floor"_s, floor},
            {u"losslessOnly"_s, losslessOnly},
            {u"bestQuality"_s, bestQuality},
            {u"upgradeEnabled"_s, false}};
}

QJsonObject runSettings(int searchCount, int concurrency, double toleranceSec) {
    return {{u"searchCount"_s, searchCount},
            {u"concurrency"_s, concurrency},
            {u"toleranceSec"_s, toleranceSec},
            {u"searchTimeoutSec"_s, 30},
            {u"cooloffHours"_s, 0}};
}

/// Stands in for ffmpeg: notes how many of it are at work, waits for the file "go", and gives the file "made.mp3".
QProcessEnvironment withConverter(const EngineHome &home) {
    home.write(home.path(u"bin/ffmpeg"_s), "#!/bin/sh\n"
                                           ": > \"$HOME/at-work.$$\"\n"
                                           "ls \"$HOME\" | grep -c at-work >> \"$HOME/counts\"\n"
                                           "while [ ! -e \"$HOME/go\" ]; do sleep 0.02; done\n"
                                           "for last; do :; done\n"
                                           "cp \"$HOME/made.mp3\" \"${last#file:}\"\n"
                                           "rm \"$HOME/at-work.$$\"\n");
    QFile::setPermissions(home.path(u"bin/ffmpeg"_s), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QProcessEnvironment environment;
    environment.insert(u"PATH"_s, home.path(u"bin"_s) + u":/usr/bin:/bin"_s);
    return environment;
}

} // namespace

/// Each option of a run and each setting that it heeds, one by one.
class EngineOptions : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aDryRunRemembersNothing() {
        const EngineHome home;
        home.addAudio(u"a.mp3"_s, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s, u"Nowhere|Nobody|2"_s});
        EngineChild engine(home);
        const QList<QJsonObject> events = engine.syncAll({{u"dryRun"_s, true}});
        QCOMPARE(endings(events).values(), QStringList({u"skipped"_s, u"failed"_s}));
        QVERIFY(!QFileInfo::exists(home.output()));
        QCOMPARE(named(engine.syncAll(), u"step"_s).isEmpty(), false); // nothing rests
        QCOMPARE(home.outputFiles(), QStringList{u"Ann - One.mp3"_s});
    }

    void withoutReviewADoubtfulTrackEndsAsSuch() {
        const EngineHome home;
        home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addList(u"L.csv"_s, {u"Slow Burn|Ines|2"_s});
        EngineChild engine(home);
        const QList<QJsonObject> events = engine.syncAll({{u"review"_s, false}});
        QVERIFY(named(events, u"needsReview"_s).isEmpty());
        QCOMPARE(endings(events).values(), QStringList{u"low-confidence"_s});
        QCOMPARE(summaryOf(events).value("flagged"_L1).toInt(), 1);
        QCOMPARE(endings(engine.syncAll({{u"review"_s, true}})).values(), QStringList{u"review"_s});
    }

    void soManyTracksAreInHandAtATime_data() {
        QTest::addColumn<int>("setting");
        QTest::addColumn<int>("option"); // 0: absent
        QTest::addColumn<int>("expected");
        QTest::newRow("setting") << 3 << 0 << 3;
        QTest::newRow("option") << 4 << 2 << 2;
        QTest::newRow("one") << 4 << 1 << 1;
    }

    void soManyTracksAreInHandAtATime() {
        QFETCH(int, setting);
        QFETCH(int, option);
        QFETCH(int, expected);
        const EngineHome home;
        QStringList rows;
        for (const QString &title : {u"Alpha"_s, u"Bravo"_s, u"Charlie"_s, u"Delta"_s, u"Echo"_s, u"Foxtrot"_s}) {
            home.addAudio(title + u".opus"_s, u"Ann"_s, title);
            rows += title + u"|Ann|2"_s;
        }
        home.addList(u"L.csv"_s, rows);
        home.write(home.path(u"made.mp3"_s), home.read(QStringLiteral(AUDIO_FIXTURES "/tone.mp3")));
        EngineChild engine(home, withConverter(home));
        patch(engine, u"run"_s, runSettings(5, setting, 5));
        QJsonObject params{{u"selection"_s, engine.selectAll()}};
        if (option > 0) {
            params.insert(u"options"_s, QJsonObject{{u"concurrency"_s, option}});
        }
        QVERIFY(engine.call(u"startSync"_s, params).value("ok"_L1).toBool());
        const auto atWork = [&] { return QDir(home.path()).entryList({u"at-work.*"_s}).size(); };
        QVERIFY(soon([&] { return atWork() == expected; }));
        home.write(home.path(u"go"_s), {});
        QVERIFY(!engine.until(u"syncDone"_s).isEmpty());
        QCOMPARE(home.outputFiles().size(), 6);
        int most = 0;
        for (const QByteArray &count : home.read(home.path(u"counts"_s)).split('\n')) {
            most = std::max(most, count.toInt());
        }
        QCOMPARE(most, expected);
    }

    void cleanupTrashesTheLeftoversAndOtherwiseTheyAreOffered_data() {
        QTest::addColumn<bool>("cleanup");
        QTest::newRow("cleanup") << true;
        QTest::newRow("offer") << false;
    }

    void cleanupTrashesTheLeftoversAndOtherwiseTheyAreOffered() {
        QFETCH(bool, cleanup);
        const EngineHome home;
        home.addAudio(u"a.mp3"_s, u"Ann"_s, u"One"_s);
        home.addAudio(u"b.mp3"_s, u"Ann"_s, u"Two"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s, u"Two|Ann|2"_s});
        EngineChild engine(home);
        engine.syncAll();
        home.addList(u"L.csv"_s, {u"Two|Ann|2"_s});
        const QList<QJsonObject> events = engine.syncAll({{u"cleanup"_s, cleanup}});
        QCOMPARE(named(events, u"orphansFound"_s).size(), cleanup ? 0 : 1);
        QCOMPARE(summaryOf(events).value("removed"_L1).toInt(), cleanup ? 1 : 0);
        QCOMPARE(QFileInfo(home.output(u"/Ann - One.mp3"_s)).isFile(), !cleanup);
        QCOMPARE(QFileInfo(home.path(u".local/share/Trash/files/Ann - One.mp3"_s)).isFile(), cleanup);
        QVERIFY(QFileInfo(home.output(u"/Ann - Two.mp3"_s)).isFile());
    }

    void theFloorAndLosslessOnlyShutFilesOut_data() {
        QTest::addColumn<QString>("floor");
        QTest::addColumn<bool>("losslessOnly");
        QTest::addColumn<QString>("option"); // empty: absent
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("isTaken");
        QTest::newRow("any") << u"any"_s << false << QString() << u"128"_s << true;
        QTest::newRow("320 of 128") << u"mp3-320"_s << false << QString() << u"128"_s << false;
        QTest::newRow("320 of 320") << u"mp3-320"_s << false << QString() << u"320"_s << true;
        QTest::newRow("320 of lossless") << u"mp3-320"_s << false << QString() << u"flac"_s << true;
        QTest::newRow("flac of 320") << u"flac"_s << false << QString() << u"320"_s << false;
        QTest::newRow("flac of lossless") << u"flac"_s << false << QString() << u"flac"_s << true;
        QTest::newRow("lossless only of 320") << u"any"_s << true << QString() << u"320"_s << false;
        QTest::newRow("lossless only of lossless") << u"any"_s << true << QString() << u"flac"_s << true;
        QTest::newRow("this time lower") << u"flac"_s << false << u"any"_s << u"128"_s << true;
        QTest::newRow("this time higher") << u"any"_s << false << u"mp3-320"_s << u"128"_s << false;
    }

    void theFloorAndLosslessOnlyShutFilesOut() {
        QFETCH(QString, floor);
        QFETCH(bool, losslessOnly);
        QFETCH(QString, option);
        QFETCH(QString, file);
        QFETCH(bool, isTaken);
        const EngineHome home;
        if (file == u"flac"_s) {
            home.write(home.collection(u"Ann - One.flac"_s), tinyFlac(60, {}));
        } else {
            home.write(home.collection(u"Ann - One.mp3"_s), tinyMp3(file.toInt(), 60));
        }
        home.addList(u"L.csv"_s, {u"One|Ann|60"_s});
        EngineChild engine(home);
        patch(engine, u"quality"_s, quality(floor, losslessOnly, true));
        const QList<QJsonObject> events =
            engine.syncAll(option.isEmpty() ? QJsonObject() : QJsonObject{{u"qualityFloor"_s, option}});
        QCOMPARE(endings(events).values(), QStringList{isTaken ? u"ok downloaded"_s : u"failed"_s});
        QVERIFY(isTaken || detailOf(events).contains(u"quality or source settings"_s));
    }

    void bestQualityTakesTheBestCopyAndElseTheOrderOfSourcesDecides_data() {
        QTest::addColumn<bool>("bestQuality");
        QTest::addColumn<QJsonArray>("sources");
        QTest::addColumn<QString>("taken");
        const QJsonArray plain{u"soulseek"_s, u"bandcamp"_s, u"soundcloud"_s, u"youtube"_s};
        const QJsonArray turned{u"youtube"_s, u"soundcloud"_s, u"bandcamp"_s, u"soulseek"_s};
        QTest::newRow("best") << true << plain << u"Ann - One.flac"_s;
        QTest::newRow("any") << false << plain << u"Ann - One.mp3"_s;
        QTest::newRow("any, turned") << false << turned << u"Ann - One.flac"_s;
    }

    void bestQualityTakesTheBestCopyAndElseTheOrderOfSourcesDecides() {
        QFETCH(bool, bestQuality);
        QFETCH(QJsonArray, sources);
        QFETCH(QString, taken);
        const EngineHome home;
        home.addAudio(u"soulseek/a.mp3"_s, u"Ann"_s, u"One"_s);
        home.addAudio(u"youtube/a.flac"_s, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        EngineChild engine(home);
        patch(engine, u"quality"_s, quality(u"any"_s, false, bestQuality));
        patch(engine, u"sources"_s, sources);
        engine.syncAll();
        QCOMPARE(home.outputFiles(), QStringList{taken});
    }

    void aSwitchedOffSourcesFolderIsNotSearchedAndOthersAlwaysAre_data() {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QJsonArray>("sources");
        QTest::addColumn<bool>("isFound");
        QTest::newRow("on") << u"bandcamp/a.mp3"_s << QJsonArray{u"bandcamp"_s} << true;
        QTest::newRow("off") << u"youtube/a.mp3"_s << QJsonArray{u"bandcamp"_s} << false;
        QTest::newRow("off, in any case") << u"YouTube/sub/a.mp3"_s << QJsonArray{u"bandcamp"_s} << false;
        QTest::newRow("all off") << u"bandcamp/a.mp3"_s << QJsonArray() << false;
        QTest::newRow("outside, all off") << u"a.mp3"_s << QJsonArray() << true;
        QTest::newRow("another folder") << u"mine/a.mp3"_s << QJsonArray() << true;
        QTest::newRow("deeper down") << u"mine/youtube/a.mp3"_s << QJsonArray() << true;
    }

    void aSwitchedOffSourcesFolderIsNotSearchedAndOthersAlwaysAre() {
        QFETCH(QString, file);
        QFETCH(QJsonArray, sources);
        QFETCH(bool, isFound);
        const EngineHome home;
        home.addAudio(file, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        EngineChild engine(home);
        patch(engine, u"sources"_s, sources);
        const QList<QJsonObject> events = engine.syncAll();
        QCOMPARE(endings(events).values(), QStringList{isFound ? u"ok downloaded"_s : u"failed"_s});
        QVERIFY(isFound || detailOf(events).contains(u"source settings"_s));
    }

    void aWrittenFileMayBeOffByTheToleranceAndNoMore_data() {
        QTest::addColumn<double>("toleranceSec");
        QTest::addColumn<bool>("isGood");
        QTest::newRow("within") << 20.0 << true;
        QTest::newRow("beyond") << 3.0 << false;
        QTest::newRow("none") << 0.0 << false;
    }

    void aWrittenFileMayBeOffByTheToleranceAndNoMore() {
        QFETCH(double, toleranceSec);
        QFETCH(bool, isGood);
        const EngineHome home;
        home.addAudio(u"a.opus"_s, u"Ann"_s, u"One"_s); // two seconds
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        home.write(home.path(u"made.mp3"_s), tinyMp3(320, 10));
        home.write(home.path(u"go"_s), {});
        EngineChild engine(home, withConverter(home));
        patch(engine, u"run"_s, runSettings(5, 1, toleranceSec));
        const QList<QJsonObject> events = engine.syncAll();
        QCOMPARE(endings(events).values(), QStringList{isGood ? u"ok downloaded"_s : u"failed"_s});
        QCOMPARE(home.outputFiles().size(), isGood ? 1 : 0);
        QVERIFY(isGood || !detailOf(events).isEmpty());
    }

    void soManyMatchesAreOffered() {
        const EngineHome home;
        for (const QString &version : {u"Live"_s, u"Dub"_s, u"Acoustic"_s, u"Demo"_s}) {
            home.addAudio(version + u".mp3"_s, u"Ines"_s, u"Slow Burn (%1)"_s.arg(version));
        }
        home.addList(u"L.csv"_s, {u"Slow Burn|Ines|2"_s});
        EngineChild engine(home);
        const auto offered = [&] {
            return dataOf(named(engine.syncAll(), u"needsReview"_s).value(0)).value("candidates"_L1).toArray().size();
        };
        patch(engine, u"run"_s, runSettings(3, 1, 5));
        QCOMPARE(offered(), 3);
        patch(engine, u"run"_s, runSettings(1, 1, 5));
        QCOMPARE(offered(), 1);
    }

    void theOutputFolderIsWhereTheUserSays() {
        const EngineHome home;
        home.addAudio(u"a.mp3"_s, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        EngineChild engine(home);
        engine.syncAll();
        patch(engine, u"outputDir"_s, u"~/Some where/é"_s);
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"ok downloaded"_s});
        QVERIFY(QFileInfo(home.path(u"Some where/é/Ann - One.mp3"_s)).isFile());
        QCOMPARE(home.outputFiles(), QStringList{u"Ann - One.mp3"_s}); // what was there stays
    }

    /// They are about services that this engine has nothing to do with.
    void theOtherSettingsAreKeptForWhoeverReadsThem() {
        const EngineHome home;
        {
            EngineChild engine(home);
            patch(engine, u"identity"_s, QJsonObject{{u"enabled"_s, false}, {u"strict"_s, true}});
            patch(engine, u"ui"_s, QJsonObject{{u"theme"_s, u"light"_s}});
            QCOMPARE(engine.finish(), 0);
        }
        EngineChild engine(home);
        const QJsonObject config =
            engine.call(u"getConfig"_s).value("result"_L1).toObject().value("config"_L1).toObject();
        QCOMPARE(config.value("identity"_L1).toObject(), QJsonObject({{u"enabled"_s, false}, {u"strict"_s, true}}));
        QCOMPARE(config.value("ui"_L1).toObject().value("theme"_L1).toString(), u"light"_s);
    }

    void aRunKeepsTheSettingsThatItBeganWith() {
        const EngineHome home;
        home.addAudio(u"a.opus"_s, u"Ann"_s, u"One"_s);
        home.addAudio(u"b.mp3"_s, u"Ann"_s, u"Two"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s, u"Two|Ann|2"_s});
        home.write(home.path(u"made.mp3"_s), home.read(QStringLiteral(AUDIO_FIXTURES "/tone.mp3")));
        EngineChild engine(home, withConverter(home));
        const QJsonObject params{{u"selection"_s, engine.selectAll()},
                                 {u"options"_s, QJsonObject{{u"concurrency"_s, 1}}}};
        QVERIFY(engine.call(u"startSync"_s, params).value("ok"_L1).toBool());
        QVERIFY(soon([&] { return QFileInfo::exists(home.path(u"counts"_s)); }));
        patch(engine, u"outputDir"_s, u"~/Elsewhere"_s);
        home.write(home.path(u"go"_s), {});
        QVERIFY(!engine.until(u"syncDone"_s).isEmpty());
        QCOMPARE(home.outputFiles().size(), 2);
        QVERIFY(!QFileInfo::exists(home.path(u"Elsewhere"_s)));
    }
};

QTEST_GUILESS_MAIN(EngineOptions)
#include "tst_engineoptions.moc"
