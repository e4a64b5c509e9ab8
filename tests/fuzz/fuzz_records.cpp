// The reader and the writer of each record, and both ways into the reader. The input's first line names the record, the
// rest is what is read as one; a name that isn't known stands for one of them too.
#include "Fuzzing.h"

#include "Transport/JSONLineNode.h"
#include "Transport/WireRecords.h"

#include <array>

namespace zelk::fuzz {

namespace {

template<class T>
std::optional<T> fromLine(QByteArrayView json) {
    LineParser parser;
    JSONFailure failure;
    std::optional<T> record;
    const LineNode root = parser.parseCopy(json, failure);
    if (root.isAbsent() || !readNode(root, record.emplace(), failure)) {
        holds(!failure.reason().isEmpty(), "a failure has a reason");
        record.reset();
    }
    return record;
}

template<class T>
std::optional<T> fromValue(QByteArrayView json) {
    try {
        return readJSON<T>(json);
    } catch (const JSONError &failure) {
        holds(!failure.reason().isEmpty(), "an error has a reason");
        return std::nullopt;
    }
}

std::optional<JSONValue> parsed(QByteArrayView json) {
    try {
        return JSONValue::parse(json);
    } catch (const JSONError &) {
        return std::nullopt;
    }
}

/// Whether each number is one that a float says exactly: beyond that the two ways may differ.
bool isExact(const JSONValue &value) {
    if (const double *const number = value.asNumber())
        return std::abs(*number) < 0x1p53;
    if (const auto *const elements = value.asArray())
        return std::all_of(elements->cbegin(), elements->cend(), isExact);
    if (const auto *const members = value.asObject())
        return std::all_of(members->cbegin(), members->cend(), isExact);
    return true;
}

template<class T>
void check(QByteArrayView json) {
    const auto value = parsed(json);
    const auto line = fromLine<T>(json);
    const auto other = fromValue<T>(json);
    holds(value || (!line && !other), "what isn't JSON is no record");
    if (value && isExact(*value)) {
        holds(line == other, "a line and a value are read alike");
        holds(fromLine<T>(value->json()) == line, "the order of keys, and keys that come twice, make no difference");
    }
    if (line) {
        const QByteArray written = recordJSON(*line);
        holds(fromLine<T>(written) == line, "what is written reads back the same");
        holds(recordJSON(*fromLine<T>(written)) == written, "there is one way to write a record");
    }
    if (other)
        holds(readJSON<T>(recordJSON(*other)) == other, "what becomes a value reads back the same");
}

struct Reader {
    QByteArrayView name;
    void (*check)(QByteArrayView json);
};

#define ZELK_READER(Type) Reader{#Type, &check<Type>},
constexpr std::array readers = {
    ZELK_WIRE_RECORDS(ZELK_READER) Reader{"[PlaylistDTO]", &check<std::vector<PlaylistDTO>>},
    Reader{"[DoctorCheck]", &check<std::vector<DoctorCheck>>},
    Reader{"[PreviewTrackDTO]", &check<std::vector<PreviewTrackDTO>>}, Reader{"JSONValue", &check<JSONValue>}};
#undef ZELK_READER

const Reader &readerOf(QByteArrayView name) {
    for (const Reader &reader : readers) {
        if (reader.name == name)
            return reader;
    }
    return readers[name.isEmpty() ? 0 : static_cast<quint8>(name.front()) % readers.size()];
}

} // namespace

void fuzz(QByteArrayView input) {
    const auto end = input.indexOf('\n');
    if (end >= 0)
        readerOf(input.first(end)).check(input.sliced(end + 1));
}

} // namespace zelk::fuzz
