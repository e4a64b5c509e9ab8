#pragma once

#include "Transport/JSONError.h"
#include "Transport/JSONFields.h"
#include "Transport/JSONValue.h"

#include <cmath>
#include <cstring>
#include <string_view>

namespace zelk {

// What readers read from: a place in a parsed JSON line (LineNode) or in a JSONValue (ValueNode). Readers are templates
// over it, so each record has one reader for both ways in. A node may be absent; nothing but isAbsent() may then be
// asked.
//
//   isAbsent(), isNull(), isObject(), isArray(); kind(): what it is, in words, for messages
//   text(view): its text, as a QStringView or a std::string_view of UTF-8, when it is text
//   read(bool &), read(qint64 &), read(double &), read(QString &): false when it is of another type or doesn't fit
//   readShared(QString &): the same as read, for a text that is likely to come again
//   members(): a cursor whose find(key) gives a member's node, the first of equal keys, absent when there is none
//   count() and forEach(function(node) -> bool): the elements of a list, until the function returns false
//   toValue(): the whole as a JSONValue
class ValueNode {
public:
    ValueNode() = default;
    explicit ValueNode(const JSONValue &value) : _value(&value) {}

    bool isAbsent() const { return !_value; }
    bool isNull() const { return _value->isNull(); }
    bool isObject() const { return _value->asObject(); }
    bool isArray() const { return _value->asArray(); }
    QLatin1StringView kind() const;

    bool text(QStringView &out) const {
        const QString *text = _value->asString();
        if (text)
            out = *text;
        return text;
    }
    bool read(bool &out) const { return copy(_value->asBool(), out); }
    bool read(double &out) const { return copy(_value->asNumber(), out); }
    bool read(QString &out) const { return copy(_value->asString(), out); }
    bool readShared(QString &out) const { return read(out); }
    bool read(qint64 &out) const {
        // Each number of a JSONValue has been through a float, so only its being whole and in range can be asked.
        const double *number = _value->asNumber();
        if (!number || !(*number >= -0x1p63 && *number < 0x1p63) || std::trunc(*number) != *number)
            return false;
        out = static_cast<qint64>(*number);
        return true;
    }

    class Members {
    public:
        explicit Members(const JSONValue::Object &object) : _object(object) {}
        ValueNode find(QLatin1StringView key) const {
            for (auto member = _object.cbegin(); member != _object.cend(); ++member) {
                if (member.key() == key)
                    return ValueNode(member.value());
            }
            return {};
        }

    private:
        const JSONValue::Object &_object;
    };
    Members members() const { return Members(*_value->asObject()); }

