#include "Styling/CoverFace.h"

#include <QBrush>
#include <QCache>
#include <QPainter>

#include <algorithm>

namespace zelk {

namespace {

constexpr qsizetype remembered = 8 << 20; // bytes

struct Face {
    qint64 cover;
    int edge;
    double radius;
    bool operator==(const Face &) const = default;
};

size_t qHash(const Face &face, size_t seed) {
    return qHashMulti(seed, face.cover, face.edge, face.radius);
}

QImage draw(const QImage &cover, int edge, double radius) {
    const int side = std::min(cover.width(), cover.height());
    const QRect middle((cover.width() - side) / 2, (cover.height() - side) / 2, side, side);
    const QImage filling = cover.copy(middle).scaled(edge, edge, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QImage face(edge, edge, QImage::Format_ARGB32_Premultiplied);
    face.fill(Qt::transparent);
    QPainter painter(&face);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(filling);
    painter.drawRoundedRect(face.rect(), radius, radius);
    return face;
}

} // namespace

QImage coverFace(const QImage &cover, int edge, double radius) {
    if (cover.isNull() || edge < 1)
        return {};
    static QCache<Face, QImage> faces(remembered);
    const Face key{cover.cacheKey(), edge, radius};
    if (const QImage *known = faces.object(key))
        return *known;
    const QImage face = draw(cover, edge, radius);
    faces.insert(key, new QImage(face), face.sizeInBytes()); // the cache owns it
    return face;
}

} // namespace zelk
