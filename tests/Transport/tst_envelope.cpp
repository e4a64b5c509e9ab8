#include "Transport/WireTesting.h"

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

Q_DECLARE_METATYPE(zelk::Request)
Q_DECLARE_METATYPE(std::optional<QString>)

class TestEnvelope : public QObject {
    Q_OBJECT

    static ConfigPatch patch() {
        ConfigPatch patch;
        patch.proxyEnabled = false;
        return patch;
    }

    static void addRequests() {
        QTest::addColumn<Request>("request");
        QTest::addColumn<Method>("method");
        QTest::addColumn<QByteArray>("tail"); // what follows the id
        const auto row = [](const char *name, const Request &request, Method method, const QByteArray &tail) {
            QTest::newRow(name) << request << method << tail;
        };
        const QString run = u"run-1"_s;
        const std::vector<PlaylistSelection> selection{{PlaylistSourceId::spotify, u"p1"_s, u"Late"_s},
                                                       {PlaylistSourceId::apple, u"p2"_s, {}}};
        const QByteArray selectionJSON =
            "'selection':[{'source':'spotify','id':'p1','name':'Late'},{'source':'apple','id':'p2'}]"_json;
        SyncOptions options;
        options.dryRun = true;
        options.qualityFloor = QualityFloor::mp3_320;
        using R = Request;
        row("getConfig", R::getConfig(), Method::getConfig, "'method':'getConfig'"_json);
        row("setConfig", R::setConfig(patch()), Method::setConfig,
            "'method':'setConfig','params':{'patch':{'proxyEnabled':false}}"_json);
        row("setConfig of nothing", R::setConfig({}), Method::setConfig,
            "'method':'setConfig','params':{'patch':{}}"_json);
        row("storeAccountToken", R::storeAccountToken(AccountService::soundcloud, u"t"_s, u"c"_s),
            Method::storeAccountToken,
            "'method':'storeAccountToken','params':{'service':'soundcloud','token':'t','clientId':'c'}"_json);
        row("storeAccountToken without client", R::storeAccountToken(AccountService::acoustid, u"t"_s),
            Method::storeAccountToken, "'method':'storeAccountToken','params':{'service':'acoustid','token':'t'}"_json);
        row("getSpotifyAuthParams", R::getSpotifyAuthParams(), Method::getSpotifyAuthParams,
            "'method':'getSpotifyAuthParams'"_json);
        row("disconnectAccount", R::disconnectAccount(AccountService::applemusic), Method::disconnectAccount,
            "'method':'disconnectAccount','params':{'service':'applemusic'}"_json);
        row("connectSpotify", R::connectSpotify(), Method::connectSpotify, "'method':'connectSpotify'"_json);
        row("listPlaylists", R::listPlaylists(), Method::listPlaylists, "'method':'listPlaylists'"_json);
        row("listPlaylists of a source", R::listPlaylists(PlaylistSourceId::apple), Method::listPlaylists,
            "'method':'listPlaylists','params':{'source':'apple'}"_json);
        row("getPlaylistTracks", R::getPlaylistTracks(PlaylistSourceId::spotify, u"p1"_s, u"Late"_s),
            Method::getPlaylistTracks,
            "'method':'getPlaylistTracks','params':{'source':'spotify','id':'p1','name':'Late'}"_json);
        row("getPlaylistTracks without name", R::getPlaylistTracks(PlaylistSourceId::spotify, u"p1"_s),
            Method::getPlaylistTracks, "'method':'getPlaylistTracks','params':{'source':'spotify','id':'p1'}"_json);
        row("startSync", R::startSync(selection, options), Method::startSync,
            "'method':'startSync','params':{"_json + selectionJSON +
                ",'options':{'dryRun':true,'qualityFloor':'mp3-320'}}"_json);
        row("startSync without options", R::startSync({}), Method::startSync,
            "'method':'startSync','params':{'selection':[]}"_json);
        row("startSync with options of nothing", R::startSync({}, SyncOptions{}), Method::startSync,
            "'method':'startSync','params':{'selection':[],'options':{}}"_json);
        row("cancelSync", R::cancelSync(), Method::cancelSync, "'method':'cancelSync'"_json);
        row("cancelSync of a run", R::cancelSync(run), Method::cancelSync,
            "'method':'cancelSync','params':{'runId':'run-1'}"_json);
        row("reviewDecision", R::reviewDecision(run, u"p1#0"_s, ReviewDecision::accept()), Method::reviewDecision,
            "'method':'reviewDecision','params':{'runId':'run-1','trackId':'p1#0','decision':{'kind':'accept'}}"_json);
        row("reviewDecision without run", R::reviewDecision({}, u"p1#0"_s, ReviewDecision::candidate(u"c1"_s)),
            Method::reviewDecision,
            "'method':'reviewDecision','params':{'trackId':'p1#0','decision':{'kind':'candidate','candidateId':'c1'}}"_json);
        row("listOrphans", R::listOrphans(selection), Method::listOrphans,
            "'method':'listOrphans','params':{"_json + selectionJSON + "}");
        row("trashOrphans", R::trashOrphans({u"/music/a.mp3"_s, u"/music/\"b\".mp3"_s}), Method::trashOrphans,
            "\"method\":\"trashOrphans\",\"params\":{\"paths\":[\"/music/a.mp3\",\"/music/\\\"b\\\".mp3\"]}");
        row("runDoctor", R::runDoctor(), Method::runDoctor, "'method':'runDoctor'"_json);
        row("doctorFix", R::doctorFix(u"ffmpeg"_s), Method::doctorFix,
            "'method':'doctorFix','params':{'checkId':'ffmpeg'}"_json);
        row("provisionTools", R::provisionTools(), Method::provisionTools, "'method':'provisionTools'"_json);
        row("testProxy", R::testProxy(), Method::testProxy, "'method':'testProxy'"_json);
        row("proxyInfo", R::proxyInfo(), Method::proxyInfo, "'method':'proxyInfo'"_json);
    }

private Q_SLOTS:
    void aTrackIsNamedByItsPlaylistAndRow() {
        QCOMPARE(WireProtocol::trackId(u"p1"_s, 3), u"p1#3"_s);
        QCOMPARE(WireProtocol::trackId(u"spotify:demo"_s, 0), u"spotify:demo#0"_s);
    }

