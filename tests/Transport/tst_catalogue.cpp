#include "Transport/WireTesting.h"

#include <QHash>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

Q_DECLARE_METATYPE(zelk::ArtworkRef)
Q_DECLARE_METATYPE(zelk::ReviewDecision)

namespace {

// The record as it reads after being written, and as it reads from a line: all must be one.
template<class T>
bool survives(const T &record) {
    return readJSON<T>(writeJSON(record)) == record && readJSON<T>(toJSONValue(record)) == record;
}

template<class Enum>
QStringList wireNames() {
    QStringList names;
    for (const Enum each : allCases<Enum>())
        names.append(QString(wireName(each)));
    return names;
}

template<class Enum>
void verifyWords(const QStringList &words, std::initializer_list<Enum> cases) {
    QCOMPARE(wireNames<Enum>(), words);
    QCOMPARE(allCases<Enum>(), std::vector<Enum>(cases));
    for (const Enum each : cases) {
        QCOMPARE(writeJSON(each), "\"" + QString(wireName(each)).toUtf8() + "\"");
        QCOMPARE(readJSON<Enum>(writeJSON(each)), each);
    }
    for (const QString &bad :
         {u""_s, u"other"_s, words.front().toUpper(), words.front() + u" "_s, words.front().chopped(1)})
        QCOMPARE(failureOf<Enum>("\"" + bad.toUtf8() + "\""), u"unknown value: "_s + bad);
    QCOMPARE(failureOf<Enum>("0"), u"expected text, found a number"_s);
    QCOMPARE(failureOf<Enum>("null"), u"expected text, found null"_s);
}

// Each required key of a record, taken away or null, fails the record under its name; each optional one reads as no
// value either way and isn't written.
template<class T>
void verifyKeys(const QByteArray &json, const QStringList &required, const QStringList &optional) {
    const JSONValue::Object full = *JSONValue::parse(json).asObject();
    QStringList keys = required + optional;
    keys.sort();
    QCOMPARE(full.keys(), keys);
    const T whole = readJSON<T>(json);
    QCOMPARE(toJSONValue(whole), JSONValue::object(full));
    for (const QString &key : required) {
        JSONValue::Object without = full;
        without.remove(key);
        QCOMPARE(failureOf<T>(JSONValue::object(without).json()), key + u": missing"_s);
        without.insert(key, JSONValue::null);
        QVERIFY2(failureOf<T>(JSONValue::object(without).json()).startsWith(key + u": expected"_s), qPrintable(key));
    }
    for (const QString &key : optional) {
        JSONValue::Object without = full;
        without.remove(key);
        const T absent = readJSON<T>(JSONValue::object(without));
        QVERIFY2(!(absent == whole), qPrintable(key));
        JSONValue::Object withNull = without;
        withNull.insert(key, JSONValue::null);
        QCOMPARE(readJSON<T>(JSONValue::object(withNull)), absent);
        QCOMPARE(toJSONValue(absent), JSONValue::object(without));
        withNull.insert(key, JSONValue::array({JSONValue::object({})}));
        QVERIFY2(failureOf<T>(JSONValue::object(withNull).json()).startsWith(key), qPrintable(key));
    }
    JSONValue::Object more = full;
    more.insert(u"newer"_s, JSONValue::array({JSONValue::null}));
    QCOMPARE(readJSON<T>(JSONValue::object(more)), whole);
    JSONValue::Object otherCase = full;
    const QString first = (required + optional).front();
    otherCase.insert(first.toUpper(), otherCase.take(first));
    if (required.isEmpty())
        QVERIFY(!(readJSON<T>(JSONValue::object(otherCase)) == whole));
    else
        QCOMPARE(failureOf<T>(JSONValue::object(otherCase).json()), first + u": missing"_s);
}

} // namespace

