#pragma once

#include <QByteArray>

namespace zelk {

/// The cover of that number as a PNG of 128 by 128 pixels: a plain drawing of our own, the same for the same number.
QByteArray drawnCover(int number);

} // namespace zelk
