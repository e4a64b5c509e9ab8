#include "Styling/GlassSurface.h"

#include <QPainter>
#include <QPainterPath>
#include <QQuickWindow>

#include <algorithm>

namespace zelk {

GlassSurface::GlassSurface(QQuickItem *parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
}

void GlassSurface::refresh() {
    update();
    Q_EMIT changed();
}

void GlassSurface::setRole(Role role) {
    if (this->role() == role)
        return;
    m_role.kind = static_cast<GlassRole::Kind>(role);
    refresh();
}

void GlassSurface::setTint(const QColor &tint) {
    if (m_role.color == tint)
        return;
    m_role.color = tint;
    refresh();
}

void GlassSurface::setGround(const QColor &ground) {
    if (m_ground == ground)
        return;
    m_ground = ground;
    refresh();
}

void GlassSurface::setRadius(int radius) {
    if (m_radius == radius)
        return;
    m_radius = radius;
    refresh();
}

void GlassSurface::setColors(Palette *colors) {
    if (m_colors == colors)
        return;
    if (m_colors)
        m_colors->disconnect(this);
    m_colors = colors;
    if (m_colors)
        connect(m_colors, &Palette::changed, this, &GlassSurface::refresh);
    refresh();
}

void GlassSurface::setGlass(GlassEnvironment *glass) {
    if (m_glass == glass)
        return;
    if (m_glass)
        m_glass->disconnect(this);
    m_glass = glass;
    if (m_glass)
        connect(m_glass, &GlassEnvironment::changed, this, &GlassSurface::refresh);
    refresh();
}

void GlassSurface::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    QQuickPaintedItem::geometryChange(newGeometry, oldGeometry);
    // One that is being unfolded from nothing has no pixel yet to paint on.
    setFlag(ItemHasContents, newGeometry.width() >= 1 && newGeometry.height() >= 1);
}

void GlassSurface::paint(QPainter *painter) {
    if (!m_colors)
        return;
    const QColor ground = m_ground.alpha() > 0 ? m_ground : QColor();
    const QRectF shape(0, 0, width(), height());
    QPainterPath outline;
    outline.addRoundedRect(shape, radius(), radius());
    painter->fillPath(outline, m_role.fill(*m_colors, resolver(), ground));

    const auto stroke = m_role.stroke(*m_colors, resolver());
    if (!stroke.color.isValid())
        return;
    const double line = snappedToDevice(stroke.width, window() ? window()->effectiveDevicePixelRatio() : 1);
    const double innerRadius = std::max(0.0, radius() - line);
    outline.addRoundedRect(shape.adjusted(line, line, -line, -line), innerRadius, innerRadius);
    painter->fillPath(outline, stroke.color); // what lies between the two
}

} // namespace zelk