    std::size_t count() const { return static_cast<std::size_t>(_value->asArray()->size()); }
    template<class Function>
    bool forEach(Function function) const {
        for (const JSONValue &element : *_value->asArray()) {
            if (!function(ValueNode(element)))
                return false;
        }
        return true;
    }
    JSONValue toValue() const { return *_value; }

private:
    template<class T>
    static bool copy(const T *from, T &out) {
        if (from)
            out = *from;
        return from;
    }
    const JSONValue *_value = nullptr;
};

template<class Node, class T>
bool readNode(const Node &node, T &out, JSONFailure &failure);

namespace detail {

// Where the text of a node goes before it is compared.
template<class Node>
using NodeText = std::conditional_t<std::is_same_v<Node, ValueNode>, QStringView, std::string_view>;

inline QString toQString(QStringView text) {
    return text.toString();
}
inline QString toQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline bool sameText(QStringView text, QLatin1StringView name) {
    return text == name;
}
// With a name that the compiler knows this is a comparison of words.
Q_ALWAYS_INLINE bool sameText(std::string_view text, QLatin1StringView name) {
    const auto size = static_cast<std::size_t>(name.size());
    return text.size() == size && std::memcmp(text.data(), name.data(), size) == 0;
}

template<class Node, class Enum>
bool readEnum(const Node &node, Enum &out, JSONFailure &failure) {
    NodeText<Node> text;
    if (!node.text(text))
        return failure.expected(QLatin1StringView("text"), node.kind());
    const bool known = [&]<std::size_t... index>(std::index_sequence<index...>) {
        return ((sameText(text, wireName(static_cast<Enum>(index))) && (out = static_cast<Enum>(index), true)) || ...);
    }(std::make_index_sequence<caseCount<Enum>>());
    return known || failure.because(QLatin1StringView("unknown value: "), toQString(text));
}

template<class Node, class List>
bool readList(const Node &node, List &out, JSONFailure &failure) {
    if (!node.isArray())
        return failure.expected(QLatin1StringView("a list"), node.kind());
    out.reserve(static_cast<typename List::size_type>(node.count()));
    qsizetype index = 0;
    return node.forEach([&](const Node &element) {
        if (!readNode(element, out.emplace_back(), failure))
            return failure.at(index);
        ++index;
        return true;
    });
}

// Whether a field's text is one of a few that come again and again in a run's lines: then a line's reader shares it.
consteval bool comesAgain(QLatin1StringView key) {
    const std::string_view name(key.data(), static_cast<std::size_t>(key.size()));
    for (const std::string_view each :
         {"trackId", "playlistId", "runId", "detail", "format", "bitrate", "source", "channel", "reason"}) {
        if (name == each)
            return true;
    }
    return false;
}

template<bool shared, class Node, class T>
Q_ALWAYS_INLINE bool readFieldValue(const Node &node, T &out, JSONFailure &failure) {
    if constexpr (shared && std::is_same_v<T, QString>)
        return node.readShared(out) || failure.expected(QLatin1StringView("text"), node.kind());
    else
        return readNode(node, out, failure);
}

template<bool shared, class Members, class Record, class Member>
Q_ALWAYS_INLINE bool readField(Members &members, const JSONField<Record, Member> &field, Record &out,
                               JSONFailure &failure) {
    const auto node = members.find(field.key);
    if constexpr (isJSONOptional<Member>) {
        if (node.isAbsent() || node.isNull())
            return true;
        return readFieldValue<shared>(node, (out.*field.member).emplace(), failure) || failure.under(field.key);
    } else {
        if (node.isAbsent())
            return failure.missing(field.key);
        return readFieldValue<shared>(node, out.*field.member, failure) || failure.under(field.key);
    }
}

// The fields are compile-time constants at each step, so that comparing a key costs a few instructions.
template<class Node, class Record>
bool readRecord(const Node &node, Record &out, JSONFailure &failure) {
    if (!node.isObject())
        return failure.expected(QLatin1StringView("an object"), node.kind());
    static constexpr auto fields = jsonFields(static_cast<const Record *>(nullptr));
    [[maybe_unused]] auto members = node.members();
    return [&]<std::size_t... index>(std::index_sequence<index...>) {
        return (readField<comesAgain(std::get<index>(fields).key)>(members, std::get<index>(fields), out, failure) &&
                ...);
    }(std::make_index_sequence<std::tuple_size_v<decltype(fields)>>());
}

} // namespace detail

template<class Node, class T>
concept HandReadJSON = requires(const Node &node, T &out, JSONFailure &failure) {
    { readWire(node, out, failure) } -> std::same_as<bool>;
};

// Reads a node into a fresh value. On failure returns false and notes why; `out` is then to be thrown away.
template<class Node, class T>
bool readNode(const Node &node, T &out, JSONFailure &failure) {
    if constexpr (HandReadJSON<Node, T>) {
        return readWire(node, out, failure);
    } else if constexpr (JSONRecord<T>) {
        return detail::readRecord(node, out, failure);
    } else if constexpr (WireEnum<T>) {
        return detail::readEnum(node, out, failure);
    } else if constexpr (isJSONList<T>) {
        return detail::readList(node, out, failure);
    } else if constexpr (std::is_same_v<T, JSONValue>) {
        out = node.toValue();
        return true;
    } else if constexpr (std::is_same_v<T, QString>) {
        return node.read(out) || failure.expected(QLatin1StringView("text"), node.kind());
    } else if constexpr (std::is_same_v<T, bool>) {
        return node.read(out) || failure.expected(QLatin1StringView("true or false"), node.kind());
    } else if constexpr (std::is_same_v<T, qint64>) {
        return node.read(out) || failure.expected(QLatin1StringView("a whole number"), node.kind());
    } else {
        static_assert(std::is_same_v<T, double>, "This type has no JSON form: see JSONFields.h");
        return node.read(out) || failure.expected(QLatin1StringView("a number"), node.kind());
    }
}

// Reads a required member, for hand-written readers.
template<class Members, class T>
bool readMember(Members &members, QLatin1StringView key, T &out, JSONFailure &failure) {
    const auto node = members.find(key);
    if (node.isAbsent())
        return failure.missing(key);
    return readNode(node, out, failure) || failure.under(key);
}

// Reads the "kind" that tells the cases of a tagged value apart.
template<class Members, class Text>
bool readKind(Members &members, Text &kind, JSONFailure &failure) {
    const auto node = members.find(QLatin1StringView("kind"));
    if (node.isAbsent())
        return failure.missing(QLatin1StringView("kind"));
    if (node.text(kind))
        return true;
    failure.expected(QLatin1StringView("text"), node.kind());
    return failure.under(QLatin1StringView("kind"));
}

// The record that a JSON value holds; throws JSONError, with the path of what failed.
template<class T>
T readJSON(const JSONValue &value) {
    T out{};
    JSONFailure failure;
    if (!readNode(ValueNode(value), out, failure))
        throw failure.error();
    return out;
}

// The same from JSON text.
template<class T>
T readJSON(QByteArrayView json) {
    return readJSON<T>(JSONValue::parse(json));
}

// The typed result of a reply: as readJSON, with no result taken for JSON null.
template<class T>
T readResult(const std::optional<JSONValue> &result) {
    return readJSON<T>(result ? *result : JSONValue::null);
}

} // namespace zelk
