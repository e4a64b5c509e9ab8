#include "Transport/WireTesting.h"

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

class TestLineDecoder : public QObject {
    Q_OBJECT

    // Each bad line of the fixtures, and what is said of it.
    static QMap<QString, QString> failures() {
        const QString notJSON = u"not JSON"_s; // what follows is the parser's own text
        return {
            {u"not-json"_s, notJSON},
            {u"cut-off"_s, notJSON},
            {u"two-documents"_s, notJSON},
            {u"list"_s, u"expected an object, found a list"_s},
            {u"byte-order-mark"_s, notJSON},
            {u"raw-control-character"_s, notJSON},
            {u"raw-tab"_s, notJSON},
            {u"lone-surrogate"_s, notJSON},
            {u"not-utf8"_s, notJSON},
            {u"overlong-utf8"_s, notJSON},
            {u"utf8-surrogate"_s, notJSON},
            {u"leading-zero"_s, u"Unsupported JSON value"_s},
            {u"single-quotes"_s, notJSON},
            {u"trailing-comma"_s, notJSON},
            {u"number-beyond-float"_s, u"Unsupported JSON value"_s},
            {u"without-event"_s, u"event: missing"_s},
            {u"event-null"_s, u"event: expected text, found null"_s},
            {u"event-number"_s, u"event: expected text, found a number"_s},
            {u"correlation-id-number"_s, u"correlationId: expected text, found a number"_s},
            {u"data-missing"_s, u"data: missing"_s},
            {u"data-null"_s, u"data: expected an object, found null"_s},
            {u"data-list"_s, u"data: expected an object, found a list"_s},
            {u"unknown-phase"_s, u"data.phase: unknown value: dancing"_s},
            {u"unknown-finish"_s, u"data.status: unknown value: lowConfidence"_s},
            {u"empty-summary"_s, u"data.runId: missing"_s},
            {u"summary-without-removed"_s, u"data.summary.removed: missing"_s},
            {u"required-null"_s, u"data.message: expected text, found null"_s},
            {u"number-as-text"_s, u"data.percent: expected a number, found text"_s},
            {u"text-as-number"_s, u"data.trackId: expected text, found a number"_s},
            {u"fraction-in-integer"_s, u"data.index: expected a whole number, found a number"_s},
            {u"bool-in-integer"_s, u"data.index: expected a whole number, found true or false"_s},
            {u"optional-of-wrong-type"_s, u"data.detail: expected text, found a list"_s},
            {u"artwork-without-kind"_s, u"data.tracks[1].artwork.kind: missing"_s},
            {u"mosaic-with-number"_s, u"data.tracks[0].artwork.trackIds[1]: expected text, found a number"_s},
            {u"best-without-url"_s, u"data.best.url: missing"_s},
            {u"candidates-missing"_s, u"data.candidates: missing"_s},
        };
    }

private Q_SLOTS:
    void aBadLineIsNothingAndSaysWhy_data() {
        QTest::addColumn<QString>("failure");
        const QMap<QString, QString> failures = TestLineDecoder::failures();
        for (auto each = failures.cbegin(); each != failures.cend(); ++each)
            QTest::newRow(qPrintable(each.key())) << each.value();
    }
    void aBadLineIsNothingAndSaysWhy() {
        QFETCH(QString, failure);
        const QByteArray line = wireFixture(u"undecodable/%1.json"_s.arg(QLatin1StringView(QTest::currentDataTag())));
        QVERIFY(!line.isEmpty());
        LineDecoder decoder;
        decoder.parse(PaddedLine(line).view());
        QVERIFY(!decoder.response());
        QVERIFY(!decoder.event());
        QCOMPARE(decoder.failure().left(failure == u"not JSON"_s ? failure.size() : -1), failure);
        // The next line is none the worse for it.
        QVERIFY(decoder.parse(PaddedLine("{\"event\":\"comet\"}").view()));
        QVERIFY(decoder.event());
    }

    void everyBadLineOfTheFixturesIsInTheTable() {
        QStringList names;
        for (const QString &file : wireFixtures(u"undecodable"_s))
            names.append(file.chopped(5));
        QCOMPARE(failures().keys(), names);
    }

