#include "engine/EngineHome.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine::testing;

namespace {

/// Long enough to be seen on its way.
constexpr int longSeconds = 6'000;
constexpr auto longRow = "Big|Ann|6000"_L1;
constexpr auto longFile = "Ann - Big (Live).wav"_L1;

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
            for (const QJsonValue &each : engine.selectAll()) {
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
};

QTEST_GUILESS_MAIN(EngineReviewRuns)
#include "tst_enginereviewruns.moc"
