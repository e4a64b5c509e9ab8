#pragma once

#include "State/PlaylistGroup.h"
#include "Styling/Tokens.h"

#include <QString>

#include <optional>

namespace zelk {

// "17 / 42 · 2 need review · 1 failed"; the last two only above 0.
QString groupCountsLine(int completed, int total, int reviewCount, int failedCount);

struct StatusBadge {
    QString symbol;
    Ink ink = Ink::secondary;
    QString text; // what the symbol says
    bool operator==(const StatusBadge &) const = default;
};

// What a finished playlist carries beside its name; nothing while it isn't finished.
std::optional<StatusBadge> groupBadge(std::optional<Finish> status);

QString percentText(double fraction); // "40 percent"

} // namespace zelk
