#include "Views/Appearance.h"

#include "Styling/TokensSingleton.h"

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

Appearance::Appearance(std::shared_ptr<DesktopSettings> desktop, std::shared_ptr<UserDefaults> defaults,
                       QObject *parent)
    : QObject(parent), m_desktop(std::move(desktop)), m_defaults(std::move(defaults)) {
    connect(m_desktop.get(), &DesktopSettings::colorSchemeChanged, this, &Appearance::changed);
    connect(m_desktop.get(), &DesktopSettings::increasedContrastChanged, this, &Appearance::changed);
    connect(m_desktop.get(), &DesktopSettings::reducedMotionChanged, this, &Appearance::changed);
    connect(m_desktop.get(), &DesktopSettings::textScaleChanged, this, &Appearance::changed);
}

bool Appearance::reduceGlassEffects() const {
    return m_defaults->boolValue(u"reduceGlassEffects"_s);
}

void Appearance::setReduceGlassEffects(bool reduce) {
    if (reduceGlassEffects() == reduce)
        return;
    m_defaults->set(u"reduceGlassEffects"_s, reduce);
    Q_EMIT changed();
}

GlassResolver Appearance::glass() const {
    return resolveGlass(m_desktop->reducedTransparency(), m_desktop->reducedMotion(), m_desktop->increasedContrast(),
                        reduceGlassEffects());
}

void Appearance::dress(TokensSingleton &tokens) {
    connect(this, &Appearance::changed, &tokens, [this, &tokens] { apply(tokens); });
    apply(tokens);
}

void Appearance::apply(TokensSingleton &tokens) const {
    using ColorScheme = DesktopSettings::ColorScheme;
    const ColorScheme scheme = m_desktop->colorScheme();
    tokens.preferDark(scheme == ColorScheme::noPreference ? std::nullopt : std::optional(scheme == ColorScheme::dark));
    tokens.motion()->setReduced(m_desktop->reducedMotion());
    tokens.glass()->setResolver(glass());
    tokens.setTextScale(m_desktop->textScale());
}

} // namespace zelk
