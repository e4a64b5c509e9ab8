#pragma once

#include "Styling/GlassEnvironment.h"
#include "Styling/GlassRole.h"
#include "Styling/Palette.h"

#include <QPointer>
#include <QQuickPaintedItem>
#include <qqmlregistration.h>

#include <optional>

namespace zelk {

// Draws a surface in its role. The views take it as GlassBackground, which knows where palette and environment are.
class GlassSurface : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(Role role READ role WRITE setRole NOTIFY changed)
    // The colour of a selection.
    Q_PROPERTY(QColor tint READ tint WRITE setTint NOTIFY changed)
    // Stands in for the colour that the role has by itself; transparent for none.
    Q_PROPERTY(QColor ground READ ground WRITE setGround NOTIFY changed)
    // The role's own unless it is set.
    Q_PROPERTY(int radius READ radius WRITE setRadius NOTIFY changed)
    Q_PROPERTY(bool castsShadow READ castsShadow NOTIFY changed)
    Q_PROPERTY(zelk::Palette *colors READ colors WRITE setColors NOTIFY changed)
    Q_PROPERTY(zelk::GlassEnvironment *glass READ glass WRITE setGlass NOTIFY changed)

public:
    enum Role { Selection, Chrome, GroupCard, Panel, Floating, Chip };
    Q_ENUM(Role)

    explicit GlassSurface(QQuickItem *parent = nullptr);

    Role role() const { return static_cast<Role>(m_role.kind); }
    void setRole(Role role);
    QColor tint() const { return m_role.color; }
    void setTint(const QColor &tint);
    QColor ground() const { return m_ground; }
    void setGround(const QColor &ground);
    int radius() const { return m_radius.value_or(m_role.radius()); }
    void setRadius(int radius);
    bool castsShadow() const { return m_role.castsShadow(resolver()); }
    Palette *colors() const { return m_colors; }
    void setColors(Palette *colors);
    GlassEnvironment *glass() const { return m_glass; }
    void setGlass(GlassEnvironment *glass);

    void paint(QPainter *painter) override;

protected:
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

Q_SIGNALS:
    void changed();

private:
    GlassResolver resolver() const { return m_glass ? m_glass->resolver() : GlassResolver::fallback(); }
    void refresh();

    GlassRole m_role;
    QColor m_ground = Qt::transparent;
    std::optional<int> m_radius;
    QPointer<Palette> m_colors;
    QPointer<GlassEnvironment> m_glass;
};

} // namespace zelk
