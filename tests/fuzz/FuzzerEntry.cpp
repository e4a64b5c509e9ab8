#include "Fuzzing.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

// The name that libFuzzer calls.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    try {
        zelk::fuzz::fuzz(QByteArrayView(data, static_cast<qsizetype>(size)));
    } catch (const zelk::fuzz::Broken &broken) {
        std::fprintf(stderr, "Doesn't hold: %s\n", broken.property);
        std::abort();
    }
    return 0;
}
