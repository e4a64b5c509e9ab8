#pragma once

#include "Styling/GlassResolver.h"

#include <QColor>

namespace zelk {

class Palette;

// What a surface is, which says how it looks in each degree of translucency.
struct GlassRole {
    enum class Kind { selection, chrome, groupCard, panel, floating, chip };

    struct Stroke {
        QColor color; // invalid for none
        double width = 0;
        bool operator==(const Stroke &) const = default;
    };

    Kind kind = Kind::chrome;
    QColor color{}; // of a selection

    int radius() const; // logical pixels
    // `ground` stands in for the role's own colour where it is valid, as opaque as that would be.
    QColor fill(const Palette &palette, const GlassResolver &resolver, const QColor &ground = {}) const;
    QColor opaqueFill(const Palette &palette) const;
    Stroke stroke(const Palette &palette, const GlassResolver &resolver) const; // lies inside the shape
    bool castsShadow(const GlassResolver &resolver) const;
};

// The width that is a whole number of device pixels, and at least one.
double snappedToDevice(double width, double devicePixelRatio);

} // namespace zelk
