#include "Views/Settings/QualityLogic.h"

#include <algorithm>
#include <array>

namespace zelk {

namespace {

// In the order of their choices.
constexpr std::array floorValues{QualityFloor::flac, QualityFloor::mp3_320, QualityFloor::any};

} // namespace

QString summary(const SafeConfig::Quality &quality) {
    QString text = QualityLogic::tr("zelk will accept ");
    switch (quality.floor) {
    case QualityFloor::flac:
        text += QualityLogic::tr("only lossless FLAC");
        break;
    case QualityFloor::mp3_320:
        text += QualityLogic::tr("320 kbps MP3 or better");
        break;
    case QualityFloor::any:
        text += QualityLogic::tr("any quality");
        break;
    }
    if (quality.bestQuality)
        text += QualityLogic::tr(", always preferring the highest available");
    if (quality.upgradeEnabled)
        text += QualityLogic::tr(", and re-download when a better copy appears");
    return text + u'.';
}

QStringList QualityLogic::floors() const {
    return {tr("FLAC (lossless)"), tr("320 kbps MP3"), tr("Any")};
}

int QualityLogic::floor() const {
    if (!hasConfig())
        return -1;
    return static_cast<int>(std::ranges::find(floorValues, quality().floor) - floorValues.begin());
}

void QualityLogic::setFloor(int floor) {
    push(&SafeConfig::Quality::floor, floorValues.at(static_cast<std::size_t>(floor)));
}

void QualityLogic::pushIdentity(bool SafeConfig::Identity::*field, bool value) {
    apply([this, field, value]() -> std::optional<ConfigPatch> {
        if (!hasConfig())
            return std::nullopt;
        ConfigPatch patch;
        patch.identity = config()->identity;
        *patch.identity.*field = value;
        return patch;
    });
}

} // namespace zelk
