#include "engine/EngineHome.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QTest>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine::testing;

namespace {

QJsonObject summaryOf(const QList<QJsonObject> &events) {
    return events.isEmpty() ? QJsonObject() : dataOf(events.last()).value("summary"_L1).toObject();
}

} // namespace

/// What the user decides: about doubtful tracks, and about files that no playlist wants any more.
class EngineReview : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aDecisionThatNamesAnEarlierRunIsForItsTrackOnly() {
        const EngineHome home;
        home.addAudio(u"a.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addAudio(u"b.mp3"_s, u"Zed"_s, u"Other Way (Live)"_s);
        home.addList(u"L.csv"_s, {u"Slow Burn|Ines|2"_s});
        EngineChild engine(home);
        const QJsonObject first = named(engine.syncAll(), u"needsReview"_s).value(0);
        home.addList(u"L.csv"_s, {u"Other Way|Zed|2"_s});
        const QJsonObject second = named(engine.syncAll(), u"needsReview"_s).value(0);
        QCOMPARE(dataOf(second).value("trackId"_L1), dataOf(first).value("trackId"_L1));
        engine.tell(u"reviewDecision"_s, {{u"runId"_s, first.value("correlationId"_L1)},
                                          {u"trackId"_s, dataOf(first).value("trackId"_L1)},
                                          {u"decision"_s, QJsonObject{{u"kind"_s, u"accept"_s}}}});
        QVERIFY(dataOf(engine.until(u"error"_s)).value("message"_L1).toString().contains("isn't waiting"_L1));
        QVERIFY(home.outputFiles().isEmpty());
    }

