#include "Transport/HelperEvent.h"
#include "Transport/WireTesting.h"

using namespace zelk;
using namespace Qt::Literals::StringLiterals;
using Event = ServerEvent;

Q_DECLARE_METATYPE(std::optional<zelk::ServerEvent>)

class TestServerEvent : public QObject {
    Q_OBJECT

    // The fixtures and what each of them means.
    static QMap<QString, ServerEvent> events() {
        const QString run = u"run-1"_s;
        const QString row0 = u"p1#0"_s;
        const QString row1 = u"p1#1"_s;
        const std::vector<TrackDTO> tracks{
            {row0, u"Sodium Lamps"_s, u"Avenue North"_s, u"Kilometre Zero"_s, 634.5,
             ArtworkRef::url(QUrl(u"https://img.example.net/a.jpg"_s))},
            {row1, u"夜行列車"_s, u"青い駅"_s, {}, 420, ArtworkRef::none()},
            {u"p1#2"_s, u"Low Tide"_s, u"Harbour Lights"_s, {}, 301, ArtworkRef::appleMusic(u"8F3A00C0FFEE"_s)},
            {u"p1#3"_s, u"Copper Wire"_s, u"Ada Quell"_s, {}, 1e-7, ArtworkRef::mosaic({u"a"_s, u"b"_s})},
        };
        const CandidateDTO full{u"c1"_s, u"Glass Overpass"_s,    u"slsk"_s,       540, u"soulseek"_s, u"FLAC"_s, 1024,
                                0.42,    u"different version"_s, u"https://x/1"_s};
        CandidateDTO bare;
        bare.id = u"c2"_s;
        bare.title = u"Glass Overpass"_s;
        bare.channel = u"labelshop"_s;
        bare.durationSec = 541.25;
        const Event::ReviewBest best{0.42, u"Glass Overpass (Nightbus Mix)"_s, u"https://x/1"_s};
        return {
            {u"syncStarted"_s, Event::SyncStarted{run, run, 2}},
            {u"playlistStarted"_s, Event::PlaylistStarted{run, u"p1"_s, 1, u"Late Night Drive"_s, tracks}},
            {u"playlistStarted-without-tracks"_s, Event::PlaylistStarted{run, u"p1"_s, 0, u""_s, {}}},
            {u"trackStarted"_s, Event::TrackStarted{run, row0, 0, u"Avenue North - Sodium Lamps"_s}},
            {u"diskCheck-missing"_s, Event::DiskCheck{run, row0, DiskCheckResult::missing, {}}},
            {u"diskCheck-present"_s,
             Event::DiskCheck{run, row0, DiskCheckResult::present, TrackMeta{u"FLAC"_s, u"1024"_s, u"soulseek"_s}}},
            {u"diskCheck-broken"_s, Event::DiskCheck{run, row0, DiskCheckResult::broken, TrackMeta{}}},
            {u"step"_s, Event::Step{run, row0, Phase::searching, u"soulseek"_s}},
            {u"step-without-run-and-detail"_s, Event::Step{u""_s, u"t"_s, Phase::tagging, {}}},
            {u"downloadProgress"_s, Event::DownloadProgress{run, row0, 18.75, u"7.9 MB"_s, u"1.4 MB/s"_s}},
            {u"downloadProgress-bare"_s, Event::DownloadProgress{run, row0, 50, {}, {}}},
            {u"needsReview"_s, Event::NeedsReview{run, row1, u"Mira Lund - Glass Overpass"_s, best, {full, bare}}},
            {u"needsReview-without-best-and-candidates"_s, Event::NeedsReview{run, row1, u"l"_s, {}, {}}},
            {u"trackFinished"_s, Event::TrackFinished{run, row0, Finish::ok, u"d"_s, Event::TrackFinishKind::downloaded,
                                                      TrackMeta{u"FLAC"_s, u"1024"_s, {}}}},
            {u"trackFinished-without-kind"_s, Event::TrackFinished{run, row0, Finish::lowConfidence, {}, {}, {}}},
            {u"trackFinished-verified"_s,
             Event::TrackFinished{run, row0, Finish::ok, {}, Event::TrackFinishKind::verified, {}}},
            {u"playlistFinished"_s, Event::PlaylistFinished{run, u"p1"_s, Finish::skipped}},
            {u"orphansFound"_s, Event::OrphansFound{run, u"p1"_s, {u"/music/a.mp3"_s, u"/music/b \"c\".mp3"_s}}},
            {u"orphansFound-of-no-playlist"_s, Event::OrphansFound{u""_s, {}, {}}},
            {u"log"_s, Event::Log{run, Event::LogLevel::warn, u"line\nbreak"_s}},
            {u"log-outside-a-run"_s, Event::Log{{}, Event::LogLevel::info, u"x"_s}},
            {u"syncDone"_s, Event::SyncDone{run, run, {1, 2, 3, 4, 5, 6, 7}}},
            {u"toolProgress"_s, Event::ToolProgress{u"ffmpeg"_s, ToolPhase::download, 12.5, u"3 MB"_s}},
            {u"toolProgress-bare"_s, Event::ToolProgress{u"ffmpeg"_s, ToolPhase::done, {}, {}}},
            {u"proxyStatus"_s, Event::ProxyStatus{ProxyStatusValue::connected, u"3 nodes"_s}},
            {u"proxyStatus-bare"_s, Event::ProxyStatus{ProxyStatusValue::off, {}}},
            {u"error"_s, Event::Error{run, u"sync"_s, u"sync_in_progress"_s, u"m"_s}},
            {u"error-outside-a-run"_s, Event::Error{{}, {}, {}, u"m"_s}},
            {u"unknown"_s, Event::Unknown{u"comet"_s, JSONValue::parse("{'a':1,'b':[true,null,'x']}"_json)}},
        };
    }

