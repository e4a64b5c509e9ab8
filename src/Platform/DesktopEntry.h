#pragma once

#include <QString>

namespace zelk {

/// What the desktop knows the application by: the name of its desktop entry, without ".desktop", and of its icon.
QString desktopEntryName();

} // namespace zelk
