#include "Transport/WireTesting.h"

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

class TestConfig : public QObject {
    Q_OBJECT

    static QByteArray whole() {
        return "{'sources':['youtube','soulseek'],"
               "'quality':{'floor':'mp3-320','losslessOnly':false,'bestQuality':true,'upgradeEnabled':true},"
               "'run':{'searchCount':5,'concurrency':4,'toleranceSec':5.5,'searchTimeoutSec':30,'cooloffHours':0.25},"
               "'ui':{'theme':'dark'},'outputDir':'~/Music/zelk','identity':{'enabled':true,'strict':false},"
               "'proxy':{'enabled':false,'configured':true},'spotifyConnected':true,'soundcloudConnected':false,"
               "'acoustidConfigured':true,'appleMusicConnected':false,'effectiveSpotifyClientId':'id'}"_json;
    }
    static SafeConfig config() { return readJSON<SafeConfig>(whole()); }

    // Every path to a value in the configuration: "quality", "quality.floor", …
    static QStringList paths(const JSONValue &value, const QString &prefix = {}) {
        QStringList all;
        const auto *const object = value.asObject();
        if (!object)
            return all;
        for (auto member = object->cbegin(); member != object->cend(); ++member) {
            const QString path = prefix.isEmpty() ? member.key() : prefix + u'.' + member.key();
            all.append(path);
            all.append(paths(member.value(), path));
        }
        return all;
    }
    static JSONValue without(const JSONValue &value, const QStringList &path) {
        JSONValue::Object object = *value.asObject();
        if (path.size() == 1)
            object.remove(path.front());
        else
            object[path.front()] = without(object.value(path.front()), path.mid(1));
        return JSONValue::object(object);
    }

private Q_SLOTS:
    void aConfigurationIsReadFieldByField() {
        const SafeConfig read = config();
        QCOMPARE(read.sources, (std::vector{SourceId::youtube, SourceId::soulseek}));
        QCOMPARE(read.quality, (SafeConfig::Quality{QualityFloor::mp3_320, false, true, true}));
        QCOMPARE(read.run, (SafeConfig::Run{5, 4, 5.5, 30, 0.25}));
        QCOMPARE(read.ui.theme, SafeConfig::Theme::dark);
        QCOMPARE(read.outputDir, std::optional(u"~/Music/zelk"_s));
        QCOMPARE(read.identity, (SafeConfig::Identity{true, false}));
        QCOMPARE(read.proxy, (SafeConfig::Proxy{false, true}));
        QVERIFY(read.spotifyConnected);
        QVERIFY(!read.soundcloudConnected);
        QVERIFY(read.acoustidConfigured);
        QVERIFY(!read.appleMusicConnected);
        QCOMPARE(read.effectiveSpotifyClientId, std::optional(u"id"_s));
    }

    void aConfigurationIsWrittenAsItWasRead() { QCOMPARE(writeJSON(config()), whole()); }

    void eachFieldButTheOptionalOnesIsRequired_data() {
        QTest::addColumn<QString>("path");
        for (const QString &path : paths(JSONValue::parse(whole())))
            QTest::newRow(qPrintable(path)) << path;
    }
    void eachFieldButTheOptionalOnesIsRequired() {
        QFETCH(QString, path);
        const JSONValue less = without(JSONValue::parse(whole()), path.split(u'.'));
        const QString failure = failureOf<SafeConfig>(less.json());
        if (path == u"outputDir"_s || path == u"effectiveSpotifyClientId"_s)
            QCOMPARE(failure, u""_s);
        else
            QCOMPARE(failure, path + u": missing"_s);
    }

    void theTableAboveHoldsEveryField() { QCOMPARE(paths(JSONValue::parse(whole())).size(), 12 + 4 + 5 + 1 + 2 + 2); }

    void aMissingOrNullFolderIsNoValue() {
        const SafeConfig absent = readJSON<SafeConfig>(without(JSONValue::parse(whole()), {u"outputDir"_s}));
        QCOMPARE(absent.outputDir, std::nullopt);
        QCOMPARE(readJSON<SafeConfig>(whole().replace("\"~/Music/zelk\"", "null")), absent);
        QVERIFY(!writeJSON(absent).contains("outputDir"));
    }

    void aThemeIsDarkOrLight() {
        QCOMPARE(readJSON<SafeConfig>(whole().replace("dark", "light")).ui.theme, SafeConfig::Theme::light);
        QCOMPARE(failureOf<SafeConfig>(whole().replace("dark", "sepia")), u"ui.theme: unknown value: sepia"_s);
        QCOMPARE(writeJSON(SafeConfig::UI{SafeConfig::Theme::light}), "{'theme':'light'}"_json);
    }

    void anUnknownSourceFailsTheWhole() {
        QCOMPARE(failureOf<SafeConfig>(whole().replace("youtube", "tape")), u"sources[0]: unknown value: tape"_s);
    }

