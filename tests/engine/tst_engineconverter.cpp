#include "Files/FileProblem.h"
#include "Library/AudioReader.h"
#include "Output/Convert.h"
#include "Output/CopyFile.h"
#include "engine/EngineHome.h"
#include "engine/Soon.h"
#include "engine/WebServer.h"

#include <QDir>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QTest>

#include <algorithm>
#include <csignal>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine;
using namespace zelk::engine::testing;

namespace {

/// A home with one track to be converted and one to be copied, and a stand-in for the converter.
struct Scene {
    EngineHome home;
    QProcessEnvironment environment;

    explicit Scene(const QString &behaviour) {
        QDir().mkpath(home.path(u"bin"_s));
        QFile::link(QStringLiteral(CONVERTER_PROGRAM), home.path(u"bin/ffmpeg"_s));
        home.addAudio(u"a.opus"_s, u"Ann"_s, u"One"_s);
        home.addAudio(u"b.flac"_s, u"Ann"_s, u"Two"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s, u"Two|Ann|2"_s});
        environment.insert(u"PATH"_s, home.path(u"bin:"_s) + qEnvironmentVariable("PATH"));
        environment.insert(u"CONVERTED"_s, QStringLiteral(AUDIO_FIXTURES "/tone.mp3"));
        environment.insert(u"CONVERTER_DOES"_s, behaviour);
        environment.insert(u"CONVERTER_PID"_s, pidFile());
    }

    QString pidFile() const { return home.path(u"converter.pid"_s); }
    /// The process that hangs; 0 as long as there is none.
    pid_t converter() const { return static_cast<pid_t>(home.read(pidFile()).toLongLong()); }
    bool converterLives() const {
        // One that has ended and that nobody has asked after is still listed, but no longer has a program.
        return QFileInfo::exists(u"/proc/%1/exe"_s.arg(converter())) &&
               !QFile::symLinkTarget(u"/proc/%1/exe"_s.arg(converter())).isEmpty();
    }
};

/// Sets a variable of this process for a while.
class Variable {
public:
    Variable(const char *name, const QString &value) : _name(name), _before(qgetenv(name)) {
        qputenv(name, value.toUtf8());
    }
    ~Variable() { qputenv(_name, _before); }
    Variable(const Variable &) = delete;
    Variable &operator=(const Variable &) = delete;

private:
    const char *_name;
    QByteArray _before;
};

} // namespace

