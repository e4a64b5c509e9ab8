#pragma once

#include "Transport/HelperProtocolCatalogue.h"

#include <QString>
#include <QStringList>

#include <optional>

// How durations and audio quality read. Pure functions, one vocabulary for all views.
namespace zelk::Format {

// "3:07" for seconds rounded to the nearest, halves away from zero; "—" for what isn't finite or not above 0.
QString duration(double seconds);

// A difference of lengths with its sign: "+3s", "−2s" (U+2212), "±0s".
QString deltaSeconds(double seconds);

// The short form ("320 MP3", "FLAC"). A format that is present but empty gives an empty text.
std::optional<QString> quality(const std::optional<TrackMeta> &meta);

// The long form ("MP3 · 320 kbps"); lossless formats go without a bitrate.
std::optional<QString> qualityLine(const std::optional<TrackMeta> &meta);

// One text a badge. Drops the bitrate for FLAC only, unlike the long form.
QStringList qualityBadges(const std::optional<TrackMeta> &meta);

// A fraction as whole percent, rounded halves away from zero.
int percent(double fraction);

} // namespace zelk::Format