    void anEmptyLineIsNothing() {
        LineDecoder decoder;
        for (const char *line : {"", " ", "\t \r"}) {
            QVERIFY(!decoder.parse(PaddedLine(line).view()));
            QVERIFY(!decoder.response());
            QVERIFY(!decoder.event());
        }
    }

    void beforeTheFirstLineThereIsNothing() {
        LineDecoder decoder;
        QVERIFY(!decoder.response());
        QVERIFY(!decoder.event());
    }

    void aReplyIsWhatHasIdAndOkOfTheRightTypes_data() {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<bool>("isReply");
        QTest::newRow("bare") << "{'id':'r1','ok':true}"_json << true;
        QTest::newRow("result") << "{'id':'r1','ok':true,'result':{'a':1}}"_json << true;
        QTest::newRow("result null") << "{'id':'r1','ok':true,'result':null}"_json << true;
        QTest::newRow("error null") << "{'id':'r1','ok':true,'error':null}"_json << true;
        QTest::newRow("failure") << "{'id':'r1','ok':false,'error':{'code':'c','message':'m'}}"_json << true;
        QTest::newRow("failure without error") << "{'id':'r1','ok':false}"_json << true;
        QTest::newRow("keys in another order") << "{'x':0,'result':[1],'ok':true,'id':'r1'}"_json << true;
        QTest::newRow("without id") << "{'ok':true}"_json << false;
        QTest::newRow("without ok") << "{'id':'r1'}"_json << false;
        QTest::newRow("id a number") << "{'id':1,'ok':true}"_json << false;
        QTest::newRow("id null") << "{'id':null,'ok':true}"_json << false;
        QTest::newRow("ok a number") << "{'id':'r1','ok':1}"_json << false;
        QTest::newRow("ok text") << "{'id':'r1','ok':'true'}"_json << false;
        QTest::newRow("error without code") << "{'id':'r1','ok':false,'error':{'message':'m'}}"_json << false;
        QTest::newRow("error without message") << "{'id':'r1','ok':false,'error':{'code':'c'}}"_json << false;
        QTest::newRow("error a text") << "{'id':'r1','ok':false,'error':'m'}"_json << false;
        QTest::newRow("an event") << "{'event':'log','data':{'level':'info','message':'m'}}"_json << false;
    }
    void aReplyIsWhatHasIdAndOkOfTheRightTypes() {
        QFETCH(QByteArray, line);
        QFETCH(bool, isReply);
        LineDecoder decoder;
        QVERIFY(decoder.parse(PaddedLine(line).view()));
        QCOMPARE(decoder.response().has_value(), isReply);
    }

    void aReplyCarriesItsResultOrItsError() {
        LineDecoder decoder;
        decoder.parse(PaddedLine("{'id':'r7','ok':true,'result':{'list':[1,'a',null]}}"_json).view());
        const Response success = decoder.response().value();
        QCOMPARE(success.id, u"r7"_s);
        QVERIFY(success.ok);
        QCOMPARE(success.result.value(), JSONValue::parse("{'list':[1,'a',null]}"_json));
        QVERIFY(!success.error);

        decoder.parse(PaddedLine("{'id':'r8','ok':true,'result':null}"_json).view());
        QCOMPARE(decoder.response().value().result, std::nullopt);

        decoder.parse(
            PaddedLine("{'id':'r9','ok':false,'error':{'code':'no_tea','message':'Out.','data':[1]}}"_json).view());
        const Response failure = decoder.response().value();
        QVERIFY(!failure.ok);
        QCOMPARE(failure.error.value().code, u"no_tea"_s);
        QCOMPARE(failure.error.value().message, u"Out."_s);
        QCOMPARE(failure.error.value().data.value(), JSONValue::parse("[1]"));
    }

    void aReplyThatNobodyWaitsForIsNoEventEither() {
        LineDecoder decoder;
        QVERIFY(decoder.parse(PaddedLine("{'id':'r1','ok':true,'result':{}}"_json).view()));
        QVERIFY(decoder.response());
        QVERIFY(!decoder.event());
        QCOMPARE(decoder.failure(), u"event: missing"_s);
    }

