#include "Styling/Format.h"

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace zelk::Format {

namespace {

// The engine's bitrate is free text, so a unit may already be in it.
QString bitrate(const QString &text) {
    const QString lower = text.toLower();
    return lower.contains("kbps"_L1) || lower.contains("kb/s"_L1) ? text : text + " kbps"_L1;
}

QString upperFormat(const TrackMeta &meta) {
    return meta.format.value_or(QString()).toUpper();
}

bool hasBitrate(const TrackMeta &meta) {
    return meta.bitrate && !meta.bitrate->isEmpty();
}

} // namespace

QString duration(double seconds) {
    if (!std::isfinite(seconds) || seconds <= 0)
        return u"—"_s;
    const double whole = std::round(seconds);
    const double minutes = std::floor(whole / 60);
    return QString::number(minutes, 'f', 0) + u':' +
           QString::number(static_cast<int>(whole - minutes * 60)).rightJustified(2, u'0');
}

QString deltaSeconds(double seconds) {
    const double whole = std::round(seconds);
    if (whole == 0 || std::isnan(whole))
        return u"±0s"_s;
    return (whole > 0 ? u"+"_s : u"\u2212"_s) + QString::number(std::fabs(whole), 'f', 0) + u's';
}

std::optional<QString> quality(const std::optional<TrackMeta> &meta) {
    if (!meta)
        return std::nullopt;
    if (!meta->format)
        return meta->bitrate;
    const QString format = upperFormat(*meta);
    if (hasBitrate(*meta) && format == "MP3"_L1)
        return *meta->bitrate + " MP3"_L1;
    return format;
}

std::optional<QString> qualityLine(const std::optional<TrackMeta> &meta) {
    if (!meta)
        return std::nullopt;
    const QString format = upperFormat(*meta);
    if (!format.isEmpty()) {
        if (format == "FLAC"_L1 || format == "ALAC"_L1 || !hasBitrate(*meta))
            return format;
        return format + u" · "_s + bitrate(*meta->bitrate);
    }
    if (hasBitrate(*meta))
        return bitrate(*meta->bitrate);
    return std::nullopt;
}

QStringList qualityBadges(const std::optional<TrackMeta> &meta) {
    QStringList badges;
    if (!meta)
        return badges;
    const QString format = upperFormat(*meta);
    if (!format.isEmpty())
        badges += format;
    if (hasBitrate(*meta) && format != "FLAC"_L1)
        badges += bitrate(*meta->bitrate);
    return badges;
}

int percent(double fraction) {
    return static_cast<int>(std::lround(fraction * 100));
}

} // namespace zelk::Format
