#include "Playlists/RowIdentity.h"

#include <QCryptographicHash>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

constexpr QChar lengthMark = u':';

/// Exporters round, and services measure one recording differently.
constexpr double mostSecondsApart = 4;

} // namespace

QString rowKeyOf(const ListedTrack &track, const Probe &probe) {
    QStringList parts{probe.title.core, probe.title.version.join(u' '), probe.artists.join(u',')};
    if (probe.artists.isEmpty()) { // a bare title says too little
        parts += track.location;
    }
    const QByteArray hash = QCryptographicHash::hash(parts.join(u'\n').toUtf8(), QCryptographicHash::Sha1);
    return QString::fromLatin1(hash.toHex()) + lengthMark +
           QString::number(std::llround(probe.durationSec.value_or(0)));
}

QString keyWithoutLength(const QString &rowKey) {
    return rowKey.section(lengthMark, 0, 0);
}

bool mayBeOneRecording(const QString &rowKey, const QString &other) {
    const auto lengthOf = [](const QString &key) { return key.section(lengthMark, 1).toDouble(); };
    return std::abs(lengthOf(rowKey) - lengthOf(other)) <= mostSecondsApart &&
           keyWithoutLength(rowKey) == keyWithoutLength(other);
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
