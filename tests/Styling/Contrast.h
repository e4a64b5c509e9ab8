#pragma once

#include <QColor>

#include <algorithm>
#include <cmath>

namespace zelk {

inline double luminance(const QColor &color) {
    const auto channel = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * channel(color.redF()) + 0.7152 * channel(color.greenF()) + 0.0722 * channel(color.blueF());
}

// What is seen of `top` laid over the opaque `base`.
inline QColor over(const QColor &top, const QColor &base) {
    const double a = top.alphaF();
    const auto mix = [a](double t, double b) { return static_cast<float>(t * a + b * (1 - a)); };
    return QColor::fromRgbF(mix(top.redF(), base.redF()), mix(top.greenF(), base.greenF()),
                            mix(top.blueF(), base.blueF()));
}

// From 1 to 21, as the Web Content Accessibility Guidelines count it.
inline double contrast(const QColor &text, const QColor &base) {
    const double a = luminance(text);
    const double b = luminance(base);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

} // namespace zelk
