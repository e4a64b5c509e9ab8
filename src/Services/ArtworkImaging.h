#pragma once

#include <QByteArray>
#include <QImage>

#include <vector>

/// Pictures from bytes and from pictures; slow, and therefore never on the main thread.
namespace zelk::ArtworkImaging {

/// The pixels per point that every request assumes, whatever the display is.
inline constexpr double scale = 2.0;

/// The first picture in `data`, upright, no longer on its longer side than `points` allow and never enlarged. Null for
/// what is no picture, and for one that takes more memory to decode than any cover does.
QImage downsample(const QByteArray &data, double points);

/// A square of `pixels` with the pictures in its quarters, from the top left; the last one fills what is left over.
/// Null without pictures and without pixels.
QImage composeMosaic(const std::vector<QImage> &images, int pixels);

/// How many decodes have been tried on the calling thread.
int decodesOnThisThread();

} // namespace zelk::ArtworkImaging
