#pragma once

#include <QLatin1StringView>

#include <array>
#include <optional>

namespace zelk {

// What the user has dragged the columns of the track table to, in logical pixels with the gap after each. A column
// without a width has its automatic one. The names share what the others leave in the proportion of their widths, so
// that they have either all three or none.
struct ColumnWidths {
    std::optional<int> title{}, artist{}, album{}, quality{}, source{}, status{};
    bool operator==(const ColumnWidths &) const = default;
};

// A column that has a width of its own to remember.
struct SizedColumn {
    QLatin1StringView key; // in the user's defaults
    std::optional<int> ColumnWidths::*width;
    int least;
};

inline constexpr int columnWidthMost = 4096;
inline constexpr std::array<SizedColumn, 6> sizedColumns{{
    {QLatin1StringView("titleColumnWidth"), &ColumnWidths::title, 60},
    {QLatin1StringView("artistColumnWidth"), &ColumnWidths::artist, 60},
    {QLatin1StringView("albumColumnWidth"), &ColumnWidths::album, 60},
    {QLatin1StringView("qualityColumnWidth"), &ColumnWidths::quality, 84},
    {QLatin1StringView("sourceColumnWidth"), &ColumnWidths::source, 80},
    {QLatin1StringView("statusColumnWidth"), &ColumnWidths::status, 120},
}};

} // namespace zelk
