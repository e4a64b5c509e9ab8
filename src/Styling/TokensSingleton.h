#pragma once

#include "Styling/GlassEnvironment.h"
#include "Styling/Measures.h"
#include "Styling/Palette.h"

#include <QObject>
#include <QUrl>
#include <qqmlregistration.h>

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
    Q_PROPERTY(zelk::SizeScale *size READ size CONSTANT)
    Q_PROPERTY(zelk::TypeScale *font READ font CONSTANT)
    Q_PROPERTY(zelk::MotionScale *motion READ motion CONSTANT)
    Q_PROPERTY(zelk::GlassEnvironment *glass READ glass CONSTANT)

public:
    explicit TokensSingleton(QObject *parent = nullptr);

    Palette *color() { return &m_palette; }
    SpaceScale *space() { return &m_space; }
    RadiusScale *radius() { return &m_radius; }
    ArtScale *art() { return &m_art; }
    SizeScale *size() { return &m_size; }
    TypeScale *font() { return &m_type; }
    MotionScale *motion() { return &m_motion; }
    GlassEnvironment *glass() { return &m_glass; }

    // Dark or light whatever the application's own palette is; none follows that again.
    void preferDark(std::optional<bool> dark);

    // The address of a symbol in a colour, for an Image.
    Q_INVOKABLE QUrl symbol(const QString &name, const QColor &color) const;

    Q_INVOKABLE bool hasSymbol(const QString &name) const;

    // `text` with every digit as wide as the widest, to give a ticking number its place.
    Q_INVOKABLE QString widest(const QString &text) const;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void followApplication();

    Palette m_palette;
    SpaceScale m_space;
    RadiusScale m_radius;
    ArtScale m_art;
    SizeScale m_size;
    TypeScale m_type;
    MotionScale m_motion;
    GlassEnvironment m_glass;
    std::optional<bool> m_prefersDark;
};

} // namespace zelk
