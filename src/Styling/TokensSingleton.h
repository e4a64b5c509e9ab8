#pragma once

#include "Styling/GlassEnvironment.h"
#include "Styling/Measures.h"
#include "Styling/Palette.h"

#include <QObject>
#include <QUrl>
#include <qqmlregistration.h>

#include <memory>
#include <optional>

namespace zelk {

// What QML knows as Tokens. One per engine; its palette follows the application's own until it is told otherwise.
class TokensSingleton : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(Tokens)
    QML_SINGLETON
    Q_PROPERTY(zelk::Palette *color READ color CONSTANT)
    Q_PROPERTY(zelk::SpaceScale *space READ space CONSTANT)
    Q_PROPERTY(zelk::RadiusScale *radius READ radius CONSTANT)
    Q_PROPERTY(zelk::ArtScale *art READ art CONSTANT)
    // Made for one scale of text, and others when it changes: what reads through them follows.
    Q_PROPERTY(zelk::SizeScale *size READ size NOTIFY textScaleChanged)
    Q_PROPERTY(zelk::TypeScale *font READ font NOTIFY textScaleChanged)
    Q_PROPERTY(double textScale READ textScale WRITE setTextScale NOTIFY textScaleChanged)
    Q_PROPERTY(zelk::MotionScale *motion READ motion CONSTANT)
    Q_PROPERTY(zelk::GlassEnvironment *glass READ glass CONSTANT)

public:
    explicit TokensSingleton(QObject *parent = nullptr);

    Palette *color() { return &m_palette; }
    SpaceScale *space() { return &m_space; }
    RadiusScale *radius() { return &m_radius; }
    ArtScale *art() { return &m_art; }
    SizeScale *size() { return m_size.get(); }
    TypeScale *font() { return m_type.get(); }
    MotionScale *motion() { return &m_motion; }
    GlassEnvironment *glass() { return &m_glass; }

    // How much larger than usual the user wants text; held between the least and the most that the views are made for.
    double textScale() const { return m_textScale; }
    void setTextScale(double scale);

    // Dark or light whatever the application's own palette is; none follows that again.
    void preferDark(std::optional<bool> dark);

    // The address of a symbol in a colour, for an Image.
    Q_INVOKABLE QUrl symbol(const QString &name, const QColor &color) const;

    // How thick a dividing line is in whole pixels of a device: all lines alike, wherever they fall.
    Q_INVOKABLE double hairline(double devicePixelRatio) const;

    Q_INVOKABLE bool hasSymbol(const QString &name) const;

    // `text` with every digit as wide as the widest, to give a ticking number its place.
    Q_INVOKABLE QString widest(const QString &text) const;

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void textScaleChanged();

private:
    void followApplication();

    Palette m_palette;
    SpaceScale m_space;
    RadiusScale m_radius;
    ArtScale m_art;
    double m_textScale = Tokens::leastTextScale;
    std::unique_ptr<SizeScale> m_size = std::make_unique<SizeScale>();
    std::unique_ptr<TypeScale> m_type = std::make_unique<TypeScale>();
    MotionScale m_motion;
    GlassEnvironment m_glass;
    std::optional<bool> m_prefersDark;
};

} // namespace zelk
