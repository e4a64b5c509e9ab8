#include "Transport/JSONWriter.h"

#include "Transport/JSONError.h"

#include <charconv>
#include <cmath>

namespace zelk {

namespace {

void appendQuoted(QByteArray &json, const QByteArray &utf8) {
    json += '"';
    qsizetype copied = 0;
    const auto escape = [&](qsizetype at, const char *replacement) {
        json.append(utf8.constData() + copied, at - copied).append(replacement);
        copied = at + 1;
    };
    for (qsizetype i = 0; i < utf8.size(); ++i) {
        const auto byte = static_cast<unsigned char>(utf8[i]);
        if (byte >= 0x20 && byte != '"' && byte != '\\')
            continue;
        switch (byte) {
        case '"':
            escape(i, "\\\"");
            break;
        case '\\':
            escape(i, "\\\\");
            break;
        case '\b':
            escape(i, "\\b");
            break;
        case '\f':
            escape(i, "\\f");
            break;
        case '\n':
            escape(i, "\\n");
            break;
        case '\r':
            escape(i, "\\r");
            break;
        case '\t':
            escape(i, "\\t");
            break;
        default: {
            const char digits[] = "0123456789abcdef";
            const char unicode[] = {'\\', 'u', '0', '0', digits[byte >> 4], digits[byte & 0xF], '\0'};
            escape(i, unicode);
        }
        }
    }
    json.append(utf8.constData() + copied, utf8.size() - copied);
    json += '"';
}

template<class Number>
void appendNumber(QByteArray &json, Number number) {
    char text[32];
    const auto end = std::to_chars(std::begin(text), std::end(text), number).ptr;
    json.append(text, end - text);
}

} // namespace

void JSONWriter::separate() {
    if (_needsComma)
        _json += ',';
    _needsComma = true;
}

void JSONWriter::beginObject() {
    separate();
    _json += '{';
    _needsComma = false;
}

void JSONWriter::endObject() {
    _json += '}';
    _needsComma = true;
}

void JSONWriter::beginArray() {
    separate();
    _json += '[';
    _needsComma = false;
}

void JSONWriter::endArray() {
    _json += ']';
    _needsComma = true;
}

void JSONWriter::key(QLatin1StringView key) {
    separate();
    _json += '"';
    _json.append(key.data(), key.size());
    _json += "\":";
    _needsComma = false;
}

void JSONWriter::key(QStringView key) {
    separate();
    appendQuoted(_json, key.toUtf8());
    _json += ':';
    _needsComma = false;
}

void JSONWriter::string(QStringView text) {
    separate();
    appendQuoted(_json, text.toUtf8());
}

void JSONWriter::string(QLatin1StringView text) {
    string(QStringView(QString(text)));
}

void JSONWriter::integer(qint64 number) {
    separate();
    appendNumber(_json, number);
}

void JSONWriter::number(double number) {
    if (!std::isfinite(number))
        throw JSONError({}, QStringLiteral("a number that is not finite can't be written"));
    if (std::abs(number) <= 0x1p53 && std::trunc(number) == number)
        return integer(static_cast<qint64>(number));
    separate();
    appendNumber(_json, number);
}

void JSONWriter::boolean(bool value) {
    separate();
    _json += value ? "true" : "false";
}

void JSONWriter::null() {
    separate();
    _json += "null";
}

} // namespace zelk
