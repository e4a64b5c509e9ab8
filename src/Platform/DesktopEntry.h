#pragma once

#include <QString>

namespace zelk {

/// What the desktop knows the application by: the name of its desktop entry, without ".desktop", and of its icon.
QString desktopEntryName();

/// That name as the path of an object, by which the session bus knows the application.
QString desktopObjectPath();

} // namespace zelk
