#include "Platform/DesktopSettings.h"

#include <utility>

namespace zelk {

void DesktopSettings::setColorScheme(ColorScheme colorScheme) {
    if (std::exchange(_colorScheme, colorScheme) != colorScheme)
        Q_EMIT colorSchemeChanged();
}

void DesktopSettings::setIncreasedContrast(bool isIncreased) {
    if (std::exchange(_increasedContrast, isIncreased) != isIncreased)
        Q_EMIT increasedContrastChanged();
}

void DesktopSettings::setReducedMotion(bool isReduced) {
    if (std::exchange(_reducedMotion, isReduced) != isReduced)
        Q_EMIT reducedMotionChanged();
}

void DesktopSettings::setTextScale(double scale) {
    if (std::exchange(_textScale, scale) != scale)
        Q_EMIT textScaleChanged();
}

} // namespace zelk
