#include "Store/Database.h"
#include "engine/EngineHome.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>
#include <QUuid>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine::testing;

namespace {

/// Long enough to be seen on its way.
constexpr int longSeconds = 6'000;
constexpr auto longRow = "Big|Ann|6000"_L1;
constexpr auto longFile = "Ann - Big (Live).wav"_L1;

constexpr auto databaseFile = ".local/share/zelk/engine.db"_L1;

const QJsonObject accept{{u"kind"_s, u"accept"_s}};

/// Sends requests in one go, so that nothing comes between them.
void sendTogether(EngineChild &engine, const QList<QJsonObject> &requests) {
    QByteArray lines;
    for (const QJsonObject &request : requests) {
        lines += (lines.isEmpty() ? "" : "\n") + QJsonDocument(request).toJson(QJsonDocument::Compact);
    }
    engine.send(lines);
}

QJsonObject request(const QString &method, const QJsonObject &params) {
    return {{u"id"_s, u"t-"_s + method}, {u"method"_s, method}, {u"params"_s, params}};
}

QJsonObject decisionOn(const QJsonValue &trackId, const QJsonObject &decision = accept) {
    return {{u"trackId"_s, trackId}, {u"decision"_s, decision}};
}

/// All events up to that one, which is the last.
QList<QJsonObject> eventsUntil(EngineChild &engine, const QString &event) {
    QList<QJsonObject> events;
    for (QJsonObject line = engine.next(); !line.isEmpty(); line = engine.next()) {
        if (line.contains("event"_L1)) {
            events += line;
        }
        if (line.value("event"_L1).toString() == event) {
            break;
        }
    }
    return events;
}

QString idOf(const QJsonObject &event) {
    return event.value("correlationId"_L1).toString();
}

QJsonValue trackOf(const QJsonObject &event) {
    return dataOf(event).value("trackId"_L1);
}

QJsonObject summaryOf(const QList<QJsonObject> &events) {
    return events.isEmpty() ? QJsonObject() : dataOf(events.last()).value("summary"_L1).toObject();
}

/// Changes the engine's memory behind its back.
void alterMemory(const EngineHome &home, const QString &statement) {
    const QString connection = QUuid::createUuid().toString();
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, connection);
        database.setDatabaseName(home.path(databaseFile));
        if (!database.open() || QSqlQuery(database).exec(statement) == false) {
            qFatal("the engine's memory can't be changed");
        }
    }
    QSqlDatabase::removeDatabase(connection);
}

} // namespace

