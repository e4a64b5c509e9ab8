#include "engine/EngineHome.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine::testing;

/// What a run's events must and mustn't say.
class EngineEvents : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatStandsAndWhatIsSharedTellWhatItIs() {
        const EngineHome home;
        home.addWav(u"bandcamp/Ann - Long.wav"_s, 30);
        home.addList(u"L.csv"_s, {u"Long|Ann|30"_s, u"Long (Remastered 2011)|Ann|31"_s});
        EngineChild engine(home);
        const auto isTold = [](const QJsonObject &event) {
            const QJsonObject meta = dataOf(event).value("meta"_L1).toObject();
            return meta.value("format"_L1).toString() == "WAV"_L1 &&
                   meta.value("source"_L1).toString() == "bandcamp"_L1;
        };
        const QList<QJsonObject> finished = named(engine.syncAll(), u"trackFinished"_s);
        QCOMPARE(finished.size(), 2);
        QCOMPARE(dataOf(finished[1]).value("kind"_L1).toString(), u"verified"_s);
        QVERIFY(isTold(finished[0]) && isTold(finished[1]));
        const QList<QJsonObject> again = engine.syncAll();
        QVERIFY2(named(again, u"trackFinished"_s).isEmpty(), "a track that is there ends with its check");
        QCOMPARE(named(again, u"diskCheck"_s).size(), 2);
        for (const QJsonObject &check : named(again, u"diskCheck"_s)) {
            QVERIFY(isTold(check));
        }
    }

    void progressIsToldAtMostTenTimesASecond() {
        const EngineHome home;
        home.addWav(u"Ann - Big.wav"_s, 4'000); // 250 pieces
        home.addList(u"L.csv"_s, {u"Big|Ann|4000"_s});
        EngineChild engine(home);
        QElapsedTimer timer;
        timer.start();
        const auto told = named(engine.syncAll(), u"downloadProgress"_s).size();
        QVERIFY(told >= 1);
        QVERIFY2(told <= 1 + timer.elapsed() / 100, qPrintable(QString::number(told)));
    }

    void aCancelThatNamesAnotherRunEndsThisOneWithASummary() {
        const EngineHome home;
        home.addWav(u"Ann - Big.wav"_s, 4'000);
        home.addList(u"L.csv"_s, {u"Big|Ann|4000"_s});
        EngineChild engine(home);
        QVERIFY(engine.call(u"startSync"_s, QJsonObject{{u"selection"_s, engine.selectAll()}}).value("ok"_L1).toBool());
        engine.until(u"downloadProgress"_s);
        engine.tell(u"cancelSync"_s, {{u"runId"_s, u"run-of-yesterday"_s}});
        const QJsonObject finished = dataOf(engine.until(u"trackFinished"_s));
        QCOMPARE(finished.value("status"_L1).toString(), u"skipped"_s);
        const QJsonObject summary = dataOf(engine.until(u"syncDone"_s)).value("summary"_L1).toObject();
        QCOMPARE(summary.value("skipped"_L1).toInt(), 1);
        QVERIFY(home.outputFiles().isEmpty());
    }
};

QTEST_GUILESS_MAIN(EngineEvents)
#include "tst_engineevents.moc"
