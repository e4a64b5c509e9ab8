#pragma once

#include <QColor>
#include <QImage>
#include <QQuickPaintedItem>
#include <qqmlregistration.h>

namespace zelk {

// The soft shadow that a rounded surface casts. It is as large as the surface and its `reach` on every side.
class GlassShadow : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int radius MEMBER m_radius NOTIFY changed)
    Q_PROPERTY(int blur MEMBER m_blur NOTIFY changed)
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed)

public:
    explicit GlassShadow(QQuickItem *parent = nullptr);

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void changed();

private:
    int m_radius = 0;
    int m_blur = 0;
    QColor m_color;
};

// The corners of such a shadow with the shortest edges between them, as alpha: it fades over `blur` pixels to each side
// of the outline, which lies that far inside the picture. All in pixels of the picture.
QImage shadowPatch(int radius, int blur);

} // namespace zelk
