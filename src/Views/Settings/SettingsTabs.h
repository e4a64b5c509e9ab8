#pragma once

#include <QString>

#include <array>

namespace zelk {

// What a tab of the settings is called, and the view in it.
struct SettingsTabFace {
    QString label;
    QString symbol;
    QString view; // its file's name

    bool operator==(const SettingsTabFace &) const = default;
};

// In their order.
std::array<SettingsTabFace, 8> settingsTabFaces();

} // namespace zelk