    void aLineMayBeBothAReplyAndAnEvent() {
        LineDecoder decoder;
        QVERIFY(decoder.parse(PaddedLine("{'id':'r1','ok':true,'event':'comet','data':7}"_json).view()));
        QVERIFY(decoder.response());
        QCOMPARE(decoder.event().value(), ServerEvent(ServerEvent::Unknown{u"comet"_s, JSONValue::number(7)}));
    }

    void ofEqualKeysTheFirstIsTaken() {
        const auto step = eventOf<ServerEvent::Step>(
            "{'event':'step','event':'log','data':{'trackId':'a','trackId':'b','phase':'tagging','trackId':'c'},'data':{}}"_json);
        QVERIFY(step);
        QCOMPARE(step->trackId, u"a"_s);
        QCOMPARE(step->phase, Phase::tagging);

        // Also where the keys are out of order and the first lies before or behind others.
        const auto started = eventOf<ServerEvent::TrackStarted>(
            "{'data':{'label':'l','x':0,'index':1,'trackId':'a','label':'m','index':2},'data':0,'event':'trackStarted'}"_json);
        QVERIFY(started);
        QCOMPARE(started->label, u"l"_s);
        QCOMPARE(started->index, 1);

        const auto unknown = eventOf<ServerEvent::Unknown>("{'event':'comet','data':{'a':1,'a':2}}"_json);
        QVERIFY(unknown);
        QCOMPARE(unknown->raw, JSONValue::parse("{'a':1}"_json));
    }

    void keysInAnyOrderGiveTheSameEvent() {
        const auto expected = eventOf(
            "{'event':'downloadProgress','correlationId':'r','data':{'trackId':'t','percent':1,'sizeText':'s','speedText':'v'}}"_json);
        QVERIFY(expected);
        QStringList keys{u"\"trackId\":\"t\""_s, u"\"percent\":1"_s, u"\"sizeText\":\"s\""_s, u"\"speedText\":\"v\""_s};
        std::sort(keys.begin(), keys.end());
        int orders = 0;
        do {
            const QString line =
                u"{\"data\":{\"new\":{\"deep\":[{}]},%1},\"event\":\"downloadProgress\",\"correlationId\":\"r\"}"_s;
            QCOMPARE(eventOf(line.arg(keys.join(u',')).toUtf8()), expected);
            ++orders;
        } while (std::next_permutation(keys.begin(), keys.end()));
        QCOMPARE(orders, 24);
    }

    void aWholeNumberWrittenAsAFloatFillsAnInteger_data() {
        QTest::addColumn<QByteArray>("number");
        QTest::addColumn<bool>("fits");
        QTest::addColumn<qint64>("integer");
        const auto row = [](const char *number, bool fits, qint64 integer = 0) {
            QTest::newRow(number) << QByteArray(number) << fits << integer;
        };
        row("3", true, 3);
        row("-3", true, -3);
        row("3.0", true, 3);
        row("3e0", true, 3);
        row("3E+2", true, 300);
        row("30e-1", true, 3);
        row("-0.0", true, 0);
        row("9007199254740992.0", true, 9007199254740992);
        row("9007199254740994.0", false);
        row("1e300", false);
        row("3.5", false);
        row("1e-1", false);
        row("9223372036854775807", true, std::numeric_limits<qint64>::max());
        row("-9223372036854775808", true, std::numeric_limits<qint64>::min());
        row("9223372036854775808", false);
        row("18446744073709551615", false);
        row("18446744073709551616", false);
        row("-9223372036854775809", false);
    }
    void aWholeNumberWrittenAsAFloatFillsAnInteger() {
        QFETCH(QByteArray, number);
        QFETCH(bool, fits);
        QFETCH(qint64, integer);
        const auto event = eventOf<ServerEvent::TrackStarted>(
            "{'event':'trackStarted','data':{'trackId':'t','index':"_json + number + ",'label':'l'}}"_json);
        QCOMPARE(event.has_value(), fits);
        if (event)
            QCOMPARE(event->index, integer);
    }

