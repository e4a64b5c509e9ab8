#include "Run/SourceFinder.h"
#include "engine/EngineHome.h"

#include <QJsonArray>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace zelk;
using namespace zelk::engine;
using namespace zelk::engine::testing;

namespace {

std::shared_ptr<const MatchIndex> indexOfMany() {
    std::vector<AudioFile> files;
    for (int i = 0; i < 150; ++i) {
        AudioFile file;
        file.path = u"/c/%1.mp3"_s.arg(i);
        file.title = u"Song %1"_s.arg(i);
        file.artist = u"Ann"_s;
        file.durationSec = 100;
        file.bitrateKbps = 320;
        files.push_back(file);
    }
    return std::make_shared<const MatchIndex>(std::move(files));
}

ListedTrack wanted() {
    ListedTrack track;
    track.title = u"Song 7"_s;
    track.artist = u"Ann"_s;
    track.durationSec = 100;
    return track;
}

/// A clock that each look at a file puts forward.
struct SlowLooks {
    std::chrono::steady_clock::time_point time{};
    int looks = 0;
    SourceFinder::Now now() {
        return [this] {
            ++looks;
            return time += std::chrono::seconds(1);
        };
    }
};

SourceFinder finder(SlowLooks &clock, double seconds) {
    return {indexOfMany(), {}, {5, seconds, clock.now()}, {}, [](const QString &) {}};
}

QJsonObject runSettings(double searchTimeoutSec, double cooloffHours) {
    const QJsonObject run{{u"searchCount"_s, 5},
                          {u"concurrency"_s, 4},
                          {u"toleranceSec"_s, 5},
                          {u"searchTimeoutSec"_s, searchTimeoutSec},
                          {u"cooloffHours"_s, cooloffHours}};
    return {{u"patch"_s, QJsonObject{{u"run"_s, run}}}};
}

QString detailOf(const QList<QJsonObject> &events) {
    return dataOf(named(events, u"trackFinished"_s).value(0)).value("detail"_L1).toString();
}

} // namespace

/// How long a search may take, and what comes of one that takes longer.
class EngineDeadline : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aSearchEndsAtItsDeadlineWithWhatToDo() {
        SlowLooks clock;
        const FoundSource found = finder(clock, 10).find(wanted(), std::nullopt);
        QVERIFY(found.kind == FoundSource::Kind::Late);
        QVERIFY2(found.detail.contains(u"10 s"_s) && found.detail.contains(u"Settings"_s), qPrintable(found.detail));
        QVERIFY(clock.looks < 15); // and not all 150
    }

    void aSearchWithinItsDeadlineFinds() {
        SlowLooks clock;
        QCOMPARE(finder(clock, 100'000).find(wanted(), std::nullopt).file.path, u"/c/7.mp3"_s);
    }

    void eachTrackHasADeadlineOfItsOwn() {
        SlowLooks clock;
        const SourceFinder search = finder(clock, 1'000);
        for (int i = 0; i < 20; ++i) {
            QVERIFY(search.find(wanted(), std::nullopt).kind == FoundSource::Kind::Found);
        }
        QVERIFY(clock.looks > 1'000);
    }

    void aSearchForABetterCopyHasTheSameDeadline() {
        SlowLooks clock;
        QVERIFY(finder(clock, 10).findBest(wanted()).kind == FoundSource::Kind::Late);
    }

    void anotherDeadlineIsAnotherSearch() {
        SlowLooks clock;
        QVERIFY(finder(clock, 10).fingerprint() != finder(clock, 20).fingerprint());
        QCOMPARE(finder(clock, 10).fingerprint(), finder(clock, 10).fingerprint());
    }

    void aTrackWhoseSearchIsLateRestsUntilTheDeadlineIsRaised() {
        const EngineHome home;
        home.addAudio(u"a.mp3"_s, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        EngineChild engine(home);
        QVERIFY(engine.call(u"setConfig"_s, runSettings(1e-9, 24)).value("ok"_L1).toBool());
        QList<QJsonObject> events = engine.syncAll();
        QCOMPARE(endings(events).values(), QStringList{u"failed"_s});
        QVERIFY2(detailOf(events).contains(u"search timeout"_s), qPrintable(detailOf(events)));
        events = engine.syncAll(); // left alone, for the same reason
        QVERIFY(named(events, u"step"_s).isEmpty());
        QVERIFY2(detailOf(events).contains(u"search timeout"_s), qPrintable(detailOf(events)));
        QVERIFY(engine.call(u"setConfig"_s, runSettings(30, 24)).value("ok"_L1).toBool());
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"ok downloaded"_s});
    }

    void withoutACoolOffATrackIsLookedForEachTime() {
        const EngineHome home;
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        EngineChild engine(home);
        const auto searches = [&] { return named(engine.syncAll(), u"step"_s).size(); };
        QCOMPARE(searches(), 1);
        QCOMPARE(searches(), 0); // rests
        QVERIFY(engine.call(u"setConfig"_s, runSettings(30, 0)).value("ok"_L1).toBool());
        QCOMPARE(searches(), 1); // what was to rest until tomorrow too
        QCOMPARE(searches(), 1);
    }

    void aCoolOffThatIsOverIsForgotten() {
        const EngineHome home;
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        EngineChild engine(home);
        QVERIFY(engine.call(u"setConfig"_s, runSettings(30, 1e-9)).value("ok"_L1).toBool());
        QCOMPARE(named(engine.syncAll(), u"step"_s).size(), 1);
        QCOMPARE(named(engine.syncAll(), u"step"_s).size(), 1);
    }

    void aLateLookForABetterCopyLeavesTheFile() {
        const EngineHome home;
        home.addAudio(u"a.mp3"_s, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        EngineChild engine(home);
        engine.syncAll();
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        QVERIFY(engine.call(u"setConfig"_s, runSettings(1e-9, 24)).value("ok"_L1).toBool());
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"present"_s});
        QVERIFY(engine.call(u"setConfig"_s, runSettings(30, 24)).value("ok"_L1).toBool());
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"ok downloaded"_s});
    }
};

QTEST_GUILESS_MAIN(EngineDeadline)
#include "tst_enginedeadline.moc"