    void anAddressOfAFileIsTakenHoweverItsNameIsWritten_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("written");
        QTest::newRow("plain") << u"b.flac"_s << u"b.flac"_s;
        QTest::newRow("escaped") << u"What #1?.flac"_s << u"What%20%231%3F.flac"_s;
        QTest::newRow("as it is called") << u"What #1?.flac"_s << u"What #1?.flac"_s;
    }
    void anAddressOfAFileIsTakenHoweverItsNameIsWritten() {
        QFETCH(QString, name);
        QFETCH(QString, written);
        const EngineHome home;
        home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addAudio(u"other/"_s + name, u"Somebody"_s, u"Something"_s);
        home.addList(u"L.csv"_s, {u"Slow Burn|Ines|2"_s});
        EngineChild engine(home);
        const QJsonObject review = dataOf(named(engine.syncAll(), u"needsReview"_s).value(0));
        engine.tell(u"reviewDecision"_s,
                    {{u"trackId"_s, review.value("trackId"_L1)},
                     {u"decision"_s, QJsonObject{{u"kind"_s, u"url"_s},
                                                 {u"url"_s, u"file://"_s + home.collection(u"other/"_s + written)}}}});
        QCOMPARE(dataOf(engine.until(u"trackFinished"_s)).value("status"_L1).toString(), u"ok"_s);
        QCOMPARE(home.outputFiles(), QStringList{u"Ines - Slow Burn.flac"_s});
    }

    void aFileThatBrokeIsReplacedByWhatIsDecidedOn_data() {
        QTest::addColumn<QString>("chosen");
        QTest::addColumn<QString>("name");
        QTest::newRow("of its kind") << u"free.mp3"_s << u"Ines - Slow Burn.mp3"_s;
        QTest::newRow("of another kind") << u"free.flac"_s << u"Ines - Slow Burn.flac"_s;
    }
    void aFileThatBrokeIsReplacedByWhatIsDecidedOn() {
        QFETCH(QString, chosen);
        QFETCH(QString, name);
        const EngineHome home;
        home.addAudio(u"studio.mp3"_s, u"Ines"_s, u"Slow Burn"_s);
        home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addAudio(u"other/"_s + chosen, u"Somebody"_s, u"Something"_s);
        home.addList(u"L.csv"_s, {u"Slow Burn|Ines|2"_s});
        EngineChild engine(home);
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"ok downloaded"_s});
        home.write(home.output(u"/Ines - Slow Burn.mp3"_s), "no music");
        QVERIFY(QFile::remove(home.collection(u"studio.mp3"_s)));
        const QList<QJsonObject> events = engine.syncAll();
        QCOMPARE(dataOf(named(events, u"diskCheck"_s).first()).value("result"_L1).toString(), u"broken"_s);
        const QJsonObject review = dataOf(named(events, u"needsReview"_s).value(0));
        engine.tell(
            u"reviewDecision"_s,
            {{u"trackId"_s, review.value("trackId"_L1)},
             {u"decision"_s, QJsonObject{{u"kind"_s, u"url"_s}, {u"url"_s, home.collection(u"other/"_s + chosen)}}}});
        QCOMPARE(dataOf(engine.until(u"trackFinished"_s)).value("status"_L1).toString(), u"ok"_s);
        QCOMPARE(home.outputFiles(), QStringList{name});
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"present"_s});
        QCOMPARE(home.outputFiles(), QStringList{name});
    }

    void aDoubtfulTrackWaitsForADecision_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("restart");
        QTest::newRow("accept") << u"accept"_s << false;
        QTest::newRow("candidate") << u"candidate"_s << false;
        QTest::newRow("skip") << u"skip"_s << false;
        QTest::newRow("path") << u"url"_s << false;
        QTest::newRow("accept after a restart") << u"accept"_s << true;
    }

    void aDoubtfulTrackWaitsForADecision() {
        QFETCH(QString, kind);
        QFETCH(bool, restart);
        const EngineHome home;
        home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addAudio(u"other/free.flac"_s, u"Somebody"_s, u"Something"_s);
        home.addList(u"L.csv"_s, {u"Slow Burn|Ines|2"_s, u"Slow Burn|Ines|2"_s});
        auto engine = std::make_unique<EngineChild>(home);
        const QList<QJsonObject> events = engine->syncAll();
        QCOMPARE(endings(events).values(), QStringList({u"review"_s, u"review"_s}));
        QCOMPARE(summaryOf(events).value("flagged"_L1).toInt(), 2);
        QCOMPARE(dataOf(named(events, u"playlistFinished"_s).first()).value("status"_L1).toString(),
                 u"low-confidence"_s);
        const QString runId = events.first().value("correlationId"_L1).toString();
        const QJsonObject review = dataOf(named(events, u"needsReview"_s).first());
        const QJsonObject candidate = review.value("candidates"_L1).toArray().first().toObject();
        QCOMPARE(review.value("label"_L1).toString(), u"Ines - Slow Burn"_s);
        QCOMPARE(candidate.value("reason"_L1).toString(), u"Another version: live"_s);
        QCOMPARE(review.value("best"_L1).toObject().value("title"_L1).toString(), u"Slow Burn (Live)"_s);
        if (restart) {
            QCOMPARE(engine->finish(), 0);
            engine = std::make_unique<EngineChild>(home);
        }
        QJsonObject decision{{u"kind"_s, kind}};
        decision.insert(u"candidateId"_s, candidate.value("id"_L1));
        decision.insert(u"url"_s, QUrl::fromLocalFile(home.collection(u"other/free.flac"_s)).toString());
        engine->tell(u"reviewDecision"_s, {{u"trackId"_s, review.value("trackId"_L1)}, {u"decision"_s, decision}});
        QStringList ends;
        for (int i = 0; i < 2; ++i) {
            const QJsonObject finished = engine->until(u"trackFinished"_s);
            QCOMPARE(finished.value("correlationId"_L1).toString(), runId);
            ends +=
                (dataOf(finished).value("status"_L1).toString() + u' ' + dataOf(finished).value("kind"_L1).toString())
                    .trimmed();
        }
        if (kind == "skip"_L1) {
            QCOMPARE(ends, QStringList({u"skipped"_s, u"skipped"_s}));
            QVERIFY(home.outputFiles().isEmpty());
            QCOMPARE(endings(engine->syncAll()).values(), QStringList({u"skipped"_s, u"skipped"_s}));
        } else {
            QCOMPARE(ends, QStringList({u"ok downloaded"_s, u"ok verified"_s}));
            QCOMPARE(home.outputFiles(),
                     QStringList{kind == "url"_L1 ? u"Ines - Slow Burn.flac"_s : u"Ines - Slow Burn.mp3"_s});
            QCOMPARE(endings(engine->syncAll()).values(), QStringList({u"present"_s, u"present"_s}));
        }
    }

    void aDecisionThatCannotBeCarriedOutLeavesTheTrackWaiting() {
        const EngineHome home;
        home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addList(u"L.csv"_s, {u"Slow Burn|Ines|2"_s});
        EngineChild engine(home);
        const QJsonValue track = dataOf(named(engine.syncAll(), u"needsReview"_s).first()).value("trackId"_L1);
        for (const QJsonObject &decision :
             {QJsonObject{{u"kind"_s, u"candidate"_s}, {u"candidateId"_s, u"c-of-another"_s}},
              QJsonObject{{u"kind"_s, u"url"_s}, {u"url"_s, u"/nowhere/at/all.mp3"_s}}}) {
            engine.tell(u"reviewDecision"_s, {{u"trackId"_s, track}, {u"decision"_s, decision}});
            QVERIFY(!dataOf(engine.until(u"error"_s)).value("message"_L1).toString().isEmpty());
        }
        engine.tell(u"reviewDecision"_s,
                    {{u"trackId"_s, track}, {u"decision"_s, QJsonObject{{u"kind"_s, u"accept"_s}}}});
        QCOMPARE(dataOf(engine.until(u"trackFinished"_s)).value("status"_L1).toString(), u"ok"_s);
    }

    void aDecisionOutlivesAKillWhileItWaitsForAnother_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("end");
        QTest::newRow("candidate") << u"candidate"_s << u"ok downloaded"_s;
        QTest::newRow("skip") << u"skip"_s << u"skipped"_s;
    }

    void aDecisionOutlivesAKillWhileItWaitsForAnother() {
        QFETCH(QString, kind);
        QFETCH(QString, end);
        const EngineHome home;
        home.addAudio(u"slow.opus"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addAudio(u"a.mp3"_s, u"Ines"_s, u"Quiet Fire (Live)"_s);
        home.addAudio(u"b.flac"_s, u"Ines"_s, u"Quiet Fire (Acoustic)"_s);
        home.addList(u"L.csv"_s, {u"Slow Burn|Ines|2"_s, u"Quiet Fire|Ines|2"_s});
        QVERIFY(QDir().mkpath(home.path(u"bin"_s)));
        QVERIFY(QFile::link(QStringLiteral(CONVERTER_PROGRAM), home.path(u"bin/ffmpeg"_s)));
        QProcessEnvironment environment;
        environment.insert(u"PATH"_s, home.path(u"bin:"_s) + qEnvironmentVariable("PATH"));
        environment.insert(u"CONVERTED"_s, QStringLiteral(AUDIO_FIXTURES "/tone.mp3"));
        environment.insert(u"CONVERTER_DOES"_s, u"hang"_s);
        environment.insert(u"CONVERTER_PID"_s, home.path(u"converter.pid"_s));
        const auto decide = [](EngineChild &engine, const QJsonObject &review, const QString &wish) {
            const QJsonObject last = review.value("candidates"_L1).toArray().last().toObject();
            const QJsonObject decision{{u"kind"_s, wish}, {u"candidateId"_s, last.value("id"_L1)}};
            engine.tell(u"reviewDecision"_s, {{u"trackId"_s, review.value("trackId"_L1)}, {u"decision"_s, decision}});
            return last.value("format"_L1).toString().toLower();
        };
        QString format;
        QList<QJsonObject> reviews;
        {
            EngineChild engine(home, environment);
            reviews = named(engine.syncAll(), u"needsReview"_s);
            QCOMPARE(reviews.size(), 2);
            decide(engine, dataOf(reviews[0]), u"accept"_s); // which takes until the end of days
            QCOMPARE(dataOf(engine.until(u"step"_s)).value("phase"_L1).toString(), u"converting"_s);
            format = decide(engine, dataOf(reviews[1]), kind);
            QVERIFY(engine.call(u"getConfig"_s).value("ok"_L1).toBool()); // the decision has been read
            engine.process().kill();
            QVERIFY(engine.process().waitForFinished());
        }
        environment.insert(u"CONVERTER_DOES"_s, QString());
        EngineChild engine(home, environment);
        QCOMPARE(endings(engine.syncAll()).values(), QStringList({u"ok downloaded"_s, end}));
        QStringList expected{u"Ines - Slow Burn.mp3"_s};
        if (kind != "skip"_L1) {
            expected.prepend(u"Ines - Quiet Fire."_s + format);
        }
        QCOMPARE(home.outputFiles(), expected);
        // It waits no longer.
        decide(engine, dataOf(reviews[1]), u"accept"_s);
        QVERIFY(!dataOf(engine.until(u"error"_s)).value("message"_L1).toString().isEmpty());
    }

    void aFileThatProvesUnusableIsNoDecision() {
        const EngineHome home;
        home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.write(home.path(u"junk.mp3"_s), QByteArray(5'000, 'x'));
        home.addList(u"L.csv"_s, {u"Slow Burn|Ines|2"_s});
        EngineChild engine(home);
        const QJsonValue track = dataOf(named(engine.syncAll(), u"needsReview"_s).first()).value("trackId"_L1);
        const QJsonObject junk{{u"kind"_s, u"url"_s}, {u"url"_s, home.path(u"junk.mp3"_s)}};
        engine.tell(u"reviewDecision"_s, {{u"trackId"_s, track}, {u"decision"_s, junk}});
        QVERIFY(dataOf(engine.until(u"error"_s)).value("message"_L1).toString().contains("Choose another"_L1));
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"review"_s});
    }

    void aSecondRunAsksAgainUnderTheSameName() {
        const EngineHome home;
        home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
        home.addList(u"L.csv"_s, {u"Slow Burn|Ines|2"_s});
        EngineChild engine(home);
        engine.syncAll();
        const QJsonValue track = dataOf(named(engine.syncAll(), u"needsReview"_s).first()).value("trackId"_L1);
        engine.tell(u"reviewDecision"_s,
                    {{u"trackId"_s, track}, {u"decision"_s, QJsonObject{{u"kind"_s, u"accept"_s}}}});
        engine.until(u"trackFinished"_s);
        QCOMPARE(home.outputFiles(), QStringList{u"Ines - Slow Burn.mp3"_s});
    }

    void filesThatNoPlaylistWantsAreOfferedAndNothingElseIsTrashed() {
        const EngineHome home;
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.addAudio(u"b.flac"_s, u"Ann"_s, u"Two"_s);
        home.addAudio(u"c.flac"_s, u"Ann"_s, u"Three"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s, u"Two|Ann|2"_s, u"Three|Ann|2"_s});
        home.addList(u"M.csv"_s, {u"Three|Ann|2"_s});
        EngineChild engine(home);
        QVERIFY(named(engine.syncAll(), u"orphansFound"_s).isEmpty());
        home.addList(u"L.csv"_s, {u"Two|Ann|2"_s}); // "Three" is still in the other list
        const QList<QJsonObject> events = engine.syncAll();
        const QJsonArray orphan{home.output(u"/Ann - One.flac"_s)};
        QCOMPARE(named(events, u"orphansFound"_s).size(), 1);
        QCOMPARE(dataOf(named(events, u"orphansFound"_s).first()).value("paths"_L1).toArray(), orphan);
        home.write(home.output(u"/mine.flac"_s), "mine");
        for (const QString &other : {home.output(u"/Ann - Two.flac"_s), home.output(u"/mine.flac"_s),
                                     home.output(u"/gone.flac"_s), home.output(u"/../DjayImport/Ann - One.flac"_s),
                                     home.collection(u"a.flac"_s), home.output(), QString()}) {
            const QJsonObject refused =
                engine.call(u"trashOrphans"_s, QJsonObject{{u"paths"_s, QJsonArray{orphan[0], other}}});
            QCOMPARE(refused.value("error"_L1).toObject().value("code"_L1).toString(), u"invalid_params"_s);
            QVERIFY(QFile::exists(orphan[0].toString()));
        }
        QVERIFY(QFile::remove(home.output(u"/mine.flac"_s)));
        QCOMPARE(home.outputFiles().size(), 3);
        const QJsonArray twice{orphan[0], orphan[0]};
        QVERIFY(engine.call(u"trashOrphans"_s, QJsonObject{{u"paths"_s, twice}}).value("ok"_L1).toBool());
        QCOMPARE(home.outputFiles(), QStringList({u"Ann - Three.flac"_s, u"Ann - Two.flac"_s}));
        QVERIFY(QFileInfo(home.path(u".local/share/Trash/files/Ann - One.flac"_s)).isFile());
    }

    void aListThatCannotBeReadKeepsItsFiles() {
        const EngineHome home;
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        home.addList(u"M.csv"_s, {u"Other|Ann|2"_s});
        EngineChild engine(home);
        engine.syncAll();
        home.write(home.playlists(u"L.csv"_s), {}); // as while an exporter writes it
        const QJsonObject all{{u"selection"_s, QJsonArray()}};
        QVERIFY(engine.call(u"listOrphans"_s, all).value("result"_L1).toObject().value("paths"_L1).toArray().isEmpty());
        QVERIFY(QFile::rename(home.playlists({}), home.path(u"unmounted"_s)));
        QVERIFY(engine.call(u"listOrphans"_s, all).value("result"_L1).toObject().value("paths"_L1).toArray().isEmpty());
    }
};

QTEST_GUILESS_MAIN(EngineReview)
#include "tst_enginereview.moc"
