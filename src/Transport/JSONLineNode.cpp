#include "Transport/JSONLineNode.h"

#include <array>
#include <charconv>
#include <cmath>

namespace zelk {

namespace {

constexpr std::size_t smallLine = 4 * 1024;
constexpr std::size_t ordinaryLine = 64 * 1024;
constexpr std::size_t hugeLine = 1024 * 1024;

// The keys of a list of records are the same few texts over and over: they share one QString each.
class SharedKeys {
public:
    const QString &key(std::string_view utf8) {
        const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(utf8[i]); };
        Slot &slot = _slots[utf8.empty() ? 0 : (utf8.size() * 7 + byte(0) + byte(utf8.size() - 1) * 3) % _slots.size()];
        if (slot.utf8 != utf8 || slot.key.isNull())
            slot = {utf8, textOfValidUtf8(utf8)};
        return slot.key;
    }

private:
    struct Slot {
        std::string_view utf8;
        QString key;
    };
    std::array<Slot, 64> _slots;
};

JSONValue valueOf(const LineNode &node, SharedKeys &keys) {
    std::string_view text;
    if (node.text(text))
        return JSONValue::string(textOfValidUtf8(text));
    if (node.isObject()) {
        JSONValue::Object object;
        node.forEachMember([&](std::string_view key, const LineNode &member) {
            const QString name = keys.key(key); // a copy: the members below may take its slot
            if (!object.contains(name))
                object.insert(name, valueOf(member, keys));
        });
        return JSONValue::object(std::move(object));
    }
    if (node.isArray()) {
        JSONValue::Array array;
        array.reserve(static_cast<qsizetype>(node.count()));
        node.forEach([&](const LineNode &element) {
            array.append(valueOf(element, keys));
            return true;
        });
        return JSONValue::array(std::move(array));
    }
    if (double number = 0; node.read(number))
        return JSONValue::number(number);
    if (bool boolean = false; node.read(boolean))
        return JSONValue::bool_(boolean);
    return {};
}

// The text with ".0" behind each whole number that 64 bits can't hold, which makes a float of it; empty if it has none.
QByteArray withHugeIntegersAsFloats(std::string_view json) {
    QByteArray result;
    std::size_t copied = 0;
    bool inString = false;
    for (std::size_t i = 0; i < json.size(); ++i) {
        if (json[i] == '\\' && inString) {
            ++i;
        } else if (json[i] == '"') {
            inString = !inString;
        } else if (!inString && (json[i] == '-' || (json[i] >= '0' && json[i] <= '9'))) {
            const std::size_t end = std::min(json.find_first_not_of("+-.0123456789eE", i), json.size());
            const std::string_view number = json.substr(i, end - i);
            i = end - 1;
            if (number.find_first_of(".eE") != std::string_view::npos)
                continue;
            std::uint64_t natural = 0;
            std::int64_t integer = 0;
            const auto *last = number.data() + number.size();
            const auto parsed = number.front() == '-' ? std::from_chars(number.data(), last, integer)
                                                      : std::from_chars(number.data(), last, natural);
            if (parsed.ec != std::errc::result_out_of_range)
                continue;
            result.append(json.data() + copied, static_cast<qsizetype>(end - copied)).append(".0");
            copied = end;
        }
    }
    if (!result.isEmpty())
        result.append(json.data() + copied, static_cast<qsizetype>(json.size() - copied));
    return result;
}

} // namespace

QLatin1StringView LineNode::kind() const {
    switch (type()) {
    case '"':
        return QLatin1StringView("text");
    case '{':
        return QLatin1StringView("an object");
    case '[':
        return QLatin1StringView("a list");
    case 't':
    case 'f':
        return QLatin1StringView("true or false");
    case 'n':
        return QLatin1StringView("null");
    default:
        return QLatin1StringView("a number");
    }
}

JSONValue LineNode::toValue() const {
    SharedKeys keys;
    return valueOf(*this, keys);
}

bool LineNode::readWholeNumber(double &out) const {
    if (type() == 'l')
        out = static_cast<double>(payload<std::int64_t>());
    else if (type() == 'u')
        out = static_cast<double>(payload<std::uint64_t>());
    else
        return false;
    return true;
}

// A whole number may be written as a float, 3.0 or 3e0. Beyond 2^53 a float no longer says which integer it means.
bool LineNode::readWholeFloat(qint64 &out) const {
    if (type() != 'd')
        return false;
    const auto number = payload<double>();
    if (!(std::abs(number) <= 0x1p53) || std::trunc(number) != number)
        return false;
    out = static_cast<qint64>(number);
    return true;
}

simdjson::error_code LineParser::reserve(std::size_t size) {
    // The parser's memory is ten times the longest line it has seen: grow in few steps, and give back what a huge line
    // took.
    const std::size_t capacity = _parser.doc.capacity();
    if (size > capacity) {
        const std::size_t grown = std::max({smallLine, size, std::min(2 * capacity, size + hugeLine)});
        if (const auto error = _parser.allocate(grown))
            return error;
        return _parser.doc.allocate(grown);
    }
    if (capacity > hugeLine && size <= ordinaryLine) {
        _parser = simdjson::dom::parser();
        return reserve(ordinaryLine);
    }
    return simdjson::SUCCESS;
}

LineNode LineParser::parse(QByteArrayView json, JSONFailure &failure) {
    const auto size = static_cast<std::size_t>(json.size());
    simdjson::dom::element root;
    auto error = reserve(size);
    if (!error)
        error = _parser.parse(json.data(), size, false).get(root);
    if (error == simdjson::NUMBER_ERROR) {
        if (const QByteArray floats = withHugeIntegersAsFloats({json.data(), size}); !floats.isEmpty())
            return parseCopy(floats, failure);
    }
    if (!error) {
        _tape.words = _parser.doc.tape.get();
        _tape.texts = _parser.doc.string_buf.get();
        return {_tape, _tape.words + 1};
    }
    if (error == simdjson::NUMBER_ERROR)
        failure.because(QLatin1StringView("Unsupported JSON value"));
    else
        failure.because(QLatin1StringView("not JSON: "), QString::fromLatin1(simdjson::error_message(error)));
    return {};
}

LineNode LineParser::parseCopy(QByteArrayView json, JSONFailure &failure) {
    _copy.resize(json.size() + static_cast<qsizetype>(simdjson::SIMDJSON_PADDING));
    std::copy(json.begin(), json.end(), _copy.begin());
    return parse(QByteArrayView(_copy).first(json.size()), failure);
}

} // namespace zelk
