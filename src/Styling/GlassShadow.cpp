#include "Styling/GlassShadow.h"

#include <QPainter>
#include <QQuickWindow>

#include <algorithm>
#include <vector>

namespace zelk {

namespace {

// Each pixel becomes the mean of the `span` on either side of it, along lines whose pixels lie `step` apart.
void boxBlur(std::vector<double> &pixels, int edge, int lineStep, int step, int span) {
    std::vector<double> line(static_cast<std::size_t>(edge));
    for (int row = 0; row < edge; ++row) {
        const auto at = [&](int i) -> double & {
            return pixels[static_cast<std::size_t>(row) * lineStep + static_cast<std::size_t>(i) * step];
        };
        double sum = 0;
        for (int i = -span; i < edge; ++i) {
            if (i + span < edge)
                sum += at(i + span);
            if (i - span - 1 >= 0)
                sum -= at(i - span - 1);
            if (i >= 0)
                line[static_cast<std::size_t>(i)] = sum / (2 * span + 1);
        }
        for (int i = 0; i < edge; ++i)
            at(i) = line[static_cast<std::size_t>(i)];
    }
}

} // namespace

QImage shadowPatch(int radius, int blur) {
    const int edge = 2 * (2 * blur + radius) + 1;
    QImage sharp(edge, edge, QImage::Format_ARGB32_Premultiplied);
    sharp.fill(Qt::transparent);
    QPainter painter(&sharp);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(QRectF(blur, blur, edge - 2 * blur, edge - 2 * blur), radius, radius);
    painter.end();

    std::vector<double> alpha;
    alpha.reserve(static_cast<std::size_t>(edge) * static_cast<std::size_t>(edge));
    for (int y = 0; y < edge; ++y) {
        for (int x = 0; x < edge; ++x)
            alpha.push_back(qAlpha(sharp.pixel(x, y)));
    }
    // Three passes are near enough to a bell curve, and reach no further than `blur`.
    for (int pass = 0; pass < 3; ++pass) {
        boxBlur(alpha, edge, edge, 1, blur / 3);
        boxBlur(alpha, edge, 1, edge, blur / 3);
    }
    QImage soft(edge, edge, QImage::Format_Alpha8);
    for (int y = 0; y < edge; ++y) {
        for (int x = 0; x < edge; ++x)
            soft.scanLine(y)[x] = static_cast<uchar>(qRound(alpha[static_cast<std::size_t>(y) * edge + x]));
    }
    return soft;
}

GlassShadow::GlassShadow(QQuickItem *parent) : QQuickPaintedItem(parent) {
    connect(this, &GlassShadow::changed, this, [this] { update(); });
}

void GlassShadow::paint(QPainter *painter) {
    const double ratio = window() ? window()->effectiveDevicePixelRatio() : 1;
    const QImage alpha = shadowPatch(qRound(m_radius * ratio), qRound(m_blur * ratio));
    QImage patch(alpha.size(), QImage::Format_ARGB32_Premultiplied);
    patch.fill(m_color);
    QPainter coloring(&patch);
    coloring.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    coloring.drawImage(0, 0, alpha.convertToFormat(QImage::Format_ARGB32_Premultiplied));
    coloring.end();

    // Nine pieces: the corners as they are, all else drawn out. A surface smaller than its corners gets less of them.
    const int patchCorner = (patch.width() - 1) / 2;
    const double corner = std::min({patchCorner / ratio, width() / 2, height() / 2});
    const double source = corner * ratio;
    const double target[] = {0, corner, width() - corner, width()};
    const double down[] = {0, corner, height() - corner, height()};
    const double from[] = {0, source, patch.width() - source, static_cast<double>(patch.width())};
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column)
            painter->drawImage(QRectF(QPointF(target[column], down[row]), QPointF(target[column + 1], down[row + 1])),
                               patch,
                               QRectF(QPointF(from[column], from[row]), QPointF(from[column + 1], from[row + 1])));
    }
}

} // namespace zelk
