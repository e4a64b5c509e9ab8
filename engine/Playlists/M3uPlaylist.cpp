#include "Playlists/M3uPlaylist.h"

#include "Playlists/ArtistNames.h"
#include "Playlists/TextDecoding.h"

#include <QDir>
#include <QRegularExpression>
#include <QUrl>

#include <cmath>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// "Artist - Title", or a title alone.
void takeLabel(const QString &label, ListedTrack &track) {
    const auto dash = label.indexOf(" - "_L1);
    track.artist = dash > 0 ? shownArtists(label.left(dash)) : QString();
    track.title = (dash > 0 ? label.mid(dash + 3) : label).simplified();
}

/// Reads "#EXTINF:<seconds>[ attributes],<label>"; false if it has no comma or no number.
bool takeInfo(const QString &info, ListedTrack &track) {
    static const QRegularExpression form(u"^\\s*(-?\\d+(?:\\.\\d+)?)((?:\\s+[\\w-]+=\"[^\"]*\")*)\\s*,(.*)$"_s);
    const auto match = form.match(info);
    if (!match.hasMatch()) {
        return false;
    }
    track.durationSec = std::max(0.0, match.captured(1).toDouble());
    takeLabel(match.captured(3).simplified(), track);
    return true;
}

} // namespace

QString resolvedLocation(const QString &entry, const QString &folder) {
    static const QRegularExpression drive(u"^[A-Za-z]:[\\\\/]"_s);
    static const QRegularExpression scheme(u"^[A-Za-z][A-Za-z0-9+.-]+://"_s);
    if (entry.startsWith("file:"_L1, Qt::CaseInsensitive)) {
        const QString path = QUrl(entry).toLocalFile();
        return path.startsWith(u'/') ? QDir::cleanPath(path) : QString();
    }
    if (entry.isEmpty() || scheme.match(entry).hasMatch() || drive.match(entry).hasMatch()) {
        return {};
    }
    const QString path = QString(entry).replace(u'\\', u'/');
    return QDir::cleanPath(path.startsWith(u'/') ? path : folder + u'/' + path);
}

void takeEntryName(const QString &entry, ListedTrack &track) {
    static const QRegularExpression trackNumber(u"^\\d{1,3}[ ._-]+(?=\\S)"_s);
    QString name = QString(entry).replace(u'\\', u'/').section(u'/', -1);
    if (entry.startsWith("file:"_L1, Qt::CaseInsensitive)) {
        name = QUrl::fromPercentEncoding(name.toUtf8());
    }
    const auto dot = name.lastIndexOf(u'.');
    name = (dot > 0 ? name.left(dot) : name).replace(u'_', u' ');
    takeLabel(name.remove(trackNumber).simplified(), track);
}

ReadFile readM3uPlaylist(const QByteArray &bytes, const QString &folder) {
    ReadFile file;
    ReadList list;
    std::optional<ListedTrack> told;
    QString album;
    const auto finish = [&](const QString &entry) {
        ListedTrack track = told.value_or(ListedTrack());
        if (track.title.isEmpty()) {
            takeEntryName(entry, track);
        }
        if (track.album.isEmpty()) {
            track.album = album;
        }
        track.location = resolvedLocation(entry, folder);
        list.tracks.push_back(std::move(track));
        told.reset();
    };
    const QStringList lines = decodeText(bytes).replace("\r\n"_L1, "\n"_L1).replace(u'\r', u'\n').split(u'\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QString line = lines[i].trimmed();
        const qint64 number = i + 1;
        if (line.startsWith("#EXTINF:"_L1, Qt::CaseInsensitive)) {
            if (told && !told->title.isEmpty()) { // an entry without a path is still a track
                finish({});
            }
            told.emplace();
            if (!takeInfo(line.mid(8), *told)) {
                file.warnings.push_back({number, u"the track's description can't be read; its file name is used"_s});
                told.reset();
            }
        } else if (line.startsWith("#PLAYLIST:"_L1, Qt::CaseInsensitive)) {
            list.name = line.mid(10).simplified();
        } else if (line.startsWith("#EXTALB:"_L1, Qt::CaseInsensitive)) {
            album = line.mid(8).simplified();
        } else if (line.contains(QChar(0))) {
            file.warnings.push_back({number, u"isn't text; the line is left out"_s});
        } else if (!line.isEmpty() && !line.startsWith(u'#')) {
            finish(line);
        }
    }
    if (told && !told->title.isEmpty()) {
        finish({});
    }
    file.lists.push_back(std::move(list));
    return file;
}

} // namespace zelk::engine
