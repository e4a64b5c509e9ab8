#pragma once

#include "Playlists/TextReader.h"

#include <QString>
#include <QStringList>

namespace zelk::engine {

/// One record of a table of separated values.
struct CsvRecord {
    qint64 line = 0; ///< Where it begins, from 1.
    QStringList fields;
    QString problem; ///< Why its fields mean nothing; empty if they do.
    /// The table ends in the middle of it: with an open quote, or with fields missing and no end of the line.
    bool isCut = false;
};

/// Reads a table record by record, so that no table is too large: records end at line feeds outside of quotes, ""
/// inside quotes is a quote, blank lines are left out. The separator (comma, semicolon or tab) is the one that the
/// first record has most of, or what a first line "sep=;" says. A quote that is never closed, or that swallows lines so
/// that its record has more or fewer fields than the first one, or text behind a closing quote, or a record of more
/// than longestRow characters, costs its own line and no other.
class CsvReader {
public:
    explicit CsvReader(QIODevice &device);

    /// The next record; false at the end.
    bool next(CsvRecord &record);

private:
    bool more();
    bool hasMore() { return _at < _text.size() || more(); }
    bool nextIs(QChar c) { return hasMore() && _text[_at] == c; }
    void finishLine(QChar end);
    void passBlankLines();
    void passOverFirstLine();
    QChar sniffed();
    CsvRecord take();

    TextReader _source;
    QString _text; // what is in hand: the record under way and some of what follows
    qsizetype _at = 0;
    qsizetype _start = 0; // where the record under way begins; what is before that may go
    qint64 _line = 1;
    qint64 _startLine = 1;
    bool _loose = false; // text followed a closing quote: most likely the quote was meant to open
    QChar _separator = u',';
    qsizetype _columns = -1; // of the first record
};

} // namespace zelk::engine
