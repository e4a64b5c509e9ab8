#pragma once

#include "Platform/DesktopSettings.h"

#include <QImage>
#include <QString>

#include <functional>
#include <vector>

namespace zelk {

/// What the user of the desktop wants.
struct Look {
    DesktopSettings::ColorScheme scheme = DesktopSettings::ColorScheme::light;
    double textScale = 1;
};

/// A state of a window that a picture can be taken of.
struct Scene {
    QString name;
    std::function<QImage(const Look &look)> picture;
};

std::vector<Scene> mainScenes();
std::vector<Scene> setupScenes();
std::vector<Scene> settingsScenes();

} // namespace zelk
