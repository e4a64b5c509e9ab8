#include "Playlists/CsvReader.h"

#include <algorithm>
#include <array>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// Walks over the text by records; a record can be taken back and its first line passed over instead.
class Table {
public:
    explicit Table(const QString &text) : _text(text) {}

    bool atEnd() const { return _at >= _text.size(); }
    void setSeparator(QChar separator) { _separator = separator; }

    QChar sniffed() const {
        std::array<std::pair<QChar, int>, 3> counts = {{{u',', 0}, {u';', 0}, {u'\t', 0}}};
        bool quoted = false;
        for (qsizetype i = _at; i < _text.size() && (quoted || !isLineEnd(_text[i])); ++i) {
            quoted = quoted != (_text[i] == u'"');
            for (auto &[separator, count] : counts) {
                count += !quoted && _text[i] == separator ? 1 : 0;
            }
        }
        return std::max_element(counts.begin(), counts.end(),
                                [](const auto &a, const auto &b) { return a.second < b.second; })
            ->first;
    }

    CsvRecord next() {
        _start = _at;
        _startLine = _line;
        _loose = false;
        CsvRecord record{_line, {}, false};
        QString field;
        bool quoted = false;
        bool opened = false;
        while (_at < _text.size()) {
            const QChar c = _text[_at++];
            if (quoted) {
                if (c == u'"' && _at < _text.size() && _text[_at] == u'"') {
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
        record.broken = quoted;
        return record;
    }

    bool spansLines() const { return _line - _startLine > 1; }
    /// Text followed a closing quote: most likely the quote was meant to open.
    bool isLoose() const { return _loose; }

    /// Goes back to the last record and behind its first line.
    void passOverFirstLine() {
        _at = _start;
        _line = _startLine;
        while (_at < _text.size()) {
            const QChar c = _text[_at++];
            if (isLineEnd(c)) {
                finishLine(c);
                return;
            }
        }
    }

private:
    static bool isLineEnd(QChar c) { return c == u'\n' || c == u'\r'; }

    void finishLine(QChar end) {
        if (end == u'\r' && _at < _text.size() && _text[_at] == u'\n') {
            ++_at;
        }
        ++_line;
    }

    const QString &_text;
    qsizetype _at = 0;
    qsizetype _start = 0;
    qint64 _line = 1;
    qint64 _startLine = 1;
    bool _loose = false;
    QChar _separator = u',';
};

bool isBlank(const CsvRecord &record) {
    return std::all_of(record.fields.begin(), record.fields.end(),
                       [](const QString &f) { return f.trimmed().isEmpty(); });
}

} // namespace

std::vector<CsvRecord> readCsv(const QString &text) {
    std::vector<CsvRecord> records;
    Table table(text);
    const bool told = text.startsWith("sep="_L1, Qt::CaseInsensitive) && text.size() > 4;
    table.setSeparator(told ? text[4] : table.sniffed());
    if (told) {
        table.passOverFirstLine();
    }
    while (!table.atEnd()) {
        CsvRecord record = table.next();
        const bool fits = records.empty() || record.fields.size() == records.front().fields.size();
        const bool swallowed = !records.empty() && table.spansLines() && (!fits || table.isLoose());
        if (record.broken || swallowed) {
            record.broken = true;
            table.passOverFirstLine();
        }
        if (record.broken || !isBlank(record)) {
            records.push_back(std::move(record));
        }
    }
    return records;
}

} // namespace zelk::engine
