#pragma once

#include "Platform/SingleInstance.h"

#include <functional>

/// One window for one configuration: what a start makes of the place that it claims.
namespace zelk::OneWindow {

/// Whether this start goes on to a window of its own. If not, another one's has come to the front.
bool goesOn(SingleInstance &instance, const QString &activationToken);

/// Lets later starts bring our window to the front, for as long as the instance stands.
void answer(const SingleInstance &instance, std::function<void()> bringToFront);

} // namespace zelk::OneWindow