    void anyNumberFillsAFloat_data() {
        QTest::addColumn<QByteArray>("number");
        QTest::addColumn<double>("value");
        const auto row = [](const char *number, double value) { QTest::newRow(number) << QByteArray(number) << value; };
        row("3", 3);
        row("-3", -3);
        row("0.1", 0.1);
        row("1e-7", 1e-7);
        row("9223372036854775808", 9223372036854775808.0);
        row("18446744073709551615", 18446744073709551615.0);
        row("18446744073709551616", 18446744073709551616.0);
        row("-9223372036854775809", -9223372036854775809.0);
        row("123456789012345678901234567890", 123456789012345678901234567890.0);
    }
    void anyNumberFillsAFloat() {
        QFETCH(QByteArray, number);
        QFETCH(double, value);
        const auto event = eventOf<ServerEvent::DownloadProgress>(
            "{'event':'downloadProgress','data':{'trackId':'t','percent':"_json + number + "}}");
        QVERIFY(event);
        QCOMPARE(event->percent, value);
    }

    void aNumberBeyond64BitsCostsNothingElseOnTheLine() {
        // Its digits in a text, a number just within the bounds beside it, and the escapes around it stay what they
        // are.
        const auto event = eventOf<ServerEvent::Unknown>(
            "{\"event\":\"comet\",\"data\":[18446744073709551616,\"18446744073709551616\\\"\",-18446744073709551616,"
            "9007199254740993,1.5,\"\\\\\"]}");
        QVERIFY(event);
        const JSONValue::Array values{JSONValue::number(18446744073709551616.0),
                                      JSONValue::string(u"18446744073709551616\""_s),
                                      JSONValue::number(-18446744073709551616.0),
                                      JSONValue::number(9007199254740993.0),
                                      JSONValue::number(1.5),
                                      JSONValue::string(u"\\"_s)};
        QCOMPARE(event->raw, JSONValue::array(values));

        LineDecoder decoder;
        QVERIFY(decoder.parse(PaddedLine("{'id':'r1','ok':true,'result':18446744073709551616}"_json).view()));
        QCOMPARE(decoder.response().value().result.value(), JSONValue::number(18446744073709551616.0));

        // In a field that the record doesn't know it is nobody's business.
        QVERIFY(eventOf("{'event':'log','data':{'level':'info','message':'m','huge':99999999999999999999999}}"_json));
    }

    void aHugeNumberDoesntMakeABadLineGood() {
        QVERIFY(!eventOf("{'event':'comet','data':[18446744073709551616,'\\ud800']}"_json));
        QVERIFY(!eventOf("{'event':'comet','data':[18446744073709551616,07]}"_json));
        QVERIFY(!eventOf("{'event':'comet','data':[18446744073709551616"_json));
        QVERIFY(!eventOf("{'event':'comet','data':[1"_json + QByteArray(400, '0') + "]}"));
    }

