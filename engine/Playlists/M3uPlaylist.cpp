#include "Playlists/M3uPlaylist.h"

#include "Playlists/ArtistNames.h"
#include "Playlists/Location.h"
#include "Playlists/TextReader.h"

#include <QRegularExpression>

#include <optional>
#include <utility>

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
    track.durationSec = lengthOrUnknown(match.captured(1).toDouble());
    takeLabel(match.captured(3).simplified(), track);
    return true;
}

/// The lines of a text, without their ends, however these are written.
class Lines {
public:
    explicit Lines(QIODevice &device) : _source(device) {}

    /// False at the end. A line of more than longestRow characters is cut there.
    bool next(QString &line) {
        line.clear();
        while (_at < _text.size() || more()) {
            const QChar c = _text[_at++];
            if (c == u'\n' && std::exchange(_afterReturn, false)) { // the other half of the line's end
                continue;
            }
            _afterReturn = c == u'\r';
            if (c == u'\n' || c == u'\r') {
                ++_number;
                return true;
            }
            if (line.size() < longestRow) {
                line += c;
            }
        }
        ++_number;
        return !line.isEmpty();
    }
    /// Of the last line, from 1.
    qint64 number() const { return _number; }

private:
    bool more() {
        _text.clear();
        _at = 0;
        return _source.readMore(_text);
    }

    TextReader _source;
    QString _text;
    qsizetype _at = 0;
    qint64 _number = 0;
    bool _afterReturn = false;
};

} // namespace

void takeEntryName(const QString &entry, ListedTrack &track) {
    static const QRegularExpression trackNumber(u"^\\d{1,3}[ ._-]+(?=\\S)"_s);
    QString name = QString(entry).replace(u'\\', u'/').section(u'/', -1);
    if (entry.startsWith("file:"_L1, Qt::CaseInsensitive)) {
        name = percentDecoded(name);
    }
    const auto dot = name.lastIndexOf(u'.');
    name = (dot > 0 ? name.left(dot) : name).replace(u'_', u' ');
    const QString artist = track.artist;
    takeLabel(name.remove(trackNumber).simplified(), track);
    if (!artist.isEmpty()) {
        track.artist = artist;
    }
}

ReadFile readM3uPlaylist(QIODevice &device, const QString &folder, ReadLimits limits) {
    ReadFile file;
    ReadList list;
    std::optional<ListedTrack> told;
    QString album;
    const qint64 mostTracks = limits.tracks;
    Lines lines(device);
    const auto finish = [&](const QString &entry) {
        ListedTrack track = told.value_or(ListedTrack());
        if (track.title.isEmpty()) {
            takeEntryName(entry, track);
        }
        if (track.album.isEmpty()) {
            track.album = album;
        }
        track.location = resolvedLocation(entry, folder);
        told.reset();
        if (track.title.isEmpty()) {
            file.warn(lines.number(), u"names neither a title nor a file and is left out"_s);
        } else if (!limits.take(track)) {
            file.breakOff(lines.number(), tooManyTracks(mostTracks));
        } else {
            list.tracks.push_back(std::move(track));
        }
    };
    qint64 torn = 0; // a line
    for (QString text; file.whole && lines.next(text);) {
        const QString line = text.trimmed();
        if (line.startsWith("#EXTINF:"_L1, Qt::CaseInsensitive)) {
            if (told && !told->title.isEmpty()) { // an entry without a path is still a track
                finish({});
                if (!file.whole) {
                    break;
                }
            }
            told.emplace();
            if (!takeInfo(line.mid(8), *told)) {
                file.warn(lines.number(), u"the track's description can't be read; its file name is used"_s);
                told.reset();
            }
        } else if (line.startsWith("#PLAYLIST:"_L1, Qt::CaseInsensitive)) {
            list.name = line.mid(10).simplified();
        } else if (line.startsWith("#EXTALB:"_L1, Qt::CaseInsensitive)) {
            album = line.mid(8).simplified();
        } else if (line.contains(QChar(0))) {
            torn = torn > 0 ? torn : lines.number(); // as a file is that was being written when the power went
        } else if (!line.isEmpty() && !line.startsWith(u'#')) {
            finish(line);
        }
    }
    if (file.whole && told && !told->title.isEmpty()) {
        finish({});
    }
    if (file.whole && torn > 0) {
        file.breakOff(
            torn, u"the list breaks off in lines that are no text, which are left out; what it held before is kept"_s);
    }
    file.lists.push_back(std::move(list));
    return file;
}

} // namespace zelk::engine