class TestCatalogue : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void enumerationsAreTheirWords() {
        verifyWords<Phase>({u"searching"_s, u"downloading"_s, u"converting"_s, u"tagging"_s, u"verifying"_s},
                           {Phase::searching, Phase::downloading, Phase::converting, Phase::tagging, Phase::verifying});
        verifyWords<Finish>({u"ok"_s, u"low-confidence"_s, u"failed"_s, u"skipped"_s},
                            {Finish::ok, Finish::lowConfidence, Finish::failed, Finish::skipped});
        verifyWords<DiskCheckResult>({u"present"_s, u"missing"_s, u"broken"_s},
                                     {DiskCheckResult::present, DiskCheckResult::missing, DiskCheckResult::broken});
        verifyWords<PlaylistSourceId>({u"apple"_s, u"spotify"_s}, {PlaylistSourceId::apple, PlaylistSourceId::spotify});
        verifyWords<SourceId>({u"soulseek"_s, u"bandcamp"_s, u"soundcloud"_s, u"youtube"_s},
                              {SourceId::soulseek, SourceId::bandcamp, SourceId::soundcloud, SourceId::youtube});
        verifyWords<QualityFloor>({u"flac"_s, u"mp3-320"_s, u"any"_s},
                                  {QualityFloor::flac, QualityFloor::mp3_320, QualityFloor::any});
        verifyWords<AccountService>({u"spotify"_s, u"soundcloud"_s, u"acoustid"_s, u"applemusic"_s, u"proxy"_s},
                                    {AccountService::spotify, AccountService::soundcloud, AccountService::acoustid,
                                     AccountService::applemusic, AccountService::proxy});
        verifyWords<ProxyStatusValue>({u"off"_s, u"connecting"_s, u"connected"_s, u"down"_s, u"error"_s},
                                      {ProxyStatusValue::off, ProxyStatusValue::connecting, ProxyStatusValue::connected,
                                       ProxyStatusValue::down, ProxyStatusValue::error});
        verifyWords<PreviewTrackDTO::OnDisk>({u"present"_s, u"missing"_s},
                                             {PreviewTrackDTO::OnDisk::present, PreviewTrackDTO::OnDisk::missing});
    }

    void theNameOfACaseIsNotItsWord() {
        QCOMPARE(failureOf<Finish>("\"lowConfidence\""), u"unknown value: lowConfidence"_s);
        QCOMPARE(failureOf<QualityFloor>("\"mp3_320\""), u"unknown value: mp3_320"_s);
    }

    void artworkIsReadByItsKind_data() {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<ArtworkRef>("artwork");
        const auto row = [](const QByteArray &json, const ArtworkRef &artwork) {
            QTest::newRow(json.constData()) << json << artwork;
        };
        row("{'kind':'url','url':'https://x/1'}"_json, ArtworkRef::url(QUrl(u"https://x/1"_s)));
        row("{'url':'https://x/1','kind':'url'}"_json, ArtworkRef::url(QUrl(u"https://x/1"_s)));
        row("{'kind':'url','url':''}"_json, ArtworkRef::none());
        row("{'kind':'url','url':'http://['}"_json, ArtworkRef::none());
        row("{'kind':'url','url':'file:///a%20b'}"_json, ArtworkRef::url(QUrl(u"file:///a%20b"_s)));
        row("{'kind':'appleMusic','persistentID':'8F'}"_json, ArtworkRef::appleMusic(u"8F"_s));
        row("{'kind':'mosaic','trackIds':['a','b']}"_json, ArtworkRef::mosaic({u"a"_s, u"b"_s}));
        row("{'kind':'mosaic','trackIds':[]}"_json, ArtworkRef::mosaic({}));
        row("{'kind':'none'}"_json, ArtworkRef::none());
        row("{'kind':'hologram'}"_json, ArtworkRef::none());
        row("{'kind':''}"_json, ArtworkRef::none());
        row("{'kind':'URL','url':7}"_json, ArtworkRef::none());
    }
    void artworkIsReadByItsKind() {
        QFETCH(QByteArray, json);
        QFETCH(ArtworkRef, artwork);
        QCOMPARE(readJSON<ArtworkRef>(json), artwork);
        QVERIFY(survives(artwork));
        // And the same from a line.
        const auto event = eventOf<ServerEvent::PlaylistStarted>(
            "{'event':'playlistStarted','data':{'playlistId':'p','index':0,'name':'n','tracks':[{'id':'a','title':'t',"
            "'artist':'x','durationSec':1,'artwork':"_json +
            json + "}]}}");
        QCOMPARE(event.value().tracks.front().artwork, artwork);
    }

    void artworkWithoutWhatItsKindNeedsFails_data() {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("failure");
        const auto row = [](const QByteArray &json, const QString &failure) {
            QTest::newRow(json.constData()) << json << failure;
        };
        row("{}", u"kind: missing"_s);
        row("{'kind':null}"_json, u"kind: expected text, found null"_s);
        row("{'kind':1}"_json, u"kind: expected text, found a number"_s);
        row("[]", u"expected an object, found a list"_s);
        row("'none'"_json, u"expected an object, found text"_s);
        row("{'kind':'url'}"_json, u"url: missing"_s);
        row("{'kind':'url','url':null}"_json, u"url: expected text, found null"_s);
        row("{'kind':'appleMusic'}"_json, u"persistentID: missing"_s);
        row("{'kind':'mosaic'}"_json, u"trackIds: missing"_s);
        row("{'kind':'mosaic','trackIds':['a',null]}"_json, u"trackIds[1]: expected text, found null"_s);
    }
    void artworkWithoutWhatItsKindNeedsFails() {
        QFETCH(QByteArray, json);
        QFETCH(QString, failure);
        QCOMPARE(failureOf<ArtworkRef>(json), failure);
    }

    void artworkIsWrittenKindFirst() {
        QCOMPARE(writeJSON(ArtworkRef::none()), "{'kind':'none'}"_json);
        QCOMPARE(writeJSON(ArtworkRef::url(QUrl(u"https://x/a b"_s))), "{'kind':'url','url':'https://x/a%20b'}"_json);
        QCOMPARE(writeJSON(ArtworkRef::appleMusic(u"8F"_s)), "{'kind':'appleMusic','persistentID':'8F'}"_json);
        QCOMPARE(writeJSON(ArtworkRef::mosaic({u"a"_s})), "{'kind':'mosaic','trackIds':['a']}"_json);
    }

    // The plain kind of URL is recognised without QUrl; what comes out must be what QUrl makes of it.
    void anAddressIsWhatQUrlMakesOfIt_data() {
        QTest::addColumn<QString>("text");
        const QStringList texts{u"https://img.example.net/cover/0001/300x300.jpg"_s,
                                u"https://a.b/"_s,
                                u"https://a/"_s,
                                u"https://a-b.c/x-y_z.J"_s,
                                u"https://a"_s,
                                u"https:///x"_s,
                                u"https://-a/x"_s,
                                u"https://a-/x"_s,
                                u"https://a--b/x"_s,
                                u"https://xn--kln-sna.de/x"_s,
                                u"https://a..b/x"_s,
                                u"https://.a/x"_s,
                                u"https://a./x"_s,
                                u"https://A.b/x"_s,
                                u"https://1.2.3.4/x"_s,
                                u"https://1.2.3.999/x"_s,
                                u"https://0x7f.1/x"_s,
                                u"https://a.b:80/x"_s,
                                u"https://u@a.b/x"_s,
                                u"https://a.b/x%20y"_s,
                                u"https://a.b/x%zz"_s,
                                u"https://a.b/x y"_s,
                                u"https://a.b/x?q=1#f"_s,
                                u"https://a.b/../x"_s,
                                u"https://a.b//x/./y"_s,
                                u"https://a.b/é"_s,
                                u"https://ä.b/x"_s,
                                u"https://a.b/~x"_s,
                                u"HTTPS://a.b/x"_s,
                                u"http://a.b/x"_s,
                                u"https://[::1]/x"_s,
                                u"https://a_b/x"_s,
                                u"https://"_s + QString(63, u'a') + u"/x"_s,
                                u"https://"_s + QString(64, u'a') + u"/x"_s,
                                u"https://a.9/x"_s,
                                u"https://a.b/\\x"_s,
                                u"data:image/png;base64,AA=="_s,
                                u"relative/path"_s,
                                u"//a.b/x"_s,
                                u"https://a.b/\u0000"_s,
                                u"https://a.b/|"_s,
                                u"not a url"_s,
                                u"http://["_s,
                                u":"_s,
                                u"1:2"_s,
                                u" "_s};
        for (const QString &text : texts)
            QTest::newRow(qPrintable(text)) << text;
    }
    void anAddressIsWhatQUrlMakesOfIt() {
        QFETCH(QString, text);
        const QUrl url(text);
        const ArtworkRef artwork = artworkOfUrlText(text);
        const auto *const kept = caseOf<ArtworkRef::Url>(artwork);
        QCOMPARE(kept != nullptr, url.isValid());
        if (kept) {
            QCOMPARE(kept->text, url.toString(QUrl::FullyEncoded));
            QCOMPARE(kept->url(), QUrl(url.toString(QUrl::FullyEncoded)));
            QCOMPARE(artwork, ArtworkRef::url(url));
        }
    }

    void equalArtworkHashesAlike() {
        const QList<ArtworkRef> all{
            ArtworkRef::none(),           ArtworkRef::url(QUrl(u"https://x/1"_s)), ArtworkRef::appleMusic(u"a"_s),
            ArtworkRef::mosaic({u"a"_s}), ArtworkRef::mosaic({u"a"_s, u"b"_s}),    ArtworkRef::mosaic({})};
        QHash<ArtworkRef, int> places;
        for (qsizetype i = 0; i < all.size(); ++i)
            places.insert(all.at(i), int(i));
        QCOMPARE(places.size(), all.size());
        QCOMPARE(places.value(ArtworkRef::mosaic({u"a"_s, u"b"_s})), 4);
        QCOMPARE(qHash(ArtworkRef::appleMusic(u"a"_s), 7), qHash(ArtworkRef::appleMusic(u"a"_s), 7));
    }

    void aDecisionIsReadAndWrittenByItsKind_data() {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<ReviewDecision>("decision");
        QTest::newRow("accept") << "{'kind':'accept'}"_json << ReviewDecision::accept();
        QTest::newRow("skip") << "{'kind':'skip'}"_json << ReviewDecision::skip();
        QTest::newRow("url") << "{'kind':'url','url':'https://x/1'}"_json << ReviewDecision::url(u"https://x/1"_s);
        QTest::newRow("url that is a path") << "{'kind':'url','url':'/a b'}"_json << ReviewDecision::url(u"/a b"_s);
        QTest::newRow("candidate") << "{'kind':'candidate','candidateId':'c1'}"_json
                                   << ReviewDecision::candidate(u"c1"_s);
    }
    void aDecisionIsReadAndWrittenByItsKind() {
        QFETCH(QByteArray, json);
        QFETCH(ReviewDecision, decision);
        QCOMPARE(readJSON<ReviewDecision>(json), decision);
        QCOMPARE(writeJSON(decision), json);
    }

    void aDecisionOfAnotherKindFails_data() {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("failure");
        QTest::newRow("later") << "{'kind':'later'}"_json << u"kind: Unknown ReviewDecision kind: later"_s;
        QTest::newRow("empty") << "{'kind':''}"_json << u"kind: Unknown ReviewDecision kind: "_s;
        QTest::newRow("case") << "{'kind':'Accept'}"_json << u"kind: Unknown ReviewDecision kind: Accept"_s;
        QTest::newRow("none") << QByteArray("{}") << u"kind: missing"_s;
        QTest::newRow("null") << "{'kind':null}"_json << u"kind: expected text, found null"_s;
        QTest::newRow("url without url") << "{'kind':'url'}"_json << u"url: missing"_s;
        QTest::newRow("candidate without id") << "{'kind':'candidate'}"_json << u"candidateId: missing"_s;
        QTest::newRow("no object") << QByteArray("[]") << u"expected an object, found a list"_s;
    }
    void aDecisionOfAnotherKindFails() {
        QFETCH(QByteArray, json);
        QFETCH(QString, failure);
        QCOMPARE(failureOf<ReviewDecision>(json), failure);
    }

    void recordsNeedTheirKeysAndNoMore() {
        verifyKeys<PlaylistDTO>("{'id':'p','source':'apple','name':'n','isFolder':true,'parentId':'q','trackCount':3,"
                                "'artwork':{'kind':'mosaic','trackIds':['a']}}"_json,
                                {u"id"_s, u"source"_s, u"name"_s, u"isFolder"_s, u"artwork"_s},
                                {u"parentId"_s, u"trackCount"_s});
        verifyKeys<TrackDTO>("{'id':'t','title':'a','artist':'b','album':'c','durationSec':1.5,"
                             "'artwork':{'kind':'appleMusic','persistentID':'x'}}"_json,
                             {u"id"_s, u"title"_s, u"artist"_s, u"durationSec"_s, u"artwork"_s}, {u"album"_s});
        verifyKeys<PreviewTrackDTO>("{'id':'t','title':'a','artist':'b','album':'c','durationSec':1.5,"
                                    "'artwork':{'kind':'none'},'onDisk':'present','meta':{'format':'FLAC'}}"_json,
                                    {u"id"_s, u"title"_s, u"artist"_s, u"durationSec"_s, u"artwork"_s, u"onDisk"_s},
                                    {u"album"_s, u"meta"_s});
        verifyKeys<TrackMeta>("{'format':'FLAC','bitrate':'320','source':'soulseek'}"_json, {},
                              {u"format"_s, u"bitrate"_s, u"source"_s});
        verifyKeys<CandidateDTO>("{'id':'c','title':'t','channel':'x','durationSec':2,'source':'s','format':'f',"
                                 "'bitrateKbps':320,'confidence':0.5,'reason':'r','url':'u'}"_json,
                                 {u"id"_s, u"title"_s, u"channel"_s, u"durationSec"_s},
                                 {u"source"_s, u"format"_s, u"bitrateKbps"_s, u"confidence"_s, u"reason"_s, u"url"_s});
        verifyKeys<PlaylistSelection>("{'source':'spotify','id':'p','name':'n'}"_json, {u"source"_s, u"id"_s},
                                      {u"name"_s});
        verifyKeys<SyncOptions>(
            "{'dryRun':true,'review':false,'concurrency':4,'cleanup':true,'upgrade':false,"
            "'qualityFloor':'any'}"_json,
            {}, {u"dryRun"_s, u"review"_s, u"concurrency"_s, u"cleanup"_s, u"upgrade"_s, u"qualityFloor"_s});
        verifyKeys<SyncSummary>(
            "{'present':1,'ok':2,'flagged':3,'failed':4,'skipped':5,'upgraded':6,'removed':7}"_json,
            {u"present"_s, u"ok"_s, u"flagged"_s, u"failed"_s, u"skipped"_s, u"upgraded"_s, u"removed"_s}, {});
    }

    void anAbsentParentAndANullOneAreTheSame() {
        const QByteArray without =
            "{'id':'p','source':'apple','name':'n','isFolder':false,'artwork':{'kind':'none'}}"_json;
        const QByteArray null =
            "{'id':'p','source':'apple','name':'n','isFolder':false,'parentId':null,'artwork':{'kind':'none'}}"_json;
        QCOMPARE(readJSON<PlaylistDTO>(null), readJSON<PlaylistDTO>(without));
        QCOMPARE(writeJSON(readJSON<PlaylistDTO>(null)), without);
        QCOMPARE(writeJSON(readJSON<PlaylistDTO>(without)), without);
    }

    void theFieldsOfARecordAreWrittenInTheirOrder() {
        QCOMPARE(writeJSON(SyncSummary{1, 2, 3, 4, 5, 6, 7}),
                 "{'present':1,'ok':2,'flagged':3,'failed':4,'skipped':5,'upgraded':6,'removed':7}"_json);
        QCOMPARE(writeJSON(SyncOptions{}), "{}");
        QCOMPARE(writeJSON(TrackMeta{}), "{}");
    }

    void aPreviewTrackIsAlsoATrack() {
        const PreviewTrackDTO preview{u"i"_s,
                                      u"t"_s,
                                      u"a"_s,
                                      u"l"_s,
                                      1.5,
                                      ArtworkRef::appleMusic(u"x"_s),
                                      PreviewTrackDTO::OnDisk::missing,
                                      TrackMeta{u"FLAC"_s, {}, {}}};
        QCOMPARE(preview.track(), (TrackDTO{u"i"_s, u"t"_s, u"a"_s, u"l"_s, 1.5, ArtworkRef::appleMusic(u"x"_s)}));
    }

    void aBoolIsNoNumberAndNoText() {
        const QByteArray folder = "{'id':'p','source':'apple','name':'n','isFolder':%,'artwork':{'kind':'none'}}"_json;
        QVERIFY(readJSON<PlaylistDTO>(QByteArray(folder).replace("%", "true")).isFolder);
        for (const char *bad : {"1", "0", "\"true\"", "\"\""})
            QVERIFY(failureOf<PlaylistDTO>(QByteArray(folder).replace("%", bad)).startsWith(u"isFolder: expected"_s));
    }
};

QTEST_APPLESS_MAIN(TestCatalogue)
#include "tst_catalogue.moc"
