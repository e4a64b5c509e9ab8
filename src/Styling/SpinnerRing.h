#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <qqmlregistration.h>

namespace zelk {

// The face of a spinner: a faint ring and an arc on it. Painted, as no shape or shader runs on every renderer.
class SpinnerRing : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY colorChanged)
    Q_PROPERTY(bool arc MEMBER m_arc NOTIFY arcChanged) // false for a spinner that stands still

public:
    explicit SpinnerRing(QQuickItem *parent = nullptr);
    void paint(QPainter *painter) override;

Q_SIGNALS:
    void colorChanged();
    void arcChanged();

private:
    QColor m_color;
    bool m_arc = true;
};

} // namespace zelk