    void thereAreEighteenMethodsNamedAsTheirCases() {
        QStringList names;
        for (const Method method : allCases<Method>())
            names.append(QString(wireName(method)));
        const QStringList expected{
            u"getConfig"_s,         u"setConfig"_s,      u"storeAccountToken"_s, u"getSpotifyAuthParams"_s,
            u"disconnectAccount"_s, u"connectSpotify"_s, u"listPlaylists"_s,     u"getPlaylistTracks"_s,
            u"startSync"_s,         u"cancelSync"_s,     u"reviewDecision"_s,    u"listOrphans"_s,
            u"trashOrphans"_s,      u"runDoctor"_s,      u"doctorFix"_s,         u"provisionTools"_s,
            u"testProxy"_s,         u"proxyInfo"_s};
        QCOMPARE(names, expected);
        QHash<Method, int> hashable{{Method::getConfig, 1}};
        QCOMPARE(hashable.value(Method::getConfig), 1);
        QCOMPARE(writeJSON(Method::doctorFix), "\"doctorFix\"");
        QCOMPARE(readJSON<Method>("\"doctorFix\""), Method::doctorFix);
    }

    void aRequestIsWrittenAsItsLine_data() { addRequests(); }
    void aRequestIsWrittenAsItsLine() {
        QFETCH(Request, request);
        QFETCH(Method, method);
        QFETCH(QByteArray, tail);
        QCOMPARE(request.method(), method);
        QCOMPARE(request.encodedLine(u"r7"_s), "{\"id\":\"r7\"," + tail + "}");
        QCOMPARE(writeJSON(RequestEnvelope{u"r7"_s, request}), request.encodedLine(u"r7"_s));
    }

    void theEngineReadsTheRequestThatWasWritten_data() { addRequests(); }
    void theEngineReadsTheRequestThatWasWritten() {
        QFETCH(Request, request);
        const auto read = readRequestLine(request.encodedLine(u"r7"_s));
        const auto *envelope = std::get_if<RequestEnvelope>(&read);
        QVERIFY(envelope);
        QCOMPARE(envelope->id, u"r7"_s);
        QVERIFY(envelope->request == request);
    }

