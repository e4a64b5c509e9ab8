#include "Transport/JSONLineNode.h"
#include "Transport/WireGenerator.h"
#include "Transport/WireRecords.h"
#include "Transport/WireTesting.h"

#include <QDirIterator>
#include <QRegularExpression>
#include <QSet>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int valuesEach = 300;
constexpr quint64 usualSeed = 20'240'229;

quint64 seed() {
    bool given = false;
    const quint64 number = qEnvironmentVariable("ZELK_SEED").toULongLong(&given);
    return given ? number : usualSeed;
}

// What doesn't hold of a value that was made; empty if all does.
using Problem = QString;

template<class T>
std::optional<T> readFromLine(const QByteArray &json) {
    LineParser parser;
    JSONFailure failure;
    std::optional<T> record;
    const LineNode root = parser.parseCopy(json, failure);
    if (root.isAbsent() || !readNode(root, record.emplace(), failure))
        record.reset();
    return record;
}

template<class T>
Problem problemWith(const T &value, bool exactly) {
    const QByteArray json = recordJSON(value);
    const auto read = readFromLine<T>(json);
    if (read != value)
        return u"reads from a line as another: "_s + QString::fromUtf8(json.left(1'000));
    if (recordJSON(*read) != json)
        return u"is written in another way the second time: "_s + QString::fromUtf8(json.left(1'000));
    if (exactly && !(readJSON<T>(json) == value))
        return u"reads from a value as another: "_s + QString::fromUtf8(json.left(1'000));
    if (!exactly)
        return {};
    const QByteArray line = encodedReply(u"r1"_s, JSONValue::parse(json));
    LineDecoder decoder;
    const auto reply = decoder.parse(PaddedLine(line).view()) ? decoder.response() : std::nullopt;
    if (!reply || !reply->ok || reply->id != u"r1"_s || !(readResult<T>(reply->result) == value))
        return u"reads from a reply as another: "_s + QString::fromUtf8(line.left(1'000));
    return {};
}

// Whether each field that may be absent has been both absent and there, so that both have been tried.
template<class T>
class OptionalsSeen {
public:
    void see(const T &value) {
        if constexpr (JSONRecord<T>) {
            std::size_t field = 0;
            const auto seeField = [&](const auto &member) {
                if constexpr (isJSONOptional<std::remove_cvref_t<decltype(member)>>)
                    (member ? _present : _absent).insert(field);
                else
                    (_present.insert(field), _absent.insert(field));
                _fields = std::max(_fields, ++field);
            };
            std::apply([&](const auto &...each) { (seeField(value.*each.member), ...); },
                       jsonFields(static_cast<const T *>(nullptr)));
        }
    }
    bool all() const { return std::size_t(_present.size()) == _fields && std::size_t(_absent.size()) == _fields; }

private:
    QSet<std::size_t> _present;
    QSet<std::size_t> _absent;
    std::size_t _fields = 0;
};

template<class T>
Problem firstProblem() {
    OptionalsSeen<T> seen;
    for (const bool exactly : {true, false}) {
        WireGenerator generator(seed(), exactly);
        for (int i = 0; i < valuesEach; ++i) {
            const T value = generator.make<T>();
            seen.see(value);
            if (const Problem problem = problemWith(value, exactly); !problem.isEmpty())
                return u"value %1 "_s.arg(i) + problem;
        }
    }
    return seen.all() ? Problem() : u"not every optional field has been tried absent and present"_s;
}

struct Record {
    const char *name;
    Problem (*firstProblem)();
};

#define ZELK_RECORD(Type) {#Type, &firstProblem<Type>},
const std::vector<Record> &records() {
    static const std::vector<Record> all = {
        ZELK_WIRE_RECORDS(ZELK_RECORD){"[PlaylistDTO]", &firstProblem<std::vector<PlaylistDTO>>},
        {"[PreviewTrackDTO]", &firstProblem<std::vector<PreviewTrackDTO>>},
        {"[DoctorCheck]", &firstProblem<std::vector<DoctorCheck>>},
        {"[String]", &firstProblem<QStringList>},
        {"JSONValue", &firstProblem<JSONValue>}};
    return all;
}
#undef ZELK_RECORD

// The types in the sources that have a form on the wire: by their list of fields, or by a reader of their own.
QSet<QString> namesInSources() {
    static const QRegularExpression form(u"^(?:ZELK_JSON_FIELDS\\(|bool readWire\\(const Node &\\w*, )([A-Z][\\w:]*)"_s,
                                         QRegularExpression::MultilineOption);
    QSet<QString> names;
    for (const char *folder : {"src", "engine"}) {
        QDirIterator files(QStringLiteral(ZELK_SOURCES "/") + QLatin1StringView(folder), {u"*.h"_s, u"*.cpp"_s},
                           QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            if (!file.open(QFile::ReadOnly))
                return {};
            const QString text = QString::fromUtf8(file.readAll());
            for (auto match = form.globalMatch(text); match.hasNext();)
                names.insert(match.next().captured(1));
        }
    }
    return names;
}

} // namespace

class TestWireProperties : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qInfo("made up from the seed %llu; ZELK_SEED sets another", seed()); }

    void noRecordIsForgotten() {
        QSet<QString> tried;
        for (const Record &record : records())
            tried.insert(QString::fromLatin1(record.name));
        const QSet<QString> present = namesInSources();
        QVERIFY(present.contains(u"ArtworkRef"_s) && present.contains(u"Response"_s));
        // Read and never written; and what the engine keeps in files of its own.
        const QSet<QString> elsewhere = {u"EmptyResult"_s, u"ConfigDocument"_s, u"PendingReview"_s};
        const QStringList forgotten = (present - tried - elsewhere).values();
        QVERIFY2(forgotten.isEmpty(), qPrintable(forgotten.join(u", "_s)));
        QVERIFY((elsewhere - present).isEmpty());
    }

    void everyRecordReadsBackAsItWasWritten_data() {
        QTest::addColumn<std::size_t>("index");
        for (std::size_t i = 0; i < records().size(); ++i)
            QTest::newRow(records()[i].name) << i;
    }

    void everyRecordReadsBackAsItWasWritten() {
        QFETCH(const std::size_t, index);
        const Problem problem = records()[index].firstProblem();
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
    }

    void everyEventReadsBackAsItWasWritten() {
        WireGenerator generator(seed(), false);
        QSet<std::size_t> cases;
        for (int i = 0; i < 10 * valuesEach; ++i) {
            const auto event = generator.make<ServerEvent>();
            cases.insert(event.value.index());
            const QByteArray line = event.encodedLine();
            QVERIFY(!line.contains('\n'));
            const auto read = eventOf(line);
            QVERIFY2(read == event, line.left(1'000).constData());
        }
        QCOMPARE(std::size_t(cases.size()), std::variant_size_v<ServerEvent::Value>);
    }

    void everyRequestReadsBackAsItWasWritten() {
        WireGenerator generator(seed(), false);
        QSet<std::size_t> cases;
        for (int i = 0; i < 10 * valuesEach; ++i) {
            const auto envelope = generator.make<RequestEnvelope>();
            cases.insert(envelope.request.value.index());
            const QByteArray line = envelope.request.encodedLine(envelope.id);
            QVERIFY(!line.contains('\n'));
            const auto read = readRequestLine(line);
            const auto *const same = std::get_if<RequestEnvelope>(&read);
            QVERIFY2(same && *same == envelope, line.left(1'000).constData());
        }
        QCOMPARE(std::size_t(cases.size()), std::variant_size_v<Request::Value>);
    }

    void everyRefusalReadsBackAsItWasWritten() {
        WireGenerator generator(seed(), false);
        for (int i = 0; i < valuesEach; ++i) {
            const auto id = generator.make<QString>();
            const auto code = generator.make<EngineErrorCode>();
            const auto message = generator.make<QString>();
            LineDecoder decoder;
            QVERIFY(decoder.parse(PaddedLine(encodedFailure(id, code, message)).view()));
            const Response expected{id, false, {}, Response::EngineErrorPayload{QString(wireName(code)), message, {}}};
            QVERIFY(decoder.response() == expected);
        }
    }

    // A text with half of a surrogate pair is no text. It must not take its line with it.
    void aLoneSurrogateCostsItselfOnly() {
        for (const char16_t half : {u'\xD83C', u'\xDFB5'}) {
            ServerEvent::Log log;
            log.message = u"a"_s + QChar(half) + u"b"_s;
            const auto read = eventOf<ServerEvent::Log>(ServerEvent(log).encodedLine());
            QVERIFY(read);
            QVERIFY(read->message.startsWith(u'a') && read->message.endsWith(u'b'));
            QCOMPARE(read->message.size(), 3);
        }
    }
};

QTEST_APPLESS_MAIN(TestWireProperties)
#include "tst_wireproperties.moc"
