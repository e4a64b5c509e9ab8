#pragma once

#include "Transport/HelperProtocolConfig.h"

#include <QString>

#include <array>

// The settings of a run that can be changed by steps.
namespace zelk::RunSettings {

inline constexpr int count = 4;

struct Range {
    double minimum = 0;
    double maximum = 0;
    double step = 1;
    bool operator==(const Range &) const = default;
};

// `index` is the place of a setting, 0 to `count` - 1.
Range rangeOf(int index);
double valueOf(const SafeConfig::Run &run, int index);
// The label with the value, cut to a whole number.
QString text(const SafeConfig::Run &run, int index);
// `run` with that one value, which is kept within its range.
SafeConfig::Run changed(SafeConfig::Run run, int index, double value);

} // namespace zelk::RunSettings
