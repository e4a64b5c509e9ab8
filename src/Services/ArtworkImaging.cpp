#include "Services/ArtworkImaging.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>

#include <algorithm>
#include <array>

using namespace Qt::Literals::StringLiterals;

namespace zelk::ArtworkImaging {

namespace {

constexpr auto format = QImage::Format_RGBA8888_Premultiplied;

// In pixels. Most formats are decoded whole, at 4 bytes a pixel, and then made smaller. A JPEG is made smaller on the
// way, but one that comes in passes stands in memory until its last.
constexpr qint64 largestPicture = qint64{32} << 20;
constexpr qint64 largestJpeg = qint64{64} << 20;

thread_local int decodes = 0;

/// A cover is a picture of pixels: other kinds that the reader knows can name files and run without bounds.
bool isCoverFormat(const QByteArray &name) {
    static constexpr std::array known{"jpeg"_L1, "png"_L1, "gif"_L1, "webp"_L1, "bmp"_L1, "tiff"_L1, "ico"_L1};
    return std::find(known.begin(), known.end(), QLatin1StringView(name)) != known.end();
}

} // namespace

int decodesOnThisThread() {
    return decodes;
}

QImage downsample(const QByteArray &data, double points) {
    ++decodes;
    const int bound = std::max(1, static_cast<int>(points * scale));
    QBuffer buffer;
    buffer.setData(data);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    if (!isCoverFormat(reader.format()))
        return {};
    const QSize size = reader.size();
    if (size.isEmpty())
        return {};
    if (qint64{size.width()} * size.height() > (reader.format() == "jpeg" ? largestJpeg : largestPicture))
        return {};
    if (std::max(size.width(), size.height()) > bound) {
        // Before the picture is turned upright, which a square bound doesn't mind.
        reader.setScaledSize(size.scaled(bound, bound, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
    }
    return reader.read().convertToFormat(format);
}

QImage composeMosaic(const std::vector<QImage> &images, int pixels) {
    QImage mosaic(std::max(0, pixels), std::max(0, pixels), format);
    if (mosaic.isNull() || images.empty())
        return {};
    mosaic.fill(Qt::transparent);
    const int half = pixels / 2;
    // From the bottom left, so that the line which an odd number leaves over is at the top and at the right.
    const int upper = pixels - 2 * half;
    const int lower = pixels - half;
    const std::array places{QPoint(0, upper), QPoint(half, upper), QPoint(0, lower), QPoint(half, lower)};
    QPainter painter(&mosaic);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (std::size_t i = 0; i < places.size(); ++i)
        painter.drawImage(QRect(places[i], QSize(half, half)), images[std::min(i, images.size() - 1)]);
    return mosaic;
}

} // namespace zelk::ArtworkImaging
