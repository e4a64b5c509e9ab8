#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace zelk::engine {

/// One record of a table of separated values.
struct CsvRecord {
    qint64 line = 0; ///< Where it begins, from 1.
    QStringList fields;
    bool broken = false; ///< A quote opened in it is never closed; its fields mean nothing.
};

/// Reads the whole table: records end at line feeds outside of quotes, "" inside quotes is a quote, blank lines are
/// left out. The separator (comma, semicolon or tab) is the one that the first record has most of, or what a first line
/// "sep=;" says. A quote that is never closed, or that swallows lines so that its record has more or fewer fields than
/// the first one, or text behind a closing quote, costs its own line and no other.
std::vector<CsvRecord> readCsv(const QString &text);

} // namespace zelk::engine
