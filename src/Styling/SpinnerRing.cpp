#include "Styling/SpinnerRing.h"

#include <QPainter>
#include <QPen>

#include <algorithm>

namespace zelk {

SpinnerRing::SpinnerRing(QQuickItem *parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    connect(this, &SpinnerRing::colorChanged, this, [this] { update(); });
    connect(this, &SpinnerRing::arcChanged, this, [this] { update(); });
}

void SpinnerRing::paint(QPainter *painter) {
    static constexpr double strokeShare = 0.14;
    static constexpr float ringOpacity = 0.22F;
    static constexpr int sixteenthsOfDegree = 16;
    static constexpr int arcSpan = 105;
    const double edge = std::min(width(), height());
    const double stroke = edge * strokeShare;
    const QRectF circle(stroke / 2, stroke / 2, edge - stroke, edge - stroke);
    painter->setRenderHint(QPainter::Antialiasing);
    QColor faint = m_color;
    faint.setAlphaF(m_color.alphaF() * ringOpacity);
    painter->setPen(QPen(faint, stroke));
    painter->drawEllipse(circle);
    if (!m_arc)
        return;
    painter->setPen(QPen(m_color, stroke, Qt::SolidLine, Qt::RoundCap));
    painter->drawArc(circle, (90 - arcSpan) * sixteenthsOfDegree, arcSpan * sixteenthsOfDegree);
}

} // namespace zelk
