#pragma once

#include "Transport/JSONFields.h"
#include "Transport/JSONValue.h"

#include <QByteArray>

namespace zelk {

// Puts compact JSON together: UTF-8, slashes unescaped, whole numbers without fraction or exponent, other numbers in
// the shortest form that reads back the same. Keys and values follow one another; commas and colons come by themselves.
class JSONWriter {
public:
    void beginObject();
    void endObject();
    void beginArray();
    void endArray();
    void key(QLatin1StringView key); // a plain name: nothing in it needs an escape
    void key(QStringView key);
    void string(QStringView text);
    void string(QLatin1StringView text);
    void integer(qint64 number);
    void number(double number); // throws JSONError if it is not finite: JSON can't say it
    void boolean(bool value);
    void null();

    QByteArray take() { return std::exchange(_json, {}); }

private:
    void separate();
    QByteArray _json;
    bool _needsComma = false;
};

template<class T>
concept HandWrittenJSON = requires(JSONWriter &writer, const T &value) { writeWire(writer, value); };

void writeWire(JSONWriter &writer, const JSONValue &value);

template<class T>
void writeNode(JSONWriter &writer, const T &value);

// Writes a record's fields into an object that is already open.
template<JSONRecord Record>
void writeFields(JSONWriter &writer, const Record &record) {
    const auto writeField = [&](const auto &field) {
        const auto &member = record.*field.member;
        if constexpr (isJSONOptional<std::remove_cvref_t<decltype(member)>>) {
            if (member) {
                writer.key(field.key);
                writeNode(writer, *member);
            }
        } else {
            writer.key(field.key);
            writeNode(writer, member);
        }
    };
    std::apply([&](const auto &...field) { (writeField(field), ...); },
               jsonFields(static_cast<const Record *>(nullptr)));
}

template<class T>
void writeNode(JSONWriter &writer, const T &value) {
    if constexpr (HandWrittenJSON<T>) {
        writeWire(writer, value);
    } else if constexpr (JSONRecord<T>) {
        writer.beginObject();
        writeFields(writer, value);
        writer.endObject();
    } else if constexpr (WireEnum<T>) {
        writer.string(wireName(value));
    } else if constexpr (isJSONList<T>) {
        writer.beginArray();
        for (const auto &element : value)
            writeNode(writer, element);
        writer.endArray();
    } else if constexpr (std::is_same_v<T, QString>) {
        writer.string(value);
    } else if constexpr (std::is_same_v<T, bool>) {
        writer.boolean(value);
    } else if constexpr (std::is_same_v<T, qint64>) {
        writer.integer(value);
    } else {
        static_assert(std::is_same_v<T, double>, "This type has no JSON form: see JSONFields.h");
        writer.number(value);
    }
}

// A record as compact JSON. Throws JSONError if it holds a number that is not finite.
template<class T>
QByteArray writeJSON(const T &value) {
    JSONWriter writer;
    writeNode(writer, value);
    return writer.take();
}

// A record as a JSONValue.
template<class T>
JSONValue toJSONValue(const T &value) {
    return JSONValue::parse(writeJSON(value));
}

} // namespace zelk