    static void addFixtures() {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<std::optional<ServerEvent>>("event");
        const QMap<QString, ServerEvent> all = events();
        for (auto each = all.cbegin(); each != all.cend(); ++each)
            QTest::newRow(qPrintable(each.key()))
                << wireFixture(u"event/%1.json"_s.arg(each.key())) << std::optional(each.value());
    }

private Q_SLOTS:
    void everyFixtureHasItsMeaning() {
        QStringList names;
        for (const QString &file : wireFixtures(u"event"_s))
            names.append(file.chopped(5));
        QStringList known = events().keys();
        names.sort();
        known.sort();
        QCOMPARE(known, names);
    }

    void aLineIsReadAsItsEvent_data() { addFixtures(); }
    void aLineIsReadAsItsEvent() {
        QFETCH(QByteArray, line);
        QFETCH(std::optional<ServerEvent>, event);
        QVERIFY(!line.isEmpty());
        QVERIFY(eventOf(line) == event);
    }

    void anEventIsWrittenAsItsLine_data() { addFixtures(); }
    void anEventIsWrittenAsItsLine() {
        QFETCH(QByteArray, line);
        QFETCH(std::optional<ServerEvent>, event);
        QCOMPARE(event->encodedLine(), line);
    }

    void eventsDifferInEachOfTheirFields() {
        const QList<ServerEvent> all = events().values();
        for (qsizetype i = 0; i < all.size(); ++i) {
            for (qsizetype j = 0; j < all.size(); ++j)
                QCOMPARE(all.at(i) == all.at(j), i == j);
        }
        const Event::DiskCheck check{u"r"_s, u"t"_s, DiskCheckResult::present, TrackMeta{u"FLAC"_s, {}, {}}};
        Event::DiskCheck other = check;
        QCOMPARE(other, check);
        other.meta = TrackMeta{u"MP3"_s, {}, {}};
        QVERIFY(!(other == check));
        QCOMPARE(check.meta->format.value(), u"FLAC"_s);
    }

