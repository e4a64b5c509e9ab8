#include "Playlists/XspfPlaylist.h"

#include "Playlists/ArtistNames.h"
#include "Playlists/M3uPlaylist.h"

#include <QUrl>
#include <QXmlStreamReader>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

QString textOf(QXmlStreamReader &xml) {
    return xml.readElementText(QXmlStreamReader::SkipChildElements).simplified();
}

/// Reads one track up to its end; the entry that its location is goes to `entry`, since it may have to name the track.
ListedTrack readTrack(QXmlStreamReader &xml, const QString &folder, QString &entry) {
    ListedTrack track;
    while (xml.readNextStartElement()) {
        const auto name = xml.name();
        if (name == "title"_L1) {
            track.title = textOf(xml);
        } else if (name == "creator"_L1) {
            track.artist = shownArtists(textOf(xml));
        } else if (name == "album"_L1) {
            track.album = textOf(xml);
        } else if (name == "duration"_L1) {
            track.durationSec = std::max(0.0, textOf(xml).toDouble() / 1'000);
        } else if (name == "image"_L1) {
            track.artworkUrl = textOf(xml);
        } else if (name == "location"_L1 && track.location.isEmpty()) {
            const QString address = textOf(xml);
            // A location is a URL even where it is relative, so its percent signs are escapes.
            entry = address.contains("://"_L1) ? address : QUrl::fromPercentEncoding(address.toUtf8());
            track.location = resolvedLocation(entry, folder);
        } else {
            xml.skipCurrentElement();
        }
    }
    return track;
}

} // namespace

ReadFile readXspfPlaylist(const QByteArray &bytes, const QString &folder) {
    ReadFile file;
    QXmlStreamReader xml(bytes);
    if (!xml.readNextStartElement() || xml.name() != "playlist"_L1) {
        file.warnings.push_back({0, u"isn't an XSPF playlist"_s});
        return file;
    }
    ReadList list;
    while (xml.readNextStartElement()) {
        if (xml.name() == "title"_L1) {
            list.name = textOf(xml);
        } else if (xml.name() == "trackList"_L1) {
            while (xml.readNextStartElement()) {
                const qint64 line = xml.lineNumber();
                QString entry;
                ListedTrack track = readTrack(xml, folder, entry);
                if (xml.hasError()) {
                    break;
                }
                if (track.title.isEmpty()) {
                    takeEntryName(entry, track);
                }
                if (track.title.isEmpty()) {
                    file.warnings.push_back({line, u"the track has neither title nor location and is left out"_s});
                } else {
                    list.tracks.push_back(std::move(track));
                }
            }
        } else {
            xml.skipCurrentElement();
        }
    }
    if (xml.hasError()) {
        file.warnings.push_back({xml.lineNumber(), u"the list breaks off here: %1"_s.arg(xml.errorString())});
    }
    file.lists.push_back(std::move(list));
    return file;
}

} // namespace zelk::engine
