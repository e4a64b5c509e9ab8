#include "App/QualityProfile.h"

#include <QMetaEnum>

namespace zelk {

QString idOf(QualityProfile profile) {
    return QString::fromLatin1(QMetaEnum::fromType<QualityProfile>().valueToKey(static_cast<int>(profile)));
}

SafeConfig::Quality toQuality(QualityProfile profile) {
    SafeConfig::Quality quality;
    quality.floor = QualityFloor::any;
    quality.losslessOnly = false;
    quality.bestQuality = profile != QualityProfile::fast;
    quality.upgradeEnabled = profile == QualityProfile::best;
    return quality;
}

std::optional<QualityProfile> qualityProfileFrom(const std::optional<SafeConfig::Quality> &quality) {
    if (!quality)
        return std::nullopt;
    if (!quality->bestQuality)
        return QualityProfile::fast;
    return quality->upgradeEnabled ? QualityProfile::best : QualityProfile::balanced;
}

} // namespace zelk
