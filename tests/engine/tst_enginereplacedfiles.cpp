#include "Library/AudioReader.h"
#include "engine/EngineHome.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine;
using namespace zelk::engine::testing;

namespace {

/// Puts another WAV file of that length where one is, as a person would who edits or exchanges it.
void exchange(const EngineHome &home, const QString &path, int seconds) {
    home.addWav(u"elsewhere/x.wav"_s, seconds);
    QVERIFY(QFile::remove(path));
    QVERIFY(QFile::rename(home.collection(u"elsewhere/x.wav"_s), path));
}

QStringList orphansOf(EngineChild &engine) {
    QStringList names;
    const QJsonObject reply = engine.call(u"listOrphans"_s, QJsonObject{{u"selection"_s, QJsonArray()}});
    for (const auto &path : reply.value("result"_L1).toObject().value("paths"_L1).toArray()) {
        names += QFileInfo(path.toString()).fileName();
    }
    return names;
}

double secondsOf(const EngineHome &home, const QString &name) {
    return readAudio(home.output(u'/' + name)).durationSec;
}

} // namespace

/// Files of the collection, and files that were written, for which the user has put others in their place.
class EngineReplacedFiles : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anotherRecordingUnderAKnownNameIsNotTakenForTheFirst() {
        const EngineHome home;
        home.addAudio(u"track.mp3"_s, u"Ann"_s, u"Alpha"_s);
        home.addList(u"L.csv"_s, {u"Alpha|Ann|2"_s});
        EngineChild engine(home);
        engine.syncAll();
        home.addAudio(u"new.flac"_s, u"Zed"_s, u"Omega"_s);
        QVERIFY(QFile::remove(home.collection(u"track.mp3"_s)));
        home.addAudio(u"other.mp3"_s, u"Zed"_s, u"Omega"_s);
        QVERIFY(QFile::remove(home.collection(u"new.flac"_s)));
        QVERIFY(QFile::rename(home.collection(u"other.mp3"_s), home.collection(u"track.mp3"_s)));
        home.addList(u"L.csv"_s, {u"Alpha|Ann|2"_s, u"Omega|Zed|2"_s});
        QCOMPARE(endings(engine.syncAll()).values(), QStringList({u"present"_s, u"ok downloaded"_s}));
        QCOMPARE(home.outputFiles(), QStringList({u"Ann - Alpha.mp3"_s, u"Zed - Omega.mp3"_s}));
        QCOMPARE(readAudio(home.output(u"/Zed - Omega.mp3"_s)).title, u"Omega"_s);
    }

    void aDecisionForAKnownNameTakesTheFileThatIsThereNow() {
        const EngineHome home;
        home.addAudio(u"track.mp3"_s, u"Ann"_s, u"Alpha"_s);
        home.addList(u"L.csv"_s, {u"Alpha|Ann|2"_s});
        EngineChild engine(home);
        engine.syncAll();
        QVERIFY(QFile::remove(home.collection(u"track.mp3"_s)));
        home.addAudio(u"track.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addList(u"L.csv"_s, {u"Alpha|Ann|2"_s, u"Slow Burn|Ines|2"_s});
        const QJsonObject review = dataOf(named(engine.syncAll(), u"needsReview"_s).value(0));
        engine.tell(u"reviewDecision"_s, {{u"trackId"_s, review.value("trackId"_L1)},
                                          {u"decision"_s, QJsonObject{{u"kind"_s, u"accept"_s}}}});
        QCOMPARE(dataOf(engine.until(u"trackFinished"_s)).value("kind"_L1).toString(), u"downloaded"_s);
        QCOMPARE(home.outputFiles(), QStringList({u"Ann - Alpha.mp3"_s, u"Ines - Slow Burn.mp3"_s}));
    }

    void aLongerFileOfTheUsersIsLeftWhereItIs() {
        const EngineHome home;
        home.addWav(u"Ann - One.wav"_s, 20);
        home.addList(u"L.csv"_s, {u"One|Ann|20"_s});
        EngineChild engine(home);
        engine.syncAll();
        exchange(home, home.output(u"/Ann - One.wav"_s), 40);
        QCOMPARE(endings(engine.syncAll({{u"upgrade"_s, true}})).values(), QStringList{u"present"_s});
        QCOMPARE(secondsOf(home, u"Ann - One.wav"_s), 40.0);
        home.addList(u"L.csv"_s, {u"Two|Ann|20"_s}); // and isn't ours to be offered
        QVERIFY(orphansOf(engine).isEmpty());
        engine.syncAll({{u"cleanup"_s, true}});
        QCOMPARE(secondsOf(home, u"Ann - One.wav"_s), 40.0);
    }

    void aShorterFileGoesToTheTrashBeforeItIsWrittenAnew() {
        const EngineHome home;
        home.addWav(u"Ann - One.wav"_s, 40);
        home.addList(u"L.csv"_s, {u"One|Ann|40"_s});
        EngineChild engine(home);
        engine.syncAll();
        exchange(home, home.output(u"/Ann - One.wav"_s), 20);
        const QList<QJsonObject> events = engine.syncAll();
        QCOMPARE(dataOf(named(events, u"diskCheck"_s).first()).value("result"_L1).toString(), u"broken"_s);
        QCOMPARE(endings(events).values(), QStringList{u"ok downloaded"_s});
        QCOMPARE(secondsOf(home, u"Ann - One.wav"_s), 40.0);
        QCOMPARE(readAudio(home.path(u".local/share/Trash/files/Ann - One.wav"_s)).durationSec, 20.0);
    }

    void aFileThatDoesNotOpenIsReplacedWithoutMoreAdo() {
        const EngineHome home;
        home.addWav(u"Ann - One.wav"_s, 40);
        home.addList(u"L.csv"_s, {u"One|Ann|40"_s});
        EngineChild engine(home);
        engine.syncAll();
        home.write(home.output(u"/Ann - One.wav"_s), "no music");
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"ok downloaded"_s});
        QCOMPARE(secondsOf(home, u"Ann - One.wav"_s), 40.0);
        QVERIFY(!QFileInfo::exists(home.path(u".local/share/Trash/files/Ann - One.wav"_s)));
    }
};

QTEST_GUILESS_MAIN(EngineReplacedFiles)
#include "tst_enginereplacedfiles.moc"