    void configurationsDifferInEachField() {
        const auto differs = [](auto change) {
            SafeConfig changed = config();
            change(changed);
            return !(changed == config());
        };
        QVERIFY(!differs([](SafeConfig &) {}));
        QVERIFY(differs([](SafeConfig &c) { c.sources = {}; }));
        QVERIFY(differs([](SafeConfig &c) { c.quality.losslessOnly = true; }));
        QVERIFY(differs([](SafeConfig &c) { c.run.cooloffHours = 1; }));
        QVERIFY(differs([](SafeConfig &c) { c.ui.theme = SafeConfig::Theme::light; }));
        QVERIFY(differs([](SafeConfig &c) { c.outputDir = {}; }));
        QVERIFY(differs([](SafeConfig &c) { c.identity.strict = true; }));
        QVERIFY(differs([](SafeConfig &c) { c.proxy.configured = false; }));
        QVERIFY(differs([](SafeConfig &c) { c.spotifyConnected = false; }));
        QVERIFY(differs([](SafeConfig &c) { c.soundcloudConnected = true; }));
        QVERIFY(differs([](SafeConfig &c) { c.acoustidConfigured = false; }));
        QVERIFY(differs([](SafeConfig &c) { c.appleMusicConnected = true; }));
        QVERIFY(differs([](SafeConfig &c) { c.effectiveSpotifyClientId = {}; }));
    }

    void aPatchSaysOnlyWhatChanges() {
        QCOMPARE(writeJSON(ConfigPatch()), "{}");
        ConfigPatch proxy;
        proxy.proxyEnabled = false;
        QCOMPARE(writeJSON(proxy), "{'proxyEnabled':false}"_json);
        ConfigPatch noSources;
        noSources.sources.emplace();
        QCOMPARE(writeJSON(noSources), "{'sources':[]}"_json);
        QCOMPARE(readJSON<ConfigPatch>("{}"), ConfigPatch());
        QCOMPARE(readJSON<ConfigPatch>("{'sources':null,'proxyEnabled':null}"_json), ConfigPatch());
    }

    void aPatchCarriesItsGroupsWhole() {
        ConfigPatch patch;
        patch.sources = {SourceId::youtube, SourceId::bandcamp};
        patch.quality = config().quality;
        patch.run = config().run;
        patch.ui = config().ui;
        patch.outputDir = u"/a/b"_s;
        patch.identity = config().identity;
        patch.proxyEnabled = true;
        const QByteArray json =
            "{'sources':['youtube','bandcamp'],"
            "'quality':{'floor':'mp3-320','losslessOnly':false,'bestQuality':true,'upgradeEnabled':true},"
            "'run':{'searchCount':5,'concurrency':4,'toleranceSec':5.5,'searchTimeoutSec':30,'cooloffHours':0.25},"
            "'ui':{'theme':'dark'},'outputDir':'/a/b','identity':{'enabled':true,'strict':false},'proxyEnabled':true}"_json;
        QCOMPARE(writeJSON(patch), json);
        QCOMPARE(readJSON<ConfigPatch>(json), patch);
        QCOMPARE(failureOf<ConfigPatch>("{'quality':{'floor':'any'}}"_json), u"quality.losslessOnly: missing"_s);
    }

    void theToolsReportIsStrict() {
        const QByteArray json =
            "{'ok':false,'tools':[{'id':'ffmpeg','name':'FFmpeg','status':'missing','detail':'Install it.'}]}"_json;
        const ProvisionToolsResult result = readJSON<ProvisionToolsResult>(json);
        QCOMPARE(result, (ProvisionToolsResult{false, {{u"ffmpeg"_s, u"FFmpeg"_s, u"missing"_s, u"Install it."_s}}}));
        QCOMPARE(writeJSON(result), json);
        QCOMPARE(failureOf<ProvisionToolsResult>("{'ok':true}"_json), u"tools: missing"_s);
        QCOMPARE(failureOf<ProvisionToolsResult>("{'tools':[]}"_json), u"ok: missing"_s);
        for (const char *key : {"id", "name", "status", "detail"}) {
            const JSONValue tool = toJSONValue(result.tools.front());
            const QString name = QString::fromLatin1(key);
            QCOMPARE(failureOf<ToolStatusDTO>(without(tool, {name}).json()), name + u": missing"_s);
        }
    }

    void theStepsOfAnInstallationAreTheirWords() {
        QStringList words;
        for (const ToolPhase phase : allCases<ToolPhase>())
            words.append(QString(wireName(phase)));
        QCOMPARE(words, (QStringList{u"download"_s, u"verify"_s, u"install"_s, u"done"_s, u"error"_s}));
        QCOMPARE(readJSON<ToolPhase>("\"install\""), ToolPhase::install);
        QCOMPARE(failureOf<ToolPhase>("\"installed\""), u"unknown value: installed"_s);
    }
};

QTEST_APPLESS_MAIN(TestConfig)
#include "tst_config.moc"
