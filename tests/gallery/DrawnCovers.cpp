#include "DrawnCovers.h"

#include "Services/Pictures.h"

#include <QPainter>

namespace zelk {

namespace {

constexpr int edge = 128;

struct Inks {
    QRgb ground, shade, bright;
};
constexpr std::array inks{
    Inks{0xFF17736E, 0xFF0E4A4F, 0xFFFFE08A}, Inks{0xFF8E2F5B, 0xFF4A1942, 0xFFFFA46B},
    Inks{0xFF5B2A86, 0xFF2E1760, 0xFFFF6BB0}, Inks{0xFF24513B, 0xFF142E24, 0xFFC9D9B4},
    Inks{0xFF2B2D33, 0xFF17181B, 0xFFA9ABB5}, Inks{0xFF3B3FA8, 0xFF23256B, 0xFF9FB4FF},
    Inks{0xFF2F3A57, 0xFF1B2236, 0xFFF2A65A}, Inks{0xFF7A2318, 0xFF46120C, 0xFFF7A072},
};

void drawRings(QPainter &painter, const Inks &with) {
    for (int radius = 52; radius > 4; radius -= 14) {
        painter.setBrush(QColor((radius / 14) % 2 ? with.bright : with.shade));
        painter.drawEllipse(QPoint(edge / 2, edge / 2), radius, radius);
    }
}

void drawSun(QPainter &painter, const Inks &with) {
    painter.setBrush(QColor(with.bright));
    painter.drawEllipse(QPoint(76, 56), 34, 34);
    painter.setBrush(QColor(with.shade));
    painter.drawPolygon(QPolygon({{0, 84}, {edge, 66}, {edge, edge}, {0, edge}}));
}

void drawBars(QPainter &painter, const Inks &with) {
    painter.setBrush(QColor(with.bright));
    constexpr std::array heights{40, 72, 56, 84, 48};
    for (std::size_t i = 0; i < heights.size(); ++i)
        painter.drawRect(16 + static_cast<int>(i) * 20, 108 - heights.at(i), 12, heights.at(i));
}

void drawPeaks(QPainter &painter, const Inks &with) {
    painter.setBrush(QColor(with.bright));
    painter.drawPolygon(QPolygon({{0, edge}, {56, 28}, {104, edge}}));
    painter.setBrush(QColor(with.bright).lighter(140));
    painter.drawPolygon(QPolygon({{56, edge}, {96, 60}, {edge, edge}}));
}

} // namespace

QByteArray drawnCover(int number) {
    constexpr std::array motifs{drawRings, drawSun, drawPeaks, drawBars};
    const auto index = static_cast<std::size_t>(number);
    const Inks &with = inks.at((index + index / motifs.size()) % inks.size());
    QImage image = plain(edge, edge, QColor(with.ground));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    motifs.at(index % motifs.size())(painter, with);
    painter.end();
    return encoded(image);
}

} // namespace zelk
