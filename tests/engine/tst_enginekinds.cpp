#include "Library/AudioReader.h"
#include "Output/Convert.h"
#include "engine/EngineHome.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine;
using namespace zelk::engine::testing;

/// What a container holds decides, and not its name.
class EngineKinds : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatAFileHoldsDecidesItsFormAndNotItsName_data() {
        QTest::addColumn<QString>("format");
        QTest::addColumn<bool>("lossless");
        QTest::addColumn<QString>("target"); // the extension it gets
        QTest::addColumn<bool>("converted");
        QTest::newRow("tone.m4a") << u"AAC"_s << false << u"m4a"_s << false;
        QTest::newRow("kinds/video.mp4") << u"MP4"_s << false << u"mp3"_s << true;
        QTest::newRow("kinds/opus-inside.mp4") << u"MP4"_s << false << u"mp3"_s << true;
        QTest::newRow("kinds/ac3-inside.mp4") << u"MP4"_s << false << u"mp3"_s << true;
        QTest::newRow("kinds/pcm.wav") << u"WAV"_s << true << u"wav"_s << false;
        QTest::newRow("kinds/float.wav") << u"WAV"_s << true << u"wav"_s << false;
        QTest::newRow("kinds/adpcm.wav") << u"compressed WAV"_s << false << u"mp3"_s << true;
        QTest::newRow("kinds/mp3-inside.wav") << u"compressed WAV"_s << false << u"mp3"_s << true;
        QTest::newRow("kinds/pcm.aiff") << u"AIFF"_s << true << u"aiff"_s << false;
        QTest::newRow("kinds/ulaw.aiff") << u"compressed AIFF"_s << false << u"mp3"_s << true;
        QTest::newRow("kinds/whole.wv") << u"WavPack"_s << true << u"aiff"_s << true;
        QTest::newRow("kinds/hybrid.wv") << u"WavPack"_s << false << u"mp3"_s << true;
    }

    void whatAFileHoldsDecidesItsFormAndNotItsName() {
        const AudioFile file =
            readAudio(QStringLiteral(AUDIO_FIXTURES "/") + QLatin1StringView(QTest::currentDataTag()));
        QTEST(file.format, "format");
        QTEST(file.lossless, "lossless");
        const TargetForm form = targetFormOf(file);
        QTEST(form.extension, "target");
        QTEST(form.converted, "converted");
    }

    void aVideoGivesItsSoundAlone() {
        const EngineHome home;
        home.write(home.collection(u"Ann - One.mp4"_s), home.read(QStringLiteral(AUDIO_FIXTURES "/kinds/video.mp4")));
        home.addList(u"L.csv"_s, {u"One|Ann|1"_s});
        EngineChild engine(home);
        engine.syncAll();
        QCOMPARE(home.outputFiles(), QStringList{u"Ann - One.mp3"_s});
        QCOMPARE(readAudio(home.output(u"/Ann - One.mp3"_s)).format, u"MP3"_s);
    }

    void aConversionMayAddALittleHoweverStrictTheToleranceIs() {
        const EngineHome home;
        home.addAudio(u"a.opus"_s, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        EngineChild engine(home);
        const QJsonObject run{{u"searchCount"_s, 5},
                              {u"concurrency"_s, 1},
                              {u"toleranceSec"_s, 0},
                              {u"searchTimeoutSec"_s, 30},
                              {u"cooloffHours"_s, 24}};
        const QJsonObject patch{{u"run"_s, run}};
        QVERIFY(engine.call(u"setConfig"_s, QJsonObject{{u"patch"_s, patch}}).value("ok"_L1).toBool());
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"ok downloaded"_s});
    }

    void boxesThatLieAboutTheirSizeHarmNobody_data() {
        QTest::addColumn<int>("at");
        QTest::addColumn<QByteArray>("bytes");
        const QByteArray video = EngineHome().read(QStringLiteral(AUDIO_FIXTURES "/kinds/video.mp4"));
        const int moov = static_cast<int>(video.indexOf("moov")) - 4;
        const int track = static_cast<int>(video.indexOf("trak")) - 4;
        QTest::newRow("none") << track << QByteArray("\0\0\0\1", 4);
        QTest::newRow("to the end") << track << QByteArray(4, '\0');
        QTest::newRow("beyond it") << track << QByteArray("\x7F\xFF\xFF\xFF");
        QTest::newRow("the outer one beyond it") << moov << QByteArray("\xFF\xFF\xFF\xFF");
        QTest::newRow("less than its head") << track << QByteArray("\0\0\0\3", 4);
    }

    void boxesThatLieAboutTheirSizeHarmNobody() {
        QFETCH(int, at);
        QFETCH(QByteArray, bytes);
        const EngineHome home;
        QByteArray video = home.read(QStringLiteral(AUDIO_FIXTURES "/kinds/video.mp4"));
        const QString path = home.collection(u"a.mp4"_s);
        home.write(path, video.replace(at, bytes.size(), bytes));
        try {
            QVERIFY(!readAudio(path).format.isEmpty());
        } catch (const NotAudio &) { // refused is as good
        }
    }
};

QTEST_GUILESS_MAIN(EngineKinds)
#include "tst_enginekinds.moc"