/// Decisions on doubtful tracks and the runs that go on beside and after them.
class EngineReviewRuns : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aRunBeginsWhenTheDecisionsBeforeItAreCarriedOut() {
        const EngineHome home;
        home.addWav(longFile, longSeconds);
        home.addList(u"L.csv"_s, {longRow});
        EngineChild engine(home);
        const QJsonObject all{{u"selection"_s, engine.selectAll()}};
        const QList<QJsonObject> first = engine.syncAll();
        const QString oldRun = idOf(first.last());
        const QJsonValue track = trackOf(named(first, u"needsReview"_s).first());
        sendTogether(engine, {request(u"reviewDecision"_s, decisionOn(track)), request(u"startSync"_s, all)});
        const QList<QJsonObject> before = eventsUntil(engine, u"syncStarted"_s);
        QCOMPARE(endings(before).values(), QStringList{u"ok downloaded"_s});
        QCOMPARE(idOf(named(before, u"trackFinished"_s).first()), oldRun);
        const QList<QJsonObject> after = eventsUntil(engine, u"syncDone"_s);
        for (const QJsonObject &event : after) {
            QCOMPARE(idOf(event), idOf(before.last()));
        }
        QCOMPARE(endings(after).values(), QStringList{u"present"_s});
        QCOMPARE(home.outputFiles(), QStringList{u"Ann - Big.wav"_s});
    }

    void cancellingARunThatWaitsForADecisionStopsThatAndKeepsIt() {
        const EngineHome home;
        home.addWav(longFile, longSeconds);
        home.addList(u"L.csv"_s, {longRow});
        EngineChild engine(home);
        const QJsonObject all{{u"selection"_s, engine.selectAll()}};
        const QList<QJsonObject> first = engine.syncAll();
        const QJsonValue track = trackOf(named(first, u"needsReview"_s).first());
        sendTogether(engine, {request(u"reviewDecision"_s, decisionOn(track)), request(u"startSync"_s, all),
                              request(u"cancelSync"_s, {{u"runId"_s, idOf(first.last())}})});
        const QList<QJsonObject> before = eventsUntil(engine, u"syncStarted"_s);
        QCOMPARE(endings(before).values(), QStringList{u"skipped"_s});
        QCOMPARE(idOf(named(before, u"trackFinished"_s).first()), idOf(first.last()));
        const QList<QJsonObject> cancelled = eventsUntil(engine, u"syncDone"_s);
        QCOMPARE(cancelled.size(), 1); // the application has not seen this run's id when it cancelled
        QVERIFY(home.outputFiles().isEmpty());
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"ok downloaded"_s}); // without asking again
    }

    void aDecisionAfterTheRunIsCountedInItsSummary() {
        const EngineHome home;
        home.addAudio(u"one.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addAudio(u"two.mp3"_s, u"Ann"_s, u"Other (Live)"_s);
        home.addList(u"L.csv"_s, {u"Slow Burn|Ines|2"_s, u"Other|Ann|2"_s, u"Slow Burn|Ines|2"_s, u"None|At all|2"_s});
        EngineChild engine(home);
        const QList<QJsonObject> events = engine.syncAll();
        const QList<QJsonObject> doubtful = named(events, u"needsReview"_s);
        QCOMPARE(doubtful.size(), 3);
        QCOMPARE(summaryOf(events).value("flagged"_L1).toInt(), 3);
        QCOMPARE(summaryOf(events).value("failed"_L1).toInt(), 1);

        engine.tell(u"reviewDecision"_s, decisionOn(trackOf(doubtful[0])));
        const QJsonObject first = engine.until(u"syncDone"_s);
        QCOMPARE(idOf(first), idOf(events.last()));
        QJsonObject summary = summaryOf({first});
        QCOMPARE(summary.value("ok"_L1).toInt(), 1);
        QCOMPARE(summary.value("present"_L1).toInt(), 1); // the other row of the same recording
        QCOMPARE(summary.value("flagged"_L1).toInt(), 1);

        engine.tell(u"reviewDecision"_s, decisionOn(trackOf(doubtful[1]), QJsonObject{{u"kind"_s, u"skip"_s}}));
        summary = summaryOf({engine.until(u"syncDone"_s)});
        QCOMPARE(summary.value("ok"_L1).toInt(), 1);
        QCOMPARE(summary.value("flagged"_L1).toInt(), 0);
        QCOMPARE(summary.value("skipped"_L1).toInt(), 1);
        QCOMPARE(summary.value("failed"_L1).toInt(), 1);
    }

    void aDecisionThatComesToNothingLeavesTheSummary() {
        const EngineHome home;
        home.addAudio(u"one.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addList(u"L.csv"_s, {u"Slow Burn|Ines|2"_s});
        EngineChild engine(home);
        const QJsonValue track = trackOf(named(engine.syncAll(), u"needsReview"_s).first());
        engine.tell(u"reviewDecision"_s,
                    decisionOn(track, QJsonObject{{u"kind"_s, u"url"_s}, {u"url"_s, u"/nowhere/at/all.mp3"_s}}));
        engine.until(u"error"_s);
        engine.tell(u"reviewDecision"_s, decisionOn(track));
        const QList<QJsonObject> events = eventsUntil(engine, u"syncDone"_s);
        QCOMPARE(endings(events).values(), QStringList{u"ok downloaded"_s}); // nothing was summed up before
    }

    void afterACancelledRunADecisionSumsUpNothing() {
        const EngineHome home;
        home.addAudio(u"one.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addWav(u"Ann - Big.wav"_s, longSeconds);
        home.addList(u"L.csv"_s, {u"Slow Burn|Ines|2"_s, longRow});
        EngineChild engine(home);
        engine.call(u"startSync"_s, QJsonObject{{u"selection"_s, engine.selectAll()}});
        const QJsonObject doubtful = engine.until(u"needsReview"_s);
        engine.tell(u"cancelSync"_s, {{u"runId"_s, idOf(doubtful)}});
        engine.until(u"playlistFinished"_s);
        engine.tell(u"reviewDecision"_s, decisionOn(trackOf(doubtful)));
        QCOMPARE(dataOf(engine.untilTrack(u"trackFinished"_s, 0)).value("status"_L1).toString(), u"ok"_s);
        // The application shows that run as cancelled, and so it stays.
        engine.call(u"startSync"_s, QJsonObject{{u"selection"_s, engine.selectAll()}});
        const QList<QJsonObject> events = eventsUntil(engine, u"syncStarted"_s);
        QVERIFY(named(events, u"syncDone"_s).isEmpty());
    }

    void aDecisionOnARowOfAnEarlierRunSpeaksForTheRunThatBeganLast_data() {
        QTest::addColumn<bool>("during");
        QTest::newRow("during it") << true;
        QTest::newRow("after it") << false;
    }

    void aDecisionOnARowOfAnEarlierRunSpeaksForTheRunThatBeganLast() {
        QFETCH(bool, during);
        const EngineHome home;
        home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addWav(u"Ann - Big.wav"_s, longSeconds);
        home.addList(u"A.csv"_s, {u"Slow Burn|Ines|2"_s});
        home.addList(u"B.csv"_s, {longRow});
        EngineChild engine(home);
        const auto only = [&](const QString &name) {
            for (const auto &each : engine.selectAll()) {
                if (each.toObject().value("name"_L1).toString() == name) {
                    return QJsonObject{{u"selection"_s, QJsonArray{each}}};
                }
            }
            return QJsonObject();
        };
        engine.call(u"startSync"_s, only(u"A"_s));
        const QJsonValue track = trackOf(engine.until(u"needsReview"_s));
        engine.until(u"syncDone"_s);
        engine.call(u"startSync"_s, only(u"B"_s));
        const QString newRun = idOf(engine.until(u"syncStarted"_s));
        if (during) {
            engine.tell(u"reviewDecision"_s, decisionOn(track));
        }
        QList<QJsonObject> events = eventsUntil(engine, u"syncDone"_s);
        const QJsonObject summary = summaryOf(events);
        if (!during) {
            engine.tell(u"reviewDecision"_s, decisionOn(track));
            events = eventsUntil(engine, u"trackFinished"_s);
        }
        for (const QJsonObject &event : events) {
            QCOMPARE(idOf(event), newRun);
        }
        QCOMPARE(endings(events).value(track.toString()), u"ok downloaded"_s);
        // It is no row of this run.
        QCOMPARE(summary.value("ok"_L1).toInt(), 1);
        QCOMPARE(summary.value("flagged"_L1).toInt(), 0);
        QCOMPARE(home.outputFiles(), QStringList({u"Ann - Big.wav"_s, u"Ines - Slow Burn.mp3"_s}));
    }

    void rowsThatComeWhileADecisionIsCarriedOutShareItsOutcome_data() {
        QTest::addColumn<QString>("title");
        QTest::addColumn<bool>("skip");
        QTest::newRow("the same words") << u"Big"_s << false;
        QTest::newRow("other words for the same file") << u"Big (Live)"_s << false;
        QTest::newRow("skipped") << u"Big"_s << true;
    }

    void rowsThatComeWhileADecisionIsCarriedOutShareItsOutcome() {
        QFETCH(QString, title);
        QFETCH(bool, skip);
        const EngineHome home;
        home.addWav(longFile, longSeconds);
        home.addWav(u"Zed - Other.wav"_s, 1'000);
        home.addList(u"L.csv"_s, {longRow, u"Other|Zed|1000"_s, u"%1|Ann|%2"_s.arg(title).arg(longSeconds)});
        EngineChild engine(home);
        engine.call(u"startSync"_s, QJsonObject{{u"selection"_s, engine.selectAll()},
                                                {u"options"_s, QJsonObject{{u"concurrency"_s, 1}}}});
        const QJsonValue track = trackOf(engine.until(u"needsReview"_s));
        engine.tell(u"reviewDecision"_s, decisionOn(track, skip ? QJsonObject{{u"kind"_s, u"skip"_s}} : accept));
        const QList<QJsonObject> events = eventsUntil(engine, u"syncDone"_s);
        const QMap<QString, QString> ends = endings(events);
        QCOMPARE(ends.size(), 3);
        QCOMPARE(ends.first(), skip ? u"skipped"_s : u"ok downloaded"_s);
        QVERIFY2(skip ? ends.last() == "skipped"_L1 : ends.last() == "ok verified"_L1 || ends.last() == "present"_L1,
                 qPrintable(ends.last()));
        const QJsonObject summary = summaryOf(events);
        QCOMPARE(summary.value("flagged"_L1).toInt(), 0);
        QCOMPARE(summary.value("ok"_L1).toInt(), skip ? 1 : 2);
        QCOMPARE(summary.value("skipped"_L1).toInt(), skip ? 2 : 0);
        QCOMPARE(summary.value("present"_L1).toInt(), skip ? 0 : 1);
        QCOMPARE(home.outputFiles(),
                 skip ? QStringList{u"Zed - Other.wav"_s} : QStringList({u"Ann - Big.wav"_s, u"Zed - Other.wav"_s}));
        // The rows that wait for the outcome end before their playlist.
        qsizetype finished = 0;
        for (const QJsonObject &event : events) {
            finished += event.value("event"_L1).toString() == "playlistFinished"_L1 ? finished : 0;
            finished = std::max<qsizetype>(finished, trackOf(event).toString().endsWith("#2"_L1) ? 1 : 0);
        }
        QCOMPARE(finished, 2);
    }

    void aDecisionForAFileThatTheRunIsCopyingSharesTheCopy() {
        const EngineHome home;
        home.addWav(longFile, longSeconds);
        home.addList(u"L.csv"_s, {u"Big (Live)|Ann|%1"_s.arg(longSeconds), longRow});
        EngineChild engine(home);
        engine.call(u"startSync"_s, QJsonObject{{u"selection"_s, engine.selectAll()}});
        engine.tell(u"reviewDecision"_s, decisionOn(trackOf(engine.until(u"needsReview"_s))));
        const QList<QJsonObject> events = eventsUntil(engine, u"syncDone"_s);
        QCOMPARE(endings(events).values(), QStringList({u"ok downloaded"_s, u"ok verified"_s}));
        QCOMPARE(home.outputFiles(), QStringList{u"Ann - Big (Live).wav"_s});
        QCOMPARE(summaryOf(events).value("flagged"_L1).toInt(), 0);
    }

    void aDecisionIsForTheTrackThatWasAskedAboutWhereverItStandsNow() {
        const EngineHome home;
        home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addAudio(u"one.flac"_s, u"Ann"_s, u"One"_s);
        home.addWav(u"Zed - Other.wav"_s, longSeconds);
        home.addList(u"L.csv"_s, {u"Slow Burn|Ines|2"_s, u"One|Ann|2"_s});
        EngineChild engine(home);
        QCOMPARE(endings(engine.syncAll()).values(), QStringList({u"review"_s, u"ok downloaded"_s}));
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s, u"Slow Burn|Ines|2"_s, u"Other|Zed|%1"_s.arg(longSeconds)});
        engine.call(u"startSync"_s, QJsonObject{{u"selection"_s, engine.selectAll()}});
        const QJsonObject review = engine.until(u"needsReview"_s);
        QVERIFY(trackOf(review).toString().endsWith("#1"_L1));
        engine.tell(u"reviewDecision"_s, decisionOn(trackOf(review), {{u"kind"_s, u"skip"_s}}));
        const QList<QJsonObject> events = eventsUntil(engine, u"syncDone"_s);
        QStringList finished;
        for (const QJsonObject &event : named(events, u"trackFinished"_s)) {
            QCOMPARE(idOf(event), idOf(review));
            finished += trackOf(event).toString().right(2);
        }
        finished.sort();
        QCOMPARE(finished, QStringList({u"#1"_s, u"#2"_s}));
        const QJsonObject summary = summaryOf(events);
        QCOMPARE(summary.value("flagged"_L1).toInt(), 0);
        QCOMPARE(summary.value("skipped"_L1).toInt(), 1);
        const QString first = trackOf(review).toString().chopped(1) + u'0';
        engine.tell(u"reviewDecision"_s, decisionOn(first));
        QVERIFY(dataOf(engine.until(u"error"_s)).value("message"_L1).toString().contains("Sync again"_L1));
    }

    void aDecisionSentBeforeTheNextRunWasHeardOfIsKept() {
        const EngineHome home;
        home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addWav(u"Zed - Other.wav"_s, longSeconds);
        home.addList(u"L.csv"_s, {u"Slow Burn|Ines|2"_s});
        EngineChild engine(home);
        const QList<QJsonObject> first = engine.syncAll();
        home.addList(u"L.csv"_s, {u"Other|Zed|%1"_s.arg(longSeconds), u"Slow Burn|Ines|2"_s});
        engine.call(u"startSync"_s, QJsonObject{{u"selection"_s, engine.selectAll()},
                                                {u"options"_s, QJsonObject{{u"concurrency"_s, 1}}}});
        engine.until(u"syncStarted"_s);
        QJsonObject decision = decisionOn(trackOf(named(first, u"needsReview"_s).first()));
        decision.insert(u"runId"_s, idOf(first.last()));
        engine.tell(u"reviewDecision"_s, decision);
        const QList<QJsonObject> events = eventsUntil(engine, u"syncDone"_s);
        QVERIFY(named(events, u"needsReview"_s).isEmpty());
        QCOMPARE(endings(events).values(), QStringList({u"ok downloaded"_s, u"ok downloaded"_s}));
        QCOMPARE(home.outputFiles(), QStringList({u"Ines - Slow Burn.mp3"_s, u"Zed - Other.wav"_s}));
    }

    void aTrackThatLeftKeepsNoName() {
        const EngineHome home;
        home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addList(u"L.csv"_s, {u"Slow Burn|Ines|2"_s});
        EngineChild engine(home);
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"review"_s});
        QVERIFY(QFile::remove(home.playlists(u"L.csv"_s)));
        home.addWav(u"Ines - Slow Burn.wav"_s, 60);
        home.addList(u"M.csv"_s, {u"Slow Burn|Ines|60"_s});
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"ok downloaded"_s});
        QCOMPARE(home.outputFiles(), QStringList{u"Ines - Slow Burn.wav"_s});
    }

    void allThatARunAndItsDecisionsSayCarriesItsId() {
        const EngineHome home;
        home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.write(home.collection(u"junk.flac"_s), QByteArray(5'000, 'x'));
        home.addList(u"L.csv"_s, {u"Slow Burn|Ines|2"_s});
        auto engine = std::make_unique<EngineChild>(home);
        const QList<QJsonObject> events = engine->syncAll();
        const QString runId = idOf(events.last());
        const QJsonObject passedOver = named(events, u"log"_s).value(0);
        QVERIFY(dataOf(passedOver).value("message"_L1).toString().contains("junk.flac"_L1));
        QCOMPARE(idOf(passedOver), runId);
        const QJsonValue track = trackOf(named(events, u"needsReview"_s).first());
        const QJsonObject nowhere{{u"kind"_s, u"url"_s}, {u"url"_s, u"/nowhere/at/all.mp3"_s}};
        engine->tell(u"reviewDecision"_s, decisionOn(track, nowhere));
        QCOMPARE(idOf(engine->until(u"error"_s)), runId);
        QCOMPARE(engine->finish(), 0);
        engine = std::make_unique<EngineChild>(home);
        QJsonObject decision = decisionOn(track, nowhere);
        decision.insert(u"runId"_s, runId);
        engine->tell(u"reviewDecision"_s, decision);
        QCOMPARE(idOf(engine->until(u"error"_s)), runId);
    }

    void aDecisionThatCannotBeKeptSaysWhatToDo() {
        const EngineHome home;
        home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addList(u"L.csv"_s, {u"Slow Burn|Ines|2"_s});
        EngineChild engine(home);
        const QJsonValue track = trackOf(named(engine.syncAll(), u"needsReview"_s).first());
        alterMemory(home, u"ALTER TABLE decisions RENAME TO elsewhere"_s);
        engine.tell(u"reviewDecision"_s, decisionOn(track));
        const QString message = dataOf(engine.until(u"error"_s)).value("message"_L1).toString();
        QVERIFY2(message.contains("Check the disk of your home folder and decide again."_L1), qPrintable(message));
        alterMemory(home, u"ALTER TABLE elsewhere RENAME TO decisions"_s);
        engine.tell(u"reviewDecision"_s, decisionOn(track));
        QCOMPARE(dataOf(engine.until(u"trackFinished"_s)).value("status"_L1).toString(), u"ok"_s);
    }

    void aRowWhoseFileStandsIsRememberedAtOnce() {
        const EngineHome home;
        home.addAudio(u"one.flac"_s, u"Ann"_s, u"One"_s);
        home.addWav(u"Zed - Other.wav"_s, longSeconds);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        EngineChild engine(home);
        engine.syncAll();
        home.addList(u"M.csv"_s, {u"One|Ann|2"_s, u"Other|Zed|%1"_s.arg(longSeconds)});
        engine.call(u"startSync"_s, QJsonObject{{u"selection"_s, engine.selectAll()}});
        engine.until(u"downloadProgress"_s);
        engine.process().kill();
        QVERIFY(engine.process().waitForFinished());
        zelk::engine::Database memory(home.path(databaseFile), [](const QString &) {});
        qint64 one = 0;
        for (const zelk::engine::WrittenFile &file : memory.writtenFiles()) {
            one = file.path.endsWith("Ann - One.flac"_L1) ? file.id : one;
        }
        int rows = 0;
        for (const zelk::engine::Want &want : memory.wants()) {
            rows += want.fileId == one ? 1 : 0;
        }
        QCOMPARE(rows, 2);
    }

    void aCancelStopsTheDecisionsThatAreLinedUpAndKeepsThem() {
        const EngineHome home;
        home.addWav(longFile, longSeconds);
        home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addList(u"L.csv"_s, {longRow, u"Slow Burn|Ines|2"_s});
        EngineChild engine(home);
        const QJsonObject all{{u"selection"_s, engine.selectAll()}};
        const QList<QJsonObject> reviews = named(engine.syncAll(), u"needsReview"_s);
        sendTogether(engine, {request(u"reviewDecision"_s, decisionOn(trackOf(reviews.value(0)))),
                              request(u"reviewDecision"_s, decisionOn(trackOf(reviews.value(1)))),
                              request(u"startSync"_s, all), request(u"cancelSync"_s, {})});
        const QList<QJsonObject> events = eventsUntil(engine, u"syncDone"_s);
        QCOMPARE(endings(events).values(), QStringList({u"skipped"_s, u"skipped"_s}));
        QVERIFY(home.outputFiles().isEmpty());
        QCOMPARE(endings(engine.syncAll()).values(), QStringList({u"ok downloaded"_s, u"ok downloaded"_s}));
    }

    void aCancelStraightBehindTheStartEndsTheRunWithASummary_data() {
        QTest::addColumn<QJsonObject>("params");
        QTest::newRow("no id") << QJsonObject();
        QTest::newRow("another run's id") << QJsonObject{{u"runId"_s, u"run-of-old"_s}};
    }

    void aCancelStraightBehindTheStartEndsTheRunWithASummary() {
        QFETCH(QJsonObject, params);
        const EngineHome home;
        home.addWav(u"Zed - Other.wav"_s, longSeconds);
        home.addList(u"L.csv"_s, {u"Other|Zed|%1"_s.arg(longSeconds)});
        EngineChild engine(home);
        const QJsonObject all{{u"selection"_s, engine.selectAll()}};
        sendTogether(engine, {request(u"startSync"_s, all), request(u"cancelSync"_s, params)});
        const QList<QJsonObject> events = eventsUntil(engine, u"syncDone"_s);
        QCOMPARE(named(events, u"syncStarted"_s).size(), 1);
        QCOMPARE(named(events, u"syncDone"_s).size(), 1);
        QVERIFY(!endings(events).values().contains(u"ok downloaded"_s));
        QVERIFY(home.outputFiles().isEmpty());
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"ok downloaded"_s});
    }

    void aCancelThatNamesAnotherRunEndsThisOneWithASummary() {
        const EngineHome home;
        QStringList rows;
        for (int i = 0; i < 20; ++i) {
            const QString title = QString(QChar(u'A' + i)).repeated(6);
            home.addWav(u"Ann - %1.wav"_s.arg(title), 400 + i);
            rows += u"%1|Ann|%2"_s.arg(title).arg(400 + i);
        }
        home.addList(u"L.csv"_s, rows);
        EngineChild engine(home);
        engine.call(u"startSync"_s, QJsonObject{{u"selection"_s, engine.selectAll()},
                                                {u"options"_s, QJsonObject{{u"concurrency"_s, 1}}}});
        engine.until(u"downloadProgress"_s);
        engine.tell(u"cancelSync"_s, {{u"runId"_s, u"run-of-old"_s}});
        const QList<QJsonObject> events = eventsUntil(engine, u"syncDone"_s);
        QCOMPARE(named(events, u"syncDone"_s).size(), 1);
        QVERIFY(endings(events).values().contains(u"skipped"_s));
        QVERIFY(home.outputFiles().filter(u"partial"_s).isEmpty());
    }

    void withoutReviewADoubtfulTrackEndsAsThatAndWaitsForNothing() {
        const EngineHome home;
        home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addList(u"L.csv"_s, {u"Slow Burn|Ines|2"_s});
        EngineChild engine(home);
        const QList<QJsonObject> events = engine.syncAll({{u"review"_s, false}});
        QVERIFY(named(events, u"needsReview"_s).isEmpty());
        const QJsonObject finished = dataOf(named(events, u"trackFinished"_s).value(0));
        QCOMPARE(finished.value("status"_L1).toString(), u"low-confidence"_s);
        QVERIFY(finished.value("detail"_L1).toString().contains("Sync with review"_L1));
        QCOMPARE(dataOf(named(events, u"playlistFinished"_s).first()).value("status"_L1).toString(),
                 u"low-confidence"_s);
        QCOMPARE(summaryOf(events).value("flagged"_L1).toInt(), 1);
        engine.tell(u"reviewDecision"_s, decisionOn(finished.value("trackId"_L1)));
        QVERIFY(!dataOf(engine.until(u"error"_s)).value("message"_L1).toString().isEmpty());
        QVERIFY(home.outputFiles().isEmpty());
    }
};

QTEST_GUILESS_MAIN(EngineReviewRuns)
#include "tst_enginereviewruns.moc"