    // Each case of a run carries the id as plain text, log and error as optional text, the others not at all.
    void theRunsIdIsCarriedAsEachCaseSays() {
        QCOMPARE(eventOf<Event::Step>("{'event':'step','data':{'trackId':'t','phase':'tagging'}}"_json)->correlationId,
                 u""_s);
        QCOMPARE(
            eventOf<Event::Step>("{'event':'step','correlationId':null,'data':{'trackId':'t','phase':'tagging'}}"_json)
                ->correlationId,
            u""_s);
        QCOMPARE(eventOf<Event::Log>("{'event':'log','data':{'level':'info','message':'x'}}"_json)->correlationId,
                 std::nullopt);
        QCOMPARE(eventOf<Event::Log>("{'event':'log','correlationId':null,'data':{'level':'info','message':'x'}}"_json)
                     ->correlationId,
                 std::nullopt);
        QCOMPARE(eventOf<Event::Log>("{'event':'log','correlationId':'','data':{'level':'info','message':'x'}}"_json)
                     ->correlationId,
                 std::optional(u""_s));
        QCOMPARE(eventOf("{'event':'proxyStatus','correlationId':'r','data':{'status':'down'}}"_json),
                 eventOf("{'event':'proxyStatus','data':{'status':'down'}}"_json));
        QCOMPARE(eventOf("{'event':'toolProgress','correlationId':'r','data':{'tool':'t','phase':'verify'}}"_json),
                 eventOf("{'event':'toolProgress','data':{'tool':'t','phase':'verify'}}"_json));
        QCOMPARE(eventOf("{'event':'comet','correlationId':'r','data':1}"_json),
                 eventOf("{'event':'comet','data':1}"_json));
    }

    void aRunsCaseWithoutItsIdReadsAsTheEmptyText_data() {
        QTest::addColumn<QByteArray>("line");
        const QStringList runCases{
            u"syncStarted"_s,      u"playlistStarted"_s, u"trackStarted"_s,  u"diskCheck-present"_s, u"step"_s,
            u"downloadProgress"_s, u"needsReview"_s,     u"trackFinished"_s, u"playlistFinished"_s,  u"orphansFound"_s,
            u"syncDone"_s};
        for (const QString &name : runCases)
            QTest::newRow(qPrintable(name)) << wireFixture(u"event/%1.json"_s.arg(name));
    }
    void aRunsCaseWithoutItsIdReadsAsTheEmptyText() {
        QFETCH(QByteArray, line);
        const auto idOf = [](const ServerEvent &event) {
            return std::visit(
                [](const auto &each) -> QString {
                    if constexpr (requires {
                                      { each.correlationId.isEmpty() };
                                  })
                        return each.correlationId;
                    return u"not plain text"_s;
                },
                event.value);
        };
        QCOMPARE(idOf(eventOf(line).value()), u"run-1"_s);
        const std::optional<ServerEvent> without = eventOf(line.replace("\"correlationId\":\"run-1\",", ""));
        QVERIFY(without);
        QCOMPARE(idOf(*without), u""_s);
        QVERIFY(!without->encodedLine().contains("correlationId"));
    }

    void anUnknownEventReachesTheReader_data() {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QString>("type");
        QTest::addColumn<QByteArray>("raw");
        const auto row = [](const char *name, const QByteArray &line, const char *type, const char *raw) {
            QTest::newRow(name) << line << QString::fromUtf8(type) << QByteArray(raw);
        };
        row("object", "{'event':'comet','data':{'a':1}}"_json, "comet", "{\"a\":1}");
        row("without data", "{'event':'comet'}"_json, "comet", "null");
        row("data null", "{'event':'comet','data':null}"_json, "comet", "null");
        row("data a text", "{'event':'comet','data':'tail'}"_json, "comet", "\"tail\"");
        row("another case", "{'event':'Step','data':{'trackId':'t','phase':'tagging'}}"_json, "Step",
            "{\"phase\":\"tagging\",\"trackId\":\"t\"}");
        row("a longer name", "{'event':'steps','data':0}"_json, "steps", "0");
        row("a shorter name", "{'event':'ste','data':0}"_json, "ste", "0");
        row("the empty name", "{'event':'','data':0}"_json, "", "0");
        row("the name of the case", "{'event':'unknown','data':0}"_json, "unknown", "0");
    }
    void anUnknownEventReachesTheReader() {
        QFETCH(QByteArray, line);
        QFETCH(QString, type);
        QFETCH(QByteArray, raw);
        const auto unknown = eventOf<Event::Unknown>(line);
        QVERIFY(unknown);
        QCOMPARE(unknown->type, type);
        QCOMPARE(unknown->raw, JSONValue::parse(raw));
    }