/// What becomes of a run when the program that converts doesn't do what it should.
class EngineConverter : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aConversionThatFailsCostsItsOwnTrackOnly_data() {
        QTest::addColumn<QString>("behaviour");
        QTest::addColumn<QString>("said");
        QTest::newRow("fails") << u"fail"_s << u"Invalid data found"_s;
        QTest::newRow("writes no music") << u"garbage"_s << u"is no music"_s;
        QTest::newRow("writes nothing") << u"nothing"_s << u"is no music"_s;
        QTest::newRow("is killed") << u"die"_s << u"broke off"_s;
    }

    void aConversionThatFailsCostsItsOwnTrackOnly() {
        QFETCH(QString, behaviour);
        QFETCH(QString, said);
        const Scene scene(behaviour);
        EngineChild engine(scene.home, scene.environment);
        const QList<QJsonObject> events = engine.syncAll();
        QCOMPARE(endings(events).values(), QStringList({u"failed"_s, u"ok downloaded"_s}));
        QVERIFY2(named(events, u"error"_s).isEmpty(), "the output folder was blamed");
        QString detail;
        for (const QJsonObject &finished : named(events, u"trackFinished"_s)) {
            detail += dataOf(finished).value("detail"_L1).toString();
        }
        QVERIFY2(detail.contains(said) && detail.contains("a.opus"_L1) && detail.contains("ync again"_L1),
                 qPrintable(detail));
        QCOMPARE(scene.home.outputFiles(), QStringList{u"Ann - Two.flac"_s});
    }

    void aFileThatCannotBeConvertedIsLeftAloneUntilItIsReplaced() {
        const Scene scene(u"fail"_s);
        EngineChild engine(scene.home, scene.environment);
        const auto failureIn = [](const QList<QJsonObject> &events) {
            for (const QJsonObject &finished : named(events, u"trackFinished"_s)) {
                if (dataOf(finished).value("status"_L1).toString() == "failed"_L1) {
                    return dataOf(finished).value("detail"_L1).toString();
                }
            }
            return QString();
        };
        const auto conversionsIn = [](const QList<QJsonObject> &events) {
            return std::ranges::count_if(named(events, u"step"_s), [](const QJsonObject &step) {
                return dataOf(step).value("phase"_L1).toString() == "converting"_L1;
            });
        };
        const QList<QJsonObject> first = engine.syncAll();
        QCOMPARE(conversionsIn(first), 1);
        const QList<QJsonObject> second = engine.syncAll();
        QCOMPARE(conversionsIn(second), 0);
        QVERIFY(!failureIn(first).isEmpty());
        QCOMPARE(failureIn(second), failureIn(first));
        QVERIFY(QFile::remove(scene.home.collection(u"a.opus"_s)));
        scene.home.addAudio(u"a2.opus"_s, u"Ann"_s, u"One"_s);
        QCOMPARE(conversionsIn(engine.syncAll()), 1);
    }

    void aConverterThatWasAtFaultIsAskedAgain_data() {
        QTest::addColumn<QString>("behaviour");
        QTest::newRow("writes no music") << u"garbage"_s;
        QTest::newRow("is killed") << u"die"_s;
        QTest::newRow("finds the disk full") << u"full"_s;
    }
    void aConverterThatWasAtFaultIsAskedAgain() {
        QFETCH(QString, behaviour);
        const Scene scene(behaviour);
        {
            EngineChild engine(scene.home, scene.environment);
            QVERIFY(endings(engine.syncAll()).values().contains(u"failed"_s));
        }
        QProcessEnvironment mended = scene.environment;
        mended.insert(u"CONVERTER_DOES"_s, u"convert"_s);
        EngineChild engine(scene.home, mended);
        engine.syncAll();
        QCOMPARE(scene.home.outputFiles(), QStringList({u"Ann - One.mp3"_s, u"Ann - Two.flac"_s}));
    }

    void aFullDiskIsToldAsWhatItIs() {
        const Scene scene(u"full"_s);
        EngineChild engine(scene.home, scene.environment);
        const QList<QJsonObject> events = engine.syncAll();
        QString detail; // the other track may be through first
        for (const QJsonObject &finished : named(events, u"trackFinished"_s)) {
            detail += dataOf(finished).value("detail"_L1).toString();
        }
        QVERIFY2(detail.contains("is full. Make room"_L1), qPrintable(detail));
        QVERIFY(!scene.home.outputFiles().contains(u"Ann - One.mp3"_s));
        QVERIFY(scene.home.outputFiles().filter(u"partial"_s).isEmpty());
    }

    void whatPretendsToBeMusicReachesNoServer() {
        const WebServer server([](const QString &) { return WebServer::ok("music"); });
        const EngineHome home;
        const QString path = home.collection(u"a.opus"_s);
        home.write(path, "#EXTM3U\n#EXT-X-TARGETDURATION:10\n#EXTINF:10,\n" + server.url(u"/a.ts"_s).toUtf8() +
                             "\n#EXT-X-ENDLIST\n");
        AudioFile source;
        source.path = path;
        source.format = u"Opus"_s;
        source.durationSec = 10;
        QVERIFY_THROWS_EXCEPTION(SourceUnsound,
                                 convertAudio(source, home.path(u"made.mp3"_s), {}, std::chrono::seconds(20)));
        QCOMPARE(server.askedInAll(), 0);
    }

    void oneThatHangsIsEndedInTime() {
        const Scene scene(u"hang"_s);
        const Variable path("PATH", scene.environment.value(u"PATH"_s));
        const Variable does("CONVERTER_DOES", u"hang"_s);
        const Variable converted("CONVERTED", scene.environment.value(u"CONVERTED"_s));
        const Variable pid("CONVERTER_PID", scene.pidFile());
        const AudioFile source = readAudio(scene.home.collection(u"a.opus"_s));
        const QString to = scene.home.path(u"made.mp3"_s);
        try {
            convertAudio(source, to, {}, std::chrono::seconds(1));
            QFAIL("it hung");
        } catch (const ConversionFailed &failure) {
            const QString said = QString::fromUtf8(failure.what());
            QVERIFY2(said.contains("was ended"_L1) && said.contains(source.path), qPrintable(said));
        }
        QVERIFY(scene.converter() > 0);
        QVERIFY(!scene.converterLives());
        QVERIFY(!QFile::exists(to));
    }

    void onlyWhatTheDjApplicationCannotReadIsConverted_data() {
        QTest::addColumn<QString>("format");
        QTest::addColumn<bool>("lossless");
        QTest::addColumn<QString>("extension");
        QTest::addColumn<bool>("converted");
        QTest::newRow("FLAC") << u"FLAC"_s << true << u"flac"_s << false;
        QTest::newRow("MP3") << u"MP3"_s << false << u"mp3"_s << false;
        QTest::newRow("AAC") << u"AAC"_s << false << u"m4a"_s << false;
        QTest::newRow("ALAC") << u"ALAC"_s << true << u"m4a"_s << false;
        QTest::newRow("WAV") << u"WAV"_s << true << u"wav"_s << false;
        QTest::newRow("AIFF") << u"AIFF"_s << true << u"aiff"_s << false;
        QTest::newRow("Opus") << u"Opus"_s << false << u"mp3"_s << true;
        QTest::newRow("Ogg") << u"Ogg"_s << false << u"mp3"_s << true;
        QTest::newRow("WMA") << u"WMA"_s << false << u"mp3"_s << true;
        QTest::newRow("lossless WMA") << u"WMA"_s << true << u"aiff"_s << true;
        QTest::newRow("Ogg FLAC") << u"Ogg FLAC"_s << true << u"aiff"_s << true;
        QTest::newRow("WavPack") << u"WavPack"_s << true << u"aiff"_s << true;
    }

    void onlyWhatTheDjApplicationCannotReadIsConverted() {
        QFETCH(QString, format);
        QFETCH(bool, lossless);
        AudioFile source;
        source.format = format;
        source.lossless = lossless;
        const TargetForm form = targetFormOf(source);
        QTEST(form.extension, "extension");
        QTEST(form.converted, "converted");
    }

    void itHasAsLongAsTheTrackPlaysAndSomeSecondsMore() {
        AudioFile source;
        source.durationSec = 3'600;
        QCOMPARE(conversionPatience(source), std::chrono::seconds(3'620));
        source.durationSec = 0;
        QCOMPARE(conversionPatience(source), std::chrono::seconds(20));
    }

    void oneThatHangsEndsWithACancel() {
        const Scene scene(u"hang"_s);
        EngineChild engine(scene.home, scene.environment);
        QVERIFY(engine.call(u"startSync"_s, QJsonObject{{u"selection"_s, engine.selectAll()}}).value("ok"_L1).toBool());
        QVERIFY(soon([&] { return scene.converter() > 0; }));
        engine.tell(u"cancelSync"_s, {});
        QVERIFY(!engine.until(u"syncDone"_s).isEmpty());
        QVERIFY(!scene.converterLives());
        QVERIFY(scene.home.outputFiles().filter(u"partial"_s).isEmpty());
    }

    void theEndOfTheInputDoesNotWaitForOneThatHangs() {
        const Scene scene(u"hang"_s);
        EngineChild engine(scene.home, scene.environment);
        QVERIFY(engine.call(u"startSync"_s, QJsonObject{{u"selection"_s, engine.selectAll()}}).value("ok"_L1).toBool());
        QVERIFY(soon([&] { return scene.converter() > 0; }));
        QCOMPARE(engine.finish(20'000), 0); // without patience for the track, which would be 22 seconds at least
        QVERIFY(soon([&] { return !scene.converterLives(); }));
        QVERIFY(scene.home.outputFiles().filter(u"partial"_s).isEmpty());
    }

    void itDiesWithAnEngineThatIsKilled() {
        const Scene scene(u"hang"_s);
        EngineChild engine(scene.home, scene.environment);
        QVERIFY(engine.call(u"startSync"_s, QJsonObject{{u"selection"_s, engine.selectAll()}}).value("ok"_L1).toBool());
        QVERIFY(soon([&] { return scene.converter() > 0; }));
        QVERIFY(scene.converterLives());
        engine.process().kill();
        QVERIFY(engine.process().waitForFinished());
        const bool gone = soon([&] { return !scene.converterLives(); });
        if (!gone) {
            ::kill(scene.converter(), SIGKILL);
        }
        QVERIFY2(gone, "it goes on writing, behind the back of the next engine");
    }
};

QTEST_GUILESS_MAIN(EngineConverter)
#include "tst_engineconverter.moc"
