#pragma once

#include "Platform/DesktopSettings.h"

#include <QImage>
#include <QString>

#include <functional>
#include <vector>

namespace zelk {

/// A state of a window that a picture can be taken of.
struct Scene {
    QString name;
    std::function<QImage(DesktopSettings::ColorScheme scheme)> picture;
};

std::vector<Scene> mainScenes();
std::vector<Scene> setupScenes();
std::vector<Scene> settingsScenes();

} // namespace zelk
