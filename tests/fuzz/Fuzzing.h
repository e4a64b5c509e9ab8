#pragma once

#include <QByteArrayView>

namespace zelk::fuzz {

/// What a fuzzer throws about an input for which something doesn't hold that must hold for all.
struct Broken {
    const char *property;
};

inline void holds(bool good, const char *property) {
    if (!good)
        throw Broken{property};
}

/// A fuzzer: each is a file that defines this one function. It looks at one input and throws Broken. It keeps nothing
/// from one input to the next, so that a find can be shown again.
void fuzz(QByteArrayView input);

} // namespace zelk::fuzz
