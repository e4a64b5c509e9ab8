#include "Playlists/RowIdentity.h"

#include <QCryptographicHash>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

QString rowKeyOf(const ListedTrack &track, const Probe &probe) {
    const QString seconds = QString::number(std::llround(probe.durationSec.value_or(0)));
    QStringList parts{probe.title.core, probe.title.version.join(u' '), probe.artists.join(u','), seconds};
    if (probe.artists.isEmpty()) { // a bare title says too little
        parts += track.location;
    }
    return QString::fromLatin1(QCryptographicHash::hash(parts.join(u'\n').toUtf8(), QCryptographicHash::Sha1).toHex());
}

QString spellingOf(const ListedTrack &track) {
    QStringList parts{track.title, track.artist, QString::number(std::llround(track.durationSec))};
    if (track.artist.isEmpty()) {
        parts += track.location;
    }
    return QString::fromLatin1(QCryptographicHash::hash(parts.join(u'\n').toUtf8(), QCryptographicHash::Sha1).toHex());
}

Probe probeOf(const ListedTrack &track) {
    return makeProbe(track.title, track.artist, track.album, track.durationSec, track.isrc);
}

QString labelOf(const ListedTrack &track) {
    return track.artist.isEmpty() ? track.title : track.artist + " - "_L1 + track.title;
}

} // namespace zelk::engine
