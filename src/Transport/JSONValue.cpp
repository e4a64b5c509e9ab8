#include "Transport/JSONValue.h"

#include "Transport/JSONLineNode.h"
#include "Transport/JSONWriter.h"
#include "Transport/Tagged.h"

namespace zelk {

JSONValue::JSONValue() noexcept : value(Null{}) {}
JSONValue::JSONValue(const JSONValue &) = default;
JSONValue::JSONValue(JSONValue &&) noexcept = default;
JSONValue &JSONValue::operator=(const JSONValue &) = default;
JSONValue &JSONValue::operator=(JSONValue &&) noexcept = default;
JSONValue::~JSONValue() = default;

const JSONValue JSONValue::null;

JSONValue JSONValue::string(QString text) {
    JSONValue result;
    result.value = std::move(text);
    return result;
}

JSONValue JSONValue::number(double number) {
    JSONValue result;
    result.value = number;
    return result;
}

JSONValue JSONValue::bool_(bool value) {
    JSONValue result;
    result.value = value;
    return result;
}

JSONValue JSONValue::array(Array elements) {
    JSONValue result;
    result.value = std::move(elements);
    return result;
}

JSONValue JSONValue::object(Object members) {
    JSONValue result;
    result.value = std::move(members);
    return result;
}

JSONValue JSONValue::parse(QByteArrayView json) {
    LineParser parser;
    JSONFailure failure;
    const LineNode root = parser.parseCopy(json, failure);
    if (root.isAbsent())
        throw failure.error();
    return root.toValue();
}

QByteArray JSONValue::json() const {
    return writeJSON(*this);
}

bool JSONValue::equal(const JSONValue &a, const JSONValue &b) {
    return a.value == b.value;
}

QLatin1StringView ValueNode::kind() const {
    return match(
        *_value, [](const QString &) { return QLatin1StringView("text"); },
        [](double) { return QLatin1StringView("a number"); }, [](bool) { return QLatin1StringView("true or false"); },
        [](const JSONValue::Array &) { return QLatin1StringView("a list"); },
        [](const JSONValue::Object &) { return QLatin1StringView("an object"); },
        [](JSONValue::Null) { return QLatin1StringView("null"); });
}

void writeWire(JSONWriter &writer, const JSONValue &value) {
    match(
        value, [&](const QString &text) { writer.string(text); }, [&](double number) { writer.number(number); },
        [&](bool boolean) { writer.boolean(boolean); },
        [&](const JSONValue::Array &elements) {
            writer.beginArray();
            for (const JSONValue &element : elements)
                writeWire(writer, element);
            writer.endArray();
        },
        [&](const JSONValue::Object &members) {
            writer.beginObject();
            for (auto member = members.cbegin(); member != members.cend(); ++member) {
                writer.key(QStringView(member.key()));
                writeWire(writer, member.value());
            }
            writer.endObject();
        },
        [&](JSONValue::Null) { writer.null(); });
}

} // namespace zelk
