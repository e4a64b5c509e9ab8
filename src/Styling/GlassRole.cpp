#include "Styling/GlassRole.h"

#include "Styling/Palette.h"
#include "Styling/Tokens.h"

#include <algorithm>
#include <cmath>

namespace zelk {

namespace {

constexpr double selectionTranslucent = 0.16;
constexpr double selectionOpaque = 0.18;

QColor faded(QColor color, double opacity) {
    color.setAlphaF(static_cast<float>(color.alphaF() * opacity));
    return color;
}

// How much of the surface's own colour covers what is below. There is no blur, so that this alone keeps text readable.
double cover(GlassRole::Kind kind) {
    switch (kind) {
    case GlassRole::Kind::selection:
        return selectionTranslucent;
    case GlassRole::Kind::chrome:
        return 0.92;
    case GlassRole::Kind::groupCard:
    case GlassRole::Kind::panel:
        return 0.94;
    case GlassRole::Kind::floating:
        return 0.97;
    case GlassRole::Kind::chip:
        return 0.70;
    }
    return 1;
}

QColor groundOf(const GlassRole &role, const Palette &palette) {
    switch (role.kind) {
    case GlassRole::Kind::selection:
        return role.color;
    case GlassRole::Kind::chrome:
    case GlassRole::Kind::floating:
        return palette.window;
    case GlassRole::Kind::groupCard:
    case GlassRole::Kind::panel:
        return palette.card;
    case GlassRole::Kind::chip:
        return palette.quaternary;
    }
    return {};
}

} // namespace

int GlassRole::radius() const {
    switch (kind) {
    case Kind::chrome:
        return 0;
    case Kind::groupCard:
        return Tokens::Radius::card;
    case Kind::panel:
    case Kind::floating:
        return Tokens::Radius::panel;
    case Kind::selection:
    case Kind::chip:
        return Tokens::Radius::chip;
    }
    return 0;
}

QColor GlassRole::opaqueFill(const Palette &palette) const {
    const QColor ground = groundOf(*this, palette);
    return kind == Kind::selection ? faded(ground, selectionOpaque) : ground;
}

QColor GlassRole::fill(const Palette &palette, const GlassResolver &resolver, const QColor &ground) const {
    if (!resolver.usesTranslucency())
        return ground.isValid() ? ground : opaqueFill(palette);
    return faded(ground.isValid() ? ground : groundOf(*this, palette), cover(kind));
}

GlassRole::Stroke GlassRole::stroke(const Palette &palette, const GlassResolver &resolver) const {
    if (kind == Kind::chrome)
        return {};
    return resolver.usesTranslucency() ? Stroke{faded(palette.separator, 0.5), 0.5}
                                       : Stroke{faded(palette.separator, 0.9), 1};
}

bool GlassRole::castsShadow(const GlassResolver &resolver) const {
    return kind == Kind::floating && resolver.usesTranslucency();
}

double snappedToDevice(double width, double devicePixelRatio) {
    return std::max(1.0, std::round(width * devicePixelRatio)) / devicePixelRatio;
}

} // namespace zelk
