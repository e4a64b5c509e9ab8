#pragma once

namespace zelk {

// How see-through the surfaces of a window are: decided once, from what the desktop's user wants and what they chose
// here.
struct GlassResolver {
    bool osSupportsGlass = false;
    bool prefersOpaque = false;
    bool reduceMotion = false;
    bool increaseContrast = false;

    bool usesGlass() const { return osSupportsGlass && usesTranslucency(); }
    bool usesTranslucency() const { return !prefersOpaque && !increaseContrast; }

    // What holds where nothing was decided.
    static constexpr GlassResolver fallback() { return {}; }

    bool operator==(const GlassResolver &) const = default;
};

// Neither this desktop nor any other of its kind has glass of its own.
constexpr GlassResolver resolveGlass(bool reduceTransparency, bool reduceMotion, bool increaseContrast,
                                     bool appReduceGlass) {
    return {.osSupportsGlass = false,
            .prefersOpaque = reduceTransparency || appReduceGlass,
            .reduceMotion = reduceMotion,
            .increaseContrast = increaseContrast};
}

} // namespace zelk
