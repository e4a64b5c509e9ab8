#include "Platform/HttpRequestReader.h"

#include <algorithm>

namespace zelk {

namespace {

constexpr QByteArrayView lineEnd = "\r\n";
constexpr QByteArrayView headEnd = "\r\n\r\n";

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// What a method and the name of a header are made of.
bool isToken(QByteArrayView text) {
    constexpr QByteArrayView marks = "!#$%&'*+-.^_`|~";
    return !text.isEmpty() && std::ranges::all_of(text, [&marks](char c) {
        return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || marks.contains(c);
    });
}

/// Without what ends a line or a text for somebody else who reads it (RFC 9110, 5.5).
bool isOneLine(QByteArrayView text) {
    return std::ranges::none_of(text, [](char c) { return c == '\r' || c == '\n' || c == '\0'; });
}

} // namespace

std::optional<QByteArray> HttpRequest::header(QByteArrayView name) const {
    std::optional<QByteArray> found;
    for (const auto &[key, value] : headers) {
        if (key != name)
            continue;
        if (found)
            return {};
        found = value;
    }
    return found;
}

void HttpRequestReader::feed(QByteArrayView bytes) {
    if (_state == State::complete || _state == State::refused)
        return;
    _bytes.append(bytes);
    if (_state == State::head)
        readHead();
    if (_state == State::body && _bytes.size() >= _bodyLength) {
        _request.body = _bytes.first(_bodyLength);
        _bytes.clear();
        _state = State::complete;
    }
}

void HttpRequestReader::readHead() {
    const qsizetype end = _bytes.indexOf(headEnd);
    if (end > headLimit || (end < 0 && _bytes.size() > headLimit))
        return refuse(431);
    if (end < 0)
        return;
    const QByteArray head = _bytes.first(end);
    _bytes.remove(0, end + headEnd.size());
    bool isFirst = true;
    for (qsizetype from = 0; from <= head.size();) {
        qsizetype to = head.indexOf(lineEnd, from);
        if (to < 0)
            to = head.size();
        const auto line = QByteArrayView(head).sliced(from, to - from);
        if (!(isFirst ? readRequestLine(line) : readHeader(line)))
            return refuse(400);
        isFirst = false;
        from = to + lineEnd.size();
    }
    startBody();
}

bool HttpRequestReader::readRequestLine(QByteArrayView line) {
    const auto parts = line.toByteArray().split(' ');
    if (parts.size() != 3 || !isOneLine(line) || !isToken(parts[0]) || !parts[1].startsWith('/') ||
        !parts[2].startsWith("HTTP/1."))
        return false;
    _request.method = parts[0];
    _request.target = parts[1];
    return true;
}

bool HttpRequestReader::readHeader(QByteArrayView line) {
    const qsizetype colon = line.indexOf(':');
    if (colon < 0 || !isOneLine(line) || !isToken(line.first(colon)))
        return false;
    _request.headers.append(
        {line.first(colon).toByteArray().toLower(), line.sliced(colon + 1).trimmed().toByteArray()});
    return true;
}

void HttpRequestReader::startBody() {
    const auto names = [this](QByteArrayView name) {
        return std::ranges::count_if(_request.headers, [name](const auto &each) { return each.first == name; });
    };
    const auto length = _request.header("content-length");
    if (names("transfer-encoding") > 0 || names("host") != 1 || names("content-length") > 1)
        return refuse(400);
    if (!length) {
        if (_request.method == "POST")
            return refuse(411);
        _state = State::body;
        return;
    }
    if (length->isEmpty() || !std::ranges::all_of(*length, isDigit))
        return refuse(400);
    bool fits = false;
    _bodyLength = length->toLongLong(&fits);
    if (!fits || _bodyLength > bodyLimit)
        return refuse(413);
    _state = State::body;
}

void HttpRequestReader::refuse(int status) {
    _state = State::refused;
    _refusal = status;
    _bytes.clear();
}

} // namespace zelk
