#include "Playlists/CsvPlaylist.h"

#include "Playlists/ArtistNames.h"
#include "Playlists/CsvColumns.h"
#include "Playlists/CsvReader.h"

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

ReadFile readCsvPlaylist(QIODevice &device, ReadLimits limits) {
    ReadFile file;
    CsvReader table(device);
    CsvRecord header;
    if (!table.next(header)) {
        file.warn(0, u"holds nothing"_s);
        return file;
    }
    const CsvColumns columns = findColumns(header.fields);
    if (!header.problem.isEmpty() || columns.title < 0) {
        file.warn(header.line, u"no column tells the tracks' names (such as \"Track Name\")"_s);
        return file;
    }
    QHash<QString, std::size_t> listOf;
    if (columns.list < 0) {
        file.lists.emplace_back();
        listOf.insert(QString(), 0);
    }
    const qint64 mostTracks = limits.tracks;
    qint64 cut = 0; // a line
    for (CsvRecord record; table.next(record);) {
        cut = record.isCut ? record.line : 0;
        if (!record.problem.isEmpty()) {
            file.warn(record.line, record.problem);
            continue;
        }
        if (hasMoreThan(record, header.fields.size())) {
            file.warn(record.line, u"has more fields than the header; the row is left out"_s);
            continue;
        }
        ListedTrack track;
        track.title = cellOf(record, columns.title);
        if (track.title.isEmpty()) {
            const QString address = cellOf(record, columns.uri);
            file.warn(record.line, u"has no track name; the row is left out%1"_s.arg(
                                       address.isEmpty() ? QString() : " ("_L1 + address + u')'));
            continue;
        }
        track.artist = shownArtists(cellOf(record, columns.artist));
        track.album = cellOf(record, columns.album);
        track.isrc = cellOf(record, columns.isrc);
        track.artworkUrl = cellOf(record, columns.image);
        const auto seconds = secondsOf(cellOf(record, columns.duration), columns.durationInMs);
        if (!seconds) {
            file.warn(record.line, u"the duration isn't a number; it counts as unknown"_s);
        }
        track.durationSec = lengthOrUnknown(seconds.value_or(0));
        if (!limits.take(track)) {
            file.breakOff(record.line, tooManyTracks(mostTracks));
            break;
        }
        const QString list = cellOf(record, columns.list);
        if (!listOf.contains(list)) {
            listOf.insert(list, file.lists.size());
            file.lists.emplace_back().name = list;
        }
        file.lists[listOf.value(list)].tracks.push_back(std::move(track));
    }
    if (file.whole && cut > 0) {
        file.breakOff(cut, u"the list breaks off here; what it held before is kept"_s);
    }
    return file;
}

} // namespace zelk::engine
