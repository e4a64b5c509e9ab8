#include "Transport/NDJSONFramer.h"

#include <algorithm>
#include <cstring>

namespace zelk {

namespace {

constexpr qsizetype keptWhenEmpty = 1024 * 1024;

QByteArrayView trimCR(QByteArrayView line) {
    return line.endsWith('\r') ? line.chopped(1) : line;
}

} // namespace

QList<QByteArray> NDJSONFramer::feed(QByteArrayView chunk) {
    QList<QByteArray> lines;
    feed(chunk, [&](QByteArrayView line) { lines.append(line.toByteArray()); });
    return lines;
}

std::optional<QByteArray> NDJSONFramer::flush() {
    const QByteArray rest = trimCR(buffer()).toByteArray();
    *this = NDJSONFramer();
    return rest.isEmpty() ? std::nullopt : std::optional(rest);
}

void NDJSONFramer::append(QByteArrayView chunk) {
    if (chunk.isEmpty())
        return;
    const qsizetype waiting = _end - _start;
    if (_end + chunk.size() + padding > _bytes.size()) {
        // Moving what waits to the front is free when nothing waits, and otherwise done only where it makes room for at
        // least as much as it moves; else the buffer doubles. So each byte is moved a constant number of times.
        if (const qsizetype needed = waiting + std::max(waiting, chunk.size()) + padding; needed <= _bytes.size()) {
            std::memmove(_bytes.data(), _bytes.constData() + _start, static_cast<std::size_t>(waiting));
        } else {
            QByteArray larger(std::max(needed, 2 * _bytes.size()), Qt::Uninitialized);
            std::memcpy(larger.data(), _bytes.constData() + _start, static_cast<std::size_t>(waiting));
            _bytes = std::move(larger);
        }
        _scanned -= _start;
        _start = 0;
        _end = waiting;
    }
    std::memcpy(_bytes.data() + _end, chunk.data(), static_cast<std::size_t>(chunk.size()));
    _end += chunk.size();
}

std::optional<QByteArrayView> NDJSONFramer::nextLine() {
    const char *bytes = _bytes.constData();
    while (_scanned < _end) {
        const void *lineFeed = std::memchr(bytes + _scanned, '\n', static_cast<std::size_t>(_end - _scanned));
        if (!lineFeed) {
            _scanned = _end;
            break;
        }
        const qsizetype end = static_cast<const char *>(lineFeed) - bytes;
        const QByteArrayView line = trimCR(QByteArrayView(bytes + _start, end - _start));
        _start = end + 1;
        _scanned = _start;
        if (!line.isEmpty())
            return line;
    }
    return std::nullopt;
}

void NDJSONFramer::release() {
    if (_start != _end)
        return;
    _start = _scanned = _end = 0;
    if (_bytes.size() > keptWhenEmpty)
        _bytes = {};
}

} // namespace zelk
