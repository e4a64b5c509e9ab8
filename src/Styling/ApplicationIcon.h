#pragma once

#include <QIcon>

namespace zelk {

/// The application's own icon, as the build has drawn it in each size that desktops ask for.
QIcon applicationIcon();

} // namespace zelk