    void textsArriveAsTheyWereSent_data() {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *name, const QByteArray &json, const QString &text) {
            QTest::newRow(name) << json << text;
        };
        row("empty", "", u""_s);
        for (int size = 1; size <= 70; ++size) {
            const QByteArray ascii = QByteArray("abcdefghijklmnopqrstuvwxyz0123456789 ,.-").repeated(2).left(size);
            row(("ascii " + QByteArray::number(size)).constData(), ascii, QString::fromLatin1(ascii));
            row(("and a last letter " + QByteArray::number(size)).constData(), ascii + "\xc3\xa9",
                QString::fromLatin1(ascii) + u"é"_s);
        }
        row("two bytes", "caf\xc3\xa9", u"café"_s);
        row("three bytes", "\xe5\xa4\x9c", u"夜"_s);
        row("four bytes", "\xf0\x9f\x8e\xa7", u"🎧"_s);
        row("escaped pair", "\\ud83c\\udfa7", u"🎧"_s);
        row("escapes", "\\\"\\\\\\/\\b\\f\\n\\r\\t\\u00e9", u"\"\\/\b\f\n\r\té"_s);
        row("escaped null", "a\\u0000b", QString::fromUtf16(u"a\0b", 3));
        row("byte-order mark first",
            "\xef\xbb\xbf"
            "a",
            QChar(0xFEFF) + u"a"_s);
        row("byte-order mark within", "a\xef\xbb\xbf", u"a"_s + QChar(0xFEFF));
        row("delete", "\x7f", u"\x7f"_s);
    }
    void textsArriveAsTheyWereSent() {
        QFETCH(QByteArray, json);
        QFETCH(QString, text);
        // The id goes through the shared texts, the label doesn't.
        const QByteArray line =
            "{'event':'trackStarted','data':{'trackId':'"_json + json + "','index':0,'label':'"_json + json + "\"}}";
        LineDecoder decoder;
        for (int time = 0; time < 2; ++time) {
            QVERIFY(decoder.parse(PaddedLine(line).view()));
            const std::optional<ServerEvent> event = decoder.event();
            QVERIFY(event);
            const auto *started = caseOf<ServerEvent::TrackStarted>(*event);
            QCOMPARE(started->trackId, text);
            QCOMPARE(started->label, text);
            // Enumerated texts and plain JSON come to the same.
            QCOMPARE(JSONValue::parse("\"" + json + "\""), JSONValue::string(text));
        }
    }

    void sharedTextsAreNeverMixedUp() {
        // Far more ids than are kept, alike in length, start and end.
        LineDecoder decoder;
        for (int round = 0; round < 3; ++round) {
            for (int i = 0; i < 5000; ++i) {
                const QString id = u"spotify:%1:playlist#0"_s.arg(i, 6, 10, QLatin1Char('0'));
                const QByteArray line =
                    "{\"event\":\"step\",\"data\":{\"trackId\":\"" + id.toUtf8() + "\",\"phase\":\"tagging\"}}";
                QVERIFY(decoder.parse(PaddedLine(line).view()));
                const std::optional<ServerEvent> event = decoder.event();
                QCOMPARE(caseOf<ServerEvent::Step>(event.value())->trackId, id);
            }
        }
    }

    void shortIdsAreNeverMixedUp() {
        LineDecoder decoder;
        const QStringList ids{u"a"_s,       u"b"_s,        u"ab"_s,        u"ba"_s, u"abc"_s,
                              u"abcdefg"_s, u"abcdefgh"_s, u"abcdefghi"_s, u""_s};
        for (int round = 0; round < 3; ++round) {
            for (const QString &id : ids) {
                const QByteArray line =
                    "{\"event\":\"step\",\"data\":{\"trackId\":\"" + id.toUtf8() + "\",\"phase\":\"tagging\"}}";
                QVERIFY(decoder.parse(PaddedLine(line).view()));
                const std::optional<ServerEvent> event = decoder.event();
                QCOMPARE(caseOf<ServerEvent::Step>(event.value())->trackId, id);
            }
        }
    }

    void anEventOutlivesItsLineAndTheDecoder() {
        std::optional<ServerEvent> event;
        {
            LineDecoder decoder;
            decoder.parse(PaddedLine(wireFixture(u"event/needsReview.json"_s)).view());
            event = decoder.event();
            decoder.parse(PaddedLine(wireFixture(u"event/step.json"_s)).view());
            QVERIFY(decoder.event());
        }
        QCOMPARE(event, eventOf(wireFixture(u"event/needsReview.json"_s)));
    }

    void linesOfAnySizeFollowOneAnother() {
        LineDecoder decoder;
        for (const int size : {10, 5'000, 100, 3'000'000, 10, 70'000, 1'200'000, 1}) {
            const QByteArray message(size, 'm');
            QVERIFY(decoder.parse(
                PaddedLine("{\"event\":\"log\",\"data\":{\"level\":\"info\",\"message\":\"" + message + "\"}}")
                    .view()));
            const std::optional<ServerEvent> event = decoder.event();
            QCOMPARE(caseOf<ServerEvent::Log>(event.value())->message, QString::fromLatin1(message));
        }
    }

    void aLineNestedTooDeepIsUndecodable() {
        const auto nested = [](int depth) {
            return "{'event':'comet','data':"_json + QByteArray(depth, '[') + QByteArray(depth, ']') + "}";
        };
        QVERIFY(eventOf(nested(900)));
        QVERIFY(!eventOf(nested(2000)));
        QVERIFY(!eventOf(nested(200'000)));
    }

    void aDecoderCanBeMoved() {
        LineDecoder first;
        QVERIFY(first.parse(PaddedLine("{'event':'comet'}"_json).view()));
        LineDecoder second = std::move(first);
        QVERIFY(second.event());
    }
};

QTEST_APPLESS_MAIN(TestLineDecoder)
#include "tst_linedecoder.moc"
