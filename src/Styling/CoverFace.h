#pragma once

#include <QImage>

namespace zelk {

// A cover as a view shows it: scaled to fill a square of `edge` device pixels, with corners of `radius` cut out of the
// picture itself, since no shader runs on every renderer. Remembers the last few thousand; on the main thread.
QImage coverFace(const QImage &cover, int edge, double radius);

} // namespace zelk
