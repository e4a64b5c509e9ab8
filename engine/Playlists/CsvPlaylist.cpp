#include "Playlists/CsvPlaylist.h"

#include "Playlists/ArtistNames.h"
#include "Playlists/CsvColumns.h"
#include "Playlists/CsvReader.h"
#include "Playlists/TextDecoding.h"

#include <QHash>

#include <cmath>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// No track lasts longer; a larger number in a column that names no unit is one of milliseconds.
constexpr double mostSeconds = 20'000;

/// Seconds from "3:45", "1:02:03", a number of seconds or a number of milliseconds.
std::optional<double> secondsOf(const QString &cell, bool inMs) {
    const QString text = cell.trimmed();
    if (text.isEmpty()) {
        return 0;
    }
    double seconds = 0;
    const QStringList parts = text.split(u':');
    for (const QString &part : parts) {
        bool ok = false;
        const double value = part.trimmed().toDouble(&ok);
        if (!ok || !std::isfinite(value) || value < 0) {
            return std::nullopt;
        }
        seconds = seconds * 60 + value;
    }
    const bool ms = parts.size() == 1 && (inMs || seconds > mostSeconds);
    return ms ? seconds / 1000 : seconds;
}

QString cellOf(const CsvRecord &record, int column) {
    return column >= 0 && column < record.fields.size() ? record.fields[column].simplified() : QString();
}

bool hasMoreThan(const CsvRecord &record, qsizetype columns) {
    for (qsizetype i = columns; i < record.fields.size(); ++i) {
        if (!record.fields[i].trimmed().isEmpty()) {
            return true;
        }
    }
    return false;
}

} // namespace

ReadFile readCsvPlaylist(const QByteArray &bytes) {
    ReadFile file;
    const std::vector<CsvRecord> records = readCsv(decodeText(bytes));
    if (records.empty()) {
        file.warnings.push_back({0, u"holds nothing"_s});
        return file;
    }
    const CsvRecord &header = records.front();
    const CsvColumns columns = findColumns(header.fields);
    if (header.broken || columns.title < 0) {
        file.warnings.push_back({header.line, u"no column tells the tracks' names (such as \"Track Name\")"_s});
        return file;
    }
    QHash<QString, std::size_t> listOf;
    if (columns.list < 0) {
        file.lists.emplace_back();
        listOf.insert(QString(), 0);
    }
    for (std::size_t i = 1; i < records.size(); ++i) {
        const CsvRecord &record = records[i];
        if (record.broken) {
            file.warnings.push_back({record.line, u"a quote isn't closed; the row is left out"_s});
            continue;
        }
        if (hasMoreThan(record, header.fields.size())) {
            file.warnings.push_back({record.line, u"has more fields than the header; the row is left out"_s});
            continue;
        }
        ListedTrack track;
        track.title = cellOf(record, columns.title);
        if (track.title.isEmpty()) {
            file.warnings.push_back({record.line, u"has no track name; the row is left out"_s});
            continue;
        }
        track.artist = shownArtists(cellOf(record, columns.artist));
        track.album = cellOf(record, columns.album);
        track.isrc = cellOf(record, columns.isrc);
        track.artworkUrl = cellOf(record, columns.image);
        const auto seconds = secondsOf(cellOf(record, columns.duration), columns.durationInMs);
        if (!seconds) {
            file.warnings.push_back({record.line, u"the duration isn't a number; it counts as unknown"_s});
        }
        track.durationSec = seconds.value_or(0);
        const QString list = cellOf(record, columns.list);
        if (!listOf.contains(list)) {
            listOf.insert(list, file.lists.size());
            file.lists.push_back({list, {}});
        }
        file.lists[listOf.value(list)].tracks.push_back(std::move(track));
    }
    return file;
}

} // namespace zelk::engine