    void everyMethodHasARequestInTheTable() {
        QSet<Method> seen;
        for (const Request &request :
             {Request::getConfig(), Request::setConfig({}), Request::storeAccountToken({}, {}),
              Request::getSpotifyAuthParams(), Request::disconnectAccount({}), Request::connectSpotify(),
              Request::listPlaylists(), Request::getPlaylistTracks({}, {}), Request::startSync({}),
              Request::cancelSync(), Request::reviewDecision({}, {}, {}), Request::listOrphans({}),
              Request::trashOrphans({}), Request::runDoctor(), Request::doctorFix({}), Request::provisionTools(),
              Request::testProxy(), Request::proxyInfo()})
            seen.insert(request.method());
        QCOMPARE(std::size_t(seen.size()), allCases<Method>().size());
        QCOMPARE(std::variant_size_v<Request::Value>, allCases<Method>().size());
    }

    void requestsAreEqualWhenTheirArgumentsAre() {
        QVERIFY(Request::listPlaylists(PlaylistSourceId::apple) == Request::listPlaylists(PlaylistSourceId::apple));
        QVERIFY(!(Request::listPlaylists(PlaylistSourceId::apple) == Request::listPlaylists()));
        QVERIFY(!(Request::runDoctor() == Request::testProxy()));
        QCOMPARE(caseOf<Request::DoctorFix>(Request::doctorFix(u"ffmpeg"_s))->checkId, u"ffmpeg"_s);
    }

    void aRequestThatCantBeWrittenGivesNoLine() {
        ConfigPatch patch;
        patch.run = SafeConfig::Run{5, 4, std::numeric_limits<double>::infinity(), 30, 24};
        QVERIFY_THROWS_EXCEPTION(JSONError, Request::setConfig(patch).encodedLine(u"r1"_s));
    }

    void theEngineRefusesWhatIsNoRequest_data() {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<std::optional<QString>>("id");
        QTest::addColumn<EngineErrorCode>("code");
        QTest::addColumn<QString>("message");
        const auto row = [](const char *name, const QByteArray &line, std::optional<QString> id, EngineErrorCode code,
                            const QString &message) { QTest::newRow(name) << line << id << code << message; };
        const std::optional<QString> r1 = u"r1"_s;
        row("a list", "[]", {}, EngineErrorCode::badRequest, u"A request is a JSON object."_s);
        row("no id", "{'method':'getConfig'}"_json, {}, EngineErrorCode::badRequest, u"id: missing"_s);
        row("id a number", "{'id':1,'method':'getConfig'}"_json, {}, EngineErrorCode::badRequest,
            u"id: expected text, found a number"_s);
        row("no method", "{'id':'r1'}"_json, r1, EngineErrorCode::badRequest, u"method: missing"_s);
        row("method null", "{'id':'r1','method':null}"_json, r1, EngineErrorCode::badRequest,
            u"method: expected text, found null"_s);
        row("unknown method", "{'id':'r1','method':'dance'}"_json, r1, EngineErrorCode::unknownMethod,
            u"Unknown method: dance"_s);
        row("params missing", "{'id':'r1','method':'doctorFix'}"_json, r1, EngineErrorCode::invalidParams,
            u"params: missing"_s);
        row("params null", "{'id':'r1','method':'doctorFix','params':null}"_json, r1, EngineErrorCode::invalidParams,
            u"params: missing"_s);
        row("params a list", "{'id':'r1','method':'doctorFix','params':[]}"_json, r1, EngineErrorCode::invalidParams,
            u"params: expected an object, found a list"_s);
        row("an argument missing", "{'id':'r1','method':'doctorFix','params':{}}"_json, r1,
            EngineErrorCode::invalidParams, u"params.checkId: missing"_s);
        row("an unknown source", "{'id':'r1','method':'listPlaylists','params':{'source':'tape'}}"_json, r1,
            EngineErrorCode::invalidParams, u"params.source: unknown value: tape"_s);
        row("an unknown decision",
            "{'id':'r1','method':'reviewDecision','params':{'trackId':'t','decision':{'kind':'later'}}}"_json, r1,
            EngineErrorCode::invalidParams, u"params.decision.kind: Unknown ReviewDecision kind: later"_s);
    }
    void theEngineRefusesWhatIsNoRequest() {
        QFETCH(QByteArray, line);
        QFETCH(std::optional<QString>, id);
        QFETCH(EngineErrorCode, code);
        QFETCH(QString, message);
        const auto read = readRequestLine(line);
        const auto *refusal = std::get_if<RequestRefusal>(&read);
        QVERIFY(refusal);
        QCOMPARE(*refusal, (RequestRefusal{id, code, message}));
    }

