#include "Transport/WireTesting.h"

#include <cmath>
#include <limits>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

// Records of a library's own, as a store has them.
namespace {

struct Inner {
    QString name;
    bool operator==(const Inner &) const = default;
};
ZELK_JSON_FIELDS(Inner, name)

struct OwnResult {
    std::vector<Inner> list;
    std::optional<qint64> count;
    std::optional<Inner> best;
    bool operator==(const OwnResult &) const = default;
};
ZELK_JSON_FIELDS(OwnResult, list, count, best)

struct Nothing {
    bool operator==(const Nothing &) const = default;
};
ZELK_JSON_FIELDS(Nothing)

} // namespace

class TestJSON : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eachKindOfValueIsItsCase() {
        QCOMPARE(JSONValue::parse("true"), JSONValue::bool_(true));
        QCOMPARE(JSONValue::parse("false"), JSONValue::bool_(false));
        QCOMPARE(JSONValue::parse("1"), JSONValue::number(1));
        QCOMPARE(JSONValue::parse("\"1\""), JSONValue::string(u"1"_s));
        QCOMPARE(JSONValue::parse("null"), JSONValue::null);
        QCOMPARE(JSONValue::parse("[]"), JSONValue::array({}));
        QCOMPARE(JSONValue::parse("{}"), JSONValue::object({}));
        QVERIFY(JSONValue::parse("true").asBool());
        QVERIFY(!JSONValue::parse("true").asNumber());
        QVERIFY(JSONValue::parse("1").asNumber());
        QVERIFY(!JSONValue::parse("1").asBool());
        QVERIFY(JSONValue::parse("\"1\"").asString());
        QVERIFY(JSONValue::parse("[]").asArray());
        QVERIFY(JSONValue::parse("{}").asObject());
        QVERIFY(JSONValue::parse(" null ").isNull());
        QVERIFY(JSONValue().isNull());
    }

    void valuesOfDifferentCasesAreNeverEqual() {
        const QList<JSONValue> values{
            JSONValue::null,           JSONValue::bool_(false),       JSONValue::bool_(true),
            JSONValue::number(0),      JSONValue::number(1),          JSONValue::string(u""_s),
            JSONValue::string(u"1"_s), JSONValue::array({}),          JSONValue::object({}),
            JSONValue::parse("[1]"),   JSONValue::parse("{\"a\":1}"), JSONValue::parse("{\"a\":2}")};
        for (qsizetype i = 0; i < values.size(); ++i) {
            for (qsizetype j = 0; j < values.size(); ++j)
                QCOMPARE(values.at(i) == values.at(j), i == j);
        }
        QCOMPARE(JSONValue::parse("{'a':1,'b':2}"_json), JSONValue::parse("{'b':2,'a':1}"_json));
    }

    void aValueIsWrittenAsItWasRead_data() {
        QTest::addColumn<QByteArray>("json");
        for (const char *json :
             {"null", "true", "false", "0", "-1", "1.5", "\"\"", "\"a/b\"", "[]", "{}", "[[],{},null,\"x\"]",
              "{\"a\":{\"b\":[1,2,3]},\"c\":\"d\"}", "\"caf\xc3\xa9 \xf0\x9f\x8e\xa7\"", "{\"k\\\"\\\\\\n\":1}"})
            QTest::newRow(json) << QByteArray(json);
    }
    void aValueIsWrittenAsItWasRead() {
        QFETCH(QByteArray, json);
        QCOMPARE(JSONValue::parse(json).json(), json);
    }

    void whatIsNoJSONFailsToRead_data() {
        QTest::addColumn<QByteArray>("json");
        for (const char *json : {"",
                                 " ",
                                 "nul",
                                 "tru",
                                 "{",
                                 "[1,]",
                                 "1 2",
                                 "'a'",
                                 "\"a",
                                 "NaN",
                                 "Infinity",
                                 "01",
                                 "+1",
                                 ".5",
                                 "1.",
                                 "\"\\x\"",
                                 "\"\\ud800\"",
                                 "\"\\udc00\\ud800\"",
                                 "\xef\xbb\xbf{}",
                                 "\"a\nb\""})
            QTest::newRow(json) << QByteArray(json);
        QTest::newRow("not UTF-8") << QByteArray("\"\xff\"");
    }
    void whatIsNoJSONFailsToRead() {
        QFETCH(QByteArray, json);
        QVERIFY_THROWS_EXCEPTION(JSONError, JSONValue::parse(json));
    }

    void aNumberThatNothingHoldsIsUnsupported() {
        try {
            JSONValue::parse("[1e400]");
            QFAIL("1e400 was read");
        } catch (const JSONError &error) {
            QCOMPARE(error.reason(), u"Unsupported JSON value"_s);
        }
    }

    void numbersAreWrittenShortAndReadBackTheSame_data() {
        QTest::addColumn<double>("number");
        QTest::addColumn<QByteArray>("json");
        const auto row = [](double number, const char *json) { QTest::newRow(json) << number << QByteArray(json); };
        row(0, "0");
        row(3, "3");
        row(-3, "-3");
        row(1e15, "1000000000000000");
        row(9007199254740992, "9007199254740992");
        row(-9007199254740992, "-9007199254740992");
        row(0.1, "0.1");
        row(0.42, "0.42");
        row(1.0 / 3, "0.3333333333333333");
        row(634.5, "634.5");
        row(5e-324, "5e-324");
        row(std::numeric_limits<double>::max(), "1.7976931348623157e+308");
        row(1e22, "1e+22");
    }
    void numbersAreWrittenShortAndReadBackTheSame() {
        QFETCH(double, number);
        QFETCH(QByteArray, json);
        QCOMPARE(JSONValue::number(number).json(), json);
        QCOMPARE(*JSONValue::parse(json).asNumber(), number);
    }

    void anyFloatReadsBackTheSame() {
        quint64 bits = 88172645463325252u;
        for (int i = 0; i < 20'000; ++i) {
            bits ^= bits << 13;
            bits ^= bits >> 7;
            bits ^= bits << 17;
            double number;
            std::memcpy(&number, &bits, sizeof number);
            if (std::isfinite(number))
                QCOMPARE(*JSONValue::parse(JSONValue::number(number).json()).asNumber(), number);
        }
    }

    void aNumberThatIsNotFiniteIsNeverWritten() {
        for (const double number : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
                                    -std::numeric_limits<double>::infinity()}) {
            QVERIFY_THROWS_EXCEPTION(JSONError, JSONValue::number(number).json());
            QVERIFY_THROWS_EXCEPTION(JSONError, JSONValue::array({JSONValue::number(number)}).json());
        }
    }

    void integersOfAnySizeAreWrittenExactly() {
        JSONWriter writer;
        writer.beginArray();
        for (const qint64 number : {std::numeric_limits<qint64>::min(), qint64(-1), qint64(0), qint64(9007199254740993),
                                    std::numeric_limits<qint64>::max()})
            writer.integer(number);
        writer.endArray();
        QCOMPARE(writer.take(), "[-9223372036854775808,-1,0,9007199254740993,9223372036854775807]");
    }

    void textsAreEscapedOnlyWhereTheyMust_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("json");
        QTest::newRow("slash") << u"/a/b"_s << QByteArray("\"/a/b\"");
        QTest::newRow("quote and backslash") << u"\"\\"_s << QByteArray("\"\\\"\\\\\"");
        QTest::newRow("named controls") << u"\b\f\n\r\t"_s << QByteArray("\"\\b\\f\\n\\r\\t\"");
        QTest::newRow("other controls") << QString(QChar(1)) + QChar(0x1f) << QByteArray("\"\\u0001\\u001f\"");
        QTest::newRow("null") << QString(QChar(0)) << QByteArray("\"\\u0000\"");
        QTest::newRow("delete") << QString(QChar(0x7f)) << QByteArray("\"\x7f\"");
        QTest::newRow("beyond ASCII") << u"é夜🎧"_s << QByteArray("\"é夜🎧\"");
        QTest::newRow("line separators") << QString(QChar(0x2028)) << QByteArray("\"\xe2\x80\xa8\"");
        QTest::newRow("byte-order mark") << QString(QChar(0xfeff)) + u"a"_s
                                         << QByteArray("\"\xef\xbb\xbf"
                                                       "a\"");
    }
    void textsAreEscapedOnlyWhereTheyMust() {
        QFETCH(QString, text);
        QFETCH(QByteArray, json);
        QCOMPARE(JSONValue::string(text).json(), json);
        QCOMPARE(JSONValue::parse(json), JSONValue::string(text));
    }

    void aLoneSurrogateStillGivesALineThatReads() {
        const QString broken = u"a"_s + QChar(0xd83d) + u"b"_s;
        const JSONValue read = JSONValue::parse(JSONValue::string(broken).json());
        QVERIFY(read.asString());
        QCOMPARE(read.asString()->size(), 3);
        QVERIFY(read.asString()->startsWith(u'a') && read.asString()->endsWith(u'b'));
        QVERIFY(!read.asString()->at(1).isSurrogate());
    }

    void alreadyTheFirstOfEqualKeysCounts() {
        QCOMPARE(JSONValue::parse("{'a':1,'b':2,'a':3}"_json), JSONValue::parse("{'a':1,'b':2}"_json));
    }

    void keysOfAListsRecordsAreAllTheirOwn() {
        // Keys that are alike in length, start and end share a place in the memory of keys.
        QByteArray json = "[";
        JSONValue::Array expected;
        for (int i = 0; i < 500; ++i) {
            const QString key = u"k%1k"_s.arg(i, 3, 10, QLatin1Char('0'));
            json += (i ? ",{\"" : "{\"") + key.toUtf8() + "\":" + QByteArray::number(i) + ",\"\":0}";
            expected.append(JSONValue::object({{key, JSONValue::number(i)}, {u""_s, JSONValue::number(0)}}));
        }
        QCOMPARE(JSONValue::parse(json + "]"), JSONValue::array(expected));
    }

    void anIntegerFieldTakesWholeNumbersThatWereFloats_data() {
        QTest::addColumn<double>("number");
        QTest::addColumn<bool>("fits");
        QTest::newRow("3") << 3.0 << true;
        QTest::newRow("-3") << -3.0 << true;
        QTest::newRow("2^53") << 0x1p53 << true;
        QTest::newRow("beyond 2^53, not exact but carried") << 0x1p53 + 2 << true;
        QTest::newRow("-2^63") << -0x1p63 << true;
        QTest::newRow("2^63") << 0x1p63 << false;
        QTest::newRow("1e300") << 1e300 << false;
        QTest::newRow("0.5") << 0.5 << false;
        QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << false;
    }
    void anIntegerFieldTakesWholeNumbersThatWereFloats() {
        QFETCH(double, number);
        QFETCH(bool, fits);
        if (fits)
            QCOMPARE(double(readJSON<qint64>(JSONValue::number(number))), number);
        else
            QVERIFY_THROWS_EXCEPTION(JSONError, readJSON<qint64>(JSONValue::number(number)));
    }

    void aLibrarysOwnRecordIsReadAndWritten() {
        const OwnResult result =
            readJSON<OwnResult>("{'list':[{'name':'a'},{'name':'b','x':1}],'count':3.0,'new':[]}"_json);
        QCOMPARE(result, (OwnResult{{{u"a"_s}, {u"b"_s}}, 3, {}}));
        QCOMPARE(writeJSON(result), "{'list':[{'name':'a'},{'name':'b'}],'count':3}"_json);
        QCOMPARE(toJSONValue(result), JSONValue::parse("{'list':[{'name':'a'},{'name':'b'}],'count':3}"_json));
        QCOMPARE(readResult<std::vector<Inner>>(JSONValue::parse("[{'name':'a'}]"_json)).front().name, u"a"_s);
        QCOMPARE(readResult<QStringList>(JSONValue::parse("['a','b']"_json)), (QStringList{u"a"_s, u"b"_s}));
        QCOMPARE(readJSON<Nothing>("{'a':1}"_json), Nothing());
        QCOMPARE(writeJSON(Nothing()), "{}");
    }

    void absentAndNullAreBothNoValueAndNeverWritten() {
        const OwnResult absent = readJSON<OwnResult>("{'list':[]}"_json);
        const OwnResult null = readJSON<OwnResult>("{'list':[],'count':null,'best':null}"_json);
        QCOMPARE(absent, null);
        QCOMPARE(writeJSON(null), "{'list':[]}"_json);
    }

    void aFailureSaysWhere_data() {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("failure");
        const auto row = [](const QByteArray &json, const QString &failure) {
            QTest::newRow(json.constData()) << json << failure;
        };
        row("[]", u"expected an object, found a list"_s);
        row("null", u"expected an object, found null"_s);
        row("{}", u"list: missing"_s);
        row("{'list':null}"_json, u"list: expected a list, found null"_s);
        row("{'list':{}}"_json, u"list: expected a list, found an object"_s);
        row("{'list':[{'name':'a'},{}]}"_json, u"list[1].name: missing"_s);
        row("{'list':[{'name':'a'},{'name':1}]}"_json, u"list[1].name: expected text, found a number"_s);
        row("{'list':[7]}"_json, u"list[0]: expected an object, found a number"_s);
        row("{'list':[],'count':'1'}"_json, u"count: expected a whole number, found text"_s);
        row("{'list':[],'count':1.5}"_json, u"count: expected a whole number, found a number"_s);
        row("{'list':[],'count':false}"_json, u"count: expected a whole number, found true or false"_s);
        row("{'list':[],'best':{'name':[]}}"_json, u"best.name: expected text, found a list"_s);
    }
    void aFailureSaysWhere() {
        QFETCH(QByteArray, json);
        QFETCH(QString, failure);
        QCOMPARE(failureOf<OwnResult>(json), failure);
    }

    void aFailureHasAPathAndAReason() {
        const JSONError error(u"list[1].name"_s, u"missing"_s);
        QCOMPARE(error.path(), u"list[1].name"_s);
        QCOMPARE(error.reason(), u"missing"_s);
        QCOMPARE(QByteArray(error.what()), "list[1].name: missing");
        QCOMPARE(JSONError({}, u"missing"_s).description(), u"missing"_s);
        QVERIFY(error == JSONError(u"list[1].name"_s, u"missing"_s));
        QVERIFY(!(error == JSONError(u"list[1].name"_s, u"odd"_s)));
    }

    void aFailureFillsNothing() {
        OwnResult kept{{{u"a"_s}}, 1, Inner{u"b"_s}};
        const OwnResult before = kept;
        try {
            kept = readJSON<OwnResult>("{'list':[{'name':'x'}],'count':2,'best':{}}"_json);
            QFAIL("a record without its name was read");
        } catch (const JSONError &) {
        }
        QCOMPARE(kept, before);
    }

    void noResultIsReadAsNull() {
        QVERIFY_THROWS_EXCEPTION(JSONError, readResult<OwnResult>(std::nullopt));
        QCOMPARE(readResult<JSONValue>(std::nullopt), JSONValue::null);
        QCOMPARE(readResult<EmptyResult>(std::nullopt), EmptyResult());
    }

    void aTypesNameIsItsSimpleName() {
        QCOMPARE(jsonTypeName<PreviewTracksResult>(), u"PreviewTracksResult"_s);
        QCOMPARE(jsonTypeName<SafeConfig>(), u"SafeConfig"_s);
        QCOMPARE(jsonTypeName<SafeConfig::Quality>(), u"Quality"_s);
        QCOMPARE(jsonTypeName<OwnResult>(), u"OwnResult"_s);
        QCOMPARE(jsonTypeName<std::vector<PlaylistDTO>>(), u"Array<PlaylistDTO>"_s);
        QCOMPARE(jsonTypeName<QStringList>(), u"Array<String>"_s);
    }

    void aBoxIsAValueLikeAnyOther() {
        const Boxed<TrackMeta> full = TrackMeta{u"FLAC"_s, {}, {}};
        Boxed<TrackMeta> copy = full;
        QCOMPARE(copy, full);
        copy.emplace().format = u"MP3"_s;
        QVERIFY(!(copy == full));
        QCOMPARE(full->format.value(), u"FLAC"_s);
        copy = full;
        QCOMPARE(copy, full);
        copy = std::nullopt;
        QVERIFY(!copy);
        QVERIFY(!(copy == full));
        QCOMPARE(copy, Boxed<TrackMeta>());
        QCOMPARE(full.unboxed(), std::optional(TrackMeta{u"FLAC"_s, {}, {}}));
        QCOMPARE(copy.unboxed(), std::nullopt);
        QCOMPARE(Boxed<TrackMeta>(full.unboxed()), full);
    }
};

QTEST_APPLESS_MAIN(TestJSON)
#include "tst_json.moc"
