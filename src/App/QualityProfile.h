#pragma once

#include "Transport/HelperProtocolConfig.h"

#include <QObject>

#include <array>
#include <optional>

namespace zelk {

namespace SetupEnums {
Q_NAMESPACE

/// The one choice that the setup offers instead of the four settings of quality.
enum class QualityProfile { best, balanced, fast };
Q_ENUM_NS(QualityProfile)

} // namespace SetupEnums

using SetupEnums::QualityProfile;

inline constexpr std::array allQualityProfiles{QualityProfile::best, QualityProfile::balanced, QualityProfile::fast};

/// The profile's identity, "best" and so on.
QString idOf(QualityProfile profile);

/// What a profile stands for. Each clears a floor and a lossless-only rule that were set elsewhere.
SafeConfig::Quality toQuality(QualityProfile profile);

/// The profile that is nearest to those settings, whatever their floor; none for none.
std::optional<QualityProfile> qualityProfileFrom(const std::optional<SafeConfig::Quality> &quality);

} // namespace zelk
