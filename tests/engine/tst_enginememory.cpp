#include "Store/Database.h"
#include "Store/Schema.h"
#include "engine/DatabaseEdit.h"
#include "engine/EngineHome.h"

#include <QJsonArray>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace zelk;
using namespace zelk::engine;
using namespace zelk::engine::testing;

namespace {

/// As if titles had been read otherwise when all this was remembered.
void ageKeys(const EngineHome &home) {
    change(home,
           {u"UPDATE wants SET row_key = 'old-' || row_key"_s, u"UPDATE decisions SET row_key = 'old-' || row_key"_s,
            u"UPDATE spellings SET row_key = 'old-' || row_key"_s,
            u"UPDATE reviews SET row_key = 'old-' || row_key,"
            " record = replace(record, '\"rowKey\":\"', '\"rowKey\":\"old-')"_s});
}

QJsonArray orphansOf(EngineChild &engine) {
    return engine.call(u"listOrphans"_s, QJsonObject{{u"selection"_s, QJsonArray()}})
        .value("result"_L1)
        .toObject()
        .value("paths"_L1)
        .toArray();
}

} // namespace

/// What outlives the program that remembered it: databases of older forms, and rows whose titles are read otherwise.
class EngineMemory : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aListThatIsExportedAnewWithAnotherLengthKeepsItsFilesAndDecisions() {
        const EngineHome home;
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s, u"Slow Burn|Ines|2"_s});
        EngineChild engine(home);
        const QJsonValue track = dataOf(named(engine.syncAll(), u"needsReview"_s).first()).value("trackId"_L1);
        engine.tell(u"reviewDecision"_s, {{u"trackId"_s, track}, {u"decision"_s, QJsonObject{{u"kind"_s, u"skip"_s}}}});
        QCOMPARE(dataOf(engine.until(u"trackFinished"_s)).value("status"_L1).toString(), u"skipped"_s);

        home.addList(u"L.csv"_s, {u"One|Ann|4"_s, u"Slow Burn|Ines|4"_s});
        QVERIFY(orphansOf(engine).isEmpty());
        const QList<QJsonObject> events = engine.syncAll();
        QVERIFY(named(events, u"needsReview"_s).isEmpty());
        QVERIFY(named(events, u"orphansFound"_s).isEmpty());
        QCOMPARE(home.outputFiles(), QStringList{u"Ann - One.flac"_s});

        home.addList(u"L.csv"_s, {u"One|Ann|40"_s, u"Slow Burn|Ines|2"_s}); // that is another recording
        QCOMPARE(orphansOf(engine), QJsonArray{home.output(u"/Ann - One.flac"_s)});
    }

    void aDatabaseOfTheFirstFormIsBroughtToThePresentOne() {
        const EngineHome home;
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        home.addAudio(u"a.mp3"_s, u"Ann"_s, u"One"_s);
        {
            EngineChild engine(home);
            QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"ok downloaded"_s});
            QCOMPARE(engine.finish(), 0);
        }
        change(home, {u"DROP TABLE spellings"_s, u"ALTER TABLE files DROP COLUMN source_bitrate"_s,
                      u"ALTER TABLE files DROP COLUMN replaces"_s, u"ALTER TABLE files DROP COLUMN looked_with"_s,
                      u"ALTER TABLE files DROP COLUMN source_size"_s,
                      u"ALTER TABLE files DROP COLUMN source_modified"_s, u"PRAGMA user_version = 1"_s});
        {
            EngineChild engine(home);
            QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"present"_s});
            QVERIFY(orphansOf(engine).isEmpty());
            QCOMPARE(engine.finish(), 0);
        }
        QCOMPARE(change(home, {u"PRAGMA user_version"_s}).toInt(), 3);
        QCOMPARE(change(home, {u"SELECT count(*) FROM spellings"_s}).toInt(), 1);
        QCOMPARE(change(home, {u"SELECT source_bitrate = bitrate FROM files"_s}).toInt(), 1);
    }

    void rowsOfTheFirstFormAreFollowedFromTheFirstLookOn() {
        const EngineHome home;
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s, u"Never synced|Ann|2"_s});
        home.addAudio(u"a.mp3"_s, u"Ann"_s, u"One"_s);
        {
            EngineChild engine(home);
            engine.syncAll();
            QCOMPARE(engine.finish(), 0);
        }
        change(home, {u"DELETE FROM spellings"_s});
        {
            EngineChild engine(home);
            engine.selectAll(); // no run
            QCOMPARE(engine.finish(), 0);
        }
        QCOMPARE(change(home, {u"SELECT count(*) FROM spellings"_s}).toInt(), 1);
    }

    void aDatabaseOfANewerEngineIsUsedAsItIs() {
        const EngineHome home;
        {
            EngineChild engine(home);
            QVERIFY(engine.selectAll().isEmpty());
            QCOMPARE(engine.finish(), 0);
        }
        change(home, {u"ALTER TABLE files ADD COLUMN of_tomorrow TEXT"_s, u"PRAGMA user_version = 99"_s});
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        home.addAudio(u"a.mp3"_s, u"Ann"_s, u"One"_s);
        {
            EngineChild engine(home);
            QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"ok downloaded"_s});
            QCOMPARE(engine.finish(), 0);
        }
        QCOMPARE(change(home, {u"PRAGMA user_version"_s}).toInt(), 99);
    }

    void everyStepLeadsToTheSameForm() {
        QVERIFY(schemaSteps(3).isEmpty());
        QVERIFY(schemaSteps(4).isEmpty());
        QVERIFY(schemaSteps(0).endsWith(schemaSteps(1).last()));
        QVERIFY(schemaSteps(0).size() > schemaSteps(1).size());
        QVERIFY(schemaSteps(1).size() > schemaSteps(2).size());
    }

    void aDecisionIsFoundThoughItsTitleIsReadOtherwiseNow() {
        const EngineHome home;
        home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addList(u"L.csv"_s, {u"Slow Burn|Ines|2"_s});
        {
            EngineChild engine(home);
            const QJsonValue track = dataOf(named(engine.syncAll(), u"needsReview"_s).first()).value("trackId"_L1);
            engine.tell(u"reviewDecision"_s,
                        {{u"trackId"_s, track}, {u"decision"_s, QJsonObject{{u"kind"_s, u"skip"_s}}}});
            engine.until(u"trackFinished"_s);
            QCOMPARE(engine.finish(), 0);
        }
        ageKeys(home);
        EngineChild engine(home);
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"skipped"_s});
    }

    void aDecisionOfTodayIsNotReplacedByAnOlderOne() {
        const EngineHome home;
        Database database(home.path(u"e.db"_s), [](const QString &) {});
        database.recordDecision(u"old"_s, {StoredDecision::Kind::Skip, {}});
        database.recordDecision(u"new"_s, {StoredDecision::Kind::Take, u"/c/x"_s});
        database.followRows({{u"s"_s, u"old"_s}}, Database::Remember::All);
        database.followRows({{u"s"_s, u"new"_s}}, Database::Remember::WhatIsMet);
        QCOMPARE(database.decision(u"new"_s), (StoredDecision{StoredDecision::Kind::Take, u"/c/x"_s}));
    }

    void twoRowsThatAreNoLongerOneBothKeepTheDecision() {
        const EngineHome home;
        Database database(home.path(u"e.db"_s), [](const QString &) {});
        database.recordDecision(u"old"_s, {StoredDecision::Kind::Take, u"/c/x"_s});
        database.followRows({{u"s"_s, u"old"_s}, {u"t"_s, u"old"_s}}, Database::Remember::All);
        database.followRows({{u"s"_s, u"new-s"_s}, {u"t"_s, u"new-t"_s}}, Database::Remember::WhatIsMet);
        QVERIFY(database.decision(u"new-s"_s));
        QVERIFY(database.decision(u"new-t"_s));
    }

    void aFileIsNoLeftoverOfARowWhoseTitleIsReadOtherwiseNow() {
        const EngineHome home;
        home.addAudio(u"a.mp3"_s, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        {
            EngineChild engine(home);
            engine.syncAll();
            QCOMPARE(engine.finish(), 0);
        }
        ageKeys(home);
        EngineChild engine(home);
        QVERIFY(orphansOf(engine).isEmpty());
        const QJsonObject tracks = engine.call(u"getPlaylistTracks"_s, engine.selectAll().first());
        QCOMPARE(tracks.value("result"_L1).toObject().value("tracks"_L1).toArray()[0].toObject().value("onDisk"_L1),
                 QJsonValue(u"present"_s));
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"present"_s});
    }

    void aReviewThatWaitedIsDecidedUnderTheKeyThatItsRowHasNow() {
        const EngineHome home;
        home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addList(u"L.csv"_s, {u"Slow Burn|Ines|2"_s});
        QJsonValue track;
        {
            EngineChild engine(home);
            track = dataOf(named(engine.syncAll(), u"needsReview"_s).first()).value("trackId"_L1);
            QCOMPARE(engine.finish(), 0);
        }
        ageKeys(home);
        EngineChild engine(home);
        engine.selectAll();
        engine.tell(u"reviewDecision"_s,
                    {{u"trackId"_s, track}, {u"decision"_s, QJsonObject{{u"kind"_s, u"accept"_s}}}});
        QCOMPARE(dataOf(engine.until(u"trackFinished"_s)).value("status"_L1).toString(), u"ok"_s);
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"present"_s});
    }
};

QTEST_GUILESS_MAIN(EngineMemory)
#include "tst_enginememory.moc"
