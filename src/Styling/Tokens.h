#pragma once

#include "State/TrackModel.h"
#include "Transport/HelperProtocolCatalogue.h"

#include <QColor>
#include <QString>

#include <optional>

// The application's one vocabulary of measures, brand colours and status symbols. The QML singleton of the same name
// hands them to the views; nothing else may hold a measure or a colour of its own.
namespace zelk {

// A colour that follows light and dark, by what it says. The palette gives each its value.
enum class Ink : quint8 { primary, secondary, tertiary, accent, red, orange, yellow, green };

namespace Tokens {

namespace Space { // logical pixels
inline constexpr int xxs = 2;
inline constexpr int xs = 4;
inline constexpr int sm = 8;
inline constexpr int md = 12;
inline constexpr int lg = 16;
inline constexpr int xl = 24;
inline constexpr int xxl = 32;
} // namespace Space

namespace Radius { // logical pixels
inline constexpr int chip = 6;
inline constexpr int control = 8;
inline constexpr int card = 12;
inline constexpr int panel = 16;
} // namespace Radius

namespace Art { // edges of covers, in logical pixels
inline constexpr int row = 30;
inline constexpr int sidebar = 22;
inline constexpr int header = 56;
inline constexpr int inspector = 64;
} // namespace Art

namespace Source {

inline constexpr QRgb apple = 0xFFFC3C44;
inline constexpr QRgb spotify = 0xFF1ED760;
inline constexpr QRgb soundcloud = 0xFFFF5500;
inline constexpr QRgb bandcamp = 0xFF1DA0C3;
inline constexpr QRgb youtube = 0xFFFF0000;
inline constexpr QRgb soulseek = 0xFF2D7DD2;

QString logoAsset(PlaylistSourceId source);
QColor accent(PlaylistSourceId source);
QString displayName(PlaylistSourceId source);
QString sfSymbol(PlaylistSourceId source); // what stands for a playlist's cover while there is none

QString logoAsset(SourceId source);
QColor accent(SourceId source);
QString displayName(SourceId source);

struct DownloadSourceStyle {
    QString label;
    QColor color; // invalid for the secondary colour of the palette
    std::optional<QString> asset;
    bool operator==(const DownloadSourceStyle &) const = default;
};

// How the free-form source text of a track's record reads: as the source it names, or as "Unknown".
DownloadSourceStyle downloadStyle(const std::optional<QString> &raw);

} // namespace Source

namespace Status {
QString symbol(StatusRole role);
Ink color(StatusRole role);
} // namespace Status

namespace PhaseStyle {
QString symbol(Phase phase);
QString label(Phase phase);
} // namespace PhaseStyle

} // namespace Tokens
} // namespace zelk