    void theEngineRefusesWhatIsNoJSON() {
        for (const char *line : {"", "getConfig", "{", "{\"id\":\"r1\",\"method\":\"getConfig\"", "\xef\xbb\xbf{}"}) {
            const auto read = readRequestLine(line);
            const auto *refusal = std::get_if<RequestRefusal>(&read);
            QVERIFY(refusal);
            QCOMPARE(refusal->id, std::nullopt);
            QCOMPARE(refusal->code, EngineErrorCode::badRequest);
        }
    }

    void theEngineForgivesWhatCostsNothing() {
        const auto requestOf = [](const QByteArray &line) {
            const auto read = readRequestLine(line);
            const auto *envelope = std::get_if<RequestEnvelope>(&read);
            return envelope ? std::optional(envelope->request) : std::nullopt;
        };
        QVERIFY(requestOf("{'params':{'source':'apple','x':1},'method':'listPlaylists','id':'r1','y':2}"_json) ==
                Request::listPlaylists(PlaylistSourceId::apple));
        QVERIFY(requestOf("{'id':'r1','method':'listPlaylists','params':{}}"_json) == Request::listPlaylists());
        QVERIFY(requestOf("{'id':'r1','method':'listPlaylists','params':null}"_json) == Request::listPlaylists());
        QVERIFY(requestOf("{'id':'r1','method':'getConfig','params':[]}"_json) == Request::getConfig());
    }

    void theEnginesRepliesReadAsWhatTheySay() {
        const auto responseOf = [](const QByteArray &line) {
            LineDecoder decoder;
            decoder.parse(PaddedLine(line).view());
            return decoder.response();
        };
        QCOMPARE(encodedReply(u"r1"_s), "{'id':'r1','ok':true}"_json);
        QVERIFY(responseOf(encodedReply(u"r1"_s)) == (Response{u"r1"_s, true, {}, {}}));

        const QByteArray reply = encodedReply(u"r2"_s, ProvisionToolsResult{true, {}});
        QCOMPARE(reply, "{'id':'r2','ok':true,'result':{'ok':true,'tools':[]}}"_json);
        QCOMPARE(readResult<ProvisionToolsResult>(responseOf(reply).value().result), (ProvisionToolsResult{true, {}}));

        const QByteArray failure = encodedFailure(u"r3"_s, EngineErrorCode::syncInProgress, u"Busy."_s);
        QCOMPARE(failure, "{'id':'r3','ok':false,'error':{'code':'sync_in_progress','message':'Busy.'}}"_json);
        QVERIFY(responseOf(failure) ==
                (Response{u"r3"_s, false, {}, Response::EngineErrorPayload{u"sync_in_progress"_s, u"Busy."_s, {}}}));

        const Response full{u"r4"_s, false, JSONValue::number(1),
                            Response::EngineErrorPayload{u"c"_s, u"m"_s, JSONValue::bool_(true)}};
        QVERIFY(responseOf(writeJSON(full)) == full);
    }

    void anEmptyResultAcceptsAnyJSON_data() {
        QTest::addColumn<QByteArray>("json");
        for (const char *json : {"null", "true", "1", "\"a\"", "[]", "{}", "{\"tracks\":7}"})
            QTest::newRow(json) << QByteArray(json);
    }
    void anEmptyResultAcceptsAnyJSON() {
        QFETCH(QByteArray, json);
        QCOMPARE(readResult<EmptyResult>(JSONValue::parse(json)), EmptyResult());
    }

    void previewTracksComeWithTheirKey() {
        const QByteArray track = "{'id':'p#0','title':'t','artist':'a','durationSec':1.5,'artwork':{'kind':'none'},"
                                 "'onDisk':'missing'}"_json;
        const PreviewTracksResult result = readJSON<PreviewTracksResult>("{\"tracks\":[" + track + "]}");
        QCOMPARE(result.tracks.size(), std::size_t(1));
        QCOMPARE(result.tracks.front().id, u"p#0"_s);
        QCOMPARE(writeJSON(result), "{\"tracks\":[" + track + "]}");
        QCOMPARE(failureOf<PreviewTracksResult>("[" + track + "]"), u"expected an object, found a list"_s);
        QCOMPARE(readJSON<std::vector<PreviewTrackDTO>>("[" + track + "]"), result.tracks);
    }
};

QTEST_APPLESS_MAIN(TestEnvelope)
#include "tst_envelope.moc"
