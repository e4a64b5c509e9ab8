#include "Playlists/CsvReader.h"

#include "Playlists/ReadLimits.h"

#include <algorithm>
#include <array>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

bool isLineEnd(QChar c) {
    return c == u'\n' || c == u'\r';
}

bool isBlank(const CsvRecord &record) {
    return std::all_of(record.fields.begin(), record.fields.end(),
                       [](const QString &f) { return f.trimmed().isEmpty(); });
}

} // namespace

CsvReader::CsvReader(QIODevice &device) : _source(device) {
    passBlankLines();
    while (_text.size() < _at + 5 && more()) {
    }
    if (QStringView(_text).mid(_at).startsWith("sep="_L1, Qt::CaseInsensitive) && _text.size() > _at + 4) {
        _separator = _text[_at + 4];
        _start = _at;
        _startLine = _line;
        passOverFirstLine();
    } else {
        _separator = sniffed();
    }
}

bool CsvReader::more() {
    if (_start > 0) {
        _text.remove(0, _start);
        _at -= _start;
        _start = 0;
    }
    return _source.readMore(_text);
}

void CsvReader::finishLine(QChar end) {
    if (end == u'\r' && nextIs(u'\n')) {
        ++_at;
    }
    ++_line;
}

void CsvReader::passBlankLines() {
    while (hasMore() && isLineEnd(_text[_at])) {
        finishLine(_text[_at++]);
        _start = _at;
    }
}

QChar CsvReader::sniffed() {
    std::array<std::pair<QChar, int>, 3> counts = {{{u',', 0}, {u';', 0}, {u'\t', 0}}};
    bool quoted = false;
    _start = _at;
    while (_at - _start < longestRow && hasMore() && (quoted || !isLineEnd(_text[_at]))) {
        const QChar c = _text[_at++];
        quoted = quoted != (c == u'"');
        for (auto &[separator, count] : counts) {
            count += !quoted && c == separator ? 1 : 0;
        }
    }
    _at = _start;
    return std::max_element(counts.begin(), counts.end(),
                            [](const auto &a, const auto &b) { return a.second < b.second; })
        ->first;
}

CsvRecord CsvReader::take() {
    _start = _at;
    _startLine = _line;
    _loose = false;
    CsvRecord record{_line, {}, {}, false};
    QString field;
    bool quoted = false;
    bool opened = false;
    while (hasMore()) {
        if (_at - _start > longestRow) {
            record.problem = quoted ? u"a quote isn't closed; the row is left out"_s
                                    : u"the row has more than %1 characters and is left out"_s.arg(longestRow);
            return record;
        }
        const QChar c = _text[_at++];
        if (quoted) {
            if (c == u'"' && nextIs(u'"')) {
                field += c;
                ++_at;
            } else if (c == u'"') {
                quoted = false;
            } else {
                _line += c == u'\n' ? 1 : 0;
                field += c;
            }
        } else if (c == u'"' && !opened && field.trimmed().isEmpty()) {
            quoted = opened = true;
            field.clear();
        } else if (c == _separator) {
            record.fields += field;
            field.clear();
            opened = false;
        } else if (isLineEnd(c)) {
            finishLine(c);
            record.fields += field;
            return record;
        } else {
            _loose |= opened && !c.isSpace();
            field += c;
        }
    }
    record.fields += field;
    if (quoted) {
        record.problem = u"a quote isn't closed; the row is left out"_s;
    }
    record.isCut = quoted ? _line == _startLine : record.fields.size() < _columns;
    return record;
}

void CsvReader::passOverFirstLine() {
    _at = _start;
    _line = _startLine;
    while (hasMore()) {
        const QChar c = _text[_at++];
        _start = _at; // there is no way back any more
        if (isLineEnd(c)) {
            finishLine(c);
            return;
        }
    }
}

bool CsvReader::next(CsvRecord &record) {
    while (hasMore()) {
        record = take();
        const bool first = _columns < 0;
        const bool spansLines = _line - _startLine > 1;
        if (!first && spansLines && (record.fields.size() != _columns || _loose)) {
            record.problem = u"a quote isn't closed; the row is left out"_s;
        }
        if (!record.problem.isEmpty()) {
            passOverFirstLine();
        } else if (isBlank(record)) {
            continue;
        }
        if (first) {
            _columns = record.fields.size();
        }
        return true;
    }
    return false;
}

} // namespace zelk::engine
