#include "Playlists/XspfPlaylist.h"

#include "Playlists/ArtistNames.h"
#include "Playlists/GuardedXml.h"
#include "Playlists/Location.h"
#include "Playlists/M3uPlaylist.h"

#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

class XspfReader {
public:
    XspfReader(QIODevice &device, const QString &folder, ReadLimits limits)
        : _xml(device), _folder(folder), _limits(limits), _mostTracks(limits.tracks) {}

    ReadFile read() {
        if (!_xml.nextElement() || nameHere() != "playlist"_L1) {
            _file.breakOff(0, _xml.problem().isEmpty() ? u"isn't an XSPF playlist"_s : _xml.problem());
            return std::move(_file);
        }
        while (_file.whole && _xml.nextElement()) {
            if (nameHere() == "title"_L1) {
                _list.name = _xml.text();
            } else if (nameHere() == "image"_L1) {
                if (const QString image = resolvedImage(_xml.text()); !image.isEmpty()) {
                    _list.artwork = artworkOfUrlText(image);
                }
            } else if (nameHere() == "trackList"_L1) {
                readTracks();
            } else {
                _xml.skip();
            }
        }
        if (_file.whole) {
            _xml.finish(); // what is behind the list must be XML too, or the list may have ended too early
        }
        if (!_xml.problem().isEmpty()) {
            _file.breakOff(_xml.line(), u"the list breaks off here: %1"_s.arg(_xml.problem()));
        }
        _file.lists.push_back(std::move(_list));
        return std::move(_file);
    }

private:
    /// Some write the elements with a prefix of their own.
    QStringView nameHere() const {
        const QStringView name = _xml.name();
        return name.mid(name.lastIndexOf(u':') + 1);
    }

    void readTracks() {
        while (_xml.nextElement()) {
            if (nameHere() != "track"_L1) {
                _xml.skip();
                continue;
            }
            const qint64 line = _xml.line();
            ListedTrack track = readTrack();
            if (!_xml.problem().isEmpty()) {
                return;
            }
            if (track.title.isEmpty()) {
                _file.warn(line, u"the track has neither title nor location and is left out"_s);
            } else if (!_limits.take(track)) {
                _file.breakOff(line, tooManyTracks(_mostTracks));
                return;
            } else {
                _list.tracks.push_back(std::move(track));
            }
        }
    }

    ListedTrack readTrack() {
        ListedTrack track;
        QString entry;
        while (_xml.nextElement()) {
            const QStringView name = nameHere();
            if (name == "title"_L1) {
                track.title = _xml.text();
            } else if (name == "creator"_L1) {
                track.artist = shownArtists(_xml.text());
            } else if (name == "album"_L1) {
                track.album = _xml.text();
            } else if (name == "duration"_L1) {
                track.durationSec = lengthOrUnknown(_xml.text().toDouble() / 1'000);
            } else if (name == "image"_L1) {
                track.artworkUrl = resolvedImage(_xml.text());
            } else if (name == "location"_L1 && track.location.isEmpty()) {
                const QString address = _xml.text();
                const bool isFile = address.startsWith("file:"_L1, Qt::CaseInsensitive);
                // A location is a URL even where it is relative, so its percent signs are escapes.
                entry = isFile || address.contains("://"_L1) ? address : percentDecoded(address);
                track.location = resolvedLocation(entry, _folder);
            } else {
                _xml.skip();
            }
        }
        if (track.title.isEmpty()) {
            takeEntryName(entry, track);
        }
        return track;
    }

    /// The address of a picture, which may be relative to the list.
    QString resolvedImage(const QString &address) const {
        if (address.isEmpty() || address.contains("://"_L1)) {
            return address;
        }
        const QString path = resolvedLocation(percentDecoded(address), _folder);
        return path.isEmpty() ? QString() : QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded);
    }

    GuardedXml _xml;
    const QString &_folder;
    ReadLimits _limits;
    const qint64 _mostTracks;
    ReadFile _file;
    ReadList _list;
};

} // namespace

ReadFile readXspfPlaylist(QIODevice &device, const QString &folder, ReadLimits limits) {
    return XspfReader(device, folder, limits).read();
}

} // namespace zelk::engine