    void eachWordOfAnEnumerationIsRead_data() {
        QTest::addColumn<QByteArray>("line");
        const auto add = [](const char *name, const char *before, const QStringList &words, const char *after) {
            for (const QString &word : words)
                QTest::addRow("%s %s", name, qPrintable(word)) << QByteArray(before) + word.toUtf8() + after;
        };
        add("level", "{\"event\":\"log\",\"data\":{\"message\":\"m\",\"level\":\"",
            {u"debug"_s, u"info"_s, u"warn"_s, u"error"_s}, "\"}}");
        add("kind", "{\"event\":\"trackFinished\",\"data\":{\"trackId\":\"t\",\"status\":\"ok\",\"kind\":\"",
            {u"verified"_s, u"downloaded"_s}, "\"}}");
        add("proxy", "{\"event\":\"proxyStatus\",\"data\":{\"status\":\"",
            {u"off"_s, u"connecting"_s, u"connected"_s, u"down"_s, u"error"_s}, "\"}}");
        add("tool", "{\"event\":\"toolProgress\",\"data\":{\"tool\":\"t\",\"phase\":\"",
            {u"download"_s, u"verify"_s, u"install"_s, u"done"_s, u"error"_s}, "\"}}");
        add("phase", "{\"event\":\"step\",\"data\":{\"trackId\":\"t\",\"phase\":\"",
            {u"searching"_s, u"downloading"_s, u"converting"_s, u"tagging"_s, u"verifying"_s}, "\"}}");
        add("finish", "{\"event\":\"playlistFinished\",\"data\":{\"playlistId\":\"p\",\"status\":\"",
            {u"ok"_s, u"low-confidence"_s, u"failed"_s, u"skipped"_s}, "\"}}");
        add("disk", "{\"event\":\"diskCheck\",\"data\":{\"trackId\":\"t\",\"result\":\"",
            {u"present"_s, u"missing"_s, u"broken"_s}, "\"}}");
    }
    void eachWordOfAnEnumerationIsRead() {
        QFETCH(QByteArray, line);
        const std::optional<ServerEvent> event = eventOf(line);
        QVERIFY(event);
        // Written again, the event says the same: the word went into the enumeration and came back.
        QCOMPARE(JSONValue::parse(event->encodedLine()), JSONValue::parse(line));
        // A word beside it is none.
        QVERIFY(!eventOf(line.chopped(3) + "x\"}}"));
    }

    void eventsStaySmall() { QVERIFY(sizeof(HelperEvent) < 200); }

    void aNumberThatIsNotFiniteIsNotWritten() {
        const ServerEvent event =
            Event::DownloadProgress{u"r"_s, u"t"_s, std::numeric_limits<double>::quiet_NaN(), {}, {}};
        QVERIFY_THROWS_EXCEPTION(JSONError, event.encodedLine());
    }

    void aClientsEventsAreEqualWhenTheySayTheSame() {
        const ServerEvent event = Event::SyncStarted{u"r"_s, u"r"_s, 1};
        QCOMPARE(HelperEvent::server(event), HelperEvent::server(event));
        QVERIFY(!(HelperEvent::helperCrashed() == HelperEvent::helperReady()));
        QVERIFY(!(HelperEvent::server(event) == HelperEvent::helperReady()));
        QVERIFY(!(HelperEvent::server(event) == HelperEvent::server(Event::SyncStarted{u"r"_s, u"r"_s, 2})));
    }
};

QTEST_APPLESS_MAIN(TestServerEvent)
#include "tst_serverevent.moc"
