#include "engine/EngineHome.h"

#include <QDir>
#include <QJsonArray>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine::testing;

namespace {

/// Lets the engine find a memory that it can't use.
void loseMemory(const EngineHome &home) {
    const QString folder = home.path(u".local/share/zelk"_s);
    QVERIFY(QFile::exists(folder + u"/engine.db"_s));
    for (const QString &name : QDir(folder).entryList({u"engine.db*"_s}, QDir::Files)) {
        QVERIFY(QFile::remove(folder + u'/' + name));
    }
    home.write(folder + u"/engine.db"_s, QByteArray(8'192, 'j'));
}

QStringList syncedFiles(const EngineHome &home) {
    EngineChild engine(home);
    engine.syncAll();
    return home.outputFiles();
}

} // namespace

/// What becomes of the output folder when the engine no longer knows what it wrote there.
class EngineLostMemory : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatItWroteBeforeIsFoundAgainAndNotWrittenTwice() {
        const EngineHome home;
        home.addAudio(u"a.mp3"_s, u"Ann"_s, u"One"_s);
        home.addAudio(u"b.opus"_s, u"Ann"_s, u"Two"_s); // is converted
        home.addWav(u"x/Bo - Same.wav"_s, 20);
        home.addWav(u"y/Bo - Same.wav"_s, 60); // another recording of that name
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s, u"Two|Ann|2"_s, u"Same|Bo|20"_s, u"Same|Bo|60"_s});
        const QStringList names{u"Ann - One.mp3"_s, u"Ann - Two.mp3"_s, u"Bo - Same (2).wav"_s, u"Bo - Same.wav"_s};
        QCOMPARE(syncedFiles(home), names);
        const auto contents = home.outputContents();
        loseMemory(home);

        EngineChild engine(home);
        QCOMPARE(endings(engine.syncAll()).values(), QStringList(4, u"ok downloaded"_s));
        QCOMPARE(home.outputContents(), contents);
        QCOMPARE(endings(engine.syncAll()).values(), QStringList(4, u"present"_s));
        QCOMPARE(home.outputContents(), contents);
    }

    void aFileOfTheUsersOwnIsNeverTakenForOne() {
        const EngineHome home;
        home.addAudio(u"a.mp3"_s, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        const QByteArray theirs = home.read(home.collection(u"a.mp3"_s)) + "a mix of mine";
        home.write(home.output(u"/Ann - One.mp3"_s), theirs);
        QCOMPARE(syncedFiles(home), QStringList({u"Ann - One (2).mp3"_s, u"Ann - One.mp3"_s}));
        QCOMPARE(home.read(home.output(u"/Ann - One.mp3"_s)), theirs);
    }

    void aLinkIsNeverTakenForOne() {
        const EngineHome home;
        home.addAudio(u"a.mp3"_s, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        QCOMPARE(syncedFiles(home), QStringList{u"Ann - One.mp3"_s});
        QVERIFY(QFile::rename(home.output(u"/Ann - One.mp3"_s), home.path(u"elsewhere.mp3"_s)));
        QVERIFY(QFile::link(home.path(u"elsewhere.mp3"_s), home.output(u"/Ann - One.mp3"_s)));
        loseMemory(home);
        QCOMPARE(syncedFiles(home), QStringList({u"Ann - One (2).mp3"_s, u"Ann - One.mp3"_s}));
    }

    void whatWasDecidedIsAskedAgainAndItsFileFound() {
        const EngineHome home;
        home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addList(u"L.csv"_s, {u"Slow Burn|Ines|2"_s});
        for (int i = 0; i < 2; ++i) {
            EngineChild engine(home);
            const QList<QJsonObject> reviews = named(engine.syncAll(), u"needsReview"_s);
            QCOMPARE(reviews.size(), 1);
            engine.tell(u"reviewDecision"_s, {{u"trackId"_s, dataOf(reviews.first()).value("trackId"_L1)},
                                              {u"decision"_s, QJsonObject{{u"kind"_s, u"accept"_s}}}});
            QCOMPARE(dataOf(engine.until(u"trackFinished"_s)).value("status"_L1).toString(), u"ok"_s);
            QCOMPARE(home.outputFiles(), QStringList{u"Ines - Slow Burn.mp3"_s});
            QCOMPARE(engine.finish(), 0);
            loseMemory(home);
        }
    }
};

QTEST_GUILESS_MAIN(EngineLostMemory)
#include "tst_enginelostmemory.moc"
